#pragma once

#include <type_traits>

#include "core/MirelNamespace.h"
#include "core/WUNumericCast.h"

MIREL_NAMESPACE_BEGIN

// A point or a vector of two coordinates, x then y. Used for short (the GUI's pixels), float and
// double. Arithmetic on short is done in int and stored back into short.
// [any-thread]: a plain value.
template <typename T>
struct WCPoint2D {
    T x{};
    T y{};

    constexpr WCPoint2D() noexcept = default;
    constexpr WCPoint2D(T x_, T y_) noexcept : x(x_), y(y_) {}

    constexpr T GetX() const noexcept { return x; }
    constexpr T GetY() const noexcept { return y; }

    constexpr WCPoint2D &Offset(T dx, T dy) noexcept {
        x = static_cast<T>(x + dx);
        y = static_cast<T>(y + dy);
        return *this;
    }
    // Both coordinates times `factor`, truncated toward zero.
    constexpr WCPoint2D &Scale(double factor) noexcept {
        x = Utils::TruncateToRange<T>(static_cast<double>(x) * factor);
        y = Utils::TruncateToRange<T>(static_cast<double>(y) * factor);
        return *this;
    }
    // The point of absolute differences of x and of y; not a length.
    constexpr WCPoint2D GetDistanceFrom(const WCPoint2D &other) const noexcept {
        return WCPoint2D(static_cast<T>(x > other.x ? x - other.x : other.x - x),
                         static_cast<T>(y > other.y ? y - other.y : other.y - y));
    }

    constexpr WCPoint2D operator-() const noexcept {
        return WCPoint2D(static_cast<T>(-x), static_cast<T>(-y));
    }
    constexpr WCPoint2D operator+(const WCPoint2D &o) const noexcept {
        return WCPoint2D(static_cast<T>(x + o.x), static_cast<T>(y + o.y));
    }
    constexpr WCPoint2D operator-(const WCPoint2D &o) const noexcept {
        return WCPoint2D(static_cast<T>(x - o.x), static_cast<T>(y - o.y));
    }
    constexpr WCPoint2D &operator+=(const WCPoint2D &o) noexcept { return Offset(o.x, o.y); }
    constexpr WCPoint2D &operator-=(const WCPoint2D &o) noexcept {
        x = static_cast<T>(x - o.x);
        y = static_cast<T>(y - o.y);
        return *this;
    }
    constexpr bool operator==(const WCPoint2D &o) const noexcept = default;
};

// Arithmetic shift of both coordinates; a shift outside the width of T is clamped into it. A free
// function, so that instantiating a point of a floating type never touches it.
template <typename T>
requires std::is_integral_v<T>
constexpr WCPoint2D<T> operator>>(const WCPoint2D<T> &p, short shift) noexcept {
    constexpr int kMaxShift = static_cast<int>(sizeof(T)) * 8 - 1;
    const int s = shift < 0 ? 0 : (shift > kMaxShift ? kMaxShift : shift);
    return WCPoint2D<T>(static_cast<T>(p.x >> s), static_cast<T>(p.y >> s));
}

MIREL_NAMESPACE_END
