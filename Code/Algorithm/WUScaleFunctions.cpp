#include "Code/Algorithm/WUScaleFunctions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

MIREL_NAMESPACE_BEGIN

namespace {

constexpr double kStateMax = 1000.0;

// A resolution must be a positive finite number; anything else means "whole units".
void SetResolution(sSCALE_INFO &scale, double res) noexcept {
    if (!(res > 0.0) || !std::isfinite(res) || !std::isfinite(1.0 / res))
        res = 1.0;
    scale.resolution = res;
    scale.inverseResolution = 1.0 / res;
}

double Finite(double value) noexcept {
    return std::isfinite(value) ? value : 0.0;
}

// The integer part of a state as an index, modulo `count` and never negative. States far
// outside the axis still land on a valid index instead of overflowing the conversion.
std::int64_t IndexModulo(double state, std::int64_t count) noexcept {
    if (count <= 0 || !std::isfinite(state))
        return 0;
    const double wrapped = std::fmod(std::trunc(state), static_cast<double>(count));
    auto index = static_cast<std::int64_t>(wrapped);
    if (index < 0)
        index += count;
    return index;
}

} // namespace

double RoundToResolution(double x, sSCALE_INFO const *scale) noexcept {
    const double whole = std::floor(x);
    const double fraction = x - whole;
    return whole + std::floor(fraction * scale->inverseResolution + 0.5) * scale->resolution;
}

double NoScale(double value, sSCALE_INFO *) {
    return value;
}

// ---- linear ---------------------------------------------------------------------------------

void SetScaleLin(sSCALE_INFO &scale, double min, double max, double res) noexcept {
    min = Finite(min);
    max = Finite(max);
    scale.base = min;
    scale.factor = Finite((max - min) * 0.001);
    SetResolution(scale, res);
}

double LinearScale(double state, sSCALE_INFO *scale) {
    return RoundToResolution(state * scale->factor + scale->base, scale);
}

double ExtendedResLinearScale(double state, sSCALE_INFO *scale) {
    return std::floor((state * scale->factor + scale->base) * scale->inverseResolution + 0.5) *
           scale->resolution;
}

double InverseLinearScale(double value, sSCALE_INFO *scale) {
    if (scale->factor == 0.0)
        return 0.0;
    return (value - scale->base) / scale->factor;
}

// ---- logarithmic ----------------------------------------------------------------------------

void SetScaleLog(sSCALE_INFO &scale, double min, double max, double res) noexcept {
    scale.base = Finite(min);
    // A range that does not lie above zero has no logarithmic curve: the factor 1 makes every
    // state give the minimum and the inverse give 0.
    double factor = 1.0;
    if (min > 0.0 && max > 0.0 && std::isfinite(min) && std::isfinite(max))
        factor = std::pow(max / min, 0.001);
    scale.factor = std::isfinite(factor) && factor > 0.0 ? factor : 1.0;
    scale.logFactor = std::log(scale.factor);
    scale.logFactorOf = scale.factor;
    SetResolution(scale, res);
}

double LogScale(double state, sSCALE_INFO *scale) {
    return RoundToResolution(std::pow(scale->factor, state) * scale->base, scale);
}

double ExtendedResLogScale(double state, sSCALE_INFO *scale) {
    return std::floor(std::pow(scale->factor, state) * scale->base * scale->inverseResolution +
                      0.5) *
           scale->resolution;
}

double InverseLogScale(double value, sSCALE_INFO *scale) {
    const double factor = scale->factor;
    if (!(value > 0.0) || !(scale->base > 0.0) || !(factor > 0.0) || factor == 1.0)
        return 0.0;
    // The same logarithm either way, so the cached one changes no bit of the result.
    const double logFactor = scale->logFactorOf == factor ? scale->logFactor : std::log(factor);
    return std::log(value / scale->base) / logFactor;
}

// ---- the standard frequency curve -----------------------------------------------------------

double FrqScale(double state, sSCALE_INFO *scale) {
    const double t = 2.0 * (state * 0.001 - 0.25);
    const double e = std::clamp(t, 0.0, 1.0) + std::min(t, 0.0) * 1.430676558073392 +
                     2.0 * (std::max(t, 1.0) - 1.0) * 0.4306765580733929;
    return RoundToResolution(200.0 * std::pow(25.0, e), scale);
}

double InverseFrqScale(double value, sSCALE_INFO *) {
    if (!(value > 0.0))
        return 0.0;
    const double u = std::log(value * 0.005) / std::log(25.0);
    const double w = (std::min(u, 0.0) * 0.6989700043360193 + std::clamp(u, 0.0, 1.0) +
                      (std::max(u, 1.0) - 1.0) * 1.1609640474436815) *
                         0.5 +
                     0.25;
    return std::clamp(w * 1000.0, 0.0, kStateMax);
}

// ---- toggles --------------------------------------------------------------------------------

void SetScaleToggle(sSCALE_INFO &scale, int numStates) noexcept {
    scale.base = numStates;
    scale.factor = 0.0;
    SetResolution(scale, 1.0);
}

double ToggleScale(double state, sSCALE_INFO *scale) {
    const double n = scale->base;
    if (!(n >= 1.0) || !(n < 9.0e18))
        return 0.0;
    return static_cast<double>(IndexModulo(state, static_cast<std::int64_t>(n)));
}

double ToggleRangesScale(double state, sSCALE_INFO *scale) {
    auto const &points = scale->realWorldPoints;
    if (points.empty())
        return 0.0;
    return points[static_cast<std::size_t>(
        IndexModulo(state, static_cast<std::int64_t>(points.size())))];
}

double InverseToggleRangesScale(double value, sSCALE_INFO *scale) {
    auto const &points = scale->realWorldPoints;
    if (points.size() < 2 || !(value >= points.front()))
        return 0.0;
    const std::size_t last = points.size() - 1;
    if (value >= points[last])
        return static_cast<double>(last);
    for (std::size_t i = 0; i < last; ++i) {
        if (value < points[i + 1]) {
            const double halfGap = (points[i + 1] - points[i]) * 0.5;
            return static_cast<double>(value - points[i] < halfGap ? i : i + 1);
        }
    }
    return static_cast<double>(last);
}

double ToggleMapScale(double state, sSCALE_INFO *scale) {
    auto const &states = scale->statePoints;
    auto const &values = scale->realWorldPoints;
    const std::size_t count = std::min(states.size(), values.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (states[i] == state)
            return values[i];
    }
    return 0.0;
}

double InverseToggleMapScale(double value, sSCALE_INFO *scale) {
    auto const &states = scale->statePoints;
    auto const &values = scale->realWorldPoints;
    const std::size_t count = std::min(states.size(), values.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (values[i] == value)
            return states[i];
    }
    return 0.0;
}

// ---- piecewise linear -----------------------------------------------------------------------

double LinearRangesScale(double state, sSCALE_INFO *scale) {
    auto const &states = scale->statePoints;
    auto const &values = scale->realWorldPoints;
    const std::size_t count = std::min(states.size(), values.size());
    if (count == 0)
        return 0.0;
    if (count == 1 || !(state > states.front()))
        return RoundToResolution(values.front(), scale);
    if (state >= states[count - 1])
        return RoundToResolution(values[count - 1], scale);
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const double s0 = states[i];
        const double s1 = states[i + 1];
        if (state <= s1) {
            const double span = s1 - s0;
            const double value =
                span == 0.0 ? values[i + 1]
                            : values[i] + (state - s0) * (values[i + 1] - values[i]) / span;
            return RoundToResolution(value, scale);
        }
    }
    return RoundToResolution(values[count - 1], scale);
}

double InverseLinearRangesScale(double value, sSCALE_INFO *scale) {
    auto const &states = scale->statePoints;
    auto const &values = scale->realWorldPoints;
    const std::size_t count = std::min(states.size(), values.size());
    if (count == 0 || std::isnan(value))
        return 0.0;
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.begin() + count);
    // Out of range is judged against the table's extent, so a descending table still gives 0
    // below and 1000 above.
    if (value < *lowest)
        return 0.0;
    if (value > *highest)
        return kStateMax;
    for (std::size_t i = 0; i < count; ++i) {
        if (values[i] == value)
            return states[i];
    }
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const double v0 = values[i];
        const double v1 = values[i + 1];
        if ((value > v0 && value < v1) || (value < v0 && value > v1))
            return states[i] + (value - v0) * (states[i + 1] - states[i]) / (v1 - v0);
    }
    return 0.0;
}

double InverseLinearRangesScaleWithRounding(double value, sSCALE_INFO *scale) {
    return std::floor(InverseLinearRangesScale(value, scale) + 0.5);
}

MIREL_NAMESPACE_END
