// The menus of the headless desktop: trees of items that tests and scripts read back, and a
// user whose choice is set beforehand per view (SetNextMenuChoice).
#include <algorithm>
#include <utility>

#include "core/WTErrors.h"
#include "core/WUAssert.h"
#include "view/PluginViewManager.h"
#include "view/linux/WCHeadlessDesktop.h"
#include "view/linux/WSMenu.h"
#include "view/linux/WUHeadlessView.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

namespace {

WCHeadlessDesktop &Desk() {
    return WCHeadlessDesktop::Get();
}

bool Holds(const WSMenu &tree, const WSMenu *menu) {
    if (&tree == menu)
        return true;
    return std::any_of(tree.m_Items.begin(), tree.m_Items.end(), [menu](const auto &entry) {
        return entry.m_SubMenu && Holds(*entry.m_SubMenu, menu);
    });
}

// A live menu, root or sub-menu, or a thrown code.
WSMenu &Menu(WSMenu *menu) {
    if (menu == nullptr) {
        ReportAssertFailure(__FILE__, __LINE__, "menu != nullptr");
        throw int(eMemNullPointer);
    }
    for (const auto &root : Desk().m_menus)
        if (Holds(*root, menu))
            return *menu;
    throw int(kErrInvalidHandle);
}

WSMenu::WSEntry &Entry(WSMenu *menu, short position) {
    WSMenu &live = Menu(menu);
    if (position < 0 || static_cast<std::size_t>(position) >= live.m_Items.size())
        throw int(eOutOfRangeNumber);
    return live.m_Items[static_cast<std::size_t>(position)];
}

int CountRecursive(const WSMenu &menu) {
    int count = 0;
    for (const auto &entry : menu.m_Items)
        count += 1 + (entry.m_SubMenu ? CountRecursive(*entry.m_SubMenu) : 0);
    return count;
}

void Flatten(const WSMenu &menu, int depth, WSShownMenu &shown) {
    for (const auto &entry : menu.m_Items) {
        shown.m_items.push_back(entry.m_Info);
        shown.m_depths.push_back(depth);
        if (entry.m_SubMenu)
            Flatten(*entry.m_SubMenu, depth + 1, shown);
    }
}

const WCMenuItemInfo *FindChoice(const WSMenu &menu, const std::string &title) {
    for (const auto &entry : menu.m_Items) {
        const unsigned state = entry.m_Info.m_State;
        if (entry.m_SubMenu) {
            if (const WCMenuItemInfo *found = FindChoice(*entry.m_SubMenu, title))
                return found;
        } else if ((state & (eMenuItemSeparator | eMenuItemDisabled | eMenuItemSubMenu)) == 0 &&
                   entry.m_Info.m_Title == title) {
            return &entry.m_Info;
        }
    }
    return nullptr;
}

} // namespace

int CreatePopupMenu(const WCMenuCreationOptions &options, WSMenu *&outMenu) {
    Desk().m_menus.push_back(std::make_unique<WSMenu>(options));
    outMenu = Desk().m_menus.back().get();
    return eNoErr;
}

int DisposeMenu(WSMenu *menu) {
    return CallAtDoor([&] {
        auto &roots = Desk().m_menus;
        const auto found = std::find_if(roots.begin(), roots.end(),
                                        [menu](const auto &root) { return root.get() == menu; });
        if (found == roots.end()) {
            Menu(menu);
            // A sub-menu goes with the item that opens it.
            throw int(eWrongObjectState);
        }
        roots.erase(found);
        return eNoErr;
    });
}

int ClearMenu(WSMenu *menu) {
    return CallAtDoor([&] {
        Menu(menu).m_Items.clear();
        return eNoErr;
    });
}

int AddMenuItem(WSMenu *const menu, WCMenuItemInfo &item) {
    return CallAtDoor([&] {
        WSMenu::WSEntry entry;
        entry.m_Info = item;
        entry.m_Info.m_State &= ~unsigned{eMenuItemSubMenu};
        Menu(menu).m_Items.push_back(std::move(entry));
        return eNoErr;
    });
}

int AddSubMenu(WSMenu *const menu, WCMenuItemInfo &item, WSMenu *&outSubMenu) {
    return CallAtDoor([&] {
        WSMenu &parent = Menu(menu);
        WSMenu::WSEntry entry;
        entry.m_Info = item;
        entry.m_Info.m_State |= eMenuItemSubMenu;
        entry.m_SubMenu = std::make_unique<WSMenu>(parent.m_Options);
        outSubMenu = entry.m_SubMenu.get();
        parent.m_Items.push_back(std::move(entry));
        return eNoErr;
    });
}

int RemoveMenuItem(WSMenu *menu, short position) {
    return CallAtDoor([&] {
        Entry(menu, position);
        menu->m_Items.erase(menu->m_Items.begin() + position);
        return eNoErr;
    });
}

int UpdateMenuItem(WSMenu *menu, short position, const WCMenuItemInfo &item) {
    return CallAtDoor([&] {
        WCMenuItemInfo &info = Entry(menu, position).m_Info;
        const unsigned subMenu = info.m_State & eMenuItemSubMenu;
        info.m_Title = item.m_Title;
        info.m_UserData = item.m_UserData;
        info.m_State = (item.m_State & ~unsigned{eMenuItemSubMenu}) | subMenu;
        return eNoErr;
    });
}

int GetMenuItemByIndex(WSMenu *menu, short position, WCMenuItemInfo &outItem) {
    return CallAtDoor([&] {
        outItem = Entry(menu, position).m_Info;
        return eNoErr;
    });
}

int GetMenuItemByUserData(WSMenu *menu, const void *userData, WCMenuItemInfo &outItem) {
    return CallAtDoor([&] {
        for (const auto &entry : Menu(menu).m_Items) {
            if (entry.m_Info.m_UserData == userData) {
                outItem = entry.m_Info;
                return eNoErr;
            }
            if (entry.m_SubMenu &&
                GetMenuItemByUserData(entry.m_SubMenu.get(), userData, outItem) == eNoErr)
                return eNoErr;
        }
        return eValueNotFound;
    });
}

int GetMenuItemCount(WSMenu *menu, int &outCount) {
    return CallAtDoor([&] {
        outCount = static_cast<int>(Menu(menu).m_Items.size());
        return eNoErr;
    });
}

int GetMenuItemCountRecursive(WSMenu *menu, int &outCount) {
    return CallAtDoor([&] {
        outCount = CountRecursive(Menu(menu));
        return eNoErr;
    });
}

int GetSubMenuByIndex(WSMenu *menu, short position, WSMenu *&outSubMenu) {
    return CallAtDoor([&] {
        WSMenu::WSEntry &entry = Entry(menu, position);
        if (!entry.m_SubMenu)
            throw int(eValueNotFound);
        outSubMenu = entry.m_SubMenu.get();
        return eNoErr;
    });
}

int ActivatePopup(WCPopupActivateInfo &info, WCMenuItemInfo &outChosen) {
    return CallAtDoor([&] {
        WSPluginView &view = Desk().View(info.m_View);
        const WSMenu &menu = Menu(info.m_Menu);
        WSShownMenu shown;
        shown.m_view = info.m_View;
        shown.m_location = info.m_Location;
        Flatten(menu, 0, shown);
        outChosen = WCMenuItemInfo();
        int err = eNoErr;
        if (std::optional<std::string> title = std::exchange(view.m_nextMenuChoice, {})) {
            if (const WCMenuItemInfo *chosen = FindChoice(menu, *title)) {
                outChosen = *chosen;
                shown.m_chosen = *title;
            } else {
                err = eValueNotFound;
            }
        }
        Desk().m_shownMenus.push_back(std::move(shown));
        return err;
    });
}

int SetNextMenuChoice(WSPluginView *view, const char *title) {
    return CallAtDoor([&] {
        WSPluginView &live = Desk().View(view);
        if (title == nullptr || *title == '\0')
            live.m_nextMenuChoice.reset();
        else
            live.m_nextMenuChoice = title;
        return eNoErr;
    });
}

const std::vector<WSShownMenu> &GetShownMenus() {
    return Desk().m_shownMenus;
}

void ClearShownMenus() {
    Desk().m_shownMenus.clear();
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
