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

void CleanStreamText(std::string_view text, std::string &out, std::size_t maxBytes) {
    out.clear();
    std::size_t i = 0;
    while (i < text.size() && out.size() < maxBytes) {
        const auto byte = static_cast<unsigned char>(text[i]);
        std::size_t length = 0;
        if (byte >= 0x20 && byte < 0x7F)
            length = 1;
        else if (byte >= 0xC2 && byte <= 0xDF)
            length = 2;
        else if (byte >= 0xE0 && byte <= 0xEF)
            length = 3;
        else if (byte >= 0xF0 && byte <= 0xF4)
            length = 4;
        bool valid = length != 0 && i + length <= text.size();
        for (std::size_t k = 1; valid && k < length; ++k)
            valid = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
        // Overlong forms and surrogates are no valid UTF-8 either.
        if (valid && length >= 3) {
            const auto next = static_cast<unsigned char>(text[i + 1]);
            valid = length == 3 ? !(byte == 0xE0 && next < 0xA0) && !(byte == 0xED && next >= 0xA0)
                                : !(byte == 0xF0 && next < 0x90) && !(byte == 0xF4 && next >= 0x90);
        }
        if (valid && out.size() + length <= maxBytes) {
            out.append(text.substr(i, length));
            i += length;
        } else if (valid) {
            break;
        } else {
            out.push_back(byte == '\t' ? ' ' : '?');
            ++i;
        }
    }
}

std::string StreamImagesFolder(std::string_view resourcesURL) {
    std::string folder;
    CleanStreamText(resourcesURL, folder);
    while (!folder.empty() && folder.back() == '/')
        folder.pop_back();
    constexpr std::string_view kResources = "Contents/Resources";
    if (folder.size() < kResources.size() ||
        folder.compare(folder.size() - kResources.size(), kResources.size(), kResources) != 0)
        folder += "/Contents/Resources";
    return folder + "/PNG_/";
}

} // namespace miGS
MIREL_NAMESPACE_END
