#include "Code/Presets/PresetXML.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string>

#include "Code/Presets/WUPresetNumbers.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"
#include "Utilities/XML/Code/XMLHelpers.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

// An attribute into a fixed string, cut at a character boundary.
bool ReadAttribText(const XML::CXMLElement &element, const char *name, WCFixedStringBase &target) {
    std::string value;
    if (!element.GetAttrib(name, value))
        return false;
    AssignPresetText(target, value);
    return true;
}

const char *SetupWord(EPluginSetup setup) noexcept {
    switch (setup) {
    case eSetupA: return "SETUP_A";
    case eSetupB: return "SETUP_B";
    default: return "CURRENT";
    }
}

WTErr SetupFromWord(const std::string &word, EPluginSetup &setup) noexcept {
    if (word.empty() || word == "SETUP_A")
        setup = eSetupA;
    else if (word == "SETUP_B")
        setup = eSetupB;
    else if (word == "CURRENT")
        setup = eCurrentSetup;
    else
        return eValueNotFound;
    return eNoErr;
}

// The shortest text that reads back to the same double.
std::string DoubleText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return std::string(buffer, result.ptr);
}

void AddChildText(XML::CXMLElement &parent, const char *name, const WCFixedStringBase &text) {
    if (!text.empty())
        parent.push_back(new XML::CXMLElement(name, text.c_str()));
}

// The first code of a comma-separated list of four-character codes; "????" when the first
// piece is not four characters.
WCFourCC FirstFourCC(const std::string &list) {
    std::size_t start = 0;
    while (start < list.size() && list[start] == ',')
        ++start;
    const std::size_t end = list.find(',', start);
    const std::string piece = list.substr(start, end == std::string::npos ? end : end - start);
    if (piece.size() != 4)
        return WCFourCC::Unreadable();
    return WCFourCC(piece[0], piece[1], piece[2], piece[3]);
}

// A "Control" value, as an attribute or as a sub-element of the same name.
bool ControlValue(const XML::CXMLElement &element, const char *name, std::string &value) {
    if (element.GetAttrib(name, value))
        return true;
    if (const char *text = element.SubElementText(name)) {
        value = text;
        return true;
    }
    return false;
}

void ReadControlInt(const XML::CXMLElement &element, const char *name, int &value) {
    std::string text;
    if (ControlValue(element, name, text))
        WUAtoi(text.c_str(), value);
}

void ReadControlDouble(const XML::CXMLElement &element, const char *name, double &value) {
    std::string text;
    if (ControlValue(element, name, text))
        value = WUStod(text.c_str());
}

void ReadControlBool(const XML::CXMLElement &element, const char *name, bool &value) {
    std::string text;
    if (ControlValue(element, name, text))
        value = text != "false" && text != "no" && text != "0";
}

sPresetControlData ReadControl(const XML::CXMLElement &element) {
    sPresetControlData control;
    std::string text;
    if (ControlValue(element, "Name", text))
        AssignPresetText(control.m_Name, text);
    ReadControlInt(element, "MIDIChannel", control.m_MIDIChannel);
    ReadControlInt(element, "MIDIControlID", control.m_MIDIControlID);
    if (ControlValue(element, "MIDIEventType", text))
        control.m_MIDIEventType = GetMIDIEventTypeFromName(text.c_str());
    ReadControlDouble(element, "OnValue", control.m_OnValue);
    ReadControlDouble(element, "OffValue", control.m_OffValue);
    ReadControlInt(element, "TransposedNote", control.m_TransposedNote);
    ReadControlInt(element, "ChoiceID", control.m_ChoiceID);
    ReadControlInt(element, "LeadParam", control.m_LeadParam);
    ReadControlBool(element, "Latching", control.m_Latching);
    ReadControlBool(element, "Keyswitch", control.m_Keyswitch);
    return control;
}

void WriteControl(const sPresetControlData &control, XML::CXMLElement &element) {
    element.AddAttrib("Name", control.m_Name.c_str());
    element.AddAttrib("MIDIChannel", control.m_MIDIChannel);
    element.AddAttrib("MIDIControlID", control.m_MIDIControlID);
    element.AddAttrib("MIDIEventType", GetMIDIEventTypeName(control.m_MIDIEventType));
    element.AddAttrib("OnValue", DoubleText(control.m_OnValue).c_str());
    element.AddAttrib("OffValue", DoubleText(control.m_OffValue).c_str());
    element.AddAttrib("TransposedNote", control.m_TransposedNote);
    element.AddAttrib("ChoiceID", control.m_ChoiceID);
    element.AddAttrib("LeadParam", control.m_LeadParam);
    element.AddAttrib("Latching", control.m_Latching ? "true" : "false");
    element.AddAttrib("Keyswitch", control.m_Keyswitch ? "true" : "false");
}

void WriteParameters(const sPresetData &data, const WSPresetWriteOptions &options,
                     XML::CXMLElement &parent) {
    switch (data.m_DataType) {
    case ePresetDataStates:
        if (!data.m_States.empty()) {
            auto *parameters = parent.push_sub_element(new XML::CXMLElement("Parameters"));
            parameters->AddAttrib("Type", "States");
            XML::WriteToXML_Int_Vector(parameters, data.m_States);
        }
        break;
    case ePresetDataRealWorld:
        if (!data.m_RealWorld.empty()) {
            auto *parameters = parent.push_sub_element(new XML::CXMLElement("Parameters"));
            parameters->AddAttrib("Type", "RealWorld");
            parameters->SetText(FormatRealWorldText(data.m_RealWorld, data.m_ValueKinds,
                                                    options.m_AllRealWorldAsNumbers));
        }
        break;
    case ePresetDataReset:
        parent.push_sub_element(new XML::CXMLElement("Parameters"))->AddAttrib("Type", "Reset");
        break;
    case ePresetDataNone:
        parent.push_sub_element(new XML::CXMLElement("Parameters"))->AddAttrib("Type", "NoData");
        break;
    default: break;
    }
}

WTErr WritePresetData(const sPresetData &data, const WSPresetWriteOptions &options,
                      XML::CXMLElement &element) {
    element.AddAttrib("Setup", SetupWord(data.m_Setup));
    if (!data.m_SetupName.empty())
        element.AddAttrib("SetupName", data.m_SetupName.c_str());
    WriteParameters(data, options, element);
    if (!data.m_ControlData.empty()) {
        auto *controls = element.push_sub_element(new XML::CXMLElement("Controls"));
        for (const auto &control : data.m_ControlData)
            WriteControl(control, *controls->push_sub_element(new XML::CXMLElement("Control")));
    }
    if (!data.m_PluginSpecificXML.GetSubElements().empty()) {
        auto *copy = element.push_sub_element(new XML::CXMLElement(data.m_PluginSpecificXML));
        copy->SetName("PluginSpecificXMLData");
    }
    WTErr firstError = eNoErr;
    for (const auto &block : data.m_PluginSpecific) {
        block->WriteToXML(element.push_sub_element(new XML::CXMLElement("PluginSpecific")));
        const WTErr error =
            options.m_PresetFile != nullptr ? block->WriteSideFiles(*options.m_PresetFile) : eNoErr;
        if (firstError == eNoErr)
            firstError = error;
    }
    return firstError;
}

WTErr ReadParameters(const XML::CXMLElement &element, bool obsolete, sPresetData &data) {
    std::string type;
    element.GetAttrib("Type", type);
    for (char &ch : type)
        ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    if (type == "states") {
        ParseStatesText(element.GetText().c_str(), data.m_States, data.m_ValueKinds);
        data.m_DataType = ePresetDataStates;
        data.m_NumParams = data.m_States.size();
    } else if (type == "realworld") {
        ParseRealWorldText(element.GetText().c_str(), obsolete, data.m_RealWorld,
                           data.m_ValueKinds);
        data.m_DataType = ePresetDataRealWorld;
        data.m_NumParams = data.m_RealWorld.size();
    } else if (type == "reset") {
        data.m_DataType = ePresetDataReset;
    } else if (type == "nodata") {
        data.m_DataType = ePresetDataNone;
    }
    return eNoErr;
}

// The setup a "PresetData" element names: CURRENT without "Setup"; false for an unknown word.
bool DataSetup(const XML::CXMLElement &element, EPluginSetup &setup) {
    setup = eCurrentSetup;
    std::string word;
    return !element.GetAttrib("Setup", word) || SetupFromWord(word, setup) == eNoErr;
}

void ReadDataShell(const XML::CXMLElement &element, const FM::WCStPath &presetPath,
                   sPresetData &data) {
    DataSetup(element, data.m_Setup);
    ReadAttribText(element, "SetupName", data.m_SetupName);
    for (const XML::CXMLElement *child : element.GetSubElements()) {
        if (child->GetName() != "PluginSpecific")
            continue;
        auto block = std::make_unique<sPluginSpecific>();
        block->m_PresetFilePath = presetPath;
        block->ReadHeaderFromXML(child);
        // A tag names one block of a setup: the first element of a tag counts, as in the data.
        bool seen = false;
        for (const auto &other : data.m_PluginSpecific)
            seen = seen || other->m_TagName == block->m_TagName;
        if (!seen)
            data.m_PluginSpecific.push_back(std::move(block));
    }
}

// One shell per setup the preset names, in the order of the elements: an element of an unknown
// setup, or of one already seen, has no shell of its own, as the data reader fills none for it.
std::vector<std::unique_ptr<sPresetData>> ReadDataShells(const XML::CXMLElement &preset,
                                                         const FM::WCStPath &presetPath) {
    std::vector<std::unique_ptr<sPresetData>> shells;
    for (const XML::CXMLElement *child : preset.GetSubElements()) {
        EPluginSetup setup = eCurrentSetup;
        if (child->GetName() != "PresetData" || !DataSetup(*child, setup))
            continue;
        bool seen = false;
        for (const auto &shell : shells)
            seen = seen || shell->m_Setup == setup;
        if (seen)
            continue;
        shells.push_back(std::make_unique<sPresetData>());
        ReadDataShell(*child, presetPath, *shells.back());
    }
    return shells;
}

WTErr ReadHeaderFields(const XML::CXMLElement &element, CPresetInfo &info) {
    ReadAttribText(element, "Name", info.m_PresetName);
    std::string types;
    if (element.GetAttrib("GenericType", types))
        info.m_GenericType = FirstFourCC(types);
    if (const XML::CXMLElement *header = element.SubElement("PresetHeader")) {
        struct {
            const char *m_Name;
            WCFixedStringBase *m_Field;
        } const fields[] = {{"Group", &info.m_GroupName},
                            {"PluginName", &info.m_PluginName},
                            {"PluginSubComp", &info.m_PluginSubComp},
                            {"PluginVersion", &info.m_PluginVersion},
                            {"InfoString", &info.m_InfoString},
                            {"ActiveSetup", &info.m_ActiveSetup}};
        for (const auto &field : fields) {
            if (const char *text = header->SubElementText(field.m_Name))
                AssignPresetText(*field.m_Field, text);
        }
        if (const char *path = header->SubElementText("ExternalPresetPath"); path && *path)
            info.m_ExternalFilePath = FM::WCStPath(path);
        if (const char *category = header->SubElementText("LoadMenuCategory"))
            info.m_Category = ConvertCategoryTypeToPresetSection(category);
        if (const XML::CXMLElement *readOnly = header->SubElement("ReadOnly")) {
            bool value = false;
            XML::ReadFromXML_Bool(readOnly, value);
            info.m_Flags = value ? info.m_Flags | ePresetFlagReadOnly
                                 : info.m_Flags & ~std::uint32_t(ePresetFlagReadOnly);
        }
    }
    if (const char *message = element.SubElementText("MessageToShell"))
        AssignPresetText(info.m_ShellMessage, message);
    if (const XML::CXMLElement *sideChain = element.SubElement("VST24SideChainActive")) {
        bool value = false;
        XML::ReadFromXML_Bool(sideChain, value);
        info.m_SideChainActive = value ? 1 : 0;
    }
    return eNoErr;
}

} // namespace

WTErr WriteToXML_CPresetInfo(const CPresetInfo &info, XML::CXMLElement &element,
                             const WSPresetWriteOptions &options) {
    if (info.IsSeperator() || info.IsDummyTitle()) {
        element.SetName(info.IsSeperator() ? "Separator" : "Title");
        if (info.IsSeperator() && !info.m_GenericType.IsUnreadable())
            element.AddAttrib("GenericType", info.m_GenericType.GetString().c_str());
        if (info.IsSeperator() && !info.m_PluginSubComp.empty())
            element.AddAttrib("SubComp", info.m_PluginSubComp.c_str());
        if (info.IsDummyTitle())
            element.SetText(info.m_PresetName.c_str());
        return eNoErr;
    }
    element.SetName("Preset");
    if (!info.m_PresetName.empty())
        element.AddAttrib("Name", info.m_PresetName.c_str());
    if (!info.m_GenericType.IsUnreadable())
        element.AddAttrib("GenericType", info.m_GenericType.GetString().c_str());

    auto *header = element.push_sub_element(new XML::CXMLElement("PresetHeader"));
    AddChildText(*header, "Group", info.m_GroupName);
    AddChildText(*header, "PluginName", info.m_PluginName);
    AddChildText(*header, "PluginSubComp", info.m_PluginSubComp);
    AddChildText(*header, "PluginVersion", info.m_PluginVersion);
    AddChildText(*header, "InfoString", info.m_InfoString);
    AddChildText(*header, "ActiveSetup", info.m_ActiveSetup);
    if (options.m_AsChunk) {
        if (info.m_ExternalFilePath.IsValid())
            header->push_back(new XML::CXMLElement(
                "ExternalPresetPath", info.m_ExternalFilePath.GetPathString().c_str()));
        header->push_back(
            new XML::CXMLElement("LoadMenuCategory", GetPresetSectionName(info.m_Category)));
    }
    header->push_back(new XML::CXMLElement("ReadOnly", info.IsReadOnly()));

    if (!info.m_ShellMessage.empty())
        element.push_back(new XML::CXMLElement("MessageToShell", info.m_ShellMessage.c_str()));
    if (info.m_SideChainActive != CPresetInfo::kSideChainNotStored)
        element.push_back(
            new XML::CXMLElement("VST24SideChainActive", info.m_SideChainActive == 1));

    WTErr firstError = eNoErr;
    for (const auto &data : info.m_Data) {
        const WTErr error = WritePresetData(
            *data, options, *element.push_sub_element(new XML::CXMLElement("PresetData")));
        if (firstError == eNoErr)
            firstError = error;
    }
    return firstError;
}

WTErr ReadFromXML_EPluginSetup(const XML::CXMLElement *const element, EPluginSetup &setup) {
    if (element == nullptr)
        return eXMLElementMissing;
    return SetupFromWord(element->GetText(), setup);
}

WTErr ReadFromXML_sPresetData(const XML::CXMLElement *const element, bool obsolete,
                              sPresetData &data) {
    if (element == nullptr)
        return eXMLElementMissing;
    sPresetData read(data);
    std::vector<WCFixedString<63>> tags;
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Parameters") {
            // A setup told not to load its parameters keeps the ones it has.
            if (read.LoadParams())
                ReadParameters(*child, obsolete, read);
        } else if (name == "Controls") {
            read.m_ControlData.clear();
            for (const XML::CXMLElement *control : child->GetSubElements()) {
                if (control->GetName() == "Control")
                    read.m_ControlData.push_back(ReadControl(*control));
            }
        } else if (name == "PluginSpecificXMLData") {
            if (read.GetLoadSpecificXMLPreset())
                read.m_PluginSpecificXML = *child;
        } else if (name == "PluginSpecific") {
            WCFixedString<63> tag;
            ReadAttribText(*child, "TagName", tag);
            // A later element of a tag already read would overwrite its block; the first counts.
            if (std::find(tags.begin(), tags.end(), tag) != tags.end())
                continue;
            tags.push_back(tag);
            sPluginSpecific *block = nullptr;
            for (const auto &candidate : read.m_PluginSpecific) {
                if (candidate->m_TagName == tag) {
                    block = candidate.get();
                    break;
                }
            }
            if (block == nullptr) {
                read.m_PluginSpecific.push_back(std::make_unique<sPluginSpecific>());
                block = read.m_PluginSpecific.back().get();
            }
            if (const WTErr error = block->ReadFromXML(child); error != eNoErr)
                return error;
        }
    }
    data = std::move(read);
    return eNoErr;
}

WTErr ReadHeadersFromXML_CPresetInfo(const XML::CXMLElement *const element, CPresetInfo &info) {
    if (element == nullptr)
        return eXMLElementMissing;
    if (element->GetName() != "Preset")
        return ePresetFileProblem;
    CPresetInfo read(static_cast<const CPresetsFileInfo &>(info));
    read.m_PresetVersion = info.m_PresetVersion;
    read.m_IndexInList = info.m_IndexInList;
    read.m_ResourceID = info.m_ResourceID;
    read.m_ResourceType = info.m_ResourceType;
    ReadHeaderFields(*element, read);
    read.m_Data = ReadDataShells(*element, read);
    info = std::move(read);
    return eNoErr;
}

WTErr ReadDataHeadersFromXML_CPresetInfo(const XML::CXMLElement *const root, CPresetInfo &info) {
    if (root == nullptr)
        return eXMLElementMissing;
    for (const XML::CXMLElement *child : root->GetSubElements()) {
        std::string name;
        child->GetAttrib("Name", name);
        if (child->GetName() != "Preset" || info.m_PresetName != name.c_str())
            continue;
        info.m_Data = ReadDataShells(*child, info);
        return eNoErr;
    }
    return ePresetInfoNotFound;
}

WTErr ReadDataFromXML_CPresetInfo(const XML::CXMLElement *const element, CPresetInfo &info) {
    if (element == nullptr)
        return eXMLElementMissing;
    CPresetInfo read(info);
    const bool obsolete = read.IsStringToDoubleObsoleteVersion();
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        if (child->GetName() != "PresetData" || child->GetSubElements().empty())
            continue;
        EPluginSetup setup = eCurrentSetup;
        if (!DataSetup(*child, setup))
            continue;
        if (child->AttribExists("Setup")) {
            sPresetData *data = read.GetData(setup);
            if (data != nullptr && data->m_Setup != setup)
                data = nullptr;
            if (data == nullptr) {
                data = &read.GetOrAddData(setup);
                ReadDataShell(*child, read, *data);
            }
            if (const WTErr error = ReadFromXML_sPresetData(child, obsolete, *data);
                error != eNoErr)
                return error;
        } else {
            if (read.m_Data.empty())
                read.GetOrAddData(eCurrentSetup);
            for (const auto &data : read.m_Data) {
                if (const WTErr error = ReadFromXML_sPresetData(child, obsolete, *data);
                    error != eNoErr)
                    return error;
            }
        }
    }
    info = std::move(read);
    return eNoErr;
}

} // namespace Preset

MIREL_NAMESPACE_END
