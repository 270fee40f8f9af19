// The sliders and knobs made by the factory from their "Class" type: their XML, one GUI holding
// every kind drawn as a reviewed frame and picture, the meter a knob's ring follows, and which
// thumb of a multi-thumb slider a click takes.

#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/WCGUIPlugin.h"
#include "tests/support/WCGUITestTools.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCGoldenPicture.h"
#include "tests/support/WCTestHome.h"

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/Controls/CRotationKnobMeter.h"
#include "Code/GUI/Controls/WCMultiThumbSlider.h"
#include "Code/GUI/WUControlFactories.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

const std::string kFolder = std::string(MIREL_GUI_TEST_DATA) + "/controls";

std::unique_ptr<ml::WCGUIControl> Read(const char *type, const std::string &cls, int expected) {
    std::unique_ptr<ml::WCGUIControl> control(
        ml::CreateDefaultControls(ml::WCFixedString<31>(type), nullptr));
    EXPECT_NE(control, nullptr) << type;
    const std::string xml = "<cCONTROLLER Name=\"c\">" + cls +
                            "<ControlRect top=\"0\" left=\"0\" width=\"96\" height=\"48\"/>"
                            "</cCONTROLLER>";
    ml::XML::CXMLElement root;
    ml::XML::CXMLTreeBuilder(&root).BuildFromSingleBuffer(xml.data(), xml.size());
    EXPECT_EQ(control->ReadFromXMLWithAlg(&root, nullptr), expected) << xml;
    return control;
}

TEST(Controls_Knobs_XML, EachKindWritesBackWhatItReadsAndABrokenChildChangesNothing) {
    const struct {
        const char *type, *cls, *broken;
        int code;
    } kinds[] = {
        {"SliderModStripes",
         R"(<Class Type="SliderModStripes"><ThumbMovementArea top="0" left="0" width="96" height="20"/>
            <AllStripes Length="80" Thickness="4"><Stripe Position="0" PathLength="30"/>
            <Stripe Position="50" PathLength="10"/></AllStripes></Class>)",
         R"(<Class Type="SliderModStripes"><AllStripes Length="eighty"/></Class>)",
         ml::eNotANumber},
        {"MultiThumbSlider",
         R"(<Class Type="MultiThumbSlider"><ThumbMovementArea top="0" left="0" width="96" height="20"/>
            <ThumbSize width="8" height="20"/></Class>)",
         R"(<Class Type="MultiThumbSlider"><ThumbSize width="0" height="20"/></Class>)",
         ml::eOutOfRangeNumber},
        {"RotationKnob",
         R"(<Class Type="RotationKnob"><Image ResID="2001"/><Type>1</Type><SequenceSteps>64</SequenceSteps>
            <AngleRange minAngle="0" maxAngle="270" direction="ccw"/><KnobCenter x="24" y="24"/>
            <ScaleMarksScaling scaleType="linear" statesSteps="10"/></Class>)",
         R"(<Class Type="RotationKnob"><Type>1</Type><AngleRange minAngle="low" maxAngle="270"/></Class>)",
         ml::eNotANumber},
        {"RotationKnobMeter",
         R"(<Class Type="RotationKnobMeter"><Image ResID="2001"/><SequenceSteps>64</SequenceSteps></Class>)",
         R"(<Class Type="RotationKnobMeter"><SequenceSteps>0</SequenceSteps></Class>)",
         ml::eOutOfRangeNumber},
        {"RotationKnobModRings",
         R"(<Class Type="RotationKnobModRings"><Image ResID="2001"/><SequenceSteps>64</SequenceSteps>
            <Ring InnerRadius="17" Thickness="2" OffsetX="0" OffsetY="0" StartDegree="-135" EndDegree="135"/>
            <Ring InnerRadius="10" Thickness="6" OffsetX="48" OffsetY="0" StartDegree="0" EndDegree="360"/>
            <DrawRectSize width="48" height="48"/></Class>)",
         R"(<Class Type="RotationKnobModRings"><Ring InnerRadius="4" Thickness="0"/></Class>)",
         ml::eOutOfRangeNumber},
    };
    for (const auto &kind : kinds) {
        const auto control = Read(kind.type, kind.cls, 0);
        const std::string once = mirel_test::WrittenXML(*control);
        EXPECT_EQ(
            mirel_test::WrittenXML(*Read(
                kind.type,
                once.substr(once.find("<Class"), once.find("</Class>") + 8 - once.find("<Class")),
                0)),
            once)
            << kind.type;
        const std::unique_ptr<ml::WCGUIControl> clone(control->Clone());
        EXPECT_EQ(mirel_test::WrittenXML(*clone), once) << kind.type << " cloned";
        ml::XML::CXMLElement root;
        const std::string broken = std::string("<cCONTROLLER Name=\"c\">") + kind.broken +
                                   "<ControlRect top=\"0\" left=\"0\" width=\"96\" "
                                   "height=\"48\"/></cCONTROLLER>";
        ml::XML::CXMLTreeBuilder(&root).BuildFromSingleBuffer(broken.data(), broken.size());
        EXPECT_EQ(control->ReadFromXMLWithAlg(&root, nullptr), kind.code) << kind.type;
        EXPECT_EQ(mirel_test::WrittenXML(*control), once) << kind.type << " after a broken class";
    }
}

// ---- in a GUI ------------------------------------------------------------------------------

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="A"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.25</InitialValue></Parameter>
  <Parameter Name="B"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.75</InitialValue></Parameter>
  <Parameter Name="Meter"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale>
    <ExtensionClass>WCParamExtensionMeter<StateOffset>0</StateOffset></ExtensionClass></Parameter>
  <Parameter Name="ModUp"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.7</InitialValue></Parameter>
  <Parameter Name="ModDown"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.3</InitialValue></Parameter>
  <Parameter Name="T1"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.1</InitialValue></Parameter>
  <Parameter Name="T2"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.5</InitialValue></Parameter>
  <Parameter Name="T3"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.9</InitialValue></Parameter>
</ParamXML>)";

// Two turning knobs at a quarter and three quarters (their picture is the strip's first frame,
// whose pointer stands at the lower left, turned by 0..270 degrees), a strip knob at a quarter
// whose green ring follows the meter, a strip knob with two modulation rings (one around it, one
// beside it), a slider at 750 whose modulation (700, so +200) puts the dot at 950, and three
// thumbs at 100, 500 and 900.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="290" height="136"/></ViewRect_List>
  <Background_Color red="28" green="30" blue="34" alpha="255"/>
  <Control_List>
    <cCONTROLLER Name="TurnLow"><Class Type="RotationKnob"><Image ResID="2001"/><Type>1</Type>
        <SequenceSteps>64</SequenceSteps><AngleRange minAngle="0" maxAngle="270"/></Class>
      <ControlRect top="10" left="10" width="48" height="48"/>
      <ParameterList><Param Name="A" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="TurnHigh"><Class Type="RotationKnob"><Image ResID="2001"/><Type>1</Type>
        <SequenceSteps>64</SequenceSteps><AngleRange minAngle="0" maxAngle="270"/></Class>
      <ControlRect top="10" left="64" width="48" height="48"/>
      <ParameterList><Param Name="B" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Metered"><Class Type="RotationKnobMeter"><Image ResID="2001"/><SequenceSteps>64</SequenceSteps></Class>
      <ControlRect top="10" left="118" width="48" height="48"/>
      <ControlColor red="80" green="220" blue="120"/><ControlColorRect top="0" left="0" width="4" height="4"/>
      <ParameterList><Param Name="A" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param>
        <Param Name="Meter" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Rings"><Class Type="RotationKnobModRings"><Image ResID="2001"/><SequenceSteps>64</SequenceSteps>
        <Ring InnerRadius="17" Thickness="2" OffsetX="0" OffsetY="0" StartDegree="-135" EndDegree="135"/>
        <Ring InnerRadius="10" Thickness="6" OffsetX="48" OffsetY="0" StartDegree="0" EndDegree="360"/>
        <DrawRectSize width="48" height="48"/></Class>
      <ControlRect top="10" left="172" width="96" height="48"/>
      <ControlColor red="170" green="120" blue="255"/><ControlColorRect top="0" left="92" width="4" height="4"/>
      <ParameterList><Param Name="B" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param>
        <Param Name="ModUp" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param>
        <Param Name="ModDown" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Stripes"><Class Type="SliderModStripes"><ThumbMovementArea top="70" left="10" width="220" height="24"/>
        <AllStripes Length="172" Thickness="4"><Stripe Position="0" PathLength="60"/><Stripe Position="100" PathLength="50"/></AllStripes></Class>
      <ControlRect top="70" left="10" width="220" height="24"/>
      <ControlColor red="90" green="160" blue="230"/><ControlColorRect top="11" left="0" width="220" height="2"/>
      <ImageList Type="ForeGround"><Image ResID="2010"><PositionRect top="70" left="10" width="48" height="24"/></Image></ImageList>
      <ParameterList><Param Name="B" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param>
        <Param Name="ModUp" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Thumbs"><Class Type="MultiThumbSlider"><ThumbSize width="8" height="24"/></Class>
      <ControlRect top="104" left="10" width="220" height="24"/>
      <ControlColor red="200" green="200" blue="210"/><ControlColorRect top="11" left="0" width="220" height="2"/>
      <ParameterList><Param Name="T1" UpdateGraphics="true"><RegisterType>MouseDrawVertical</RegisterType></Param>
        <Param Name="T2" UpdateGraphics="true"><RegisterType>MouseDrawVertical</RegisterType></Param>
        <Param Name="T3" UpdateGraphics="true"><RegisterType>MouseDrawVertical</RegisterType></Param></ParameterList></cCONTROLLER>
  </Control_List></GUI>)";

class Controls_Knobs : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(m_Plugin.Start(m_Home.path(), "Knobs", kParamXML, kGUI));
        m_GUI = m_Plugin.GUI();
    }
    ml::WCGUIControl &C(const char *name) const {
        ml::WCGUIControl *control = m_GUI->GetControlPtrByName(name);
        EXPECT_NE(control, nullptr) << name;
        return *control;
    }
    // The meter's word as the process side would give it, without telling its parameter.
    void SetMeter(double word) {
        ml::cALGORITHM &alg = *m_Plugin.Algorithm();
        std::uint64_t id = 0;
        std::uint32_t index = 0;
        ASSERT_EQ(alg.GetParamIDFromName("Meter", id), 0);
        ASSERT_EQ(alg.GetMeterManager().GetMeterIndex(id, index), 0);
        alg.GetMeterManager().GetExtensionMeter(index)->SetValueFromDSP(word);
    }
    PVM::WCEventData &Event(short x, short y, bool pressed) {
        m_Event.SetMouseClickCount(PVM::eClickSingle);
        m_Event.SetMouseButtonPressed(PVM::eMouseButtonLeft, pressed);
        m_Event.SetMouseLocation({x, y});
        return m_Event;
    }

    mirel_test::WCTestHome m_Home;
    mirel_test::WCGUIPlugin m_Plugin;
    ml::CStandardGUI_X *m_GUI = nullptr;
    PVM::WCEventData m_Event;
};

TEST_F(Controls_Knobs, AFullFrameOfEveryKindMatchesTheReviewedYAMLAndPicture) {
    SetMeter(0.6);
    auto &metered = dynamic_cast<ml::CRotationKnobMeter &>(C("Metered"));
    EXPECT_NEAR(metered.GetMeterState(), 600.0, 1e-6) << "the ring reads the meter, not the "
                                                         "parameter it has not told yet";
    mirel_test::ExpectGoldenFrame(*m_GUI, kFolder, "knobs");
}

TEST_F(Controls_Knobs, AClickTakesTheNearestThumbAndADragMovesOnlyThatOne) {
    // Thumb centres travel x 14..226 (the 220-pixel area less an 8-pixel thumb): 100 at 35, 500
    // at 120, 900 at 204.
    auto &thumbs = dynamic_cast<ml::WCMultiThumbSlider &>(C("Thumbs"));
    const struct {
        short down, to;
        int thumb;
        double state;
    } cases[] = {
        {40, 61, 0, 198.1},    // 5 right of the first: it keeps that offset under the mouse
        {160, 161, 1, 504.7},  // 40 from the second, 44 from the third; a slow drag
        {200, 250, 2, 1000.0}, // beyond the end
    };
    for (const auto &c : cases) {
        double before[3];
        for (int i = 0; i < 3; ++i)
            before[i] = thumbs.GetRegistration(i).GetValue();
        m_Event.SetMouseDownLocation({c.down, 116});
        EXPECT_EQ(m_GUI->DoMouseDown(Event(c.down, 116, true)), 0);
        EXPECT_EQ(thumbs.GetTakenThumb(), c.thumb) << c.down;
        EXPECT_EQ(m_GUI->DoMouseMove(Event(c.to, 116, true)), 0);
        EXPECT_EQ(m_GUI->DoMouseUp(Event(c.to, 116, false)), 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(thumbs.GetRegistration(i).GetValue(), i == c.thumb ? c.state : before[i],
                        0.6)
                << "thumb " << i << " after a click at " << c.down;
    }
}

} // namespace
