#include "view/WCDispatcherAbs.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

constexpr int kWheelDelta = 120;
constexpr int kLinesPerWheelPage = 10;

} // namespace

WCDispatcherAbs::~WCDispatcherAbs() = default;

void WCDispatcherAbs::InstallEventHandler(void *owner, void *reference,
                                          WTEventCallback callback) noexcept {
    m_owner = owner;
    m_reference = reference;
    m_callback = callback;
}

bool WCDispatcherAbs::CallBack(int eventCode) {
    return m_callback != nullptr && m_callback(m_reference, eventCode, &m_eventData, m_owner);
}

int WCDispatcherAbs::HandleEvent(const WCEventMessage &message) {
    if (m_callback == nullptr)
        return 0;
    m_message = message;
    m_eventData.SetEventMessage(message);
    switch (message.m_kind) {
    case eMsgLeftButtonDown:
    case eMsgRightButtonDown: {
        SetFocusSelf();
        return DoMouseDown(message.m_kind == eMsgLeftButtonDown ? eMouseButtonLeft
                                                                : eMouseButtonRight);
    }
    case eMsgLeftButtonUp: return DoMouseUp(eMouseButtonLeft);
    case eMsgRightButtonUp: return DoMouseUp(eMouseButtonRight);
    case eMsgCancelMode: return DoMouseUp(eMouseButtonLeft);
    case eMsgLeftDoubleClick: return DoDoubleClick(eMouseButtonLeft);
    case eMsgRightDoubleClick: return DoDoubleClick(eMouseButtonRight);
    case eMsgMouseMove: return DoMouseMove();
    case eMsgMouseWheel: return DoMouseWheelMoved();
    case eMsgKeyDown:
    case eMsgSysKeyDown: return DoKeyDown();
    case eMsgKeyUp:
    case eMsgSysKeyUp:
        m_eventData.UpdateKeyModifiersStateFromSys();
        m_eventData.SetKeyCode(message.m_keyCode);
        m_eventData.SetKeyChar(message.m_keyChar);
        return CallBack(eEventKeyUp) ? 1 : 0;
    case eMsgCommand: return DoCommand();
    case eMsgDeactivate: return CallBack(eEventWindowDeactivate) ? 1 : 0;
    case eMsgKillFocus: return DoMouseClickOutsideWindow();
    case eMsgInitMenuPopup: return CallBack(eEventPreShowMenu) ? 1 : 0;
    case eMsgDPIChanged: return CallBack(eEventDPIChange) ? 1 : 0;
    case eMsgSize:
        // The size itself reaches the GUI through resizing; the message only needs an answer.
        return 1;
    case eMsgSizing:
        // The new size travels in the position of the message.
        m_eventData.SetMouseLocation(message.m_position);
        return CallBack(eEventResize) ? 1 : 0;
    case eMsgClose: return CallBack(eEventClose) ? 1 : 0;
    case eMsgPaint: return CallBack(eEventDraw) ? 1 : 0;
    case eMsgDeviceChange: return CallBack(eEventDevicesChanged) ? 1 : 0;
    case eMsgPrivate0: return CallBack(eEventPrivate0) ? 1 : 0;
    case eMsgPrivate3: return CallBack(eEventPrivate3) ? 1 : 0;
    case eMsgFileDrop: return DoFiles(eEventFileDrop);
    case eMsgFileDragOver: return DoFiles(eEventFileDragOver);
    case eMsgTouch: return HandleTouch(message);
    case eMsgNone: break;
    }
    return 0;
}

int WCDispatcherAbs::HandleTouch(const WCEventMessage &message) {
    if (m_callback == nullptr)
        return 0;
    m_message = message;
    m_eventData.SetEventMessage(message);
    m_eventData.SetTouchEventID(static_cast<int>(message.m_param));
    m_eventData.SetMouseLocation(message.m_position);
    // A finger on the glass is a pressed left button; its lift releases it.
    m_eventData.SetMouseButtonPressed(eMouseButtonLeft, message.m_buttons[eMouseButtonLeft]);
    return CallBack(eEventTouch) ? 1 : 0;
}

int WCDispatcherAbs::DoMouseClickOutsideWindow() {
    return CallBack(eEventClickOutsideWindow) ? 1 : 0;
}

int WCDispatcherAbs::DoMouseDown(WEMouseButton button) {
    if (IsNeedToBlockMouseEvent())
        return 0;
    m_eventData.SetMouseClickCount(eClickSingle);
    m_eventData.SetMouseLocation(m_message.m_position);
    m_eventData.SetMouseOldLocation(m_message.m_position);
    m_eventData.SetMouseDownLocation(m_message.m_position);
    m_eventData.UpdateKeyModifiersStateFromSys();
    m_eventData.SetMouseDelta(WCPoint2D<short>());
    m_eventData.SetMouseButtonPressed(button, true);
    m_eventData.SetKeyCode(eKeyNone);
    return CallBack(eEventMouseDown) ? 1 : 0;
}

int WCDispatcherAbs::DoMouseUp(WEMouseButton button) {
    m_eventData.SetMouseOldLocation(m_eventData.GetMouseLocation());
    m_eventData.SetMouseLocation(m_message.m_position);
    m_eventData.CalcMouseDelta();
    m_eventData.UpdateKeyModifiersStateFromSys();
    m_eventData.SetMouseButtonPressed(button, false);
    return CallBack(eEventMouseUp) ? 1 : 0;
}

int WCDispatcherAbs::DoMouseMove() {
    m_eventData.SetMouseOldLocation(m_eventData.GetMouseLocation());
    m_eventData.SetMouseLocation(m_message.m_position);
    m_eventData.CalcMouseDelta();
    m_eventData.UpdateKeyModifiersStateFromSys();
    for (int b = 0; b < eMouseButtonCount; ++b)
        m_eventData.SetMouseButtonPressed(static_cast<WEMouseButton>(b), m_message.m_buttons[b]);
    return CallBack(eEventMouseMoved) ? 1 : 0;
}

int WCDispatcherAbs::DoDoubleClick(WEMouseButton button) {
    m_eventData.SetMouseClickCount(eClickDouble);
    m_eventData.SetMouseLocation(m_message.m_position);
    m_eventData.SetMouseOldLocation(m_message.m_position);
    m_eventData.SetMouseDownLocation(m_message.m_position);
    m_eventData.SetMouseDelta(WCPoint2D<short>());
    m_eventData.UpdateKeyModifiersStateFromSys();
    m_eventData.SetMouseButtonPressed(button, true);
    return CallBack(eEventDoubleClick) ? 1 : 0;
}

int WCDispatcherAbs::DoMouseWheelMoved() {
    const unsigned int lines = GetWheelScrollLinesSelf();
    const long long amount = m_message.m_wheelAmount;
    // A page setting scrolls a fixed number of lines per notch; otherwise notches times lines.
    const long long scaled = lines == kWheelScrollPage ? amount / kWheelDelta * kLinesPerWheelPage
                                                       : amount * lines / kWheelDelta;
    m_eventData.SetMouseLocation(ScreenToClientSelf(m_message.m_position));
    m_eventData.SetTouchEventID(static_cast<int>(scaled));
    m_eventData.UpdateKeyModifiersStateFromSys();
    m_eventData.SetMouseWheelAxis(m_eventData.GetKeyModifier(eModifierShift) ? eMouseWheelHorizontal
                                                                             : eMouseWheelVertical);
    return CallBack(eEventMouseWheel) ? 1 : 0;
}

int WCDispatcherAbs::DoKeyDown() {
    m_eventData.UpdateKeyModifiersStateFromSys();
    m_eventData.SetKeyCode(m_message.m_keyCode);
    m_eventData.SetKeyChar(m_message.m_keyChar);
    return CallBack(eEventKeyDown) ? 1 : 0;
}

int WCDispatcherAbs::DoCommand() {
    // A non-zero high word is a notification from a child control, not a command.
    if ((m_message.m_param >> 16) != 0)
        return 0;
    m_eventData.SetCommand(static_cast<short>(m_message.m_param & 0xFFFFu));
    return CallBack(eEventCommand) ? 1 : 0;
}

int WCDispatcherAbs::DoFiles(int eventCode) {
    sDragDropEvent &drop = m_eventData.GetDragDropEvent();
    drop.m_paths = m_message.m_paths;
    drop.m_location = m_message.m_position;
    m_eventData.SetMouseLocation(m_message.m_position);
    return CallBack(eventCode) ? 1 : 0;
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
