#pragma once

#include <cstdint>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;
struct WSMenu;

namespace PluginViewManager {

// The records of a menu as the view layer knows it: one item, how a menu is made, and where it
// is shown. Plain values. [main-thread]

// Bits of an item's state.
enum WEMenuItemState : unsigned {
    eMenuItemChecked = 1u << 0,
    eMenuItemDisabled = 1u << 1,
    eMenuItemSeparator = 1u << 2,
    // The item opens a sub-menu instead of answering a choice.
    eMenuItemSubMenu = 1u << 3,
};

// One item: its menu id (what a choice answers), the caller's data, its title and state.
struct WCMenuItemInfo {
    short m_Index = -1;
    void *m_UserData = nullptr;
    std::string m_Title;
    unsigned m_State = 0;

    short GetIndex() const noexcept { return m_Index; }
    void *GetUserData() const noexcept { return m_UserData; }
    bool IsChecked() const noexcept { return (m_State & eMenuItemChecked) != 0; }
};

// How a menu is made: the id of its first item, and presentation bits a plug-in may set.
struct WCMenuCreationOptions {
    enum WEOptions : unsigned {
        // No check marks are drawn, whatever the items' states.
        eNoCheckMarks = 1u << 0,
    };
    explicit WCMenuCreationOptions(short firstMenuID = 1) : m_FirstMenuID(firstMenuID) {}
    short m_FirstMenuID;
    unsigned m_Options = 0;
};

// Where and over which view a menu opens; `m_Location` in the view's own pixels.
struct WCPopupActivateInfo {
    WSPluginView *m_View = nullptr;
    WSMenu *m_Menu = nullptr;
    WCPoint2D<short> m_Location;
    // The item shown under the mouse when the menu opens, -1 for none.
    short m_DefaultIndex = -1;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
