#pragma once

#include <cmath>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace DSP {

// The level a gain of 0 (or less) shows as: far below anything a meter or trim can reach, and
// still a number that arithmetic and text can carry.
inline constexpr double kMinusInfinityDb = -1000.0;

// The one-pole coefficient that decays by 1/e in `ms` milliseconds when applied `rate` times a
// second. A time of 0 or less (or a rate of 0 or less) is no smoothing at all: 0.
inline double msToDspCoef(double ms, double rate) {
    if (!(ms > 0.0) || !(rate > 0.0))
        return 0.0;
    return std::exp(-1000.0 / (ms * rate));
}

// A linear gain in decibels; kMinusInfinityDb for silence.
inline double GainTodb(double gain) {
    if (!(gain > 0.0))
        return kMinusInfinityDb;
    return 20.0 * std::log10(gain);
}

} // namespace DSP

MIREL_NAMESPACE_END
