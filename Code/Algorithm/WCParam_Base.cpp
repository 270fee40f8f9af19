#include "Code/Algorithm/WCParam_Base.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "Code/Algorithm/WUScaleFunctions.h"

MIREL_NAMESPACE_BEGIN

namespace {

double Finite(double value) noexcept {
    return std::isfinite(value) ? value : 0.0;
}

} // namespace

void WCParam_Base::SetScale(double min, double max, double res, std::int32_t numStates, double var,
                            char const *typeName, WTScaleFunction forward, WTScaleFunction inverse,
                            std::vector<double> const &realWorldPoints,
                            std::vector<double> const &statePoints,
                            WTScaleFunctionsMap const *userScales) {
    min = Finite(min);
    max = Finite(max);
    m_ScaleMin = min;
    m_ScaleMax = max;
    m_ScaleResolution = std::isfinite(res) ? res : 1.0;
    m_ScaleType = typeName != nullptr ? typeName : "";
    m_Scale = sSCALE_INFO();
    m_Scale.extra = Finite(var);
    m_Scale.name = m_ScaleType;
    for (double point : realWorldPoints)
        m_Scale.realWorldPoints.push_back(Finite(point));
    for (double point : statePoints)
        m_Scale.statePoints.push_back(std::clamp(Finite(point), 0.0, kMaxState));
    m_Type = eParamTypeContinuous;
    m_NumStates = std::max<std::int32_t>(numStates, 0);

    const char *name = m_ScaleType.c_str();
    const bool extended = res > 1.0 && std::isfinite(res);
    bool indexStates = false;
    if (std::strcmp(name, "linear") == 0) {
        SetScaleLin(m_Scale, min, max, res);
        m_Forward = extended ? ExtendedResLinearScale : LinearScale;
        m_Inverse = InverseLinearScale;
    } else if (std::strcmp(name, "logarithmic") == 0) {
        SetScaleLog(m_Scale, min, max, res);
        m_Forward = extended ? ExtendedResLogScale : LogScale;
        m_Inverse = InverseLogScale;
    } else if (std::strcmp(name, "toggle") == 0) {
        SetScaleToggle(m_Scale, m_NumStates);
        m_Forward = ToggleScale;
        m_Inverse = nullptr;
        m_Type = eParamTypeDiscrete;
        indexStates = true;
    } else if (std::strcmp(name, "linearRanges") == 0 ||
               std::strcmp(name, "linearRangesWithRounding") == 0) {
        SetScaleLin(m_Scale, min, max, res);
        m_Scale.base = min;
        m_Forward = LinearRangesScale;
        m_Inverse = std::strcmp(name, "linearRanges") == 0 ? InverseLinearRangesScale
                                                           : InverseLinearRangesScaleWithRounding;
    } else if (std::strcmp(name, "toggleRanges") == 0 || std::strcmp(name, "toggleMap") == 0) {
        SetScaleLin(m_Scale, min, max, 1.0);
        const bool isMap = std::strcmp(name, "toggleMap") == 0;
        m_Forward = isMap ? ToggleMapScale : ToggleRangesScale;
        m_Inverse = isMap ? InverseToggleMapScale : InverseToggleRangesScale;
        m_NumStates = static_cast<std::int32_t>(m_Scale.realWorldPoints.size());
        m_Type = eParamTypeDiscrete;
        indexStates = !isMap;
    } else if (std::strcmp(name, "STDFreq") == 0) {
        SetScaleLin(m_Scale, min, max, res);
        m_Forward = FrqScale;
        m_Inverse = InverseFrqScale;
    } else {
        SetScaleLin(m_Scale, min, max, res);
        const WTScaleFunctionsMap::const_iterator found =
            userScales != nullptr ? userScales->find(m_ScaleType)
                                  : WTScaleFunctionsMap::const_iterator();
        if (userScales != nullptr && found != userScales->end()) {
            m_Forward = found->second.forward;
            m_Inverse = found->second.inverse;
        } else {
            m_Forward = forward != nullptr ? forward : NoScale;
            m_Inverse = inverse;
        }
    }
    if (m_NumStates > 1) {
        // "toggle" and "toggleRanges" read their state as an index (modulo the count), so their
        // states are whole numbers; spreading them over the 0..1000 axis would make index 2 of
        // four quantise to 0.
        m_StateStep = indexStates ? 1.0 : kMaxState / (m_NumStates - 1);
        m_Type = eParamTypeDiscrete;
    } else {
        m_StateStep = 0.0;
    }
}

double WCParam_Base::QuantizeState(double state) const noexcept {
    if (!(m_StateStep > 0.0))
        return state;
    return std::floor(state / m_StateStep + 0.5) * m_StateStep;
}

double WCParam_Base::ConvertDefault(double value, EParamValueType type) const noexcept {
    value = Finite(value);
    switch (type) {
    case eParamValueRealWorldExact: return value;
    case eParamValueState: return StateToRealWorld(std::clamp(value, 0.0, kMaxState));
    case eParamValueRealWorld:
    default:
        // Through the scale, so the stored default is one the scale can produce; a scale without
        // an inverse keeps the number as written.
        if (m_Inverse == nullptr)
            return value;
        return StateToRealWorld(std::clamp(RealWorldToState(value), 0.0, kMaxState));
    }
}

void WCParam_Base::SetScaleDefaults(double resetValue, EParamValueType resetType,
                                    double initialValue, EParamValueType initialType) {
    m_ResetValue = ConvertDefault(resetValue, resetType);
    m_InitialValue = ConvertDefault(initialValue, initialType);
}

double WCParam_Base::UpdateStateFromRealWorld(int setup) noexcept {
    if (m_Inverse != nullptr)
        SetStateValue(setup, std::clamp(RealWorldToState(GetRealWorld(setup)), 0.0, kMaxState));
    return GetState(setup);
}

void WCParam_Base::InitRealWorldAndUpdate(int setup) noexcept {
    SetRealWorldValue(setup, m_InitialValue);
    double state = std::clamp(RealWorldToState(m_InitialValue), 0.0, kMaxState);
    if (IsDiscrete())
        state = QuantizeState(state);
    SetStateValue(setup, state);
    SetUpdateFlags(kUpdateFlagsValueChanged);
}

void WCParam_Base::UpdateValueString(int setup) {
    if (IsFlagSet(eParamFlag_NoDisplay))
        return;
    if (m_DisplayFunction)
        m_DisplayFunction(GetState(setup), GetRealWorld(setup), m_ValueString);
    else
        m_ValueString.clear();
}

void WCParam_Base::FormatState(double state, WCFixedStringBase &out) const {
    out.clear();
    if (m_DisplayFunction)
        m_DisplayFunction(state, StateToRealWorld(state), out);
}

bool WCParam_Base::SanityTests(char const *name) const {
    bool good = true;
    auto report = [&](char const *what) {
        std::fprintf(stderr, "parameter \"%s\" (%s): %s\n", name != nullptr ? name : "",
                     m_ScaleType.c_str(), what);
        good = false;
    };
    if (m_Forward == nullptr)
        report("no state to real-world function");
    const double low = StateToRealWorld(0.0);
    const double high = StateToRealWorld(kMaxState);
    if (m_Forward != nullptr && m_Forward != NoScale && low == high && m_NumStates != 1)
        report("both ends of the state axis give the same value");
    if (m_Inverse != nullptr && m_Forward != nullptr && low != high) {
        const double back = RealWorldToState(high);
        if (std::fabs(back - kMaxState) > 1.0 && std::fabs(back) > 1.0)
            report("the inverse does not reach the end of the state axis");
    }
    return good;
}

MIREL_NAMESPACE_END
