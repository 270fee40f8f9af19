// CPresetAPI: the writers. Every change reads the whole file, changes its tree and writes the
// tree back through a staging file that replaces the old one only when complete, so presets of
// other plug-ins and entries this plug-in does not show survive, and a failed write leaves the
// old file whole.
#include "Code/Presets/CPresetAPI.h"

#include <algorithm>
#include <new>

#include "Code/Presets/PresetXML.h"
#include "Code/Presets/PresetYAML.h"
#include "Code/Presets/WUPresetFiles.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kDocumentVersion = "2";
constexpr int kPresetFileMode = 0644;

// The checks every change of an existing file passes: locked first, then a file that is there
// and may be written.
WTErr CheckWritableFile(const CPresetInfo &file) {
    // A file is rewritten by a new file renamed over it, so a folder that takes no new file
    // locks the presets in it as much as a read-only file does.
    if (file.IsLocked() || (file.IsExist() && !file.GetParent().IsWritable()))
        return ePresetLockedProblem;
    if (!file.IsValidPresetFile() || !file.IsWritable())
        return ePresetFileProblem;
    return eNoErr;
}

// Puts a freshly written "Preset" element in the place of `old`, keeping the filters of the old
// one: the model keeps a single generic type, a file may name a list.
void ReplaceElement(XML::CXMLElement &root, XML::CXMLElement *old,
                    std::unique_ptr<XML::CXMLElement> fresh) {
    for (const char *filter : {"GenericType", "SubComp"}) {
        std::string value;
        if (old->GetAttrib(filter, value))
            fresh->SetAttrib(filter, value.c_str());
    }
    auto &children = root.GetSubElements();
    const auto place = std::find(children.begin(), children.end(), old);
    fresh->SetParent(&root);
    *place = fresh.release();
    delete old;
}

} // namespace

WTErr CPresetAPI::LoadTreeForWriting(const FM::WCStPath &path, XML::CXMLElement &root) {
    std::uint64_t size = 0;
    if (!path.IsValid())
        return ePresetFileProblem;
    XML::CXMLElement read;
    if (path.IsExist() && (path.GetFileSize(size) != eNoErr || size != 0)) {
        CPresetsFileInfo file(path, ePresetsFormatXMLFile);
        if (const WTErr error = LoadPresetTree(nullptr, file, nullptr, kNoResourceID, read);
            error != eNoErr)
            return error;
    }
    read.SetName(kPresetFileRoot);
    read.SetAttrib("version", kDocumentVersion);
    root = std::move(read);
    return eNoErr;
}

WTErr CPresetAPI::WriteTree(XML::CXMLElement &root, const FM::WCStPath &path) {
    std::string text;
    if (const WTErr error = XML::CXMLTreeBuilder(root).WriteToString(text); error != eNoErr)
        return error;
    return WritePresetFileBytes(path, text.data(), text.size(), kPresetFileMode);
}

WTErr CPresetAPI::WritePresetInfo(const CPublicAlg &alg, CPresetInfo &info) {
    if (info.m_Format == ePresetsFormatXMLString) {
        std::string text;
        if (const WTErr error = WritePresetInfo_XML(info, text); error != eNoErr)
            return error;
        info.m_XMLString.swap(text);
        return eNoErr;
    }
    if (info.m_Format == ePresetsFormatResource)
        return eInvalidFileFormatProblem;
    if (const WTErr error = CheckWritableFile(info); error != eNoErr)
        return error;
    if (info.m_Format == ePresetsFormatXMLFile)
        return WritePresetInfo_XML(alg, info, info);
    // A .yps file is one preset: the chunk text under the plug-in's identity.
    try {
        std::string chunk, text;
        if (const WTErr error = WritePresetInfo_XML(info, chunk); error != eNoErr)
            return error;
        WSYAMLPresetHeader header;
        header.m_GenericType = alg.GetAlgType();
        header.m_PluginName = alg.GetAlgName();
        header.m_PluginSubComp = alg.GetAlgSubType().GetString();
        header.m_PluginVersion.ReadFromString(alg.GetAlgVersion().c_str());
        if (const WTErr error = PrepareYAMLPresetString(header, chunk, text); error != eNoErr)
            return error;
        return WriteYAMLPresetFile(info, text);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::WritePresetInfo_XML(const CPublicAlg &alg, const CPresetInfo &info,
                                      const FM::WCStPath &path) {
    try {
        XML::CXMLElement root;
        if (const WTErr error = LoadTreeForWriting(path, root); error != eNoErr)
            return error;
        if (!root.GetSubElements().empty())
            (void)RemovePresetInfoXMLTree(alg, info, root);
        WSPresetWriteOptions options;
        options.m_PresetFile = &path;
        if (const WTErr error =
                WriteToXML_CPresetInfo(info, *root.push_sub_element(new XML::CXMLElement), options);
            error != eNoErr)
            return error;
        return WriteTree(root, path);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::WritePresetInfo_XML(const CPresetInfo &info, std::string &text) {
    WSPresetWriteOptions options;
    options.m_AsChunk = true;
    return WritePresetsToXMLString({&info}, kPresetChunkRoot, text, options);
}

WTErr CPresetAPI::WritePresetsDataToFile(const CPublicAlg &,
                                         const std::vector<const CPresetInfo *> &list,
                                         const FM::WCStPath &path) {
    return WritePresetsFile(path, list);
}

WTErr CPresetAPI::CreatePresetFile(const FM::WCStPath &path) {
    return WritePresetsFile(path, {});
}

WTErr CPresetAPI::CreateNewPresetsFile(const CPublicAlg &, CPresetsFileInfo &file,
                                       const FM::WCStPath &path) {
    // Without a path the user would choose one in a save dialog.
    if (!path.IsValid() || path.GetPathString().empty())
        return eNotImplemented;
    if (const WTErr error = CreatePresetFile(path); error != eNoErr)
        return error;
    static_cast<FM::WCStPath &>(file) = path;
    file.m_Format = ePresetsFormatXMLFile;
    return eNoErr;
}

WTErr CPresetAPI::RemovePresetInfo(const CPublicAlg &alg, const CPresetInfo &info) {
    if (info.IsLocked())
        return ePresetLockedProblem;
    if (!info.IsValidPresetFile())
        return ePresetFileProblem;
    if (info.m_Format != ePresetsFormatXMLFile)
        return eInvalidFileFormatProblem;
    return RemovePresetInfo_XML(alg, info);
}

WTErr CPresetAPI::RemovePresetInfo_XML(const CPublicAlg &alg, const CPresetInfo &info) {
    try {
        XML::CXMLElement root;
        if (const WTErr error = LoadPresetTree(&alg, info, nullptr, kNoResourceID, root);
            error != eNoErr)
            return error;
        if (const WTErr error = RemovePresetInfoXMLTree(alg, info, root); error != eNoErr)
            return error;
        root.SetName(kPresetFileRoot);
        root.SetAttrib("version", kDocumentVersion);
        return WriteTree(root, info);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::RemovePresetInfoXMLTree(const CPublicAlg &alg, const CPresetInfo &info,
                                          XML::CXMLElement &root) {
    XML::CXMLElement *preset =
        FindPreset(alg, root, info.m_PresetName.c_str(), WCFourCC::Unreadable());
    if (preset == nullptr)
        return ePresetInfoNotFound;
    auto &children = root.GetSubElements();
    children.erase(std::find(children.begin(), children.end(), preset));
    delete preset;
    return eNoErr;
}

WTErr CPresetAPI::EditPresetSpecificInfo(const CPublicAlg &alg, const CPresetInfo &info) {
    if (const WTErr error = CheckWritableFile(info); error != eNoErr)
        return error;
    if (info.m_Format != ePresetsFormatXMLFile)
        return eInvalidFileFormatProblem;
    try {
        XML::CXMLElement root;
        if (const WTErr error = LoadPresetTree(&alg, info, nullptr, kNoResourceID, root);
            error != eNoErr)
            return error;
        XML::CXMLElement *preset =
            FindPreset(alg, root, info.m_PresetName.c_str(), WCFourCC::Unreadable());
        if (preset == nullptr)
            return ePresetInfoNotFound;
        CPresetInfo stored(static_cast<const CPresetsFileInfo &>(info));
        std::string version;
        if (root.GetAttrib("version", version))
            AssignPresetText(stored.m_PresetVersion, version);
        if (const WTErr error = ReadHeadersFromXML_CPresetInfo(preset, stored); error != eNoErr)
            return error;
        stored.SetAllLoadFlags(true);
        if (const WTErr error = ReadDataFromXML_CPresetInfo(preset, stored); error != eNoErr)
            return error;
        for (const auto &edited : info.m_Data) {
            sPresetData *target = stored.GetData(edited->m_Setup);
            if (target == nullptr || target->m_Setup != edited->m_Setup)
                continue;
            sPresetData copy(*edited);
            target->m_PluginSpecific = std::move(copy.m_PluginSpecific);
            target->m_PluginSpecificXML = std::move(copy.m_PluginSpecificXML);
        }
        WSPresetWriteOptions options;
        options.m_PresetFile = &info;
        auto fresh = std::make_unique<XML::CXMLElement>();
        if (const WTErr error = WriteToXML_CPresetInfo(stored, *fresh, options); error != eNoErr)
            return error;
        ReplaceElement(root, preset, std::move(fresh));
        root.SetName(kPresetFileRoot);
        root.SetAttrib("version", kDocumentVersion);
        return WriteTree(root, info);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr CPresetAPI::ConvertFileToCurrFormat(const CPublicAlg &alg, CPresetsFileInfo &file) {
    if (file.IsLocked())
        return ePresetLockedProblem;
    if (!file.IsValidPresetFile())
        return ePresetFileProblem;
    if (file.m_Format != ePresetsFormatXMLFile)
        return eInvalidFileFormatProblem;
    try {
        XML::CXMLElement root;
        if (const WTErr error = LoadPresetTree(&alg, file, nullptr, kNoResourceID, root);
            error != eNoErr)
            return error;
        const std::string version = root.GetAttribString("version").c_str();
        WSPresetWriteOptions options;
        options.m_PresetFile = &file;
        // Only this plug-in's presets are brought up to date; every other entry stays as read.
        for (XML::CXMLElement *preset : std::vector<XML::CXMLElement *>(root.GetSubElements())) {
            if (preset->GetName() != "Preset")
                continue;
            WTFourCCList types, subComps;
            GetTypeAndSubCompVectors(*preset, types, subComps);
            if (!IsPresetCompatible(alg, alg.GetAlgType(), true, types, subComps))
                continue;
            CPresetInfo stored(file);
            AssignPresetText(stored.m_PresetVersion, version.empty() ? "None" : version);
            if (const WTErr error = ReadHeadersFromXML_CPresetInfo(preset, stored); error != eNoErr)
                return error;
            stored.SetAllLoadFlags(true);
            if (const WTErr error = ReadDataFromXML_CPresetInfo(preset, stored); error != eNoErr)
                return error;
            stored.m_PluginName = alg.GetAlgName();
            stored.m_PluginVersion = alg.GetAlgVersion();
            auto fresh = std::make_unique<XML::CXMLElement>();
            if (const WTErr error = WriteToXML_CPresetInfo(stored, *fresh, options);
                error != eNoErr)
                return error;
            ReplaceElement(root, preset, std::move(fresh));
        }
        root.SetName(kPresetFileRoot);
        root.SetAttrib("version", kDocumentVersion);
        if (const WTErr error = WriteTree(root, file); error != eNoErr)
            return error;
        file.m_Format = ePresetsFormatXMLFile;
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

} // namespace Preset

MIREL_NAMESPACE_END
