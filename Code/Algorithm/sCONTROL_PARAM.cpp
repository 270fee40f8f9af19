#include "Code/Algorithm/sCONTROL_PARAM.h"

#include <algorithm>
#include <cmath>

#include "Code/GUI/WCBaseControl.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

double sCONTROL_PARAM::DefaultMouseDelta(double delta) const noexcept {
    if (m_MouseAcceleration != -1.0)
        return m_MouseAcceleration * delta;
    if (!IsDiscrete())
        return delta;
    return std::clamp(delta, -10.0, 10.0) *
           std::sqrt(static_cast<double>(std::max(0, m_NumStates)));
}

double sCONTROL_PARAM::MouseDelta(double delta) const noexcept {
    return m_MouseDeltaFunction != nullptr ? m_MouseDeltaFunction(delta) : DefaultMouseDelta(delta);
}

void sCONTROL_PARAM::TakeSetupData(int setup) {
    if (m_Extension)
        m_Extension->TakeSetupData(setup);
}

int sCONTROL_PARAM::UpdateControllers() {
    // By index: a control may register or leave while it follows the change.
    for (std::size_t i = 0; i < m_Controllers.size(); ++i)
        if (WCBaseControl *control = m_Controllers[i].second)
            control->UpdatePointer(static_cast<std::size_t>(m_Controllers[i].first));
    return eNoErr;
}

MIREL_NAMESPACE_END
