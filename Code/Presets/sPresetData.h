#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Presets/WTPresetTypes.h"
#include "Code/Presets/sPluginSpecific.h"
#include "Code/Presets/sPresetControlData.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// One setup of a preset: its parameter values (states or real-world values, with a kind per
// value), MIDI attachments, the plug-in's tagged blocks and its free XML. Copies are deep.
// [main-thread] like the preset that holds it.
struct sPresetData {
    sPresetData();
    sPresetData(const sPresetData &other);
    sPresetData &operator=(const sPresetData &other);
    sPresetData(sPresetData &&) noexcept = default;
    sPresetData &operator=(sPresetData &&) noexcept = default;
    ~sPresetData();

    bool LoadParams() const noexcept { return m_LoadParams; }
    bool GetLoadSpecificXMLPreset() const noexcept { return m_LoadSpecificXMLPreset; }
    void SetLoadFlags(bool params, bool specificXML) noexcept {
        m_LoadParams = params;
        m_LoadSpecificXMLPreset = specificXML;
    }
    // Marks a stored value as one the plug-in keeps; an index past the values is ignored.
    void IgnoreParam(std::uint64_t index) noexcept;
    // Same parameter type, values with their kinds, and plug-in specific blocks.
    bool IsSameData(const sPresetData &other) const;

    WCFixedString<127> m_SetupName;
    int m_DataType = ePresetDataNotSet;
    std::uint64_t m_NumParams = 0;
    std::vector<int> m_States;
    std::vector<double> m_RealWorld;
    std::vector<unsigned int> m_ValueKinds;
    std::vector<sPresetControlData> m_ControlData;
    std::vector<std::unique_ptr<sPluginSpecific>> m_PluginSpecific;
    XML::CXMLElement m_PluginSpecificXML;
    EPluginSetup m_Setup = eCurrentSetup;
    bool m_LoadParams = true;
    bool m_LoadSpecificXMLPreset = true;
};

} // namespace Preset

MIREL_NAMESPACE_END
