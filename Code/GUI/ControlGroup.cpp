#include "Code/GUI/ControlGroup.h"

#include <algorithm>

#include "Code/GUI/WCGUIControl.h"

MIREL_NAMESPACE_BEGIN

void ControlGroup::Hide() {
    CDrawable::Hide();
    for (WCGUIControl *control : m_Controls)
        control->Hide();
}

void ControlGroup::Show() {
    CDrawable::Show();
    for (WCGUIControl *control : m_Controls)
        control->Show();
}

void ControlGroup::AddControl(WCGUIControl *control) {
    if (control == nullptr || HasControl(control))
        return;
    m_Controls.push_back(control);
    control->addParent(this);
}

void ControlGroup::RemoveControl(WCGUIControl *control) {
    const auto found = std::find(m_Controls.begin(), m_Controls.end(), control);
    if (found == m_Controls.end())
        return;
    m_Controls.erase(found);
    control->RemoveParent(this);
}

bool ControlGroup::HasControl(const WCGUIControl *control) const {
    return std::find(m_Controls.begin(), m_Controls.end(), control) != m_Controls.end();
}

MIREL_NAMESPACE_END
