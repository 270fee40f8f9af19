#pragma once

#include <cstdint>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/TBitVector.h"
#include "core/WCFixedString.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

// Bit numbers of a registration's gestures. Bits 9, 10 and 13 to 16 have no name of their own:
// they are marks that ride on another name ("MouseVerticalNoMouseWheel") or on a "Register"
// element (drag, drop, file drag and drop).
enum ERegisterType : unsigned int {
    eRegNone = 0,
    eRegMouseDown = 1,
    eRegMouseUp = 2,
    eRegMouseVertical = 3,
    eRegMouseHorizontal = 4,
    eRegMouseWheelVertical = 5,
    eRegMouseWheelHorizontal = 6,
    eRegMouseDrawVertical = 7,
    eRegMouseDrawHorizontal = 8,
    eRegNoWheelVertical = 9,
    eRegNoWheelHorizontal = 10,
    eRegReset = 11,
    eRegOptionReset = 12,
    eRegLeftButtonOnly = 13,
    eRegDrag = 14,
    eRegDrop = 15,
    eRegFileDragAndDrop = 16,
    eRegAbsMouseDownVertical = 17,
    eRegAbsMouseDownHorizontal = 18,
    eRegAbsMouseUpVertical = 19,
    eRegAbsMouseUpHorizontal = 20,
    eRegAbsMouseMoveVertical = 21,
    eRegAbsMouseMoveHorizontal = 22,
    eRegCyclic = 24,
    eRegZoomX = 25,
    eRegZoomY = 26,
    eRegScrollX = 27,
    eRegScrollY = 28,
    eRegRadioButton = 29,
    eRegOnOff = 30,
    eRegPopUp = 31,
    eRegPopUpRightButton = 32,
    eRegSnap = 33,
    eRegGraph = 34,
    eRegVertices = 35,
    eRegLoopStart = 36,
    eRegLoopEnd = 37,
    eRegDisplayOnly = 38,
    eRegTouchPinchVertical = 39,
    eRegTouchPinchHorizontal = 40,
    eRegUser1 = 41,
    eRegUser10 = 50,
};

// The modifiers a registration answers to; the first three have names in the GUI XML.
enum WEModifier : int {
    eModPrimary = 0,
    eModSecondary = 1,
    eModShift = 2,
    eModFourth = 3,
    eNumModifiers = 4,
};

// What a drag or drop carries: which parameter, its link group, the value and where it started.
struct sDragDropValues {
    std::uint64_t m_ParamID = ~std::uint64_t(0);
    int m_GroupNumber = -1;
    double m_Value = 0.0;
    WCPoint2D<short> m_Position;
};
// The values while no drag goes on: every field -1.
inline constexpr sDragDropValues kNoDragDropValues{~std::uint64_t(0), -1, -1.0,
                                                   WCPoint2D<short>(-1, -1)};

// Which gestures and modifiers a registration answers to, with the fixed and reset values.
// [main-thread]: a plain value of a control.
class WCRegisterInfo {
public:
    using WTBits = TBitVector<std::uint64_t>;

    void Clear() noexcept;
    // Adds the bits of one "RegisterType" name; false (and nothing added) for an unknown name.
    // "MouseVerticalNoMouseWheel", "MouseHorizontalNoMouseWheel" and "MouseDownLeftButtonOnly"
    // set two bits each.
    bool AddRegisterTypeName(const char *name) noexcept;
    // The names that together give the bits, one per bit or mark pair, in bit order; bits that
    // no name expresses (drag and drop marks, a lone no-wheel or left-button mark) are left out.
    std::vector<const char *> GetRegisterTypeNames() const;
    // Modifier names: "Primary", "Secondary", "Shift". False for anything else.
    bool AddModifierName(const char *name) noexcept;
    static const char *ModifierName(int modifier) noexcept;

    // All four modifiers equal.
    bool CompareParamModifiers(const bool *modifiers) const noexcept;
    // Some bit in common.
    bool CompareRegisterTypes(WTBits types) const noexcept { return m_Types.HasAny(types); }
    void SetDragDropValues(const sDragDropValues &values) noexcept { m_DragDrop = values; }

    WTBits m_Types;
    bool m_Modifiers[eNumModifiers] = {false, false, false, false};
    double m_ResetValue = 0.0;
    bool m_HasFixedState = false;
    double m_FixedState = 0.0;
    WCFixedString<127> m_Name;
    sDragDropValues m_DragDrop;
};

MIREL_NAMESPACE_END
