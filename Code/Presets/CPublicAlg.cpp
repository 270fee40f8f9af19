#include "Code/Presets/CPublicAlg.h"

#include "Code/Algorithm/cALGORITHM.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

WCFourCC CPublicAlg::GetAlgType() const noexcept {
    return m_Alg.GetAlgType();
}

WCFourCC CPublicAlg::GetAlgSubType() const noexcept {
    return m_Alg.GetAlgSubType();
}

WCFixedString<63> CPublicAlg::GetAlgName() const {
    WCFixedString<63> name;
    m_Alg.GetAlgName(name);
    return name;
}

WCFixedString<63> CPublicAlg::GetAlgVersion() const {
    return m_Alg.GetComponentInfo().m_ExternalVersion.GetString(3);
}

short CPublicAlg::GetPresetResourceNumber() const noexcept {
    return m_Alg.GetPresetResourceNumber();
}

std::vector<WCFourCC> CPublicAlg::GetPresetCompatibleTypes(WCFourCC) const {
    return m_Alg.GetPresetCompatibleTypes();
}

int CPublicAlg::LoadFromPreset(const CPresetInfo &info, bool update) const {
    if (m_pMutableAlg == nullptr)
        return eMemNullPointer;
    return m_pMutableAlg->LoadFromPreset(info, update);
}

int CPublicAlg::SaveToPreset(CPresetInfo &info, bool activeOnly, bool allSetups) const {
    return m_Alg.SaveToPreset(info, activeOnly, allSetups);
}

int CPublicAlg::SaveToMidiMap(CPresetInfo &) const {
    return eNotImplemented;
}

bool CPublicAlg::GetSaveAllSetups() const {
    return m_Alg.GetPluginValue_bool("SaveAllSetups", true);
}

} // namespace Preset

MIREL_NAMESPACE_END
