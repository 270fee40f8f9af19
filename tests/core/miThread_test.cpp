#include "core/miThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <shared_mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/WCDoorbell.h"
#include "core/WCSharedMutexLocker.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miThread;

// A generous bound, only there so a broken lock fails the test instead of hanging it.
constexpr unsigned int kHangGuardMs = 10000;

// Runs a lambda on a thread of the layer and joins it with the hang guard.
template <class F>
class WCRunner {
public:
    explicit WCRunner(F f) : m_f(std::move(f)) {
        EXPECT_EQ(eNoErr, StartThread(&Entry, this, m_handle));
    }
    ~WCRunner() {
        if (!m_handle.IsEmpty())
            Join();
    }
    int Join() {
        int code = INT_MIN;
        EXPECT_EQ(eNoErr, JoinThread(m_handle, &code, kHangGuardMs));
        Close(m_handle);
        return code;
    }
    ThreadHandle &Handle() { return m_handle; }

private:
    static int Entry(void *self) { return static_cast<WCRunner *>(self)->m_f(); }
    F m_f;
    ThreadHandle m_handle;
};

// ---------------------------------------------------------------------------------------------

TEST(ThreadMutexInited, UninitialisedLockNeverBlocksAnyThread) {
    ThreadMutexInited mutex;
    EXPECT_FALSE(mutex.is_init());
    mutex.obtain();
    mutex.obtain();
    EXPECT_TRUE(mutex.tryobtain());
    WCRunner other([&mutex] {
        mutex.obtain(); // must not wait for the "holder" on the main thread
        return mutex.tryobtain() ? 1 : 0;
    });
    EXPECT_EQ(1, other.Join());
    mutex.release();
    mutex.release();
}

TEST(ThreadMutexInited, IsRecursiveAndExcludesOtherThreadsUntilFullyReleased) {
    ThreadMutexInited mutex;
    ASSERT_EQ(eNoErr, mutex.init());
    ASSERT_TRUE(mutex.is_init());
    auto otherCanTake = [&mutex] {
        WCRunner probe([&mutex] {
            bool const took = mutex.tryobtain();
            if (took)
                mutex.release();
            return took ? 1 : 0;
        });
        return probe.Join() == 1;
    };
    mutex.obtain();
    EXPECT_TRUE(mutex.tryobtain()); // second level, same thread
    EXPECT_FALSE(otherCanTake());
    mutex.release();
    EXPECT_FALSE(otherCanTake());
    mutex.release();
    EXPECT_TRUE(otherCanTake());
}

TEST(ThreadMutexInited, InitTwiceKeepsTheSameLockAndUninitGoesBackToNoLocking) {
    ThreadMutexInited mutex;
    ASSERT_EQ(eNoErr, mutex.init());
    mutex.obtain();
    ASSERT_EQ(eNoErr, mutex.init()); // must not replace the held lock
    WCRunner probe([&mutex] { return mutex.tryobtain() ? 1 : 0; });
    EXPECT_EQ(0, probe.Join());
    mutex.release();
    mutex.uninit();
    EXPECT_FALSE(mutex.is_init());
    EXPECT_TRUE(mutex.tryobtain());
}

TEST(WCStThreadMutexLocker, ReleasesOnScopeExit) {
    ThreadMutexInited mutex;
    ASSERT_EQ(eNoErr, mutex.init());
    {
        WCStThreadMutexLocker hold(mutex);
        WCRunner probe([&mutex] { return mutex.tryobtain() ? 1 : 0; });
        EXPECT_EQ(0, probe.Join());
    }
    WCRunner probe([&mutex] {
        bool const took = mutex.tryobtain();
        if (took)
            mutex.release();
        return took ? 1 : 0;
    });
    EXPECT_EQ(1, probe.Join());
}

// ---------------------------------------------------------------------------------------------

TEST(WCAtomicLock, TakesAFreeLockAndRefusesATakenOne) {
    WCAtomicLock lock;
    EXPECT_FALSE(lock.is_taken());
    EXPECT_TRUE(lock.obtain(1));
    EXPECT_TRUE(lock.is_taken());
    EXPECT_FALSE(lock.obtain(1)); // one try, no pause, not recursive
    EXPECT_TRUE(lock.is_taken());
    lock.release();
    EXPECT_TRUE(lock.obtain(0)); // a count of 0 still tries once
    lock.release();
}

TEST(WCAtomicLock, FurtherTriesCatchAReleaseDuringThePause) {
    WCAtomicLock lock;
    ASSERT_TRUE(lock.obtain(1));
    WCRunner releaser([&lock] {
        miThread::sleep(100 * 1000);
        lock.release();
        return 0;
    });
    // The first try fails (the releaser waits 100 ms); the retries a second apart catch it.
    EXPECT_TRUE(lock.obtain(3));
    releaser.Join();
    lock.release();
}

TEST(WCAtomicLock, OnlyOneOfManyContendersHoldsItAtATime) {
    WCAtomicLock lock;
    std::atomic<int> inside{0};
    std::atomic<int> maxInside{0};
    std::atomic<int> entries{0};
    auto worker = [&] {
        for (int i = 0; i < 2000; ++i) {
            while (!lock.obtain(1)) {
            }
            int const now = inside.fetch_add(1) + 1;
            int seen = maxInside.load();
            while (now > seen && !maxInside.compare_exchange_weak(seen, now)) {
            }
            ++entries;
            inside.fetch_sub(1);
            lock.release();
        }
        return 0;
    };
    WCRunner a(worker), b(worker), c(worker);
    a.Join();
    b.Join();
    c.Join();
    EXPECT_EQ(1, maxInside.load());
    EXPECT_EQ(6000, entries.load());
}

// ---------------------------------------------------------------------------------------------

TEST(ThreadConditionSignal, WaiterSeesThePredicateSetBeforeTheSignal) {
    ThreadConditionSignal signal;
    bool ready = false;
    int payload = 0;
    WCRunner waiter([&] {
        signal.obtain_mutex();
        while (!ready)
            signal.await_condition();
        int const seen = payload;
        signal.release_mutex();
        return seen;
    });
    signal.obtain_mutex();
    payload = 42;
    ready = true;
    signal.signal_condition_single();
    signal.release_mutex();
    EXPECT_EQ(42, waiter.Join());
}

TEST(ThreadConditionSignal, TimedWaitReportsTimeoutAndKeepsTheLock) {
    ThreadConditionSignal signal;
    signal.obtain_mutex();
    EXPECT_EQ(eTimeOut, signal.await_condition(5));
    // Still held by us after the wait.
    WCRunner probe([&signal] {
        bool const took = signal.tryobtain_mutex();
        if (took)
            signal.release_mutex();
        return took ? 1 : 0;
    });
    EXPECT_EQ(0, probe.Join());
    signal.release_mutex();
}

TEST(ThreadConditionSignal, BroadcastWakesEveryWaiter) {
    ThreadConditionSignal signal;
    bool go = false;
    std::atomic<int> waiting{0};
    auto waiter = [&] {
        signal.obtain_mutex();
        ++waiting;
        while (!go)
            signal.await_condition(-1);
        signal.release_mutex();
        return 7;
    };
    WCRunner a(waiter), b(waiter), c(waiter);
    for (;;) {
        signal.obtain_mutex();
        bool const all = waiting.load() == 3;
        if (all) {
            go = true;
            signal.signal_condition_broadcast();
        }
        signal.release_mutex();
        if (all)
            break;
        miThread::sleep(1000);
    }
    EXPECT_EQ(7, a.Join());
    EXPECT_EQ(7, b.Join());
    EXPECT_EQ(7, c.Join());
}

// ---------------------------------------------------------------------------------------------

struct WSRounding {
    int microseconds;
    std::int64_t milliseconds;
};

TEST(Sleep, RoundsToTheNearestMillisecond) {
    constexpr WSRounding kTable[] = {
        {INT_MIN, 0},       {-1, 0},   {0, 0},    {1, 0},      {499, 0},    {500, 1},
        {999, 1},           {1499, 1}, {1500, 2}, {20000, 20}, {20499, 20}, {20500, 21},
        {INT_MAX, 2147484},
    };
    for (auto const &row : kTable)
        EXPECT_EQ(row.milliseconds, SleepMillisecondsFor(row.microseconds)) << row.microseconds;
    static_assert(SleepMillisecondsFor(499) == 0 && SleepMillisecondsFor(500) == 1);
}

// ---------------------------------------------------------------------------------------------

TEST(StartThread, DeliversTheExitCodeAndJoinsAgainWithTheSameCode) {
    ThreadHandle handle;
    int arg = 5;
    ASSERT_EQ(eNoErr, StartThread([](void *p) { return *static_cast<int *>(p) * 3; }, &arg,
                                  kThreadPriorityHighest, handle));
    EXPECT_FALSE(handle.IsEmpty());
    int code = 0;
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, kInfiniteTimeout));
    EXPECT_EQ(15, code);
    code = 0;
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, 0));
    EXPECT_EQ(15, code);
    Close(handle);
    EXPECT_TRUE(handle.IsEmpty());
}

TEST(StartThread, RefusesANullEntryAndLeavesTheHandleEmpty) {
    ThreadHandle handle;
    EXPECT_EQ(eMemNullPointer, StartThread(nullptr, nullptr, handle));
    EXPECT_TRUE(handle.IsEmpty());
}

TEST(StartThread, ThrownCodesBecomeExitCodes) {
    WCRunner throwsInt([]() -> int { throw int(eFMFileNotFound); });
    EXPECT_EQ(eFMFileNotFound, throwsInt.Join());
    WCRunner throwsStd([]() -> int { throw std::runtime_error("boom"); });
    EXPECT_EQ(eExceptionErr, throwsStd.Join());
}

TEST(JoinThread, TimesOutWhileTheThreadRunsAndSucceedsAfter) {
    WCDoorbell bell;
    WCRunner worker([&bell] {
        bell.AwaitNotify();
        return 9;
    });
    int code = -1;
    EXPECT_EQ(eTimeOut, JoinThread(worker.Handle(), &code, 0));
    EXPECT_EQ(eTimeOut, JoinThread(worker.Handle(), &code, 10));
    EXPECT_EQ(-1, code); // untouched on timeout
    bell.Notify();
    EXPECT_EQ(9, worker.Join());
}

TEST(JoinThread, RefusesAnEmptyHandleAndJoiningOneself) {
    EXPECT_EQ(eUninitalized, JoinThread(ThreadHandle(), nullptr, 0));
    EXPECT_EQ(eUninitalized, KillThread(ThreadHandle()));

    struct WSSelf {
        WCDoorbell go;
        ThreadHandle handle;
    } self;
    ASSERT_EQ(eNoErr, StartThread(
                          [](void *p) {
                              auto *s = static_cast<WSSelf *>(p);
                              s->go.AwaitNotify();
                              WTErr const join = JoinThread(s->handle, nullptr, kInfiniteTimeout);
                              WTErr const kill = KillThread(s->handle);
                              return join == eThreadSafeError && kill == eThreadSafeError ? 1 : 0;
                          },
                          &self, self.handle));
    ThreadHandle mine = self.handle; // copies refer to the same thread
    EXPECT_TRUE(mine == self.handle);
    self.go.Notify();
    int code = 0;
    EXPECT_EQ(eNoErr, JoinThread(mine, &code, kHangGuardMs));
    EXPECT_EQ(1, code);
    Close(mine);
    Close(self.handle);
}

TEST(KillThread, EndsASleepingThreadAndUnwindsItsStack) {
    struct WSState {
        std::atomic<bool> started{false};
        std::atomic<bool> unwound{false};
    } state;
    struct WCMarkOnExit {
        std::atomic<bool> &flag;
        ~WCMarkOnExit() { flag = true; }
    };
    ThreadHandle handle;
    ASSERT_EQ(eNoErr, StartThread(
                          [](void *p) {
                              auto *s = static_cast<WSState *>(p);
                              WCMarkOnExit mark{s->unwound};
                              s->started = true;
                              for (;;)
                                  miThread::sleep(1000 * 1000);
                              return 0;
                          },
                          &state, handle));
    while (!state.started)
        miThread::sleep(1000);
    EXPECT_EQ(eNoErr, KillThread(handle));
    int code = 0;
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, kHangGuardMs));
    EXPECT_EQ(eUserCanceled, code);
    EXPECT_TRUE(state.unwound.load());
    EXPECT_EQ(eNoErr, KillThread(handle)); // already ended
    Close(handle);
}

TEST(KillThread, PassesHandlersOfStandardExceptionsAndEndsLockRetries) {
    WCAtomicLock lock;
    ASSERT_TRUE(lock.obtain(1));
    WCDoorbell started;
    struct WSArgs {
        WCAtomicLock *lock;
        WCDoorbell *started;
    } args{&lock, &started};
    ThreadHandle handle;
    ASSERT_EQ(eNoErr, StartThread(
                          [](void *p) {
                              auto *a = static_cast<WSArgs *>(p);
                              try {
                                  a->started->Notify();
                                  a->lock->obtain(1000000); // would wait for days
                              } catch (std::exception const &) {
                                  return 1;
                              }
                              return 2;
                          },
                          &args, handle));
    ASSERT_TRUE(started.AwaitNotify(kHangGuardMs));
    EXPECT_EQ(eNoErr, KillThread(handle));
    int code = 0;
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, kHangGuardMs));
    EXPECT_EQ(eUserCanceled, code);
    EXPECT_TRUE(lock.is_taken()); // still ours: the killed thread never took it
    Close(handle);
}

TEST(KillThread, IsVisibleToThreadsThatWaitElsewhere) {
    EXPECT_FALSE(IsKillRequested()); // not a thread of ours
    WCDoorbell never;
    ThreadHandle handle;
    ASSERT_EQ(eNoErr, StartThread(
                          [](void *p) {
                              auto *bell = static_cast<WCDoorbell *>(p);
                              while (!IsKillRequested())
                                  bell->AwaitNotify(1);
                              return 4;
                          },
                          &never, handle));
    EXPECT_EQ(eNoErr, KillThread(handle));
    int code = 0;
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, kHangGuardMs));
    EXPECT_EQ(4, code);
    Close(handle);
}

TEST(Close, LetsTheThreadRunToItsEnd) {
    struct WSState {
        WCDoorbell go;
        std::atomic<int> value{0};
    };
    // Static: the thread outlives its handle, so the state must not go with this scope. The
    // thread's last touch of it is the store of `value`, which the loop below waits for.
    static WSState state;
    state.value = 0;
    ThreadHandle handle;
    ASSERT_EQ(eNoErr, StartThread(
                          [](void *p) {
                              auto *s = static_cast<WSState *>(p);
                              s->go.AwaitNotify();
                              s->value.store(3, std::memory_order_release);
                              return 0;
                          },
                          &state, handle));
    Close(handle);
    EXPECT_TRUE(handle.IsEmpty());
    state.go.Notify();
    for (unsigned int waited = 0;
         state.value.load(std::memory_order_acquire) != 3 && waited < kHangGuardMs; ++waited)
        miThread::sleep(1000);
    EXPECT_EQ(3, state.value.load());
}

// ---------------------------------------------------------------------------------------------

TEST(ThreadNames, NameTheCallingThreadAndCutLongNames) {
    WCRunner named([] {
        SetThreadName("worker-one");
        char name[32];
        if (!GetThreadName(name, sizeof(name)) || std::strcmp(name, "worker-one") != 0)
            return 1;
        SetThreadName("a-name-much-longer-than-fifteen");
        if (!GetThreadName(name, sizeof(name)) || std::strcmp(name, "a-name-much-lon") != 0)
            return 2;
        // "é" is two bytes; the cut must not leave its first byte alone at the end.
        SetThreadName("abcdefghijklmn\xC3\xA9xyz");
        if (!GetThreadName(name, sizeof(name)) || std::strcmp(name, "abcdefghijklmn") != 0)
            return 3;
        char tiny[4];
        if (!GetThreadName(tiny, sizeof(tiny)) || std::strcmp(tiny, "abc") != 0)
            return 4;
        return 0;
    });
    EXPECT_EQ(0, named.Join());
}

TEST(WCThreadRef, IsStablePerThreadDistinctAcrossThreadsAndNullByDefault) {
    EXPECT_TRUE(WCThreadRef().IsNull());
    WCThreadRef const mine = GetCurrentThreadRef();
    EXPECT_FALSE(mine.IsNull());
    EXPECT_EQ(mine, GetCurrentThreadRef());
    WCThreadRef first, second;
    {
        WCRunner a([&first] {
            first = GetCurrentThreadRef();
            return 0;
        });
        a.Join();
    }
    {
        WCRunner b([&second] {
            second = GetCurrentThreadRef();
            return 0;
        });
        b.Join();
    }
    EXPECT_NE(mine, first);
    EXPECT_NE(mine, second);
    // Not reused, even when the system reuses the thread itself.
    EXPECT_NE(first, second);
}

// ---------------------------------------------------------------------------------------------

TEST(WCDoorbell, KeepsRingsMadeBeforeAnyoneWaits) {
    WCDoorbell bell;
    EXPECT_FALSE(bell.AwaitNotify(0));
    bell.Notify();
    bell.Notify();
    EXPECT_EQ(2u, bell.GetPendingCount());
    EXPECT_TRUE(bell.AwaitNotify(0));
    bell.AwaitNotify();
    EXPECT_EQ(0u, bell.GetPendingCount());
    EXPECT_FALSE(bell.AwaitNotify(1));
}

TEST(WCDoorbell, WakesAWorkerForEveryRing) {
    WCDoorbell bell;
    std::atomic<int> answered{0};
    WCRunner worker([&] {
        for (int i = 0; i < 1000; ++i) {
            bell.AwaitNotify();
            ++answered;
        }
        return 0;
    });
    for (int i = 0; i < 1000; ++i)
        bell.Notify();
    worker.Join();
    EXPECT_EQ(1000, answered.load());
}

// ---------------------------------------------------------------------------------------------

TEST(WCSharedMutexLocker, ReadersShareAndAWriterExcludes) {
    std::shared_mutex mutex;
    auto probe = [&mutex](bool wantShared) {
        WCRunner p([&mutex, wantShared] {
            bool const took = wantShared ? mutex.try_lock_shared() : mutex.try_lock();
            if (took)
                wantShared ? mutex.unlock_shared() : mutex.unlock();
            return took ? 1 : 0;
        });
        return p.Join() == 1;
    };
    {
        WCSharedMutexLocker reader(mutex, true);
        EXPECT_TRUE(reader.IsShared());
        EXPECT_TRUE(probe(true));
        EXPECT_FALSE(probe(false));
    }
    {
        WCSharedMutexLocker writer(mutex, false);
        EXPECT_FALSE(writer.IsShared());
        EXPECT_FALSE(probe(true));
        EXPECT_FALSE(probe(false));
    }
    EXPECT_TRUE(probe(false));
}

} // namespace
