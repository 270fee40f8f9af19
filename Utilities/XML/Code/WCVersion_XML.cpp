// The XML side of WCVersion, kept with the XML layer so that core needs no XML headers.
#include "core/WCVersion.h"

#include <string>

#include "Utilities/XML/Code/WCXMLSerializer.h"

MIREL_NAMESPACE_BEGIN

void WCVersion::SerializeXML(XML::WCXMLSerializer &serializer) {
    if (serializer.IsReading()) {
        // A missing element keeps the version as it was.
        if (serializer.GetCurrentElement() == nullptr)
            return;
        std::string text;
        serializer.element_content(text);
        ReadFromString(text.c_str());
    } else {
        WCFixedString<63> text = GetString(4);
        serializer.element_content(text);
    }
}

MIREL_NAMESPACE_END
