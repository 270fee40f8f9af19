#include "Code/GUI/Controls/CDigitDisplay_X.h"

#include <algorithm>
#include <cstring>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr const char *kAlignmentNames[] = {"Left", "Center", "Right"};

bool IsDigit(char ch) {
    return ch >= '0' && ch <= '9';
}

} // namespace

CDigitDisplay_X *CDigitDisplay_X::Clone() const {
    auto *copy = new CDigitDisplay_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Digits.CopyImages(m_Digits);
    copy->m_Fields = m_Fields;
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
    // Read aside and taken only when all of it read, so that a bad skin leaves the display whole.
    WSFields fields;
    WCBaseImageVector digits;
    std::vector<XML::CXMLElement> others;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Image") {
            keep(digits.AddFromXML_OneImage(child));
        } else if (name == "AlwaysDisplayMaximumDigits") {
            fields.m_AlwaysMaximumDigits = GUIXML::ReadSwitch(*child);
        } else if (name == "AlwaysShowSign") {
            fields.m_AlwaysShowSign = GUIXML::ReadSwitch(*child);
        } else if (name == "MaximumDisplayDigits") {
            int count = 0;
            if (!GUIXML::ReadIntText(*child, count))
                keep(eNotANumber);
            else if (count < 0 || count > static_cast<int>(kMaxGlyphs))
                keep(eOutOfRangeNumber);
            else
                fields.m_MaximumDigits = count;
        } else if (name == "DigitsAlignment") {
            const auto *found =
                std::find(std::begin(kAlignmentNames), std::end(kAlignmentNames), child->GetText());
            if (found == std::end(kAlignmentNames)) {
                keep(eValueNotFound);
            } else {
                fields.m_Alignment = static_cast<EAlignment>(found - std::begin(kAlignmentNames));
                fields.m_HasAlignment = true;
            }
        } else if (name == "Color") {
            const WTErr err = GUIXML::ReadColor(*child, fields.m_DigitColor);
            keep(err);
            fields.m_HasDigitColor = err == eNoErr;
        } else if (name == "DigitDrawArea") {
            keep(GUIXML::ReadRect(*child, fields.m_DrawArea));
        } else if (name == "DigitList") {
            fields.m_HasDigitList = true;
            for (const XML::CXMLElement *digit : child->GetSubElements()) {
                if (digit->GetName() != "Digit")
                    continue;
                if (digit->GetText().size() != 1)
                    keep(eValueWrongSize);
                else
                    fields.m_Glyphs += digit->GetText()[0];
            }
        } else {
            others.push_back(*child);
        }
    }
    if (first != eNoErr)
        return first;
    // A glyph's width places the next one; a picture that does not decode is drawn without one.
    if (WTResContainerType *container = GetContainer())
        digits.LoadAll(container);
    m_Digits.CopyImages(digits);
    m_Fields = std::move(fields);
    m_OtherChildren = std::move(others);
    return eNoErr;
}

void CDigitDisplay_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    const WSFields &f = m_Fields;
    for (std::size_t i = 0; i < m_Digits.GetImagesVectorSize(); ++i)
        if (const WCBaseImage *image = m_Digits.GetImagePtr(i))
            image->WriteToXML(cls->push_sub_element(new XML::CXMLElement("Image")));
    if (f.m_AlwaysMaximumDigits)
        cls->push_sub_element(new XML::CXMLElement("AlwaysDisplayMaximumDigits", "true"));
    if (f.m_MaximumDigits != 0)
        cls->push_sub_element(new XML::CXMLElement("MaximumDisplayDigits", f.m_MaximumDigits));
    if (f.m_AlwaysShowSign)
        cls->push_sub_element(new XML::CXMLElement("AlwaysShowSign", "true"));
    if (f.m_HasAlignment)
        cls->push_sub_element(
            new XML::CXMLElement("DigitsAlignment", kAlignmentNames[f.m_Alignment]));
    if (f.m_HasDigitColor)
        cls->push_sub_element(GUIXML::WriteColor("Color", f.m_DigitColor));
    if (!f.m_DrawArea.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("DigitDrawArea", f.m_DrawArea));
    if (f.m_HasDigitList) {
        auto *list = cls->push_sub_element(new XML::CXMLElement("DigitList"));
        for (const char glyph : f.m_Glyphs)
            list->push_sub_element(new XML::CXMLElement("Digit", std::string(1, glyph).c_str()));
    }
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

const WCBaseImage *CDigitDisplay_X::GlyphImage(char glyph) const {
    const char *glyphs = m_Fields.m_Glyphs.empty() ? kDefaultGlyphs : m_Fields.m_Glyphs.c_str();
    const char *found = glyph != '\0' ? std::strchr(glyphs, glyph) : nullptr;
    return found != nullptr ? m_Digits.GetImagePtr(static_cast<std::size_t>(found - glyphs))
                            : nullptr;
}

void CDigitDisplay_X::ComposeDigits(const char *valueText, WCFixedStringBase &out) const {
    out.clear();
    const WSFields &f = m_Fields;
    char kept[kMaxGlyphs + 1];
    std::size_t length = 0;
    int digits = 0;
    bool negative = false;
    for (const char *ch = valueText != nullptr ? valueText : ""; *ch != '\0'; ++ch) {
        if (*ch == '-' && length == 0 && !negative) {
            negative = true;
        } else if (IsDigit(*ch) || (*ch == '.' && length > 0)) {
            if ((f.m_MaximumDigits > 0 && IsDigit(*ch) && digits == f.m_MaximumDigits) ||
                length == kMaxGlyphs)
                break;
            digits += IsDigit(*ch) ? 1 : 0;
            kept[length++] = *ch;
        }
    }
    // A point with nothing after it (the digits after it did not fit) is not shown.
    if (length > 0 && kept[length - 1] == '.')
        --length;
    if (negative)
        out << '-';
    else if (f.m_AlwaysShowSign)
        out << '+';
    for (int pad = f.m_AlwaysMaximumDigits ? f.m_MaximumDigits - digits : 0; pad > 0; --pad)
        out << '0';
    for (std::size_t i = 0; i < length; ++i)
        out << kept[i];
}

int CDigitDisplay_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructions(writer);
    const WCParamRegistrationData *lead = GetLeadRegistration();
    if (err != eNoErr || !HasDigitImages() || lead == nullptr || m_pAlg == nullptr)
        return err;
    const sCONTROL_PARAM *param = m_pAlg->GetParam(lead->GetRegisteredParam());
    if (param == nullptr)
        return eNoErr;
    WCFixedString<kMaxGlyphs + 2> text;
    ComposeDigits(param->GetValueString().c_str(), text);

    const WURect<short> area =
        m_Fields.m_DrawArea.IsReset()
            ? WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width())
            : m_Fields.m_DrawArea;
    int width = 0;
    for (const char *ch = text.c_str(); *ch != '\0'; ++ch)
        if (const WCBaseImage *image = GlyphImage(*ch))
            width += image->GetDefaultWidth();
    int x = area.left;
    if (m_Fields.m_Alignment == eAlignRight)
        x = area.right - width;
    else if (m_Fields.m_Alignment == eAlignCenter)
        x = area.left + (area.Width() - width) / 2;
    writer.Remark("Digits");
    if (m_Fields.m_HasDigitColor)
        writer.DrawSolidRect(m_Fields.m_DigitColor, area);
    for (const char *ch = text.c_str(); *ch != '\0'; ++ch) {
        const WCBaseImage *image = GlyphImage(*ch);
        if (image == nullptr || image->GetResID() < 0)
            continue;
        const int y = area.top + (area.Height() - image->GetDefaultHeight()) / 2;
        writer.DrawPNGAtPosition(image->GetResID(),
                                 WCPoint2D<short>(static_cast<short>(x), static_cast<short>(y)));
        x += image->GetDefaultWidth();
    }
    return eNoErr;
}

MIREL_NAMESPACE_END
