// Feeds arbitrary documents to the template expander at a depth taken from the first byte, then
// to the component filter and the halving on the same document: whatever the text, expansion
// ends (cycles, runaway nesting and huge arrays stop at their limits) and nothing crashes.
#include <cstddef>
#include <cstdint>
#include <string>

#include <pugixml.hpp>

#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/WCXMLTemplatizer.h"
#include "Utilities/XML/Code/XMLAttributeFilter.h"

namespace ML = MIREL_NAMESPACE_NAME;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0)
        return 0;
    const int depth = static_cast<int>(data[0] % 8) - 1;
    const std::string text(reinterpret_cast<const char *>(data + 1), size - 1);

    pugi::xml_document doc;
    if (ML::PugiXML::read_xml_from_string(text, doc) != 0)
        return 0;
    pugi::xml_node root = doc.document_element();
    const ML::XML::WSAttributeRequirement rules[] = {{"SubComp", "Mono"}, {"OS", "Linux"}};
    ML::XML::FilterPugiXMLByAttributes(rules, 2, root);

    ML::PugiXML::WCXMLTemplatizer templatizer(doc);
    templatizer.set_depth(depth);
    // Small enough that exponential expansions end fast; the cut is an answer like any other.
    templatizer.set_output_limit(256 * 1024);
    std::string out;
    const int err = templatizer.write_to_str(out);
    if (err == ML::eNoErr || err == ML::eXMLElementIncomplete) {
        if (out.size() > 256 * 1024)
            __builtin_trap();
        // The expanded text may be refused, but reading it must be safe.
        pugi::xml_document expanded;
        ML::PugiXML::read_xml_from_string(out, expanded);
    }
    return 0;
}
