#include "Code/Algorithm/cALGORITHM.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "tests/Code/Algorithm/WCTestAlgorithm.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace mirel_test;
using mirel_shell::WCRecordingShell;
using StartedAlgorithm = WCStartedAlgorithm;

TEST(AlgorithmLifeCycle, WalksTheRequiredOrderFromConstructionToDestruction) {
    WCTestHome home;
    WCRecordingShell shell;
    WCTestAlgorithm *alg = CreateTestAlgorithm(shell);
    ASSERT_NE(alg, nullptr);
    ASSERT_EQ(shell.Start(), 0);
    EXPECT_TRUE(alg->IsInstanceReady());
    EXPECT_TRUE(alg->GetProcessActive());

    const std::vector<std::string> expectedHooks = {"SetExecCallBackSelf",
                                                    "AdjustProcessCodeDescriptionsSelf",
                                                    "InitProcessCodeSelf",
                                                    "FinishCreateSelf",
                                                    "InitDataSelf",
                                                    "InitInstanceDataSelf",
                                                    "SetProcessActiveSelf(true)",
                                                    "InitAlgSelf"};
    EXPECT_EQ(alg->m_Hooks, expectedHooks);

    // The process side is asked for its locate flag, word size and converters first, in this
    // order; the initial buffers are created, chained, sent as initialisation and freed.
    const std::vector<int> expectedOps = {11, 12, 7, 8, 20, 9, 10, 21, 13, 14,
                                          36, // both setups made equal: setup B modified
                                          5,  5,  3, 1, 4};
    EXPECT_EQ(shell.Ops(), expectedOps);
    EXPECT_EQ(shell.LiveBuffers(), 0u);

    shell.ClearLog();
    ASSERT_EQ(shell.Stop(), 0);
    const std::vector<std::string> steps(shell.Steps().end() - 4, shell.Steps().end());
    EXPECT_EQ(steps, (std::vector<std::string>{"SetProcessActive(false)", "dispose GUIs", "Dispose",
                                               "destroy"}));
    EXPECT_TRUE(shell.Ops().empty()) << "teardown sends nothing";
    EXPECT_EQ(shell.Algorithm(), nullptr);
}

TEST(AlgorithmLifeCycle, InitialBuffersLandInTheLocatedProcessMemory) {
    WCRecordingShell shell;
    shell.m_CoefsBase = 5;
    CreateTestAlgorithm(shell);
    ASSERT_EQ(shell.Start(), 0);
    EXPECT_EQ(shell.Algorithm()->GetCoefsOfs(), 5);
    EXPECT_FLOAT_EQ(shell.CoefAsFloat(0), 0.5f);
    std::int32_t word = 0;
    std::memcpy(&word, shell.CoefMemory().data() + (5 + 1) * 4, 4);
    EXPECT_EQ(word, 3);
    // Nothing was written below the base the shell gave.
    for (int i = 0; i < 5 * 4; ++i)
        ASSERT_EQ(shell.CoefMemory()[i], 0) << "byte " << i;

    ASSERT_EQ(shell.Update(), 0);
    EXPECT_FLOAT_EQ(shell.CoefAsFloat(0), 0.25f);
    EXPECT_EQ(shell.Algorithm()->GetNumUpdateAlgCalls(), 1u);
    EXPECT_EQ(shell.LiveBuffers(), 0u);
}

TEST(AlgorithmLifeCycle, InitAlgWithoutSendStillFreesTheBuffers) {
    WCRecordingShell shell;
    ml::cALGORITHM *alg = CreateTestAlgorithm(shell);
    alg->InitProcessCode();
    alg->FinishCreate();
    alg->InitData();
    alg->SetProcessActive(true);
    shell.ClearLog();
    EXPECT_EQ(alg->InitAlg(false), nullptr);
    EXPECT_EQ(shell.Ops(), (std::vector<int>{5, 5, 3, 4}));
    EXPECT_EQ(shell.LiveBuffers(), 0u);
}

TEST(AlgorithmLifeCycle, AFailingProcessSideLeavesNothingToSendAndNothingLeaked) {
    // InitAlgSelf makes a coefficient and a state buffer and chains them.
    struct WSCase {
        int failNewBufferAfter;
        bool failChain;
        bool sends;
    };
    for (WSCase const c :
         {WSCase{0, false, false}, WSCase{1, false, true}, WSCase{-1, true, false}}) {
        WCRecordingShell shell;
        shell.m_FailNewBufferAfter = c.failNewBufferAfter;
        shell.m_FailChainBuffers = c.failChain;
        CreateTestAlgorithm(shell);
        EXPECT_EQ(shell.Start(), 0);
        const auto ops = shell.Ops();
        EXPECT_EQ(std::count(ops.begin(), ops.end(), 1), c.sends ? 1 : 0) << c.failNewBufferAfter;
        // A refused chain frees both halves; nothing is abandoned to the process side.
        EXPECT_EQ(shell.LiveBuffers(), 0u) << c.failNewBufferAfter << " " << c.failChain;
    }
}

TEST(AlgorithmThreads, FirstMainThreadRefStaysAndAnyThreadIsMainBeforeOne) {
    ml::WTResContainerType *container = nullptr;
    WCTestAlgorithm unset(TestComponent(), container);
    bool mainElsewhere = false;
    std::thread([&] { mainElsewhere = unset.IsCurThreadMainThread(); }).join();
    EXPECT_TRUE(mainElsewhere) << "no thread stored yet";

    WCRecordingShell shell;
    ml::cALGORITHM *alg = CreateTestAlgorithm(shell);
    EXPECT_FALSE(alg->SetMainThreadRef()) << "the shell stored it in step 3";
    bool storedElsewhere = true;
    std::thread([&] {
        storedElsewhere = alg->SetMainThreadRef();
        mainElsewhere = alg->IsCurThreadMainThread();
    }).join();
    EXPECT_FALSE(storedElsewhere);
    EXPECT_FALSE(mainElsewhere);
    EXPECT_TRUE(alg->IsCurThreadMainThread());
}

// The process lock is recursive: UpdateAlg on another thread waits until the holder has released
// it as often as it took it.
TEST_F(StartedAlgorithm, UpdateAlgWaitsForTheProcessLock) {
    std::atomic<bool> updated{false};
    m_Alg->LockAlg();
    EXPECT_TRUE(m_Alg->TryLockAlg()) << "the holder takes it again";
    std::thread updater([&] {
        ml::BUFFER_HEADER *chain = m_Alg->UpdateAlg();
        updated = true;
        m_Alg->FreeBuffers(chain);
    });
    m_Alg->UnLockAlg();
    // The updater cannot finish while the lock is held; give it every chance to.
    for (int i = 0; i < 50 && !updated; ++i)
        std::this_thread::yield();
    EXPECT_FALSE(updated) << "one release of two leaves it held";
    m_Alg->UnLockAlg();
    updater.join();
    EXPECT_TRUE(updated);
}

// Idle, automation and message threads each write a pair of values that belong together; under
// the process lock no thread may ever see one half of another thread's write.
TEST(AlgorithmThreads, ProcessLockKeepsWritesOfSeveralThreadsWhole) {
    ml::WTResContainerType *container = nullptr;
    WCTestAlgorithm alg(TestComponent(), container);
    alg.SetPluginValue_double("pair:first", 0.0);
    alg.SetPluginValue_double("pair:second", 0.0);
    std::atomic<int> torn{0};
    auto writer = [&](double tag) {
        for (int i = 0; i < 2000; ++i) {
            alg.LockAlg();
            if (alg.GetPluginValue_double("pair:first", -1.0) !=
                alg.GetPluginValue_double("pair:second", -2.0))
                ++torn;
            alg.SetPluginValue_double("pair:first", tag + i);
            std::this_thread::yield();
            alg.SetPluginValue_double("pair:second", tag + i);
            alg.UnLockAlg();
        }
    };
    std::thread idle(writer, 1e6), automation(writer, 2e6), message(writer, 3e6);
    idle.join();
    automation.join();
    message.join();
    EXPECT_EQ(torn.load(), 0);
}

TEST(AlgorithmThreads, SecondLockExistsOnlyWhenAsked) {
    WCRecordingShell shell;
    ml::cALGORITHM *alg = CreateTestAlgorithm(shell);
    alg->FinishCreate();
    EXPECT_FALSE(alg->HasProcessLock());
    alg->LockProcess(); // free without the lock
    alg->UnLockProcess();

    WCRecordingShell other;
    ml::cALGORITHM *safe = CreateTestAlgorithm(other);
    safe->SetPluginValue_bool("NeedProcessThreadSafe", true);
    safe->FinishCreate();
    EXPECT_TRUE(safe->HasProcessLock());
}

TEST_F(StartedAlgorithm, SampleRateAboveTheMaximumIsRefusedAndKeepsTheRate) {
    EXPECT_EQ(m_Alg->ChangeSampleRate(96001), ml::kErrSampleRateTooHigh);
    EXPECT_EQ(m_Alg->GetSampleRate(), 44100);
    EXPECT_EQ(m_Alg->ChangeSampleRate(96000), 0);
    EXPECT_EQ(m_Alg->GetSampleRate(), 96000);
    m_Alg->m_Hooks.clear();
    EXPECT_EQ(m_Alg->ChangeSampleRate(96000), 0);
    EXPECT_TRUE(m_Alg->m_Hooks.empty()) << "the same rate changes nothing";
    EXPECT_EQ(m_Alg->ChangeSampleRate(-1), ml::eOutOfRangeNumber);
    EXPECT_EQ(m_Alg->GetSampleRate(), 96000);
    EXPECT_TRUE(m_Alg->TryLockAlg()) << "every path released the lock";
    m_Alg->UnLockAlg();
}

TEST_F(StartedAlgorithm, SideChainMinusOneOnlyStoresAndUpdateAlgRepeatsTheValue) {
    m_Shell.ClearLog();
    m_Alg->ChangeSideChainActive(-1);
    EXPECT_TRUE(m_Shell.Calls().empty());
    EXPECT_EQ(m_Alg->GetSideChainActive(), -1);
    m_Alg->ChangeSideChainActive(1);
    ASSERT_EQ(m_Shell.Calls().size(), 1u);
    EXPECT_EQ(m_Shell.Calls()[0].op, ml::eExecSideChain);
    EXPECT_EQ(m_Shell.Calls()[0].arg1, 1);
    m_Shell.ClearLog();
    ASSERT_EQ(m_Shell.Update(), 0);
    std::size_t repeats = 0;
    for (auto const &call : m_Shell.Calls())
        if (call.op == ml::eExecSideChain && call.arg1 == 1)
            ++repeats;
    EXPECT_EQ(repeats, 1u);
}

TEST_F(StartedAlgorithm, MuteChainIsSentAndFreed) {
    m_Shell.ClearLog();
    EXPECT_EQ(m_Alg->SetMute(true), 0);
    EXPECT_TRUE(m_Alg->GetMute());
    EXPECT_EQ(m_Shell.Ops(), (std::vector<int>{5, 0, 4}));
    m_Shell.ClearLog();
    EXPECT_EQ(m_Alg->SetMute(false), 0);
    EXPECT_TRUE(m_Shell.Ops().empty()) << "nothing to send when the hook builds nothing";
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

TEST_F(StartedAlgorithm, IdleCountsEveryTickAndTheHookDecides) {
    EXPECT_EQ(m_Shell.Idle(0, 3), 0);
    EXPECT_EQ(m_Alg->GetNumDoIdleCalls(), 3u);
    // The counter is in the store by function, so it always reads current.
    EXPECT_EQ(m_Alg->KeyValues().GetAs<std::uint64_t>("num_DoIdle_calls", 0), 3u);
    m_Alg->m_DoIdleResult = -7;
    EXPECT_EQ(m_Alg->DoIdle(0), -7);
    EXPECT_EQ(m_Alg->GetNumDoIdleCalls(), 4u);
}

TEST(AlgorithmExecCallBack, FixConvertersFallBackToTheFractionOnes) {
    WCRecordingShell plain;
    ml::cALGORITHM *alg = CreateTestAlgorithm(plain);
    EXPECT_EQ(alg->GetWordSize(), 4);
    EXPECT_EQ(alg->GetLocateFlag(), 1);
    EXPECT_EQ(alg->GetWriteFixConverter(), alg->GetWriteFracConverter());
    EXPECT_EQ(alg->GetReadFixConverter(), alg->GetReadFracConverter());
    // The default fraction is a float word.
    char word[8] = {};
    alg->GetWriteFracConverter()(0.5, word);
    float asFloat = 0;
    std::memcpy(&asFloat, word, 4);
    EXPECT_FLOAT_EQ(asFloat, 0.5f);

    WCRecordingShell dsp;
    dsp.m_SupplyFixConverters = true;
    ml::cALGORITHM *fixed = CreateTestAlgorithm(dsp);
    ASSERT_NE(fixed->GetWriteFixConverter(), fixed->GetWriteFracConverter());
    std::int32_t q31 = 0;
    EXPECT_EQ(fixed->GetWriteFixConverter()(0.5, &q31), 4);
    EXPECT_EQ(q31, 0x40000000);
    double back = 0;
    fixed->GetReadFixConverter()(&q31, &back);
    EXPECT_DOUBLE_EQ(back, 0.5);
}

// A process side that answers a word size of 0 and empties a converter slot.
int BrokenProcessSide(int op, std::int64_t, void *a, void *, void *) {
    if (op == ml::eExecWordSize)
        *static_cast<int *>(a) = 0;
    if (op == ml::eExecWriteFracConverter)
        *static_cast<ml::WTWriteFracFunc *>(a) = nullptr;
    if (op == ml::eExecNewBuffer)
        return -1;
    return 0;
}

TEST(AlgorithmExecCallBack, NonsenseFromTheProcessSideFallsBackToDefaults) {
    ml::WTResContainerType *container = nullptr;
    WCTestAlgorithm alg(TestComponent(), container);
    EXPECT_EQ(alg.SetExecCallBack(&BrokenProcessSide, 0), 0);
    EXPECT_EQ(alg.GetWordSize(), 4);
    alg.InitProcessCode();
    alg.InitData();
    EXPECT_EQ(alg.ConvertFracToCoefs(0.25, 1), 0) << "the default converter is back";
    EXPECT_EQ(alg.ConvertFracToCoefs(0.25, 2), ml::eOutOfRangeNumber) << "past the image";
    EXPECT_EQ(alg.ConvertFracToCoefs(0.25, -1), ml::eOutOfRangeNumber);
}

TEST(AlgorithmExecCallBack, WithoutACallBackNothingIsSentAndNothingCrashes) {
    ml::WTResContainerType *container = nullptr;
    WCTestAlgorithm alg(TestComponent(), container);
    EXPECT_EQ(alg.CallExecCallBack(0, nullptr, nullptr, nullptr), ml::eNotImplemented);
    EXPECT_EQ(alg.NewBuffer(1, 0, 1, 0, 4, 0), nullptr);
    ml::BUFFER_HEADER *none = nullptr;
    EXPECT_EQ(alg.SendBuffers(none, 0), 0);
    EXPECT_EQ(alg.SendAndFreeBuffers(none, 0, true), 0);
    EXPECT_EQ(alg.InitAlg(true), nullptr);
}

TEST(AlgorithmIdentity, ComponentTypeDecidesNativeAndNetShell) {
    EXPECT_TRUE(ml::cALGORITHM::DecideIsNativeFromComponentType(ml::WCFourCC("Nati")));
    EXPECT_FALSE(ml::cALGORITHM::DecideIsNativeFromComponentType(ml::WCFourCC("NetS")));
    EXPECT_TRUE(ml::cALGORITHM::DecideIsNetShellFromComponentType(ml::WCFourCC("NetS")));
    EXPECT_FALSE(ml::cALGORITHM::DecideIsNetShellFromComponentType(ml::WCFourCC("????")));

    ml::MirelComponentInfo info = TestComponent();
    info.m_ComponentType = ml::WCFourCC("arti");
    ml::WTResContainerType *container = nullptr;
    WCTestAlgorithm artist(info, container);
    EXPECT_TRUE(artist.IsArtist());
    EXPECT_FALSE(artist.IsNative());
    EXPECT_EQ(artist.GetPresetCompatibleSubComps(),
              (std::vector<ml::WCFourCC>{ml::WCFourCC("TsAl")}));
}

TEST(AlgorithmKeyValues, TheStoreLivesFromCreateKeyValueStoreToDisposeKeyValueStore) {
    class Exposed : public WCTestAlgorithm {
    public:
        using cALGORITHM::CreateKeyValueStore;
        using cALGORITHM::DisposeKeyValueStore;
        using WCTestAlgorithm::WCTestAlgorithm;
    };
    ml::WTResContainerType *container = nullptr;
    Exposed alg(TestComponent(), container);
    ASSERT_TRUE(alg.HasKeyValueStore()) << "the constructor created it";
    alg.FinishCreate();
    EXPECT_TRUE(alg.HasPluginValue("FinishCreateWasCalled"));
    alg.DisposeKeyValueStore();
    EXPECT_FALSE(alg.HasKeyValueStore());
    alg.CreateKeyValueStore();
    ASSERT_TRUE(alg.HasKeyValueStore());
    EXPECT_EQ(alg.KeyValues().size(), 0u) << "a new store starts empty";
    alg.DisposeKeyValueStore();
    // The destructor disposes of the store again, which is harmless.
}

TEST(AlgorithmIdentity, MirelLibHandleIsTheModuleOfTheLibrary) {
    void *handle = nullptr;
    EXPECT_EQ(ml::cALGORITHM::GetMirelLibHandle(handle), 0);
    EXPECT_NE(handle, nullptr);
}

TEST_F(StartedAlgorithm, LaterServicesAnswerAsForSomethingAbsent) {
    // A plug-in without a bundle has a presets manager but no factory presets.
    std::size_t count = 99;
    EXPECT_EQ(m_Alg->GetNumFactoryPresets(count), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(m_Alg->GetAutomationControlIndexByName("Gain"), -1);
    // Without a bundle there is no GUI XML to build a GUI from, and the map stays empty.
    EXPECT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, nullptr, nullptr), ml::eRMContainerNotFound);
    EXPECT_TRUE(m_Alg->GetGUIMap().empty());
    EXPECT_EQ(m_Alg->DisposeGuiAndRemoveFromMap("Primary"), ml::kErrNoGUI);
    EXPECT_EQ(m_Alg->SetRedisKeyValue("k", "v"), ml::kErrRedisNotConnected);
    double value = 0;
    EXPECT_EQ(m_Alg->GetParamRealWorld(0, value), ml::eOutOfRangeNumber);
    EXPECT_TRUE(m_Alg->GetPluginValue_bool("FinishCreateWasCalled", false));
}

} // namespace
