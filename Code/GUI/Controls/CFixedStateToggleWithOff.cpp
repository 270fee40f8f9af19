#include "Code/GUI/Controls/CFixedStateToggleWithOff.h"

#include <cmath>

MIREL_NAMESPACE_BEGIN

namespace {

// A state this near the fixed one counts as there: the stored state went through the
// parameter's scale and back.
constexpr double kAtFixedTolerance = 0.5;

} // namespace

CFixedStateToggleWithOff *CFixedStateToggleWithOff::Clone() const {
    auto *copy = new CFixedStateToggleWithOff(m_pOwner);
    CopyTo(*copy);
    copy->m_Pushed.Assign(m_Pushed);
    copy->m_Released.Assign(m_Released);
    return copy;
}

double CFixedStateToggleWithOff::NextFixedState(double state, double fixed) noexcept {
    return std::fabs(state - fixed) <= kAtFixedTolerance ? 0.0 : fixed;
}

double CFixedStateToggleWithOff::ClickTarget(const WCParamRegistrationData &data,
                                             bool reverse) const {
    const WCRegisterInfo &info = data.GetRegisterInfo();
    return info.m_HasFixedState ? NextFixedState(data.GetValue(), info.m_FixedState)
                                : CToggle_X::ClickTarget(data, reverse);
}

MIREL_NAMESPACE_END
