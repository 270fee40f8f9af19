#include "core/WCPoint2D.h"
#include "core/WURect.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>

using namespace MIREL_NAMESPACE_NAME;

// Every member of the templates must compile for each type the library uses.
template struct MIREL_NAMESPACE_NAME::WURect<short>;
template struct MIREL_NAMESPACE_NAME::WURect<float>;
template struct MIREL_NAMESPACE_NAME::WURect<double>;
template struct MIREL_NAMESPACE_NAME::WCPoint2D<short>;
template struct MIREL_NAMESPACE_NAME::WCPoint2D<float>;
template struct MIREL_NAMESPACE_NAME::WCPoint2D<double>;

using RectS = WURect<short>;
using PointS = WCPoint2D<short>;

TEST(WURect, FieldOrderIsTopLeftBottomRightAndItIsHalfOpen) {
    const RectS r(0, 2, 10, 12);
    EXPECT_EQ(r.TopLeft(), PointS(2, 0));
    EXPECT_EQ(r.BottomRight(), PointS(12, 10));
    EXPECT_EQ(r.Width(), 10);
    EXPECT_EQ(r.Height(), 10);
    EXPECT_TRUE(r.PointInRect(PointS(2, 0)));
    EXPECT_TRUE(r.PointInRect(PointS(11, 9)));
    EXPECT_FALSE(r.PointInRect(PointS(12, 5)));
    EXPECT_FALSE(r.PointInRect(PointS(5, 10)));
    EXPECT_TRUE(RectS(0, 5, 10, 5).IsEmpty());
    EXPECT_TRUE(RectS(10, 0, 5, 10).IsEmpty());
}

TEST(WURect, TouchingRectanglesDoNotIntersect) {
    const RectS a(0, 0, 10, 10);
    RectS out(1, 1, 1, 1);
    EXPECT_FALSE(a.IsIntersecting(RectS(0, 10, 10, 20)));
    EXPECT_FALSE(a.GetIntersection(RectS(0, 10, 10, 20), out));
    EXPECT_TRUE(out.IsReset());
    ASSERT_TRUE(a.GetIntersection(RectS(5, 5, 15, 15), out));
    EXPECT_EQ(out, RectS(5, 5, 10, 10));
    EXPECT_TRUE(a.RectInRect(RectS(2, 2, 10, 10)));
    EXPECT_FALSE(a.RectInRect(RectS(2, 2, 11, 10)));
}

TEST(WURect, UnionDoesNotSkipAnEmptyRectangle) {
    RectS r(5, 5, 10, 10);
    r.Union(RectS(2, 7, 8, 20));
    EXPECT_EQ(r, RectS(2, 5, 10, 20));
    r.Union(RectS());
    EXPECT_EQ(r, RectS(0, 0, 10, 20));
}

// Each of these takes x before y, unlike the constructor.
TEST(WURect, MovingAndSettingTakeXBeforeY) {
    RectS r;
    r.SetTopLeftWidthHeight(10, 20, 30, 40);
    r.Offset(5, -5);
    EXPECT_EQ(r, RectS(5, 25, 45, 55));
    r.MoveTo(0, 100);
    r -= PointS(3, 4);
    EXPECT_EQ(r, RectS(96, -3, 136, 27));
    r.MoveToOrigin();
    r.Expand(2, 5);
    EXPECT_EQ(r, RectS(-5, -2, 45, 32));
    r.Set(PointS(1, 2), PointS(3, 4));
    EXPECT_EQ(r, RectS(2, 1, 4, 3));
}

TEST(WURect, CenterUsesIntegerDivisionAndScaleTruncatesAndSaturates) {
    EXPECT_EQ(RectS(0, 0, 5, 5).Center(), PointS(2, 2));
    EXPECT_EQ(RectS(-5, -5, 0, 0).Center(), PointS(-2, -2));
    EXPECT_EQ(WURect<double>(0, 0, 5, 5).Center(), WCPoint2D<double>(2.5, 2.5));
    RectS r(-3, 3, 7, 9);
    r.Scale(0.5);
    EXPECT_EQ(r, RectS(-1, 1, 3, 4));
    RectS big(0, 0, 30000, 30000);
    big.Scale(4.0);
    EXPECT_EQ(big.bottom, SHRT_MAX);
    // Width is computed in short and wraps, as the GUI's pixel rectangles always have.
    EXPECT_EQ(RectS(0, -30000, 1, 30000).Width(), static_cast<short>(60000));
}

TEST(WCPoint2D, ArithmeticDistanceScaleAndShift) {
    EXPECT_EQ(-PointS(3, 4) + PointS(1, 1), PointS(-2, -3));
    EXPECT_EQ(PointS(1, 10).GetDistanceFrom(PointS(4, 3)), PointS(3, 7));
    PointS s(-7, 7);
    s.Scale(0.5);
    EXPECT_EQ(s, PointS(-3, 3));
    s.Scale(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(s, PointS(0, 0));
    EXPECT_EQ(PointS(-8, 8) >> 1, PointS(-4, 4));
    EXPECT_EQ(PointS(-1, 16384) >> 100, PointS(-1, 0));
    EXPECT_EQ(PointS(5, 6) >> -1, PointS(5, 6));
}
