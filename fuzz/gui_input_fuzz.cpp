// Plays arbitrary text, read as an event script, into a live GUI through a headless view: a knob,
// a discrete slider, a two-axis pad, a hidden knob and a disabled one on a started plug-in.
// Whatever the events, every parameter stays on its scale, the view lets go of the capture and
// the cursor at the end, and no buffer is left behind.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "resources/ResourceManager.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "view/PluginViewManager.h"
#include "view/WCEventScript.h"
#include "view/linux/WUEventScriptPlayer.h"
#include "view/linux/WUHeadlessView.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
namespace PVM = ml::PluginViewManager;

const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum><Resolution>0.1</Resolution></Scale></Parameter>
  <Parameter Name="MODE"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>2</Maximum>
    <NumberOfStates>3</NumberOfStates></Scale></Parameter>
  <Parameter Name="X"><Scale><ScaleType Type="logarithmic"/><Minimum>20</Minimum>
    <Maximum>20000</Maximum><Resolution>1</Resolution></Scale></Parameter>
</ParamXML>)";

const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="300" height="120"/></ViewRect_List>
  <Control_List>
    <cCONTROLLER Name="Knob"><Class Type="RotationKnob"/><MaxSelection>2</MaxSelection>
      <Flags><ReciveTextEntery/></Flags><ControlRect top="10" left="10" width="48" height="48"/>
      <ParameterList><Param Name="Gain"><RegisterType>MouseVertical</RegisterType>
        <RegisterType>MouseWheelVertical</RegisterType><RegisterType>OptionReset</RegisterType>
        <Register Type="Drag"><Group>1</Group></Register>
        <TextWin Type="Value"><PositionRect top="30" left="0" width="48" height="16"/></TextWin>
      </Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Slider"><Class Type="Slider"/>
      <ControlRect top="10" left="70" width="20" height="96"/>
      <ParameterList><Param Name="MODE"><RegisterType>MouseVertical</RegisterType>
        <RegisterType>MouseUp</RegisterType><Register Type="Drop"><Group>1</Group></Register>
      </Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Pad"><Class Type="Graph"/><ControlRect top="10" left="100" width="100" height="100"/>
      <ParameterList>
        <Param Name="X"><RegisterType>MouseHorizontal</RegisterType><RegisterType>AbsMouseMoveHorizontal</RegisterType></Param>
        <Param Name="Gain"><RegisterType>MouseVertical</RegisterType><Modifiers>Shift</Modifiers></Param>
      </ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Hidden"><Class Type="RotationKnob"/><Flags><Hidden/></Flags>
      <ControlRect top="10" left="210" width="40" height="40"/>
      <ParameterList><Param Name="X"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
    <cCONTROLLER Name="Off"><Class Type="RotationKnob"/><ControlRect top="60" left="210" width="40" height="40"/>
      <ParameterList><Param Name="MODE"><RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>
  </Control_List></GUI>)";

class WCPlugin : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

// The plug-in lives for the whole run; each input gets a fresh GUI in a fresh view.
struct WSWorld {
    fs::path m_Folder =
        fs::temp_directory_path() / ("mirel-gui-input-fuzz-" + std::to_string(::getpid()));
    ml::WTResContainerType *m_Container = nullptr;
    std::unique_ptr<WCPlugin> m_Alg;

    WSWorld() {
        const fs::path resources = m_Folder / "Fuzz.bundle/Contents/Resources";
        fs::create_directories(resources / "GUIXML");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  GUIXML: .xml\n";
        std::ofstream(resources / "GUIXML/1000.xml") << kGUI;
        ml::RM::OpenResContainer((m_Folder / "Fuzz.bundle").c_str(), 0, m_Container);
        ml::MirelComponentInfo info;
        m_Alg = std::make_unique<WCPlugin>(info, m_Container);
        m_Alg->FinishCreate();
        PVM::Init();
    }
    ~WSWorld() {
        m_Alg.reset();
        ml::RM::CloseResContainer(m_Container);
        std::error_code err;
        fs::remove_all(m_Folder, err);
    }
};

void Check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static WSWorld world;
    PVM::WCEventScript script;
    if (script.ReadFromYAML(std::string(reinterpret_cast<const char *>(data), size)) != 0)
        return 0;
    Check(world.m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary") == 0);
    ml::CStandardGUI_X *gui = world.m_Alg->GetGUIPtr("Primary");
    gui->GetControlPtrByName("Off")->SetDisabled();
    PVM::WCPluginViewCreateOptions options;
    options.m_width = 300;
    options.m_height = 120;
    options.m_callback = &ml::CStandardGUI_X::ViewEventCallback;
    options.m_reference = gui;
    ml::WSPluginView *view = nullptr;
    Check(PVM::CreatePluginView(options, view) == 0);
    PVM::RegisterOsForDragAndDrop(view);
    gui->SetPluginView(view);
    gui->SetInputClock([]() -> std::int64_t {
        return static_cast<std::int64_t>(PVM::GetCurrentTimeMs()) * 1000;
    });
    PVM::PlayEventScript(view, script, [](const std::string &) { return 0; });
    for (std::uint64_t id = 0; id < world.m_Alg->GetNumParams(); ++id) {
        double value = 0.0;
        Check(world.m_Alg->GetParamRealWorld(id, value) == 0 && value == value);
    }
    // The GUI goes in whatever gesture the script left it: the user gets the cursor back.
    Check(world.m_Alg->DisposeGuiAndRemoveFromMap("Primary") == 0);
    Check(!ml::Utils::IsCursorHidden() && PVM::PVMGetCapture() == nullptr);
    PVM::DisposePluginView(view);
    return 0;
}
