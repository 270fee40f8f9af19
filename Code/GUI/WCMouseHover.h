#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The hover of the mouse over a control, with a delay: a hover shows only after the mouse stayed
// 1.0 s (when measuring time), and leaves the same way, so a pointer passing over a control does
// not flash its hover picture. Every change keeps the old state as the previous one, which lets
// the document repaint what a vanished hover leaves. [main-thread]
class WCMouseHover {
public:
    enum EHoverState : int {
        eHoverOff = 0,
        eHoverWillBeOn = 1,
        eHoverOn = 2,
        eHoverWillBeOff = 3,
    };
    static constexpr double kHoverDelaySeconds = 1.0;

    explicit WCMouseHover(bool noAlwaysDraw = false) : m_NoAlwaysDraw(noAlwaysDraw) {}
    virtual ~WCMouseHover() = default;

    virtual void SetMouseHover();
    virtual void ClearMouseHover();
    virtual void SetKeyOnHover();
    virtual void SetMouseDownOnHover();
    virtual void SetMouseUpOnHover();
    // Moves pending states on once the delay passed; true while on or leaving.
    bool GetHoverVisibility();
    // True once after the hover went off from on or leaving: the place needs a repaint.
    bool IsHoverToBeCleaned();
    // Ends any hover at once, as a control does at its release.
    void EndHover() { ChangeState(eHoverOff); }

    int GetHoverState() const noexcept { return m_State; }
    int GetPreviousHoverState() const noexcept { return m_PreviousState; }
    void SetMeasureTime(bool measure) noexcept { m_MeasureTime = measure; }
    bool IsNoAlwaysDraw() const noexcept { return m_NoAlwaysDraw; }

protected:
    // The clock in seconds; a hook so tests can step time.
    virtual double GetSecondsNow() const;
    // The state changed: the hover will need painting.
    virtual void HoverStateChanged() {}

private:
    void ChangeState(int state) {
        m_PreviousState = m_State;
        m_State = state;
        HoverStateChanged();
    }
    void Stamp() { m_StartTime = GetSecondsNow(); }

    int m_State = eHoverOff;
    int m_PreviousState = eHoverOff;
    double m_StartTime = 0.0;
    bool m_MeasureTime = true;
    bool m_NoAlwaysDraw = false;
};

MIREL_NAMESPACE_END
