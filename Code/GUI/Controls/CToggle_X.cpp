#include "Code/GUI/Controls/CToggle_X.h"

#include <cmath>
#include <utility>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

// States within this of an end count as that end, so that a sum of steps that misses 1000 by
// rounding still wraps.
constexpr double kStateTolerance = 1e-6;

} // namespace

CToggle_X *CToggle_X::Clone() const {
    auto *copy = new CToggle_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Pushed.Assign(m_Pushed);
    copy->m_Released.Assign(m_Released);
    return copy;
}

double CToggle_X::NextState(double state, double step, bool reverse) noexcept {
    if (!(step > 0.0) || !std::isfinite(state))
        step = 1000.0;
    if (reverse)
        return state <= kStateTolerance ? 1000.0 : std::fmax(0.0, state - step);
    return state >= 1000.0 - kStateTolerance ? 0.0 : std::fmin(1000.0, state + step);
}

WTErr CToggle_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read aside and kept only whole, so that a broken image leaves the toggle as it was.
    WCBaseImage pushed, released;
    pushed.Assign(m_Pushed);
    released.Assign(m_Released);
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        if (child->GetName() != "Image")
            continue;
        const auto type = child->GetAttribString("Type");
        WCBaseImage *target = type == "Pushed" ? &pushed : type == "Released" ? &released : nullptr;
        if (target == nullptr)
            continue;
        WCBaseImage image;
        if (const WTErr err = image.ReadFromXML(child); err != eNoErr)
            return err;
        target->Assign(image);
    }
    m_Pushed.Assign(pushed);
    m_Released.Assign(released);
    return eNoErr;
}

void CToggle_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    GUIXML::WriteTypedImages(*cls, {{"Pushed", &m_Pushed}, {"Released", &m_Released}});
}

double CToggle_X::ClickTarget(const WCParamRegistrationData &data, bool reverse) const {
    // Forward, the plug-in decides the cycle (it may skip a state or stop at the end).
    std::int32_t asked = 0;
    if (!reverse && m_pAlg != nullptr &&
        m_pAlg->GetPluginInfo_GetNextToggleState(
            static_cast<std::int64_t>(data.GetRegisteredParam()), asked) == eNoErr)
        return static_cast<double>(asked);
    return NextState(data.GetValue(), data.GetActiveControllerParameterStateStep(), reverse);
}

WCGUIControl::BUFFER_HEADER *CToggle_X::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                      bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const bool reverse = GetControlFlag(eCF_SetOppositeNextState);
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        if (!TakesClick(data, event, modifiers))
            continue;
        const double next = ClickTarget(data, reverse);
        chain = Chain(chain, data.SetParamValue(next, eRegMouseDown, modifiers));
    }
    return chain;
}

MIREL_NAMESPACE_END
