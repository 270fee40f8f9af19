#pragma once

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A level meter of a display-only parameter: its background picture (the unlit meter) whole,
// and of its foreground picture (the lit one) the part the level asks, from the bottom for a
// vertical meter and from the left otherwise. Each picture sits at its own "PositionRect", else
// at the control's corner. It reads no "Class" children of its own. Owned by its document like
// every control. [main-thread]
class CVuMeter_X : public WCGUIControl {
public:
    explicit CVuMeter_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CVuMeter_X *Clone() const override;

    // The lit fraction (0..1) for a parameter state (0..1000); a state out of range is held at
    // the nearer end and one that is no number shows nothing.
    static double CalculateVUValueByParamValue(double value) noexcept;
    // The lit fraction of the lead registration's value; 0 without registrations.
    double GetVUValue() const;

protected:
    // The meter is the control's face: the colour, the unlit picture and the lit part, so that
    // the selection picture and the value windows stand over it.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
};

MIREL_NAMESPACE_END
