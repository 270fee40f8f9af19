#include "Code/GUI/WUImageDecoder.h"

#include <atomic>
#include <cstring>
#include <new>

#include <png.h>
#include <webp/decode.h>

MIREL_NAMESPACE_BEGIN

namespace ImageDecoder {

namespace {

std::atomic<std::uint64_t> g_NumDecodes{0};

bool SizeIsSane(std::int64_t width, std::int64_t height) noexcept {
    return width > 0 && height > 0 && width <= kMaxImageSide && height <= kMaxImageSide &&
           width * height <= kMaxImagePixels;
}

// Deflate expands at most about 1032 times, so pixels beyond that ratio to the file's size
// cannot be in it: such a header is refused before the pixels are allocated.
bool PNGSizeFitsData(std::int64_t width, std::int64_t height, std::uint64_t bytes) noexcept {
    return static_cast<std::uint64_t>((width * 4 + 1) * height) <= bytes * 1100;
}

// Room for the pixels without letting a bad_alloc out.
WTErr Allocate(WSDecodedImage &image, std::int32_t width, std::int32_t height) noexcept {
    try {
        image.m_Pixels.resize(static_cast<std::size_t>(width) * height * 4);
    } catch (...) {
        return eMemNewFailed;
    }
    image.m_Width = width;
    image.m_Height = height;
    image.m_BytesPerPixel = 4;
    return eNoErr;
}

} // namespace

EImageFormat SniffFormat(const void *data, std::uint64_t size) noexcept {
    static constexpr unsigned char kPNG[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    const auto *bytes = static_cast<const unsigned char *>(data);
    if (bytes == nullptr)
        return eImageUnknown;
    if (size >= 8 && std::memcmp(bytes, kPNG, 8) == 0)
        return eImagePNG;
    if (size >= 12 && std::memcmp(bytes, "RIFF", 4) == 0 && std::memcmp(bytes + 8, "WEBP", 4) == 0)
        return eImageWebP;
    return eImageUnknown;
}

WTErr Decode(const void *data, std::uint64_t size, WSDecodedImage &out) {
    switch (SniffFormat(data, size)) {
    case eImagePNG: return DecodePNG(data, size, out);
    case eImageWebP: return DecodeWebP(data, size, out);
    default: return eGMUnsupportedImageFormat;
    }
}

WTErr DecodePNG(const void *data, std::uint64_t size, WSDecodedImage &out) {
    g_NumDecodes.fetch_add(1, std::memory_order_relaxed);
    if (SniffFormat(data, size) != eImagePNG)
        return eGMUnsupportedImageFormat;
    // The simplified reader keeps libpng's longjmp inside libpng and reports by its return value.
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, data, static_cast<png_size_t>(size)) == 0)
        return eGMInvalidImage;
    if (!SizeIsSane(image.width, image.height) ||
        !PNGSizeFitsData(image.width, image.height, size)) {
        png_image_free(&image);
        return eGMInvalidImage;
    }
    image.format = PNG_FORMAT_RGBA;
    WSDecodedImage decoded;
    if (const WTErr err = Allocate(decoded, static_cast<std::int32_t>(image.width),
                                   static_cast<std::int32_t>(image.height));
        err != eNoErr) {
        png_image_free(&image);
        return err;
    }
    if (png_image_finish_read(&image, nullptr, decoded.m_Pixels.data(), 0, nullptr) == 0) {
        png_image_free(&image);
        return eGMInvalidImage;
    }
    // A warning (a bad CRC past the pixels, say) still gave whole pixels; errors do not get here.
    out = std::move(decoded);
    return eNoErr;
}

WTErr DecodeWebP(const void *data, std::uint64_t size, WSDecodedImage &out) {
    g_NumDecodes.fetch_add(1, std::memory_order_relaxed);
    if (SniffFormat(data, size) != eImageWebP)
        return eGMUnsupportedImageFormat;
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    int width = 0, height = 0;
    if (WebPGetInfo(bytes, static_cast<std::size_t>(size), &width, &height) == 0 ||
        !SizeIsSane(width, height))
        return eGMInvalidImage;
    WSDecodedImage decoded;
    if (const WTErr err = Allocate(decoded, width, height); err != eNoErr)
        return err;
    if (WebPDecodeRGBAInto(bytes, static_cast<std::size_t>(size), decoded.m_Pixels.data(),
                           decoded.m_Pixels.size(), width * 4) == nullptr)
        return eGMInvalidImage;
    out = std::move(decoded);
    return eNoErr;
}

std::uint64_t GetNumDecodes() noexcept {
    return g_NumDecodes.load(std::memory_order_relaxed);
}

} // namespace ImageDecoder

MIREL_NAMESPACE_END
