#include "Code/Presets/WTPresetTypes.h"

#include <cstring>
#include <iterator>

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kSectionNames[] = {
    "Factory",         "ExternalFile",        "Factory", "DynamicFactory", "User",
    "HostPresetChunk", "InternalPresetChunk", "Startup", "Cloud"};

constexpr const char *kDataTypeWords[] = {"NoData",     "BufferDouble", "BufferFloat",
                                          "BufferLong", "BufferString", "CompressedBase64",
                                          "XMLObject",  "CharacterData"};

struct WSMIDIName {
    EMIDIEventType m_Type;
    const char *m_Name;
};

constexpr WSMIDIName kMIDINames[] = {
    {eMIDINoteOff, "Note Off"},
    {eMIDINoteOn, "Note On"},
    {eMIDIPolyKeyPressure, "Polyphonic Key Pressure"},
    {eMIDIControlChange, "Control Change"},
    {eMIDIProgramChange, "Program Change"},
    {eMIDIChannelPressure, "Channel Pressure"},
    {eMIDIPitchWheelChange, "Pitch Wheel Change"},
    {eMIDISystemExclusive, "System Exclusive"},
    {eMIDIUniversalRealTimeSysEx, "Universal RealTime System Exclusive"},
};

} // namespace

void AssignPresetText(WCFixedStringBase &target, std::string_view text) noexcept {
    std::size_t length = text.size();
    if (length > target.capacity()) {
        length = target.capacity();
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
    }
    target = text.substr(0, length);
}

const char *GetPresetSectionName(int section) noexcept {
    if (section < 0 || section >= int(std::size(kSectionNames)))
        return "Unknown";
    return kSectionNames[section];
}

EPresetSection ConvertCategoryTypeToPresetSection(const char *name) noexcept {
    if (name == nullptr)
        return ePresetSectionNone;
    // Section 0 shares its name with the factory section, so "Factory" finds 2 by starting at 1.
    for (int section = 1; section < int(std::size(kSectionNames)); ++section) {
        if (std::strcmp(name, kSectionNames[section]) == 0)
            return EPresetSection(section);
    }
    return ePresetSectionNone;
}

const char *GetPluginSpecificDataTypeWord(int type) noexcept {
    if (type < 0 || type >= int(std::size(kDataTypeWords)))
        return "Unknown";
    return kDataTypeWords[type];
}

EPluginSpecificDataTypes GetPluginSpecificDataTypeFromWord(const char *word) noexcept {
    if (word == nullptr)
        return ePSNoData;
    for (int type = 0; type < int(std::size(kDataTypeWords)); ++type) {
        if (std::strcmp(word, kDataTypeWords[type]) == 0)
            return EPluginSpecificDataTypes(type);
    }
    return ePSNoData;
}

const char *GetMIDIEventTypeName(int type) noexcept {
    for (const auto &entry : kMIDINames) {
        if (entry.m_Type == type)
            return entry.m_Name;
    }
    return "Unknown";
}

EMIDIEventType GetMIDIEventTypeFromName(const char *name) noexcept {
    if (name == nullptr)
        return eMIDIUnknown;
    for (const auto &entry : kMIDINames) {
        if (std::strcmp(entry.m_Name, name) == 0)
            return entry.m_Type;
    }
    return eMIDIUnknown;
}

} // namespace Preset

MIREL_NAMESPACE_END
