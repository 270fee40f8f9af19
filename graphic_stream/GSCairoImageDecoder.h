#pragma once

#include <cstdint>

#include <cairo.h>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// Decoding of the PNG and WebP bytes a painter finds in a stream's resources into cairo image
// surfaces (ARGB32, premultiplied). The bytes come from bundles and files, so they are outside
// data: a broken image gives a code, never a crash, and an image is refused past kMaxImageSide
// pixels a side or kMaxImagePixels in all before any pixel memory is taken.
// [any-thread]
namespace GSCairoImageDecoder {

inline constexpr std::int32_t kMaxImageSide = 16384;
inline constexpr std::int64_t kMaxImagePixels = std::int64_t(1) << 26;

// A new surface the caller destroys, or null with eGMUnsupportedImageFormat for bytes that are
// neither PNG nor WebP, eGMInvalidImage for a corrupt or oversized one, eMemNewFailed when the
// pixels find no memory.
cairo_surface_t *Decode(const void *data, std::uint64_t size, WTErr &outError);

} // namespace GSCairoImageDecoder
} // namespace miGS
MIREL_NAMESPACE_END
