#include "Code/Presets/sPluginSpecific.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <new>

#include "Code/Presets/WUPresetFiles.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/CXMLTreeBuilder.h"
#include "Utilities/XML/Code/WriteXMLToStream.h"
#include "Utilities/XML/Code/XMLHelpers.h"
#include "core/WUBase64.h"
#include "files/WCStCachePath.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

// Base64 goes through a fixed string, so large blocks are encoded in slices of whole triplets.
constexpr std::uint64_t kBase64SliceBytes = 3 * 1024;

bool HasCacheFileType(EPluginSpecificDataTypes type) noexcept {
    return type != ePSNoData && type != ePSXMLObject;
}

bool IsOnlyDecimalText(const char *text) noexcept {
    return text != nullptr && *text != 0 && text[std::strspn(text, "0123456789,.")] == 0;
}

template <typename T>
WTErr AssignVector(Utils::WCStMemObj &target, const std::vector<T> &values) {
    return target.Assign(values.data(), values.size() * sizeof(T));
}

template <typename T>
std::vector<T> VectorOf(const Utils::WCStConstMemObj &data) {
    std::vector<T> values(data.GetSize() / sizeof(T));
    if (!values.empty())
        std::memcpy(values.data(), data.GetPtr(), values.size() * sizeof(T));
    return values;
}

std::string Base64Text(const Utils::WCStConstMemObj &data) {
    std::string text;
    const auto *bytes = static_cast<const unsigned char *>(data.GetPtr());
    for (std::uint64_t at = 0; at < data.GetSize(); at += kBase64SliceBytes) {
        const std::uint64_t count = std::min(kBase64SliceBytes, data.GetSize() - at);
        WCFixedString<Utils::Base64EncodedLength(kBase64SliceBytes)> slice;
        Utils::Base64Encode(bytes + at, count, slice);
        text.append(slice.c_str(), slice.size());
    }
    return text;
}

// An attribute into a fixed string, cut at a character boundary.
bool ReadAttribText(const XML::CXMLElement &element, const char *name, WCFixedStringBase &target) {
    std::string value;
    if (!element.GetAttrib(name, value))
        return false;
    AssignPresetText(target, value);
    return true;
}

// One "Descriptor" value: a number written with a comma as decimal mark reads as one.
void ReadDescriptorValue(const std::string &text, WCFixedStringBase &value) {
    AssignPresetText(value, text);
    if (IsOnlyDecimalText(value.c_str()))
        value.replace(',', '.');
}

} // namespace

sPluginSpecific::sPluginSpecific(const sPluginSpecific &other)
    : CXMLable(other), m_Flags(other.m_Flags), m_TagName(other.m_TagName),
      m_MenuItemString(other.m_MenuItemString), m_TagID(other.m_TagID),
      m_DataType(other.m_DataType), m_Data(other.m_Data),
      m_XMLData(other.m_XMLData ? std::make_unique<XML::CXMLElement>(*other.m_XMLData) : nullptr),
      m_Descriptors(other.m_Descriptors), m_StorageFlags(other.m_StorageFlags),
      m_DataFileName(other.m_DataFileName), m_CacheFileName(other.m_CacheFileName),
      m_PresetFilePath(other.m_PresetFilePath) {}

sPluginSpecific &sPluginSpecific::operator=(const sPluginSpecific &other) {
    if (this != &other) {
        sPluginSpecific copy(other);
        *this = std::move(copy);
    }
    return *this;
}

sPluginSpecific::~sPluginSpecific() = default;

FM::WCStPath sPluginSpecific::SideFilePath(const WCFixedStringBase &nameTemplate) const {
    if (nameTemplate.size() == 0 || !m_PresetFilePath.IsValid())
        return FM::WCStPath();
    std::string name(nameTemplate.c_str());
    const std::size_t word = name.find("data");
    if (word != std::string::npos)
        name.replace(word, 4, m_PresetFilePath.GetBase().c_str());
    // A name from a file must not lead out of the preset's folder.
    if (name.empty() || name.find('/') != std::string::npos || name == "." || name == "..")
        return FM::WCStPath();
    return FM::WCStPath(m_PresetFilePath.GetParent(), name.c_str());
}

FM::WCStPath sPluginSpecific::GetDataFilePath() const {
    if ((m_StorageFlags & eHasDataFile) == 0)
        return FM::WCStPath();
    return SideFilePath(m_DataFileName);
}

FM::WCStPath sPluginSpecific::GetCacheFilePath() const {
    if ((m_StorageFlags & eHasCacheFile) == 0)
        return FM::WCStPath();
    const FM::WCStPath beside = SideFilePath(m_CacheFileName);
    if (!beside.IsValid())
        return beside;
    return FM::WCStCachePath(beside);
}

WTErr sPluginSpecific::GetDataAsText(std::string &text) const {
    switch (m_DataType) {
    case ePSNoData: text.clear(); return eNoErr;
    case ePSBufferDouble: {
        const auto values = VectorOf<double>(m_Data);
        text = XML::FloatArrayToString(values.data(), values.size(), 10);
        return eNoErr;
    }
    case ePSBufferFloat: {
        const auto values = VectorOf<float>(m_Data);
        text = XML::FloatArrayToString(values.data(), values.size(), 10);
        return eNoErr;
    }
    case ePSBufferLong: {
        const auto values = VectorOf<int>(m_Data);
        text = XML::IntArrayToString(values.data(), values.size(), 10);
        return eNoErr;
    }
    case ePSBufferString:
    case ePSCharacterData:
        text.assign(static_cast<const char *>(m_Data.GetPtr()), m_Data.GetSize());
        return eNoErr;
    case ePSCompressedBase64: text = Base64Text(m_Data); return eNoErr;
    case ePSXMLObject:
        text.clear();
        if (m_XMLData)
            XML::WriteXMLToString(text, m_XMLData.get(), false, true, 0);
        return eNoErr;
    }
    return eDataFormatNotSupported;
}

WTErr sPluginSpecific::SetDataFromText(const std::string &text) {
    Utils::WCStMemObj data;
    WTErr error = eNoErr;
    switch (m_DataType) {
    case ePSNoData: break;
    case ePSBufferDouble: {
        std::vector<double> values;
        XML::ParseFloatVector(text.c_str(), values);
        error = AssignVector(data, values);
        break;
    }
    case ePSBufferFloat: {
        std::vector<float> values;
        XML::ParseFloatVector(text.c_str(), values);
        error = AssignVector(data, values);
        break;
    }
    case ePSBufferLong: {
        std::vector<int> values;
        XML::ParseIntVector(text.c_str(), values);
        error = AssignVector(data, values);
        break;
    }
    case ePSBufferString:
    case ePSCharacterData: error = data.Assign(text.data(), text.size()); break;
    case ePSCompressedBase64: {
        error = data.ResizePtr(text.size() / 4 * 3 + 3);
        std::uint64_t written = 0;
        if (error == eNoErr && Utils::Base64Decode(text.data(), text.size(),
                                                   static_cast<unsigned char *>(data.GetPtr()),
                                                   data.GetSize(), written) != eNoErr)
            error = ePresetFileProblem;
        if (error == eNoErr)
            error = data.ResizePtr(written);
        break;
    }
    case ePSXMLObject: {
        auto tree = std::make_unique<XML::CXMLElement>();
        XML::CXMLTreeBuilder builder(*tree);
        error = builder.BuildFromSingleBuffer(text.data(), text.size());
        if (error == eNoErr && !tree->IsValid())
            error = ePresetFileProblem;
        if (error == eNoErr && tree->GetName().size() == 0)
            error = eXMLElementMissing;
        if (error == eNoErr)
            m_XMLData = std::move(tree);
        return error;
    }
    default: return eDataFormatNotSupported;
    }
    if (error == eNoErr)
        Utils::WCStMemObj::Swap(m_Data, data);
    return error;
}

WTErr sPluginSpecific::ReadFromXML_One_Data(const XML::CXMLElement *const dataElement) {
    if (dataElement == nullptr)
        return eXMLElementMissing;
    if (m_DataType < ePSNoData || m_DataType > ePSCharacterData)
        return eDataFormatNotSupported;
    const FM::WCStPath dataFile = GetDataFilePath();
    const FM::WCStPath cacheFile =
        HasCacheFileType(m_DataType) ? GetCacheFilePath() : FM::WCStPath();

    // A cache newer than everything it was made from stands for them.
    if (cacheFile.IsValid() && cacheFile.IsFile()) {
        std::time_t cacheTime = 0, presetTime = 0, dataTime = 0;
        const bool fresh =
            cacheFile.GetFileLastWriteTime(cacheTime) == eNoErr &&
            m_PresetFilePath.GetFileLastWriteTime(presetTime) == eNoErr && cacheTime > presetTime &&
            (!dataFile.IsValid() ||
             (dataFile.GetFileLastWriteTime(dataTime) == eNoErr && cacheTime > dataTime));
        std::string bytes;
        if (fresh && ReadPresetFileText(cacheFile, bytes) == eNoErr)
            return m_Data.Assign(bytes.data(), bytes.size());
    }

    sPluginSpecific read(*this);
    WTErr error = eNoErr;
    if (dataFile.IsValid()) {
        std::string text;
        error = ReadPresetFileText(dataFile, text);
        if (error == eNoErr)
            error = read.SetDataFromText(text);
    } else if (m_DataType == ePSXMLObject && dataElement->GetText().empty()) {
        const auto &children = dataElement->GetSubElements();
        if (children.empty() || children.front()->GetName().size() == 0)
            return eXMLElementMissing;
        read.m_XMLData = std::make_unique<XML::CXMLElement>(*children.front());
    } else {
        error = read.SetDataFromText(dataElement->GetText());
    }
    if (error != eNoErr)
        return error;
    *this = std::move(read);
    // A cache that cannot be written only costs the next load its speed.
    if (cacheFile.IsValid())
        WritePresetFileBytes(cacheFile, m_Data.GetPtr(), m_Data.GetSize());
    return eNoErr;
}

WTErr sPluginSpecific::ReadHeaderFromXML(const XML::CXMLElement *const element) {
    if (element == nullptr)
        return eXMLElementMissing;
    sPluginSpecific read;
    read.m_PresetFilePath = m_PresetFilePath;
    ReadAttribText(*element, "TagName", read.m_TagName);
    if (!ReadAttribText(*element, "MenuItemString", read.m_MenuItemString))
        read.m_MenuItemString = read.m_TagName;
    element->GetAttrib("TagID", read.m_TagID);
    WCFixedString<63> word;
    element->GetAttrib("DataType", word);
    read.m_DataType = GetPluginSpecificDataTypeFromWord(word.c_str());
    if (const XML::CXMLElement *flags = element->SubElement("Flags");
        flags != nullptr && !flags->GetSubElements().empty())
        read.m_Flags |= eLoadWithParams;
    if (const XML::CXMLElement *descriptors = element->SubElement("Descriptors")) {
        for (const XML::CXMLElement *descriptor : descriptors->GetSubElements()) {
            if (descriptor->GetName() != "Descriptor")
                continue;
            WCFixedStringPair<63, 1023> pair;
            ReadAttribText(*descriptor, "Name", pair.first);
            ReadDescriptorValue(descriptor->GetText(), pair.second);
            read.m_Descriptors.push_back(pair);
        }
    }
    if (const XML::CXMLElement *data = element->SubElement("Data")) {
        if (ReadAttribText(*data, "file", read.m_DataFileName))
            read.m_StorageFlags |= eHasDataFile;
        if (ReadAttribText(*data, "cache", read.m_CacheFileName))
            read.m_StorageFlags |= eHasCacheFile;
        if (data->AttribExists("load_with_params"))
            read.m_StorageFlags |= eLoadDataFileWithParams;
    }
    *this = std::move(read);
    return eNoErr;
}

WTErr sPluginSpecific::ReadFromXML(const XML::CXMLElement *const element) {
    sPluginSpecific read(*this);
    WTErr error = read.ReadHeaderFromXML(element);
    const XML::CXMLElement *data = element != nullptr ? element->SubElement("Data") : nullptr;
    if (error == eNoErr && data != nullptr)
        error = read.ReadFromXML_One_Data(data);
    if (error == eNoErr)
        *this = std::move(read);
    return error;
}

XML::CXMLElement *sPluginSpecific::WriteToXML(XML::CXMLElement *element) const {
    if (element == nullptr)
        return element;
    element->SetName("PluginSpecific");
    element->AddAttrib("TagName", m_TagName.c_str());
    element->AddAttrib("MenuItemString", m_MenuItemString.c_str());
    element->AddAttrib("TagID", m_TagID);
    element->AddAttrib("DataType", GetPluginSpecificDataTypeWord(m_DataType));
    auto *flags = element->push_sub_element(new XML::CXMLElement("Flags"));
    if (m_Flags & eLoadWithParams)
        flags->push_back(new XML::CXMLElement("load_with_params"));
    if (!m_Descriptors.empty()) {
        auto *descriptors = element->push_sub_element(new XML::CXMLElement("Descriptors"));
        for (const auto &pair : m_Descriptors) {
            auto *descriptor = descriptors->push_sub_element(
                new XML::CXMLElement("Descriptor", pair.second.c_str()));
            descriptor->AddAttrib("Name", pair.first.c_str());
        }
    }
    // A tree block without its tree has nothing to say, and an empty "Data" of that type reads
    // as a missing tree, so the element is left out.
    if (m_DataType == ePSXMLObject && !m_XMLData && (m_StorageFlags & eHasDataFile) == 0)
        return element;
    auto *data = element->push_sub_element(new XML::CXMLElement("Data"));
    if (m_StorageFlags & eHasDataFile)
        data->AddAttrib("file", m_DataFileName.c_str());
    if (m_StorageFlags & eHasCacheFile)
        data->AddAttrib("cache", m_CacheFileName.c_str());
    if (m_StorageFlags & eLoadDataFileWithParams)
        data->AddAttrib("load_with_params", "true");
    if ((m_StorageFlags & eHasDataFile) == 0) {
        std::string text;
        GetDataAsText(text);
        data->SetText(std::move(text));
        data->SetCDATA(m_DataType == ePSCompressedBase64 || m_DataType == ePSXMLObject ||
                       m_DataType == ePSCharacterData);
    }
    return element;
}

WTErr sPluginSpecific::WriteSideFiles(const FM::WCStPath &presetFile) const {
    sPluginSpecific placed;
    placed.m_StorageFlags = m_StorageFlags;
    placed.m_DataFileName = m_DataFileName;
    placed.m_PresetFilePath = presetFile;
    const FM::WCStPath dataFile = placed.GetDataFilePath();
    if (!dataFile.IsValid())
        return eNoErr;
    std::string text;
    const WTErr error = GetDataAsText(text);
    if (error != eNoErr)
        return error;
    return WritePresetFileBytes(dataFile, text.data(), text.size());
}

bool sPluginSpecific::IsSameData(const sPluginSpecific &other) const {
    if (m_TagName != other.m_TagName || m_TagID != other.m_TagID ||
        m_DataType != other.m_DataType || !(m_Data == other.m_Data) ||
        m_Descriptors.size() != other.m_Descriptors.size())
        return false;
    for (std::size_t i = 0; i < m_Descriptors.size(); ++i) {
        if (m_Descriptors[i].first != other.m_Descriptors[i].first ||
            m_Descriptors[i].second != other.m_Descriptors[i].second)
            return false;
    }
    if (m_DataType != ePSXMLObject)
        return true;
    std::string mine, theirs;
    GetDataAsText(mine);
    other.GetDataAsText(theirs);
    return mine == theirs;
}

} // namespace Preset

MIREL_NAMESPACE_END
