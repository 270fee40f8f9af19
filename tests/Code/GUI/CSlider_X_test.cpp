// The slider: its XML, where the thumb stands for a state and which state a thumb position means,
// the hold point of a click on the thumb, a drag through a document, and what it draws.

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/WCGUIPlugin.h"
#include "tests/support/WCGUITestTools.h"
#include "tests/support/WCTestHome.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/Controls/CSlider_X.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

// Every child of "Class" a slider reads, and one image it leaves to the concrete class.
const char *kSliderXML = R"(<cCONTROLLER Name="S"><Class Type="Slider">
  <Slit><ForeGroundImageList><ImageList><Image ResID="20"/><Image ResID="21"/></ImageList></ForeGroundImageList>
    <BackGroundImageList><ImageList><Image ResID="22"/></ImageList></BackGroundImageList>
    <SelectionImageList><ImageList><Selection><Image Type="Active" ResID="23"/></Selection></ImageList></SelectionImageList></Slit>
  <ThumbMovementArea top="30" left="10" width="20" height="120"/>
  <BackGroundPictRect top="20" left="10" width="20" height="160"/>
  <TextWindowRelativeToThumb top="0" left="24" width="30" height="12"/>
  <Image Type="Shadow" ResID="30"><PositionRect top="2" left="2" width="20" height="20"/></Image>
  <Image Type="Pushed" ResID="31"/>
  <ResetFromRect/></Class>
  <ControlRect top="20" left="10" width="20" height="160"/></cCONTROLLER>)";

class WCRecordingSlider : public ml::CSlider_X {
public:
    std::string m_Custom;
    ml::WTErr ReadFromXMLCustom(const ml::XML::CXMLElement &child) override {
        m_Custom += std::string(child.GetName().c_str()) + ":" +
                    child.GetAttribString("Type").c_str() + " ";
        return ml::eNoErr;
    }
};

TEST(CSlider_X_XML, ReadsItsClassChildrenLeavesOtherImagesToTheCustomHookAndWritesThemBack) {
    WCRecordingSlider slider;
    ASSERT_EQ(slider.ReadFromXMLWithAlg(mirel_test::ParseXML(kSliderXML).get(), nullptr), 0);
    EXPECT_EQ(slider.m_Custom, "Image:Pushed ") << "only the shadow is the slider's own image";
    EXPECT_TRUE(slider.HasSlit());
    EXPECT_TRUE(slider.GetResetFromRect());
    ASSERT_NE(slider.GetShadow().GetImagePtr(0), nullptr);
    EXPECT_EQ(slider.GetShadow().GetImagePtr(0)->GetResID(), 30);
    EXPECT_EQ(slider.GetMouseDragRect().Height(), 120) << "a drag spans the movement area";

    const std::string once = mirel_test::WrittenXML(slider);
    for (const char *child :
         {"ThumbMovementArea", "BackGroundPictRect", "TextWindowRelativeToThumb", "\"Shadow\"",
          "ResetFromRect", "ResID=\"21\"", "ResID=\"22\"", "\"Active\""})
        EXPECT_NE(once.find(child), std::string::npos) << child << " in " << once;
    ml::CSlider_X again;
    ASSERT_EQ(again.ReadFromXMLWithAlg(mirel_test::ParseXML(once).get(), nullptr), 0);
    EXPECT_EQ(mirel_test::WrittenXML(again), once);

    ASSERT_EQ(again.UpdateFromXMLWithAlg(
                  mirel_test::ParseXML(R"(<cCONTROLLER Name="S"><Class Type="Slider"/>
      <ControlRect top="0" left="0" width="20" height="50"/></cCONTROLLER>)")
                      .get(),
                  nullptr),
              0);
    EXPECT_FALSE(again.HasSlit() || again.GetResetFromRect() || !again.GetShadow().Empty());
    EXPECT_EQ(again.GetMouseDragRect().Height(), 50) << "a new skin keeps nothing of the last one";
}

// ---- in a document -------------------------------------------------------------------------

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="V"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="H"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="A"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.5</InitialValue></Parameter>
  <Parameter Name="Q"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>4</Maximum>
    <NumberOfStates>5</NumberOfStates></Scale></Parameter>
</ParamXML>)";

// A vertical slider whose 120-pixel area is shorter than the control, a horizontal one, and a
// vertical one that follows the mouse absolutely, and a quantized one of five steps; each thumb a
// 20 x 20 picture.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="400" height="220"/></ViewRect_List>
  <Flag_List/>
  <Control_List>
    <cCONTROLLER Name="V"><Class Type="Slider"><ThumbMovementArea top="30" left="10" width="20" height="120"/>
        <Image Type="Shadow" ResID="30"><PositionRect top="2" left="3" width="20" height="20"/></Image></Class>
      <ControlRect top="20" left="10" width="20" height="160"/>
      <ImageList Type="BackGround"><Image ResID="10"/></ImageList>
      <ImageList Type="ForeGround"><Image ResID="11"><PositionRect top="30" left="10" width="20" height="20"/></Image></ImageList>
      <ParameterList><Param Name="V" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="H"><Class Type="Slider"/><Flags><SliderNoBackground/></Flags>
      <ControlRect top="190" left="10" width="220" height="20"/>
      <ImageList Type="BackGround"><Image ResID="10"/></ImageList>
      <ImageList Type="ForeGround"><Image ResID="11"><PositionRect top="190" left="10" width="20" height="20"/></Image></ImageList>
      <ParameterList><Param Name="H" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="A"><Class Type="Slider"/>
      <ControlRect top="20" left="60" width="20" height="120"/>
      <ImageList Type="ForeGround"><Image ResID="11"><PositionRect top="20" left="60" width="20" height="20"/></Image></ImageList>
      <ParameterList><Param Name="A" UpdateGraphics="true"><RegisterType>MouseDrawHorizontal</RegisterType>
        <RegisterType>AbsMouseMoveVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Q"><Class Type="QuantizedSlider"/><ControlRect top="20" left="100" width="220" height="20"/>
      <ImageList Type="ForeGround"><Image ResID="11"><PositionRect top="20" left="100" width="20" height="20"/></Image></ImageList>
      <ParameterList><Param Name="Q" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param></ParameterList></cCONTROLLER>
  </Control_List></GUI>)";

class CSlider_XInGUI : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(m_Plugin.Start(m_Home.path(), "Slider", kParamXML, kGUI));
        m_GUI = m_Plugin.GUI();
    }
    ml::CSlider_X &Slider(const char *name) const {
        auto *slider = dynamic_cast<ml::CSlider_X *>(m_GUI->GetControlPtrByName(name));
        EXPECT_NE(slider, nullptr) << name << " is no slider";
        return *slider;
    }

    mirel_test::WCTestHome m_Home;
    mirel_test::WCGUIPlugin m_Plugin;
    ml::CStandardGUI_X *m_GUI = nullptr;
};

TEST_F(CSlider_XInGUI,
       TheThumbCentreTravelsFromTheStateZeroEndAndAStateBeyond1000DrawsAs1000AQuantizedOneOnSteps) {
    // V travels over y 40..140 (the 120-pixel area less the thumb), 1000 at the top; H over
    // x 20..220, 1000 at the right.
    const struct {
        const char *slider;
        double state;
        short centre;
    } cases[] = {{"V", 0.0, 140},  {"V", 1000.0, 40},  {"V", 500.0, 90}, {"V", 1200.0, 40},
                 {"H", 0.0, 20},   {"H", 1000.0, 220}, {"H", 250.0, 70}, {"H", -5.0, 20},
                 {"Q", 130.0, 160}}; // Q travels x 110..310; 130 snaps to its step at 250
    for (const auto &c : cases) {
        ml::CSlider_X &slider = Slider(c.slider);
        slider.UpdateSliderGUI(0, c.state);
        const auto centre = slider.GetThumbCentre();
        EXPECT_EQ(slider.IsVertical() ? centre.y : centre.x, c.centre)
            << c.slider << " " << c.state;
        EXPECT_EQ(slider.GetThumbRect().Height(), 20);
    }
}

TEST_F(CSlider_XInGUI, ThumbPositionToStateGivesZeroAtTheStartOfTheTravelAnd1000AtItsEnd) {
    // Points relative to the control, origin the area's top-left corner.
    const struct {
        const char *slider;
        short x, y, originY;
        double state;
    } cases[] = {{"V", 10, 120, 10, 0.0}, {"V", 10, 20, 10, 1000.0}, {"V", 10, 70, 10, 500.0},
                 {"V", 10, 150, 10, 0.0}, {"H", 10, 10, 0, 0.0},     {"H", 210, 10, 0, 1000.0},
                 {"H", 110, 10, 0, 500.0}};
    for (const auto &c : cases)
        EXPECT_DOUBLE_EQ(Slider(c.slider).ThumbPositionToState({c.x, c.y}, {0, c.originY}), c.state)
            << c.slider << " " << c.x << "," << c.y;
    ml::CSlider_X &v = Slider("V");
    v.SetControlFlag(ml::eCF_SliderLogResolution, true);
    v.UpdateSliderGUI(0, 250.0);
    EXPECT_EQ(v.GetThumbCentre().y, 90) << "a quarter of the states takes half the travel";
    EXPECT_DOUBLE_EQ(v.ThumbPositionToState({10, 70}, {0, 10}), 250.0);
}

TEST_F(CSlider_XInGUI, AFastDragMovesTheWholeScaleOverTheMovementAreaNotTheControl) {
    m_Plugin.Down(20, 140); // on the thumb at state 0
    m_Plugin.Move(20, 128); // 12 fast pixels of the 120-pixel area: a tenth of the scale
    EXPECT_NEAR(Slider("V").GetSliderPosition(), 100.0, 1e-9);
    m_Plugin.Up(20, 128);
}

TEST_F(CSlider_XInGUI, TheHoldPointKeepsAClickOnTheThumbFromJumpingInAnAbsoluteDrag) {
    ml::CSlider_X &a = Slider("A");
    ASSERT_EQ(a.GetThumbCentre().y, 80); // state 500
    m_Plugin.Down(70, 85);               // 5 pixels below the thumb's centre
    EXPECT_EQ(a.GetHoldPoint().y, 5);
    m_Plugin.Move(70, 84); // the thumb follows one pixel up: its centre at 79, not at the mouse
    EXPECT_NEAR(a.GetSliderPosition(), 510.0, 1e-6);
    m_Plugin.Up(70, 84);
    EXPECT_EQ(a.GetHoldPoint().y, 0) << "the mouse-up forgets it";
}

TEST_F(CSlider_XInGUI, WithMouseTrackKnobOnlyTheThumbTakesTheMouse) {
    ml::CSlider_X &v = Slider("V"); // state 0: the thumb covers x 10..30, y 130..150
    EXPECT_TRUE(v.IsInside({20, 60}));
    v.SetControlFlag(ml::eCF_SliderMouseTrackKnob, true);
    EXPECT_FALSE(v.IsInside({20, 60}));
    EXPECT_TRUE(v.IsInside({20, 140}));
}

// One frame of the control, dumped as YAML with its remarks.
std::string DrawToYAML(ml::WCGUIControl &control) {
    ml::miGS::WCGraphicStreamBinaryWriter writer;
    writer.ActivateRemarks(true);
    {
        ml::miGS::SGSStream stream;
        std::strcpy(stream.stream_name, "Controls");
        ml::miGS::WCStGSStreamStructWriter guard(writer, stream);
        const auto &r = control.GetDrawableRect();
        ml::miGS::WCStGSFrameStructWriter frame(
            writer, ml::WURect<int>(r.top, r.left, r.bottom, r.right), 0);
        EXPECT_EQ(control.GetDrawInstructions(writer), 0);
    }
    ml::miGS::WCGraphicStreamToYAML yaml;
    EXPECT_EQ(yaml.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), 0);
    return yaml.GetYamlStr();
}

// The lines of `yaml` that say what was drawn where, in order.
std::string Drawn(const std::string &yaml) {
    std::string out;
    std::size_t at = 0;
    while (at < yaml.size()) {
        const std::size_t end = std::min(yaml.find('\n', at), yaml.size());
        const std::string line = yaml.substr(at, end - at);
        for (const char *key : {"Remark:", "ResID:", "draw_rect:"})
            if (const auto pos = line.find(key); pos != std::string::npos)
                out += line.substr(pos) + "\n";
        at = end + 1;
    }
    return out;
}

TEST_F(CSlider_XInGUI, DrawsBackgroundUnlessAskedNotThenTheThumbAtItsPlaceThenTheShadowBesideIt) {
    Slider("V").UpdateSliderGUI(0, 1000.0);
    EXPECT_EQ(Drawn(DrawToYAML(Slider("V"))), "Remark: Slider background\n"
                                              "ResID: 10\ndraw_rect: {}\n"
                                              "Remark: Thumb\n"
                                              "ResID: 11\ndraw_rect: {x: 0, y: 10}\n"
                                              "Remark: Shadow\n"
                                              "ResID: 30\ndraw_rect: {x: 3, y: 12}\n");
    Slider("H").UpdateSliderGUI(0, 500.0);
    EXPECT_EQ(Drawn(DrawToYAML(Slider("H"))),
              "Remark: Thumb\nResID: 11\ndraw_rect: {x: 100, y: 0}\n");
}

} // namespace
