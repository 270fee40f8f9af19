#pragma once

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A switch: a click steps each parameter registered to "MouseDown" to the next state its
// algorithm names (GetPluginInfo_GetNextToggleState: by default the next, past the last one back
// to the first); the control flag "SetOppositeNextState" steps the other way. Its
// pictures are those of its registrations' bitmap windows, one per state; the "Pushed" and
// "Released" images of its "Class" are read and written back. Owned by its document like every
// control. [main-thread]
class CToggle_X : public WCGUIControl {
public:
    explicit CToggle_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CToggle_X *Clone() const override;

    // The state after `state` for a parameter whose states lie `step` apart (0..1000), going
    // up, or down when `reverse`, and wrapping at either end.
    static double NextState(double state, double step, bool reverse) noexcept;

    short GetPushedResID() const noexcept { return m_Pushed.GetResID(); }
    short GetReleasedResID() const noexcept { return m_Released.GetResID(); }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    // The state a click sends `data`'s parameter to; the kinds of switches differ only in it.
    virtual double ClickTarget(const WCParamRegistrationData &data, bool reverse) const;

    WCBaseImage m_Pushed;
    WCBaseImage m_Released;
};

MIREL_NAMESPACE_END
