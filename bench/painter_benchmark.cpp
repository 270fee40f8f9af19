// Painting a full frame of 200 knobs (each a frame, a knob picture or a filled arc, and its value
// as text) through the cairo painter of the graphic stream, against the same picture drawn by
// hand-written cairo calls on the same surface: the cost a GUI would pay without a stream. The
// ratio is printed at the end; the painter aims at 1.3 times the hand-written calls at most.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>

#include <benchmark/benchmark.h>
#include <cairo.h>

#include "bench/support/WCBenchRatios.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "resources/ResourceManager.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

namespace fs = std::filesystem;

constexpr int kKnobs = 200;
constexpr int kColumns = 20;
constexpr int kKnobWidth = 48;
constexpr int kKnobHeight = 56;
constexpr int kWidth = kColumns * kKnobWidth;
constexpr int kHeight = kKnobs / kColumns * kKnobHeight;
constexpr short kKnobImage = 1;
constexpr int kFontSize = 10;

// A knob picture of 40 x 40, as a plug-in bundle holds it.
cairo_surface_t *MakeKnobImage() {
    cairo_surface_t *image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 40, 40);
    cairo_t *cr = cairo_create(image);
    cairo_pattern_t *shade = cairo_pattern_create_radial(14, 14, 2, 20, 20, 20);
    cairo_pattern_add_color_stop_rgb(shade, 0, 0.8, 0.8, 0.85);
    cairo_pattern_add_color_stop_rgb(shade, 1, 0.2, 0.2, 0.25);
    cairo_set_source(cr, shade);
    cairo_arc(cr, 20, 20, 19, 0, 2 * std::numbers::pi);
    cairo_fill(cr);
    cairo_pattern_destroy(shade);
    cairo_destroy(cr);
    return image;
}

// A temporary bundle with the knob picture, removed with the resource manager's hold on it.
struct WSBundle {
    std::string m_Folder;
    WSBundle() {
        std::string pattern = (fs::temp_directory_path() / "mirel_painter_XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        m_Folder = pattern + "/Knobs.bundle/";
        const fs::path resources = fs::path(m_Folder) / "Contents" / "Resources";
        fs::create_directories(resources / "PNG_");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  PNG_: .png\n";
        cairo_surface_t *image = MakeKnobImage();
        cairo_surface_write_to_png(image, (resources / "PNG_" / "1.png").c_str());
        cairo_surface_destroy(image);
    }
    ~WSBundle() {
        RM::Dispose();
        fs::remove_all(fs::path(m_Folder).parent_path());
    }
};

// Made and removed by main, around the runs.
WSBundle *g_Bundle = nullptr;

WSBundle &Bundle() {
    return *g_Bundle;
}

void KnobValue(int knob, char (&text)[16]) {
    std::snprintf(text, sizeof text, "%.1f dB", -24.0 + knob * 0.25);
}

double KnobAngle(int knob) {
    return (knob % 27) * 10.0;
}

void WriteFrame(WCGraphicStreamBinaryWriter &writer) {
    SGSStream stream;
    std::strcpy(stream.stream_name, "Knobs");
    stream.frame.rect.size = {kWidth, kHeight};
    WCStGSStreamStructWriter guard(writer, stream, Bundle().m_Folder.c_str());
    writer.DrawSolidRect(WCRGBAColor(40, 40, 44), WURect<short>(0, 0, kHeight, kWidth));
    for (int knob = 0; knob < kKnobs; ++knob) {
        const int x = knob % kColumns * kKnobWidth;
        const int y = knob / kColumns * kKnobHeight;
        WCStGSFrameStructWriter frame(writer, WURect<int>(y, x, y + kKnobHeight, x + kKnobWidth),
                                      knob);
        if (knob % 2 == 0) {
            writer.DrawPNGAtPosition(kKnobImage, WCPoint2D<short>(4, 2));
        } else {
            SGSDrawOval arc;
            arc.rect = {{4, 2}, {40, 40}};
            arc.fill = 1;
            arc.start_angle = -135;
            arc.sweep_angle = static_cast<float>(KnobAngle(knob));
            arc.draw_color = {230, 160, 40, 255};
            writer.DrawOval(arc);
        }
        char value[16];
        KnobValue(knob, value);
        writer.Font("DejaVu Sans", kFontSize, WCRGBAColor(220, 220, 220));
        writer.DrawTheText(value, knob, eGSAlignHCenter, eGSAlignBottom);
    }
}

void BM_PainterFrame(benchmark::State &state) {
    WCGraphicStreamBinaryWriter writer;
    WriteFrame(writer);
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWidth, kHeight);
    WCGraphicStreamToCairo painter(surface);
    for (auto _ : state) {
        const WTErr result = painter.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize());
        benchmark::DoNotOptimize(result);
    }
    if (painter.GetFirstDrawError() != eNoErr)
        state.SkipWithError("the painter could not draw the frame");
    cairo_surface_destroy(surface);
}
BENCHMARK(BM_PainterFrame)->Unit(benchmark::kMillisecond);

// The same picture as a GUI would draw it straight with cairo: the decoded picture and the face
// made once, each knob clipped to its rectangle.
void BM_HandWrittenCairoFrame(benchmark::State &state) {
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWidth, kHeight);
    cairo_surface_t *knobImage = MakeKnobImage();
    cairo_font_face_t *face = cairo_toy_font_face_create("DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                                                         CAIRO_FONT_WEIGHT_NORMAL);
    for (auto _ : state) {
        cairo_t *cr = cairo_create(surface);
        cairo_set_source_rgb(cr, 40 / 255.0, 40 / 255.0, 44 / 255.0);
        cairo_rectangle(cr, 0, 0, kWidth, kHeight);
        cairo_fill(cr);
        for (int knob = 0; knob < kKnobs; ++knob) {
            cairo_save(cr);
            cairo_translate(cr, knob % kColumns * kKnobWidth, knob / kColumns * kKnobHeight);
            cairo_rectangle(cr, 0, 0, kKnobWidth, kKnobHeight);
            cairo_clip(cr);
            if (knob % 2 == 0) {
                cairo_set_source_surface(cr, knobImage, 4, 2);
                cairo_rectangle(cr, 4, 2, 40, 40);
                cairo_fill(cr);
            } else {
                const double start = -135 * std::numbers::pi / 180 - std::numbers::pi / 2;
                cairo_set_source_rgb(cr, 230 / 255.0, 160 / 255.0, 40 / 255.0);
                cairo_move_to(cr, 24, 22);
                cairo_arc(cr, 24, 22, 20, start, start + KnobAngle(knob) * std::numbers::pi / 180);
                cairo_close_path(cr);
                cairo_fill(cr);
            }
            char value[16];
            KnobValue(knob, value);
            cairo_set_font_face(cr, face);
            cairo_set_font_size(cr, kFontSize);
            cairo_text_extents_t extents;
            cairo_text_extents(cr, value, &extents);
            cairo_font_extents_t fontExtents;
            cairo_font_extents(cr, &fontExtents);
            cairo_set_source_rgb(cr, 220 / 255.0, 220 / 255.0, 220 / 255.0);
            cairo_move_to(cr, std::round((kKnobWidth - extents.x_advance) / 2),
                          std::round(kKnobHeight - fontExtents.descent));
            cairo_show_text(cr, value);
            cairo_restore(cr);
        }
        cairo_destroy(cr);
        cairo_surface_flush(surface);
    }
    cairo_font_face_destroy(face);
    cairo_surface_destroy(knobImage);
    cairo_surface_destroy(surface);
}
BENCHMARK(BM_HandWrittenCairoFrame)->Unit(benchmark::kMillisecond);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    std::printf("  Frame: %d knobs on %d x %d pixels\n", kKnobs, kWidth, kHeight);
    ratios.PrintRatio("BM_PainterFrame", "BM_HandWrittenCairoFrame",
                      "painter against hand-written cairo (aim: 1.3 at most)");
}

} // namespace

int main(int argc, char **argv) {
    WSBundle bundle;
    g_Bundle = &bundle;
    const int result = mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                            mirel_bench::WCBenchRatios::eCPUTime);
    return result;
}
