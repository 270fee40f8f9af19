#include "examples/GainFilter/GainFilter.h"

#include <cmath>
#include <numbers>

#include "Code/Algorithm/MirelPluginEntry.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

constexpr WCFourCC kComponentType("Nati");
constexpr WCFourCC kComponentSubType("GnFl");

} // namespace

GainFilter::GainFilter(MirelComponentInfo const &info, WTResContainerType *&container)
    : cALGORITHM(info, container) {
    // Names, undo depth and flags come from the bundle's "AlgXML", the parameters from its
    // "ParamXML"; the base reads both.
}

void GainFilter::ComputeCoefs(std::uint64_t id) {
    double value = 0.0;
    if (GetParamRealWorld(id, value) != eNoErr)
        return;
    switch (id) {
    case eParamGain: ConvertFracToCoefs(std::pow(10.0, value / 20.0), eCoefGain); break;
    case eParamCutoff: {
        // One-pole low-pass: y = b0 x + a1 y[-1], with a1 = exp(-2 pi fc / fs).
        const double a1 = std::exp(-2.0 * std::numbers::pi * value / GetSampleRate());
        ConvertFracToCoefs(1.0 - a1, eCoefB0);
        ConvertFracToCoefs(a1, eCoefA1);
        break;
    }
    case eParamFilter: ConvertIntToCoefs(value != 0.0 ? 1 : 0, eCoefFilterOn); break;
    // The slope's states are 0, 1, 2 for one, two, three stages.
    case eParamSlope: ConvertIntToCoefs(static_cast<int>(std::lround(value)) + 1, eCoefStages); break;
    case eParamMode: ConvertIntToCoefs(static_cast<int>(std::lround(value)), eCoefMode); break;
    default: break;
    }
}

GainFilter::BUFFER_HEADER *GainFilter::UpdateParamSelf(std::uint64_t id) {
    ComputeCoefs(id);
    // One buffer for the words this parameter drives, never the whole image.
    switch (id) {
    case eParamGain: return PrepareCoefBufferWithBypass(eCoefGain, 1, true);
    case eParamCutoff: return PrepareCoefBufferWithBypass(eCoefB0, 2, true);
    case eParamFilter: return PrepareCoefBufferWithBypass(eCoefFilterOn, 1, true);
    case eParamSlope: return PrepareCoefBufferWithBypass(eCoefStages, 1, true);
    case eParamMode: return PrepareCoefBufferWithBypass(eCoefMode, 1, true);
    default: return nullptr;
    }
}

GainFilter::BUFFER_HEADER *GainFilter::UpdateAlgSelf() {
    for (std::uint64_t id : {eParamGain, eParamCutoff, eParamFilter, eParamSlope, eParamMode})
        ComputeCoefs(id);
    return PrepareCoefBufferWithBypass(0, eNumCoefs, true);
}

GainFilter::BUFFER_HEADER *GainFilter::ClearStates() {
    BUFFER_HEADER *states = NewBuffer(KPAPI_PROCESS_MEMORY::eBufferStates, GetMemOpWrite(), 0,
                                      GetStatesOfs(), kNumStates, 0);
    // New buffers come zeroed from the process side; zero states are the silent filter.
    return states;
}

GainFilter::BUFFER_HEADER *GainFilter::InitAlgSelf() {
    return ChainBufs(UpdateAlgSelf(), ClearStates());
}

GainFilter::BUFFER_HEADER *GainFilter::ResetAudioBuffersSelf() {
    return ClearStates();
}

int GainFilter::DoIdleSelf(short) {
    ++m_IdleTicks;
    return eNoErr;
}

int GainFilter::ChangeSampleRateSelf() {
    // The cutoff coefficient depends on the rate; the next UpdateAlg sends it.
    ComputeCoefs(eParamCutoff);
    return eNoErr;
}

// ---- the module's C entry points ------------------------------------------------------------

#define GAINFILTER_EXPORT extern "C" __attribute__((visibility("default")))

GAINFILTER_EXPORT int MirelPlugin_GetComponentInfo(int index, MirelComponentInfo *out) {
    if (out == nullptr)
        return eMemNullPointer;
    if (index != 0)
        return ePluginSubComponentNotFound;
    MirelComponentInfo info;
    info.m_PluginType = MirelComponentInfo::eMirelPlugin;
    info.m_ComponentType = kComponentType;
    info.m_ComponentSubType = kComponentSubType;
    info.m_ShortName = "GainFilter";
    info.m_CategoryName = "EQ";
    info.m_InternalVersion = WCVersion(1, 0, 0, 1);
    info.m_ExternalVersion = WCVersion(1, 0, 0, 0);
    info.m_APIVersion = WCVersion(MIREL_VERSION_MAJOR, MIREL_VERSION_MINOR, MIREL_VERSION_REVISION,
                                  MIREL_VERSION_STAGE);
    *out = info;
    return eNoErr;
}

GAINFILTER_EXPORT cALGORITHM *MirelPlugin_CreateAlgorithm(MirelComponentInfo const *info,
                                                          WTResContainerType **container) {
    if (info == nullptr || container == nullptr || info->m_ComponentSubType != kComponentSubType)
        return nullptr;
    return new GainFilter(*info, *container);
}

GAINFILTER_EXPORT void MirelPlugin_DestroyAlgorithm(cALGORITHM *alg) {
    delete alg;
}
