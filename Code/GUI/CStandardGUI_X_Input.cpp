// The GUI document's mouse path: hit testing, selection by click, the drag from pixels to state
// deltas, the wheel, and the buffers the controls' changes send to the process side.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <iterator>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "core/WTErrors.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

bool CStandardGUI_X::sAxisXLocked = false;
bool CStandardGUI_X::sAxisYLocked = false;

namespace {

// Wheel notches closer than this speed up.
constexpr double kWheelAccelerationMs = 200.0;
constexpr double kWheelAccelerationBase = 32.0;
constexpr double kWheelAccelerationPerMs = 0.15;
// Systems report a wheel notch as 120.
constexpr double kWheelNotch = 120.0;
// A wheel event of more notches than this is no hand on a wheel.
constexpr double kMaxWheelNotches = 1000.0;
// Fine adjustment divides movements by four.
constexpr double kHighPrecisionFactor = 0.25;

std::int64_t ReadTimeMicroseconds() {
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool AnyButtonPressed(const PVM::WCEventData &event) {
    return event.GetMouseButtonPressed(PVM::eMouseButtonLeft) ||
           event.GetMouseButtonPressed(PVM::eMouseButtonRight) ||
           event.GetMouseButtonPressed(PVM::eMouseButtonMiddle);
}

// The mouse points of an event, kept to be put back after the handler saw them in GUI units.
struct WSEventPoints {
    explicit WSEventPoints(PVM::WCEventData &event)
        : m_Event(event), m_Location(event.GetMouseLocation()), m_Old(event.GetMouseOldLocation()),
          m_Down(event.GetMouseDownLocation()), m_Release(event.GetCursorReleaseLocation()),
          m_Factor(event.GetScalingFactor()) {}
    ~WSEventPoints() {
        m_Event.SetMouseLocation(m_Location);
        m_Event.SetMouseOldLocation(m_Old);
        m_Event.SetMouseDownLocation(m_Down);
        m_Event.SetCursorReleaseLocation(m_Release);
        m_Event.SetScalingFactor(m_Factor);
    }
    PVM::WCEventData &m_Event;
    WCPoint2D<short> m_Location, m_Old, m_Down, m_Release;
    double m_Factor;
};

} // namespace

// ---- from the view ---------------------------------------------------------------------------

bool CStandardGUI_X::ViewEventCallback(void *reference, int eventCode, WCEventData *event, void *) {
    auto *gui = static_cast<CStandardGUI_X *>(reference);
    if (gui == nullptr || event == nullptr || !gui->IsAlive() || !gui->IsFinished())
        return false;
    // The view speaks in its pixels; the document in GUI units, which a scaled GUI divides.
    WSEventPoints keep(*event);
    if (gui->m_ScalingFactor != 1.0 && event->ScaleEventData(gui->m_ScalingFactor, true) != eNoErr)
        return false;
    bool handled = false;
    switch (eventCode) {
    case PVM::eEventMouseDown:
    case PVM::eEventDoubleClick: return gui->DoMouseDown(*event) == eNoErr;
    case PVM::eEventMouseMoved: return gui->DoMouseMove(*event) == eNoErr;
    case PVM::eEventMouseUp: return gui->DoMouseUp(*event) == eNoErr;
    case PVM::eEventMouseWheel: return gui->DoMouseWheel(*event) == eNoErr;
    case PVM::eEventKeyDown: gui->DoKey(*event, handled); return handled;
    case PVM::eEventFileDragOver: gui->DoFileDragOver(*event, handled); return handled;
    case PVM::eEventFileDrop: gui->DoFileDrop(*event, handled); return handled;
    case PVM::eEventTouch: {
        // A finger on the glass is down the first time its id is seen, then moving.
        WCTouchEvent touch;
        touch.m_ID = event->GetTouchEventID();
        touch.m_Location = event->GetMouseLocation();
        touch.m_Phase = !event->GetMouseButtonPressed(PVM::eMouseButtonLeft)
                            ? WCTouchEvent::eTouchUp
                        : gui->m_Touches.contains(touch.m_ID) ? WCTouchEvent::eTouchMove
                                                              : WCTouchEvent::eTouchDown;
        std::copy_n(event->GetAllKeyModifiers(), 4, touch.m_Modifiers);
        return gui->DoSingleTouch(touch) == eNoErr;
    }
    default: return false;
    }
}

void CStandardGUI_X::ResetPluginView() {
    EndGesture();
    m_pPluginView = nullptr;
    m_TextBoxOpen = false;
}

void CStandardGUI_X::EndGesture() {
    // A drag cut short by the window going must not leave the user without a cursor or the
    // mouse captured by a view that is no more.
    if (m_CursorHidden) {
        Utils::ShowCursor();
        m_CursorHidden = false;
    }
    if (m_pPluginView != nullptr && PVM::PVMGetCapture() == m_pPluginView)
        PVM::PVMReleaseCapture();
    m_InMouseDown = m_DragSelect = m_SelectRectDragged = m_TextEntryPending = false;
    m_SelectionRect.Reset();
    m_DragValues = kNoDragDropValues;
    ClearTouchEventsMap();
}

// ---- buffers ---------------------------------------------------------------------------------

CStandardGUI_X::BUFFER_HEADER *CStandardGUI_X::ChainBuffers(BUFFER_HEADER *head,
                                                            BUFFER_HEADER *next) {
    if (m_pAlg == nullptr || next == nullptr)
        return head;
    return m_pAlg->ChainBufs(head, next);
}

int CStandardGUI_X::ExecuteAndDisposeBuffer(BUFFER_HEADER *&chain) {
    if (chain == nullptr)
        return eNoErr;
    if (m_pAlg == nullptr) {
        chain = nullptr;
        return eMemNullPointer;
    }
    return m_pAlg->SendAndFreeBuffers(chain, eExecSendBuffers, true);
}

// ---- hit test and selection ------------------------------------------------------------------

void CStandardGUI_X::CreateClickedList(std::vector<WCGUIControl *> &list,
                                       const WCPoint2D<short> &point) const {
    list.clear();
    for (WCGUIControl *control : m_Controls)
        if (control->IsInside(point))
            list.push_back(control);
}

void CStandardGUI_X::FilterHiddenClickedControls(std::vector<WCGUIControl *> &list) const {
    std::erase_if(list, [](const WCGUIControl *control) { return control->IsHidden(true); });
}

void CStandardGUI_X::FilterOverlappedMarkers(std::vector<WCGUIControl *> &list) const {
    // Among markers under one point only the one drawn last, on top, takes the click.
    auto isMarker = [](const WCGUIControl *control) {
        return std::strcmp(control->GetClassType().c_str(), "Marker") == 0;
    };
    const auto top = std::find_if(list.rbegin(), list.rend(), isMarker);
    if (top == list.rend())
        return;
    const WCGUIControl *keep = *top;
    std::erase_if(
        list, [&](const WCGUIControl *control) { return control != keep && isMarker(control); });
}

void CStandardGUI_X::GetFilteredClickedList(std::vector<WCGUIControl *> &list, bool build,
                                            const WCPoint2D<short> &point, WCEventData &event) {
    if (build)
        CreateClickedList(list, point);
    FilterHiddenClickedControls(list);
    FilterOverlappedMarkers(list);
    if (event.IsNoSelect())
        return;
    // The selection walks the clicked controls from the top one down.
    std::vector<CSelectable *> clicked(list.rbegin(), list.rend());
    AdjustSelectionToClick(clicked, event.GetAllKeyModifiers());
    PrepareCurrSelectedList();
}

void CStandardGUI_X::PrepareCurrSelectedList() {
    m_SelectedList.clear();
    m_pActiveControl = nullptr;
    int highest = m_Min;
    for (WCGUIControl *control : m_Controls) {
        if (control->GetSelection() <= m_Min)
            continue;
        m_SelectedList.push_back(control);
        // Ties go to the control drawn last, the one on top.
        if (control->GetSelection() >= highest) {
            highest = control->GetSelection();
            m_pActiveControl = control;
        }
    }
}

bool CStandardGUI_X::IsLinkedToSelection(const WCGUIControl *) const {
    // Link groups decide which parameters move together; until they tie controls together,
    // every selected control moves.
    return true;
}

std::vector<WCGUIControl *>
CStandardGUI_X::FilterNotLinkedFromSelected(const std::vector<WCGUIControl *> &list) const {
    std::vector<WCGUIControl *> linked;
    std::copy_if(list.begin(), list.end(), std::back_inserter(linked),
                 [this](const WCGUIControl *control) { return IsLinkedToSelection(control); });
    return linked;
}

bool CStandardGUI_X::GetControlsDefaultHideMouse() const {
    return std::any_of(
        m_SelectedList.begin(), m_SelectedList.end(),
        [](const WCGUIControl *control) { return control->ShouldHideCursorOnDrag(); });
}

// ---- mouse down ------------------------------------------------------------------------------

int CStandardGUI_X::DoMouseDown(WCEventData &event) {
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    const WCPoint2D<short> point = event.GetMouseLocation();
    // A click outside the view is somebody else's.
    if (!m_DrawableRect.IsEmpty() && !m_DrawableRect.PointInRect(point))
        return eNoErr;
    // A click while the value box is open only closes it.
    if (m_TextBoxOpen) {
        PVM::QuitTextBox();
        m_TextBoxOpen = false;
        return eNoErr;
    }
    if (!event.IsNoCapture() && m_pPluginView != nullptr)
        PVM::PVMSetCapture(m_pPluginView);
    m_InMouseDown = true;
    m_pActiveControl = nullptr;
    m_AccumulatorH = m_AccumulatorV = 0.0;
    m_LeadIndexH = m_LeadIndexV = 0;
    m_MouseLocation = m_PreviousMouseLocation = m_MouseDownLocation = point;
    m_SelectRectDragged = false;

    std::vector<WCGUIControl *> clicked;
    GetFilteredClickedList(clicked, true, point, event);
    int err = eNoErr;
    if (clicked.empty()) {
        if (!ModifyToolBarControlsOnMouseDown(event) && !GetGUIFlag(eNoSelectRect)) {
            m_DragSelect = true;
            m_SelectionRect = WURect<short>(point.y, point.x, point.y, point.x);
        }
    } else if (event.GetKeyModifier(PVM::eModifierShift)) {
        // The selection step above was all a shift-click does, but to controls that take it.
        BUFFER_HEADER *chain = nullptr;
        bool keepGoing = true;
        LimitsRect_Reset();
        for (WCGUIControl *control : clicked)
            if (control->ControlHandlesShiftMod())
                chain = ChainBuffers(chain, control->MouseDown(event, m_LimitsRect, keepGoing));
        err = ExecuteAndDisposeBuffer(chain);
    } else {
        MouseDelta_GetActiveControlParamDeltas();
        const bool hide = !m_CursorHidden && event.GetMouseButtonPressed(PVM::eMouseButtonLeft) &&
                          GetControlsDefaultHideMouse();
        bool keepGoing = true;
        err = ModifyControlsOnMouseDown(event, keepGoing);
        if (hide && !m_CursorHidden && !m_TextEntryPending && !event.IsNoCapture()) {
            Utils::HideCursor();
            m_CursorHidden = true;
        }
    }
    SetNeedToRedrawGUI();
    return err;
}

int CStandardGUI_X::ModifyControlsOnMouseDown(WCEventData &event, bool &keepGoing) {
    LimitsRect_Reset();
    ClearAxisLocks();
    if (event.GetMouseClickCount() == PVM::eClickDouble && m_pActiveControl != nullptr &&
        m_pActiveControl->CanEnterText() && m_pActiveControl->GetNumRegistrations() > 0) {
        m_TextEntryPending = true;
        return eNoErr;
    }
    const bool right = event.GetMouseButtonPressed(PVM::eMouseButtonRight);
    BUFFER_HEADER *chain = nullptr;
    int err = eNoErr;
    for (WCGUIControl *control : FilterNotLinkedFromSelected(m_SelectedList)) {
        bool popup = false;
        for (std::size_t i = 0; i < control->GetNumRegistrations() && !popup; ++i) {
            const WCParamRegistrationData &data = control->GetRegistration(i);
            popup = (!right && data.GetRegisterFlag(eRegPopUp)) ||
                    (right && event.GetMouseClickCount() == PVM::eClickSingle &&
                     data.GetRegisterFlag(eRegPopUpRightButton));
        }
        if (popup) {
            if (const int code = control->DoControlPopupMenuSelf(event); err == eNoErr)
                err = code;
        } else {
            chain = ChainBuffers(chain, control->MouseDown(event, m_LimitsRect, keepGoing));
        }
        if (event.IsExclusive() || !keepGoing)
            break;
    }
    const int sent = ExecuteAndDisposeBuffer(chain);
    return err != eNoErr ? err : sent;
}

bool CStandardGUI_X::ModifyToolBarControlsOnMouseDown(WCEventData &event) {
    m_pActiveToolbarButton = InsideWhichToolbarControl(event.GetMouseLocation());
    return m_pActiveToolbarButton != nullptr;
}

int CStandardGUI_X::ModifyToolBarControlsOnMouseUp(WCEventData &) {
    // The buttons' own actions (presets, undo) come with their classes; until then a press is
    // drawn and answered as not done.
    m_pActiveToolbarButton = nullptr;
    RedrawToolbar();
    return eNotImplemented;
}

// ---- drag ------------------------------------------------------------------------------------

void CStandardGUI_X::LimitsRect_Reset() {
    m_LimitsRect.top = m_LimitsRect.left = 1000.0;
    m_LimitsRect.bottom = m_LimitsRect.right = 0.0;
}

void CStandardGUI_X::MouseDelta_GetActiveControlParamDeltas() {
    m_LeadIndexH = m_LeadIndexV = 0;
    const WCGUIControl *active = m_pActiveControl;
    if (active == nullptr || active->GetNumRegistrations() == 0)
        return;
    m_LeadIndexH = m_LeadIndexV =
        static_cast<std::size_t>(active->GetLeadRegistration() - &active->GetRegistration(0));
    bool foundH = false, foundV = false;
    for (std::size_t i = 0; i < active->GetNumRegistrations(); ++i) {
        const WCParamRegistrationData &data = active->GetRegistration(i);
        if (!foundH && data.GetRegisterFlag(eRegMouseHorizontal)) {
            m_LeadIndexH = i;
            foundH = true;
        }
        if (!foundV && data.GetRegisterFlag(eRegMouseVertical)) {
            m_LeadIndexV = i;
            foundV = true;
        }
    }
}

WCPoint2D<double> CStandardGUI_X::MouseDelta_Calculate(const WCEventData &event) {
    const WCPoint2D<short> location = event.GetMouseLocation();
    // Screen y grows downward, states grow upward.
    const WCPoint2D<double> delta(static_cast<double>(location.x) - m_MouseLocation.x,
                                  static_cast<double>(m_MouseLocation.y) - location.y);
    m_PreviousMouseLocation = m_MouseLocation;
    m_MouseLocation = location;
    return delta;
}

void CStandardGUI_X::MouseDelta_RestrictToAxis(WCPoint2D<double> &delta, const bool *modifiers) {
    if (modifiers == nullptr || !modifiers[eModShift]) {
        ClearAxisLocks();
        return;
    }
    const bool twoAxes =
        std::any_of(m_SelectedList.begin(), m_SelectedList.end(),
                    [](const WCGUIControl *control) { return control->IsControllerOnTwoAxes(); });
    if (!twoAxes)
        return;
    if (!sAxisXLocked && !sAxisYLocked) {
        if (std::fabs(delta.x) > std::fabs(delta.y))
            sAxisXLocked = true;
        else if (std::fabs(delta.y) > std::fabs(delta.x))
            sAxisYLocked = true;
    }
    if (sAxisXLocked)
        delta.y = 0.0;
    if (sAxisYLocked)
        delta.x = 0.0;
}

void CStandardGUI_X::MouseDelta_ActiveControlChangeResolution(WCPoint2D<double> &delta) {
    if (m_pActiveControl == nullptr)
        return;
    const WURect<short> range = m_pActiveControl->GetMouseDragRect();
    delta.y = m_pActiveControl->ConvertMouseDeltaFromPixelsToState(delta.y, m_AccumulatorV,
                                                                   m_LeadIndexV, range.Height());
    delta.x = m_pActiveControl->ConvertMouseDeltaFromPixelsToState(delta.x, m_AccumulatorH,
                                                                   m_LeadIndexH, range.Width());
}

void CStandardGUI_X::MouseDelta_HighPrecision(WCPoint2D<double> &delta, int modifier,
                                              const bool *modifiers) {
    if (modifiers == nullptr || modifier < 0 || modifier >= eNumModifiers || !modifiers[modifier])
        return;
    // Every moving control must take fine steps; walked in place, as a drag allocates nothing.
    bool any = false;
    for (const WCGUIControl *control : m_SelectedList) {
        if (!IsLinkedToSelection(control))
            continue;
        if (!control->DoesControlSupportHighPrecision(modifiers))
            return;
        any = true;
    }
    if (!any)
        return;
    delta.x *= kHighPrecisionFactor;
    delta.y *= kHighPrecisionFactor;
}

int CStandardGUI_X::DoMouseMove(WCEventData &event) {
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    if (!m_InMouseDown)
        return ModifyControlsOnMouseHover(event);
    if (m_DragSelect) {
        UpdateSelectRect(event);
        return eNoErr;
    }
    if (m_pActiveToolbarButton != nullptr || m_TextEntryPending || !AnyButtonPressed(event))
        return eNoErr;
    return ModifyControlsOnMouseDrag(event);
}

int CStandardGUI_X::ModifyControlsOnMouseDrag(WCEventData &event) {
    const WCPoint2D<short> before = m_MouseLocation;
    WCPoint2D<double> delta = MouseDelta_Calculate(event);
    if (delta.x == 0.0 && delta.y == 0.0)
        return eNoErr;
    event.SetMouseDelta(event.GetMouseLocation() - before);
    const bool *modifiers = event.GetAllKeyModifiers();
    MouseDelta_RestrictToAxis(delta, modifiers);
    MouseDelta_ActiveControlChangeResolution(delta);
    MouseDelta_HighPrecision(delta, eModPrimary, modifiers);
    if (delta.x == 0.0 && delta.y == 0.0)
        return eNoErr;

    BUFFER_HEADER *chain = nullptr;
    bool keepGoing = true;
    for (WCGUIControl *control : m_SelectedList) {
        chain = ChainBuffers(chain, control->MouseDrag(event, delta.x, delta.y, keepGoing));
        if (control->IsDragInProgress()) {
            if (m_DragValues.m_GroupNumber < 0) {
                m_DragValues = control->GetDragDropValues();
                DragDropStart(event);
            }
            DragDropMove(event);
        }
        if (!keepGoing)
            break;
    }
    return ExecuteAndDisposeBuffer(chain);
}

// ---- mouse up --------------------------------------------------------------------------------

int CStandardGUI_X::DoMouseUp(WCEventData &event) {
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    int err = eNoErr;
    const bool doubleClickUp = event.GetMouseClickCount() == PVM::eClickDouble;
    if (m_InMouseDown && !(doubleClickUp && !m_TextEntryPending)) {
        if (m_DragSelect) {
            m_DragSelect = false;
            m_SelectionRect.Reset();
            SetNeedToRedrawGUI();
        }
        if (!m_SelectRectDragged) {
            err = m_pActiveToolbarButton != nullptr ? ModifyToolBarControlsOnMouseUp(event)
                                                    : ModifyControlsOnMouseUp(event);
        }
        if (m_DragValues.m_GroupNumber >= 0) {
            DragDropStop(event);
            m_DragValues = kNoDragDropValues;
        }
    }
    if (m_CursorHidden) {
        // The cursor comes back where the control wants it, not where the hidden drag ended.
        const WCPoint2D<short> local = m_pActiveControl != nullptr
                                           ? m_pActiveControl->GetCursorPosOnRelease()
                                           : m_MouseDownLocation;
        WCPoint2D<int> global(static_cast<int>(local.x * m_ScalingFactor),
                              static_cast<int>(local.y * m_ScalingFactor));
        if (m_pPluginView != nullptr)
            PVM::PVMLocalToGlobal(m_pPluginView, global, global);
        Utils::MoveCursor(global);
        Utils::ShowCursor();
        m_CursorHidden = false;
    }
    PrepareCurrSelectedList();
    m_InMouseDown = m_SelectRectDragged = false;
    if (!event.IsNoCapture())
        PVM::PVMReleaseCapture();
    // What the release changed marked its own controls: the next frame holds them alone.
    return err;
}

int CStandardGUI_X::ModifyControlsOnMouseUp(WCEventData &event) {
    if (m_TextEntryPending) {
        m_TextEntryPending = false;
        return TrackTextInput(event, true);
    }
    if (m_pActiveControl != nullptr && !m_CursorHidden &&
        !m_pActiveControl->IsInside(event.GetMouseLocation()))
        return eNoErr;
    BUFFER_HEADER *chain = nullptr;
    for (WCGUIControl *control : m_SelectedList) {
        chain = ChainBuffers(chain, control->MouseUp(event));
        control->Release();
    }
    return ExecuteAndDisposeBuffer(chain);
}

// ---- wheel -----------------------------------------------------------------------------------

void CStandardGUI_X::AccelerateMouseWheel(WCPoint2D<double> &delta, std::int64_t now) {
    const double elapsedMs = static_cast<double>(now - m_LastWheelTime) / 1000.0;
    if (m_LastWheelTime != 0 && elapsedMs >= 0.0 && elapsedMs < kWheelAccelerationMs) {
        // Both components take the sign of the first negative one, so a diagonal flick keeps
        // one direction.
        const double sign = (delta.x < 0.0 || delta.y < 0.0) ? -1.0 : 1.0;
        const double magnitude = kWheelAccelerationBase - kWheelAccelerationPerMs * elapsedMs;
        if (delta.x != 0.0)
            delta.x = sign * magnitude;
        if (delta.y != 0.0)
            delta.y = sign * magnitude;
    }
    m_LastWheelTime = now;
}

int CStandardGUI_X::DoMouseWheel(WCEventData &event) {
    if (!m_Alive || !m_Finished)
        return eWrongObjectState;
    if (!m_DrawableRect.IsEmpty() && !m_DrawableRect.PointInRect(event.GetMouseLocation()))
        return eNoErr;
    return ModifyControlsOnMouseWheel(event);
}

int CStandardGUI_X::ModifyControlsOnMouseWheel(WCEventData &event) {
    const double notches = event.GetMouseWheelAmount() / kWheelNotch;
    if (notches == 0.0 || std::fabs(notches) > kMaxWheelNotches)
        return eNoErr;
    // The wheel moves the control on top under the mouse, selected or not.
    std::vector<WCGUIControl *> under;
    CreateClickedList(under, event.GetMouseLocation());
    FilterHiddenClickedControls(under);
    std::erase_if(under, [](const WCGUIControl *control) {
        return control->IsDisabled() || !control->ShouldAcceptMouseWheelEvent();
    });
    if (under.empty())
        return eNoErr;
    WCPoint2D<double> delta(0.0, 0.0);
    if (event.GetMouseWheelAxis() == PVM::eMouseWheelHorizontal)
        delta.x = notches;
    else
        delta.y = notches;
    AccelerateMouseWheel(delta, m_InputClock != nullptr ? m_InputClock() : ReadTimeMicroseconds());

    // One notch is one step of the value; acceleration multiplies the steps.
    WCGUIControl *top = under.back();
    const WCParamRegistrationData *lead = top->GetLeadRegistration();
    const double step = lead != nullptr ? lead->GetActiveControllerParameterStateStep() : 0.0;
    BUFFER_HEADER *chain = top->MouseWheel(event, delta.x * step, delta.y * step);
    return ExecuteAndDisposeBuffer(chain);
}

MIREL_NAMESPACE_END
