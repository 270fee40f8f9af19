// The frame's hot paths allocate nothing: selector calls a shell makes per block or per idle
// tick, and a coefficient update on the library's side. The process side here hands out buffers
// from a fixed pool, so every allocation counted is the library's own.

#include <gtest/gtest.h>

#include "Code/Algorithm/PluginInfoSelectors.h"
#include "tests/Code/Algorithm/WCTestAlgorithm.h"
#include "tests/support/WCCountingAllocator.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace {

using namespace mirel_test;

// A process side without a heap: four buffers with room for eight words each.
struct WSPool {
    ml::BUFFER_HEADER headers[4];
    char words[4][8 * 8];
    bool used[4] = {};
};
WSPool g_pool;

int PoolProcessSide(int op, std::int64_t, void *a, void *b, void *) {
    switch (op) {
    case ml::eExecNewBuffer:
        for (int i = 0; i < 4; ++i) {
            if (!g_pool.used[i]) {
                g_pool.used[i] = true;
                g_pool.headers[i] = *static_cast<ml::BUFFER_HEADER const *>(a);
                g_pool.headers[i].data = g_pool.words[i];
                *static_cast<ml::BUFFER_HEADER **>(b) = &g_pool.headers[i];
                return 0;
            }
        }
        return -1;
    case ml::eExecFreeBuffers:
        for (auto *buffer = static_cast<ml::BUFFER_HEADER *>(a); buffer; buffer = buffer->next)
            g_pool.used[buffer - g_pool.headers] = false;
        return 0;
    default: return 0;
    }
}

// A plug-in whose own hooks allocate nothing either, unlike the logging test plug-in.
class WCQuietAlgorithm : public WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    ml::BUFFER_HEADER *UpdateAlgSelf() override {
        ConvertFracToCoefs(0.25, 0);
        ConvertIntToCoefs(1, 1);
        return PrepareCoefBufferWithBypass(0, 2, true);
    }
    ml::BUFFER_HEADER *InitAlgSelf() override { return UpdateAlgSelf(); }
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 2;
        DSPReqRes().cycles = 1;
    }
};

TEST(AlgorithmHotPaths, SelectorsAndCoefficientUpdatesAllocateNothing) {
    ml::WTResContainerType *container = nullptr;
    WCQuietAlgorithm alg(TestComponent(), container);
    alg.SetExecCallBack(&PoolProcessSide, 0);
    alg.InitProcessCode();
    alg.FinishCreate();
    alg.InitData();
    alg.SetProcessActive(true);
    ml::PluginInstance instance(TestComponent());
    instance.m_pAlg = &alg;

    bool flag = false;
    std::int32_t words = 0;
    std::uint32_t rate = 0;
    double states = 0;
    long allocations = 0;
    {
        const WCAllocationCounter counter;
        for (int i = 0; i < 100; ++i) {
            ml::GetPluginInfo_bool(instance, ml::WCFourCC("byps"), flag, 0);
            ml::GetPluginInfo_bool(instance, ml::WCFourCC("isml"), flag, 0);
            ml::GetPluginInfo_int32_t(instance, ml::WCFourCC("gncf"), words, 0);
            ml::GetPluginInfo_uint32_t(instance, ml::WCFourCC("Orrt"), rate, 0);
            ml::GetPluginInfo_double(instance, ml::WCFourCC("pnst"), states, 0);
            alg.ConvertFracToCoefs(0.001 * i, 0);
            ml::BUFFER_HEADER *chain = alg.UpdateAlg();
            alg.SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
            alg.DoIdle(0);
        }
        allocations = counter.OnAllThreads();
    }
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(words, 2);
}

} // namespace
