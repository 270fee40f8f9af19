#include "Utilities/XML/Code/PugiXML.h"

#include <atomic>
#include <cstring>
#include <utility>
#include <vector>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"

MIREL_NAMESPACE_BEGIN

namespace PugiXML {

namespace {

constexpr const char *kIndent = " ";

int Normalized(const pugi::xml_parse_result &result, pugi::xml_document &doc) {
    normalize_WCFourCC_values(doc);
    return static_cast<int>(result.status);
}

int MapStatus(pugi::xml_parse_status status) {
    switch (status) {
    case pugi::status_file_not_found: return eFMFileNotFound;
    case pugi::status_io_error: return eFMReadFailed;
    case pugi::status_out_of_memory: return eMemOutOfMemory;
    case pugi::status_internal_error: return eXMLParserFailed;
    case pugi::status_unrecognized_tag:
    case pugi::status_bad_pi:
    case pugi::status_bad_comment:
    case pugi::status_bad_cdata:
    case pugi::status_bad_doctype:
    case pugi::status_bad_pcdata:
    case pugi::status_bad_start_element:
    case pugi::status_bad_attribute:
    case pugi::status_bad_end_element:
    case pugi::status_end_element_mismatch: return eXMLTreeNotValid;
    case pugi::status_no_document_element: return eXMLTreeEmpty;
    default: return eNoErr;
    }
}

class WCFourCCNormalizer : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node &node) override {
        Normalize(node);
        return true;
    }

    static void Normalize(pugi::xml_node &node) {
        pugi::xml_text text = node.text();
        if (!text)
            return;
        const char *value = text.get();
        if (std::strlen(value) == 6 && value[0] == '\'' && value[5] == '\'') {
            char code[5];
            std::memcpy(code, value + 1, 4);
            code[4] = 0;
            text.set(code);
        }
    }
};

std::atomic<unsigned int> gDesktopFileCounter{0};

int WriteToDesktop(const std::string &text, const char *subfolderName) {
    XML::WTXMLPath folder;
    WTErr err = XML::GetDesktopFolder(folder);
    if (err != eNoErr)
        return err;
    folder /= "XMLWrite";
    if (subfolderName != nullptr && *subfolderName != 0)
        folder /= subfolderName;
    err = XML::CreateFolder(folder);
    if (err != eNoErr)
        return err;
    const unsigned int number = ++gDesktopFileCounter;
    const XML::WTXMLPath file = folder / (std::to_string(number) + ".xml");
    return XML::WriteWholeFile(file, text.data(), text.size());
}

} // namespace

int read_xml_from_file(const XML::WTXMLPath &path, pugi::xml_document &doc) {
    Utils::WCStMemObj content;
    const WTErr err = XML::ReadWholeFile(path, content);
    if (err == eFMFileNotFound || err == eMemOutOfMemory)
        return err;
    if (err != eNoErr)
        return eFMReadFailed;
    const pugi::xml_parse_result result =
        doc.load_buffer(content.GetPtr(), content.GetSize(), kParseFlags, pugi::encoding_auto);
    normalize_WCFourCC_values(doc);
    return MapStatus(result.status);
}

int read_xml_from_buffer(const void *buffer, std::uint64_t length, pugi::xml_document &doc) {
    return Normalized(doc.load_buffer(buffer, length, kParseFlags, pugi::encoding_auto), doc);
}

int read_xml_from_buffer_inplace(void *buffer, std::uint64_t length, pugi::xml_document &doc) {
    return Normalized(doc.load_buffer_inplace(buffer, length, kParseFlags, pugi::encoding_auto),
                      doc);
}

int read_xml_from_mem_obj(const Utils::WCStConstMemObj &memObj, pugi::xml_document &doc) {
    return read_xml_from_buffer(memObj.GetPtr(), memObj.GetSize(), doc);
}

int read_xml_from_mem_obj_inplace(Utils::WCStMemObj &memObj, pugi::xml_document &doc) {
    return read_xml_from_buffer_inplace(memObj.GetPtr(), memObj.GetSize(), doc);
}

int read_xml_from_string(std::string_view text, pugi::xml_document &doc) {
    return read_xml_from_buffer(text.data(), text.size(), doc);
}

int read_xml_from_string_inplace(std::string &text, pugi::xml_document &doc) {
    return read_xml_from_buffer_inplace(text.data(), text.size(), doc);
}

int write_xml_to_file(const pugi::xml_document &doc, const XML::WTXMLPath &path,
                      unsigned int format) {
    // A folder that cannot be made is a failed write like any other: callers test for one code.
    if (path.has_parent_path() && XML::CreateFolder(path.parent_path()) != eNoErr)
        return eFMWriteFailed;
    std::string text;
    pugi_xml_std_str_writer writer(text);
    doc.save(writer, kIndent, format != 0 ? format : pugi::format_indent);
    return XML::WriteWholeFile(path, text.data(), text.size()) == eNoErr ? eNoErr : eFMWriteFailed;
}

void write_xml_to_stream(const pugi::xml_document &doc, std::ostream &stream) {
    doc.save(stream, kIndent, pugi::format_indent);
}

void write_xml_to_string(const pugi::xml_document &doc, std::string &text) {
    text.clear();
    pugi_xml_std_str_writer writer(text);
    doc.save(writer, kIndent, pugi::format_indent);
}

void write_xml_to_string(const pugi::xml_node &node, std::string &text) {
    text.clear();
    pugi_xml_std_str_writer writer(text);
    node.print(writer, kIndent, pugi::format_indent);
}

int write_xml_to_mem_obj(const pugi::xml_document &doc, Utils::WCStMemObj &memObj) {
    memObj.ResizePtr(0);
    pugi_xml_mem_obj_writer writer(memObj);
    doc.save(writer, kIndent, pugi::format_indent);
    return writer.GetError();
}

int write_xml_to_mem_obj(const pugi::xml_node &node, Utils::WCStMemObj &memObj) {
    memObj.ResizePtr(0);
    pugi_xml_mem_obj_writer writer(memObj);
    node.print(writer, kIndent, pugi::format_indent);
    return writer.GetError();
}

void normalize_WCFourCC_values(pugi::xml_node &node) {
    if (!node)
        return;
    WCFourCCNormalizer::Normalize(node);
    WCFourCCNormalizer walker;
    node.traverse(walker);
}

void CXMLElement_to_pugi(const XML::CXMLElement *element, pugi::xml_node &node) {
    if (element == nullptr || !node)
        return;
    // Iterative, so trees of any depth convert.
    std::vector<std::pair<const XML::CXMLElement *, pugi::xml_node>> pending{{element, node}};
    std::vector<XML::WTAttribPair> attributes;
    while (!pending.empty()) {
        auto [source, target] = pending.back();
        pending.pop_back();
        target.set_name(source->GetName().c_str());
        attributes.clear();
        XML::StringToAttribVec(source->GetAttributesString(), attributes);
        for (const XML::WTAttribPair &attribute : attributes)
            target.append_attribute(attribute.first.c_str()).set_value(attribute.second.c_str());
        const std::string &text = source->GetText();
        if (!text.empty()) {
            if (source->IsCDATA())
                target.append_child(pugi::node_cdata).set_value(text.c_str());
            else
                target.append_child(pugi::node_pcdata).set_value(text.c_str());
        }
        const auto &children = source->GetSubElements();
        // Appended in order first, then visited, so the document keeps the children's order.
        std::vector<std::pair<const XML::CXMLElement *, pugi::xml_node>> appended;
        appended.reserve(children.size());
        for (const XML::CXMLElement *child : children)
            appended.emplace_back(child, target.append_child(pugi::node_element));
        pending.insert(pending.end(), appended.rbegin(), appended.rend());
    }
}

void pugi_to_CXMLElement(const pugi::xml_node &node, XML::CXMLElement *element) {
    if (element == nullptr || !node)
        return;
    std::vector<std::pair<pugi::xml_node, XML::CXMLElement *>> pending{{node, element}};
    while (!pending.empty()) {
        auto [source, target] = pending.back();
        pending.pop_back();
        target->SetName(source.name());
        for (const pugi::xml_attribute &attribute : source.attributes())
            target->AddAttrib(attribute.name(), attribute.value());
        target->SetText(source.text().get());
        std::vector<std::pair<pugi::xml_node, XML::CXMLElement *>> appended;
        for (const pugi::xml_node &child : source.children()) {
            if (child.type() == pugi::node_cdata) {
                target->SetCDATA(!source.text().empty());
                continue;
            }
            appended.emplace_back(child, target->push_sub_element(new XML::CXMLElement()));
        }
        pending.insert(pending.end(), appended.rbegin(), appended.rend());
    }
}

int write_xml_to_desktop(const XML::CXMLElement *element, const char *subfolderName) {
    if (element == nullptr)
        return eMemNullPointer;
    std::string text;
    XML::WriteXMLToString(text, element, false, true, 0);
    return WriteToDesktop(text, subfolderName);
}

int write_xml_to_desktop(const pugi::xml_node &node, const char *subfolderName) {
    if (!node)
        return eMemNullPointer;
    std::string text;
    write_xml_to_string(node, text);
    return WriteToDesktop(text, subfolderName);
}

void pugi_xml_mem_obj_writer::write(const void *data, std::size_t size) {
    if (m_error == eNoErr)
        m_error = m_memObj.AppendAndReserve(data, size);
}

void pugi_xml_std_str_writer::write(const void *data, std::size_t size) {
    m_text.append(static_cast<const char *>(data), size);
}

} // namespace PugiXML

MIREL_NAMESPACE_END
