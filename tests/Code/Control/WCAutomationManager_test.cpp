// The example plug-in's automation controls: what its GUI XML states, what a shell reads of
// them, and the two directions of automation - a host event into a parameter, a user's drag
// out to the host as a gesture.

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Algorithm/MirelAPI3Internal.h"
#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Control/ControllerAutomationInfoVer11.h"
#include "Code/Control/WCAutomationControl.h"
#include "Code/Control/WCControlPageTableList.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/Presets/CPresetInfo.h"
#include "Code/Presets/sPresetControlData.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "core/WCStMemObj.h"
#include "tests/support/WCTestHome.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/WCEventData.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;
using mirel_shell::WCRecordingShell;

const std::vector<std::string> kAutomated = {"Gain",  "Cutoff", "Filter", "Slope",
                                             "Trim1", "Trim2",  "Mode"};
// The first index beyond the list.
constexpr int kBeyond = 7;

// What the host's auto callback heard: operation, refcon 2 and the value of operation 16.
struct WSAutoCall {
    int op;
    std::int64_t refCon2;
    double value;
};
std::vector<WSAutoCall> gAutoCalls;

int RecordAutoCall(int op, std::int64_t, void *refCon2, void *value, void *) {
    gAutoCalls.push_back({op, reinterpret_cast<std::int64_t>(refCon2),
                          value != nullptr ? *static_cast<double *>(value) : 0.0});
    return 0;
}

class AutomationTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_Shell.LoadModule(MIREL_EXAMPLE_MODULE), 0);
        ml::MirelComponentInfo info;
        ASSERT_EQ(m_Shell.GetModuleComponentInfo(0, info), 0);
        ASSERT_EQ(m_Shell.Create(info), 0);
        ASSERT_EQ(m_Shell.Start(), 0);
        m_Alg = m_Shell.Algorithm();
        gAutoCalls.clear();
        m_Alg->SetAutoCallBack(&RecordAutoCall, 5);
    }
    void TearDown() override { EXPECT_EQ(m_Shell.Stop(), 0); }
    ml::WCAutomationManager &Manager() { return m_Alg->GetAutomationManager(); }
    int Index(const char *name) { return m_Alg->GetAutomationControlIndexByName(name); }
    double State(const char *param) {
        std::uint64_t id = 0;
        EXPECT_EQ(m_Alg->GetParamIDFromName(param, id), 0);
        return m_Alg->GetParam(id)->GetState(m_Alg->GetActiveSetup());
    }

    mirel_test::WCTestHome m_Home;
    WCRecordingShell m_Shell;
    ml::cALGORITHM *m_Alg = nullptr;
};

TEST_F(AutomationTest, ListsTheAutomatableControlsOfTheGUIXMLInControlOrder) {
    std::uint32_t count = 0;
    ASSERT_EQ(ml::GetPluginInfo_uint32_t(m_Shell.Instance(), ml::WCFourCC("aCon"), count, 0), 0);
    ASSERT_EQ(count, kAutomated.size());
    for (std::size_t i = 0; i < kAutomated.size(); ++i) {
        const char *name = kAutomated[i].c_str();
        EXPECT_EQ(Index(name), static_cast<int>(i)) << name;
        // Each control leads the parameter of its name, as the GUI XML registers it.
        std::size_t lead = 0;
        std::uint64_t id = 0;
        ASSERT_EQ(ml::GetPluginInfo_size_t(m_Shell.Instance(), ml::WCFourCC("LPrm"), lead,
                                           static_cast<std::int64_t>(i)),
                  0);
        ASSERT_EQ(m_Alg->GetParamIDFromName(name, id), 0);
        EXPECT_EQ(lead, id) << name;
    }
    // A meter and a value display are GUI controls the host must not see.
    for (const char *name : {"Output", "GainValue", "", "gain"})
        EXPECT_EQ(Index(name), -1) << '"' << name << '"';
    EXPECT_EQ(Manager().GetAutomationControl(static_cast<int>(count)), nullptr);
}

using WTNames = std::vector<ml::WCFixedString<63>>;

WTNames Names(const ml::WCControlPageTableList &tables, const char *type) {
    WTNames names;
    tables.GetControNamesListByPageTableType(type, names);
    return names;
}

TEST_F(AutomationTest, TheShippedPageTablesNameTheAutomationOrderAsTheDefaultTablesDo) {
    WTNames automated(kAutomated.begin(), kAutomated.end());
    // What a surface reads through the shell, resource "PageTable" 1000 + index.
    ml::WCControlVisibilityPageTableList visibility;
    ml::WCControlMappingPageTableList mapping;
    for (auto [index, tables] :
         {std::pair<int, ml::WCControlPageTableList *>{0, &visibility}, {1, &mapping}}) {
        ml::Utils::WCStMemObj text;
        ASSERT_EQ(
            ml::GetPluginInfo_WCStMemObj(m_Shell.Instance(), ml::WCFourCC("XPGT"), text, index), 0);
        ASSERT_EQ(tables->ReadFromText(static_cast<const char *>(text.GetPtr()), text.GetSize()), 0)
            << index;
        EXPECT_EQ(Names(*tables, "Main"), automated) << tables->GetRootName();
    }
    EXPECT_EQ(Names(visibility, "Discrete"), (WTNames{"Filter", "Slope", "Mode"}));

    // The manager's defaults, for a plug-in that ships none, are the same tables.
    using WTWrite = int (ml::cALGORITHM::*)(ml::XML::CXMLElement *, int) const;
    const WTWrite writers[] = {&ml::cALGORITHM::WriteDefaultPageTablesToXML,
                               &ml::cALGORITHM::WriteDefaultPageTablesDiscCtrlsToXML};
    ASSERT_EQ(visibility.GetTables().size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        ml::XML::CXMLElement root;
        ASSERT_EQ((m_Alg->*writers[i])(&root, 8), 0);
        std::string written;
        ml::XML::WriteXMLToString(written, &root, false, true, 0);
        ml::WCControlVisibilityPageTableList defaults;
        ASSERT_EQ(defaults.ReadFromText(written.data(), written.size()), 0) << written;
        ASSERT_EQ(defaults.GetTables().size(), 1u) << written;
        EXPECT_EQ(defaults.GetTables()[0], visibility.GetTables()[i]) << written;
    }
    ml::XML::CXMLElement untouched("Kept");
    EXPECT_EQ(m_Alg->WriteDefaultPageTablesToXML(&untouched, 0), ml::eOutOfRangeNumber);
    EXPECT_EQ(untouched.GetName(), "Kept");
}

TEST(WCControlPageTableList, ARefusedDocumentLeavesTheTablesAsTheyWere) {
    ml::WCControlMappingPageTableList tables;
    tables.SetPageTable("Main", 0, 2, {"A", "B", "C"});
    ASSERT_EQ(Names(tables, "Main"), (WTNames{"A", "B", "C"}));
    ASSERT_EQ(tables.GetTables()[0].m_Pages.size(), 2u);
    const struct {
        const char *text;
        int code;
    } documents[] = {
        {"<ControlMappingPageTableList version=\"1\"><PageTable", ml::eXMLParserFailed},
        {"<ControlVisibilityPageTableList version=\"1\"/>", ml::eXMLElementMissing},
        {"<ControlMappingPageTableList><PageTable type=\"Main\" pageSize=\"0\"/>"
         "</ControlMappingPageTableList>",
         ml::eOutOfRangeNumber},
        {"<ControlMappingPageTableList><PageTable type=\"Main\" pageSize=\"1\"><Page>"
         "<Control Name=\"A\"/><Control Name=\"B\"/></Page></PageTable>"
         "</ControlMappingPageTableList>",
         ml::eOutOfRangeNumber},
    };
    for (const auto &row : documents) {
        EXPECT_EQ(tables.ReadFromText(row.text, std::strlen(row.text)), row.code) << row.text;
        EXPECT_EQ(Names(tables, "Main"), (WTNames{"A", "B", "C"})) << row.text;
    }
}

TEST_F(AutomationTest, MIDIAttachmentsTravelInPresetsAndABadOneChangesNoControl) {
    ml::Preset::sPresetControlData gain;
    gain.m_Name = "Gain";
    gain.m_MIDIChannel = 2;
    gain.m_MIDIControlID = 7;
    ASSERT_EQ(Manager().LoadControlsFromPreset({gain}), 0);
    ml::Preset::CPresetInfo saved;
    ASSERT_EQ(m_Alg->SaveToPreset(saved, true, false), 0);
    ASSERT_EQ(saved.m_Data.size(), 1u);
    ASSERT_EQ(saved.m_Data[0]->m_ControlData.size(), 1u);
    EXPECT_EQ(saved.m_Data[0]->m_ControlData[0].m_MIDIControlID, 7);
    EXPECT_EQ(saved.m_Data[0]->m_ControlData[0].m_LeadParam,
              static_cast<int>(Manager().GetAutomationControl(Index("Gain"))->GetLeadParamID()));

    auto refused = [&](auto change) {
        ml::Preset::sPresetControlData cutoff = gain, bad = gain;
        cutoff.m_Name = "Cutoff";
        change(bad);
        return Manager().LoadControlsFromPreset({cutoff, bad});
    };
    EXPECT_EQ(refused([](auto &d) { d.m_Name = "Output"; }), ml::eControlOutOfRange);
    EXPECT_EQ(refused([](auto &d) { d.m_MIDIChannel = 16; }), ml::eControlOutOfRange);
    EXPECT_EQ(refused([](auto &d) { d.m_MIDIControlID = 128; }), ml::eControlOutOfRange);
    EXPECT_EQ(Manager().GetAutomationControl(Index("Cutoff"))->GetMIDIControlID(), -1);

    Manager().ClearMidiControlsAttachment();
    ASSERT_EQ(m_Alg->LoadFromPreset(saved, true), 0);
    EXPECT_EQ(Manager().GetAutomationControl(Index("Gain"))->GetMIDIChannel(), 2);
    EXPECT_EQ(Manager().DumpAutomationControlOrder().substr(0, 7), "0 Gain ");
}

TEST_F(AutomationTest, ControlsTranslateStatesAndTextsAndNameTheNextToggleState) {
    const int gain = Index("Gain");
    ml::WCFixedString<31> text;
    ASSERT_EQ(m_Alg->TranslateController(gain, 1000.0, text), 0);
    EXPECT_STREQ(text.c_str(), "12.0 dB");
    double state = -1.0;
    ASSERT_EQ(m_Alg->TranslateTextToControlState(gain, "-6 dB", state), 0);
    EXPECT_DOUBLE_EQ(state, 500.0);
    EXPECT_EQ(m_Alg->TranslateTextToControlState(gain, "loud", state), ml::eNotANumber);
    EXPECT_EQ(m_Alg->TranslateController(kBeyond, 0.0, text), ml::eOutOfRangeNumber);
    EXPECT_EQ(m_Alg->TranslateController(gain, 1001.0, text), ml::eOutOfRangeNumber);
    EXPECT_DOUBLE_EQ(state, 500.0);

    // The filter switch is on (state 1000): its next state is off, by parameter and by control.
    std::uint64_t filter = 0;
    ASSERT_EQ(m_Alg->GetParamIDFromName("Filter", filter), 0);
    std::int32_t next = -1;
    auto &instance = m_Shell.Instance();
    ASSERT_EQ(ml::GetPluginInfo_int32_t(instance, ml::WCFourCC("nTGs"), next,
                                        static_cast<std::int64_t>(filter)),
              0);
    EXPECT_EQ(next, 0);
    next = -1;
    ASSERT_EQ(ml::GetPluginInfo_int32_t(instance, ml::WCFourCC("TsCO"), next, Index("Filter")), 0);
    EXPECT_EQ(next, 0);
    EXPECT_EQ(ml::GetPluginInfo_int32_t(instance, ml::WCFourCC("TsCO"), next, kBeyond),
              ml::eOutOfRangeNumber);
    EXPECT_EQ(ml::GetPluginInfo_int32_t(instance, ml::WCFourCC("nTGs"), next, 1000),
              ml::eOutOfRangeNumber);
}

TEST_F(AutomationTest, AControlInsertedOrDeletedMovesTheLaterIndexesAndARefusalNone) {
    std::uint64_t gain = 0;
    ASSERT_EQ(m_Alg->GetParamIDFromName("Gain", gain), 0);
    ASSERT_EQ(Manager().AddNewAutomationControlForIndex("Host", gain, 1), 0);
    EXPECT_EQ(Index("Host"), 1);
    EXPECT_EQ(Index("Cutoff"), 2);
    EXPECT_EQ(Manager().AddNewAutomationControlForIndex("Late", gain, kBeyond + 2),
              ml::eOutOfRangeNumber);
    EXPECT_EQ(Manager().AddNewAutomationControlForIndex("Cutoff", gain, 0),
              ml::eSomeThingInitailzedTwice);
    EXPECT_EQ(Index("Gain"), 0);
    ASSERT_EQ(Manager().DeleteAutomationControl(1), 0);
    EXPECT_EQ(Index("Host"), -1);
    EXPECT_EQ(Index("Cutoff"), 1);
    EXPECT_EQ(Manager().DeleteAutomationControl(kBeyond), ml::eOutOfRangeNumber);
}

TEST_F(AutomationTest, ASurfaceLightsTheStateOfADiscreteControlAndTheValueOfAContinuousOne) {
    const struct {
        const char *control;
        int state, led, code;
    } rows[] = {{"Slope", 0, 0, 0},
                {"Slope", 50, 1, 0},
                {"Slope", 127, 2, 0},
                {"Gain", 64, 64, 0},
                {"Gain", 128, -1, ml::eOutOfRangeNumber},
                {"Filter", 100, 1, 0}};
    for (const auto &row : rows) {
        std::int32_t led = row.state;
        EXPECT_EQ(ml::GetPluginInfo_int32_t(m_Shell.Instance(), ml::WCFourCC("CLfM"), led,
                                            Index(row.control)),
                  row.code)
            << row.control << ' ' << row.state;
        EXPECT_EQ(led, row.code == 0 ? row.led : row.state) << row.control << ' ' << row.state;
    }
}

TEST(WCAutomationManager, AMIDIValueSelectsTheStateOfItsShareOfTheRange) {
    const struct {
        int states, value, state;
    } rows[] = {{3, 0, 0}, {3, 42, 0}, {3, 43, 1}, {3, 127, 2}, {2, 64, 1}, {0, 5, 0}, {4, -3, 0}};
    for (const auto &row : rows)
        EXPECT_EQ(ml::WCAutomationManager::CalculateNextState(row.states, row.value), row.state)
            << row.states << ' ' << row.value;
}

TEST_F(AutomationTest, TheShellRecordHoldsTheControlAtItsByteOffsets) {
    ml::ControllerAutomationInfoVer11 info{};
    info.m_Version = 11;
    info.m_ControlIndex = Index("Filter");
    ASSERT_EQ(Manager().SetAutomationRefCons(info.m_ControlIndex, 3, 4), 0);
    ASSERT_EQ(ml::GetPluginInfo_struct(m_Shell.Instance(), ml::WCFourCC("caui"), &info, 0), 0);
    const char *bytes = reinterpret_cast<const char *>(&info);
    std::int32_t mark = 0;
    std::memcpy(&mark, bytes + 8, 4);
    EXPECT_EQ(mark, 1001);
    EXPECT_STREQ(bytes + 40, "Filter");
    EXPECT_STREQ(bytes + 177, "Filter");
    std::int64_t refCon2 = 0, paramID = 0;
    std::memcpy(&refCon2, bytes + 32, 8);
    std::memcpy(&paramID, bytes + 168, 8);
    EXPECT_EQ(refCon2, 4);
    std::uint64_t id = 0;
    ASSERT_EQ(m_Alg->GetParamIDFromName("Filter", id), 0);
    EXPECT_EQ(paramID, static_cast<std::int64_t>(id));
}

TEST_F(AutomationTest, BadIndexesNamesAndVersionsGiveTheirCodes) {
    ml::ControllerAutomationInfoVer11 info{};
    const struct {
        std::int32_t version, index;
        int code;
    } records[] = {{10, 0, ml::kErrWrongAutomationInfoVersion},
                   {11, kBeyond, ml::eControlOutOfRange},
                   {11, -1, ml::eControlOutOfRange}};
    for (const auto &row : records) {
        info.m_Version = row.version;
        info.m_ControlIndex = row.index;
        EXPECT_EQ(ml::GetPluginInfo_struct(m_Shell.Instance(), ml::WCFourCC("caui"), &info, 0),
                  row.code)
            << row.version << ' ' << row.index;
    }
    std::size_t lead = 77;
    EXPECT_EQ(ml::GetPluginInfo_size_t(m_Shell.Instance(), ml::WCFourCC("LPrm"), lead, kBeyond),
              ml::eOutOfRangeNumber);
    EXPECT_EQ(lead, 77u);
    EXPECT_EQ(m_Alg->SetControllerValue(kBeyond, 100.0), ml::eOutOfRangeNumber);
    EXPECT_EQ(m_Alg->SetControllerValue(0, 1000.5), ml::eOutOfRangeNumber);
    EXPECT_EQ(m_Alg->SetControllerValue(0, -1.0), ml::eOutOfRangeNumber);
    EXPECT_EQ(m_Alg->Touch(1000), ml::eOutOfRangeNumber);
    EXPECT_EQ(m_Alg->SetAutomatableControlStr("Cutoff", Index("Gain")),
              ml::eSomeThingInitailzedTwice);
    EXPECT_EQ(Index("Gain"), 0) << "a refused rename leaves the name";
}

TEST_F(AutomationTest, AHostEventMovesTheParameterAndTheGUIControlWithoutAnEcho) {
    ASSERT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    ml::WCGUIControl *knob = m_Alg->GetGUIPtr("Primary")->GetControlPtrByName("Cutoff");
    ASSERT_NE(knob, nullptr);
    ASSERT_EQ(Manager().SetAutomationRefCons(Index("Cutoff"), 1, 2), 0);
    m_Shell.ClearLog();

    ASSERT_EQ(m_Alg->SetControllerValue(Index("Cutoff"), 250.0), 0);
    EXPECT_DOUBLE_EQ(State("Cutoff"), 250.0);
    long sends = 0;
    for (const auto &call : m_Shell.Calls())
        sends += call.op == ml::eExecSendBuffers;
    EXPECT_EQ(sends, 1) << "the parameter's chain reached the process side";
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
    m_Shell.Idle(0, 1);
    EXPECT_DOUBLE_EQ(knob->GetRegistration(0).GetValue(), 250.0);
    EXPECT_TRUE(gAutoCalls.empty()) << "the host is not told back what it sent";
}

TEST_F(AutomationTest, AKnobDragReachesTheHostBetweenATouchAndARelease) {
    ASSERT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    ml::CStandardGUI_X &gui = *m_Alg->GetGUIPtr("Primary");
    ASSERT_EQ(Manager().SetAutomationRefCons(Index("Gain"), 1, 42), 0);
    const double before = State("Gain");

    // The Gain knob sits at (40, 56), 48 pixels wide; drag it up by 8 pixels.
    PVM::WCEventData event;
    event.SetMouseClickCount(PVM::eClickSingle);
    event.SetMouseButtonPressed(PVM::eMouseButtonLeft, true);
    event.SetMouseDownLocation({64, 80});
    event.SetMouseLocation({64, 80});
    EXPECT_EQ(gui.DoMouseDown(event), 0);
    for (short y : {76, 72}) {
        event.SetMouseLocation({64, y});
        EXPECT_EQ(gui.DoMouseMove(event), 0);
    }
    event.SetMouseButtonPressed(PVM::eMouseButtonLeft, false);
    EXPECT_EQ(gui.DoMouseUp(event), 0);

    ASSERT_GT(State("Gain"), before);
    ASSERT_GE(gAutoCalls.size(), 3u);
    EXPECT_EQ(gAutoCalls.front().op, ml::WCAutomationControl::eAutoTouch);
    EXPECT_EQ(gAutoCalls.back().op, ml::WCAutomationControl::eAutoRelease);
    for (std::size_t i = 1; i + 1 < gAutoCalls.size(); ++i)
        EXPECT_EQ(gAutoCalls[i].op, ml::WCAutomationControl::eAutoSetValue) << i;
    for (const auto &call : gAutoCalls)
        EXPECT_EQ(call.refCon2, 42);
    EXPECT_DOUBLE_EQ(gAutoCalls[gAutoCalls.size() - 2].value, State("Gain"));
    EXPECT_FALSE(Manager().GetAutomationControl(Index("Gain"))->IsTouched());
}

// A host's automation thread changes a parameter while the main thread hands the refcons: once
// they are set, every value reaches the host with the refcon 2 that came with them.
std::atomic<long> gThreadCalls{0};
std::atomic<bool> gWrongRefCon{false};
int CountThreadCall(int op, std::int64_t, void *refCon2, void *, void *) {
    if (op == ml::WCAutomationControl::eAutoSetValue) {
        gWrongRefCon = gWrongRefCon || reinterpret_cast<std::int64_t>(refCon2) != 9;
        ++gThreadCalls;
    }
    return 0;
}

TEST_F(AutomationTest, ValuesFromAnotherThreadReachTheHostWithTheRefConsHandedMeanwhile) {
    m_Alg->SetAutoCallBack(&CountThreadCall, 5);
    std::uint64_t id = 0;
    ASSERT_EQ(m_Alg->GetParamIDFromName("Cutoff", id), 0);
    std::atomic<bool> refConsSet{false};
    std::thread host([&] {
        for (int i = 0, after = 0; after < 50; ++i, after += refConsSet ? 1 : 0) {
            ml::KPAPI_PROCESS_MEMORY::BUFFER_HEADER *chain =
                m_Alg->UpdateParamRequestState(id, 100.0 + (i % 2) * 100.0);
            m_Alg->SendAndFreeBuffers(chain, ml::eExecFreeBuffers, false);
        }
    });
    ASSERT_EQ(Manager().SetAutomationRefCons(Index("Cutoff"), 8, 9), 0);
    refConsSet = true;
    host.join();
    EXPECT_GT(gThreadCalls.load(), 0);
    EXPECT_FALSE(gWrongRefCon.load());
}

} // namespace
