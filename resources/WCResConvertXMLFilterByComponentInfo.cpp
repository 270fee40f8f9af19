#include "resources/WCResConvertXMLFilterByComponentInfo.h"

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "Utilities/XML/Code/WCXMLTemplatizer.h"
#include "resources/XMLFilterByComponentInfo.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

int WCResConvertXMLFilterByComponentInfo::ConvertAfterLoad(WSResDataBlock &data) {
    if (m_pInfo == nullptr)
        return eMemNullPointer;
    const int err = WCResConvertCXMLElement::ConvertAfterLoad(data);
    if (err != eNoErr)
        return err;
    // The tree is this resource's own, so it is filtered where it stands.
    return FilterXMLByComponentInfo(*m_pInfo, *static_cast<XML::CXMLElement *>(data.m_pData));
}

int WCResConvertPugiXMLFilterByComponentInfo::ConvertAfterLoad(WSResDataBlock &data) {
    if (m_pInfo == nullptr)
        return eMemNullPointer;
    const int err = WCResConvertPugiXML::ConvertAfterLoad(data);
    if (err != eNoErr)
        return err;
    // From the root element, as the other two forms filter: a root tagged for another component
    // would otherwise take the whole document with it.
    pugi::xml_node root = static_cast<pugi::xml_document *>(data.m_pData)->document_element();
    return FilterPugiXMLByComponentInfo(*m_pInfo, root);
}

int WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates::ConvertAfterLoad(
    WSResDataBlock &data) {
    if (m_pInfo == nullptr)
        return eMemNullPointer;
    if (data.m_MemObj.Empty())
        return eXMLTreeEmpty;
    std::unique_ptr<pugi::xml_document> doc(new (std::nothrow) pugi::xml_document());
    std::unique_ptr<XML::CXMLElement> element(new (std::nothrow) XML::CXMLElement());
    if (!doc || !element)
        return eMemNewFailed;
    if (PugiXML::read_xml_from_mem_obj(data.m_MemObj, *doc) != 0)
        return eXMLTreeNotValid;
    pugi::xml_node root = doc->document_element();
    if (!root)
        return eXMLTreeEmpty;
    FilterPugiXMLByComponentInfo(*m_pInfo, root);
    if (root.attribute("DoubleSizeGUI").as_bool())
        HalveDoubleSizeCoordinates(root);

    Utils::WCStMemObj expanded;
    {
        PugiXML::WCXMLTemplatizer templatizer(*doc);
        templatizer.set_depth(m_TemplateDepth);
        const int err = templatizer.write_to_mem_obj(expanded);
        if (err != eNoErr)
            return err;
    }
    doc.reset();
    return HandOutCXMLElement(std::move(element), expanded, data);
}

int WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates::ConvertBeforeWrite(
    WSResDataBlock &) {
    // The expanded document is a view for one component; the resource is written in its
    // authored form only.
    return eRMResUpdateFailed;
}

int WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates::Release(WSResDataBlock &data) {
    if (data.m_DataSize == 1 && data.m_pData != nullptr) {
        if (data.m_Form == kResFormCXMLElement)
            delete static_cast<XML::CXMLElement *>(data.m_pData);
        else if (data.m_Form == kResFormPugiXML)
            delete static_cast<pugi::xml_document *>(data.m_pData);
    }
    return ReleaseBytes(data);
}

} // namespace RM

MIREL_NAMESPACE_END
