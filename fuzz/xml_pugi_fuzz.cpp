// Feeds arbitrary bytes to the pugi reader with the system's parse flags. A document it accepts
// is written and read back: the text of the second write must equal the first (write and parse
// reach a fixed point after one round). The document is also converted to an element tree and
// back, which must not crash. Nothing may crash, hang or grow without bound.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/PugiXML.h"

using namespace MIREL_NAMESPACE_NAME;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    pugi::xml_document doc;
    if (PugiXML::read_xml_from_buffer(data, size, doc) != pugi::status_ok)
        return 0;

    std::string first;
    PugiXML::write_xml_to_string(doc, first);
    pugi::xml_document again;
    if (PugiXML::read_xml_from_string(first, again) != pugi::status_ok)
        std::abort();
    std::string second;
    PugiXML::write_xml_to_string(again, second);
    pugi::xml_document third;
    if (PugiXML::read_xml_from_string(second, third) != pugi::status_ok)
        std::abort();
    std::string last;
    PugiXML::write_xml_to_string(third, last);
    if (second != last)
        std::abort();

    XML::CXMLElement element;
    PugiXML::pugi_to_CXMLElement(doc.document_element(), &element);
    pugi::xml_document back;
    pugi::xml_node node = back.append_child(pugi::node_element);
    PugiXML::CXMLElement_to_pugi(&element, node);
    return 0;
}
