// Processor features on Linux x86-64: cpuid for what the processor has, xgetbv for what the
// system saves on a thread switch (a wide register the kernel does not save is unusable).

#include "Code/Process/WUNativeProcess.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

MIREL_NAMESPACE_BEGIN

namespace {

#if defined(__x86_64__) || defined(__i386__)
unsigned long long EnabledStateMask() {
    unsigned int low = 0, high = 0;
    __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (static_cast<unsigned long long>(high) << 32) | low;
}
#endif

} // namespace

ProcessorType GetCPUType() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    unsigned int eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0)
        return eProcessorTypeGenericMultiCore;
    const bool osxsave = (ecx & bit_OSXSAVE) != 0;
    const bool avx = (ecx & bit_AVX) != 0;
    if (!osxsave || !avx)
        return eProcessorTypeGenericMultiCore;
    const unsigned long long state = EnabledStateMask();
    // SSE and AVX state (bits 1, 2) must be saved for AVX; opmask and upper ZMM (5 to 7) too
    // for AVX512.
    if ((state & 0x6) != 0x6)
        return eProcessorTypeGenericMultiCore;
    unsigned int maxLeaf = __get_cpuid_max(0, nullptr);
    if (maxLeaf >= 7) {
        __cpuid_count(7, 0, eax, ebx, ecx, edx);
        if ((ebx & bit_AVX512F) != 0 && (state & 0xE6) == 0xE6)
            return eProcessorTypeAVX512;
    }
    return eProcessorTypeAVX;
#else
    return eProcessorTypeGenericMultiCore;
#endif
}

MIREL_NAMESPACE_END
