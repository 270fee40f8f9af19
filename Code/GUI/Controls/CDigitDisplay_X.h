#pragma once

#include <vector>

#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A number display. Without digit pictures it shows its registrations' value windows as any
// control does; with them ("Image" children of its "Class", one per digit) it would compose the
// number from them, which is not built yet: its drawing then answers eNotImplemented. Its
// "Class" children (digit count and sign rules, alignment, colour, draw area) are read and
// written back; "DigitList" and children it does not know are kept whole. Owned by its document
// like every control. [main-thread]
class CDigitDisplay_X : public WCGUIControl {
public:
    enum EAlignment { eAlignLeft, eAlignCenter, eAlignRight };

    explicit CDigitDisplay_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}
    CDigitDisplay_X *Clone() const override;

    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    int GetMaximumDisplayDigits() const noexcept { return m_MaximumDigits; }
    EAlignment GetAlignment() const noexcept { return m_Alignment; }
    bool HasDigitImages() const { return !m_Digits.Empty(); }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;

private:
    WCBaseImageVector m_Digits;
    bool m_AlwaysMaximumDigits = false;
    int m_MaximumDigits = 0;
    bool m_AlwaysShowSign = false;
    EAlignment m_Alignment = eAlignRight;
    bool m_HasAlignment = false;
    bool m_HasDigitColor = false;
    WCRGBAColor m_DigitColor;
    WURect<short> m_DrawArea;
    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
