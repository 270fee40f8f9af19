#include "Code/GUI/Controls/CPopup_X.h"

#include "Code/GUI/WUGUIXML.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

CPopup_X::CPopup_X(WIControlOwner *owner)
    : WCGUIControl(owner), m_Handler(std::make_unique<CControlPopupMenuHandler>(this, nullptr)) {}

CPopup_X *CPopup_X::Clone() const {
    auto *copy = new CPopup_X(m_pOwner);
    CopyTo(*copy);
    copy->m_OtherChildren = m_OtherChildren;
    return copy;
}

WTErr CPopup_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    GUIXML::KeepChildren(*cls, m_OtherChildren);
    return eNoErr;
}

void CPopup_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

WCGUIControl::BUFFER_HEADER *CPopup_X::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                     bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const WCParamRegistrationData *lead = GetLeadRegistration();
    bool modifiers[eNumModifiers];
    if (lead == nullptr || !TakesClick(*lead, event, modifiers))
        return chain;
    // A menu that cannot open leaves the value as it was; the click itself went through.
    int err = eNoErr;
    return Chain(chain, m_Handler->ChooseState(event, eRegMouseDown, modifiers, err));
}

WCGUIControl::BUFFER_HEADER *CPopup_X::MouseWheel(WCEventData &event, double dx, double dy) {
    if (IsDisabled() || m_Registrations.empty() || !ShouldAcceptMouseWheelEvent())
        return nullptr;
    const double delta = (dy != 0.0 ? dy : dx) * m_MouseDirectionFactor;
    if (delta == 0.0)
        return nullptr;
    const unsigned int type = dy != 0.0 ? eRegMouseWheelVertical : eRegMouseWheelHorizontal;
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        if (data.ShouldSendTouch(modifiers))
            data.Touch();
        chain = Chain(chain, data.OffsetToNextDifferentState(delta > 0 ? 1 : -1, type, modifiers));
    }
    return Chain(chain, MouseWheelSelf(event, dx, dy));
}

MIREL_NAMESPACE_END
