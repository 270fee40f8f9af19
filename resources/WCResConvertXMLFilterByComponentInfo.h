#pragma once

#include "core/MirelNamespace.h"
#include "resources/MirelComponentInfo.h"
#include "resources/WCResConvertCXMLElement.h"
#include "resources/WCResConvertPugiXML.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// Converters that hand each component its own view of a shared XML resource: the document is
// filtered by the component (and, for the last one, its templates are expanded) once, when the
// resource is loaded under the component's key variant. Each holds a pointer to the component
// info, which must outlive the load. Called under the container's lock, like every converter.

// The filtered document as an XML::CXMLElement (form "CXMLElement", size 1).
class WCResConvertXMLFilterByComponentInfo : public WCResConvertCXMLElement {
public:
    explicit WCResConvertXMLFilterByComponentInfo(const MirelComponentInfo *info) : m_pInfo(info) {}
    int ConvertAfterLoad(WSResDataBlock &data) override;

private:
    const MirelComponentInfo *m_pInfo;
};

// The filtered document as a pugi::xml_document (form "pugi::xml_document", size 1).
class WCResConvertPugiXMLFilterByComponentInfo : public WCResConvertPugiXML {
public:
    explicit WCResConvertPugiXMLFilterByComponentInfo(const MirelComponentInfo *info)
        : m_pInfo(info) {}
    int ConvertAfterLoad(WSResDataBlock &data) override;

private:
    const MirelComponentInfo *m_pInfo;
};

// Filters, halves a "DoubleSizeGUI" document, expands its templates down from `depth` and hands
// out the result as an XML::CXMLElement. Text the expansion makes that does not parse is the
// load's code (eXMLTreeNotValid), and so is an expansion cut at its limit (eXMLElementIncomplete).
class WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates : public WCResConvertPugiXML {
public:
    WCResConvertXMLFilterByComponentInfoAfterResolvingTemplates(const MirelComponentInfo *info,
                                                                int depth)
        : m_pInfo(info), m_TemplateDepth(depth) {}
    int ConvertAfterLoad(WSResDataBlock &data) override;
    int ConvertBeforeWrite(WSResDataBlock &data) override;
    // Deletes an element or a document, by the form.
    int Release(WSResDataBlock &data) override;

private:
    const MirelComponentInfo *m_pInfo;
    int m_TemplateDepth;
};

} // namespace RM

MIREL_NAMESPACE_END
