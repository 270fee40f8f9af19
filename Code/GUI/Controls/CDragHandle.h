#pragma once

#include "Code/GUI/Controls/CToggle_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A control the mouse moves: a drag moves the control itself, pixel for pixel, kept inside its
// "MovementRect" (GUI coordinates; anywhere without one). A handle that also holds parameters
// steps them on a click as a toggle does; its move needs none. A release outside the handle never
// reaches it (the document sends releases to the control under the mouse), so each press starts
// the move afresh. [main-thread]
class CDragHandle : public CToggle_X {
public:
    explicit CDragHandle(WIControlOwner *owner = nullptr) : CToggle_X(owner) {}

    CDragHandle *Clone() const override;

    // A handle takes the mouse without registrations, which the base needs to take it.
    BUFFER_HEADER *MouseDown(WCEventData &event, WURect<double> &limits, bool &keepGoing) override;
    BUFFER_HEADER *MouseDrag(WCEventData &event, double dx, double dy, bool &keepGoing) override;
    BUFFER_HEADER *MouseUp(WCEventData &event) override;
    // Without registrations a drag's pixels are passed on as they are, so that the document
    // does not take a move for no move.
    double ConvertMouseDeltaFromPixelsToState(double delta, double &accumulator,
                                              std::size_t paramIndex, double range) const override;
    bool IsDragging() const noexcept { return m_Dragging; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // What a plain click on the handle does besides starting a move; the toggle's step here.
    virtual BUFFER_HEADER *ClickSelf(WCEventData &event, WURect<double> &limits, bool &keepGoing);
    // Whether a drag moves this control; a handle always moves.
    virtual bool CanMove() const { return true; }
    // Copies the handle's fields (and the toggle's) into a clone of a derived class.
    void CopyHandleTo(CDragHandle &other) const;

    bool m_Dragging = false;
    WCPoint2D<short> m_DragFrom;
};

MIREL_NAMESPACE_END
