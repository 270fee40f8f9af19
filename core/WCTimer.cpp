#include "core/WCTimer.h"

#include <chrono>
#include <cmath>

#include "core/WUAssert.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

namespace {

bool IsValidPeriod(double periodMs) noexcept {
    return std::isfinite(periodMs) && periodMs > 0.0;
}

std::chrono::steady_clock::duration ToDuration(double periodMs) {
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double, std::milli>(periodMs));
}

} // namespace

WCTimer::WCTimer(double periodMs) noexcept : m_periodMs(periodMs) {}

WCTimer::~WCTimer() {
    Stop();
}

WTErr WCTimer::SetPeriod(double periodMs) {
    MIREL_ASSERT_RETURN(IsValidPeriod(periodMs), eOutOfRangeNumber);
    m_periodMs.store(periodMs, std::memory_order_relaxed);
    return eNoErr;
}

WTErr WCTimer::Start() {
    MIREL_ASSERT_RETURN(IsValidPeriod(GetPeriod()), eOutOfRangeNumber);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        // Started again from inside the callback after a Stop there: the thread simply goes on.
        if (m_timerThread == miThread::GetCurrentThreadRef()) {
            m_stopRequested = false;
            return eNoErr;
        }
        if (m_running.load(std::memory_order_relaxed) && !m_stopRequested)
            return eNoErr;
    }
    // A thread told to stop from inside its callback may still be finishing.
    CollectThread();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopRequested = false;
    }
    m_running.store(true, std::memory_order_release);
    WTErr const err = miThread::StartThread(&WCTimer::ThreadEntry, this, m_thread);
    if (err != eNoErr)
        m_running.store(false, std::memory_order_release);
    return err;
}

WTErr WCTimer::Stop() {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopRequested = true;
        // From inside the callback the thread cannot wait for itself; it ends after the call.
        if (m_timerThread == miThread::GetCurrentThreadRef())
            return eNoErr;
    }
    m_wake.notify_all();
    CollectThread();
    return eNoErr;
}

void WCTimer::CollectThread() {
    if (m_thread.IsEmpty())
        return;
    miThread::JoinThread(m_thread, nullptr, miThread::kInfiniteTimeout);
    miThread::Close(m_thread);
}

int WCTimer::ThreadEntry(void *self) {
    static_cast<WCTimer *>(self)->Run();
    return 0;
}

void WCTimer::Run() {
    miThread::SetThreadName("mirel-timer");
    auto next = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(m_mutex);
    m_timerThread = miThread::GetCurrentThreadRef();
    for (;;) {
        next += ToDuration(GetPeriod());
        auto const now = std::chrono::steady_clock::now();
        // More than a period late (a slow callback, a busy machine): tick once now instead of
        // firing the missed ticks in a burst.
        if (next < now)
            next = now;
        if (m_wake.wait_until(lock, next, [this] { return m_stopRequested; }))
            break;
        lock.unlock();
        m_ticks.fetch_add(1, std::memory_order_relaxed);
        TimerSelf();
        lock.lock();
    }
    m_timerThread = miThread::WCThreadRef();
    m_running.store(false, std::memory_order_release);
}

void WCTimer::TimerSelf() {
    if (m_callback != nullptr)
        m_callback(m_refCon);
}

} // namespace Utils

MIREL_NAMESPACE_END
