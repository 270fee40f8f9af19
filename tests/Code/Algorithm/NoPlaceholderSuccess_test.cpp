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
    }
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

    // ---- SetPluginInfo_*: each is given two values and its target watched.
    auto none = [] { return std::string(); };
    auto text = [](auto const &value) { return ::testing::PrintToString(value); };
    auto setBool = [&](char const *s, std::function<std::string()> observe) {
        Act(
            rows, std::string("Set bool ") + s,
            [=, this](int v) { return ml::SetPluginInfo_bool(Instance(), Sel(s), v == 0, 0); },
            observe);
    };
    for (char const *s : {"prvt", "sofp", "gued", "gemc", "gerc", "ghom", "dsac", "stxt", "zzzz"})
        setBool(s, none);
    setBool("hufp", [=] { return text(alg->GetPluginValue_bool("HostUsesFirstPreset", false)); });
    setBool("nlpc", [=] { return text(alg->GetNotifyOnLinkedParams()); });
    setBool("utfm", [=] { return text(alg->m_ShellFlag_utfm); });
    setBool("stsm", [=] { return text(alg->IsShowMode()); });
    setBool("rsip", [=] { return text(alg->m_ShellFlag_rsip); });
    setBool("spcl", [=] { return text(alg->m_ShellFlag_spcl); });

    auto setText = [&](char const *s, std::int64_t arg, std::function<std::string()> observe) {
        Act(
            rows, std::string("Set c_str ") + s,
            [=, this](int v) {
                return ml::SetPluginInfo_c_str(Instance(), Sel(s), v == 0 ? "Dark" : "Light", arg);
            },
            observe);
    };
    for (char const *s : {"prvt", "lfps", "rfcp", "zzzz"})
        setText(s, 0, none);
    setText("dskn", 0, [=] { return std::string(alg->GetDefaultSkin().c_str()); });
    setText("sacs", 0, none);

    auto setDouble = [&](char const *s, std::function<std::string()> observe) {
        Act(
            rows, std::string("Set double ") + s,
            [=, this](int v) { return ml::SetPluginInfo_double(Instance(), Sel(s), 90.0 + v, 0); },
            observe);
    };
    setDouble("prvt", none);
    setDouble("zzzz", none);
    setDouble("raba", [=] { return text(alg->GetTrimModeRatio()); });
    setDouble("temp", [=] { return text(alg->GetMusicInfo().m_Tempo); });

    auto setInt = [&](char const *s, std::function<std::string()> observe) {
        Act(
            rows, std::string("Set int32_t ") + s,
            [=, this](int v) { return ml::SetPluginInfo_int32_t(Instance(), Sel(s), 30 + v, 0); },
            observe);
    };
    setInt("prvt", none);
    setInt("zzzz", none);
    setInt("sdly", [=] { return text(alg->GetDelay()); });
    setInt("sofs", [=] { return text(alg->GetStatesOfs()); });
    setInt("cofs", [=] { return text(alg->GetCoefsOfs()); });
    setInt("dhip", [=] { return text(alg->GetDisableHostInterruptPtr()); });
    setInt("ehip", [=] { return text(alg->GetEnableHostInterruptPtr()); });

    for (char const *s : {"prvt", "lfpi", "zzzz"})
        Act(
            rows, std::string("Set size_t ") + s,
            [=, this](int v) { return ml::SetPluginInfo_size_t(Instance(), Sel(s), v, 0); }, none);

    for (char const *s : {"prvt", "sctr", "zzzz"})
        Act(
            rows, std::string("Set uint32_t ") + s,
            [=, this](int v) { return ml::SetPluginInfo_uint32_t(Instance(), Sel(s), v, 0); },
            none);
    Act(
        rows, "Set uint32_t side",
        [this](int v) { return ml::SetPluginInfo_uint32_t(Instance(), Sel("side"), 3 + v, 0); },
        [=] { return text(alg->GetSideChainNum()); });

    auto setStruct = [&](char const *s, std::function<int(int)> act,
                         std::function<std::string()> observe) {
        Act(rows, std::string("Set struct ") + s, std::move(act), observe);
    };
    for (char const *s : {"prvt", "tfms", "adGp", "zzzz"})
        setStruct(
            s,
            [=, this](int) {
                Record record{};
                return ml::SetPluginInfo_struct(Instance(), Sel(s), &record, Arg("Primary"));
            },
            none);
    setStruct(
        "exbf",
        [this](int v) {
            MemRequest request;
            request.extBuffs.resize(1 + v);
            return ml::SetPluginInfo_struct(Instance(), Sel("exbf"), &request, 0);
        },
        [=] { return text(alg->GetExtBuffInfo().size()); });
    setStruct(
        "musp",
        [this](int v) {
            ml::WCMusicInfo info;
            info.m_TimeSigNum = 3 + v;
            return ml::SetPluginInfo_struct(Instance(), Sel("musp"), &info, 0);
        },
        [=] { return text(alg->GetMusicInfo().m_TimeSigNum); });
    setStruct(
        "prss",
        [this](int v) {
            ml::SProcessorSpec spec{2, 40 + v};
            return ml::SetPluginInfo_struct(Instance(), Sel("prss"), &spec, 0);
        },
        [=] { return text(alg->GetCurrentProcessor().specific); });
    setStruct(
        "tcda",
        [this](int v) {
            std::int64_t timeCode = 48000 + v;
            return ml::SetPluginInfo_struct(Instance(), Sel("tcda"), &timeCode, 0);
        },
        [=] { return text(alg->GetTimeCodeData()); });

    // ---- every named request.
    auto key = [&](char const *name) {
        return [alg, name] { return alg->GetPluginValue_c_str(name, "absent"); };
    };
    auto same = [](char const *params) { return std::array<char const *, 2>{params, params}; };
    Request(rows, "GetAutomationControlIndexByName", &API::GetAutomationControlIndexByName,
            same(R"({"params":{"control_name":"Gain"}})"));
    Request(rows, "GetAutomationRefCons", &API::GetAutomationRefCons,
            same(R"({"params":{"control_index":0}})"));
    Request(rows, "GetAutomationControlResetState", &API::GetAutomationControlResetState,
            same(R"({"params":{"control_index":0}})"));
    Request(rows, "GetAutomationControlByNameHack", &API::GetAutomationControlByNameHack,
            same(R"({"params":{"control_name":"Gain"}})"));
    Request(rows, "GetGuiControlPtrByNameHack", &API::GetGuiControlPtrByNameHack,
            same(R"({"params":{"control_name":"Gain","gui_name":"Primary"}})"));
    Request(rows, "GetPressedToolbarButtonHack", &API::GetPressedToolbarButtonHack, same("{}"));
    Request(rows, "GetGuiLimitRectByIndex", &API::GetGuiLimitRectByIndex,
            same(R"({"params":{"limit_rect_index":0}})"));
    Request(rows, "InsideWhichControl", &API::InsideWhichControl,
            same(R"({"params":{"x":1,"y":2}})"));
    Request(rows, "IsToolbarControlUnderPoint", &API::IsToolbarControlUnderPoint,
            same(R"({"params":{"x":1,"y":2}})"));
    Request(rows, "IsSupportContentScale", &API::IsSupportContentScale, same("{}"));
    Request(rows, "UpdateDPIScalingFactor", &API::UpdateDPIScalingFactor,
            same(R"({"params":{"ScalingFactor":2}})"));
    Request(rows, "SetViewRect", &API::SetViewRect, same("{}"));
    Request(rows, "FileDragOver", &API::FileDragOver, same("{}"));
    Request(rows, "FileDrop", &API::FileDrop, same("{}"));
    Request(rows, "NotifyAutomation", &API::NotifyAutomation,
            same(R"({"params":{"param_index":0}})"));
    Request(rows, "NotifyAutomationAllParams", &API::NotifyAutomationAllParams, same("{}"));
    Request(rows, "SetNoiseRatio", &API::SetNoiseRatio,
            {R"({"params":{"noise_ratio":0.5}})", R"({"params":{"noise_ratio":0.25}})"},
            [this] { return ::testing::PrintToString(m_Shell.Calls().size()); });
    Request(rows, "GetPluginValue_c_str", &API::GetPluginValue_c_str,
            same(R"({"params":{"key":"GetNumParams"}})"));
    Request(rows, "GetPluginValue_double", &API::GetPluginValue_double,
            same(R"({"params":{"key":"samplerate"}})"));
    Request(rows, "GetPluginValue_float", &API::GetPluginValue_float,
            same(R"({"params":{"key":"samplerate"}})"));
    Request(
        rows, "SetPluginValue_bool", &API::SetPluginValue_bool,
        {R"({"params":{"key":"walk","value":true}})", R"({"params":{"key":"walk","value":false}})"},
        key("walk"));
    Request(rows, "SetPluginValue_c_str", &API::SetPluginValue_c_str,
            {R"({"params":{"key":"walk","value":"one"}})",
             R"({"params":{"key":"walk","value":"two"}})"},
            key("walk"));
    Request(
        rows, "SetPluginValue_double", &API::SetPluginValue_double,
        {R"({"params":{"key":"walk","value":1.5}})", R"({"params":{"key":"walk","value":2.5}})"},
        key("walk"));
    Request(rows, "SetRedisKeyValue", &API::SetRedisKeyValue,
            same(R"({"params":{"key":"a","value":"b"}})"));
    Request(rows, "GetMIDIControlID", &API::GetMIDIControlID,
            same(R"({"params":{"control_index":0}})"));
    Request(rows, "SetMIDIControlID", &API::SetMIDIControlID,
            same(R"({"params":{"control_index":0,"midi_control_id":7}})"));
    Request(rows, "GetMIDIEventControls", &API::GetMIDIEventControls, same("{}"));
    Request(rows, "SetCanControlDAWMixer", &API::SetCanControlDAWMixer, same("{}"),
            key("CanControlDAWMixer"),
            [alg] { alg->SetPluginValue_bool("CanControlDAWMixer", false); });
    Request(rows, "TransportChange", &API::TransportChange,
            {R"({"params":{"playing":true,"loop_end_samples":10}})",
             R"({"params":{"playing":false,"loop_end_samples":20}})"},
            [=] {
                return text(alg->GetTransportState().playing) +
                       text(alg->GetTransportState().loopEndSamples);
            });
    Request(rows, "UpdateHostTrackState", &API::UpdateHostTrackState,
            {R"({"params":{"monitoring":true}})", R"({"params":{"monitoring":false}})"},
            [=] { return text(alg->GetHostTrackMonitoring()); });
    // The requests whose payload is a preset object are walked with real objects among the
    // named requests' own tests.
    Request(rows, "GetPresetCompatibleSubComps", &API::GetPresetCompatibleSubComps, same("{}"));
    Request(rows, "PreparePresetChunkHack", &API::PreparePresetChunkHack, same("{}"));

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
    // Once without a GUI, once with one in the map (which nothing ever dereferences while the
    // GUI layer is not built).
    for (bool withGUI : {false, true}) {
        m_Alg->SetGUIPointer("Primary",
                             withGUI ? reinterpret_cast<ml::CStandardGUI_X *>(0x1000) : nullptr);
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
