#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class WCGUIControl;

// What a control asks of the GUI document that owns it: other controls by name, a full redraw,
// the document's flags, groups and deselection. The document implements it; a control never
// outlives its owner. [main-thread]
class WIControlOwner {
public:
    // Bits of the document's flag word that controls read.
    enum EOwnerFlags : unsigned int { eOwnerNoAlwaysDraw = 2, eOwnerNoImages = 4 };

    virtual ~WIControlOwner() = default;
    // Null for a name no control has.
    virtual WCGUIControl *GetControlPtrByName(const char *name) = 0;
    virtual void SetNeedToRedrawGUI() = 0;
    virtual bool GetGUIFlag(unsigned int bit) const = 0;
    virtual bool GroupExists(const char *name) const = 0;
    virtual int GroupAdd(const char *name) = 0;
    virtual int GroupAddControl(const char *name, WCGUIControl *control) = 0;
    // Takes the control out of the active selection.
    virtual void DeSelectControl(WCGUIControl *control) = 0;
    // The control may need painting in a coming frame (a redraw asked, a hover changing, an
    // animation running); a frame looks at such controls only.
    virtual void WatchControl(WCGUIControl *) {}
};

MIREL_NAMESPACE_END
