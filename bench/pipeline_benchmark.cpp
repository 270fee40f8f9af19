// What one value change costs from UpdateParamState to the process side: the gates, the plug-in's
// UpdateParamSelf writing one coefficient and preparing its buffer, the send and the free, with a
// process side that hands out buffers from a fixed pool and copies words into a memory image.
// The floor is what no update can avoid: taking the same kind of recursive lock, running the
// parameter's scale function and writing the 4 bytes of the word. Each iteration alternates two
// states so every one is a real change; the allocations counted inside the loop print beside the
// time and must stay 0. The ratios print at the end, on CPU time.

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>

#include "Code/Algorithm/cALGORITHM.h"
#include "bench/support/WCBenchRatios.h"
#include "core/WCStMemObj.h"
#include "core/miThread.h"
#include "tests/support/WCCountingAllocator.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using ml::BUFFER_HEADER;

enum EId : std::uint64_t { eGain, eFreq, eQ };
constexpr int kCoefs = 4;

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue>
    </Parameter>
  <Parameter Name="Freq"><Scale><ScaleType Type="logarithmic"/><Minimum>20</Minimum>
    <Maximum>20000</Maximum></Scale><InitialValue>1000</InitialValue></Parameter>
  <Parameter Name="Q"><Scale><ScaleType Type="linear"/><Minimum>0.1</Minimum><Maximum>10</Maximum>
    </Scale><InitialValue>1</InitialValue></Parameter>
</ParamXML>)";

// One coefficient word per parameter, at the parameter's id; each change sends that word alone.
class WCPipelineAlgorithm : public ml::cALGORITHM {
public:
    using cALGORITHM::cALGORITHM;

protected:
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t id) override {
        double value = 0.0;
        if (GetParamRealWorld(id, value) != 0)
            return nullptr;
        const int index = static_cast<int>(id);
        ConvertFracToCoefs(value, index);
        return PrepareCoefBufferWithBypass(index, 1, true);
    }
    BUFFER_HEADER *UpdateAlgSelf() override { return PrepareCoefBufferWithBypass(0, kCoefs, true); }
    BUFFER_HEADER *InitAlgSelf() override { return UpdateAlgSelf(); }
    int DoIdleSelf(short) override { return 0; }
    BUFFER_HEADER *ResetAudioBuffersSelf() override { return nullptr; }
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = kCoefs;
        DSPReqRes().cycles = 1;
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

// A process side as a native module would have one: buffers come from a fixed pool with their
// words preallocated, a send copies coefficient words into the memory image, a free returns the
// buffers to the pool. Nothing is logged and nothing allocated.
class WCPoolProcessSide {
public:
    WCPoolProcessSide() {
        for (std::size_t i = 0; i < kPool; ++i) {
            m_Buffers[i].data = m_Words[i].data();
            m_Free[i] = &m_Buffers[i];
        }
        m_FreeCount = kPool;
    }

    static int Exec(int op, std::int64_t refcon, void *a, void *b, void *) {
        auto *self = reinterpret_cast<WCPoolProcessSide *>(refcon);
        switch (op) {
        case ml::eExecNewBuffer:
            return self->Take(*static_cast<BUFFER_HEADER const *>(a),
                              *static_cast<BUFFER_HEADER **>(b));
        case ml::eExecSendBuffers:
        case ml::eExecSendBuffersInit:
            return self->Write(static_cast<BUFFER_HEADER const *>(a));
        case ml::eExecFreeBuffers:
            self->Give(static_cast<BUFFER_HEADER *>(a));
            return 0;
        default:
            // The converters and the word size stay the library's defaults.
            return ml::eNotImplemented;
        }
    }

    float Coef(int index) const {
        float word = 0.0f;
        std::memcpy(&word, &m_Memory[static_cast<std::size_t>(index)], sizeof word);
        return word;
    }

private:
    static constexpr std::size_t kPool = 8;
    static constexpr std::size_t kWordsPerBuffer = 16;

    int Take(BUFFER_HEADER const &request, BUFFER_HEADER *&out) {
        if (m_FreeCount == 0 || request.count < 0 ||
            static_cast<std::size_t>(request.count) > kWordsPerBuffer)
            return ml::eMemOutOfMemory;
        BUFFER_HEADER *buffer = m_Free[--m_FreeCount];
        // Only the fields this side reads back, one by one: a whole-struct copy reads wide words
        // the caller has just written narrow, which stalls store forwarding on every change.
        buffer->next = nullptr;
        buffer->kind = request.kind;
        buffer->offset = request.offset;
        buffer->count = request.count;
        out = buffer;
        return 0;
    }
    int Write(BUFFER_HEADER const *chain) {
        for (; chain != nullptr; chain = chain->next) {
            if (chain->kind != ml::KPAPI_PROCESS_MEMORY::eBufferCoefs)
                continue;
            if (chain->offset < 0 ||
                static_cast<std::size_t>(chain->offset) + chain->count > m_Memory.size())
                return ml::eOutOfRangeNumber;
            auto const *words = static_cast<std::uint32_t const *>(chain->data);
            for (int i = 0; i < chain->count; ++i)
                m_Memory[static_cast<std::size_t>(chain->offset + i)] = words[i];
        }
        return 0;
    }
    void Give(BUFFER_HEADER *chain) {
        for (; chain != nullptr && m_FreeCount < kPool; chain = chain->next)
            m_Free[m_FreeCount++] = chain;
    }

    std::array<BUFFER_HEADER, kPool> m_Buffers{};
    std::array<std::array<std::uint32_t, kWordsPerBuffer>, kPool> m_Words{};
    std::array<std::uint32_t, 64> m_Memory{};
    std::array<BUFFER_HEADER *, kPool> m_Free{};
    std::size_t m_FreeCount = 0;
};

// A started instance on the pool process side, in the order a shell starts one.
struct WSWorld {
    WSWorld() {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        alg = new WCPipelineAlgorithm(info, container);
        alg->SetMainThreadRef();
        alg->SetExecCallBack(&WCPoolProcessSide::Exec, reinterpret_cast<std::int64_t>(&process));
        alg->InitProcessCode();
        alg->FinishCreate();
        alg->InitData();
        ml::KPAPI_1::LocateInfo locate{0, 0, 0, 0, 0};
        alg->Locate(&locate, nullptr, nullptr);
        alg->InitInstanceData();
        alg->SetProcessActive(true);
        alg->InitAlg(true);
    }
    ~WSWorld() {
        alg->SetProcessActive(false);
        alg->Dispose();
        delete alg;
    }
    WCPoolProcessSide process;
    ml::WTResContainerType *container = nullptr;
    WCPipelineAlgorithm *alg = nullptr;
};

WSWorld &World() {
    static WSWorld world;
    return world;
}

constexpr std::array<double, 2> kStates = {250.0, 750.0};

// A control's value request down to the process side's memory.
void BM_Pipeline(benchmark::State &state, EId id) {
    ml::cALGORITHM *alg = World().alg;
    std::size_t i = 0;
    // Counted around the whole loop, so the count costs the measured changes nothing; the timing
    // loop itself allocates nothing.
    const long before = mirel_test::AllocationsSoFar();
    for (auto _ : state) {
        BUFFER_HEADER *chain = alg->UpdateParamState(id, kStates[i++ & 1], true);
        alg->SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
    }
    const long allocations = mirel_test::AllocationsSoFar() - before;
    double realWorld = 0.0;
    alg->GetParamRealWorld(id, realWorld);
    if (World().process.Coef(static_cast<int>(id)) != static_cast<float>(realWorld))
        state.SkipWithError("the coefficient did not reach the process side");
    state.counters["allocs"] = static_cast<double>(allocations);
}
BENCHMARK_CAPTURE(BM_Pipeline, Linear, eGain);
BENCHMARK_CAPTURE(BM_Pipeline, Logarithmic, eFreq);

// The floor: the recursive process lock, the same parameter's scale function, one word written.
void BM_LockScaleWrite(benchmark::State &state, EId id) {
    ml::sCONTROL_PARAM const *param = World().alg->GetParam(id);
    ml::miThread::ThreadMutexInited lock;
    lock.init();
    std::array<std::uint32_t, kCoefs> memory{};
    std::size_t i = 0;
    for (auto _ : state) {
        lock.obtain();
        const float word = static_cast<float>(param->StateToRealWorld(kStates[i++ & 1]));
        std::memcpy(&memory[id], &word, sizeof word);
        benchmark::DoNotOptimize(memory);
        lock.release();
    }
}
BENCHMARK_CAPTURE(BM_LockScaleWrite, Linear, eGain);
BENCHMARK_CAPTURE(BM_LockScaleWrite, Logarithmic, eFreq);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_Pipeline/Linear", "BM_LockScaleWrite/Linear", "aim: at most 3");
    ratios.PrintRatio("BM_Pipeline/Logarithmic", "BM_LockScaleWrite/Logarithmic",
                      "aim: at most 3");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
