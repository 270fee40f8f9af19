#include "resources/ResourceManager.h"

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <new>

#include "core/WUAssert.h"
#include "resources/WCResContainer_Base.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

namespace {

// Init and Dispose have their own lock, apart from the manager's.
std::mutex &LifeMutex() {
    static std::mutex mutex;
    return mutex;
}

std::atomic<WCResourceManager *> gManager{nullptr};

WCResourceManager *ManagerOrInit() {
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    if (manager == nullptr) {
        (void)Init();
        manager = gManager.load(std::memory_order_acquire);
    }
    return manager;
}

WCResContainer_Base *Container(WTResContainerType *const handle) {
    return WCResContainer_Base::FromHandle(handle);
}

WCResContainer_Base *ContainerOf(WTResourceType *const resource) {
    return WCResContainer_Base::FromHandle(resource->m_pContainer);
}

bool IsShortNumber(const WCFixedStringBase &text, short &outValue) {
    if (text.empty() || text.size() > 6)
        return false;
    char *end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (end == nullptr || *end != 0 || value < -32768 || value > 32767)
        return false;
    outValue = static_cast<short>(value);
    return true;
}

} // namespace

// ---- life ----------------------------------------------------------------------------------

int Init(std::uint64_t expectedContainers, const char *ownerName) {
    std::lock_guard<std::mutex> lock(LifeMutex());
    if (gManager.load(std::memory_order_acquire) != nullptr)
        return eNoErr;
    WCResourceManager *manager =
        new (std::nothrow) WCResourceManager(expectedContainers, ownerName ? ownerName : "");
    if (manager == nullptr)
        return eMemNewTPtrFailed;
    gManager.store(manager, std::memory_order_release);
    return eNoErr;
}

int Dispose() {
    std::lock_guard<std::mutex> lock(LifeMutex());
    delete gManager.exchange(nullptr, std::memory_order_acq_rel);
    return eNoErr;
}

WEManagerInitOptions GetRuntimeEnviron() {
    return gManager.load(std::memory_order_acquire) ? eResourceManagerInitialized
                                                    : eResourceManagerNotInitialized;
}

WCResourceManager *GetResourceManagerObjectCurrent() {
    return gManager.load(std::memory_order_acquire);
}

const char *GetResourceManagerObjectCurrentOwnerName() {
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    return manager ? manager->GetOwnerName().c_str() : "";
}

WCResourceManager *GetResourceManagerObjectFromContainerPtr(WTResContainerType *const container) {
    return container ? Container(container)->m_pManager : nullptr;
}

bool IsResContainerFromCurrentResourceManagerObject(WTResContainerType *const container) {
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    return manager != nullptr && manager->IsOpenResContainer(container);
}

int GetResourceManagerInfo(WSResourceManagerInfo &outInfo, WTResContainerType *const container) {
    outInfo = WSResourceManagerInfo();
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    if (manager == nullptr)
        return container ? eRMInvalidResContainer : eNoErr;
    return manager->GetInfo(outInfo, container);
}

int DumpResFileMap() {
    if (WCResourceManager *manager = gManager.load(std::memory_order_acquire))
        manager->Dump(std::cout);
    return eNoErr;
}

// ---- containers ----------------------------------------------------------------------------

int OpenResContainer(const FM::WCStPath &path, int mode, WTResContainerType *&outContainer,
                     unsigned int flags) {
    outContainer = nullptr;
    WCResourceManager *manager = ManagerOrInit();
    if (manager == nullptr)
        return eMemNewTPtrFailed;
    return manager->OpenResContainer(path, mode, outContainer, flags);
}

int OpenResContainer(const char *path, int mode, WTResContainerType *&outContainer,
                     unsigned int flags) {
    outContainer = nullptr;
    MIREL_ASSERT_RETURN(path != nullptr, eMemNullPointer);
    return OpenResContainer(FM::WCStPath(path), mode, outContainer, flags);
}

int AttachResContainer(WTNativeDLLRefType *const module, WTResContainerType *&outContainer,
                       unsigned int flags) {
    outContainer = nullptr;
    WCResourceManager *manager = ManagerOrInit();
    if (manager == nullptr)
        return eMemNewTPtrFailed;
    return manager->AttachResContainer(module, outContainer, flags);
}

int CloseResContainer(WTResContainerType *&ioContainer) {
    if (ioContainer == nullptr)
        return eMemNullPointer;
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    if (manager == nullptr) {
        ioContainer = nullptr;
        return eRMInvalidNativeResContainer;
    }
    return manager->CloseResContainer(ioContainer);
}

int DetachResContainer(WTResContainerType *&ioContainer) {
    return CloseResContainer(ioContainer);
}

int IsResContainer(const FM::WCStPath &path, bool &outIsContainer) {
    const WCResContainerInfo info(path, 0, 0);
    outIsContainer = info.IsValid() &&
                     (info.GetKind() == kResContainerBundle ? info.GetPath().IsFolder()
                                                            : info.GetNativeModulePath().IsFile());
    return info.IsValid() ? eNoErr : info.GetError();
}

bool IsOpenResContainer(WTResContainerType *const container) {
    return IsResContainerFromCurrentResourceManagerObject(container);
}

bool IsBundleResContainer(WTResContainerType *const container) {
    return container != nullptr && Container(container)->GetKind() == kResContainerBundle;
}

int GetContainerPath(WTResContainerType *const container, FM::WCStPath &outPath) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    outPath = Container(container)->GetContainerPath();
    return eNoErr;
}

int GetResourcesFolderPath(WTResContainerType *const container, FM::WCStPath &outPath) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    if (Container(container)->GetKind() != kResContainerBundle)
        return eRMInvalidResContainer;
    outPath = Container(container)->GetResourcesFolder();
    return eNoErr;
}

int GetHMODULE(WTResContainerType *const container, WTNativeDLLRefType *&outModule) {
    outModule = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    outModule = Container(container)->GetNativeHandle();
    return eNoErr;
}

std::int32_t GetRetainCount(const FM::WCStPath &path) {
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    return manager ? manager->GetRetainCount(path) : -1;
}

std::int32_t GetRetainCount(WTResContainerType *const container) {
    WCResourceManager *manager = gManager.load(std::memory_order_acquire);
    return manager ? manager->GetRetainCount(container) : -1;
}

std::int32_t GetOSRetainCount(WTResContainerType *const) {
    return 0;
}

int WriteResContainer(WTResContainerType *const container) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->WriteContainer();
}

// ---- resources -----------------------------------------------------------------------------

int GetAResource(WTResContainerType *const container, const WCResKey &key,
                 WTResourceType *&outResource, std::uint32_t flags) {
    outResource = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->GetResource(key, flags, outResource);
}

int GetResourceAndData(WTResContainerType *const container, const WCResKey &key,
                       WTResourceType *&outResource, void *&outData, std::uint64_t &outSize) {
    outData = nullptr;
    outSize = 0;
    const int err = GetAResource(container, key, outResource);
    if (err == eNoErr) {
        outData = outResource->m_Data.m_pData;
        outSize = outResource->m_Data.m_DataSize;
    }
    return err;
}

int RetainResource(WTResourceType *const resource) {
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    return ContainerOf(resource)->RetainResource(resource);
}

int ReleaseResource(WTResourceType *&ioResource) {
    if (ioResource == nullptr)
        return eMemNullPointer;
    return ContainerOf(ioResource)->ReleaseResource(ioResource);
}

int ReleaseResources(WTResContainerType *const, WTResourceType **resources, std::uint64_t count) {
    MIREL_ASSERT_RETURN(resources != nullptr || count == 0, eMemNullPointer);
    int first = eNoErr;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (resources[i] == nullptr)
            continue;
        const int err = ReleaseResource(resources[i]);
        if (first == eNoErr)
            first = err;
    }
    return first;
}

int ReleaseAllResources(WTResContainerType *const container) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->ReleaseAllResources();
}

int IsResourceLoaded(WTResContainerType *const container, const WCResKey &key,
                     WTResourceType *&outResource) {
    outResource = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->IsResourceLoaded(key, outResource);
}

bool DoesResourceExist(WTResContainerType *const container, const WCResKey &key) {
    return container != nullptr && Container(container)->DoesResourceExist(key);
}

int GetRawResSize(WTResContainerType *const container, const WCResKey &key,
                  std::uint64_t &outSize) {
    outSize = 0;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    WCResContainer_Base *base = Container(container);
    miThread::WCStThreadMutexLocker lock(base->Mutex());
    return base->GetRawResSize(key, outSize);
}

int GetRawResourceData(WTResContainerType *const container, const WCResKey &key,
                       Utils::WCStMemObj &outData) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    WCResContainer_Base *base = Container(container);
    miThread::WCStThreadMutexLocker lock(base->Mutex());
    // Read aside, so a failure leaves the caller's block as it was.
    Utils::WCStMemObj data;
    const int err = base->ReadRawData(key, data);
    if (err == eNoErr)
        outData.TakeOver(data);
    return err;
}

int CopyResourceToWCStMemObj(WTResourceType *const resource, Utils::WCStMemObj &outData) {
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    if (resource->m_Data.m_Form != kResFormMemObj)
        return eRMInvalidResRef;
    return outData.Assign(resource->m_Data.m_pData, resource->m_Data.m_DataSize);
}

int GetResData(WTResourceType *const resource, void *&outData) {
    outData = nullptr;
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    outData = resource->m_Data.m_pData;
    return eNoErr;
}

int GetResSize(WTResourceType *const resource, std::uint64_t &outSize) {
    outSize = 0;
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    outSize = resource->m_Data.m_DataSize;
    return eNoErr;
}

int GetResInfo(WTResourceType *const resource, WCResKey &outKey) {
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    outKey = *resource;
    return eNoErr;
}

int GetModificationTime(WTResContainerType *const container, const WCResKey &key,
                        std::int64_t &outTime) {
    outTime = 0;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    WCResContainer_Base *base = Container(container);
    miThread::WCStThreadMutexLocker lock(base->Mutex());
    return base->GetModificationTime(key, outTime);
}

int GetPathToActualFile(WTResContainerType *const container, const WCResKey &key,
                        FM::WCStPath &outPath) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    WCResContainer_Base *base = Container(container);
    miThread::WCStThreadMutexLocker lock(base->Mutex());
    return base->GetPathToActualFile(key, outPath);
}

int GetPathToTheoreticalFile(WTResContainerType *const container, const WCResKey &key,
                             FM::WCStPath &outPath) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    WCResContainer_Base *base = Container(container);
    miThread::WCStThreadMutexLocker lock(base->Mutex());
    return base->GetPathToTheoreticalFile(key, outPath);
}

// ---- listing -------------------------------------------------------------------------------

int GetResTypeList(WTResContainerType *const container, std::vector<WCFixedString<31>> &outTypes) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->GetResTypeList(outTypes);
}

int GetResIDList(WTResContainerType *const container, const char *type,
                 std::vector<WCFixedString<31>> &outIDs) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->GetResIDList(type, outIDs);
}

int GetResIDList(WTResContainerType *const container, const char *type,
                 std::vector<short> &outIDs) {
    std::vector<WCFixedString<31>> texts;
    const int err = GetResIDList(container, type, texts);
    if (err != eNoErr)
        return err;
    for (const auto &text : texts) {
        short value = 0;
        if (IsShortNumber(text, value))
            outIDs.push_back(value);
    }
    return eNoErr;
}

// ---- changes -------------------------------------------------------------------------------

int AddResource(WTResContainerType *const container, const WCResKey &key, const void *data,
                std::uint64_t size, WTResourceType *&outResource, std::uint32_t flags) {
    outResource = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->AddResource(key, data, size, flags, false, false, outResource);
}

int AddResourceCopyData(WTResContainerType *const container, const WCResKey &key, const void *data,
                        std::uint64_t size, WTResourceType *&outResource, std::uint32_t flags) {
    outResource = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->AddResource(key, data, size, flags, true, false, outResource);
}

int AddOrReplaceResource(WTResContainerType *const container, const WCResKey &key, const void *data,
                         std::uint64_t size, WTResourceType *&outResource, std::uint32_t flags) {
    outResource = nullptr;
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    return Container(container)->AddResource(key, data, size, flags, true, true, outResource);
}

int UpdateResource(WTResourceType *const resource, const void *data, std::uint64_t size) {
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    return ContainerOf(resource)->UpdateResource(resource, data, size);
}

int WriteResource(WTResourceType *const resource) {
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    return ContainerOf(resource)->WriteResource(resource);
}

int MarkResourceForDelete(WTResourceType *const resource) {
    MIREL_ASSERT_RETURN(resource != nullptr, eMemNullPointer);
    return ContainerOf(resource)->MarkResourceForDelete(resource);
}

// ---- attributes ----------------------------------------------------------------------------

int SetResourceAttrib(WTResContainerType *const container, const WCResKey &key, const char *name,
                      const char *value) {
    MIREL_ASSERT_RETURN(container != nullptr && name != nullptr, eMemNullPointer);
    return Container(container)->SetResourceAttrib(key, name, value ? value : "");
}

int GetResourceAttrib(WTResContainerType *const container, const WCResKey &key, const char *name,
                      WCFixedStringBase &outValue) {
    MIREL_ASSERT_RETURN(container != nullptr && name != nullptr, eMemNullPointer);
    return Container(container)->GetResourceAttrib(key, name, outValue);
}

bool HasResourceAttrib(WTResContainerType *const container, const WCResKey &key, const char *name) {
    return container != nullptr && name != nullptr &&
           Container(container)->HasResourceAttrib(key, name);
}

} // namespace RM

MIREL_NAMESPACE_END
