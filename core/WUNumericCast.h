#pragma once

#include <limits>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// Converts a double to T truncating toward zero, clamped to T's range (NaN gives 0), so scaling a
// coordinate by any factor is defined behaviour.
template <typename T>
constexpr T TruncateToRange(double value) noexcept {
    if (value != value)
        return T(0);
    if (value <= static_cast<double>(std::numeric_limits<T>::lowest()))
        return std::numeric_limits<T>::lowest();
    if (value >= static_cast<double>(std::numeric_limits<T>::max()))
        return std::numeric_limits<T>::max();
    return static_cast<T>(value);
}

} // namespace Utils

MIREL_NAMESPACE_END
