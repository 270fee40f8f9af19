#pragma once

#include <pugixml.hpp>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;
class WCXMLSerializer;

// Paths in XML: the element's text is the native path string. A reader assigns the path only
// when the text makes a valid one, so an empty or broken text keeps what was there.
// [any-thread] on distinct trees.
WTErr ReadFromXML_WTPathRef(const CXMLElement *const element, FM::WCStPath &path);
WTErr WriteToXML_WTPathRef(CXMLElement *element, const FM::WCStPath &path);

// A path as the current element's native path string, in either direction.
void SerializeXML(WCXMLSerializer &serializer, FM::WCStPath &path);

} // namespace XML

namespace PugiXML {

WTErr ReadFromXML_WTPathRef(const pugi::xml_node &node, FM::WCStPath &path);
WTErr WriteToXML_WTPathRef(pugi::xml_node &node, const FM::WCStPath &path);

} // namespace PugiXML

MIREL_NAMESPACE_END
