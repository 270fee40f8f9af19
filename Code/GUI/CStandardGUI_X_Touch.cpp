// Touch, pinch, file drops and value drag and drop of the GUI document.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

namespace {

// More fingers than this in one batch is no hand on a screen.
constexpr std::uint64_t kMaxTouchesPerBatch = 32;
// A touch moves a parameter by at least this many states per pixel, whatever its count.
constexpr double kMinTouchStatesPerPixel = 0.02;

// The mouse record a control's handlers read for one finger.
PVM::WCEventData TouchEventData(const WCTouchEvent &touch, const WCPoint2D<short> &down,
                                const WCPoint2D<short> &last) {
    PVM::WCEventData event;
    bool modifiers[PVM::eModifierCount];
    std::copy(std::begin(touch.m_Modifiers), std::end(touch.m_Modifiers), modifiers);
    event.SetAllKeyModifiers(modifiers);
    event.SetMouseLocation(touch.m_Location);
    event.SetMouseOldLocation(last);
    event.SetMouseDownLocation(down);
    event.SetMouseClickCount(PVM::eClickSingle);
    event.SetMouseButtonPressed(PVM::eMouseButtonLeft, touch.m_Phase != WCTouchEvent::eTouchUp);
    event.SetTouchEventID(touch.m_ID);
    return event;
}

} // namespace

// ---- touch -----------------------------------------------------------------------------------

int CStandardGUI_X::DoTouch(const Utils::WCStMemObj &touchBuffer, bool &handled) {
    handled = false;
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    const std::uint64_t size = touchBuffer.GetSize();
    if (size % sizeof(WCTouchEvent) != 0)
        return eValueWrongSize;
    const std::uint64_t count = size / sizeof(WCTouchEvent);
    if (count > kMaxTouchesPerBatch)
        return eOutOfRangeNumber;
    // The whole batch is read and checked before any finger acts, so a broken one changes
    // nothing.
    WCTouchEvent touches[kMaxTouchesPerBatch];
    for (std::uint64_t i = 0; i < count; ++i) {
        std::memcpy(&touches[i], static_cast<const char *>(touchBuffer.GetPtr()) +
                                     i * sizeof(WCTouchEvent),
                    sizeof(WCTouchEvent));
        if (touches[i].m_Phase < WCTouchEvent::eTouchDown ||
            touches[i].m_Phase > WCTouchEvent::eTouchUp)
            return eOutOfRangeNumber;
    }
    int first = eNoErr;
    for (std::uint64_t i = 0; i < count; ++i) {
        const WCTouchEvent &touch = touches[i];
        const bool known = m_Touches.count(touch.m_ID) != 0;
        const int err = DoSingleTouch(touch);
        if (first == eNoErr)
            first = err;
        handled = handled || (touch.m_Phase == WCTouchEvent::eTouchDown
                                  ? m_Touches.count(touch.m_ID) != 0
                                  : known);
    }
    return first;
}

int CStandardGUI_X::DoSingleTouch(const WCTouchEvent &touch) {
    switch (touch.m_Phase) {
    case WCTouchEvent::eTouchDown: return DoSingleTouchDown(touch);
    case WCTouchEvent::eTouchMove: return DoSingleTouchMove(touch);
    case WCTouchEvent::eTouchUp: return DoSingleTouchUp(touch);
    default: return eOutOfRangeNumber;
    }
}

int CStandardGUI_X::DoSingleTouchDown(const WCTouchEvent &touch) {
    // A finger whose lift was lost ends before it comes down again.
    if (const auto old = m_Touches.find(touch.m_ID); old != m_Touches.end()) {
        WCTouchEvent up = old->second.m_Event;
        up.m_Phase = WCTouchEvent::eTouchUp;
        up.m_Location = old->second.m_Last;
        DoSingleTouchUp(up);
    }
    std::vector<WCGUIControl *> clicked;
    CreateClickedList(clicked, touch.m_Location);
    FilterHiddenClickedControls(clicked);
    FilterOverlappedMarkers(clicked);
    // Each finger holds the control on top under it, without touching the selection, so two
    // fingers move two controls.
    const auto top = std::find_if(clicked.rbegin(), clicked.rend(), [](const WCGUIControl *c) {
        return !c->IsDisabled() && c->GetNumRegistrations() > 0;
    });
    if (top == clicked.rend())
        return eNoErr;
    WCGUIControl *control = *top;
    WSTouchRecord &record = m_Touches[touch.m_ID];
    record.m_Event = touch;
    record.m_Last = touch.m_Location;
    record.m_Controls.assign(1, control);
    WCEventData event = TouchEventData(touch, touch.m_Location, touch.m_Location);
    WURect<double> limits(1000.0, 1000.0, 0.0, 0.0);
    bool keepGoing = true;
    BUFFER_HEADER *chain = control->MouseDown(event, limits, keepGoing);
    return ExecuteAndDisposeBuffer(chain);
}

int CStandardGUI_X::DoSingleTouchMove(const WCTouchEvent &touch) {
    const auto found = m_Touches.find(touch.m_ID);
    if (found == m_Touches.end())
        return eNoErr;
    WSTouchRecord &record = found->second;
    const WCPoint2D<double> delta = GetTouchDelta(record.m_Last, touch.m_Location);
    WCEventData event = TouchEventData(touch, record.m_Event.m_Location, record.m_Last);
    record.m_Last = touch.m_Location;
    if (delta.x == 0.0 && delta.y == 0.0)
        return eNoErr;
    BUFFER_HEADER *chain = nullptr;
    bool keepGoing = true;
    for (WCGUIControl *control : record.m_Controls) {
        WCPoint2D<double> states = delta;
        MouseDelta_ActiveControlChangeTouchResolution(*control, states);
        chain = ChainBuffers(chain, control->MouseDrag(event, states.x, states.y, keepGoing));
    }
    return ExecuteAndDisposeBuffer(chain);
}

int CStandardGUI_X::DoSingleTouchUp(const WCTouchEvent &touch) {
    const auto found = m_Touches.find(touch.m_ID);
    if (found == m_Touches.end())
        return eNoErr;
    WCEventData event = TouchEventData(touch, found->second.m_Event.m_Location, found->second.m_Last);
    const std::vector<WCGUIControl *> controls = std::move(found->second.m_Controls);
    m_Touches.erase(found);
    BUFFER_HEADER *chain = nullptr;
    for (WCGUIControl *control : controls) {
        chain = ChainBuffers(chain, control->MouseUp(event));
        control->Release();
    }
    return ExecuteAndDisposeBuffer(chain);
}

void CStandardGUI_X::ClearTouchEventsMap() {
    // Every finger lets go at once, leaving the values where they are.
    for (auto &[id, record] : m_Touches)
        for (WCGUIControl *control : record.m_Controls)
            control->Release();
    m_Touches.clear();
}

WCPoint2D<double> CStandardGUI_X::GetTouchDelta(const WCPoint2D<short> &from,
                                                const WCPoint2D<short> &to) {
    return WCPoint2D<double>(to.x - from.x, from.y - to.y);
}

void CStandardGUI_X::MouseDelta_ActiveControlChangeTouchResolution(const WCGUIControl &control,
                                                                   WCPoint2D<double> &delta) const {
    // A finger is coarser than a mouse: a parameter of many states moves faster under it.
    auto factor = [](const WCParamRegistrationData &data) {
        return std::max(data.GetNumStates() / 1001.0, kMinTouchStatesPerPixel);
    };
    for (std::size_t i = 0; i < control.GetNumRegistrations(); ++i)
        if (control.GetRegistration(i).IsRegisteredToType(eRegMouseVertical, nullptr)) {
            delta.y *= factor(control.GetRegistration(i));
            break;
        }
    for (std::size_t i = 0; i < control.GetNumRegistrations(); ++i)
        if (control.GetRegistration(i).IsRegisteredToType(eRegMouseHorizontal, nullptr)) {
            delta.x *= factor(control.GetRegistration(i));
            break;
        }
}

int CStandardGUI_X::DoPinchGesture(WCEventData &, double dx, double dy) {
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    if (!std::isfinite(dx) || !std::isfinite(dy))
        return eOutOfRangeNumber;
    PrepareCurrSelectedList();
    BUFFER_HEADER *chain = nullptr;
    for (WCGUIControl *control : m_SelectedList)
        chain = ChainBuffers(chain, control->TouchPinchGesture(dx, dy));
    return ExecuteAndDisposeBuffer(chain);
}

// ---- file drops ------------------------------------------------------------------------------

int CStandardGUI_X::DoFileDragOver(WCEventData &event, bool &accepted) {
    accepted = false;
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    for (WCGUIControl *control : m_Controls)
        if (!control->IsHidden(true) && control->FileDragOver(event)) {
            accepted = true;
            break;
        }
    return eNoErr;
}

int CStandardGUI_X::DoFileDrop(WCEventData &event, bool &handled) {
    handled = false;
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    // The control on top that takes files gets them.
    const auto taker = std::find_if(m_Controls.rbegin(), m_Controls.rend(), [&](WCGUIControl *c) {
        return !c->IsHidden(true) && c->FileDragOver(event);
    });
    if (taker == m_Controls.rend())
        return eNoErr;
    BUFFER_HEADER *chain = (*taker)->FileDrop(event);
    if (chain == nullptr) {
        // No parameter can take a file yet: the drop is refused, not lost silently.
        return eNotImplemented;
    }
    handled = true;
    return ExecuteAndDisposeBuffer(chain);
}

// ---- value drag and drop ---------------------------------------------------------------------

void CStandardGUI_X::BuildDragDrop_DroppableMap() {
    m_Droppable.clear();
    for (WCGUIControl *control : m_Controls)
        for (std::size_t i = 0; i < control->GetNumRegistrations(); ++i) {
            const WCParamRegistrationData &data = control->GetRegistration(i);
            const int group = data.GetRegisterInfo().m_DragDrop.m_GroupNumber;
            if (!data.GetRegisterFlag(eRegDrop) || group < 0)
                continue;
            std::vector<WCGUIControl *> &members = m_Droppable[group];
            if (std::find(members.begin(), members.end(), control) == members.end())
                members.push_back(control);
        }
}

int CStandardGUI_X::DragDropStart(WCEventData &) {
    const auto group = m_Droppable.find(m_DragValues.m_GroupNumber);
    if (m_DragValues.m_GroupNumber < 0 || group == m_Droppable.end())
        return eNoErr;
    for (WCGUIControl *control : group->second)
        control->DragDropStart(m_DragValues);
    return eNoErr;
}

int CStandardGUI_X::DragDropMove(WCEventData &event) {
    const auto group = m_Droppable.find(m_DragValues.m_GroupNumber);
    if (m_DragValues.m_GroupNumber < 0 || group == m_Droppable.end())
        return eNoErr;
    const WCPoint2D<short> point = event.GetMouseLocation();
    m_DropValues = kNoDragDropValues;
    for (WCGUIControl *control : group->second)
        if (!control->IsHidden(true) && control->DragDropMove(m_DragValues, point))
            SetDragDrop_DropValues(control->GetLeadParamID(), m_DragValues.m_GroupNumber, point.x,
                                   point.y);
    return eNoErr;
}

int CStandardGUI_X::DragDropStop(WCEventData &event) {
    const auto group = m_Droppable.find(m_DragValues.m_GroupNumber);
    BUFFER_HEADER *chain = nullptr;
    if (m_DragValues.m_GroupNumber >= 0 && group != m_Droppable.end()) {
        const WCPoint2D<short> point = event.GetMouseLocation();
        // The control on top under the point takes the value.
        const auto target =
            std::find_if(group->second.rbegin(), group->second.rend(), [&](WCGUIControl *c) {
                return !c->IsHidden(true) && c->DragDropMove(m_DragValues, point);
            });
        if (target != group->second.rend())
            chain = (*target)->DragDropStop(m_DragValues, point);
    }
    m_DragValues = kNoDragDropValues;
    m_DropValues = kNoDragDropValues;
    return ExecuteAndDisposeBuffer(chain);
}

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
