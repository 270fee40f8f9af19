#pragma once

#include <cstdint>
#include <vector>

#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFourCC.h"
#include "resources/MirelComponentInfo.h"

MIREL_NAMESPACE_BEGIN

// The ordered list of the components of one or more bundles, as a scan finds them and its
// results store them: one element "MirelComponentInfo" per record in XML.
// A plain value; [any-thread] on distinct objects.
class WCMirelComponentInfoList : public CXMLable {
public:
    static constexpr std::int64_t kNotFound = -1;

    void Add(const MirelComponentInfo &info) { m_Components.push_back(info); }
    void Clear() noexcept { m_Components.clear(); }
    bool Empty() const noexcept { return m_Components.empty(); }
    std::uint64_t GetNumComponents() const noexcept { return m_Components.size(); }
    // Null past the end.
    const MirelComponentInfo *GetMirelComponentInfo(std::uint64_t index) const noexcept;
    MirelComponentInfo *GetMirelComponentInfo(std::uint64_t index) noexcept;
    const std::vector<MirelComponentInfo> &GetComponents() const noexcept { return m_Components; }

    // The first record of that sub-type, or kNotFound.
    std::int64_t GetMirelComponentIndex(WCFourCC subType) const noexcept;
    std::int64_t GetMirelComponentIndexByID(const WCPluginUniqueID &id) const noexcept;

    // ePluginSubComponentNotFound when there is nothing to remove; the list is unchanged then.
    WTErr RemoveMirelComponentInfo(std::uint64_t index);
    // Removes every record of that sub-type.
    WTErr RemoveSubComponentInfo(WCFourCC subType);

    // Keeps only the records of that component type.
    void FilterByComponentType(WCFourCC componentType);
    // Drops the records of that component type.
    void FilterOut(WCFourCC componentType);

    // Appends the channel form to each name whose sub-type ends in 'm' or 'M' (" Mono") or 's' or
    // 'S' (" Stereo"), unless the name already ends so; other names are left alone. Menus show
    // the mono and stereo sub-components of one plug-in apart this way.
    void AddMonoStereoToNames();
    // For a network shell that hosts these components: each record takes the shell's component
    // type and plug-in type, and `nameSuffix` (unless null or empty) is appended to its name.
    void AdjustToNetShell(WCFourCC shellComponentType, int pluginType, const char *nameSuffix);
    // Stable sort with MirelComponentInfo::SortByNameAndSubCompPredicate.
    void Sort();

    // Reads every child element "MirelComponentInfo" of `element` (replacing the list); an
    // element without such children gives an empty list.
    WTErr ReadFromXML(const XML::CXMLElement *const element) override;
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    using CXMLable::ReadFromXML;
    using CXMLable::WriteToXML;

    friend bool operator==(const WCMirelComponentInfoList &a,
                           const WCMirelComponentInfoList &b) noexcept {
        return a.m_Components == b.m_Components;
    }

private:
    std::vector<MirelComponentInfo> m_Components;
};

MIREL_NAMESPACE_END
