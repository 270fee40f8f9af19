#include "graphic_stream/GSCairoImageDecoder.h"

#include <cstring>

#include <png.h>
#include <webp/decode.h>

MIREL_NAMESPACE_BEGIN
namespace miGS {
namespace GSCairoImageDecoder {

namespace {

bool SizeAllowed(std::int64_t width, std::int64_t height) noexcept {
    return width > 0 && height > 0 && width <= kMaxImageSide && height <= kMaxImageSide &&
           width * height <= kMaxImagePixels;
}

// An empty surface of the decoded size, or null with its code.
cairo_surface_t *NewSurface(int width, int height, WTErr &outError) {
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        outError = eMemNewFailed;
        return nullptr;
    }
    return surface;
}

// cairo keeps each pixel as one native 32-bit word with its colour multiplied by its alpha; the
// decoders give straight BGRA bytes, which on a little-endian machine are that word unmultiplied.
void Premultiply(cairo_surface_t *surface) {
    cairo_surface_flush(surface);
    unsigned char *pixels = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    for (int y = 0; y < height; ++y) {
        unsigned char *p = pixels + static_cast<std::ptrdiff_t>(y) * stride;
        for (int x = 0; x < width; ++x, p += 4) {
            const unsigned alpha = p[3];
            if (alpha == 255)
                continue;
            for (int c = 0; c < 3; ++c)
                p[c] = static_cast<unsigned char>((p[c] * alpha + 127) / 255);
        }
    }
    cairo_surface_mark_dirty(surface);
}

cairo_surface_t *DecodePNG(const void *data, std::uint64_t size, WTErr &outError) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, data, size)) {
        outError = eGMInvalidImage;
        return nullptr;
    }
    if (!SizeAllowed(image.width, image.height)) {
        png_image_free(&image);
        outError = eGMInvalidImage;
        return nullptr;
    }
    image.format = PNG_FORMAT_BGRA;
    cairo_surface_t *surface =
        NewSurface(static_cast<int>(image.width), static_cast<int>(image.height), outError);
    if (surface == nullptr) {
        png_image_free(&image);
        return nullptr;
    }
    cairo_surface_flush(surface);
    if (!png_image_finish_read(&image, nullptr, cairo_image_surface_get_data(surface),
                               cairo_image_surface_get_stride(surface), nullptr)) {
        png_image_free(&image);
        cairo_surface_destroy(surface);
        outError = eGMInvalidImage;
        return nullptr;
    }
    Premultiply(surface);
    return surface;
}

cairo_surface_t *DecodeWebP(const void *data, std::uint64_t size, WTErr &outError) {
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    int width = 0;
    int height = 0;
    if (!WebPGetInfo(bytes, size, &width, &height) || !SizeAllowed(width, height)) {
        outError = eGMInvalidImage;
        return nullptr;
    }
    cairo_surface_t *surface = NewSurface(width, height, outError);
    if (surface == nullptr)
        return nullptr;
    cairo_surface_flush(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    if (WebPDecodeBGRAInto(bytes, size, cairo_image_surface_get_data(surface),
                           static_cast<std::size_t>(stride) * height, stride) == nullptr) {
        cairo_surface_destroy(surface);
        outError = eGMInvalidImage;
        return nullptr;
    }
    Premultiply(surface);
    return surface;
}

} // namespace

cairo_surface_t *Decode(const void *data, std::uint64_t size, WTErr &outError) {
    outError = eNoErr;
    static constexpr unsigned char kPNGSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    const auto *bytes = static_cast<const unsigned char *>(data);
    if (data != nullptr && size >= sizeof kPNGSignature &&
        std::memcmp(bytes, kPNGSignature, sizeof kPNGSignature) == 0)
        return DecodePNG(data, size, outError);
    if (data != nullptr && size >= 12 && std::memcmp(bytes, "RIFF", 4) == 0 &&
        std::memcmp(bytes + 8, "WEBP", 4) == 0)
        return DecodeWebP(data, size, outError);
    outError = eGMUnsupportedImageFormat;
    return nullptr;
}

} // namespace GSCairoImageDecoder
} // namespace miGS
MIREL_NAMESPACE_END
