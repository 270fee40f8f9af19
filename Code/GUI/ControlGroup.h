#pragma once

#include <vector>

#include "Code/GUI/CDrawable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

class WCGUIControl;

// A named set of controls of one GUI that hide and show together. A member control takes the
// group as a drawing parent, so a control of a hidden group does not draw even when the control
// itself was never hidden, and a nested group hides with its enclosing one. Neither the controls
// nor the parents are owned. [main-thread]
class ControlGroup : public CDrawable {
public:
    explicit ControlGroup(const char *name) : m_Name(name) {}

    // Hides the group and each of its controls.
    void Hide() override;
    // Shows the group and each of its controls.
    void Show() override;
    // A group has no picture of its own: it counts as drawable whenever it is shown.
    bool IsDrawable() const override { return !m_Hidden; }

    // Adds `control` once, and makes this group one of its drawing parents.
    void AddControl(WCGUIControl *control);
    // Takes `control` out, and this group out of its parents.
    void RemoveControl(WCGUIControl *control);
    bool HasControl(const WCGUIControl *control) const;
    const std::vector<WCGUIControl *> &GetControls() const noexcept { return m_Controls; }
    const WCFixedString<63> &GetName() const noexcept { return m_Name; }
    const std::vector<CDrawable *> &GetParents() const noexcept { return m_Parents; }

private:
    WCFixedString<63> m_Name;
    std::vector<WCGUIControl *> m_Controls;
};

MIREL_NAMESPACE_END
