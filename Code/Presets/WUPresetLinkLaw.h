#pragma once

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Presets/CPresetInfo.h"
#include "Code/Presets/WSLinkLaw.h"
#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// A link law travels in a preset as a "NoData" block of descriptors, so a file stays readable
// and can be mended by hand: "source_parameter" and "target_parameter" (parameter ids),
// "NumPoints", then per point i "Source State i" and "Target State i". Numbers are written in
// their shortest form that reads back to the same double.
// [main-thread], or wherever the preset is owned by one thread.

inline constexpr const char *kLinkLawTag = "Link Law";

// Adds the block under `tag` in `setup`. A state that is not finite is eNotANumber and a tag
// already in the setup eDuplicatePluginSpecificTag; then the preset is left as it was.
WTErr SaveLinklawToPreset(CPresetInfo &info, const WSLinkLaw &law, const char *tag,
                          EPluginSetup setup);

// Reads the block of `tag` in `setup` into `law`, which changes only on success.
// ePluginSpecifcNotExisting without the block; eValueNotFound when "source_parameter",
// "target_parameter" or "NumPoints" is missing; eOutOfRangeNumber when "NumPoints" promises a
// point the block does not hold (or a number is out of range); eNotANumber, eNotJustANumber or
// eNegativeNumber for a value that is not the number it must be. Descriptors of points past
// "NumPoints" are ignored, and of two descriptors of one name the first counts.
WTErr LoadLinklawFromPreset(const CPresetInfo &info, const char *tag, EPluginSetup setup,
                            WSLinkLaw &law);

} // namespace Preset

MIREL_NAMESPACE_END
