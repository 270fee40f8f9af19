#pragma once

#include <memory>

#include "core/MirelNamespace.h"
#include "resources/WCResConvertObj.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace RM {

// Builds `root` from `bytes` and hands it out as the block's data (form "CXMLElement", size 1).
// On failure, the parser's code or the root's when the document is incomplete; the block is left
// as it was and the root deleted.
int HandOutCXMLElement(std::unique_ptr<XML::CXMLElement> root, const Utils::WCStConstMemObj &bytes,
                       WSResDataBlock &data);

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
