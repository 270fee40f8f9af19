// The view operations of the headless desktop: life, views, system windows, coordinates, input,
// timers and frames.
#include <cmath>
#include <utility>

#include "view/PluginViewManager.h"
#include "view/linux/WCHeadlessDesktop.h"
#include "view/linux/WUHeadlessView.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

WCHeadlessDesktop &Desk() {
    return WCHeadlessDesktop::Get();
}

void CheckSize(int width, int height) {
    if (width < 0 || height < 0)
        throw int(eOutOfRangeNumber);
}

void CheckFactor(double factor) {
    if (!std::isfinite(factor) || factor <= 0.0)
        throw int(eOutOfRangeNumber);
}

WURect<int> WholeView(const WSPluginView &view) {
    return WURect<int>(0, 0, view.m_native->m_height, view.m_native->m_width);
}

bool IsMouseMessage(WEEventMessageKind kind) {
    switch (kind) {
    case eMsgMouseMove:
    case eMsgLeftButtonDown:
    case eMsgLeftButtonUp:
    case eMsgLeftDoubleClick:
    case eMsgRightButtonDown:
    case eMsgRightButtonUp:
    case eMsgRightDoubleClick: return true;
    default: return false;
    }
}

// The screen that holds `point`, or the main screen.
const WURect<int> &ScreenOf(const WCPoint2D<int> &point) {
    for (const WURect<int> &screen : Desk().m_screens)
        if (screen.PointInRect(point))
            return screen;
    return Desk().m_screens.front();
}

} // namespace

// ---- life ------------------------------------------------------------------------------------

int Init(WTNativeDLLRefType *const, std::uint64_t) {
    if (Desk().m_initialised)
        return eNoErr;
    Desk().m_initialised = true;
    Desk().m_queue.Open();
    return eNoErr;
}

int Dispose() {
    Desk().m_queue.Close();
    Desk().Reset();
    return eNoErr;
}

WEManagerInitOptions GetRuntimeEnviron() {
    return Desk().m_initialised ? eResourceManagerInitialized : eResourceManagerNotInitialized;
}

// ---- views -----------------------------------------------------------------------------------

int CreatePluginView(const WCPluginViewCreateOptions &options, WSPluginView *&outView) {
    return CallAtDoor([&] {
        CheckSize(options.m_width, options.m_height);
        if (options.m_parent != nullptr)
            Desk().Window(options.m_parent);
        WCPluginNativeView &native = Desk().AddWindow();
        native.m_parent = options.m_parent;
        native.m_position = options.m_position;
        native.m_width = options.m_width;
        native.m_height = options.m_height;
        native.m_title = options.m_title;
        WSPluginView &view = Desk().AddView(native);
        view.m_visible = options.m_visible;
        view.m_dispatcher.InstallEventHandler(options.m_owner, options.m_reference,
                                              options.m_callback);
        view.m_dispatcher.GetEventData().SetParentView(&view);
        outView = &view;
        return eNoErr;
    });
}

int DisposePluginView(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().RemoveView(Desk().View(view));
        return eNoErr;
    });
}

int ShowPluginView(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().View(view).m_visible = true;
        return eNoErr;
    });
}

int HidePluginView(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().View(view).m_visible = false;
        return eNoErr;
    });
}

int EnableWindowEvents(bool enable, WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().View(view).m_eventsEnabled = enable;
        return eNoErr;
    });
}

int RepositionView(WSPluginView *view, const WCPoint2D<int> &position, bool relative, bool repaint,
                   bool keepOnScreen) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        WCPluginNativeView &native = *v.m_native;
        WCPoint2D<int> target = relative ? native.m_position + position : position;
        if (keepOnScreen) {
            // Work on the desktop, where the screens are, then back into the parent.
            const WCPoint2D<int> parentOrigin = native.GetGlobalOrigin() - native.m_position;
            WCPoint2D<int> global = parentOrigin + target;
            const WURect<int> &screen = ScreenOf(global);
            global.x = std::max(screen.left, std::min(global.x, screen.right - native.m_width));
            global.y = std::max(screen.top, std::min(global.y, screen.bottom - native.m_height));
            target = global - parentOrigin;
        }
        native.m_position = target;
        if (repaint)
            v.m_invalid = WholeView(v);
        return eNoErr;
    });
}

int ResizeView(WSPluginView *view, int width, int height, bool repaint) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        CheckSize(width, height);
        v.m_native->m_width = width;
        v.m_native->m_height = height;
        if (repaint)
            v.m_invalid = WholeView(v);
        return eNoErr;
    });
}

int GetViewBounds(WSPluginView *view, WURect<int> &outBounds) {
    return CallAtDoor([&] {
        const WCPluginNativeView &native = *Desk().View(view).m_native;
        outBounds.SetTopLeftWidthHeight(native.m_position.y, native.m_position.x, native.m_width,
                                        native.m_height);
        return eNoErr;
    });
}

int InvalidateRect(WSPluginView *view, const WURect<int> &rect) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        WURect<int> inView;
        // Only what lies in the view can wait to be painted; an empty union would reach the
        // origin, so the first rectangle is taken as it is.
        if (!rect.GetIntersection(WholeView(v), inView))
            return eNoErr;
        if (v.m_invalid.IsEmpty())
            v.m_invalid = inView;
        else
            v.m_invalid.Union(inView);
        return eNoErr;
    });
}

int GetInvalidRect(WSPluginView *view, WURect<int> &outRect) {
    return CallAtDoor([&] {
        outRect = Desk().View(view).m_invalid;
        return eNoErr;
    });
}

int RenderNow(WSPluginView *view) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        WCEventMessage paint;
        paint.m_kind = eMsgPaint;
        v.m_dispatcher.HandleEvent(paint);
        if (Desk().IsLiveView(view))
            v.m_invalid.Reset();
        return eNoErr;
    });
}

int IsViewInFullScreenWindow(WSPluginView *view, bool &outFullScreen) {
    return CallAtDoor([&] {
        outFullScreen = Desk().View(view).m_fullScreen;
        return eNoErr;
    });
}

int GetNativeView(WSPluginView *view, WCPluginNativeView *&outNative) {
    return CallAtDoor([&] {
        outNative = Desk().View(view).m_native;
        return eNoErr;
    });
}

int GetNativeParentView(WSPluginView *view, WCPluginNativeView *&outParent) {
    return CallAtDoor([&] {
        outParent = Desk().View(view).m_native->m_parent;
        return eNoErr;
    });
}

int GetParentViewFromNativeView(WCPluginNativeView *native, WSPluginView *&outView) {
    return CallAtDoor([&] {
        WSPluginView *const view = Desk().Window(native).m_view;
        if (view == nullptr)
            throw int(eValueNotFound);
        outView = view;
        return eNoErr;
    });
}

int MakePluginWindowNoTopMost(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().View(view).m_noTopMost = true;
        return eNoErr;
    });
}

int GetThreadWhereViewWasCreated(WSPluginView *view, miThread::WCThreadRef &outThread) {
    return CallAtDoor([&] {
        outThread = Desk().View(view).m_native->m_thread;
        return eNoErr;
    });
}

int GetDPIScaleFactor(WSPluginView *view, double &outFactor) {
    return CallAtDoor([&] {
        outFactor = Desk().View(view).m_dpiScale;
        return eNoErr;
    });
}

int GetRetinaScaleFactor(WSPluginView *view, double &outFactor) {
    return CallAtDoor([&] {
        outFactor = Desk().View(view).m_retinaScale;
        return eNoErr;
    });
}

int SetNativeViewPosition(WCPluginNativeView *native, const WCPoint2D<int> &position) {
    return CallAtDoor([&] {
        Desk().Window(native).m_position = position;
        return eNoErr;
    });
}

// ---- system windows --------------------------------------------------------------------------

int CreateSystemWindow(const WCSystemWindowCreateOptions &options, WCPluginNativeView *&outWindow) {
    return CallAtDoor([&] {
        CheckSize(options.m_width, options.m_height);
        if (options.m_parent != nullptr)
            Desk().Window(options.m_parent);
        WCPluginNativeView &window = Desk().AddWindow();
        window.m_parent = options.m_parent;
        window.m_position = options.m_position;
        window.m_width = options.m_width;
        window.m_height = options.m_height;
        window.m_title = options.m_title;
        outWindow = &window;
        return eNoErr;
    });
}

int DisposeSystemWindow(WCPluginNativeView *window) {
    return CallAtDoor([&] {
        Desk().RemoveWindow(Desk().Window(window));
        return eNoErr;
    });
}

int ResizeSystemWindow(WCPluginNativeView *window, int width, int height) {
    return CallAtDoor([&] {
        WCPluginNativeView &w = Desk().Window(window);
        CheckSize(width, height);
        w.m_width = width;
        w.m_height = height;
        return eNoErr;
    });
}

int GetSystemWindowTitle(WCPluginNativeView *window, std::string &outTitle) {
    return CallAtDoor([&] {
        outTitle = Desk().Window(window).m_title;
        return eNoErr;
    });
}

int UpdateSystemWindowTitle(WCPluginNativeView *window, const char *title) {
    return CallAtDoor([&] {
        WCPluginNativeView &w = Desk().Window(window);
        if (title == nullptr)
            throw int(eMemNullPointer);
        w.m_title = title;
        return eNoErr;
    });
}

int GetWindowPosition(WCPluginNativeView *window, WCPoint2D<int> &outPosition) {
    return CallAtDoor([&] {
        outPosition = Desk().Window(window).m_position;
        return eNoErr;
    });
}

int SetWindowPosition(WCPluginNativeView *window, const WCPoint2D<int> &position) {
    return SetNativeViewPosition(window, position);
}

int GetThreadWhereSystemWindowWasCreated(WCPluginNativeView *window,
                                         miThread::WCThreadRef &outThread) {
    return CallAtDoor([&] {
        outThread = Desk().Window(window).m_thread;
        return eNoErr;
    });
}

// ---- coordinates and input -------------------------------------------------------------------

int PVMGlobalToLocal(WSPluginView *view, const WCPoint2D<int> &in, WCPoint2D<int> &out) {
    return CallAtDoor([&] {
        out = in - Desk().View(view).m_native->GetGlobalOrigin();
        return eNoErr;
    });
}

int PVMLocalToGlobal(WSPluginView *view, const WCPoint2D<int> &in, WCPoint2D<int> &out) {
    return CallAtDoor([&] {
        out = in + Desk().View(view).m_native->GetGlobalOrigin();
        return eNoErr;
    });
}

int PVMGlobalToLocal(WSPluginView *view, const WCPoint2D<short> &in, WCPoint2D<short> &out) {
    WCPoint2D<int> result;
    const int err = PVMGlobalToLocal(view, WCPoint2D<int>(in.x, in.y), result);
    if (err == eNoErr)
        out = WCPoint2D<short>(static_cast<short>(result.x), static_cast<short>(result.y));
    return err;
}

int PVMLocalToGlobal(WSPluginView *view, const WCPoint2D<short> &in, WCPoint2D<short> &out) {
    WCPoint2D<int> result;
    const int err = PVMLocalToGlobal(view, WCPoint2D<int>(in.x, in.y), result);
    if (err == eNoErr)
        out = WCPoint2D<short>(static_cast<short>(result.x), static_cast<short>(result.y));
    return err;
}

int PVMSetCapture(WSPluginView *view) {
    return CallAtDoor([&] {
        Desk().m_capture = &Desk().View(view);
        return eNoErr;
    });
}

int PVMReleaseCapture() {
    Desk().m_capture = nullptr;
    return eNoErr;
}

WSPluginView *PVMGetCapture() {
    return Desk().m_capture;
}

bool GetModifierKeyState(WEModifier modifier) {
    const unsigned int keys = Desk().m_heldKeys;
    switch (modifier) {
    case eModifierPrimary: return (keys & eHeldControl) != 0;
    case eModifierSecondary: return (keys & (eHeldLeftSuper | eHeldRightSuper)) != 0;
    case eModifierShift: return (keys & eHeldShift) != 0;
    case eModifierAlt: return (keys & eHeldAlt) != 0;
    case eModifierCount: break;
    }
    return false;
}

int FlipModifierKey(WEModifier modifier, bool &outDown) {
    unsigned int &keys = Desk().m_heldKeys;
    switch (modifier) {
    case eModifierPrimary: keys ^= eHeldControl; break;
    case eModifierSecondary:
        // Either Super key down counts, so flipping lets both go or presses the left one.
        keys = GetModifierKeyState(eModifierSecondary)
                   ? keys & ~static_cast<unsigned int>(eHeldLeftSuper | eHeldRightSuper)
                   : keys | eHeldLeftSuper;
        break;
    case eModifierShift: keys ^= eHeldShift; break;
    case eModifierAlt: keys ^= eHeldAlt; break;
    default: return eOutOfRangeNumber;
    }
    outDown = GetModifierKeyState(modifier);
    return eNoErr;
}

int Pack(short low, short high, unsigned int &outPacked) {
    outPacked = static_cast<unsigned int>(static_cast<std::uint16_t>(low)) |
                (static_cast<unsigned int>(static_cast<std::uint16_t>(high)) << 16);
    return eNoErr;
}

int UnPack(unsigned int packed, short &outLow, short &outHigh) {
    outLow = static_cast<short>(packed & 0xFFFFu);
    outHigh = static_cast<short>(packed >> 16);
    return eNoErr;
}

// ---- timers and frames -----------------------------------------------------------------------

int StartViewTimer(WSPluginView *view, std::uint64_t periodMs, std::function<void()> callback,
                   int &outTimerId) {
    return CallAtDoor([&] {
        Desk().View(view);
        if (periodMs == 0)
            throw int(eOutOfRangeNumber);
        if (!callback)
            throw int(eMemNullPointer);
        outTimerId = Desk().StartTimer(view, periodMs, std::move(callback));
        return eNoErr;
    });
}

int StopViewTimer(int timerId) {
    return Desk().StopTimer(timerId) ? eNoErr : eValueNotFound;
}

int SetFrameSource(WSPluginView *view, WIViewFrameSource *source, std::uint64_t periodMs) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        if (source != nullptr && periodMs == 0)
            throw int(eOutOfRangeNumber);
        if (v.m_frameTimerId != 0)
            Desk().StopTimer(v.m_frameTimerId);
        v.m_frameTimerId = 0;
        v.m_frameSource = source;
        if (source != nullptr)
            v.m_frameTimerId =
                Desk().StartTimer(view, periodMs, [view] { Desk().PullFrame(*view, false); });
        return eNoErr;
    });
}

int SetFramePainter(WSPluginView *view,
                    std::function<void(const char *stream, std::size_t size)> painter) {
    return CallAtDoor([&] {
        Desk().View(view).m_painter = std::move(painter);
        return eNoErr;
    });
}

int DrawFrameNow(WSPluginView *view) {
    return CallAtDoor([&] { return Desk().PullFrame(Desk().View(view), true); });
}

int GetLastFrame(WSPluginView *view, const char *&outStream, std::size_t &outSize) {
    return CallAtDoor([&] {
        const WSPluginView &v = Desk().View(view);
        outStream = static_cast<const char *>(v.m_frame.GetPtr());
        outSize = static_cast<std::size_t>(v.m_frame.GetSize());
        return eNoErr;
    });
}

int GetFrameCount(WSPluginView *view, std::uint64_t &outCount) {
    return CallAtDoor([&] {
        outCount = Desk().View(view).m_frameCount;
        return eNoErr;
    });
}

// ---- the headless desktop's own controls -----------------------------------------------------

int PostEvent(WSPluginView *view, const WCEventMessage &message) {
    return CallAtDoor([&] {
        WSPluginView *target = &Desk().View(view);
        WCEventMessage delivered = message;
        Desk().m_heldKeys = message.m_heldKeys;
        WSPluginView *const capture = Desk().m_capture;
        if (capture != nullptr && capture != target && IsMouseMessage(message.m_kind)) {
            // The position moves from the view it happened in to the capturing one.
            const WCPoint2D<int> global =
                WCPoint2D<int>(message.m_position.x, message.m_position.y) +
                target->m_native->GetGlobalOrigin();
            const WCPoint2D<int> local = global - capture->m_native->GetGlobalOrigin();
            delivered.m_position =
                WCPoint2D<short>(static_cast<short>(local.x), static_cast<short>(local.y));
            target = capture;
        }
        if (!target->m_visible || !target->m_eventsEnabled)
            return 0;
        const bool isFiles = message.m_kind == eMsgFileDrop || message.m_kind == eMsgFileDragOver;
        if (isFiles && !target->m_dragDropRegistered)
            return 0;
        return target->m_dispatcher.HandleEvent(delivered);
    });
}

int AdvanceTime(std::uint64_t ms) {
    return Desk().Advance(ms);
}

std::uint64_t GetCurrentTimeMs() {
    return Desk().m_now;
}

void SetHeldKeys(unsigned int heldKeys) {
    Desk().m_heldKeys = heldKeys;
}

unsigned int GetHeldKeys() {
    return Desk().m_heldKeys;
}

void SetWheelScrollLines(unsigned int lines) {
    Desk().m_wheelLines = lines;
}

int SetViewInFullScreenWindow(WSPluginView *view, bool fullScreen) {
    return CallAtDoor([&] {
        Desk().View(view).m_fullScreen = fullScreen;
        return eNoErr;
    });
}

int SetDPIScaleFactor(WSPluginView *view, double factor) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        CheckFactor(factor);
        v.m_dpiScale = factor;
        return eNoErr;
    });
}

int SetRetinaScaleFactor(WSPluginView *view, double factor) {
    return CallAtDoor([&] {
        WSPluginView &v = Desk().View(view);
        CheckFactor(factor);
        v.m_retinaScale = factor;
        return eNoErr;
    });
}

WSPluginView *GetFocusView() {
    return Desk().m_focus;
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
