#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "Code/Algorithm/WCParamExtension.h"
#include "Code/Algorithm/WCParam_Base.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class WCBaseControl;

// Maps a parameter's pixels-to-state delta; named in the parameter XML.
using WTMouseDeltaFunction = double (*)(double);

// A link group this parameter drives, as the parameter XML lists it.
struct ControlledLinkGroup {
    int group = 0;
    std::vector<int> groupNumbers;
    double linkEnabledValue = 0.0;
    WCFixedString<127> linkFunction;
};

// One parameter of an algorithm: the value half (WCParam_Base) and what the GUI, automation and
// link groups hang on it. Lives in the algorithm's vector, reserved once so pointers stay valid;
// the parameter owns its extension and graph data. [main-thread] for everything but the values,
// which change under the algorithm's process lock.
struct sCONTROL_PARAM : public WCParam_Base {
    sCONTROL_PARAM() = default;
    sCONTROL_PARAM(sCONTROL_PARAM &&) = default;
    sCONTROL_PARAM &operator=(sCONTROL_PARAM &&) = default;

    // [any-thread] The state delta for a mouse delta: acceleration times delta when an
    // acceleration is set (not -1.0); delta for a continuous parameter; for a discrete one delta
    // clamped to -10..10 times the square root of the number of states.
    double DefaultMouseDelta(double delta) const noexcept;
    // [any-thread] The named mouse delta function when there is one, else DefaultMouseDelta.
    double MouseDelta(double delta) const noexcept;

    // [main-thread] The extension follows the active setup.
    void TakeSetupData(int setup);
    // [main-thread, process lock] One setup's half over the other's: state, real world,
    // disabled mode, current image, extension block and graph data.
    void CopySetup(int from, int to);
    // [main-thread] Tells the controls registered on this parameter its new value: each
    // control's UpdatePointer with the tag it registered under.
    int UpdateControllers();

    WCFixedString<127> m_Name;
    std::vector<std::pair<std::uint64_t, WCBaseControl *>> m_Controllers;
    WTMouseDeltaFunction m_MouseDeltaFunction = nullptr;
    double m_MouseAcceleration = -1.0;
    std::unique_ptr<WCParamExtension> m_Extension;
    std::array<std::unique_ptr<WCGraphDataBase>, 2> m_GraphData;
    std::array<std::int32_t, 2> m_DisabledMode{};
    std::array<std::int32_t, 2> m_CurrentImageIndex{};
    std::vector<int> m_LinkGroups;
    std::vector<ControlledLinkGroup> m_ControlledLinkGroups;
    // The display table of "DisplayRealWorldString": index = real-world value.
    std::vector<WCFixedString<127>> m_DisplayStrings;
    // The names the parameter XML used, kept so tools can write the parameter back.
    WCFixedString<127> m_DisplayFunctionName;
    WCFixedString<127> m_MouseDeltaFunctionName;
    WCFixedString<127> m_ExtensionClassName;
    WCFixedString<127> m_ExtensionDataType;
    WCFixedString<127> m_DrawClassName;
    WCFixedString<127> m_DrawDataType;
    WCFixedString<31> m_StateDataType;
    std::vector<int> m_OmitFromMap;

    // The update pipeline's marks, written under the algorithm's process lock. A drag of a
    // "DontUpdateWhileDrag" parameter leaves its value stored but not computed; the drag end
    // marker lets the next update with that same value through, and the last dragged value
    // (-1.0 when none) tells whether the preset really changed.
    std::uint8_t m_DragEnd = 0;
    double m_LastDraggedValue = -1.0;
    // Set by whoever needs the next update to reach UpdateParamSelf regardless of the value.
    std::uint8_t m_ForceUpdate = 0;
};

MIREL_NAMESPACE_END
