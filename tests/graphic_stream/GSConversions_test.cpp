#include "graphic_stream/GSConversions.h"

#include <gtest/gtest.h>

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

TEST(GSConversions, RectWidthAndHeightAreTakenIn16Bits) {
    struct {
        WURect<short> rect;
        std::int32_t x, y, w, h;
    } const table[] = {
        {WURect<short>(10, 20, 30, 50), 20, 10, 30, 20},
        {WURect<short>(-5, -8, 5, 8), -8, -5, 16, 10},
        {WURect<short>(0, 0, -4, -3), 0, 0, -3, -4},
        // 60000 does not fit a short: it wraps as the GUI's own arithmetic does.
        {WURect<short>(0, -30000, 1, 30000), -30000, 0, -5536, 1},
    };
    for (auto const &row : table) {
        const SGSRect rect = WTRectsToSGSRect(row.rect);
        EXPECT_EQ(rect.location.x, row.x);
        EXPECT_EQ(rect.location.y, row.y);
        EXPECT_EQ(rect.size.width, row.w);
        EXPECT_EQ(rect.size.height, row.h);
        EXPECT_EQ(SGSRectToWTRects(rect), row.rect);
    }
}

TEST(GSConversions, ColoursWithoutAlphaBecomeOpaque) {
    const SGSRGBAColor opaque = WCRGBColorToSGSRGBAColor(WCRGBColor(1, 2, 3));
    EXPECT_EQ(opaque.alpha, 255);
    EXPECT_EQ(opaque.blue, 3);
    const SGSRGBAColor seeThrough{9, 8, 7, 6};
    EXPECT_EQ(SGSRGBAColorToWCRGBAColor(seeThrough), WCRGBAColor(9, 8, 7, 6));
    EXPECT_EQ(SGSRGBAColorToWCRGBColor(seeThrough), WCRGBColor(9, 8, 7));
    EXPECT_EQ(SGSSizeToWCSize2Ds(WCSize2DsToSGSSize(WCSize2D<short>(-3, 700))),
              WCSize2D<short>(-3, 700));
}
