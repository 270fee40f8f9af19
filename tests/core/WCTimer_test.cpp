#include "core/WCTimer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <mutex>
#include <set>

#include "core/WCDoorbell.h"
#include "core/WUAssert.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using MIREL_NAMESPACE_NAME::Utils::WCTimer;

// Only there so a broken timer fails the test instead of hanging it.
constexpr unsigned int kHangGuardMs = 10000;

// Rings a bell on every tick and remembers which threads ticked.
class WCRingingTimer : public WCTimer {
public:
    WCRingingTimer() : WCTimer(1.0) {}
    ~WCRingingTimer() override { Stop(); }

    bool AwaitTicks(int ticks) {
        for (int i = 0; i < ticks; ++i)
            if (!bell.AwaitNotify(kHangGuardMs))
                return false;
        return true;
    }
    std::size_t ThreadCount() {
        std::lock_guard<std::mutex> lock(mutex);
        return threads.size();
    }

    miThread::WCDoorbell bell;
    std::mutex mutex;
    std::set<std::uint64_t> threads;
    std::atomic<int> stopAtTick{0};
    std::atomic<int> calls{0};

protected:
    void TimerSelf() override {
        int const n = ++calls;
        {
            std::lock_guard<std::mutex> lock(mutex);
            threads.insert(miThread::GetCurrentThreadRef().GetID());
        }
        if (n == stopAtTick.load())
            Stop();
        bell.Notify();
    }
};

TEST(WCTimer, TicksOnItsOwnThreadAndNoCallFollowsStop) {
    WCRingingTimer timer;
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_EQ(eNoErr, timer.Start()); // already running: still one thread
    EXPECT_TRUE(timer.IsRunning());
    ASSERT_TRUE(timer.AwaitTicks(5));
    EXPECT_EQ(eNoErr, timer.Stop());
    EXPECT_FALSE(timer.IsRunning());
    int const calls = timer.calls.load();
    miThread::sleep(20 * 1000);
    EXPECT_EQ(calls, timer.calls.load());
    EXPECT_EQ(static_cast<std::uint64_t>(calls), timer.GetTickCount());
    EXPECT_EQ(1u, timer.ThreadCount());
    EXPECT_EQ(0u, timer.threads.count(miThread::GetCurrentThreadRef().GetID()));

    while (timer.bell.AwaitNotify(0)) {
    }                                 // rings of ticks after the fifth
    ASSERT_EQ(eNoErr, timer.Start()); // a restart runs a new thread
    ASSERT_TRUE(timer.AwaitTicks(1));
    timer.Stop();
    EXPECT_EQ(2u, timer.ThreadCount());
}

TEST(WCTimer, StopFromInsideTheCallbackEndsAfterThatCall) {
    WCRingingTimer timer;
    timer.stopAtTick = 3;
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_TRUE(timer.AwaitTicks(3));
    for (unsigned int i = 0; i < kHangGuardMs && timer.IsRunning(); ++i)
        miThread::sleep(1000);
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_EQ(3, timer.calls.load());
    timer.stopAtTick = 0;
    ASSERT_EQ(eNoErr, timer.Start()); // the finished thread is collected first
    ASSERT_TRUE(timer.AwaitTicks(1));
}

TEST(WCTimer, DestructorStopsAPlainCallbackTimer) {
    struct WSCount {
        miThread::WCDoorbell bell;
        std::atomic<int> ticks{0};
    } count;
    {
        WCTimer timer(0.5);
        timer.SetCallback(
            [](void *p) {
                auto *c = static_cast<WSCount *>(p);
                ++c->ticks;
                c->bell.Notify();
            },
            &count);
        ASSERT_EQ(eNoErr, timer.Start());
        ASSERT_TRUE(count.bell.AwaitNotify(kHangGuardMs));
    }
    int const after = count.ticks.load();
    miThread::sleep(10 * 1000);
    EXPECT_EQ(after, count.ticks.load());
}

std::atomic<int> gAsserts{0};
void CountAssert(const char *, int, const char *) {
    ++gAsserts;
}

TEST(WCTimer, RefusesPeriodsThatAreNotPositiveNumbers) {
    WTAssertHandler const previous = SetAssertHandler(&CountAssert);
    gAsserts = 0;
    for (double bad : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        WCTimer timer(bad);
        EXPECT_EQ(eOutOfRangeNumber, timer.Start()) << bad;
        EXPECT_FALSE(timer.IsRunning());
    }
    WCTimer timer(10.0);
    EXPECT_EQ(eOutOfRangeNumber, timer.SetPeriod(-1.0));
    EXPECT_EQ(10.0, timer.GetPeriod());
    EXPECT_EQ(5, gAsserts.load());
    SetAssertHandler(previous);
}

} // namespace
