// The mouse path of a GUI document: what a click selects, how far a drag or a wheel moves a
// parameter, and that events outside the controls change nothing and send nothing.

#include <climits>
#include <cstdio>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/WCCountingAllocator.h"
#include "tests/support/WCGUIPlugin.h"
#include "tests/support/WCTestHome.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"
#include "view/linux/WUHeadlessView.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

enum EId : std::uint64_t { eGain, eMode, eX, eY };

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="MODE"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale><Flags><NotCyclic value="true"/></Flags>
    <MouseAcceleration>1</MouseAcceleration></Parameter>
  <Parameter Name="X"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.01</Resolution></Scale><InitialValue>0.5</InitialValue></Parameter>
  <Parameter Name="Y"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <Resolution>0.01</Resolution></Scale><InitialValue>0.5</InitialValue></Parameter>
</ParamXML>)";

// A knob, a discrete slider, a two-axis pad and a hidden knob on a 400 x 200 view.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="400" height="200"/></ViewRect_List>
  <Flag_List>%s</Flag_List>
  <Control_List>
    <cCONTROLLER Name="Knob"><Class Type="RotationKnob"/><MaxSelection>2</MaxSelection>
      <ControlRect top="10" left="10" width="48" height="48"/>
      <ParameterList><Param Name="Gain" UpdateGraphics="true">
        <RegisterType>MouseVertical</RegisterType><RegisterType>MouseWheelVertical</RegisterType>
        <RegisterType>OptionReset</RegisterType><Register Type="Drag"><Group>1</Group></Register>
      </Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Slider"><Class Type="Slider"/>
      <ControlRect top="10" left="100" width="20" height="96"/>
      <ParameterList><Param Name="MODE" UpdateGraphics="true">
        <RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Pad"><Class Type="Graph"/>
      <ControlRect top="10" left="150" width="100" height="100"/>
      <ParameterList>
        <Param Name="X" UpdateGraphics="true"><RegisterType>MouseHorizontal</RegisterType></Param>
        <Param Name="Y" UpdateGraphics="true"><RegisterType>MouseVertical</RegisterType></Param>
      </ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Hidden"><Class Type="RotationKnob"/><Flags><Hidden/></Flags>
      <ControlRect top="120" left="10" width="48" height="48"/>
      <ParameterList><Param Name="Gain" UpdateGraphics="true">
        <RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
  </Control_List></GUI>)";

enum EKeys : unsigned { kNone = 0, kPrimary = 1, kShift = 2, kAlt = 4 };

class GUIInput : public ::testing::Test {
protected:
    void Start(const char *flags = "") {
        char text[8192];
        std::snprintf(text, sizeof text, kGUI, flags);
        ASSERT_NO_FATAL_FAILURE(m_Plugin.Start(m_Home.path(), "Input", kParamXML, text));
        m_Alg = m_Plugin.Algorithm();
        m_GUI = m_Plugin.GUI();
    }
    void TearDown() override { m_Plugin.Stop(); }
    PVM::WCEventData &Event(short x, short y, unsigned keys) {
        m_Event.SetMouseLocation({x, y});
        m_Event.SetKeyModifier(PVM::eModifierPrimary, keys & kPrimary);
        m_Event.SetKeyModifier(PVM::eModifierShift, keys & kShift);
        m_Event.SetKeyModifier(PVM::eModifierAlt, keys & kAlt);
        return m_Event;
    }
    void Down(short x, short y, unsigned keys = kNone) {
        m_Event.SetMouseClickCount(PVM::eClickSingle);
        m_Event.SetMouseButtonPressed(PVM::eMouseButtonLeft, true);
        m_Event.SetMouseDownLocation({x, y});
        EXPECT_EQ(m_GUI->DoMouseDown(Event(x, y, keys)), 0);
    }
    void Move(short x, short y, unsigned keys = kNone) {
        EXPECT_EQ(m_GUI->DoMouseMove(Event(x, y, keys)), 0);
    }
    void Up(short x, short y, unsigned keys = kNone) {
        m_Event.SetMouseButtonPressed(PVM::eMouseButtonLeft, false);
        EXPECT_EQ(m_GUI->DoMouseUp(Event(x, y, keys)), 0);
    }
    // The state of a parameter, as the control registered to it reads it.
    double State(EId id) const {
        static const struct {
            const char *control;
            std::size_t registration;
        } where[] = {{"Knob", 0}, {"Slider", 0}, {"Pad", 0}, {"Pad", 1}};
        return m_GUI->GetControlPtrByName(where[id].control)
            ->GetRegistration(where[id].registration)
            .GetValue();
    }
    double RealWorld(EId id) const {
        double value = 0.0;
        m_Alg->GetParamRealWorld(id, value);
        return value;
    }
    int Sends() const { return m_Plugin.Sends(); }
    int Level(const char *name) const { return m_GUI->GetControlPtrByName(name)->GetSelection(); }

    mirel_test::WCTestHome m_Home;
    mirel_test::WCGUIPlugin m_Plugin;
    ml::cALGORITHM *m_Alg = nullptr;
    ml::CStandardGUI_X *m_GUI = nullptr;
    PVM::WCEventData m_Event;
};

TEST_F(GUIInput, AKnobDragMovesByTheControlsSizeFastAndByStepsSlowThenSendsAndAltClickResets) {
    ASSERT_NO_FATAL_FAILURE(Start());
    Down(30, 40);
    EXPECT_EQ(m_GUI->GetActiveControl(), m_GUI->GetControlPtrByName("Knob"));
    Move(30, 34); // 6 pixels of a 48-pixel knob: an eighth of the scale, 4.5 dB
    EXPECT_NEAR(RealWorld(eGain), 4.5, 1e-9);
    Move(30, 33); // a slow pixel is one step of the value
    EXPECT_NEAR(RealWorld(eGain), 4.6, 1e-9);
    Move(30, 37, kPrimary); // fine adjustment: a quarter of 4 pixels' eighth-scale
    EXPECT_NEAR(RealWorld(eGain), 4.6 - 36.0 * 4.0 / 48.0 / 4.0, 0.05);
    Up(30, 37);
    EXPECT_EQ(Sends(), 3) << "one send per movement that changed something";
    EXPECT_EQ(m_Plugin.Shell().LiveBuffers(), 0u);

    Down(30, 40, kAlt);
    EXPECT_NEAR(RealWorld(eGain), 0.0, 1e-9) << "Alt-click resets to the initial value";
    Up(30, 40, kAlt);
}

TEST_F(GUIInput, ADragMoveAllocatesNothing) {
    ASSERT_NO_FATAL_FAILURE(Start());
    m_Plugin.SetQuiet(true);
    Down(30, 40);
    Move(30, 37);
    Move(30, 40);
    long allocations = 0;
    for (int i = 0; i < 10; ++i) {
        const short y = i % 2 == 0 ? 37 : 40;
        const unsigned keys = i % 3 == 0 ? kPrimary : kNone; // fine adjustment too
        allocations +=
            mirel_test::CountAllocations([&] { m_GUI->DoMouseMove(Event(30, y, keys)); });
    }
    EXPECT_EQ(allocations, 0);
    Up(30, 40);
}

TEST_F(GUIInput, ADiscreteSliderStepsEvery96PixelsCarryingTheRestAndIgnoresFineAdjustment) {
    ASSERT_NO_FATAL_FAILURE(Start());
    const struct {
        short y;
        unsigned keys;
        double state;
    } moves[] = {{5, kNone, 0.0}, {4, kPrimary, 500.0}, {-186, kNone, 1000.0}};
    Down(110, 100);
    for (const auto &move : moves) {
        Move(110, move.y, move.keys);
        EXPECT_DOUBLE_EQ(State(eMode), move.state) << move.y;
    }
    Up(110, -186);
    EXPECT_EQ(Sends(), 2) << "95 pixels changed nothing and sent nothing";
}

TEST_F(GUIInput, ShiftLocksATwoAxisDragToTheAxisOfItsFirstMovement) {
    ASSERT_NO_FATAL_FAILURE(Start());
    const double y = State(eY);
    Down(200, 60, kShift);
    Move(210, 56, kShift);
    Move(210, 30, kShift);
    EXPECT_GT(State(eX), 500.0);
    EXPECT_DOUBLE_EQ(State(eY), y);
    Move(210, 20); // shift released: the lock goes
    EXPECT_GT(State(eY), y);
    Up(210, 20);
}

TEST_F(GUIInput, APlainClickSelectsTheTopControlAndShiftClickAddsToTheSelection) {
    ASSERT_NO_FATAL_FAILURE(Start());
    Down(30, 40);
    Up(30, 40);
    EXPECT_EQ(Level("Knob"), 2) << "the knob's top level";
    Down(200, 60);
    Up(200, 60);
    EXPECT_EQ(Level("Knob"), 0);
    EXPECT_EQ(Level("Pad"), 3);
    Down(30, 40, kShift);
    Up(30, 40, kShift);
    EXPECT_EQ(m_GUI->GetCurrSelectedList().size(), 2u);
    // A plain click inside the selection keeps it, and the drag moves both.
    const double gain = State(eGain), y = State(eY);
    Down(200, 60);
    Move(200, 54);
    Up(200, 54);
    EXPECT_GT(State(eGain), gain);
    EXPECT_GT(State(eY), y);
    EXPECT_EQ(m_GUI->GetActiveControl(), m_GUI->GetControlPtrByName("Pad"));
}

TEST_F(GUIInput, AClickOnEmptySpaceStartsARubberBandUnlessTheGUIForbidsIt) {
    for (const char *flags : {"", "<NoSelectRect/>"}) {
        ASSERT_NO_FATAL_FAILURE(Start(flags));
        Down(350, 150);
        EXPECT_EQ(m_GUI->IsDragSelecting(), *flags == 0) << flags;
        Up(350, 150);
        EXPECT_FALSE(m_GUI->IsDragSelecting());
        TearDown();
    }
}

TEST_F(GUIInput, AValueDragStartsBeyondThreePixels) {
    ASSERT_NO_FATAL_FAILURE(Start());
    Down(30, 40);
    Move(33, 40);
    EXPECT_LT(m_GUI->GetDragDrop_DragValues().m_GroupNumber, 0);
    Move(34, 40);
    EXPECT_EQ(m_GUI->GetDragDrop_DragValues().m_GroupNumber, 1);
    EXPECT_EQ(m_GUI->GetDragDrop_DragValues().m_ParamID, eGain);
    Up(34, 40);
    EXPECT_LT(m_GUI->GetDragDrop_DragValues().m_GroupNumber, 0);
}

TEST_F(GUIInput, WheelNotchesCloseTogetherSpeedUp) {
    ASSERT_NO_FATAL_FAILURE(Start());
    const struct {
        std::int64_t ms;
        double in, out;
    } notches[] = {{1000, 1, 1}, {1100, 1, 17}, {1350, -1, -1}, {1360, -1, -30.5}};
    for (const auto &notch : notches) {
        ml::WCPoint2D<double> delta(0.0, notch.in);
        m_GUI->AccelerateMouseWheel(delta, notch.ms * 1000);
        EXPECT_DOUBLE_EQ(delta.y, notch.out) << notch.ms;
        EXPECT_EQ(delta.x, 0.0);
    }
    m_Event.SetMouseWheelAxis(PVM::eMouseWheelVertical);
    m_Event.SetTouchEventID(120);
    const double before = State(eGain);
    EXPECT_EQ(m_GUI->DoMouseWheel(Event(30, 40, kNone)), 0);
    EXPECT_GT(State(eGain), before) << "a notch up on the knob";
}

TEST_F(GUIInput, EventsOutsideTheControlsOrAbsurdChangeNothingAndSendNothing) {
    ASSERT_NO_FATAL_FAILURE(Start());
    m_GUI->GetControlPtrByName("Pad")->SetDisabled();
    const double gain = State(eGain), x = State(eX);
    const struct {
        short x, y;
    } clicks[] = {
        {1000, 40}, {SHRT_MIN, SHRT_MIN}, {30, 140} /* hidden */, {200, 60} /* disabled */};
    for (const auto &click : clicks) {
        Down(click.x, click.y);
        Move(SHRT_MAX, SHRT_MIN);
        Up(SHRT_MAX, SHRT_MIN);
    }
    for (int amount : {INT_MAX, INT_MIN, 120 * 5000}) {
        m_Event.SetTouchEventID(amount);
        EXPECT_EQ(m_GUI->DoMouseWheel(Event(30, 40, kNone)), 0);
    }
    EXPECT_EQ(State(eGain), gain);
    EXPECT_EQ(State(eX), x);
    EXPECT_EQ(Sends(), 0);
}

TEST_F(GUIInput, AViewHandsItsMouseAndTouchMessagesToTheDocument) {
    ASSERT_NO_FATAL_FAILURE(Start());
    ASSERT_EQ(PVM::Init(), 0);
    PVM::WCPluginViewCreateOptions options;
    options.m_width = 400;
    options.m_height = 200;
    options.m_callback = &ml::CStandardGUI_X::ViewEventCallback;
    options.m_reference = m_GUI;
    ml::WSPluginView *view = nullptr;
    ASSERT_EQ(PVM::CreatePluginView(options, view), 0);
    m_GUI->SetPluginView(view);
    auto post = [&](PVM::WEEventMessageKind kind, short y, bool pressed, unsigned id = 0) {
        PVM::WCEventMessage message;
        message.m_kind = kind;
        message.m_position = {30, y};
        message.m_buttons[PVM::eMouseButtonLeft] = pressed;
        message.m_param = id;
        return PVM::PostEvent(view, message);
    };
    const double before = State(eGain);
    EXPECT_EQ(post(PVM::eMsgLeftButtonDown, 40, true), 1);
    EXPECT_EQ(post(PVM::eMsgMouseMove, 34, true), 1);
    EXPECT_EQ(post(PVM::eMsgLeftButtonUp, 34, false), 1);
    const double dragged = State(eGain);
    EXPECT_NEAR(dragged - before, 125.0, 0.5) << "an eighth of the scale";
    // A finger: down, 100 pixels up, lifted; the knob moves by the touch resolution.
    for (const auto &[y, on] : {std::pair<short, bool>{40, true}, {-60, true}, {-60, false}})
        EXPECT_EQ(post(PVM::eMsgTouch, y, on, 7), 1);
    EXPECT_GT(State(eGain), dragged);
    // A GUI that goes in the middle of a drag gives the cursor and the mouse back.
    EXPECT_EQ(post(PVM::eMsgLeftButtonDown, 40, true), 1);
    EXPECT_TRUE(ml::Utils::IsCursorHidden());
    EXPECT_EQ(m_Alg->DisposeGuiAndRemoveFromMap("Primary"), 0);
    EXPECT_FALSE(ml::Utils::IsCursorHidden());
    EXPECT_EQ(PVM::PVMGetCapture(), nullptr);
    PVM::Dispose();
}

} // namespace
