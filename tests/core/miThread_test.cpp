#include "core/miThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <functional>
#include <stdexcept>

#include "core/WCDoorbell.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miThread;

// Only there so a broken lock fails the test instead of hanging it.
constexpr unsigned int kHangGuardMs = 10000;

int CallFunction(void *f) {
    return (*static_cast<std::function<int()> *>(f))();
}

// Starts `f` on a thread of the layer; the function must outlive the thread.
ThreadHandle Start(std::function<int()> &f) {
    ThreadHandle handle;
    EXPECT_EQ(eNoErr, StartThread(&CallFunction, &f, handle));
    return handle;
}

int Join(ThreadHandle &handle) {
    int code = INT_MIN;
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, kHangGuardMs));
    Close(handle);
    return code;
}

// Runs `f` on another thread and returns its result.
int OnOtherThread(std::function<int()> f) {
    ThreadHandle handle = Start(f);
    return Join(handle);
}

template <class TLock>
bool OtherThreadCanTake(TLock &lock) {
    return OnOtherThread([&lock] {
               bool const took = lock.tryobtain();
               if (took)
                   lock.release();
               return took ? 1 : 0;
           }) == 1;
}

// The exclusion itself is std::recursive_mutex's; what is the layer's own is the lock that does
// not exist before init and a second init that keeps the held one.
TEST(ThreadMutexInited, UninitialisedLockNeverBlocksAndASecondInitKeepsTheHeldLock) {
    ThreadMutexInited mutex;
    mutex.obtain();
    EXPECT_TRUE(OtherThreadCanTake(mutex));
    mutex.release();
    ASSERT_EQ(eNoErr, mutex.init());
    mutex.obtain();
    ASSERT_EQ(eNoErr, mutex.init());
    EXPECT_FALSE(OtherThreadCanTake(mutex));
    mutex.release();
    mutex.uninit();
    EXPECT_FALSE(mutex.is_init());
}

TEST(WCAtomicLock, OneTryRefusesATakenLockAndIsNotRecursive) {
    WCAtomicLock lock;
    EXPECT_TRUE(lock.obtain(1));
    EXPECT_FALSE(lock.obtain(1));
    EXPECT_TRUE(lock.is_taken());
    lock.release();
    EXPECT_TRUE(lock.obtain(0)); // a count of 0 still tries once
}

TEST(WCAtomicLock, FurtherTriesCatchAReleaseDuringThePause) {
    WCAtomicLock lock;
    ASSERT_TRUE(lock.obtain(1));
    std::function<int()> releaser = [&lock] {
        miThread::sleep(100 * 1000);
        lock.release();
        return 0;
    };
    ThreadHandle handle = Start(releaser);
    EXPECT_TRUE(lock.obtain(3)); // fails first, then a retry a second later finds it free
    Join(handle);
}

TEST(ThreadConditionSignal, WaiterSeesWhatWasSetBeforeTheSignal) {
    ThreadConditionSignal signal;
    bool ready = false;
    int payload = 0;
    std::function<int()> waiter = [&] {
        signal.obtain_mutex();
        while (!ready)
            signal.await_condition();
        int const seen = payload;
        signal.release_mutex();
        return seen;
    };
    ThreadHandle handle = Start(waiter);
    signal.obtain_mutex();
    payload = 42;
    ready = true;
    signal.signal_condition_broadcast();
    signal.release_mutex();
    EXPECT_EQ(42, Join(handle));
}

TEST(ThreadConditionSignal, TimedWaitReportsTimeoutAndHoldsTheLockAgain) {
    ThreadConditionSignal signal;
    signal.obtain_mutex();
    EXPECT_EQ(eTimeOut, signal.await_condition(5));
    EXPECT_EQ(0, OnOtherThread([&signal] { return signal.tryobtain_mutex() ? 1 : 0; }));
    signal.release_mutex();
}

TEST(Sleep, RoundsToTheNearestMillisecond) {
    struct WSRow {
        int microseconds;
        std::int64_t milliseconds;
    };
    constexpr WSRow kTable[] = {
        {INT_MIN, 0}, {0, 0},    {1, 0},      {499, 0},           {500, 1},
        {1499, 1},    {1500, 2}, {20499, 20}, {INT_MAX, 2147484},
    };
    for (auto const &row : kTable)
        EXPECT_EQ(row.milliseconds, SleepMillisecondsFor(row.microseconds)) << row.microseconds;
}

TEST(StartThread, DeliversExitCodesAndThrownCodes) {
    EXPECT_EQ(15, OnOtherThread([] { return 15; }));
    EXPECT_EQ(eFMFileNotFound, OnOtherThread([]() -> int { throw int(eFMFileNotFound); }));
    EXPECT_EQ(eExceptionErr, OnOtherThread([]() -> int { throw std::runtime_error("x"); }));
    ThreadHandle handle;
    EXPECT_EQ(eMemNullPointer, StartThread(nullptr, nullptr, handle));
    EXPECT_TRUE(handle.IsEmpty());
}

TEST(JoinThread, TimesOutWhileRunningAndGivesTheSameCodeOnEveryJoin) {
    WCDoorbell bell;
    std::function<int()> worker = [&bell] {
        bell.AwaitNotify();
        return 9;
    };
    ThreadHandle handle = Start(worker);
    int code = -1;
    EXPECT_EQ(eTimeOut, JoinThread(handle, &code, 10));
    EXPECT_EQ(-1, code);
    bell.Notify();
    EXPECT_EQ(eNoErr, JoinThread(handle, &code, kHangGuardMs));
    EXPECT_EQ(9, code);
    EXPECT_EQ(9, Join(handle));
    EXPECT_EQ(eUninitalized, JoinThread(handle, nullptr, 0)); // closed
}

TEST(JoinThread, AThreadCannotJoinOrKillItself) {
    WCDoorbell go;
    ThreadHandle handle;
    std::function<int()> self = [&] {
        go.AwaitNotify();
        return JoinThread(handle, nullptr, kInfiniteTimeout) == eThreadSafeError &&
               KillThread(handle) == eThreadSafeError;
    };
    handle = Start(self);
    ThreadHandle copy = handle; // copies refer to the same thread
    EXPECT_TRUE(copy == handle);
    go.Notify();
    EXPECT_EQ(1, Join(copy));
    Close(handle);
}

TEST(KillThread, EndsTheThreadAtItsNextSleepAndUnwindsItsStack) {
    struct WCMarkOnExit {
        std::atomic<bool> &flag;
        ~WCMarkOnExit() { flag = true; }
    };
    std::atomic<bool> unwound{false};
    WCAtomicLock lock;
    ASSERT_TRUE(lock.obtain(1));
    WCDoorbell started;
    std::function<int()> victim = [&]() -> int {
        WCMarkOnExit mark{unwound};
        try {
            started.Notify();
            lock.obtain(1000000); // retries a second apart for days
        } catch (std::exception const &) {
            return 1; // the kill must not look like a standard exception
        }
        return 2;
    };
    ThreadHandle handle = Start(victim);
    ASSERT_TRUE(started.AwaitNotify(kHangGuardMs));
    EXPECT_EQ(eNoErr, KillThread(handle));
    EXPECT_EQ(eUserCanceled, Join(handle));
    EXPECT_TRUE(unwound.load());
}

TEST(KillThread, IsVisibleToThreadsThatWaitElsewhere) {
    EXPECT_FALSE(IsKillRequested()); // not a thread of ours
    WCDoorbell never;
    std::function<int()> poller = [&never] {
        while (!IsKillRequested())
            never.AwaitNotify(1);
        return 4;
    };
    ThreadHandle handle = Start(poller);
    EXPECT_EQ(eNoErr, KillThread(handle));
    EXPECT_EQ(4, Join(handle));
}

TEST(Close, LetsTheThreadRunToItsEnd) {
    struct WSState {
        WCDoorbell go;
        std::atomic<int> value{0};
    };
    // Static: the thread outlives its handle. Its last touch of the state is the store of
    // `value`, which the loop below waits for.
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
    state.go.Notify();
    for (unsigned int waited = 0;
         state.value.load(std::memory_order_acquire) != 3 && waited < kHangGuardMs; ++waited)
        miThread::sleep(1000);
    EXPECT_EQ(3, state.value.load());
}

TEST(ThreadNames, LongNamesAreCutAtACharacterBoundary) {
    EXPECT_EQ(0, OnOtherThread([] {
                  char name[32];
                  SetThreadName("a-name-much-longer-than-fifteen");
                  if (!GetThreadName(name, sizeof(name)) || std::strcmp(name, "a-name-much-lon"))
                      return 1;
                  // "é" is two bytes; the cut must not keep only its first.
                  SetThreadName("abcdefghijklmn\xC3\xA9xyz");
                  if (!GetThreadName(name, sizeof(name)) || std::strcmp(name, "abcdefghijklmn"))
                      return 2;
                  return 0;
              }));
}

TEST(WCThreadRef, IsStablePerThreadAndNeverReused) {
    EXPECT_TRUE(WCThreadRef().IsNull());
    WCThreadRef const mine = GetCurrentThreadRef();
    EXPECT_EQ(mine, GetCurrentThreadRef());
    WCThreadRef first, second;
    OnOtherThread([&first] {
        first = GetCurrentThreadRef();
        return 0;
    });
    OnOtherThread([&second] {
        second = GetCurrentThreadRef();
        return 0;
    });
    EXPECT_NE(mine, first);
    EXPECT_NE(first, second); // even when the system reuses the thread itself
}

TEST(WCDoorbell, CountsRingsMadeBeforeAnyoneWaits) {
    WCDoorbell bell;
    EXPECT_FALSE(bell.AwaitNotify(0));
    bell.Notify();
    bell.Notify();
    EXPECT_EQ(2u, bell.GetPendingCount());
    EXPECT_TRUE(bell.AwaitNotify(0));
    bell.AwaitNotify();
    EXPECT_FALSE(bell.AwaitNotify(1));
}

} // namespace
