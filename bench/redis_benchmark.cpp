// 10,000 hash fields written through WCRedisConnection, as pending commands with one commit and
// as immediate commands, against redis-benchmark pipelining HSET on the same server (the floor
// of this machine). The benchmark starts its own redis-server on 127.0.0.1 and stops it.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/support/WCBenchRatios.h"
#include "redis/WCRedisConnection.h"
#include "tests/support/WCRedisServerFixture.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

constexpr int kFields = 10000;

struct WSRun {
    double fields = 0;
    double seconds = 0;
    double rate() const { return seconds > 0 ? fields / seconds : 0; }
};

mirel_test::WCRedisServer *gServer = nullptr;
std::vector<std::string> gFieldNames;
WSRun gPending;
WSRun gImmediate;

std::unique_ptr<Redis::WCRedisConnection> Connect() {
    auto connection = std::make_unique<Redis::WCRedisConnection>();
    connection->set_connection_details("127.0.0.1", gServer->port());
    connection->connect();
    return connection;
}

template <class Write>
void RunFields(benchmark::State &state, WSRun &run, Write write) {
    auto connection = Connect();
    if (!connection->is_connected()) {
        state.SkipWithError("no connection to the benchmark server");
        return;
    }
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        write(*connection);
        run.seconds +=
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        run.fields += kFields;
    }
    state.SetItemsProcessed(state.iterations() * kFields);
    connection->set_should_delete_current_keys(false);
}

void BM_HashFieldsPendingOneCommit(benchmark::State &state) {
    RunFields(state, gPending, [](Redis::WCRedisConnection &connection) {
        for (std::string const &field : gFieldNames)
            connection.set_hash_item_pending("bench:pending", field.c_str(), "value");
        connection.commit_pending_commands();
    });
}
// Waiting on the server is the cost being measured, so rates are by wall-clock time.
BENCHMARK(BM_HashFieldsPendingOneCommit)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_HashFieldsImmediate(benchmark::State &state) {
    RunFields(state, gImmediate, [](Redis::WCRedisConnection &connection) {
        for (std::string const &field : gFieldNames)
            connection.set_hash_item_now("bench:now", field.c_str(), "value");
    });
}
BENCHMARK(BM_HashFieldsImmediate)->Unit(benchmark::kMillisecond)->UseRealTime();

// redis-benchmark on one connection with a deep pipeline: what the server and the loopback
// socket can take on this machine. Answers requests per second, 0 when it did not run.
double RedisBenchmarkRate(int port) {
    int exitCode = -1;
    std::string const output =
        mirel_test::RunAndCapture({"redis-benchmark", "-h", "127.0.0.1", "-p", std::to_string(port),
                                   "-c", "1", "-P", "1000", "-n", "200000", "-t", "hset", "-q"},
                                  120, exitCode);
    std::size_t const marker = output.rfind(" requests per second");
    if (exitCode != 0 || marker == std::string::npos)
        return 0;
    std::size_t const begin = output.rfind(' ', marker - 1);
    return std::strtod(output.c_str() + (begin == std::string::npos ? 0 : begin + 1), nullptr);
}

// Rates are fields (or requests) per second; the ratios compare seconds per field.
void PrintRatios(double floorBefore, double floorAfter) {
    // The better floor is kept, so a busy machine during one of its runs does not flatter us.
    double const floor = std::max(floorBefore, floorAfter);
    double const pending = gPending.rate();
    double const immediate = gImmediate.rate();
    std::printf("  HSET of %d hash fields on one loopback connection:\n", kFields);
    std::printf("    pending + one commit   %12.0f fields/s\n", pending);
    std::printf("    immediate              %12.0f fields/s\n", immediate);
    std::printf("    redis-benchmark -P1000 %12.0f requests/s (floor; %.0f before, %.0f after)\n",
                floor, floorBefore, floorAfter);
    auto const perField = [](double rate) { return rate > 0 ? 1 / rate : 0.0; };
    using mirel_bench::WCBenchRatios;
    WCBenchRatios::PrintRatio("pending + one commit", perField(pending), "redis-benchmark -P1000",
                              perField(floor));
    WCBenchRatios::PrintRatio("immediate", perField(immediate), "redis-benchmark -P1000",
                              perField(floor));
    WCBenchRatios::PrintRatio("immediate", perField(immediate), "pending + one commit",
                              perField(pending));
}

} // namespace

int main(int argc, char **argv) {
    char pattern[] = "/tmp/mirel-redis-bench-XXXXXX";
    if (mkdtemp(pattern) == nullptr) {
        std::fprintf(stderr, "cannot make a temporary folder\n");
        return 1;
    }
    std::filesystem::path const folder(pattern);
    int result = 0;
    {
        mirel_test::WCRedisServer server(folder);
        if (!server.running()) {
            std::fprintf(stderr, "redis-server: %s\n", server.error().c_str());
            result = 1;
        } else {
            gServer = &server;
            for (int i = 0; i < kFields; ++i)
                gFieldNames.push_back("field:" + std::to_string(i));
            // The floor is taken before and after the runs.
            double const floorBefore = RedisBenchmarkRate(server.port());
            result = mirel_bench::RunBenchmarksWithRatios(
                argc, argv, [&](const mirel_bench::WCBenchRatios &) {
                    PrintRatios(floorBefore, RedisBenchmarkRate(server.port()));
                });
            gServer = nullptr;
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return result;
}
