#include "view/WCEventData.h"

#include <cstring>

#include <gtest/gtest.h>

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;

TEST(WCEventData, DragDistanceIsSignedLocationMinusMouseDown) {
    WCEventData event;
    event.SetMouseDownLocation({50, 40});
    event.SetMouseLocation({30, 70});
    EXPECT_EQ(event.GetMouseDistanceFromDragStart(), WCPoint2D<short>(-20, 30));
    event.SetMouseOldLocation({35, 60});
    event.CalcMouseDelta();
    EXPECT_EQ(event.GetMouseDelta(), WCPoint2D<short>(-5, 10));
}

TEST(WCEventData, ScalingDividesOrMultipliesEveryPointAndRefusesBadFactors) {
    struct Case {
        double factor;
        bool toUnscaled;
        int expected;
    };
    for (const Case c : {Case{2.0, true, 50}, Case{2.0, false, 200}, Case{1.5, true, 66}}) {
        WCEventData event;
        event.SetMouseLocation({100, 100});
        event.SetMouseDownLocation({100, 100});
        event.SetMouseDelta({100, 100});
        ASSERT_EQ(event.ScaleEventData(c.factor, c.toUnscaled), 0);
        EXPECT_EQ(event.GetMouseLocation().x, c.expected) << c.factor;
        EXPECT_EQ(event.GetMouseDownLocation().y, c.expected);
        EXPECT_EQ(event.GetMouseDelta().x, c.expected);
        EXPECT_EQ(event.GetScalingFactor(), c.factor);
    }
    WCEventData event;
    event.SetMouseLocation({100, 100});
    for (double bad : {0.0, -1.0, 1.0 / 0.0})
        EXPECT_EQ(event.ScaleEventData(bad, true), eOutOfRangeNumber);
    EXPECT_EQ(event.GetMouseLocation(), WCPoint2D<short>(100, 100));
    EXPECT_EQ(event.GetScalingFactor(), 1.0);
}

TEST(WCEventData, TranslateMovesPointsButNotTheDelta) {
    WCEventData event;
    event.SetMouseLocation({10, 10});
    event.SetMouseDownLocation({5, 5});
    event.SetMouseDelta({3, 3});
    event.Translate({-100, 20});
    EXPECT_EQ(event.GetMouseLocation(), WCPoint2D<short>(-90, 30));
    EXPECT_EQ(event.GetMouseDownLocation(), WCPoint2D<short>(-95, 25));
    EXPECT_EQ(event.GetMouseDelta(), WCPoint2D<short>(3, 3));
}

TEST(WCEventData, BadInputLeavesTheRecordAsItWas) {
    WCEventData event;
    ASSERT_EQ(event.SetCustomData(eCustomDataText, "abc", 3), 0);
    EXPECT_EQ(event.SetCustomData(eCustomDataBinary, nullptr, 5), eMemNullPointer);
    EXPECT_EQ(event.GetCustomDataType(), eCustomDataText);
    ASSERT_EQ(event.GetCustomDataObj().GetSize(), 3u);
    EXPECT_EQ(std::memcmp(event.GetCustomDataObj().GetPtr(), "abc", 3), 0);
    EXPECT_EQ(event.SetKeyModifier(static_cast<WEModifier>(4), true), eOutOfRangeNumber);
    EXPECT_EQ(event.SetMouseButtonPressed(static_cast<WEMouseButton>(-1), true), eOutOfRangeNumber);
    const bool none[eModifierCount] = {false, false, false, false};
    EXPECT_TRUE(event.CompareKeyModifiers(none));
    event.Reset();
    EXPECT_EQ(event.GetCustomDataType(), eCustomDataNone);
    EXPECT_TRUE(event.GetCustomDataObj().Empty());
}
