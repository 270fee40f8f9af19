#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// Bit numbers of a control's 64-bit flag word. The names are the elements inside "Flags" in the
// GUI XML; some keep their historic spelling because documents in the field use it.
enum EControlFlags : unsigned int {
    eCF_DisplayCursor = 0,
    eCF_Automatable = 1,
    eCF_NoAutomatableImage = 2,
    eCF_StickyTouch = 3,
    eCF_ReciveTextEntery = 4,
    eCF_IgnoreMouseOnTextWin = 5,
    eCF_ChildControl = 6,
    eCF_EraseWithBackground = 7,
    eCF_HasDynamicGUI_OnInit = 8,
    eCF_SkinControl = 9,
    eCF_SpecificToolbarActsLikeToggle = 10,
    eCF_IgnoreKeyboard = 11,
    eCF_MarkerSwitchOnClick = 12,
    eCF_MarkerSwitchOnMouseUp = 13,
    eCF_MarkerSwitchOnDoubleClick = 14,
    eCF_SliderTextFollowKnob = 15,
    eCF_SliderMouseTrackKnob = 16,
    eCF_SliderNoBackground = 17,
    eCF_SliderIconFollowKnob = 18,
    eCF_SliderLogResolution = 19,
    eCF_TextTempTouch = 20,
    eCF_SetOppositeNextState = 21,
    eCF_DrawSelectionBelowAll = 22,
    eCF_PopupNoCheckmark = 23,
    eCF_PopupAppearOnMousePos = 24,
    eCF_ZoomFromAlg = 25,
    eCF_HideWhenDisabled = 26,
    eCF_IgnoreDisableMode = 27,
    eCF_Hidden = 28,
    eCF_CanAttachToMIDI = 29,
    eCF_SaveMIDIAttachment = 30,
    eCF_DefaultDraw = 31,
    eCF_JumpToScaleMarks = 32,
    eCF_DrawSelectionAboveControl = 33,
    eCF_FileDropEnabled = 34,
    eCF_NoMouseUpAfterDrag = 35,
    eCF_ImmediateDrawOnTouchDrag = 38,
    eCF_Momentary = 39,
    eCF_CanAttachToRTMIDI = 40,
    eCF_ForceMouseOver = 41,
    eCF_ReceiveEmptyTextEntry = 42,
    eCF_ShouldClip = 43,
    eCF_DisableMenuTriangle = 44,
    eCF_HideChildrenWhenTabHidden = 45,
};

// Selection levels of a control, indexes of its selection images; the names are the "Type" of
// the images under "Selection". The enum keeps its historic spelling.
enum EContolSelectLevel : int {
    eSelectIdle = 0,
    eSelectAutomated = 1,
    eSelectSelected = 2,
    eSelectActive = 3,
    eSelectDisabled = 4,
    eSelectHover = 5,
    eNumSelectLevels = 6,
};

// How a mouse movement maps onto a control.
enum EControlDirection : int {
    eDirectionNone = -1,
    eDirectionToggle = 0,
    eDirectionVertical = 1,
    eDirectionHorizontal = 2,
    eDirectionOmni = 3,
};

// When a control greys itself out.
enum EControlDisableMode : int {
    eDisableWhenRequested = 0,
    eDisableWhenAllDisabled = 1,
};

// Name tables of the enums above. [any-thread]
namespace GUINames {
// The bit of a flag name by exact text, -1 for a name that is no control flag. Both
// "SliderCopyFromBackground" and "EraseWithBackground" give bit 7, both "ClippingRect" and
// "ShouldClip" bit 43.
int ControlFlagFromString(const char *name) noexcept;
// The name a writer uses for a bit; null for bits without one (36, 37, past 45).
const char *ControlFlag2String(unsigned int bit) noexcept;
// -1 for an unknown text.
int SelectLevelFromString(const char *name) noexcept;
const char *SelectLevel2String(int level) noexcept;
// "UNKNOWN_HOVER_STATE" outside 0 to 3.
const char *HoverState2String(int state) noexcept;
// False leaves `out` alone.
bool DirectionFromString(const char *name, int &out) noexcept;
const char *Direction2String(int direction) noexcept;
bool DisableModeFromString(const char *name, int &out) noexcept;
const char *DisableMode2String(int mode) noexcept;
} // namespace GUINames

MIREL_NAMESPACE_END
