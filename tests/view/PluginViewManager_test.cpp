#include "view/PluginViewManager.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ViewTestSupport.h"
#include "core/WUAssert.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;
using view_test::Recorder;

using ViewManager = view_test::HeadlessDesktop;

namespace {

// A GUI stand-in: asks for a redraw when told to and writes a numbered frame.
struct FrameSource : WIViewFrameSource {
    bool needRedraw = false;
    int written = 0;
    int failWith = 0;
    bool NeedToRedrawGUI() override { return needRedraw; }
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override {
        if (failWith != 0)
            return failWith;
        writer.DataHereStr(("frame " + std::to_string(++written)).c_str());
        return 0;
    }
};

} // namespace

TEST_F(ViewManager, LocalAndGlobalRoundTripThroughNestedWindows) {
    WCSystemWindowCreateOptions windowOptions;
    windowOptions.m_position = {1920, 100}; // on a second screen
    windowOptions.m_width = 800;
    windowOptions.m_height = 600;
    WCPluginNativeView *window = nullptr;
    ASSERT_EQ(CreateSystemWindow(windowOptions, window), 0);
    WSPluginView *view = MakeView(nullptr, 30, 40, window);
    WCPoint2D<int> global, local;
    ASSERT_EQ(PVMLocalToGlobal(view, WCPoint2D<int>(5, 6), global), 0);
    EXPECT_EQ(global, WCPoint2D<int>(1955, 146));
    ASSERT_EQ(PVMGlobalToLocal(view, global, local), 0);
    EXPECT_EQ(local, WCPoint2D<int>(5, 6));
    ASSERT_EQ(SetWindowPosition(window, {0, 0}), 0);
    ASSERT_EQ(PVMLocalToGlobal(view, WCPoint2D<int>(5, 6), global), 0);
    EXPECT_EQ(global, WCPoint2D<int>(35, 46));

    std::vector<WURect<int>> screens;
    ASSERT_EQ(Utils::GetAllScreensRectsInPixels(screens), 0);
    EXPECT_EQ(screens, (std::vector<WURect<int>>{{0, 0, 1080, 1920}}));
    EXPECT_EQ(SetScreens({}), eOutOfRangeNumber);
    ASSERT_EQ(Utils::GetAllScreensRectsInPixels(screens), 0);
    EXPECT_EQ(screens.size(), 1u);

    // The window takes its views with it; their handles are refused afterwards.
    ASSERT_EQ(DisposeSystemWindow(window), 0);
    EXPECT_EQ(PVMLocalToGlobal(view, WCPoint2D<int>(), global), kErrInvalidHandle);
    static int reported = 0;
    const WTAssertHandler previous =
        SetAssertHandler([](const char *, int, const char *) { ++reported; });
    EXPECT_EQ(DisposePluginView(nullptr), eMemNullPointer);
    SetAssertHandler(previous);
    EXPECT_EQ(reported, 1);
}

TEST_F(ViewManager, CapturedMouseGoesToTheCapturingViewInItsOwnPixels) {
    Recorder a, b;
    WSPluginView *viewA = MakeView(&a, 0, 0);
    WSPluginView *viewB = MakeView(&b, 500, 200);
    ASSERT_EQ(PVMSetCapture(viewA), 0);
    EXPECT_EQ(PostEvent(viewB, Message(eMsgMouseMove, 10, 10)), 1);
    EXPECT_EQ(PostEvent(viewB, Message(eMsgLeftButtonUp, 10, 10)), 1);
    EXPECT_TRUE(b.calls.empty());
    ASSERT_EQ(a.calls.size(), 2u);
    EXPECT_EQ(a.calls[0].event.GetMouseLocation(), WCPoint2D<short>(510, 210));
    EXPECT_EQ(a.calls[1].code, eEventMouseUp);
    // Keys are not mouse messages: they stay with the view they were sent to.
    EXPECT_EQ(PostEvent(viewB, Message(eMsgKeyDown)), 1);
    EXPECT_EQ(b.calls.size(), 1u);

    ASSERT_EQ(PVMReleaseCapture(), 0);
    EXPECT_EQ(PostEvent(viewB, Message(eMsgMouseMove, 10, 10)), 1);
    EXPECT_EQ(b.calls.size(), 2u);
    // A disposed view lets the capture go with it.
    ASSERT_EQ(PVMSetCapture(viewA), 0);
    ASSERT_EQ(DisposePluginView(viewA), 0);
    EXPECT_EQ(PVMGetCapture(), nullptr);
    // Hidden views and views with events off take nothing.
    ASSERT_EQ(HidePluginView(viewB), 0);
    EXPECT_EQ(PostEvent(viewB, Message(eMsgMouseMove)), 0);
    ASSERT_EQ(ShowPluginView(viewB), 0);
    ASSERT_EQ(EnableWindowEvents(false, viewB), 0);
    EXPECT_EQ(PostEvent(viewB, Message(eMsgMouseMove)), 0);
}

TEST_F(ViewManager, InvalidRegionGrowsUntilRenderedAndBadSizesChangeNothing) {
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    ASSERT_EQ(InvalidateRect(view, {10, 10, 20, 20}), 0);
    ASSERT_EQ(InvalidateRect(view, {50, 60, 70, 80}), 0);
    ASSERT_EQ(InvalidateRect(view, {-50, -50, -10, -10}), 0); // outside: ignored
    WURect<int> invalid;
    ASSERT_EQ(GetInvalidRect(view, invalid), 0);
    EXPECT_EQ(invalid, WURect<int>(10, 10, 70, 80));
    ASSERT_EQ(RenderNow(view), 0);
    ASSERT_EQ(rec.calls.size(), 1u);
    EXPECT_EQ(rec.calls[0].code, eEventDraw);
    ASSERT_EQ(GetInvalidRect(view, invalid), 0);
    EXPECT_TRUE(invalid.IsReset());

    EXPECT_EQ(ResizeView(view, -1, 10, true), eOutOfRangeNumber);
    EXPECT_EQ(SetDPIScaleFactor(view, 0.0), eOutOfRangeNumber);
    WURect<int> bounds;
    ASSERT_EQ(GetViewBounds(view, bounds), 0);
    EXPECT_EQ(bounds, WURect<int>(0, 0, 300, 400));
    double scale = 0;
    ASSERT_EQ(GetDPIScaleFactor(view, scale), 0);
    EXPECT_EQ(scale, 1.0);
    // Kept on the screen: a view pushed past the right edge comes back to touch it.
    ASSERT_EQ(RepositionView(view, {1800, 900}, false, false, true), 0);
    ASSERT_EQ(GetViewBounds(view, bounds), 0);
    EXPECT_EQ(bounds, WURect<int>(780, 1520, 1080, 1920));
}

TEST_F(ViewManager, TimersFireInTimeOrderAndStopWithTheirView) {
    WSPluginView *view = MakeView(nullptr);
    WSPluginView *other = MakeView(nullptr);
    std::vector<std::string> fired;
    int fast = 0, slow = 0, gone = 0;
    ASSERT_EQ(
        StartViewTimer(
            view, 30, [&] { fired.push_back("slow@" + std::to_string(GetCurrentTimeMs())); }, slow),
        0);
    ASSERT_EQ(
        StartViewTimer(
            view, 20, [&] { fired.push_back("fast@" + std::to_string(GetCurrentTimeMs())); }, fast),
        0);
    ASSERT_EQ(StartViewTimer(
                  other, 10, [&] { fired.push_back("gone"); }, gone),
              0);
    ASSERT_EQ(DisposePluginView(other), 0);
    EXPECT_EQ(StartViewTimer(
                  view, 0, [] {}, gone),
              eOutOfRangeNumber);
    ASSERT_EQ(AdvanceTime(60), 0);
    EXPECT_EQ(fired,
              (std::vector<std::string>{"fast@20", "slow@30", "fast@40", "slow@60", "fast@60"}));
    EXPECT_EQ(StopViewTimer(fast), 0);
    EXPECT_EQ(StopViewTimer(fast), eValueNotFound);
    fired.clear();
    ASSERT_EQ(AdvanceTime(30), 0);
    EXPECT_EQ(fired, (std::vector<std::string>{"slow@90"}));
}

TEST_F(ViewManager, FrameTimerPullsOnlyWhenARedrawIsNeededAndHandsItToThePainter) {
    WSPluginView *view = MakeView(nullptr);
    FrameSource source;
    std::vector<std::string> painted;
    ASSERT_EQ(SetFrameSource(view, &source, 16), 0);
    ASSERT_EQ(SetFramePainter(view, [&](const char *stream,
                                        std::size_t size) { painted.emplace_back(stream, size); }),
              0);
    ASSERT_EQ(AdvanceTime(100), 0);
    std::uint64_t count = 99;
    ASSERT_EQ(GetFrameCount(view, count), 0);
    EXPECT_EQ(count, 0u);
    source.needRedraw = true;
    ASSERT_EQ(AdvanceTime(32), 0);
    ASSERT_EQ(GetFrameCount(view, count), 0);
    EXPECT_EQ(count, 2u);
    ASSERT_EQ(painted.size(), 2u);
    EXPECT_NE(painted[1].find("frame 2"), std::string::npos);

    // A failed frame is not counted and the last good one stays readable.
    source.failWith = eGMGenericErr;
    EXPECT_EQ(DrawFrameNow(view), eGMGenericErr);
    const char *stream = nullptr;
    std::size_t size = 0;
    ASSERT_EQ(GetLastFrame(view, stream, size), 0);
    EXPECT_EQ(std::string(stream, size), painted[1]);
    ASSERT_EQ(GetFrameCount(view, count), 0);
    EXPECT_EQ(count, 2u);

    ASSERT_EQ(SetFrameSource(view, nullptr, 0), 0);
    source.failWith = 0;
    ASSERT_EQ(AdvanceTime(100), 0);
    EXPECT_EQ(painted.size(), 2u);
}

TEST_F(ViewManager, QuestionsGoToTheResponderOrTakeTheDefaultAndAreRecorded) {
    WCMessageBoxCreateOptions question;
    question.m_message = "Overwrite the preset?";
    question.m_buttons = {"Cancel", "Overwrite"};
    question.m_defaultButton = 1;
    int answer = -1;
    ASSERT_EQ(DisplayMessageBox(question, answer), 0);
    EXPECT_EQ(answer, 1);
    SetDialogResponder([](const WCMessageBoxCreateOptions &asked) {
        return asked.m_kind == eDialogWindow ? 7 : 0;
    });
    ASSERT_EQ(DisplayMessageBox(question, answer), 0);
    EXPECT_EQ(answer, 0);
    ASSERT_EQ(ActivateWindowDialog(question, answer), 0);
    EXPECT_EQ(answer, 7);
    ASSERT_EQ(AlertBox("Mirel", "Disk full"), 0);
    const auto &asked = GetAskedQuestions();
    ASSERT_EQ(asked.size(), 4u);
    EXPECT_EQ(asked[0].m_message, "Overwrite the preset?");
    EXPECT_EQ(asked[3].m_kind, eDialogAlert);
    EXPECT_EQ(asked[3].m_message, "Disk full");
}

TEST_F(ViewManager, TextBoxHandsBackTheAcceptedTextOnce) {
    WSPluginView *view = MakeView(nullptr);
    struct Result {
        std::vector<std::pair<std::string, bool>> got;
    } result;
    WCTextBoxOptions options;
    options.m_text = "-6.0";
    options.m_maxChars = 4;
    options.m_refCon = &result;
    options.m_callback = [](void *refCon, const char *text, bool accepted) {
        static_cast<Result *>(refCon)->got.emplace_back(text, accepted);
    };
    EXPECT_EQ(ActivateTextBox(view, {10, 10}, {5, 5}, options), eOutOfRangeNumber);
    ASSERT_EQ(ActivateTextBox(view, {10, 10}, {80, 30}, options), 0);
    WSTextBoxState state;
    ASSERT_EQ(GetTextBoxState(state), 0);
    EXPECT_TRUE(state.m_active);
    EXPECT_EQ(state.m_options.m_text, "-6.0");
    ASSERT_EQ(CommitTextBox("-12.5"), 0);
    EXPECT_EQ(CommitTextBox("again"), eWrongObjectState);
    ASSERT_EQ(ActivateTextBox(view, {10, 10}, {80, 30}, options), 0);
    ASSERT_EQ(QuitTextBox(), 0);
    EXPECT_EQ(result.got,
              (std::vector<std::pair<std::string, bool>>{{"-12.", true}, {"-6.0", false}}));
}

TEST_F(ViewManager, WhatThisPlatformLacksAnswersNotImplemented) {
    WSPluginView *view = MakeView(nullptr);
    ImageData *image = nullptr;
    void *object = nullptr;
    EXPECT_EQ(GetImageFromResource(nullptr, 1, image), eNotImplemented);
    EXPECT_EQ(BeginDragFilePath(view, "/tmp/x"), eNotImplemented);
    EXPECT_EQ(CreateDataObject(object), eNotImplemented);
    EXPECT_EQ(CreateDropSource(object), eNotImplemented);
    EXPECT_EQ(CreateEnumFormatEtc(object), eNotImplemented);
    unsigned int packed = 0;
    short low = 0, high = 0;
    ASSERT_EQ(Pack(-2, 300, packed), 0);
    ASSERT_EQ(UnPack(packed, low, high), 0);
    EXPECT_EQ(low, -2);
    EXPECT_EQ(high, 300);
}

TEST_F(ViewManager, AViewMayBeDisposedFromInsideItsOwnCallback) {
    // A GUI closes its window when asked to: the view goes while its dispatcher is on the stack.
    struct Closer {
        WSPluginView *view = nullptr;
        static bool Callback(void *reference, int code, WCEventData *, void *) {
            auto *self = static_cast<Closer *>(reference);
            if (code == eEventClose || code == eEventDraw) {
                EXPECT_EQ(DisposePluginView(self->view), 0);
            }
            return true;
        }
    };
    for (WEEventMessageKind kind : {eMsgClose, eMsgPaint}) {
        Closer closer;
        WCPluginViewCreateOptions options;
        options.m_callback = &Closer::Callback;
        options.m_reference = &closer;
        ASSERT_EQ(CreatePluginView(options, closer.view), 0);
        const int result =
            kind == eMsgPaint ? RenderNow(closer.view) : PostEvent(closer.view, Message(kind));
        EXPECT_EQ(result, kind == eMsgPaint ? 0 : 1);
        WURect<int> bounds;
        EXPECT_EQ(GetViewBounds(closer.view, bounds), kErrInvalidHandle);
    }
}
