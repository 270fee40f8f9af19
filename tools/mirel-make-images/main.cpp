// mirel-make-images: draws the pictures of the GainFilter example and writes them as the bundle's
// "PNG_" resources, <folder>/PNG_/<id>.png. The build runs it after copying the resources, so no
// picture is kept in the repository; the GUI XML documents of the example name these ids.
//
//   id    size        picture
//   2000  480 x 240   background of the "Primary" GUI: sections Gain, Filter, a tabbed one
//                     (Trim, Mode) and Output
//   2001  48 x 3072   knob strip: 64 frames of 48 x 48, top to bottom, pointer over 270 degrees
//   2010  48 x 24     switch, off
//   2011  48 x 24     switch, on
//   2020  48 x 48     ring drawn over a selected knob
//   2030  16 x 160    meter, unlit
//   2031  16 x 160    meter, lit (the meter shows as much of it as the level asks)
//   2040  240 x 120   background of the "Secondary" GUI: sections Gain, Filter
//   2050  12 x 20     digits of a digit display, one picture per glyph: 2050..2059 the digits 0
//   ..2062            to 9, 2060 '-', 2061 '.' (6 x 20), 2062 '+'
//   2070  28 x 140    slider track: a slot with a tick every tenth of its travel
//   2071  28 x 14     slider thumb
//   2080  96 x 72     channel mode chooser, one picture per state: the rows Stereo, Mono and
//   ..2082            Swap, the chosen one lit (2080 Stereo, 2081 Mono, 2082 Swap)
//   2090  56 x 20     tabs of the third section with their titles: 2090 "Trim" chosen, 2091
//   ..2093            "Trim" not chosen, 2092 "Mode" chosen, 2093 "Mode" not chosen
//
// The output is the same bytes on every run: no clock, no randomness, and fixed font options so
// that the text does not follow the user's font configuration.
#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <numbers>
#include <string>

namespace {

constexpr int kKnobFrames = 64;
constexpr int kKnobSize = 48;
constexpr int kMeterWidth = 16;
constexpr int kMeterHeight = 160;
constexpr double kMeterFloorDB = -60.0;
constexpr int kDigitWidth = 12;
constexpr int kDigitHeight = 20;
constexpr const char *kDigitGlyphs = "0123456789-.+";
constexpr int kSliderWidth = 28;
constexpr int kSliderHeight = 140;
constexpr int kThumbHeight = 14;
constexpr const char *kModes[] = {"Stereo", "Mono", "Swap"};
constexpr int kModeWidth = 96;
constexpr int kModeRow = 24;
constexpr int kTabWidth = 56;
constexpr int kTabHeight = 20;

struct WSColor {
    double r, g, b;
};
constexpr WSColor kPanel{28 / 255.0, 30 / 255.0, 34 / 255.0};
constexpr WSColor kSection{38 / 255.0, 41 / 255.0, 47 / 255.0};
constexpr WSColor kEdge{62 / 255.0, 66 / 255.0, 75 / 255.0};
constexpr WSColor kInset{17 / 255.0, 18 / 255.0, 21 / 255.0};
constexpr WSColor kText{200 / 255.0, 204 / 255.0, 210 / 255.0};
constexpr WSColor kAccent{240 / 255.0, 150 / 255.0, 40 / 255.0};

void SetColor(cairo_t *cr, WSColor c, double alpha = 1.0) {
    cairo_set_source_rgba(cr, c.r, c.g, c.b, alpha);
}

void RoundedRect(cairo_t *cr, double x, double y, double w, double h, double r) {
    const double pi = std::numbers::pi;
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - r, y + r, r, -pi / 2, 0);
    cairo_arc(cr, x + w - r, y + h - r, r, 0, pi / 2);
    cairo_arc(cr, x + r, y + h - r, r, pi / 2, pi);
    cairo_arc(cr, x + r, y + r, r, pi, 3 * pi / 2);
    cairo_close_path(cr);
}

void Text(cairo_t *cr, const char *text, double x, double y, double size, bool bold = false) {
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, size);
    SetColor(cr, kText);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, text);
}

// A titled box of the panel; the title sits in its top band above a thin accent line.
void Section(cairo_t *cr, const char *title, double x, double y, double w, double h) {
    RoundedRect(cr, x + 0.5, y + 0.5, w - 1, h - 1, 6);
    SetColor(cr, kSection);
    cairo_fill_preserve(cr);
    SetColor(cr, kEdge);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
    Text(cr, title, x + 10, y + 20, 12, true);
    SetColor(cr, kAccent, 0.8);
    cairo_rectangle(cr, x + 10, y + 27, w - 20, 1);
    cairo_fill(cr);
}

void Inset(cairo_t *cr, double x, double y, double w, double h) {
    RoundedRect(cr, x, y, w, h, 3);
    SetColor(cr, kInset);
    cairo_fill(cr);
}

// Paints one picture of the given size and writes it as <folder>/PNG_/<id>.png.
bool Write(const std::filesystem::path &folder, int id, int width, int height,
           const std::function<void(cairo_t *)> &paint) {
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_t *cr = cairo_create(surface);
    cairo_font_options_t *options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cr, options);
    cairo_font_options_destroy(options);
    paint(cr);
    const bool drawn = cairo_status(cr) == CAIRO_STATUS_SUCCESS;
    cairo_destroy(cr);
    const std::string path = (folder / "PNG_" / (std::to_string(id) + ".png")).string();
    const bool written =
        drawn && cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    if (!written)
        std::fprintf(stderr, "mirel-make-images: cannot write %s\n", path.c_str());
    return written;
}

// One knob of the strip at value 0..1: a body, the track of its 270 degrees from lower left
// through the top to lower right, the travelled part in the accent colour, and the pointer.
void Knob(cairo_t *cr, double value) {
    const double pi = std::numbers::pi;
    const double c = kKnobSize / 2.0;
    const double start = 0.75 * pi;
    const double angle = start + value * 1.5 * pi;
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cr, 3);
    SetColor(cr, kInset);
    cairo_arc(cr, c, c, 21, start, start + 1.5 * pi);
    cairo_stroke(cr);
    if (value > 0.0) {
        SetColor(cr, kAccent);
        cairo_arc(cr, c, c, 21, start, angle);
        cairo_stroke(cr);
    }
    cairo_pattern_t *body = cairo_pattern_create_linear(0, c - 16, 0, c + 16);
    cairo_pattern_add_color_stop_rgb(body, 0, 0.36, 0.38, 0.42);
    cairo_pattern_add_color_stop_rgb(body, 1, 0.18, 0.19, 0.22);
    cairo_set_source(cr, body);
    cairo_arc(cr, c, c, 16, 0, 2 * pi);
    cairo_fill(cr);
    cairo_pattern_destroy(body);
    SetColor(cr, kText);
    cairo_set_line_width(cr, 2.5);
    cairo_move_to(cr, c + 5 * std::cos(angle), c + 5 * std::sin(angle));
    cairo_line_to(cr, c + 14 * std::cos(angle), c + 14 * std::sin(angle));
    cairo_stroke(cr);
}

void KnobStrip(cairo_t *cr) {
    for (int i = 0; i < kKnobFrames; ++i) {
        cairo_save(cr);
        cairo_translate(cr, 0, i * kKnobSize);
        Knob(cr, i / static_cast<double>(kKnobFrames - 1));
        cairo_restore(cr);
    }
}

void Switch(cairo_t *cr, bool on) {
    RoundedRect(cr, 2, 2, 44, 20, 10);
    SetColor(cr, on ? kAccent : kInset);
    cairo_fill(cr);
    SetColor(cr, on ? WSColor{0.97, 0.97, 0.97} : WSColor{0.45, 0.47, 0.52});
    cairo_arc(cr, on ? 36 : 12, 12, 7, 0, 2 * std::numbers::pi);
    cairo_fill(cr);
}

// One glyph of a digit display in the accent colour on a clear ground, centred in its picture,
// so that a row of them reads as one number whatever the panel under it.
void Digit(cairo_t *cr, char glyph, int width) {
    const char text[2] = {glyph, '\0'};
    cairo_select_font_face(cr, "DejaVu Sans Mono", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr, 18);
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text, &extents);
    SetColor(cr, kAccent);
    cairo_move_to(cr, (width - extents.width) / 2 - extents.x_bearing, 16);
    cairo_show_text(cr, text);
}

bool WriteDigits(const std::filesystem::path &folder) {
    for (int i = 0; kDigitGlyphs[i] != '\0'; ++i) {
        const char glyph = kDigitGlyphs[i];
        const int width = glyph == '.' ? kDigitWidth / 2 : kDigitWidth;
        if (!Write(folder, 2050 + i, width, kDigitHeight,
                   [glyph, width](cairo_t *cr) { Digit(cr, glyph, width); }))
            return false;
    }
    return true;
}

void SelectionRing(cairo_t *cr) {
    SetColor(cr, kAccent, 0.9);
    cairo_set_line_width(cr, 1.5);
    cairo_arc(cr, kKnobSize / 2.0, kKnobSize / 2.0, 23, 0, 2 * std::numbers::pi);
    cairo_stroke(cr);
}

// Segments of 5 pixels from the bottom (-60 dB) to the top (0 dB); lit, they go green, then
// yellow from -18 dB, then red from -6 dB.
void Meter(cairo_t *cr, bool lit) {
    SetColor(cr, kInset);
    cairo_rectangle(cr, 0, 0, kMeterWidth, kMeterHeight);
    cairo_fill(cr);
    for (int y = kMeterHeight - 5; y >= 0; y -= 5) {
        const double db = kMeterFloorDB * (y + 2.5) / kMeterHeight;
        const WSColor c = db > -6.0    ? WSColor{0.90, 0.22, 0.18}
                          : db > -18.0 ? WSColor{0.93, 0.80, 0.20}
                                       : WSColor{0.30, 0.80, 0.35};
        SetColor(cr, c, lit ? 1.0 : 0.16);
        cairo_rectangle(cr, 2, y + 1, kMeterWidth - 4, 4);
        cairo_fill(cr);
    }
}

// Ticks every 10 dB to the left of a meter whose top left corner is (x, y).
void MeterScale(cairo_t *cr, double x, double y) {
    SetColor(cr, kText, 0.6);
    for (int db = 0; db >= kMeterFloorDB; db -= 10) {
        const double ty = y + kMeterHeight * db / kMeterFloorDB;
        cairo_rectangle(cr, x - 8, std::round(ty), 5, 1);
        cairo_fill(cr);
    }
}

// The slot the thumb travels in, 4 pixels wide, with ticks on both sides; the thumb's centre
// travels from half a thumb below the top to half a thumb above the bottom.
void SliderTrack(cairo_t *cr) {
    Inset(cr, kSliderWidth / 2.0 - 2, 4, 4, kSliderHeight - 8);
    SetColor(cr, kText, 0.35);
    for (int i = 0; i <= 10; ++i) {
        const double y = std::round(kThumbHeight / 2.0 + i * (kSliderHeight - kThumbHeight) / 10.0);
        cairo_rectangle(cr, 3, y, 6, 1);
        cairo_rectangle(cr, kSliderWidth - 9, y, 6, 1);
        cairo_fill(cr);
    }
}

void SliderThumb(cairo_t *cr) {
    RoundedRect(cr, 1, 1, kSliderWidth - 2, kThumbHeight - 2, 3);
    SetColor(cr, WSColor{0.78, 0.80, 0.84});
    cairo_fill(cr);
    SetColor(cr, kAccent);
    cairo_rectangle(cr, 4, kThumbHeight / 2.0 - 1, kSliderWidth - 8, 2);
    cairo_fill(cr);
}

// The three rows of the channel mode; the chosen one on an accent ground with a lit dot.
void ModeChooser(cairo_t *cr, int chosen) {
    for (int row = 0; row < 3; ++row) {
        const double y = row * kModeRow;
        if (row == chosen) {
            RoundedRect(cr, 1, y + 2, kModeWidth - 2, kModeRow - 4, 4);
            SetColor(cr, kAccent, 0.25);
            cairo_fill(cr);
        }
        cairo_arc(cr, 12, y + kModeRow / 2.0, 5, 0, 2 * std::numbers::pi);
        SetColor(cr, row == chosen ? kAccent : kInset);
        cairo_fill(cr);
        Text(cr, kModes[row], 24, y + kModeRow / 2.0 + 4, 11, row == chosen);
    }
}

// A tab with its title: the chosen one on the section's colour with an accent line under it,
// the other sunk into the panel with a dimmer title.
void Tab(cairo_t *cr, const char *title, bool chosen) {
    RoundedRect(cr, 0.5, 0.5, kTabWidth - 1, kTabHeight + 4, 4);
    SetColor(cr, chosen ? kEdge : kInset);
    cairo_fill(cr);
    if (chosen) {
        SetColor(cr, kAccent);
        cairo_rectangle(cr, 4, kTabHeight - 2, kTabWidth - 8, 2);
        cairo_fill(cr);
    }
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           chosen ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, 11);
    cairo_text_extents_t extents;
    cairo_text_extents(cr, title, &extents);
    SetColor(cr, kText, chosen ? 1.0 : 0.6);
    cairo_move_to(cr, (kTabWidth - extents.width) / 2 - extents.x_bearing, 14);
    cairo_show_text(cr, title);
}

// Coordinates match the control rects of GUIXML/1000.xml. The third section has no title: its
// tabs (Trim, Mode) draw themselves in its top band.
void PrimaryBackground(cairo_t *cr) {
    SetColor(cr, kPanel);
    cairo_paint(cr);
    Section(cr, "Gain", 8, 8, 112, 224);
    Inset(cr, 24, 128, 80, 20);
    Text(cr, "Type a gain", 28, 172, 10);
    Inset(cr, 24, 180, 80, 20);
    Section(cr, "Filter", 128, 8, 112, 224);
    Text(cr, "Cutoff", 166, 124, 10);
    Text(cr, "Slope", 170, 182, 10);
    Inset(cr, 136, 188, 96, 20);
    Section(cr, "", 248, 8, 136, 224);
    Section(cr, "Output", 392, 8, 80, 224);
    MeterScale(cr, 424, 48);
}

// Coordinates match the control rects of GUIXML/1001.xml.
void SecondaryBackground(cairo_t *cr) {
    SetColor(cr, kPanel);
    cairo_paint(cr);
    Section(cr, "Gain", 8, 8, 72, 104);
    Section(cr, "Filter", 88, 8, 144, 104);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: mirel-make-images <resources folder>\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code err;
    std::filesystem::create_directories(folder / "PNG_", err);
    if (err) {
        std::fprintf(stderr, "mirel-make-images: cannot create %s/PNG_\n", argv[1]);
        return 1;
    }
    const bool ok =
        Write(folder, 2000, 480, 240, PrimaryBackground) &&
        Write(folder, 2001, kKnobSize, kKnobSize * kKnobFrames, KnobStrip) &&
        Write(folder, 2010, 48, 24, [](cairo_t *cr) { Switch(cr, false); }) &&
        Write(folder, 2011, 48, 24, [](cairo_t *cr) { Switch(cr, true); }) &&
        Write(folder, 2020, kKnobSize, kKnobSize, SelectionRing) &&
        Write(folder, 2030, kMeterWidth, kMeterHeight, [](cairo_t *cr) { Meter(cr, false); }) &&
        Write(folder, 2031, kMeterWidth, kMeterHeight, [](cairo_t *cr) { Meter(cr, true); }) &&
        Write(folder, 2040, 240, 120, SecondaryBackground) && WriteDigits(folder) &&
        Write(folder, 2070, kSliderWidth, kSliderHeight, SliderTrack) &&
        Write(folder, 2071, kSliderWidth, kThumbHeight, SliderThumb) &&
        Write(folder, 2080, kModeWidth, 3 * kModeRow, [](cairo_t *cr) { ModeChooser(cr, 0); }) &&
        Write(folder, 2081, kModeWidth, 3 * kModeRow, [](cairo_t *cr) { ModeChooser(cr, 1); }) &&
        Write(folder, 2082, kModeWidth, 3 * kModeRow, [](cairo_t *cr) { ModeChooser(cr, 2); }) &&
        Write(folder, 2090, kTabWidth, kTabHeight, [](cairo_t *cr) { Tab(cr, "Trim", true); }) &&
        Write(folder, 2091, kTabWidth, kTabHeight, [](cairo_t *cr) { Tab(cr, "Trim", false); }) &&
        Write(folder, 2092, kTabWidth, kTabHeight, [](cairo_t *cr) { Tab(cr, "Mode", true); }) &&
        Write(folder, 2093, kTabWidth, kTabHeight, [](cairo_t *cr) { Tab(cr, "Mode", false); });
    // Gives back cairo's font caches, so that a leak checker sees only what is ours.
    cairo_debug_reset_static_data();
    return ok ? 0 : 1;
}
