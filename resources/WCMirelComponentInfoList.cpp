#include "resources/WCMirelComponentInfoList.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

const MirelComponentInfo *
WCMirelComponentInfoList::GetMirelComponentInfo(std::uint64_t index) const noexcept {
    return index < m_Components.size() ? &m_Components[index] : nullptr;
}

MirelComponentInfo *WCMirelComponentInfoList::GetMirelComponentInfo(std::uint64_t index) noexcept {
    return index < m_Components.size() ? &m_Components[index] : nullptr;
}

std::int64_t WCMirelComponentInfoList::GetMirelComponentIndex(WCFourCC subType) const noexcept {
    for (std::uint64_t i = 0; i < m_Components.size(); ++i)
        if (m_Components[i].m_ComponentSubType == subType)
            return static_cast<std::int64_t>(i);
    return kNotFound;
}

std::int64_t
WCMirelComponentInfoList::GetMirelComponentIndexByID(const WCPluginUniqueID &id) const noexcept {
    for (std::uint64_t i = 0; i < m_Components.size(); ++i)
        if (WCPluginUniqueID(m_Components[i]) == id)
            return static_cast<std::int64_t>(i);
    return kNotFound;
}

WTErr WCMirelComponentInfoList::RemoveMirelComponentInfo(std::uint64_t index) {
    if (index >= m_Components.size())
        return ePluginSubComponentNotFound;
    m_Components.erase(m_Components.begin() + static_cast<std::ptrdiff_t>(index));
    return eNoErr;
}

WTErr WCMirelComponentInfoList::RemoveSubComponentInfo(WCFourCC subType) {
    const auto before = m_Components.size();
    std::erase_if(m_Components, [&](const MirelComponentInfo &info) {
        return info.m_ComponentSubType == subType;
    });
    return m_Components.size() == before ? ePluginSubComponentNotFound : eNoErr;
}

void WCMirelComponentInfoList::FilterByComponentType(WCFourCC componentType) {
    std::erase_if(m_Components, [&](const MirelComponentInfo &info) {
        return info.m_ComponentType != componentType;
    });
}

void WCMirelComponentInfoList::FilterOut(WCFourCC componentType) {
    std::erase_if(m_Components, [&](const MirelComponentInfo &info) {
        return info.m_ComponentType == componentType;
    });
}

void WCMirelComponentInfoList::AddMonoStereoToNames() {
    for (MirelComponentInfo &info : m_Components) {
        const char last = static_cast<char>(static_cast<std::uint32_t>(info.m_ComponentSubType));
        const char *form = (last == 'm' || last == 'M')   ? " Mono"
                           : (last == 's' || last == 'S') ? " Stereo"
                                                          : nullptr;
        if (form == nullptr)
            continue;
        const std::string_view name = info.m_ShortName.view();
        const std::string_view tail(form);
        if (name.size() >= tail.size() && name.substr(name.size() - tail.size()) == tail)
            continue;
        info.m_ShortName << form;
    }
}

void WCMirelComponentInfoList::AdjustToNetShell(WCFourCC shellComponentType, int pluginType,
                                                const char *nameSuffix) {
    for (MirelComponentInfo &info : m_Components) {
        info.m_ComponentType = shellComponentType;
        info.m_PluginType = static_cast<MirelComponentInfo::PluginShellType>(pluginType);
        if (nameSuffix != nullptr && nameSuffix[0] != '\0')
            info.m_ShortName << nameSuffix;
    }
}

void WCMirelComponentInfoList::Sort() {
    std::stable_sort(m_Components.begin(), m_Components.end(),
                     &MirelComponentInfo::SortByNameAndSubCompPredicate);
}

WTErr WCMirelComponentInfoList::ReadFromXML(const XML::CXMLElement *const element) {
    if (element == nullptr)
        return eXMLElementMissing;
    std::vector<MirelComponentInfo> read;
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        if (std::strcmp(child->GetName().c_str(), "MirelComponentInfo") != 0)
            continue;
        MirelComponentInfo info;
        const WTErr err = Read_MirelComponentInfo_FromXML(child, info);
        if (err != eNoErr)
            return err;
        read.push_back(info);
    }
    m_Components.swap(read);
    return eNoErr;
}

XML::CXMLElement *WCMirelComponentInfoList::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    for (const MirelComponentInfo &info : m_Components) {
        auto child = std::make_unique<XML::CXMLElement>("MirelComponentInfo");
        Write_MirelComponentInfo_ToXML(child.get(), info);
        element->push_back(child.release());
    }
    return element;
}

MIREL_NAMESPACE_END
