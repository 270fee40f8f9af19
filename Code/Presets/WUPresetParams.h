#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Presets/CPresetInfo.h"
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

struct sCONTROL_PARAM;

namespace Preset {

// Parameters that live outside the plug-in's main list (hidden ones, or a plug-in's chosen few)
// travel in a preset as a "NoData" block of descriptors: the first, named "0", holds the count,
// then one per parameter, its name and its real-world value with ten decimals. Loading goes by
// name, so a list that changed between versions still finds what it knows.
// [main-thread] under the algorithm's process lock, like every change of values.

inline constexpr const char *kInternalParamsTag = "Internal Params";
inline constexpr const char *kSpecificParamsTag = "Specific Params";

WTErr SaveParamsToPreset(CPresetInfo &info, std::span<const sCONTROL_PARAM> params, const char *tag,
                         EPluginSetup setup);
// Only the parameters at `indexes`; an index past the list is eOutOfRangeNumber and saves
// nothing.
WTErr SaveSpecificParamsToPreset(CPresetInfo &info, std::span<const sCONTROL_PARAM> params,
                                 const std::vector<std::uint64_t> &indexes, const char *tag,
                                 EPluginSetup setup);

// What the main parameter list contributes to one setup of a preset: every parameter's real-world
// value in `setup` (0 or 1) as kind 0, or kind 1 (kept by the plug-in on loading) for a
// display-only parameter, one not saved to presets and, for the undo form (`undoOnly`, the
// preset flag ePresetFlagUndoOnly), one that records no undo. The data becomes real-world data.
void SaveRealWorldToPresetData(sPresetData &data, std::span<const sCONTROL_PARAM> params, int setup,
                               bool undoOnly);

// Sets every parameter named in the block of `setup` in `targetSetup` (0 or 1): the value, the
// state through the parameter's scale, update flags 3. Then no setup of the preset loads its
// parameters again. ePluginSpecifcNotExisting without the block, and then nothing changes.
WTErr LoadParamsFromPreset(CPresetInfo &info, std::span<sCONTROL_PARAM> params, const char *tag,
                           EPluginSetup setup, int targetSetup);
// The same for every setup of the preset; "CURRENT" data goes to `currentSetup`.
WTErr LoadAllParamsFromPreset(CPresetInfo &info, std::span<sCONTROL_PARAM> params, const char *tag,
                              int currentSetup);

} // namespace Preset

MIREL_NAMESPACE_END
