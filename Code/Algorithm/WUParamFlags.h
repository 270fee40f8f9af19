#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// Bit numbers of the parameter flags. Each XML word of a parameter's flags child sets one; the
// numbers are stored in presets and tools, so they never move.
enum EParamFlagBit : unsigned int {
    eParamFlag_NoDisplay = 1,
    eParamFlag_DisplayOnlyParam = 2,
    eParamFlag_DontUpdateWhileDrag = 3,
    eParamFlag_AlwaysUpdate = 4,
    eParamFlag_DontSaveToPreset = 5,
    eParamFlag_DontReadFromPreset = 6,
    eParamFlag_PositiveTextEntryToNegative = 7,
    eParamFlag_ConstantDisabled = 9,
    eParamFlag_AvoidValidation = 10,
    eParamFlag_Unused = 11,
    eParamFlag_NotCyclic = 12,
    eParamFlag_CyclicContinuous = 13,
    eParamFlag_Lab = 14,
    eParamFlag_DontRecordUndo = 16,
    eParamFlag_LoadFromHostOnly = 17,
    eParamFlag_SetupsCommon = 18,
};

namespace ParamFlags {

// [any-thread] The bit a flag word names ("Drag" is the short form of "DontUpdateWhileDrag");
// false for a word the table does not know.
bool BitFromWord(char const *word, unsigned int &bit) noexcept;

// [any-thread] The word of a bit, the long form where there are two; null for an unused bit.
char const *WordFromBit(unsigned int bit) noexcept;

} // namespace ParamFlags

MIREL_NAMESPACE_END
