#pragma once

#include "Code/GUI/Controls/CToggle_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A switch to one chosen state: a click sets each registration that names a "FixedState" (a
// register type with a "State" attribute) to that state, and a click while it is there sets it
// to 0, off. Registrations without a fixed state step as a toggle's do. Its "Class" reads as a
// toggle's. [main-thread]
class CFixedStateToggleWithOff : public CToggle_X {
public:
    explicit CFixedStateToggleWithOff(WIControlOwner *owner = nullptr) : CToggle_X(owner) {}

    CFixedStateToggleWithOff *Clone() const override;

    // The state a click on a registration at `state` goes to.
    static double NextFixedState(double state, double fixed) noexcept;

protected:
    double ClickTarget(const WCParamRegistrationData &data, bool reverse) const override;
};

MIREL_NAMESPACE_END
