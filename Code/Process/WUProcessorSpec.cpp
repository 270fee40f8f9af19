#include "Code/Process/WUProcessorSpec.h"

#include <array>

MIREL_NAMESPACE_BEGIN

namespace {

struct WSFamily {
    char const *name;
    std::int32_t specifics;
    std::array<char const *, 7> specificNames;
};

// Index = family. The names of the specifics stand in their order; an empty slot has no name.
constexpr std::array<WSFamily, 4> kFamilies = {{
    {"Unknown Processor family", 0, {}},
    {"56k", 3, {"56000", "56300", "56301"}},
    {"PPC", 7, {"601", "603", "603e", "604", "604e", "G3", "G4"}},
    {"x86", 5, {"Pentium", "PentiumPro", "Generic", "AVX", "AVX512"}},
}};

} // namespace

bool IsValidFamily(SProcessorSpec const &spec) noexcept {
    return spec.family >= eProcessorFamily56k && spec.family <= eProcessorFamilyX86;
}

bool IsValidSpec(SProcessorSpec const &spec) noexcept {
    return IsValidFamily(spec) && spec.specific >= 0 &&
           spec.specific < kFamilies[static_cast<std::size_t>(spec.family)].specifics;
}

char const *ProcessorFamilyName(std::int32_t family) noexcept {
    const bool known = family >= eProcessorFamily56k && family <= eProcessorFamilyX86;
    return kFamilies[known ? static_cast<std::size_t>(family) : 0].name;
}

char const *ProcessorSpecificName(SProcessorSpec const &spec) noexcept {
    if (!IsValidSpec(spec))
        return "Unknown";
    return kFamilies[static_cast<std::size_t>(spec.family)]
        .specificNames[static_cast<std::size_t>(spec.specific)];
}

void ProcessorName(SProcessorSpec const &spec, WCFixedStringBase &out) {
    out = ProcessorFamilyName(spec.family);
    out << ' ' << ProcessorSpecificName(spec);
}

bool WeakerProcessor(SProcessorSpec const &a, SProcessorSpec const &b, SProcessorSpec &out) noexcept {
    if (a.family != b.family)
        return false;
    out = a.specific < b.specific ? a : b;
    return true;
}

MIREL_NAMESPACE_END
