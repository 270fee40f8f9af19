#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WURect.h"
#include "view/WCViewCreateOptions.h"
#include "view/linux/WCMainThreadQueue.h"
#include "view/linux/WCPluginNativeView.h"
#include "view/linux/WSMenu.h"
#include "view/linux/WSPluginView.h"
#include "view/linux/WUHeadlessView.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

// The whole state of the headless window system of the process: its windows and views, screens,
// keyboard, capture, clock and timers, the dialog responder and the text box. The functions of
// the namespace are thin doors onto it. Lookups throw an int code that the doors catch.
// [main-thread], except the queue, which locks itself.
class WCHeadlessDesktop {
public:
    static WCHeadlessDesktop &Get();

    // Views and windows: a pointer that is not a live one throws kErrInvalidHandle; a null one is
    // a caller's mistake, reported through the assert handler and thrown as eMemNullPointer.
    WSPluginView &View(WSPluginView *view) const;
    WCPluginNativeView &Window(WCPluginNativeView *window) const;
    bool IsLiveView(WSPluginView *view) const noexcept;
    WCPluginNativeView &AddWindow();
    WSPluginView &AddView(WCPluginNativeView &native);
    void RemoveView(WSPluginView &view);
    // With the views inside it and the windows below it.
    void RemoveWindow(WCPluginNativeView &window);

    int StartTimer(WSPluginView *view, std::uint64_t periodMs, std::function<void()> callback);
    bool StopTimer(int timerId);
    int Advance(std::uint64_t ms);

    // One tick of a view's frame timer; `force` pulls even when the source asks no redraw.
    int PullFrame(WSPluginView &view, bool force);

    // Back to the state of a fresh process, keeping the queue's own life (Init and Dispose).
    void Reset();

    bool m_initialised = false;
    std::vector<WURect<int>> m_screens;
    unsigned int m_heldKeys = 0;
    unsigned int m_wheelLines = 3;
    WSPluginView *m_capture = nullptr;
    WSPluginView *m_focus = nullptr;
    std::uint64_t m_now = 0;
    std::function<int(const WCMessageBoxCreateOptions &)> m_responder;
    std::vector<WCMessageBoxCreateOptions> m_questions;
    WSTextBoxState m_textBox;
    int m_cursorHideCount = 0;
    WCPoint2D<int> m_cursorPosition;
    int m_cursorShape = 0;
    WCMainThreadQueue m_queue;
    // Root menus; sub-menus live inside them.
    std::vector<std::unique_ptr<WSMenu>> m_menus;
    std::vector<WSShownMenu> m_shownMenus;

private:
    WCHeadlessDesktop();

    struct WSTimer {
        int m_id = 0;
        WSPluginView *m_view = nullptr;
        std::uint64_t m_period = 0;
        std::uint64_t m_due = 0;
        std::shared_ptr<std::function<void()>> m_callback;
    };

    std::vector<std::unique_ptr<WCPluginNativeView>> m_windows;
    std::vector<std::unique_ptr<WSPluginView>> m_views;
    std::vector<WSTimer> m_timers;
    int m_nextTimerId = 1;
    bool m_advancing = false;
};

// Runs the body of a public operation: a code thrown inside comes back as its result.
template <typename Body>
int CallAtDoor(Body &&body) {
    try {
        return body();
    } catch (int code) {
        return code;
    }
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
