// What a host's save and restore of a plug-in's whole state costs: PreparePresetChunk of an
// instance with 500 parameters in both setups, then SetPresetChunk of that text into a second
// instance, against the floor of pugixml parsing the same chunk text and writing it back.
// The process side refuses buffers, so the restore's coefficient send costs nothing here; the
// time is the preset work. The ratio prints at the end, with the aim of at most 2x and 1 ms.

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include <pugixml.hpp>

#include "Code/Algorithm/cALGORITHM.h"
#include "bench/support/WCBenchRatios.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "core/WCStMemObj.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

constexpr int kParams = 500;

std::string ParamXML() {
    std::string xml = "<ParamXML>";
    for (int i = 0; i < kParams; ++i)
        xml += "<Parameter Name=\"P" + std::to_string(i) +
               "\"><Scale><ScaleType Type=\"linear\"/><Minimum>-24</Minimum><Maximum>12</Maximum>"
               "<Resolution>0.01</Resolution></Scale><InitialValue>0</InitialValue></Parameter>";
    return xml + "</ParamXML>";
}

class WCManyParamsAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 4;
        DSPReqRes().cycles = 1;
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        static const std::string xml = ParamXML();
        return out.Assign(xml.data(), xml.size());
    }
};

// A process side that answers what it is asked and refuses buffers.
int RefusingExec(int op, std::int64_t, void *, void *, void *) {
    return op == ml::eExecNewBuffer ? ml::eMemOutOfMemory : ml::eNotImplemented;
}

struct WSInstance {
    WSInstance() {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        // A current version: an older one would read its own chunks with the obsolete reader.
        info.m_ExternalVersion.ReadFromString("13.1.0");
        alg = new WCManyParamsAlgorithm(info, container);
        alg->SetMainThreadRef();
        alg->SetExecCallBack(&RefusingExec, 0);
        alg->InitProcessCode();
        alg->FinishCreate();
        alg->InitData();
        alg->InitInstanceData();
        alg->SetProcessActive(true);
    }
    ~WSInstance() {
        alg->SetProcessActive(false);
        alg->Dispose();
        delete alg;
    }
    ml::WTResContainerType *container = nullptr;
    WCManyParamsAlgorithm *alg = nullptr;
};

struct WSWorld {
    WSWorld() {
        // Distinct values in both setups, so every value is written and read.
        for (int setup = 0; setup < 2; ++setup) {
            for (std::uint64_t id = 0; id < kParams; ++id)
                source.alg->UpdateParamState(id, static_cast<double>((id * 7 + setup * 3) % 1000),
                                             false);
            source.alg->ToggleActiveSetup(ml::eCurrentSetup);
        }
    }
    WSInstance source, target;
};

WSWorld &World() {
    static WSWorld world;
    return world;
}

void BM_ChunkRoundTrip(benchmark::State &state) {
    WSWorld &world = World();
    std::size_t bytes = 0;
    for (auto _ : state) {
        ml::Utils::WCStMemObj chunk;
        if (world.source.alg->PreparePresetChunk(chunk, true, false) != 0 ||
            world.target.alg->SetPresetChunk(chunk) != 0) {
            state.SkipWithError("the chunk did not travel");
            break;
        }
        bytes = chunk.GetSize();
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_ChunkRoundTrip)->Unit(benchmark::kMicrosecond);

// The two halves of the round trip, to show where its time goes.
void BM_ChunkPrepare(benchmark::State &state) {
    WSWorld &world = World();
    for (auto _ : state) {
        ml::Utils::WCStMemObj chunk;
        if (world.source.alg->PreparePresetChunk(chunk, true, false) != 0) {
            state.SkipWithError("no chunk");
            break;
        }
        benchmark::DoNotOptimize(chunk.GetPtr());
    }
}
BENCHMARK(BM_ChunkPrepare)->Unit(benchmark::kMicrosecond);

void BM_ChunkSet(benchmark::State &state) {
    WSWorld &world = World();
    ml::Utils::WCStMemObj chunk;
    world.source.alg->PreparePresetChunk(chunk, true, false);
    for (auto _ : state) {
        if (world.target.alg->SetPresetChunk(chunk) != 0) {
            state.SkipWithError("the chunk was refused");
            break;
        }
    }
}
BENCHMARK(BM_ChunkSet)->Unit(benchmark::kMicrosecond);

// The floor: the same text parsed by pugixml and written back to a string.
void BM_PugiParseWrite(benchmark::State &state) {
    ml::Utils::WCStMemObj chunk;
    World().source.alg->PreparePresetChunk(chunk, true, false);
    const std::string text(static_cast<char const *>(chunk.GetPtr()), chunk.GetSize());
    struct WSStringWriter : pugi::xml_writer {
        std::string out;
        void write(const void *data, std::size_t size) override {
            out.append(static_cast<char const *>(data), size);
        }
    };
    for (auto _ : state) {
        pugi::xml_document doc;
        doc.load_buffer(text.data(), text.size());
        WSStringWriter writer;
        doc.save(writer, "    ", pugi::format_raw);
        benchmark::DoNotOptimize(writer.out.data());
    }
}
BENCHMARK(BM_PugiParseWrite)->Unit(benchmark::kMicrosecond);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_ChunkRoundTrip", "BM_PugiParseWrite", "aim: at most 2, and under 1 ms");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
