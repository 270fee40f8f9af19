// What the plug-in frame costs a shell: a selector call against the direct member call it
// routes to, a key/value selector against a plain std::map<std::string, bool> lookup, a named
// request against reading the same JSON by hand, and a full UpdateAlg through the exec callback
// against copying the coefficient words. Each pair runs in the same program; the ratios are
// printed at the end.

#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <string>

#include "Code/Algorithm/MirelAPI3Internal.h"
#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "bench/support/WCBenchRatios.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

class WCBenchAlgorithm : public ml::cALGORITHM {
public:
    using cALGORITHM::cALGORITHM;

protected:
    ml::BUFFER_HEADER *UpdateParamSelf(std::uint64_t) override { return nullptr; }
    ml::BUFFER_HEADER *UpdateAlgSelf() override {
        for (int i = 0; i < 16; ++i)
            ConvertFracToCoefs(0.01 * i, i);
        return PrepareCoefBufferWithBypass(0, 16, true);
    }
    ml::BUFFER_HEADER *InitAlgSelf() override { return UpdateAlgSelf(); }
    int DoIdleSelf(short) override { return 0; }
    ml::BUFFER_HEADER *ResetAudioBuffersSelf() override { return nullptr; }
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 16;
        DSPReqRes().cycles = 1;
    }
};

struct WSWorld {
    WSWorld() {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        shell.Create(
            info,
            [](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
                return new WCBenchAlgorithm(component, container);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        shell.Start();
        shell.Algorithm()->SetPluginValue_bool("IsMidiListener", true);
        shell.ClearLog();
    }
    mirel_shell::WCRecordingShell shell;
};

WSWorld &World() {
    static WSWorld world;
    return world;
}

void BM_SelectorBypass(benchmark::State &state) {
    auto &instance = World().shell.Instance();
    bool value = false;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ml::GetPluginInfo_bool(instance, ml::WCFourCC("byps"), value, 0));
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(BM_SelectorBypass);

void BM_DirectBypass(benchmark::State &state) {
    ml::cALGORITHM *alg = World().shell.Algorithm();
    for (auto _ : state) {
        benchmark::DoNotOptimize(alg);
        benchmark::DoNotOptimize(alg->GetBypass());
    }
}
BENCHMARK(BM_DirectBypass);

void BM_SelectorKeyValue(benchmark::State &state) {
    auto &instance = World().shell.Instance();
    bool value = false;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ml::GetPluginInfo_bool(instance, ml::WCFourCC("isml"), value, 0));
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(BM_SelectorKeyValue);

void BM_StdMapKeyValue(benchmark::State &state) {
    std::map<std::string, bool> store;
    for (char const *key : {"IsMidiListener", "IsTempoListener", "NeedOwnAutomationThread",
                            "FinishCreateWasCalled", "IsSampleBased", "samplerate"})
        store[key] = true;
    for (auto _ : state) {
        auto found = store.find("IsMidiListener");
        benchmark::DoNotOptimize(found != store.end() && found->second);
    }
}
BENCHMARK(BM_StdMapKeyValue);

void BM_NamedRequestGetValue(benchmark::State &state) {
    ml::WSMirelAPI3_RawRequest raw;
    raw.m_pInstance = &World().shell.Instance();
    ml::WCMirelAPI3_PluginSide_RequestAndResponse request;
    request.m_pRawRequest = &raw;
    request.m_Request = nlohmann::json::parse(R"({"params":{"key":"samplerate"}})");
    for (auto _ : state) {
        request.m_Response = nlohmann::json::object();
        benchmark::DoNotOptimize(ml::MirelAPI3Internal::GetPluginValue_double(request));
    }
}
BENCHMARK(BM_NamedRequestGetValue);

void BM_HandReadJson(benchmark::State &state) {
    const nlohmann::json in = nlohmann::json::parse(R"({"params":{"key":"samplerate"}})");
    ml::cALGORITHM *alg = World().shell.Algorithm();
    for (auto _ : state) {
        nlohmann::json out = nlohmann::json::object();
        const std::string key = in["params"]["key"].get<std::string>();
        out["result"]["value"] = alg->GetPluginValue_double(key.c_str(), 0.0);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_HandReadJson);

void BM_UpdateAlgThroughShell(benchmark::State &state) {
    auto &shell = World().shell;
    for (auto _ : state) {
        benchmark::DoNotOptimize(shell.Update());
        shell.ClearLog();
    }
}
BENCHMARK(BM_UpdateAlgThroughShell);

void BM_CopyCoefficientWords(benchmark::State &state) {
    float image[16] = {};
    float memory[16] = {};
    for (auto _ : state) {
        for (int i = 0; i < 16; ++i)
            image[i] = static_cast<float>(0.01 * i);
        std::memcpy(memory, image, sizeof image);
        benchmark::DoNotOptimize(memory);
    }
}
BENCHMARK(BM_CopyCoefficientWords);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_SelectorBypass", "BM_DirectBypass");
    ratios.PrintRatio("BM_SelectorKeyValue", "BM_StdMapKeyValue");
    ratios.PrintRatio("BM_NamedRequestGetValue", "BM_HandReadJson");
    ratios.PrintRatio("BM_UpdateAlgThroughShell", "BM_CopyCoefficientWords");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios);
}
