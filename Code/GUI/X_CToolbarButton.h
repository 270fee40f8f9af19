#pragma once

#include "Code/GUI/Controls/CButton_X.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// A button of a GUI's toolbar, made from a "ToolButton" element by its "type". It reads its
// picture and rectangle as any control does and remembers its kind; what a press does (open the
// preset menu, undo, step presets) belongs to the input and control layers that drive it.
// [main-thread]
class X_CToolbarButton : public CButton_X {
public:
    X_CToolbarButton(WIControlOwner *owner, const char *type) : CButton_X(owner), m_Type(type) {}

    X_CToolbarButton *Clone() const override;
    XML::CXMLElement *WriteToXMLWithAlg(XML::CXMLElement *element) const override;

    const WCFixedString<31> &GetType() const noexcept { return m_Type; }
    // The preset menu buttons come in a static kind, whose title does not follow the preset.
    bool IsStatic() const noexcept { return m_Static; }
    void SetStatic(bool isStatic) noexcept { m_Static = isStatic; }
    bool IsPressed() const noexcept { return m_Pressed; }
    void SetPressed(bool pressed) noexcept { m_Pressed = pressed; }

private:
    WCFixedString<31> m_Type;
    bool m_Static = false;
    bool m_Pressed = false;
};

MIREL_NAMESPACE_END
