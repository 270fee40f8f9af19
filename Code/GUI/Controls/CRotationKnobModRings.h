#pragma once

#include <string_view>
#include <vector>

#include "Code/GUI/Controls/CRotationKnob.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

// A knob with modulation rings around it: ring n shows the state of registration n + 1 (the
// first "Ring" the second "Param", the first one turning the knob), as an arc from
// "StartDegree" that sweeps its part of the way to "EndDegree" (degrees clockwise from twelve
// o'clock), over a faint track of the whole way. A ring is a circle of "InnerRadius" and
// "Thickness" (pixels) whose centre is the centre of the "DrawRectSize" square ("width",
// "height"; the control's size without one) moved by "OffsetX", "OffsetY". Rings are drawn in the
// control's colour ("ControlColor"; white without one). A ring without its registration shows
// its track only. The knob itself is the rotation knob's. [main-thread]
class CRotationKnobModRings : public CRotationKnob {
public:
    struct sRing {
        double m_InnerRadius = 0.0;
        double m_Thickness = 1.0;
        double m_OffsetX = 0.0;
        double m_OffsetY = 0.0;
        double m_StartDegree = 0.0;
        double m_EndDegree = 360.0;
    };

    explicit CRotationKnobModRings(WIControlOwner *owner = nullptr) : CRotationKnob(owner) {}

    CRotationKnobModRings *Clone() const override;

    const std::vector<sRing> &GetRings() const noexcept { return m_Rings; }
    // The square the rings are centred in, relative to the control.
    WCPoint2D<short> GetDrawRectSize() const;
    // The part (0..1) ring `index` shows; 0 without its registration.
    double GetRingAmount(std::size_t index) const;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    bool IsDerivedClassChild(std::string_view name) const override {
        return name == "Ring" || name == "DrawRectSize";
    }

private:
    std::vector<sRing> m_Rings;
    bool m_HasDrawRectSize = false;
    WCPoint2D<short> m_DrawRectSize;
};

MIREL_NAMESPACE_END
