#pragma once

#include <string_view>
#include <vector>

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

// A knob drawn from a picture. In strip mode (the default) the picture ("Image" of its "Class")
// holds "SequenceSteps" frames of equal height stacked top to bottom, from the lowest value to
// the highest, and the knob shows the one its lead value selects. In rotation mode (bit 0 of the
// "Type" mode word) the first frame is drawn inside a frame turned by the angle of the value:
// from "minAngle" at state 0 to "maxAngle" at 1000 ("AngleRange", degrees clockwise from the
// picture as drawn; "direction" "ccw" turns the other way), around "KnobCenter" (else the
// frame's centre). The other "Class" children (alpha, sub-sequence, quantizing, scale marks) are
// read and written back so that a document keeps them; children this class does not know are
// kept whole in their order. A "Class" that does not read leaves the knob as it was.
// Owned by its document like every control. [main-thread]
class CRotationKnob : public WCGUIControl {
public:
    // Bit 0 of the mode word: the picture turns instead of stepping through a strip.
    static constexpr int kModeRotateImage = 1;
    // Without "AngleRange" a turning knob sweeps three quarters of a turn, centred on the top.
    static constexpr double kDefaultMinAngle = -135.0;
    static constexpr double kDefaultMaxAngle = 135.0;

    explicit CRotationKnob(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CRotationKnob *Clone() const override;

    // The frame of the strip for `state` (0..1000): round(state * (steps - 1) / 1000).
    static int FrameForState(double state, int steps) noexcept;
    // The frame the lead registration's value selects; 0 without registrations.
    int GetCurrentFrame() const;
    // Degrees clockwise from twelve o'clock for `state` (held to 0..1000) along the angle range.
    double AngleForState(double state) const noexcept;
    // The lead registration's state; 0 without registrations.
    double GetKnobState() const;

    short GetStripResID() const noexcept { return m_Strip.GetResID(); }
    int GetSequenceSteps() const noexcept { return m_Fields.m_SequenceSteps; }
    int GetMode() const noexcept { return m_Fields.m_Mode; }
    bool RotatesImage() const noexcept { return (m_Fields.m_Mode & kModeRotateImage) != 0; }
    double GetMinAngle() const noexcept;
    double GetMaxAngle() const noexcept;
    // The point the picture turns around, relative to the control.
    WCPoint2D<short> GetRotationCentre() const;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // The knob's face is its background: the colour, then the frame of the strip (or the turned
    // picture), so that the selection picture and the value windows stand over it.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    // Children of "Class" a derived knob reads itself; the knob neither reads nor keeps them.
    virtual bool IsDerivedClassChild(std::string_view) const { return false; }
    void CopyKnobTo(CRotationKnob &other) const;
    // The size of one frame: the strip's decoded height split in steps, else the control's.
    WCPoint2D<short> FrameSize() const;

private:
    // The plain fields "Class" sets, read into a copy so that a bad child changes nothing.
    struct sKnobFields {
        int m_Mode = 0;
        bool m_HasMode = false;
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
    };

    bool TurnsCounterClockwise() const noexcept;

    WCBaseImage m_Strip;
    sKnobFields m_Fields;
    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
