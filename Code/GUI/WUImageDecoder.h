#pragma once

#include <cstdint>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// Pixels of a decoded image: rows of RGBA bytes, top row first, no padding.
struct WSDecodedImage {
    std::vector<std::uint8_t> m_Pixels;
    std::int32_t m_Width = 0;
    std::int32_t m_Height = 0;
    std::int32_t m_BytesPerPixel = 0;

    const std::uint8_t *GetRow(std::int32_t y) const noexcept {
        return m_Pixels.data() + static_cast<std::size_t>(y) * m_Width * m_BytesPerPixel;
    }
};

// Decoding of PNG and WebP bytes, which come from bundles and so are outside data: a broken
// image gives a code, never a crash, and a decoded image is at most kMaxImageSide pixels a side
// and kMaxImagePixels in all.
// [any-thread]
namespace ImageDecoder {

enum EImageFormat : int { eImageUnknown = 0, eImagePNG = 1, eImageWebP = 2 };

inline constexpr std::int32_t kMaxImageSide = 16384;
// 256 MB of RGBA: room for the longest filmstrips of knobs, not for a header that lies.
inline constexpr std::int64_t kMaxImagePixels = std::int64_t(1) << 26;

// From the first bytes: the PNG signature, or "RIFF" ... "WEBP".
EImageFormat SniffFormat(const void *data, std::uint64_t size) noexcept;
// eGMUnsupportedImageFormat for bytes that are neither; eGMInvalidImage for a truncated or
// corrupt image or one beyond the size limit; eMemNewFailed when the pixels find no memory.
// `out` changes only on success.
WTErr Decode(const void *data, std::uint64_t size, WSDecodedImage &out);
WTErr DecodePNG(const void *data, std::uint64_t size, WSDecodedImage &out);
WTErr DecodeWebP(const void *data, std::uint64_t size, WSDecodedImage &out);
// Images decoded in this process so far (successful or not), for tests of the sharing.
std::uint64_t GetNumDecodes() noexcept;

} // namespace ImageDecoder

MIREL_NAMESPACE_END
