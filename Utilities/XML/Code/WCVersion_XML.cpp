// The XML form of WCVersion: the full text, GetString(4), as the current element's content. It
// lives with the serializer so that WCVersion stays a plain value of core that needs no XML.
#include "core/WCVersion.h"

#include <string>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXMLSerializer.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

WCXMLSerializer &WCXMLSerializerReader::element_content(WCVersion &value) {
    // A missing element keeps the version as it was; a present one is read whole, so a text that
    // is no version gives zero parts.
    if (m_current != nullptr)
        value.ReadFromString(m_current->GetText().c_str());
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(WCVersion &value) {
    if (m_current != nullptr)
        m_current->SetText(std::string(value.GetString(4).view()));
    return *this;
}

} // namespace XML

MIREL_NAMESPACE_END
