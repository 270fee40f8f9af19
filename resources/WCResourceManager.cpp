#include "resources/WCResourceManager.h"

#include <algorithm>
#include <memory>
#include <new>
#include <ostream>

#include "resources/WCResContainer_Bundle.h"
#include "resources/WCResContainer_dll.h"

MIREL_NAMESPACE_BEGIN

namespace {

bool ByPath(const WCResContainer_Base *a, const WCResContainer_Base *b) {
    return a->GetPath() < b->GetPath();
}

WCResContainer_Base *MakeContainer(const WCResContainerInfo &info) {
    if (info.GetKind() == RM::kResContainerBundle)
        return new (std::nothrow) WCResContainer_Bundle(info);
    return new (std::nothrow) WCResContainer_dll(info);
}

} // namespace

WCResourceManager::WCResourceManager(std::uint64_t expectedContainers, const char *ownerName)
    : m_OwnerName(ownerName) {
    (void)m_Mutex.init();
    m_Containers.reserve(expectedContainers);
}

WCResourceManager::~WCResourceManager() {
    CloseAll();
    m_Mutex.uninit();
}

void WCResourceManager::CloseAll() {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    for (WCResContainer_Base *container : m_Containers)
        delete container;
    m_Containers.clear();
}

WCResContainer_Base *WCResourceManager::FindLocked(const WCResContainerInfo &info) const {
    const auto found =
        std::lower_bound(m_Containers.begin(), m_Containers.end(), info,
                         [](const WCResContainer_Base *c, const WCResContainerInfo &i) {
                             return c->GetPath() < i.GetPath();
                         });
    if (found != m_Containers.end() && (*found)->GetPath() == info.GetPath())
        return *found;
    return nullptr;
}

WCResContainer_Base *WCResourceManager::FindHandleLocked(WTResContainerType *handle) const {
    // Compared as handles, never cast: a stale handle must not be read.
    for (WCResContainer_Base *open : m_Containers)
        if (static_cast<WTResContainerType *>(open) == handle)
            return open;
    return nullptr;
}

int WCResourceManager::OpenLocked(const WCResContainerInfo &info, WTResContainerType *&outContainer,
                                  int invalidError) {
    if (WCResContainer_Base *open = FindLocked(info)) {
        ++open->m_RetainCount;
        open->ReopenSelf();
        if (open->GetNativeHandle() == nullptr)
            open->SetNativeHandle(info.GetNativeHandle());
        outContainer = open;
        return eNoErr;
    }
    std::unique_ptr<WCResContainer_Base> container(MakeContainer(info));
    if (!container)
        return eMemNewTPtrFailed;
    if (!container->IsValid())
        return invalidError != eNoErr ? invalidError : container->GetError();
    try {
        const auto place =
            std::upper_bound(m_Containers.begin(), m_Containers.end(), container.get(), ByPath);
        m_Containers.insert(place, container.get());
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
    container->m_RetainCount = 1;
    container->m_pManager = this;
    outContainer = container.release();
    return eNoErr;
}

int WCResourceManager::OpenResContainer(const FM::WCStPath &path, int mode,
                                        WTResContainerType *&outContainer, unsigned int flags) {
    outContainer = nullptr;
    const WCResContainerInfo info(path, mode, flags);
    if (!info.IsValid())
        return info.GetError();
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    return OpenLocked(info, outContainer, eRMInvalidResContainer);
}

int WCResourceManager::AttachResContainer(WTNativeDLLRefType *const module,
                                          WTResContainerType *&outContainer, unsigned int flags) {
    outContainer = nullptr;
    if (module == nullptr)
        return eMemNullPointer;
    {
        miThread::WCStThreadMutexLocker lock(m_Mutex);
        for (WCResContainer_Base *open : m_Containers) {
            if (open->GetNativeHandle() == module) {
                ++open->m_RetainCount;
                open->ReopenSelf();
                outContainer = open;
                return eNoErr;
            }
        }
    }
    const WCResContainerInfo info(module, flags);
    if (!info.IsValid())
        return info.GetError() == eRMInvalidResContainer ? eRMInvalidNativeResContainer
                                                         : info.GetError();
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    return OpenLocked(info, outContainer, eNoErr);
}

int WCResourceManager::CloseResContainer(WTResContainerType *&ioContainer) {
    if (ioContainer == nullptr)
        return eMemNullPointer;
    WTResContainerType *handle = ioContainer;
    ioContainer = nullptr;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    WCResContainer_Base *container = FindHandleLocked(handle);
    if (container == nullptr)
        return eRMInvalidNativeResContainer;
    if (container->m_RetainCount > 1) {
        --container->m_RetainCount;
        container->CloseSelf();
        return eNoErr;
    }
    m_Containers.erase(std::find(m_Containers.begin(), m_Containers.end(), container));
    delete container;
    return eNoErr;
}

bool WCResourceManager::IsOpenResContainer(WTResContainerType *container) {
    if (container == nullptr)
        return false;
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    return FindHandleLocked(container) != nullptr;
}

std::int32_t WCResourceManager::GetRetainCount(const FM::WCStPath &path) {
    const WCResContainerInfo info(path, 0, 0);
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    const WCResContainer_Base *open = FindLocked(info);
    return open ? open->m_RetainCount : -1;
}

std::int32_t WCResourceManager::GetRetainCount(WTResContainerType *container) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    const WCResContainer_Base *open = container ? FindHandleLocked(container) : nullptr;
    return open ? open->m_RetainCount : -1;
}

int WCResourceManager::GetInfo(WSResourceManagerInfo &outInfo, WTResContainerType *container) {
    outInfo = WSResourceManagerInfo();
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    for (WCResContainer_Base *open : m_Containers) {
        if (container != nullptr && static_cast<WTResContainerType *>(open) != container)
            continue;
        ++outInfo.m_NumContainers;
        outInfo.m_TotalContainerRetain += static_cast<std::uint64_t>(open->m_RetainCount);
        outInfo.m_TotalResources += open->GetNumLoadedResources();
    }
    if (container != nullptr && outInfo.m_NumContainers == 0)
        return eRMInvalidResContainer;
    return eNoErr;
}

void WCResourceManager::Dump(std::ostream &out) {
    miThread::WCStThreadMutexLocker lock(m_Mutex);
    out << "Resource manager of " << m_OwnerName.c_str() << ": " << m_Containers.size()
        << " containers\n";
    for (const WCResContainer_Base *open : m_Containers)
        open->Dump(out);
}

MIREL_NAMESPACE_END
