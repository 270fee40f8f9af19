#include "graphic_stream/WCGraphicStreamToSVG.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "GSTestSupport.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "tests/support/WCTestHome.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

// Depth-first list of the elements of a tree with a given name.
void Collect(const XML::CXMLElement *element, const char *name,
             std::vector<const XML::CXMLElement *> &out) {
    if (element->GetName().compare(name) == 0)
        out.push_back(element);
    for (const XML::CXMLElement *child : element->GetSubElements())
        Collect(child, name, out);
}

std::vector<const XML::CXMLElement *> Elements(const XML::CXMLElement &root, const char *name) {
    std::vector<const XML::CXMLElement *> out;
    Collect(&root, name, out);
    return out;
}

std::string Attrib(const XML::CXMLElement *element, const char *name) {
    std::string value;
    element->GetAttrib(name, value);
    return value;
}

// The SVG of the stream `write` makes, the demo stream unless told otherwise.
struct WSStreamSVG {
    WCGraphicStreamBinaryWriter m_Writer;
    XML::CXMLElement m_Root;
    WCGraphicStreamToSVG m_SVG{&m_Root};
    WTErr m_Result;
    explicit WSStreamSVG(void (*write)(WCGraphicStreamBinaryWriter &) = gs_test::WriteDemoStream) {
        write(m_Writer);
        m_Result = m_SVG.ExecStream(m_Writer.GetStreamPtr(), m_Writer.GetStreamSize());
    }
};

} // namespace

TEST(WCGraphicStreamToSVG, RootCarriesNamespacesSizeAndResourceBase) {
    WSStreamSVG demo;
    ASSERT_EQ(demo.m_Result, eNoErr);
    EXPECT_STREQ(demo.m_Root.GetName().c_str(), "svg");
    EXPECT_EQ(Attrib(&demo.m_Root, "xmlns"), "http://www.w3.org/2000/svg");
    EXPECT_EQ(Attrib(&demo.m_Root, "xmlns:xlink"), "http://www.w3.org/1999/xlink");
    EXPECT_EQ(Attrib(&demo.m_Root, "width"), "320");
    EXPECT_EQ(Attrib(&demo.m_Root, "height"), "200");
    EXPECT_EQ(Attrib(&demo.m_Root, "xml:base"),
              "file:///usr/lib/plugins/Demo.bundle/Contents/Resources/PNG_");
    EXPECT_EQ(Elements(demo.m_Root, "desc").front()->GetText(), "background");
}

TEST(WCGraphicStreamToSVG, FramesAreTranslatedGroupsWithUniqueIds) {
    WSStreamSVG demo;
    const auto groups = Elements(demo.m_Root, "g");
    ASSERT_GE(groups.size(), 3u);
    EXPECT_EQ(Attrib(groups[0], "transform"), "translate(20,30)");
    EXPECT_EQ(Attrib(groups[1], "transform"), "rotate(135,32,32)");
    std::set<std::string> ids;
    for (const auto *name : {"g", "image", "text", "polyline", "polygon"})
        for (const XML::CXMLElement *element : Elements(demo.m_Root, name))
            EXPECT_TRUE(ids.insert(Attrib(element, "id")).second) << Attrib(element, "id");
}

TEST(WCGraphicStreamToSVG, ImagesReferToTheirResourceNumber) {
    WSStreamSVG demo;
    const auto images = Elements(demo.m_Root, "image");
    ASSERT_EQ(images.size(), 3u);
    EXPECT_EQ(Attrib(images[0], "href"), "1000.png");
    EXPECT_EQ(Attrib(images[1], "width"), "64");
    EXPECT_EQ(Attrib(images[1], "height"), "64");
    // The image drawn after the rotation lies inside the rotation group.
    const auto *rotation = Elements(demo.m_Root, "g")[1];
    ASSERT_EQ(rotation->GetSubElements().size(), 1u);
    EXPECT_EQ(rotation->GetSubElements().front(), images[2]);
}

TEST(WCGraphicStreamToSVG, StreamAfterLooseRecordsStillMakesTheRoot) {
    WSStreamSVG svg([](WCGraphicStreamBinaryWriter &writer) {
        writer.ActivateRemarks(true).Remark("made by hand");
        SGSStream stream;
        stream.frame.rect.size = {30, 20};
        WCStGSStreamStructWriter guard(writer, stream);
        SGSStream inner;
        inner.frame.rect.location = {4, 5};
        WCStGSStreamStructWriter nested(writer, inner);
        writer.DrawPNG(static_cast<short>(3));
    });
    ASSERT_EQ(svg.m_Result, eNoErr);
    EXPECT_EQ(Attrib(&svg.m_Root, "xmlns"), "http://www.w3.org/2000/svg");
    EXPECT_EQ(Attrib(&svg.m_Root, "width"), "30");
    const auto groups = Elements(svg.m_Root, "g");
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(Attrib(groups[0], "transform"), "translate(4,5)");
}

TEST(WCGraphicStreamToSVG, ImageWithoutResourceAddsNothing) {
    WSStreamSVG svg([](WCGraphicStreamBinaryWriter &writer) {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        SGSDrawImage image;
        image.ResID = -1;
        writer.DrawPNG(image);
    });
    ASSERT_EQ(svg.m_Result, eNoErr);
    EXPECT_TRUE(Elements(svg.m_Root, "image").empty());
}

TEST(WCGraphicStreamToSVG, TextTakesFontAndAlignment) {
    WSStreamSVG demo;
    const auto texts = Elements(demo.m_Root, "text");
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0]->GetText(), "-12.5 dB");
    EXPECT_EQ(Attrib(texts[0], "font-family"), "DejaVu Sans");
    EXPECT_EQ(Attrib(texts[0], "font-size"), "11");
    EXPECT_EQ(Attrib(texts[0], "style"), "text-anchor:start;dominant-baseline:hanging");
    EXPECT_EQ(Attrib(texts[0], "fill"), "#e6e6e6");
}

TEST(WCGraphicStreamToSVG, VerticesBecomePolylinesAndPolygons) {
    WSStreamSVG demo;
    const auto lines = Elements(demo.m_Root, "polyline");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(Attrib(lines[0], "points"), "0,35 40,27.5 80,20 120,12.5 160,5");
    EXPECT_EQ(Attrib(lines[0], "stroke"), "#00c8ff");
    EXPECT_EQ(Attrib(lines[0], "vector-effect"), "non-scaling-stroke");
    const auto *group = Elements(demo.m_Root, "g")[4];
    EXPECT_EQ(Attrib(group, "viewBox"), "0 0 160 70");
    EXPECT_EQ(Attrib(group, "preserveAspectRatio"), "none");
    const auto polygons = Elements(demo.m_Root, "polygon");
    ASSERT_EQ(polygons.size(), 1u);
    EXPECT_EQ(Attrib(polygons[0], "points"), "0,60 160,60 160,70 0,70");
}

TEST(WCGraphicStreamToSVG, BrokenTextIsCleanedForXml) {
    WSStreamSVG svg([](WCGraphicStreamBinaryWriter &writer) {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        writer.Font("Sans", 10, WCRGBAColor());
        writer.DrawTheText("a\x01<b>&\xff\xc3", 1);
    });
    ASSERT_EQ(svg.m_Result, eNoErr);
    EXPECT_EQ(Elements(svg.m_Root, "text").front()->GetText(), "a?<b>&??");
    EXPECT_NE(svg.m_SVG.GetSVGStr().find("a?&lt;b&gt;&amp;??"), std::string::npos);
}

TEST(WCGraphicStreamToSVG, RealRendererTurnsItIntoAPng) {
    if (std::system("command -v rsvg-convert > /dev/null 2>&1") != 0)
        GTEST_SKIP() << "rsvg-convert is not installed (Debian package librsvg2-bin)";
    // The renderer's font cache goes to the temporary home.
    mirel_test::WCTestHome home;
    WSStreamSVG demo;
    ASSERT_EQ(demo.m_Result, eNoErr);
    const std::filesystem::path svgPath = home.path() / "demo.svg";
    const std::filesystem::path pngPath = home.path() / "demo.png";
    std::ofstream(svgPath) << demo.m_SVG.GetSVGStr();
    const std::string command = "rsvg-convert -o '" + pngPath.string() + "' '" + svgPath.string() +
                                "' 2> '" + (home.path() / "errors.txt").string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::ifstream png(pngPath, std::ios::binary);
    char signature[8] = {};
    png.read(signature, 8);
    EXPECT_EQ(std::string(signature + 1, 3), "PNG");
}
