#include "redis/linux/WURedisPlatform.h"

#include <cerrno>
#include <ctime>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

MIREL_NAMESPACE_BEGIN
namespace Redis {
namespace Platform {

namespace {

sigset_t SigPipeSet() noexcept {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

bool IsSigPipePending() noexcept {
    sigset_t pending;
    sigemptyset(&pending);
    return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

WCStSigPipeBlocker::WCStSigPipeBlocker() noexcept : m_oldMask(), m_wasPending(IsSigPipePending()) {
    sigset_t const set = SigPipeSet();
    pthread_sigmask(SIG_BLOCK, &set, &m_oldMask);
}

WCStSigPipeBlocker::~WCStSigPipeBlocker() {
    if (!m_wasPending && IsSigPipePending()) {
        sigset_t const set = SigPipeSet();
        timespec const noWait{0, 0};
        while (sigtimedwait(&set, nullptr, &noWait) == -1 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &m_oldMask, nullptr);
}

std::int64_t CurrentProcessId() noexcept {
    return static_cast<std::int64_t>(getpid());
}

void GetApplicationPath(WCFixedStringBase &outPath) noexcept {
    outPath.clear();
    char buffer[4096];
    ssize_t const length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
    if (length > 0)
        outPath.assign(buffer, static_cast<std::uint64_t>(length));
}

void GetLocalTimeText(WCFixedStringBase &outText) noexcept {
    outText.clear();
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) == nullptr)
        return;
    char buffer[64];
    std::size_t const length = std::strftime(buffer, sizeof(buffer), "%Y/%m/%d-%H:%M:%S", &local);
    outText.assign(buffer, static_cast<std::uint64_t>(length));
}

void ShutdownSocket(int fd) noexcept {
    if (fd >= 0)
        shutdown(fd, SHUT_RDWR);
}

} // namespace Platform
} // namespace Redis
MIREL_NAMESPACE_END
