// No selector, named request or default of cALGORITHM answers success (0) while leaving its output
// as it was: an operation whose layer is not built yet answers eNotImplemented (-25), as does an
// unknown selector ('zzzz'), which also leaves its output alone.
//
// Each row runs twice. Before each run the output is set to a sentinel (a different one each
// time, so a selector whose true answer equals one sentinel still shows a change in the other
// run); a setter is given two different values and its target state is watched instead. A row
// that answers 0 must have changed something in at least one run.

#include <array>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Control/WCAutomationControl.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"

#include "Code/Algorithm/MirelAPI3Internal.h"
#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/WCStMemObj.h"
#include "tests/Code/Algorithm/WCTestAlgorithm.h"

namespace {

using namespace mirel_test;
using json = nlohmann::json;
using ml::Utils::WCStMemObj;
namespace API = ml::MirelAPI3Internal;

unsigned int Sel(char const *code) {
    return ml::WCFourCC::FromText(code);
}

template <typename T>
std::int64_t Arg(T const *pointer) {
    return reinterpret_cast<std::int64_t>(pointer);
}

// The test algorithm with two parameters, so parameter selectors have something to answer, and a
// noise-ratio hook that builds a buffer, so the shell sees what SetNoiseRatio sends.
class WCWalkedAlgorithm : public WCTestAlgorithm {
public:
    using WCTestAlgorithm::WCTestAlgorithm;

protected:
    int ReadParamXML(WCStMemObj &out) const override {
        static constexpr char kXML[] = R"(<ParamXML>
          <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
            <Maximum>12</Maximum></Scale><InitialValue>-6</InitialValue></Parameter>
          <Parameter Name="Mode"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum>
            <Maximum>3</Maximum></Scale></Parameter></ParamXML>)";
        return out.Assign(kXML, sizeof kXML - 1);
    }
    BUFFER_HEADER *SetNoiseRatioSelf(double) override {
        return NewBuffer(ml::KPAPI_PROCESS_MEMORY::eBufferStates, GetMemOpWrite(), 0,
                         GetStatesOfs(), 1, 0);
    }
};

struct WSOutcome {
    int code;
    bool changed;
};
struct WSRow {
    std::string name;
    std::function<WSOutcome(int variant)> run;
};

// The two sentinels of each output type.
template <typename T>
T Sentinel(int variant) {
    if constexpr (std::is_same_v<T, bool>)
        return variant == 0;
    else if constexpr (std::is_arithmetic_v<T>)
        return static_cast<T>(variant == 0 ? 12345.25 : 67890.5);
    else
        return T(variant == 0 ? "sentinel one" : "sentinel two");
}

std::string Bytes(WCStMemObj const &memory) {
    return std::string(static_cast<char const *>(memory.GetPtr()), memory.GetSize());
}

class NoPlaceholderSuccess : public ::testing::Test {
protected:
    void SetUp() override {
        m_Shell.Create(
            TestComponent(),
            [this](ml::MirelComponentInfo const &info, ml::WTResContainerType *&container) {
                m_Alg = new WCWalkedAlgorithm(info, container);
                return m_Alg;
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_NE(m_Alg, nullptr);
        ASSERT_EQ(m_Shell.Start(), 0);
        ASSERT_EQ(m_Alg->GetNumParams(), 2u);
        Instance().m_PluginFileName = "/plugins/Walked.bundle";
        // One automation control, with the host's refcons, so that the automation selectors and
        // requests have something to answer about.
        ASSERT_EQ(m_Alg->GetAutomationManager().AddNewAutomationControl("Host", 0), 0);
        ASSERT_EQ(m_Alg->GetAutomationManager().SetAutomationRefCons(0, 1, 2), 0);
    }
    static int CountAutoCall(int, std::int64_t refcon, void *, void *, void *) {
        ++*reinterpret_cast<long *>(refcon);
        return 0;
    }
    long m_AutoCalls = 0;
    void TearDown() override { m_Alg->SetGUIPointer("Primary", nullptr); }
    ml::PluginInstance &Instance() { return m_Shell.Instance(); }

    // A Get selector with a plain output.
    template <typename T, typename Out = T>
    void Get(std::vector<WSRow> &rows, char const *selector,
             int (*get)(ml::PluginInstance &, unsigned int, Out &, std::int64_t),
             std::int64_t arg = 0) {
        rows.push_back({std::string("Get ") + selector, [=, this](int variant) {
                            T out = Sentinel<T>(variant);
                            const int code = get(Instance(), Sel(selector), out, arg);
                            return WSOutcome{code, !(out == Sentinel<T>(variant))};
                        }});
    }
    // A Get selector with a record: `fill` sets the sentinel, `differs` says it changed.
    template <typename Record>
    void GetStruct(std::vector<WSRow> &rows, char const *selector,
                   std::function<void(Record &, int)> fill,
                   std::function<bool(Record const &, int)> differs, std::int64_t arg = 0) {
        rows.push_back({std::string("Get struct ") + selector, [=, this](int variant) {
                            Record out{};
                            fill(out, variant);
                            const int code =
                                ml::GetPluginInfo_struct(Instance(), Sel(selector), &out, arg);
                            return WSOutcome{code, differs(out, variant)};
                        }});
    }
    // Anything that acts on the algorithm: `observe` prints the state it should change.
    void Act(std::vector<WSRow> &rows, std::string name, std::function<int(int variant)> act,
             std::function<std::string()> observe) {
        rows.push_back({std::move(name), [=](int variant) {
                            const std::string before = observe();
                            const int code = act(variant);
                            return WSOutcome{code, observe() != before};
                        }});
    }
    // A typed setter given `one` in the first run and `two` in the second.
    template <typename T>
    std::function<int(unsigned int, int)>
    Setter(int (*set)(ml::PluginInstance &, unsigned int, T, std::int64_t), T one, T two) {
        return
            [=, this](unsigned int s, int v) { return set(Instance(), s, v == 0 ? one : two, 0); };
    }
    // A named request: the response, binary output and payload start as sentinels, and
    // `observe` adds the algorithm's state the request should change, which `prepare` first
    // puts where the request will change it.
    void Request(
        std::vector<WSRow> &rows, char const *name, int (*request)(API::Request &),
        std::array<char const *, 2> params,
        std::function<std::string()> observe = [] { return std::string(); },
        std::function<void()> prepare = [] {}) {
        rows.push_back({std::string("Request ") + name, [=, this](int variant) {
                            prepare();
                            ml::WSMirelAPI3_RawRequest raw;
                            raw.m_pInstance = &Instance();
                            std::array<char, 4096> payload;
                            payload.fill(static_cast<char>(0xA0 + variant));
                            raw.SetPayloadPtr(payload.data());
                            raw.m_PayloadSize = payload.size();
                            raw.m_BinaryOutput.Assign(variant == 0 ? "binary one" : "binary two",
                                                      10);
                            API::Request with;
                            with.m_pRawRequest = &raw;
                            with.m_Request = json::parse(params[variant]);
                            with.m_Response = json{{"sentinel", variant}};
                            auto print = [&] {
                                return with.m_Response.dump() + Bytes(raw.m_BinaryOutput) +
                                       std::string(payload.data(), payload.size()) + observe();
                            };
                            const std::string before = print();
                            const int code = request(with);
                            EXPECT_EQ(raw.m_Error, code) << name;
                            return WSOutcome{code, print() != before};
                        }});
    }

    std::vector<WSRow> Rows();

    mirel_shell::WCRecordingShell m_Shell;
    WCWalkedAlgorithm *m_Alg = nullptr;
};

std::vector<WSRow> NoPlaceholderSuccess::Rows() {
    std::vector<WSRow> rows;
    // Observers outlive this function: they hold the algorithm by pointer and copy the rest.
    WCWalkedAlgorithm *alg = m_Alg;
    using FS = ml::WCFixedString<1023>;

    // ---- GetPluginInfo_*: every selector, the private channel and an unknown one.
    for (char const *s : {"FcPN", "algT", "cost", "icnf", "sAlN", "sPFN", "sPTP", "prvt", "zzzz"})
        Get<FS, ml::WCFixedStringBase>(rows, s, &ml::GetPluginInfo_WCFixedString);
    Get<FS, ml::WCFixedStringBase>(rows, "sAlL", &ml::GetPluginInfo_WCFixedString, 4);
    for (char const *s : {"AlgR", "daef", "XPGT", "pcmX", "pcat", "prvt", "zzzz"})
        rows.push_back({std::string("Get memory ") + s, [=, this](int variant) {
                            WCStMemObj out(variant == 0 ? "sentinel one" : "sentinel two", 12);
                            const std::string before = Bytes(out);
                            const int code =
                                ml::GetPluginInfo_WCStMemObj(Instance(), Sel(s), out, 0);
                            return WSOutcome{code, Bytes(out) != before};
                        }});
    for (char const *s : {"ndlc", "isml", "nath", "isti", "istl", "ismr", "isnk", "issb", "gpst",
                          "isbe", "isbp", "ismb", "iStT", "capr", "dade", "deFP", "PVio", "pact",
                          "susp", "issm", "hpsc", "hssp", "PrCh", "byps", "prvt", "zzzz"})
        Get<bool>(rows, s, &ml::GetPluginInfo_bool);
    Get<bool>(rows, "sgpv", &ml::GetPluginInfo_bool, Arg("track_name"));
    for (char const *s : {"prwv", "psfr", "prfs", "crfs", "csfr", "MRst", "pnst", "prvt", "zzzz"})
        Get<double>(rows, s, &ml::GetPluginInfo_double);
    for (char const *s : {"moir", "xoir", "prvt", "zzzz"})
        Get<float>(rows, s, &ml::GetPluginInfo_float);
    for (char const *s : {"istm", "sstm", "ostm", "inpu", "outp", "nsci", "mnch", "maxr", "cOfs",
                          "gncf", "dlay", "tail", "CLfM", "Ctrl", "nTGs", "TsCO", "prvt", "zzzz"})
        Get<std::int32_t>(rows, s, &ml::GetPluginInfo_int32_t);
    Get<std::int32_t>(rows, "aois", &ml::GetPluginInfo_int32_t, 512);
    Get<std::int32_t>(rows, "IfrN", &ml::GetPluginInfo_int32_t, Arg("Gain"));
    for (char const *s : {"FcPC", "LPrm", "cais", "prvt", "zzzz"})
        Get<std::size_t>(rows, s, &ml::GetPluginInfo_size_t);
    Get<std::size_t>(rows, "pifn", &ml::GetPluginInfo_size_t, Arg("Mode"));
    for (char const *s :
         {"cont", "aCon", "Metr", "Orrt", "byps", "gCon", "selc", "rgpr", "prvt", "zzzz"})
        Get<std::uint32_t>(rows, s, &ml::GetPluginInfo_uint32_t);

    using ReqRes = ml::ProcessMemory::SDSPReqRes;
    GetStruct<ReqRes>(
        rows, "reqR",
        [](ReqRes &r, int v) {
            r.coefsWords = 12345 + v;
            r.cycles = -77 - v;
        },
        [](ReqRes const &r, int v) { return r.coefsWords != 12345u + v || r.cycles != -77 - v; });
    using MemRequest = ml::ProcessMemory::WSProcessMemoryRequest;
    GetStruct<MemRequest>(
        rows, "PmRq",
        [](MemRequest &r, int v) {
            r.coefsNum = 12345 + v;
            r.refcon = -77 - v;
        },
        [](MemRequest const &r, int v) { return r.coefsNum != 12345u + v || r.refcon != -77 - v; });
    GetStruct<void *>(
        rows, "grda", [](void *&p, int v) { p = reinterpret_cast<void *>(0x1230 + v); },
        [](void *const &p, int v) { return p != reinterpret_cast<void *>(0x1230 + v); });
    // Raw records: a version word and an index, then sentinel bytes.
    using Record = std::array<std::int32_t, 128>;
    auto fillRecord = [](Record &r, int v) {
        r.fill(0x5A5A0000 + v);
        r[0] = 11;
        r[1] = 0;
    };
    auto recordDiffers = [](Record const &r, int v) {
        for (std::size_t i = 2; i < r.size(); ++i)
            if (r[i] != 0x5A5A0000 + v)
                return true;
        return r[0] != 11 || r[1] != 0;
    };
    for (char const *s : {"MInf", "caui", "prvt", "zzzz"})
        GetStruct<Record>(rows, s, fillRecord, recordDiffers);

    // ---- SetPluginInfo_*: each is given two values and its target watched; every type also
    // meets the private channel and an unknown selector.
    using Observe = std::function<std::string()>;
    const Observe none = [] { return std::string(); };
    auto text = [](auto const &value) { return ::testing::PrintToString(value); };
    // Unwatched selectors (the private channel, an unknown one, those whose target is not built)
    // need only not answer 0; watched ones must change what they observe.
    auto setters = [&](char const *kind, std::function<int(unsigned int, int)> call,
                       std::vector<char const *> unwatched,
                       std::vector<std::pair<char const *, Observe>> watched = {}) {
        unwatched.insert(unwatched.end(), {"prvt", "zzzz"});
        for (char const *s : unwatched)
            watched.emplace_back(s, none);
        for (auto const &[s, observe] : watched)
            Act(
                rows, std::string("Set ") + kind + " " + s,
                [call, s](int v) { return call(Sel(s), v); }, observe);
    };
    // What the selectors and requests about the GUI change in it.
    const Observe guiState = [=] {
        ml::CStandardGUI_X const *gui = alg->GetGUIPtr("Primary");
        if (gui == nullptr)
            return std::string();
        return text(gui->IsEditorMode()) + text(gui->IsEditorMoveMode()) +
               text(gui->IsEditorResizeMode()) + text(gui->GetIsDirectText()) +
               text(gui->GetNumSelectedControllers()) + text(gui->GetWindowPosition().x) +
               text(gui->GetGuiScalingFactor()) + text(gui->GetViewRect().top);
    };
    setters("bool", Setter(&ml::SetPluginInfo_bool, true, false), {"sofp"},
            {{"gued", guiState},
             {"gemc", guiState},
             {"gerc", guiState},
             {"ghom", guiState},
             {"dsac", guiState},
             {"stxt", guiState},
             {"hufp", [=] { return text(alg->GetPluginValue_bool("HostUsesFirstPreset", false)); }},
             {"nlpc", [=] { return text(alg->GetNotifyOnLinkedParams()); }},
             {"utfm", [=] { return text(alg->m_ShellFlag_utfm); }},
             {"stsm", [=] { return text(alg->IsShowMode()); }},
             {"rsip", [=] { return text(alg->m_ShellFlag_rsip); }},
             {"spcl", [=] { return text(alg->m_ShellFlag_spcl); }}});
    setters("c_str", Setter<char const *>(&ml::SetPluginInfo_c_str, "Dark", "Light"),
            {"lfps", "rfcp"},
            {{"dskn", [=] { return std::string(alg->GetDefaultSkin().c_str()); }},
             {"sacs", [=] {
                  return std::string(
                      alg->GetAutomationManager().GetAutomationControl(0)->GetName().c_str());
              }}});
    setters("double", Setter(&ml::SetPluginInfo_double, 90.0, 91.0), {},
            {{"raba", [=] { return text(alg->GetTrimModeRatio()); }},
             {"temp", [=] { return text(alg->GetMusicInfo().m_Tempo); }}});
    setters("int32_t", Setter(&ml::SetPluginInfo_int32_t, 30, 31), {},
            {{"sdly", [=] { return text(alg->GetDelay()); }},
             {"sofs", [=] { return text(alg->GetStatesOfs()); }},
             {"cofs", [=] { return text(alg->GetCoefsOfs()); }},
             {"dhip", [=] { return text(alg->GetDisableHostInterruptPtr()); }},
             {"ehip", [=] { return text(alg->GetEnableHostInterruptPtr()); }}});
    setters("size_t", Setter<std::size_t>(&ml::SetPluginInfo_size_t, 0, 1), {"lfpi"});
    setters("uint32_t", Setter<std::uint32_t>(&ml::SetPluginInfo_uint32_t, 3, 4), {"sctr"},
            {{"side", [=] { return text(alg->GetSideChainNum()); }}});
    setters("struct",
            [this](unsigned int s, int) {
                Record record{};
                return ml::SetPluginInfo_struct(Instance(), s, &record, Arg("Primary"));
            },
            {"tfms"});
    Act(
        rows, "Set struct adGp",
        [this](int v) {
            ml::WCPoint2D<short> position(static_cast<short>(10 + v), 20);
            return ml::SetPluginInfo_struct(Instance(), Sel("adGp"), &position, Arg("Primary"));
        },
        guiState);
    // The struct setters with a record of their own, made from the run's variant.
    auto setStruct = [&](char const *s, auto make, Observe observe) {
        Act(
            rows, std::string("Set struct ") + s,
            [=, this](int v) {
                auto record = make(v);
                return ml::SetPluginInfo_struct(Instance(), Sel(s), &record, 0);
            },
            observe);
    };
    setStruct(
        "exbf", [](int v) { return MemRequest{.extBuffs = decltype(MemRequest::extBuffs)(1 + v)}; },
        [=] { return text(alg->GetExtBuffInfo().size()); });
    setStruct(
        "musp", [](int v) { return ml::WCMusicInfo{.m_TimeSigNum = 3.0 + v}; },
        [=] { return text(alg->GetMusicInfo().m_TimeSigNum); });
    setStruct(
        "prss",
        [](int v) {
            return ml::SProcessorSpec{2, 40 + v};
        },
        [=] { return text(alg->GetCurrentProcessor().specific); });
    setStruct(
        "tcda", [](int v) { return std::int64_t{48000 + v}; },
        [=] { return text(alg->GetTimeCodeData()); });

    // ---- every named request: first those given the same parameters twice.
#define MIREL_REQUEST(name) #name, &API::name
    const struct {
        char const *name;
        int (*request)(API::Request &);
        char const *params;
    } sameTwice[] = {
        {MIREL_REQUEST(GetAutomationControlIndexByName), R"({"params":{"control_name":"Gain"}})"},
        {MIREL_REQUEST(GetAutomationRefCons), R"({"params":{"control_index":0}})"},
        {MIREL_REQUEST(GetAutomationControlResetState), R"({"params":{"control_index":0}})"},
        {MIREL_REQUEST(GetAutomationControlByNameHack), R"({"params":{"control_name":"Gain"}})"},
        {MIREL_REQUEST(GetGuiControlPtrByNameHack),
         R"({"params":{"control_name":"Gain","gui_name":"Primary"}})"},
        {MIREL_REQUEST(GetPressedToolbarButtonHack), "{}"},
        {MIREL_REQUEST(GetGuiLimitRectByIndex), R"({"params":{"limit_rect_index":0}})"},
        {MIREL_REQUEST(InsideWhichControl), R"({"params":{"x":1,"y":2}})"},
        {MIREL_REQUEST(IsToolbarControlUnderPoint), R"({"params":{"x":1,"y":2}})"},
        {MIREL_REQUEST(IsSupportContentScale), "{}"},
        {MIREL_REQUEST(FileDragOver), "{}"},
        {MIREL_REQUEST(FileDrop), "{}"},
        {MIREL_REQUEST(GetPluginValue_c_str), R"({"params":{"key":"GetNumParams"}})"},
        {MIREL_REQUEST(GetPluginValue_double), R"({"params":{"key":"samplerate"}})"},
        {MIREL_REQUEST(GetPluginValue_float), R"({"params":{"key":"samplerate"}})"},
        {MIREL_REQUEST(SetRedisKeyValue), R"({"params":{"key":"a","value":"b"}})"},
        {MIREL_REQUEST(GetMIDIControlID), R"({"params":{"control_index":0}})"},
        {MIREL_REQUEST(SetMIDIControlID), R"({"params":{"control_index":0,"midi_control_id":7}})"},
        {MIREL_REQUEST(GetMIDIEventControls), "{}"},
        // The requests whose payload is a preset object are walked with real objects among the
        // named requests' own tests.
        {MIREL_REQUEST(GetPresetCompatibleSubComps), "{}"},
        {MIREL_REQUEST(PreparePresetChunkHack), "{}"},
    };
    for (auto const &r : sameTwice)
        Request(rows, r.name, r.request, {r.params, r.params});
    auto key = [&](char const *name) {
        return [alg, name] { return alg->GetPluginValue_c_str(name, "absent"); };
    };
    Request(rows, MIREL_REQUEST(UpdateDPIScalingFactor),
            {R"({"params":{"ScalingFactor":2}})", R"({"params":{"ScalingFactor":3}})"}, guiState);
    Request(rows, MIREL_REQUEST(SetViewRect), {"{}", "{}"}, guiState);
    // Telling the host goes through an automation control the host has given its refcons.
    auto heardByHost = [this] { return ::testing::PrintToString(m_AutoCalls); };
    auto hostControl = [this] {
        m_Alg->SetAutoCallBack(&CountAutoCall, reinterpret_cast<std::int64_t>(&m_AutoCalls));
    };
    Request(rows, MIREL_REQUEST(NotifyAutomation),
            {R"({"params":{"param_index":0}})", R"({"params":{"param_index":0}})"}, heardByHost,
            hostControl);
    Request(rows, MIREL_REQUEST(NotifyAutomationAllParams), {"{}", "{}"}, heardByHost,
            hostControl);
    Request(rows, MIREL_REQUEST(SetNoiseRatio),
            {R"({"params":{"noise_ratio":0.5}})", R"({"params":{"noise_ratio":0.25}})"},
            [this] { return ::testing::PrintToString(m_Shell.Calls().size()); });
    Request(
        rows, MIREL_REQUEST(SetPluginValue_bool),
        {R"({"params":{"key":"walk","value":true}})", R"({"params":{"key":"walk","value":false}})"},
        key("walk"));
    Request(rows, MIREL_REQUEST(SetPluginValue_c_str),
            {R"({"params":{"key":"walk","value":"one"}})",
             R"({"params":{"key":"walk","value":"two"}})"},
            key("walk"));
    Request(
        rows, MIREL_REQUEST(SetPluginValue_double),
        {R"({"params":{"key":"walk","value":1.5}})", R"({"params":{"key":"walk","value":2.5}})"},
        key("walk"));
    Request(rows, MIREL_REQUEST(SetCanControlDAWMixer), {"{}", "{}"}, key("CanControlDAWMixer"),
            [alg] { alg->SetPluginValue_bool("CanControlDAWMixer", false); });
    Request(rows, MIREL_REQUEST(TransportChange),
            {R"({"params":{"playing":true,"loop_end_samples":10}})",
             R"({"params":{"playing":false,"loop_end_samples":20}})"},
            [=] {
                return text(alg->GetTransportState().playing) +
                       text(alg->GetTransportState().loopEndSamples);
            });
    Request(rows, MIREL_REQUEST(UpdateHostTrackState),
            {R"({"params":{"monitoring":true}})", R"({"params":{"monitoring":false}})"},
            [=] { return text(alg->GetHostTrackMonitoring()); });
#undef MIREL_REQUEST
    // ---- defaults of cALGORITHM that a plug-in may leave alone.
    Act(
        rows, "cALGORITHM::ReadFromXML(CXMLElement)",
        [=](int) {
            ml::XML::CXMLElement element("cALGORITHM");
            return alg->ReadFromXML(&element);
        },
        [=] {
            ml::WCFixedString<63> name;
            alg->GetAlgName(name);
            return std::string(name.c_str());
        });
    Act(
        rows, "cALGORITHM::CreateGuiAndAddToMap",
        [=](int) { return alg->CreateGuiAndAddToMap(nullptr, "Other", "Other"); },
        [=] { return text(alg->GetGUIMap().size()); });
    return rows;
}

TEST_F(NoPlaceholderSuccess, NoSelectorRequestOrDefaultAnswersZeroWithoutAnEffect) {
    // Once without a GUI, once with an empty one in the map.
    ml::WTResContainerType *noContainer = nullptr;
    ml::CStandardGUI_X gui(noContainer, "Walked");
    gui.AddNewControl(new ml::WCGUIControl(&gui), false);
    gui.FinishCreate();
    for (bool withGUI : {false, true}) {
        m_Alg->SetGUIPointer("Primary", withGUI ? &gui : nullptr);
        int answered = 0;
        for (auto const &row : Rows()) {
            const WSOutcome first = row.run(0);
            const WSOutcome second = row.run(1);
            const bool success = first.code == 0 || second.code == 0;
            if (success)
                ++answered;
            EXPECT_TRUE(!success || first.changed || second.changed)
                << row.name << (withGUI ? " with a GUI" : " without a GUI")
                << " answered 0 and left its output as it was";
            // An unknown selector is refused as not implemented and leaves its output alone.
            if (row.name.ends_with(" zzzz")) {
                EXPECT_TRUE(first.code == ml::eNotImplemented && !first.changed && !second.changed)
                    << row.name << " answered " << first.code;
            }
        }
        EXPECT_GT(answered, 60) << "the walk reaches the answers, not only the refusals";
    }
}

} // namespace
