#pragma once

#include <cstdint>

#include "Code/Algorithm/cALGORITHM.h"
#include "examples/GainFilter/GainFilterLayout.h"

// The example plug-in: a stereo gain after a low-pass filter of one to three one-pole stages
// (6, 12 or 18 dB per octave) that can be switched off, with a channel mode (stereo, mono,
// swapped) in front. Its audio code (Process/GainFilterProcess.cpp, kept in the bundle as native
// modules and described by the bundle's "ProcessXML") reads the coefficient words of
// GainFilterLayout.h and keeps one state word per channel and stage.
//
// Its parameters and their ranges are declared in the bundle's "ParamXML"; a shell changes them
// through the algorithm's update pipeline (UpdateParamRequestState, UpdateParamRequestRealWorld,
// UpdateParamFromText, DragParam) and sends the chain it answers. UpdateParamSelf reads the real
// world of the changed parameter and writes the coefficient words it drives.
// [main-thread] except UpdateAlg and the updates, which any thread may call under the process
// lock.
class GainFilter : public MIREL_NAMESPACE_NAME::cALGORITHM {
public:
    using BUFFER_HEADER = MIREL_NAMESPACE_NAME::BUFFER_HEADER;

    // Parameter ids, in the order of the parameter XML. The two trims have no coefficient.
    enum EParam : std::uint64_t {
        eParamGain = 0,
        eParamCutoff = 1,
        eParamFilter = 2,
        eParamTrim1 = 3,
        eParamTrim2 = 4,
        eParamOutput = 5,
        eParamSlope = 6,
        eParamMode = 7,
    };
    using ECoef = GainFilterLayout::ECoef;
    static constexpr ECoef eCoefGain = GainFilterLayout::eCoefGain;
    static constexpr ECoef eCoefB0 = GainFilterLayout::eCoefB0;
    static constexpr ECoef eCoefA1 = GainFilterLayout::eCoefA1;
    static constexpr ECoef eCoefFilterOn = GainFilterLayout::eCoefFilterOn;
    static constexpr ECoef eCoefStages = GainFilterLayout::eCoefStages;
    static constexpr ECoef eCoefMode = GainFilterLayout::eCoefMode;
    static constexpr int eNumCoefs = GainFilterLayout::eNumCoefs;
    static constexpr int kNumStates = GainFilterLayout::eNumStates;

    GainFilter(MIREL_NAMESPACE_NAME::MirelComponentInfo const &info,
               MIREL_NAMESPACE_NAME::WTResContainerType *&container);

    std::uint64_t GetIdleTicks() const { return m_IdleTicks; }

protected:
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t id) override;
    BUFFER_HEADER *UpdateAlgSelf() override;
    BUFFER_HEADER *InitAlgSelf() override;
    int DoIdleSelf(short level) override;
    BUFFER_HEADER *ResetAudioBuffersSelf() override;
    int ChangeSampleRateSelf() override;

private:
    // Writes the coefficient words of one parameter into the active image.
    void ComputeCoefs(std::uint64_t id);
    BUFFER_HEADER *ClearStates();

    std::uint64_t m_IdleTicks = 0;
};
