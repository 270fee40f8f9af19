#pragma once

#include <vector>

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

// A knob drawn from a strip of pictures: the strip ("Image" of its "Class") holds
// "SequenceSteps" frames of equal height stacked top to bottom, from the lowest value to the
// highest, and the knob shows the one its lead value selects. The other "Class" children (angle
// range, knob centre, alpha, sub-sequence, quantizing) are read and written back so that a
// document keeps them; children this class does not know are kept whole in their order.
// Owned by its document like every control. [main-thread]
class CRotationKnob : public WCGUIControl {
public:
    explicit CRotationKnob(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CRotationKnob *Clone() const override;

    // The frame of the strip for `state` (0..1000): round(state * (steps - 1) / 1000).
    static int FrameForState(double state, int steps) noexcept;
    // The frame the lead registration's value selects; 0 without registrations.
    int GetCurrentFrame() const;

    short GetStripResID() const noexcept { return m_Strip.GetResID(); }
    int GetSequenceSteps() const noexcept { return m_SequenceSteps; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // The knob's face is its background: the colour, then the frame of the strip, so that the
    // selection picture and the value windows stand over it.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;

private:
    // The size of one frame: the strip's decoded height split in steps, else the control's.
    WCPoint2D<short> FrameSize() const;
    void CopyKnobTo(CRotationKnob &other) const;

    WCBaseImage m_Strip;
    int m_SequenceSteps = 1;
    int m_SubSequenceSteps = 0;
    int m_Alpha = 255;
    double m_DiscreteStep = 0.0;
    bool m_SequenceQuantize = false;
    bool m_Clipable = false;
    bool m_HasAngleRange = false;
    double m_MinAngle = 0.0;
    double m_MaxAngle = 0.0;
    WCFixedString<15> m_AngleDirection;
    bool m_HasKnobCenter = false;
    WCPoint2D<short> m_KnobCenter;
    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
