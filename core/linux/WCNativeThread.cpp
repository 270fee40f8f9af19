#include "core/WCNativeThread.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

MIREL_NAMESPACE_BEGIN

namespace miThread {
namespace Native {

static_assert(sizeof(pthread_t) <= sizeof(WTNativeThread), "pthread_t must fit the native id");

namespace {

WTNativeThread ToNative(pthread_t thread) noexcept {
    WTNativeThread out = 0;
    std::memcpy(&out, &thread, sizeof(thread));
    return out;
}

pthread_t FromNative(WTNativeThread thread) noexcept {
    pthread_t out{};
    std::memcpy(&out, &thread, sizeof(out));
    return out;
}

struct WSStartRecord {
    void (*body)(void *);
    void *arg;
};

void *Trampoline(void *raw) {
    WSStartRecord start = *static_cast<WSStartRecord *>(raw);
    delete static_cast<WSStartRecord *>(raw);
    start.body(start.arg);
    return nullptr;
}

WTErr FromErrno(int value) noexcept {
    WTErr const err = ConvertErrno(value);
    return err != eNoErr ? err : eGenericErr;
}

} // namespace

WTErr CreateThread(void (*body)(void *), void *arg, std::size_t stackSize,
                   WTNativeThread &outThread) noexcept {
    outThread = 0;
    auto *start = new (std::nothrow) WSStartRecord{body, arg};
    if (start == nullptr)
        return eMemOutOfMemory;

    pthread_attr_t attr;
    int rc = pthread_attr_init(&attr);
    if (rc != 0) {
        delete start;
        return FromErrno(rc);
    }
    if (stackSize != 0) {
        // The system refuses stacks below its minimum; those get the minimum instead.
        if (stackSize < static_cast<std::size_t>(PTHREAD_STACK_MIN))
            stackSize = PTHREAD_STACK_MIN;
        rc = pthread_attr_setstacksize(&attr, stackSize);
    }
    pthread_t thread{};
    if (rc == 0)
        rc = pthread_create(&thread, &attr, &Trampoline, start);
    pthread_attr_destroy(&attr);
    if (rc != 0) {
        delete start;
        return FromErrno(rc);
    }
    outThread = ToNative(thread);
    return eNoErr;
}

WTErr JoinThread(WTNativeThread thread) noexcept {
    int const rc = pthread_join(FromNative(thread), nullptr);
    return rc == 0 ? eNoErr : FromErrno(rc);
}

void DetachThread(WTNativeThread thread) noexcept {
    pthread_detach(FromNative(thread));
}

void SetCurrentThreadName(const char *name) noexcept {
    char cut[kMaxThreadNameLength + 1] = {};
    if (name != nullptr) {
        std::size_t length = std::strlen(name);
        if (length > kMaxThreadNameLength) {
            length = kMaxThreadNameLength;
            // Never leave half of a UTF-8 character at the end.
            while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80)
                --length;
        }
        std::memcpy(cut, name, length);
    }
    pthread_setname_np(pthread_self(), cut);
}

bool GetCurrentThreadName(char *buffer, std::size_t size) noexcept {
    if (buffer == nullptr || size == 0)
        return false;
    char name[kMaxThreadNameLength + 1] = {};
    if (pthread_getname_np(pthread_self(), name, sizeof(name)) != 0) {
        buffer[0] = '\0';
        return false;
    }
    std::size_t const length = std::min(std::strlen(name), size - 1);
    std::memcpy(buffer, name, length);
    buffer[length] = '\0';
    return true;
}

void SetCurrentThreadPriority(int priority) noexcept {
    int nice = 0;
    if (priority >= 15)
        nice = -20;
    else if (priority != 0)
        nice = -5 * std::max(-2, std::min(2, priority));
    if (nice == 0)
        return;
    // On Linux the nice value belongs to the thread when it is addressed by its own id.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice);
}

void SleepMilliseconds(std::int64_t milliseconds) noexcept {
    if (milliseconds <= 0)
        return;
    timespec request{};
    request.tv_sec = static_cast<time_t>(milliseconds / 1000);
    request.tv_nsec = static_cast<long>((milliseconds % 1000) * 1000000);
    timespec remaining{};
    // A signal cuts the sleep short; what is left is slept again.
    while (nanosleep(&request, &remaining) != 0 && errno == EINTR)
        request = remaining;
}

void YieldThread() noexcept {
    sched_yield();
}

} // namespace Native
} // namespace miThread

MIREL_NAMESPACE_END
