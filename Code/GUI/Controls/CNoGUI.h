#pragma once

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A control with no picture at all: it holds its registrations (so its parameters count as shown
// for updates and the automation order) but is never drawn, whatever its XML gives it.
// [main-thread]
class CNoGUI : public WCGUIControl {
public:
    explicit CNoGUI(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CNoGUI *Clone() const override;
    bool IsDrawable() const override { return false; }
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &) override { return eNoErr; }
};

MIREL_NAMESPACE_END
