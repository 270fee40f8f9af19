#pragma once

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

namespace pugi {
class xml_node;
} // namespace pugi

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
class WCXMLSerializer;
} // namespace XML

// The older mix-in of everything that reads and writes itself as XML, in either XML world: a
// class overrides the Read and Write pairs it supports. The defaults do nothing: reads answer
// eNotImplemented (-25) without touching the object, the element write returns its argument, and
// the pugi write returns its node unchanged.
// [any-thread] as the derived object allows.
class CXMLable {
public:
    virtual ~CXMLable();
    virtual void SerializeXML(XML::WCXMLSerializer &serializer);
    virtual WTErr ReadFromXML(const XML::CXMLElement *const element);
    virtual WTErr ReadFromXML(const pugi::xml_node &node);
    virtual XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const;
    virtual pugi::xml_node &WriteToXML(pugi::xml_node &node) const;
};

MIREL_NAMESPACE_END
