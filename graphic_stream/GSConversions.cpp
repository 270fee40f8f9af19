#include "graphic_stream/GSConversions.h"

#include <cstdint>

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

std::int32_t Difference16(short high, short low) noexcept {
    // The wrap to 16 bits is the format's rule, not an accident of the arithmetic.
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint16_t>(high) -
                                                                static_cast<std::uint16_t>(low)));
}

short Wrap16(std::int64_t value) noexcept {
    return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(value)));
}

} // namespace

WCSize2D<short> SGSSizeToWCSize2Ds(const SGSSize &size) noexcept {
    return WCSize2D<short>(Wrap16(size.width), Wrap16(size.height));
}

SGSSize WCSize2DsToSGSSize(const WCSize2D<short> &size) noexcept {
    return SGSSize{size.width, size.height};
}

SGSRect WTRectsToSGSRect(const WURect<short> &rect) noexcept {
    SGSRect out;
    out.location.x = rect.left;
    out.location.y = rect.top;
    out.size.width = Difference16(rect.right, rect.left);
    out.size.height = Difference16(rect.bottom, rect.top);
    return out;
}

WURect<short> SGSRectToWTRects(const SGSRect &rect) noexcept {
    const std::int64_t x = rect.location.x;
    const std::int64_t y = rect.location.y;
    return WURect<short>(Wrap16(y), Wrap16(x), Wrap16(y + rect.size.height),
                         Wrap16(x + rect.size.width));
}

WCRGBAColor SGSRGBAColorToWCRGBAColor(const SGSRGBAColor &color) noexcept {
    return WCRGBAColor(color.red, color.green, color.blue, color.alpha);
}

WCRGBColor SGSRGBAColorToWCRGBColor(const SGSRGBAColor &color) noexcept {
    return WCRGBColor(color.red, color.green, color.blue);
}

SGSRGBAColor WCRGBColorToSGSRGBAColor(const WCRGBColor &color) noexcept {
    return SGSRGBAColor{color.red, color.green, color.blue, 255};
}

SGSRGBAColor WCRGBAColorToSGSRGBAColor(const WCRGBAColor &color) noexcept {
    return SGSRGBAColor{color.red, color.green, color.blue, color.alpha};
}

} // namespace miGS
MIREL_NAMESPACE_END
