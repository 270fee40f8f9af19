#include "Code/GUI/X_CToolbarButton.h"

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

X_CToolbarButton *X_CToolbarButton::Clone() const {
    auto *copy = new X_CToolbarButton(m_pOwner, m_Type.c_str());
    CopyButtonTo(*copy);
    copy->m_Static = m_Static;
    return copy;
}

XML::CXMLElement *X_CToolbarButton::WriteToXMLWithAlg(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    element->SetAttrib("type", m_Type.c_str());
    return CButton_X::WriteToXMLWithAlg(element);
}

MIREL_NAMESPACE_END
