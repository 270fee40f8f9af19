#pragma once

#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;

namespace PluginViewManager {

// The small vocabularies of an event record. Their numbers are stored in GUI files and passed to
// plug-ins, so they never change.

// Keys that are not plain characters; a character key is eKeyCharacter with the event's key char.
enum WEKeyCode : int {
    eKeyNone = 0,
    eKeyCharacter = 1,
    eKeyBackspace = 8,
    eKeyTab = 9,
    eKeyReturn = 13,
    eKeyEscape = 27,
    eKeySpace = 32,
    eKeyDelete = 127,
    eKeyLeft = 0x100,
    eKeyUp,
    eKeyRight,
    eKeyDown,
    eKeyHome,
    eKeyEnd,
    eKeyPageUp,
    eKeyPageDown,
    eKeyInsert,
    eKeyF1 = 0x120,
    eKeyF2,
    eKeyF3,
    eKeyF4,
    eKeyF5,
    eKeyF6,
    eKeyF7,
    eKeyF8,
    eKeyF9,
    eKeyF10,
    eKeyF11,
    eKeyF12,
};

// The order of the four modifier bools of an event. Primary is Control here; secondary is either
// Super key; the XML names are "Primary", "Secondary" and "Shift".
enum WEModifier : int {
    eModifierPrimary = 0,
    eModifierSecondary = 1,
    eModifierShift = 2,
    eModifierAlt = 3,
    eModifierCount = 4,
};

enum WEClickCount : int {
    eClickNone = 0,
    eClickSingle = 1,
    eClickDouble = 2,
    eClickTriple = 3,
};

enum WEMouseButton : int {
    eMouseButtonLeft = 0,
    eMouseButtonRight = 1,
    eMouseButtonMiddle = 2,
    eMouseButtonCount = 3,
};

enum WEMouseWheel : int {
    eMouseWheelVertical = 0,
    eMouseWheelHorizontal = 1,
};

// What the custom data block of an event holds.
enum ECustomDataType : int {
    eCustomDataNone = 0,
    eCustomDataText = 1,
    eCustomDataBinary = 2,
    eCustomDataJSON = 3,
};

// The codes a view's callback receives. The numbers of the first table are shared with hosts
// that drive views themselves; the rest follow where the table leaves room.
enum WEEventCode : int {
    eEventMouseDown = 0,
    eEventMouseUp = 1,
    eEventMouseMoved = 2,
    eEventMouseWheel = 3,
    eEventKeyDown = 4,
    eEventKeyUp = 5,
    eEventWindowDeactivate = 6,
    eEventDoubleClick = 7,
    eEventClose = 8,
    eEventDraw = 9,
    eEventCommand = 10,
    eEventClickOutsideWindow = 11,
    eEventDevicesChanged = 12,
    eEventPrivate0 = 13,
    eEventPreShowMenu = 14,
    eEventPrivate3 = 15,
    eEventResize = 16,
    eEventDPIChange = 17,
    eEventFileDrop = 18,
    eEventFileDragOver = 19,
    eEventTouch = 20,
};

// The files of a drop or of a drag passing over a view, and where the mouse is.
struct sDragDropEvent {
    std::vector<std::string> m_paths;
    WCPoint2D<short> m_location;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
