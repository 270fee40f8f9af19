#include "view/linux/WCMainThreadQueue.h"

#include <utility>

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

void WCMainThreadQueue::Open() {
    std::lock_guard lock(m_mutex);
    m_open = true;
    m_mainThread = miThread::GetCurrentThreadRef();
}

void WCMainThreadQueue::Close() {
    std::deque<WSItem> dropped;
    {
        std::lock_guard lock(m_mutex);
        m_open = false;
        m_mainThread = miThread::WCThreadRef();
        dropped.swap(m_items);
        for (WSItem &item : dropped)
            if (item.m_waiter) {
                item.m_waiter->m_done = true;
                item.m_waiter->m_result = eWrongObjectState;
            }
    }
    m_ran.notify_all();
}

bool WCMainThreadQueue::IsMainThread() const {
    std::lock_guard lock(m_mutex);
    return m_open && m_mainThread == miThread::GetCurrentThreadRef();
}

WTErr WCMainThreadQueue::Push(WSItem item) {
    std::lock_guard lock(m_mutex);
    if (!m_open)
        return eSomeThingNotInitailzed;
    m_items.push_back(std::move(item));
    return eNoErr;
}

WTErr WCMainThreadQueue::Post(std::function<void()> call) {
    if (!call)
        return eMemNullPointer;
    return Push(WSItem{std::move(call), nullptr});
}

WTErr WCMainThreadQueue::PostAndWait(std::function<void()> call) {
    if (!call)
        return eMemNullPointer;
    if (IsMainThread()) {
        call();
        return eNoErr;
    }
    auto waiter = std::make_shared<WSWaiter>();
    if (const WTErr err = Push(WSItem{std::move(call), waiter}); err != eNoErr)
        return err;
    std::unique_lock lock(m_mutex);
    m_ran.wait(lock, [&] { return waiter->m_done; });
    return waiter->m_result;
}

std::size_t WCMainThreadQueue::Run() {
    std::deque<WSItem> batch;
    {
        std::lock_guard lock(m_mutex);
        batch.swap(m_items);
    }
    for (WSItem &item : batch) {
        item.m_call();
        if (item.m_waiter) {
            {
                std::lock_guard lock(m_mutex);
                item.m_waiter->m_done = true;
            }
            m_ran.notify_all();
        }
    }
    return batch.size();
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
