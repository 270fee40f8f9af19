#pragma once

#include <vector>

#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A scroll bar over the registrations of the "ScrollY" gesture (vertical, along the control's
// height) or "ScrollX" (horizontal): its thumb, a quarter of the track since the bar knows no
// page size of its own, stands where the value is; a press on the thumb holds it and a drag moves
// it with the mouse, a press on the track beside it pages by a quarter of the scale towards the
// press. Its "Class" has no children of its own; any there are written back as read.
// [main-thread]
class CScroller : public WCGUIControl {
public:
    explicit CScroller(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CScroller *Clone() const override;
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    bool IsVertical() const;
    // The thumb in GUI coordinates for the lead registration's value.
    WURect<short> GetThumbRect() const;
    // The state whose thumb starts at `start` pixels into the track.
    double ThumbStartToState(int start) const;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseDragSelf(WCEventData &event, double dx, double dy,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;

private:
    int TrackLength() const;
    int ThumbLength() const;
    // Sets every scrolling registration to `state`.
    BUFFER_HEADER *SetScroll(double state, WCEventData &event);

    std::vector<XML::CXMLElement> m_OtherChildren;
    bool m_Holding = false;
    // Pixels from the thumb's start to the press, kept while the thumb is held.
    int m_HoldOffset = 0;
};

MIREL_NAMESPACE_END
