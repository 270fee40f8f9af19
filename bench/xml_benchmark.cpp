// Building an element tree from a large GUI-like document with CXMLTreeBuilder, against pugixml
// parsing the same bytes (the library a user would otherwise pick) and against expat with empty
// handlers (the floor of any tree built on expat). Writing the tree back is compared with
// pugixml's writer. The document is generated here: a few MB of controls with attributes, nested
// elements and text. The closing lines print throughput ratios.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <expat.h>
#include <string>

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "bench/support/WCBenchRatios.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

// A GUI document: pages of controls, each with geometry attributes, an image reference, a
// parameter link, a colour, a quoted type code, a tooltip text and now and then a CDATA script.
const std::string &Document() {
    static const std::string text = [] {
        std::string doc = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<GUI Name=\"Primary\" "
                          "Version=\"13.1.0.186\" Width=\"1280\" Height=\"800\">\n";
        int id = 0;
        for (int page = 0; page < 40; ++page) {
            doc += "  <Page ID=\"" + std::to_string(page) + "\" Title=\"Page " +
                   std::to_string(page) + "\">\n";
            for (int c = 0; c < 250; ++c, ++id) {
                const std::string n = std::to_string(id);
                doc += "    <Control ID=\"" + n + "\" Type=\"Slider\" left=\"" +
                       std::to_string(c * 7 % 1200) + "\" top=\"" + std::to_string(c * 13 % 760) +
                       "\" width=\"48\" height=\"120\" Visible=\"true\">\n"
                       "      <Name>Control &amp; knob " +
                       n +
                       "</Name>\n"
                       "      <Image ResID=\"" +
                       std::to_string(1000 + c) +
                       "\" Type=\"PNG_\"/>\n"
                       "      <Param Index=\"" +
                       std::to_string(c % 64) +
                       "\" Mode=\"'lin '\"/>\n"
                       "      <ControlColor red=\"12\" green=\"200\" blue=\"34\" alpha=\"255\"/>\n"
                       "      <AlgType>'Gain'</AlgType>\n"
                       "      <ToolTip>Drag to change the value; double-click to reset it to "
                       "its default, shift-drag for fine steps.</ToolTip>\n";
                if (c % 25 == 0)
                    doc += "      <Script><![CDATA[if (x < 1 && y > 2) { run(); }]]></Script>\n";
                doc += "    </Control>\n";
            }
            doc += "  </Page>\n";
        }
        doc += "</GUI>\n";
        return doc;
    }();
    return text;
}

void SetBytes(benchmark::State &state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(Document().size()));
}

void Build_CXMLTreeBuilder(benchmark::State &state) {
    const std::string &doc = Document();
    for (auto _ : state) {
        XML::CXMLElement root;
        XML::CXMLTreeBuilder builder(root);
        if (builder.BuildFromSingleBuffer(doc.data(), doc.size()) != eNoErr || !root.IsValid())
            state.SkipWithError("parse failed");
        benchmark::DoNotOptimize(root.GetSubElements().data());
    }
    SetBytes(state);
}

void Build_Pugi(benchmark::State &state) {
    const std::string &doc = Document();
    for (auto _ : state) {
        pugi::xml_document pugiDoc;
        if (PugiXML::read_xml_from_buffer(doc.data(), doc.size(), pugiDoc) != 0)
            state.SkipWithError("parse failed");
        benchmark::DoNotOptimize(pugiDoc.first_child());
    }
    SetBytes(state);
}

void EmptyStart(void *, const XML_Char *, const XML_Char **) {}
void EmptyEnd(void *, const XML_Char *) {}
void EmptyText(void *, const XML_Char *, int) {}

void Build_ExpatEmptyHandlers(benchmark::State &state) {
    const std::string &doc = Document();
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetElementHandler(parser, &EmptyStart, &EmptyEnd);
        XML_SetCharacterDataHandler(parser, &EmptyText);
        if (XML_Parse(parser, doc.data(), static_cast<int>(doc.size()), 0) == XML_STATUS_ERROR)
            state.SkipWithError("parse failed");
        XML_ParserFree(parser);
    }
    SetBytes(state);
}

void Write_CXMLElement(benchmark::State &state) {
    XML::CXMLElement root;
    XML::CXMLTreeBuilder builder(root);
    builder.BuildFromSingleBuffer(Document().data(), Document().size());
    std::string out;
    for (auto _ : state) {
        out.clear();
        XML::WriteXMLToString(out, &root, false, true, 0);
        benchmark::DoNotOptimize(out.data());
    }
    SetBytes(state);
}

void Write_Pugi(benchmark::State &state) {
    pugi::xml_document doc;
    PugiXML::read_xml_from_buffer(Document().data(), Document().size(), doc);
    std::string out;
    for (auto _ : state) {
        PugiXML::write_xml_to_string(doc, out);
        benchmark::DoNotOptimize(out.data());
    }
    SetBytes(state);
}

BENCHMARK(Build_CXMLTreeBuilder)->Unit(benchmark::kMillisecond);
BENCHMARK(Build_Pugi)->Unit(benchmark::kMillisecond);
BENCHMARK(Build_ExpatEmptyHandlers)->Unit(benchmark::kMillisecond);
BENCHMARK(Write_CXMLElement)->Unit(benchmark::kMillisecond);
BENCHMARK(Write_Pugi)->Unit(benchmark::kMillisecond);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    const double megabytes = static_cast<double>(Document().size()) / (1024.0 * 1024.0);
    std::printf("  Document: %.2f MB\n", megabytes);
    const double tree = ratios.Seconds("Build_CXMLTreeBuilder");
    const double pugi = ratios.Seconds("Build_Pugi");
    const double expat = ratios.Seconds("Build_ExpatEmptyHandlers");
    if (tree > 0 && pugi > 0 && expat > 0)
        std::printf("  Build MB/s: CXMLTreeBuilder %.1f, pugixml %.1f, bare expat %.1f\n",
                    megabytes / tree, megabytes / pugi, megabytes / expat);
    ratios.PrintRatio("Build_CXMLTreeBuilder", "Build_ExpatEmptyHandlers", "aim: below 3");
    ratios.PrintRatio("Build_CXMLTreeBuilder", "Build_Pugi");
    ratios.PrintRatio("Write_CXMLElement", "Write_Pugi");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
