#include "Code/Presets/CPresetInfo.h"

#include <cstring>
#include <utility>

#include "Utilities/XML/Code/CXMLElement.h"
#include "core/WCVersion.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kDefaultResourceType = "Presets";

template <typename From, typename To>
void ConvertNumbers(const Utils::WCStConstMemObj &data, void *buffer, std::uint64_t count) {
    const auto *from = static_cast<const From *>(data.GetPtr());
    auto *to = static_cast<To *>(buffer);
    for (std::uint64_t i = 0; i < count; ++i) {
        From value;
        std::memcpy(&value, from + i, sizeof(From));
        const To converted = static_cast<To>(value);
        std::memcpy(to + i, &converted, sizeof(To));
    }
}

std::uint64_t NumberSize(EPluginSpecificDataTypes type) noexcept {
    switch (type) {
    case ePSBufferDouble: return sizeof(double);
    case ePSBufferFloat: return sizeof(float);
    case ePSBufferLong: return sizeof(std::int32_t);
    default: return 0;
    }
}

template <typename From>
void ConvertFrom(const Utils::WCStConstMemObj &data, EPluginSpecificDataTypes asType, void *buffer,
                 std::uint64_t count) {
    switch (asType) {
    case ePSBufferDouble: ConvertNumbers<From, double>(data, buffer, count); break;
    case ePSBufferFloat: ConvertNumbers<From, float>(data, buffer, count); break;
    default: ConvertNumbers<From, std::int32_t>(data, buffer, count); break;
    }
}

// The raw-buffer read: bytes as they are, or numbers converted to the asked type.
WTErr CopyBlockData(const sPluginSpecific &block, void *buffer, std::uint64_t &ioSize,
                    EPluginSpecificDataTypes asType) {
    const std::uint64_t fromSize = NumberSize(block.m_DataType);
    const std::uint64_t toSize = NumberSize(asType);
    if (fromSize == 0 || toSize == 0 || block.m_DataType == asType) {
        if (ioSize < block.m_Data.GetSize())
            return eBuffSizeToSmall;
        if (block.m_Data.GetSize() != 0)
            std::memcpy(buffer, block.m_Data.GetPtr(), block.m_Data.GetSize());
        ioSize = block.m_Data.GetSize();
        return eNoErr;
    }
    const std::uint64_t count = block.m_Data.GetSize() / fromSize;
    if (ioSize < count * toSize)
        return eBuffSizeToSmall;
    switch (block.m_DataType) {
    case ePSBufferDouble: ConvertFrom<double>(block.m_Data, asType, buffer, count); break;
    case ePSBufferFloat: ConvertFrom<float>(block.m_Data, asType, buffer, count); break;
    default: ConvertFrom<std::int32_t>(block.m_Data, asType, buffer, count); break;
    }
    ioSize = count * toSize;
    return eNoErr;
}

WTErr GetTree(const sPluginSpecific *block, XML::CXMLElement *&tree) {
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    if (block->m_DataType != ePSXMLObject || !block->m_XMLData)
        return eDataFormatNotSupported;
    tree = block->m_XMLData.get();
    return eNoErr;
}

WTErr GetText(const sPluginSpecific *block, WCFixedStringBase &text) {
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    std::string whole;
    const WTErr error = block->GetDataAsText(whole);
    if (error == eNoErr)
        text = std::string_view(whole);
    return error;
}

WTErr GetBytes(const sPluginSpecific *block, Utils::WCStMemObj &data) {
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    return data.Assign(block->m_Data.GetPtr(), block->m_Data.GetSize());
}

WTErr GetDescriptor(const sPluginSpecific *block, const char *name, WCFixedStringBase &value) {
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    for (const auto &pair : block->m_Descriptors) {
        if (name != nullptr && pair.first == name) {
            value = pair.second;
            return eNoErr;
        }
    }
    return eValueNotFound;
}

} // namespace

CPresetInfo::CPresetInfo() {
    MembersDefaults();
}

CPresetInfo::CPresetInfo(const CPresetsFileInfo &file) : CPresetsFileInfo(file) {
    MembersDefaults();
}

CPresetInfo::CPresetInfo(const CPresetInfo &other) : CPresetsFileInfo(other) {
    CopyFields(other);
    m_Data.reserve(other.m_Data.size());
    for (const auto &data : other.m_Data)
        m_Data.push_back(std::make_unique<sPresetData>(*data));
}

CPresetInfo &CPresetInfo::operator=(const CPresetInfo &other) {
    if (this != &other) {
        CPresetInfo copy(other);
        *this = std::move(copy);
    }
    return *this;
}

CPresetInfo::CPresetInfo(CPresetInfo &&other) noexcept
    : CPresetsFileInfo(std::move(other)), m_Data(std::move(other.m_Data)) {
    CopyFields(other);
    m_TagMap = std::move(other.m_TagMap);
}

CPresetInfo &CPresetInfo::operator=(CPresetInfo &&other) noexcept {
    if (this != &other) {
        CPresetsFileInfo::operator=(std::move(other));
        m_Data = std::move(other.m_Data);
        CopyFields(other);
        m_TagMap = std::move(other.m_TagMap);
    }
    return *this;
}

CPresetInfo::~CPresetInfo() = default;

void CPresetInfo::CopyFields(const CPresetInfo &other) {
    m_PresetName = other.m_PresetName;
    m_PresetVersion = other.m_PresetVersion;
    m_Flags = other.m_Flags;
    m_Action = other.m_Action;
    m_GroupName = other.m_GroupName;
    m_CategoryString = other.m_CategoryString;
    m_PluginName = other.m_PluginName;
    m_PluginSubComp = other.m_PluginSubComp;
    m_PluginVersion = other.m_PluginVersion;
    m_InfoString = other.m_InfoString;
    m_ActiveSetup = other.m_ActiveSetup;
    m_ShellMessage = other.m_ShellMessage;
    m_IndexInList = other.m_IndexInList;
    m_GenericType = other.m_GenericType;
    m_ChosenMenuItemType = other.m_ChosenMenuItemType;
    m_ResourceType = other.m_ResourceType;
    m_ResourceID = other.m_ResourceID;
    m_SideChainActive = other.m_SideChainActive;
    m_ExternalFilePath = other.m_ExternalFilePath;
    m_TagMap = other.m_TagMap;
}

void CPresetInfo::MembersDefaults() {
    m_Data.clear();
    m_PresetName.clear();
    m_PresetVersion.clear();
    m_Flags = 0;
    m_Action.clear();
    m_GroupName.clear();
    m_CategoryString.clear();
    m_PluginName.clear();
    m_PluginSubComp.clear();
    m_PluginVersion.clear();
    m_InfoString.clear();
    m_ActiveSetup.clear();
    m_ShellMessage.clear();
    m_IndexInList = -1;
    m_GenericType = WCFourCC::Unreadable();
    m_ChosenMenuItemType = eMenuItemNone;
    m_ResourceType = kDefaultResourceType;
    m_ResourceID = -1;
    m_SideChainActive = kSideChainNotStored;
    m_ExternalFilePath = FM::WCStPath();
    m_TagMap.clear();
}

void CPresetInfo::TakeOver(CPresetInfo &other) noexcept {
    if (this == &other)
        return;
    *this = std::move(other);
    other.FileInfoDefaults();
    other.MembersDefaults();
}

bool CPresetInfo::IsMIDI() const noexcept {
    return m_PresetName.size() >= 7 && m_PresetName.ends_with(" [MIDI]");
}

bool CPresetInfo::IsLessVersion(const char *version, unsigned int fieldCount) const noexcept {
    return WCVersion::less(WCVersion(m_PluginVersion.c_str()), WCVersion(version), fieldCount);
}

void CPresetInfo::SetAllLoadFlags(bool load) noexcept {
    for (auto &data : m_Data)
        data->SetLoadFlags(load, load);
}

sPresetData *CPresetInfo::GetData(EPluginSetup setup) const noexcept {
    for (const auto &data : m_Data) {
        if (data->m_Setup == setup)
            return data.get();
    }
    // A preset of one setup keeps it as "CURRENT", which stands for whichever setup is asked.
    if (setup == eCurrentSetup && !m_Data.empty())
        return m_Data.front().get();
    return nullptr;
}

sPresetData &CPresetInfo::GetOrAddData(EPluginSetup setup) {
    if (sPresetData *data = GetData(setup))
        return *data;
    m_Data.push_back(std::make_unique<sPresetData>());
    m_Data.back()->m_Setup = setup;
    return *m_Data.back();
}

WTErr CPresetInfo::AddPluginSpecifcData(const void *data, std::uint64_t size, const char *tag,
                                        int id, EPluginSpecificDataTypes type, EPluginSetup setup,
                                        std::uint32_t flags, const char *menuItem) {
    if (tag == nullptr || *tag == 0 || (data == nullptr && size != 0))
        return eMemNullPointer;
    if (type < ePSNoData || type > ePSCharacterData || type == ePSXMLObject)
        return eDataFormatNotSupported;
    if (FindPluginSpecific_Tag(tag, setup) != nullptr)
        return eDuplicatePluginSpecificTag;
    auto block = std::make_unique<sPluginSpecific>();
    block->m_TagName = tag;
    block->m_MenuItemString = menuItem != nullptr ? menuItem : tag;
    block->m_TagID = id;
    block->m_DataType = type;
    block->m_Flags = flags;
    block->m_PresetFilePath = *this;
    if (const WTErr error = block->m_Data.Assign(data, size); error != eNoErr)
        return error;
    GetOrAddData(setup).m_PluginSpecific.push_back(std::move(block));
    m_TagMap[tag] = id;
    return eNoErr;
}

WTErr CPresetInfo::AddPluginSpecifcData(const XML::CXMLElement &tree, const char *tag, int id,
                                        EPluginSetup setup, std::uint32_t flags) {
    if (tree.GetName().empty())
        return eXMLElementMissing;
    const WTErr error = AddPluginSpecifcData(nullptr, 0, tag, id, ePSNoData, setup, flags);
    if (error != eNoErr)
        return error;
    sPluginSpecific *block = FindPluginSpecific_Tag(tag, setup);
    block->m_DataType = ePSXMLObject;
    block->m_XMLData = std::make_unique<XML::CXMLElement>(tree);
    return eNoErr;
}

WTErr CPresetInfo::AddPluginSpecifcDescriptor_Tag(const char *tag, const char *name,
                                                  const char *value, EPluginSetup setup) {
    sPluginSpecific *block = FindPluginSpecific_Tag(tag, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    block->m_Descriptors.emplace_back(name != nullptr ? name : "", value != nullptr ? value : "");
    return eNoErr;
}

WTErr CPresetInfo::AddPluginSpecifcDescriptor_Index(std::uint64_t index, const char *name,
                                                    const char *value, EPluginSetup setup) {
    sPluginSpecific *block = FindPluginSpecific_Index(index, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    block->m_Descriptors.emplace_back(name != nullptr ? name : "", value != nullptr ? value : "");
    return eNoErr;
}

WTErr CPresetInfo::AddPluginSpecifcFlag(const char *tag, std::uint32_t flag, EPluginSetup setup) {
    sPluginSpecific *block = FindPluginSpecific_Tag(tag, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    block->m_Flags |= flag;
    return eNoErr;
}

sPluginSpecific *CPresetInfo::FindPluginSpecific_Tag(const char *tag,
                                                     EPluginSetup setup) const noexcept {
    const sPresetData *data = GetData(setup);
    if (data == nullptr || tag == nullptr)
        return nullptr;
    for (const auto &block : data->m_PluginSpecific) {
        if (block->m_TagName == tag)
            return block.get();
    }
    return nullptr;
}

sPluginSpecific *CPresetInfo::FindPluginSpecific_Tag(int id, EPluginSetup setup) const noexcept {
    const sPresetData *data = GetData(setup);
    if (data == nullptr)
        return nullptr;
    for (const auto &block : data->m_PluginSpecific) {
        if (block->m_TagID == id)
            return block.get();
    }
    return nullptr;
}

sPluginSpecific *CPresetInfo::FindPluginSpecific_Index(std::uint64_t index,
                                                       EPluginSetup setup) const noexcept {
    const sPresetData *data = GetData(setup);
    if (data == nullptr || index >= data->m_PluginSpecific.size())
        return nullptr;
    return data->m_PluginSpecific[index].get();
}

WTErr CPresetInfo::GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup,
                                             XML::CXMLElement *&tree) const {
    return GetTree(FindPluginSpecific_Tag(tag, setup), tree);
}

WTErr CPresetInfo::GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup,
                                             WCFixedStringBase &text) const {
    return GetText(FindPluginSpecific_Tag(tag, setup), text);
}

WTErr CPresetInfo::GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup,
                                             Utils::WCStMemObj &data) const {
    return GetBytes(FindPluginSpecific_Tag(tag, setup), data);
}

WTErr CPresetInfo::GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup, void *buffer,
                                             std::uint64_t &ioSize,
                                             EPluginSpecificDataTypes asType) const {
    const sPluginSpecific *block = FindPluginSpecific_Tag(tag, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    if (buffer == nullptr)
        return eMemNullPointer;
    return CopyBlockData(*block, buffer, ioSize, asType);
}

WTErr CPresetInfo::GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                               XML::CXMLElement *&tree) const {
    return GetTree(FindPluginSpecific_Index(index, setup), tree);
}

WTErr CPresetInfo::GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                               WCFixedStringBase &text) const {
    return GetText(FindPluginSpecific_Index(index, setup), text);
}

WTErr CPresetInfo::GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                               Utils::WCStMemObj &data) const {
    return GetBytes(FindPluginSpecific_Index(index, setup), data);
}

WTErr CPresetInfo::GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                               void *buffer, std::uint64_t &ioSize,
                                               EPluginSpecificDataTypes asType) const {
    const sPluginSpecific *block = FindPluginSpecific_Index(index, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    if (buffer == nullptr)
        return eMemNullPointer;
    return CopyBlockData(*block, buffer, ioSize, asType);
}

WTErr CPresetInfo::GetPluginSpecificDescriptor_Tag(const char *tag, const char *name,
                                                   EPluginSetup setup,
                                                   WCFixedStringBase &value) const {
    return GetDescriptor(FindPluginSpecific_Tag(tag, setup), name, value);
}

WTErr CPresetInfo::GetPluginSpecificDescriptor_Index(std::uint64_t index, const char *name,
                                                     EPluginSetup setup,
                                                     WCFixedStringBase &value) const {
    return GetDescriptor(FindPluginSpecific_Index(index, setup), name, value);
}

WTErr CPresetInfo::GetPluginSpecificName_Tag(int id, EPluginSetup setup,
                                             WCFixedStringBase &name) const {
    const sPluginSpecific *block = FindPluginSpecific_Tag(id, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    name = block->m_TagName;
    return eNoErr;
}

WTErr CPresetInfo::GetPluginSpecificName_Index(std::uint64_t index, EPluginSetup setup,
                                               WCFixedStringBase &name) const {
    const sPluginSpecific *block = FindPluginSpecific_Index(index, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    name = block->m_TagName;
    return eNoErr;
}

WTErr CPresetInfo::GetPluginSpecificMenuItemString_Index(std::uint64_t index, EPluginSetup setup,
                                                         WCFixedStringBase &text) const {
    const sPluginSpecific *block = FindPluginSpecific_Index(index, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    text = block->m_MenuItemString;
    return eNoErr;
}

WTErr CPresetInfo::SetPluginSpecificMenuItemString_Index(std::uint64_t index, EPluginSetup setup,
                                                         const char *text) {
    sPluginSpecific *block = FindPluginSpecific_Index(index, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    block->m_MenuItemString = text != nullptr ? text : "";
    return eNoErr;
}

std::uint64_t CPresetInfo::GetNumPluginSpecificData(EPluginSetup setup) const noexcept {
    const sPresetData *data = GetData(setup);
    return data != nullptr ? data->m_PluginSpecific.size() : 0;
}

WTErr CPresetInfo::RemovePluginSpecificData(std::uint64_t index, EPluginSetup setup) {
    sPresetData *data = GetData(setup);
    if (data == nullptr || index >= data->m_PluginSpecific.size())
        return ePluginSpecifcNotExisting;
    data->m_PluginSpecific.erase(data->m_PluginSpecific.begin() + std::int64_t(index));
    return eNoErr;
}

bool CPresetInfo::IsSamePreset(const CPresetInfo &a, const CPresetInfo &b, bool compareNames) {
    if (compareNames && !IsSamePresetName(a, b))
        return false;
    const bool secondCounts = a.m_ActiveSetup == "SETUP_B";
    auto counted = [&](const CPresetInfo &info) {
        std::vector<const sPresetData *> list;
        for (const auto &data : info.m_Data) {
            if (data->m_Setup != eSetupB || secondCounts)
                list.push_back(data.get());
        }
        return list;
    };
    const auto mine = counted(a);
    const auto theirs = counted(b);
    if (mine.size() != theirs.size())
        return false;
    for (std::size_t i = 0; i < mine.size(); ++i) {
        if (!mine[i]->IsSameData(*theirs[i]))
            return false;
    }
    return true;
}

} // namespace Preset

MIREL_NAMESPACE_END
