#include "Code/GUI/WCGUIXMLReader.h"

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

namespace GUIXML {

bool WCReader::Read(const XML::CXMLElement &element) {
    if (element.GetName() == "SubViewRect_List") {
        for (const XML::CXMLElement *child : element.GetSubElements()) {
            WURect<short> rect;
            if (child->GetName() == "Rect" && ReadRect(*child, rect) == eNoErr)
                m_SubViewRects.push_back(rect);
        }
        return true;
    }
    if (element.GetName() == "Control_Template_Batch_List") {
        for (const XML::CXMLElement *child : element.GetSubElements())
            m_TemplateBatches.push_back(child);
        return true;
    }
    return false;
}

} // namespace GUIXML

MIREL_NAMESPACE_END
