#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "core/miThread.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// A periodic timer served by a thread of its own. Start runs the thread; every period it calls
// TimerSelf, on that thread. Ticks keep to the schedule set at Start; when a tick runs late, the
// ones missed are skipped rather than fired in a burst. Stop ends the thread and returns once it
// has gone, so no call is under way or follows; called from inside the callback, Stop only asks
// the thread to end after it (the next Start or the destructor collects it).
//
// A derived class that overrides TimerSelf stops the timer in its own destructor, before its
// members go. A timer must not be destroyed from inside its own callback.
class WCTimer {
public:
    // A plain callback, for users that do not derive.
    using WTCallback = void (*)(void *refCon);

    // `periodMs`: the period in milliseconds; fractions are kept.
    explicit WCTimer(double periodMs) noexcept;
    virtual ~WCTimer();
    WCTimer(WCTimer const &) = delete;
    WCTimer &operator=(WCTimer const &) = delete;

    // [owner-thread] Starts the timer thread; eNoErr also when it runs already.
    // eOutOfRangeNumber for a period that is not a finite number above 0; the thread service's
    // code when the thread cannot be started.
    WTErr Start();

    // [owner-thread, timer-thread] Stops the timer; eNoErr also when it is not running.
    WTErr Stop();

    // [any-thread]
    bool IsRunning() const noexcept { return m_running.load(std::memory_order_acquire); }
    double GetPeriod() const noexcept { return m_periodMs.load(std::memory_order_relaxed); }
    // [any-thread] Takes effect from the next tick. eOutOfRangeNumber as for Start.
    WTErr SetPeriod(double periodMs);
    // [any-thread] Ticks fired since construction.
    std::uint64_t GetTickCount() const noexcept { return m_ticks.load(std::memory_order_relaxed); }

    // [owner-thread, before Start] The callback that the default TimerSelf calls.
    void SetCallback(WTCallback callback, void *refCon) noexcept {
        m_callback = callback;
        m_refCon = refCon;
    }

protected:
    // [timer-thread] One tick. The default calls the callback when there is one.
    virtual void TimerSelf();

private:
    static int ThreadEntry(void *self);
    void Run();
    void CollectThread();

    std::atomic<double> m_periodMs;
    WTCallback m_callback = nullptr;
    void *m_refCon = nullptr;

    miThread::ThreadHandle m_thread;
    miThread::WCThreadRef m_timerThread; // guarded by m_mutex
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stopRequested = false; // guarded by m_mutex
    std::atomic<bool> m_running{false};
    std::atomic<std::uint64_t> m_ticks{0};
};

} // namespace Utils

MIREL_NAMESPACE_END
