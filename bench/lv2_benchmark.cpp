// What the LV2 wrapper adds to a block of audio: run() of the example's LV2 bundle, as a host
// with a worker calls it, against the example's native process function called directly on the
// same 64 stereo frames, already interleaved. run() also looks at every control port,
// de-interleaves and interleaves, applies the chains that came in and writes the meter port.
// The ratio prints at the end, on CPU time; the aim is at most 1.2.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "Code/Process/WUNativeProcess.h"
#include "bench/support/WCBenchRatios.h"
#include "core/WTErrors.h"
#include "tests/support/WCLV2TestHost.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

constexpr std::uint32_t kFrames = 64;
// The example's controls: gain -6 dB, cutoff 500 Hz, filter on, two stages, stereo.
const std::vector<float> kControls = {-6.0f, 500.0f, 1.0f, 1.0f, 0.0f, 0.0f, 0.0f, -60.0f};

float Sample(std::uint32_t i, int channel) {
    return static_cast<float>(0.25 * std::sin(0.05 * i + channel));
}

void BM_WrapperRun(benchmark::State &state) {
    mirel_test::WCLV2TestHost host;
    const std::string err = host.Open(MIREL_LV2_BUNDLE, "mirel_lv2.so", 48000.0, 2, 2, kControls,
                                      mirel_test::WCLV2TestHost::eBetweenBlocks);
    if (!err.empty()) {
        state.SkipWithError(err.c_str());
        return;
    }
    // The controls reach the audio code before timing starts.
    for (int i = 0; i < 4; ++i) {
        host.Run(kFrames);
        host.DoWork();
    }
    for (int channel = 0; channel < 2; ++channel) {
        for (std::uint32_t i = 0; i < kFrames; ++i)
            host.In(channel)[i] = Sample(i, channel);
    }
    for (auto _ : state) {
        host.Run(kFrames);
        benchmark::DoNotOptimize(host.Out(0).data());
    }
}
BENCHMARK(BM_WrapperRun);

void BM_DirectProcess(benchmark::State &state) {
    mirel_shell::WCRecordingShell shell;
    int err = shell.Open(MIREL_LV2_BUNDLE "/GainFilter.bundle/Contents/Linux64/GainFilter.so");
    ml::WTNativeProcessFunction process = nullptr;
    if (err == ml::eNoErr)
        err = shell.FindNativeProcess(process);
    // The same settings as the wrapper's ports, through the same automation controls.
    ml::WCAutomationManager &automation = shell.Algorithm()->GetAutomationManager();
    for (int control = 0; err == ml::eNoErr && control < 7; ++control) {
        std::uint64_t id = 0;
        double value = kControls[control];
        err = automation.ControlLeadParamID(control, id);
        if (err == ml::eNoErr)
            err = shell.Algorithm()->RealWorldToState(id, value);
        ml::BUFFER_HEADER *chain = nullptr;
        if (err == ml::eNoErr)
            chain = automation.SetControllerValue(control, value, err);
        if (err == ml::eNoErr)
            err = automation.ExecuteAndDisposeBuffer(chain);
    }
    if (err != ml::eNoErr) {
        state.SkipWithError(ml::WTErrName(err));
        return;
    }
    std::vector<float> in(kFrames * 2), out(kFrames * 2);
    for (std::uint32_t i = 0; i < kFrames; ++i) {
        in[2 * i] = Sample(i, 0);
        in[2 * i + 1] = Sample(i, 1);
    }
    for (auto _ : state) {
        process(shell.CoefWords(), shell.StateWords(), in.data(), out.data(), kFrames);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(BM_DirectProcess);

void PrintRatios(mirel_bench::WCBenchRatios const &ratios) {
    ratios.PrintRatio("BM_WrapperRun", "BM_DirectProcess", "aim: at most 1.2");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
