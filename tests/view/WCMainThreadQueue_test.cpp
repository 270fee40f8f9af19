#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "ViewTestSupport.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;
using view_test::Recorder;

using MainThreadQueue = view_test::HeadlessDesktop;

namespace {

void Count(void *refCon) {
    ++*static_cast<int *>(refCon);
}

} // namespace

TEST_F(MainThreadQueue, OtherThreadsReachTheGUIOnlyThroughTheMainThread) {
    Recorder rec;
    WSPluginView *view = MakeView(&rec);
    int runs = 0;
    std::atomic<int> syncResult{1};
    std::atomic<bool> posted{false};
    std::thread worker([&] {
        EXPECT_FALSE(IsMainThread());
        EXPECT_EQ(SendMessageToMainThreadCallMyCallback(&Count, &runs), 0);
        EXPECT_EQ(SendMessageToMainThreadViewSizeChanged(view, 640, 480), 0);
        WCEventMessage touch;
        touch.m_param = 9;
        EXPECT_EQ(SendMessageToMainThreadTouch(view, touch), 0);
        posted = true;
        // Blocks until the main thread has run it.
        syncResult = SendSyncMessageToMainThreadCallMyCallback(&Count, &runs);
    });
    while (!posted)
        std::this_thread::yield();
    std::size_t ran = 0;
    while (syncResult.load() != 0)
        ran += RunMainThreadQueue();
    worker.join();
    EXPECT_EQ(ran, 4u);
    EXPECT_EQ(runs, 2);
    ASSERT_EQ(rec.calls.size(), 2u);
    EXPECT_EQ(rec.calls[0].code, eEventResize);
    EXPECT_EQ(rec.calls[1].code, eEventTouch);
    EXPECT_EQ(rec.calls[1].event.GetTouchEventID(), 9);
    WURect<int> bounds;
    ASSERT_EQ(GetViewBounds(view, bounds), 0);
    EXPECT_EQ(bounds.Width(), 640);

    // On the main thread the synchronous form runs at once.
    EXPECT_TRUE(IsMainThread());
    ASSERT_EQ(SendSyncMessageToMainThreadCallMyCallback(&Count, &runs), 0);
    EXPECT_EQ(runs, 3);
}

TEST_F(MainThreadQueue, DisposeWakesAWaiterWithAnErrorAndLaterSendsAreRefused) {
    std::atomic<int> result{1};
    int runs = 0;
    std::thread worker([&] { result = SendSyncMessageToMainThreadCallMyCallback(&Count, &runs); });
    // The waiter is woken whether Dispose comes before or after its message is queued.
    while (result.load() == 1) {
        Dispose();
        std::this_thread::yield();
        if (result.load() == 1)
            Init();
    }
    worker.join();
    EXPECT_TRUE(result == eWrongObjectState || result == eSomeThingNotInitailzed);
    EXPECT_EQ(runs, 0);
    Dispose();
    EXPECT_EQ(SendMessageToMainThreadCallMyCallback(&Count, &runs), eSomeThingNotInitailzed);
}
