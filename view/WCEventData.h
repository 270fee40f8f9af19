#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "view/WCEventMessage.h"
#include "view/WCEventTypes.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

// The one platform-free record of an input event that the view layer hands to a GUI. A view's
// dispatcher keeps one and refreshes the fields each message concerns, so fields that outlive a
// single message (the mouse-down location during a drag) are still there at the next one.
// [main-thread] of the view it belongs to.
class WCEventData {
public:
    WCEventData() = default;

    // ---- keys ----
    WEKeyCode GetKeyCode() const noexcept { return m_keyCode; }
    void SetKeyCode(WEKeyCode code) noexcept { m_keyCode = code; }
    char GetKeyChar() const noexcept { return m_keyChar; }
    void SetKeyChar(char c) noexcept { m_keyChar = c; }

    const bool *GetAllKeyModifiers() const noexcept { return m_modifiers; }
    void SetAllKeyModifiers(const bool (&modifiers)[eModifierCount]) noexcept;
    bool GetKeyModifier(WEModifier modifier) const noexcept;
    // eOutOfRangeNumber for a modifier outside the four, leaving the record as it was.
    int SetKeyModifier(WEModifier modifier, bool down) noexcept;
    // True when the four modifiers are those given.
    bool CompareKeyModifiers(const bool (&modifiers)[eModifierCount]) const noexcept;
    // Clears the four and asks the window system for each.
    void UpdateKeyModifiersStateFromSys() noexcept;

    // ---- mouse ----
    WEClickCount GetMouseClickCount() const noexcept { return m_clickCount; }
    void SetMouseClickCount(WEClickCount count) noexcept { m_clickCount = count; }
    WCPoint2D<short> GetMouseLocation() const noexcept { return m_location; }
    void SetMouseLocation(WCPoint2D<short> p) noexcept { m_location = p; }
    WCPoint2D<short> GetMouseOldLocation() const noexcept { return m_oldLocation; }
    void SetMouseOldLocation(WCPoint2D<short> p) noexcept { m_oldLocation = p; }
    WCPoint2D<short> GetMouseDownLocation() const noexcept { return m_mouseDownLocation; }
    void SetMouseDownLocation(WCPoint2D<short> p) noexcept { m_mouseDownLocation = p; }
    WCPoint2D<short> GetMouseDelta() const noexcept { return m_delta; }
    void SetMouseDelta(WCPoint2D<short> p) noexcept { m_delta = p; }
    WCPoint2D<short> GetCursorReleaseLocation() const noexcept { return m_cursorRelease; }
    void SetCursorReleaseLocation(WCPoint2D<short> p) noexcept { m_cursorRelease = p; }
    WCPoint2D<short> GetHotspotOffset() const noexcept { return m_hotspotOffset; }
    void SetHotspotOffset(WCPoint2D<short> p) noexcept { m_hotspotOffset = p; }
    WCPoint2D<short> GetParentWindowOffset() const noexcept { return m_parentOffset; }
    void SetParentWindowOffset(WCPoint2D<short> p) noexcept { m_parentOffset = p; }
    // Delta = location minus old location.
    void CalcMouseDelta() noexcept { m_delta = m_location - m_oldLocation; }
    // Location minus mouse-down location, signed.
    WCPoint2D<short> GetMouseDistanceFromDragStart() const noexcept {
        return m_location - m_mouseDownLocation;
    }

    bool GetMouseButtonPressed(WEMouseButton button) const noexcept;
    int SetMouseButtonPressed(WEMouseButton button, bool pressed) noexcept;
    void ResetMouseButtonState() noexcept;

    WEMouseWheel GetMouseWheelAxis() const noexcept { return m_wheelAxis; }
    void SetMouseWheelAxis(WEMouseWheel axis) noexcept { m_wheelAxis = axis; }
    // The wheel amount and the touch id share one field: an event is one or the other.
    int GetTouchEventID() const noexcept { return m_wheelOrTouch; }
    void SetTouchEventID(int value) noexcept { m_wheelOrTouch = value; }
    int GetMouseWheelAmount() const noexcept { return m_wheelOrTouch; }

    // ---- commands and context ----
    short GetCommand() const noexcept { return m_command; }
    void SetCommand(short command) noexcept { m_command = command; }
    short GetControlID() const noexcept { return m_controlID; }
    void SetControlID(short id) noexcept { m_controlID = id; }
    void *GetMenuRef() const noexcept { return m_menuRef; }
    void SetMenuRef(void *menu) noexcept { m_menuRef = menu; }
    WSPluginView *GetParentView() const noexcept { return m_parentView; }
    void SetParentView(WSPluginView *view) noexcept { m_parentView = view; }
    const sDragDropEvent &GetDragDropEvent() const noexcept { return m_dragDrop; }
    sDragDropEvent &GetDragDropEvent() noexcept { return m_dragDrop; }
    const WCEventMessage &GetEventMessage() const noexcept { return m_message; }
    void SetEventMessage(const WCEventMessage &message) { m_message = message; }

    // ---- custom data ----
    ECustomDataType GetCustomDataType() const noexcept { return m_customType; }
    // Copies the bytes. A failed copy returns its code and leaves the old data and type.
    int SetCustomData(ECustomDataType type, const void *data, std::uint64_t size) noexcept;
    Utils::WCStMemObj &GetCustomDataObj() noexcept { return m_customData; }
    const Utils::WCStMemObj &GetCustomDataObj() const noexcept { return m_customData; }

    // ---- scaling and moving ----
    double GetScalingFactor() const noexcept { return m_scalingFactor; }
    void SetScalingFactor(double factor) noexcept { m_scalingFactor = factor; }
    // Stores `factor` and scales every mouse point by it: divides when `toUnscaled` (from the
    // window's pixels to the GUI's units), multiplies otherwise. eOutOfRangeNumber for a factor
    // that is not a finite number above 0, leaving the record as it was.
    int ScaleEventData(double factor, bool toUnscaled) noexcept;
    // Moves the location, old location, mouse-down location and release location by `offset`;
    // the delta is a difference and stays.
    void Translate(WCPoint2D<short> offset) noexcept;

    // ---- flags ----
    bool IsFromAnotherWindow() const noexcept { return m_fromAnotherWindow; }
    void SetFromAnotherWindow(bool on) noexcept { m_fromAnotherWindow = on; }
    bool IsModalWindowOnMouseDown() const noexcept { return m_modalOnMouseDown; }
    void SetModalWindowOnMouseDown(bool on) noexcept { m_modalOnMouseDown = on; }
    bool IsNoSelect() const noexcept { return m_noSelect; }
    void SetNoSelect(bool on) noexcept { m_noSelect = on; }
    bool IsExclusive() const noexcept { return m_exclusive; }
    void SetExclusive(bool on) noexcept { m_exclusive = on; }
    bool IsNoCapture() const noexcept { return m_noCapture; }
    void SetNoCapture(bool on) noexcept { m_noCapture = on; }

    // Back to a fresh record.
    void Reset() noexcept;

private:
    WEKeyCode m_keyCode = eKeyNone;
    char m_keyChar = 0;
    bool m_modifiers[eModifierCount] = {false, false, false, false};
    WEClickCount m_clickCount = eClickNone;
    WCPoint2D<short> m_location;
    WCPoint2D<short> m_oldLocation;
    WCPoint2D<short> m_mouseDownLocation;
    WCPoint2D<short> m_delta;
    WCPoint2D<short> m_cursorRelease;
    WCPoint2D<short> m_hotspotOffset;
    WCPoint2D<short> m_parentOffset;
    bool m_buttons[eMouseButtonCount] = {false, false, false};
    WEMouseWheel m_wheelAxis = eMouseWheelVertical;
    int m_wheelOrTouch = 0;
    short m_command = 0;
    short m_controlID = 0;
    void *m_menuRef = nullptr;
    WSPluginView *m_parentView = nullptr;
    sDragDropEvent m_dragDrop;
    ECustomDataType m_customType = eCustomDataNone;
    Utils::WCStMemObj m_customData;
    double m_scalingFactor = 1.0;
    bool m_fromAnotherWindow = false;
    bool m_modalOnMouseDown = false;
    bool m_noSelect = false;
    bool m_exclusive = false;
    bool m_noCapture = false;
    WCEventMessage m_message;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
