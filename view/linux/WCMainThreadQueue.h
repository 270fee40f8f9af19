#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "core/miThread.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

// The calls other threads leave for the main thread. Open from Open (on the main thread) to
// Close; Run, on the main thread, runs what was queued before it started, in order, outside the
// lock, so a call may queue more. A waiting sender is woken when its call has run, or with
// eWrongObjectState when the queue closes first. [any-thread] unless marked.
class WCMainThreadQueue {
public:
    // [main-thread]
    void Open();
    // [main-thread] Drops what was not run.
    void Close();
    bool IsMainThread() const;
    WTErr Post(std::function<void()> call);
    // Runs at once on the main thread; elsewhere waits until the main thread ran it.
    WTErr PostAndWait(std::function<void()> call);
    // [main-thread]
    std::size_t Run();

private:
    struct WSWaiter {
        bool m_done = false;
        WTErr m_result = eNoErr;
    };
    struct WSItem {
        std::function<void()> m_call;
        std::shared_ptr<WSWaiter> m_waiter;
    };
    WTErr Push(WSItem item);

    mutable std::mutex m_mutex;
    std::condition_variable m_ran;
    std::deque<WSItem> m_items;
    bool m_open = false;
    miThread::WCThreadRef m_mainThread;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
