#include "Code/Presets/sPresetData.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

sPresetData::sPresetData() : m_PluginSpecificXML("PluginSpecificXMLData") {}

sPresetData::sPresetData(const sPresetData &other)
    : m_SetupName(other.m_SetupName), m_DataType(other.m_DataType), m_NumParams(other.m_NumParams),
      m_States(other.m_States), m_RealWorld(other.m_RealWorld), m_ValueKinds(other.m_ValueKinds),
      m_ControlData(other.m_ControlData), m_PluginSpecificXML(other.m_PluginSpecificXML),
      m_Setup(other.m_Setup), m_LoadParams(other.m_LoadParams),
      m_LoadSpecificXMLPreset(other.m_LoadSpecificXMLPreset) {
    m_PluginSpecific.reserve(other.m_PluginSpecific.size());
    for (const auto &block : other.m_PluginSpecific)
        m_PluginSpecific.push_back(std::make_unique<sPluginSpecific>(*block));
}

sPresetData &sPresetData::operator=(const sPresetData &other) {
    if (this != &other) {
        sPresetData copy(other);
        *this = std::move(copy);
    }
    return *this;
}

sPresetData::~sPresetData() = default;

void sPresetData::IgnoreParam(std::uint64_t index) noexcept {
    if (index < m_ValueKinds.size())
        m_ValueKinds[index] = ePresetValueIgnore;
}

bool sPresetData::IsSameData(const sPresetData &other) const {
    if (m_DataType != other.m_DataType || m_ValueKinds != other.m_ValueKinds ||
        m_PluginSpecific.size() != other.m_PluginSpecific.size())
        return false;
    if (m_DataType == ePresetDataStates && m_States != other.m_States)
        return false;
    if (m_DataType == ePresetDataRealWorld && m_RealWorld != other.m_RealWorld)
        return false;
    for (std::size_t i = 0; i < m_PluginSpecific.size(); ++i) {
        if (!m_PluginSpecific[i]->IsSameData(*other.m_PluginSpecific[i]))
            return false;
    }
    return true;
}

} // namespace Preset

MIREL_NAMESPACE_END
