// A GUI of 500 sliders on one parameter: what the input path adds to a parameter change. A drag
// event (pixels to states, the registrations' tests, the parameter change, the buffers sent)
// against the same change asked of the algorithm directly, as a host's automation does; and a
// click with its release, whose hit test and selection walk every control.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "bench/support/WCBenchRatios.h"
#include "resources/ResourceManager.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "view/WCEventData.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
namespace PVM = ml::PluginViewManager;

constexpr int kControls = 500;
constexpr int kColumns = 25;

const char *kParamXML = R"(<ParamXML><Parameter Name="Gain"><Scale><ScaleType Type="linear"/>
  <Minimum>-24</Minimum><Maximum>12</Maximum><Resolution>0.1</Resolution></Scale>
  <Units>dB</Units></Parameter></ParamXML>)";

class WCPlugin : public mirel_test::WCSilentAlgorithm {
public:
    WCPlugin(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container)
        : WCSilentAlgorithm(info, container) {
        SetAlgName("Input");
    }

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

// A bundle with the GUI in a temporary folder, and a started plug-in showing it.
struct WSGUI {
    fs::path m_Folder;
    ml::WTResContainerType *m_Container = nullptr;
    std::unique_ptr<WCPlugin> m_Alg;
    ml::CStandardGUI_X *m_GUI = nullptr;

    WSGUI() {
        m_Folder = fs::temp_directory_path() / ("mirel-gui-input-" + std::to_string(::getpid()));
        const fs::path resources = m_Folder / "Input.bundle/Contents/Resources";
        fs::create_directories(resources / "GUIXML");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  GUIXML: .xml\n";
        std::string xml = "<GUI version=\"5\"><ViewRect_List><Rect top=\"0\" left=\"0\" width=\"" +
                          std::to_string(kColumns * 40) + "\" height=\"" +
                          std::to_string(kControls / kColumns * 40) +
                          "\"/></ViewRect_List><Flag_List><NoAlwaysDraw/></Flag_List><Control_List>";
        for (int i = 0; i < kControls; ++i) {
            char control[512];
            std::snprintf(control, sizeof control,
                          R"(<cCONTROLLER Name="C%d"><Class Type="Slider"/>
              <ControlRect top="%d" left="%d" width="36" height="36"/>
              <ParameterList><Param Name="Gain" UpdateGraphics="true">
                <RegisterType>MouseVertical</RegisterType></Param></ParameterList></cCONTROLLER>)",
                          i, (i / kColumns) * 40, (i % kColumns) * 40);
            xml += control;
        }
        xml += "</Control_List></GUI>";
        std::ofstream(resources / "GUIXML/1000.xml") << xml;
        ml::RM::OpenResContainer((m_Folder / "Input.bundle").c_str(), 0, m_Container);
        ml::MirelComponentInfo info;
        m_Alg = std::make_unique<WCPlugin>(info, m_Container);
        m_Alg->FinishCreate();
        if (m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary") == 0)
            m_GUI = m_Alg->GetGUIPtr("Primary");
    }
    ~WSGUI() {
        m_Alg.reset();
        ml::RM::CloseResContainer(m_Container);
        ml::RM::Dispose();
        std::error_code err;
        fs::remove_all(m_Folder, err);
    }
    // The centre of control `index`.
    static ml::WCPoint2D<short> Centre(int index) {
        return ml::WCPoint2D<short>(static_cast<short>((index % kColumns) * 40 + 18),
                                    static_cast<short>((index / kColumns) * 40 + 18));
    }
};

WSGUI &GUI() {
    static WSGUI gui;
    return gui;
}

void Press(PVM::WCEventData &event, ml::WCPoint2D<short> at, bool down) {
    event.SetMouseLocation(at);
    event.SetMouseButtonPressed(PVM::eMouseButtonLeft, down);
    if (down) {
        event.SetMouseClickCount(PVM::eClickSingle);
        event.SetMouseDownLocation(at);
        GUI().m_GUI->DoMouseDown(event);
    } else {
        GUI().m_GUI->DoMouseUp(event);
    }
}

// Three pixels up, then back down: each event changes the gain by 1/12 of its scale.
void BM_DragEvent(benchmark::State &state) {
    if (GUI().m_GUI == nullptr) {
        state.SkipWithError("the GUI was not built");
        return;
    }
    PVM::WCEventData event;
    const ml::WCPoint2D<short> centre = WSGUI::Centre(kControls / 2);
    Press(event, centre, true);
    short offset = -3;
    for (auto _ : state) {
        event.SetMouseLocation(ml::WCPoint2D<short>(centre.x, centre.y + offset));
        GUI().m_GUI->DoMouseMove(event);
        offset = offset == 0 ? -3 : 0;
    }
    Press(event, centre, false);
}
BENCHMARK(BM_DragEvent);

// The same changes of state, asked of the algorithm and sent.
void BM_RequestState(benchmark::State &state) {
    if (GUI().m_GUI == nullptr) {
        state.SkipWithError("the GUI was not built");
        return;
    }
    const double step = 3.0 * 1000.0 / 36.0;
    double value = 500.0;
    for (auto _ : state) {
        value = value == 500.0 ? 500.0 + step : 500.0;
        ml::BUFFER_HEADER *chain = GUI().m_Alg->UpdateParamRequestState(0, value);
        GUI().m_Alg->SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
    }
}
BENCHMARK(BM_RequestState);

// A click on the last control and its release: the hit test and the selection walk all 500.
void BM_ClickAndRelease(benchmark::State &state) {
    if (GUI().m_GUI == nullptr) {
        state.SkipWithError("the GUI was not built");
        return;
    }
    PVM::WCEventData event;
    const ml::WCPoint2D<short> centre = WSGUI::Centre(kControls - 1);
    for (auto _ : state) {
        Press(event, centre, true);
        Press(event, centre, false);
    }
}
BENCHMARK(BM_ClickAndRelease);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_DragEvent", "BM_RequestState",
                      "a drag event / the parameter change it makes");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
