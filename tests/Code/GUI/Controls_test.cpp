#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/WCGUITestTools.h"
#include "tests/support/WCSilentAlgorithm.h"

#include "Code/GUI/Controls/CRotationKnob.h"
#include "Code/GUI/Controls/CToggle_X.h"
#include "Code/GUI/Controls/CVuMeter_X.h"
#include "Code/GUI/WIControlOwner.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/WCEventData.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

enum EId : std::uint64_t { eGain, eFilter, eOutput };

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Filter"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <NumberOfStates>2</NumberOfStates></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Output"><Scale><ScaleType Type="linear"/><Minimum>-60</Minimum>
    <Maximum>0</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>-60</InitialValue></Parameter>
</ParamXML>)";

class WCControlsTestAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;
    // A plug-in whose switches latch on: the next state is always the last.
    bool m_Latching = false;
    int GetPluginInfo_GetNextToggleState(std::int64_t id, std::int32_t &out) override {
        if (!m_Latching)
            return WCSilentAlgorithm::GetPluginInfo_GetNextToggleState(id, out);
        out = 1000;
        return 0;
    }

protected:
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 1;
        DSPReqRes().cycles = 1;
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

class WCNoDocument : public ml::WIControlOwner {
public:
    ml::WCGUIControl *GetControlPtrByName(const char *) override { return nullptr; }
    void SetNeedToRedrawGUI() override {}
    bool GetGUIFlag(unsigned int) const override { return false; }
    bool GroupExists(const char *) const override { return true; }
    int GroupAdd(const char *) override { return 0; }
    int GroupAddControl(const char *, ml::WCGUIControl *) override { return 0; }
    void DeSelectControl(ml::WCGUIControl *) override {}
};

// One frame holding the control, dumped as YAML.
std::string DrawToYAML(ml::WCGUIControl &control, int expected = 0) {
    ml::miGS::WCGraphicStreamBinaryWriter writer;
    {
        ml::miGS::SGSStream stream;
        std::strcpy(stream.stream_name, "Controls");
        ml::miGS::WCStGSStreamStructWriter guard(writer, stream);
        const auto &r = control.GetDrawableRect();
        ml::miGS::WCStGSFrameStructWriter frame(
            writer, ml::WURect<int>(r.top, r.left, r.bottom, r.right), 0);
        EXPECT_EQ(control.GetDrawInstructions(writer), expected);
    }
    ml::miGS::WCGraphicStreamToYAML yaml;
    EXPECT_EQ(yaml.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), 0);
    return yaml.GetYamlStr();
}

class ControlsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        m_Shell.Create(
            info,
            [this](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
                return m_Alg = new WCControlsTestAlgorithm(component, container);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_EQ(m_Shell.Start(), 0);
    }
    template <typename T>
    std::unique_ptr<T> Read(const std::string &xml) {
        auto control = std::make_unique<T>(&m_Document);
        auto root = std::make_unique<ml::XML::CXMLElement>();
        ml::XML::CXMLTreeBuilder(root.get()).BuildFromSingleBuffer(xml.data(), xml.size());
        EXPECT_TRUE(root->IsValid()) << xml;
        EXPECT_EQ(control->ReadFromXMLWithAlg(root.get(), m_Alg), 0) << xml;
        return control;
    }
    // Written back, read again and written again, the same text.
    template <typename T>
    void ExpectRoundTrip(const T &control, const char *mustHold) {
        const std::string written = mirel_test::WrittenXML(control);
        EXPECT_NE(written.find(mustHold), std::string::npos) << written;
        EXPECT_EQ(mirel_test::WrittenXML(*Read<T>(written)), written);
    }
    mirel_shell::WCRecordingShell m_Shell;
    WCControlsTestAlgorithm *m_Alg = nullptr;
    WCNoDocument m_Document;
};

const char *kKnob = R"(<cCONTROLLER Name="Gain">
  <Class Type="RotationKnob"><Image ResID="2001"/><SequenceSteps>64</SequenceSteps>
    <SubSequenceSteps>4</SubSequenceSteps><Alpha>200</Alpha><DiscreteStep>0.5</DiscreteStep>
    <SequenceQuantize/><Clipable>true</Clipable>
    <AngleRange minAngle="-135" maxAngle="135" direction="cw"/><KnobCenter x="24" y="25"/>
    <ScaleMarksScaling scaleType="linear" statesSteps="10"/></Class>
  <ControlRect top="56" left="40" width="48" height="48"/>
  <ParameterList><Param Name="Gain" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList>
</cCONTROLLER>)";

TEST_F(ControlsTest, KnobDrawsTheStripFrameItsValueSelects) {
    const auto knob = Read<ml::CRotationKnob>(kKnob);
    ASSERT_EQ(knob->GetSequenceSteps(), 64);
    const struct {
        double state;
        int frame;
        const char *drawRect;
    } cases[] = {
        {0.0, 0, "draw_rect: {}"},
        {500.0, 32, "draw_rect: {x: 0, y: -1536}"},
        {1000.0, 63, "draw_rect: {x: 0, y: -3024}"},
    };
    for (const auto &row : cases) {
        m_Alg->UpdateParamRequestState(eGain, row.state);
        EXPECT_EQ(knob->GetCurrentFrame(), row.frame) << row.state;
        const std::string yaml = DrawToYAML(*knob);
        EXPECT_NE(yaml.find(row.drawRect), std::string::npos) << yaml;
        EXPECT_NE(yaml.find("clip_rect: {w: 48, h: 48}"), std::string::npos) << yaml;
    }
}

TEST_F(ControlsTest, ToggleStepsATwoStateParameterOnEachClickAndBack) {
    const auto toggle = Read<ml::CToggle_X>(R"(<cCONTROLLER Name="Filter">
      <Class Type="Toggle"><Image Type="Pushed" ResID="2011"/><Image Type="Released" ResID="2010"/></Class>
      <ControlRect top="0" left="0" width="48" height="24"/>
      <ParameterList><Param Name="Filter"><RegisterType>MouseDown</RegisterType></Param></ParameterList>
    </cCONTROLLER>)");
    ml::PluginViewManager::WCEventData event;
    // The plug-in names the next state: latching, a click on an on switch leaves it on.
    for (const double expected : {1000.0, 0.0, 1000.0, 1000.0}) {
        m_Alg->m_Latching = expected == 1000.0 && m_Alg->GetParam(eFilter)->GetState(0) == 1000.0;
        ml::WURect<double> limits(1000.0, 1000.0, 0.0, 0.0);
        bool keepGoing = true;
        auto *chain = toggle->MouseDown(event, limits, keepGoing);
        m_Alg->SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
        chain = toggle->MouseUp(event);
        m_Alg->FreeBuffers(chain);
        EXPECT_DOUBLE_EQ(m_Alg->GetParam(eFilter)->GetState(0), expected);
    }
    toggle->SetControlFlag(ml::eCF_SetOppositeNextState, true);
    EXPECT_DOUBLE_EQ(ml::CToggle_X::NextState(0.0, 500.0, true), 1000.0) << "reversed wraps down";
    EXPECT_DOUBLE_EQ(ml::CToggle_X::NextState(1000.0, 500.0, true), 500.0);
    ExpectRoundTrip(*toggle, R"(<Image Type="Released" ResID="2010"/>)");
}

TEST_F(ControlsTest, MeterLightsAPartOfItsForegroundProportionalToTheLevel) {
    const auto meter = Read<ml::CVuMeter_X>(R"(<cCONTROLLER Name="Output">
      <Class Type="VU"/><ControlRect top="48" left="424" width="16" height="160"/>
      <Direction>vertical</Direction>
      <ImageList Type="BackGround"><Image ResID="2030"><PositionRect top="48" left="424" width="16" height="160"/></Image></ImageList>
      <ImageList Type="ForeGround"><Image ResID="2031"><PositionRect top="48" left="424" width="16" height="160"/></Image></ImageList>
      <ParameterList><Param Name="Output"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList>
    </cCONTROLLER>)");
    const struct {
        double state;
        const char *lit;
    } cases[] = {
        {0.0, nullptr},
        {250.0, "clip_rect: {x: 0, y: 120, w: 16, h: 40}"},
        {1000.0, "w: 16, h: 160}"},
    };
    for (const auto &row : cases) {
        m_Alg->UpdateParamRequestState(eOutput, row.state);
        const std::string yaml = DrawToYAML(*meter);
        EXPECT_NE(yaml.find("ResID: 2030"), std::string::npos) << yaml;
        if (row.lit == nullptr)
            EXPECT_EQ(yaml.find("ResID: 2031"), std::string::npos) << "an empty meter\n" << yaml;
        else
            EXPECT_NE(yaml.find(row.lit), std::string::npos) << yaml;
    }
    EXPECT_DOUBLE_EQ(ml::CVuMeter_X::CalculateVUValueByParamValue(1200.0), 1.0);
}

} // namespace
