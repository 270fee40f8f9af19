// CPresetAPI: formats, lists, reading one preset, chunks and the compatibility rules. The
// writers are in CPresetAPI_Write.cpp.
#include "Code/Presets/CPresetAPI.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "Code/Presets/PresetXML.h"
#include "Code/Presets/PresetYAML.h"
#include "Code/Presets/WUPresetFiles.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/PugiXML.h"
#include "resources/ResourceManager.h"
#include "resources/WCStRes.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

bool IsPresetRoot(const XML::CXMLElement &root) {
    return root.GetName() == kPresetFileRoot || root.GetName() == kPresetChunkRoot;
}

bool IsPresetRoot(const pugi::xml_node &root) {
    return std::strcmp(root.name(), kPresetFileRoot) == 0 ||
           std::strcmp(root.name(), kPresetChunkRoot) == 0;
}

// A preset document's tree; any other root is ePresetFileProblem.
WTErr BuildTree(const char *text, std::uint64_t length, XML::CXMLElement &root) {
    XML::CXMLElement read;
    if (BuildPresetTree(text, length, read) != eNoErr || !IsPresetRoot(read))
        return ePresetFileProblem;
    root = std::move(read);
    return eNoErr;
}

// The root's "version", "None" without one; it becomes each preset's version.
WCFixedString<127> DocumentVersion(const XML::CXMLElement &root) {
    WCFixedString<127> version("None");
    if (std::string value; root.GetAttrib("version", value))
        AssignPresetText(version, value);
    return version;
}

short ResolveResID(const CPublicAlg *alg, short resID) {
    if (resID != CPresetAPI::kNoResourceID)
        return resID;
    return alg != nullptr ? alg->GetPresetResourceNumber() : CPresetAPI::kDefaultPresetResourceID;
}

WCFourCC OwnIfUnreadable(WCFourCC code, WCFourCC own) {
    return code.IsUnreadable() ? own : code;
}

bool Contains(const CPresetAPI::WTFourCCList &codes, WCFourCC code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

} // namespace

// ---- formats ------------------------------------------------------------------------------

EPresetsFormat CPresetAPI::GetPresetFileFormat(const CPublicAlg &alg, const FM::WCStPath &path) {
    if (!path.IsValid())
        return ePresetsFormatUnknown;
    // Exact: a file named ".XPS" is not one the family ever wrote.
    const auto extension = path.GetExtension();
    if (extension == "xps")
        return ePresetsFormatXMLFile;
    if (extension == "yps")
        return ePresetsFormatYAMLFile;
    bool isContainer = false;
    if (RM::IsResContainer(path, isContainer) != eNoErr || !isContainer)
        return ePresetsFormatUnknown;
    RM::WCStResContainer container(path);
    if (!container.IsValid())
        return ePresetsFormatUnknown;
    const WCResKey key(kPresetResourceType, alg.GetPresetResourceNumber());
    return container.DoesNativeResourceExist(key) ? ePresetsFormatResource : ePresetsFormatUnknown;
}

// ---- documents ----------------------------------------------------------------------------

WTErr CPresetAPI::LoadPresetText(const CPublicAlg *alg, const CPresetsFileInfo &file,
                                 const char *resType, short resID, std::string &text) {
    if (!file.IsValidPresetFile())
        return ePresetFileProblem;
    try {
        switch (file.m_Format) {
        case ePresetsFormatXMLFile: return ReadPresetFileText(file, text);
        case ePresetsFormatYAMLFile: {
            std::string chunk;
            if (const WTErr error = GetDataChunkFromYAMLPresetFile(file, chunk); error != eNoErr)
                return error;
            if (chunk.empty())
                return ePresetFileProblem;
            text.swap(chunk);
            return eNoErr;
        }
        case ePresetsFormatResource: {
            RM::WCStResContainer container(file);
            if (!container.IsValid())
                return ePresetFileProblem;
            const WCResKey key(resType != nullptr && *resType ? resType : kPresetResourceType,
                               ResolveResID(alg, resID));
            std::uint64_t size = 0;
            if (container.GetRawResSize(key, size) != eNoErr || size == 0 ||
                size > kMaxPresetFileSize)
                return ePresetFileProblem;
            Utils::WCStMemObj bytes;
            if (RM::GetRawResourceData(container, key, bytes) != eNoErr || bytes.Empty())
                return ePresetFileProblem;
            text.assign(static_cast<const char *>(bytes.GetPtr()), bytes.GetSize());
            return eNoErr;
        }
        default: return ePresetFileProblem;
        }
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::LoadPresetTree(const CPublicAlg *alg, const CPresetsFileInfo &file,
                                 const char *resType, short resID, XML::CXMLElement &root) {
    std::string text;
    if (const WTErr error = LoadPresetText(alg, file, resType, resID, text); error != eNoErr)
        return error;
    try {
        return BuildTree(text.data(), text.size(), root);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::GetPugiPresetParser(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                      pugi::xml_document &doc, short resID) {
    std::string text;
    if (const WTErr error = LoadPresetText(&alg, file, kPresetResourceType, resID, text);
        error != eNoErr)
        return error;
    pugi::xml_document read;
    if (PugiXML::read_xml_from_string(text, read) != 0 || !IsPresetRoot(read.document_element()))
        return ePresetFileProblem;
    doc.reset();
    doc.append_copy(read.document_element());
    return eNoErr;
}

// ---- lists --------------------------------------------------------------------------------

WTErr CPresetAPI::GetPresetList(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                WTPresetList &list, WCFourCC type, WCFourCC subType, short resID,
                                bool withData) {
    XML::CXMLElement root;
    if (const WTErr error = LoadPresetTree(&alg, file, kPresetResourceType, resID, root);
        error != eNoErr)
        return error;
    WTPresetList read;
    if (const WTErr error =
            GetPresetList_XML(alg, file, root, read, type, subType, resID, withData);
        error != eNoErr)
        return error;
    DisableDuplicatePresets(read);
    list = std::move(read);
    return eNoErr;
}

WTErr CPresetAPI::GetPresetListWithPugi(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                        WTPresetList &list, WCFourCC type, WCFourCC subType,
                                        short resID) {
    pugi::xml_document doc;
    if (const WTErr error = GetPugiPresetParser(alg, file, doc, resID); error != eNoErr)
        return error;
    WTPresetList read;
    if (const WTErr error =
            GetPresetList_XML_Pugi(alg, file, doc.document_element(), read, type, subType, resID);
        error != eNoErr)
        return error;
    DisableDuplicatePresets(read);
    list = std::move(read);
    return eNoErr;
}

WTErr CPresetAPI::ReadAllPresetsInfo(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                     WTPresetList &list, WCFourCC type, WCFourCC subType,
                                     short resID) {
    return GetPresetList(alg, file, list, type, subType, resID, true);
}

WTErr CPresetAPI::GetPresetList_XML(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                    const XML::CXMLElement &root, WTPresetList &list, WCFourCC type,
                                    WCFourCC subType, short resID, bool withData) {
    try {
        type = OwnIfUnreadable(type, alg.GetAlgType());
        subType = OwnIfUnreadable(subType, alg.GetAlgSubType());
        const WCFixedString<127> version = DocumentVersion(root);
        WTPresetList read;
        std::int64_t counter = 0;
        for (const XML::CXMLElement *child : root.GetSubElements()) {
            auto info = std::make_unique<CPresetInfo>(file);
            const auto &name = child->GetName();
            WTFourCCList types, subComps;
            GetTypeAndSubCompVectors(*child, types, subComps);
            if (name == "Preset") {
                if (!IsCompatible(alg, type, subType, true, types, subComps))
                    continue;
                info->m_PresetVersion = version;
                info->m_ResourceID = resID;
                if (ReadHeadersFromXML_CPresetInfo(child, *info) != eNoErr)
                    continue;
                if (withData) {
                    info->SetAllLoadFlags(true);
                    if (const WTErr error = ReadDataFromXML_CPresetInfo(child, *info);
                        error != eNoErr)
                        return error;
                }
            } else if (name == "Title") {
                AssignPresetText(info->m_PresetName, child->GetText());
                info->m_Flags |= ePresetFlagDummyTitle;
            } else if (name == "Separator") {
                if (!subComps.empty() && !Contains(subComps, subType))
                    continue;
                info->m_PresetName = "Separator";
                info->m_Flags |= ePresetFlagSeparator;
            } else {
                continue;
            }
            if (info->m_IndexInList == -1)
                info->m_IndexInList = counter;
            ++counter;
            read.push_back(std::move(info));
        }
        for (auto &info : read)
            list.push_back(std::move(info));
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::GetPresetList_XML_Pugi(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                         const pugi::xml_node &root, WTPresetList &list,
                                         WCFourCC type, WCFourCC subType, short resID) {
    try {
        // Headers are read by the one reader of the element world, on a copy of the node: a
        // listing touches only a preset's attributes and "PresetHeader".
        XML::CXMLElement shell("PresetXMLTree");
        if (const pugi::xml_attribute version = root.attribute("version"))
            shell.AddAttrib("version", version.value());
        for (const pugi::xml_node child : root.children()) {
            if (child.type() != pugi::node_element)
                continue;
            auto *element = shell.push_sub_element(new XML::CXMLElement);
            PugiXML::pugi_to_CXMLElement(child, element);
            // Setups' values are not needed for a list and may be large.
            auto &subs = element->GetSubElements();
            for (auto it = subs.begin(); it != subs.end();) {
                if ((*it)->GetName() == "PresetData") {
                    delete *it;
                    it = subs.erase(it);
                } else {
                    ++it;
                }
            }
        }
        return GetPresetList_XML(alg, file, shell, list, type, subType, resID, false);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

void CPresetAPI::DisableDuplicatePresets(WTPresetList &list) {
    auto isEntry = [](const std::unique_ptr<CPresetInfo> &info) {
        return info != nullptr && !info->IsDisabled() && !info->IsSeperator() &&
               !info->IsDummyTitle();
    };
    for (std::size_t first = 0; first < list.size(); ++first) {
        if (!isEntry(list[first]))
            continue;
        const CPresetInfo &a = *list[first];
        for (std::size_t later = first + 1; later < list.size(); ++later) {
            if (!isEntry(list[later]))
                continue;
            CPresetInfo &b = *list[later];
            if (a.m_PresetName == b.m_PresetName && a.m_GroupName == b.m_GroupName &&
                static_cast<const FM::WCStPath &>(a) == static_cast<const FM::WCStPath &>(b))
                b.m_Flags |= ePresetFlagDisabled;
        }
    }
}

bool CPresetAPI::FixPresetOrderIfNeeded(WTPresetList &list) {
    std::vector<std::size_t> slots;
    std::vector<std::string> groups;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i] == nullptr || list[i]->m_GroupName.empty())
            continue;
        slots.push_back(i);
        const std::string group = list[i]->m_GroupName.c_str();
        if (std::find(groups.begin(), groups.end(), group) == groups.end())
            groups.push_back(group);
    }
    std::vector<std::size_t> order;
    order.reserve(slots.size());
    for (const std::string &group : groups)
        for (std::size_t slot : slots)
            if (list[slot]->m_GroupName == group.c_str())
                order.push_back(slot);
    if (order == slots)
        return false;
    std::vector<std::unique_ptr<CPresetInfo>> ordered;
    ordered.reserve(order.size());
    for (std::size_t slot : order)
        ordered.push_back(std::move(list[slot]));
    for (std::size_t i = 0; i < slots.size(); ++i)
        list[slots[i]] = std::move(ordered[i]);
    return true;
}

// ---- one preset ---------------------------------------------------------------------------

XML::CXMLElement *CPresetAPI::FindPreset(const CPublicAlg &alg, const XML::CXMLElement &root,
                                         const char *name, WCFourCC type) {
    type = OwnIfUnreadable(type, alg.GetAlgType());
    for (XML::CXMLElement *child : root.GetSubElements()) {
        if (child->GetName() != "Preset")
            continue;
        std::string childName;
        child->GetAttrib("Name", childName);
        if (childName != name)
            continue;
        WTFourCCList types, subComps;
        GetTypeAndSubCompVectors(*child, types, subComps);
        if (IsCompatible(alg, type, alg.GetAlgSubType(), true, types, subComps))
            return child;
    }
    return nullptr;
}

WTErr CPresetAPI::ReadPresetInfo(const CPublicAlg &alg, CPresetInfo &info, WCFourCC type) {
    if (!info.IsValidPresetFile())
        return ePresetFileProblem;
    return ReadPresetInfo_XML(alg, info, type);
}

WTErr CPresetAPI::ReadPresetInfo_XML(const CPublicAlg &alg, CPresetInfo &info, WCFourCC type) {
    try {
        XML::CXMLElement root;
        if (const WTErr error =
                LoadPresetTree(&alg, info, info.m_ResourceType.c_str(), info.m_ResourceID, root);
            error != eNoErr)
            return error;
        const XML::CXMLElement *preset = FindPreset(alg, root, info.m_PresetName.c_str(), type);
        if (preset == nullptr)
            return ePresetInfoNotFound;
        CPresetInfo read(static_cast<const CPresetsFileInfo &>(info));
        read.m_PresetVersion = DocumentVersion(root);
        read.m_IndexInList = info.m_IndexInList;
        read.m_ResourceType = info.m_ResourceType;
        read.m_ResourceID = info.m_ResourceID;
        if (const WTErr error = ReadHeadersFromXML_CPresetInfo(preset, read); error != eNoErr)
            return error;
        read.SetAllLoadFlags(true);
        if (const WTErr error = ReadDataFromXML_CPresetInfo(preset, read); error != eNoErr)
            return error;
        info = std::move(read);
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::ReadDataHeadersFromXML(CPresetInfo &info) {
    try {
        XML::CXMLElement root;
        if (const WTErr error =
                LoadPresetTree(nullptr, info, info.m_ResourceType.c_str(), info.m_ResourceID, root);
            error != eNoErr)
            return error;
        CPresetInfo read(info);
        if (const WTErr error = ReadDataHeadersFromXML_CPresetInfo(&root, read); error != eNoErr)
            return error;
        info = std::move(read);
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

bool CPresetAPI::ReadDefaultPresetFromFile(const CPublicAlg &alg, CPresetInfo &info) {
    try {
        CPresetInfo read(info);
        if (read.m_PresetName.empty())
            read.m_PresetName = kDefaultPresetName;
        if (read.m_Format == ePresetsFormatUnknown)
            read.m_Format = GetPresetFileFormat(alg, read);
        if (ReadPresetInfo(alg, read) != eNoErr)
            return false;
        info = std::move(read);
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

bool CPresetAPI::ReadDefaultPresetsFromFile(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                            WTPresetMap &presets) {
    try {
        CPresetsFileInfo source(file);
        if (source.m_Format == ePresetsFormatUnknown)
            source.m_Format = GetPresetFileFormat(alg, source);
        WTPresetList list;
        if (ReadAllPresetsInfo(alg, source, list) != eNoErr)
            return false;
        WTPresetMap read;
        for (auto &info : list) {
            if (info->IsSeperator() || info->IsDummyTitle() || info->IsDisabled())
                continue;
            const std::string name = info->m_PresetName.c_str();
            read.emplace(name, std::move(info));
        }
        if (read.empty())
            return false;
        presets = std::move(read);
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

WTErr CPresetAPI::SetPresetChunk(const CPublicAlg &alg, CPresetInfo &info,
                                 const Utils::WCStConstMemObj &chunk) {
    if (chunk.Empty())
        return ePresetFileProblem;
    try {
        XML::CXMLElement root;
        if (const WTErr error =
                BuildTree(static_cast<const char *>(chunk.GetPtr()), chunk.GetSize(), root);
            error != eNoErr)
            return error;
        for (const XML::CXMLElement *child : root.GetSubElements()) {
            if (child->GetName() != "Preset")
                continue;
            WTFourCCList types, subComps;
            GetTypeAndSubCompVectors(*child, types, subComps);
            if (!IsPresetCompatible(alg, alg.GetAlgType(), true, types, subComps))
                continue;
            CPresetInfo read(static_cast<const CPresetsFileInfo &>(info));
            read.m_Format = ePresetsFormatXMLString;
            read.m_PresetVersion = DocumentVersion(root);
            if (const WTErr error = ReadHeadersFromXML_CPresetInfo(child, read); error != eNoErr)
                return error;
            read.SetAllLoadFlags(true);
            if (const WTErr error = ReadDataFromXML_CPresetInfo(child, read); error != eNoErr)
                return error;
            info.TakeOver(read);
            return eNoErr;
        }
        return ePresetInfoNotFound;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

// ---- dialogs ------------------------------------------------------------------------------

WTErr CPresetAPI::GetPresetsFile(const CPublicAlg &, FM::WCStPath &, const char *) {
    return eNotImplemented;
}

WTErr CPresetAPI::GetPresetNameFromUser(const CPublicAlg &, WCFixedStringBase &) {
    return eNotImplemented;
}

// ---- compatibility ------------------------------------------------------------------------

void CPresetAPI::ParseToVector4CC(const char *text, WTFourCCList &codes) {
    if (text == nullptr)
        return;
    const char *piece = text;
    while (true) {
        const char *end = std::strchr(piece, ',');
        const std::size_t length = end != nullptr ? std::size_t(end - piece) : std::strlen(piece);
        if (length == 4)
            codes.emplace_back(piece[0], piece[1], piece[2], piece[3]);
        else if (length != 0)
            codes.push_back(WCFourCC::Unreadable());
        if (end == nullptr)
            break;
        piece = end + 1;
    }
}

void CPresetAPI::GetTypeAndSubCompVectors(const XML::CXMLElement &element, WTFourCCList &types,
                                          WTFourCCList &subComps) {
    std::string text;
    if (element.GetAttrib("GenericType", text))
        ParseToVector4CC(text.c_str(), types);
    if (element.GetAttrib("SubComp", text))
        ParseToVector4CC(text.c_str(), subComps);
}

void CPresetAPI::GetTypeAndSubCompVectors(const pugi::xml_node &node, WTFourCCList &types,
                                          WTFourCCList &subComps) {
    if (const pugi::xml_attribute attribute = node.attribute("GenericType"))
        ParseToVector4CC(attribute.value(), types);
    if (const pugi::xml_attribute attribute = node.attribute("SubComp"))
        ParseToVector4CC(attribute.value(), subComps);
}

bool CPresetAPI::IsCompatible(const CPublicAlg &alg, WCFourCC type, WCFourCC subType,
                              bool tryCompatible, const WTFourCCList &types,
                              const WTFourCCList &subComps) {
    bool typePasses = types.empty() || Contains(types, type);
    if (!typePasses && tryCompatible) {
        for (const WCFourCC compatible : alg.GetPresetCompatibleTypes(type)) {
            if (compatible == kAnyType)
                return true;
            typePasses = typePasses || Contains(types, compatible);
        }
    }
    const bool subCompPasses = subComps.empty() || Contains(subComps, subType);
    return typePasses && subCompPasses;
}

bool CPresetAPI::IsPresetCompatible(const CPublicAlg &alg, WCFourCC type, bool tryCompatible,
                                    const WTFourCCList &types, const WTFourCCList &subComps) {
    return IsCompatible(alg, type, alg.GetAlgSubType(), tryCompatible, types, subComps);
}

bool CPresetAPI::IsSeparatorSubCompCompatible(const CPublicAlg &alg, const WTFourCCList &subComps) {
    return subComps.empty() || Contains(subComps, alg.GetAlgSubType());
}

} // namespace Preset

MIREL_NAMESPACE_END
