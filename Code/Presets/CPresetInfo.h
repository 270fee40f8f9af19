#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Presets/CPresetsFileInfo.h"
#include "Code/Presets/WTPresetTypes.h"
#include "Code/Presets/sPresetData.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCStMemObj.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace Preset {

// One named preset: its header (names, versions, flags, where it came from) and the data of one
// or both setups, which it owns. Copies are deep; TakeOver moves the data of another preset in.
// The plug-in specific families address a block by tag name or id, or by its index in a setup;
// setup eCurrentSetup means the data stored for "CURRENT", else the first data.
// [main-thread], or the host's chunk thread under the algorithm's lock.
class CPresetInfo : public CPresetsFileInfo {
public:
    CPresetInfo();
    explicit CPresetInfo(const CPresetsFileInfo &file);
    CPresetInfo(const CPresetInfo &other);
    CPresetInfo &operator=(const CPresetInfo &other);
    CPresetInfo(CPresetInfo &&other) noexcept;
    CPresetInfo &operator=(CPresetInfo &&other) noexcept;
    ~CPresetInfo();

    // Restores every field of the preset (not of the file) and drops the data.
    void MembersDefaults();
    void ClearData() noexcept { m_Data.clear(); }
    // Moves all data and fields out of `other`, which is left with defaults.
    void TakeOver(CPresetInfo &other) noexcept;

    bool IsSeperator() const noexcept { return (m_Flags & ePresetFlagSeparator) != 0; }
    bool IsDummyTitle() const noexcept { return (m_Flags & ePresetFlagDummyTitle) != 0; }
    bool IsDisabled() const noexcept { return (m_Flags & ePresetFlagDisabled) != 0; }
    bool IsLocked() const {
        return (m_Flags & ePresetFlagLocked) != 0 || CPresetsFileInfo::IsLocked();
    }
    bool IsReadOnly() const noexcept {
        return (m_Flags & ePresetFlagReadOnly) != 0 || m_ReadOnly != 0;
    }
    bool IsLoadedFromHost() const noexcept { return m_Section == ePresetSectionHostPresetChunk; }
    bool IsLoadedFromHostOrDefaultPreset() const noexcept {
        return m_Section == ePresetSectionHostPresetChunk || m_Section == ePresetSectionStartup;
    }
    bool IsFromFactoryOrDynamicFactorySections() const noexcept {
        return m_Section == ePresetSectionFactory || m_Section == ePresetSectionDynamicFactory;
    }
    // A MIDI map: the name ends in " [MIDI]".
    bool IsMIDI() const noexcept;
    // The stored plug-in version against `version`, over its first `fieldCount` fields.
    bool IsLessVersion(const char *version, unsigned int fieldCount) const noexcept;
    // Presets older than "11.0.0" read their numbers with WUAtof_Obsolete.
    bool IsStringToDoubleObsoleteVersion() const noexcept { return IsLessVersion("11.0.0", 3); }
    void SetAllLoadFlags(bool load) noexcept;

    // The data of `setup`, or null.
    sPresetData *GetData(EPluginSetup setup) const noexcept;
    // The data of `setup`, appended when missing.
    sPresetData &GetOrAddData(EPluginSetup setup);

    // Plug-in specific blocks. A second block of one tag in a setup is
    // eDuplicatePluginSpecificTag; a missing one ePluginSpecifcNotExisting.
    WTErr AddPluginSpecifcData(const void *data, std::uint64_t size, const char *tag, int id,
                               EPluginSpecificDataTypes type, EPluginSetup setup,
                               std::uint32_t flags = 0, const char *menuItem = nullptr);
    // An XMLObject block holding a copy of `tree`.
    WTErr AddPluginSpecifcData(const XML::CXMLElement &tree, const char *tag, int id,
                               EPluginSetup setup, std::uint32_t flags = 0);
    WTErr AddPluginSpecifcDescriptor_Tag(const char *tag, const char *name, const char *value,
                                         EPluginSetup setup);
    WTErr AddPluginSpecifcDescriptor_Index(std::uint64_t index, const char *name, const char *value,
                                           EPluginSetup setup);
    WTErr AddPluginSpecifcFlag(const char *tag, std::uint32_t flag, EPluginSetup setup);

    sPluginSpecific *FindPluginSpecific_Tag(const char *tag, EPluginSetup setup) const noexcept;
    sPluginSpecific *FindPluginSpecific_Tag(int id, EPluginSetup setup) const noexcept;
    sPluginSpecific *FindPluginSpecific_Index(std::uint64_t index,
                                              EPluginSetup setup) const noexcept;

    // The block's tree (XMLObject only, else eDataFormatNotSupported); the pointer stays owned.
    WTErr GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup,
                                    XML::CXMLElement *&tree) const;
    // The block's text form, cut to the string's capacity.
    WTErr GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup,
                                    WCFixedStringBase &text) const;
    WTErr GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup,
                                    Utils::WCStMemObj &data) const;
    // Into a caller's buffer of `ioSize` bytes, converting between the three number types;
    // `ioSize` receives the bytes written. eBuffSizeToSmall when the buffer is too short.
    WTErr GetPluginSpecificData_Tag(const char *tag, EPluginSetup setup, void *buffer,
                                    std::uint64_t &ioSize, EPluginSpecificDataTypes asType) const;
    WTErr GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                      XML::CXMLElement *&tree) const;
    WTErr GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                      WCFixedStringBase &text) const;
    WTErr GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup,
                                      Utils::WCStMemObj &data) const;
    WTErr GetPluginSpecificData_Index(std::uint64_t index, EPluginSetup setup, void *buffer,
                                      std::uint64_t &ioSize, EPluginSpecificDataTypes asType) const;
    WTErr GetPluginSpecificDescriptor_Tag(const char *tag, const char *name, EPluginSetup setup,
                                          WCFixedStringBase &value) const;
    WTErr GetPluginSpecificDescriptor_Index(std::uint64_t index, const char *name,
                                            EPluginSetup setup, WCFixedStringBase &value) const;
    WTErr GetPluginSpecificName_Tag(int id, EPluginSetup setup, WCFixedStringBase &name) const;
    WTErr GetPluginSpecificName_Index(std::uint64_t index, EPluginSetup setup,
                                      WCFixedStringBase &name) const;
    WTErr GetPluginSpecificMenuItemString_Index(std::uint64_t index, EPluginSetup setup,
                                                WCFixedStringBase &text) const;
    WTErr SetPluginSpecificMenuItemString_Index(std::uint64_t index, EPluginSetup setup,
                                                const char *text);
    std::uint64_t GetNumPluginSpecificData(EPluginSetup setup) const noexcept;
    WTErr RemovePluginSpecificData(std::uint64_t index, EPluginSetup setup);

    // Tag names to ids, filled as blocks are added.
    const std::map<std::string, int> &GetTagMap() const noexcept { return m_TagMap; }

    // Same name, then the same data per setup; the second setup counts only while it is the
    // active one.
    static bool IsSamePreset(const CPresetInfo &a, const CPresetInfo &b, bool compareNames = true);
    static bool IsSamePresetName(const CPresetInfo &a, const CPresetInfo &b) noexcept {
        return a.m_PresetName == b.m_PresetName;
    }

    std::vector<std::unique_ptr<sPresetData>> m_Data;
    WCFixedString<127> m_PresetName;
    WCFixedString<127> m_PresetVersion;
    std::uint32_t m_Flags = 0;
    WCFixedString<15> m_Action;
    WCFixedString<127> m_GroupName;
    WCFixedString<127> m_CategoryString;
    WCFixedString<127> m_PluginName;
    WCFixedString<15> m_PluginSubComp;
    WCFixedString<63> m_PluginVersion;
    WCFixedString<127> m_InfoString;
    WCFixedString<15> m_ActiveSetup;
    WCFixedString<511> m_ShellMessage;
    std::int64_t m_IndexInList = -1;
    WCFourCC m_GenericType = WCFourCC::Unreadable();
    EMenuItemType m_ChosenMenuItemType = eMenuItemNone;
    WCFixedString<31> m_ResourceType;
    // 65535 (-1 in a short) when none, and then 1000 applies.
    short m_ResourceID = -1;
    // 0 off, 1 on, 255 not stored.
    std::uint8_t m_SideChainActive = kSideChainNotStored;
    FM::WCStPath m_ExternalFilePath;

    static constexpr std::uint8_t kSideChainNotStored = 255;

private:
    void CopyFields(const CPresetInfo &other);

    std::map<std::string, int> m_TagMap;
};

} // namespace Preset

MIREL_NAMESPACE_END
