#pragma once

#include "Code/Algorithm/sSCALE_INFO.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The built-in scale kinds: pairs of functions from state (0 to 1000) to real world and back,
// working on one parameter's sSCALE_INFO. They take no lock and allocate nothing, because the
// update path runs them during drags. [any-thread]

// Rounds the fraction of x to the resolution and keeps the integer part exact:
// floor(x) + floor(frac * inverseResolution + 0.5) * resolution.
double RoundToResolution(double x, sSCALE_INFO const *scale) noexcept;

// "linear": base = min, factor = (max - min) / 1000.
void SetScaleLin(sSCALE_INFO &scale, double min, double max, double res) noexcept;
double LinearScale(double state, sSCALE_INFO *scale);
double ExtendedResLinearScale(double state, sSCALE_INFO *scale);
double InverseLinearScale(double value, sSCALE_INFO *scale);

// "logarithmic": base = min, factor = (max / min) ^ (1 / 1000).
void SetScaleLog(sSCALE_INFO &scale, double min, double max, double res) noexcept;
double LogScale(double state, sSCALE_INFO *scale);
double ExtendedResLogScale(double state, sSCALE_INFO *scale);
double InverseLogScale(double value, sSCALE_INFO *scale);

// "STDFreq": a fixed curve, 20 Hz at state 0, 200 Hz at 250, 5 kHz at 750, 20 kHz at 1000.
double FrqScale(double state, sSCALE_INFO *scale);
double InverseFrqScale(double value, sSCALE_INFO *scale);

// "toggle": the integer state modulo the number of states n, kept in base.
void SetScaleToggle(sSCALE_INFO &scale, int numStates) noexcept;
double ToggleScale(double state, sSCALE_INFO *scale);

// "toggleRanges": the real-world point at the integer state modulo the number of points; back to
// the index of the nearest point.
double ToggleRangesScale(double state, sSCALE_INFO *scale);
double InverseToggleRangesScale(double value, sSCALE_INFO *scale);

// "toggleMap": exact matches only, either way; no match gives 0.
double ToggleMapScale(double state, sSCALE_INFO *scale);
double InverseToggleMapScale(double value, sSCALE_INFO *scale);

// "linearRanges": piecewise linear between the point pairs; descending real-world tables work.
double LinearRangesScale(double state, sSCALE_INFO *scale);
double InverseLinearRangesScale(double value, sSCALE_INFO *scale);
// "linearRangesWithRounding": the same, with the state rounded to an integer.
double InverseLinearRangesScaleWithRounding(double value, sSCALE_INFO *scale);

// The forward function of a scale kind that names nothing known: the value passes unchanged.
double NoScale(double value, sSCALE_INFO *scale);

MIREL_NAMESPACE_END
