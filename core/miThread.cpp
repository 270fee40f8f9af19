#include "core/miThread.h"

#include <chrono>
#include <exception>
#include <new>

#include "core/WCNativeThread.h"

MIREL_NAMESPACE_BEGIN

namespace miThread {

// ---------------------------------------------------------------------------------------------
// ThreadMutexInited

ThreadMutexInited::~ThreadMutexInited() {
    uninit();
}

WTErr ThreadMutexInited::init() noexcept {
    if (m_mutex != nullptr)
        return eNoErr;
    m_mutex = new (std::nothrow) std::recursive_mutex;
    return m_mutex != nullptr ? eNoErr : eMemOutOfMemory;
}

void ThreadMutexInited::uninit() noexcept {
    delete m_mutex;
    m_mutex = nullptr;
}

void ThreadMutexInited::obtain() {
    if (m_mutex != nullptr)
        m_mutex->lock();
}

bool ThreadMutexInited::tryobtain() noexcept {
    return m_mutex == nullptr || m_mutex->try_lock();
}

void ThreadMutexInited::release() noexcept {
    if (m_mutex != nullptr)
        m_mutex->unlock();
}

// ---------------------------------------------------------------------------------------------
// WCAtomicLock

bool WCAtomicLock::obtain(unsigned int tries) {
    if (tries == 0)
        tries = 1;
    for (unsigned int attempt = 0; attempt < tries; ++attempt) {
        if (attempt != 0)
            miThread::sleep(kRetrySleepMilliseconds * 1000);
        std::int32_t expected = 0;
        if (m_word.compare_exchange_strong(expected, 1, std::memory_order_acquire,
                                           std::memory_order_relaxed))
            return true;
    }
    return false;
}

// ---------------------------------------------------------------------------------------------
// ThreadConditionSignal

void ThreadConditionSignal::obtain_mutex() {
    m_mutex.lock();
}

bool ThreadConditionSignal::tryobtain_mutex() noexcept {
    return m_mutex.try_lock();
}

void ThreadConditionSignal::release_mutex() noexcept {
    m_mutex.unlock();
}

void ThreadConditionSignal::await_condition() {
    // The caller holds the mutex; the lock object only borrows it for the wait.
    std::unique_lock<std::mutex> lock(m_mutex, std::adopt_lock);
    m_condition.wait(lock);
    lock.release();
}

WTErr ThreadConditionSignal::await_condition(int timeoutMs) {
    if (timeoutMs < 0) {
        await_condition();
        return eNoErr;
    }
    std::unique_lock<std::mutex> lock(m_mutex, std::adopt_lock);
    std::cv_status const status = m_condition.wait_for(lock, std::chrono::milliseconds(timeoutMs));
    lock.release();
    return status == std::cv_status::timeout ? eTimeOut : eNoErr;
}

// ---------------------------------------------------------------------------------------------
// Thread refs

namespace {
std::atomic<std::uint64_t> gNextThreadRefID{1};
thread_local std::uint64_t tThreadRefID = 0;
} // namespace

WCThreadRef GetCurrentThreadRef() noexcept {
    if (tThreadRefID == 0)
        tThreadRefID = gNextThreadRefID.fetch_add(1, std::memory_order_relaxed);
    return WCThreadRef(tThreadRefID);
}

// ---------------------------------------------------------------------------------------------
// Threads

// What a handle and its running thread share. The thread holds one reference until it ends, each
// handle another, so the record outlives whichever side lets go last.
struct WSThreadRecord {
    int (*entry)(void *) = nullptr;
    void *arg = nullptr;
    int priority = kThreadPriorityNormal;
    Native::WTNativeThread native = 0;

    std::mutex mutex;
    std::condition_variable ended; // signalled when `finished` becomes true
    std::condition_variable wake;  // wakes the thread's sleeps when it is asked to end
    std::atomic<bool> killRequested{false};
    bool finished = false;     // the entry has returned, thrown or been killed
    bool nativeJoined = false; // the system thread has been joined
    int exitCode = 0;

    ~WSThreadRecord() {
        // Nobody joined: the system frees the thread when it ends (or now, if it has).
        if (!nativeJoined && native != 0)
            Native::DetachThread(native);
    }
};

namespace {

// The record of the calling thread, when StartThread started it.
thread_local WSThreadRecord *tCurrentRecord = nullptr;

// Marks the record finished however the entry is left.
class WCFinishGuard {
public:
    explicit WCFinishGuard(WSThreadRecord &record) : m_record(record) { tCurrentRecord = &record; }
    ~WCFinishGuard() {
        tCurrentRecord = nullptr;
        std::lock_guard<std::mutex> lock(m_record.mutex);
        m_record.exitCode = m_exitCode;
        m_record.finished = true;
        m_record.ended.notify_all();
    }
    void Complete(int exitCode) noexcept { m_exitCode = exitCode; }

private:
    WSThreadRecord &m_record;
    // Stays so when the entry leaves by an exception that is not caught below.
    int m_exitCode = eExceptionErr;
};

void ThreadBody(void *raw) {
    // Takes over the reference that StartThread handed across.
    std::unique_ptr<std::shared_ptr<WSThreadRecord>> handover(
        static_cast<std::shared_ptr<WSThreadRecord> *>(raw));
    std::shared_ptr<WSThreadRecord> const self = std::move(*handover);
    handover.reset();

    WCFinishGuard guard(*self);
    if (self->priority != kThreadPriorityNormal)
        Native::SetCurrentThreadPriority(self->priority);
    try {
        guard.Complete(self->entry(self->arg));
    } catch (WSThreadKilled const &) {
        guard.Complete(eUserCanceled);
    } catch (int code) {
        guard.Complete(code);
    } catch (std::exception const &) {
        guard.Complete(eExceptionErr);
    }
}

} // namespace

WTErr StartThread(int (*entry)(void *), void *arg, int priority, ThreadHandle &outHandle,
                  std::size_t stackSize) {
    outHandle.m_record.reset();
    if (entry == nullptr)
        return eMemNullPointer;

    std::shared_ptr<WSThreadRecord> record;
    std::shared_ptr<WSThreadRecord> *handover = nullptr;
    try {
        record = std::make_shared<WSThreadRecord>();
        handover = new std::shared_ptr<WSThreadRecord>(record);
    } catch (std::bad_alloc const &) {
        return eMemOutOfMemory;
    }
    record->entry = entry;
    record->arg = arg;
    record->priority = priority;

    Native::WTNativeThread native = 0;
    WTErr const err = Native::CreateThread(&ThreadBody, handover, stackSize, native);
    if (err != eNoErr) {
        delete handover;
        return err;
    }
    {
        std::lock_guard<std::mutex> lock(record->mutex);
        record->native = native;
    }
    outHandle.m_record = std::move(record);
    return eNoErr;
}

WTErr JoinThread(ThreadHandle const &handle, int *exitCode, unsigned int timeoutMs) {
    WSThreadRecord *const record = handle.m_record.get();
    if (record == nullptr)
        return eUninitalized;

    std::unique_lock<std::mutex> lock(record->mutex);
    if (!record->finished && record == tCurrentRecord)
        return eThreadSafeError;
    auto const isFinished = [record] { return record->finished; };
    if (timeoutMs == kInfiniteTimeout)
        record->ended.wait(lock, isFinished);
    else if (!record->ended.wait_for(lock, std::chrono::milliseconds(timeoutMs), isFinished))
        return eTimeOut;

    if (!record->nativeJoined) {
        // The entry is done; what is left of the thread ends in a moment.
        Native::JoinThread(record->native);
        record->nativeJoined = true;
    }
    if (exitCode != nullptr)
        *exitCode = record->exitCode;
    return eNoErr;
}

WTErr KillThread(ThreadHandle const &handle) {
    WSThreadRecord *const record = handle.m_record.get();
    if (record == nullptr)
        return eUninitalized;
    std::lock_guard<std::mutex> lock(record->mutex);
    if (record->finished)
        return eNoErr;
    if (record == tCurrentRecord)
        return eThreadSafeError;
    record->killRequested.store(true, std::memory_order_release);
    record->wake.notify_all();
    return eNoErr;
}

bool IsKillRequested() noexcept {
    return tCurrentRecord != nullptr &&
           tCurrentRecord->killRequested.load(std::memory_order_acquire);
}

void Close(ThreadHandle &handle) noexcept {
    handle.m_record.reset();
}

void SetThreadName(const char *name) noexcept {
    Native::SetCurrentThreadName(name);
}

bool GetThreadName(char *buffer, std::size_t size) noexcept {
    return Native::GetCurrentThreadName(buffer, size);
}

void sleep(int microseconds) {
    std::int64_t const milliseconds = SleepMillisecondsFor(microseconds);
    WSThreadRecord *const record = tCurrentRecord;
    if (record == nullptr) {
        Native::SleepMilliseconds(milliseconds);
        return;
    }
    if (record->killRequested.load(std::memory_order_acquire))
        throw WSThreadKilled();
    if (milliseconds == 0)
        return;
    // Threads of ours sleep on their record, so that KillThread can wake them.
    std::unique_lock<std::mutex> lock(record->mutex);
    if (record->wake.wait_for(lock, std::chrono::milliseconds(milliseconds), [record] {
            return record->killRequested.load(std::memory_order_relaxed);
        }))
        throw WSThreadKilled();
}

} // namespace miThread

MIREL_NAMESPACE_END
