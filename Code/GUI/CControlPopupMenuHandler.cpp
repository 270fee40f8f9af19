#include "Code/GUI/CControlPopupMenuHandler.h"

#include <cmath>

#include "Code/Algorithm/WCParam_Base.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/WTErrors.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

namespace {

// The text the parameter's display function gives `state`, which it does not hold: a copy of
// its value half is moved there, so the parameter itself and its readers see nothing.
std::string ValueTextOfState(const WCParam_Base &param, double state) {
    WCParam_Base probe = param;
    probe.SetStateValue(0, state);
    probe.UpdateRealWorldFromState(0);
    probe.UpdateValueString(0);
    return probe.GetValueString().c_str();
}

} // namespace

CControlPopupMenuHandler::CControlPopupMenuHandler(WCGUIControl *control, CStandardGUI_X *gui)
    : m_pControl(control), m_pGUI(gui),
      m_Menu(control != nullptr ? control->GetContainer() : nullptr, kFirstMenuID) {}

std::unique_ptr<CControlPopupMenuHandler>
CControlPopupMenuHandler::Clone(WCGUIControl *control) const {
    auto copy = std::make_unique<CControlPopupMenuHandler>(control, m_pGUI);
    copy->m_Builder = m_Builder;
    return copy;
}

const WCParamRegistrationData *CControlPopupMenuHandler::GetLeadParamRegData() const {
    return m_pControl != nullptr ? m_pControl->GetLeadRegistration() : nullptr;
}

WSPluginView *CControlPopupMenuHandler::GetView() const {
    if (m_pGUI != nullptr)
        return m_pGUI->GetPluginView();
    auto *gui =
        m_pControl != nullptr ? dynamic_cast<CStandardGUI_X *>(m_pControl->GetOwner()) : nullptr;
    return gui != nullptr ? gui->GetPluginView() : nullptr;
}

WCPopupMenuItemData CControlPopupMenuHandler::GetSeparatorMenuItem() {
    return WCPopupMenuItemData("", 0, WCPopupMenuItemData::eItemSeparator);
}

short CControlPopupMenuHandler::GetDefaultMenuItem() const {
    const WCParamRegistrationData *lead = GetLeadParamRegData();
    if (lead == nullptr || lead->GetNumStates() < 2)
        return -1;
    const double step = 1000.0 / (lead->GetNumStates() - 1);
    return static_cast<short>(std::lround(lead->GetValue() / step));
}

int CControlPopupMenuHandler::CreatePopUpMenu(WCPopupMenuData &outData) {
    if (m_pControl == nullptr)
        return eWrongObjectState;
    outData.Clear();
    outData.SetNoCheckMarks(m_pControl->GetControlFlag(eCF_PopupNoCheckmark));
    if (m_Builder) {
        if (const int err = m_Builder(outData); err != eNoErr)
            return err;
        if (const short current = GetDefaultMenuItem(); current >= 0)
            outData.SetSingleCheckedItem(current);
        return eNoErr;
    }
    return AddParameterStates(outData);
}

int CControlPopupMenuHandler::AddParameterStates(WCPopupMenuData &outData) const {
    const WCParamRegistrationData *lead = GetLeadParamRegData();
    cALGORITHM *alg = m_pControl != nullptr ? m_pControl->GetAlgorithm() : nullptr;
    const WCParam_Base *param =
        lead != nullptr && alg != nullptr ? alg->GetParam(lead->GetRegisteredParam()) : nullptr;
    if (param == nullptr)
        return eWrongObjectState;
    const int states = lead->GetNumStates();
    if (states < 2 || states > kMaxItems)
        return eOutOfRangeNumber;
    const short current = GetDefaultMenuItem();
    for (int i = 0; i < states; ++i) {
        const std::string title = ValueTextOfState(*param, i * 1000.0 / (states - 1));
        outData.InsertToRootMenu(
            WCPopupMenuItemData(title.c_str(), i == current ? PVM::eMenuItemChecked : 0u));
    }
    return eNoErr;
}

WCPoint2D<short> CControlPopupMenuHandler::GetMenuLocation(const PVM::WCEventData &event) const {
    if (m_pControl == nullptr || m_pControl->GetControlFlag(eCF_PopupAppearOnMousePos))
        return event.GetMouseLocation();
    // Below the control, as a drop-down list opens.
    const WURect<short> &rect = m_pControl->GetDrawableRect();
    return WCPoint2D<short>(rect.left, rect.bottom);
}

int CControlPopupMenuHandler::ActivatePopupMenu(const WCPoint2D<short> &location,
                                                PVM::WCMenuItemInfo &outChosen) {
    return m_Menu.ActivatePopupMenu(GetView(), location, GetDefaultMenuItem(), outChosen);
}

short CControlPopupMenuHandler::GetCommandFromMenuItemInfo(const PVM::WCMenuItemInfo &info) const {
    return info.GetIndex() < m_Menu.GetFirstMenuID()
               ? short(-1)
               : static_cast<short>(info.GetIndex() - m_Menu.GetFirstMenuID());
}

int CControlPopupMenuHandler::DoShowPopupMenu(PVM::WCEventData &event, short &outCommand) {
    outCommand = -1;
    if (GetView() == nullptr)
        return eWrongObjectState;
    WCPopupMenuData data;
    if (const int err = CreatePopUpMenu(data); err != eNoErr)
        return err;
    int err = m_Menu.CreatePopUpMenu(data, kFirstMenuID,
                                     static_cast<short>(kFirstMenuID + kMaxItems - 1));
    if (err == eNoErr) {
        PVM::WCMenuItemInfo chosen;
        err = ActivatePopupMenu(GetMenuLocation(event), chosen);
        if (err == eNoErr)
            outCommand = GetCommandFromMenuItemInfo(chosen);
    }
    CleanMenuAfterShow();
    return err;
}

CControlPopupMenuHandler::BUFFER_HEADER *
CControlPopupMenuHandler::ChooseState(PVM::WCEventData &event, unsigned int type,
                                      const bool *modifiers, int &outErr) {
    short command = -1;
    outErr = DoShowPopupMenu(event, command);
    const WCParamRegistrationData *lead = GetLeadParamRegData();
    if (outErr != eNoErr || command < 0 || lead == nullptr)
        return nullptr;
    const int states = lead->GetNumStates();
    if (states < 2 || command >= states)
        return nullptr;
    WCParamRegistrationData &data = m_pControl->GetRegistration(
        static_cast<std::size_t>(lead - &m_pControl->GetRegistration(0)));
    m_pControl->SetNeedToRedrawControl();
    return data.SetParamValue(command * 1000.0 / (states - 1), type, modifiers);
}

int CControlPopupMenuHandler::ShowAndSend(PVM::WCEventData &event) {
    if (m_pControl == nullptr || m_pControl->IsDisabled() || GetLeadParamRegData() == nullptr)
        return eNoErr;
    const bool right = event.GetMouseButtonPressed(PVM::eMouseButtonRight);
    for (std::size_t i = 0; i < m_pControl->GetNumRegistrations(); ++i)
        m_pControl->GetRegistration(i).Touch();
    int err = eNoErr;
    BUFFER_HEADER *chain =
        ChooseState(event, right ? eRegPopUpRightButton : eRegPopUp, nullptr, err);
    for (std::size_t i = 0; i < m_pControl->GetNumRegistrations(); ++i)
        m_pControl->GetRegistration(i).Release();
    if (chain != nullptr) {
        cALGORITHM *alg = m_pControl->GetAlgorithm();
        const int sent = alg != nullptr ? alg->SendAndFreeBuffers(chain, eExecSendBuffers, true)
                                        : eMemNullPointer;
        if (err == eNoErr)
            err = sent;
    }
    return err;
}

MIREL_NAMESPACE_END
