#pragma once

#include "Code/Algorithm/cALGORITHM.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace mirel_test {

// A plug-in of a given type and sub-type, named "Gain", version 12.5.1, without a bundle: what
// the preset file API asks of a plug-in, and nothing more.
class WCPresetTestAlgorithm : public WCSilentAlgorithm {
public:
    using WCFourCC = MIREL_NAMESPACE_NAME::WCFourCC;

    WCPresetTestAlgorithm(WCFourCC type, WCFourCC subType)
        : WCSilentAlgorithm(Component(subType), NoContainer()) {
        SetAlgTypes(type, subType);
        SetAlgName("Gain");
    }

private:
    static MIREL_NAMESPACE_NAME::MirelComponentInfo Component(WCFourCC subType) {
        MIREL_NAMESPACE_NAME::MirelComponentInfo info;
        info.m_ComponentType = WCFourCC("Nati");
        info.m_ComponentSubType = subType;
        info.m_ExternalVersion.ReadFromString("12.5.1");
        return info;
    }
    static MIREL_NAMESPACE_NAME::WTResContainerType *&NoContainer() {
        static MIREL_NAMESPACE_NAME::WTResContainerType *none = nullptr;
        return none;
    }
};

} // namespace mirel_test
