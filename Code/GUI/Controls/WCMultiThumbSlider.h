#pragma once

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// Several thumbs on one track, one registration each: thumb n shows and sets the parameter of
// registration n. The thumbs travel the "ThumbMovementArea" (GUI coordinates; the control without
// one), vertically when the registrations are "MouseDrawHorizontal" (a horizontal line moved up
// and down, state 1000 at the top) and horizontally when they are "MouseDrawVertical" (1000 at the
// right); the document's relative drags leave such registrations alone, so only the thumb taken
// moves. A mouse-down takes the thumb whose centre is nearest along the travel and keeps where
// on it the click landed; a drag then puts that thumb under the mouse, less that offset, and the
// mouse-up lets it go. A thumb is the control's foreground picture or, without one, a block of
// the control's colour ("ControlColor"; white without one); "ThumbSize" ("width", "height") gives
// its size when there is no picture, 8 pixels along the travel and the area's width across
// without either. The background picture, when given, is drawn at its place under the thumbs.
// A "Class" that does not read changes nothing. [main-thread]
class WCMultiThumbSlider : public WCGUIControl {
public:
    // A thumb's length along the travel with neither a picture nor "ThumbSize".
    static constexpr short kDefaultThumbLength = 8;

    explicit WCMultiThumbSlider(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    WCGUIControl *Clone() const override;
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;
    void Move(int dx, int dy) override;

    bool IsVertical() const;
    // Thumb `index`'s rect in GUI coordinates; empty beyond the registrations.
    WURect<short> GetThumbRect(std::size_t index) const;
    // The thumb a mouse-down took; -1 between drags.
    int GetTakenThumb() const noexcept { return m_TakenThumb; }
    // The thumb whose centre lies nearest to `point` (GUI coordinates) along the travel; -1
    // without registrations. A tie goes to the later thumb, which is drawn on top.
    int NearestThumb(const WCPoint2D<short> &point) const;
    // The state whose thumb centre lies at `position` (GUI pixels along the travel), 0..1000.
    double PositionToState(int position) const;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *element, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *element) const override;
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseDragSelf(WCEventData &event, double dx, double dy,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;

private:
    WURect<short> Area() const;
    WCPoint2D<short> ThumbSize() const;
    // The first and last pixel of a thumb centre's travel.
    void Travel(int &start, int &length) const;
    int Along(const WCPoint2D<short> &point) const { return IsVertical() ? point.y : point.x; }

    WURect<short> m_ThumbMovementArea;
    bool m_HasThumbSize = false;
    WCPoint2D<short> m_ThumbSize;
    int m_TakenThumb = -1;
    int m_HoldOffset = 0;
};

MIREL_NAMESPACE_END
