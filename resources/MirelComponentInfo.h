#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WC16BytesID.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCVersion.h"
#include "Code/Process/CProcCodeDesc.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
class WCXMLSerializer;
} // namespace XML

// The vendor a component has when its bundle names none.
inline constexpr const char *kMirelVendorName = "Mirel";

// The identity record of one plug-in component: which file, which type and sub-type, names,
// versions, and the description of its process code. The scanner fills it, the XML filters
// select by it and scan results store it in XML. A plain value; copy it freely. [any-thread]
struct MirelComponentInfo {
    enum PluginShellType : int {
        eUnknownPluginType = 0,
        eMirelPlugin = 1,
        eVSTPlugin = 2,
        eMirelUtility = 3,
        eKPAPIShell = 4,
    };
    using EPluginShellType = PluginShellType;
    enum EPluginInstanceType : int {
        eInitPluginForTest = 0,
        eInitPlugin = 1,
    };

    PluginShellType m_PluginType = eMirelPlugin;
    FM::WCStPath m_FilePath;
    WCFourCC m_ComponentType = WCFourCC::Unreadable();
    WCFourCC m_ComponentSubType = WCFourCC::Unreadable();
    WCFourCC m_Affiliation = WCFourCC("ksMI");
    WCFixedString<63> m_ShortName;
    WCVersion m_InternalVersion;
    WCVersion m_APIVersion;
    EPluginInstanceType m_InstanceType = eInitPlugin;
    // The first build of the audio code the bundle's "ProcessXML" names for this sub-component
    // (through its type's "ProcessCodeMatch"); empty when it names none.
    ProcessMemory::CProcCodeDesc m_ProcCodeDesc;
    WCFixedString<63> m_VendorName = WCFixedString<63>(kMirelVendorName);
    WCFixedString<63> m_CategoryName;
    WCVersion m_ExternalVersion;
    WC16BytesID m_VSTClassID;
    bool m_AudioSuiteDisabledHandle = false;

    // Every field, in order. [any-thread]
    friend bool operator==(const MirelComponentInfo &a, const MirelComponentInfo &b) noexcept;
    friend bool operator!=(const MirelComponentInfo &a, const MirelComponentInfo &b) noexcept {
        return !(a == b);
    }

    // The fields a rebuilt plug-in file changes, so a cached scan result still describes the
    // file: path, plug-in type, type, sub-type, affiliation and the three versions. Names and
    // categories may be edited by hand in a cache and are left out.
    bool CompareForCachePurpose(const MirelComponentInfo &other) const noexcept;
    // The short names without regard to case: negative, 0 or positive, like strcmp.
    int CompareName(const MirelComponentInfo &other) const noexcept;
    bool IsNameBefore(const MirelComponentInfo &other) const noexcept {
        return CompareName(other) < 0;
    }
    // A strict order for menus: short name without case, then sub-type, component type,
    // affiliation and last the file path, so components of one name keep a stable place.
    static bool SortByNameAndSubCompPredicate(const MirelComponentInfo &a,
                                              const MirelComponentInfo &b) noexcept;
    // The plug-in type as its XML word; "UnknownType" for a value no word names.
    static const char *TypeToString(int pluginType) noexcept;

    // The record through the serializer, in either direction, the current element holding one
    // child per field. [any-thread] on distinct trees.
    void SerializeXML(XML::WCXMLSerializer &serializer);
};

// Reads the fields an element has and keeps the others; eXMLElementMissing for a null element.
WTErr Read_MirelComponentInfo_FromXML(const XML::CXMLElement *element, MirelComponentInfo &info);
// Appends one child per field to `element` (eMemNullPointer for null).
WTErr Write_MirelComponentInfo_ToXML(XML::CXMLElement *element, const MirelComponentInfo &info);

// Identifies a plug-in across the formats it is built in: sub-type, name, VST class id, vendor.
// A plain value. [any-thread]
class WCPluginUniqueID {
public:
    WCPluginUniqueID() = default;
    WCPluginUniqueID(WCFourCC subType, const char *name, const WC16BytesID &vstClassID,
                     const char *vendor = kMirelVendorName);
    explicit WCPluginUniqueID(const MirelComponentInfo &info);

    bool IsDefault() const noexcept;
    void clear() noexcept;

    friend bool operator==(const WCPluginUniqueID &a, const WCPluginUniqueID &b) noexcept;
    // Sub-type, then name, class id and vendor.
    friend bool operator<(const WCPluginUniqueID &a, const WCPluginUniqueID &b) noexcept;

    WCFourCC m_SubType = WCFourCC::Unreadable();
    WCFixedString<63> m_Name;
    WC16BytesID m_VSTClassID;
    WCFixedString<63> m_VendorName = WCFixedString<63>(kMirelVendorName);
};

MIREL_NAMESPACE_END
