#pragma once

#include <cstdint>
#include <vector>

#include <pugixml.hpp>

#include "Code/Algorithm/WCParam_Base.h"
#include "Code/Algorithm/WSParamMaps.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"
#include "core/MirelNamespace.h"
#include "core/TBitVector.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// The reader and writer of one "Parameter" element of the parameter XML. It gathers what the
// element says (ReadFromXML, on top of what a "Parent" element left), then moves it into an
// sCONTROL_PARAM (WriteDataToMembers). The reverse pair, ReadDataFromMembers and WriteToXML,
// serves tools that write parameters back. Outside text: every number is made finite and every
// count bounded; nothing here throws. [main-thread]
struct sCONTROL_PARAMXML {
    // Bounds that keep a hostile file from asking for millions of parameters or table rows.
    static constexpr std::int32_t kMaxArraySize = 1024;
    static constexpr std::int32_t kMaxDisplayStrings = 4096;

    // Resets the gathered data before each parameter: "None" as scale type, "DisplayNothing",
    // empty label and units, "double" state data type.
    void MembersDefaults();

    // Gathers the element's attributes and children on top of what is already gathered, so a
    // parent's definition read first is inherited. The element's own "Name" (or "Unknown Name")
    // and "ParamArraySize" (at least 1) always replace the inherited ones.
    int ReadFromXML(pugi::xml_node const &element);

    // Moves the gathered data into `param` in this order: the toggle map points (only for
    // "toggleMap"), SetScale, SetScaleDefaults, flags, display function, mouse delta, label,
    // units, mouse acceleration, extension, draw data. Unknown names fall back: the display to
    // "DisplayNothing", extension and draw class to none. The answer is the extension's code
    // for what it could not read inside its element; the parameter is made anyway.
    int WriteDataToMembers(sCONTROL_PARAM &param, WSParamMaps const &maps) const;

    // Gathers from a built parameter, for writing it back.
    int ReadDataFromMembers(sCONTROL_PARAM const &param);
    // Appends a "Parameter" element to `parent` that reads back to the same parameter.
    int WriteToXML(pugi::xml_node &parent) const;

    WCFixedString<127> m_Name;
    WCFixedString<127> m_Parent;
    std::int32_t m_ArraySize = 1;

    WCFixedString<127> m_ScaleType;
    double m_Minimum = 0.0;
    double m_Maximum = 0.0;
    double m_Var = 0.0;
    double m_Resolution = 1.0;
    std::int32_t m_NumberOfStates = 0;
    std::vector<int> m_OmitFromMap;
    std::vector<double> m_StatePoints;
    std::vector<double> m_RealWorldPoints;

    TBitVector<unsigned int> m_Flags;

    double m_ResetValue = 0.0;
    EParamValueType m_ResetValueType = eParamValueRealWorld;
    double m_InitialValue = 0.0;
    EParamValueType m_InitialValueType = eParamValueRealWorld;

    WCFixedString<127> m_Label;
    WCFixedString<127> m_Units;
    WCFixedString<127> m_MouseDeltaFunction;
    WCFixedString<127> m_DisplayFunction;
    std::vector<WCFixedString<127>> m_DisplayStrings;
    WCFixedString<127> m_ExtensionClass;
    WCFixedString<127> m_ExtensionDataType;
    // The extension element itself, whose children the extension reads; it lives as long as
    // the document being read.
    pugi::xml_node m_ExtensionElement;
    WCFixedString<127> m_DrawClass;
    WCFixedString<127> m_DrawDataType;
    std::vector<int> m_LinkGroups;
    std::vector<ControlledLinkGroup> m_ControlledLinkGroups;
    double m_MouseAcceleration = -1.0;
    WCFixedString<31> m_StateDataType;

private:
    void handleToggleMapWriteToParam(std::vector<double> &realWorld,
                                     std::vector<double> &states) const;
};

MIREL_NAMESPACE_END
