#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"
#include "core/miThread.h"
#include "resources/ResourceManager.h"
#include "resources/WCResKey.h"
#include "view/WCEventMessage.h"
#include "view/WCEventTypes.h"
#include "view/WCMenuTypes.h"
#include "view/WCViewCreateOptions.h"
#include "view/WIViewFrameSource.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;
struct WSMenu;
class WCPluginNativeView;

// The view layer's operations: everything above it sees views, native views and integers. Each
// returns 0 on success or a negative code unless its comment says otherwise; a null or unknown
// view or window is refused with eMemNullPointer or kErrInvalidHandle and changes nothing.
// All of them belong to the main thread (the one that called Init), except the
// SendMessageToMainThread family, which is the way in for every other thread.
namespace PluginViewManager {

class ImageData;

// ---- life ------------------------------------------------------------------------------------
// [main-thread] Makes the calling thread the main thread of the views. A second call keeps the
// first one's state.
int Init(WTNativeDLLRefType *const module = nullptr, std::uint64_t options = 0);
// [main-thread] Disposes of every view, window, timer and capture, and drops the messages not run
// yet (a thread waiting on one gets eWrongObjectState). Tests call it between cases.
int Dispose();
WEManagerInitOptions GetRuntimeEnviron();

// ---- views -----------------------------------------------------------------------------------
// eOutOfRangeNumber for a size that is negative.
int CreatePluginView(const WCPluginViewCreateOptions &options, WSPluginView *&outView);
int DisposePluginView(WSPluginView *view);
int ShowPluginView(WSPluginView *view);
int HidePluginView(WSPluginView *view);
// A view whose events are off, or that is hidden, takes no input.
int EnableWindowEvents(bool enable, WSPluginView *view);
// `relative` adds the point to the position instead of setting it; `repaint` invalidates the
// whole view; `keepOnScreen` moves the view back inside the screen that holds its top-left corner.
int RepositionView(WSPluginView *view, const WCPoint2D<int> &position, bool relative, bool repaint,
                   bool keepOnScreen);
int ResizeView(WSPluginView *view, int width, int height, bool repaint);
// Position in the parent (top, left) and size.
int GetViewBounds(WSPluginView *view, WURect<int> &outBounds);
// Adds to the region waiting to be painted.
int InvalidateRect(WSPluginView *view, const WURect<int> &rect);
int GetInvalidRect(WSPluginView *view, WURect<int> &outRect);
// Paints at once: the callback gets eEventDraw and the waiting region is cleared.
int RenderNow(WSPluginView *view);
int IsViewInFullScreenWindow(WSPluginView *view, bool &outFullScreen);
int GetNativeView(WSPluginView *view, WCPluginNativeView *&outNative);
int GetNativeParentView(WSPluginView *view, WCPluginNativeView *&outParent);
int GetParentViewFromNativeView(WCPluginNativeView *native, WSPluginView *&outView);
int MakePluginWindowNoTopMost(WSPluginView *view);
int GetThreadWhereViewWasCreated(WSPluginView *view, miThread::WCThreadRef &outThread);
int GetDPIScaleFactor(WSPluginView *view, double &outFactor);
int GetRetinaScaleFactor(WSPluginView *view, double &outFactor);
int SetNativeViewPosition(WCPluginNativeView *native, const WCPoint2D<int> &position);

// ---- system windows --------------------------------------------------------------------------
int CreateSystemWindow(const WCSystemWindowCreateOptions &options, WCPluginNativeView *&outWindow);
// The plug-in views inside the window go with it.
int DisposeSystemWindow(WCPluginNativeView *window);
int ResizeSystemWindow(WCPluginNativeView *window, int width, int height);
int GetSystemWindowTitle(WCPluginNativeView *window, std::string &outTitle);
int UpdateSystemWindowTitle(WCPluginNativeView *window, const char *title);
int GetWindowPosition(WCPluginNativeView *window, WCPoint2D<int> &outPosition);
int SetWindowPosition(WCPluginNativeView *window, const WCPoint2D<int> &position);
int GetThreadWhereSystemWindowWasCreated(WCPluginNativeView *window,
                                         miThread::WCThreadRef &outThread);

// ---- coordinates and input -------------------------------------------------------------------
// Between the desktop (all screens) and the view's own pixels.
int PVMGlobalToLocal(WSPluginView *view, const WCPoint2D<int> &in, WCPoint2D<int> &out);
int PVMLocalToGlobal(WSPluginView *view, const WCPoint2D<int> &in, WCPoint2D<int> &out);
int PVMGlobalToLocal(WSPluginView *view, const WCPoint2D<short> &in, WCPoint2D<short> &out);
int PVMLocalToGlobal(WSPluginView *view, const WCPoint2D<short> &in, WCPoint2D<short> &out);
// While a view holds the capture, every mouse message goes to it, wherever it happened.
int PVMSetCapture(WSPluginView *view);
int PVMReleaseCapture();
WSPluginView *PVMGetCapture();
// Whether the key of a modifier is down now; either Super key counts as the secondary one.
bool GetModifierKeyState(WEModifier modifier);
// Turns the modifier's key state over and gives the new state.
int FlipModifierKey(WEModifier modifier, bool &outDown);
// Two shorts in one word: `low` in the low 16 bits, `high` in the high ones.
int Pack(short low, short high, unsigned int &outPacked);
int UnPack(unsigned int packed, short &outLow, short &outHigh);

// ---- text box and dialogs --------------------------------------------------------------------
// One text box at a time; a new one replaces the old, which is left without its text.
int ActivateTextBox(WSPluginView *view, const WCPoint2D<short> &topLeft,
                    const WCPoint2D<short> &bottomRight, const WCTextBoxOptions &options);
// Leaves the box without accepting its text.
int QuitTextBox();
// eNotImplemented: this platform has no on-screen keyboard to configure.
int GetKeyBoardParamsByTextBoxParams(const WCTextBoxOptions &options, int &outKeyboardType);
// Questions go to the responder (Utils below); without one the default button is the answer.
int DisplayMessageBox(const WCMessageBoxCreateOptions &options, int &outButton);
int AlertBox(const char *title, const char *message);
int ActivateAboutBox(WSPluginView *view, const char *text);
int ActivateFilteredTreeDialog(const WCMessageBoxCreateOptions &options, int &outChoice);
int ActivateWindowDialog(const WCMessageBoxCreateOptions &options, int &outResult);

// ---- menus ----------------------------------------------------------------------------------
// A menu is a tree of items; a choice answers the chosen item's record. A menu that is not a
// live one (a root from CreatePopupMenu or a sub-menu inside one) is refused with
// kErrInvalidHandle, a position beyond the items with eOutOfRangeNumber.
int CreatePopupMenu(const WCMenuCreationOptions &options, WSMenu *&outMenu);
// A root menu with its sub-menus; a sub-menu goes with its item (RemoveMenuItem).
int DisposeMenu(WSMenu *menu);
int ClearMenu(WSMenu *menu);
// Appends the item; its index is kept as given, the id a choice of it answers.
int AddMenuItem(WSMenu *const menu, WCMenuItemInfo &item);
// Appends an item that opens a new, empty sub-menu, owned by the item.
int AddSubMenu(WSMenu *const menu, WCMenuItemInfo &item, WSMenu *&outSubMenu);
int RemoveMenuItem(WSMenu *menu, short position);
// Title, state and user data of the item at `position` become those of `item`.
int UpdateMenuItem(WSMenu *menu, short position, const WCMenuItemInfo &item);
int GetMenuItemByIndex(WSMenu *menu, short position, WCMenuItemInfo &outItem);
// Depth first through the sub-menus; eValueNotFound when no item carries `userData`.
int GetMenuItemByUserData(WSMenu *menu, const void *userData, WCMenuItemInfo &outItem);
int GetMenuItemCount(WSMenu *menu, int &outCount);
// Items of the sub-menus counted too.
int GetMenuItemCountRecursive(WSMenu *menu, int &outCount);
// eValueNotFound for an item that opens no sub-menu.
int GetSubMenuByIndex(WSMenu *menu, short position, WSMenu *&outSubMenu);
// Shows the menu over the view and waits for the user: `outChosen` is the item chosen, or has
// index -1 when the menu was cancelled (Escape, a click elsewhere), which is no error.
int ActivatePopup(WCPopupActivateInfo &info, WCMenuItemInfo &outChosen);

// ---- images ----------------------------------------------------------------------------------
// eNotImplemented: native images are decoded by the GUI layer's image readers on this platform.
int GetImageFromResource(WTResContainerType *container, short id, ImageData *&outImage);
int ReleaseImageFromResource(ImageData *&image);

// ---- drag and drop ---------------------------------------------------------------------------
// A view takes file drops only while registered.
int RegisterOsForDragAndDrop(WSPluginView *view);
int UnregisterOsForDragAndDrop(WSPluginView *view);
int IsRegisteredForDragAndDrop(WSPluginView *view, bool &outRegistered);
// eNotImplemented: dragging files out of a view needs a system drag service.
int BeginDragFilePath(WSPluginView *view, const char *path);
int CreateDataObject(void *&outObject);
int CreateDropSource(void *&outSource);
int CreateEnumFormatEtc(void *&outEnum);

// ---- timers and frames -----------------------------------------------------------------------
// A repeating timer of a view; it goes with the view. eOutOfRangeNumber for a period of 0.
int StartViewTimer(WSPluginView *view, std::uint64_t periodMs, std::function<void()> callback,
                   int &outTimerId);
int StopViewTimer(int timerId);
// Gives the view its picture source and the period of its frame timer; null stops it. At each
// tick where the source's HasSomethingToPaint holds, the view pulls a frame, keeps its bytes and
// hands them to the painter.
int SetFrameSource(WSPluginView *view, WIViewFrameSource *source, std::uint64_t periodMs);
int SetFramePainter(WSPluginView *view,
                    std::function<void(const char *stream, std::size_t size)> painter);
// Pulls a frame now, whether or not the source asks for a redraw.
int DrawFrameNow(WSPluginView *view);
// The bytes of the last frame pulled (null and 0 before the first), valid until the next one.
int GetLastFrame(WSPluginView *view, const char *&outStream, std::size_t &outSize);
int GetFrameCount(WSPluginView *view, std::uint64_t &outCount);

// ---- to the main thread ----------------------------------------------------------------------
using WTMainThreadCallback = void (*)(void *refCon);
// [any-thread] Queue the call for the main thread's next RunMainThreadQueue. Before Init,
// eSomeThingNotInitailzed.
int SendMessageToMainThreadCallMyCallback(WTMainThreadCallback callback, void *refCon);
// [any-thread] As above and waits until it has run; on the main thread it runs at once.
int SendSyncMessageToMainThreadCallMyCallback(WTMainThreadCallback callback, void *refCon);
// [any-thread] The algorithm layer passes what to do; this layer only carries it across.
int SendMessageToMainThreadAutomationInfoChange(std::function<void()> notify);
int SendMessageToMainThreadNotifyParamValue(std::function<void()> notify);
int SendMessageToMainThreadRelease(std::function<void()> release);
// [any-thread] The view's dispatcher handles the touch on the main thread, if the view still lives.
int SendMessageToMainThreadTouch(WSPluginView *view, const WCEventMessage &touch);
// [any-thread] Resizes the view on the main thread and tells its callback (eEventResize).
int SendMessageToMainThreadViewSizeChanged(WSPluginView *view, int width, int height);
// [main-thread] Runs what was queued before the call, in order; returns how many ran.
std::size_t RunMainThreadQueue();
// [any-thread]
bool IsMainThread();

} // namespace PluginViewManager

namespace Utils {
// The rectangles of the screens on the desktop, in pixels; the first is the main screen.
int GetAllScreensRectsInPixels(std::vector<WURect<int>> &outScreens);

// The mouse cursor: hidden while a control is dragged, so the drag is not bounded by the screen
// edge, and put back where the control wants it on release. Hides and shows nest like the
// window systems' own counters. [main-thread]
int HideCursor();
int ShowCursor();
bool IsCursorHidden();
// On the desktop, in pixels.
int MoveCursor(const WCPoint2D<int> &global);
WCPoint2D<int> GetCursorPosition();
// The cursor's shape: 0, the arrow, is what InitCursor gives back; other numbers are the
// plug-in's colour cursors by resource id.
int SetCursor(int cursorId);
int InitCursor();
int GetCursorShape();
} // namespace Utils

MIREL_NAMESPACE_END
