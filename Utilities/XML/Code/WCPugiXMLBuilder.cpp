#include "Utilities/XML/Code/WCPugiXMLBuilder.h"

#include "Utilities/XML/Code/PugiXML.h"

MIREL_NAMESPACE_BEGIN

namespace PugiXML {

int WCPugiXMLBuilder::BuildFromFile(const XML::WTXMLPath &path) {
    return read_xml_from_file(path, m_doc);
}

int WCPugiXMLBuilder::BuildFromSingleBuffer(const void *buffer, std::uint64_t length) {
    return read_xml_from_buffer(buffer, length, m_doc);
}

int WCPugiXMLBuilder::BuildFromConstWCStMemObj(const Utils::WCStConstMemObj &memObj) {
    return read_xml_from_mem_obj(memObj, m_doc);
}

int WCPugiXMLBuilder::BuildFromWCStMemObj_inplace(Utils::WCStMemObj &memObj) {
    return read_xml_from_mem_obj_inplace(memObj, m_doc);
}

int WCPugiXMLBuilder::WriteToFile(const XML::WTXMLPath &path, unsigned int format) const {
    return write_xml_to_file(m_doc, path, format);
}

void WCPugiXMLBuilder::WriteToString(std::string &text) const {
    write_xml_to_string(m_doc, text);
}

int WCPugiXMLBuilder::WriteToWCStMemObj(Utils::WCStMemObj &memObj) const {
    return write_xml_to_mem_obj(m_doc, memObj);
}

} // namespace PugiXML

MIREL_NAMESPACE_END
