#include "Utilities/XML/Code/CXMLable.h"

MIREL_NAMESPACE_BEGIN

CXMLable::~CXMLable() = default;

void CXMLable::SerializeXML(XML::WCXMLSerializer &) {}

WTErr CXMLable::ReadFromXML(const XML::CXMLElement *const) {
    return eNoErr;
}

WTErr CXMLable::ReadFromXML(const pugi::xml_node &) {
    return eNoErr;
}

XML::CXMLElement *CXMLable::WriteToXML(XML::CXMLElement *element) const {
    return element;
}

pugi::xml_node &CXMLable::WriteToXML(pugi::xml_node &node) const {
    return node;
}

MIREL_NAMESPACE_END
