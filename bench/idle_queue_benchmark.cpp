// Throughput of the idle command queue between two threads, against boost::lockfree::spsc_queue,
// the single-producer single-consumer queue a user would otherwise pick. Both carry the same
// 16-byte message and consume it through its execute(); the idle queue in its idle passes (at
// most 1024 messages each), the spsc_queue through consume_all. The spsc_queue has a fixed
// capacity, so its producer spins when it is full; the idle queue chains a block instead.
#include "bench/support/WCBenchRatios.h"
#include "core/WCIdleCommandQueue.h"

#include <benchmark/benchmark.h>
#include <boost/lockfree/spsc_queue.hpp>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <thread>

namespace {

using namespace MIREL_NAMESPACE_NAME;

struct WSBenchMessage {
    std::uint64_t value;
    std::uint64_t *sum;
    bool execute() {
        *sum += value;
        return false;
    }
};

constexpr std::int64_t kMessagesPerIteration = 1 << 20;
constexpr std::size_t kSpscCapacity = 1 << 16;

// Messages per second of each benchmark, for the ratio printed at the end.
std::map<std::string, double> gRates;

void Record(benchmark::State &state, const char *name, double seconds) {
    double const messages = static_cast<double>(state.iterations()) * kMessagesPerIteration;
    state.counters["msgs/s"] = benchmark::Counter(messages, benchmark::Counter::kIsRate);
    if (seconds > 0)
        gRates[name] = messages / seconds;
}

void BM_IdleQueue_TwoThreads(benchmark::State &state) {
    miThread::WCIdleCommandQueue<WSBenchMessage, 1024, 1> queue;
    std::uint64_t sum = 0;
    double seconds = 0;
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        std::thread producer([&] {
            for (std::int64_t i = 0; i < kMessagesPerIteration; ++i)
                queue.Emplace(static_cast<std::uint64_t>(i), &sum);
        });
        std::int64_t done = 0;
        while (done < kMessagesPerIteration)
            done += static_cast<std::int64_t>(queue.DoIdle());
        producer.join();
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    benchmark::DoNotOptimize(sum);
    state.counters["blocks"] = static_cast<double>(queue.GetBlockCount());
    Record(state, "idle", seconds);
}

void BM_SpscQueue_TwoThreads(benchmark::State &state) {
    auto *queue =
        new boost::lockfree::spsc_queue<WSBenchMessage, boost::lockfree::capacity<kSpscCapacity>>;
    std::uint64_t sum = 0;
    double seconds = 0;
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        std::thread producer([&] {
            for (std::int64_t i = 0; i < kMessagesPerIteration; ++i) {
                WSBenchMessage const message{static_cast<std::uint64_t>(i), &sum};
                while (!queue->push(message)) {
                }
            }
        });
        std::int64_t done = 0;
        while (done < kMessagesPerIteration)
            done += static_cast<std::int64_t>(
                queue->consume_all([](WSBenchMessage &m) { m.execute(); }));
        producer.join();
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    benchmark::DoNotOptimize(sum);
    delete queue;
    Record(state, "spsc", seconds);
}

// One thread pushing a pass worth of messages and draining them: the cost without contention.
void BM_IdleQueue_OneThread(benchmark::State &state) {
    miThread::WCIdleCommandQueue<WSBenchMessage, 1024, 1> queue;
    std::uint64_t sum = 0;
    auto const start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        for (std::int64_t i = 0; i < kMessagesPerIteration; i += 1024) {
            for (int k = 0; k < 1024; ++k)
                queue.Emplace(static_cast<std::uint64_t>(k), &sum);
            queue.DoIdle();
        }
    }
    double const seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    benchmark::DoNotOptimize(sum);
    Record(state, "idle1", seconds);
}

void BM_SpscQueue_OneThread(benchmark::State &state) {
    auto *queue =
        new boost::lockfree::spsc_queue<WSBenchMessage, boost::lockfree::capacity<kSpscCapacity>>;
    std::uint64_t sum = 0;
    auto const start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        for (std::int64_t i = 0; i < kMessagesPerIteration; i += 1024) {
            for (int k = 0; k < 1024; ++k)
                queue->push(WSBenchMessage{static_cast<std::uint64_t>(k), &sum});
            queue->consume_all([](WSBenchMessage &m) { m.execute(); });
        }
    }
    double const seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    benchmark::DoNotOptimize(sum);
    delete queue;
    Record(state, "spsc1", seconds);
}

BENCHMARK(BM_IdleQueue_TwoThreads)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SpscQueue_TwoThreads)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IdleQueue_OneThread)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SpscQueue_OneThread)->UseRealTime()->Unit(benchmark::kMillisecond);

// The rates come from each benchmark's own clock around producer and consumer; their inverse is
// the time per message.
void PrintRatio(const char *label, const char *ours, const char *peer) {
    auto const a = gRates.find(ours);
    auto const b = gRates.find(peer);
    if (a == gRates.end() || b == gRates.end())
        return;
    char note[96];
    std::snprintf(note, sizeof note, "%s: %.1f against %.1f M msgs/s", label, a->second / 1e6,
                  b->second / 1e6);
    mirel_bench::WCBenchRatios::PrintRatio("idle queue", 1 / a->second, "spsc_queue", 1 / b->second,
                                           note);
}

void PrintRatios(const mirel_bench::WCBenchRatios &) {
    PrintRatio("two threads", "idle", "spsc");
    PrintRatio("one thread", "idle1", "spsc1");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios);
}
