#pragma once

#include "core/MirelNamespace.h"
#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// Turns an XML resource into an owned XML::CXMLElement tree: users get the root element (size 1)
// and the raw bytes are let go once the tree is built.
class WCResConvertCXMLElement : public WCResConvertObj {
public:
    // The parser's code, or the root's when the document is incomplete; the data stays raw.
    int ConvertAfterLoad(WSResDataBlock &data) override;
    // Serialises the tree into the memory object; the tree stays what users see.
    int ConvertBeforeWrite(WSResDataBlock &data) override;
    int Release(WSResDataBlock &data) override;
};

} // namespace RM

MIREL_NAMESPACE_END
