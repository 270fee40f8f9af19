#pragma once

#include <cstddef>
#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace miThread {
namespace Native {

// The few operations of the system's thread service that the thread layer needs. Each platform
// implements them in its own subfolder; nothing above this interface includes a system header.

// A native thread id, wide enough for every platform's handle type; 0 is no thread.
using WTNativeThread = std::uint64_t;

// [any-thread] Starts `body(arg)` on a new joinable thread with the given stack size (0 keeps the
// system default) and stores its id in `outThread`. Returns the mapped system error on failure.
WTErr CreateThread(void (*body)(void *), void *arg, std::size_t stackSize,
                   WTNativeThread &outThread) noexcept;

// [any-thread] Waits for the thread to end and frees its system resources.
WTErr JoinThread(WTNativeThread thread) noexcept;

// [any-thread] Lets the system free the thread's resources when it ends; no join follows.
void DetachThread(WTNativeThread thread) noexcept;

// [any-thread] Names the calling thread for debuggers and `top`; long names are cut to what the
// system keeps, at a character boundary.
void SetCurrentThreadName(const char *name) noexcept;

// [any-thread] Copies the calling thread's name into `buffer` (always terminated).
bool GetCurrentThreadName(char *buffer, std::size_t size) noexcept;

// [any-thread] Applies a priority of the calling thread, on the scale -2 (lowest) to 2 (highest),
// 15 for time critical. Best effort: raising needs rights the process may not have, and then the
// thread keeps the priority it had.
void SetCurrentThreadPriority(int priority) noexcept;

// [any-thread] Sleeps the calling thread; returns at once for 0 or less.
void SleepMilliseconds(std::int64_t milliseconds) noexcept;

// [any-thread] Gives the rest of the calling thread's time slice to others.
void YieldThread() noexcept;

// The longest name the system keeps for a thread, without the terminating zero.
inline constexpr std::size_t kMaxThreadNameLength = 15;

} // namespace Native
} // namespace miThread

MIREL_NAMESPACE_END
