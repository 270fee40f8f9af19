#include "Code/GUI/WCRegisterInfo.h"

#include <cstring>

MIREL_NAMESPACE_BEGIN

namespace {

struct WSRegisterName {
    const char *name;
    unsigned int bit;
    int second; // a second bit the name sets, -1 for none
};

// Two-bit names first, so that the writer prefers them over the plain name of their first bit.
constexpr WSRegisterName kRegisterNames[] = {
    {"MouseVerticalNoMouseWheel", eRegMouseVertical, eRegNoWheelVertical},
    {"MouseHorizontalNoMouseWheel", eRegMouseHorizontal, eRegNoWheelHorizontal},
    {"MouseDownLeftButtonOnly", eRegMouseDown, eRegLeftButtonOnly},
    {"None", eRegNone, -1},
    {"MouseDown", eRegMouseDown, -1},
    {"MouseUp", eRegMouseUp, -1},
    {"MouseVertical", eRegMouseVertical, -1},
    {"MouseHorizontal", eRegMouseHorizontal, -1},
    {"MouseWheelVertical", eRegMouseWheelVertical, -1},
    {"MouseWheelHorizontal", eRegMouseWheelHorizontal, -1},
    {"MouseDrawVertical", eRegMouseDrawVertical, -1},
    {"MouseDrawHorizontal", eRegMouseDrawHorizontal, -1},
    {"Reset", eRegReset, -1},
    {"OptionReset", eRegOptionReset, -1},
    {"AbsMouseDownVertical", eRegAbsMouseDownVertical, -1},
    {"AbsMouseDownHorizontal", eRegAbsMouseDownHorizontal, -1},
    {"AbsMouseUpVertical", eRegAbsMouseUpVertical, -1},
    {"AbsMouseUpHorizontal", eRegAbsMouseUpHorizontal, -1},
    {"AbsMouseMoveVertical", eRegAbsMouseMoveVertical, -1},
    {"AbsMouseMoveHorizontal", eRegAbsMouseMoveHorizontal, -1},
    {"Cyclic", eRegCyclic, -1},
    {"ZoomX", eRegZoomX, -1},
    {"ZoomY", eRegZoomY, -1},
    {"ScrollX", eRegScrollX, -1},
    {"ScrollY", eRegScrollY, -1},
    {"RadioButton", eRegRadioButton, -1},
    {"OnOff", eRegOnOff, -1},
    {"PopUp", eRegPopUp, -1},
    {"PopUpRightButton", eRegPopUpRightButton, -1},
    {"Snap", eRegSnap, -1},
    {"Graph", eRegGraph, -1},
    {"Vertices", eRegVertices, -1},
    {"LoopStart", eRegLoopStart, -1},
    {"LoopEnd", eRegLoopEnd, -1},
    {"DisplayOnly", eRegDisplayOnly, -1},
    {"TouchPinchVertical", eRegTouchPinchVertical, -1},
    {"TouchPinchHorizontal", eRegTouchPinchHorizontal, -1},
    {"User1", 41, -1},
    {"User2", 42, -1},
    {"User3", 43, -1},
    {"User4", 44, -1},
    {"User5", 45, -1},
    {"User6", 46, -1},
    {"User7", 47, -1},
    {"User8", 48, -1},
    {"User9", 49, -1},
    {"User10", 50, -1},
};

constexpr const char *kModifierNames[] = {"Primary", "Secondary", "Shift"};

} // namespace

void WCRegisterInfo::Clear() noexcept {
    *this = WCRegisterInfo();
}

bool WCRegisterInfo::AddRegisterTypeName(const char *name) noexcept {
    if (name == nullptr)
        return false;
    for (const auto &row : kRegisterNames)
        if (std::strcmp(name, row.name) == 0) {
            m_Types.SetBit(row.bit);
            if (row.second >= 0)
                m_Types.SetBit(static_cast<unsigned int>(row.second));
            return true;
        }
    return false;
}

std::vector<const char *> WCRegisterInfo::GetRegisterTypeNames() const {
    std::vector<const char *> names;
    WTBits left = m_Types;
    for (unsigned int bit = 0; bit < WTBits::kNumBits; ++bit) {
        if (!left.IsBitSet(bit))
            continue;
        for (const auto &row : kRegisterNames) {
            if (row.bit != bit)
                continue;
            if (row.second >= 0 && !left.IsBitSet(static_cast<unsigned int>(row.second)))
                continue;
            names.push_back(row.name);
            left.ClearBit(bit);
            if (row.second >= 0)
                left.ClearBit(static_cast<unsigned int>(row.second));
            break;
        }
    }
    return names;
}

bool WCRegisterInfo::AddModifierName(const char *name) noexcept {
    for (int i = 0; i < 3; ++i)
        if (name != nullptr && std::strcmp(name, kModifierNames[i]) == 0) {
            m_Modifiers[i] = true;
            return true;
        }
    return false;
}

const char *WCRegisterInfo::ModifierName(int modifier) noexcept {
    return modifier >= 0 && modifier < 3 ? kModifierNames[modifier] : nullptr;
}

bool WCRegisterInfo::CompareParamModifiers(const bool *modifiers) const noexcept {
    for (int i = 0; i < eNumModifiers; ++i)
        if (m_Modifiers[i] != modifiers[i])
            return false;
    return true;
}

MIREL_NAMESPACE_END
