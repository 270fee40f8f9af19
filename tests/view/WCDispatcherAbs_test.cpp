#include "view/WCDispatcherAbs.h"

#include <gtest/gtest.h>

#include "ViewTestSupport.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;
using view_test::Recorder;

using Dispatcher = view_test::HeadlessDesktop;

TEST_F(Dispatcher, MouseDownStartsAClickAndMovesCarryTheDragDistance) {
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    EXPECT_EQ(PostEvent(view, Message(eMsgLeftButtonDown, 20, 30, eHeldControl)), 1);
    WCEventMessage move = Message(eMsgMouseMove, 25, 22);
    move.m_buttons[eMouseButtonLeft] = true;
    EXPECT_EQ(PostEvent(view, move), 1);
    ASSERT_EQ(rec.calls.size(), 2u);
    const WCEventData &down = rec.calls[0].event;
    EXPECT_EQ(rec.calls[0].code, eEventMouseDown);
    EXPECT_EQ(down.GetMouseClickCount(), eClickSingle);
    EXPECT_EQ(down.GetMouseDownLocation(), WCPoint2D<short>(20, 30));
    EXPECT_EQ(down.GetMouseDelta(), WCPoint2D<short>(0, 0));
    EXPECT_TRUE(down.GetKeyModifier(eModifierPrimary));
    EXPECT_TRUE(down.GetMouseButtonPressed(eMouseButtonLeft));
    EXPECT_EQ(GetFocusView(), view);
    const WCEventData &moved = rec.calls[1].event;
    EXPECT_EQ(rec.calls[1].code, eEventMouseMoved);
    EXPECT_EQ(moved.GetMouseDelta(), WCPoint2D<short>(5, -8));
    EXPECT_EQ(moved.GetMouseDistanceFromDragStart(), WCPoint2D<short>(5, -8));
    EXPECT_FALSE(moved.GetKeyModifier(eModifierPrimary));
}

TEST_F(Dispatcher, WheelScalesByTheLinesSettingAndShiftTurnsItSideways) {
    struct Case {
        unsigned int lines;
        unsigned int held;
        int amount;
        int expected;
        WEMouseWheel axis;
    };
    const Case cases[] = {
        {3, 0, 240, 6, eMouseWheelVertical},
        {3, eHeldShift, -120, -3, eMouseWheelHorizontal},
        {1, eHeldShift | eHeldControl, 120, 1, eMouseWheelHorizontal},
        {WCDispatcherAbs::kWheelScrollPage, 0, 240, 20, eMouseWheelVertical},
    };
    Recorder rec;
    // The wheel reports desktop positions; the view sits at (100, 50).
    WSPluginView *view = MakeView(&rec, 100, 50);
    for (const Case &c : cases) {
        SetWheelScrollLines(c.lines);
        WCEventMessage wheel = Message(eMsgMouseWheel, 110, 70, c.held);
        wheel.m_wheelAmount = c.amount;
        rec.calls.clear();
        ASSERT_EQ(PostEvent(view, wheel), 1);
        ASSERT_EQ(rec.calls.size(), 1u);
        EXPECT_EQ(rec.calls[0].code, eEventMouseWheel);
        EXPECT_EQ(rec.calls[0].event.GetMouseWheelAmount(), c.expected) << c.lines;
        EXPECT_EQ(rec.calls[0].event.GetMouseWheelAxis(), c.axis) << c.held;
        EXPECT_EQ(rec.calls[0].event.GetMouseLocation(), WCPoint2D<short>(10, 20));
    }
}

TEST_F(Dispatcher, EitherSuperKeyIsTheSecondaryModifier) {
    struct Case {
        unsigned int held;
        bool secondary;
    };
    const Case cases[] = {{eHeldLeftSuper, true},
                          {eHeldRightSuper, true},
                          {eHeldLeftSuper | eHeldRightSuper, true},
                          {eHeldControl | eHeldAlt, false}};
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    for (const Case &c : cases) {
        WCEventMessage key = Message(eMsgKeyDown, 0, 0, c.held);
        key.m_keyCode = eKeyCharacter;
        key.m_keyChar = 'k';
        rec.calls.clear();
        ASSERT_EQ(PostEvent(view, key), 1);
        const WCEventData &event = rec.calls.at(0).event;
        EXPECT_EQ(rec.calls[0].code, eEventKeyDown);
        EXPECT_EQ(event.GetKeyChar(), 'k');
        EXPECT_EQ(event.GetKeyModifier(eModifierSecondary), c.secondary) << c.held;
        EXPECT_EQ(event.GetKeyModifier(eModifierPrimary), (c.held & eHeldControl) != 0);
    }
}

TEST_F(Dispatcher, CommandsFromChildNotificationsAndViewsWithoutCallbackAreNotHandled) {
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    WCEventMessage command = Message(eMsgCommand);
    command.m_param = (1u << 16) | 42u;
    EXPECT_EQ(PostEvent(view, command), 0);
    EXPECT_TRUE(rec.calls.empty());
    command.m_param = 42u;
    EXPECT_EQ(PostEvent(view, command), 1);
    ASSERT_EQ(rec.calls.size(), 1u);
    EXPECT_EQ(rec.calls[0].code, eEventCommand);
    EXPECT_EQ(rec.calls[0].event.GetCommand(), 42);

    WSPluginView *silent = MakeView(nullptr);
    for (WEEventMessageKind kind : {eMsgLeftButtonDown, eMsgSize, eMsgPaint, eMsgKeyDown})
        EXPECT_EQ(PostEvent(silent, Message(kind)), 0) << kind;
}

TEST_F(Dispatcher, TableMessagesReachTheCallbackWithTheirCodes) {
    struct Case {
        WEEventMessageKind kind;
        int code;
    };
    const Case cases[] = {{eMsgLeftButtonUp, eEventMouseUp},
                          {eMsgCancelMode, eEventMouseUp},
                          {eMsgClose, eEventClose},
                          {eMsgPaint, eEventDraw},
                          {eMsgDeviceChange, eEventDevicesChanged},
                          {eMsgPrivate0, eEventPrivate0},
                          {eMsgPrivate3, eEventPrivate3},
                          {eMsgSizing, eEventResize},
                          {eMsgKillFocus, eEventClickOutsideWindow},
                          {eMsgLeftDoubleClick, eEventDoubleClick}};
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    for (const Case &c : cases) {
        rec.calls.clear();
        EXPECT_EQ(PostEvent(view, Message(c.kind)), 1) << c.kind;
        ASSERT_EQ(rec.calls.size(), 1u);
        EXPECT_EQ(rec.calls[0].code, c.code) << c.kind;
    }
    rec.calls.clear();
    EXPECT_EQ(PostEvent(view, Message(eMsgSize)), 1);
    EXPECT_TRUE(rec.calls.empty());
}

TEST_F(Dispatcher, FilesReachOnlyARegisteredView) {
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    WCEventMessage drop = Message(eMsgFileDrop, 7, 8);
    drop.m_paths = {"/tmp/a.wav", "/tmp/b.wav"};
    EXPECT_EQ(PostEvent(view, drop), 0);
    ASSERT_EQ(RegisterOsForDragAndDrop(view), 0);
    EXPECT_EQ(PostEvent(view, drop), 1);
    ASSERT_EQ(rec.calls.size(), 1u);
    EXPECT_EQ(rec.calls[0].code, eEventFileDrop);
    EXPECT_EQ(rec.calls[0].event.GetDragDropEvent().m_paths, drop.m_paths);
    EXPECT_EQ(rec.calls[0].event.GetDragDropEvent().m_location, WCPoint2D<short>(7, 8));
}
