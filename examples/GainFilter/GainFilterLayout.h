#pragma once

// What the example's plug-in side and its audio code agree on: the order of the coefficient
// words (gain, b0, a1 as fractions, the filter switch as an integer) and of the state words (one
// filter state per channel, then the output peak the plug-in's meter reads and resets). The
// audio code includes only this header.
namespace GainFilterLayout {

enum ECoef : int { eCoefGain = 0, eCoefB0 = 1, eCoefA1 = 2, eCoefFilterOn = 3, eNumCoefs = 4 };
enum EState : int { eStateLeft = 0, eStateRight = 1, eStateOutputPeak = 2, eNumStates = 3 };
constexpr int kChannels = 2;

} // namespace GainFilterLayout
