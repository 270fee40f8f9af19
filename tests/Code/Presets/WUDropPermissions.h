#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace mirel_test {

// Root writes anywhere; a child process that is to meet a read-only folder gives up the
// capabilities that let it. False when the system refused.
inline bool DropFilePermissionOverrides() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
    if (syscall(SYS_capget, &header, data) != 0)
        return false;
    for (const int cap : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER}) {
        const unsigned int bit = 1u << (cap % 32);
        data[cap / 32].effective &= ~bit;
        data[cap / 32].permitted &= ~bit;
        data[cap / 32].inheritable &= ~bit;
    }
    return syscall(SYS_capset, &header, data) == 0;
}

} // namespace mirel_test
