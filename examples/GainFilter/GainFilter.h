#pragma once

#include <array>
#include <cstdint>

#include "Code/Algorithm/cALGORITHM.h"

// The example plug-in: a stereo gain followed by a one-pole low-pass filter that can be switched
// off. Its process side reads four coefficient words (gain, b0, a1 as fractions, the filter
// switch as an integer) and keeps one state word per channel.
//
// Until parameters are declared in XML it keeps its three values itself; its shell sets and
// reads them through the private selector 'prvt' with the value's index as argument
// (0 gain in dB, 1 cutoff in Hz, 2 filter on when non-zero).
// [main-thread] except UpdateAlg, which any thread may call under the process lock.
class GainFilter : public MIREL_NAMESPACE_NAME::cALGORITHM {
public:
    using BUFFER_HEADER = MIREL_NAMESPACE_NAME::BUFFER_HEADER;

    enum EValue : int { eGainDB = 0, eCutoffHz = 1, eFilterOn = 2, eNumValues = 3 };
    enum ECoef : int { eCoefGain = 0, eCoefB0 = 1, eCoefA1 = 2, eCoefFilterOn = 3, eNumCoefs = 4 };
    static constexpr int kNumStates = 2;

    GainFilter(MIREL_NAMESPACE_NAME::MirelComponentInfo const &info,
               MIREL_NAMESPACE_NAME::WTResContainerType *&container);

    double GetValue(int which) const;
    std::uint64_t GetIdleTicks() const { return m_IdleTicks; }

    int GetPluginInfo_double_Private(double &out, std::int64_t arg) override;
    int SetPluginInfo_double_Private(double value, std::int64_t arg) override;

protected:
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t id) override;
    BUFFER_HEADER *UpdateAlgSelf() override;
    BUFFER_HEADER *InitAlgSelf() override;
    int DoIdleSelf(short level) override;
    BUFFER_HEADER *ResetAudioBuffersSelf() override;
    void InitProcessCodeSelf() override;
    int ChangeSampleRateSelf() override;

private:
    void ComputeCoefs(int which);
    BUFFER_HEADER *ClearStates();

    std::array<double, eNumValues> m_Values{0.0, 1000.0, 1.0};
    std::uint64_t m_IdleTicks = 0;
};
