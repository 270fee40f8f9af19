#include "Code/Algorithm/WUParamFlags.h"

#include <array>
#include <cstring>

MIREL_NAMESPACE_BEGIN

namespace ParamFlags {

namespace {

struct WSFlagWord {
    char const *word;
    unsigned int bit;
};

// The long form of a word comes before its short form, so WordFromBit finds the long one.
constexpr std::array<WSFlagWord, 17> kFlagWords = {{
    {"NoDisplay", eParamFlag_NoDisplay},
    {"DisplayOnlyParam", eParamFlag_DisplayOnlyParam},
    {"DontUpdateWhileDrag", eParamFlag_DontUpdateWhileDrag},
    {"Drag", eParamFlag_DontUpdateWhileDrag},
    {"AlwaysUpdate", eParamFlag_AlwaysUpdate},
    {"DontSaveToPreset", eParamFlag_DontSaveToPreset},
    {"DontReadFromPreset", eParamFlag_DontReadFromPreset},
    {"PositiveTextEntryToNegative", eParamFlag_PositiveTextEntryToNegative},
    {"ConstantDisabled", eParamFlag_ConstantDisabled},
    {"AvoidValidation", eParamFlag_AvoidValidation},
    {"Unused", eParamFlag_Unused},
    {"NotCyclic", eParamFlag_NotCyclic},
    {"CyclicContinuous", eParamFlag_CyclicContinuous},
    {"Lab", eParamFlag_Lab},
    {"DontRecordUndo", eParamFlag_DontRecordUndo},
    {"LoadFromHostOnly", eParamFlag_LoadFromHostOnly},
    {"SetupsCommon", eParamFlag_SetupsCommon},
}};

} // namespace

bool BitFromWord(char const *word, unsigned int &bit) noexcept {
    if (word == nullptr)
        return false;
    for (auto const &entry : kFlagWords) {
        if (std::strcmp(entry.word, word) == 0) {
            bit = entry.bit;
            return true;
        }
    }
    return false;
}

char const *WordFromBit(unsigned int bit) noexcept {
    for (auto const &entry : kFlagWords) {
        if (entry.bit == bit)
            return entry.word;
    }
    return nullptr;
}

} // namespace ParamFlags

MIREL_NAMESPACE_END
