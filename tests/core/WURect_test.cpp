#include "core/WCPoint2D.h"
#include "core/WCPoint3D.h"
#include "core/WCRGBAColor.h"
#include "core/WCSize2D.h"
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

TEST(WURect, FieldAndConstructorOrderIsTopLeftBottomRight) {
    const RectS r(1, 2, 30, 40);
    EXPECT_EQ(r.top, 1);
    EXPECT_EQ(r.left, 2);
    EXPECT_EQ(r.bottom, 30);
    EXPECT_EQ(r.right, 40);
    EXPECT_EQ(r.Width(), 38);
    EXPECT_EQ(r.Height(), 29);
    EXPECT_EQ(r.TopLeft(), PointS(2, 1));
    EXPECT_EQ(r.TopRight(), PointS(40, 1));
    EXPECT_EQ(r.BottomLeft(), PointS(2, 30));
    EXPECT_EQ(r.BottomRight(), PointS(40, 30));
}

TEST(WURect, IsHalfOpen) {
    const RectS r(0, 0, 10, 10);
    EXPECT_TRUE(r.PointInRect(PointS(0, 0)));
    EXPECT_TRUE(r.PointInRect(PointS(9, 9)));
    EXPECT_FALSE(r.PointInRect(PointS(10, 5)));
    EXPECT_FALSE(r.PointInRect(PointS(5, 10)));
    EXPECT_FALSE(r.PointInRect(PointS(-1, 5)));
}

TEST(WURect, EmptyWhenEitherSideIsNotPositive) {
    EXPECT_TRUE(RectS().IsEmpty());
    EXPECT_TRUE(RectS(0, 5, 10, 5).IsEmpty());
    EXPECT_TRUE(RectS(10, 0, 5, 10).IsEmpty());
    EXPECT_FALSE(RectS(0, 0, 1, 1).IsEmpty());
    RectS r(1, 2, 3, 4);
    EXPECT_FALSE(r.IsReset());
    r.Reset();
    EXPECT_TRUE(r.IsReset());
}

TEST(WURect, TouchingRectanglesDoNotIntersect) {
    const RectS a(0, 0, 10, 10);
    const RectS touching(0, 10, 10, 20);
    RectS out(1, 1, 1, 1);
    EXPECT_FALSE(a.IsIntersecting(touching));
    EXPECT_FALSE(a.GetIntersection(touching, out));
    EXPECT_TRUE(out.IsReset());

    const RectS overlapping(5, 5, 15, 15);
    EXPECT_TRUE(a.IsIntersecting(overlapping));
    ASSERT_TRUE(a.GetIntersection(overlapping, out));
    EXPECT_EQ(out, RectS(5, 5, 10, 10));
}

TEST(WURect, UnionDoesNotSkipAnEmptyRectangle) {
    RectS r(5, 5, 10, 10);
    r.Union(RectS(2, 7, 8, 20));
    EXPECT_EQ(r, RectS(2, 5, 10, 20));
    r.Union(RectS());
    EXPECT_EQ(r, RectS(0, 0, 10, 20));
}

TEST(WURect, RectInRectNeedsFullContainment) {
    const RectS outer(0, 0, 10, 10);
    EXPECT_TRUE(outer.RectInRect(RectS(2, 2, 10, 10)));
    EXPECT_TRUE(outer.RectInRect(outer));
    EXPECT_FALSE(outer.RectInRect(RectS(2, 2, 11, 10)));
    EXPECT_FALSE(outer.RectInRect(RectS(-1, 2, 5, 5)));
}

TEST(WURect, MovingAndSetting) {
    RectS r;
    r.SetTopLeftWidthHeight(10, 20, 30, 40);
    EXPECT_EQ(r, RectS(10, 20, 50, 50));
    r.Offset(5, -5);
    EXPECT_EQ(r, RectS(5, 25, 45, 55));
    r.MoveTo(0, 100);
    EXPECT_EQ(r, RectS(100, 0, 140, 30));
    r.MoveToOrigin();
    EXPECT_EQ(r, RectS(0, 0, 40, 30));
    r -= PointS(3, 4);
    EXPECT_EQ(r, RectS(-4, -3, 36, 27));
    r.Set(PointS(1, 2), PointS(3, 4));
    EXPECT_EQ(r, RectS(2, 1, 4, 3));
    r.Set(RectS(7, 8, 9, 10));
    EXPECT_EQ(r, RectS(7, 8, 9, 10));
    EXPECT_NE(r, RectS(7, 8, 9, 11));
}

TEST(WURect, ExpandMovesSidesOutwards) {
    RectS r(10, 20, 30, 40);
    r.Expand(2, 5);
    EXPECT_EQ(r, RectS(5, 18, 35, 42));
    r.Expand(-2, -5);
    EXPECT_EQ(r, RectS(10, 20, 30, 40));
}

TEST(WURect, CenterUsesIntegerDivision) {
    EXPECT_EQ(RectS(0, 0, 5, 5).Center(), PointS(2, 2));
    EXPECT_EQ(RectS(-5, -5, 0, 0).Center(), PointS(-2, -2));
    EXPECT_EQ(WURect<double>(0, 0, 5, 5).Center(), WCPoint2D<double>(2.5, 2.5));
}

TEST(WURect, ScaleTruncatesTowardZeroAndSaturates) {
    RectS r(-3, 3, 7, 9);
    r.Scale(0.5);
    EXPECT_EQ(r, RectS(-1, 1, 3, 4));
    RectS big(0, 0, 30000, 30000);
    big.Scale(4.0);
    EXPECT_EQ(big.bottom, SHRT_MAX);
    WURect<float> f(1, 1, 2, 2);
    f.Scale(1.5);
    EXPECT_EQ(f, WURect<float>(1.5f, 1.5f, 3.0f, 3.0f));
}

TEST(WURect, WidthIsComputedInTheFieldsOwnWidth) {
    // The difference wraps in short, as the GUI's pixel rectangles always have.
    const RectS wide(0, -30000, 1, 30000);
    EXPECT_EQ(wide.Width(), static_cast<short>(60000));
}

TEST(WCPoint2D, Arithmetic) {
    PointS p(3, 4);
    EXPECT_EQ(p.GetX(), 3);
    EXPECT_EQ(p.GetY(), 4);
    EXPECT_EQ(-p, PointS(-3, -4));
    EXPECT_EQ(p + PointS(1, 1), PointS(4, 5));
    EXPECT_EQ(p - PointS(1, 1), PointS(2, 3));
    p += PointS(10, 10);
    EXPECT_EQ(p, PointS(13, 14));
    p -= PointS(3, 4);
    EXPECT_EQ(p, PointS(10, 10));
    p.Offset(-1, 2);
    EXPECT_NE(p, PointS(10, 10));
    EXPECT_EQ(p, PointS(9, 12));
}

TEST(WCPoint2D, DistanceIsThePointOfAbsoluteDifferences) {
    EXPECT_EQ(PointS(1, 10).GetDistanceFrom(PointS(4, 3)), PointS(3, 7));
    EXPECT_EQ(PointS(4, 3).GetDistanceFrom(PointS(1, 10)), PointS(3, 7));
    EXPECT_EQ(WCPoint2D<double>(0.5, 0).GetDistanceFrom(WCPoint2D<double>(-0.5, 2)),
              WCPoint2D<double>(1.0, 2.0));
}

TEST(WCPoint2D, ScaleTruncatesAndShiftIsArithmetic) {
    PointS p(-7, 7);
    p.Scale(0.5);
    EXPECT_EQ(p, PointS(-3, 3));
    EXPECT_EQ(PointS(-8, 8) >> 1, PointS(-4, 4));
    EXPECT_EQ(PointS(-1, 1) >> 3, PointS(-1, 0));
    EXPECT_EQ(PointS(-1, 16384) >> 100, PointS(-1, 0));
    EXPECT_EQ(PointS(5, 6) >> -1, PointS(5, 6));
    PointS nan(5, 5);
    nan.Scale(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(nan, PointS(0, 0));
}

TEST(ValueRecords, DefaultsAndEquality) {
    EXPECT_EQ(WCPoint3D<float>(), WCPoint3D<float>(0, 0, 0));
    EXPECT_EQ(WCSize2D<short>(3, 4).width, 3);
    EXPECT_TRUE(WCSize2D<short>(0, 4).IsEmpty());
    const WCRGBAColor c;
    EXPECT_EQ(c.alpha, 255);
    EXPECT_EQ(WCRGBAColor(WCRGBColor(1, 2, 3)), WCRGBAColor(1, 2, 3, 255));
    EXPECT_EQ(WCRGBAColor(1, 2, 3, 4).ToRGB(), WCRGBColor(1, 2, 3));
}
