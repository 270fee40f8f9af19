#pragma once

#include "Code/GUI/Controls/CToggle_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The switch that turns a plug-in's automatic trim on and off: a toggle in all it reads, draws
// and does with the mouse; its own kind lets a plug-in's GUI and tools tell it from other
// switches. [main-thread]
class WCAutoTrimButton : public CToggle_X {
public:
    explicit WCAutoTrimButton(WIControlOwner *owner = nullptr) : CToggle_X(owner) {}

    WCAutoTrimButton *Clone() const override;
};

MIREL_NAMESPACE_END
