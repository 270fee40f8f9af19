#pragma once

#include <functional>
#include <memory>

#include "Code/Process/KPAPIProcessMemory.h"
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
// the tree (one item per state, titled by the parameter's value text for it, or what a builder
// set at run time gives; the current state checked unless the control has "PopupNoCheckmark"),
// places it (below the control, or at the mouse with "PopupAppearOnMousePos"), shows it over
// the document's view and answers the choice's position, which ChooseState turns into the lead
// parameter's state of that position. Owned by its control, which outlives it. [main-thread]
class CControlPopupMenuHandler {
public:
    // Menu ids of the choices start here; a menu holds at most kMaxItems of them.
    static constexpr short kFirstMenuID = 1;
    static constexpr short kMaxItems = 1024;
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;
    // Fills the tree of a menu built at run time; a code other than 0 opens no menu.
    using WTMenuBuilder = std::function<int(WCPopupMenuData &)>;

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
    // Shows the menu and, on a choice, sets the lead registration (when registered to `type`
    // with `modifiers`, null for any) to the state of the chosen position; the chain to send,
    // and the menu's code in `outErr`. A choice beyond the parameter's states changes nothing.
    BUFFER_HEADER *ChooseState(PluginViewManager::WCEventData &event, unsigned int type,
                               const bool *modifiers, int &outErr);
    // ChooseState for the document's popup path ("PopUp", "PopUpRightButton"), as one gesture
    // (touch and release) whose chain is sent here.
    int ShowAndSend(PluginViewManager::WCEventData &event);
    // The tree of the menu: the builder's, else the lead parameter's states; the current state
    // checked unless "PopupNoCheckmark".
    virtual int CreatePopUpMenu(WCPopupMenuData &outData);
    void SetMenuBuilder(WTMenuBuilder builder) { m_Builder = std::move(builder); }
    // One item per state of the lead parameter, titled by its value text, the current one
    // checked; eOutOfRangeNumber for a parameter of fewer than 2 or more than kMaxItems states.
    int AddParameterStates(WCPopupMenuData &outData) const;
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
    WTMenuBuilder m_Builder;
};

MIREL_NAMESPACE_END
