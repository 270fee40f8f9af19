#pragma once

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

class CStandardGUI_X;
class WCGUIControl;
class X_CToolbarButton;

// The library's own control kinds, by the "Type" of a GUI XML "Class" element, and its toolbar
// buttons, by the "type" of a "ToolButton". A plug-in's factories are asked first; these answer
// what they leave. [main-thread]

// A new control of the kind `type` names, owned by the caller; null for a type the library does
// not know. The kinds that have no class of their own yet are plain controls carrying their type
// name, which read, write and draw their registrations as every control does.
WCGUIControl *CreateDefaultControls(const WCFixedStringBase &type, CStandardGUI_X *gui);
// A new toolbar button of the kind `type` names, owned by the caller; null for an unknown type.
X_CToolbarButton *CreateDefaultToolbarButtons(const WCFixedStringBase &type, CStandardGUI_X *gui);
// Whether `type` names one of the control kinds above.
bool IsDefaultControlType(const char *type) noexcept;

MIREL_NAMESPACE_END
