// Template expansion of a GUI document with a few hundred instances (arrays of banks, nested
// instances, an accumulating variable), in ms per document. The peer is what an author would do
// without templates: keep the expanded document and have pugixml parse and print it. A third run
// takes the whole load path of a component's GUI: filter, expand, parse into an element tree.
// The closing lines print the ratios.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/WCXMLTemplatizer.h"
#include "Utilities/XML/Code/XMLAttributeFilter.h"
#include "bench/support/WCBenchRatios.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

constexpr int kBanks = 24;
constexpr int kKnobsPerBank = 16;

const std::string &TemplateDocument() {
    static const std::string text = [] {
        std::string doc =
            "<GUI Name=\"Primary\" Width=\"1280\" Height=\"800\">\n"
            " <AccumVar init=\"0\">Top</AccumVar>\n"
            " <ConfigVar init=\"Blue\">Colour</ConfigVar>\n"
            " <Template Name=\"Label\">\n"
            "  <Text Top=\"$(Top)\" Colour=\"$(Colour)\">Band $(i) of $(Bank)</Text>\n"
            " </Template>\n"
            " <Template Name=\"Knob\">\n"
            "  <Control Type=\"Knob\" Name=\"K$(Bank)_$(i)\" Param=\"$(Bank)$(i)\">\n"
            "   <ControlRect left=\"$(i)0\" top=\"$(Top)\" right=\"$(i)48\" "
            "bottom=\"64\"/>\n"
            "   <Image Name=\"knob_$(Style=Round)\"/>\n"
            "  </Control>\n"
            "  <Instance Template=\"Label\" Top=\"12\"/>\n"
            " </Template>\n"
            " <Template Name=\"Bank\">\n"
            "  <Group Name=\"Bank$(Bank)\" SubComp=\"Mono,Stmo\"/>\n"
            "  <InstanceArray Template=\"Knob\" ArraySize=\"$(Count)\" "
            "ArrayVar=\"i\" Top=\"80\"/>\n"
            " </Template>\n";
        for (int bank = 0; bank < kBanks; ++bank)
            doc += " <Instance Template=\"Bank\" Bank=\"" + std::to_string(bank) + "\" Count=\"" +
                   std::to_string(kKnobsPerBank) + "\" Top=\"" + std::to_string(bank * 100) +
                   "\"/>\n";
        doc += " <Control Type=\"Logo\" OS=\"Linux\"/>\n</GUI>\n";
        return doc;
    }();
    return text;
}

const std::string &ExpandedDocument() {
    static const std::string text = [] {
        PugiXML::WCXMLTemplatizer templatizer;
        templatizer.read_from_str(TemplateDocument());
        std::string out;
        templatizer.write_to_str(out);
        return out;
    }();
    return text;
}

void Expand_Templatizer(benchmark::State &state) {
    pugi::xml_document doc;
    PugiXML::read_xml_from_string(TemplateDocument(), doc);
    std::string out;
    for (auto _ : state) {
        PugiXML::WCXMLTemplatizer templatizer(doc);
        out.clear();
        templatizer.write_to_str(out);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["instances"] = kBanks * (1 + 2 * kKnobsPerBank);
}
BENCHMARK(Expand_Templatizer)->Unit(benchmark::kMillisecond);

void Peer_PugiParseAndPrintExpanded(benchmark::State &state) {
    std::string out;
    for (auto _ : state) {
        pugi::xml_document doc;
        PugiXML::read_xml_from_string(ExpandedDocument(), doc);
        out.clear();
        PugiXML::write_xml_to_string(doc, out);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(Peer_PugiParseAndPrintExpanded)->Unit(benchmark::kMillisecond);

void LoadPath_FilterExpandBuild(benchmark::State &state) {
    const XML::WSAttributeRequirement rules[] = {{"SubComp", "Mono"}, {"OS", "Linux"}};
    for (auto _ : state) {
        pugi::xml_document doc;
        PugiXML::read_xml_from_string(TemplateDocument(), doc);
        pugi::xml_node root = doc.document_element();
        XML::FilterPugiXMLByAttributes(rules, 2, root);
        Utils::WCStMemObj expanded;
        PugiXML::WCXMLTemplatizer(doc).write_to_mem_obj(expanded);
        XML::CXMLElement element;
        XML::CXMLTreeBuilder builder(&element);
        builder.BuildFromWCStMemObj(expanded);
        benchmark::DoNotOptimize(element.GetSubElements().data());
    }
}
BENCHMARK(LoadPath_FilterExpandBuild)->Unit(benchmark::kMillisecond);

// Absolute times stay in the notes: the budget of a GUI load is in milliseconds.
void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    std::printf("  Template document %zu bytes, expanded %zu bytes, %d instances\n",
                TemplateDocument().size(), ExpandedDocument().size(),
                kBanks * (1 + 2 * kKnobsPerBank));
    char note[64];
    std::snprintf(note, sizeof note, "expansion, %.3f ms per document",
                  ratios.Seconds("Expand_Templatizer") * 1e3);
    ratios.PrintRatio("Expand_Templatizer", "Peer_PugiParseAndPrintExpanded", note);
    std::snprintf(note, sizeof note, "whole load path, %.3f ms per document",
                  ratios.Seconds("LoadPath_FilterExpandBuild") * 1e3);
    ratios.PrintRatio("LoadPath_FilterExpandBuild", "Peer_PugiParseAndPrintExpanded", note);
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
