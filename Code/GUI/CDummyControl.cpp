#include "Code/GUI/CDummyControl.h"

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

XML::CXMLElement *CDummyControl::WriteToXMLWithAlg(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    element->AddAttrib("Name", m_Name.c_str());
    auto *cls = new XML::CXMLElement("Class");
    cls->AddAttrib("AutomationType", m_AutomationType.c_str());
    element->push_back(cls);
    return element;
}

MIREL_NAMESPACE_END
