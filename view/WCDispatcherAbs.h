#pragma once

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "view/WCEventData.h"
#include "view/WCEventMessage.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

// The callback of a view: true when the event was handled.
using WTEventCallback = bool (*)(void *reference, int eventCode, WCEventData *event, void *owner);

// Turns a view's messages into its WCEventData and one call of its callback with the event's
// code (WEEventCode). Every view has one; the platform derives from it to answer the few
// questions only the window system can (focus, screen to view, the wheel setting). Without a
// callback nothing is handled. [main-thread] of its view.
class WCDispatcherAbs {
public:
    WCDispatcherAbs() = default;
    virtual ~WCDispatcherAbs();
    WCDispatcherAbs(const WCDispatcherAbs &) = delete;
    WCDispatcherAbs &operator=(const WCDispatcherAbs &) = delete;

    void InstallEventHandler(void *owner, void *reference, WTEventCallback callback) noexcept;
    void SetOwner(void *owner) noexcept { m_owner = owner; }
    void *GetOwner() const noexcept { return m_owner; }

    // 1 when the message was handled, 0 when not (always 0 without a callback).
    int HandleEvent(const WCEventMessage &message);
    // A touch: its id, where it is and whether the finger is on the glass (the left button),
    // code eEventTouch.
    int HandleTouch(const WCEventMessage &message);

    WCEventData &GetEventData() noexcept { return m_eventData; }
    const WCEventMessage &GetCurrentMessage() const noexcept { return m_message; }

    // The wheel setting that means a page per notch rather than a number of lines.
    static constexpr unsigned int kWheelScrollPage = 0xFFFFFFFFu;

protected:
    // What the window system answers; the defaults suit a view that is alone on its screen.
    virtual void SetFocusSelf() {}
    virtual bool IsNeedToBlockMouseEvent() { return false; }
    virtual WCPoint2D<short> ScreenToClientSelf(WCPoint2D<short> screen) { return screen; }
    virtual unsigned int GetWheelScrollLinesSelf() { return 3; }
    // Focus went elsewhere, which for a plug-in window means a click outside it.
    virtual int DoMouseClickOutsideWindow();

    bool CallBack(int eventCode);

private:
    int DoMouseDown(WEMouseButton button);
    int DoMouseUp(WEMouseButton button);
    int DoMouseMove();
    int DoDoubleClick(WEMouseButton button);
    int DoMouseWheelMoved();
    int DoKeyDown();
    int DoCommand();
    int DoFiles(int eventCode);

    WCEventData m_eventData;
    WCEventMessage m_message;
    void *m_reference = nullptr;
    void *m_owner = nullptr;
    WTEventCallback m_callback = nullptr;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
