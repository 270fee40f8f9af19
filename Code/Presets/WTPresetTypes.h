#pragma once

#include <cstdint>
#include <string_view>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// Codes of the preset readers that are in use but have no name in the error table, so
// WTErrName gives "Unnamed error" for them.
inline constexpr WTErr kErrPresetChunkEmpty = -5023;    // a chunk came out (or came in) empty
inline constexpr WTErr kErrPresetHasNoData = -5011;     // a preset to load holds no setup
inline constexpr WTErr kErrForeignPresetVendor = -7974; // a .yps file of another maker
inline constexpr WTErr kErrUnknownChunkID = -1;         // a chunk id the frame does not keep

// Host chunk ids: the whole state, the current setup alone, and the always-empty preferences.
inline constexpr WCFourCC kChunkWholeState("XPst");
inline constexpr WCFourCC kChunkCurrentSetup("curS");
inline constexpr WCFourCC kChunkPreferences("pref");

// Where a preset is kept. Values 1 and 2 are formats no file has any more.
enum EPresetsFormat : int {
    ePresetsFormatUnknown = 0,
    ePresetsFormatOld1 = 1,
    ePresetsFormatOld2 = 2,
    ePresetsFormatResource = 3,  // resource "Presets" (id 1000 by default) in a bundle
    ePresetsFormatXMLFile = 4,   // an .xps file
    ePresetsFormatXMLString = 5, // a host chunk in memory
    ePresetsFormatYAMLFile = 6,  // a .yps file
};

// Where a preset came from; 0 is shown as factory.
enum EPresetSection : int {
    ePresetSectionNone = 0,
    ePresetSectionExternalFile = 1,
    ePresetSectionFactory = 2,
    ePresetSectionDynamicFactory = 3,
    ePresetSectionUser = 4,
    ePresetSectionHostPresetChunk = 5,
    ePresetSectionInternalPresetChunk = 6,
    ePresetSectionStartup = 7,
    ePresetSectionCloud = 8,
};

// "Factory", "ExternalFile", ..., "Unknown" for a value outside the table. [any-thread]
const char *GetPresetSectionName(int section) noexcept;
// The inverse; an unknown or null name gives 0. [any-thread]
EPresetSection ConvertCategoryTypeToPresetSection(const char *name) noexcept;

enum EPresetInfoFlags : std::uint32_t {
    ePresetFlagSeparator = 1,
    ePresetFlagDummyTitle = 2,
    ePresetFlagLocked = 4,
    ePresetFlagDisabled = 8, // set on the later of two equal entries of a list
    ePresetFlagReadOnly = 16,
    ePresetFlagUndoOnly = 32, // save only what may be undone
};

// What a menu entry stands for when it was chosen.
enum EMenuItemType : int {
    eMenuItemNone = 0,
    eMenuItemPreset = 1,
    eMenuItemSeparator = 2,
    eMenuItemTitle = 3,
    eMenuItemCommand = 4,
};

// The kinds of data a plug-in keeps under a tag, with their words in "DataType".
enum EPluginSpecificDataTypes : int {
    ePSNoData = 0,
    ePSBufferDouble = 1,
    ePSBufferFloat = 2,
    ePSBufferLong = 3,
    ePSBufferString = 4,
    ePSCompressedBase64 = 5,
    ePSXMLObject = 6,
    ePSCharacterData = 7,
};

// "NoData" ... "CharacterData"; "Unknown" for a value outside the table. [any-thread]
const char *GetPluginSpecificDataTypeWord(int type) noexcept;
// An unknown or null word gives ePSNoData. [any-thread]
EPluginSpecificDataTypes GetPluginSpecificDataTypeFromWord(const char *word) noexcept;

// What a stored parameter value means.
enum EPresetValueKind : unsigned int {
    ePresetValue = 0,
    ePresetValueIgnore = 1, // token "*": the parameter keeps its value
    ePresetValueReset = 2,  // token "R": the parameter takes its default
};

// The parameter part of one setup.
enum EPresetDataType : int {
    ePresetDataNotSet = -1,
    ePresetDataStates = 0,
    ePresetDataRealWorld = 1,
    ePresetDataReset = 2,
    ePresetDataNone = 3,
};

// A MIDI attachment's event, by the status nibble of its message; the universal real-time
// system exclusive message takes its sub-id 0x7F.
enum EMIDIEventType : int {
    eMIDIUnknown = 0,
    eMIDINoteOff = 0x80,
    eMIDINoteOn = 0x90,
    eMIDIPolyKeyPressure = 0xA0,
    eMIDIControlChange = 0xB0,
    eMIDIProgramChange = 0xC0,
    eMIDIChannelPressure = 0xD0,
    eMIDIPitchWheelChange = 0xE0,
    eMIDISystemExclusive = 0xF0,
    eMIDIUniversalRealTimeSysEx = 0x7F,
};

// "Note Off" ... "Universal RealTime System Exclusive", "Unknown" otherwise. [any-thread]
const char *GetMIDIEventTypeName(int type) noexcept;
EMIDIEventType GetMIDIEventTypeFromName(const char *name) noexcept;

// Sets a fixed string from outside text, cut at its capacity but never inside a UTF-8 sequence,
// so a cut name still writes as text the next reader accepts. [any-thread]
void AssignPresetText(WCFixedStringBase &target, std::string_view text) noexcept;

} // namespace Preset

MIREL_NAMESPACE_END
