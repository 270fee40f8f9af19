#include "Code/Process/WUNativeProcess.h"

#include <cstring>

MIREL_NAMESPACE_BEGIN

namespace {

// Columns: generic, multi-core generic, AVX, AVX512. Empty: no such build on that system.
struct WSResourceTypes {
    EOSType os;
    char const *names[4];
};

constexpr WSResourceTypes kResourceTypes[] = {
    {eOSWindows,
     {"GenericWinProcess", "GenericMultiCoreProcessor", "AVXProcessor", "AVX512Processor"}},
    {eOSMacIntel, {"GenericMacIntel", "", "AVXMacIntel", "AVX512MacIntel"}},
    {eOSMacArm, {"GenericMacArm", "", "", ""}},
    {eOSiOS, {"GenericiOSArm", "", "", ""}},
    {eOSLinux, {"GenericLinux64", "GenericMultiCoreLinuxIntel64", "AVXLinuxIntel64", ""}},
};

int Column(ProcessorType type) {
    switch (type) {
    case eProcessorTypeGenericMultiCore: return 1;
    case eProcessorTypeAVX: return 2;
    case eProcessorTypeAVX512: return 3;
    default: return 0;
    }
}

} // namespace

EOSType GetCurrentOSType() noexcept {
    return eOSLinux;
}

char const *GetCPUTypeString(ProcessorType type) noexcept {
    switch (type) {
    case eProcessorTypeAVX512: return "AVX512";
    case eProcessorTypeAVX: return "AVX";
    case eProcessorTypeGenericMultiCore: return "GenericMultiCore";
    default: return "Generic";
    }
}

ProcessorType GetCPUTypeForBundle(FM::WCStPath const &bundle) noexcept {
    const FM::WCStPath diagnostics(bundle, "Contents/Resources/generic_multicore_processor");
    if (diagnostics.IsFolder())
        return eProcessorTypeGenericMultiCore;
    return GetCPUType();
}

char const *ObtainProcessCodeResourceType(ProcessorType type, EOSType os) noexcept {
    for (auto const &row : kResourceTypes)
        if (row.os == os)
            return row.names[Column(type)];
    return "";
}

char const *GetNativeProcessDisplayName(ProcessorType type) noexcept {
    switch (type) {
    case eProcessorTypeAVX512: return "AVX512 Core Architecture";
    case eProcessorTypeAVX: return "AVX Core Architecture";
    default: return "Generic Core Architecture";
    }
}

bool WeakerProcessorType(ProcessorType type, ProcessorType &weaker) noexcept {
    switch (type) {
    case eProcessorTypeAVX512: weaker = eProcessorTypeAVX; return true;
    case eProcessorTypeAVX: weaker = eProcessorTypeGenericMultiCore; return true;
    case eProcessorTypeGenericMultiCore: weaker = eProcessorTypeGeneric; return true;
    default: return false;
    }
}

MIREL_NAMESPACE_END
