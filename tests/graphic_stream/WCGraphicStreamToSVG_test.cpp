#include "graphic_stream/WCGraphicStreamToSVG.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "GSTestSupport.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "tests/support/WCGoldenFile.h"
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

// Namespaces, size, resource base, frame groups, images, text and vertices of the demo stream
// are held by the reviewed demo.svg.
TEST(WCGraphicStreamToSVG, DemoStreamMatchesTheReviewedFileWithUniqueIds) {
    WSStreamSVG demo;
    ASSERT_EQ(demo.m_Result, eNoErr);
    mirel_test::ExpectGoldenFile(demo.m_SVG.GetSVGStr(), MIREL_GS_TEST_DATA, "demo.svg");
    std::set<std::string> ids;
    for (const auto *name : {"g", "image", "text", "polyline", "polygon"})
        for (const XML::CXMLElement *element : Elements(demo.m_Root, name))
            EXPECT_TRUE(ids.insert(Attrib(element, "id")).second) << Attrib(element, "id");
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
