#include "Code/GUI/WCMouseHover.h"

#include <chrono>

MIREL_NAMESPACE_BEGIN

double WCMouseHover::GetSecondsNow() const {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void WCMouseHover::SetMouseHover() {
    if (m_State == eHoverOff) {
        if (m_MeasureTime) {
            ChangeState(eHoverWillBeOn);
            Stamp();
        } else {
            ChangeState(eHoverOn);
        }
    } else if (m_State == eHoverWillBeOff) {
        ChangeState(eHoverOn);
    }
}

void WCMouseHover::ClearMouseHover() {
    if (m_State == eHoverWillBeOn || m_State == eHoverWillBeOff)
        ChangeState(eHoverOff);
    else if (m_State == eHoverOn)
        ChangeState(eHoverWillBeOff); // the leaving delay counts from when the hover showed
}

void WCMouseHover::SetKeyOnHover() {
    if (m_State == eHoverWillBeOn) {
        ChangeState(eHoverOn);
    } else if (m_State == eHoverOff || m_State == eHoverWillBeOff) {
        ChangeState(eHoverWillBeOff);
        Stamp();
    }
}

void WCMouseHover::SetMouseDownOnHover() {
    if (m_State == eHoverOff || m_State == eHoverWillBeOn)
        ChangeState(eHoverOn);
}

void WCMouseHover::SetMouseUpOnHover() {
    if (m_State == eHoverOn && m_PreviousState == eHoverOff) {
        ChangeState(eHoverWillBeOff);
        Stamp();
    }
}

bool WCMouseHover::GetHoverVisibility() {
    // Only a hover on its way in or out waits for time; the clock is read for those alone, as
    // every frame asks every control.
    const bool waiting = m_State == eHoverWillBeOn || m_State == eHoverWillBeOff;
    if (waiting && m_MeasureTime && GetSecondsNow() - m_StartTime > kHoverDelaySeconds) {
        if (m_State == eHoverWillBeOn)
            ChangeState(eHoverOn);
        else if (m_State == eHoverWillBeOff)
            ClearMouseHover();
    }
    return m_State == eHoverOn || m_State == eHoverWillBeOff;
}

bool WCMouseHover::IsHoverToBeCleaned() {
    if (m_State == eHoverOff &&
        (m_PreviousState == eHoverOn || m_PreviousState == eHoverWillBeOff)) {
        m_PreviousState = eHoverOff;
        return true;
    }
    return false;
}

MIREL_NAMESPACE_END
