#include "view/linux/WCHeadlessDesktop.h"

#include <algorithm>
#include <utility>

#include "core/WTErrors.h"
#include "core/WUAssert.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

const WURect<int> kDefaultScreen(0, 0, 1080, 1920);

} // namespace

WCHeadlessDesktop::WCHeadlessDesktop() : m_screens{kDefaultScreen} {}

WCHeadlessDesktop &WCHeadlessDesktop::Get() {
    static WCHeadlessDesktop desktop;
    return desktop;
}

WSPluginView &WCHeadlessDesktop::View(WSPluginView *view) const {
    if (view == nullptr) {
        ReportAssertFailure(__FILE__, __LINE__, "view != nullptr");
        throw int(eMemNullPointer);
    }
    if (!IsLiveView(view))
        throw int(kErrInvalidHandle);
    return *view;
}

bool WCHeadlessDesktop::IsLiveView(WSPluginView *view) const noexcept {
    return view != nullptr &&
           std::any_of(m_views.begin(), m_views.end(), [&](auto &v) { return v.get() == view; });
}

WCPluginNativeView &WCHeadlessDesktop::Window(WCPluginNativeView *window) const {
    if (window == nullptr) {
        ReportAssertFailure(__FILE__, __LINE__, "window != nullptr");
        throw int(eMemNullPointer);
    }
    const bool live =
        std::any_of(m_windows.begin(), m_windows.end(), [&](auto &w) { return w.get() == window; });
    if (!live)
        throw int(kErrInvalidHandle);
    return *window;
}

WCPluginNativeView &WCHeadlessDesktop::AddWindow() {
    m_windows.push_back(std::make_unique<WCPluginNativeView>());
    m_windows.back()->m_thread = miThread::GetCurrentThreadRef();
    return *m_windows.back();
}

WSPluginView &WCHeadlessDesktop::AddView(WCPluginNativeView &native) {
    m_views.push_back(std::make_unique<WSPluginView>(&native));
    native.m_view = m_views.back().get();
    return *m_views.back();
}

void WCHeadlessDesktop::RemoveView(WSPluginView &view) {
    WSPluginView *const gone = &view;
    std::erase_if(m_timers, [&](const WSTimer &t) { return t.m_view == gone; });
    if (m_capture == gone)
        m_capture = nullptr;
    if (m_focus == gone)
        m_focus = nullptr;
    if (m_textBox.m_view == gone)
        m_textBox = WSTextBoxState();
    WCPluginNativeView *const native = view.m_native;
    native->m_view = nullptr;
    std::erase_if(m_views, [&](auto &v) { return v.get() == gone; });
    RemoveWindow(*native);
}

void WCHeadlessDesktop::RemoveWindow(WCPluginNativeView &window) {
    // A view's window goes through its view, which comes back here once it has let go.
    if (window.m_view != nullptr) {
        RemoveView(*window.m_view);
        return;
    }
    std::vector<WCPluginNativeView *> children;
    for (auto &w : m_windows)
        if (w->m_parent == &window)
            children.push_back(w.get());
    for (WCPluginNativeView *child : children)
        RemoveWindow(*child);
    std::erase_if(m_windows, [&](auto &w) { return w.get() == &window; });
}

int WCHeadlessDesktop::StartTimer(WSPluginView *view, std::uint64_t periodMs,
                                  std::function<void()> callback) {
    WSTimer timer;
    timer.m_id = m_nextTimerId++;
    timer.m_view = view;
    timer.m_period = periodMs;
    timer.m_due = m_now + periodMs;
    timer.m_callback = std::make_shared<std::function<void()>>(std::move(callback));
    m_timers.push_back(std::move(timer));
    return m_timers.back().m_id;
}

bool WCHeadlessDesktop::StopTimer(int timerId) {
    return std::erase_if(m_timers, [&](const WSTimer &t) { return t.m_id == timerId; }) != 0;
}

int WCHeadlessDesktop::Advance(std::uint64_t ms) {
    if (m_advancing)
        return eWrongObjectState;
    m_advancing = true;
    const std::uint64_t target = m_now + ms;
    for (;;) {
        // Timers start in id order and keep it, so the first of the earliest is the one to fire.
        auto next = std::min_element(
            m_timers.begin(), m_timers.end(), [](const WSTimer &a, const WSTimer &b) {
                return a.m_due < b.m_due || (a.m_due == b.m_due && a.m_id < b.m_id);
            });
        if (next == m_timers.end() || next->m_due > target)
            break;
        m_now = next->m_due;
        next->m_due += next->m_period;
        // The tick may stop timers or dispose of views; the callback lives on through this copy.
        const std::shared_ptr<std::function<void()>> callback = next->m_callback;
        (*callback)();
    }
    m_now = target;
    m_advancing = false;
    return eNoErr;
}

int WCHeadlessDesktop::PullFrame(WSPluginView &view, bool force) {
    WIViewFrameSource *const source = view.m_frameSource;
    if (source == nullptr)
        return eSomeThingNotInitailzed;
    if (!force && !source->HasSomethingToPaint())
        return eNoErr;
    view.m_scratch.ResizePtr(0);
    {
        // Threshold 0: every payload inline, so the kept frame owns all its data and stays
        // readable after the GUI has moved on.
        miGS::WCGraphicStreamBinaryWriter writer(view.m_scratch, 0);
        if (const int err = source->GetDrawInstructions(writer); err != eNoErr)
            return err;
    }
    Utils::WCStMemObj::Swap(view.m_frame, view.m_scratch);
    ++view.m_frameCount;
    if (view.m_painter)
        view.m_painter(static_cast<const char *>(view.m_frame.GetPtr()),
                       static_cast<std::size_t>(view.m_frame.GetSize()));
    return eNoErr;
}

void WCHeadlessDesktop::Reset() {
    m_timers.clear();
    m_views.clear();
    m_windows.clear();
    m_screens = {kDefaultScreen};
    m_heldKeys = 0;
    m_wheelLines = 3;
    m_capture = nullptr;
    m_focus = nullptr;
    m_now = 0;
    m_responder = nullptr;
    m_questions.clear();
    m_textBox = WSTextBoxState();
    m_cursorHideCount = 0;
    m_cursorPosition = WCPoint2D<int>();
    m_cursorShape = 0;
    m_menus.clear();
    m_shownMenus.clear();
    m_nextTimerId = 1;
    m_advancing = false;
    m_initialised = false;
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
