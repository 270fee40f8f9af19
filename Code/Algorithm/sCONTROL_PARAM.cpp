#include "Code/Algorithm/sCONTROL_PARAM.h"

#include <algorithm>
#include <cmath>

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
    return m_Controllers.empty() ? eNoErr : eNotImplemented;
}

MIREL_NAMESPACE_END
