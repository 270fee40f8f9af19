#pragma once

#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "view/WCDispatcherAbs.h"

MIREL_NAMESPACE_BEGIN

class WCPluginNativeView;

namespace PluginViewManager {

// The records that describe what to create or to ask: a plug-in view, a system window, a
// question to the user, a text box. Plain values. [main-thread]

struct WCPluginViewCreateOptions {
    // The window the view sits in; null puts it directly on the desktop.
    WCPluginNativeView *m_parent = nullptr;
    // Top-left corner in the parent, or on the desktop without one.
    WCPoint2D<int> m_position;
    int m_width = 0;
    int m_height = 0;
    std::string m_title;
    bool m_visible = true;
    // Where events go: the callback gets reference and owner back with every event.
    WTEventCallback m_callback = nullptr;
    void *m_reference = nullptr;
    void *m_owner = nullptr;
};

struct WCSystemWindowCreateOptions {
    WCPluginNativeView *m_parent = nullptr;
    WCPoint2D<int> m_position;
    int m_width = 0;
    int m_height = 0;
    std::string m_title;
};

// Which operation asked a question, so that a responder can tell an alert from a dialog.
enum WEDialogKind : int {
    eDialogMessageBox = 0,
    eDialogAlert = 1,
    eDialogAbout = 2,
    eDialogFilteredTree = 3,
    eDialogWindow = 4,
};

struct WCMessageBoxCreateOptions {
    WEDialogKind m_kind = eDialogMessageBox;
    std::string m_title;
    std::string m_message;
    // The buttons, or the items to choose from in a tree dialog; the answer is an index.
    std::vector<std::string> m_buttons;
    int m_defaultButton = 0;
};

// A one-line text box over a view. The callback gets the text when the user accepts it, and
// accepted false when the box is left without.
using WTTextBoxCallback = void (*)(void *refCon, const char *text, bool accepted);

struct WCTextBoxOptions {
    std::string m_text;
    int m_maxChars = 0;
    WTTextBoxCallback m_callback = nullptr;
    void *m_refCon = nullptr;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
