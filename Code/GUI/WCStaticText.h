#pragma once

#include <cstdint>
#include <memory>

#include "Code/GUI/CDrawable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCRGBAColor.h"

MIREL_NAMESPACE_BEGIN

// A text window of a registration: the value, units or label of a parameter, drawn at its
// position rect relative to the control that holds it. The registration fills the text; the
// window decides how it shows (font, hover rules, truncation). [main-thread]
class WCStaticText : public CDrawable {
public:
    enum ETruncationTextMode : int {
        eTruncShortenText = 0,
        eTruncTextToMiddle = 1,
        eTruncTextToEnd = 2,
        eDontTruncText = 3,
        eTruncProcessingGroupText = 4,
    };
    enum ETruncationTextSpacesMode : int { eSpacesLeave = 0, eSpacesRemove = 1 };

    WCStaticText() = default;
    // A window with the same text, style and place.
    std::unique_ptr<WCStaticText> Clone() const;

    // "Font" (attributes "Name", "Size", "red", "green", "blue", "alpha"), "Hidden",
    // "PositionRect", "TextWinRect", "ShowOnHover", "DontShowOnHover", "Image" of "Type"
    // "EraseBitmap", "TextTruncRule", "Replacement", "Spaces". A rectangle or number that does not
    // read gives its code and leaves the window as it was.
    WTErr ReadFromXML(const XML::CXMLElement *const element) override;
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    using CXMLable::ReadFromXML;
    using CXMLable::WriteToXML;

    // A frame at the position rect (relative to the writer's current frame), the font and the
    // text; nothing while hidden.
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    void SetText(const char *text) { m_Data.m_Text = text; }
    const WCFixedString<127> &GetText() const noexcept { return m_Data.m_Text; }
    bool ShowOnHover() const noexcept { return m_Data.m_ShowOnHover; }
    bool DontShowOnHover() const noexcept { return m_Data.m_DontShowOnHover; }
    short GetEraseBitmapResID() const noexcept { return m_Data.m_EraseBitmap; }
    const WURect<short> &GetTextWinRect() const noexcept { return m_Data.m_TextWinRect; }
    // A control may colour its text by what it shows (a meter's clip), for one drawing.
    const WCRGBAColor &GetFontColor() const noexcept { return m_Data.m_FontColor; }
    void SetFontColor(const WCRGBAColor &color) noexcept { m_Data.m_FontColor = color; }

private:
    // What the XML gives, apart from the drawable's rect and hidden state, kept as one value so
    // that a read can go to a copy first.
    struct WSData {
        WCFixedString<31> m_FontName{"Arial"};
        std::int32_t m_FontSize = 12;
        WCRGBAColor m_FontColor{0, 0, 0, 255};
        WCFixedString<127> m_Text;
        WURect<short> m_TextWinRect;
        short m_EraseBitmap = -1;
        bool m_ShowOnHover = false;
        bool m_DontShowOnHover = false;
        int m_Truncation = eTruncShortenText;
        int m_Spaces = eSpacesLeave;
        WCFixedString<15> m_Replacement;
    };
    WSData m_Data;
};

MIREL_NAMESPACE_END
