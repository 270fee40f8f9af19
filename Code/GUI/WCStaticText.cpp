#include "Code/GUI/WCStaticText.h"

#include <iterator>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr const char *kTruncNames[] = {"TruncShortenText", "TruncTextToMiddle", "TruncTextToEnd",
                                       "DontTruncText", "TruncProcessingGroupText"};

} // namespace

std::unique_ptr<WCStaticText> WCStaticText::Clone() const {
    auto copy = std::make_unique<WCStaticText>();
    copy->m_Data = m_Data;
    copy->m_Hidden = m_Hidden;
    copy->m_DrawableRect = m_DrawableRect;
    copy->m_OriginalRect = m_OriginalRect;
    return copy;
}

WTErr WCStaticText::ReadFromXML(const XML::CXMLElement *const element) {
    if (element == nullptr)
        return eMemNullPointer;
    // Read into a copy so that a bad child leaves this window whole.
    WSData read = m_Data;
    bool hidden = m_Hidden;
    WURect<short> position = m_OriginalRect;
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        const auto &name = child->GetName();
        WTErr err = eNoErr;
        if (name == "Font") {
            child->GetAttrib("Name", read.m_FontName);
            if (child->AttribExists("Size"))
                err = WUAtoi(child->GetAttribString("Size").c_str(), read.m_FontSize);
            if (err == eNoErr)
                err = GUIXML::ReadColor(*child, read.m_FontColor);
        } else if (name == "Hidden") {
            hidden = true;
        } else if (name == "PositionRect") {
            err = GUIXML::ReadRect(*child, position);
        } else if (name == "TextWinRect") {
            err = GUIXML::ReadRect(*child, read.m_TextWinRect);
        } else if (name == "ShowOnHover") {
            read.m_ShowOnHover = true;
        } else if (name == "DontShowOnHover") {
            read.m_DontShowOnHover = true;
        } else if (name == "Image" && child->GetAttribString("Type") == "EraseBitmap") {
            err = WUAtoi(child->GetAttribString("ResID").c_str(), read.m_EraseBitmap);
        } else if (name == "TextTruncRule") {
            for (const XML::CXMLElement *rule : child->GetSubElements())
                for (int i = 0; i < static_cast<int>(std::size(kTruncNames)); ++i)
                    if (rule->GetName() == kTruncNames[i])
                        read.m_Truncation = i;
        } else if (name == "Replacement") {
            read.m_Replacement = child->GetText().c_str();
        } else if (name == "Spaces") {
            if (child->GetText() == "Remove")
                read.m_Spaces = eSpacesRemove;
            else if (child->GetText() == "Leave")
                read.m_Spaces = eSpacesLeave;
        }
        if (err != eNoErr)
            return err;
    }
    m_Data = read;
    m_Hidden = hidden;
    m_DrawableRect = position;
    m_OriginalRect = position;
    return eNoErr;
}

XML::CXMLElement *WCStaticText::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    XML::CXMLElement *font = GUIXML::WriteColor("Font", m_Data.m_FontColor);
    font->AddAttrib("Name", m_Data.m_FontName.c_str());
    font->AddAttrib("Size", m_Data.m_FontSize);
    element->push_back(font);
    if (m_Hidden)
        element->push_back(new XML::CXMLElement("Hidden"));
    element->push_back(GUIXML::WriteRect("PositionRect", m_OriginalRect));
    if (!m_Data.m_TextWinRect.IsReset())
        element->push_back(GUIXML::WriteRect("TextWinRect", m_Data.m_TextWinRect));
    if (m_Data.m_ShowOnHover)
        element->push_back(new XML::CXMLElement("ShowOnHover"));
    if (m_Data.m_DontShowOnHover)
        element->push_back(new XML::CXMLElement("DontShowOnHover"));
    if (m_Data.m_EraseBitmap != -1) {
        auto *image = new XML::CXMLElement("Image");
        image->AddAttrib("Type", "EraseBitmap");
        image->AddAttrib("ResID", m_Data.m_EraseBitmap);
        element->push_back(image);
    }
    if (m_Data.m_Truncation != eTruncShortenText) {
        auto *rule = new XML::CXMLElement("TextTruncRule");
        rule->push_back(new XML::CXMLElement(kTruncNames[m_Data.m_Truncation]));
        element->push_back(rule);
    }
    if (!m_Data.m_Replacement.empty())
        element->push_back(new XML::CXMLElement("Replacement", m_Data.m_Replacement.c_str()));
    if (m_Data.m_Spaces == eSpacesRemove)
        element->push_back(new XML::CXMLElement("Spaces", "Remove"));
    return element;
}

int WCStaticText::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    if (m_Hidden || m_DrawableRect.IsEmpty())
        return eNoErr;
    const WURect<int> rect(m_DrawableRect.top, m_DrawableRect.left, m_DrawableRect.bottom,
                           m_DrawableRect.right);
    miGS::WCStGSFrameStructWriter frame(writer, rect, 0);
    writer.Font(m_Data.m_FontName.c_str(), m_Data.m_FontSize, m_Data.m_FontColor);
    writer.DrawTheText(m_Data.m_Text.c_str(), 0);
    return frame.GetResult();
}

MIREL_NAMESPACE_END
