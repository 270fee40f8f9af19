#include "core/WCTimer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <mutex>
#include <set>

#include "core/WCDoorbell.h"
#include "core/WUAssert.h"
#include "core/miThread.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using MIREL_NAMESPACE_NAME::Utils::WCTimer;

// Only there so a broken timer fails the test instead of hanging it.
constexpr unsigned int kHangGuardMs = 10000;

// Rings a bell on every tick and remembers which threads ticked.
class WCRingingTimer : public WCTimer {
public:
    explicit WCRingingTimer(double periodMs) : WCTimer(periodMs) {}
    ~WCRingingTimer() override { Stop(); }

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

bool AwaitTicks(WCRingingTimer &timer, int ticks) {
    for (int i = 0; i < ticks; ++i)
        if (!timer.bell.AwaitNotify(kHangGuardMs))
            return false;
    return true;
}

TEST(WCTimer, TicksOnItsOwnThreadUntilStopped) {
    WCRingingTimer timer(1.0);
    EXPECT_FALSE(timer.IsRunning());
    ASSERT_EQ(eNoErr, timer.Start());
    EXPECT_TRUE(timer.IsRunning());
    ASSERT_TRUE(AwaitTicks(timer, 5));
    EXPECT_EQ(eNoErr, timer.Stop());
    EXPECT_FALSE(timer.IsRunning());

    // Stop has joined the thread: no call is under way and none follows.
    int const calls = timer.calls.load();
    EXPECT_GE(calls, 5);
    EXPECT_EQ(static_cast<std::uint64_t>(calls), timer.GetTickCount());
    miThread::sleep(20 * 1000);
    EXPECT_EQ(calls, timer.calls.load());

    std::lock_guard<std::mutex> lock(timer.mutex);
    ASSERT_EQ(1u, timer.threads.size());
    EXPECT_NE(miThread::GetCurrentThreadRef().GetID(), *timer.threads.begin());
}

TEST(WCTimer, StartingTwiceKeepsOneThreadAndStoppingTwiceIsHarmless) {
    WCRingingTimer timer(1.0);
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_TRUE(AwaitTicks(timer, 3));
    EXPECT_EQ(eNoErr, timer.Stop());
    EXPECT_EQ(eNoErr, timer.Stop());
    std::lock_guard<std::mutex> lock(timer.mutex);
    EXPECT_EQ(1u, timer.threads.size());
}

TEST(WCTimer, RestartsAfterAStop) {
    WCRingingTimer timer(1.0);
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_TRUE(AwaitTicks(timer, 2));
    timer.Stop();
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_TRUE(AwaitTicks(timer, 2));
    timer.Stop();
    std::lock_guard<std::mutex> lock(timer.mutex);
    EXPECT_EQ(2u, timer.threads.size());
}

TEST(WCTimer, StopFromInsideTheCallbackEndsAfterThatCall) {
    WCRingingTimer timer(1.0);
    timer.stopAtTick = 3;
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_TRUE(AwaitTicks(timer, 3));
    for (int i = 0; i < 1000 && timer.IsRunning(); ++i)
        miThread::sleep(1000);
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_EQ(3, timer.calls.load());
    // It can be started again; the finished thread is collected first.
    timer.stopAtTick = 0;
    ASSERT_EQ(eNoErr, timer.Start());
    ASSERT_TRUE(AwaitTicks(timer, 1));
    timer.Stop();
}

TEST(WCTimer, PlainCallbackRunsAndTheDestructorStops) {
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
    EXPECT_EQ(eNoErr, timer.SetPeriod(2.5));
    EXPECT_EQ(2.5, timer.GetPeriod());
    EXPECT_EQ(5, gAsserts.load());
    SetAssertHandler(previous);
}

} // namespace
