#pragma once

#include "core/MirelNamespace.h"
#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// Turns an XML resource into a pugi::xml_document (size 1). The raw bytes stay in the memory
// object. The tree is parsed from its own copy of them, so a write that refills the memory object
// cannot pull the tree's text from under it.
class WCResConvertPugiXML : public WCResConvertObj {
public:
    // eXMLTreeNotValid for text pugixml refuses, eXMLTreeEmpty without a root element.
    int ConvertAfterLoad(WSResDataBlock &data) override;
    int ConvertBeforeWrite(WSResDataBlock &data) override;
    int Release(WSResDataBlock &data) override;
};

} // namespace RM

MIREL_NAMESPACE_END
