// A control's mouse path: down, drag, up and wheel, and how pixels become states.
#include <algorithm>
#include <cmath>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WCGUIControl.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

// A discrete parameter moves one step per this many pixels of a drag.
constexpr double kPixelsPerDiscreteStep = 96.0;
// Faster drags than this (pixels per event) scale to the control's size; slower ones move by
// whole steps of the value, so a slow drag is exact.
constexpr double kSlowDragPixels = 2.0;
// A value drag starts beyond this many pixels from the click.
constexpr int kDragStartPixels = 3;

} // namespace

WCGUIControl::BUFFER_HEADER *WCGUIControl::Chain(BUFFER_HEADER *head, BUFFER_HEADER *next) const {
    if (m_pAlg == nullptr || next == nullptr)
        return head;
    return m_pAlg->ChainBufs(head, next);
}

void WCGUIControl::ModifiersFor(const WCParamRegistrationData &, const bool *event,
                                bool *out) const {
    for (int i = 0; i < eNumModifiers; ++i)
        out[i] = event != nullptr && event[i];
    // Fine adjustment (primary) and the axis lock (shift) are the drag's own modifiers: they are
    // taken out, so plain registrations still hear the drag, unless this control gives the
    // modifier a registration of its own (then that one alone answers to it).
    for (const int modifier : {int(eModPrimary), int(eModShift)}) {
        const bool claimed =
            std::any_of(m_Registrations.begin(), m_Registrations.end(),
                        [&](const auto &other) { return other.GetRegisterModifier(modifier); });
        out[modifier] = out[modifier] && claimed;
    }
}

bool WCGUIControl::TakesClick(const WCParamRegistrationData &data, const WCEventData &event,
                              bool *modifiers) const {
    ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
    return data.IsRegisteredToType(eRegMouseDown, modifiers) &&
           !NeedToResetParam(event.GetAllKeyModifiers(), data);
}

bool WCGUIControl::NeedToResetParam(const bool *modifiers, const WCParamRegistrationData &data) {
    const bool altAlone = modifiers != nullptr && modifiers[eModFourth] &&
                          !modifiers[eModPrimary] && !modifiers[eModShift];
    if (altAlone && data.IsRegisteredToType(eRegOptionReset, nullptr))
        return true;
    // A registration that names its own modifiers resets when exactly those are held; one
    // without any would otherwise reset on every plain click.
    bool ownModifiers = false;
    for (int i = 0; i < eNumModifiers; ++i)
        ownModifiers = ownModifiers || data.GetRegisterModifier(i);
    return ownModifiers && data.IsOptionReset(modifiers);
}

WURect<short> WCGUIControl::GetMouseDragRect() const {
    return m_MovementRect.IsEmpty() ? m_DrawableRect : m_MovementRect;
}

bool WCGUIControl::ShouldHideCursorOnDrag() const {
    // Only a drag over the whole screen hides the cursor; clicks and absolute moves keep it.
    return std::any_of(m_Registrations.begin(), m_Registrations.end(), [](const auto &data) {
        return data.IsRegisteredToType(eRegMouseVertical, nullptr) ||
               data.IsRegisteredToType(eRegMouseHorizontal, nullptr);
    });
}

bool WCGUIControl::IsControllerOnTwoAxes() const {
    bool vertical = false, horizontal = false;
    for (const auto &data : m_Registrations) {
        vertical = vertical || data.IsRegisteredToType(eRegMouseVertical, nullptr);
        horizontal = horizontal || data.IsRegisteredToType(eRegMouseHorizontal, nullptr);
    }
    return vertical && horizontal;
}

bool WCGUIControl::DoesControlSupportHighPrecision(const bool *modifiers) const {
    for (const auto &data : m_Registrations)
        if (data.IsActiveControllerParameterDiscrete() &&
            (data.IsRegisteredToType(eRegMouseVertical, nullptr) ||
             data.IsRegisteredToType(eRegMouseHorizontal, nullptr)))
            return false;
    const bool primary = modifiers != nullptr && modifiers[eModPrimary];
    if (!primary && IsControllerOnTwoAxes())
        return false;
    return std::any_of(m_Registrations.begin(), m_Registrations.end(), [](const auto &data) {
        return data.IsRegisteredToType(eRegMouseVertical, nullptr) ||
               data.IsRegisteredToType(eRegMouseHorizontal, nullptr);
    });
}

double WCGUIControl::ConvertMouseDeltaFromPixelsToState(double delta, double &accumulator,
                                                        std::size_t paramIndex,
                                                        double range) const {
    if (paramIndex >= m_Registrations.size() || !std::isfinite(delta) || delta == 0.0)
        return 0.0;
    const WCParamRegistrationData &data = m_Registrations[paramIndex];
    const double d = data.UpdateMouseDeltaStep(delta);
    if (!std::isfinite(d))
        return 0.0;
    if (data.IsActiveControllerParameterDiscrete()) {
        accumulator += d;
        const double steps = std::trunc(accumulator / kPixelsPerDiscreteStep);
        accumulator -= steps * kPixelsPerDiscreteStep;
        return data.GetActiveControllerParameterStateStep() * steps;
    }
    if (std::fabs(d) > kSlowDragPixels && range > 0.0)
        return d * 1000.0 / range;
    return d * data.GetActiveControllerParameterStateStep();
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::MouseDown(WCEventData &event, WURect<double> &limits,
                                                     bool &keepGoing) {
    if (m_InMouseDownGuard || IsDisabled() || m_Registrations.empty())
        return nullptr;
    if (ShouldIgnoreMouseRightClick(event))
        return nullptr;
    m_InMouseDownGuard = true;
    SetMouseDownOnHover();
    m_LastMousePosition = event.GetMouseLocation();
    const bool *modifiers = event.GetAllKeyModifiers();
    for (auto &data : m_Registrations)
        if (data.ShouldSendTouch(modifiers) && !data.IsRegisteredToType(eRegDisplayOnly, nullptr))
            data.Touch();

    m_DragValues = kNoDragDropValues;
    for (const auto &data : m_Registrations)
        if (data.GetRegisterFlag(eRegDrag)) {
            m_DragValues = data.GetRegisterInfo().m_DragDrop;
            m_DragValues.m_ParamID = data.GetRegisteredParam();
            m_DragValues.m_Value = data.GetValue();
            m_DragValues.m_Position = event.GetMouseLocation();
            break;
        }

    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations)
        if (NeedToResetParam(modifiers, data)) {
            SetNeedToResetParams();
            chain = Chain(chain, data.Reset(nullptr));
        }
    if (event.GetMouseClickCount() == PluginViewManager::eClickDouble &&
        GetControlFlag(eCF_ReciveTextEntery))
        keepGoing = false;
    m_ValueAtMouseDown = GetLeadRegistration()->GetValue();
    m_ValueChangedDuringDrag = false;
    chain = Chain(chain, MouseDownSelf(event, limits, keepGoing));
    m_InMouseDownGuard = false;
    return chain;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::MouseDownSelf(WCEventData &, WURect<double> &limits,
                                                         bool &) {
    for (const auto &data : m_Registrations) {
        const double value = data.GetValue();
        if (data.GetRegisterFlag(eRegMouseVertical) ||
            data.GetRegisterFlag(eRegMouseDrawHorizontal)) {
            limits.top = std::min(limits.top, value);
            limits.bottom = std::max(limits.bottom, value);
        }
        if (data.GetRegisterFlag(eRegMouseHorizontal) ||
            data.GetRegisterFlag(eRegMouseDrawVertical)) {
            limits.left = std::min(limits.left, value);
            limits.right = std::max(limits.right, value);
        }
    }
    return nullptr;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::MouseDrag(WCEventData &event, double dx, double dy,
                                                     bool &keepGoing) {
    if (IsDisabled() || m_Registrations.empty())
        return nullptr;
    dx *= m_MouseDirectionFactor;
    dy *= m_MouseDirectionFactor;
    const WCPoint2D<short> mouse = event.GetMouseLocation();
    const double width = std::max<double>(1.0, m_DrawableRect.Width());
    const double height = std::max<double>(1.0, m_DrawableRect.Height());
    const double x = std::clamp((mouse.x - m_DrawableRect.left) * 1000.0 / width, 0.0, 1000.0);
    const double y = std::clamp((m_DrawableRect.bottom - mouse.y) * 1000.0 / height, 0.0, 1000.0);

    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        // Each absolute position is set only when the other axis moved, in this order.
        if (dy != 0.0)
            chain = Chain(chain, data.OffsetParamValue(dy, eRegMouseVertical, modifiers));
        if (dx != 0.0)
            chain = Chain(chain, data.SetParamValue(x, eRegAbsMouseMoveHorizontal, modifiers));
        if (dx != 0.0)
            chain = Chain(chain, data.OffsetParamValue(dx, eRegMouseHorizontal, modifiers));
        if (dy != 0.0)
            chain = Chain(chain, data.SetParamValue(y, eRegAbsMouseMoveVertical, modifiers));
    }
    if (GetControlFlag(eCF_NoMouseUpAfterDrag) &&
        GetLeadRegistration()->GetValue() != m_ValueAtMouseDown)
        m_ValueChangedDuringDrag = true;

    if (!m_DragInProgress && m_DragValues.m_GroupNumber >= 0) {
        const WCPoint2D<short> moved = event.GetMouseDistanceFromDragStart();
        if (std::abs(moved.x) > kDragStartPixels || std::abs(moved.y) > kDragStartPixels)
            m_DragInProgress = true;
    }
    chain = Chain(chain, MouseDragSelf(event, dx, dy, keepGoing));
    return chain;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::MouseUp(WCEventData &event) {
    if (m_DoubleClickPending) {
        m_DoubleClickPending = false;
        return nullptr;
    }
    m_MouseSensitivity = 1.0;
    SetMouseUpOnHover();
    if (m_Registrations.empty() || IsDisabled())
        return nullptr;
    if (GetControlFlag(eCF_Momentary) &&
        event.GetMouseClickCount() == PluginViewManager::eClickSingle)
        return nullptr;
    if (m_DragInProgress) {
        m_DragInProgress = false;
        m_DragValues = kNoDragDropValues;
    }
    BUFFER_HEADER *chain = MouseUpSelf(event);
    m_LastMousePosition = event.GetMouseLocation();
    const bool inside = m_DrawableRect.PointInRect(event.GetMouseLocation());
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        data.FinishDragParam();
        // A click steps the value by the sensitivity, in steps of the parameter.
        if ((!m_MouseTrackInside || inside) && !m_ValueChangedDuringDrag) {
            const double step = data.GetActiveControllerParameterStateStep();
            chain =
                Chain(chain, data.OffsetParamValue(m_MouseSensitivity * (step > 0.0 ? step : 1.0),
                                                   eRegMouseUp, modifiers));
        }
        data.ResetDragParam();
    }
    m_ValueChangedDuringDrag = false;
    return chain;
}

WCGUIControl::BUFFER_HEADER *WCGUIControl::MouseWheel(WCEventData &event, double dx, double dy) {
    if (IsDisabled() || m_Registrations.empty() || !ShouldAcceptMouseWheelEvent())
        return nullptr;
    dx *= m_MouseDirectionFactor;
    dy *= m_MouseDirectionFactor;
    const bool *eventModifiers = event.GetAllKeyModifiers();
    bool noVertical = false, noHorizontal = false;
    for (auto &data : m_Registrations) {
        if (data.ShouldSendTouch(eventModifiers))
            data.Touch();
        noVertical = noVertical || data.GetRegisterFlag(eRegNoWheelVertical);
        noHorizontal = noHorizontal || data.GetRegisterFlag(eRegNoWheelHorizontal);
    }
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, eventModifiers, modifiers);
        data.FinishDragParam();
        if (!noVertical && dy != 0.0)
            chain = Chain(chain, data.DoesNewStateChangeRealWorld(dy)
                                     ? data.OffsetParamValue(dy, eRegMouseWheelVertical, modifiers)
                                     : data.OffsetParamValueToNextDifferentValue(
                                           dy, eRegMouseWheelVertical, modifiers));
        if (!noHorizontal && dx != 0.0)
            chain =
                Chain(chain, data.DoesNewStateChangeRealWorld(dx)
                                 ? data.OffsetParamValue(dx, eRegMouseWheelHorizontal, modifiers)
                                 : data.OffsetParamValueToNextDifferentValue(
                                       dx, eRegMouseWheelHorizontal, modifiers));
    }
    return Chain(chain, MouseWheelSelf(event, dx, dy));
}

MIREL_NAMESPACE_END
