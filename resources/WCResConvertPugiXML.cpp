#include "resources/WCResConvertPugiXML.h"

#include <memory>
#include <new>
#include <pugixml.hpp>

#include "Utilities/XML/Code/PugiXML.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

int WCResConvertPugiXML::ConvertAfterLoad(WSResDataBlock &data) {
    std::unique_ptr<pugi::xml_document> doc(new (std::nothrow) pugi::xml_document());
    if (!doc)
        return eMemNewFailed;
    if (data.m_MemObj.Empty())
        return eXMLTreeEmpty;
    if (PugiXML::read_xml_from_mem_obj(data.m_MemObj, *doc) != 0)
        return eXMLTreeNotValid;
    if (!doc->document_element())
        return eXMLTreeEmpty;
    data.m_pData = doc.release();
    data.m_DataSize = 1;
    data.m_Form = kResFormPugiXML;
    return eNoErr;
}

int WCResConvertPugiXML::ConvertBeforeWrite(WSResDataBlock &data) {
    if (data.m_Form != kResFormPugiXML || data.m_pData == nullptr || data.m_DataSize != 1)
        return eMemNullPointer;
    return PugiXML::write_xml_to_mem_obj(*static_cast<pugi::xml_document *>(data.m_pData),
                                         data.m_MemObj);
}

int WCResConvertPugiXML::Release(WSResDataBlock &data) {
    // Raw bytes a caller added under a pugi key are not a document, whatever their size.
    if (data.m_Form == kResFormPugiXML && data.m_DataSize == 1)
        delete static_cast<pugi::xml_document *>(data.m_pData);
    return ReleaseBytes(data);
}

} // namespace RM

MIREL_NAMESPACE_END
