#include "Code/Algorithm/MirelAPI3Internal.h"

#include <gtest/gtest.h>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "tests/Code/Algorithm/WCTestAlgorithm.h"

namespace {

using namespace mirel_test;
using json = nlohmann::json;
namespace API = ml::MirelAPI3Internal;

class NamedRequests : public WCStartedAlgorithm {
protected:
    void SetUp() override {
        WCStartedAlgorithm::SetUp();
        m_Raw.m_pInstance = &Instance();
        m_Request.m_pRawRequest = &m_Raw;
    }
    API::Request &With(char const *text) {
        m_Request.m_Request = json::parse(text);
        m_Request.m_Response = json::object();
        m_Request.m_ErrorText.clear();
        m_Raw.m_Error = 12345;
        return m_Request;
    }
    json const &Result() { return m_Request.m_Response["result"]; }

    ml::WSMirelAPI3_RawRequest m_Raw;
    API::Request m_Request;
};

// What the type error of the JSON library says, or "" when nothing was thrown.
std::string TypeErrorOf(int (*request)(API::Request &), API::Request &with) {
    try {
        request(with);
    } catch (json::type_error const &error) {
        EXPECT_EQ(error.id, 302);
        return error.what();
    }
    return "";
}

TEST_F(NamedRequests, ParameterOfAnotherTypeThrowsTheTypeError) {
    struct WSCase {
        int (*request)(API::Request &);
        char const *params;
        char const *text;
    };
    const WSCase cases[] = {
        {&API::GetAutomationRefCons, R"({"params":{"control_index":"3"}})",
         "number, but is string"},
        {&API::UpdateHostTrackState, R"({"params":{"monitoring":1}})", "boolean, but is number"},
        {&API::TransportChange, R"({"params":{"playing":"yes"}})", "boolean, but is string"},
    };
    for (auto const &c : cases)
        EXPECT_EQ(TypeErrorOf(c.request, With(c.params)),
                  std::string("[json.exception.type_error.302] type must be ") + c.text)
            << c.params;
}

TEST_F(NamedRequests, NumberParameterAcceptsBooleanSignedUnsignedAndFloat) {
    for (char const *params :
         {R"({"params":{"key":"k","value":true}})", R"({"params":{"key":"k","value":-2}})",
          R"({"params":{"key":"k","value":18446744073709551615}})",
          R"({"params":{"key":"k","value":0.5}})"}) {
        EXPECT_EQ(API::SetPluginValue_double(With(params)), 0) << params;
        EXPECT_EQ(m_Raw.m_Error, 0);
    }
    EXPECT_EQ(m_Alg->GetPluginValue_double("k", 0), 0.5);
    API::SetPluginValue_double(With(R"({"params":{"key":"k","value":true}})"));
    EXPECT_EQ(m_Alg->GetPluginValue_double("k", 0), 1.0);
}

TEST_F(NamedRequests, MissingParamsUseTheEmptyDefaults) {
    EXPECT_EQ(API::GetAutomationControlIndexByName(With("{}")), 0);
    EXPECT_EQ(Result()["control_index"], m_Alg->GetAutomationControlIndexByName(""));
    EXPECT_EQ(m_Raw.m_Error, 0);

    // A number defaults to 0, which names no automation control here.
    EXPECT_EQ(API::GetAutomationRefCons(With(R"({"params":{}})")), ml::eControlOutOfRange);
    EXPECT_EQ(m_Raw.m_Error, ml::eControlOutOfRange);

    // Flags default to false, positions to 0.
    m_Alg->TransportChange({true, true, true, 5, 6});
    EXPECT_EQ(API::TransportChange(With(R"({"params":"not an object"})")), 0);
    EXPECT_FALSE(m_Alg->GetTransportState().playing);
    EXPECT_EQ(m_Alg->GetTransportState().loopEndSamples, 0);
}

TEST_F(NamedRequests, TransportStateArrivesFieldByField) {
    EXPECT_EQ(API::TransportChange(With(R"({"params":{"playing":true,"recording":false,
        "cycle_active":true,"loop_start_samples":48000,"loop_end_samples":96000.0}})")),
              0);
    auto const &state = m_Alg->GetTransportState();
    EXPECT_TRUE(state.playing);
    EXPECT_FALSE(state.recording);
    EXPECT_TRUE(state.cycleActive);
    EXPECT_EQ(state.loopStartSamples, 48000);
    EXPECT_EQ(state.loopEndSamples, 96000);
    // A position no 64-bit count holds is no position.
    EXPECT_EQ(API::TransportChange(With(R"({"params":{"loop_end_samples":1e300}})")), 0);
    EXPECT_EQ(m_Alg->GetTransportState().loopEndSamples, 0);
}

TEST_F(NamedRequests, GuiNameFallsBackToPrimary) {
    auto *primary = reinterpret_cast<ml::CStandardGUI_X *>(0x1000);
    auto *second = reinterpret_cast<ml::CStandardGUI_X *>(0x2000);
    EXPECT_EQ(API::FindRequestGUI(*m_Alg, With("{}")), nullptr);
    m_Alg->SetGUIPointer("Primary", primary);
    m_Alg->SetGUIPointer("Second", second);
    EXPECT_EQ(API::FindRequestGUI(*m_Alg, With("{}")), primary);
    EXPECT_EQ(API::FindRequestGUI(*m_Alg, With(R"({"params":{"gui_name":"Second"}})")), second);
    EXPECT_EQ(API::FindRequestGUI(*m_Alg, With(R"({"params":{"gui_name":"Nope"}})")), primary);
    m_Alg->SetGUIPointer("Primary", nullptr);
    EXPECT_EQ(API::FindRequestGUI(*m_Alg, With(R"({"params":{"gui_name":"Nope"}})")), nullptr);
    m_Alg->SetGUIPointer("Second", nullptr);
}

TEST_F(NamedRequests, RequestsWithoutTheirGuiOrRedisAnswerTheirCodeAndText) {
    EXPECT_EQ(API::InsideWhichControl(With(R"({"params":{"x":1,"y":2.5}})")), ml::kErrNoGUI);
    EXPECT_EQ(m_Raw.m_Error, ml::kErrNoGUI);
    EXPECT_STREQ(m_Request.m_ErrorText.c_str(), "InsideWhichControl returned error");
    EXPECT_EQ(API::GetPressedToolbarButtonHack(With("{}")), ml::kErrNoGUI);
    EXPECT_STREQ(m_Request.m_ErrorText.c_str(), "GetControlPtrByNameHack returned error");
    EXPECT_EQ(API::GetGuiLimitRectByIndex(With("{}")), ml::kErrNoGUI);
    EXPECT_TRUE(m_Request.m_ErrorText.empty()) << "this request has no error text";
    // The view rectangle is checked for its eight bytes before the GUI is looked for.
    short rect[4] = {0, 0, 100, 200};
    m_Raw.SetPayloadPtr(rect);
    m_Raw.m_PayloadSize = 6;
    EXPECT_EQ(API::SetViewRect(With("{}")), ml::eMemBuffTooShort);
    m_Raw.m_PayloadSize = sizeof rect;
    EXPECT_EQ(API::SetViewRect(With("{}")), ml::kErrNoGUI);
    EXPECT_EQ(API::SetRedisKeyValue(With(R"({"params":{"key":"a","value":"b"}})")),
              ml::kErrRedisNotConnected);
    EXPECT_STREQ(m_Request.m_ErrorText.c_str(), "SetRedisKeyValue returned error");
}

TEST_F(NamedRequests, ValueRequestsReportUnknownKeys) {
    EXPECT_EQ(API::GetPluginValue_c_str(With(R"({"params":{"key":"absent"}})")), ml::eKeyNotFound);
    EXPECT_STREQ(m_Request.m_ErrorText.c_str(), "GetPluginValue_c_str returned error");
    EXPECT_EQ(API::GetPluginValue_double(With(R"({"params":{"key":"absent"}})")), ml::eKeyNotFound);
    EXPECT_STREQ(m_Request.m_ErrorText.c_str(), "value not found");

    EXPECT_EQ(API::SetPluginValue_c_str(With(R"({"params":{"key":"word","value":"hello"}})")), 0);
    EXPECT_EQ(API::GetPluginValue_c_str(With(R"({"params":{"key":"word"}})")), 0);
    EXPECT_EQ(Result()["value"], "hello");
    EXPECT_EQ(API::SetPluginValue_bool(With(R"({"params":{"key":"flag","value":true}})")), 0);
    EXPECT_TRUE(m_Alg->GetPluginValue_bool("flag", false));
}

TEST_F(NamedRequests, NumberValueGoesToThePayloadWhenItFits) {
    m_Alg->SetPluginValue_double("gain", 0.75);
    double slot = 0;
    m_Raw.SetPayloadPtr(&slot);
    m_Raw.m_PayloadSize = sizeof slot;
    EXPECT_EQ(API::GetPluginValue_double(With(R"({"params":{"key":"gain"}})")), 0);
    EXPECT_EQ(slot, 0.75);
    EXPECT_FALSE(m_Request.m_Response.contains("result"));

    float narrow = 0;
    m_Raw.SetPayloadPtr(&narrow);
    m_Raw.m_PayloadSize = 2; // too small for a float: the answer goes into the response
    EXPECT_EQ(API::GetPluginValue_float(With(R"({"params":{"key":"gain"}})")), 0);
    EXPECT_EQ(narrow, 0.0f);
    EXPECT_FLOAT_EQ(Result()["value"].get<float>(), 0.75f);
}

TEST_F(NamedRequests, PresetRequestsReachThePresetsManagerOrAnswerItsAbsence) {
    EXPECT_EQ(API::PreparePresetChunkHack(With("{}")), 0);
    const std::string chunk(static_cast<char const *>(m_Raw.m_BinaryOutput.GetPtr()),
                            m_Raw.m_BinaryOutput.GetSize());
    EXPECT_EQ(chunk.rfind("<PresetChunkXMLTree", 0), 0u) << chunk;

    ml::Preset::CPresetInfo info;
    info.m_PresetName = "Mine";
    m_Raw.SetPayloadPtr(&info);
    EXPECT_EQ(API::SetCurrentPresetInfoHack(With("{}")), 0);
    ml::Preset::CPresetInfo read;
    m_Raw.SetPayloadPtr(&read);
    EXPECT_EQ(API::GetCurrentPresetInfoHack(With("{}")), 0);
    EXPECT_STREQ(read.m_PresetName.c_str(), "Mine");

    // Data without MIDI attachments loads; one naming no control of the plug-in is refused.
    ml::Preset::sPresetData data;
    m_Raw.SetPayloadPtr(&data);
    EXPECT_EQ(API::LoadControlsFromPresetHack(With(R"({"params":{"setup_num":0}})")), 0);
    data.m_ControlData.emplace_back();
    EXPECT_EQ(API::LoadControlsFromPresetHack(With(R"({"params":{"setup_num":0}})")),
              ml::eControlOutOfRange);
    m_Raw.SetPayloadPtr(nullptr);
    EXPECT_EQ(API::GetCurrentPresetInfoHack(With("{}")), ml::eMemNullPointer);

    EXPECT_EQ(API::GetPresetCompatibleSubComps(With("{}")), 0);
    EXPECT_EQ(Result()["sub_comps"], json::array({"TsAl"}));
    m_Alg->Dispose();
    EXPECT_EQ(API::PreparePresetChunkHack(With("{}")), ml::ePresetInfoNotFound);
    EXPECT_STREQ(m_Request.m_ErrorText.c_str(), "PreparePresetChunkHack returned error");
}

TEST(NamedRequestBadInput, MissingRecordInstanceOrAlgorithm) {
    WCRecordingAsserts asserts;
    API::Request request;
    EXPECT_EQ(API::GetAutomationControlIndexByName(request), ml::eMemNullPointer);
    EXPECT_EQ(WCRecordingAsserts::Count(), 1);

    ml::WSMirelAPI3_RawRequest raw;
    request.m_pRawRequest = &raw;
    EXPECT_EQ(API::NotifyAutomationAllParams(request), ml::eMemNullPointer);
    EXPECT_EQ(raw.m_Error, ml::eMemNullPointer);
    ml::PluginInstance instance;
    raw.m_pInstance = &instance;
    EXPECT_EQ(API::SetCanControlDAWMixer(request), ml::eMemNullPointer);
}

} // namespace
