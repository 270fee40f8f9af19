#pragma once

#include "core/MirelNamespace.h"
#include "resources/WCResContainer_Base.h"

MIREL_NAMESPACE_BEGIN

// A container over the resources compiled into a native module. Shared objects on this platform
// carry no such resources, so the class keeps its interface for code written against it and is
// invalid with eRMInvalidNativeResContainer; its operations answer the same code.
// [any-thread]
class WCResContainer_dll : public WCResContainer_Base {
public:
    explicit WCResContainer_dll(const WCResContainerInfo &info);
    ~WCResContainer_dll() override;

    int GetRawResSize(const WCResKey &key, std::uint64_t &outSize) override;
    bool DoesNativeResourceExist(const WCResKey &key) override;
    int GetResTypeList(WTTypeList &outTypes) override;
    int GetResIDList(const char *type, WTTypeList &outIDs) override;
    int ReadRawData(const WCResKey &key, Utils::WCStMemObj &outData) override;
    int WriteResourceData(WTResourceType &resource) override;
};

MIREL_NAMESPACE_END
