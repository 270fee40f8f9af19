#pragma once

#include <vector>

#include "core/MirelNamespace.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace GUIXML {

// Collects the parts of a GUI XML that make repeated blocks of controls: the sub-view rectangles
// ("SubViewRect_List") and the batches of template controls ("Control_Template_Batch_List").
// The document hands it those elements while reading; it keeps pointers into the document, which
// must outlive it. [main-thread]
class WCReader {
public:
    // Takes the element if it is one of the two lists; false for any other element.
    bool Read(const XML::CXMLElement &element);
    // Each "Rect" child of every "SubViewRect_List" read; a rectangle that does not read is
    // skipped.
    const std::vector<WURect<short>> &GetSubViewRects() const noexcept { return m_SubViewRects; }
    const std::vector<const XML::CXMLElement *> &GetTemplateBatches() const noexcept {
        return m_TemplateBatches;
    }
    bool HasSubViews() const noexcept { return !m_SubViewRects.empty(); }

private:
    std::vector<WURect<short>> m_SubViewRects;
    std::vector<const XML::CXMLElement *> m_TemplateBatches;
};

} // namespace GUIXML

MIREL_NAMESPACE_END
