#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"
#include "files/WCStPath.h"
#include "resources/WCResKey.h"
#include "resources/WCResourceManager.h"
#include "resources/WTResourceType.h"

MIREL_NAMESPACE_BEGIN

// Whether the process's manager exists.
enum WEManagerInitOptions : int {
    eResourceManagerNotInitialized = 0,
    eResourceManagerInitialized = 1,
};

// The resource manager's public operations. Each returns an error code unless shown otherwise and
// throws nothing. Container operations take the manager's lock; resource operations take only the
// lock of the resource's container. Handles come from OpenResContainer and GetAResource and stay
// good until their last close or release; a null handle is refused with eMemNullPointer.
// [any-thread]
namespace RM {

// ---- life ----------------------------------------------------------------------------------
// Makes the process's manager once; later calls keep the first. The first open makes it too.
int Init(std::uint64_t expectedContainers = 8, const char *ownerName = "MirelLib");
// Closes every container, disposing of every resource, and destroys the manager. Handles from
// before are dead afterwards. Tests call it between cases.
int Dispose();
WEManagerInitOptions GetRuntimeEnviron();
WCResourceManager *GetResourceManagerObjectCurrent();
const char *GetResourceManagerObjectCurrentOwnerName();
WCResourceManager *GetResourceManagerObjectFromContainerPtr(WTResContainerType *const container);
bool IsResContainerFromCurrentResourceManagerObject(WTResContainerType *const container);
// Counts over all containers, or over `container` only (eRMInvalidResContainer if not open).
int GetResourceManagerInfo(WSResourceManagerInfo &outInfo,
                           WTResContainerType *const container = nullptr);
// Writes the open containers and their loaded resources to standard output.
int DumpResFileMap();

// ---- containers ----------------------------------------------------------------------------
// Opens the container of a bundle (or native module) path, or retains it when already open.
int OpenResContainer(const FM::WCStPath &path, int mode, WTResContainerType *&outContainer,
                     unsigned int flags = 0);
int OpenResContainer(const char *path, int mode, WTResContainerType *&outContainer,
                     unsigned int flags = 0);
// The container of a loaded module: a module inside a bundle opens the bundle.
int AttachResContainer(WTNativeDLLRefType *const module, WTResContainerType *&outContainer,
                       unsigned int flags = 0);
// Takes one retain away; the last one destroys the container. The caller's handle is null
// afterwards; a handle that is not open is eRMInvalidNativeResContainer.
int CloseResContainer(WTResContainerType *&ioContainer);
int DetachResContainer(WTResContainerType *&ioContainer);
int IsResContainer(const FM::WCStPath &path, bool &outIsContainer);
bool IsOpenResContainer(WTResContainerType *const container);
bool IsBundleResContainer(WTResContainerType *const container);
int GetContainerPath(WTResContainerType *const container, FM::WCStPath &outPath);
int GetResourcesFolderPath(WTResContainerType *const container, FM::WCStPath &outPath);
int GetHMODULE(WTResContainerType *const container, WTNativeDLLRefType *&outModule);
// -1 when not open.
std::int32_t GetRetainCount(const FM::WCStPath &path);
std::int32_t GetRetainCount(WTResContainerType *const container);
// The system's count of the native module's loads: 0 here, where no container loads one.
std::int32_t GetOSRetainCount(WTResContainerType *const container);
// Writes deferred resources, deletes those marked and keeps changed attributes.
int WriteResContainer(WTResContainerType *const container);

// ---- resources -----------------------------------------------------------------------------
// The loaded resource with one more retain, or a new one loaded once and converted by the key's
// converter. `flags` may hold kResLoadDeferredWrite. A failed load leaves the map as it was.
int GetAResource(WTResContainerType *const container, const WCResKey &key,
                 WTResourceType *&outResource, std::uint32_t flags = 0);
int GetResourceAndData(WTResContainerType *const container, const WCResKey &key,
                       WTResourceType *&outResource, void *&outData, std::uint64_t &outSize);
int RetainResource(WTResourceType *const resource);
// The caller's pointer is null afterwards, also on failure.
int ReleaseResource(WTResourceType *&ioResource);
int ReleaseResources(WTResContainerType *const container, WTResourceType **resources,
                     std::uint64_t count);
int ReleaseAllResources(WTResContainerType *const container);
// eRMResRefNotFound when not loaded; the resource is not retained.
int IsResourceLoaded(WTResContainerType *const container, const WCResKey &key,
                     WTResourceType *&outResource);
bool DoesResourceExist(WTResContainerType *const container, const WCResKey &key);
int GetRawResSize(WTResContainerType *const container, const WCResKey &key, std::uint64_t &outSize);
// The bytes as stored, without loading the resource.
int GetRawResourceData(WTResContainerType *const container, const WCResKey &key,
                       Utils::WCStMemObj &outData);
// A copy of raw data (eRMInvalidResRef for a converted resource).
int CopyResourceToWCStMemObj(WTResourceType *const resource, Utils::WCStMemObj &outData);
int GetResData(WTResourceType *const resource, void *&outData);
int GetResSize(WTResourceType *const resource, std::uint64_t &outSize);
int GetResInfo(WTResourceType *const resource, WCResKey &outKey);
int GetModificationTime(WTResContainerType *const container, const WCResKey &key,
                        std::int64_t &outTime);
int GetPathToActualFile(WTResContainerType *const container, const WCResKey &key,
                        FM::WCStPath &outPath);
int GetPathToTheoreticalFile(WTResContainerType *const container, const WCResKey &key,
                             FM::WCStPath &outPath);

// ---- listing -------------------------------------------------------------------------------
// Both append to the caller's vector, sorted and without duplicates.
int GetResTypeList(WTResContainerType *const container, std::vector<WCFixedString<31>> &outTypes);
int GetResIDList(WTResContainerType *const container, const char *type,
                 std::vector<WCFixedString<31>> &outIDs);
// The ids that are whole numbers in the range of a short.
int GetResIDList(WTResContainerType *const container, const char *type, std::vector<short> &outIDs);

// ---- changes -------------------------------------------------------------------------------
// Enters the caller's data (not copied: it must outlive the resource) as a resource; a loaded key
// is replaced, a stored one is eRMResExists.
int AddResource(WTResContainerType *const container, const WCResKey &key, const void *data,
                std::uint64_t size, WTResourceType *&outResource, std::uint32_t flags = 0);
int AddResourceCopyData(WTResContainerType *const container, const WCResKey &key, const void *data,
                        std::uint64_t size, WTResourceType *&outResource, std::uint32_t flags = 0);
// Copies the data; a key already loaded or stored is replaced.
int AddOrReplaceResource(WTResContainerType *const container, const WCResKey &key, const void *data,
                         std::uint64_t size, WTResourceType *&outResource, std::uint32_t flags = 0);
int UpdateResource(WTResourceType *const resource, const void *data, std::uint64_t size);
int WriteResource(WTResourceType *const resource);
// The resource's file is deleted at its last release or at WriteResContainer.
int MarkResourceForDelete(WTResourceType *const resource);

// ---- attributes ----------------------------------------------------------------------------
int SetResourceAttrib(WTResContainerType *const container, const WCResKey &key, const char *name,
                      const char *value);
// eRMResNotFound when the attribute is not set.
int GetResourceAttrib(WTResContainerType *const container, const WCResKey &key, const char *name,
                      WCFixedStringBase &outValue);
bool HasResourceAttrib(WTResContainerType *const container, const WCResKey &key, const char *name);

} // namespace RM

MIREL_NAMESPACE_END
