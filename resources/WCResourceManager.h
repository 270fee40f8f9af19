#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/miThread.h"
#include "files/WCStPath.h"
#include "resources/WCResContainer_Base.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

// Counts over the open containers (or one of them).
struct WSResourceManagerInfo {
    std::uint64_t m_NumContainers = 0;
    std::uint64_t m_TotalContainerRetain = 0;
    std::uint64_t m_TotalResources = 0;
};

// The process's set of open containers, kept sorted by path, each opened once however many
// instances use it and counted by its retain count.
//
// Life: one object per process, made by RM::Init (or the first open) and destroyed by
// RM::Dispose, which closes every container whatever its count.
// Threads: [any-thread]; every operation on the set takes m_Mutex. Lock order: the manager's
// lock, then a container's.
class WCResourceManager {
public:
    WCResourceManager(std::uint64_t expectedContainers, const char *ownerName);
    ~WCResourceManager();
    WCResourceManager(const WCResourceManager &) = delete;
    WCResourceManager &operator=(const WCResourceManager &) = delete;

    int OpenResContainer(const FM::WCStPath &path, int mode, WTResContainerType *&outContainer,
                         unsigned int flags);
    int AttachResContainer(WTNativeDLLRefType *const module, WTResContainerType *&outContainer,
                           unsigned int flags);
    int CloseResContainer(WTResContainerType *&ioContainer);
    bool IsOpenResContainer(WTResContainerType *container);
    // -1 for a path that is not open.
    std::int32_t GetRetainCount(const FM::WCStPath &path);
    std::int32_t GetRetainCount(WTResContainerType *container);
    int GetInfo(WSResourceManagerInfo &outInfo, WTResContainerType *container);
    void Dump(std::ostream &out);
    // Closes every container.
    void CloseAll();

    const WCFixedString<63> &GetOwnerName() const noexcept { return m_OwnerName; }

private:
    // Under the lock: the container of the same path, or null.
    WCResContainer_Base *FindLocked(const WCResContainerInfo &info) const;
    // Under the lock: enters a new container or retains the open one of the same path.
    int OpenLocked(const WCResContainerInfo &info, WTResContainerType *&outContainer,
                   int invalidError);
    // Under the lock: the open container of a handle, or null.
    WCResContainer_Base *FindHandleLocked(WTResContainerType *handle) const;

    miThread::ThreadMutexInited m_Mutex;
    // Sorted by path.
    std::vector<WCResContainer_Base *> m_Containers;
    WCFixedString<63> m_OwnerName;
};

MIREL_NAMESPACE_END
