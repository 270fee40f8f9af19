#include <atomic>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Process/WCProcessMemory.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using ml::BUFFER_HEADER;
using ml::ProcessMemory::sEXT_BUFF;

// Four coefficients, four states, two ports each way, an X external of 8 words and a Y one of 4.
class WCMemoryAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    void InitProcessCodeSelf() override {
        auto &req = DSPReqRes();
        req.coefsWords = 4;
        req.statesWords = 4;
        req.inputs = req.outputs = 2;
        req.cycles = 1;
        sEXT_BUFF x;
        x.memSpace = ml::WCFourCC("XMEM");
        x.size = 8;
        x.accessCount = 2;
        sEXT_BUFF y = x;
        y.memSpace = ml::WCFourCC("YMEM");
        y.size = 4;
        y.accessCount = 3;
        req.extBuffs = {x, y};
    }
};

class ProcessMemory : public ::testing::Test {
protected:
    void SetUp() override {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        info.m_ComponentSubType = ml::WCFourCC("PmTs");
        m_Shell.Create(
            info,
            [this](ml::MirelComponentInfo const &i, ml::WTResContainerType *&c) {
                return m_Alg = new WCMemoryAlgorithm(i, c);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_EQ(m_Shell.Start(), 0);
    }
    // Sends (operation 0) and frees; the shell's memory then holds the words.
    void Send(BUFFER_HEADER *chain) {
        ASSERT_NE(chain, nullptr);
        EXPECT_EQ(m_Alg->SendAndFreeBuffers(chain, ml::eExecSendBuffers, true), 0);
    }
    int Word(std::vector<char> const &memory, int index) {
        std::int32_t word = 0;
        std::memcpy(&word, memory.data() + 4 * index, 4);
        return word;
    }

    mirel_shell::WCRecordingShell m_Shell;
    WCMemoryAlgorithm *m_Alg = nullptr;
};

TEST_F(ProcessMemory, PreparesNullExactlyWhereTheRulesSay) {
    sEXT_BUFF *x = m_Alg->GetExternalBuffer(0);
    ASSERT_NE(x, nullptr);
    sEXT_BUFF foreign = *x;
    foreign.memSpace = ml::WCFourCC("PMEM");
    struct Row {
        char const *what;
        std::function<BUFFER_HEADER *()> prepare;
        bool made;
    } const rows[] = {
        {"coefs, forced", [&] { return m_Alg->PrepareCoefBuffer(0, 4, nullptr, true); }, true},
        {"coefs, not forced", [&] { return m_Alg->PrepareCoefBuffer(0, 4, nullptr, false); },
         false},
        {"ext, count equal to size", [&] { return m_Alg->PrepareExtWriteBuffer(x, 0, 8); }, true},
        {"ext, count above size", [&] { return m_Alg->PrepareExtWriteBuffer(x, 0, 9); }, false},
        {"ext, run past the end", [&] { return m_Alg->PrepareExtWriteBuffer(x, 1, 8); }, false},
        {"ext, null", [&] { return m_Alg->PrepareExtWriteBuffer(nullptr, 0, 1); }, false},
        {"ext, foreign space", [&] { return m_Alg->PrepareExtWriteBuffer(&foreign, 0, 1); }, false},
        {"states", [&] { return m_Alg->PrepareStatesReadBuffer(0, 4); }, true},
    };
    for (auto const &row : rows) {
        BUFFER_HEADER *buffer = row.prepare();
        EXPECT_EQ(buffer != nullptr, row.made) << row.what;
        m_Alg->FreeBuffers(buffer);
    }
    EXPECT_EQ(m_Alg->SendBuffers(nullptr, ml::eExecSendBuffers), 0);

    // Bypass stops the plain coefficient buffer, not the one that reads the bypass image.
    m_Alg->SetBypass(true);
    EXPECT_EQ(m_Alg->PrepareCoefBuffer(0, 1, nullptr, true), nullptr);
    BUFFER_HEADER *bypassed = m_Alg->PrepareCoefBufferWithBypass(0, 1, true);
    EXPECT_NE(bypassed, nullptr);
    m_Alg->FreeBuffers(bypassed);
    m_Alg->SetBypass(false);

    m_Alg->SetProcessActive(false);
    EXPECT_EQ(m_Alg->PrepareCoefBufferWithBypass(0, 1, true), nullptr);
    EXPECT_EQ(m_Alg->PrepareStatesWriteBuffer(0, 1), nullptr);
    EXPECT_EQ(m_Alg->PrepareExtWriteBuffer(x, 0, 1), nullptr);
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

TEST_F(ProcessMemory, FailedBufferCreationMakesEveryPrepareNullAndLeaksNothing) {
    m_Shell.m_FailNewBufferAfter = static_cast<int>(m_Shell.BuffersCreated());
    sEXT_BUFF *x = m_Alg->GetExternalBuffer(0);
    std::vector<BUFFER_HEADER *> made = {
        m_Alg->PrepareCoefBuffer(0, 1, nullptr, true),
        m_Alg->PrepareCoefBufferWithBypass(0, 1, true),
        m_Alg->PrepareStatesWriteBuffer(0, 1),
        m_Alg->PrepareExtReadWriteBuffer(x, 0, 1),
        m_Alg->InitStatesBuffer(),
        m_Alg->ChainBufs(m_Alg->PrepareCoefBuffer(0, 1, nullptr, true), nullptr),
    };
    for (BUFFER_HEADER *buffer : made)
        EXPECT_EQ(buffer, nullptr);
    int vu = 0;
    EXPECT_NE(m_Alg->ReadVU(0, vu), 0);
    const int values[3] = {1, 2, 3};
    EXPECT_EQ(m_Alg->SendFreeAndSplitIntoSmallBuffers(ml::KPAPI_PROCESS_MEMORY::eBufferExtX, 3, x,
                                                      values, 0, 2),
              -1);
    EXPECT_NE(m_Alg->InitExternalFromArray(x, 0, 3, values), 0);
    m_Shell.Update();
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

TEST_F(ProcessMemory, SplitsLargeTablesIntoPiecesOfAtMostPieceWords) {
    sEXT_BUFF *x = m_Alg->GetExternalBuffer(0);
    const int values[8] = {11, 12, 13, 14, 15, 16, 17, 18};
    struct Row {
        int total, piece;
        std::vector<std::int64_t> counts;
    } const rows[] = {{8, 3, {3, 3, 2}}, {8, 8, {8}}, {5, 2, {2, 2, 1}}, {0, 2, {}}, {-1, 2, {}}};
    for (auto const &row : rows) {
        m_Shell.ClearLog();
        EXPECT_EQ(m_Alg->SendFreeAndSplitIntoSmallBuffers(ml::KPAPI_PROCESS_MEMORY::eBufferExtX,
                                                          row.total, x, values, 0, row.piece),
                  0);
        std::vector<std::int64_t> counts;
        for (auto const &call : m_Shell.Calls())
            if (call.op == ml::eExecNewBuffer)
                counts.push_back(call.arg2);
        EXPECT_EQ(counts, row.counts) << row.total << " by " << row.piece;
        for (int i = 0; i < row.total; ++i)
            EXPECT_EQ(Word(m_Shell.XMemory(), static_cast<int>(x->offset) + i), values[i]);
    }
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

TEST_F(ProcessMemory, WordsReachTheProcessSideAndComeBack) {
    ASSERT_EQ(m_Alg->ConvertFracToCoefs(0.5, 1), 0);
    ASSERT_EQ(m_Alg->ConvertIntToCoefs(7, 2), 0);
    EXPECT_EQ(m_Alg->ConvertFracToCoefs(0.5, 4), ml::eOutOfRangeNumber);
    Send(m_Alg->PrepareCoefBufferWithBypass(0, 4, true));
    EXPECT_EQ(m_Shell.CoefAsFloat(1), 0.5f);
    EXPECT_EQ(m_Alg->VerifyCompCoefs(0, 4), 0);
    m_Alg->ConvertFracToCoefs(0.25, 1);
    EXPECT_EQ(m_Alg->VerifyCompCoefs(0, 4), ml::eValueNotFound);

    // The bypass forms write the image the flag picks.
    m_Alg->SetBypass(true);
    m_Alg->ConvertFracToCoefsWithBypass(-1.0, 0);
    float word = 0;
    std::memcpy(&word, m_Alg->GetPointerToBypassCoef(ml::eCurrentSetup, 0), 4);
    EXPECT_EQ(word, -1.0f);
    EXPECT_EQ(m_Alg->GetPointerToCoefWithBypass(ml::eCurrentSetup, 0),
              m_Alg->GetPointerToBypassCoef(ml::eCurrentSetup, 0));
    m_Alg->SetBypass(false);

    // A read-write VU hands back the old word and leaves the new one.
    int vu = -1;
    EXPECT_EQ(m_Alg->SetSingleStateInt(2, 40), 0);
    EXPECT_EQ(m_Alg->ReadVU(2, true, 41, vu), 0);
    EXPECT_EQ(vu, 40);
    EXPECT_EQ(m_Alg->ReadVU(2, vu), 0);
    EXPECT_EQ(vu, 41);

    const ml::cmplx table[2] = {{0.5f, -0.5f}, {0.25f, 1.0f}};
    EXPECT_FALSE(m_Alg->IsSharedExternalInitialized(1));
    EXPECT_EQ(m_Alg->InitExternalFromArray(m_Alg->GetExternalBuffer(1), 0, 2, table), 0);
    EXPECT_TRUE(m_Alg->IsSharedExternalInitialized(1));
    float y[4];
    std::memcpy(y, m_Shell.YMemory().data() + 4 * m_Alg->GetExternalBuffer(1)->offset, sizeof y);
    EXPECT_EQ(std::vector<float>(y, y + 4), (std::vector<float>{0.5f, -0.5f, 0.25f, 1.0f}));
    EXPECT_EQ(m_Alg->GetExtAccessCount(), 5u);
    EXPECT_EQ(m_Alg->GetExternalBuffersNum(), 2);
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

TEST_F(ProcessMemory, BreakChainAtLastBufferDetachesOnlyTheLast) {
    BUFFER_HEADER *a = m_Alg->PrepareStatesWriteBuffer(0, 1);
    BUFFER_HEADER *b = m_Alg->PrepareStatesWriteBuffer(1, 1);
    BUFFER_HEADER *c = m_Alg->PrepareStatesWriteBuffer(2, 1);
    BUFFER_HEADER *chain = m_Alg->ChainBufs(m_Alg->ChainBufs(a, b), c);
    EXPECT_EQ(m_Alg->BreakChainAtLastBuffer(chain), c);
    EXPECT_EQ(b->next, nullptr);
    EXPECT_EQ(m_Alg->BreakChainAtLastBuffer(c), nullptr);
    m_Alg->FreeBuffers(chain);
    m_Alg->FreeBuffers(c);
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

TEST_F(ProcessMemory, DumpsCarryTheirSectionAndColumnTexts) {
    m_Alg->ConvertFracToCoefs(0.5, 0);
    Send(m_Alg->PrepareCoefBufferWithBypass(0, 1, true));
    struct Row {
        int type;
        int code;
        char const *text;
    } const rows[] = {
        {ml::WCProcessMemory::eDumpCoefs, 0,
         "======== Coefs ========\n ===  index: int32_t = double = hex   ====\n"
         "0: 1056964608 = 0.5 = 0x3F000000\n"},
        {ml::WCProcessMemory::eDumpStates, 0,
         "======== States ========\n ===  index: int32_t = double  ====\n0: 0 = 0\n"},
        {ml::WCProcessMemory::eDumpProgram, ml::eWrongObjectState,
         "Invalid request to read program memory in native\n"},
        {99, ml::eOutOfRangeNumber, "Invalid DSP type to dump\n"},
    };
    for (auto const &row : rows) {
        std::string text;
        EXPECT_EQ(m_Alg->DumpDSP(row.type, 0, 1, text), row.code);
        EXPECT_EQ(text, row.text);
    }
    std::string externals;
    EXPECT_EQ(m_Alg->GetProcessMemory().DumpAllDSPExternals(externals), 0);
    EXPECT_EQ(externals.rfind("======== DSP Externals ========\nexternal 0: XMEM size 8\n"
                              " ===  index: int32_t = double  ====\n0: 0 = 0\n",
                              0),
              0u);
}

TEST_F(ProcessMemory, PortRefreshSetsRoutingAndFlagBits) {
    int routing[2] = {5, 9};
    ml::sIO_PORT *ports = m_Alg->RefreshInputPORTInfo(routing);
    ASSERT_NE(ports, nullptr);
    EXPECT_EQ(ports[1].routing, 9);
    EXPECT_EQ(ports[1].flags, 0x11u);
    ports = m_Alg->RefreshInputPORTInfo(nullptr);
    EXPECT_EQ(ports[0].routing, 65535);
    EXPECT_EQ(ports[0].flags, 0x01u);
    m_Alg->GetProcessMemory().SizePorts(0, 0);
    EXPECT_EQ(m_Alg->RefreshOutputPORTInfo(routing), nullptr);
}

TEST_F(ProcessMemory, SendsFromSeveralThreadsAreSerialised) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([this, t] {
            for (int i = 0; i < 100; ++i)
                m_Alg->SetSingleStateInt(t, i);
        });
    for (auto &thread : threads)
        thread.join();
    for (int t = 0; t < 4; ++t)
        EXPECT_EQ(Word(m_Shell.StateMemory(), m_Alg->GetStatesOfs() + t), 99);
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

// The exchange asks the process side in a fixed order; a side without fixed-point converters
// leaves the fixed slots equal to the fraction ones.
std::vector<int> g_Ops;
bool g_SupplyFix = false;
int Answer(double, void *) {
    return 4;
}
int Question(void const *, double *) {
    return 4;
}
int Exchange(int op, std::int64_t, void *a, void *, void *) {
    g_Ops.push_back(op);
    if (op == ml::eExecWriteFracConverter)
        *static_cast<ml::WTWriteFracFunc *>(a) = &Answer;
    if (op == ml::eExecReadFracConverter)
        *static_cast<ml::WTReadFracFunc *>(a) = &Question;
    if (op == ml::eExecWriteFixConverter || op == ml::eExecReadFixConverter)
        return g_SupplyFix ? 0 : ml::eNotImplemented;
    if (op == ml::eExecWordSize)
        *static_cast<int *>(a) = 9; // nonsense falls back to 4
    return 0;
}

TEST(ProcessMemoryExchange, AsksInOrderAndFallsBackForFixedSlots) {
    for (bool supply : {false, true}) {
        g_Ops.clear();
        g_SupplyFix = supply;
        bool active = false, bypass = false, native = true, net = false;
        std::atomic<ml::EPluginSetup> setup = ml::eSetupA;
        ml::WCProcessMemory memory({&active, &bypass, &setup, &native, &net});
        memory.SetExecCallBack(&Exchange, 1);
        EXPECT_EQ(g_Ops, (std::vector<int>{11, 12, 7, 8, 20, 9, 10, 21, 13, 14}));
        EXPECT_EQ(memory.m_WordSize, 4);
        EXPECT_EQ(memory.Converters().m_WriteFix == &Answer, !supply);
        EXPECT_EQ(memory.Converters().m_ReadFix == &Question, !supply);
    }
}

} // namespace
