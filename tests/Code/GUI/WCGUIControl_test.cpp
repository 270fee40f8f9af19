#include "Code/GUI/WCGUIControl.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/WCGUITestTools.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCSilentAlgorithm.h"

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CSelectableHome.h"
#include "Code/GUI/WIControlOwner.h"
#include "Code/GUI/WUControlNames.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "tools/shell/WCRecordingShell.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

enum EId : std::uint64_t { eGain, eMode, eLocked };

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue>
    <DisplayFunction>DisplayGainWithDB</DisplayFunction><Label>Gain</Label><Units>dB</Units>
    </Parameter>
  <Parameter Name="MODE"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale></Parameter>
  <Parameter Name="Locked" Parent="Gain"><Flags><ConstantDisabled value="true"/></Flags></Parameter>
</ParamXML>)";

class WCGUITestAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    void InitProcessCodeSelf() override {
        DSPReqRes().coefsWords = 1;
        DSPReqRes().cycles = 1;
    }
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

// The document side of the controls: names, groups, redraw requests and flags.
class WCTestDocument : public ml::WIControlOwner {
public:
    ml::WCGUIControl *GetControlPtrByName(const char *name) override {
        const auto found = m_Controls.find(name);
        return found == m_Controls.end() ? nullptr : found->second;
    }
    void SetNeedToRedrawGUI() override { ++m_Redraws; }
    bool GetGUIFlag(unsigned int bit) const override { return (m_Flags >> bit) & 1u; }
    bool GroupExists(const char *name) const override { return m_Groups.count(name) != 0; }
    int GroupAdd(const char *name) override {
        m_Groups[name];
        return 0;
    }
    int GroupAddControl(const char *name, ml::WCGUIControl *control) override {
        m_Groups[name].push_back(control);
        return 0;
    }
    void DeSelectControl(ml::WCGUIControl *) override {}

    std::map<std::string, ml::WCGUIControl *> m_Controls;
    std::map<std::string, std::vector<ml::WCGUIControl *>> m_Groups;
    int m_Redraws = 0;
    unsigned int m_Flags = 0;
};

// Every kind of child a control reads, several in an order that matters: the offset stands
// before the rect it moves, and one parameter is unknown to the algorithm.
const char *kRichControl = R"(<Control Name="GainKnob" Page="2">
  <ControlRectOffset top="5" left="10"/>
  <Class Type="CKnob_X"/>
  <Flags><Automatable/><SliderCopyFromBackground/><ClippingRect/><DrawSelectionBelowAll Value="OFF"/>
    <Momentary Value="no"/><NoMultipleSelection/><NoSuchFlag/></Flags>
  <DependentsList><Dependent>Other</Dependent><DrawDependent>Meter</DrawDependent></DependentsList>
  <FatherControl>Panel</FatherControl>
  <MaxSelection>2</MaxSelection>
  <AcceptableCharactersForTextEntry>0123456789</AcceptableCharactersForTextEntry>
  <Direction>vertical</Direction>
  <DisableMode>WhenAllDisabled</DisableMode>
  <ControlRect top="20" left="30" width="64" height="80"/>
  <ControlColor red="10" green="20" blue="30"/>
  <ControlColorRect top="0" left="0" right="64" bottom="10"/>
  <GeneralRect1 top="1" left="2" width="3" height="4"/>
  <ImageList Type="BackGround" State="off"><Image ResID="100"/><Image ResID="101"/></ImageList>
  <ImageList>
    <Selection><Image Type="Selected" ResID="110"><PositionRect top="20" left="30" width="64" height="80"/></Image>
      <Image Type="Hover" ResID="115"/>
      <Animation><Time>400</Time><ImageList><Image ResID="120"/><Image ResID="121"/></ImageList></Animation>
    </Selection>
    <AdditionalImages><Image ResID="130" SequenceSteps="3"/></AdditionalImages>
    <Image Type="AlphaSelection" ResID="140"/>
  </ImageList>
  <ParameterList>
    <Param Name="Gain" UpdateGraphics="true">
      <RegisterType>MouseVerticalNoMouseWheel</RegisterType><RegisterType>Reset</RegisterType>
      <RegisterType State="500">FixedState</RegisterType><RegisterType>Wobble</RegisterType>
      <Modifiers>Shift</Modifiers><Modifiers>Hyper</Modifiers><Role>main</Role>
      <TextWin Type="Value"><Font Name="DejaVu Sans" Size="11" red="255" green="255" blue="255"/>
        <PositionRect top="60" left="0" width="64" height="14"/></TextWin>
      <TextWin Type="Label"><PositionRect top="0" left="0" width="64" height="12"/><DontShowOnHover/></TextWin>
      <BitmapWin Type="AlgBitmap" ParamArraySkip="2"><PositionRect top="20" left="30" width="64" height="64"/>
        <ImageList><Image ResID="200"/><Image ResID="201"/></ImageList></BitmapWin>
      <Register Type="Drag"><Group>3</Group></Register>
      <LinkGroups><Group>1</Group><Group>4</Group></LinkGroups>
    </Param>
    <Param Name="mode" ToUpperCase="true" LeadParam="true">
      <RegisterType>MouseDownLeftButtonOnly</RegisterType><RegisterType>Cyclic</RegisterType></Param>
    <Param Name="Strip" ParamArray="true"><RegisterType>User3</RegisterType></Param>
    <Param Name="NoSuchParam"><RegisterType>MouseDown</RegisterType></Param>
  </ParameterList>
  <Group Name="Knobs"/>
</Control>)";

// A started algorithm of three parameters in a recording shell, and a document for controls.
class WCGUIControlTest : public ::testing::Test {
protected:
    void SetUp() override {
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        m_Shell.Create(
            info,
            [this](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
                return m_Alg = new WCGUITestAlgorithm(component, container);
            },
            [](ml::cALGORITHM *alg) { delete alg; });
        ASSERT_EQ(m_Shell.Start(), 0);
        ASSERT_EQ(m_Alg->GetNumParams(), 3u);
    }
    std::unique_ptr<ml::WCGUIControl> Read(const std::string &xml, int expected = 0) {
        auto control = std::make_unique<ml::WCGUIControl>(&m_Document);
        const auto root = mirel_test::ParseXML(xml);
        EXPECT_EQ(control->ReadFromXMLWithAlg(root.get(), m_Alg), expected) << xml;
        return control;
    }
    mirel_shell::WCRecordingShell m_Shell;
    WCGUITestAlgorithm *m_Alg = nullptr;
    WCTestDocument m_Document;
};

TEST_F(WCGUIControlTest, ControlWrittenBackReadsTheSame) {
    const auto control = Read(kRichControl);
    EXPECT_EQ(control->GetDrawableRect(), ml::WURect<short>(25, 40, 105, 104))
        << "the offset before the rect still moves it";
    EXPECT_EQ(control->GetOriginalRect(), control->GetDrawableRect());
    EXPECT_TRUE(control->GetControlFlag(ml::eCF_EraseWithBackground));
    EXPECT_TRUE(control->GetControlFlag(ml::eCF_ShouldClip));
    EXPECT_TRUE(control->GetControlFlag(ml::eCF_Momentary)) << "\"no\" is not \"off\"";
    EXPECT_FALSE(control->GetControlFlag(ml::eCF_DrawSelectionBelowAll)) << "\"OFF\" clears";
    EXPECT_TRUE(control->GetSelectableFlag(ml::CSelectable::eNoMultipleSelection));
    ASSERT_EQ(control->GetNumRegistrations(), 3u) << "the unknown parameter is skipped";
    EXPECT_EQ(control->GetLeadParamID(), eMode);
    EXPECT_TRUE(control->GetRegistration(0).IsRegisteredToType(ml::eRegNoWheelVertical, nullptr));
    const bool shift[4] = {false, false, true, false}, none[4] = {};
    EXPECT_TRUE(control->GetRegistration(0).IsRegisteredToType(ml::eRegMouseVertical, shift));
    EXPECT_FALSE(control->GetRegistration(0).IsRegisteredToType(ml::eRegMouseVertical, none));
    EXPECT_FALSE(
        control->GetRegistration(0).IsRegisteredToType(ml::eRegMouseWheelVertical, nullptr));
    EXPECT_TRUE(control->GetRegistration(2).IsParamArrayRegData());
    EXPECT_EQ(control->GetAdditionalImages().GetImagesVectorSize(), 3u);
    EXPECT_EQ(m_Document.m_Groups["Knobs"], std::vector<ml::WCGUIControl *>{control.get()});

    const std::string written = mirel_test::WrittenXML(*control);
    EXPECT_NE(written.find("<EraseWithBackground/>"), std::string::npos);
    EXPECT_NE(written.find("<ShouldClip/>"), std::string::npos);
    EXPECT_EQ(written.find("Wobble"), std::string::npos);
    const auto again = Read(written);
    EXPECT_EQ(mirel_test::WrittenXML(*again), written);
    EXPECT_EQ(again->GetDrawableRect(), control->GetDrawableRect());

    const std::unique_ptr<ml::WCGUIControl> clone(control->Clone());
    EXPECT_EQ(mirel_test::WrittenXML(*clone), written);
}

TEST(WCRegisterInfo, EveryRegisterTypeNameRoundTrips) {
    // The single-bit names in bit order ("-" for a bit of no name of its own), then compounds.
    std::istringstream byBit(
        "None MouseDown MouseUp MouseVertical MouseHorizontal MouseWheelVertical "
        "MouseWheelHorizontal MouseDrawVertical MouseDrawHorizontal - - Reset OptionReset - - - - "
        "AbsMouseDownVertical AbsMouseDownHorizontal AbsMouseUpVertical AbsMouseUpHorizontal "
        "AbsMouseMoveVertical AbsMouseMoveHorizontal - Cyclic ZoomX ZoomY ScrollX ScrollY "
        "RadioButton OnOff PopUp PopUpRightButton Snap Graph Vertices LoopStart LoopEnd "
        "DisplayOnly TouchPinchVertical TouchPinchHorizontal User1 User2 User3 User4 User5 User6 "
        "User7 User8 User9 User10");
    std::vector<std::pair<std::string, std::uint64_t>> named = {
        {"MouseVerticalNoMouseWheel", (1u << 3) | (1u << 9)},
        {"MouseHorizontalNoMouseWheel", (1u << 4) | (1u << 10)},
        {"MouseDownLeftButtonOnly", (1u << 1) | (1u << 13)}};
    int bit = 0;
    for (std::string name; byBit >> name; ++bit)
        if (name != "-")
            named.emplace_back(name, std::uint64_t(1) << bit);
    ASSERT_EQ(bit, 51);
    for (const auto &[name, bits] : named) {
        ml::WCRegisterInfo info;
        ASSERT_TRUE(info.AddRegisterTypeName(name.c_str())) << name;
        EXPECT_EQ(info.m_Types.GetBits(), bits) << name;
        const auto names = info.GetRegisterTypeNames();
        ASSERT_EQ(names.size(), 1u) << name;
        EXPECT_EQ(names[0], name);
    }
    for (const char *unknown : {"mousedown", "User11", "FixedState", "", "MouseDown "}) {
        ml::WCRegisterInfo info;
        EXPECT_FALSE(info.AddRegisterTypeName(unknown)) << unknown;
        EXPECT_EQ(info.m_Types.GetBits(), 0u) << unknown;
    }
    ml::WCRegisterInfo info;
    for (const char *name : {"Primary", "Secondary", "Shift", "Alt", "shift"})
        info.AddModifierName(name);
    EXPECT_EQ(std::vector<bool>(info.m_Modifiers, info.m_Modifiers + 4),
              (std::vector<bool>{true, true, true, false}));
}

TEST(GUINames, EveryControlFlagAndLevelNameRoundTrips) {
    for (unsigned int bit = 0; bit < 64; ++bit) {
        const char *name = ml::GUINames::ControlFlag2String(bit);
        EXPECT_EQ(name == nullptr, bit == 36 || bit == 37 || bit > 45) << bit;
        if (name != nullptr) {
            EXPECT_EQ(ml::GUINames::ControlFlagFromString(name), static_cast<int>(bit)) << name;
        }
    }
    const struct {
        const char *name;
        int bit;
    } aliases[] = {{"SliderCopyFromBackground", 7},
                   {"ClippingRect", 43},
                   {"ReciveTextEntery", 4},
                   {"ReceiveTextEntry", -1},
                   {"hidden", -1}};
    for (const auto &row : aliases)
        EXPECT_EQ(ml::GUINames::ControlFlagFromString(row.name), row.bit) << row.name;
    for (int level = 0; level < ml::eNumSelectLevels; ++level)
        EXPECT_EQ(ml::GUINames::SelectLevelFromString(ml::GUINames::SelectLevel2String(level)),
                  level);
    EXPECT_STREQ(ml::GUINames::HoverState2String(7), "UNKNOWN_HOVER_STATE");
}

TEST_F(WCGUIControlTest, BadGeometryAndValuesKeepDefaultsWithTheirCodes) {
    using Check = bool (*)(ml::WCGUIControl &);
    const struct {
        const char *what;
        const char *children;
        int code;
        Check check;
    } cases[] = {
        {"negative width", R"(<ControlRect top="1" left="1" width="-5" height="3"/>)",
         ml::eOutOfRangeNumber, [](ml::WCGUIControl &c) { return c.GetDrawableRect().IsReset(); }},
        {"beyond a short", R"(<ControlRect top="40000" left="1" width="5" height="3"/>)",
         ml::eOutOfRangeNumber, [](ml::WCGUIControl &c) { return c.GetDrawableRect().IsReset(); }},
        {"not a number", R"(<ControlRect top="1" left="x" width="5" height="3"/>)", ml::eNotANumber,
         [](ml::WCGUIControl &c) { return c.GetDrawableRect().IsReset(); }},
        {"missing sides are 0", R"(<ControlRect right="5" bottom="3"/>)", 0,
         [](ml::WCGUIControl &c) { return c.GetDrawableRect() == ml::WURect<short>(0, 0, 3, 5); }},
        {"colour beyond a byte", R"(<ControlColor red="300"/>)", ml::eOutOfRangeNumber,
         [](ml::WCGUIControl &c) { return !c.HasColor(); }},
        {"alpha defaults to 255", R"(<ControlColor red="1"/>)", 0,
         [](ml::WCGUIControl &c) { return c.GetColor() == ml::WCRGBAColor(1, 0, 0, 255); }},
        {"unknown direction", R"(<Direction>diagonal</Direction>)", 0,
         [](ml::WCGUIControl &c) { return c.GetDirection() == ml::eDirectionNone; }},
        {"absurd max selection", R"(<MaxSelection>99</MaxSelection>)", ml::eOutOfRangeNumber,
         [](ml::WCGUIControl &c) { return c.GetMaxSelection() == ml::eSelectActive; }},
        {"max selection 0 cannot select", R"(<MaxSelection>0</MaxSelection>)", 0,
         [](ml::WCGUIControl &c) {
             c.SetSelection(2, true);
             return c.GetSelection() == 0;
         }},
        {"Hidden hides and disables", R"(<Flags><Hidden/></Flags>)", 0,
         [](ml::WCGUIControl &c) { return c.IsHidden() && c.IsDisabled(); }},
        {"image without a number",
         R"(<ImageList Type="BackGround"><Image ResID="knob"/></ImageList>)", ml::eNotANumber,
         [](ml::WCGUIControl &c) { return c.GetBackground().Empty(); }},
        {"unknown parameter", R"(<ParameterList><Param Name="Nope"/></ParameterList>)", 0,
         [](ml::WCGUIControl &c) { return c.GetNumRegistrations() == 0; }},
        {"unbound param array", R"(<ParameterList><Param ParamArray="true"/></ParameterList>)", 0,
         [](ml::WCGUIControl &c) {
             return c.GetNumRegistrations() == 1 && !c.GetRegistration(0).IsRegistered();
         }},
    };
    for (const auto &row : cases) {
        const auto control =
            Read(std::string("<Control Name=\"c\">") + row.children + "</Control>", row.code);
        EXPECT_TRUE(row.check(*control)) << row.what;
    }
    // The edges of the drawable rect are outside.
    const auto control =
        Read(R"(<Control><ControlRect top="10" left="10" width="5" height="5"/></Control>)");
    EXPECT_TRUE(control->IsInside({10, 10}));
    EXPECT_FALSE(control->IsInside({15, 12}));
    EXPECT_FALSE(control->IsInside({12, 15}));
}

void ExpectGolden(const std::string &actual, const char *name) {
    mirel_test::ExpectGoldenFile(actual, MIREL_GUI_TEST_DATA, name);
}

// One frame holding the control, as the document draws it, dumped as YAML.
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
    return yaml.GetYamlStr() + "\n";
}

TEST_F(WCGUIControlTest, ParameterChangeReachesRegisteredControlsAtIdleAndIsDrawn) {
    const char *xml = R"(<Control Name="%s"><ControlRect top="10" left="20" width="64" height="80"/>
      <ControlColor red="40" green="40" blue="48"/>
      <ImageList><Selection><Image Type="Idle" ResID="300"/></Selection></ImageList>
      <ParameterList><Param Name="Gain" UpdateGraphics="%s"><RegisterType>MouseVertical</RegisterType>
        <TextWin Type="Value"><Font Name="DejaVu Sans" Size="11"/><PositionRect top="60" left="0" width="64" height="14"/></TextWin>
        <TextWin Type="Label"><PositionRect top="0" left="0" width="64" height="12"/></TextWin>
        <TextWin Type="Units"><PositionRect top="74" left="0" width="64" height="6"/><ShowOnHover/></TextWin>
        <BitmapWin><PositionRect top="20" left="20" width="64" height="48"/>
          <ImageList><Image ResID="400"/><Image ResID="401"/><Image ResID="402"/></ImageList></BitmapWin>
      </Param></ParameterList></Control>)";
    char text[2048];
    std::snprintf(text, sizeof text, xml, "Follows", "true");
    const auto follows = Read(text);
    std::snprintf(text, sizeof text, xml, "Still", "false");
    const auto still = Read(text);
    int primary = 0;
    m_Alg->SetGUIPointer("Primary", reinterpret_cast<ml::CStandardGUI_X *>(&primary));
    for (auto *control : {follows.get(), still.get()}) {
        control->FinishCreate();
        control->UpdateRedrawControl();
        control->UpdateRedrawControl();
    }
    ASSERT_EQ(m_Alg->GetParam(eGain)->m_Controllers.size(), 1u);

    m_Alg->UpdateParamRequestState(eGain, 500.0);
    EXPECT_FALSE(follows->NeedToRedrawControl()) << "controls learn of a change at idle";
    EXPECT_EQ(m_Alg->DoIdle(0), 0);
    EXPECT_TRUE(follows->NeedToRedrawControl());
    EXPECT_FALSE(still->NeedToRedrawControl()) << "registered without UpdateGraphics";
    EXPECT_STREQ(follows->GetRegistration(0).GetValueWin()->GetText().c_str(), "-6.0 dB");
    EXPECT_STREQ(follows->GetRegistration(0).GetLabelWin()->GetText().c_str(), "Gain");
    ExpectGolden(DrawToYAML(*follows), "control_after_change.yaml");
    follows->UpdateRedrawControl();
    EXPECT_TRUE(follows->NeedToRedrawControl()) << "a change is painted in two frames";
    follows->UpdateRedrawControl();
    EXPECT_FALSE(follows->NeedToRedrawControl());

    // A clone follows too, and a control that goes leaves the parameter's list.
    std::unique_ptr<ml::WCGUIControl> clone(follows->Clone());
    EXPECT_EQ(m_Alg->GetParam(eGain)->m_Controllers.size(), 2u);
    clone.reset();
    EXPECT_EQ(m_Alg->GetParam(eGain)->m_Controllers.size(), 1u);
    m_Alg->SetGUIPointer("Primary", nullptr);
}

TEST_F(WCGUIControlTest, DisabledParameterDisablesAndHidesByFlags) {
    const auto control = Read(R"(<Control><ControlRect top="0" left="0" width="9" height="9"/>
      <Flags><HideWhenDisabled/></Flags>
      <ParameterList><Param Name="Locked" UpdateGraphics="true"/></ParameterList></Control>)");
    EXPECT_TRUE(control->IsDisabled()) << "a constantly disabled parameter disables at registering";
    EXPECT_TRUE(control->IsHidden());
    control->SetSelection(2, true);
    EXPECT_EQ(control->GetSelection(), 0);
    m_Alg->GetParam(eLocked)->SetFlags(ml::TBitVector<unsigned int>(0));
    control->UpdateDisabledMode(0);
    EXPECT_FALSE(control->IsDisabled());
    EXPECT_FALSE(control->IsHidden());
    control->SetSelection(2, true);
    EXPECT_EQ(control->GetSelection(), 2);
}

TEST(WCMouseHover, DelaysShowingAndLeavingByOneSecond) {
    struct WCSteppedHover : ml::WCMouseHover {
        double m_Now = 100.0;
        double GetSecondsNow() const override { return m_Now; }
    } hover;
    hover.SetMouseHover();
    hover.m_Now += 0.5;
    EXPECT_FALSE(hover.GetHoverVisibility());
    hover.ClearMouseHover();
    EXPECT_EQ(hover.GetHoverState(), ml::WCMouseHover::eHoverOff) << "in and out within 1 s";
    EXPECT_FALSE(hover.IsHoverToBeCleaned()) << "nothing was shown";

    hover.SetMouseHover();
    hover.m_Now += 1.5;
    EXPECT_TRUE(hover.GetHoverVisibility());
    hover.ClearMouseHover();
    EXPECT_EQ(hover.GetHoverState(), ml::WCMouseHover::eHoverWillBeOff);
    EXPECT_FALSE(hover.GetHoverVisibility()) << "the delay counted from the hover's start";
    EXPECT_TRUE(hover.IsHoverToBeCleaned());
    EXPECT_FALSE(hover.IsHoverToBeCleaned()) << "once";
}

TEST(CSelectableHome, TabSwapsWithTheNextSelectableOfTheRing) {
    ml::CSelectable a, b, c, unselectable;
    for (ml::CSelectable *s : {&a, &b, &c})
        s->SetMinMax(0, 3);
    ml::CSelectableHome home;
    home.BuildSelectableList({&a, nullptr, &b, &unselectable, &c});
    a.SetSelection(2, true);
    c.SetSelection(1, true);
    EXPECT_EQ(home.CurrMaxSelected(), 2);
    EXPECT_EQ(a.DoTab(ml::eNeighborRight), &c) << "a level just below wins over the nearer one";
    EXPECT_EQ(a.GetSelection(), 1);
    EXPECT_EQ(c.GetSelection(), 2);
    EXPECT_EQ(c.DoTab(ml::eNeighborLeft), &a) << "the walk goes left through the unselectable";
    EXPECT_EQ(home.GetNumSelectedControls(1, 3), 2);
    const bool shift[4] = {false, false, true, false}, both[4] = {false, false, true, true};
    EXPECT_EQ(ml::CSelectableHome::DirectionFromTabModifiers(shift), 0);
    EXPECT_EQ(ml::CSelectableHome::DirectionFromTabModifiers(both), 1);
    home.ResetSelectedList();
    EXPECT_EQ(home.CurrMaxSelected(), 0);
}

TEST_F(WCGUIControlTest, OffsetsStayOnTheAxisAndWrapCyclicParameters) {
    const auto control = Read(R"(<Control><ParameterList>
      <Param Name="Gain"><RegisterType>MouseVertical</RegisterType></Param>
      <Param Name="MODE"><RegisterType>MouseDown</RegisterType></Param></ParameterList></Control>)");
    auto &gain = control->GetRegistration(0);
    auto &mode = control->GetRegistration(1);
    const struct {
        const char *what;
        ml::WCParamRegistrationData *data;
        unsigned int type;
        double start, delta, state;
    } cases[] = {
        {"continuous clamps at the top", &gain, ml::eRegMouseVertical, 900.0, 300.0, 1000.0},
        {"continuous clamps at the bottom", &gain, ml::eRegMouseVertical, 100.0, -300.0, 0.0},
        {"another gesture changes nothing", &gain, ml::eRegMouseDown, 100.0, 50.0, 100.0},
        {"discrete steps", &mode, ml::eRegMouseDown, 0.0, 500.0, 500.0},
        {"discrete wraps past its last state", &mode, ml::eRegMouseDown, 1000.0, 500.0, 0.0},
        {"and before its first", &mode, ml::eRegMouseDown, 0.0, -500.0, 1000.0},
    };
    for (const auto &row : cases) {
        m_Alg->UpdateParamRequestState(row.data->GetRegisteredParam(), row.start);
        row.data->OffsetParamValue(row.delta, row.type, nullptr);
        EXPECT_DOUBLE_EQ(row.data->GetValue(), row.state) << row.what;
    }
}

} // namespace
