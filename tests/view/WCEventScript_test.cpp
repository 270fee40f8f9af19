#include "view/WCEventScript.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ViewTestSupport.h"
#include "core/WTErrors.h"
#include "view/linux/WUEventScriptPlayer.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;

namespace {

const char *const kEveryKind = R"(
events:
  - {event: down, x: 64, y: 80}
  - {event: move, x: 64, y: 70, modifiers: [primary, shift]}
  - {event: up, x: 64, y: 70, modifiers: alt}
  - {event: double-click, x: 1, y: -2, button: right}
  - {event: move, x: -32768, y: 32767, modifiers: [secondary]}
  - {event: up, x: 0, y: 0, button: right}
  - {event: wheel, x: 5, y: 6, amount: -120000}
  - {event: key, key: up}
  - {event: key-up, char: "7", modifiers: [primary]}
  - {event: key, key: space}
  - {event: drop, x: 10, y: 11, files: [a.wav, "b c.aif"]}
  - {event: drag-over, x: 12, y: 13, files: [d.wav]}
  - {event: touch, x: 3, y: 4, id: 7}
  - {event: touch-up, x: 3, y: 5, id: 7}
  - {event: wait, ms: 3600000}
  - {event: frame, name: after-drag_2.v1}
)";

struct WSExpected {
    WEEventMessageKind kind;
    short x, y;
    bool left, right;
    unsigned held;
    int wheel;
    WEKeyCode key;
    char keyChar;
    unsigned param;
    std::vector<std::string> paths;
};

} // namespace

TEST(WCEventScript, ReadsEveryKindIntoItsMessageWithTheButtonsHeldSinceItsDown) {
    WCEventScript script;
    ASSERT_EQ(script.ReadFromYAML(kEveryKind), eNoErr) << script.GetLastError();
    const WSExpected expected[] = {
        {eMsgLeftButtonDown, 64, 80, true, false, 0, 0, eKeyNone, 0, 0, {}},
        {eMsgMouseMove, 64, 70, true, false, eHeldControl | eHeldShift, 0, eKeyNone, 0, 0, {}},
        {eMsgLeftButtonUp, 64, 70, false, false, eHeldAlt, 0, eKeyNone, 0, 0, {}},
        {eMsgRightDoubleClick, 1, -2, false, true, 0, 0, eKeyNone, 0, 0, {}},
        {eMsgMouseMove, -32768, 32767, false, true, eHeldLeftSuper, 0, eKeyNone, 0, 0, {}},
        {eMsgRightButtonUp, 0, 0, false, false, 0, 0, eKeyNone, 0, 0, {}},
        {eMsgMouseWheel, 5, 6, false, false, 0, -120000, eKeyNone, 0, 0, {}},
        {eMsgKeyDown, 0, 0, false, false, 0, 0, eKeyUp, 0, 0, {}},
        {eMsgKeyUp, 0, 0, false, false, eHeldControl, 0, eKeyCharacter, '7', 0, {}},
        {eMsgKeyDown, 0, 0, false, false, 0, 0, eKeySpace, ' ', 0, {}},
        {eMsgFileDrop, 10, 11, false, false, 0, 0, eKeyNone, 0, 0, {"a.wav", "b c.aif"}},
        {eMsgFileDragOver, 12, 13, false, false, 0, 0, eKeyNone, 0, 0, {"d.wav"}},
        {eMsgTouch, 3, 4, true, false, 0, 0, eKeyNone, 0, 7, {}},
        {eMsgTouch, 3, 5, false, false, 0, 0, eKeyNone, 0, 7, {}},
    };
    const auto &steps = script.GetSteps();
    ASSERT_EQ(steps.size(), std::size(expected) + 2);
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        SCOPED_TRACE(i);
        const WCEventMessage &m = steps[i].m_message;
        const WSExpected &e = expected[i];
        EXPECT_EQ(steps[i].m_kind, WCEventScriptStep::eStepMessage);
        EXPECT_EQ(steps[i].m_line, static_cast<int>(i) + 3);
        EXPECT_EQ(m.m_kind, e.kind);
        EXPECT_EQ(m.m_position.x, e.x);
        EXPECT_EQ(m.m_position.y, e.y);
        EXPECT_EQ(m.m_buttons[eMouseButtonLeft], e.left);
        EXPECT_EQ(m.m_buttons[eMouseButtonRight], e.right);
        EXPECT_EQ(m.m_heldKeys, e.held);
        EXPECT_EQ(m.m_wheelAmount, e.wheel);
        EXPECT_EQ(m.m_keyCode, e.key);
        EXPECT_EQ(m.m_keyChar, e.keyChar);
        EXPECT_EQ(m.m_param, e.param);
        EXPECT_EQ(m.m_paths, e.paths);
    }
    const std::size_t last = steps.size() - 1;
    EXPECT_EQ(steps[last - 1].m_kind, WCEventScriptStep::eStepWait);
    EXPECT_EQ(steps[last - 1].m_waitMs, 3600000u);
    EXPECT_EQ(steps[last].m_kind, WCEventScriptStep::eStepFrame);
    EXPECT_EQ(steps[last].m_frameName, "after-drag_2.v1");
}

TEST(WCEventScript, RefusesBadInputWithItsCodeAndKeepsTheScriptItHad) {
    const struct {
        std::string step;
        int code;
    } cases[] = {
        {"{event: down, x: 1", eInvalidFileFormatProblem},
        {"7", eInvalidFileFormatProblem},
        {"{event: down, x: 1, y: 2, amount: 3}", eInvalidFileFormatProblem},
        {"{event: key, key: up, char: a}", eInvalidFileFormatProblem},
        {"{event: drop, x: 1, y: 1, files: a.wav}", eInvalidFileFormatProblem},
        {"{event: down, x: 1}", eKeyNotFound},
        {"{event: key}", eKeyNotFound},
        {"{event: jump, x: 1, y: 1}", eValueNotFound},
        {"{event: key, key: hyper}", eValueNotFound},
        {"{event: move, x: 1, y: 1, modifiers: [meta]}", eValueNotFound},
        {"{event: down, x: 1, y: 1, button: fourth}", eValueNotFound},
        {"{event: down, x: 1.5, y: 1}", eNotANumber},
        {"{event: down, x: [1], y: 1}", eInvalidFileFormatProblem},
        {"{event: down, x: ten, y: 1}", eNotANumber},
        {"{event: down, x: 32768, y: 1}", eOutOfRangeNumber},
        {"{event: down, x: 1, y: -99999999999999999999}", eOutOfRangeNumber},
        {"{event: wheel, x: 1, y: 1, amount: 120001}", eOutOfRangeNumber},
        {"{event: wait, ms: 3600001}", eOutOfRangeNumber},
        {"{event: wait, ms: -1}", eOutOfRangeNumber},
        {"{event: move, x: 1, y: 1, modifiers: [alt, alt, alt, alt, alt]}", eOutOfRangeNumber},
        {"{event: frame, name: " + std::string(128, 'n') + "}", eValueWrongSize},
        {"{event: key, char: ab}", eValueWrongSize},
        {"{event: frame, name: ../up}", eFMIllegalPathRef},
        {"{event: frame, name: .hidden}", eFMIllegalPathRef},
        {"{event: down, x: 1, y: 1, button: middle}", eNotImplemented},
    };
    WCEventScript script;
    ASSERT_EQ(script.ReadFromYAML("events: [{event: wait, ms: 5}]"), eNoErr);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.step);
        EXPECT_EQ(script.ReadFromYAML("events:\n  - {event: wait, ms: 1}\n  - " + c.step + "\n"),
                  c.code);
        ASSERT_EQ(script.GetSteps().size(), 1u);
        EXPECT_EQ(script.GetSteps()[0].m_waitMs, 5u);
        if (&c != &cases[0]) {
            EXPECT_EQ(script.GetLastError().rfind("step 2 (line 3): ", 0), 0u)
                << script.GetLastError();
        }
    }
    for (const char *document : {"", "events: 3", "- {event: up}", "{events: [1, 2"})
        EXPECT_EQ(script.ReadFromYAML(document), eInvalidFileFormatProblem) << document;
    std::string tooMany = "events:\n";
    for (std::size_t i = 0; i <= WCEventScript::kMaxSteps; ++i)
        tooMany += "- 0\n";
    EXPECT_EQ(script.ReadFromYAML(tooMany), eOutOfRangeNumber);
    EXPECT_EQ(script.ReadFromFile("/no/such/script.yaml"), eFMFileNotFound);
    EXPECT_EQ(script.GetSteps().size(), 1u);
}

using EventScriptPlay = view_test::HeadlessDesktop;

TEST_F(EventScriptPlay, PostsMessagesRunsTheClockAndStopsAtAFailingFrameMark) {
    view_test::Recorder recorder;
    WSPluginView *view = MakeView(&recorder, 100, 50);
    WCEventScript script;
    ASSERT_EQ(script.ReadFromYAML(R"(
events:
  - {event: down, x: 10, y: 20}
  - {event: move, x: 10, y: 15}
  - {event: frame, name: one}
  - {event: wheel, x: 10, y: 15, amount: 120}
  - {event: wait, ms: 100}
  - {event: frame, name: two}
  - {event: up, x: 10, y: 15}
)"),
              eNoErr);
    std::vector<std::string> frames;
    const std::uint64_t start = GetCurrentTimeMs();
    const auto record = [&](const std::string &name) {
        frames.push_back(name);
        return name == "two" ? eGMGenericErr : eNoErr;
    };
    EXPECT_EQ(PlayEventScript(view, script, record, 16), eGMGenericErr);
    EXPECT_EQ(frames, (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(GetCurrentTimeMs() - start, 3 * 16 + 100u);
    ASSERT_EQ(recorder.calls.size(), 3u);
    EXPECT_EQ(recorder.calls[0].code, eEventMouseDown);
    EXPECT_EQ(recorder.calls[1].code, eEventMouseMoved);
    EXPECT_TRUE(recorder.calls[1].event.GetMouseButtonPressed(eMouseButtonLeft));
    EXPECT_EQ(recorder.calls[1].event.GetMouseDelta().y, -5);
    // The wheel went onto the desktop and comes back in the view's pixels.
    EXPECT_EQ(recorder.calls[2].code, eEventMouseWheel);
    EXPECT_EQ(recorder.calls[2].event.GetMouseLocation().x, 10);
    EXPECT_EQ(recorder.calls[2].event.GetMouseLocation().y, 15);
}
