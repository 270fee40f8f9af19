#include "Code/GUI/Controls/CDigitDisplay_X.h"

#include "Code/GUI/WUGUIXML.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr const char *kAlignmentNames[] = {"Left", "Center", "Right"};

} // namespace

CDigitDisplay_X *CDigitDisplay_X::Clone() const {
    auto *copy = new CDigitDisplay_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Digits.CopyImages(m_Digits);
    copy->m_AlwaysMaximumDigits = m_AlwaysMaximumDigits;
    copy->m_MaximumDigits = m_MaximumDigits;
    copy->m_AlwaysShowSign = m_AlwaysShowSign;
    copy->m_Alignment = m_Alignment;
    copy->m_HasAlignment = m_HasAlignment;
    copy->m_HasDigitColor = m_HasDigitColor;
    copy->m_DigitColor = m_DigitColor;
    copy->m_DrawArea = m_DrawArea;
    copy->m_OtherChildren = m_OtherChildren;
    return copy;
}

WTErr CDigitDisplay_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    // A skin change reads the class again: what was read is replaced, not added to.
    m_Digits.Clear();
    m_OtherChildren.clear();
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Image") {
            keep(m_Digits.AddFromXML_OneImage(child));
        } else if (name == "AlwaysDisplayMaximumDigits") {
            m_AlwaysMaximumDigits = GUIXML::ReadSwitch(*child);
        } else if (name == "AlwaysShowSign") {
            m_AlwaysShowSign = GUIXML::ReadSwitch(*child);
        } else if (name == "MaximumDisplayDigits") {
            int digits = 0;
            if (!GUIXML::ReadIntText(*child, digits))
                keep(eNotANumber);
            else if (digits < 0)
                keep(eOutOfRangeNumber);
            else
                m_MaximumDigits = digits;
        } else if (name == "DigitsAlignment") {
            const std::string &text = child->GetText();
            bool known = false;
            for (int i = 0; i < 3; ++i)
                if (text == kAlignmentNames[i]) {
                    m_Alignment = static_cast<EAlignment>(i);
                    m_HasAlignment = known = true;
                }
            if (!known)
                keep(eOutOfRangeNumber);
        } else if (name == "Color") {
            WCRGBAColor color;
            const WTErr err = GUIXML::ReadColor(*child, color);
            keep(err);
            if (err == eNoErr) {
                m_DigitColor = color;
                m_HasDigitColor = true;
            }
        } else if (name == "DigitDrawArea") {
            keep(GUIXML::ReadRect(*child, m_DrawArea));
        } else {
            m_OtherChildren.push_back(*child);
        }
    }
    return first;
}

void CDigitDisplay_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    for (std::size_t i = 0; i < m_Digits.GetImagesVectorSize(); ++i)
        if (const WCBaseImage *image = m_Digits.GetImagePtr(i))
            image->WriteToXML(cls->push_sub_element(new XML::CXMLElement("Image")));
    if (m_AlwaysMaximumDigits)
        cls->push_sub_element(new XML::CXMLElement("AlwaysDisplayMaximumDigits", "true"));
    if (m_MaximumDigits != 0)
        cls->push_sub_element(new XML::CXMLElement("MaximumDisplayDigits", m_MaximumDigits));
    if (m_AlwaysShowSign)
        cls->push_sub_element(new XML::CXMLElement("AlwaysShowSign", "true"));
    if (m_HasAlignment)
        cls->push_sub_element(
            new XML::CXMLElement("DigitsAlignment", kAlignmentNames[m_Alignment]));
    if (m_HasDigitColor)
        cls->push_sub_element(GUIXML::WriteColor("Color", m_DigitColor));
    if (!m_DrawArea.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("DigitDrawArea", m_DrawArea));
    for (const auto &child : m_OtherChildren)
        cls->push_sub_element(new XML::CXMLElement(child));
}

int CDigitDisplay_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructions(writer);
    if (err != eNoErr)
        return err;
    return HasDigitImages() ? eNotImplemented : eNoErr;
}

MIREL_NAMESPACE_END
