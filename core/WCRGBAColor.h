#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A colour as bytes red, green, blue. [any-thread]: a plain value.
struct WCRGBColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    constexpr WCRGBColor() noexcept = default;
    constexpr WCRGBColor(std::uint8_t r, std::uint8_t g, std::uint8_t b) noexcept
        : red(r), green(g), blue(b) {}
    constexpr bool operator==(const WCRGBColor &) const noexcept = default;
};

// A colour with its opacity; alpha 255 is opaque, and is what a colour without one gets.
// [any-thread]: a plain value.
struct WCRGBAColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    constexpr WCRGBAColor() noexcept = default;
    constexpr WCRGBAColor(std::uint8_t r, std::uint8_t g, std::uint8_t b,
                          std::uint8_t a = 255) noexcept
        : red(r), green(g), blue(b), alpha(a) {}
    constexpr explicit WCRGBAColor(const WCRGBColor &c, std::uint8_t a = 255) noexcept
        : red(c.red), green(c.green), blue(c.blue), alpha(a) {}
    constexpr WCRGBColor ToRGB() const noexcept { return WCRGBColor(red, green, blue); }
    constexpr bool operator==(const WCRGBAColor &) const noexcept = default;
};

MIREL_NAMESPACE_END
