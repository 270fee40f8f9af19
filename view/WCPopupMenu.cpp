#include "view/WCPopupMenu.h"

#include "core/WTErrors.h"
#include "view/PluginViewManager.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

WCPopupMenu::WCPopupMenu(WTResContainerType *container, short firstMenuID)
    : m_pContainer(container), m_FirstID(firstMenuID), m_NextID(firstMenuID) {}

WCPopupMenu::WCPopupMenu(WTResContainerType *container, WSPluginView *view, short firstMenuID)
    : m_pContainer(container), m_pView(view), m_FirstID(firstMenuID), m_NextID(firstMenuID) {}

WCPopupMenu::~WCPopupMenu() {
    ClearMenus();
}

PVM::WCMenuCreationOptions
WCPopupMenu::GetMenuCreationOptionsFromPopupMenuData(const WCPopupMenuData &data, short first) {
    PVM::WCMenuCreationOptions options(first);
    if (data.GetNoCheckMarks())
        options.m_Options |= PVM::WCMenuCreationOptions::eNoCheckMarks;
    return options;
}

int WCPopupMenu::CreatePopUpMenu(const WCPopupMenuData &data, short first, short last) {
    return CreatePopUpMenu(data, first, last, GetMenuCreationOptionsFromPopupMenuData(data, first));
}

int WCPopupMenu::CreatePopUpMenu(const WCPopupMenuData &data, short first, short last,
                                 const PVM::WCMenuCreationOptions &options) {
    if (first > last || data.CountChoices() > last - first + 1)
        return eOutOfRangeNumber;
    ClearMenus();
    if (const int err = PVM::CreatePopupMenu(options, m_pMenu); err != eNoErr)
        return err;
    m_FirstID = m_NextID = first;
    const bool noCheckMarks = (options.m_Options & PVM::WCMenuCreationOptions::eNoCheckMarks) != 0;
    const int err = AddMenuItems(m_pMenu, data.GetRoot(), noCheckMarks);
    if (err != eNoErr)
        ClearMenus();
    return err;
}

int WCPopupMenu::AddMenuItems(WSMenu *menu, const WCPopupMenuItemData &parent, bool noCheckMarks) {
    for (const WCPopupMenuItemData &item : parent.GetChildren())
        if (const int err = AddMenuItem(menu, item, noCheckMarks); err != eNoErr)
            return err;
    return eNoErr;
}

int WCPopupMenu::AddMenuItem(WSMenu *menu, const WCPopupMenuItemData &item, bool noCheckMarks) {
    if (item.GetType() == WCPopupMenuItemData::eItemSubMenu)
        return AddSubMenuItem(menu, item, noCheckMarks);
    PVM::WCMenuItemInfo info;
    info.m_Title = item.GetTitle();
    info.m_State = item.GetState();
    if (item.GetType() == WCPopupMenuItemData::eItemSeparator)
        info.m_State |= PVM::eMenuItemSeparator;
    else
        info.m_Index = GetAndUpdateMenuID();
    if (noCheckMarks)
        info.m_State &= ~unsigned{PVM::eMenuItemChecked};
    return PVM::AddMenuItem(menu, info);
}

int WCPopupMenu::AddSubMenuItem(WSMenu *menu, const WCPopupMenuItemData &item, bool noCheckMarks) {
    PVM::WCMenuItemInfo info;
    info.m_Title = item.GetTitle();
    info.m_State = item.GetState() & ~unsigned{PVM::eMenuItemChecked};
    WSMenu *sub = nullptr;
    if (const int err = PVM::AddSubMenu(menu, info, sub); err != eNoErr)
        return err;
    return AddMenuItems(sub, item, noCheckMarks);
}

int WCPopupMenu::ActivatePopupMenu(WSPluginView *view, const WCPoint2D<short> &point,
                                   short defaultIndex, PVM::WCMenuItemInfo &outChosen) {
    outChosen = PVM::WCMenuItemInfo();
    if (m_pMenu == nullptr)
        return eWrongObjectState;
    PVM::WCPopupActivateInfo info;
    info.m_View = view;
    info.m_Menu = m_pMenu;
    info.m_Location = point;
    info.m_DefaultIndex = defaultIndex;
    return PVM::ActivatePopup(info, outChosen);
}

void WCPopupMenu::ClearMenus() {
    if (m_pMenu != nullptr)
        PVM::DisposeMenu(m_pMenu);
    m_pMenu = nullptr;
    m_NextID = m_FirstID;
}

MIREL_NAMESPACE_END
