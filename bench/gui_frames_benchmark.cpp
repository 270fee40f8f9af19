// A GUI of 500 controls over a base picture: writing and painting a full frame against a
// minimal one with a single dirty control (aim: the minimal frame costs at most 5 % of the full
// one, both in writing and in painting).

#include <benchmark/benchmark.h>

#include <cairo.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "bench/support/WCBenchGUI.h"
#include "bench/support/WCBenchRatios.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;

constexpr int kControls = 500;
constexpr int kColumns = 25;
constexpr int kWidth = kColumns * 40;
constexpr int kHeight = (kControls / kColumns) * 40;

const char *kParamXML = R"(<ParamXML><Parameter Name="Gain"><Scale><ScaleType Type="linear"/>
  <Minimum>-24</Minimum><Maximum>12</Maximum></Scale><Units>dB</Units></Parameter></ParamXML>)";

// A base picture and a GUI of coloured controls, each showing the gain as text.
struct WSGUI {
    mirel_bench::WCBenchGUI m_Bench;
    ml::CStandardGUI_X *m_GUI = nullptr;

    WSGUI() : m_Bench("Frames", kParamXML, GUIXML(), WriteBasePicture), m_GUI(m_Bench.GUI()) {}

    static void WriteBasePicture(const fs::path &resources) {
        fs::create_directories(resources / "PNG_");
        cairo_surface_t *base = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWidth, kHeight);
        cairo_t *cr = cairo_create(base);
        cairo_pattern_t *gradient = cairo_pattern_create_linear(0, 0, kWidth, kHeight);
        cairo_pattern_add_color_stop_rgb(gradient, 0, 0.1, 0.1, 0.15);
        cairo_pattern_add_color_stop_rgb(gradient, 1, 0.2, 0.25, 0.3);
        cairo_set_source(cr, gradient);
        cairo_paint(cr);
        cairo_pattern_destroy(gradient);
        cairo_destroy(cr);
        cairo_surface_write_to_png(base, (resources / "PNG_/1.png").c_str());
        cairo_surface_destroy(base);
    }
    static std::string GUIXML() {
        std::string xml = "<GUI version=\"5\"><ViewRect_List><Rect top=\"0\" left=\"0\" width=\"" +
                          std::to_string(kWidth) + "\" height=\"" + std::to_string(kHeight) +
                          "\"/></ViewRect_List><Pict_List><Image Type=\"Base\" ResID=\"1\"/>"
                          "</Pict_List><Flag_List><NoAlwaysDraw/></Flag_List><Control_List>";
        for (int i = 0; i < kControls; ++i) {
            const int x = (i % kColumns) * 40;
            const int y = (i / kColumns) * 40;
            char control[1024];
            std::snprintf(control, sizeof control,
                          R"(<cCONTROLLER Name="C%d"><Class Type="Slider"/>
              <ControlRect top="%d" left="%d" width="36" height="36"/>
              <ControlColor red="%d" green="90" blue="140"/>
              <ParameterList><Param Name="Gain"><TextWin Type="Value"><Font Name="DejaVu Sans" Size="9"/>
                <PositionRect top="22" left="0" width="36" height="12"/></TextWin></Param>
              </ParameterList></cCONTROLLER>)",
                          i, y, x, 40 + i % 200);
            xml += control;
        }
        return xml + "</Control_List></GUI>";
    }
    // One frame: full when `full`, else with control 250 alone dirty.
    void Frame(ml::miGS::WCGraphicStreamBinaryWriter &writer, bool full) {
        writer.ClearStream();
        if (full)
            m_GUI->SetNeedToRedrawGUI();
        else
            m_GUI->GetControlPtrByIndex(kControls / 2)->SetNeedToRedrawControlOnly();
        m_GUI->GetDrawInstructions(writer);
    }
};

WSGUI &GUI() {
    static WSGUI gui;
    return gui;
}

void BM_WriteFrame(benchmark::State &state) {
    const bool full = state.range(0) != 0;
    if (GUI().m_GUI == nullptr) {
        state.SkipWithError("the GUI was not built");
        return;
    }
    ml::miGS::WCGraphicStreamBinaryWriter writer(128);
    GUI().Frame(writer, full);
    for (auto _ : state) {
        GUI().Frame(writer, full);
        benchmark::DoNotOptimize(writer.GetStreamPtr());
    }
    state.counters["bytes"] = static_cast<double>(writer.GetStreamSize());
}
BENCHMARK(BM_WriteFrame)->ArgName("full")->Arg(1)->Arg(0);

void BM_PaintFrame(benchmark::State &state) {
    const bool full = state.range(0) != 0;
    if (GUI().m_GUI == nullptr) {
        state.SkipWithError("the GUI was not built");
        return;
    }
    ml::miGS::WCGraphicStreamBinaryWriter writer(128);
    ml::miGS::WCGraphicStreamToCairo painter;
    painter.FollowDataPointers(true);
    painter.SetKeepPicture(true);
    GUI().Frame(writer, true);
    painter.ExecStream(static_cast<char *>(writer.GetStreamPtr()), writer.GetStreamSize());
    GUI().Frame(writer, full);
    for (auto _ : state)
        painter.ExecStream(static_cast<char *>(writer.GetStreamPtr()), writer.GetStreamSize());
}
BENCHMARK(BM_PaintFrame)->ArgName("full")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    ratios.PrintRatio("BM_WriteFrame/full:0", "BM_WriteFrame/full:1",
                      "writing a frame with 1 dirty control of 500 / a full frame (aim 0.05)");
    ratios.PrintRatio("BM_PaintFrame/full:0", "BM_PaintFrame/full:1",
                      "painting it over the last picture / painting a full frame (aim 0.05)");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
