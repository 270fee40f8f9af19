#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "Utilities/XML/Code/WCXMLFileIO.h"
#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
} // namespace XML

// The newer XML world: pugi::xml_document, behind free functions that parse with one set of
// flags, normalise four-character codes, and map pugixml's results to the system's codes.
// [any-thread] on distinct documents.
namespace PugiXML {

// parse_cdata | parse_escapes | parse_eol | parse_wconv_attribute | parse_trim_pcdata |
// parse_embed_pcdata: CDATA kept, entities and line ends normalised, attribute white space turned
// into blanks, text trimmed and stored in its element.
inline constexpr unsigned int kParseFlags = 0x2874;

// Parses a file. eFMFileNotFound, eFMReadFailed, eMemOutOfMemory, eXMLParserFailed (pugixml's
// internal error), eXMLTreeNotValid (any syntax error), eXMLTreeEmpty (no root element); other
// results are 0. The document is replaced; on failure it holds what pugixml kept.
int read_xml_from_file(const XML::WTXMLPath &path, pugi::xml_document &doc);

// The buffer forms return pugixml's own status number (0 is success), unmapped. The _inplace
// forms parse in the caller's buffer, which must stay alive and unchanged as long as the
// document is used.
int read_xml_from_buffer(const void *buffer, std::uint64_t length, pugi::xml_document &doc);
int read_xml_from_buffer_inplace(void *buffer, std::uint64_t length, pugi::xml_document &doc);
int read_xml_from_mem_obj(const Utils::WCStConstMemObj &memObj, pugi::xml_document &doc);
int read_xml_from_mem_obj_inplace(Utils::WCStMemObj &memObj, pugi::xml_document &doc);
int read_xml_from_string(std::string_view text, pugi::xml_document &doc);
int read_xml_from_string_inplace(std::string &text, pugi::xml_document &doc);

// Creates the parent folder, then writes the document indented by one blank with `format`
// (pugi::format_indent when 0). Atomic: the file appears complete or not at all.
// eFMWriteFailed for any failure, the folder's included.
int write_xml_to_file(const pugi::xml_document &doc, const XML::WTXMLPath &path,
                      unsigned int format = 0);
// Indented by one blank with pugi::format_indent. The string and memory object are replaced.
void write_xml_to_stream(const pugi::xml_document &doc, std::ostream &stream);
void write_xml_to_string(const pugi::xml_document &doc, std::string &text);
void write_xml_to_string(const pugi::xml_node &node, std::string &text);
int write_xml_to_mem_obj(const pugi::xml_document &doc, Utils::WCStMemObj &memObj);
int write_xml_to_mem_obj(const pugi::xml_node &node, Utils::WCStMemObj &memObj);

// Replaces, in the whole sub-tree of `node`, every text of exactly six characters with a single
// quote first and last by the four characters between, as the expat parser does with element
// text. Attribute values are left alone.
void normalize_WCFourCC_values(pugi::xml_node &node);

// Copies an element tree into `node`, which becomes the element: name, attributes (names cut to
// 31 and values to 255 characters), text (in a CDATA child when the element has the flag), and a
// child element per sub-element. Nothing happens for a null element or node.
void CXMLElement_to_pugi(const XML::CXMLElement *element, pugi::xml_node &node);
// Copies `node` into `element`: name, attributes, text; a CDATA child sets the flag (when the
// node has text) and makes no element; any other child, text nodes included, makes a
// sub-element.
void pugi_to_CXMLElement(const pugi::xml_node &node, XML::CXMLElement *element);

// A debugging aid: writes the tree to "XMLWrite/<subfolderName>/<n>.xml" in the desktop folder,
// n counting up through the process, and creates the folders.
int write_xml_to_desktop(const XML::CXMLElement *element, const char *subfolderName);
int write_xml_to_desktop(const pugi::xml_node &node, const char *subfolderName);

// pugixml writers into a memory object and into a std::string.
class pugi_xml_mem_obj_writer : public pugi::xml_writer {
public:
    explicit pugi_xml_mem_obj_writer(Utils::WCStMemObj &memObj) noexcept : m_memObj(memObj) {}
    void write(const void *data, std::size_t size) override;
    // The first failure to grow the memory object, or 0.
    WTErr GetError() const noexcept { return m_error; }

private:
    Utils::WCStMemObj &m_memObj;
    WTErr m_error = eNoErr;
};

class pugi_xml_std_str_writer : public pugi::xml_writer {
public:
    explicit pugi_xml_std_str_writer(std::string &text) noexcept : m_text(text) {}
    void write(const void *data, std::size_t size) override;

private:
    std::string &m_text;
};

} // namespace PugiXML

MIREL_NAMESPACE_END
