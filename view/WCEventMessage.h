#pragma once

#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "view/WCEventTypes.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

// What the window system says happened to a view, before the dispatcher turns it into a
// WCEventData. The kinds keep the numbers of the messages they stand for, so that the dispatch
// table reads the same on every platform.
enum WEEventMessageKind : unsigned int {
    eMsgNone = 0,
    eMsgSize = 5,
    eMsgDeactivate = 6,
    eMsgKillFocus = 8,
    eMsgPaint = 15,
    eMsgClose = 16,
    eMsgCancelMode = 31,
    eMsgKeyDown = 256,
    eMsgKeyUp = 257,
    eMsgSysKeyDown = 260,
    eMsgSysKeyUp = 261,
    eMsgCommand = 273,
    eMsgInitMenuPopup = 279,
    eMsgMouseMove = 512,
    eMsgLeftButtonDown = 513,
    eMsgLeftButtonUp = 514,
    eMsgLeftDoubleClick = 515,
    eMsgRightButtonDown = 516,
    eMsgRightButtonUp = 517,
    eMsgRightDoubleClick = 518,
    eMsgMouseWheel = 522,
    eMsgSizing = 532,
    eMsgDeviceChange = 537,
    eMsgDPIChanged = 736,
    eMsgTouch = 576,
    // The private messages of the library's windows.
    eMsgPrivate0 = 1024,
    eMsgPrivate3 = 1027,
    eMsgFileDragOver = 1034,
    eMsgFileDrop = 1036,
};

// Physical keys held while a message was made; the back-end's keyboard state follows them.
enum WEHeldKey : unsigned int {
    eHeldControl = 1u << 0,
    eHeldLeftSuper = 1u << 1,
    eHeldRightSuper = 1u << 2,
    eHeldShift = 1u << 3,
    eHeldAlt = 1u << 4,
};

// One message of the headless window system, as a test or a tool injects it. Mouse positions are
// in the view's own pixels, except for the wheel, whose position is on the desktop as systems
// report it. [any-thread]: a plain value.
struct WCEventMessage {
    WEEventMessageKind m_kind = eMsgNone;
    WCPoint2D<short> m_position;
    // Pressed state of the buttons, in the order of WEMouseButton.
    bool m_buttons[eMouseButtonCount] = {false, false, false};
    // A mask of WEHeldKey.
    unsigned int m_heldKeys = 0;
    // Wheel steps of 120 per notch, as mice report them.
    int m_wheelAmount = 0;
    WEKeyCode m_keyCode = eKeyNone;
    char m_keyChar = 0;
    // A command's id in the low word and its source in the high word; the touch id of a touch.
    unsigned int m_param = 0;
    // The files of a drop or a drag over.
    std::vector<std::string> m_paths;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
