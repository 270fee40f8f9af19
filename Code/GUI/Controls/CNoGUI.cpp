#include "Code/GUI/Controls/CNoGUI.h"

MIREL_NAMESPACE_BEGIN

CNoGUI *CNoGUI::Clone() const {
    auto *copy = new CNoGUI(m_pOwner);
    CopyTo(*copy);
    return copy;
}

MIREL_NAMESPACE_END
