#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"
#include "view/WCEventMessage.h"
#include "view/WCMenuTypes.h"
#include "view/WCViewCreateOptions.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;

// The headless desktop has no user and no clock of its own: tests and tools play both through
// these operations. They return 0 or a negative code like the rest of the layer. [main-thread]
namespace PluginViewManager {

// Delivers one message to a view as its window would, and answers what the dispatcher answered
// (1 handled, 0 not). The message's held keys become the keyboard's state first. While a view
// holds the capture, mouse messages go to it, their position carried over through the desktop.
// Hidden views, views with events off, and views not registered for drops (for file messages)
// take nothing and answer 0.
int PostEvent(WSPluginView *view, const WCEventMessage &message);

// Moves the desktop's clock on by `ms` and fires every timer tick that falls due, in time order
// (ticks at the same time in the order the timers started). eWrongObjectState from inside a tick.
int AdvanceTime(std::uint64_t ms);
std::uint64_t GetCurrentTimeMs();

// The desktop's screens; at least one, each not empty. One of 1920 x 1080 by default.
int SetScreens(const std::vector<WURect<int>> &screens);
// The physical keys held now, a mask of WEHeldKey.
void SetHeldKeys(unsigned int heldKeys);
unsigned int GetHeldKeys();
// Lines per wheel notch; WCDispatcherAbs::kWheelScrollPage for a page. 3 by default.
void SetWheelScrollLines(unsigned int lines);
int SetViewInFullScreenWindow(WSPluginView *view, bool fullScreen);
// eOutOfRangeNumber for a factor that is not a finite number above 0.
int SetDPIScaleFactor(WSPluginView *view, double factor);
int SetRetinaScaleFactor(WSPluginView *view, double factor);
WSPluginView *GetFocusView();

// Answers every question of the message boxes, alerts and dialogs; empty restores the default,
// which answers the default button. Every question is recorded, answered either way.
void SetDialogResponder(std::function<int(const WCMessageBoxCreateOptions &)> responder);
const std::vector<WCMessageBoxCreateOptions> &GetAskedQuestions();
void ClearAskedQuestions();

// The text box as the user sees it.
struct WSTextBoxState {
    bool m_active = false;
    WSPluginView *m_view = nullptr;
    WCPoint2D<short> m_topLeft;
    WCPoint2D<short> m_bottomRight;
    WCTextBoxOptions m_options;
};
int GetTextBoxState(WSTextBoxState &outState);
// The user types `text` and accepts it: the box closes and its callback gets the text, cut to
// the box's maximum when it has one. eWrongObjectState without an open box.
int CommitTextBox(const char *text);

// The user's answer to the next popup menu opened over the view: the first item, depth first,
// whose title is `title` (not a separator, a sub-menu or a disabled item). Asked once: the menu
// after it is cancelled again unless a new answer is set. A title no item has cancels the menu
// and ActivatePopup answers eValueNotFound. Null or empty takes a pending answer back.
int SetNextMenuChoice(WSPluginView *view, const char *title);

// A menu as the user saw it: over which view, where, its items depth first (a sub-menu's items
// right after the item that opens it, with their depth), and what was chosen ("" cancelled).
struct WSShownMenu {
    WSPluginView *m_view = nullptr;
    WCPoint2D<short> m_location;
    std::vector<WCMenuItemInfo> m_items;
    std::vector<int> m_depths;
    std::string m_chosen;
};
const std::vector<WSShownMenu> &GetShownMenus();
void ClearShownMenus();

} // namespace PluginViewManager
MIREL_NAMESPACE_END
