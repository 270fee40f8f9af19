#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Process/WCMeterManager.h"
#include "Code/Process/WUMeterDSP.h"
#include "core/WCStMemObj.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using ml::BUFFER_HEADER;

// ---- smoothing and peaks ------------------------------------------------------------------

TEST(WCParamExtensionMeter, SmoothFollowsItsRulesAtTheEdges) {
    struct Row {
        char const *what;
        double start; // smoothed value reached first (with no coefficient, so exactly)
        double value; // the next value
        double attack, release;
        double elapsed; // ms between the two calls
        double expected;
    } const rows[] = {
        {"no time passed takes 0.5 ms", 1.0, 0.0, 0.5, 0.8, 0.0, std::pow(0.8, 0.5)},
        {"rising uses attack", 0.0, 1.0, 0.5, 0.9, 2.0, 0.75},
        {"falling uses release", 1.0, 0.0, 0.9, 0.5, 2.0, 0.25},
        {"a step of exactly 0.0001 snaps", 0.0, 0.0001, 0.9, 0.9, 10.0, 0.0001},
        {"a step just above 0.0001 smooths", 0.0, 0.00011, 0.9, 0.9, 10.0,
         0.00011 - 0.00011 * std::pow(0.9, 10.0)},
        {"a coefficient of 0 follows at once", 1.0, 0.25, 0.0, 0.0, 3.0, 0.25},
    };
    for (auto const &row : rows) {
        ml::WCParamExtensionMeter meter;
        double first = row.start;
        meter.Smooth(first, 0.0, 0.0, 1000.0);
        double value = row.value;
        meter.Smooth(value, row.attack, row.release, 1000.0 + row.elapsed);
        EXPECT_NEAR(value, row.expected, 1e-15) << row.what;
        EXPECT_EQ(meter.GetValue(), value) << row.what;
    }
}

TEST(WCParamExtensionMeter, ReleaseVUSettlesWithin0_0001AndNeverReachesTheTarget) {
    double time = 100.0;
    EXPECT_EQ(ml::cALGORITHM::ReleaseVU(0.5, 0.50005, &time, 0.5, 0.5, 200.0), 0.5);
    EXPECT_EQ(time, 100.0);
    // Falling: attack to the power of 2 ms.
    EXPECT_DOUBLE_EQ(ml::cALGORITHM::ReleaseVU(0.0, 1.0, &time, 0.5, 0.9, 102.0), 0.25);
    EXPECT_EQ(time, 102.0);
    // No coefficient: k stops at the smallest normal double instead of 0.
    EXPECT_EQ(ml::cALGORITHM::ReleaseVU(0.0, 1.0, &time, 0.0, 0.0, 110.0), 2.2250738585072014e-308);
}

TEST(WCParamExtensionMeter, PeakKeepsItsTimeUnlessANewPeakComes) {
    ml::WCParamExtensionMeter level;
    ml::WCParamExtensionAttenuationMeter attenuation;
    ml::WCParamExtensionBoostAttenMeter boostAtten;
    struct Row {
        ml::WCParamExtensionMeter *meter;
        double value, now;
        double peak, peakTime;
    } const rows[] = {
        {&level, 0.5, 100.0, 0.5, 100.0},       {&level, 0.3, 200.0, 0.5, 100.0},
        {&level, 0.5, 300.0, 0.5, 100.0},       {&level, 0.8, 400.0, 0.8, 400.0},
        {&attenuation, 0.5, 100.0, 0.5, 100.0}, {&attenuation, 0.7, 200.0, 0.5, 100.0},
        {&attenuation, 0.2, 300.0, 0.2, 300.0}, {&boostAtten, 0.5, 100.0, 0.5, 100.0},
        {&boostAtten, 1.8, 200.0, 0.5, 100.0},  {&boostAtten, 4.0, 300.0, 4.0, 300.0},
    };
    EXPECT_EQ(attenuation.GetPeak(), 1.0);
    for (auto const &row : rows) {
        row.meter->SetPeakValue(row.value, row.now);
        EXPECT_EQ(row.meter->GetPeak(), row.peak) << row.value << " at " << row.now;
        EXPECT_EQ(row.meter->GetLastPeakTime(), row.peakTime) << row.value << " at " << row.now;
    }
}

TEST(WCParamExtensionMeter, DspUtilities) {
    EXPECT_DOUBLE_EQ(ml::DSP::GainTodb(0.5), -6.0205999132796239);
    EXPECT_EQ(ml::DSP::GainTodb(0.0), ml::DSP::kMinusInfinityDb);
    EXPECT_DOUBLE_EQ(ml::DSP::msToDspCoef(1000.0, 60.0), std::exp(-1.0 / 60.0));
    EXPECT_EQ(ml::DSP::msToDspCoef(0.0, 60.0), 0.0);
    ml::WCParamExtensionMeter meter;
    meter.SetAttackTimeMiliSec(1000.0);
    EXPECT_EQ(meter.GetAttackCoef(), ml::DSP::msToDspCoef(1000.0, 60.0));
}

// ---- the manager ---------------------------------------------------------------------------

struct WCCountingListener : ml::WCMeterManager::Listener {
    int reads = 0;
    int displays = 0;
    void UpdateMeterDisplay(std::uint64_t, ml::WCParamExtensionMeter *) override { ++displays; }
    int ReadMeters(ml::WCMeterManager::sMeter *, unsigned int, bool) override {
        ++reads;
        return 0;
    }
};

TEST(WCMeterManager, WithoutMetersReadsAndShowsNothing) {
    WCCountingListener listener;
    ml::WCMeterManager manager;
    manager.FinishCreate(&listener);
    EXPECT_EQ(manager.ReadFromDSP(true), 0);
    EXPECT_EQ(manager.UpdateDisplay(), 0);
    EXPECT_EQ(listener.reads + listener.displays, 0);
    ml::MirelMeterInfo info;
    info.m_ParamID = 77;
    EXPECT_EQ(manager.GetMeterInfo(0, info), ml::eOutOfRangeNumber);
    EXPECT_EQ(info.m_ParamID, 77u);
}

TEST(WCMeterManager, ResetAllClipSkipsPlainMeters) {
    ml::WCParamExtensionMeter plain;
    ml::WCParamExtensionMeterWithClip clip;
    ml::WCMeterManager manager;
    ASSERT_EQ(manager.AddMeter(&plain, 4), 0);
    ASSERT_EQ(manager.AddMeter(&clip, 9), 0);
    EXPECT_EQ(manager.AddMeter(&clip, 9), ml::eSomeThingInitailzedTwice);
    plain.SetValueFromDSP(2.0);
    clip.SetValueFromDSP(2.0);
    manager.ResetAllClip();
    double level = 0.0;
    int clipped = 1;
    EXPECT_EQ(manager.GetClipValue(1, level, clipped), 0);
    EXPECT_EQ(clipped, 0);
    EXPECT_EQ(manager.GetClipValue(0, level, clipped), ml::eValueNotFound);
    EXPECT_EQ(plain.GetPeak(), 2.0);
    EXPECT_EQ(plain.GetValue(), 2.0);
}

TEST(WCMeterManager, AutoTrimBringsTheLoudestPeakToUnityWithinItsLimit) {
    ml::WCParamExtensionMeter a, b;
    ml::WCMeterManager manager;
    manager.AddMeter(&a, 0);
    manager.AddMeter(&b, 1);
    ASSERT_EQ(manager.AutoTrimRegister(0, 4.0), 0);
    ASSERT_EQ(manager.AutoTrimRegister(1, 4.0), 0);
    EXPECT_EQ(manager.AutoTrimRegister(1, 0.0), ml::eOutOfRangeNumber);
    manager.UpdateDisplay();
    EXPECT_EQ(manager.AutoTrimExecute(), 0.0); // nothing heard yet
    a.SetPeakValue(0.5, 1.0);
    b.SetPeakValue(0.25, 1.0);
    manager.UpdateDisplay();
    EXPECT_DOUBLE_EQ(manager.AutoTrimExecute(), -ml::DSP::GainTodb(0.5));
    a.SetPeakValue(100.0, 2.0); // held at the limit: 12 dB of cut at most
    manager.UpdateDisplay();
    EXPECT_DOUBLE_EQ(manager.AutoTrimExecute(), -ml::DSP::GainTodb(4.0));
    manager.ResetAllValue();
    EXPECT_EQ(manager.GetAutoTrimGain(), 0.0);
}

// ---- the meter XML -------------------------------------------------------------------------

std::unique_ptr<ml::WCParamExtensionMeterWithClip> ReadMeter(std::string const &inner, int &err) {
    pugi::xml_document doc;
    const std::string text =
        "<ExtensionClass>WCParamExtensionMeterWithClip" + inner + "</ExtensionClass>";
    EXPECT_TRUE(doc.load_string(text.c_str(), pugi::parse_default | pugi::parse_trim_pcdata |
                                                  pugi::parse_embed_pcdata));
    auto meter = std::make_unique<ml::WCParamExtensionMeterWithClip>();
    err = meter->ReadFromXML(doc.document_element());
    return meter;
}

// Everything the XML sets, as one comparable text.
std::string Describe(ml::WCParamExtensionMeterWithClip const &meter) {
    ml::MirelMeterInfo info;
    meter.FillMeterInfo(info);
    char text[512];
    std::snprintf(text, sizeof text, "%d %d %d %d %d %u %g %g %d %g [%s] %g %g %g %g",
                  info.m_Origin, info.m_Orientation, info.m_MeterType,
                  info.m_DisplayInControlSurface, info.m_OrderInControlSurface, info.m_StatesOffset,
                  info.m_Multiplier, info.m_RangeMin, info.m_HasClip, info.m_ClipLevel,
                  info.m_Description, meter.GetReadResetValue(false), meter.GetReadResetValue(true),
                  meter.GetAttackCoef(), meter.GetReleaseCoef());
    return text;
}

TEST(WCParamExtensionMeter, ReadsEveryMeterElement) {
    int err = -1;
    auto meter =
        ReadMeter("<Origin>Center</Origin><Description>Out L</Description>"
                  "<Orientation>Horizontal</Orientation><MeterType>CompLim_Gain</MeterType>"
                  "<DisplayInControlSurface>true</DisplayInControlSurface>"
                  "<OrderInControlSurface>3</OrderInControlSurface>"
                  "<ReadResetVal Type=\"-1\" Native=\"0.5\"/><StateOffset>12</StateOffset>"
                  "<Multiplier>2.5</Multiplier><Range>-60</Range>"
                  "<Smoothing><AttackTimeCoeff>0.25</AttackTimeCoeff>"
                  "<ReleaseTimeMilisec>500</ReleaseTimeMilisec></Smoothing>"
                  "<Clip>false</Clip><ClipLevel>0.75</ClipLevel>",
                  err);
    EXPECT_EQ(err, 0);
    char expected[512];
    std::snprintf(expected, sizeof expected, "2 1 2 1 3 12 2.5 -60 0 0.75 [Out L] -1 0.5 0.25 %g",
                  ml::DSP::msToDspCoef(500.0, 60.0));
    EXPECT_EQ(Describe(*meter), expected);
}

TEST(WCParamExtensionMeter, BadValuesKeepTheDefaultsWithACode) {
    const std::string defaults = Describe(ml::WCParamExtensionMeterWithClip());
    struct Row {
        char const *xml;
        int code;
    } const rows[] = {
        {"<Origin>Middle</Origin>", ml::eValueNotFound},
        {"<Orientation>Diagonal</Orientation>", ml::eValueNotFound},
        {"<MeterType>Loud</MeterType>", ml::eValueNotFound},
        {"<DisplayInControlSurface>maybe</DisplayInControlSurface>", ml::eValueNotFound},
        {"<OrderInControlSurface>-2</OrderInControlSurface>", ml::eOutOfRangeNumber},
        {"<StateOffset>-3</StateOffset>", ml::eOutOfRangeNumber},
        {"<StateOffset>2.5</StateOffset>", ml::eOutOfRangeNumber},
        {"<StateOffset>3 words</StateOffset>", ml::eNotANumber},
        {"<Multiplier>1e999</Multiplier>", ml::eNotANumber},
        {"<Range>low</Range>", ml::eNotANumber},
        {"<ReadResetVal/>", ml::eXMLAttribMissing},
        {"<ReadResetVal Type=\"x\"/>", ml::eNotANumber},
        {"<Smoothing><AttackTimeCoeff>1.5</AttackTimeCoeff></Smoothing>", ml::eOutOfRangeNumber},
        {"<Smoothing><ReleaseTimeMilisec>-4</ReleaseTimeMilisec></Smoothing>",
         ml::eOutOfRangeNumber},
        {"<ClipLevel>high</ClipLevel>", ml::eNotANumber},
    };
    for (auto const &row : rows) {
        int err = 0;
        auto meter = ReadMeter(row.xml, err);
        EXPECT_EQ(err, row.code) << row.xml;
        EXPECT_EQ(Describe(*meter), defaults) << row.xml;
    }
    // The first bad element's code wins and the good ones still read.
    int err = 0;
    auto meter =
        ReadMeter("<Origin>Up</Origin><StateOffset>-1</StateOffset><Range>-40</Range>", err);
    EXPECT_EQ(err, ml::eValueNotFound);
    EXPECT_EQ(meter->GetRangeMin(), -40.0);
}

// ---- reading from a running plug-in --------------------------------------------------------

// Two meters on neighbouring states (offsets 3 and 2, listed out of order) and one apart (6).
constexpr char kMeterParamXML[] = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><Minimum>0</Minimum><Maximum>1</Maximum>
    <ScaleType Type="linear"/></Scale></Parameter>
  <Parameter Name="OutR"><Scale><Minimum>0</Minimum><Maximum>2</Maximum><Resolution>0.0001</Resolution>
    <ScaleType Type="linear"/></Scale>
    <ExtensionClass>WCParamExtensionMeterWithClip<StateOffset>3</StateOffset>
      <ReadResetVal Type="0.25"/><ClipLevel>0.9</ClipLevel></ExtensionClass></Parameter>
  <Parameter Name="OutL"><Scale><Minimum>0</Minimum><Maximum>2</Maximum><Resolution>0.0001</Resolution>
    <ScaleType Type="linear"/></Scale>
    <ExtensionClass>WCParamExtensionMeter<StateOffset>2</StateOffset><Multiplier>2</Multiplier>
      <ReadResetVal Type="0.5" Native="0.125"/></ExtensionClass></Parameter>
  <Parameter Name="GR"><Scale><Minimum>-40</Minimum><Maximum>0</Maximum><Resolution>0.0001</Resolution>
    <ScaleType Type="linear"/></Scale>
    <ExtensionClass>WCParamExtensionAttenuationMeter<StateOffset>6</StateOffset>
      <Range>-40</Range></ExtensionClass></Parameter>
</ParamXML>)";

class WCMeterAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 2;
        DSPReqRes().statesWords = 8;
        DSPReqRes().cycles = 1;
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kMeterParamXML, std::strlen(kMeterParamXML));
    }
};

// A buffer of a send as the process side received it, with its words as floats.
struct WSSeenBuffer {
    int kind, memOp, offset, count;
    std::vector<float> words;
};
struct WSSeenSend {
    int op;
    std::vector<WSSeenBuffer> buffers;
};
std::vector<WSSeenSend> g_Sends;

// Stands between the plug-in and the recording shell and notes every send.
int SpyCallBack(int op, std::int64_t refcon, void *a, void *b, void *c) {
    if (op == ml::eExecSendBuffers || op == ml::eExecSendBuffersInit) {
        WSSeenSend send{op, {}};
        for (auto *buffer = static_cast<BUFFER_HEADER *>(a); buffer != nullptr;
             buffer = buffer->next) {
            std::vector<float> words(static_cast<std::size_t>(buffer->count));
            std::memcpy(words.data(), buffer->data, words.size() * 4);
            send.buffers.push_back(
                {buffer->kind, buffer->memOp, buffer->offset, buffer->count, words});
        }
        g_Sends.push_back(send);
    }
    return mirel_shell::WCRecordingShell::ExecCallBack(op, refcon, a, b, c);
}

class MeterReads : public ::testing::Test {
protected:
    void SetUp() override {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        m_Shell.Create(
            info,
            [this](ml::MirelComponentInfo const &i, ml::WTResContainerType *&c) {
                return m_Alg = new WCMeterAlgorithm(i, c);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_EQ(m_Shell.Start(), 0);
        // The audio code's words: OutL 0.4, OutR 0.95, GR 0.5.
        for (auto [index, value] : {std::pair{2, 0.4}, {3, 0.95}, {6, 0.5}})
            ASSERT_EQ(m_Alg->SetSingleStateFloat(index, value), 0);
        ASSERT_EQ(m_Alg->SetExecCallBack(&SpyCallBack, m_Alg->GetExecRefcon()), 0);
        g_Sends.clear();
    }
    float StateWord(int index) const {
        float word = 0.0f;
        std::memcpy(&word, m_Shell.StateMemory().data() + 4 * (m_Shell.m_StatesBase + index), 4);
        return word;
    }
    double RealWorld(std::uint64_t id) {
        double value = 0.0;
        EXPECT_EQ(m_Alg->GetParamRealWorld(id, value), 0);
        return value;
    }

    mirel_shell::WCRecordingShell m_Shell;
    WCMeterAlgorithm *m_Alg = nullptr;
};

TEST_F(MeterReads, NeighboursShareOneBufferAndTheReadResetValueGoesBack) {
    // Sorted by offset: OutL (2), OutR (3), GR (6).
    std::uint32_t count = 0, index = 9;
    ASSERT_EQ(ml::GetPluginInfo_uint32_t(m_Shell.Instance(), ml::WCFourCC("Metr"), count, 0), 0);
    EXPECT_EQ(count, 3u);
    ASSERT_EQ(ml::GetPluginInfo_uint32_t(m_Shell.Instance(), ml::WCFourCC("byps"), index, 2), 0);
    EXPECT_EQ(index, 0u);
    ml::MirelMeterInfo info;
    ASSERT_EQ(ml::GetPluginInfo_struct(m_Shell.Instance(), ml::WCFourCC("MInf"), &info, 2), 0);
    EXPECT_EQ(info.m_ParamID, 3u);
    EXPECT_EQ(info.m_StatesOffset, 6u);

    ASSERT_EQ(m_Alg->DoIdle(0), 0);

    ASSERT_EQ(g_Sends.size(), 1u);
    EXPECT_EQ(g_Sends[0].op, ml::eExecSendBuffersInit);
    ASSERT_EQ(g_Sends[0].buffers.size(), 2u);
    const int base = m_Shell.m_StatesBase;
    const int rw = m_Alg->GetMemOpReadWrite();
    struct Expected {
        int offset, count;
        std::vector<float> words; // what went out: the native read-reset values
    } const expected[] = {{base + 2, 2, {0.125f, 0.25f}}, {base + 6, 1, {0.0f}}};
    for (int i = 0; i < 2; ++i) {
        auto const &seen = g_Sends[0].buffers[static_cast<std::size_t>(i)];
        EXPECT_EQ(seen.kind, 0) << i;
        EXPECT_EQ(seen.memOp, rw) << i;
        EXPECT_EQ(seen.offset, expected[i].offset) << i;
        EXPECT_EQ(seen.count, expected[i].count) << i;
        EXPECT_EQ(seen.words, expected[i].words) << i;
    }
    EXPECT_EQ(StateWord(2), 0.125f);
    EXPECT_EQ(StateWord(3), 0.25f);
    EXPECT_EQ(StateWord(6), 0.0f);
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);

    // The words reached the parameters: the multiplier, the clip, decibels with a range.
    EXPECT_NEAR(RealWorld(2), 0.8, 1e-6);
    EXPECT_NEAR(RealWorld(1), 0.95, 1e-6);
    EXPECT_NEAR(RealWorld(3), ml::DSP::GainTodb(0.5), 1e-4);
    double level = 0.0;
    int clipped = 0;
    EXPECT_EQ(m_Alg->GetMeterManager().GetClipValue(1, level, clipped), 0);
    EXPECT_EQ(clipped, 1);
}

TEST_F(MeterReads, SendThenReceiveTakesTheWordsOnlyAtReceive) {
    auto &manager = m_Alg->GetMeterManager();
    ASSERT_EQ(manager.ReadMetersSend(), 0);
    ASSERT_EQ(g_Sends.size(), 1u);
    EXPECT_EQ(g_Sends[0].op, ml::eExecSendBuffers);
    EXPECT_EQ(g_Sends[0].buffers.size(), 2u);
    double value = -1.0;
    manager.GetMeterValue(0, value);
    EXPECT_EQ(value, 0.0);
    ASSERT_EQ(manager.ReadMetersReceive(), 0);
    manager.GetMeterValue(0, value);
    EXPECT_NEAR(value, 0.8, 1e-6);
    EXPECT_EQ(manager.ReadMetersReceive(), ml::eWrongObjectState);
    // Idle leaves the reads to the shell from now on.
    g_Sends.clear();
    m_Alg->DoIdle(0);
    EXPECT_TRUE(g_Sends.empty());
    EXPECT_EQ(m_Shell.LiveBuffers(), 0u);
}

} // namespace
