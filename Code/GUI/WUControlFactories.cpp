#include "Code/GUI/WUControlFactories.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/X_CToolbarButton.h"

// Sliders and knobs
#include "Code/GUI/Controls/CQuantizedSlider.h"
#include "Code/GUI/Controls/CRotationKnob.h"
#include "Code/GUI/Controls/CRotationKnobMeter.h"
#include "Code/GUI/Controls/CRotationKnobModRings.h"
#include "Code/GUI/Controls/CSliderModStripes_X.h"
#include "Code/GUI/Controls/CSlider_X.h"
#include "Code/GUI/Controls/WCMultiThumbSlider.h"

// Meters, arcs and bars
#include "Code/GUI/Controls/CArcBase_X.h"
#include "Code/GUI/Controls/CBarBase_X.h"
#include "Code/GUI/Controls/CMultipartVuMeter.h"
#include "Code/GUI/Controls/CVuMeter_X.h"
#include "Code/GUI/Controls/WCPolygonMeter.h"

// Buttons, toggles and their kin
#include "Code/GUI/Controls/CButton_X.h"
#include "Code/GUI/Controls/CControlForAutomation_X.h"
#include "Code/GUI/Controls/CDragHandle.h"
#include "Code/GUI/Controls/CFixedStateToggleWithOff.h"
#include "Code/GUI/Controls/CIncDec.h"
#include "Code/GUI/Controls/CLRB_X.h"
#include "Code/GUI/Controls/CNoGUI.h"
#include "Code/GUI/Controls/CRadioButton_X.h"
#include "Code/GUI/Controls/CScroller.h"
#include "Code/GUI/Controls/CScrollerButton.h"
#include "Code/GUI/Controls/CTextEntry_X.h"
#include "Code/GUI/Controls/CToggle_X.h"
#include "Code/GUI/Controls/WCAutoTrimButton.h"
#include "Code/GUI/Controls/WCTab.h"
#include "Code/GUI/Controls/X_CMultiField.h"

// Popups, markers and digits
#include "Code/GUI/Controls/CDigitDisplay_X.h"
#include "Code/GUI/Controls/CMarker_X.h"
#include "Code/GUI/Controls/CPopup_X.h"
#include "Code/GUI/Controls/WCDynamicPopup.h"

MIREL_NAMESPACE_BEGIN

namespace {

using WTControlMaker = WCGUIControl *(*)(CStandardGUI_X *gui);

template <typename T>
WCGUIControl *Make(CStandardGUI_X *gui) {
    return new T(gui);
}

struct WSControlKind {
    const char *m_Type;
    WTControlMaker m_Make;
};

// Every control kind a GUI XML may name, with the class that stands behind it; kinds without a
// class of their own yet are plain controls carrying their type name.
constexpr WSControlKind kControlKinds[] = {
    // Sliders and knobs
    {"Slider", &Make<CSlider_X>},
    {"QuantizedSlider", &Make<CQuantizedSlider>},
    {"SliderModStripes", &Make<CSliderModStripes_X>},
    {"MultiThumbSlider", &Make<WCMultiThumbSlider>},
    {"RotationKnob", &Make<CRotationKnob>},
    {"RotationKnobMeter", &Make<CRotationKnobMeter>},
    {"RotationKnobModRings", &Make<CRotationKnobModRings>},

    // Meters, arcs and bars
    {"VU", &Make<CVuMeter_X>},
    {"PolygonVU", &Make<WCPolygonMeter>},
    {"MultipartVU", &Make<CMultipartVuMeter>},
    {"Arc", &Make<CArc_X>},
    {"ArcMarker", &Make<CArcMarker_X>},
    {"Bar", &Make<CBar_X>},
    {"BarMarker", &Make<CBarMarker_X>},

    // Buttons, toggles and their kin
    {"TextKnob", &Make<CButton_X>},
    {"MFTextKnob", &Make<X_CMultiField>},
    {"Toggle", &Make<CToggle_X>},
    {"FixedStateToggleWithOff", &Make<CFixedStateToggleWithOff>},
    {"TextEntry", &Make<CTextEntry_X>},
    {"IncDec", &Make<CIncDec>},
    {"ScrollerButton", &Make<CScrollerButton>},
    {"Scrollbar", &Make<CScroller>},
    {"AutoTrim", &Make<WCAutoTrimButton>},
    {"DragHandle", &Make<CDragHandle>},
    {"Tab", &Make<WCTab>},
    {"LRB", &Make<CLRB_X>},
    {"RadioButton", &Make<CRadioButton_X>},
    {"ControlForAutomation", &Make<CControlForAutomation_X>},
    {"NoGUI", &Make<CNoGUI>},

    // Popups, markers and digits
    {"Popup", &Make<CPopup_X>},
    {"DynamicPopup", &Make<WCDynamicPopup>},
    {"DynamicPopupModSource", &Make<WCDynamicPopupModSource>},
    {"DynamicPopupWithAlg", &Make<WCDynamicPopupWithAlg>},
    {"Marker", &Make<CMarker_X>},
    {"DigitDisplay", &Make<CDigitDisplay_X>},

    // Graphs
    {"Graph", &Make<WCGUIControl>},
    {"ZoomVerticesGraph", &Make<WCGUIControl>},
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

const WSControlKind *FindKind(const char *type) noexcept {
    if (type == nullptr)
        return nullptr;
    const auto found = std::find_if(
        std::begin(kControlKinds), std::end(kControlKinds),
        [type](const WSControlKind &kind) { return std::strcmp(kind.m_Type, type) == 0; });
    return found == std::end(kControlKinds) ? nullptr : found;
}

} // namespace

bool IsDefaultControlType(const char *type) noexcept {
    return FindKind(type) != nullptr;
}

WCGUIControl *CreateDefaultControls(const WCFixedStringBase &type, CStandardGUI_X *gui) {
    const WSControlKind *kind = FindKind(type.c_str());
    return kind != nullptr ? kind->m_Make(gui) : nullptr;
}

X_CToolbarButton *CreateDefaultToolbarButtons(const WCFixedStringBase &type, CStandardGUI_X *gui) {
    if (!Contains(kToolbarTypes, type.c_str()))
        return nullptr;
    auto *button = new X_CToolbarButton(gui, type.c_str());
    button->SetStatic(std::strcmp(type.c_str(), "StaticPreset") == 0);
    return button;
}

MIREL_NAMESPACE_END
