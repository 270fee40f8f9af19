#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A point of three coordinates, x, y, z, as carried by vertex arrays. [any-thread]: a plain value.
template <typename T>
struct WCPoint3D {
    T x{};
    T y{};
    T z{};

    constexpr WCPoint3D() noexcept = default;
    constexpr WCPoint3D(T x_, T y_, T z_) noexcept : x(x_), y(y_), z(z_) {}
    constexpr bool operator==(const WCPoint3D &) const noexcept = default;
};

MIREL_NAMESPACE_END
