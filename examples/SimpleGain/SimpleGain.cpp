#include "examples/SimpleGain/SimpleGain.h"

#include <cmath>

namespace {

constexpr std::uint64_t kGainParam = 0;
constexpr int kGainCoef = 0;

} // namespace

void SimpleGain::InitProcessCodeSelf() {
    DSPReqRes().coefsWords = 1;
    DSPReqRes().inputs = 2;
    DSPReqRes().outputs = 2;
    DSPReqRes().cycles = 4;
}

BUFFER_HEADER *SimpleGain::InitAlgSelf() {
    return UpdateAlgSelf();
}

BUFFER_HEADER *SimpleGain::UpdateParamSelf(std::uint64_t id) {
    if (id != kGainParam)
        return nullptr;
    double gainDB = 0.0;
    GetParamRealWorld(kGainParam, gainDB); // stays 0 dB while no parameter is declared
    ConvertFracToCoefs(std::pow(10.0, gainDB / 20.0), kGainCoef);
    return PrepareCoefBufferWithBypass(kGainCoef, 1, true);
}

BUFFER_HEADER *SimpleGain::UpdateAlgSelf() {
    return UpdateParamSelf(kGainParam);
}

BUFFER_HEADER *SimpleGain::ResetAudioBuffersSelf() {
    return nullptr; // a gain keeps no audio history
}

int SimpleGain::DoIdleSelf(short) {
    return eNoErr;
}
