#include "graphic_stream/WCGraphicStreamToCairo.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include <cairo.h>
#include <gtest/gtest.h>

#include "tests/support/WCGoldenPicture.h"
#include <webp/encode.h>

#include "graphic_stream/WCGSArrays.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "resources/ResourceManager.h"
#include "tests/support/WCTestHome.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

namespace fs = std::filesystem;
using Writer = WCGraphicStreamBinaryWriter;
using Rect = WURect<short>;

const std::string kGoldenFolder = std::string(MIREL_GS_TEST_DATA) + "/painter";

// A 16 x 12 picture with a transparent corner: red left, blue right, a green bar across.
cairo_surface_t *MakeTestImage() {
    cairo_surface_t *image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 16, 12);
    cairo_t *cr = cairo_create(image);
    cairo_set_source_rgb(cr, 0.9, 0.1, 0.1);
    cairo_rectangle(cr, 0, 0, 8, 12);
    cairo_fill(cr);
    cairo_set_source_rgb(cr, 0.1, 0.2, 0.9);
    cairo_rectangle(cr, 8, 0, 8, 12);
    cairo_fill(cr);
    cairo_set_source_rgb(cr, 0.1, 0.8, 0.1);
    cairo_rectangle(cr, 0, 5, 16, 2);
    cairo_fill(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
    cairo_rectangle(cr, 12, 0, 4, 4);
    cairo_fill(cr);
    cairo_destroy(cr);
    return image;
}

// Compares the painter's picture with the reviewed PNG; MIREL_UPDATE_GOLDEN=1 rewrites it.
void ExpectGoldenPicture(const WCGraphicStreamToCairo &painter, const std::string &name) {
    mirel_test::ExpectGoldenPicture(painter.GetSurface(), kGoldenFolder, name);
}

// A plug-in bundle in a temporary folder with image 7 as PNG and image 8 as WebP, and the same
// picture as a loose PNG file for images named by path.
class WCGraphicStreamToCairoTest : public ::testing::Test {
protected:
    void SetUp() override {
        const fs::path resources = m_Home.path() / "Knob.bundle" / "Contents" / "Resources";
        fs::create_directories(resources / "PNG_");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  PNG_: .png\n";
        cairo_surface_t *image = MakeTestImage();
        cairo_surface_write_to_png(image, (resources / "PNG_" / "7.png").c_str());
        m_LoosePNG = (m_Home.path() / "loose.png").string();
        cairo_surface_write_to_png(image, m_LoosePNG.c_str());
        cairo_surface_flush(image);
        std::uint8_t *webp = nullptr;
        const std::size_t bytes =
            WebPEncodeLosslessBGRA(cairo_image_surface_get_data(image), 16, 12,
                                   cairo_image_surface_get_stride(image), &webp);
        std::ofstream(resources / "PNG_" / "8.png", std::ios::binary)
            .write(reinterpret_cast<const char *>(webp), static_cast<std::streamsize>(bytes));
        WebPFree(webp);
        cairo_surface_destroy(image);
        m_Bundle = (m_Home.path() / "Knob.bundle").string() + "/";
    }
    void TearDown() override { RM::Dispose(); }

    // A 64 x 48 stream on a grey ground holding what `body` writes.
    void Write(Writer &writer, const std::function<void(Writer &)> &body) const {
        SGSStream stream;
        std::strcpy(stream.stream_name, "Painter test");
        stream.frame.rect.size = {64, 48};
        WCStGSStreamStructWriter guard(writer, stream, m_Bundle.c_str());
        writer.DrawSolidRect(WCRGBAColor(60, 60, 60), Rect(0, 0, 48, 64));
        body(writer);
    }

    mirel_test::WCTestHome m_Home;
    std::string m_Bundle;
    std::string m_LoosePNG;
};

void Shape(Writer &writer, std::int32_t method, std::vector<WCPoint2D<float>> points,
           WCRGBAColor color, float width = 1.0f, std::uint16_t pattern = 0xFFFF,
           std::uint32_t flags = 0) {
    writer.Data(points.data(), points.size(), eGSPurposePoint2D);
    SGSDrawVertices vertices;
    vertices.method = method;
    vertices.stroke_width = width;
    vertices.stroke_pattern = pattern;
    vertices.flags = flags;
    vertices.draw_color = {color.red, color.green, color.blue, color.alpha};
    writer.DrawVertices(vertices);
}

void OldImage(Writer &writer, std::int32_t command, short resID, SGSRect rect) {
    SGSDrawPNGDeprecated record;
    record.header.command = command;
    record.ResID = resID;
    record.rect = rect;
    writer.GetMemObj().Append(&record, sizeof record);
}

struct WSCase {
    const char *m_Name;
    std::function<void(Writer &, const std::string &loosePNG)> m_Body;
};

const WSCase kCases[] = {
    {"frames",
     [](Writer &w, const std::string &) {
         // The frame clips its oversized rect, the nested one adds its offset.
         WCStGSFrameStructWriter outer(w, WURect<int>(8, 8, 40, 56), 1);
         w.DrawSolidRect(WCRGBAColor(200, 120, 0), Rect(-10, -10, 100, 100));
         WCStGSFrameStructWriter inner(w, WURect<int>(6, 6, 26, 42), 2);
         w.DrawWireRect(WCRGBAColor(255, 255, 255), Rect(0, 0, 19, 35));
         w.DrawLine(WCRGBAColor(0, 0, 0), WCPoint2D<short>(0, 0), WCPoint2D<short>(35, 19), 2.0f);
     }},
    {"rotate_and_clips",
     [](Writer &w, const std::string &) {
         {
             WCStGSFrameStructWriter knob(w, WURect<int>(4, 4, 44, 44), 1);
             SGSFrameRotate rotate;
             rotate.angleDegrees = 30;
             rotate.xOffset = 20;
             rotate.yOffset = 20;
             w.RotateFrame(rotate);
             w.DrawSolidRect(WCRGBAColor(240, 200, 40), Rect(10, 17, 30, 23));
         }
         {
             WCStGSFrameStructWriter clipped(w, WURect<int>(4, 44, 44, 64), 2);
             w.ClipRect(Rect(5, 0, 35, 15));
             w.DrawSolidRect(WCRGBAColor(40, 200, 240), Rect(0, 0, 40, 20));
         }
         {
             WCStGSFrameStructWriter many(w, WURect<int>(0, 0, 48, 64), 3);
             w.ClipMultipleRects({Rect(40, 0, 44, 20), Rect(44, 30, 48, 60)}, Rect());
             w.DrawSolidRect(WCRGBAColor(255, 60, 160), Rect(0, 0, 48, 64));
         }
     }},
    {"vertex_methods",
     [](Writer &w, const std::string &) {
         Shape(w, eGSLineStrip, {{2, 2}, {30, 2}, {30, 10}}, WCRGBAColor(255, 255, 0), 2, 0xF0F0);
         Shape(w, eGSStraightLines, {{2, 14}, {30, 20}, {2, 20}, {30, 14}},
               WCRGBAColor(0, 255, 255));
         Shape(w, eGSPolygon, {{36, 2}, {60, 4}, {50, 18}}, WCRGBAColor(255, 0, 0));
         Shape(w, eGSTriangleFan, {{10, 36}, {2, 28}, {18, 28}, {18, 44}}, WCRGBAColor(0, 200, 0));
         Shape(w, eGSTriangleStrip, {{24, 28}, {24, 44}, {32, 28}, {36, 44}},
               WCRGBAColor(200, 0, 200));
         Shape(w, eGSPoints, {{44, 30}, {50, 30}, {56, 30}}, WCRGBAColor(255, 255, 255), 3);
         Shape(w, eGSPointSquares, {{44, 40}, {50, 40}, {56, 40}}, WCRGBAColor(255, 128, 0), 3);
         w.DrawXORRect(Rect(24, 40, 34, 62));
         Shape(w, eGSLineStrip, {{36, 44}, {62, 24}}, WCRGBAColor(255, 255, 255), 1, 0xFFFF,
               eGSNoAntialias);
     }},
    {"vertex_colors_and_clip",
     [](Writer &w, const std::string &) {
         const std::uint8_t rgb[] = {255, 0, 0, 0, 255, 0, 0, 0, 255};
         w.DataHere(rgb, sizeof rgb, eGSPurposeRGBColor);
         Shape(w, eGSLineStrip, {{4, 4}, {30, 4}, {30, 20}}, WCRGBAColor(), 3, 0xFFFF,
               eGSColorsInData);
         const std::uint8_t rgba[] = {255, 255, 0, 255, 0, 255, 255, 255, 255, 0, 255, 128};
         w.DataHere(rgba, sizeof rgba, eGSPurposeRGBAColor);
         Shape(w, eGSTriangleFan, {{36, 4}, {60, 10}, {40, 24}}, WCRGBAColor(), 1, 0xFFFF,
               eGSColorsInData);
         WCStGSFrameStructWriter clip(w, WURect<int>(26, 2, 46, 62), 4);
         WCGSArrays triangle;
         triangle.AddPoint_2Df(0, 20);
         triangle.AddPoint_2Df(30, 0);
         triangle.AddPoint_2Df(60, 20);
         triangle.GetDrawInstructionsForClipLine(w, eGSPolygon);
         w.DrawSolidRect(WCRGBAColor(250, 250, 250), Rect(0, 0, 20, 60));
     }},
    {"ovals",
     [](Writer &w, const std::string &) {
         SGSDrawOval oval;
         oval.rect = {{2, 2}, {28, 20}};
         oval.fill = 1;
         oval.draw_color = {0, 160, 255, 255};
         w.DrawOval(oval);
         oval.rect = {{34, 2}, {26, 26}};
         oval.fill = 0;
         oval.stroke_width = 3;
         oval.start_angle = -135;
         oval.sweep_angle = 270;
         oval.draw_color = {255, 200, 0, 255};
         w.DrawOval(oval);
         oval.rect = {{4, 24}, {22, 22}};
         oval.fill = 1;
         oval.start_angle = 0;
         oval.sweep_angle = 90;
         oval.draw_color = {255, 80, 80, 255};
         w.DrawOval(oval);
         WCGSArrays fan;
         fan.SetDrawColor(WCRGBAColor(120, 255, 120));
         fan.GetDrawInstructionsOval(w, WURect<short>(26, 36, 46, 60), 20, 45, 180);
     }},
    {"images",
     [](Writer &w, const std::string &loosePNG) {
         w.DrawPNGAtPosition(7, WCPoint2D<short>(2, 2));
         w.DrawPNGAtPositionClipped(7, WCPoint2D<short>(22, 2), Rect(4, 26, 10, 34));
         w.DrawPNGScaled(8, Rect(2, 42, 26, 62));
         w.DrawPNGAtPositionMultipleClips(7, WCPoint2D<short>(2, 18),
                                          {Rect(18, 2, 22, 18), Rect(26, 2, 30, 18)});
         w.DrawPNGAtPosition(loosePNG.c_str(), WCPoint2D<short>(22, 18));
         OldImage(w, eGSDrawPNGDeprecated, 8, {{2, 34}, {0, 0}});
         OldImage(w, eGSDrawPNGClippedDeprecated, 7, {{22, 34}, {8, 6}});
         OldImage(w, eGSDrawPNGScaledDeprecated, 7, {{40, 30}, {8, 16}});
     }},
    {"text",
     [](Writer &w, const std::string &) {
         {
             WCStGSFrameStructWriter label(w, WURect<int>(0, 0, 48, 64), 1);
             w.Font("DejaVu Sans", 10, WCRGBAColor(255, 255, 255));
             w.DrawTheText("Gain", 1, eGSAlignLeft, eGSAlignTop);
             w.Font("", 9, WCRGBAColor(255, 200, 0), 1);
             w.DrawTheText("-3 dB", 1, eGSAlignRight, eGSAlignBottom);
         }
         WCStGSFrameStructWriter centre(w, WURect<int>(14, 0, 34, 64), 2);
         w.Font("DejaVu Sans", 11, WCRGBAColor(120, 220, 255));
         w.DrawTheText("\xC3\xA9t\xFF", 2);
     }},
};

} // namespace

TEST_F(WCGraphicStreamToCairoTest, EachRecordKindPaintsItsReviewedPicture) {
    for (const WSCase &test : kCases) {
        SCOPED_TRACE(test.m_Name);
        Writer writer;
        Write(writer, [&](Writer &w) { test.m_Body(w, m_LoosePNG); });
        WCGraphicStreamToCairo painter;
        ASSERT_EQ(painter.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
        EXPECT_EQ(painter.GetFirstDrawError(), eNoErr);
        ExpectGoldenPicture(painter, test.m_Name);
    }
}

TEST_F(WCGraphicStreamToCairoTest, AMinimalFrameKeepsWhatItDoesNotCover) {
    Writer full;
    Write(full, [](Writer &w) {
        for (short x = 0; x < 64; x += 16)
            w.DrawSolidRect(WCRGBAColor(x * 4, 255 - x * 4, 100), Rect(8, x, 40, short(x + 12)));
    });
    Writer minimal;
    {
        SGSStream stream;
        stream.frame.rect.size = {64, 48};
        WCStGSStreamStructWriter guard(minimal, stream, m_Bundle.c_str());
        WCStGSFrameStructWriter frame(minimal, WURect<int>(12, 20, 36, 44), 1);
        minimal.DrawPNGAtPosition(7, WCPoint2D<short>(4, 6));
    }
    for (const bool keep : {true, false}) {
        WCGraphicStreamToCairo painter;
        painter.SetKeepPicture(keep);
        painter.ExecStream(full.GetStreamPtr(), full.GetStreamSize());
        const std::vector<unsigned char> before(painter.GetData(),
                                                painter.GetData() + painter.GetStride() * 48);
        ASSERT_EQ(painter.ExecStream(minimal.GetStreamPtr(), minimal.GetStreamSize()), eNoErr);
        // A pixel outside the second stream's frame, and one inside it that the picture covers.
        const int outside = 10 * painter.GetStride() + 4 * 4;
        EXPECT_EQ(std::memcmp(painter.GetData() + outside, before.data() + outside, 4) == 0, keep);
        if (keep)
            ExpectGoldenPicture(painter, "minimal_frame");
    }
    // A caller's surface is painted over in place.
    cairo_surface_t *target = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 64, 48);
    WCGraphicStreamToCairo onTarget(target);
    onTarget.ExecStream(full.GetStreamPtr(), full.GetStreamSize());
    onTarget.ExecStream(minimal.GetStreamPtr(), minimal.GetStreamSize());
    EXPECT_EQ(onTarget.GetSurface(), target);
    ExpectGoldenPicture(onTarget, "minimal_frame");
    cairo_surface_destroy(target);
}

TEST_F(WCGraphicStreamToCairoTest, WhatCannotBeDrawnIsSkippedWithItsCode) {
    struct WSBad {
        const char *m_What;
        std::function<void(Writer &)> m_Body;
        WTErr m_Expected;
    };
    const WSBad bad[] = {
        {"missing image", [](Writer &w) { w.DrawPNG(static_cast<short>(99)); }, eRMResNotFound},
        {"vertices of a type they cannot have",
         [](Writer &w) {
             const int corners[] = {0, 0, 4, 4};
             w.DataHere(eGSPurposePoint2D, eGSTypeInt32, corners, 4);
             SGSDrawVertices v;
             v.method = eGSPolygon;
             w.DrawVertices(v);
         },
         eGMNoVertices},
        {"unknown vertex method",
         [](Writer &w) {
             Shape(w, eGSIllegalCommand, {{0, 0}, {4, 4}}, WCRGBAColor());
         },
         eOutOfRangeNumber},
        {"too few colours",
         [](Writer &w) {
             const std::uint8_t rgb[] = {255, 0, 0};
             w.DataHere(rgb, sizeof rgb, eGSPurposeRGBColor);
             Shape(w, eGSLineStrip, {{0, 0}, {4, 4}}, WCRGBAColor(), 1, 0xFFFF, eGSColorsInData);
         },
         eGMNoColors},
        {"old style record", [](Writer &w) { w.CommandHeader(eGSDrawOldStyle); }, eNotImplemented},
    };
    for (const WSBad &test : bad) {
        SCOPED_TRACE(test.m_What);
        Writer writer;
        Write(writer, test.m_Body);
        WCGraphicStreamToCairo painter;
        EXPECT_EQ(painter.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
        EXPECT_EQ(painter.GetFirstDrawError(), test.m_Expected);
    }
    // A size no picture can have stops the walk, and the painter has nothing to write.
    Writer huge;
    SGSStream stream;
    stream.frame.rect.size = {100000, 10};
    { WCStGSStreamStructWriter guard(huge, stream); }
    WCGraphicStreamToCairo painter;
    EXPECT_EQ(painter.ExecStream(huge.GetStreamPtr(), huge.GetStreamSize()), eOutOfRangeNumber);
    EXPECT_EQ(painter.WriteToPNG((m_Home.path() / "none.png").c_str()), eGMNoCurrentContext);
}

TEST_F(WCGraphicStreamToCairoTest, DataPointersAreFollowedOnlyWhenAsked) {
    // Corners of a red square sent by pointer: valid while `corners` lives.
    const WCPoint2D<float> corners[4] = {{0, 0}, {8, 0}, {8, 8}, {0, 8}};
    Writer writer;
    Write(writer, [&](Writer &w) {
        w.DataPtr(corners, 4, eGSPurposePoint2D);
        SGSDrawVertices square;
        square.method = eGSPolygon;
        square.draw_color = {255, 0, 0, 255};
        w.DrawVertices(square);
    });
    for (const bool follow : {false, true}) {
        WCGraphicStreamToCairo painter;
        painter.FollowDataPointers(follow);
        ASSERT_EQ(painter.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
        EXPECT_EQ(painter.GetFirstDrawError(), follow ? eNoErr : eGMNoVertices);
        const std::uint32_t pixel = *reinterpret_cast<const std::uint32_t *>(painter.GetData());
        EXPECT_EQ(pixel, follow ? 0xFFFF0000u : 0xFF3C3C3Cu);
    }
}
