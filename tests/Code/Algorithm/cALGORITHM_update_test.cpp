#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Algorithm/cALGORITHM.h"
#include "core/WCStMemObj.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using Ret = ml::cALGORITHM;

enum EId : std::uint64_t {
    eGain, eSteps, eAlways, eDisplayOnly, eDrag, eNoPreset, eNegative, eCommon, eCoarse, eFreq,
    eLenient, eQuiet
};

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayGainWithDB</DisplayFunction></Parameter>
  <Parameter Name="Steps"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale></Parameter>
  <Parameter Name="Always" Parent="Gain"><Flags><AlwaysUpdate value="true"/></Flags></Parameter>
  <Parameter Name="DisplayOnly" Parent="Gain"><Flags><DisplayOnlyParam value="true"/></Flags>
    </Parameter>
  <Parameter Name="Drag" Parent="Gain"><Flags><Drag value="true"/></Flags></Parameter>
  <Parameter Name="NoPreset" Parent="Gain"><Flags><DontSaveToPreset value="true"/></Flags>
    </Parameter>
  <Parameter Name="Negative"><Scale><ScaleType Type="linear"/><Minimum>-60</Minimum>
    <Maximum>0</Maximum></Scale><Flags><PositiveTextEntryToNegative value="true"/></Flags>
    </Parameter>
  <Parameter Name="Common" Parent="Gain"><Flags><SetupsCommon value="true"/></Flags></Parameter>
  <Parameter Name="Coarse"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    </Scale></Parameter>
  <Parameter Name="Freq"><Scale><ScaleType Type="logarithmic"/><Minimum>20</Minimum>
    <Maximum>20000</Maximum></Scale><InitialValue>1000</InitialValue></Parameter>
  <Parameter Name="Lenient" Parent="Gain"><Flags><AvoidValidation value="true"/></Flags></Parameter>
  <Parameter Name="Quiet" Parent="Gain"><Flags><NoDisplay value="true"/></Flags></Parameter>
</ParamXML>)";

// Records what the pipeline asked of the plug-in; refuses the real-world value 5 when validating,
// reads "#n" as state n, and keeps the bypass image at 0.25.
class WCUpdateAlgorithm : public ml::cALGORITHM, public ml::WCAlgorithmListener {
public:
    WCUpdateAlgorithm(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container)
        : cALGORITHM(info, container) {
        Broadcaster()->insert(this);
    }
    ~WCUpdateAlgorithm() override { Broadcaster()->remove(this); }
    std::vector<std::uint64_t> m_Updated, m_Notified, m_Dragged;
    int m_Modified = 0;

    void PresetModified(ml::EPluginSetup) override { ++m_Modified; }
    int NotifyParamValue(std::uint64_t id) override {
        m_Notified.push_back(id);
        return cALGORITHM::NotifyParamValue(id);
    }
    bool ValidateRealWorld(std::uint64_t id, double value) override {
        return value != 5.0 && cALGORITHM::ValidateRealWorld(id, value);
    }

protected:
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t id) override {
        m_Updated.push_back(id);
        return nullptr;
    }
    BUFFER_HEADER *DragParamSelf(std::uint64_t id) override {
        m_Dragged.push_back(id);
        return nullptr;
    }
    ETranslateTextRetType TranslateTextToState_Self(std::uint64_t, char const *text,
                                                    double &state) override {
        if (text == nullptr || text[0] != '#')
            return eTranslateTextNotHandled;
        state = std::atof(text + 1);
        return eTranslateTextOK;
    }
    void SetBypassCoefsSelf() override { ConvertFracToBypassCoefs(0.25, 1); }
    BUFFER_HEADER *UpdateAlgSelf() override { return nullptr; }
    BUFFER_HEADER *InitAlgSelf() override { return nullptr; }
    int DoIdleSelf(short) override { return 0; }
    BUFFER_HEADER *ResetAudioBuffersSelf() override { return nullptr; }
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 2;
        DSPReqRes().cycles = 1;
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

// A plug-in whose chunk comes out empty.
class WCEmptyChunkAlgorithm : public WCUpdateAlgorithm {
public:
    using WCUpdateAlgorithm::WCUpdateAlgorithm;
    int PreparePresetChunk(ml::Utils::WCStMemObj &, bool, bool) override { return 0; }
};

// A started instance of the recording algorithm in its own shell.
class UpdatePipeline : public ::testing::Test {
protected:
    void SetUp() override { Restart(); }
    template <typename Algorithm = WCUpdateAlgorithm>
    void Restart() {
        m_Shell = std::make_unique<mirel_shell::WCRecordingShell>();
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        m_Shell->Create(
            info,
            [this](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
                return m_Alg = new Algorithm(component, container);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_EQ(m_Shell->Start(), 0);
        ASSERT_EQ(m_Alg->GetNumParams(), 12u);
        m_Alg->m_Modified = 0;
    }
    double State(std::uint64_t id, int setup = 0) { return m_Alg->GetParam(id)->GetState(setup); }
    double RealWorld(std::uint64_t id, int setup = 0) {
        return m_Alg->GetParam(id)->GetRealWorld(setup);
    }

    std::unique_ptr<mirel_shell::WCRecordingShell> m_Shell;
    WCUpdateAlgorithm *m_Alg = nullptr;
};

TEST_F(UpdatePipeline, StateChangesPassTheGatesByFlag) {
    const struct {
        const char *what;
        EId id;
        double first; // an earlier change, NAN for none
        double state;
        bool reachesSelf, modifies;
        double stored; // NAN: as it was
    } cases[] = {
        {"above the axis", eGain, NAN, 1000.0000001, false, false, NAN},
        {"not a number", eGain, NAN, NAN, false, false, NAN},
        {"top of the axis", eGain, NAN, 1000.0, true, true, 1000.0},
        {"negative zero", eGain, NAN, -0.0, true, true, 0.0},
        {"a repeat", eGain, 200.0, 200.0, false, false, 200.0},
        {"AlwaysUpdate repeat", eAlways, 200.0, 200.0, true, false, 200.0},
        {"DisplayOnlyParam", eDisplayOnly, NAN, 300.0, true, false, 300.0},
        {"DontSaveToPreset", eNoPreset, NAN, 300.0, true, false, 300.0},
        {"real world within 1e-10", eCoarse, NAN, 100.0, false, false, 100.0},
        {"discrete quantised", eSteps, NAN, 333.4, true, true, 500.0},
    };
    for (auto const &c : cases) {
        Restart();
        if (!std::isnan(c.first))
            m_Alg->UpdateParamRequestState(c.id, c.first);
        const double before = State(c.id);
        m_Alg->m_Updated.clear();
        m_Alg->m_Notified.clear();
        m_Alg->m_Modified = 0;
        EXPECT_EQ(m_Alg->UpdateParamRequestState(c.id, c.state), nullptr);
        EXPECT_EQ(m_Alg->m_Updated.size(), c.reachesSelf ? 1u : 0u) << c.what;
        EXPECT_EQ(m_Alg->m_Modified, c.modifies ? 1 : 0) << c.what;
        EXPECT_EQ(m_Alg->m_Notified.size(), c.reachesSelf ? 1u : 0u) << c.what;
        EXPECT_EQ(State(c.id), std::isnan(c.stored) ? before : c.stored) << c.what;
    }
}

TEST_F(UpdatePipeline, SetupsCommonAndRealWorldForms) {
    m_Alg->UpdateParamState(eCommon, 250.0, false);
    m_Alg->UpdateParamState(eGain, 250.0, false);
    EXPECT_EQ(State(eCommon, 1), 250.0);
    EXPECT_EQ(RealWorld(eCommon, 1), RealWorld(eCommon, 0));
    EXPECT_NE(State(eGain, 1), 250.0);
    EXPECT_TRUE(m_Alg->m_Notified.empty());

    m_Alg->m_Updated.clear();
    m_Alg->UpdateParamRequestRealWorld(eGain, -6.0);
    EXPECT_DOUBLE_EQ(State(eGain), 500.0);
    m_Alg->UpdateParamRequestRealWorld(eGain, -6.0);
    EXPECT_EQ(m_Alg->m_Updated, std::vector<std::uint64_t>{eGain}) << "the repeat stops";
    EXPECT_EQ(m_Alg->m_Notified, std::vector<std::uint64_t>{eGain});
    EXPECT_EQ(m_Alg->UpdateParamRequestRealWorld(999, 1.0), nullptr);
    EXPECT_EQ(m_Alg->UpdateParamRealWorld(eGain, INFINITY), nullptr);
    m_Alg->m_Notified.clear();
    EXPECT_EQ(m_Alg->SetRealWorldAndUpdateAndNotifyAutomation(eFreq, 2000.0, 1), 0);
    EXPECT_EQ(RealWorld(eFreq, 1), 2000.0);
    EXPECT_EQ(RealWorld(eFreq, 0), 1000.0);
    EXPECT_TRUE(m_Alg->m_Notified.empty()) << "setup B is not the active one";
}

TEST_F(UpdatePipeline, DragStoresAndTheFinishedDragComputes) {
    m_Alg->m_Updated.clear();
    m_Alg->DragParam(eDrag, 400.0);
    EXPECT_EQ(m_Alg->m_Dragged, std::vector<std::uint64_t>{eDrag});
    EXPECT_EQ(State(eDrag), 400.0);
    EXPECT_EQ(m_Alg->GetParam(eDrag)->GetUpdateFlags(), 3u);
    m_Alg->UpdateParamRequestState(eDrag, 400.0);
    EXPECT_TRUE(m_Alg->m_Updated.empty()) << "the drag has not ended";
    EXPECT_EQ(m_Alg->FinishDragParam(eDrag), 0);
    m_Alg->UpdateParamRequestState(eDrag, 400.0);
    m_Alg->UpdateParamRequestState(eDrag, 400.0);
    EXPECT_EQ(m_Alg->m_Updated, std::vector<std::uint64_t>{eDrag}) << "the end is spent once";
    EXPECT_EQ(m_Alg->m_Modified, 1);

    m_Alg->DragParam(eGain, 100.0); // without the flag a drag step is an update
    m_Alg->GetParam(eGain)->m_ForceUpdate = 1;
    m_Alg->UpdateParamRequestState(eGain, 100.0);
    EXPECT_EQ(m_Alg->m_Updated, (std::vector<std::uint64_t>{eDrag, eGain, eGain}));
    EXPECT_EQ(m_Alg->ResetDragParam(99), ml::eOutOfRangeNumber);
}

TEST_F(UpdatePipeline, TypedTextsBecomeValuesOrLeaveTheParameter) {
    const struct {
        std::uint64_t id;
        const char *text;
        Ret::ETranslateTextRetType ret;
        double realWorld; // NAN: as it was
    } cases[] = {
        {eGain, "-6 dB", Ret::eTranslateTextOK, -6.0},
        {eFreq, "1.2k", Ret::eTranslateTextOK, 1200.0},
        {eGain, "40", Ret::eTranslateTextOK, 12.0},
        {eGain, "garbage", Ret::eTranslateTextNoNumber, NAN},
        {eGain, "#500", Ret::eTranslateTextOK, -6.0},
        {eNegative, "12", Ret::eTranslateTextOK, -12.0},
        {eNegative, "-3", Ret::eTranslateTextOK, -3.0},
        {eGain, "5", Ret::eTranslateTextRefused, NAN},
        {eLenient, "5", Ret::eTranslateTextOK, 5.0},
        {99, "1", Ret::eTranslateTextBadParam, NAN},
    };
    for (auto const &c : cases) {
        const double before = c.id < 12 ? RealWorld(c.id) : 0.0;
        Ret::ETranslateTextRetType ret = Ret::eTranslateTextNotHandled;
        EXPECT_EQ(m_Alg->UpdateParamFromText(c.id, c.text, ret), nullptr);
        EXPECT_EQ(ret, c.ret) << c.text;
        if (c.id < 12) {
            EXPECT_NEAR(RealWorld(c.id), std::isnan(c.realWorld) ? before : c.realWorld, 1e-9)
                << c.text;
        }
    }
}

// An automation thread changes a value under the process lock while idle makes its value text
// without it: each value is read and written whole, so the two never race (run under TSan).
TEST_F(UpdatePipeline, IdleReadsValuesAnAutomationThreadWrites) {
    std::thread automation([this] {
        for (int i = 0; i < 2000; ++i)
            m_Alg->UpdateParamState(eGain, (i % 2) * 1000.0, false);
    });
    for (int i = 0; i < 2000; ++i)
        m_Alg->DoIdle(0);
    automation.join();
    m_Alg->DoIdle(0);
    EXPECT_STREQ(m_Alg->GetParam(eGain)->GetValueString().c_str(), "12.0 dB");
}

TEST_F(UpdatePipeline, IdleRefreshesDisplaysByUpdateFlagLevel) {
    m_Alg->UpdateParamRequestState(eGain, 500.0);
    m_Alg->UpdateParamRequestState(eQuiet, 500.0);
    EXPECT_EQ(m_Alg->DoIdle(4), 0);
    EXPECT_EQ(m_Alg->GetParam(eGain)->GetUpdateFlags(), 3u) << "below the level waits";
    EXPECT_EQ(m_Alg->DoIdle(3), 0);
    EXPECT_STREQ(m_Alg->GetParam(eGain)->GetValueString().c_str(), "-6.0 dB");
    EXPECT_STREQ(m_Alg->GetParam(eQuiet)->GetValueString().c_str(), "") << "NoDisplay";
    EXPECT_EQ(m_Alg->GetParam(eGain)->GetUpdateFlags(), 0u);

    m_Alg->UpdateParamRequestState(eGain, 0.0);
    EXPECT_EQ(m_Alg->SetParamToUpdateFlag(eGain, 1), 0);
    EXPECT_EQ(m_Alg->DoIdle(0), 0);
    EXPECT_STREQ(m_Alg->GetParam(eGain)->GetValueString().c_str(), "-6.0 dB") << "bit 2 clear";
    m_Alg->RefreshAllParams();
    EXPECT_EQ(m_Alg->GetParam(eFreq)->GetUpdateFlags(), 3u);
    EXPECT_EQ(m_Alg->SetParamToUpdateFlag(99, 3), ml::eOutOfRangeNumber);

    EXPECT_EQ(m_Alg->UpdateControlsFromParams(ml::eSetupB), 0) << "no GUI, nothing to refresh";
    int gui = 0;
    m_Alg->SetGUIPointer("Primary", reinterpret_cast<ml::CStandardGUI_X *>(&gui));
    m_Alg->GetParam(eFreq)->m_Controllers.push_back({1, nullptr});
    EXPECT_EQ(m_Alg->UpdateControlsFromParams(ml::eCurrentSetup), 0) << "a null entry is passed by";
    EXPECT_EQ(m_Alg->UpdateControlsFromParams(ml::EPluginSetup(2)), ml::eOutOfRangeNumber);
    m_Alg->GetParam(eFreq)->m_Controllers.clear();
    m_Alg->SetGUIPointer("Primary", nullptr);
}

TEST_F(UpdatePipeline, WholeImageSendsPickTheBypassImage) {
    m_Alg->ConvertFracToCoefs(0.5, 1);
    m_Alg->SetBypass(true);
    ml::BUFFER_HEADER *chain = m_Alg->UpdateDSPCoefs(false);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->count, 2);
    float word = 0;
    std::memcpy(&word, static_cast<char *>(chain->data) + 4, 4);
    EXPECT_EQ(word, 0.25f) << "SetBypassCoefsSelf filled the bypass image first";
    m_Alg->SendAndFreeBuffers(chain, 0, false);
    m_Shell->ClearLog();
    EXPECT_EQ(m_Alg->UpdateDSPCoefs(true), nullptr);
    EXPECT_EQ(m_Shell->Ops(), (std::vector<int>{5, 0, 4}));
    EXPECT_EQ(m_Shell->CoefAsFloat(1), 0.25f);
    EXPECT_DOUBLE_EQ(m_Alg->UpdateMouseDeltaStep(eSteps, 20.0), 10.0 * std::sqrt(3.0));
    EXPECT_EQ(m_Alg->UpdateMouseDeltaStep(99, 20.0), 0.0);
}

// ---- setups A and B ----------------------------------------------------------------------

TEST_F(UpdatePipeline, ToggleSwitchesWholeSetupsInsideOneHostBatch) {
    m_Alg->UpdateParamState(eGain, 250.0, false);
    EXPECT_FALSE(m_Alg->ChangeActiveSetup(ml::eCurrentSetup));
    EXPECT_FALSE(m_Alg->ChangeActiveSetup(ml::eSetupA)) << "already active";
    m_Shell->ClearLog();
    EXPECT_EQ(m_Alg->ToggleActiveSetup(ml::eCurrentSetup), ml::eSetupB) << "-1 flips";
    std::vector<std::int64_t> args;
    for (auto const &call : m_Shell->Calls())
        if (call.op == 78)
            args.push_back(call.arg1);
    EXPECT_EQ(args, (std::vector<std::int64_t>{1, 0})) << "opened, then closed";
    EXPECT_EQ(m_Alg->GetParam(eGain)->GetUpdateFlags(), 3u);
    double value = 0.0;
    m_Alg->GetParamRealWorld(eGain, value);
    EXPECT_EQ(value, RealWorld(eGain, 1)) << "reads follow the active setup";
    EXPECT_NE(value, RealWorld(eGain, 0));
    m_Alg->UpdateParamState(eGain, 750.0, false);
    EXPECT_EQ(State(eGain, 0), 250.0) << "setup A kept its value";
    EXPECT_TRUE(m_Alg->ChangeActiveSetup(ml::eSetupA));
    EXPECT_EQ(m_Alg->GetActiveSetup(), ml::eSetupA);
}

TEST_F(UpdatePipeline, CopySetupGoesActiveToPassiveOnly) {
    m_Alg->UpdateParamState(eGain, 250.0, false);
    m_Alg->ConvertFracToCoefs(0.5, 1);
    ASSERT_EQ(m_Alg->SetSetupName(ml::eCurrentSetup, "Bright"), 0);
    m_Alg->m_Modified = 0;
    EXPECT_EQ(m_Alg->CopySetup(), 0);
    EXPECT_EQ(State(eGain, 1), 250.0);
    EXPECT_EQ(RealWorld(eGain, 1), RealWorld(eGain, 0));
    EXPECT_EQ(m_Alg->m_Modified, 1);
    ml::WCFixedString<127> name;
    EXPECT_EQ(m_Alg->GetSetupName(ml::eSetupB, name), 0);
    EXPECT_STREQ(name.c_str(), "Bright");
    m_Alg->ToggleActiveSetup(ml::eSetupB);
    m_Shell->ClearLog();
    EXPECT_EQ(m_Alg->UpdateDSPCoefs(true), nullptr);
    EXPECT_EQ(m_Shell->CoefAsFloat(1), 0.5f) << "setup B sends the copied image";
    m_Alg->UpdateParamState(eGain, 900.0, false);
    EXPECT_EQ(State(eGain, 0), 250.0) << "a change in B does not flow back";
    EXPECT_EQ(m_Alg->GetSetupName(ml::EPluginSetup(2), name), ml::eOutOfRangeNumber);
    m_Alg->ConvertFracToCoefs(0.75, 1);
    for (float expected : {0.5f, 0.75f, 0.5f}) {
        m_Alg->ToggleActiveSetup(ml::eCurrentSetup);
        m_Alg->UpdateDSPCoefs(true);
        EXPECT_EQ(m_Shell->CoefAsFloat(1), expected) << "each toggle sends the new setup's image";
    }
}

TEST_F(UpdatePipeline, SetupWordsReadBackInAnyCase) {
    const struct {
        const char *text;
        int code;
        ml::EPluginSetup setup;
    } cases[] = {{"SETUP_A", 0, ml::eSetupA}, {"setup_b", 0, ml::eSetupB},
                 {"CURRENT", 0, ml::eCurrentSetup}, {"C", ml::eOutOfRangeNumber, ml::eSetupB}};
    for (auto const &c : cases) {
        ml::EPluginSetup setup = ml::eSetupB;
        EXPECT_EQ(Ret::SetupStringToSetup(c.text, setup), c.code) << c.text;
        EXPECT_EQ(setup, c.setup) << c.text;
        if (c.code == 0) {
            EXPECT_STRCASEEQ(Ret::SetupToSetupString(c.setup), c.text);
        }
    }
}

TEST_F(UpdatePipeline, BypassSendsOnlyOnItsNextPartialUpdate) {
    m_Shell->ClearLog();
    m_Alg->SetBypass(true);
    EXPECT_TRUE(m_Alg->GetBypassChanged());
    m_Alg->SetBypass(true);
    EXPECT_TRUE(m_Shell->Calls().empty()) << "bypass itself sends nothing";
    EXPECT_EQ(m_Alg->DoPartialUpdateAfterBypass(), 0);
    EXPECT_EQ(m_Shell->Ops(), (std::vector<int>{5, 0, 4}));
    EXPECT_EQ(m_Shell->CoefAsFloat(1), 0.25f);
    m_Shell->ClearLog();
    EXPECT_EQ(m_Alg->DoPartialUpdateAfterBypass(), 0);
    EXPECT_TRUE(m_Shell->Calls().empty()) << "the change was spent";
}

// ---- host chunks ----------------------------------------------------------------------------

TEST_F(UpdatePipeline, ChunkRoundTripRestoresBothSetupsAndTheActiveOne) {
    m_Alg->UpdateParamState(eGain, 250.0, false);
    m_Alg->UpdateParamState(eNoPreset, 100.0, false);
    m_Alg->ToggleActiveSetup(ml::eSetupB);
    m_Alg->UpdateParamState(eFreq, 800.0, false);
    ASSERT_EQ(m_Alg->SetSetupName(ml::eSetupA, "Verse"), 0);
    ASSERT_EQ(m_Alg->SetSetupName(ml::eSetupB, "Chorus"), 0);
    ml::Utils::WCStMemObj chunk;
    ASSERT_EQ(m_Alg->GetChunk(ml::WCFourCC("XPst"), chunk, true), 0);
    std::uint64_t size = 0;
    EXPECT_EQ(m_Alg->GetChunkSize(0, true, size), 0);
    EXPECT_EQ(size, chunk.GetSize());
    const std::string text(static_cast<char const *>(chunk.GetPtr()), chunk.GetSize());
    EXPECT_EQ(text.rfind("<PresetChunkXMLTree", 0), 0u) << "text without declaration";
    const double freqB = RealWorld(eFreq, 1);

    Restart();
    m_Alg->UpdateParamState(eNoPreset, 900.0, false);
    m_Shell->ClearLog();
    ASSERT_EQ(m_Alg->SetChunk(ml::WCFourCC("XPst"), chunk), 0);
    EXPECT_EQ(m_Alg->GetActiveSetup(), ml::eSetupB);
    EXPECT_DOUBLE_EQ(State(eGain, 0), 250.0);
    EXPECT_DOUBLE_EQ(RealWorld(eFreq, 1), freqB);
    EXPECT_EQ(RealWorld(eFreq, 0), 1000.0);
    EXPECT_EQ(State(eNoPreset, 0), 900.0) << "a DontSaveToPreset value stays";
    const std::vector<int> ops = m_Shell->Ops();
    EXPECT_NE(std::find(ops.begin(), ops.end(), 0), ops.end()) << "the images were sent";
    EXPECT_TRUE(m_Alg->TryLockAlg());
    m_Alg->UnLockAlg();
    ml::WCFixedString<127> a, b;
    m_Alg->GetSetupName(ml::eSetupA, a);
    m_Alg->GetSetupName(ml::eSetupB, b);
    EXPECT_STREQ(a.c_str(), "Verse");
    EXPECT_STREQ(b.c_str(), "Chorus");
}

TEST_F(UpdatePipeline, ChunkIdsAndBrokenChunksChangeNothing) {
    m_Alg->UpdateParamState(eGain, 250.0, false);
    ml::Utils::WCStMemObj chunk;
    EXPECT_EQ(m_Alg->GetChunk(ml::WCFourCC("pref"), chunk, true), 0);
    EXPECT_TRUE(chunk.Empty());
    EXPECT_EQ(m_Alg->GetChunk(ml::WCFourCC("abcd"), chunk, true), -1);
    EXPECT_EQ(m_Alg->SetChunk(ml::WCFourCC("pref"), chunk), 0);
    ml::WCFourCC id;
    EXPECT_EQ(m_Alg->GetIndexedChunkID(1, id), ml::eIllegalChunkIndex);
    for (char const *broken : {"", "garbage", "<PresetChunkXMLTree version=\"2\"/>",
                               "<PresetChunkXMLTree version=\"2\"><Preset Name=\"x\">"}) {
        const ml::Utils::WCStConstMemObj bytes(broken, std::strlen(broken));
        EXPECT_NE(m_Alg->SetChunk(ml::WCFourCC("XPst"), bytes), 0) << broken;
        EXPECT_EQ(State(eGain, 0), 250.0) << broken;
    }
    EXPECT_EQ(m_Alg->SetChunk(ml::WCFourCC("abcd"), chunk), -1);
    EXPECT_TRUE(m_Alg->TryLockAlg()) << "every path released the lock";
    m_Alg->UnLockAlg();
    Restart<WCEmptyChunkAlgorithm>();
    EXPECT_EQ(m_Alg->GetChunk(ml::WCFourCC("XPst"), chunk, true), -5023) << "an empty chunk";
}

} // namespace
