#pragma once

#include "Code/GUI/Controls/CRotationKnob.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A knob with a value ring that follows a meter: the first "DisplayOnly" registration names the
// meter parameter, whose level is read from the algorithm's meter manager when the knob is drawn
// (the meter's display value on the parameter's scale), so the ring shows what the meter holds
// now rather than the last value the parameter was told. A parameter without a meter shows its
// own state. The ring is an arc just inside the knob's picture, from the knob's angle of state 0
// along its angle range as far as the level goes, in the control's colour ("ControlColor"; white
// without one). Everything else, the "Class" children included, is the rotation knob's.
// [main-thread]
class CRotationKnobMeter : public CRotationKnob {
public:
    // The ring's width in pixels.
    static constexpr float kRingWidth = 3.0f;

    explicit CRotationKnobMeter(WIControlOwner *owner = nullptr) : CRotationKnob(owner) {}

    CRotationKnobMeter *Clone() const override;

    // The meter's level as a state (0..1000); 0 without a display-only registration.
    double GetMeterState() const;

protected:
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
};

MIREL_NAMESPACE_END
