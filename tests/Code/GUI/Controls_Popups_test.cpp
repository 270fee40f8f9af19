// Popups and digit displays in a started plug-in's GUI: their XML written back, a full frame
// against reviewed pictures, a click's menu and the state it chooses, and the digits a value
// text becomes.

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/WCGUIPlugin.h"
#include "tests/support/WCGUITestTools.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCGoldenPicture.h"
#include "tests/support/WCTestHome.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/Controls/CDigitDisplay_X.h"
#include "Code/GUI/Controls/CMarker_X.h"
#include "Code/GUI/Controls/WCDynamicPopup.h"
#include "Code/GUI/WUControlFactories.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"
#include "view/linux/WUHeadlessView.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

enum EId : std::uint64_t { eMode, eGain, eLevel, eShape, eSource, eX, eY, eBand };

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Mode"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>3</Maximum>
    <NumberOfStates>4</NumberOfStates></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayRealWorldString</DisplayFunction><DisplayStrings>
    <RealWorld Value="0" String="Off"/><RealWorld Value="1" String="Low"/>
    <RealWorld Value="2" String="Mid"/><RealWorld Value="3" String="High"/></DisplayStrings></Parameter>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum><Maximum>12</Maximum>
    <Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayGainWithDB</DisplayFunction></Parameter>
  <Parameter Name="Level"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>100</Maximum>
    <Resolution>1</Resolution></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayFloat0</DisplayFunction></Parameter>
  <Parameter Name="Shape"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayRealWorldString</DisplayFunction><DisplayStrings>
    <RealWorld Value="0" String="Sine"/><RealWorld Value="1" String="Saw"/>
    <RealWorld Value="2" String="Square"/></DisplayStrings></Parameter>
  <Parameter Name="Source"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>3</Maximum>
    <NumberOfStates>4</NumberOfStates></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayFloat0</DisplayFunction></Parameter>
  <Parameter Name="X"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.5</InitialValue></Parameter>
  <Parameter Name="Y"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.001</Resolution></Scale><InitialValue>0.5</InitialValue></Parameter>
  <Parameter Name="Band"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <NumberOfStates>2</NumberOfStates></Scale><InitialValue>0</InitialValue></Parameter>
</ParamXML>)";

#define MIREL_DIGITS                                                                               \
    R"(<Image ResID="2050"/><Image ResID="2051"/><Image ResID="2052"/><Image ResID="2053"/>)"      \
    R"(<Image ResID="2054"/><Image ResID="2055"/><Image ResID="2056"/><Image ResID="2057"/>)"      \
    R"(<Image ResID="2058"/><Image ResID="2059"/><Image ResID="2060"/><Image ResID="2061"/>)"      \
    R"(<Image ResID="2062"/>)"

// A popup clicked open (below it), one opened by the document's popup path at the mouse without
// check marks, a gain in digits with its sign on a dark field, a level in three digits; below, a
// dynamic popup (a switch picture), a modulation source chooser whose names the test sets, and
// one whose items the algorithm would give; at the bottom a marker (the '+' digit) in its field.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="240" height="180"/></ViewRect_List>
  <Background_Color red="28" green="30" blue="34" alpha="255"/>
  <Control_List>
    <cCONTROLLER Name="Mode"><Class Type="Popup"/>
      <ControlRect top="10" left="10" width="80" height="24"/><ControlColor red="62" green="66" blue="75"/>
      <ParameterList><Param Name="Mode" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType>
        <RegisterType>MouseWheelVertical</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="200" green="204" blue="210"/>
          <PositionRect top="4" left="0" width="80" height="16"/></TextWin></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="ModeAtMouse"><Class Type="Popup"/><Flags><PopupAppearOnMousePos/><PopupNoCheckmark/></Flags>
      <ControlRect top="46" left="10" width="80" height="24"/><ControlColor red="38" green="41" blue="47"/>
      <ParameterList><Param Name="Mode" UpdateGraphics="true"><RegisterType>PopUp</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="240" green="150" blue="40"/>
          <PositionRect top="4" left="0" width="80" height="16"/></TextWin></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="GainDigits"><Class Type="DigitDisplay">)" MIREL_DIGITS R"(
        <AlwaysShowSign/><DigitsAlignment>Right</DigitsAlignment><Color red="17" green="18" blue="21"/>
        <DigitDrawArea top="2" left="2" width="116" height="20"/></Class>
      <ControlRect top="10" left="110" width="120" height="24"/>
      <ParameterList><Param Name="Gain" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="LevelDigits"><Class Type="DigitDisplay">)" MIREL_DIGITS R"(
        <MaximumDisplayDigits>3</MaximumDisplayDigits><AlwaysDisplayMaximumDigits/>
        <DigitsAlignment>Left</DigitsAlignment><DigitList><Digit>0</Digit><Digit>1</Digit><Digit>2</Digit>
        <Digit>3</Digit><Digit>4</Digit><Digit>5</Digit><Digit>6</Digit><Digit>7</Digit><Digit>8</Digit>
        <Digit>9</Digit></DigitList></Class>
      <ControlRect top="46" left="110" width="120" height="24"/>
      <ParameterList><Param Name="Level" UpdateGraphics="true"><RegisterType>DisplayOnly</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Shape"><Class Type="DynamicPopup"><Image Type="Pushed" ResID="2011"/>
        <Image Type="Released" ResID="2010"/></Class><ControlRect top="82" left="10" width="48" height="24"/>
      <ParameterList><Param Name="Shape" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Source"><Class Type="DynamicPopupModSource"/>
      <ControlRect top="82" left="70" width="100" height="24"/><ControlColor red="62" green="66" blue="75"/>
      <ParameterList><Param Name="Source" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="12" red="200" green="204" blue="210"/>
          <PositionRect top="4" left="0" width="100" height="16"/></TextWin></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="ShapeByAlg"><Class Type="DynamicPopupWithAlg"><Image Type="Released" ResID="2011"/></Class>
      <ControlRect top="82" left="182" width="48" height="24"/>
      <ParameterList><Param Name="Shape" UpdateGraphics="true"><RegisterType>MouseDown</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Point"><Class Type="Marker"><Image ResID="2062"/>
        <ClippingRect top="120" left="10" width="220" height="50"/><NoHideMouse/>
        <TextValueOffset hOffset="14" vOffset="0"/><Cursor ResID="2020"/></Class>
      <ControlRect top="0" left="0" width="12" height="20"/>
      <ParameterList><Param Name="X" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param>
        <Param Name="Y" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param>
        <Param Name="Band"><RegisterType>MouseDown</RegisterType></Param></ParameterList></cCONTROLLER>
  </Control_List></GUI>)";

const std::vector<std::string> kSources = {"LFO 1", "LFO 2", "Envelope", "Random"};

const std::string kData = MIREL_GUI_TEST_DATA "/controls";

class PopupsGUI : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(m_Plugin.Start(m_Home.path(), "Popups", kParamXML, kGUI));
        m_GUI = m_Plugin.GUI();
        ASSERT_NO_FATAL_FAILURE(m_Plugin.OpenView(240, 80));
        dynamic_cast<ml::WCDynamicPopup &>(Control("Source")).SetMenuItems(kSources);
    }
    ml::WCGUIControl &Control(const char *name) const {
        ml::WCGUIControl *control = m_GUI->GetControlPtrByName(name);
        EXPECT_NE(control, nullptr) << name;
        return *control;
    }
    void Send(ml::WCGUIControl::BUFFER_HEADER *chain) {
        m_Plugin.Algorithm()->SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
    }
    void Set(EId id, double state) {
        Send(m_Plugin.Algorithm()->UpdateParamRequestState(id, state));
    }
    double State(EId id) const { return m_Plugin.Algorithm()->GetParam(id)->GetState(0); }
    // A click at (x, y), dragged by (dx, dy) before its release when they are not 0.
    void Click(short x, short y, short dx = 0, short dy = 0, bool twice = false) {
        PVM::WCEventData event;
        event.SetMouseClickCount(twice ? PVM::eClickDouble : PVM::eClickSingle);
        event.SetMouseButtonPressed(PVM::eMouseButtonLeft, true);
        event.SetMouseLocation({x, y});
        event.SetMouseDownLocation({x, y});
        EXPECT_EQ(m_GUI->DoMouseDown(event), 0);
        if (dx != 0 || dy != 0) {
            event.SetMouseLocation({static_cast<short>(x + dx), static_cast<short>(y + dy)});
            EXPECT_EQ(m_GUI->DoMouseMove(event), 0);
        }
        event.SetMouseButtonPressed(PVM::eMouseButtonLeft, false);
        EXPECT_EQ(m_GUI->DoMouseUp(event), 0);
    }

    mirel_test::WCTestHome m_Home;
    mirel_test::WCGUIPlugin m_Plugin;
    ml::CStandardGUI_X *m_GUI = nullptr;
};

TEST_F(PopupsGUI, EveryKindWritesItsClassBackAndABrokenChildChangesNothing) {
    const struct {
        const char *control;
        const char *type;
        const char *good;   // a child of its class, as written
        const char *broken; // in its place, what does not read
        int code;
    } cases[] = {
        {"Mode", "Popup", nullptr, nullptr, 0},
        {"Source", "DynamicPopupModSource", nullptr, nullptr, 0},
        {"ShapeByAlg", "DynamicPopupWithAlg", nullptr, nullptr, 0},
        {"Point", "Marker", R"(<Cursor ResID="2020"/>)", R"(<Cursor ResID="arrow"/>)",
         ml::eNotANumber},
        {"Shape", "DynamicPopup", R"(<Image Type="Pushed" ResID="2011"/>)",
         R"(<Image Type="Pushed" ResID="many"/>)", ml::eNotANumber},
        {"GainDigits", "DigitDisplay", "<DigitsAlignment>Right</DigitsAlignment>",
         "<DigitsAlignment>Middle</DigitsAlignment>", ml::eValueNotFound},
        {"LevelDigits", "DigitDisplay", "<MaximumDisplayDigits>3</MaximumDisplayDigits>",
         "<MaximumDisplayDigits>three</MaximumDisplayDigits>", ml::eNotANumber},
        {"LevelDigits", "DigitDisplay", "<Digit>9</Digit>", "<Digit>99</Digit>",
         ml::eValueWrongSize},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.control);
        const std::string written = mirel_test::WrittenXML(Control(row.control));
        ml::WCFixedString<31> type(row.type);
        std::unique_ptr<ml::WCGUIControl> again(ml::CreateDefaultControls(type, m_GUI));
        ASSERT_EQ(
            again->ReadFromXMLWithAlg(mirel_test::ParseXML(written).get(), m_Plugin.Algorithm()),
            0);
        EXPECT_EQ(mirel_test::WrittenXML(*again), written);
        if (row.good == nullptr)
            continue;
        std::string broken = written;
        const std::size_t at = broken.find(row.good);
        ASSERT_NE(at, std::string::npos) << written;
        broken.replace(at, std::strlen(row.good), row.broken);
        std::unique_ptr<ml::WCGUIControl> kept(ml::CreateDefaultControls(type, m_GUI));
        ASSERT_EQ(
            kept->ReadFromXMLWithAlg(mirel_test::ParseXML(written).get(), m_Plugin.Algorithm()), 0);
        EXPECT_EQ(
            kept->UpdateFromXMLWithAlg(mirel_test::ParseXML(broken).get(), m_Plugin.Algorithm()),
            row.code);
        EXPECT_EQ(mirel_test::WrittenXML(*kept), written);
    }
}

TEST_F(PopupsGUI, AFullFrameShowsTheChosenStatesAndTheValuesInDigits) {
    Set(eMode, 2000.0 / 3.0);
    Set(eGain, 1000.0 * 20.5 / 36.0); // -3.5 dB
    Set(eLevel, 70.0);                // 7
    Set(eSource, 2000.0 / 3.0);       // "Envelope"
    Set(eX, 250.0);
    Set(eY, 800.0);
    m_Plugin.Shell().Idle(0, 1);
    mirel_test::ExpectGoldenFrame(*m_GUI, kData, "popups");
}

TEST_F(PopupsGUI, AClickOpensTheMenuOfTheParametersStatesOrTheRunTimeItemsAndAChoiceSetsIt) {
    const std::vector<std::string> modes = {"Off", "Low", "Mid", "High"};
    const std::vector<std::string> shapes = {"Sine", "Saw", "Square"};
    const struct {
        const char *choice;
        short x, y;
        EId param;
        double state;                          // afterwards
        ml::WCPoint2D<short> at;               // where the menu opened
        int checked;                           // the item shown checked, -1 none
        const std::vector<std::string> *items; // the titles shown
    } cases[] = {
        // Below the control, the state then checked.
        {"High", 20, 20, eMode, 1000.0, {10, 34}, 0, &modes},
        {nullptr, 20, 20, eMode, 1000.0, {10, 34}, 3, &modes},    // cancelled: nothing changes
        {"Low", 30, 50, eMode, 1000.0 / 3, {30, 50}, -1, &modes}, // at the mouse, no checks
        {"Square", 20, 90, eShape, 1000.0, {10, 106}, 0, &shapes},
        {"Envelope", 80, 90, eSource, 2000.0 / 3, {70, 106}, 0, &kSources},
        {"Saw", 190, 90, eShape, 500.0, {182, 106}, 2, &shapes}, // the algorithm gives none
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.choice != nullptr ? row.choice : "cancelled");
        PVM::ClearShownMenus();
        ASSERT_EQ(PVM::SetNextMenuChoice(m_Plugin.View(), row.choice), 0);
        Click(row.x, row.y);
        EXPECT_NEAR(State(row.param), row.state, 1e-9);
        ASSERT_EQ(PVM::GetShownMenus().size(), 1u);
        const PVM::WSShownMenu &shown = PVM::GetShownMenus()[0];
        EXPECT_EQ(shown.m_location, row.at);
        ASSERT_EQ(shown.m_items.size(), row.items->size());
        for (std::size_t i = 0; i < row.items->size(); ++i) {
            EXPECT_EQ(shown.m_items[i].m_Title, (*row.items)[i]);
            EXPECT_EQ(shown.m_items[i].IsChecked(), static_cast<int>(i) == row.checked) << i;
        }
    }
}

TEST_F(PopupsGUI, AWheelNotchStepsOneStateHoweverFastTheWheelTurns) {
    PVM::WCEventData event;
    ml::WCGUIControl &mode = Control("Mode");
    for (const double expected : {1000.0 / 3, 2000.0 / 3}) {
        Send(mode.MouseWheel(event, 0.0, 450.0));
        EXPECT_NEAR(State(eMode), expected, 1e-9);
    }
    Send(mode.MouseWheel(event, 0.0, -1.0));
    EXPECT_NEAR(State(eMode), 1000.0 / 3, 1e-9);
}

TEST_F(PopupsGUI, AMarkerStandsWhereItsValuesPlaceItAndADragOverItsFieldMovesThem) {
    auto &marker = dynamic_cast<ml::CMarker_X &>(Control("Point"));
    const struct {
        double x, y;
        ml::WCPoint2D<short> at;
    } cases[] = {{500.0, 500.0, {120, 145}}, {0.0, 0.0, {10, 170}}, {1000.0, 1000.0, {230, 120}}};
    for (const auto &row : cases) {
        Set(eX, row.x);
        Set(eY, row.y);
        m_Plugin.Shell().Idle(0, 1);
        EXPECT_EQ(marker.GetMarkerPosition(), row.at) << row.x << "," << row.y;
        EXPECT_EQ(marker.GetDrawableRect().left, row.at.x - 6) << "its rect follows";
    }
    Set(eX, 500.0);
    Set(eY, 500.0);
    m_Plugin.Shell().Idle(0, 1);
    Click(120, 145, 22, -5); // a tenth of the field's width and height, fast
    EXPECT_NEAR(State(eX), 600.0, 1e-6);
    EXPECT_NEAR(State(eY), 600.0, 1e-6);
}

TEST_F(PopupsGUI, AMarkerSwitchesOnlyWhenItsFlagsSaySo) {
    const struct {
        unsigned int flag; // 0 none
        short dx;          // a drag before the release
        bool twice;        // a double click
        double band;       // afterwards, from 0
    } cases[] = {
        {0, 0, false, 0.0},
        {ml::eCF_MarkerSwitchOnClick, 0, false, 1000.0},
        {ml::eCF_MarkerSwitchOnMouseUp, 0, false, 1000.0},
        {ml::eCF_MarkerSwitchOnMouseUp, 30, false, 0.0},
        {ml::eCF_MarkerSwitchOnDoubleClick, 0, false, 0.0},
        {ml::eCF_MarkerSwitchOnDoubleClick, 0, true, 1000.0},
    };
    ml::WCGUIControl &marker = Control("Point");
    for (const auto &row : cases) {
        for (unsigned int flag : {ml::eCF_MarkerSwitchOnClick, ml::eCF_MarkerSwitchOnMouseUp,
                                  ml::eCF_MarkerSwitchOnDoubleClick})
            marker.SetControlFlag(flag, flag == row.flag);
        Set(eBand, 0.0);
        Set(eX, 500.0);
        m_Plugin.Shell().Idle(0, 1);
        Click(120, 145, row.dx, 0, row.twice);
        EXPECT_DOUBLE_EQ(State(eBand), row.band) << row.flag << " " << row.dx << " " << row.twice;
    }
}

TEST_F(PopupsGUI, TheValueTextBecomesTheDigitsOfTheDisplaysRules) {
    const struct {
        const char *display;
        const char *text;
        const char *digits;
    } cases[] = {
        {"GainDigits", "-3.5 dB", "-3.5"},  {"GainDigits", "0.0 dB", "+0.0"},
        {"GainDigits", "12.0 dB", "+12.0"}, {"LevelDigits", "7", "007"},
        {"LevelDigits", "12.75", "12.7"},   {"LevelDigits", "1234", "123"},
        {"LevelDigits", "", "000"},
    };
    for (const auto &row : cases) {
        auto &display = dynamic_cast<ml::CDigitDisplay_X &>(Control(row.display));
        ml::WCFixedString<63> out;
        display.ComposeDigits(row.text, out);
        EXPECT_STREQ(out.c_str(), row.digits) << row.display << " '" << row.text << "'";
    }
}

} // namespace
