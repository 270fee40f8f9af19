#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

// The builds of native audio code a plug-in may carry, weakest first; any other value is taken
// as generic.
enum ProcessorType : int {
    eProcessorTypeGeneric = 0,
    eProcessorTypeGenericMultiCore = 10,
    eProcessorTypeAVX = 11,
    eProcessorTypeAVX512 = 12,
};

enum EOSType : int {
    eOSWindows = 0,
    eOSMacIntel = 1,
    eOSMacArm = 2,
    eOSiOS = 3,
    eOSLinux = 4,
};

// The audio code of a native build: one call processes `frames` frames of interleaved
// channels (as many as the description's inputs and outputs) over the coefficient and state
// words the plug-in placed.
using WTNativeProcessFunction = void (*)(void const *coefs, void *states, float const *in,
                                         float *out, std::int32_t frames);

// The system this library was built for.
EOSType GetCurrentOSType() noexcept;

// What the processor can run: AVX512 (foundation), else AVX, else multi-core generic. Asked of
// the processor itself (cpuid), and of the system for whether it saves the wide registers.
ProcessorType GetCPUType() noexcept;
// "AVX512", "AVX", "GenericMultiCore" or "Generic".
char const *GetCPUTypeString(ProcessorType type) noexcept;
// `GetCPUType`, except that a bundle holding the diagnostics folder
// "generic_multicore_processor" forces the multi-core generic build, so a suspect wide build
// can be ruled out on a user's machine without a new release.
ProcessorType GetCPUTypeForBundle(FM::WCStPath const &bundle) noexcept;

// The resource type under which a bundle keeps the native code of `type` for `os`; empty where
// the system has no such build.
char const *ObtainProcessCodeResourceType(ProcessorType type, EOSType os) noexcept;
// The display name of a build: "AVX512 Core Architecture", "AVX Core Architecture" or
// "Generic Core Architecture".
char const *GetNativeProcessDisplayName(ProcessorType type) noexcept;
// The next weaker build to try when `type` is missing; false after generic.
bool WeakerProcessorType(ProcessorType type, ProcessorType &weaker) noexcept;

MIREL_NAMESPACE_END
