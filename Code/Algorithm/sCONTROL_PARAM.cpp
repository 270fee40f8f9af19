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

void sCONTROL_PARAM::CopySetup(int from, int to) {
    from &= 1;
    to &= 1;
    if (from == to)
        return;
    SetStateValue(to, GetState(from));
    SetRealWorldValue(to, GetRealWorld(from));
    m_DisabledMode[to] = m_DisabledMode[from];
    m_CurrentImageIndex[to] = m_CurrentImageIndex[from];
    if (m_Extension != nullptr)
        m_Extension->CopySetupData(from, to);
    if (m_GraphData[from] != nullptr && m_GraphData[to] != nullptr)
        m_GraphData[to]->CopyFrom(*m_GraphData[from]);
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
