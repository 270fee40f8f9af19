#include "core/WCDoorbell.h"

#include <chrono>
#include <limits>

MIREL_NAMESPACE_BEGIN

namespace miThread {

void WCDoorbell::Notify() {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        // A bell rung four billion times without an answer stays rung; it cannot wrap to silent.
        if (m_count != std::numeric_limits<std::uint32_t>::max())
            ++m_count;
    }
    m_condition.notify_one();
}

void WCDoorbell::AwaitNotify() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_condition.wait(lock, [this] { return m_count != 0; });
    --m_count;
}

bool WCDoorbell::AwaitNotify(unsigned int timeoutMs) {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_condition.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                              [this] { return m_count != 0; }))
        return false;
    --m_count;
    return true;
}

std::uint32_t WCDoorbell::GetPendingCount() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_count;
}

} // namespace miThread

MIREL_NAMESPACE_END
