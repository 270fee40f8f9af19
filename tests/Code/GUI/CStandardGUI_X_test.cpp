#include "Code/GUI/CStandardGUI_X.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/WCSilentAlgorithm.h"
#include "tests/support/WCTestHome.h"

#include "Code/Algorithm/MirelAPI3Internal.h"
#include "Code/Algorithm/PluginInfoSelectors.h"
#include "Code/Algorithm/PluginInstance.h"
#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/GUI/CDummyControl.h"
#include "Code/GUI/GuiSizes.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WCHtmlManager.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "resources/ResourceManager.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
namespace API = ml::MirelAPI3Internal;
using ml::CStandardGUI_X;

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Mode"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
    <NumberOfStates>2</NumberOfStates></Scale></Parameter>
</ParamXML>)";

// A control of the fixture's numbered kinds: name, class, rectangle and the parameter it shows.
std::string Control(const char *name, const char *type, int left, const char *param = "Gain",
                    const char *extra = "") {
    std::ostringstream text;
    text << "<cCONTROLLER Name=\"" << name << "\"><Class Type=\"" << type << "\"/>"
         << "<ControlRect top=\"10\" left=\"" << left << "\" width=\"40\" height=\"40\"/>"
         << "<ParameterList><Param Name=\"" << param << "\" UpdateGraphics=\"true\">"
         << "<RegisterType>MouseVertical</RegisterType></Param></ParameterList>" << extra
         << "</cCONTROLLER>";
    return text.str();
}

// Every part of the document in one GUI XML.
std::string FullGUI() {
    return R"(<GUI version="5">
  <Background_Color red="10" green="20" blue="30"/>
  <ViewRect_List><Rect top="0" left="0" width="400" height="200"/></ViewRect_List>
  <Pict_List><Image Type="Icon" ResID="77"/></Pict_List>
  <Flag_List><NoSelectRect/><DropBaseImage/><NoClipping Value="off"/>
    <GraphicStreamDataPtrThreshold>4096</GraphicStreamDataPtrThreshold></Flag_List>
  <Control_List>)" +
           Control("A", "Slider", 0, "Gain", "<Group Name=\"Inner\"/>") +
           Control("B", "Toggle", 50, "Mode", "<Group Name=\"Outer\"/>") +
           Control("Band2", "RotationKnob", 100) + Control("Band3", "RotationKnob", 150) +
           Control("Band4", "RotationKnob", 200) + Control("Odd", "Wobbler", 250) + R"(
    <cCONTROLLER Name="NoClass"/>
    <cCONTROLLER Name="Auto"><Class AutomationType="Gain"/></cCONTROLLER>
  </Control_List>
  <Control_Groups><Group Name="Outer"><Group Name="Inner"/></Group></Control_Groups>
  <ControlOrder_List><ControlOrder>
    <Control Name="Band" Num="3" InitIndex="2"/><Control Name="B"/><Control Name="Missing"/>
    <Control Name="A" Num="3"/><Dummy/>
  </ControlOrder></ControlOrder_List>
  <TabOrder_List><TabHORIZ><Control Name="A"/><Control Name="B"/><Control Name="Band2"/></TabHORIZ>
    <TabVERT><Control Name="A"/><Control Name="Band3"/></TabVERT></TabOrder_List>
  <ToolBarControl_List><ToolButton type="Undo" Name="U"/><ToolButton type="Preset"/>
    <ToolButton Name="NoType"/><ToolButton type="Bogus"/></ToolBarControl_List>
  <HTMLView_List><HTMLView Path="browser.html" Name="Presets"><Rect top="0" left="0" width="300" height="200"/>
    <Opacity>0.5</Opacity><Flags><Floating/><Pined/></Flags></HTMLView></HTMLView_List>
  <PluginSpecificData><Anything/></PluginSpecificData>
</GUI>)";
}

// A plug-in whose GUIs may make their own kind of slider.
class WCGUIPlugin : public mirel_test::WCSilentAlgorithm {
public:
    WCGUIPlugin(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container)
        : WCSilentAlgorithm(info, container) {
        SetAlgName("Gain");
    }

    // A slider of the plug-in's own, told apart by its class.
    class WCOwnSlider : public ml::WCGUIControl {
        using WCGUIControl::WCGUIControl;
    };
    class WCOwnGUI : public CStandardGUI_X {
    public:
        using CStandardGUI_X::CStandardGUI_X;
        ml::WCGUIControl *CreateSpecificControls(ml::WCFixedStringBase const &type) override {
            return type == "Slider" ? new WCOwnSlider(this) : nullptr;
        }
    };

    bool m_OwnControls = false;

    CStandardGUI_X *CreateGUI(ml::WTResContainerType *&container, char const *name) override {
        return m_OwnControls ? new WCOwnGUI(container, name)
                             : cALGORITHM::CreateGUI(container, name);
    }

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

int RefusingExec(int op, std::int64_t, void *, void *, void *) {
    return op == ml::eExecNewBuffer ? ml::eMemOutOfMemory : ml::eNotImplemented;
}

class GUIDocument : public ::testing::Test {
protected:
    void SetUp() override {
        Write("resource_config.yaml", "Extensions:\n  GUIXML: .xml\n  PNG_: .png\n  Skins: .xml\n");
        ASSERT_EQ(ml::RM::OpenResContainer(Bundle().c_str(), 0, m_Container), 0);
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        info.m_ComponentSubType = ml::WCFourCC("TsGu");
        m_Alg = new WCGUIPlugin(info, m_Container);
        m_Alg->SetMainThreadRef();
        m_Alg->SetExecCallBack(&RefusingExec, 0);
        m_Alg->InitProcessCode();
        ASSERT_EQ(m_Alg->FinishCreate(), 0);
        m_Alg->InitData();
        ASSERT_EQ(m_Alg->InitInstanceData(), 0);
        m_Instance.m_pAlg = m_Alg;
    }
    void TearDown() override {
        m_Alg->Dispose();
        delete m_Alg;
        ml::RM::CloseResContainer(m_Container);
        ml::RM::Dispose();
    }
    fs::path Bundle() const { return m_Home.path() / "Gain.bundle"; }
    void Write(const std::string &resource, const std::string &text) {
        const fs::path path = Bundle() / "Contents/Resources" / resource;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    // Builds the GUI of `xml` as resource `id` under `name`.
    CStandardGUI_X *Create(const std::string &xml, const char *id = "1000",
                           const char *name = "Primary") {
        Write(std::string("GUIXML/") + id + ".xml", xml);
        EXPECT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, id, name), 0);
        return m_Alg->GetGUIPtr(name);
    }
    static std::vector<std::string> Names(const std::vector<ml::WCGUIControl *> &controls) {
        std::vector<std::string> names;
        for (const auto *control : controls)
            names.emplace_back(control->GetName().c_str());
        return names;
    }
    static std::string Text(const CStandardGUI_X &gui) {
        ml::XML::CXMLElement root("GUI");
        gui.WriteToXML(&root);
        std::string text;
        ml::XML::WriteXMLToString(text, &root, true, true, 0);
        return text;
    }

    mirel_test::WCTestHome m_Home;
    ml::WTResContainerType *m_Container = nullptr;
    WCGUIPlugin *m_Alg = nullptr;
    ml::PluginInstance m_Instance;
};

TEST_F(GUIDocument, ReadsControlsOrderGroupsTabsToolbarAndFlagsAsTheXMLStates) {
    CStandardGUI_X *gui = Create(FullGUI());
    ASSERT_NE(gui, nullptr);
    EXPECT_TRUE(gui->IsAlive());
    EXPECT_TRUE(gui->IsFinished());
    // Unknown kinds and a control without a class are left out; "Band" with Num and InitIndex
    // stands for three controls, "A" with Num alone for one; what the order misses comes last.
    EXPECT_EQ(Names(gui->GetControls()),
              (std::vector<std::string>{"Band2", "Band3", "Band4", "B", "A", "Auto"}));
    EXPECT_EQ(Names(gui->GetControlsInReadingOrder()),
              (std::vector<std::string>{"A", "B", "Band2", "Band3", "Band4", "Auto"}));
    EXPECT_NE(dynamic_cast<ml::CDummyControl *>(gui->GetControlPtrByName("Auto")), nullptr);
    EXPECT_EQ(gui->GetControlPtrByName("A")->GetClassType(), "Slider");
    EXPECT_EQ(gui->GetControlIndexByName("A"), 4);

    EXPECT_TRUE(gui->GetGUIFlag(CStandardGUI_X::eNoSelectRect));
    EXPECT_TRUE(gui->GetGUIFlag(CStandardGUI_X::eDropBaseImage));
    EXPECT_FALSE(gui->GetGUIFlag(CStandardGUI_X::eNoClipping));
    EXPECT_EQ(gui->GetGraphicStreamDataPtrThreshold(), 4096u);
    EXPECT_TRUE(gui->HasBackgroundColor());
    EXPECT_EQ(gui->GetViewRect().Width(), 400);

    ASSERT_EQ(gui->GetNumToolBarControls(), 2u)
        << "a button without a type or of an unknown one is left out";
    EXPECT_EQ(gui->GetToolBarControl(0)->GetType(), "Undo");
    EXPECT_EQ(gui->GetToolBarControl(1)->GetType(), "Preset");

    ASSERT_EQ(gui->GetHtmlManager()->GetNumPages(), 1u);
    const ml::WCHTMLBase *page = gui->GetHtmlManager()->GetHTMLPageByIndex(0);
    EXPECT_EQ(page->GetWindowKind(), ml::WCHTMLBase::eFloating);
    EXPECT_TRUE(page->GetPinMode());
    EXPECT_DOUBLE_EQ(page->GetWindowOpacity(), 0.5);

    // Hiding the outer group hides the inner group's control with it.
    ml::WCGUIControl *a = gui->GetControlPtrByName("A");
    ml::WCGUIControl *b = gui->GetControlPtrByName("B");
    EXPECT_EQ(gui->GetNumGroups(), 2u);
    EXPECT_TRUE(a->ToDraw());
    EXPECT_EQ(gui->GroupHide("Outer"), 0);
    EXPECT_FALSE(a->ToDraw());
    EXPECT_FALSE(b->ToDraw());
    EXPECT_EQ(gui->GroupShow("Outer"), 0);
    EXPECT_TRUE(a->ToDraw());
    EXPECT_EQ(gui->GroupHide("Nope"), ml::kErrGUIObjectNotFound);

    // Tab rings: right and left along TabHORIZ, down and up along TabVERT, closing on themselves.
    ml::WCGUIControl *band2 = gui->GetControlPtrByName("Band2");
    ml::WCGUIControl *band3 = gui->GetControlPtrByName("Band3");
    EXPECT_EQ(a->GetNeighbor(ml::eNeighborRight), b);
    EXPECT_EQ(band2->GetNeighbor(ml::eNeighborRight), a);
    EXPECT_EQ(a->GetNeighbor(ml::eNeighborLeft), band2);
    EXPECT_EQ(a->GetNeighbor(ml::eNeighborDown), band3);
    EXPECT_EQ(band3->GetNeighbor(ml::eNeighborDown), a);
    const auto &horizontal = gui->GetTabList(false);
    ASSERT_EQ(horizontal.size(), 3u);
    EXPECT_EQ(horizontal[0].GetNeighbor(ml::eNeighborDown)->m_pControl, band3)
        << "a control in both rings keeps both pairs of neighbours";
}

TEST_F(GUIDocument, AWrittenDocumentReadsBackTheSame) {
    CStandardGUI_X *first = Create(FullGUI());
    const std::string written = Text(*first);
    CStandardGUI_X *second = Create(written, "1001", "Second");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(Text(*second), written);
    EXPECT_EQ(Names(second->GetControls()), Names(first->GetControls()));
    EXPECT_NE(written.find("version=\"4\""), std::string::npos);
    EXPECT_NE(written.find("<ref name=\"Default_Plugin\""), std::string::npos);
}

TEST_F(GUIDocument, VersionsOtherThanFourAndFiveReadNothingWithoutAFault) {
    for (const char *version : {"3", "6", ""}) {
        std::string xml = FullGUI();
        xml.replace(xml.find("version=\"5\""), 11, std::string("version=\"") + version + "\"");
        CStandardGUI_X *gui = Create(xml, "1002", version);
        ASSERT_NE(gui, nullptr) << version;
        EXPECT_EQ(gui->GetNumGUIControllers(), 0u);
        EXPECT_EQ(gui->GetNumToolBarControls(), 0u);
    }
}

TEST_F(GUIDocument, PluginControlKindsWinOverTheLibrarysOwn) {
    m_Alg->m_OwnControls = true;
    CStandardGUI_X *gui = Create(FullGUI());
    EXPECT_NE(dynamic_cast<WCGUIPlugin::WCOwnSlider *>(gui->GetControlPtrByName("A")), nullptr);
    EXPECT_EQ(dynamic_cast<WCGUIPlugin::WCOwnSlider *>(gui->GetControlPtrByName("B")), nullptr);
}

TEST_F(GUIDocument, GUIsComeAndGoWithoutTouchingEachOther) {
    CStandardGUI_X *primary = Create(FullGUI());
    CStandardGUI_X *second = Create(FullGUI(), "1000", "Second");
    ASSERT_NE(primary, second);
    const auto &controllers = m_Alg->GetParam(0)->m_Controllers;
    const std::size_t both = controllers.size();
    EXPECT_EQ(m_Alg->GetPluginValue_uint32_t("GainGUI_needs_redraw", 99),
              second->GetRedrawCounter());

    EXPECT_EQ(m_Alg->DisposeGuiAndRemoveFromMap("Second"), 0);
    EXPECT_EQ(m_Alg->GetGUIPtr("Second"), nullptr);
    primary->SetNeedToRedrawGUI();
    EXPECT_EQ(m_Alg->GetPluginValue_uint32_t("GainGUI_needs_redraw", 99),
              primary->GetRedrawCounter())
        << "the redraw key follows the main GUI again";
    EXPECT_EQ(controllers.size(), both / 2) << "the disposed GUI's controls left the parameter";
    // A change still reaches the other GUI's controls.
    ml::WCGUIControl *a = primary->GetControlPtrByName("A");
    a->UpdateRedrawControl();
    a->UpdateRedrawControl();
    m_Alg->UpdateParamRequestState(0, 700.0);
    m_Alg->DoIdle(0);
    EXPECT_TRUE(a->NeedToRedrawControl());

    // A new GUI may take the name again; replacing a name disposes the GUI it held.
    EXPECT_NE(Create(FullGUI(), "1000", "Second"), nullptr);
    EXPECT_NE(Create(FullGUI(), "1000", "Second"), nullptr);
    EXPECT_EQ(controllers.size(), both);
    EXPECT_EQ(m_Alg->DisposeAdditionalGUIs(), 0);
    EXPECT_EQ(m_Alg->GetGUIMap().size(), 1u);
    EXPECT_EQ(m_Alg->DisposeGuiAndRemoveFromMap("Primary"), 0);
    EXPECT_TRUE(controllers.empty());
    // The redraw key keeps its last value once no GUI backs it.
    EXPECT_TRUE(m_Alg->HasPluginValue("GainGUI_needs_redraw"));
    EXPECT_EQ(m_Alg->DisposeGuiAndRemoveFromMap("Second"), ml::kErrNoGUI);
}

TEST_F(GUIDocument, BrokenOrHostileXMLGivesItsCodeOrAUsableDocument) {
    Write("GUIXML/1003.xml", "<GUI version=\"5\"><Control_List>");
    EXPECT_NE(m_Alg->CreateGuiAndAddToMap(nullptr, "1003", "Primary"), 0);
    EXPECT_EQ(m_Alg->GetGUIPtr("Primary"), nullptr);
    EXPECT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, "4040", "Primary"), ml::eRMResNotFound);

    std::string many = "<GUI version=\"5\"><Control_List>";
    for (int i = 0; i < 3000; ++i)
        many += Control(("C" + std::to_string(i)).c_str(), "Slider", i % 300);
    many += "</Control_List><ControlOrder_List><ControlOrder>"
            "<Control Name=\"C\" Num=\"2000000000\" InitIndex=\"0\"/></ControlOrder>"
            "</ControlOrder_List>";
    std::string nested;
    for (int i = 0; i < 500; ++i)
        nested += "<Group Name=\"G" + std::to_string(i % 3) + "\">";
    for (int i = 0; i < 500; ++i)
        nested += "</Group>";
    many += "<Control_Groups>" + nested + "</Control_Groups>";
    many += "<Pict_List><Image Type=\"Base\" ResID=\"999\"/><Image Type=\"Icon\" ResID=\"x\"/>"
            "</Pict_List></GUI>";
    CStandardGUI_X *gui = Create(many, "1004");
    ASSERT_NE(gui, nullptr);
    EXPECT_EQ(gui->GetNumGUIControllers(), 3000u);
    EXPECT_EQ(gui->GetControls().front()->GetName(), "C0");
    EXPECT_EQ(gui->GetIconResID(), -1);
    // Groups nested in a ring still answer whether they are hidden.
    EXPECT_EQ(gui->GroupHide("G1"), 0);
    EXPECT_TRUE(gui->GetGroup("G0")->IsHidden(true));
    EXPECT_EQ(gui->GroupShow("G1"), 0);
}

TEST_F(GUIDocument, SelectorsAndRequestsAnswerFromThePrimaryGUI) {
    std::uint32_t count = 0;
    std::int32_t selected = 0;
    EXPECT_EQ(ml::GetPluginInfo_uint32_t(m_Instance, ml::WCFourCC("gCon"), count, 0),
              ml::kErrGUINotFullyCreated);
    EXPECT_EQ(ml::GetPluginInfo_int32_t(m_Instance, ml::WCFourCC("Ctrl"), selected, 0),
              ml::kErrGUINotFullyCreated);
    CStandardGUI_X *gui = Create(FullGUI());
    EXPECT_EQ(ml::GetPluginInfo_uint32_t(m_Instance, ml::WCFourCC("gCon"), count, 0), 0);
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(ml::GetPluginInfo_int32_t(m_Instance, ml::WCFourCC("Ctrl"), selected, 0), 0);
    EXPECT_EQ(selected, -1);
    EXPECT_EQ(ml::SetPluginInfo_uint32_t(m_Instance, ml::WCFourCC("sctr"), 3, 0), 0);
    EXPECT_EQ(ml::GetPluginInfo_int32_t(m_Instance, ml::WCFourCC("Ctrl"), selected, 0), 0);
    EXPECT_EQ(selected, 3);
    EXPECT_EQ(ml::GetPluginInfo_uint32_t(m_Instance, ml::WCFourCC("selc"), count, 0), 0);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(ml::SetPluginInfo_uint32_t(m_Instance, ml::WCFourCC("sctr"), 60, 0),
              ml::eControlOutOfRange);
    EXPECT_EQ(ml::SetPluginInfo_bool(m_Instance, ml::WCFourCC("dsac"), true, 0), 0);
    EXPECT_EQ(gui->GetNumSelectedControllers(), 0u);
    EXPECT_EQ(ml::GetPluginInfo_uint32_t(m_Instance, ml::WCFourCC("rgpr"), count, 4), 0);
    EXPECT_EQ(count, 1u);
    ml::WCFixedString<1023> icon;
    EXPECT_EQ(ml::GetPluginInfo_WCFixedString(m_Instance, ml::WCFourCC("icnf"), icon, 0),
              ml::eRMResNotFound)
        << "the bundle lacks the icon the document names";
    Write("PNG_/77.png", "icon");
    EXPECT_EQ(ml::GetPluginInfo_WCFixedString(m_Instance, ml::WCFourCC("icnf"), icon, 0), 0);
    EXPECT_TRUE(std::string(icon.c_str()).ends_with("/PNG_/77.png")) << icon.c_str();
    bool modified = true;
    EXPECT_EQ(ml::GetPluginInfo_bool(m_Instance, ml::WCFourCC("PrCh"), modified, 0), 0);
    EXPECT_FALSE(modified);
    m_Alg->UpdateParamRequestState(0, 100.0);
    EXPECT_EQ(ml::GetPluginInfo_bool(m_Instance, ml::WCFourCC("PrCh"), modified, 0), 0);
    EXPECT_TRUE(modified) << "a parameter change modifies the preset";

    ml::WSMirelAPI3_RawRequest raw;
    raw.m_pInstance = &m_Instance;
    API::Request request;
    request.m_pRawRequest = &raw;
    auto with = [&request](const char *text) -> API::Request & {
        request.m_Request = nlohmann::json::parse(text);
        request.m_Response = nlohmann::json::object();
        return request;
    };
    // "A" lies at (0..40, 10..50); it is last in drawing order but one.
    EXPECT_EQ(API::InsideWhichControl(with(R"({"params":{"x":20,"y":30}})")), 0);
    EXPECT_EQ(request.m_Response["result"]["control_index"], 4);
    EXPECT_EQ(API::InsideWhichControl(with(R"({"params":{"x":390,"y":190}})")),
              ml::kErrGUIObjectNotFound);
    EXPECT_EQ(API::InsideWhichControl(with(R"({"params":{"x":1e9,"y":30}})")),
              ml::kErrGUIObjectNotFound);
    EXPECT_EQ(API::GetGuiControlPtrByNameHack(with(R"({"params":{"control_name":"B"}})")), 0);
    EXPECT_EQ(raw.PayloadPtr(), gui->GetControlPtrByName("B"));
    EXPECT_EQ(API::GetGuiControlPtrByNameHack(with(R"({"params":{"control_name":"Z"}})")),
              ml::kErrGUIObjectNotFound);
    EXPECT_EQ(API::GetGuiLimitRectByIndex(with(R"({"params":{"limit_rect_index":0}})")), 0);
    EXPECT_EQ(request.m_Response["result"]["w"], 400.0);
    EXPECT_EQ(API::UpdateDPIScalingFactor(with(R"({"params":{"ScalingFactor":-1}})")),
              ml::eOutOfRangeNumber);
    EXPECT_EQ(API::UpdateDPIScalingFactor(with(R"({"params":{"ScalingFactor":1.5}})")), 0);
    EXPECT_DOUBLE_EQ(gui->GetGuiScalingFactor(), 1.5);
    short rect[4] = {0, 0, 120, 240};
    raw.SetPayloadPtr(rect);
    raw.m_PayloadSize = sizeof rect;
    EXPECT_EQ(API::SetViewRect(with("{}")), 0);
    EXPECT_EQ(gui->GetViewRect().Width(), 240);
}

TEST_F(GUIDocument, SkinsInheritFromTheirFathersAndARingOfFathersEnds) {
    Write("Skins/1000.xml", R"(<Skins>
      <Skin Name="Default"><ViewRect_List><Rect top="0" left="0" width="300" height="100"/></ViewRect_List></Skin>
      <Skin Name="Dark" FatherName="Default" HideControls="true"/>
      <Skin Name="Loop1" FatherName="Loop2"/><Skin Name="Loop2" FatherName="Loop1"/></Skins>)");
    CStandardGUI_X *gui = Create(FullGUI());
    ml::WCSkinsData &skins = gui->GetSkinsData();
    ASSERT_EQ(skins.GetNumSkins(), 4u);
    EXPECT_EQ(skins.GetSkinXMLHierarchy("Dark"),
              (std::vector<const ml::XML::CXMLElement *>{skins.GetSkinXML("Default"),
                                                         skins.GetSkinXML("Dark")}));
    EXPECT_EQ(skins.GetSkinXMLHierarchy("Loop1").size(), 2u);
    EXPECT_TRUE(skins.FindSkinDetailsByName("Dark")->m_HideControls);
    EXPECT_EQ(skins.GetSkinViewRect("Default").Width(), 300);
    EXPECT_TRUE(skins.ControlExists("Band3"));
    EXPECT_EQ(gui->UpdateSkin("Dark"), 0);
    EXPECT_EQ(gui->GetCurrentSkin(), "Dark");
    EXPECT_EQ(gui->UpdateSkin("Nope"), ml::kErrGUIObjectNotFound);
    EXPECT_EQ(gui->GetCurrentSkin(), "Dark");
}

// A GUI on a display of one 800 x 600 screen.
class WCScreenGUI : public CStandardGUI_X {
public:
    using CStandardGUI_X::CStandardGUI_X;

protected:
    std::vector<ml::WURect<int>> GetAllScreensRects() const override {
        return {ml::WURect<int>(0, 0, 600, 800)};
    }
};

TEST_F(GUIDocument, AScalingFitsWhenTheScaledViewFitsTheScreenOrOversizeIsAllowed) {
    WCScreenGUI gui(m_Container, "Gain");
    ml::WCResKey key("GUIXML", "1000");
    Write("GUIXML/1000.xml", FullGUI());
    ASSERT_EQ(gui.InitGui(m_Alg, key), 0);
    gui.SetViewRect(ml::WURect<short>(0, 0, 300, 400));
    EXPECT_TRUE(gui.IsScalingFactorFitsCurrentScreen(2.0));
    EXPECT_FALSE(gui.IsScalingFactorFitsCurrentScreen(2.01));
    m_Alg->SetPluginValue_bool("GUI_screen_oversize_supported", true);
    EXPECT_TRUE(gui.IsScalingFactorFitsCurrentScreen(3.0));
    gui.Dispose();
}

TEST_F(GUIDocument, ScalingFollowsTheSavedSizeWhenTheGUIMayResize) {
    m_Alg->SetPluginValue_bool("GUI_resize_supported", true);
    ASSERT_EQ(ml::GuiSizes::WriteGuiSizeToPrefs(m_Alg->GetAlgType(), 2.0, true), 0);
    EXPECT_DOUBLE_EQ(Create(FullGUI())->GetGuiScalingFactor(), 2.0);
    ASSERT_EQ(ml::GuiSizes::WriteGuiSizeToPrefs(m_Alg->GetAlgType(), 1.25, false), 0);
    EXPECT_DOUBLE_EQ(ml::GuiSizes::ReadGuiSizeFromPrefs(m_Alg->GetAlgType()), 1.25)
        << "the plug-in's own entry wins over the default";
    EXPECT_DOUBLE_EQ(ml::GuiSizes::ReadGuiSizeFromPrefs(ml::WCFourCC("Othr")), 2.0);
    EXPECT_DOUBLE_EQ(m_Alg->GetPluginValue_double("GainGUI_scaling_factor", 0), 2.0);
}

} // namespace
