#include "Code/GUI/WUControlNames.h"

#include <cstring>
#include <iterator>

MIREL_NAMESPACE_BEGIN

namespace GUINames {

namespace {

struct WSFlagName {
    const char *name;
    int bit;
};

// Writing names first: the first row of a bit is what ControlFlag2String gives.
constexpr WSFlagName kControlFlags[] = {
    {"DisplayCursor", 0},
    {"Automatable", 1},
    {"NoAutomatableImage", 2},
    {"StickyTouch", 3},
    {"ReciveTextEntery", 4},
    {"IgnoreMouseOnTextWin", 5},
    {"ChildControl", 6},
    {"EraseWithBackground", 7},
    {"HasDynamicGUI_OnInit", 8},
    {"SkinControl", 9},
    {"SpecificToolbarActsLikeToggle", 10},
    {"IgnoreKeyboard", 11},
    {"MarkerSwitchOnClick", 12},
    {"MarkerSwitchOnMouseUp", 13},
    {"MarkerSwitchOnDoubleClick", 14},
    {"SliderTextFollowKnob", 15},
    {"SliderMouseTrackKnob", 16},
    {"SliderNoBackground", 17},
    {"SliderIconFollowKnob", 18},
    {"SliderLogResolution", 19},
    {"TextTempTouch", 20},
    {"SetOppositeNextState", 21},
    {"DrawSelectionBelowAll", 22},
    {"PopupNoCheckmark", 23},
    {"PopupAppearOnMousePos", 24},
    {"ZoomFromAlg", 25},
    {"HideWhenDisabled", 26},
    {"IgnoreDisableMode", 27},
    {"Hidden", 28},
    {"CanAttachToMIDI", 29},
    {"SaveMIDIAttachment", 30},
    {"DefaultDraw", 31},
    {"JumpToScaleMarks", 32},
    {"DrawSelectionAboveControl", 33},
    {"FileDropEnabled", 34},
    {"NoMouseUpAfterDrag", 35},
    {"ImmediateDrawOnTouchDrag", 38},
    {"Momentary", 39},
    {"CanAttachToRTMIDI", 40},
    {"ForceMouseOver", 41},
    {"ReceiveEmptyTextEntry", 42},
    // Documents say "ClippingRect", the writer says "ShouldClip": two words for one bit on
    // purpose, and both read.
    {"ShouldClip", 43},
    {"DisableMenuTriangle", 44},
    {"HideChildrenWhenTabHidden", 45},
    {"SliderCopyFromBackground", 7},
    {"ClippingRect", 43},
};

constexpr const char *kSelectLevels[] = {"Idle",   "Automated", "Selected",
                                         "Active", "Disabled",  "Hover"};
constexpr const char *kHoverStates[] = {"HOVER_OFF", "HOVER_WILL_BE_ON", "HOVER_ON",
                                        "HOVER_WILL_BE_OFF"};
constexpr const char *kDirections[] = {"none", "toggle", "vertical", "horizontal", "omni"};
constexpr const char *kDisableModes[] = {"WhenRequested", "WhenAllDisabled"};

bool Same(const char *a, const char *b) noexcept {
    return a != nullptr && std::strcmp(a, b) == 0;
}

} // namespace

int ControlFlagFromString(const char *name) noexcept {
    for (const auto &row : kControlFlags)
        if (Same(name, row.name))
            return row.bit;
    return -1;
}

const char *ControlFlag2String(unsigned int bit) noexcept {
    for (const auto &row : kControlFlags)
        if (static_cast<unsigned int>(row.bit) == bit)
            return row.name;
    return nullptr;
}

int SelectLevelFromString(const char *name) noexcept {
    for (int i = 0; i < static_cast<int>(std::size(kSelectLevels)); ++i)
        if (Same(name, kSelectLevels[i]))
            return i;
    return -1;
}

const char *SelectLevel2String(int level) noexcept {
    return level >= 0 && level < static_cast<int>(std::size(kSelectLevels)) ? kSelectLevels[level]
                                                                            : nullptr;
}

const char *HoverState2String(int state) noexcept {
    return state >= 0 && state < static_cast<int>(std::size(kHoverStates)) ? kHoverStates[state]
                                                                           : "UNKNOWN_HOVER_STATE";
}

bool DirectionFromString(const char *name, int &out) noexcept {
    for (int i = 0; i < static_cast<int>(std::size(kDirections)); ++i)
        if (Same(name, kDirections[i])) {
            out = i - 1;
            return true;
        }
    return false;
}

const char *Direction2String(int direction) noexcept {
    return direction >= -1 && direction <= 3 ? kDirections[direction + 1] : nullptr;
}

bool DisableModeFromString(const char *name, int &out) noexcept {
    for (int i = 0; i < static_cast<int>(std::size(kDisableModes)); ++i)
        if (Same(name, kDisableModes[i])) {
            out = i;
            return true;
        }
    return false;
}

const char *DisableMode2String(int mode) noexcept {
    return mode >= 0 && mode < static_cast<int>(std::size(kDisableModes)) ? kDisableModes[mode]
                                                                          : nullptr;
}

} // namespace GUINames

MIREL_NAMESPACE_END
