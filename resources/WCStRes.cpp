#include "resources/WCStRes.h"

#include "core/WUAssert.h"
#include "resources/ResourceManager.h"
#include "resources/WCResContainer_Base.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// ---- WCResContainerUser --------------------------------------------------------------------

WCResContainerUser::WCResContainerUser() : m_pContainerRef(&m_pOwnContainer) {}

WCResContainerUser::~WCResContainerUser() {
    ReleaseAllLoadedResources();
}

void WCResContainerUser::RememberLoadedResource(WTResourceType *resource) {
    if (resource == nullptr)
        return;
    if (m_LoadedResources.capacity() == 0)
        m_LoadedResources.reserve(32);
    m_LoadedResources.push_back(resource);
}

void WCResContainerUser::ReleaseAllLoadedResources() {
    if (m_LoadedResources.empty())
        return;
    (void)ReleaseResources(GetContainer(), m_LoadedResources.data(), m_LoadedResources.size());
    m_LoadedResources.clear();
}

// ---- WCStRes -------------------------------------------------------------------------------

WCStRes::WCStRes() : WUValidatable(eRMInvalidResRef) {}

WCStRes::WCStRes(WTResContainerType *const container, const WCResKey &key)
    : WUValidatable(eRMInvalidResRef) {
    (void)LoadResource(container, key);
}

WCStRes::WCStRes(WCResContainerUser &user, const WCResKey &key)
    : WUValidatable(eRMInvalidResRef), m_ReleaseInDestructor(false) {
    WTResourceType *resource = nullptr;
    const int err = GetAResource(user.GetContainer(), key, resource);
    SetError(err);
    if (err == eNoErr) {
        m_pResource = resource;
        user.RememberLoadedResource(resource);
    }
}

WCStRes::~WCStRes() {
    ReleaseOwned();
}

void WCStRes::ReleaseOwned() {
    if (m_pResource != nullptr && m_ReleaseInDestructor)
        (void)ReleaseResource(m_pResource);
    m_pResource = nullptr;
}

int WCStRes::LoadResource(WTResContainerType *const container, const WCResKey &key) {
    ReleaseOwned();
    m_ReleaseInDestructor = true;
    if (container == nullptr) {
        SetError(eMemNullPointer);
        return eMemNullPointer;
    }
    const int err = GetAResource(container, key, m_pResource);
    SetError(err);
    return err;
}

void *WCStRes::GetResData() const {
    return m_pResource ? m_pResource->m_Data.m_pData : nullptr;
}

std::uint64_t WCStRes::GetResSize() const {
    return m_pResource ? m_pResource->m_Data.m_DataSize : 0;
}

int WCStRes::CopyResourceToWCStMemObj(Utils::WCStMemObj &outData) const {
    if (m_pResource == nullptr)
        return GetError() != eNoErr ? GetError() : eRMInvalidResRef;
    return RM::CopyResourceToWCStMemObj(m_pResource, outData);
}

int WCStRes::CopyResourceToStdString(std::string &outText) const {
    if (m_pResource == nullptr)
        return GetError() != eNoErr ? GetError() : eRMInvalidResRef;
    if (m_pResource->m_Data.m_Form != kResFormMemObj)
        return eRMInvalidResRef;
    outText.assign(static_cast<const char *>(m_pResource->m_Data.m_pData),
                   m_pResource->m_Data.m_DataSize);
    return eNoErr;
}

// ---- WCStResContainer ----------------------------------------------------------------------

WCStResContainer::WCStResContainer(const FM::WCStPath &path, int mode, unsigned int flags) {
    SetError(OpenResContainer(path, mode, m_pOwnContainer, flags));
}

WCStResContainer::WCStResContainer(WTNativeDLLRefType *const module, unsigned int flags) {
    SetError(AttachResContainer(module, m_pOwnContainer, flags));
}

WCStResContainer::WCStResContainer(WTResContainerType *const container) {
    if (container == nullptr || !IsOpenResContainer(container)) {
        SetError(eRMInvalidResContainer);
        return;
    }
    // A second open of the same path is one more retain on the same object.
    SetError(OpenResContainer(WCResContainer_Base::FromHandle(container)->GetPath(),
                              WCResContainer_Base::FromHandle(container)->GetOpenMode(),
                              m_pOwnContainer));
}

WCStResContainer::~WCStResContainer() {
    ReleaseAllLoadedResources();
    if (m_pOwnContainer != nullptr)
        (void)CloseResContainer(m_pOwnContainer);
}

int WCStResContainer::GetContainerPath(FM::WCStPath &outPath) const {
    if (m_pOwnContainer == nullptr)
        return GetError();
    return RM::GetContainerPath(m_pOwnContainer, outPath);
}

int WCStResContainer::GetPathToActualFile(const WCResKey &key, FM::WCStPath &outPath) const {
    if (m_pOwnContainer == nullptr)
        return GetError();
    return RM::GetPathToActualFile(m_pOwnContainer, key, outPath);
}

int WCStResContainer::GetRawResSize(const WCResKey &key, std::uint64_t &outSize) const {
    if (m_pOwnContainer == nullptr)
        return GetError();
    return RM::GetRawResSize(m_pOwnContainer, key, outSize);
}

int WCStResContainer::GetResourcesFolderPath(FM::WCStPath &outPath) const {
    if (m_pOwnContainer == nullptr)
        return GetError();
    return RM::GetResourcesFolderPath(m_pOwnContainer, outPath);
}

bool WCStResContainer::DoesNativeResourceExist(const WCResKey &key) const {
    return m_pOwnContainer != nullptr &&
           WCResContainer_Base::FromHandle(m_pOwnContainer)->DoesNativeResourceExist(key);
}

int WCStResContainer::GetResourceList(std::vector<WCResKey> &outKeys) const {
    if (m_pOwnContainer == nullptr)
        return GetError();
    std::vector<WCFixedString<31>> types;
    int err = RM::GetResTypeList(m_pOwnContainer, types);
    for (const auto &type : types) {
        if (err != eNoErr)
            break;
        err = GetResourceListByType(type.c_str(), outKeys);
    }
    return err;
}

int WCStResContainer::GetResourceListByType(const char *type,
                                            std::vector<WCResKey> &outKeys) const {
    if (m_pOwnContainer == nullptr)
        return GetError();
    std::vector<WCFixedString<31>> ids;
    const int err = RM::GetResIDList(m_pOwnContainer, type, ids);
    for (const auto &id : ids)
        outKeys.emplace_back(type, id.c_str());
    return err;
}

} // namespace RM

MIREL_NAMESPACE_END
