#pragma once

#include <string>
#include <vector>

#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A number display. Without digit pictures it shows its registrations' value windows as any
// control does. With them ("Image" children of its "Class", one per glyph, the glyphs named in
// order by the "Digit" children of "DigitList", by default 0 to 9, '-', '.', '+') it composes
// its lead parameter's value text from them in its digit draw area (relative to the control,
// the whole control without one), aligned left, centre or right, over the area filled with its
// "Color" when it has one. Characters without a glyph (units, spaces) are left out. At most
// "MaximumDisplayDigits" digits show (trailing ones go first), padded with leading zeros to
// that many with "AlwaysDisplayMaximumDigits"; "AlwaysShowSign" puts '+' before a value that is
// not negative. A read that fails keeps the display as it was. Owned by its document like every
// control. [main-thread]
class CDigitDisplay_X : public WCGUIControl {
public:
    enum EAlignment { eAlignLeft, eAlignCenter, eAlignRight };
    static constexpr const char *kDefaultGlyphs = "0123456789-.+";
    // Longest text composed; the rest of a longer value text is not shown.
    static constexpr std::size_t kMaxGlyphs = 63;

    explicit CDigitDisplay_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}
    CDigitDisplay_X *Clone() const override;

    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    int GetMaximumDisplayDigits() const noexcept { return m_Fields.m_MaximumDigits; }
    EAlignment GetAlignment() const noexcept { return m_Fields.m_Alignment; }
    bool HasDigitImages() const { return !m_Digits.Empty(); }
    // The glyphs a value text becomes under this display's rules; no allocation.
    void ComposeDigits(const char *valueText, WCFixedStringBase &out) const;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;

private:
    struct WSFields {
        bool m_AlwaysMaximumDigits = false;
        int m_MaximumDigits = 0;
        bool m_AlwaysShowSign = false;
        EAlignment m_Alignment = eAlignRight;
        bool m_HasAlignment = false;
        bool m_HasDigitColor = false;
        WCRGBAColor m_DigitColor;
        WURect<short> m_DrawArea;
        // The glyph of each image, in order; empty for the default glyphs.
        std::string m_Glyphs;
        bool m_HasDigitList = false;
    };
    // The picture of a glyph; null without one.
    const WCBaseImage *GlyphImage(char glyph) const;

    WCBaseImageVector m_Digits;
    WSFields m_Fields;
    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
