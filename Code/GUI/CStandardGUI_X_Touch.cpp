// Touch, pinch, file drops and value drag and drop of the GUI document.
#include "Code/GUI/CStandardGUI_X.h"

#include "Code/GUI/WCGUIControl.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

int CStandardGUI_X::DoTouch(const Utils::WCStMemObj &, bool &handled) {
    handled = false;
    return eNotImplemented;
}

int CStandardGUI_X::DoSingleTouch(const WCTouchEvent &) { return eNotImplemented; }
int CStandardGUI_X::DoSingleTouchDown(const WCTouchEvent &) { return eNotImplemented; }
int CStandardGUI_X::DoSingleTouchMove(const WCTouchEvent &) { return eNotImplemented; }
int CStandardGUI_X::DoSingleTouchUp(const WCTouchEvent &) { return eNotImplemented; }
void CStandardGUI_X::ClearTouchEventsMap() { m_Touches.clear(); }

WCPoint2D<double> CStandardGUI_X::GetTouchDelta(const WCPoint2D<short> &from,
                                                const WCPoint2D<short> &to) {
    return WCPoint2D<double>(to.x - from.x, from.y - to.y);
}

void CStandardGUI_X::MouseDelta_ActiveControlChangeTouchResolution(const WCGUIControl &,
                                                                   WCPoint2D<double> &) const {}

int CStandardGUI_X::DoPinchGesture(WCEventData &, double, double) { return eNotImplemented; }

int CStandardGUI_X::DoFileDragOver(WCEventData &, bool &accepted) {
    accepted = false;
    return eNotImplemented;
}

int CStandardGUI_X::DoFileDrop(WCEventData &, bool &handled) {
    handled = false;
    return eNotImplemented;
}

void CStandardGUI_X::BuildDragDrop_DroppableMap() {}
int CStandardGUI_X::DragDropStart(WCEventData &) { return eNotImplemented; }
int CStandardGUI_X::DragDropMove(WCEventData &) { return eNotImplemented; }
int CStandardGUI_X::DragDropStop(WCEventData &) { return eNotImplemented; }

void CStandardGUI_X::SetDragDrop_DragValues(std::uint64_t paramId, int group, double value) {
    m_DragValues.m_ParamID = paramId;
    m_DragValues.m_GroupNumber = group;
    m_DragValues.m_Value = value;
}

void CStandardGUI_X::SetDragDrop_DropValues(std::uint64_t paramId, int group, short x, short y) {
    m_DropValues.m_ParamID = paramId;
    m_DropValues.m_GroupNumber = group;
    m_DropValues.m_Position = WCPoint2D<short>(x, y);
}

MIREL_NAMESPACE_END
