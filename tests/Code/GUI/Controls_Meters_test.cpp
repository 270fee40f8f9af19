// The meters, arcs and bars, made by the factory from their "Class" type: their XML, one GUI
// holding every kind drawn as a reviewed frame and picture, and what the mouse does to each.

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
#include "Code/GUI/Controls/CMultipartVuMeter.h"
#include "Code/GUI/Controls/CVuMeter_X.h"
#include "Code/GUI/WUControlFactories.h"
#include "Code/Process/WCParamExtensionMeter.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "view/PluginViewManager.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

const std::string kFolder = MIREL_GUI_TEST_DATA "/controls";

std::unique_ptr<ml::WCGUIControl> Make(const char *type) {
    return std::unique_ptr<ml::WCGUIControl>(
        ml::CreateDefaultControls(ml::WCFixedString<31>(type), nullptr));
}

std::string Controller(const char *type, const char *children) {
    return std::string("<cCONTROLLER Name=\"C\"><Class Type=\"") + type + "\">" + children +
           "</Class></cCONTROLLER>";
}

// ---- XML -------------------------------------------------------------------------------------

TEST(Controls_Meters_XML, EachKindWritesItsClassBackAsReadAndABrokenChildChangesNothing) {
    const char *arc =
        R"(<ArcColor red="10" green="20" blue="30"/><ArcSwappedColor red="1" green="2" blue="3"/>)"
        R"(<ArcHighlightColor red="4" green="5" blue="6"/><ArcSwappedHighlightColor red="7" green="8" blue="9"/>)"
        R"(<ArcThickness>5</ArcThickness><ArcStartDeg>-120</ArcStartDeg><ArcEndDeg>120</ArcEndDeg>)"
        R"(<MarkColor red="255" green="255" blue="255"/><MarkHighlightColor red="0" green="0" blue="0"/>)"
        R"(<MarkThickness>2</MarkThickness><MarkLength>12</MarkLength><Legend>dB</Legend>)";
    const char *bar =
        R"(<BarColor red="10" green="20" blue="30"/><BarSwappedColor red="1" green="2" blue="3"/>)"
        R"(<BarHighlightColor red="4" green="5" blue="6"/><BarSwappedHighlightColor red="7" green="8" blue="9"/>)"
        R"(<BarMargin>2</BarMargin><MarkThickness>3</MarkThickness>)"
        R"(<MarkColor red="255" green="0" blue="0"/><MarkHighlightColor red="0" green="0" blue="0"/>)";
    const struct {
        const char *type;
        const char *children;
        const char *mustHold;
        const char *broken;
    } rows[] = {
        {"VU", "", "<Class Type=\"VU\"/>", nullptr},
        {"PolygonVU",
         R"(<MeterColor1 red="0" green="200" blue="0"/><MeterColor2 red="200" green="200" blue="0"/>)"
         R"(<MeterColor3 red="250" green="100" blue="0"/><MeterClipColor red="255" green="0" blue="0"/>)"
         R"(<BackgroundColor red="20" green="20" blue="20"/><ColorSwitchValues first="600" second="850"/><Legend/>)",
         "<ColorSwitchValues first=\"600\" second=\"850\"/>",
         R"(<ColorSwitchValues first="900" second="850"/>)"},
        {"MultipartVU",
         R"(<Image ResID="2030"/><Marker ResID="2031"/><MeterSections><Section from="0" to="700" red="0" green="200" blue="0"/>)"
         R"(<Section from="700" to="1000" red="250" green="0" blue="0"/></MeterSections>)"
         R"(<TextNormalColor red="0" green="0" blue="0"/><TextClipColor red="255" green="0" blue="0"/>)"
         R"(<ResetOnlyOnValueWin/>)",
         "from=\"700\" to=\"1000\"/>",
         R"(<MeterSections><Section from="700" to="100" red="1"/></MeterSections>)"},
        {"Arc", arc, "<MarkLength>12</MarkLength>", "<ArcThickness>thick</ArcThickness>"},
        {"ArcMarker", arc, "<Legend>dB</Legend>", R"(<MarkColor red="300"/>)"},
        {"Bar", bar, "<BarMargin>2</BarMargin>", "<BarMargin>-1</BarMargin>"},
        {"BarMarker", bar, "<MarkThickness>3</MarkThickness>", R"(<BarColor red="x"/>)"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.type);
        auto control = Make(row.type);
        ASSERT_NE(control, nullptr);
        ASSERT_EQ(control->ReadFromXMLWithAlg(
                      mirel_test::ParseXML(Controller(row.type, row.children)).get(), nullptr),
                  0);
        const std::string once = mirel_test::WrittenXML(*control);
        EXPECT_NE(once.find(row.mustHold), std::string::npos) << once;
        auto again = Make(row.type);
        ASSERT_EQ(again->ReadFromXMLWithAlg(mirel_test::ParseXML(once).get(), nullptr), 0);
        EXPECT_EQ(mirel_test::WrittenXML(*again), once);
        EXPECT_EQ(mirel_test::WrittenXML(*std::unique_ptr<ml::WCGUIControl>(again->Clone())), once);
        if (row.broken == nullptr)
            continue;
        EXPECT_NE(again->ReadFromXMLWithAlg(
                      mirel_test::ParseXML(Controller(row.type, row.broken)).get(), nullptr),
                  0);
        EXPECT_EQ(mirel_test::WrittenXML(*again), once)
            << "a broken child leaves the control as it was";
    }
}

// ---- in a GUI --------------------------------------------------------------------------------

// "Out" is a meter of the plug-in (its clip at 0.9); the others are plain parameters.
const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Out"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale>
    <ExtensionClass>WCParamExtensionMeterWithClip<ClipLevel>0.9</ClipLevel></ExtensionClass></Parameter>
  <Parameter Name="Poly"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.95</InitialValue></Parameter>
  <Parameter Name="Multi"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.6</InitialValue></Parameter>
  <Parameter Name="Arc"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.75</InitialValue></Parameter>
  <Parameter Name="Pan"><Scale><ScaleType Type="linear"/><Minimum>-1</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>-0.5</InitialValue></Parameter>
  <Parameter Name="Bar"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.6</InitialValue></Parameter>
</ParamXML>)";

// Three meters of 16 x 160 (pictures, rectangles, sections with a value window), a plain arc, a
// bipolar one below its centre and a marker arc; a plain bar with a mark, a bipolar one below
// its centre and a marker bar.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="320" height="200"/></ViewRect_List>
  <Flag_List/>
  <Control_List>
    <cCONTROLLER Name="Out"><Class Type="VU"/><ControlRect top="20" left="10" width="16" height="160"/>
      <Direction>vertical</Direction>
      <ImageList Type="BackGround"><Image ResID="2030"><PositionRect top="20" left="10" width="16" height="160"/></Image></ImageList>
      <ImageList Type="ForeGround"><Image ResID="2031"><PositionRect top="20" left="10" width="16" height="160"/></Image></ImageList>
      <ParameterList><Param Name="Out" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Poly"><Class Type="PolygonVU"><ColorSwitchValues first="600" second="850"/></Class>
      <ControlRect top="20" left="36" width="16" height="160"/><Direction>vertical</Direction>
      <ParameterList><Param Name="Poly" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Multi"><Class Type="MultipartVU"><Image ResID="2030"><PositionRect top="20" left="62" width="16" height="160"/></Image>
        <MeterSections><Section from="0" to="500" red="60" green="140" blue="255" alpha="200"/>
          <Section from="500" to="1000" red="255" green="60" blue="200" alpha="200"/></MeterSections>
        <TextClipColor red="255" green="0" blue="0"/><ResetOnlyOnValueWin/></Class>
      <ControlRect top="20" left="62" width="40" height="176"/><Direction>vertical</Direction>
      <ParameterList><Param Name="Multi" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType>
        <TextWin Type="Value"><PositionRect top="162" left="0" width="40" height="14"/></TextWin></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Arc"><Class Type="Arc"><ArcColor red="80" green="200" blue="255"/><MarkLength>10</MarkLength>
        <MarkColor red="20" green="20" blue="20"/><ArcHighlightColor red="150" green="230" blue="255"/>
        <MarkThickness>2</MarkThickness></Class><ControlRect top="20" left="110" width="60" height="60"/>
      <ParameterList><Param Name="Arc" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Pan"><Class Type="Arc"><ArcColor red="80" green="200" blue="255"/>
        <ArcSwappedColor red="255" green="150" blue="40"/><ArcThickness>6</ArcThickness>
        <ArcSwappedHighlightColor red="255" green="190" blue="100"/></Class>
      <ControlRect top="20" left="180" width="60" height="60"/>
      <ParameterList><Param Name="Pan" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="ArcM"><Class Type="ArcMarker"><ArcColor red="90" green="90" blue="90"/>
        <MarkColor red="255" green="255" blue="0"/><MarkLength>22</MarkLength></Class>
      <ControlRect top="20" left="250" width="60" height="60"/>
      <ParameterList><Param Name="Arc" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Bar"><Class Type="Bar"><BarColor red="80" green="200" blue="255"/><BarMargin>2</BarMargin>
        <BarHighlightColor red="160" green="235" blue="255"/>
        <MarkThickness>2</MarkThickness></Class><ControlRect top="100" left="110" width="200" height="16"/>
      <ControlColor red="40" green="40" blue="40"/>
      <ParameterList><Param Name="Bar" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="PanBar"><Class Type="Bar"><BarColor red="80" green="200" blue="255"/>
        <BarSwappedColor red="255" green="150" blue="40"/>
        <BarSwappedHighlightColor red="255" green="200" blue="120"/></Class><ControlRect top="130" left="110" width="200" height="16"/>
      <ControlColor red="40" green="40" blue="40"/>
      <ParameterList><Param Name="Pan" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="BarM"><Class Type="BarMarker"><BarColor red="90" green="90" blue="90"/>
        <MarkColor red="255" green="255" blue="0"/><MarkThickness>4</MarkThickness></Class>
      <ControlRect top="160" left="110" width="200" height="16"/>
      <ParameterList><Param Name="Bar" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param></ParameterList></cCONTROLLER>
  </Control_List></GUI>)";

class Controls_Meters : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(m_Plugin.Start(m_Home.path(), "Meters", kParamXML, kGUI));
        m_GUI = m_Plugin.GUI();
        ASSERT_NO_FATAL_FAILURE(m_Plugin.OpenView(320, 200));
        // The meter's words: 0.95 (a clip) and then 0.5, so that its peak stands above its level.
        ml::WCMeterManager &meters = m_Plugin.Algorithm()->GetMeterManager();
        ASSERT_EQ(meters.GetNumMeters(), 1u);
        for (const double word : {0.95, 0.5})
            meters.GetExtensionMeter(0)->SetValueFromDSP(word);
        meters.UpdateDisplay();
        // The section meter went up to 0.8 before it fell back to 0.6.
        SetState("Multi", 800.0);
        SetState("Multi", 600.0);
    }
    void SetState(const char *param, double state) {
        ml::cALGORITHM *alg = m_Plugin.Algorithm();
        std::uint64_t id = 0;
        ASSERT_EQ(alg->GetParamIDFromName(param, id), 0) << param;
        auto *chain = alg->UpdateParamRequestState(id, state);
        alg->SendAndFreeBuffers(chain, 0, true);
        m_Plugin.Shell().Idle(0, 1);
    }
    template <typename T = ml::WCGUIControl>
    T &C(const char *name) const {
        auto *control = dynamic_cast<T *>(m_GUI->GetControlPtrByName(name));
        EXPECT_NE(control, nullptr) << name;
        return *control;
    }
    double State(const char *name) const { return C(name).GetRegistration(0).GetValue(); }
    // A full frame as YAML.
    std::string Frame() {
        ml::miGS::WCGraphicStreamBinaryWriter writer(0);
        m_GUI->SetNeedToRedrawGUI();
        EXPECT_EQ(m_GUI->GetDrawInstructions(writer), 0);
        ml::miGS::WCGraphicStreamToYAML yaml;
        EXPECT_EQ(yaml.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), 0);
        return yaml.GetYamlStr();
    }

    mirel_test::WCTestHome m_Home;
    mirel_test::WCGUIPlugin m_Plugin;
    ml::CStandardGUI_X *m_GUI = nullptr;
};

TEST_F(Controls_Meters, AFullFrameOfEveryKindMatchesTheReviewedYAMLAndPicture) {
    EXPECT_NEAR(C<ml::CVuMeter_X>("Out").GetPeakValue(), 0.95, 1e-6) << "the meter's own peak";
    EXPECT_TRUE(C<ml::CVuMeter_X>("Out").IsClipped());
    mirel_test::ExpectGoldenFrame(*m_GUI, kFolder, "meters");
}

TEST_F(Controls_Meters, AClickResetsAMetersPeakAndClipWhereItsXMLAllows) {
    // The section meter reaches full scale, a clip its value text shows in its clip colour.
    SetState("Multi", 1000.0);
    SetState("Multi", 600.0);
    const char *clipText = "color: {red: 255, green: 0, blue: 0";
    EXPECT_NE(Frame().find(clipText), std::string::npos);
    // Rows run in order. The section meter resets only on its value window (y 182..196).
    const struct {
        short x, y;
        const char *meter;
        double peak;
        bool clip;
    } clicks[] = {
        {18, 100, "Out", 0.0, false}, // the meter's peak at rest once the display refreshed
        {70, 100, "Multi", 1.0, true},
        {70, 190, "Multi", 0.6, false},
    };
    for (const auto &row : clicks) {
        m_Plugin.Down(row.x, row.y);
        m_Plugin.Up(row.x, row.y);
        m_Plugin.Algorithm()->GetMeterManager().UpdateDisplay();
        m_Plugin.Shell().Idle(0, 1);
        if (std::strcmp(row.meter, "Out") == 0) {
            EXPECT_NEAR(C<ml::CVuMeter_X>(row.meter).GetPeakValue(), row.peak, 1e-6);
            EXPECT_EQ(C<ml::CVuMeter_X>(row.meter).IsClipped(), row.clip);
        } else {
            EXPECT_NEAR(C<ml::CMultipartVuMeter>(row.meter).GetPeakValue(), row.peak, 1e-6)
                << row.y;
            EXPECT_EQ(C<ml::CMultipartVuMeter>(row.meter).IsClipped(), row.clip) << row.y;
        }
    }
    double peak = 0.0;
    ASSERT_EQ(m_Plugin.Algorithm()->GetMeterManager().GetMeterPeak(0, peak), 0);
    EXPECT_DOUBLE_EQ(peak, 0.0) << "the click reset the meter manager's peak too";
    EXPECT_EQ(Frame().find(clipText), std::string::npos);
}

TEST_F(Controls_Meters, ADraggedArcOrBarShowsItsHighlightColourAndMovesByItsSize) {
    // A fast drag moves the whole scale over the control's size: 60 pixels for an arc upwards,
    // 200 for a bar to the right. The bipolar ones stay below their middle, so swapped.
    const struct {
        const char *control;
        short x, y, dx, dy;
        double state;
        const char *color;
    } drags[] = {
        {"Arc", 140, 50, 0, -6, 850.0, "{red: 150, green: 230, blue: 255"},
        {"Pan", 210, 50, 0, 12, 50.0, "{red: 255, green: 190, blue: 100"},
        {"Bar", 150, 108, 40, 0, 800.0, "{red: 160, green: 235, blue: 255"},
        {"PanBar", 150, 138, 20, 0, 150.0, "{red: 255, green: 200, blue: 120"},
    };
    for (const auto &row : drags) {
        const short x = static_cast<short>(row.x + row.dx), y = static_cast<short>(row.y + row.dy);
        m_Plugin.Down(row.x, row.y);
        m_Plugin.Move(x, y);
        EXPECT_NE(Frame().find(row.color), std::string::npos) << row.control;
        m_Plugin.Up(x, y);
        EXPECT_NEAR(State(row.control), row.state, 1e-6) << row.control;
    }
}

} // namespace
