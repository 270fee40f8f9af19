#include "Utilities/XML/Code/XMLPathHelpers.h"

#include <string>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXMLSerializer.h"

MIREL_NAMESPACE_BEGIN

namespace {

void AssignIfValid(const char *text, FM::WCStPath &path) {
    FM::WCStPath candidate(text);
    if (candidate.IsValid())
        path = std::move(candidate);
}

} // namespace

namespace XML {

WTErr ReadFromXML_WTPathRef(const CXMLElement *const element, FM::WCStPath &path) {
    if (element == nullptr)
        return eXMLElementMissing;
    AssignIfValid(element->GetText().c_str(), path);
    return eNoErr;
}

WTErr WriteToXML_WTPathRef(CXMLElement *element, const FM::WCStPath &path) {
    if (element == nullptr)
        return eMemNullPointer;
    element->SetText(std::string(path.GetNativePathString().view()));
    return eNoErr;
}

void SerializeXML(WCXMLSerializer &serializer, FM::WCStPath &path) {
    if (serializer.IsReading()) {
        if (serializer.GetCurrentElement() != nullptr)
            AssignIfValid(serializer.GetCurrentElement()->GetText().c_str(), path);
    } else {
        std::string text(path.GetNativePathString().view());
        serializer.element_content(text);
    }
}

} // namespace XML

namespace PugiXML {

WTErr ReadFromXML_WTPathRef(const pugi::xml_node &node, FM::WCStPath &path) {
    if (!node)
        return eXMLElementMissing;
    AssignIfValid(node.text().get(), path);
    return eNoErr;
}

WTErr WriteToXML_WTPathRef(pugi::xml_node &node, const FM::WCStPath &path) {
    if (!node)
        return eMemNullPointer;
    node.text().set(path.GetNativePathString().c_str());
    return eNoErr;
}

} // namespace PugiXML

MIREL_NAMESPACE_END
