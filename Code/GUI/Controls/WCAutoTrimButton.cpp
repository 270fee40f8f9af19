#include "Code/GUI/Controls/WCAutoTrimButton.h"

MIREL_NAMESPACE_BEGIN

WCAutoTrimButton *WCAutoTrimButton::Clone() const {
    auto *copy = new WCAutoTrimButton(m_pOwner);
    CopyTo(*copy);
    copy->m_Pushed.Assign(m_Pushed);
    copy->m_Released.Assign(m_Released);
    return copy;
}

MIREL_NAMESPACE_END
