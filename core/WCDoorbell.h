#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace miThread {

// Wakes a worker when there is work: producers ring with Notify, the worker waits in AwaitNotify.
// Rings are counted, so one rung before the worker waits is not lost, and each await takes one.
class WCDoorbell {
public:
    // [any-thread] Rings once and wakes one waiter.
    void Notify();

    // [worker-thread] Waits for a ring and takes it.
    void AwaitNotify();

    // [worker-thread] Waits at most `timeoutMs` milliseconds; true when a ring was taken.
    bool AwaitNotify(unsigned int timeoutMs);

    // [any-thread] Rings not yet taken; a snapshot.
    std::uint32_t GetPendingCount() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_condition;
    std::uint32_t m_count = 0;
};

} // namespace miThread

MIREL_NAMESPACE_END
