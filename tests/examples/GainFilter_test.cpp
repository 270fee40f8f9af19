#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Algorithm/DLLMap.h"
#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "Code/Process/WUNativeProcess.h"
#include "core/WCStMemObj.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"
#include "resources/ResourceManager.h"
#include "resources/XInfResource.h"
#include "tests/support/WCGoldenPicture.h"
#include "tests/support/WCTestHome.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/PluginViewManager.h"
#include "view/WCEventScript.h"
#include "view/linux/WUEventScriptPlayer.h"
#include "view/linux/WUHeadlessView.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using mirel_shell::WCRecordingShell;

// Loads the example module into `shell`, then creates and starts its one component.
void StartGainFilter(WCRecordingShell &shell) {
    ASSERT_EQ(shell.LoadModule(MIREL_EXAMPLE_MODULE), 0);
    ml::MirelComponentInfo info;
    ASSERT_EQ(shell.GetModuleComponentInfo(0, info), 0);
    ASSERT_EQ(shell.Create(info), 0);
    ASSERT_EQ(shell.Start(), 0);
}

TEST(GainFilterModule, LoadsWalksTheLifeCycleAndTearsDownClean) {
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::MirelComponentInfo info;
    ASSERT_EQ(shell.GetModuleComponentInfo(0, info), 0);
    EXPECT_EQ(info.m_ComponentSubType, ml::WCFourCC("GnFl"));
    EXPECT_STREQ(info.m_ShortName.c_str(), "GainFilter");
    EXPECT_EQ(shell.GetModuleComponentInfo(1, info), ml::ePluginSubComponentNotFound);
    ml::WCFixedString<63> name;
    EXPECT_EQ(ml::GetPluginInfo_WCFixedString(shell.Instance(), ml::WCFourCC("sAlN"), name, 0), 0);
    EXPECT_STREQ(name.c_str(), "GainFilter");
    std::int32_t coefs = 0;
    EXPECT_EQ(ml::GetPluginInfo_int32_t(shell.Instance(), ml::WCFourCC("gncf"), coefs, 0), 0);
    EXPECT_EQ(coefs, 6);
    // The bundle's factory presets: "Default" loaded at start-up, "Quiet" by name.
    std::size_t presets = 0;
    EXPECT_EQ(ml::GetPluginInfo_size_t(shell.Instance(), ml::WCFourCC("FcPC"), presets, 0), 0);
    EXPECT_EQ(presets, 8u);
    EXPECT_STREQ(shell.Algorithm()->GetCurrentPresetInfo().m_PresetName.c_str(), "Default");

    // Unity gain and a 1 kHz pole at 44.1 kHz reached the process memory.
    EXPECT_FLOAT_EQ(shell.CoefAsFloat(0), 1.0f);
    const double a1 = std::exp(-2.0 * M_PI * 1000.0 / 44100.0);
    EXPECT_NEAR(shell.CoefAsFloat(2), a1, 1e-6);

    EXPECT_EQ(ml::SetPluginInfo_c_str(shell.Instance(), ml::WCFourCC("lfps"), "Quiet", 0), 0);
    EXPECT_EQ(shell.Update(), 0);
    EXPECT_NEAR(shell.CoefAsFloat(0), std::pow(10.0, -18.0 / 20.0), 1e-6);

    EXPECT_EQ(shell.Idle(0, 3), 0);
    EXPECT_EQ(shell.Algorithm()->GetNumDoIdleCalls(), 3u);
    EXPECT_EQ(shell.Stop(), 0);
    EXPECT_EQ(shell.LiveBuffers(), 0u);
}

// What the exec callback received in each send: every buffer with its coefficient words.
struct WSSentBuffer {
    int op, kind, memOp, marker, offset, count;
    std::vector<std::uint32_t> words;
    bool operator==(WSSentBuffer const &) const = default;
};
std::vector<WSSentBuffer> g_Sent;
std::int64_t g_ShellRefcon = 0;

int RecordSends(int op, std::int64_t, void *a, void *b, void *c) {
    if ((op == 0 || op == 1) && a != nullptr) {
        for (auto *buffer = static_cast<ml::BUFFER_HEADER *>(a); buffer; buffer = buffer->next) {
            std::vector<std::uint32_t> words(static_cast<std::size_t>(buffer->count));
            std::memcpy(words.data(), buffer->data, words.size() * 4);
            g_Sent.push_back({op, buffer->kind, buffer->memOp, buffer->coefMarker, buffer->offset,
                              buffer->count, words});
        }
    }
    return WCRecordingShell::ExecCallBack(op, g_ShellRefcon, a, b, c);
}

std::uint32_t Word(double fraction) {
    const float value = static_cast<float>(fraction);
    std::uint32_t word = 0;
    std::memcpy(&word, &value, 4);
    return word;
}

WSSentBuffer Coefs(int offset, std::vector<std::uint32_t> words) {
    // The shell locates the coefficients at word 16.
    return {0, 1, 0, 1, 16 + offset, static_cast<int>(words.size()), std::move(words)};
}

TEST(GainFilterModule, ChangesTravelThroughThePipelineToTheSentWords) {
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::cALGORITHM &alg = *shell.Algorithm();
    g_ShellRefcon = alg.GetExecRefcon();
    alg.SetExecCallBack(&RecordSends, g_ShellRefcon);
    using Alg = ml::cALGORITHM;
    auto a1 = [](double hz) { return std::exp(-2.0 * std::numbers::pi * hz / 44100); };
    Alg::ETranslateTextRetType ret{};
    const struct {
        const char *what;
        std::function<ml::BUFFER_HEADER *()> change;
        std::vector<WSSentBuffer> sent;
    } steps[] = {
        {"gain state 500 is -6 dB",
         [&] { return alg.UpdateParamRequestState(0, 500.0); },
         {Coefs(0, {Word(std::pow(10.0, -6.0 / 20.0))})}},
        {"a repeat sends nothing", [&] { return alg.UpdateParamRequestState(0, 500.0); }, {}},
        {"cutoff 500 Hz",
         [&] { return alg.UpdateParamRequestRealWorld(1, 500.0); },
         {Coefs(1, {Word(1.0 - a1(500.0)), Word(a1(500.0))})}},
        {"cutoff typed 2k",
         [&] { return alg.UpdateParamFromText(1, "2k", ret); },
         {Coefs(1, {Word(1.0 - a1(2000.0)), Word(a1(2000.0))})}},
        {"garbage typed", [&] { return alg.UpdateParamFromText(1, "loud", ret); }, {}},
        {"filter off", [&] { return alg.UpdateParamRequestState(2, 0.0); }, {Coefs(3, {0})}},
        {"AlwaysUpdate repeats",
         [&] { return alg.UpdateParamRequestState(2, 0.0); },
         {Coefs(3, {0})}},
        {"a drag step waits", [&] { return alg.DragParam(0, 1000.0); }, {}},
        {"the finished drag sends",
         [&] {
             alg.FinishDragParam(0);
             return alg.UpdateParamRequestState(0, 1000.0);
         },
         {Coefs(0, {Word(std::pow(10.0, 12.0 / 20.0))})}},
        {"a trim drives no word", [&] { return alg.UpdateParamRequestState(3, 200.0); }, {}},
    };
    for (auto const &step : steps) {
        g_Sent.clear();
        ml::BUFFER_HEADER *chain = step.change();
        EXPECT_EQ(alg.SendAndFreeBuffers(chain, 0, true), 0) << step.what;
        EXPECT_EQ(g_Sent, step.sent) << step.what;
    }
    EXPECT_EQ(ret, Alg::eTranslateTextNoNumber);
    EXPECT_EQ(shell.CoefAsFloat(0), static_cast<float>(std::pow(10.0, 12.0 / 20.0)));
    EXPECT_EQ(shell.Stop(), 0);
    EXPECT_EQ(shell.LiveBuffers(), 0u);
}

TEST(GainFilterModule, ReadsItsAlgorithmAndParameterXMLFromTheBundle) {
    mirel_test::WCTestHome home;
    {
        WCRecordingShell shell;
        ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
        ASSERT_NE(shell.Container(), nullptr);
        // The bundle describes the module it ships.
        ml::WCVersion internal, external;
        ASSERT_EQ(ml::RM::GetPluginVersionsFromXInfResource(shell.Container(), internal, external),
                  0);
        EXPECT_EQ(internal, ml::WCVersion(1, 0, 0, 1));
        ml::WCFixedString<63> library;
        EXPECT_EQ(
            ml::RM::GetResourceValueByName(shell.Container(), "DynamicPluginLibName", library), 0);
        EXPECT_STREQ(library.c_str(), "GainFilter.so");
        ml::cALGORITHM &alg = *shell.Algorithm();

        // The algorithm XML, filtered for this component on this system.
        EXPECT_EQ(alg.GetUndoLevel(), 200u);
        EXPECT_TRUE(alg.GetPluginValue_bool("IsSampleBased", false));
        EXPECT_FALSE(alg.GetPluginValue_bool("DontSuspendProcess", false)) << "an element for Win";
        EXPECT_FALSE(alg.GetPluginValue_bool("IsMidiListener", false)) << "another sub-component";
        // 'AlgR' hands out the document as stored, before filtering.
        ml::Utils::WCStMemObj stored;
        ASSERT_EQ(alg.ReadResourceToMemObj("AlgXML", 1001, stored), 0);
        EXPECT_NE(std::string(static_cast<char const *>(stored.GetPtr()), stored.GetSize())
                      .find("OS=\"Win\""),
                  std::string::npos);

        // The parameter XML: several scale kinds, display functions, a parent and an array.
        ASSERT_EQ(alg.GetNumParams(), 8u);
        const char *names[] = {"Gain",  "Cutoff", "Filter", "Trim1",
                               "Trim2", "Output", "Slope",  "Mode"};
        const char *texts[] = {"0.0 dB", "1000 Hz",  "On",       "0.0 dB",
                               "0.0 dB", "-60.0 dB", "6 dB/oct", "Stereo"};
        for (std::uint64_t id = 0; id < alg.GetNumParams(); ++id) {
            ml::sCONTROL_PARAM &param = *alg.GetParam(id);
            param.UpdateValueString(0);
            EXPECT_STREQ(param.m_Name.c_str(), names[id]);
            EXPECT_STREQ(param.GetValueString().c_str(), texts[id]) << names[id];
        }
        EXPECT_NEAR(alg.GetParam(1)->GetResetValue(), 632.0, 0.5);
        EXPECT_EQ(alg.GetParam(4)->StateToRealWorld(1000), 12.0) << "the trims inherit the scale";
        EXPECT_TRUE(alg.GetParam(4)->IsFlagSet(ml::eParamFlag_DontRecordUndo));
        EXPECT_FALSE(alg.GetParam(4)->IsFlagSet(ml::eParamFlag_DontUpdateWhileDrag));
        EXPECT_EQ(shell.Stop(), 0);
    }
    // The shell closed the bundle's container with the module.
    ml::WSResourceManagerInfo managerInfo;
    ml::RM::GetResourceManagerInfo(managerInfo, nullptr);
    EXPECT_EQ(managerInfo.m_NumContainers, 0u);
    EXPECT_EQ(managerInfo.m_TotalResources, 0u);
}

TEST(GainFilterModule, FindsItsAudioCodeByDescriptionAndRunsItOverThePlacedWords) {
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::cALGORITHM &alg = *shell.Algorithm();
    // The needs come from the bundle's process description, not from the plug-in's code.
    EXPECT_EQ(shell.DSPReqRes().cycles, 40);
    EXPECT_EQ(shell.DSPReqRes().statesWords, 7u);
    EXPECT_EQ(shell.DSPReqRes().maxSampleRate, 192000);

    ml::WTNativeProcessFunction process = nullptr;
    std::uint64_t size = 0;
    EXPECT_EQ(alg.GetNSProcess(ml::eProcessorTypeAVX512, ml::eOSWindows, &process, &size),
              ml::eCantLoadProcessFunction);
    ASSERT_EQ(alg.GetNSProcess(ml::eProcessorTypeAVX512, ml::eOSLinux, &process, &size), 0);
    EXPECT_EQ(alg.GetLoadedNativeProcessType(), ml::eProcessorTypeAVX) << "no AVX512 build";
    // No multi-core build in the bundle: the generic one, which any x86-64 runs.
    ASSERT_EQ(alg.GetNSProcess(ml::eProcessorTypeGenericMultiCore, ml::eOSLinux, &process, &size),
              0);
    EXPECT_EQ(alg.GetLoadedNativeProcessType(), ml::eProcessorTypeGeneric);
    EXPECT_GT(size, 0u);

    auto set = [&](std::uint64_t id, double value) {
        ml::BUFFER_HEADER *chain = alg.UpdateParamRequestRealWorld(id, value);
        alg.SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
    };
    enum : std::uint64_t { eGain = 0, eFilter = 2, eSlope = 6, eMode = 7 };
    set(eGain, -6.0);
    set(eFilter, 0.0);
    const double gain = std::pow(10.0, -6.0 / 20.0);
    // The channel modes, filter off: each output is the gain times what the mode routes there.
    const struct {
        double mode;
        float left, right;
    } modes[] = {{0, 1.0f, -0.5f}, {1, 0.25f, 0.25f}, {2, -0.5f, 1.0f}};
    const float in[2] = {1.0f, -0.5f};
    float out[2] = {0.0f, 0.0f};
    for (const auto &row : modes) {
        set(eMode, row.mode);
        process(shell.CoefWords(), shell.StateWords(), in, out, 1);
        EXPECT_NEAR(out[0], row.left * gain, 1e-4) << row.mode;
        EXPECT_NEAR(out[1], row.right * gain, 1e-4) << row.mode;
    }
    set(eMode, 0.0);
    // The first sample of a step through n one-pole stages from rest is b0^n.
    set(eFilter, 1.0);
    for (double slope : {0.0, 1.0, 2.0}) {
        set(eSlope, slope);
        std::memset(shell.StateWords(), 0, 7 * sizeof(float)); // the filters at rest
        const float step[2] = {1.0f, 1.0f};
        process(shell.CoefWords(), shell.StateWords(), step, out, 1);
        const double b0 = 1.0 - std::exp(-2.0 * std::numbers::pi * 1000.0 / alg.GetSampleRate());
        EXPECT_NEAR(out[0], std::pow(b0, slope + 1.0) * gain, 1e-4) << slope;
    }
    set(eFilter, 0.0);
    process(shell.CoefWords(), shell.StateWords(), in, out, 1);
    // The output meter finds the peak the audio code left, and its read resets the hold.
    ASSERT_EQ(alg.GetMeterManager().GetNumMeters(), 1u);
    EXPECT_EQ(alg.DoIdle(0), 0);
    double peak = 0.0;
    EXPECT_EQ(alg.GetMeterManager().GetMeterValue(0, peak), 0);
    EXPECT_NEAR(peak, gain, 1e-4);
    float hold = 1.0f;
    std::memcpy(&hold, static_cast<char *>(shell.StateWords()) + 2 * 4, sizeof hold);
    EXPECT_EQ(hold, 0.0f);
    EXPECT_EQ(shell.Stop(), 0);
}

TEST(GainFilterModule, AModuleWithoutTheEntryPointsIsNoPlugInAndTheFactoryMakesOnlyItsOwn) {
    WCRecordingShell shell;
    // The run-time itself loads but is no plug-in.
    EXPECT_EQ(shell.LoadModule(MIREL_RUNTIME_LIBRARY), ml::eFuncPointerNotFound);
    ml::MirelComponentInfo info;
    EXPECT_EQ(shell.GetModuleComponentInfo(0, info), ml::ePluginNotLoaded);
    EXPECT_EQ(shell.Create(info), ml::ePluginNotLoaded);
    // The example module's factory makes only its own component.
    ASSERT_EQ(shell.LoadModule(MIREL_EXAMPLE_MODULE), 0);
    info.m_ComponentSubType = ml::WCFourCC("Othr");
    EXPECT_EQ(shell.Create(info), ml::ePluginAlgNotCreate);
    EXPECT_EQ(shell.Algorithm(), nullptr);
}

TEST(DLLMap, LoadsOnceByNameAndReleases) {
    ml::DLLMap map;
    void *first = nullptr;
    void *second = nullptr;
    ASSERT_EQ(map.Load("GainFilter", MIREL_EXAMPLE_MODULE, first), 0);
    ASSERT_EQ(map.Load("GainFilter", "/no/such/path.so", second), 0);
    EXPECT_EQ(first, second);
    EXPECT_EQ(map.Find("GainFilter"), first);
    EXPECT_EQ(map.size(), 1u);
    EXPECT_TRUE(map.Release("GainFilter"));
    EXPECT_FALSE(map.Release("GainFilter"));
    EXPECT_EQ(map.Find("GainFilter"), nullptr);
    void *none = nullptr;
    EXPECT_EQ(map.Load("missing", "/no/such/path.so", none), ml::eDLLNotFound);
    EXPECT_EQ(none, nullptr);
}

} // namespace

namespace {

std::vector<std::string> Names(const std::vector<ml::WCGUIControl *> &controls) {
    std::vector<std::string> names;
    for (const auto *control : controls)
        names.emplace_back(control->GetName().c_str());
    return names;
}

TEST(GainFilterModule, ItsGUIsReadTheControlsOrderGroupsAndToolbarTheirXMLStates) {
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::cALGORITHM *alg = shell.Algorithm();
    ASSERT_EQ(alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    ASSERT_EQ(alg->CreateGuiAndAddToMap(nullptr, "1001", "Secondary"), 0);
    const ml::CStandardGUI_X *primary = alg->GetGUIPtr("Primary");
    const ml::CStandardGUI_X *secondary = alg->GetGUIPtr("Secondary");

    EXPECT_EQ(Names(primary->GetControls()),
              (std::vector<std::string>{"Gain", "GainValue", "GainEntry", "Cutoff", "Filter",
                                        "Slope", "TabTrim", "TabMode", "Trim1", "Trim2", "Mode",
                                        "Output"}));
    EXPECT_EQ(Names(secondary->GetControls()),
              (std::vector<std::string>{"Gain", "Cutoff", "Filter"}));
    const ml::ControlGroup *trims = primary->GetGroup("Trims");
    ASSERT_NE(trims, nullptr);
    EXPECT_EQ(Names(trims->GetControls()), (std::vector<std::string>{"Trim1", "Trim2"}));
    ASSERT_EQ(trims->GetParents().size(), 1u);
    EXPECT_EQ(trims->GetParents().front(), primary->GetGroup("Channel"));
    std::vector<std::string> toolbar;
    for (std::size_t i = 0; i < primary->GetNumToolBarControls(); ++i)
        toolbar.emplace_back(primary->GetToolBarControl(i)->GetType().c_str());
    EXPECT_EQ(toolbar,
              (std::vector<std::string>{"Preset", "PrevPreset", "NextPreset", "Undo", "Redo"}));
    EXPECT_EQ(primary->GetTabList(false).size(), 4u);
    EXPECT_TRUE(primary->GetGUIFlag(ml::CStandardGUI_X::eNoSelectRect));

    // The pictures the documents name are in the bundle the build made.
    for (const ml::CStandardGUI_X *gui : {primary, secondary}) {
        ASSERT_NE(gui->GetCurrentBasePictVec(), nullptr);
        EXPECT_TRUE(gui->GetCurrentBasePictVec()->GetImagePtr(0)->IsLoaded());
    }
    for (const ml::WCGUIControl *control : primary->GetControls())
        for (std::size_t i = 0; i < control->GetNumRegistrations(); ++i)
            EXPECT_NE(control->GetRegistration(i).GetRegisteredParam(), ~std::uint64_t(0))
                << control->GetName().c_str();
    EXPECT_EQ(alg->DisposeGuiAndRemoveFromMap("Secondary"), 0);
    EXPECT_EQ(Names(primary->GetControls()).size(), 12u);
}

} // namespace

namespace {

const std::string kPictures = std::string(MIREL_SOURCE_DIR) + "/tests/data/examples";

// One frame of the GUI painted over the painter's picture.
void Paint(ml::CStandardGUI_X &gui, ml::miGS::WCGraphicStreamToCairo &painter) {
    ml::miGS::WCGraphicStreamBinaryWriter writer(0);
    ASSERT_EQ(gui.GetDrawInstructions(writer), 0);
    painter.ExecStream(static_cast<char *>(writer.GetStreamPtr()), writer.GetStreamSize());
    EXPECT_EQ(painter.GetFirstDrawError(), 0) << "every record of the GUI's frame is drawn";
}

TEST(GainFilterModule, ItsGUIIsPaintedAndAMinimalFrameOverTheOldPictureEqualsAFullOne) {
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::cALGORITHM *alg = shell.Algorithm();
    ASSERT_EQ(alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    ml::CStandardGUI_X &gui = *alg->GetGUIPtr("Primary");
    shell.Idle(0, 1);

    ml::miGS::WCGraphicStreamToCairo kept;
    kept.FollowDataPointers(true);
    kept.SetKeepPicture(true);
    // Each request for a full frame while the GUI was built (groups, tab pages) is one frame.
    for (int frame = 0; frame < 32 && (frame == 0 || gui.NeedToRedrawGUI()); ++frame)
        ASSERT_NO_FATAL_FAILURE(Paint(gui, kept));
    mirel_test::ExpectGoldenPicture(kept.GetSurface(), kPictures, "GainFilter_Primary");

    ml::BUFFER_HEADER *chain = alg->UpdateParamRequestState(0, 250.0);
    alg->SendAndFreeBuffers(chain, 0, true);
    shell.Idle(0, 1);
    ASSERT_FALSE(gui.NeedToRedrawGUI()) << "the change asks for a minimal frame";
    ASSERT_NO_FATAL_FAILURE(Paint(gui, kept));
    EXPECT_FALSE(gui.GetDirtyRects().empty());

    ml::miGS::WCGraphicStreamToCairo fresh;
    fresh.FollowDataPointers(true);
    gui.SetNeedToRedrawGUI();
    ASSERT_NO_FATAL_FAILURE(Paint(gui, fresh));
    mirel_test::ExpectSamePicture(kept.GetSurface(), fresh.GetSurface(),
                                  "the minimal frame over the old picture");
    mirel_test::ExpectGoldenPicture(fresh.GetSurface(), kPictures, "GainFilter_Primary_changed");
}

} // namespace

namespace {

namespace PVM = ml::PluginViewManager;

// A replayed script of the example: what each parameter ends at, and how many events sent a
// chain (one per event that changed a parameter).
struct WSReplay {
    const char *script;
    std::vector<std::pair<std::uint64_t, double>> realWorld;
    long sends;
};

class GainFilterReplay : public ::testing::TestWithParam<WSReplay> {};

// The knob drag: three fast moves of 4 pixels on the 48-pixel knob, a twelfth of the scale each
// (3 dB), and a slow pixel, one step (0.1 dB); then a wheel notch, one step more. The tour: a
// popup's menu, a tab, a radio button and a typed value.
INSTANTIATE_TEST_SUITE_P(
    Scripts, GainFilterReplay,
    ::testing::Values(WSReplay{"knob-drag", {{0, 9.2}}, 5},
                      WSReplay{"controls-tour", {{6, 1.0}, {7, 1.0}, {0, -6.0}}, 3}),
    [](const auto &info) { return info.param.script[0] == 'k' ? "KnobDrag" : "ControlsTour"; });

TEST_P(GainFilterReplay, MovesTheParametersAsTheScriptSaysAndPaintsEachFrameMark) {
    const WSReplay &replay = GetParam();
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::cALGORITHM *alg = shell.Algorithm();
    ASSERT_EQ(alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    ml::CStandardGUI_X &gui = *alg->GetGUIPtr("Primary");
    PVM::WCEventScript script;
    ASSERT_EQ(script.ReadFromFile((std::string(MIREL_SOURCE_DIR) + "/examples/GainFilter/Scripts/" +
                                   replay.script + ".yaml")
                                      .c_str()),
              0)
        << script.GetLastError();

    // The view's events go to the GUI, and its frames into a picture kept from frame to frame.
    ASSERT_EQ(PVM::Init(), 0);
    PVM::WCPluginViewCreateOptions options;
    options.m_width = gui.GetViewRect().Width();
    options.m_height = gui.GetViewRect().Height();
    options.m_callback = &ml::CStandardGUI_X::ViewEventCallback;
    options.m_reference = &gui;
    ml::WSPluginView *view = nullptr;
    ASSERT_EQ(PVM::CreatePluginView(options, view), 0);
    gui.SetPluginView(view);
    // Wheel acceleration reads the desktop's clock, which the script's waits advance.
    gui.SetInputClock([]() -> std::int64_t {
        return static_cast<std::int64_t>(PVM::GetCurrentTimeMs()) * 1000;
    });
    ml::miGS::WCGraphicStreamToCairo painter;
    painter.FollowDataPointers(true);
    painter.SetKeepPicture(true);
    PVM::SetFramePainter(view, [&](const char *stream, std::size_t size) {
        painter.ExecStream(const_cast<char *>(stream), size);
    });
    ASSERT_EQ(PVM::SetFrameSource(view, &gui, 16), 0);
    shell.ClearLog();

    const int played = PVM::PlayEventScript(
        view, script,
        [&](const std::string &mark) {
            shell.Idle(0, 1);
            PVM::AdvanceTime(64);
            mirel_test::ExpectGoldenPicture(painter.GetSurface(), kPictures,
                                            "GainFilter_Primary_" + mark);
            return 0;
        },
        16);
    EXPECT_EQ(played, 0);
    PVM::SetFrameSource(view, nullptr, 0);
    gui.ResetPluginView();
    PVM::Dispose();

    for (const auto &[id, expected] : replay.realWorld) {
        double value = 0.0;
        ASSERT_EQ(alg->GetParamRealWorld(id, value), 0);
        EXPECT_NEAR(value, expected, 1e-9) << alg->GetParam(id)->m_Name.c_str();
    }
    double gain = 0.0;
    ASSERT_EQ(alg->GetParamRealWorld(0, gain), 0);
    EXPECT_FLOAT_EQ(shell.CoefAsFloat(0), static_cast<float>(std::pow(10.0, gain / 20.0)))
        << "the gain word the process side holds";
    long sends = 0;
    for (const auto &call : shell.Calls())
        sends += call.op == ml::eExecSendBuffers;
    EXPECT_EQ(sends, replay.sends) << "one chain per event that changed a parameter";
    EXPECT_EQ(shell.Stop(), 0);
    EXPECT_EQ(shell.LiveBuffers(), 0u);
}

TEST(GainFilterModule, AClickOnTheFilterSwitchTurnsItOffAndTheNextOneOn) {
    mirel_test::WCTestHome home;
    WCRecordingShell shell;
    ASSERT_NO_FATAL_FAILURE(StartGainFilter(shell));
    ml::cALGORITHM *alg = shell.Algorithm();
    ASSERT_EQ(alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
    ml::CStandardGUI_X &gui = *alg->GetGUIPtr("Primary");
    PVM::WCEventData event;
    event.SetMouseLocation({184, 148});
    event.SetMouseDownLocation({184, 148});
    event.SetMouseClickCount(PVM::eClickSingle);
    for (const double expected : {0.0, 1.0}) {
        event.SetMouseButtonPressed(PVM::eMouseButtonLeft, true);
        ASSERT_EQ(gui.DoMouseDown(event), 0);
        event.SetMouseButtonPressed(PVM::eMouseButtonLeft, false);
        ASSERT_EQ(gui.DoMouseUp(event), 0);
        double filter = -1.0;
        ASSERT_EQ(alg->GetParamRealWorld(2, filter), 0);
        EXPECT_EQ(filter, expected);
    }
    EXPECT_EQ(shell.Stop(), 0);
}

} // namespace
