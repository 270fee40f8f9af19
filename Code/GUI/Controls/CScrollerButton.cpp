#include "Code/GUI/Controls/CScrollerButton.h"

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

CScrollerButton *CScrollerButton::Clone() const {
    auto *copy = new CScrollerButton(m_pOwner);
    CopyIncDecTo(*copy);
    copy->m_Zoom = m_Zoom;
    return copy;
}

WTErr CScrollerButton::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) {
    if (cls == nullptr)
        return eMemNullPointer;
    bool zoom = false;
    for (const XML::CXMLElement *child : cls->GetSubElements())
        if (child->GetName() == "IncDecTypeZoom")
            zoom = GUIXML::ReadSwitch(*child);
    if (const WTErr err = CIncDec::ReadFromXMLWithAlgSelf(cls, alg); err != eNoErr)
        return err;
    m_Zoom = zoom;
    return eNoErr;
}

void CScrollerButton::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (m_Zoom)
        cls->push_sub_element(new XML::CXMLElement("IncDecTypeZoom", "true"));
    CIncDec::WriteToXMLWithAlgSelf(cls);
}

WCGUIControl::BUFFER_HEADER *CScrollerButton::Step() {
    const unsigned int horizontal = m_Zoom ? eRegZoomX : eRegScrollX;
    const unsigned int vertical = m_Zoom ? eRegZoomY : eRegScrollY;
    BUFFER_HEADER *chain = StepType(horizontal);
    return Chain(chain, StepType(vertical));
}

MIREL_NAMESPACE_END
