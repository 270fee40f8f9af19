#pragma once

#include "Code/Process/KPAPIProcessMemory.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// Processor families a build of the audio code targets; specifics count up from the weakest
// model of a family, so a smaller specific always runs where a larger one does.
enum EProcessorFamily : std::int32_t {
    eProcessorFamilyUnknown = 0,
    eProcessorFamily56k = 1,
    eProcessorFamilyPPC = 2,
    eProcessorFamilyX86 = 3,
};

enum EProcessorSpecific : std::int32_t {
    eProcessorSpecificNone = -1,
    // 56k
    eProcessor56000 = 0,
    eProcessor56300 = 1,
    eProcessor56301 = 2,
    // PPC
    eProcessor601 = 0,
    eProcessor603 = 1,
    eProcessor603e = 2,
    eProcessor604 = 3,
    eProcessor604e = 4,
    eProcessorG3 = 5,
    eProcessorG4 = 6,
    // x86
    eProcessorPentium = 0,
    eProcessorPentiumPro = 1,
    eProcessorGeneric = 2,
    eProcessorAVX = 3,
    eProcessorAVX512 = 4,
};

bool IsValidFamily(SProcessorSpec const &spec) noexcept;
// The specific is known for its family: below 3 for 56k, 7 for PPC, 5 for x86.
bool IsValidSpec(SProcessorSpec const &spec) noexcept;
// "56k", "PPC", "x86", else "Unknown Processor family".
char const *ProcessorFamilyName(std::int32_t family) noexcept;
// The model's name, "Unknown" for one the family does not have.
char const *ProcessorSpecificName(SProcessorSpec const &spec) noexcept;
// "<family> <specific>", cut to the string's capacity.
void ProcessorName(SProcessorSpec const &spec, WCFixedStringBase &out);
// False for different families; else `out` is the one with the smaller specific, b on a tie.
bool WeakerProcessor(SProcessorSpec const &a, SProcessorSpec const &b, SProcessorSpec &out) noexcept;

MIREL_NAMESPACE_END
