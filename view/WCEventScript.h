#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "view/WCEventMessage.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

// One step of a script: a message to post, a wait on the headless clock, a frame mark, the
// user's answer to the next menu, or a text typed into the open text box and accepted.
struct WCEventScriptStep {
    enum WEKind : int {
        eStepMessage = 0,
        eStepWait = 1,
        eStepFrame = 2,
        eStepMenuChoice = 3,
        eStepText = 4
    };
    WEKind m_kind = eStepMessage;
    WCEventMessage m_message;
    std::uint64_t m_waitMs = 0;
    // The frame's name, usable as a file name.
    std::string m_frameName;
    // The title of the item to pick in the next menu the view opens.
    std::string m_menuItem;
    // What the user types into the open text box before accepting it.
    std::string m_text;
    // Where the step starts in the text, from 1, for messages to the script's author.
    int m_line = 0;
};

// A recorded input session for a headless view, read from YAML:
//
//   events:
//     - {event: down, x: 64, y: 80}                  # button: left (default), right
//     - {event: move, x: 64, y: 70, modifiers: [primary]}
//     - {event: up, x: 64, y: 70}
//     - {event: double-click, x: 64, y: 80, button: right}
//     - {event: wheel, x: 64, y: 80, amount: 120}    # 120 a notch, negative is down
//     - {event: key, key: page-up}                   # key-up releases a key
//     - {event: key, char: "7", modifiers: [primary, shift]}
//     - {event: drag-over, x: 10, y: 10, files: [a.wav]}
//     - {event: drop, x: 10, y: 10, files: [a.wav]}
//     - {event: touch, x: 10, y: 10, id: 1}         # a finger put down, or moved
//     - {event: touch-up, x: 10, y: 10, id: 1}      # and lifted
//     - {event: wait, ms: 100}
//     - {event: frame, name: after-drag}
//     - {event: menu, item: "High"}                  # picks it in the next menu that opens
//     - {event: text, text: "-6"}                    # types it into the open text box, accepts
//
// Positions are the view's own pixels, -32768..32767, for every kind (the player moves a wheel's
// onto the desktop). A down keeps its button pressed in the messages that follow until its up, as
// a mouse does. Modifiers: primary, secondary, shift, alt. Named keys: up down left right home
// end page-up page-down insert tab return escape space backspace delete f1..f12; a `char` is one
// byte. Frame names are letters, digits, '-', '_' and '.', not first, at most 127 bytes.
// Limits: 100000 steps and as many files, a wheel amount of 120000 either way, a wait of one hour.
//
// A read that fails answers its code, keeps the steps read before, and leaves the step, line and
// reason in GetLastError. Codes: eFMFileNotFound and the file layer's for the file;
// eInvalidFileFormatProblem for text that is not YAML, no "events" list, a step or field of the
// wrong shape or a field that the kind does not take; eKeyNotFound for a missing field;
// eValueNotFound for an unknown event, button, modifier or key name; eNotANumber for a number
// that is not an integer; eOutOfRangeNumber for a number or a count beyond its limit;
// eValueWrongSize for a name too long or a char of other than one byte; eFMIllegalPathRef for a
// frame name that is no plain file name (and eValueWrongSize for an empty menu item, or a menu
// item or text longer than a name); eNotImplemented for the middle button's press, which the view layer has no
// message for. [main-thread], or any one thread at a time.
class WCEventScript {
public:
    static constexpr std::size_t kMaxSteps = 100000;
    static constexpr std::size_t kMaxNameLength = 127;
    static constexpr int kMaxWheelAmount = 120 * 1000;
    static constexpr std::uint64_t kMaxWaitMs = 60 * 60 * 1000;
    static constexpr std::uint64_t kMaxFileSize = 16u << 20;

    int ReadFromYAML(const std::string &text);
    int ReadFromFile(const char *path);

    const std::vector<WCEventScriptStep> &GetSteps() const noexcept { return m_steps; }
    // Why the last read failed, empty after one that succeeded.
    const std::string &GetLastError() const noexcept { return m_lastError; }

private:
    std::vector<WCEventScriptStep> m_steps;
    std::string m_lastError;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
