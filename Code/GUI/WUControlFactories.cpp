#include "Code/GUI/WUControlFactories.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/X_CToolbarButton.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Every control kind a GUI XML may name; the family of concrete classes grows behind this list.
constexpr const char *kControlTypes[] = {
    "TextKnob",
    "MFTextKnob",
    "Toggle",
    "Slider",
    "SliderModStripes",
    "Popup",
    "DynamicPopup",
    "DynamicPopupModSource",
    "DynamicPopupWithAlg",
    "Marker",
    "Graph",
    "VU",
    "PolygonVU",
    "RotationKnob",
    "RotationKnobMeter",
    "RotationKnobModRings",
    "RadioButton",
    "DigitDisplay",
    "IncDec",
    "ScrollerButton",
    "Scrollbar",
    "LRB",
    "ZoomVerticesGraph",
    "MultiThumbSlider",
    "ControlForAutomation",
    "AutoTrim",
    "FixedStateToggleWithOff",
    "NoGUI",
    "Arc",
    "ArcMarker",
    "Bar",
    "BarMarker",
    "TextEntry",
    "QuantizedSlider",
    "DragHandle",
    "Tab",
    "MultipartVU",
};

constexpr const char *kToolbarTypes[] = {
    "Preset",     "StaticPreset", "Copy",         "Save",           "Switch", "About",
    "Undo",       "Redo",         "Help",         "PluginSpecific", "Reset",  "PrevPreset",
    "NextPreset", "SideChain",    "PresetLoader", "Skins",
};

template <std::size_t N>
bool Contains(const char *const (&table)[N], const char *type) noexcept {
    return std::any_of(std::begin(table), std::end(table),
                       [type](const char *known) { return std::strcmp(known, type) == 0; });
}

} // namespace

bool IsDefaultControlType(const char *type) noexcept {
    return type != nullptr && Contains(kControlTypes, type);
}

WCGUIControl *CreateDefaultControls(const WCFixedStringBase &type, CStandardGUI_X *gui) {
    if (!IsDefaultControlType(type.c_str()))
        return nullptr;
    return new WCGUIControl(gui);
}

X_CToolbarButton *CreateDefaultToolbarButtons(const WCFixedStringBase &type, CStandardGUI_X *gui) {
    if (!Contains(kToolbarTypes, type.c_str()))
        return nullptr;
    auto *button = new X_CToolbarButton(gui, type.c_str());
    button->SetStatic(std::strcmp(type.c_str(), "StaticPreset") == 0);
    return button;
}

MIREL_NAMESPACE_END
