#include "Code/Presets/PresetDocuments.h"

#include <cstring>
#include <new>

#include <pugixml.hpp>

#include "Code/Presets/WUPresetFiles.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WCExpatXMLParser.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kDocumentVersion = "2";

// Copies a parsed element into the element world with the text rules of the expat tree builder
// (leading blanks dropped, the text trimmed and a quoted four-character code unquoted), so a
// preset reads the same whichever parser met it first. Deeper than the builder's limit is
// refused, as it refuses it.
bool CopyElement(const pugi::xml_node &node, XML::CXMLElement &element, std::int32_t depth) {
    if (depth > XML::WCExpatXMLParser::kDefaultDepthLimit)
        return false;
    element.SetName(node.name());
    for (const pugi::xml_attribute &attribute : node.attributes())
        element.AddAttrib(attribute.name(), attribute.value());
    for (const pugi::xml_node &child : node.children()) {
        switch (child.type()) {
        case pugi::node_element:
            if (!CopyElement(child, *element.push_sub_element(new XML::CXMLElement), depth + 1))
                return false;
            break;
        case pugi::node_cdata: element.SetCDATA(true); [[fallthrough]];
        case pugi::node_pcdata: {
            const char *text = child.value();
            XML::WCExpatXMLParser::AppendElementText(element, text, std::strlen(text));
            break;
        }
        default: break;
        }
    }
    XML::WCExpatXMLParser::CloseElementText(element);
    element.SetError(eNoErr);
    return true;
}

} // namespace

// Preset documents and chunks are parsed by pugixml, several times faster than the expat
// builder on the long value texts of a large plug-in, and copied into the element tree the
// preset readers work on.
WTErr BuildPresetTree(const char *text, std::uint64_t length, XML::CXMLElement &root) {
    if (text == nullptr || length == 0)
        return ePresetFileProblem;
    pugi::xml_document document;
    if (!document.load_buffer(text, length, pugi::parse_default, pugi::encoding_auto))
        return ePresetFileProblem;
    const pugi::xml_node top = document.document_element();
    XML::CXMLElement read;
    if (!top || !CopyElement(top, read, 1))
        return ePresetFileProblem;
    root = std::move(read);
    return eNoErr;
}

namespace {

WTErr BuildDocument(const std::vector<const CPresetInfo *> &list, const char *rootName,
                    const WSPresetWriteOptions &options, XML::CXMLElement &root) {
    root.SetName(rootName);
    root.AddAttrib("version", kDocumentVersion);
    WTErr firstError = eNoErr;
    for (const CPresetInfo *info : list) {
        if (info == nullptr)
            continue;
        const WTErr error =
            WriteToXML_CPresetInfo(*info, *root.push_sub_element(new XML::CXMLElement), options);
        if (firstError == eNoErr)
            firstError = error;
    }
    return firstError;
}

} // namespace

WTErr WritePresetsToXMLString(const std::vector<const CPresetInfo *> &list, const char *rootName,
                              std::string &text, const WSPresetWriteOptions &options) {
    try {
        XML::CXMLElement root;
        const WTErr error = BuildDocument(list, rootName, options, root);
        if (error != eNoErr)
            return error;
        return XML::CXMLTreeBuilder(root).WriteToString(text);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr ReadPresetsFromXMLText(const char *text, std::uint64_t length, const CPresetsFileInfo &file,
                             WTPresetList &list, bool withData) {
    try {
        XML::CXMLElement root;
        if (const WTErr error = BuildPresetTree(text, length, root); error != eNoErr)
            return error;
        if (root.GetName() != kPresetFileRoot && root.GetName() != kPresetChunkRoot)
            return ePresetFileProblem;
        WCFixedString<127> version("None");
        if (std::string value; root.GetAttrib("version", value))
            AssignPresetText(version, value);
        WTPresetList read;
        std::int64_t counter = 0;
        for (const XML::CXMLElement *child : root.GetSubElements()) {
            auto info = std::make_unique<CPresetInfo>(file);
            info->m_PresetVersion = version;
            const auto &name = child->GetName();
            if (name == "Preset") {
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
                info->m_PresetName = "Separator";
                info->m_Flags |= ePresetFlagSeparator;
                std::string types;
                if (child->GetAttrib("GenericType", types) && types.size() == 4)
                    info->m_GenericType = WCFourCC(types[0], types[1], types[2], types[3]);
                if (std::string subComp; child->GetAttrib("SubComp", subComp))
                    AssignPresetText(info->m_PluginSubComp, subComp);
            } else {
                continue;
            }
            if (info->m_IndexInList == -1)
                info->m_IndexInList = counter;
            ++counter;
            read.push_back(std::move(info));
        }
        list = std::move(read);
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr WritePresetsFile(const FM::WCStPath &path, const std::vector<const CPresetInfo *> &list) {
    try {
        XML::CXMLElement root;
        WSPresetWriteOptions options;
        options.m_PresetFile = &path;
        const WTErr error = BuildDocument(list, kPresetFileRoot, options, root);
        if (error != eNoErr)
            return error;
        std::string text;
        if (const WTErr written = XML::CXMLTreeBuilder(root).WriteToString(text); written != eNoErr)
            return written;
        return WritePresetFileBytes(path, text.data(), text.size());
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr ReadPresetsFile(const CPresetsFileInfo &file, WTPresetList &list, bool withData) {
    std::string text;
    if (const WTErr error = ReadPresetFileText(file, text); error != eNoErr)
        return error;
    return ReadPresetsFromXMLText(text.data(), text.size(), file, list, withData);
}

WTErr WritePresetChunk(const CPresetInfo &info, Utils::WCStMemObj &chunk) {
    std::string text;
    WSPresetWriteOptions options;
    options.m_AsChunk = true;
    if (const WTErr error = WritePresetsToXMLString({&info}, kPresetChunkRoot, text, options);
        error != eNoErr)
        return error;
    if (text.empty())
        return kErrPresetChunkEmpty;
    return chunk.Assign(text.data(), text.size());
}

WTErr ReadPresetChunk(const Utils::WCStConstMemObj &chunk, CPresetInfo &info) {
    if (chunk.Empty())
        return ePresetFileProblem;
    try {
        XML::CXMLElement root;
        if (const WTErr error =
                BuildPresetTree(static_cast<const char *>(chunk.GetPtr()), chunk.GetSize(), root);
            error != eNoErr)
            return error;
        if (root.GetName() != kPresetChunkRoot && root.GetName() != kPresetFileRoot)
            return ePresetFileProblem;
        const XML::CXMLElement *preset = root.SubElement("Preset");
        if (preset == nullptr)
            return ePresetInfoNotFound;
        CPresetInfo read(static_cast<const CPresetsFileInfo &>(info));
        read.m_Format = ePresetsFormatXMLString;
        read.m_PresetVersion = "None";
        if (std::string value; root.GetAttrib("version", value))
            AssignPresetText(read.m_PresetVersion, value);
        if (const WTErr error = ReadHeadersFromXML_CPresetInfo(preset, read); error != eNoErr)
            return error;
        read.SetAllLoadFlags(true);
        if (const WTErr error = ReadDataFromXML_CPresetInfo(preset, read); error != eNoErr)
            return error;
        info.TakeOver(read);
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr GetChunkFromPreset(WCFourCC id, const CPresetInfo &info, Utils::WCStMemObj &chunk) {
    if (id == kChunkPreferences) {
        chunk.ResizePtr(0);
        return eNoErr;
    }
    if (id != kChunkWholeState && id != kChunkCurrentSetup)
        return kErrUnknownChunkID;
    Utils::WCStMemObj text;
    if (const WTErr error = WritePresetChunk(info, text); error != eNoErr)
        return error;
    chunk.TakeOver(text);
    return eNoErr;
}

WTErr SetChunkToPreset(WCFourCC id, const Utils::WCStConstMemObj &chunk, CPresetInfo &info) {
    if (id == kChunkPreferences)
        return eNoErr;
    if (id != kChunkWholeState && id != kChunkCurrentSetup)
        return kErrUnknownChunkID;
    return ReadPresetChunk(chunk, info);
}

} // namespace Preset

MIREL_NAMESPACE_END
