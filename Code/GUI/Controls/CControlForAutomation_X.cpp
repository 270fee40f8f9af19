#include "Code/GUI/Controls/CControlForAutomation_X.h"

#include <cmath>
#include <cstdlib>

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

CControlForAutomation_X *CControlForAutomation_X::Clone() const {
    auto *copy = new CControlForAutomation_X(m_pOwner);
    CopyTo(*copy);
    copy->m_DiscreteStep = m_DiscreteStep;
    return copy;
}

WTErr CControlForAutomation_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    double step = 0.0;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        if (child->GetName() != "DiscreteStep")
            continue;
        const char *text = child->GetText().c_str();
        char *end = nullptr;
        const double value = std::strtod(text, &end);
        if (end == text || *end != '\0' || !std::isfinite(value))
            return eNotANumber;
        if (value < 0.0 || value > 1000.0)
            return eOutOfRangeNumber;
        step = value;
    }
    m_DiscreteStep = step;
    return eNoErr;
}

void CControlForAutomation_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls != nullptr && m_DiscreteStep != 0.0)
        cls->push_sub_element(new XML::CXMLElement("DiscreteStep", m_DiscreteStep));
}

MIREL_NAMESPACE_END
