// The example's audio code, built once per processor build and kept in the bundle as native
// process modules; a shell finds it through the algorithm's GetNSProcess by the name the
// "ProcessXML" gives ("GainFilter_Process") and runs it over the coefficient and state words
// that the plug-in's buffer chains filled. It links nothing of the run-time.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "GainFilterLayout.h"

using namespace GainFilterLayout;

// `in` and `out` hold `frames` frames of interleaved stereo.
extern "C" __attribute__((visibility("default"))) void
GainFilter_Process(void const *coefWords, void *stateWords, float const *in, float *out,
                   std::int32_t frames) {
    auto const *coefs = static_cast<float const *>(coefWords);
    auto *states = static_cast<float *>(stateWords);
    std::int32_t filterOn = 0, stages = 1, mode = eModeStereo;
    std::memcpy(&filterOn, coefs + eCoefFilterOn, sizeof filterOn);
    std::memcpy(&stages, coefs + eCoefStages, sizeof stages);
    std::memcpy(&mode, coefs + eCoefMode, sizeof mode);
    stages = filterOn != 0 ? std::clamp(stages, 1, kMaxStages) : 0;
    const float gain = coefs[eCoefGain];
    const float b0 = coefs[eCoefB0];
    const float a1 = coefs[eCoefA1];
    float peak = states[eStateOutputPeak];
    for (std::int32_t frame = 0; frame < frames; ++frame) {
        const float left = in[kChannels * frame];
        const float right = in[kChannels * frame + 1];
        float x[kChannels] = {left, right};
        if (mode == eModeMono)
            x[0] = x[1] = 0.5f * (left + right);
        else if (mode == eModeSwap)
            x[0] = right, x[1] = left;
        for (int channel = 0; channel < kChannels; ++channel) {
            float y = x[channel];
            for (int stage = 0; stage < stages; ++stage) {
                float &state = states[StateOfStage(stage, channel)];
                state = b0 * y + a1 * state;
                y = state;
            }
            y *= gain;
            out[kChannels * frame + channel] = y;
            peak = std::max(peak, std::fabs(y));
        }
    }
    // Held until the meter reads it and writes its read-reset value back.
    states[eStateOutputPeak] = peak;
}
