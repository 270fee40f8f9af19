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
    std::int32_t filterOn = 0;
    std::memcpy(&filterOn, coefs + eCoefFilterOn, sizeof filterOn);
    const float gain = coefs[eCoefGain];
    const float b0 = coefs[eCoefB0];
    const float a1 = coefs[eCoefA1];
    float peak = states[eStateOutputPeak];
    for (std::int32_t frame = 0; frame < frames; ++frame) {
        for (int channel = 0; channel < kChannels; ++channel) {
            float x = in[kChannels * frame + channel];
            if (filterOn != 0) {
                states[channel] = b0 * x + a1 * states[channel];
                x = states[channel];
            }
            const float y = gain * x;
            out[kChannels * frame + channel] = y;
            peak = std::max(peak, std::fabs(y));
        }
    }
    // Held until the meter reads it and writes its read-reset value back.
    states[eStateOutputPeak] = peak;
}
