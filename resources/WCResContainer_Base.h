#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"
#include "core/miThread.h"
#include "files/WCStPath.h"
#include "resources/WCResConfiguration.h"
#include "resources/WCResContainerInfo.h"
#include "resources/WCResKey.h"
#include "resources/WTResourceType.h"

MIREL_NAMESPACE_BEGIN

class WCResourceManager;

// The shared part of every container: the map of loaded resources with their retain counts, the
// configuration, and the operations that get, share, change and release resources. Where the
// bytes come from is left to the virtual operations, which the bundle and native classes fill.
//
// Life: made and destroyed by the manager (one object per path and process, counted by
// m_RetainCount under the manager's lock). Destroying it disposes of every loaded resource.
// Invariant: at most one record per key (keys equal without regard to the type's case), each
// with a retain count of at least 1 while it is in the map.
// Threads: [any-thread]. Every operation on the map takes m_Mutex; the data of a record is read
// without the lock by whoever holds a retain on it. Inside, low-level failures are thrown as int
// and caught by the public member that started the work: the first error wins.
class WCResContainer_Base : public WTResContainerType, public WCResContainerInfo {
public:
    using WTResMap = std::map<WCResKey, WTResourceType *>;
    using WTTypeList = std::vector<WCFixedString<31>>;

    explicit WCResContainer_Base(const WCResContainerInfo &info);
    ~WCResContainer_Base() override;
    WCResContainer_Base(const WCResContainer_Base &) = delete;
    WCResContainer_Base &operator=(const WCResContainer_Base &) = delete;

    static WCResContainer_Base *FromHandle(WTResContainerType *handle) noexcept {
        return static_cast<WCResContainer_Base *>(handle);
    }

    // ---- the operations each kind of container supplies ---------------------------------------
    bool IsValidSelf() const override;
    virtual int GetRawResSize(const WCResKey &key, std::uint64_t &outSize);
    virtual bool DoesNativeResourceExist(const WCResKey &key);
    virtual const FM::WCStPath &GetContainerPath() const;
    virtual FM::WCStPath &GetContainerPath();
    virtual int GetPathToActualFile(const WCResKey &key, FM::WCStPath &outPath);
    virtual int GetPathToTheoreticalFile(const WCResKey &key, FM::WCStPath &outPath);
    // Both append to the caller's vector, sorted and without duplicates.
    virtual int GetResTypeList(WTTypeList &outTypes);
    virtual int GetResIDList(const char *type, WTTypeList &outIDs);
    // Run when the container is opened again, and when a close leaves it open.
    virtual void ReopenSelf() {}
    virtual void CloseSelf() {}
    virtual int GetNumChunks() const { return 0; }
    // The raw bytes of a resource, whether loaded or not; the map is not touched.
    virtual int ReadRawData(const WCResKey &key, Utils::WCStMemObj &outData);
    // Whether a record may be entered (the key's fields name a resource of this container).
    virtual int CheckResource(const WTResourceType &resource);
    // Fills the record's memory object from the container's store.
    virtual int LoadResourceData(WTResourceType &resource);
    virtual void Dump(std::ostream &out) const;
    // Puts the record's memory object into the store.
    virtual int WriteResourceData(WTResourceType &resource);
    // Removes the resource from the store; never fails.
    virtual int DeleteResourceData(WTResourceType &resource);
    // Keeps changed attributes; the base has nowhere to keep them.
    virtual int WriteConfiguration() { return eNoErr; }

    // ---- resources -----------------------------------------------------------------------------
    // The loaded record (retained once more), or a new one loaded with the key's converter.
    // `flags` may hold RM::kResLoadDeferredWrite.
    int GetResource(const WCResKey &key, std::uint32_t flags, WTResourceType *&outResource);
    int RetainResource(WTResourceType *resource);
    // Takes one retain away; the last one converts back (release), removes and destroys the
    // record, and releases a variant's base. The caller's pointer is null afterwards.
    int ReleaseResource(WTResourceType *&ioResource);
    int ReleaseAllResources();
    // The loaded record without retaining it, or eRMResRefNotFound.
    int IsResourceLoaded(const WCResKey &key, WTResourceType *&outResource);
    // Loaded and not marked for delete, or held by the store (GetRawResSize succeeds); so a
    // marked record exists until its file is deleted.
    bool DoesResourceExist(const WCResKey &key);
    // A new record over the caller's data (copied when `copyData`); an existing key in the map is
    // replaced. A key the store already holds is eRMResExists unless `replaceStored`.
    int AddResource(const WCResKey &key, const void *data, std::uint64_t size, std::uint32_t flags,
                    bool copyData, bool replaceStored, WTResourceType *&outResource);
    // Copies new bytes into a raw record; eRMResUpdateFailed for converted records and variants.
    int UpdateResource(WTResourceType *resource, const void *data, std::uint64_t size);
    // Converts back and writes now, or at WriteContainer for a deferred record.
    int WriteResource(WTResourceType *resource);
    int MarkResourceForDelete(WTResourceType *resource);
    // Writes deferred records, deletes marked ones and writes a changed configuration.
    int WriteContainer();
    // The write time of the resource's file, in seconds.
    virtual int GetModificationTime(const WCResKey &key, std::int64_t &outTime);

    // ---- attributes ----------------------------------------------------------------------------
    int SetResourceAttrib(const WCResKey &key, const char *name, const char *value);
    int GetResourceAttrib(const WCResKey &key, const char *name, WCFixedStringBase &outValue);
    bool HasResourceAttrib(const WCResKey &key, const char *name);

    // ---- bookkeeping ---------------------------------------------------------------------------
    std::uint64_t GetNumLoadedResources();
    std::uint64_t GetTotalResourceRetain();
    // How many times a resource was read from the store (not shared).
    std::uint64_t GetLoadCount() const noexcept { return m_LoadCount; }
    int GetConfigurationError() const noexcept { return m_ConfigError; }
    // The lock of the map, for callers that ask the store directly.
    miThread::ThreadMutexInited &Mutex() noexcept { return m_Mutex; }

    // Changed only under the manager's lock.
    std::int32_t m_RetainCount = 0;
    WCResourceManager *m_pManager = nullptr;

protected:
    // Throws eRMInvalidResID for keys that could name a file outside the container.
    static void CheckKeyFields(const WCResKey &key);
    static WCFixedString<63> AttributeKey(const WCResKey &key, const char *name);
    // The file's last write time in seconds; `outTime` is left alone on failure.
    static int FileModificationTime(const FM::WCStPath &path, std::int64_t &outTime);
    // Under the lock: the last release of a record.
    void DestroyRecord(WTResourceType *resource);
    int ReleaseLocked(WTResourceType *resource);
    WTResourceType *FindLocked(const WCResKey &key);
    // Under the lock: variants that share a base's data take its new pointer, size and form.
    void ShareWithVariantsLocked(const WTResourceType &base);
    // Under the lock: converts back and writes one record now.
    int WriteRecordLocked(WTResourceType &resource);

    WTResMap m_ResMap;
    bool m_Dirty = false;
    bool m_ConfigDirty = false;
    WCFixedString<1023> m_ScratchPath;
    RM::WCResConfiguration m_Config;
    int m_ConfigError = eNoErr;
    miThread::ThreadMutexInited m_Mutex;
    std::uint64_t m_LoadCount = 0;
};

MIREL_NAMESPACE_END
