// What a second instance of the example plug-in with its GUI adds to the heap, against what the
// first one cost: the resource manager shares the bundle's container, the parsed GUI document and
// the decoded pictures, so the second instance should pay for its own objects only (target: at
// most a quarter of the first). Also the time to build a GUI on a started instance, cold (nothing
// cached) and while another instance's GUI keeps the resources loaded.

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstddef>
#include <cstdio>
#include <memory>

#include "Code/Algorithm/cALGORITHM.h"
#include "bench/support/WCBenchRatios.h"
#include "resources/ResourceManager.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using mirel_shell::WCRecordingShell;

// Bytes the process has allocated now. Large blocks (decoded pictures) are served by mmap and
// counted apart from the arenas, so both are added.
double HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// Loads the example module into a new shell and creates and starts its component; null and an
// error on the state when a step fails.
std::unique_ptr<WCRecordingShell> StartGainFilter(benchmark::State &state) {
    auto shell = std::make_unique<WCRecordingShell>();
    if (shell->Open(MIREL_EXAMPLE_MODULE) != 0) {
        state.SkipWithError("the example plug-in did not start");
        return nullptr;
    }
    return shell;
}

bool CreatePrimaryGui(benchmark::State &state, WCRecordingShell &shell) {
    if (shell.Algorithm()->CreateGuiAndAddToMap(nullptr, "1000", "Primary") != 0) {
        state.SkipWithError("the Primary GUI was not created");
        return false;
    }
    return true;
}

// Whether the resource manager holds nothing, so that the next instance pays for every load.
bool CacheIsEmpty() {
    ml::WSResourceManagerInfo info;
    return ml::RM::GetResourceManagerInfo(info) != 0 ||
           (info.m_NumContainers == 0 && info.m_TotalResources == 0);
}

// The last measured share of the second instance, for the closing line; negative until measured.
double g_SecondOverFirst = -1;

// Each iteration starts from an empty resource manager, starts one instance with its GUI, then a
// second, and tears both down; the counters are the means over the iterations.
void BM_SecondInstanceGuiHeap(benchmark::State &state) {
    // Sums over the iterations: [0] the first instance, [1] the second; started, then its GUI.
    double started[2] = {};
    double gui[2] = {};
    for (auto _ : state) {
        // The shells of the previous iteration closed their containers; the manager goes too so
        // that nothing of theirs is left to share.
        ml::RM::Dispose();
        if (!CacheIsEmpty()) {
            state.SkipWithError("the resource manager was not empty before the first instance");
            break;
        }
        std::unique_ptr<WCRecordingShell> shells[2];
        bool failed = false;
        for (int i = 0; i < 2 && !failed; ++i) {
            const double before = HeapInUse();
            shells[i] = StartGainFilter(state);
            failed = shells[i] == nullptr;
            if (failed)
                break;
            const double afterStart = HeapInUse();
            failed = !CreatePrimaryGui(state, *shells[i]);
            started[i] += afterStart - before;
            gui[i] += HeapInUse() - afterStart;
        }
        if (failed)
            break;
        for (int i = 1; i >= 0; --i) {
            shells[i]->Algorithm()->DisposeGuiAndRemoveFromMap("Primary");
            shells[i].reset();
        }
    }
    const auto runs = static_cast<double>(state.iterations());
    const double first = started[0] + gui[0];
    const double second = started[1] + gui[1];
    if (runs > 0 && first > 0) {
        state.counters["first_bytes"] = first / runs;
        state.counters["second_bytes"] = second / runs;
        state.counters["second_over_first"] = second / first;
        g_SecondOverFirst = second / first;
        // Where each one's bytes went: the started instance, then its GUI.
        state.counters["first_gui_bytes"] = gui[0] / runs;
        state.counters["second_gui_bytes"] = gui[1] / runs;
    }
    ml::RM::Dispose();
}
BENCHMARK(BM_SecondInstanceGuiHeap)->Iterations(4)->Unit(benchmark::kMillisecond)->UseRealTime();

// Builds and disposes the Primary GUI of a started instance. With `shared` another started
// instance keeps its own GUI open, so the document and pictures come from the cache; without it
// every creation loads, parses and decodes them again.
void CreateGuiLoop(benchmark::State &state, bool shared) {
    ml::RM::Dispose();
    std::unique_ptr<WCRecordingShell> holder;
    if (shared) {
        holder = StartGainFilter(state);
        if (holder == nullptr || !CreatePrimaryGui(state, *holder))
            return;
    }
    auto shell = StartGainFilter(state);
    if (shell == nullptr)
        return;
    for (auto _ : state) {
        if (!CreatePrimaryGui(state, *shell))
            break;
        state.PauseTiming();
        shell->Algorithm()->DisposeGuiAndRemoveFromMap("Primary");
        state.ResumeTiming();
    }
    shell.reset();
    holder.reset();
    ml::RM::Dispose();
}

void BM_CreateGuiCold(benchmark::State &state) {
    CreateGuiLoop(state, false);
}
BENCHMARK(BM_CreateGuiCold)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_CreateGuiShared(benchmark::State &state) {
    CreateGuiLoop(state, true);
}
BENCHMARK(BM_CreateGuiShared)->Unit(benchmark::kMicrosecond)->UseRealTime();

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_CreateGuiShared/real_time", "BM_CreateGuiCold/real_time",
                      "(a GUI whose resources another instance holds / one that loads them)");
    if (g_SecondOverFirst >= 0)
        std::printf("Heap of the second instance with its GUI / the first's = %.3f (target: at "
                    "most 0.25)\n",
                    g_SecondOverFirst);
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios);
}
