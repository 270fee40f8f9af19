#include "Utilities/XML/Code/CXMLable.h"

MIREL_NAMESPACE_BEGIN

CXMLable::~CXMLable() = default;

void CXMLable::SerializeXML(XML::WCXMLSerializer &) {}

// A class that does not read a form answers that nobody read it, never a success that left the
// object as it was.
WTErr CXMLable::ReadFromXML(const XML::CXMLElement *const) {
    return eNotImplemented;
}

WTErr CXMLable::ReadFromXML(const pugi::xml_node &) {
    return eNotImplemented;
}

XML::CXMLElement *CXMLable::WriteToXML(XML::CXMLElement *element) const {
    return element;
}

pugi::xml_node &CXMLable::WriteToXML(pugi::xml_node &node) const {
    return node;
}

MIREL_NAMESPACE_END
