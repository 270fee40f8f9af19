#pragma once

#include <memory>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "view/WCMenuTypes.h"
#include "view/WCPopupMenu.h"
#include "view/WCPopupMenuItemData.h"

MIREL_NAMESPACE_BEGIN

class WCGUIControl;
class CStandardGUI_X;
class WCParamRegistrationData;
struct WSPluginView;
namespace PluginViewManager {
class WCEventData;
}

// What a control uses to show a menu of its lead parameter and learn the user's choice: builds
// the tree (one item per state, titled by the parameter's value text for it, the current state
// checked unless the control has "PopupNoCheckmark"), places it (below the control, or at the
// mouse with "PopupAppearOnMousePos"), shows it over the document's view and answers the
// choice's position. It changes no parameter: the control applies the choice. Owned by its
// control, which outlives it. [main-thread]
class CControlPopupMenuHandler {
public:
    // Menu ids of the choices start here; a menu holds at most kMaxItems of them.
    static constexpr short kFirstMenuID = 1;
    static constexpr short kMaxItems = 1024;

    CControlPopupMenuHandler(WCGUIControl *control, CStandardGUI_X *gui);
    virtual ~CControlPopupMenuHandler() = default;
    CControlPopupMenuHandler(const CControlPopupMenuHandler &) = delete;
    CControlPopupMenuHandler &operator=(const CControlPopupMenuHandler &) = delete;

    // The same handler for another control (a clone of this one's).
    virtual std::unique_ptr<CControlPopupMenuHandler> Clone(WCGUIControl *control) const;
    virtual int FinishCreate() { return 0; }

    // Builds, places and shows the menu; `outCommand` is the chosen choice's position, -1 when
    // the user cancelled. eWrongObjectState without a view to show it over; the builder's code
    // when the menu cannot be made (eOutOfRangeNumber for a parameter of no or too many states).
    virtual int DoShowPopupMenu(PluginViewManager::WCEventData &event, short &outCommand);
    // The tree of the menu; the default one lists the lead parameter's states.
    virtual int CreatePopUpMenu(WCPopupMenuData &outData);
    virtual int ActivatePopupMenu(const WCPoint2D<short> &location,
                                  PluginViewManager::WCMenuItemInfo &outChosen);
    virtual WCPoint2D<short> GetMenuLocation(const PluginViewManager::WCEventData &event) const;
    short GetCommandFromMenuItemInfo(const PluginViewManager::WCMenuItemInfo &info) const;
    // The choice under the mouse when the menu opens: the current state's; -1 for none.
    virtual short GetDefaultMenuItem() const;
    const WCParamRegistrationData *GetLeadParamRegData() const;
    static WCPopupMenuItemData GetSeparatorMenuItem();
    // The window-system menu goes once a choice is known.
    void CleanMenuAfterShow() { m_Menu.ClearMenus(); }

    WCGUIControl *GetControl() const noexcept { return m_pControl; }
    void SetGUI(CStandardGUI_X *gui) noexcept { m_pGUI = gui; }

protected:
    // The view the menu opens over: the document's.
    WSPluginView *GetView() const;

    WCGUIControl *m_pControl;
    CStandardGUI_X *m_pGUI;
    WCPopupMenu m_Menu;
};

MIREL_NAMESPACE_END
