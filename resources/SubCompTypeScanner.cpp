#include "resources/SubCompTypeScanner.h"

#include <cstring>
#include <cstdlib>
#include <map>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "Utilities/XML/Code/PugiXML.h"
#include "core/WCStMemObj.h"
#include "core/WUAssert.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

namespace {

struct WSSubCompType {
    std::string m_ProcessCodeMatch;
    std::string m_FeatureFlag;
};

std::string Text(const pugi::xml_node &parent, const char *name) {
    return parent.child(name).child_value();
}

// Exactly four characters make a code; anything else is refused.
bool ReadCode(const std::string &text, WCFourCC &out) {
    if (text.size() != 4)
        return false;
    out = WCFourCC(text[0], text[1], text[2], text[3]);
    return true;
}

bool IsFalse(const std::string &text) {
    return text == "false" || text == "False" || text == "0" || text == "no" || text == "No";
}

// The first description the match of that name lists, by its position in the description list.
// A match that names none, or a broken description, leaves `out` as it was.
int ReadFirstDescriptionOfMatch(const pugi::xml_node &root, const std::string &match,
                                ProcessMemory::CProcCodeDesc &out) {
    for (const pugi::xml_node entry :
         root.child("ProcessCodeMatchList").children("ProcessCodeMatch")) {
        if (Text(entry, "Name") != match)
            continue;
        const std::string id = Text(entry, "ProcessCodeDescriptionID");
        char *end = nullptr;
        const long index = std::strtol(id.c_str(), &end, 10);
        if (id.empty() || *end != '\0' || index < 0)
            return eXMLTreeNotValid;
        long at = 0;
        for (const pugi::xml_node desc :
             root.child("ProcessCodeDescriptionList").children("ProcessCodeDescription"))
            if (at++ == index)
                return out.ReadFromXML(desc);
        return eXMLTreeNotValid;
    }
    return eValueNotFound;
}

} // namespace

// The document:
//
//   <ProcessXML>
//     <SubComponentTypeList>
//       <SubComponentType><Name>Native</Name><ProcessCodeMatch>x64</ProcessCodeMatch>
//         <FeatureFlag>Native</FeatureFlag></SubComponentType>
//     </SubComponentTypeList>
//     <SubComponentList>
//       <SubComponent><Name>Gain Mono</Name><Type>GnMo</Type><BlockAffiliation>ksMI
//         </BlockAffiliation><ProcessCodeMatch>Native</ProcessCodeMatch>
//         <FeatureFlag>Beta</FeatureFlag><ShowSubComp>true</ShowSubComp></SubComponent>
//     </SubComponentList>
//   </ProcessXML>
//
// The steps, in order, for each "SubComponent" of "SubComponentList":
// 1. "ShowSubComp" of false, 0 or no hides the sub-component, unless the options include hidden
//    ones; absent means shown.
// 2. "Type" is the sub-type: exactly four characters, else the entry is skipped. A sub-type seen
//    before in this document is skipped too, so the first entry of a code wins.
// 3. "ProcessCodeMatch" names a "SubComponentType" by its "Name"; a name that no type has skips
//    the entry. The matched type's own "ProcessCodeMatch" becomes the record's process code
//    description. Without a "ProcessCodeMatch" the entry has no type and an empty description.
// 4. The feature flag is the entry's "FeatureFlag", else its type's; a flag that the options do
//    not enable skips the entry. No flag means always on.
// 5. "BlockAffiliation" (four characters) is the record's affiliation; absent or malformed, the
//    bundle's stands.
int SubCompTypeScanner::BuildSubComponentList(WTResContainerType *container,
                                              const MirelComponentInfo &bundleInfo,
                                              const WSOptions &options,
                                              WCMirelComponentInfoList &outList) {
    MIREL_ASSERT_RETURN(container != nullptr, eMemNullPointer);
    Utils::WCStMemObj bytes;
    const int err =
        RM::GetRawResourceData(container, WCResKey(kProcessXMLResType, kProcessXMLResID), bytes);
    if (err != eNoErr)
        return err;
    pugi::xml_document doc;
    if (PugiXML::read_xml_from_mem_obj(bytes, doc) != 0)
        return eXMLTreeNotValid;
    const pugi::xml_node root = doc.document_element();
    const pugi::xml_node list = root.child("SubComponentList");
    if (!list)
        return eXMLTreeNotValid;

    std::map<std::string, WSSubCompType> types;
    for (const pugi::xml_node type :
         root.child("SubComponentTypeList").children("SubComponentType"))
        types.try_emplace(Text(type, "Name"),
                          WSSubCompType{Text(type, "ProcessCodeMatch"), Text(type, "FeatureFlag")});

    std::vector<MirelComponentInfo> found;
    for (const pugi::xml_node entry : list.children("SubComponent")) {
        if (!options.m_IncludeHidden && IsFalse(Text(entry, "ShowSubComp")))
            continue;
        WCFourCC subType;
        if (!ReadCode(Text(entry, "Type"), subType))
            continue;
        bool seen = false;
        for (const MirelComponentInfo &info : found)
            seen = seen || info.m_ComponentSubType == subType;
        if (seen)
            continue;
        const std::string match = Text(entry, "ProcessCodeMatch");
        const WSSubCompType *type = nullptr;
        if (!match.empty()) {
            const auto it = types.find(match);
            if (it == types.end())
                continue;
            type = &it->second;
        }
        std::string flag = Text(entry, "FeatureFlag");
        if (flag.empty() && type != nullptr)
            flag = type->m_FeatureFlag;
        if (!flag.empty() && options.m_EnabledFeatures.count(flag) == 0)
            continue;

        MirelComponentInfo info(bundleInfo);
        info.m_ComponentSubType = subType;
        info.m_ShortName = Text(entry, "Name");
        info.m_ProcCodeDesc = ProcessMemory::CProcCodeDesc();
        if (type != nullptr)
            (void)ReadFirstDescriptionOfMatch(root, type->m_ProcessCodeMatch, info.m_ProcCodeDesc);
        WCFourCC affiliation;
        if (ReadCode(Text(entry, "BlockAffiliation"), affiliation))
            info.m_Affiliation = affiliation;
        found.push_back(info);
    }
    for (const MirelComponentInfo &info : found)
        outList.Add(info);
    return eNoErr;
}

MIREL_NAMESPACE_END
