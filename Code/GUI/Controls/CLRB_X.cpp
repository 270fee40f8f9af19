#include "Code/GUI/Controls/CLRB_X.h"

#include <cstring>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr const char *kImageTypes[] = {"LRB_LEFT_OFF", "LRB_LEFT_ON",    "LRB_RIGHT_OFF",
                                       "LRB_RIGHT_ON", "LRB_nCHANS_OFF", "LRB_nCHANS_ON"};

int ImageIndex(const char *type) {
    for (int i = 0; i < 6; ++i)
        if (std::strcmp(type, kImageTypes[i]) == 0)
            return i;
    return -1;
}

} // namespace

CLRB_X *CLRB_X::Clone() const {
    auto *copy = new CLRB_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Fields = m_Fields;
    for (int i = 0; i < kNumImages; ++i)
        copy->m_Images[i].Assign(m_Images[i]);
    copy->m_OwnChoice = m_OwnChoice;
    return copy;
}

WTErr CLRB_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read aside and kept only whole: a broken child leaves the chooser as it was.
    WSFields fields;
    WCBaseImage images[kNumImages];
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "LeftBox" || name == "RightBox") {
            WURect<short> &box = name == "LeftBox" ? fields.m_LeftBox : fields.m_RightBox;
            if (const WTErr err = GUIXML::ReadRect(*child, box); err != eNoErr)
                return err;
        } else if (name == "Image") {
            const int index = ImageIndex(child->GetAttribString("Type").c_str());
            if (index < 0)
                return eOutOfRangeNumber;
            if (const WTErr err = images[index].ReadFromXML(child); err != eNoErr)
                return err;
        }
    }
    m_Fields = fields;
    for (int i = 0; i < kNumImages; ++i)
        m_Images[i].Assign(images[i]);
    return eNoErr;
}

void CLRB_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    for (int i = 0; i < kNumImages; ++i) {
        if (m_Images[i].GetResID() == WCBaseImage::kNoResID)
            continue;
        auto *element = cls->push_sub_element(new XML::CXMLElement("Image"));
        element->AddAttrib("Type", kImageTypes[i]);
        m_Images[i].WriteToXML(element);
    }
    if (!m_Fields.m_LeftBox.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("LeftBox", m_Fields.m_LeftBox));
    if (!m_Fields.m_RightBox.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("RightBox", m_Fields.m_RightBox));
}

CLRB_X::EChoice CLRB_X::StateToChoice(double state) noexcept {
    return state < 250.0 ? eLeft : state < 750.0 ? eRight : eAll;
}

CLRB_X::EChoice CLRB_X::GetChoice() const {
    return m_Registrations.empty() ? m_OwnChoice : StateToChoice(GetLeadRegistration()->GetValue());
}

WCGUIControl::BUFFER_HEADER *CLRB_X::Choose(EChoice choice, WCEventData &event) {
    m_OwnChoice = choice;
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        chain = Chain(chain, data.SetParamValue(ChoiceToState(choice), eRegMouseDown, modifiers));
    }
    if (auto *gui = dynamic_cast<CStandardGUI_X *>(m_pOwner))
        for (WCGUIControl *control : gui->GetControls())
            control->OnLRBChange();
    SetNeedToRedrawControl();
    return chain;
}

WCGUIControl::BUFFER_HEADER *CLRB_X::MouseDown(WCEventData &event, WURect<double> &limits,
                                               bool &keepGoing) {
    if (IsDisabled())
        return nullptr;
    BUFFER_HEADER *chain =
        m_Registrations.empty() ? nullptr : WCGUIControl::MouseDown(event, limits, keepGoing);
    const WCPoint2D<short> at = event.GetMouseLocation();
    const EChoice now = GetChoice();
    EChoice next = eAll;
    if (m_Fields.m_LeftBox.PointInRect(at) && now != eLeft)
        next = eLeft;
    else if (m_Fields.m_RightBox.PointInRect(at) && now != eRight)
        next = eRight;
    return Chain(chain, Choose(next, event));
}

int CLRB_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructions(writer);
    const EChoice choice = GetChoice();
    const struct {
        EChoice m_Choice;
        const WURect<short> *m_Box;
    } parts[] = {{eLeft, &m_Fields.m_LeftBox}, {eRight, &m_Fields.m_RightBox}, {eAll, nullptr}};
    writer.Remark("LRB");
    for (const auto &part : parts) {
        const WCBaseImage &image = m_Images[part.m_Choice * 2 + (choice == part.m_Choice ? 1 : 0)];
        if (image.GetResID() == WCBaseImage::kNoResID)
            continue;
        const WCPoint2D<short> at =
            part.m_Box == nullptr || part.m_Box->IsReset()
                ? WCPoint2D<short>(0, 0)
                : WCPoint2D<short>(static_cast<short>(part.m_Box->left - m_DrawableRect.left),
                                   static_cast<short>(part.m_Box->top - m_DrawableRect.top));
        writer.DrawPNGAtPosition(image.GetResID(), at);
    }
    return err;
}

MIREL_NAMESPACE_END
