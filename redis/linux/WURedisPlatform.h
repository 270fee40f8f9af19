#pragma once

#include <csignal>
#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN
namespace Redis {
namespace Platform {

// The few system services the Redis layer needs on Linux, so the rest of the layer includes no
// system header. [any-thread]

// Blocks SIGPIPE on the calling thread for its scope. A write to a socket whose peer has gone
// raises SIGPIPE, which would end the host process; with the signal blocked the write fails with
// EPIPE instead and the connection reports the error. A SIGPIPE raised in the scope is consumed
// before the old mask comes back; one that was pending before is left alone.
class WCStSigPipeBlocker {
public:
    WCStSigPipeBlocker() noexcept;
    ~WCStSigPipeBlocker();
    WCStSigPipeBlocker(WCStSigPipeBlocker const &) = delete;
    WCStSigPipeBlocker &operator=(WCStSigPipeBlocker const &) = delete;

private:
    sigset_t m_oldMask;
    bool m_wasPending;
};

// The id of the current process.
std::int64_t CurrentProcessId() noexcept;

// The native path of the running program, or empty when the system does not say.
void GetApplicationPath(WCFixedStringBase &outPath) noexcept;

// The local time as "%Y/%m/%d-%H:%M:%S".
void GetLocalTimeText(WCFixedStringBase &outText) noexcept;

// Shuts a connected socket down in both directions, so a thread blocked reading it wakes up with
// end-of-file. The descriptor stays open; its owner closes it.
void ShutdownSocket(int fd) noexcept;

} // namespace Platform
} // namespace Redis
MIREL_NAMESPACE_END
