#pragma once

#include <vector>

#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A draggable point on a graph: its first registration on the horizontal mouse axis places it
// across its clipping rect (0 at the left), its first one on the vertical axis up it (0 at the
// bottom); the control's rect is the point's picture, centred there and moved whenever a value
// changes, so that a click finds it and a drag over the whole clipping rect spans the whole
// scale. Registrations to "MouseDown" switch (to their next state) on the click with flag 12
// "MarkerSwitchOnClick", on a mouse-up that dragged nothing with 13 "MarkerSwitchOnMouseUp", or
// on a double click with 14 "MarkerSwitchOnDoubleClick", and never without them. "Class"
// children: "Image" (its picture, the first drawn), "Custom" (the plug-in draws it: no picture),
// "ClippingRect" (its travel, in GUI pixels; drawing stays inside), "NoHideMouse" (the cursor
// stays during a drag), "TextValueOffset" ("hOffset", "vOffset": its value window moved by that
// much) and "Cursor" ("ResID": the cursor over it). Of markers under one click only the topmost
// takes it (the document's FilterOverlappedMarkers). A read that fails keeps the marker as it
// was. Owned by its document like every control. [main-thread]
class CMarker_X : public WCGUIControl {
public:
    explicit CMarker_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}
    CMarker_X *Clone() const override;

    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;
    WURect<short> GetMouseDragRect() const override;
    bool ShouldHideCursorOnDrag() const override;

    // The point the values place it at, in GUI pixels (the centre of its rect).
    WCPoint2D<short> GetMarkerPosition() const;
    const WURect<short> &GetClippingRect() const noexcept { return m_Fields.m_ClippingRect; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    int FinishCreateSelf() override;
    void UpdatePointerSelf(std::size_t index) override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;
    void MouseOverSelf(WCEventData &event, bool inside, bool &keepGoing) override;

private:
    struct WSFields {
        bool m_Custom = false;
        WURect<short> m_ClippingRect;
        bool m_NoHideMouse = false;
        bool m_HasTextOffset = false;
        WCPoint2D<short> m_TextOffset;
        short m_CursorResID = -1;
    };
    // Moves the control's rect (and its windows) so that its centre is the marker position.
    void Place();
    // Every registration to "MouseDown" to its next state; the chain.
    BUFFER_HEADER *Switch();

    WCBaseImageVector m_Images;
    WSFields m_Fields;
    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
