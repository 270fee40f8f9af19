#include "Code/GUI/Controls/WCTab.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/ControlGroup.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

const WCRGBAColor kChosenColor(235, 235, 225, 255);
const WCRGBAColor kOtherColor(150, 150, 160, 255);
const WCRGBAColor kFrameColor(30, 30, 30, 255);
const WCRGBAColor kTitleColor(0, 0, 0, 255);
constexpr int kTitleSize = 12;

} // namespace

WCTab *WCTab::Clone() const {
    auto *copy = new WCTab(m_pOwner);
    CopyHandleTo(*copy);
    copy->m_Fields = m_Fields;
    return copy;
}

WTErr WCTab::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) {
    if (cls == nullptr)
        return eMemNullPointer;
    WSFields fields;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "TabGroup")
            fields.m_TabGroup = child->GetText().c_str();
        else if (name == "Group")
            fields.m_Group = child->GetText().c_str();
        else if (name == "Control")
            fields.m_Controls.emplace_back(child->GetText().c_str());
        else if (name == "Name")
            fields.m_Name = child->GetText().c_str();
        else if (name == "ViewRect")
            if (const WTErr err = GUIXML::ReadRect(*child, fields.m_ViewRect); err != eNoErr)
                return err;
    }
    if (const WTErr err = CDragHandle::ReadFromXMLWithAlgSelf(cls, alg); err != eNoErr)
        return err;
    m_Fields = std::move(fields);
    return eNoErr;
}

void WCTab::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (!m_Fields.m_TabGroup.empty())
        cls->push_sub_element(new XML::CXMLElement("TabGroup", m_Fields.m_TabGroup.c_str()));
    if (!m_Fields.m_Group.empty())
        cls->push_sub_element(new XML::CXMLElement("Group", m_Fields.m_Group.c_str()));
    for (const auto &control : m_Fields.m_Controls)
        cls->push_sub_element(new XML::CXMLElement("Control", control.c_str()));
    if (!m_Fields.m_Name.empty())
        cls->push_sub_element(new XML::CXMLElement("Name", m_Fields.m_Name.c_str()));
    if (!m_Fields.m_ViewRect.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("ViewRect", m_Fields.m_ViewRect));
    CDragHandle::WriteToXMLWithAlgSelf(cls);
}

std::vector<WCTab *> WCTab::RowTabs() const {
    std::vector<WCTab *> row;
    auto *gui = dynamic_cast<CStandardGUI_X *>(m_pOwner);
    const ControlGroup *group = gui != nullptr && !m_Fields.m_TabGroup.empty()
                                    ? gui->GetGroup(m_Fields.m_TabGroup.c_str())
                                    : nullptr;
    if (group != nullptr)
        for (WCGUIControl *control : group->GetControls())
            if (auto *tab = dynamic_cast<WCTab *>(control))
                row.push_back(tab);
    return row;
}

int WCTab::FinishCreateSelf() {
    if (m_pOwner == nullptr || m_Fields.m_TabGroup.empty())
        return eNoErr;
    // The row is a document group, so that each tab finds the others by it.
    if (!m_pOwner->GroupExists(m_Fields.m_TabGroup.c_str()))
        m_pOwner->GroupAdd(m_Fields.m_TabGroup.c_str());
    if (const int err = m_pOwner->GroupAddControl(m_Fields.m_TabGroup.c_str(), this); err != eNoErr)
        return err;
    const std::vector<WCTab *> row = RowTabs();
    m_Chosen = !row.empty() && row.front() == this;
    ShowPage(m_Chosen);
    return eNoErr;
}

void WCTab::ShowPage(bool show) {
    auto *gui = dynamic_cast<CStandardGUI_X *>(m_pOwner);
    if (gui == nullptr)
        return;
    if (!m_Fields.m_Group.empty() && gui->GetGroup(m_Fields.m_Group.c_str()) != nullptr)
        gui->GroupShowHide(m_Fields.m_Group.c_str(), show);
    for (const auto &name : m_Fields.m_Controls)
        if (WCGUIControl *control = gui->GetControlPtrByName(name.c_str())) {
            if (show)
                control->Show();
            else
                control->Hide();
        }
    gui->SetNeedToRedrawGUI();
}

void WCTab::Choose() {
    for (WCTab *tab : RowTabs())
        if (tab != this && tab->m_Chosen) {
            tab->m_Chosen = false;
            tab->ShowPage(false);
            tab->SetNeedToRedrawControl();
        }
    m_Chosen = true;
    ShowPage(true);
    SetNeedToRedrawControl();
}

WCGUIControl::BUFFER_HEADER *WCTab::ClickSelf(WCEventData &, WURect<double> &, bool &) {
    Choose();
    return nullptr;
}

void WCTab::Hide() {
    CDragHandle::Hide();
    if (m_Chosen && GetControlFlag(eCF_HideChildrenWhenTabHidden))
        ShowPage(false);
}

void WCTab::Show() {
    CDragHandle::Show();
    if (m_Chosen && GetControlFlag(eCF_HideChildrenWhenTabHidden))
        ShowPage(true);
}

int WCTab::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const WURect<short> frame(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width());
    const WCBaseImage &image = m_Chosen ? m_Pushed : m_Released;
    writer.Remark(m_Chosen ? "Tab chosen" : "Tab");
    if (image.GetResID() != WCBaseImage::kNoResID) {
        writer.DrawPNGAtPosition(image.GetResID(), WCPoint2D<short>(0, 0));
    } else {
        writer.DrawSolidRect(m_Chosen ? kChosenColor : kOtherColor, frame);
        writer.DrawWireRect(kFrameColor, frame, 1.0f);
    }
    if (!m_Fields.m_Name.empty()) {
        writer.Font("Arial", kTitleSize, kTitleColor);
        writer.DrawTheText(m_Fields.m_Name.c_str(), 0);
    }
    return WCGUIControl::GetDrawInstructions(writer);
}

MIREL_NAMESPACE_END
