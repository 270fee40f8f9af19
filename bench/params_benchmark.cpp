// What a scale conversion costs the update path: each scale kind, state to real world and back
// through the parameter (a call through the function pointer with the finiteness guard), against
// a hand-written inline formula for linear and logarithmic, which is the floor any plug-in could
// write itself. Each call takes a fresh state from a small table so the compiler cannot fold it.
// The ratios print at the end, on CPU time.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>

#include "Code/Algorithm/WCParam_Base.h"
#include "Code/Algorithm/WUDisplayFunctions.h"
#include "bench/support/WCBenchRatios.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

constexpr std::array<double, 8> kStates = {0.0, 125.5, 250.0, 333.3, 500.0, 666.6, 875.2, 1000.0};

ml::WCParam_Base MakeParam(const char *type, double min, double max, double res) {
    ml::WCParam_Base param;
    param.SetScale(min, max, res, 0, 0, type, nullptr, nullptr, {20, 200, 2000, 20000},
                   {0, 250, 750, 1000});
    return param;
}

// State to real world and back through the parameter, one fresh state per call.
void BM_RoundTrip(benchmark::State &state, const char *type, double min, double max, double res) {
    const ml::WCParam_Base param = MakeParam(type, min, max, res);
    std::size_t i = 0;
    for (auto _ : state) {
        const double rw = param.StateToRealWorld(kStates[i++ & 7]);
        benchmark::DoNotOptimize(param.RealWorldToState(rw));
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK_CAPTURE(BM_RoundTrip, Linear, "linear", -24, 24, 0.1);
BENCHMARK_CAPTURE(BM_RoundTrip, LinearExtended, "linear", 0, 10000, 10);
BENCHMARK_CAPTURE(BM_RoundTrip, Logarithmic, "logarithmic", 20, 20000, 0.1);
BENCHMARK_CAPTURE(BM_RoundTrip, LogarithmicExtended, "logarithmic", 20, 20000, 10);
BENCHMARK_CAPTURE(BM_RoundTrip, STDFreq, "STDFreq", 20, 20000, 0.1);

void BM_Toggle(benchmark::State &state) {
    ml::WCParam_Base param;
    param.SetScale(0, 1, 1, 4, 0, "toggle", nullptr, nullptr);
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(param.StateToRealWorld(kStates[i++ & 7]));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Toggle);

BENCHMARK_CAPTURE(BM_RoundTrip, ToggleRanges, "toggleRanges", 0, 1, 1);
BENCHMARK_CAPTURE(BM_RoundTrip, ToggleMap, "toggleMap", 0, 1, 1);
BENCHMARK_CAPTURE(BM_RoundTrip, LinearRanges, "linearRanges", 20, 20000, 0.1);
BENCHMARK_CAPTURE(BM_RoundTrip, LinearRangesWithRounding, "linearRangesWithRounding", 20, 20000,
                  0.1);

// The floors: the same arithmetic written inline, no function pointer, no guard.
void BM_InlineLinear(benchmark::State &state) {
    const double base = -24.0, factor = 48.0 * 0.001, res = 0.1, inv = 10.0;
    std::size_t i = 0;
    for (auto _ : state) {
        const double x = kStates[i++ & 7] * factor + base;
        const double whole = std::floor(x);
        const double rw = whole + std::floor((x - whole) * inv + 0.5) * res;
        benchmark::DoNotOptimize((rw - base) / factor);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_InlineLinear);

void BM_InlineLogarithmic(benchmark::State &state) {
    const double base = 20.0, factor = std::pow(1000.0, 0.001), res = 0.1, inv = 10.0;
    const double logFactor = std::log(factor);
    std::size_t i = 0;
    for (auto _ : state) {
        const double x = std::pow(factor, kStates[i++ & 7]) * base;
        const double whole = std::floor(x);
        const double rw = whole + std::floor((x - whole) * inv + 0.5) * res;
        benchmark::DoNotOptimize(std::log(rw / base) / logFactor);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_InlineLogarithmic);

// The value text a drag refreshes at idle.
void BM_DisplayFloat1WithHz(benchmark::State &state) {
    ml::WTDisplayFunctionsMap map;
    ml::DisplayFunctions::AddBuiltIns(map);
    auto const &display = map[ml::WTParamMapKey("DisplayFloat1WithHz")];
    ml::WCFixedString<127> out;
    std::size_t i = 0;
    for (auto _ : state) {
        display(0.0, kStates[i++ & 7] * 20.0, out);
        benchmark::DoNotOptimize(out.c_str());
    }
}
BENCHMARK(BM_DisplayFloat1WithHz);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_RoundTrip/Linear", "BM_InlineLinear");
    ratios.PrintRatio("BM_RoundTrip/Logarithmic", "BM_InlineLogarithmic");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
