#pragma once

#include <shared_mutex>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace miThread {

// Holds a reader/writer lock for the life of the object: shared (many readers at once) when
// `shared` is true, exclusive otherwise.
class WCSharedMutexLocker {
public:
    WCSharedMutexLocker(std::shared_mutex &mutex, bool shared) : m_mutex(mutex), m_shared(shared) {
        if (m_shared)
            m_mutex.lock_shared();
        else
            m_mutex.lock();
    }
    ~WCSharedMutexLocker() {
        if (m_shared)
            m_mutex.unlock_shared();
        else
            m_mutex.unlock();
    }
    WCSharedMutexLocker(WCSharedMutexLocker const &) = delete;
    WCSharedMutexLocker &operator=(WCSharedMutexLocker const &) = delete;

    bool IsShared() const noexcept { return m_shared; }

private:
    std::shared_mutex &m_mutex;
    bool const m_shared;
};

} // namespace miThread

MIREL_NAMESPACE_END
