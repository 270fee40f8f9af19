#pragma once

#include <string>
#include <vector>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// The number texts of a preset's "Parameters" element. [any-thread]

// atol without the locale: optional blanks and sign, then decimal digits; 0 when there are none.
// Digits past the range of long wrap, as they always did.
long WUAtol(const char *text) noexcept;

// The conversion presets older than "11.0.0" were read with, kept so such presets load to the
// very same values: the integer part and each fraction digit are accumulated in a double
// (fraction digits scaled by repeated tenths), then an exponent "e"/"E" is applied by repeated
// multiplication. It differs from a correctly rounded conversion in the last bits.
double WUAtof_Obsolete(const char *text) noexcept;

// The real-world text of `values`, one token per value: "%.20g" under the C locale for kind 0,
// "*" for kind 1, and for kind 2 the text of the value before it (which the format has always
// done, since the writer reused its buffer), "0" for a first value. A line feed follows every
// tenth token, a blank every other. With `allAsNumbers` every value is printed as a number,
// whatever its kind. `kinds` shorter than `values` counts the missing kinds as 0.
std::string FormatRealWorldText(const std::vector<double> &values,
                                const std::vector<unsigned int> &kinds, bool allAsNumbers);

// Reads a "Parameters" text split at any of " \t\n;". "*" is kind 1 and "R" kind 2, both with
// value 0; any other token is kind 0. Real-world tokens are cut to 127 characters; a token made
// only of "0123456789,." has its commas read as decimal points (a preset written where the
// comma is the decimal mark); then WUStod, or WUAtof_Obsolete when `obsolete`. States use
// WUAtol. The outputs are replaced.
void ParseRealWorldText(const char *text, bool obsolete, std::vector<double> &values,
                        std::vector<unsigned int> &kinds);
void ParseStatesText(const char *text, std::vector<int> &states, std::vector<unsigned int> &kinds);

} // namespace Preset

MIREL_NAMESPACE_END
