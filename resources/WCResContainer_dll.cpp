#include "resources/WCResContainer_dll.h"

MIREL_NAMESPACE_BEGIN

WCResContainer_dll::WCResContainer_dll(const WCResContainerInfo &info) : WCResContainer_Base(info) {
    if (IsValid())
        SetError(eRMInvalidNativeResContainer);
}

WCResContainer_dll::~WCResContainer_dll() = default;

int WCResContainer_dll::GetRawResSize(const WCResKey &, std::uint64_t &) {
    return eRMInvalidNativeResContainer;
}

bool WCResContainer_dll::DoesNativeResourceExist(const WCResKey &) {
    return false;
}

int WCResContainer_dll::GetResTypeList(WTTypeList &) {
    return eRMInvalidNativeResContainer;
}

int WCResContainer_dll::GetResIDList(const char *, WTTypeList &) {
    return eRMInvalidNativeResContainer;
}

int WCResContainer_dll::ReadRawData(const WCResKey &, Utils::WCStMemObj &) {
    return eRMInvalidNativeResContainer;
}

int WCResContainer_dll::WriteResourceData(WTResourceType &) {
    return eRMInvalidNativeResContainer;
}

MIREL_NAMESPACE_END
