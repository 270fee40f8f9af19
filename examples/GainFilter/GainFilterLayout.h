#pragma once

// What the example's plug-in side and its audio code agree on: the order of the coefficient
// words (gain, b0, a1 as fractions; the filter switch, the number of filter stages and the
// channel mode as integers) and of the state words (the first filter stage's state per channel,
// the output peak the plug-in's meter reads and resets, then the states of the second and third
// stages). The audio code includes only this header.
namespace GainFilterLayout {

enum ECoef : int {
    eCoefGain = 0,
    eCoefB0 = 1,
    eCoefA1 = 2,
    eCoefFilterOn = 3,
    eCoefStages = 4,
    eCoefMode = 5,
    eNumCoefs = 6
};
enum EState : int { eStateLeft = 0, eStateRight = 1, eStateOutputPeak = 2, eNumStates = 7 };
// The channel modes of eCoefMode.
enum EMode : int { eModeStereo = 0, eModeMono = 1, eModeSwap = 2 };
constexpr int kChannels = 2;
constexpr int kMaxStages = 3;

// The state word of filter stage `stage` (0 to kMaxStages - 1) of `channel`; the first stage's
// words come first so that the output peak keeps its place.
constexpr int StateOfStage(int stage, int channel) {
    return stage == 0 ? channel : eStateOutputPeak + 1 + (stage - 1) * kChannels + channel;
}

} // namespace GainFilterLayout
