#pragma once

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "view/WCMenuTypes.h"
#include "view/WCPopupMenuItemData.h"

MIREL_NAMESPACE_BEGIN

struct WTResContainerType;
struct WSPluginView;
struct WSMenu;

// A menu tree made into the window system's menu and shown: the choices of a WCPopupMenuData
// get ids from the first id on, depth first, so that a chosen id minus the first is the choice's
// position. Owns its window-system menu from CreatePopUpMenu to ClearMenus or its end; the
// container is where item pictures come from. [main-thread]
class WCPopupMenu {
public:
    WCPopupMenu(WTResContainerType *container, short firstMenuID);
    WCPopupMenu(WTResContainerType *container, WSPluginView *view, short firstMenuID);
    WCPopupMenu(const WCPopupMenu &) = delete;
    WCPopupMenu &operator=(const WCPopupMenu &) = delete;
    ~WCPopupMenu();

    // Makes the menu of `data` (a previous one goes), its choices numbered `first` on; a menu
    // with more choices than `first`..`last` holds is refused with eOutOfRangeNumber.
    int CreatePopUpMenu(const WCPopupMenuData &data, short first, short last);
    int CreatePopUpMenu(const WCPopupMenuData &data, short first, short last,
                        const PluginViewManager::WCMenuCreationOptions &options);
    // One item of `data` into `menu`, a sub-menu with its items; choices take the next id.
    int AddMenuItem(WSMenu *menu, const WCPopupMenuItemData &item, bool noCheckMarks);
    int AddMenuItems(WSMenu *menu, const WCPopupMenuItemData &parent, bool noCheckMarks);
    int AddSubMenuItem(WSMenu *menu, const WCPopupMenuItemData &item, bool noCheckMarks);
    // Shows the menu at `point` (the view's pixels) and answers the chosen item, index -1 when
    // cancelled; eWrongObjectState before CreatePopUpMenu.
    int ActivatePopupMenu(WSPluginView *view, const WCPoint2D<short> &point, short defaultIndex,
                          PluginViewManager::WCMenuItemInfo &outChosen);
    int ActivatePopupMenu(const WCPoint2D<short> &point, short defaultIndex,
                          PluginViewManager::WCMenuItemInfo &outChosen) {
        return ActivatePopupMenu(m_pView, point, defaultIndex, outChosen);
    }
    void ClearMenus();
    // The id the next choice gets, and moves on.
    short GetAndUpdateMenuID() { return m_NextID++; }
    static PluginViewManager::WCMenuCreationOptions
    GetMenuCreationOptionsFromPopupMenuData(const WCPopupMenuData &data, short first);

    WSMenu *GetMenu() const noexcept { return m_pMenu; }
    short GetFirstMenuID() const noexcept { return m_FirstID; }

private:
    WTResContainerType *m_pContainer;
    WSPluginView *m_pView = nullptr;
    WSMenu *m_pMenu = nullptr;
    short m_FirstID;
    short m_NextID;
};

MIREL_NAMESPACE_END
