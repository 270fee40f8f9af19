#include "resources/MirelComponentInfo.h"

#include <strings.h>

#include <cstring>
#include <tuple>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXMLSerializer.h"
#include "Utilities/XML/Code/XMLPathHelpers.h"

MIREL_NAMESPACE_BEGIN

namespace {

struct WSTypeWord {
    int m_Value;
    const char *m_Word;
};

constexpr WSTypeWord kPluginTypeWords[] = {
    {MirelComponentInfo::eUnknownPluginType, "UnknownPluginType"},
    {MirelComponentInfo::eMirelPlugin, "MirelPlugin"},
    {MirelComponentInfo::eVSTPlugin, "VSTPlugin"},
    {MirelComponentInfo::eMirelUtility, "MirelUtility"},
    {MirelComponentInfo::eKPAPIShell, "KPAPIShell"},
};

XML::WTEnumNames &PluginTypeNames() {
    static XML::WTEnumNames names = [] {
        XML::WTEnumNames made;
        for (const WSTypeWord &word : kPluginTypeWords)
            made[WCFixedString<63>(word.m_Word)] = word.m_Value;
        return made;
    }();
    return names;
}

XML::WTEnumNames &InstanceTypeNames() {
    static XML::WTEnumNames names = {
        {WCFixedString<63>("eInitPluginForTest"), MirelComponentInfo::eInitPluginForTest},
        {WCFixedString<63>("eInitPlugin"), MirelComponentInfo::eInitPlugin},
    };
    return names;
}

} // namespace

bool operator==(const MirelComponentInfo &a, const MirelComponentInfo &b) noexcept {
    return a.m_PluginType == b.m_PluginType && a.m_FilePath == b.m_FilePath &&
           a.m_ComponentType == b.m_ComponentType && a.m_ComponentSubType == b.m_ComponentSubType &&
           a.m_Affiliation == b.m_Affiliation && a.m_ShortName == b.m_ShortName &&
           a.m_InternalVersion == b.m_InternalVersion && a.m_APIVersion == b.m_APIVersion &&
           a.m_InstanceType == b.m_InstanceType && a.m_ProcCodeDesc == b.m_ProcCodeDesc &&
           a.m_VendorName == b.m_VendorName && a.m_CategoryName == b.m_CategoryName &&
           a.m_ExternalVersion == b.m_ExternalVersion && a.m_VSTClassID == b.m_VSTClassID &&
           a.m_AudioSuiteDisabledHandle == b.m_AudioSuiteDisabledHandle;
}

bool MirelComponentInfo::CompareForCachePurpose(const MirelComponentInfo &other) const noexcept {
    return m_PluginType == other.m_PluginType && m_FilePath == other.m_FilePath &&
           m_ComponentType == other.m_ComponentType &&
           m_ComponentSubType == other.m_ComponentSubType && m_Affiliation == other.m_Affiliation &&
           m_InternalVersion == other.m_InternalVersion && m_APIVersion == other.m_APIVersion &&
           m_ExternalVersion == other.m_ExternalVersion;
}

int MirelComponentInfo::CompareName(const MirelComponentInfo &other) const noexcept {
    return ::strcasecmp(m_ShortName.c_str(), other.m_ShortName.c_str());
}

bool MirelComponentInfo::SortByNameAndSubCompPredicate(const MirelComponentInfo &a,
                                                       const MirelComponentInfo &b) noexcept {
    if (const int byName = a.CompareName(b); byName != 0)
        return byName < 0;
    const auto codes = [](const MirelComponentInfo &info) {
        return std::make_tuple(static_cast<std::uint32_t>(info.m_ComponentSubType),
                               static_cast<std::uint32_t>(info.m_ComponentType),
                               static_cast<std::uint32_t>(info.m_Affiliation));
    };
    if (codes(a) != codes(b))
        return codes(a) < codes(b);
    return std::strcmp(a.m_FilePath.GetNativePathString().c_str(),
                       b.m_FilePath.GetNativePathString().c_str()) < 0;
}

const char *MirelComponentInfo::TypeToString(int pluginType) noexcept {
    for (const WSTypeWord &word : kPluginTypeWords)
        if (word.m_Value == pluginType)
            return word.m_Word;
    return "UnknownType";
}

void MirelComponentInfo::SerializeXML(XML::WCXMLSerializer &s) {
    int pluginType = m_PluginType;
    s.element_name("PluginType").element_content_enum(pluginType, PluginTypeNames()).element_end();
    m_PluginType = static_cast<PluginShellType>(pluginType);
    s.element_name("pluginFilePath");
    XML::SerializeXML(s, m_FilePath);
    s.element_end();
    s.element_name("componentType").element_content(m_ComponentType).element_end();
    s.element_name("componentSubType").element_content(m_ComponentSubType).element_end();
    s.element_name("componentAffiliation").element_content(m_Affiliation).element_end();
    s.element_name("shortName").element_content(m_ShortName).element_end();
    s.element_name("pluginInternalVersion").element_content(m_InternalVersion).element_end();
    s.element_name("pluginAPIVersion").element_content(m_APIVersion).element_end();
    int instanceType = m_InstanceType;
    s.element_name("ePluginInstanceType")
        .element_content_enum(instanceType, InstanceTypeNames())
        .element_end();
    m_InstanceType = static_cast<EPluginInstanceType>(instanceType);
    s.element_name("compProcCodeDesc").level_down();
    m_ProcCodeDesc.SerializeXML(s);
    s.level_up().element_end();
    s.element_name("vendorName").element_content(m_VendorName).element_end();
    s.element_name("categoryName").element_content(m_CategoryName).element_end();
    s.element_name("pluginExternalVersion").element_content(m_ExternalVersion).element_end();
    s.element_name("VST_class_ID").element_content(m_VSTClassID).element_end();
    s.element_name("AudioSuiteDisabledHandle")
        .element_content(m_AudioSuiteDisabledHandle)
        .element_end();
}

WTErr Read_MirelComponentInfo_FromXML(const XML::CXMLElement *element, MirelComponentInfo &info) {
    if (element == nullptr)
        return eXMLElementMissing;
    // The reader only indexes the tree; it changes nothing in it.
    XML::WCXMLSerializerReader reader(const_cast<XML::CXMLElement *>(element));
    info.SerializeXML(reader);
    return eNoErr;
}

WTErr Write_MirelComponentInfo_ToXML(XML::CXMLElement *element, const MirelComponentInfo &info) {
    if (element == nullptr)
        return eMemNullPointer;
    MirelComponentInfo copy(info);
    XML::WCXMLSerializerWriter writer(element);
    copy.SerializeXML(writer);
    return eNoErr;
}

WCPluginUniqueID::WCPluginUniqueID(WCFourCC subType, const char *name,
                                   const WC16BytesID &vstClassID, const char *vendor)
    : m_SubType(subType), m_Name(name), m_VSTClassID(vstClassID), m_VendorName(vendor) {}

WCPluginUniqueID::WCPluginUniqueID(const MirelComponentInfo &info)
    : m_SubType(info.m_ComponentSubType), m_Name(info.m_ShortName), m_VSTClassID(info.m_VSTClassID),
      m_VendorName(info.m_VendorName) {}

bool WCPluginUniqueID::IsDefault() const noexcept {
    return *this == WCPluginUniqueID();
}

void WCPluginUniqueID::clear() noexcept {
    *this = WCPluginUniqueID();
}

bool operator==(const WCPluginUniqueID &a, const WCPluginUniqueID &b) noexcept {
    return a.m_SubType == b.m_SubType && a.m_Name == b.m_Name && a.m_VSTClassID == b.m_VSTClassID &&
           a.m_VendorName == b.m_VendorName;
}

bool operator<(const WCPluginUniqueID &a, const WCPluginUniqueID &b) noexcept {
    if (a.m_SubType != b.m_SubType)
        return a.m_SubType < b.m_SubType;
    if (!(a.m_Name == b.m_Name))
        return a.m_Name < b.m_Name;
    if (!(a.m_VSTClassID == b.m_VSTClassID))
        return a.m_VSTClassID < b.m_VSTClassID;
    return a.m_VendorName < b.m_VendorName;
}

MIREL_NAMESPACE_END
