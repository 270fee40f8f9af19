#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// Where a preset came from; 2 is the factory list.
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

// The identity of one loaded preset, as far as the plug-in frame reads it: its section, its
// index in its list and its name. The presets layer replaces this record with its full form
// (per-setup data, flags, versions); the frame keeps to these three fields.
class CPresetInfo {
public:
    EPresetSection m_Section = ePresetSectionNone;
    std::int64_t m_IndexInList = -1;
    WCFixedString<127> m_PresetName;
};

} // namespace Preset

MIREL_NAMESPACE_END
