// The buttons, toggles and their kin, made by the factory from their "Class" type: their XML,
// one GUI holding every kind drawn as a reviewed frame and picture, and what a click or a drag
// does to each.

#include <cmath>
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/WCGUIPlugin.h"
#include "tests/support/WCGUITestTools.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCGoldenPicture.h"
#include "tests/support/WCTestHome.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/Controls/CDragHandle.h"
#include "Code/GUI/Controls/WCTab.h"
#include "Code/GUI/WUControlFactories.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/PluginViewManager.h"
#include "view/linux/WUHeadlessView.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

const std::string kFolder = MIREL_GUI_TEST_DATA "/controls";

// The text without the line breaks and indents of its pretty printing.
std::string Flat(const std::string &text) {
    std::string flat;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n') {
            flat += text[i];
            continue;
        }
        while (i + 1 < text.size() && (text[i + 1] == ' ' || text[i + 1] == '\n'))
            ++i;
    }
    return flat;
}

std::unique_ptr<ml::WCGUIControl> Make(const char *type) {
    return std::unique_ptr<ml::WCGUIControl>(
        ml::CreateDefaultControls(ml::WCFixedString<31>(type), nullptr));
}

// ---- XML -------------------------------------------------------------------------------------

TEST(Controls_Buttons_XML, EachKindWritesItsClassBackAsReadAndABrokenChildChangesNothing) {
    const struct {
        const char *type;
        const char *children;
        const char *broken;
    } rows[] = {
        {"TextKnob", "<Legend>dB</Legend>", nullptr},
        {"TextEntry", R"(<Image Type="Pushed" ResID="2011"/><Image Type="Released" ResID="2010"/>)",
         R"(<Image Type="Pushed" ResID="x"/>)"},
        {"FixedStateToggleWithOff", R"(<Image Type="Pushed" ResID="2011"/>)",
         R"(<Image Type="Released" ResID="x"/>)"},
        {"AutoTrim", R"(<Image Type="Released" ResID="2010"/>)",
         R"(<Image Type="Pushed" ResID=""/>)"},
        {"RadioButton",
         R"(<DontUseGraphData>true</DontUseGraphData><NumVertDivisions>2</NumVertDivisions>)"
         R"(<NumHorizDivisions>3</NumHorizDivisions><DivisionList><Division top="0" left="0" width="10" height="10"/>)"
         R"(<Division top="0" left="10" width="10" height="10"/></DivisionList>)"
         R"(<ButtonsDrawArea top="5" left="6" width="70" height="20"/>)",
         "<NumVertDivisions>none</NumVertDivisions>"},
        {"DragHandle", R"(<MovementRect top="0" left="0" width="200" height="50"/>)",
         R"(<MovementRect top="0" left="0" width="-4" height="50"/>)"},
        {"Tab",
         R"(<TabGroup>Pages</TabGroup><Group>Main</Group><Control>Extra</Control><Name>Main</Name>)"
         R"(<ViewRect top="24" left="0" width="320" height="96"/><Image Type="Pushed" ResID="2011"/>)",
         R"(<ViewRect top="x" left="0" width="320" height="96"/>)"},
        {"ControlForAutomation", "<DiscreteStep>250</DiscreteStep>",
         "<DiscreteStep>a lot</DiscreteStep>"},
        {"NoGUI", "", nullptr},
        {"Scrollbar", "<Legend>x</Legend>", nullptr},
        {"IncDec",
         "<Rates>200 "
         "50</Rates><Resolution>2</Resolution><WhenToChangeRates>1000</WhenToChangeRates>",
         "<Rates>200 -5</Rates>"},
        {"ScrollerButton", "<IncDecTypeZoom>true</IncDecTypeZoom><Rates>100</Rates>",
         "<Rates>fast</Rates>"},
        {"LRB",
         R"(<Image Type="LRB_LEFT_ON" ResID="2011"/><LeftBox top="0" left="0" width="48" height="24"/>)",
         R"(<Image Type="LRB_MIDDLE" ResID="2011"/>)"},
        {"MFTextKnob", R"(<Edit>true</Edit><Image Type="Frame" ResID="2010"/>)",
         R"(<Image Type="Frame" ResID="none"/>)"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.type);
        const std::string cls =
            std::string("<Class Type=\"") + row.type + "\">" + row.children + "</Class>";
        auto control = Make(row.type);
        ASSERT_NE(control, nullptr);
        ASSERT_EQ(
            control->ReadFromXMLWithAlg(
                mirel_test::ParseXML("<cCONTROLLER Name=\"C\">" + cls + "</cCONTROLLER>").get(),
                nullptr),
            0);
        const std::string once = mirel_test::WrittenXML(*control);
        EXPECT_NE(Flat(once).find(row.children), std::string::npos) << once;
        auto again = Make(row.type);
        ASSERT_EQ(again->ReadFromXMLWithAlg(mirel_test::ParseXML(once).get(), nullptr), 0);
        EXPECT_EQ(mirel_test::WrittenXML(*again), once);
        if (row.broken == nullptr)
            continue;
        EXPECT_NE(again->ReadFromXMLWithAlg(
                      mirel_test::ParseXML(std::string("<cCONTROLLER Name=\"C\"><Class Type=\"") +
                                           row.type + "\">" + row.broken + "</Class></cCONTROLLER>")
                          .get(),
                      nullptr),
                  0);
        EXPECT_EQ(mirel_test::WrittenXML(*again), once)
            << "a broken child leaves the control as it was";
    }
}

// ---- in a GUI --------------------------------------------------------------------------------

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayGainWithDB</DisplayFunction></Parameter>
  <Parameter Name="Mode"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>3</Maximum>
    <NumberOfStates>4</NumberOfStates></Scale><InitialValue>2</InitialValue></Parameter>
  <Parameter Name="Bank"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale><InitialValue>1</InitialValue></Parameter>
  <Parameter Name="Bank2"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Left"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.01</Resolution></Scale><InitialValue>0.25</InitialValue>
    <DisplayFunction>DisplayFloat2</DisplayFunction></Parameter>
  <Parameter Name="Right"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.01</Resolution></Scale><InitialValue>0.75</InitialValue>
    <DisplayFunction>DisplayFloat2</DisplayFunction></Parameter>
  <Parameter Name="Pos"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Count"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>100</Maximum>
    <NumberOfStates>101</NumberOfStates></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Link"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Trim"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <NumberOfStates>2</NumberOfStates></Scale><InitialValue>1</InitialValue></Parameter>
</ParamXML>)";

// Two tabs over the pages "Main" and "More" (More hidden); on Main a row of four radio buttons
// (the third lit), a typed value, two switches to a fixed state (one there, one off) and an
// auto-trim switch (on); outside the pages a text knob, two fields in one box, a handle that
// slides in its rect, a scroll bar with its arrow below it, a step button, a channel chooser
// (left chosen), and a
// control for automation and one without picture, which would show red if they drew.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="320" height="200"/></ViewRect_List>
  <Background_Color red="40" green="44" blue="52" alpha="255"/>
  <Control_Groups><Group Name="Main"/><Group Name="More"/></Control_Groups>
  <Control_List>
    <cCONTROLLER Name="TabMain"><Class Type="Tab"><TabGroup>Pages</TabGroup><Group>Main</Group>
      <Name>Main</Name><ViewRect top="24" left="0" width="320" height="96"/></Class>
      <ControlRect top="0" left="0" width="80" height="24"/></cCONTROLLER>
    <cCONTROLLER Name="TabMore"><Class Type="Tab"><TabGroup>Pages</TabGroup><Group>More</Group>
      <Name>More</Name><ViewRect top="24" left="0" width="320" height="96"/></Class>
      <ControlRect top="0" left="80" width="80" height="24"/></cCONTROLLER>
    <cCONTROLLER Name="Mode"><Class Type="RadioButton"><NumHorizDivisions>4</NumHorizDivisions></Class>
      <ControlRect top="36" left="10" width="160" height="30"/>
      <ParameterList><Param Name="Mode" UpdateGraphics="true"><RegisterType>RadioButton</RegisterType></Param></ParameterList>
      <Group Name="Main"/></cCONTROLLER>
    <cCONTROLLER Name="Entry"><Class Type="TextEntry"/>
      <ControlRect top="80" left="10" width="100" height="24"/>
      <ParameterList><Param Name="Gain" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="0" green="0" blue="0"/>
          <PositionRect top="0" left="0" width="100" height="24"/></TextWin></Param></ParameterList>
      <Group Name="Main"/></cCONTROLLER>
    <cCONTROLLER Name="Fixed"><Class Type="FixedStateToggleWithOff"/>
      <ControlRect top="36" left="190" width="48" height="24"/>
      <ParameterList><Param Name="Bank" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType>
        <RegisterType State="500">FixedState</RegisterType>
        <BitmapWin><ImageList><Image ResID="2010"/><Image ResID="2011"/><Image ResID="2010"/></ImageList></BitmapWin>
      </Param></ParameterList><Group Name="Main"/></cCONTROLLER>
    <cCONTROLLER Name="FixedOff"><Class Type="FixedStateToggleWithOff"/>
      <ControlRect top="36" left="250" width="48" height="24"/>
      <ParameterList><Param Name="Bank2" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType>
        <RegisterType State="500">FixedState</RegisterType>
        <BitmapWin><ImageList><Image ResID="2010"/><Image ResID="2011"/><Image ResID="2010"/></ImageList></BitmapWin>
      </Param></ParameterList><Group Name="Main"/></cCONTROLLER>
    <cCONTROLLER Name="Trim"><Class Type="AutoTrim"/>
      <ControlRect top="80" left="190" width="48" height="24"/>
      <ParameterList><Param Name="Trim" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType>
        <BitmapWin><ImageList><Image ResID="2010"/><Image ResID="2011"/></ImageList></BitmapWin>
      </Param></ParameterList><Group Name="Main"/></cCONTROLLER>
    <cCONTROLLER Name="Hidden"><Class Type="RadioButton"><NumVertDivisions>2</NumVertDivisions></Class>
      <ControlRect top="36" left="10" width="40" height="60"/>
      <ParameterList><Param Name="Mode" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType></Param></ParameterList>
      <Group Name="More"/></cCONTROLLER>
    <cCONTROLLER Name="Knob"><Class Type="TextKnob"/>
      <ControlRect top="128" left="10" width="80" height="20"/>
      <ParameterList><Param Name="Gain" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="230" green="230" blue="230"/>
          <PositionRect top="0" left="0" width="80" height="20"/></TextWin></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Handle"><Class Type="DragHandle"><MovementRect top="120" left="150" width="160" height="40"/></Class>
      <ControlColor red="90" green="160" blue="230"/>
      <ControlRect top="128" left="190" width="40" height="20"/></cCONTROLLER>
    <cCONTROLLER Name="Auto"><Class Type="ControlForAutomation"><DiscreteStep>250</DiscreteStep></Class>
      <ControlColor red="255" green="0" blue="0"/>
      <ParameterList><Param Name="Mode"><RegisterType>MouseDown</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Fields"><Class Type="MFTextKnob"><Edit>true</Edit></Class>
      <ControlRect top="0" left="170" width="140" height="24"/>
      <ParameterList><Param Name="Left" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="230" green="230" blue="230"/>
          <PositionRect top="2" left="2" width="66" height="20"/></TextWin></Param>
        <Param Name="Right" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="230" green="230" blue="230"/>
          <PositionRect top="2" left="72" width="66" height="20"/></TextWin></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Scroll"><Class Type="Scrollbar"/><ControlRect top="30" left="306" width="12" height="90"/>
      <ParameterList><Param Name="Pos" UpdateGraphics="true"><RegisterType>ScrollY</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Step"><Class Type="IncDec"><Rates>200 50</Rates><WhenToChangeRates>1000</WhenToChangeRates></Class>
      <ControlColor red="200" green="200" blue="200"/><ControlRect top="80" left="120" width="24" height="24"/>
      <ParameterList><Param Name="Count" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Down"><Class Type="ScrollerButton"><Resolution>100</Resolution></Class>
      <ControlColor red="120" green="125" blue="135"/><ControlRect top="120" left="306" width="12" height="12"/>
      <ParameterList><Param Name="Pos"><RegisterType>ScrollY</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Link"><Class Type="LRB"><Image Type="LRB_LEFT_OFF" ResID="2010"/><Image Type="LRB_LEFT_ON" ResID="2011"/>
      <Image Type="LRB_RIGHT_OFF" ResID="2010"/><Image Type="LRB_RIGHT_ON" ResID="2011"/>
      <LeftBox top="168" left="10" width="48" height="24"/><RightBox top="168" left="62" width="48" height="24"/></Class>
      <ControlRect top="168" left="10" width="100" height="24"/>
      <ParameterList><Param Name="Link" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Silent"><Class Type="NoGUI"/>
      <ControlColor red="255" green="0" blue="0"/><ControlRect top="128" left="100" width="40" height="20"/></cCONTROLLER>
  </Control_List></GUI>)";

class Controls_Buttons : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(m_Plugin.Start(m_Home.path(), "Buttons", kParamXML, kGUI));
        m_GUI = m_Plugin.GUI();
        ASSERT_NO_FATAL_FAILURE(m_Plugin.OpenView(320, 200));
        // The value windows show their values from the first idle on.
        m_Plugin.Shell().Idle(0, 1);
    }
    ml::WCGUIControl &C(const char *name) const {
        ml::WCGUIControl *control = m_GUI->GetControlPtrByName(name);
        EXPECT_NE(control, nullptr) << name;
        return *control;
    }
    double State(const char *name) const { return C(name).GetRegistration(0).GetValue(); }

    mirel_test::WCTestHome m_Home;
    mirel_test::WCGUIPlugin m_Plugin;
    ml::CStandardGUI_X *m_GUI = nullptr;
};

TEST_F(Controls_Buttons, AFullFrameOfEveryKindMatchesTheReviewedYAMLAndPicture) {
    mirel_test::ExpectGoldenFrame(*m_GUI, kFolder, "buttons");
}

TEST_F(Controls_Buttons, AClickSetsWhatEachKindSetsInTurn) {
    // Rows run in order: each starts from the state the rows before it left.
    const struct {
        short x, y;
        const char *control;
        double state;
    } clicks[] = {
        {20, 50, "Mode", 0.0},        // the first radio cell
        {160, 50, "Mode", 1000.0},    // the last
        {70, 50, "Mode", 333.0},      // the second: a third of the way
        {214, 48, "Fixed", 0.0},      // at its fixed state: off
        {214, 48, "Fixed", 500.0},    // and back to it
        {274, 48, "FixedOff", 500.0}, // off: to the fixed state
        {214, 92, "Trim", 0.0},       // the auto-trim switch steps as a toggle
        {312, 100, "Scroll", 250.0},  // the track below the thumb pages down
        {312, 35, "Scroll", 0.0},     // and above it back
        {312, 126, "Scroll", 100.0},  // its arrow steps it by 100 of the parameter's steps
        {80, 180, "Link", 500.0},     // the right box chooses right
        {80, 180, "Link", 1000.0},    // and again all channels
        {30, 180, "Link", 0.0},       // the left box left
    };
    for (const auto &row : clicks) {
        m_Plugin.Click(row.x, row.y);
        EXPECT_NEAR(State(row.control), row.state, 0.5) << row.control << " at " << row.x;
    }
}

TEST_F(Controls_Buttons, ATabShowsItsPageAndHidesTheOthers) {
    auto &main = dynamic_cast<ml::WCTab &>(C("TabMain"));
    auto &more = dynamic_cast<ml::WCTab &>(C("TabMore"));
    ASSERT_TRUE(main.IsChosen() && !more.IsChosen()) << "the first tab of the row at the start";
    EXPECT_TRUE(C("Hidden").IsHidden(true));
    m_Plugin.Click(120, 12);
    EXPECT_TRUE(more.IsChosen());
    EXPECT_FALSE(main.IsChosen());
    EXPECT_FALSE(C("Hidden").IsHidden(true));
    EXPECT_TRUE(C("Mode").IsHidden(true));
    EXPECT_EQ(main.GetDrawableRect().left, 0) << "a tab without a movement rect stays put";

    // A chosen tab hidden with "HideChildrenWhenTabHidden" takes its page with it.
    more.SetControlFlag(ml::eCF_HideChildrenWhenTabHidden, true);
    more.Hide();
    EXPECT_TRUE(C("Hidden").IsHidden(true));
    more.Show();
    EXPECT_FALSE(C("Hidden").IsHidden(true));
}

TEST_F(Controls_Buttons, AHandleFollowsTheMouseInsideItsMovementRect) {
    auto &handle = C("Handle");
    m_Plugin.Down(200, 138);
    m_Plugin.Move(230, 126); // 30 right and 12 up, 4 more than the rect allows
    EXPECT_EQ(handle.GetDrawableRect(), ml::WURect<short>(120, 220, 140, 260));
    m_Plugin.Move(330, 200); // far beyond: stopped at the rect's right and bottom
    EXPECT_EQ(handle.GetDrawableRect(), ml::WURect<short>(140, 270, 160, 310));
    m_Plugin.Up(330, 200);
}

TEST_F(Controls_Buttons, AHeldScrollThumbFollowsTheMouseToTheEndOfItsTrack) {
    m_Plugin.Down(312, 40); // on the thumb, 10 below its top
    m_Plugin.Move(312, 70);
    EXPECT_NEAR(State("Scroll"), 30 * 1000.0 / 68, 0.5) << "30 of the 68 pixels it travels";
    m_Plugin.Move(312, 200);
    EXPECT_DOUBLE_EQ(State("Scroll"), 1000.0);
    m_Plugin.Up(312, 200);
}

TEST_F(Controls_Buttons, AHeldStepButtonRepeatsOnTheViewsTimerFasterAfterItsTimeAndStopsOnRelease) {
    auto count = [this] { return std::lround(State("Step") / 10.0); }; // one step is 10 states
    m_Plugin.Down(130, 90);
    EXPECT_EQ(count(), 1) << "the press steps once";
    ASSERT_EQ(PVM::AdvanceTime(1000), 0); // every 200 ms: five more
    EXPECT_EQ(count(), 6);
    ASSERT_EQ(PVM::AdvanceTime(100), 0); // every 50 ms from the first second on
    EXPECT_EQ(count(), 8);
    m_Plugin.Up(130, 90);
    ASSERT_EQ(PVM::AdvanceTime(500), 0);
    EXPECT_EQ(count(), 8);
}

TEST_F(Controls_Buttons, ADragInAMultiFieldMovesTheFieldPressedAlone) {
    auto &fields = C("Fields");
    const double left = fields.GetRegistration(0).GetValue();
    const double right = fields.GetRegistration(1).GetValue();
    m_Plugin.Down(280, 12);
    m_Plugin.Move(280, 2);
    m_Plugin.Up(280, 2);
    EXPECT_EQ(fields.GetRegistration(0).GetValue(), left);
    EXPECT_GT(fields.GetRegistration(1).GetValue(), right);
}

TEST_F(Controls_Buttons, AClickOnTheEntryOpensTheBoxOverItsValueAndTheTextSetsIt) {
    m_Plugin.Click(50, 90);
    PVM::WSTextBoxState box;
    ASSERT_EQ(PVM::GetTextBoxState(box), 0);
    ASSERT_TRUE(box.m_active);
    EXPECT_EQ(box.m_topLeft, ml::WCPoint2D<short>(10, 80));
    EXPECT_FALSE(box.m_options.m_text.empty()) << "the value shown";
    ASSERT_EQ(PVM::CommitTextBox("3.5"), 0);
    double gain = 0.0;
    m_Plugin.Algorithm()->GetParamRealWorld(0, gain);
    EXPECT_DOUBLE_EQ(gain, 3.5);
}

} // namespace
