#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A width and a height. [any-thread]: a plain value.
template <typename T>
struct WCSize2D {
    T width{};
    T height{};

    constexpr WCSize2D() noexcept = default;
    constexpr WCSize2D(T width_, T height_) noexcept : width(width_), height(height_) {}
    constexpr bool IsEmpty() const noexcept { return width <= T(0) || height <= T(0); }
    constexpr bool operator==(const WCSize2D &) const noexcept = default;
};

MIREL_NAMESPACE_END
