#pragma once

#include <atomic>
#include <compare>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// A small layer over the system's threads: locks, a condition, thread start, join and names, and
// a sleep with the library's rounding. The system primitives stay behind core/WCNativeThread.h.
namespace miThread {

// A recursive lock that exists only after `init`. An object keeps it uninitialised to say that it
// needs no locking: then `obtain`, `tryobtain` and `release` do nothing and never fail.
// `init` and `uninit` belong to the owner and must not race with the other operations.
class ThreadMutexInited {
public:
    ThreadMutexInited() noexcept = default;
    ~ThreadMutexInited();
    ThreadMutexInited(ThreadMutexInited const &) = delete;
    ThreadMutexInited &operator=(ThreadMutexInited const &) = delete;

    // [owner] Creates the lock; does nothing when it exists. eMemOutOfMemory when it cannot.
    WTErr init() noexcept;
    // [owner] Destroys the lock; it must not be held.
    void uninit() noexcept;
    // [any-thread]
    bool is_init() const noexcept { return m_mutex != nullptr; }

    // [any-thread] Waits for the lock; the holder may take it again (recursive).
    void obtain();
    // [any-thread] Takes the lock when free; true also when there is no lock to take.
    bool tryobtain() noexcept;
    // [any-thread] Gives back one level of holding.
    void release() noexcept;

private:
    std::recursive_mutex *m_mutex = nullptr;
};

// Holds a ThreadMutexInited for the life of the object.
class WCStThreadMutexLocker {
public:
    explicit WCStThreadMutexLocker(ThreadMutexInited &mutex) : m_mutex(mutex) { m_mutex.obtain(); }
    ~WCStThreadMutexLocker() { m_mutex.release(); }
    WCStThreadMutexLocker(WCStThreadMutexLocker const &) = delete;
    WCStThreadMutexLocker &operator=(WCStThreadMutexLocker const &) = delete;

private:
    ThreadMutexInited &m_mutex;
};

// A lock in one 32-bit word: 0 free, 1 taken. Not recursive: a holder that obtains it again
// fails (or, with more tries, waits for itself). It does not spin: between tries it sleeps.
class WCAtomicLock {
public:
    // [any-thread] One compare-and-swap from 0 to 1; when it fails, up to tries - 1 further
    // attempts, each after a sleep of one second (a miThread::sleep, so a killed thread ends
    // there). A count of 0 counts as 1. Returns whether the lock was taken.
    bool obtain(unsigned int tries = 1);
    // [any-thread] Frees the lock, whoever holds it.
    void release() noexcept { m_word.store(0, std::memory_order_release); }
    // [any-thread] A snapshot: true while someone holds the lock.
    bool is_taken() const noexcept { return m_word.load(std::memory_order_relaxed) != 0; }

    // The pause between two attempts.
    static constexpr int kRetrySleepMilliseconds = 1000;

private:
    std::atomic<std::int32_t> m_word{0};
};

// A lock and a condition, used the classic way: obtain the lock, test the predicate, await the
// condition (which gives the lock up while waiting and takes it back before returning), release.
// An await may also return without a signal, so waiters test their predicate in a loop.
class ThreadConditionSignal {
public:
    // [any-thread]
    void obtain_mutex();
    bool tryobtain_mutex() noexcept;
    void release_mutex() noexcept;

    // [lock-holder] Waits for a signal.
    void await_condition();
    // [lock-holder] Waits at most `timeoutMs` milliseconds (negative waits for ever). eNoErr when
    // woken, eTimeOut when the time ran out.
    WTErr await_condition(int timeoutMs);

    // [any-thread] Wakes one waiter, or all of them.
    void signal_condition_single() noexcept { m_condition.notify_one(); }
    void signal_condition_broadcast() noexcept { m_condition.notify_all(); }

private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
};

// Identifies a thread of the process; the default value (zero) is no thread. Ids are never reused
// while the process runs, so a stored ref never matches a later thread by accident.
class WCThreadRef {
public:
    constexpr WCThreadRef() noexcept = default;
    constexpr bool IsNull() const noexcept { return m_id == 0; }
    constexpr std::uint64_t GetID() const noexcept { return m_id; }
    friend constexpr auto operator<=>(WCThreadRef, WCThreadRef) noexcept = default;

private:
    friend WCThreadRef GetCurrentThreadRef() noexcept;
    constexpr explicit WCThreadRef(std::uint64_t id) noexcept : m_id(id) {}
    std::uint64_t m_id = 0;
};

// [any-thread] The ref of the calling thread.
WCThreadRef GetCurrentThreadRef() noexcept;

struct WSThreadRecord;

// Refers to a thread started by StartThread; empty by default. Copies refer to the same thread.
// The thread lives on its own: closing every handle lets it run to its end unobserved.
class ThreadHandle {
public:
    ThreadHandle() noexcept = default;
    bool IsEmpty() const noexcept { return m_record == nullptr; }
    friend bool operator==(ThreadHandle const &a, ThreadHandle const &b) noexcept {
        return a.m_record == b.m_record;
    }

private:
    friend WTErr StartThread(int (*)(void *), void *, int, ThreadHandle &, std::size_t);
    friend WTErr JoinThread(ThreadHandle const &, int *, unsigned int);
    friend WTErr KillThread(ThreadHandle const &);
    friend void Close(ThreadHandle &) noexcept;
    std::shared_ptr<WSThreadRecord> m_record;
};

// A join timeout that never runs out.
inline constexpr unsigned int kInfiniteTimeout = 0xFFFFFFFFu;

// The priorities that StartThread understands; values between are allowed.
inline constexpr int kThreadPriorityLowest = -2;
inline constexpr int kThreadPriorityNormal = 0;
inline constexpr int kThreadPriorityHighest = 2;
inline constexpr int kThreadPriorityTimeCritical = 15;

// [any-thread] Runs `entry(arg)` on a new thread and stores its handle in `outHandle` (emptied
// first). The entry's result becomes the thread's exit code; an int thrown out of it becomes the
// exit code as well, any other standard exception eExceptionErr. The priority is best effort.
// A stack size of 0 keeps the system default.
WTErr StartThread(int (*entry)(void *), void *arg, int priority, ThreadHandle &outHandle,
                  std::size_t stackSize = 0);
inline WTErr StartThread(int (*entry)(void *), void *arg, ThreadHandle &outHandle) {
    return StartThread(entry, arg, kThreadPriorityNormal, outHandle);
}

// [any-thread] Waits at most `timeoutMs` for the thread to end, then stores its exit code in
// `exitCode` (when not null). eTimeOut while it still runs, eUninitalized for an empty handle,
// eThreadSafeError when a thread tries to join itself. Joining again gives the same code.
WTErr JoinThread(ThreadHandle const &handle, int *exitCode, unsigned int timeoutMs);

// [any-thread] Asks the thread to end and wakes it from miThread::sleep. The thread ends at its
// next miThread::sleep (including the pauses of WCAtomicLock::obtain), which unwinds its stack
// back to its entry so its destructors run; its exit code becomes eUserCanceled. A thread that
// waits elsewhere sees the request through IsKillRequested. Nothing is cut off in the middle, so
// no lock is left held and no object half-written. eThreadSafeError when a thread tries to kill
// itself; eNoErr when the thread had ended.
WTErr KillThread(ThreadHandle const &handle);

// [any-thread] True on a thread of StartThread that KillThread has asked to end.
bool IsKillRequested() noexcept;

// Thrown out of miThread::sleep on a thread asked to end, and caught where the thread started.
// It is not a standard exception, so handlers of those let it pass; code that catches everything
// rethrows it.
struct WSThreadKilled {};

// [any-thread] Lets go of the handle and empties it; the thread itself runs on.
void Close(ThreadHandle &handle) noexcept;

// [any-thread] Names the calling thread (cut to what the system keeps, 15 bytes on Linux).
void SetThreadName(const char *name) noexcept;

// [any-thread] Copies the calling thread's name into `buffer` (always terminated).
bool GetThreadName(char *buffer, std::size_t size) noexcept;

// The milliseconds that sleep(microseconds) sleeps: the argument rounded to the nearest
// millisecond, halves up, so 499 gives 0 and 500 gives 1; below 1 gives 0. Computed in 64 bits
// so the largest int does not overflow.
constexpr std::int64_t SleepMillisecondsFor(int microseconds) noexcept {
    if (microseconds < 1)
        return 0;
    return (static_cast<std::int64_t>(microseconds) + 500) / 1000;
}

// [any-thread] Sleeps the calling thread for SleepMillisecondsFor(microseconds) milliseconds.
// On a thread asked to end (KillThread) it throws WSThreadKilled instead, at once.
void sleep(int microseconds);

} // namespace miThread

MIREL_NAMESPACE_END
