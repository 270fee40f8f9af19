// run() of the wrapper, probed: over many blocks with control changes between them, the audio
// thread allocates nothing and takes no lock. The program replaces the global allocation
// functions (the counting allocator) and the POSIX lock functions (below) with counting ones,
// so it is a program of its own.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cmath>
#include <mutex>

#include "tests/support/WCCountingAllocator.h"
#include "tests/support/WCLV2TestHost.h"

namespace {

// Counted only while the calling thread is inside a probed stretch.
thread_local bool t_Probing = false;
thread_local long t_Locks = 0;

template <typename F>
F Real(char const *name) {
    return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

// Looked up before main(): dlsym itself may lock.
auto const g_MutexLock = Real<int (*)(pthread_mutex_t *)>("pthread_mutex_lock");
auto const g_MutexTryLock = Real<int (*)(pthread_mutex_t *)>("pthread_mutex_trylock");
auto const g_ReadLock = Real<int (*)(pthread_rwlock_t *)>("pthread_rwlock_rdlock");
auto const g_WriteLock = Real<int (*)(pthread_rwlock_t *)>("pthread_rwlock_wrlock");

void Count() {
    if (t_Probing)
        ++t_Locks;
}

} // namespace

extern "C" {
int pthread_mutex_lock(pthread_mutex_t *mutex) {
    Count();
    return g_MutexLock(mutex);
}
int pthread_mutex_trylock(pthread_mutex_t *mutex) {
    Count();
    return g_MutexTryLock(mutex);
}
int pthread_rwlock_rdlock(pthread_rwlock_t *lock) {
    Count();
    return g_ReadLock(lock);
}
int pthread_rwlock_wrlock(pthread_rwlock_t *lock) {
    Count();
    return g_WriteLock(lock);
}
}

namespace {

using mirel_test::WCLV2TestHost;

enum : std::uint32_t { kGain = 4, kCutoff, kFilter, kSlope, kTrim1, kTrim2, kMode };
constexpr std::uint32_t kFrames = 64;
constexpr int kBlocks = 10000;

// What a probed stretch did on its thread.
struct WSProbe {
    long allocations = 0;
    long locks = 0;
};

template <typename F>
WSProbe Probe(F &&work) {
    WSProbe probe;
    const long locks = t_Locks;
    const mirel_test::WCAllocationCounter counter;
    t_Probing = true;
    work();
    t_Probing = false;
    probe.allocations = counter.OnThisThread();
    probe.locks = t_Locks - locks;
    return probe;
}

TEST(LV2RealTime, TheProbeSeesALockAndAnAllocation) {
    std::mutex mutex;
    const WSProbe probe = Probe([&mutex] {
        std::lock_guard<std::mutex> lock(mutex);
        int *volatile allocated = new int(1);
        delete allocated;
    });
    EXPECT_EQ(probe.locks, 1);
    EXPECT_EQ(probe.allocations, 1);
}

// Runs `blocks` blocks of 64 frames, moving some control before each, and answers what run() did
// in all; the worker, if any, runs between blocks, outside the probe.
WSProbe ProbeRuns(WCLV2TestHost &host, int blocks) {
    WSProbe total;
    for (int block = 0; block < blocks; ++block) {
        host.Control(kGain) = static_cast<float>(-(block % 24));
        host.Control(kCutoff) = static_cast<float>(200 + block % 5000);
        if (block % 7 == 0)
            host.Control(kFilter) = static_cast<float>(block / 7 % 2);
        host.Control(kSlope) = static_cast<float>(block % 3);
        host.Control(kTrim1) = static_cast<float>(block % 11 - 5);
        host.Control(kMode) = static_cast<float>(block / 13 % 3);
        for (int channel = 0; channel < 2; ++channel)
            std::fill_n(host.In(channel).begin(), kFrames, 0.25f);
        const WSProbe probe = Probe([&host] { host.Run(kFrames); });
        total.allocations += probe.allocations;
        total.locks += probe.locks;
        host.DoWork();
    }
    return total;
}

std::string Open(WCLV2TestHost &host, WCLV2TestHost::EWorker worker) {
    return host.Open(MIREL_LV2_BUNDLE, "mirel_lv2.so", 48000.0, 2, 2,
                     {0.0f, 1000.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, -60.0f}, worker);
}

TEST(LV2RealTime, RunNeitherAllocatesNorLocksWhileControlsChange) {
    WCLV2TestHost host;
    ASSERT_EQ(Open(host, WCLV2TestHost::eBetweenBlocks), "");
    const WSProbe probe = ProbeRuns(host, kBlocks);
    EXPECT_EQ(probe.allocations, 0);
    EXPECT_EQ(probe.locks, 0);

    // The changes did arrive: the last gain, with the filter off and both channels straight.
    host.Control(kFilter) = 0.0f;
    host.Control(kMode) = 0.0f;
    host.Control(kGain) = -12.0f;
    for (int i = 0; i < 3; ++i) {
        host.Run(kFrames);
        host.DoWork();
    }
    EXPECT_NEAR(host.Out(0)[kFrames - 1], 0.25 * std::pow(10.0, -12.0 / 20.0), 1e-6);
}

TEST(LV2RealTime, WithoutAWorkerRunDoesTheChangesInPlace) {
    // The documented cost of a host without a worker, and proof that the probe reaches into the
    // modules the host loaded.
    WCLV2TestHost host;
    ASSERT_EQ(Open(host, WCLV2TestHost::eNone), "");
    const WSProbe probe = ProbeRuns(host, 10);
    EXPECT_GT(probe.allocations, 0);
    EXPECT_GT(probe.locks, 0);
}

} // namespace
