#include "Code/Algorithm/sCONTROL_PARAMXML.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Code/Algorithm/WUDisplayFunctions.h"
#include "Code/Algorithm/WUParamFlags.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace {

double Finite(double value, double fallback = 0.0) {
    return std::isfinite(value) ? value : fallback;
}

double ParseDouble(char const *text, double fallback = 0.0) {
    if (text == nullptr)
        return fallback;
    char *end = nullptr;
    const double value = std::strtod(text, &end);
    if (end == text)
        return fallback;
    return Finite(value, fallback);
}

std::int32_t ParseInt(char const *text, std::int32_t fallback = 0) {
    const double value = ParseDouble(text, fallback);
    return static_cast<std::int32_t>(std::clamp(value, -2147483648.0, 2147483647.0));
}

// Lists are numbers separated by blanks or commas.
template <typename T>
std::vector<T> ParseList(char const *text) {
    std::vector<T> values;
    if (text == nullptr)
        return values;
    while (*text != 0) {
        while (*text != 0 && (std::strchr(" \t\r\n,;", *text) != nullptr))
            ++text;
        if (*text == 0)
            break;
        char *end = nullptr;
        const double value = std::strtod(text, &end);
        if (end == text) {
            ++text;
            continue;
        }
        text = end;
        if constexpr (std::is_integral_v<T>)
            values.push_back(
                static_cast<T>(std::clamp(Finite(value), -2147483648.0, 2147483647.0)));
        else
            values.push_back(Finite(value));
    }
    return values;
}

bool IsTrue(char const *text) {
    return std::strcmp(text, "true") == 0 || std::strcmp(text, "1") == 0 ||
           std::strcmp(text, "yes") == 0;
}

EParamValueType ValueType(pugi::xml_node const &node) {
    char const *type = node.attribute("Type").value();
    if (std::strcmp(type, "RealWorldExact") == 0)
        return eParamValueRealWorldExact;
    if (strcasecmp(type, "State") == 0)
        return eParamValueState;
    return eParamValueRealWorld;
}

char const *ValueTypeName(EParamValueType type) {
    switch (type) {
    case eParamValueRealWorldExact: return "RealWorldExact";
    case eParamValueState: return "State";
    default: return "RealWorld";
    }
}

// A text of a child element or attribute: attributes win, so both spellings read.
char const *Field(pugi::xml_node const &node, char const *name) {
    if (auto attribute = node.attribute(name))
        return attribute.value();
    if (auto child = node.child(name))
        return child.text().get();
    return nullptr;
}

void AppendDouble(pugi::xml_node node, double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    node.text().set(buffer);
}

void ReadScale(pugi::xml_node const &scale, sCONTROL_PARAMXML &data) {
    bool pointsReset = false;
    for (pugi::xml_node child : scale.children()) {
        char const *name = child.name();
        char const *text = child.text().get();
        if (std::strcmp(name, "Minimum") == 0) {
            data.m_Minimum = ParseDouble(text);
        } else if (std::strcmp(name, "Maximum") == 0) {
            data.m_Maximum = ParseDouble(text);
        } else if (std::strcmp(name, "Var") == 0) {
            data.m_Var = ParseDouble(text);
        } else if (std::strcmp(name, "Resolution") == 0) {
            data.m_Resolution = ParseDouble(text, 1.0);
        } else if (std::strcmp(name, "ScaleType") == 0) {
            data.m_ScaleType = child.attribute("Type") ? child.attribute("Type").value() : text;
        } else if (std::strcmp(name, "NumberOfStates") == 0) {
            data.m_NumberOfStates = std::max(0, ParseInt(text));
        } else if (std::strcmp(name, "OmitFromMap") == 0) {
            data.m_OmitFromMap = ParseList<int>(text);
        } else if (std::strcmp(name, "State") == 0 || std::strcmp(name, "RealWorld") == 0 ||
                   std::strcmp(name, "RealWorldExact") == 0) {
            // A child's own table replaces the inherited one as a whole.
            if (!pointsReset) {
                data.m_StatePoints.clear();
                data.m_RealWorldPoints.clear();
                pointsReset = true;
            }
            auto &points = name[0] == 'S' ? data.m_StatePoints : data.m_RealWorldPoints;
            for (double value : ParseList<double>(text))
                points.push_back(value);
        }
    }
}

void ReadFlags(pugi::xml_node const &flags, sCONTROL_PARAMXML &data) {
    if (IsTrue(flags.attribute("ResetAllFlags").value()))
        data.m_Flags.Clear();
    for (pugi::xml_node child : flags.children()) {
        unsigned int bit = 0;
        if (!ParamFlags::BitFromWord(child.name(), bit))
            continue;
        auto value = child.attribute("value");
        data.m_Flags.SetBit(bit, !value || IsTrue(value.value()));
    }
}

void ReadDisplayStrings(pugi::xml_node const &strings, sCONTROL_PARAMXML &data) {
    for (pugi::xml_node entry : strings.children("RealWorld")) {
        const double value = ParseDouble(entry.attribute("Value").value(), -1.0);
        if (!(value >= 0.0) || !(value < sCONTROL_PARAMXML::kMaxDisplayStrings))
            continue;
        const auto index = static_cast<std::size_t>(value);
        if (data.m_DisplayStrings.size() <= index)
            data.m_DisplayStrings.resize(index + 1);
        data.m_DisplayStrings[index] = entry.attribute("String").value();
    }
}

void ReadControlledLinkGroups(pugi::xml_node const &groups, sCONTROL_PARAMXML &data) {
    for (pugi::xml_node child : groups.children()) {
        if (child.type() != pugi::node_element)
            continue;
        ControlledLinkGroup group;
        group.group = ParseInt(Field(child, "Group"));
        group.groupNumbers = ParseList<int>(Field(child, "GroupNumbers"));
        group.linkEnabledValue = ParseDouble(Field(child, "LinkEnabledValue"));
        group.linkFunction = Field(child, "LinkFunction");
        data.m_ControlledLinkGroups.push_back(std::move(group));
    }
}

} // namespace

void sCONTROL_PARAMXML::MembersDefaults() {
    *this = sCONTROL_PARAMXML();
    m_ScaleType = "None";
    m_DisplayFunction = DisplayFunctions::kDefaultName;
    m_StateDataType = "double";
}

int sCONTROL_PARAMXML::ReadFromXML(pugi::xml_node const &element) {
    if (!element)
        return eXMLElementMissing;
    auto name = element.attribute("Name");
    m_Name = name && name.value()[0] != 0 ? name.value() : "Unknown Name";
    m_Parent = element.attribute("Parent").value();
    m_ArraySize =
        std::clamp(ParseInt(element.attribute("ParamArraySize").value(), 1), 1, kMaxArraySize);

    for (pugi::xml_node child : element.children()) {
        char const *tag = child.name();
        char const *text = child.text().get();
        if (std::strcmp(tag, "Scale") == 0) {
            ReadScale(child, *this);
        } else if (std::strcmp(tag, "Flags") == 0) {
            ReadFlags(child, *this);
        } else if (std::strcmp(tag, "ResetValue") == 0) {
            m_ResetValue = ParseDouble(text);
            m_ResetValueType = ValueType(child);
        } else if (std::strcmp(tag, "InitialValue") == 0) {
            m_InitialValue = ParseDouble(text);
            m_InitialValueType = ValueType(child);
        } else if (std::strcmp(tag, "Label") == 0) {
            m_Label = text;
        } else if (std::strcmp(tag, "Units") == 0) {
            m_Units = text;
        } else if (std::strcmp(tag, "MouseDeltaFunction") == 0) {
            m_MouseDeltaFunction = text;
        } else if (std::strcmp(tag, "DisplayFunction") == 0) {
            m_DisplayFunction = text;
        } else if (std::strcmp(tag, "DisplayStrings") == 0) {
            m_DisplayStrings.clear();
            ReadDisplayStrings(child, *this);
        } else if (std::strcmp(tag, "ExtensionClass") == 0) {
            m_ExtensionClass = text;
            m_ExtensionDataType = child.attribute("DataType").value();
            m_ExtensionElement = child;
        } else if (std::strcmp(tag, "DrawClass") == 0) {
            m_DrawClass = text;
            m_DrawDataType = child.attribute("DataType").value();
        } else if (std::strcmp(tag, "LinkGroups") == 0) {
            m_LinkGroups = ParseList<int>(text);
        } else if (std::strcmp(tag, "LinkGroupsThisParamControls") == 0) {
            m_ControlledLinkGroups.clear();
            ReadControlledLinkGroups(child, *this);
        } else if (std::strcmp(tag, "MouseAcceleration") == 0) {
            m_MouseAcceleration = ParseDouble(text, -1.0);
        } else if (std::strcmp(tag, "DataType") == 0) {
            m_StateDataType = text;
        }
    }
    return eNoErr;
}

void sCONTROL_PARAMXML::handleToggleMapWriteToParam(std::vector<double> &realWorld,
                                                    std::vector<double> &states) const {
    // Points listed in "OmitFromMap" are left out; a map given without states spreads its points
    // evenly over the state axis, the way the number of states quantises it.
    std::vector<double> keptValues;
    std::vector<double> keptStates;
    for (std::size_t i = 0; i < realWorld.size(); ++i) {
        if (std::find(m_OmitFromMap.begin(), m_OmitFromMap.end(), static_cast<int>(i)) !=
            m_OmitFromMap.end())
            continue;
        keptValues.push_back(realWorld[i]);
        if (i < states.size())
            keptStates.push_back(states[i]);
    }
    if (keptStates.size() != keptValues.size()) {
        keptStates.clear();
        const std::size_t n = keptValues.size();
        for (std::size_t i = 0; i < n; ++i)
            keptStates.push_back(n > 1 ? 1000.0 * static_cast<double>(i) / (n - 1) : 0.0);
    }
    realWorld = std::move(keptValues);
    states = std::move(keptStates);
}

int sCONTROL_PARAMXML::WriteDataToMembers(sCONTROL_PARAM &param, WSParamMaps const &maps) const {
    param.m_Name = m_Name;
    std::vector<double> realWorld = m_RealWorldPoints;
    std::vector<double> states = m_StatePoints;
    if (m_ScaleType == "toggleMap")
        handleToggleMapWriteToParam(realWorld, states);
    param.m_OmitFromMap = m_OmitFromMap;
    param.SetScale(m_Minimum, m_Maximum, m_Resolution, m_NumberOfStates, m_Var, m_ScaleType.c_str(),
                   nullptr, nullptr, realWorld, states, &maps.scaleFunctions);
    param.SetScaleDefaults(m_ResetValue, m_ResetValueType, m_InitialValue, m_InitialValueType);
    param.SetFlags(m_Flags);

    param.m_DisplayStrings = m_DisplayStrings;
    param.m_DisplayFunctionName = DisplayFunctions::kDefaultName;
    if (m_DisplayFunction == "DisplayRealWorldString") {
        param.SetDisplayFunction(DisplayFunctions::MakeRealWorldString(m_DisplayStrings));
        param.m_DisplayFunctionName = m_DisplayFunction;
    } else if (auto found = maps.displayFunctions.find(m_DisplayFunction);
               found != maps.displayFunctions.end() && found->second) {
        param.SetDisplayFunction(found->second);
        param.m_DisplayFunctionName = m_DisplayFunction;
    } else if (auto fallback =
                   maps.displayFunctions.find(WTParamMapKey(DisplayFunctions::kDefaultName));
               fallback != maps.displayFunctions.end()) {
        param.SetDisplayFunction(fallback->second);
    } else {
        param.SetDisplayFunction([](double, double, WCFixedStringBase &out) { out.clear(); });
    }

    param.m_MouseDeltaFunction = nullptr;
    param.m_MouseDeltaFunctionName.clear();
    if (auto found = maps.mouseDeltaFunctions.find(m_MouseDeltaFunction);
        found != maps.mouseDeltaFunctions.end()) {
        param.m_MouseDeltaFunction = found->second;
        param.m_MouseDeltaFunctionName = m_MouseDeltaFunction;
    }
    param.SetLabel(m_Label.c_str());
    param.SetUnits(m_Units.c_str());
    param.m_MouseAcceleration = m_MouseAcceleration;

    param.m_Extension.reset();
    param.m_ExtensionClassName.clear();
    param.m_ExtensionDataType.clear();
    int extensionErr = eNoErr;
    if (auto found = maps.extensionFactories.find(m_ExtensionClass);
        found != maps.extensionFactories.end() && found->second) {
        param.m_Extension.reset(found->second(m_ExtensionDataType.c_str()));
        if (param.m_Extension) {
            param.m_ExtensionClassName = m_ExtensionClass;
            param.m_ExtensionDataType = m_ExtensionDataType;
            if (m_ExtensionElement)
                extensionErr = param.m_Extension->ReadFromXML(m_ExtensionElement);
        }
    }
    param.m_GraphData[0].reset();
    param.m_GraphData[1].reset();
    param.m_DrawClassName.clear();
    param.m_DrawDataType.clear();
    if (auto found = maps.drawClassFactories.find(m_DrawClass);
        found != maps.drawClassFactories.end() && found->second) {
        param.m_GraphData[0].reset(found->second(m_DrawDataType.c_str()));
        param.m_GraphData[1].reset(found->second(m_DrawDataType.c_str()));
        if (param.m_GraphData[0]) {
            param.m_DrawClassName = m_DrawClass;
            param.m_DrawDataType = m_DrawDataType;
        }
    }
    param.m_LinkGroups = m_LinkGroups;
    param.m_ControlledLinkGroups = m_ControlledLinkGroups;
    param.m_StateDataType = m_StateDataType;
    return extensionErr;
}

int sCONTROL_PARAMXML::ReadDataFromMembers(sCONTROL_PARAM const &param) {
    MembersDefaults();
    m_Name = param.m_Name;
    m_ScaleType = param.GetScaleType();
    m_Minimum = param.GetScaleMin();
    m_Maximum = param.GetScaleMax();
    m_Resolution = param.GetScaleResolution();
    m_Var = param.GetScaleInfo().extra;
    const bool mapKind = m_ScaleType == "toggleMap" || m_ScaleType == "toggleRanges";
    m_NumberOfStates = mapKind ? 0 : param.GetNumStates();
    if (m_ScaleType == "toggle")
        m_NumberOfStates = static_cast<std::int32_t>(param.GetScaleInfo().base);
    m_StatePoints = param.GetScaleInfo().statePoints;
    m_RealWorldPoints = param.GetScaleInfo().realWorldPoints;
    // The stored points are already without the omitted ones.
    m_OmitFromMap.clear();
    m_Flags = param.GetFlags();
    // Values as they are stored, so they read back unchanged.
    m_ResetValue = param.GetResetValue();
    m_ResetValueType = eParamValueRealWorldExact;
    m_InitialValue = param.GetInitialValue();
    m_InitialValueType = eParamValueRealWorldExact;
    m_Label = param.GetLabel();
    m_Units = param.GetUnits();
    m_MouseDeltaFunction = param.m_MouseDeltaFunctionName;
    m_DisplayFunction = param.m_DisplayFunctionName;
    m_DisplayStrings = param.m_DisplayStrings;
    m_ExtensionClass = param.m_ExtensionClassName;
    m_ExtensionDataType = param.m_ExtensionDataType;
    m_DrawClass = param.m_DrawClassName;
    m_DrawDataType = param.m_DrawDataType;
    m_LinkGroups = param.m_LinkGroups;
    m_ControlledLinkGroups = param.m_ControlledLinkGroups;
    m_MouseAcceleration = param.m_MouseAcceleration;
    m_StateDataType = param.m_StateDataType;
    return eNoErr;
}

int sCONTROL_PARAMXML::WriteToXML(pugi::xml_node &parent) const {
    if (!parent)
        return eXMLElementMissing;
    pugi::xml_node element = parent.append_child("Parameter");
    element.append_attribute("Name").set_value(m_Name.c_str());
    if (m_ArraySize > 1)
        element.append_attribute("ParamArraySize").set_value(m_ArraySize);

    pugi::xml_node scale = element.append_child("Scale");
    scale.append_child("ScaleType").append_attribute("Type").set_value(m_ScaleType.c_str());
    AppendDouble(scale.append_child("Minimum"), m_Minimum);
    AppendDouble(scale.append_child("Maximum"), m_Maximum);
    AppendDouble(scale.append_child("Resolution"), m_Resolution);
    AppendDouble(scale.append_child("Var"), m_Var);
    scale.append_child("NumberOfStates").text().set(m_NumberOfStates);
    for (double point : m_StatePoints)
        AppendDouble(scale.append_child("State"), point);
    for (double point : m_RealWorldPoints)
        AppendDouble(scale.append_child("RealWorld"), point);

    pugi::xml_node flags = element.append_child("Flags");
    flags.append_attribute("ResetAllFlags").set_value("true");
    for (unsigned int bit = 0; bit < 32; ++bit) {
        char const *word = ParamFlags::WordFromBit(bit);
        if (word != nullptr && m_Flags.IsBitSet(bit))
            flags.append_child(word).append_attribute("value").set_value("true");
    }

    pugi::xml_node reset = element.append_child("ResetValue");
    reset.append_attribute("Type").set_value(ValueTypeName(m_ResetValueType));
    AppendDouble(reset, m_ResetValue);
    pugi::xml_node initial = element.append_child("InitialValue");
    initial.append_attribute("Type").set_value(ValueTypeName(m_InitialValueType));
    AppendDouble(initial, m_InitialValue);

    element.append_child("Label").text().set(m_Label.c_str());
    element.append_child("Units").text().set(m_Units.c_str());
    element.append_child("DisplayFunction").text().set(m_DisplayFunction.c_str());
    if (!m_MouseDeltaFunction.empty())
        element.append_child("MouseDeltaFunction").text().set(m_MouseDeltaFunction.c_str());
    if (!m_DisplayStrings.empty()) {
        pugi::xml_node strings = element.append_child("DisplayStrings");
        for (std::size_t i = 0; i < m_DisplayStrings.size(); ++i) {
            if (m_DisplayStrings[i].empty())
                continue;
            pugi::xml_node entry = strings.append_child("RealWorld");
            entry.append_attribute("String").set_value(m_DisplayStrings[i].c_str());
            entry.append_attribute("Value").set_value(static_cast<unsigned int>(i));
        }
    }
    if (!m_ExtensionClass.empty()) {
        pugi::xml_node ext = element.append_child("ExtensionClass");
        ext.text().set(m_ExtensionClass.c_str());
        ext.append_attribute("DataType").set_value(m_ExtensionDataType.c_str());
    }
    if (!m_DrawClass.empty()) {
        pugi::xml_node draw = element.append_child("DrawClass");
        draw.text().set(m_DrawClass.c_str());
        draw.append_attribute("DataType").set_value(m_DrawDataType.c_str());
    }
    if (!m_LinkGroups.empty()) {
        WCFixedString<1023> list;
        for (int group : m_LinkGroups)
            list << (list.empty() ? "" : " ") << group;
        element.append_child("LinkGroups").text().set(list.c_str());
    }
    if (!m_ControlledLinkGroups.empty()) {
        pugi::xml_node groups = element.append_child("LinkGroupsThisParamControls");
        for (auto const &group : m_ControlledLinkGroups) {
            pugi::xml_node entry = groups.append_child("LinkGroup");
            entry.append_attribute("Group").set_value(group.group);
            WCFixedString<1023> list;
            for (int number : group.groupNumbers)
                list << (list.empty() ? "" : " ") << number;
            entry.append_attribute("GroupNumbers").set_value(list.c_str());
            entry.append_attribute("LinkEnabledValue").set_value(group.linkEnabledValue);
            entry.append_attribute("LinkFunction").set_value(group.linkFunction.c_str());
        }
    }
    AppendDouble(element.append_child("MouseAcceleration"), m_MouseAcceleration);
    element.append_child("DataType").text().set(m_StateDataType.c_str());
    return eNoErr;
}

MIREL_NAMESPACE_END
