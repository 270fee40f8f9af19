#pragma once

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WUNumericCast.h"

MIREL_NAMESPACE_BEGIN

// A half-open rectangle: a point is inside when left <= x < right and top <= y < bottom, so two
// rectangles that share an edge do not intersect. Fields and constructor go top, left, bottom,
// right. Used for short (GUI pixels), float and double; arithmetic on short is done in int and
// stored back. [any-thread]: a plain value.
template <typename T>
struct WURect {
    T top{};
    T left{};
    T bottom{};
    T right{};

    constexpr WURect() noexcept = default;
    constexpr WURect(T top_, T left_, T bottom_, T right_) noexcept
        : top(top_), left(left_), bottom(bottom_), right(right_) {}

    constexpr bool IsEmpty() const noexcept { return left >= right || top >= bottom; }
    // True for the all-zero rectangle that Reset makes.
    constexpr bool IsReset() const noexcept {
        return top == T(0) && left == T(0) && bottom == T(0) && right == T(0);
    }
    constexpr void Reset() noexcept { top = left = bottom = right = T(0); }

    constexpr void Set(T top_, T left_, T bottom_, T right_) noexcept {
        top = top_;
        left = left_;
        bottom = bottom_;
        right = right_;
    }
    constexpr void Set(const WURect &other) noexcept { *this = other; }
    constexpr void Set(const WCPoint2D<T> &topLeft, const WCPoint2D<T> &bottomRight) noexcept {
        Set(topLeft.y, topLeft.x, bottomRight.y, bottomRight.x);
    }
    constexpr void SetTopLeftWidthHeight(T top_, T left_, T width, T height) noexcept {
        Set(top_, left_, static_cast<T>(top_ + height), static_cast<T>(left_ + width));
    }

    constexpr WURect &Offset(T horizontal, T vertical) noexcept {
        left = static_cast<T>(left + horizontal);
        right = static_cast<T>(right + horizontal);
        top = static_cast<T>(top + vertical);
        bottom = static_cast<T>(bottom + vertical);
        return *this;
    }
    constexpr WURect &Offset(const WCPoint2D<T> &delta) noexcept {
        return Offset(delta.x, delta.y);
    }
    // Moves the top-left corner to (x, y), keeping the size.
    constexpr WURect &MoveTo(T x, T y) noexcept {
        return Offset(static_cast<T>(x - left), static_cast<T>(y - top));
    }
    constexpr WURect &MoveTo(const WCPoint2D<T> &topLeft) noexcept {
        return MoveTo(topLeft.x, topLeft.y);
    }
    constexpr WURect &MoveToOrigin() noexcept { return MoveTo(T(0), T(0)); }
    // Left and right move outwards by `horizontal`, top and bottom by `vertical`; negative
    // values shrink.
    constexpr WURect &Expand(T horizontal, T vertical) noexcept {
        left = static_cast<T>(left - horizontal);
        right = static_cast<T>(right + horizontal);
        top = static_cast<T>(top - vertical);
        bottom = static_cast<T>(bottom + vertical);
        return *this;
    }
    // All four fields times `factor`, truncated toward zero.
    constexpr WURect &Scale(double factor) noexcept {
        top = Utils::TruncateToRange<T>(static_cast<double>(top) * factor);
        left = Utils::TruncateToRange<T>(static_cast<double>(left) * factor);
        bottom = Utils::TruncateToRange<T>(static_cast<double>(bottom) * factor);
        right = Utils::TruncateToRange<T>(static_cast<double>(right) * factor);
        return *this;
    }

    // Grows to cover `other` too. An empty rectangle is not skipped: the union with the
    // all-zero rectangle reaches the origin.
    constexpr WURect &Union(const WURect &other) noexcept {
        top = other.top < top ? other.top : top;
        left = other.left < left ? other.left : left;
        bottom = other.bottom > bottom ? other.bottom : bottom;
        right = other.right > right ? other.right : right;
        return *this;
    }
    // The overlap into `out` and true; with no strict overlap an all-zero rectangle and false.
    constexpr bool GetIntersection(const WURect &other, WURect &out) const noexcept {
        const WURect overlap(top > other.top ? top : other.top,
                             left > other.left ? left : other.left,
                             bottom < other.bottom ? bottom : other.bottom,
                             right < other.right ? right : other.right);
        if (overlap.IsEmpty()) {
            out.Reset();
            return false;
        }
        out = overlap;
        return true;
    }
    constexpr bool IsIntersecting(const WURect &other) const noexcept {
        WURect unused;
        return GetIntersection(other, unused);
    }
    constexpr bool PointInRect(const WCPoint2D<T> &p) const noexcept {
        return left <= p.x && p.x < right && top <= p.y && p.y < bottom;
    }
    // True when `inner` lies wholly inside this rectangle.
    constexpr bool RectInRect(const WURect &inner) const noexcept {
        return inner.left >= left && inner.right <= right && inner.top >= top &&
               inner.bottom <= bottom;
    }

    constexpr WCPoint2D<T> Center() const noexcept {
        return WCPoint2D<T>(static_cast<T>((left + right) / 2), static_cast<T>((top + bottom) / 2));
    }
    constexpr WCPoint2D<T> TopLeft() const noexcept { return WCPoint2D<T>(left, top); }
    constexpr WCPoint2D<T> TopRight() const noexcept { return WCPoint2D<T>(right, top); }
    constexpr WCPoint2D<T> BottomLeft() const noexcept { return WCPoint2D<T>(left, bottom); }
    constexpr WCPoint2D<T> BottomRight() const noexcept { return WCPoint2D<T>(right, bottom); }
    constexpr T Width() const noexcept { return static_cast<T>(right - left); }
    constexpr T Height() const noexcept { return static_cast<T>(bottom - top); }

    constexpr bool operator==(const WURect &) const noexcept = default;
    // Moves the rectangle by minus the point.
    constexpr WURect &operator-=(const WCPoint2D<T> &p) noexcept {
        return Offset(static_cast<T>(-p.x), static_cast<T>(-p.y));
    }
};

MIREL_NAMESPACE_END
