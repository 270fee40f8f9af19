#pragma once

#include <vector>

#include "Code/GUI/Controls/CSlider_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A slider that also shows modulation: strips along its travel and a dot where the modulated
// value lies. "AllStripes" gives "Length", the pixels of travel the dot spans (the slider's own
// travel without it), and "Thickness", the width of the strips across the travel and the
// dot's radius; each of its "Stripe" children is a strip from "Position" to "Position" plus
// "PathLength", pixels along the travel counted from its state-0 end. The dot stands at
// (mod + value) * 0.001 * Length, held to 0..1000 states, where value is the slider's own and mod
// comes from the second registration (the first when the second leads): a modulation is bipolar, so
// its state 500 means none and mod = state - 500. Without a second registration the dot marks the
// slider's value. Strips and dot are drawn over the slider in the control's colour ("ControlColor";
// white without one), the strips at half its opacity. A "Class" whose "AllStripes" does not read
// changes nothing of the stripes. [main-thread]
class CSliderModStripes_X : public CSlider_X {
public:
    struct sStripe {
        int m_Position = 0;
        int m_PathLength = 0;
    };
    // The state of a modulation registration that adds nothing.
    static constexpr double kNoModulation = 500.0;

    explicit CSliderModStripes_X(WIControlOwner *owner = nullptr) : CSlider_X(owner) {}

    WCGUIControl *Clone() const override;
    // The slider, then the strips, then the dot.
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    // The modulated value, 0..1000, the dot's place in states.
    double GetModulatedState() const;
    const std::vector<sStripe> &GetStripes() const noexcept { return m_Stripes; }
    int GetLength() const noexcept { return m_Length; }
    int GetThickness() const noexcept { return m_Thickness; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *element, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *element) const override;

private:
    bool m_HasStripes = false;
    int m_Length = 0;
    int m_Thickness = 0;
    std::vector<sStripe> m_Stripes;
};

MIREL_NAMESPACE_END
