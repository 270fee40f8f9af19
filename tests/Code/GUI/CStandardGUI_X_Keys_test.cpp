// The GUI document's keys, typed values, touch, file drops and value drag and drop, driven with
// event records as a view hands them over, the process side played by a recording shell.
#include "Code/GUI/CStandardGUI_X.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/WCSilentAlgorithm.h"
#include "tests/support/WCTestHome.h"

#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WCTouchEvent.h"
#include "core/WCStMemObj.h"
#include "resources/ResourceManager.h"
#include "tools/shell/WCRecordingShell.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"
#include "view/linux/WUHeadlessView.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;
using ml::CStandardGUI_X;
using ml::WCTouchEvent;

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Mode"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>10</Maximum>
    <NumberOfStates>11</NumberOfStates></Scale><InitialValue>5</InitialValue></Parameter>
  <Parameter Name="Target"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    </Scale></Parameter>
</ParamXML>)";

// Controls 40 wide, 50 apart on one row, in drawing order.
std::string Control(const char *name, int left, const char *param, const char *registers,
                    const char *extra = "") {
    return std::string("<cCONTROLLER Name=\"") + name + "\"><Class Type=\"RotationKnob\"/>" +
           "<ControlRect top=\"10\" left=\"" + std::to_string(left) +
           "\" width=\"40\" height=\"40\"/>" + extra + "<ParameterList><Param Name=\"" + param +
           "\"><RegisterType>MouseVertical</RegisterType>" + registers +
           "</Param></ParameterList></cCONTROLLER>";
}

const std::string kGUI =
    "<GUI version=\"5\"><ViewRect_List><Rect top=\"0\" left=\"0\" width=\"300\" height=\"60\"/>"
    "</ViewRect_List><Control_List>" +
    Control("Knob", 10, "Mode", "") +
    Control("Entry", 60, "Gain",
            "<TextWin Type=\"Value\"><PositionRect top=\"30\" left=\"0\" width=\"40\" "
            "height=\"10\"/></TextWin><Register Type=\"Drag\"><Group>3</Group></Register>",
            "<Flags><ReciveTextEntery/></Flags>") +
    Control("Drop", 110, "Target", "<Register Type=\"Drop\"><Group>3</Group></Register>") +
    Control("NoFlag", 160, "Target", "<Register Type=\"FileDragAndDrop\"/>") +
    Control("Files", 210, "Target", "<Register Type=\"FileDragAndDrop\"/>",
            "<Flags><FileDropEnabled/></Flags>") +
    "</Control_List></GUI>";

// Every change of a parameter sends one coefficient.
class WCKeysAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 1;
        DSPReqRes().cycles = 1;
    }
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t) override {
        return PrepareCoefBufferWithBypass(0, 1, true);
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

class GUIInputKeys : public ::testing::Test {
protected:
    void SetUp() override {
        const auto resources = m_Home.path() / "Keys.bundle/Contents/Resources";
        std::filesystem::create_directories(resources / "GUIXML");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  GUIXML: .xml\n";
        std::ofstream(resources / "GUIXML/1000.xml") << kGUI;
        ASSERT_EQ(ml::RM::OpenResContainer((m_Home.path() / "Keys.bundle").c_str(), 0, m_Container),
                  0);
        ASSERT_EQ(PVM::Init(), 0);
        ml::MirelComponentInfo info;
        m_Shell.Create(
            info,
            [this](ml::MirelComponentInfo const &component, ml::WTResContainerType *&) {
                return m_Alg = new WCKeysAlgorithm(component, m_Container);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_EQ(m_Shell.Start(), 0);
        ASSERT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
        m_GUI = m_Alg->GetGUIPtr("Primary");
        ASSERT_NE(m_GUI, nullptr);
        PVM::WCPluginViewCreateOptions options;
        options.m_width = 300;
        options.m_height = 60;
        ASSERT_EQ(PVM::CreatePluginView(options, m_View), 0);
        m_GUI->SetPluginView(m_View);
    }
    void TearDown() override {
        m_Shell.Stop();
        PVM::Dispose();
        ml::RM::CloseResContainer(m_Container);
        ml::RM::Dispose();
    }
    ml::WCGUIControl *C(const char *name) { return m_GUI->GetControlPtrByName(name); }
    double State(const char *name) { return C(name)->GetRegistration(0).GetValue(); }
    void Select(const char *name) {
        ASSERT_EQ(m_GUI->SelectControl(m_GUI->GetControlIndexByName(name)), 0);
    }
    std::string Selected() {
        const int index = m_GUI->GetSelectedController();
        return index < 0 ? "" : m_GUI->GetControlPtrByIndex(index)->GetName().c_str();
    }
    long Sends() const {
        const auto ops = m_Shell.Ops();
        return std::count(ops.begin(), ops.end(), int(ml::eExecSendBuffers));
    }
    int Key(PVM::WEKeyCode code, char c = 0, int modifier = -1, bool *handled = nullptr) {
        PVM::WCEventData event;
        event.SetKeyCode(code);
        event.SetKeyChar(c);
        if (modifier >= 0)
            event.SetKeyModifier(PVM::WEModifier(modifier), true);
        bool took = false;
        const int err = m_GUI->DoKey(event, took);
        if (handled != nullptr)
            *handled = took;
        return err;
    }
    static PVM::WCEventData At(const char *name, CStandardGUI_X &gui, short dx = 0) {
        PVM::WCEventData event;
        const ml::WCPoint2D<short> center = gui.GetControlPtrByName(name)->GetDrawableRect().Center();
        event.SetMouseLocation(ml::WCPoint2D<short>(short(center.x + dx), center.y));
        event.GetDragDropEvent().m_location = event.GetMouseLocation();
        event.GetDragDropEvent().m_paths = {"/tmp/a.wav"};
        event.SetMouseButtonPressed(PVM::eMouseButtonLeft, true);
        event.SetMouseClickCount(PVM::eClickSingle);
        return event;
    }
    int Touches(const std::vector<WCTouchEvent> &touches, std::size_t cut = 0) {
        ml::Utils::WCStMemObj buffer(touches.data(), touches.size() * sizeof(WCTouchEvent) - cut);
        bool handled = false;
        return m_GUI->DoTouch(buffer, handled);
    }

    mirel_test::WCTestHome m_Home;
    ml::WTResContainerType *m_Container = nullptr;
    mirel_shell::WCRecordingShell m_Shell;
    WCKeysAlgorithm *m_Alg = nullptr;
    CStandardGUI_X *m_GUI = nullptr;
    ml::WSPluginView *m_View = nullptr;
};

TEST_F(GUIInputKeys, ArrowsStepTheSelectedKnobByOneStepOfItsAxisAndSendTheChange) {
    const struct {
        PVM::WEKeyCode key;
        int modifier;
        double state;
        long sends;
    } rows[] = {{PVM::eKeyUp, -1, 600.0, 1},
                {PVM::eKeyDown, -1, 400.0, 1},
                {PVM::eKeyRight, -1, 500.0, 0}}; // the knob has no horizontal axis
    for (const auto &row : rows) {
        ml::BUFFER_HEADER *reset = m_Alg->UpdateParamRequestState(1, 500.0);
        m_Alg->FreeBuffers(reset);
        Select("Knob");
        m_Shell.ClearLog();
        EXPECT_EQ(Key(row.key, 0, row.modifier), 0);
        EXPECT_DOUBLE_EQ(State("Knob"), row.state) << row.key;
        EXPECT_EQ(Sends(), row.sends) << row.key;
    }
}

TEST_F(GUIInputKeys, ADigitOpensTheValueBoxUnlessPrimaryIsHeldAndTheTypedValueIsSet) {
    Select("Entry");
    bool handled = true;
    PVM::WSTextBoxState box;
    EXPECT_EQ(Key(PVM::eKeyCharacter, '7', ml::eModPrimary, &handled), 0);
    EXPECT_FALSE(handled);
    ASSERT_EQ(PVM::GetTextBoxState(box), 0);
    EXPECT_FALSE(box.m_active);

    EXPECT_EQ(Key(PVM::eKeyCharacter, '7', -1, &handled), 0);
    EXPECT_TRUE(handled);
    ASSERT_EQ(PVM::GetTextBoxState(box), 0);
    ASSERT_TRUE(box.m_active);
    EXPECT_EQ(box.m_options.m_text, "7") << "the typed key starts the text";
    EXPECT_EQ(box.m_topLeft, ml::WCPoint2D<short>(60, 40)) << "over the value window";
    m_Shell.ClearLog();
    ASSERT_EQ(PVM::CommitTextBox("3.5"), 0);
    double gain = 0.0;
    m_Alg->GetParamRealWorld(0, gain);
    EXPECT_DOUBLE_EQ(gain, 3.5);
    EXPECT_EQ(Sends(), 1);

    // A text that is no number changes nothing.
    EXPECT_EQ(Key(PVM::eKeyCharacter, '-'), 0);
    ASSERT_EQ(PVM::CommitTextBox("loud"), 0);
    m_Alg->GetParamRealWorld(0, gain);
    EXPECT_DOUBLE_EQ(gain, 3.5);

    // A box left open does not outlive its document, which its callback would reach.
    EXPECT_EQ(Key(PVM::eKeyCharacter, '.'), 0);
    ASSERT_EQ(m_Alg->DisposeGuiAndRemoveFromMap("Primary"), 0);
    ASSERT_EQ(PVM::GetTextBoxState(box), 0);
    EXPECT_FALSE(box.m_active);
}

TEST_F(GUIInputKeys, EscapeGoesHomeAndTabWalksTheRingByItsModifiers) {
    const struct {
        PVM::WEKeyCode key;
        int modifier;
        const char *selected;
    } rows[] = {{PVM::eKeyEscape, -1, "Knob"},
                {PVM::eKeyTab, -1, "NoFlag"},
                {PVM::eKeyTab, ml::eModShift, "Entry"}};
    for (const auto &row : rows) {
        Select("Drop");
        bool handled = false;
        EXPECT_EQ(Key(row.key, 0, row.modifier, &handled), 0);
        EXPECT_TRUE(handled);
        EXPECT_EQ(Selected(), row.selected) << row.key << " " << row.modifier;
        EXPECT_EQ(m_GUI->GetNumSelectedControllers(), 1u);
    }
}

TEST_F(GUIInputKeys, AFingerMovesTheControlUnderItByTheTouchResolution) {
    const double before = State("Entry");
    const ml::WCPoint2D<short> p = C("Entry")->GetDrawableRect().Center();
    const auto up = ml::WCPoint2D<short>(p.x, short(p.y - 100));
    // A continuous parameter moves the floor of 0.02 states per pixel; a finger never put down
    // moves nothing.
    EXPECT_EQ(Touches({{1, WCTouchEvent::eTouchDown, p, {}},
                       {1, WCTouchEvent::eTouchMove, up, {}},
                       {9, WCTouchEvent::eTouchMove, p, {}},
                       {1, WCTouchEvent::eTouchUp, up, {}}}),
              0);
    EXPECT_NEAR(State("Entry"), before + 2.0, 1e-9);
    EXPECT_EQ(Touches({{1, WCTouchEvent::eTouchMove, p, {}}}), 0);
    EXPECT_NEAR(State("Entry"), before + 2.0, 1e-9) << "the finger was lifted";
}

TEST_F(GUIInputKeys, ABrokenTouchBatchIsRefusedWhole) {
    const ml::WCPoint2D<short> p = C("Entry")->GetDrawableRect().Center();
    const WCTouchEvent down{1, WCTouchEvent::eTouchDown, p, {}};
    const WCTouchEvent move{1, WCTouchEvent::eTouchMove, ml::WCPoint2D<short>(p.x, 0), {}};
    const WCTouchEvent odd{1, 7, p, {}};
    const double before = State("Entry");
    EXPECT_EQ(Touches({down, move}, 1), ml::eValueWrongSize);
    EXPECT_EQ(Touches({down, move, odd}), ml::eOutOfRangeNumber);
    EXPECT_EQ(Touches(std::vector<WCTouchEvent>(33, down)), ml::eOutOfRangeNumber);
    EXPECT_EQ(Touches({move}), 0);
    EXPECT_EQ(State("Entry"), before);
}

TEST_F(GUIInputKeys, FilesGoOnlyToAControlThatTakesThem) {
    for (const char *name : {"NoFlag", "Knob", "Files"}) {
        PVM::WCEventData event = At(name, *m_GUI);
        bool accepted = false, handled = true;
        EXPECT_EQ(m_GUI->DoFileDragOver(event, accepted), 0);
        EXPECT_EQ(accepted, std::string(name) == "Files") << name;
        // No parameter takes a file yet: the control that would is told so, nobody else.
        EXPECT_EQ(m_GUI->DoFileDrop(event, handled), accepted ? ml::eNotImplemented : 0) << name;
        EXPECT_FALSE(handled);
    }
}

TEST_F(GUIInputKeys, AValueDraggedOntoAControlOfItsDropGroupSetsItsParameter) {
    ASSERT_EQ(m_GUI->GetDroppableMap().at(3), std::vector<ml::WCGUIControl *>{C("Drop")});
    for (const char *onto : {"Knob", "Drop"}) {
        PVM::WCEventData down = At("Entry", *m_GUI);
        ASSERT_EQ(m_GUI->DoMouseDown(down), 0);
        PVM::WCEventData move = At(onto, *m_GUI);
        move.SetMouseDownLocation(down.GetMouseLocation());
        ASSERT_EQ(m_GUI->DoMouseMove(move), 0);
        EXPECT_EQ(m_GUI->GetDragDrop_DragValues().m_GroupNumber, 3);
        ASSERT_EQ(m_GUI->DoMouseUp(move), 0);
        EXPECT_EQ(m_GUI->GetDragDrop_DragValues().m_GroupNumber, -1);
        EXPECT_DOUBLE_EQ(State("Drop"), std::string(onto) == "Drop" ? State("Entry") : 0.0)
            << onto;
    }
}

} // namespace
