// A GUI of 500 sliders on one parameter: what the input path adds to a parameter change. A drag
// event (pixels to states, the registrations' tests, the parameter change, the buffers sent)
// against the same change asked of the algorithm directly, as a host's automation does; and a
// click with its release, whose hit test and selection walk every control.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "bench/support/WCBenchGUI.h"
#include "bench/support/WCBenchRatios.h"
#include "view/WCEventData.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

constexpr int kControls = 500;
constexpr int kColumns = 25;

const char *kParamXML = R"(<ParamXML><Parameter Name="Gain"><Scale><ScaleType Type="linear"/>
  <Minimum>-24</Minimum><Maximum>12</Maximum><Resolution>0.1</Resolution></Scale>
  <Units>dB</Units></Parameter></ParamXML>)";

// The GUI: a grid of sliders, each dragged vertically.
struct WSGUI {
    mirel_bench::WCBenchGUI m_Bench;
    ml::CStandardGUI_X *m_GUI = nullptr;
    ml::cALGORITHM *m_Alg = nullptr;

    WSGUI()
        : m_Bench("Input", kParamXML, GUIXML()), m_GUI(m_Bench.GUI()), m_Alg(m_Bench.Algorithm()) {}

    static std::string GUIXML() {
        std::string xml =
            "<GUI version=\"5\"><ViewRect_List><Rect top=\"0\" left=\"0\" width=\"" +
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
        return xml + "</Control_List></GUI>";
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
