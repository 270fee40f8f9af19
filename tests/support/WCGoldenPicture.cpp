#include "tests/support/WCGoldenPicture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

// Every program that compares pictures paints text: the font library keeps what it matched for
// the life of the process, which a sanitized build's leak check would report as the program's own.
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}

namespace mirel_test {

WSPictureDiff ComparePictures(cairo_surface_t *actual, cairo_surface_t *expected) {
    WSPictureDiff diff;
    cairo_surface_flush(actual);
    cairo_surface_flush(expected);
    const unsigned char *a = cairo_image_surface_get_data(actual);
    const unsigned char *b = cairo_image_surface_get_data(expected);
    const int strideA = cairo_image_surface_get_stride(actual);
    const int strideB = cairo_image_surface_get_stride(expected);
    const int width =
        std::min(cairo_image_surface_get_width(actual), cairo_image_surface_get_width(expected));
    const int height =
        std::min(cairo_image_surface_get_height(actual), cairo_image_surface_get_height(expected));
    for (int y = 0; a != nullptr && b != nullptr && y < height; ++y) {
        for (int x = 0; x < width * 4; x += 4) {
            int worst = 0;
            for (int c = 0; c < 4; ++c)
                worst = std::max(worst, std::abs(a[y * strideA + x + c] - b[y * strideB + x + c]));
            diff.m_MaxChannelDiff = std::max(diff.m_MaxChannelDiff, worst);
            diff.m_DifferingPixels += worst > kChannelTolerance;
        }
    }
    return diff;
}

void ExpectSamePicture(cairo_surface_t *actual, cairo_surface_t *expected,
                       const std::string &what) {
    ASSERT_EQ(cairo_image_surface_get_width(actual), cairo_image_surface_get_width(expected))
        << what;
    ASSERT_EQ(cairo_image_surface_get_height(actual), cairo_image_surface_get_height(expected))
        << what;
    const WSPictureDiff diff = ComparePictures(actual, expected);
    EXPECT_LE(diff.m_DifferingPixels, kPixelTolerance * cairo_image_surface_get_width(actual) *
                                          cairo_image_surface_get_height(actual))
        << what << " differs; largest channel difference " << diff.m_MaxChannelDiff;
}

void ExpectGoldenPicture(cairo_surface_t *actual, const std::string &folder,
                         const std::string &name) {
    const std::string path = folder + "/" + name + ".png";
    if (const char *update = std::getenv("MIREL_UPDATE_GOLDEN"); update && *update == '1') {
        std::filesystem::create_directories(folder);
        ASSERT_EQ(cairo_surface_write_to_png(actual, path.c_str()), CAIRO_STATUS_SUCCESS) << path;
        return;
    }
    cairo_surface_t *expected = cairo_image_surface_create_from_png(path.c_str());
    if (cairo_surface_status(expected) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(expected);
        FAIL() << "missing " << path;
    }
    ExpectSamePicture(actual, expected, path);
    cairo_surface_destroy(expected);
}

} // namespace mirel_test
