#include "Code/GUI/WCBaseControl.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include "Code/Algorithm/WUParamFlags.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

WCBaseControl::~WCBaseControl() {
    UnregisterAll();
}

void WCBaseControl::UnregisterAll() {
    if (m_pAlg == nullptr)
        return;
    for (const auto &data : m_Registrations)
        if (data.IsRegistered())
            m_pAlg->RemoveParamController(data.GetRegisteredParam(), this);
}

void WCBaseControl::CopyBaseTo(WCBaseControl &other) const {
    other.m_Flags = m_Flags;
    other.m_Name = m_Name;
    other.m_pAlg = m_pAlg;
    for (const auto &data : m_Registrations)
        other.Register(data.Clone(), data.ShouldUpdateGraphics());
    other.m_LeadParamIndex = m_LeadParamIndex;
}

WCBaseControl *WCBaseControl::Clone() const {
    auto *copy = new WCBaseControl();
    CopyBaseTo(*copy);
    return copy;
}

// ---- XML ------------------------------------------------------------------------------------

WTErr WCBaseControl::ReadFromXMLWithAlg(const XML::CXMLElement *element, cALGORITHM *alg) {
    if (element == nullptr)
        return eMemNullPointer;
    m_pAlg = alg;
    element->GetAttrib("Name", m_Name);
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    if (const XML::CXMLElement *flags = element->SubElement("Flags"))
        keep(ReadFromXMLFlags(flags));
    if (const XML::CXMLElement *list = element->SubElement("ParameterList"))
        keep(ReadFromXMLParameterList(list, alg));
    keep(ReadFromXMLWithAlgSelf(element, alg));
    return first;
}

WTErr WCBaseControl::ReadFromXMLFlags(const XML::CXMLElement *flags) {
    if (flags == nullptr)
        return eMemNullPointer;
    for (const XML::CXMLElement *child : flags->GetSubElements()) {
        std::string value = child->GetAttribString("Value").c_str();
        for (char &c : value)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        SetControlFlag(child->GetName().c_str(), value != "off");
    }
    return eNoErr;
}

WTErr WCBaseControl::ReadFromXMLParameterList(const XML::CXMLElement *list, cALGORITHM *alg,
                                              bool updateGraphics) {
    if (list == nullptr)
        return eMemNullPointer;
    m_pAlg = alg;
    WTErr first = eNoErr;
    for (const XML::CXMLElement *param : list->GetSubElements()) {
        if (param->GetName() != "Param")
            continue;
        const WTErr err = ReadFromXMLParameterList_Attributes(*param, alg, updateGraphics);
        if (first == eNoErr)
            first = err;
    }
    return first;
}

WTErr WCBaseControl::ReadFromXMLParameterList_Attributes(const XML::CXMLElement &param,
                                                         cALGORITHM *alg, bool updateGraphics) {
    WCFixedString<127> name;
    param.GetAttrib("Name", name);
    const bool toUpper = GUIXML::IsAttribTrue(param, "ToUpperCase");
    if (toUpper)
        for (std::size_t i = 0; i < name.size(); ++i)
            name[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[i])));
    const bool update = updateGraphics && GUIXML::IsAttribTrue(param, "UpdateGraphics");
    const bool lead = GUIXML::IsAttribTrue(param, "LeadParam");
    WCRegisterInfo info;
    info.m_Name = name;
    if (GUIXML::IsAttribTrue(param, "ParamArray")) {
        WCParamRegistrationData data(alg, name.c_str(), update, info);
        data.m_ParamName = name;
        data.m_ToUpperCase = toUpper;
        data.m_IgnoreLRB = GUIXML::IsAttribTrue(param, "IgnoreLRB");
        const WTErr err = ReadFromXMLParameterList_Registration(param, data);
        if (err != eNoErr)
            return err;
        if (lead)
            m_LeadParamIndex = m_Registrations.size();
        m_Registrations.push_back(std::move(data));
        return eNoErr;
    }
    std::uint64_t id = 0;
    // A parameter the algorithm does not know is left out in silence: GUI documents are shared
    // between plug-ins of a family that do not all have every parameter.
    if (alg == nullptr || alg->GetParamIDFromName(name.c_str(), id) != eNoErr ||
        id >= alg->GetNumParams())
        return eNoErr;
    WCParamRegistrationData data(alg, id, update, info);
    data.m_ParamName = name;
    data.m_ToUpperCase = toUpper;
    data.m_IgnoreLRB = GUIXML::IsAttribTrue(param, "IgnoreLRB");
    if (const WTErr err = ReadFromXMLParameterList_Registration(param, data); err != eNoErr)
        return err;
    const std::size_t index = m_Registrations.size();
    if (Register(std::move(data), update) != eNoErr)
        return eNoErr;
    if (lead)
        m_LeadParamIndex = index;
    return eNoErr;
}

WTErr WCBaseControl::ReadFromXMLParameterList_Registration(const XML::CXMLElement &param,
                                                           WCParamRegistrationData &data) {
    return data.ReadFromXMLForGUI(param, nullptr, WURect<short>());
}

XML::CXMLElement *WCBaseControl::WriteParameterList() const {
    auto *list = new XML::CXMLElement("ParameterList");
    for (std::size_t i = 0; i < m_Registrations.size(); ++i) {
        const auto &data = m_Registrations[i];
        auto *param = new XML::CXMLElement("Param");
        param->AddAttrib("Name", data.m_ParamName.c_str());
        if (data.IsParamArrayRegData())
            param->AddAttrib("ParamArray", "true");
        if (data.ShouldUpdateGraphics())
            param->AddAttrib("UpdateGraphics", "true");
        if (i == m_LeadParamIndex && i != 0)
            param->AddAttrib("LeadParam", "true");
        if (data.m_IgnoreLRB)
            param->AddAttrib("IgnoreLRB", "true");
        if (data.m_ToUpperCase)
            param->AddAttrib("ToUpperCase", "true");
        data.WriteToXML(*param);
        list->push_back(param);
    }
    return list;
}

XML::CXMLElement *WCBaseControl::WriteToXMLWithAlg(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    element->AddAttrib("Name", m_Name.c_str());
    auto *flags = new XML::CXMLElement("Flags");
    for (unsigned int bit = 0; bit < WTFlags::kNumBits; ++bit)
        if (m_Flags.IsBitSet(bit))
            if (const char *name = GUINames::ControlFlag2String(bit))
                flags->push_back(new XML::CXMLElement(name));
    element->push_back(flags);
    element->push_back(WriteParameterList());
    WriteToXMLWithAlgSelf(element);
    return element;
}

// ---- flags, registrations -------------------------------------------------------------------

void WCBaseControl::SetControlFlag(const char *name, bool on) {
    const int bit = GUINames::ControlFlagFromString(name);
    if (bit >= 0)
        SetControlFlag(static_cast<unsigned int>(bit), on);
}

void WCBaseControl::SetControlFlag(unsigned int bit, bool on) {
    m_Flags.SetBit(bit, on);
}

int WCBaseControl::Register(WCParamRegistrationData data, bool updateGraphics) {
    if (data.IsParamArrayRegData() && !data.IsRegistered()) {
        m_Registrations.push_back(std::move(data));
        return eNoErr;
    }
    if (m_pAlg == nullptr || !data.IsRegistered())
        return -1;
    const std::uint64_t id = data.GetRegisteredParam();
    const std::size_t index = m_Registrations.size();
    data.SetUpdateGraphics(updateGraphics);
    if (updateGraphics)
        m_pAlg->AddParamController(id, this, index);
    data.UpdateValue();
    data.UpdateLabel();
    data.UpdateUnits();
    m_Registrations.push_back(std::move(data));
    if (const sCONTROL_PARAM *param = m_pAlg->GetParam(id);
        param != nullptr && param->IsFlagSet(eParamFlag_ConstantDisabled))
        UpdateDisabledMode(index);
    return eNoErr;
}

int WCBaseControl::RegisterFromParamArrayRegData(const char *arrayName, std::uint64_t id) {
    if (m_pAlg == nullptr || m_pAlg->GetParam(id) == nullptr)
        return -1;
    int found = eValueNotFound;
    for (std::size_t i = 0; i < m_Registrations.size(); ++i) {
        auto &data = m_Registrations[i];
        if (!data.IsParamArrayRegData() || data.GetParamArrayName() != arrayName)
            continue;
        if (data.IsRegistered())
            m_pAlg->RemoveParamController(data.GetRegisteredParam(), this);
        data.SetRegisteredParam(id);
        if (data.ShouldUpdateGraphics())
            m_pAlg->AddParamController(id, this, i);
        data.UpdateValue();
        data.UpdateLabel();
        data.UpdateUnits();
        found = eNoErr;
    }
    return found;
}

int WCBaseControl::FinishCreate() {
    return FinishCreateSelf();
}

void WCBaseControl::UpdateDisabledMode(std::size_t) {}

void WCBaseControl::UpdatePointer(std::size_t index) {
    if (index >= m_Registrations.size())
        return;
    m_Registrations[index].UpdateValue();
    m_Registrations[index].UpdateLabel();
}

std::uint64_t WCBaseControl::GetLeadParamID() const {
    if (m_Registrations.empty())
        return WCParamRegistrationData::kNoParam;
    const std::size_t lead = m_LeadParamIndex < m_Registrations.size() ? m_LeadParamIndex : 0;
    return m_Registrations[lead].GetRegisteredParam();
}

void WCBaseControl::DebugControl() const {
    std::printf("control \"%s\": flags 0x%llx, %zu registrations\n", m_Name.c_str(),
                static_cast<unsigned long long>(m_Flags.GetBits()), m_Registrations.size());
    DebugControlSelf();
}

MIREL_NAMESPACE_END
