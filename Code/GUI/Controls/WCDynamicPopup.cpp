#include "Code/GUI/Controls/WCDynamicPopup.h"

#include <utility>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

WCDynamicPopup::WCDynamicPopup(WIControlOwner *owner)
    : WCGUIControl(owner), m_Handler(std::make_unique<CControlPopupMenuHandler>(this, nullptr)) {
    // Virtual through the builder, so that each kind makes its own menu.
    m_Handler->SetMenuBuilder([this](WCPopupMenuData &data) { return BuildMenu(data); });
}

void WCDynamicPopup::CopyPopupTo(WCDynamicPopup &other) const {
    CopyTo(other);
    other.m_Pushed.Assign(m_Pushed);
    other.m_Released.Assign(m_Released);
    other.m_Items = m_Items;
    other.m_OtherChildren = m_OtherChildren;
}

WCDynamicPopup *WCDynamicPopup::Clone() const {
    auto *copy = new WCDynamicPopup(m_pOwner);
    CopyPopupTo(*copy);
    return copy;
}

WCDynamicPopupModSource *WCDynamicPopupModSource::Clone() const {
    auto *copy = new WCDynamicPopupModSource(m_pOwner);
    CopyPopupTo(*copy);
    return copy;
}

WCDynamicPopupWithAlg *WCDynamicPopupWithAlg::Clone() const {
    auto *copy = new WCDynamicPopupWithAlg(m_pOwner);
    CopyPopupTo(*copy);
    return copy;
}

WTErr WCDynamicPopup::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    WCBaseImage pushed, released;
    std::vector<XML::CXMLElement> others;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto type = child->GetAttribString("Type");
        WCBaseImage *target = child->GetName() != "Image" ? nullptr
                              : type == "Pushed"          ? &pushed
                              : type == "Released"        ? &released
                                                          : nullptr;
        if (target == nullptr) {
            others.push_back(*child);
        } else if (const WTErr err = target->ReadFromXML(child); err != eNoErr) {
            // The popup stays as it was: a skin with a broken picture is not half taken.
            return err;
        }
    }
    m_Pushed.Assign(pushed);
    m_Released.Assign(released);
    m_OtherChildren = std::move(others);
    return eNoErr;
}

void WCDynamicPopup::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    GUIXML::WriteTypedImages(*cls, {{"Pushed", &m_Pushed}, {"Released", &m_Released}});
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

int WCDynamicPopup::BuildMenu(WCPopupMenuData &outData) {
    if (m_Items.empty())
        return m_Handler->AddParameterStates(outData);
    if (m_Items.size() > static_cast<std::size_t>(CControlPopupMenuHandler::kMaxItems))
        return eOutOfRangeNumber;
    for (const std::string &title : m_Items)
        outData.InsertToRootMenu(WCPopupMenuItemData(title.c_str()));
    return eNoErr;
}

int WCDynamicPopupWithAlg::BuildMenu(WCPopupMenuData &outData) {
    std::vector<std::string> titles;
    const int err = m_pAlg != nullptr ? m_pAlg->GetDynamicPopupItems(GetName().c_str(), titles)
                                      : eNotImplemented;
    if (err == eNotImplemented)
        return WCDynamicPopup::BuildMenu(outData);
    if (err != eNoErr)
        return err;
    if (titles.size() > static_cast<std::size_t>(CControlPopupMenuHandler::kMaxItems))
        return eOutOfRangeNumber;
    for (const std::string &title : titles)
        outData.InsertToRootMenu(WCPopupMenuItemData(title.c_str()));
    return eNoErr;
}

WCGUIControl::BUFFER_HEADER *
WCDynamicPopup::MouseDownSelf(WCEventData &event, WURect<double> &limits, bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    m_IsPushed = true;
    SetNeedToRedrawControl();
    const WCParamRegistrationData *lead = GetLeadRegistration();
    bool modifiers[eNumModifiers];
    if (lead == nullptr || !TakesClick(*lead, event, modifiers))
        return chain;
    // A menu that cannot open leaves the value as it was; the click itself went through.
    int err = eNoErr;
    return Chain(chain, m_Handler->ChooseState(event, eRegMouseDown, modifiers, err));
}

WCGUIControl::BUFFER_HEADER *WCDynamicPopup::MouseUpSelf(WCEventData &) {
    m_IsPushed = false;
    SetNeedToRedrawControl();
    return nullptr;
}

int WCDynamicPopup::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const WCBaseImage &image = m_IsPushed ? m_Pushed : m_Released;
    if (image.GetResID() >= 0) {
        writer.Remark(m_IsPushed ? "Pushed" : "Released");
        writer.DrawPNGAtPosition(image.GetResID(), WCPoint2D<short>(0, 0));
    }
    return WCGUIControl::GetDrawInstructions(writer);
}

int WCDynamicPopupModSource::GetDrawInstructionsParamValueWindow(
    miGS::WCGraphicStreamBinaryWriter &writer, std::size_t index) {
    if (index < m_Registrations.size() && !m_Items.empty())
        if (WCStaticText *win = m_Registrations[index].GetValueWin()) {
            const int states = m_Registrations[index].GetNumStates();
            const double position =
                states > 1 ? m_Registrations[index].GetValue() * (states - 1) / 1000.0 : 0.0;
            const auto item = static_cast<std::size_t>(position + 0.5);
            win->SetText(item < m_Items.size() ? m_Items[item].c_str() : "");
        }
    return WCGUIControl::GetDrawInstructionsParamValueWindow(writer, index);
}

MIREL_NAMESPACE_END
