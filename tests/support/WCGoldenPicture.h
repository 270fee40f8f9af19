#pragma once

#include <string>

#include <cairo.h>

namespace mirel_test {

// How far two pictures of one size are apart: the largest channel difference, and how many
// pixels differ by more than the channel tolerance.
struct WSPictureDiff {
    int m_MaxChannelDiff = 0;
    long m_DifferingPixels = 0;
};

// Pixels differ when a channel differs by more than this: antialiasing and glyph rendering may
// move by a step from one cairo or FreeType build to the next.
inline constexpr int kChannelTolerance = 24;
// And pictures differ when more than this share of their pixels do.
inline constexpr double kPixelTolerance = 0.005;

// Two ARGB32 image surfaces of the same size.
WSPictureDiff ComparePictures(cairo_surface_t *actual, cairo_surface_t *expected);
// The pictures are alike within the tolerances; a failure says by how much.
void ExpectSamePicture(cairo_surface_t *actual, cairo_surface_t *expected, const std::string &what);
// Compares the picture with the reviewed PNG `folder`/`name`.png; MIREL_UPDATE_GOLDEN=1 rewrites
// the file instead, to be looked at before it is committed.
void ExpectGoldenPicture(cairo_surface_t *actual, const std::string &folder,
                         const std::string &name);

} // namespace mirel_test
