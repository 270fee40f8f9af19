#include "Code/GUI/Controls/CFixedStateToggleWithOff.h"

#include <cmath>

#include "view/WCEventData.h"

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

WCGUIControl::BUFFER_HEADER *CFixedStateToggleWithOff::MouseDownSelf(WCEventData &event,
                                                                     WURect<double> &limits,
                                                                     bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const bool reverse = GetControlFlag(eCF_SetOppositeNextState);
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        if (!data.IsRegisteredToType(eRegMouseDown, modifiers) ||
            NeedToResetParam(event.GetAllKeyModifiers(), data))
            continue;
        const WCRegisterInfo &info = data.GetRegisterInfo();
        const double next =
            info.m_HasFixedState
                ? NextFixedState(data.GetValue(), info.m_FixedState)
                : NextState(data.GetValue(), data.GetActiveControllerParameterStateStep(), reverse);
        chain = Chain(chain, data.SetParamValue(next, eRegMouseDown, modifiers));
    }
    return chain;
}

MIREL_NAMESPACE_END
