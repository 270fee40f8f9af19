#include "Code/Presets/CPresetsManager.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Presets/CDynamicPresetsScanner.h"
#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/WUPresetFiles.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "files/WUFileSystemObjects.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

WCFixedString<255> NamePlus(const CPublicAlg &alg, const char *suffix) {
    WCFixedString<255> name(alg.GetAlgName().c_str());
    name << suffix;
    return name;
}

// A folder made when missing, then followed if it is a link, so later comparisons of paths
// (IsPathContained) see the real folder.
WTErr MakeFolder(FM::WCStPath &folder) {
    if (!folder.IsValid())
        return folder.GetError() != eNoErr ? folder.GetError() : eFMFileNotFound;
    if (const WTErr error = FM::CreateFolder(folder); error != eNoErr)
        return error;
    if (folder.IsFileSystemLink())
        return folder.ResolveFileSystemLink();
    return eNoErr;
}

// An .xps file of the plug-in's settings folder, "<plug-in name><suffix>"; `file` changes on
// success only.
WTErr SettingsFile(const CPublicAlg &alg, const char *suffix, EPresetSection section,
                   CPresetsFileInfo &file) {
    FM::WCStPath folder;
    if (const WTErr error = CPresetsManager::CreatePathToPluginSettingsFolder(folder);
        error != eNoErr)
        return error;
    CPresetsFileInfo made(FM::WCStPath(folder, NamePlus(alg, suffix).c_str()),
                          ePresetsFormatXMLFile, section);
    made.m_Category = section;
    file = std::move(made);
    return eNoErr;
}

bool IsSelectable(const CPresetInfo &info) {
    return !info.IsSeperator() && !info.IsDummyTitle() && !info.IsDisabled();
}

const CPresetInfo *FindByName(const WTPresetList &list, const char *name) {
    if (name == nullptr)
        return nullptr;
    for (const auto &info : list) {
        if (IsSelectable(*info) && info->m_PresetName == name)
            return info.get();
    }
    return nullptr;
}

// The stored data of a listed preset, read from its file into a copy. A list holds headers and
// at most the setups' shells, so the file is read again: what loads is what the file holds now.
WTErr ReadWithData(const CPublicAlg &alg, const CPresetInfo &listed, CPresetInfo &out) {
    CPresetInfo read(listed);
    if (const WTErr error = CPresetAPI::ReadPresetInfo(alg, read); error != eNoErr)
        return error;
    read.m_IndexInList = listed.m_IndexInList;
    read.m_Section = listed.m_Section;
    read.m_Category = listed.m_Category;
    out = std::move(read);
    return eNoErr;
}

// The first preset of a settings file with its data: ePresetInfoNotFound for a missing file or
// one without presets, -5011 for a preset without data.
WTErr FirstPresetWithData(const CPublicAlg &alg, const CPresetsFileInfo &file, CPresetInfo &out) {
    if (!file.IsExist())
        return ePresetInfoNotFound;
    WTPresetList list;
    if (const WTErr error =
            CPresetAPI::GetPresetList(alg, file, list, WCFourCC::Unreadable(),
                                      WCFourCC::Unreadable(), CPresetAPI::kNoResourceID, true);
        error != eNoErr)
        return error;
    const auto first = std::find_if(list.begin(), list.end(),
                                    [](const auto &info) { return IsSelectable(*info); });
    if (first == list.end())
        return ePresetInfoNotFound;
    if ((*first)->m_Data.empty())
        return kErrPresetHasNoData;
    out = std::move(**first);
    return eNoErr;
}

} // namespace

// ---- construction ---------------------------------------------------------------------------

CPresetsManager::CPresetsManager(const CPublicAlg &alg) {
    FM::WCStPath factory;
    // A plug-in without a bundle has no factory presets.
    if (CreatePathToFactoryPresetFile(alg, factory) != eNoErr)
        factory.Clear();
    if (const WTErr error = CreatePathToUserMenuPresetFile(alg, m_UserMenuFile); error != eNoErr)
        throw error;
    if (const WTErr error = CreatePathToDefaultPresetFile(alg, m_DefaultFile); error != eNoErr)
        throw error;
    if (const WTErr error = CreatePathToUserPresetsFolder(alg, m_UserMenuFolder); error != eNoErr)
        throw error;
    m_ActiveSetup = alg.GetAlg().GetActiveSetup();
    if (const WTErr error = OpenOrCreateUserMenuSettingsFile(); error != eNoErr)
        throw error;

    m_FactoryPresetsFile = CPresetsFileInfo(factory, ePresetsFormatUnknown, ePresetSectionFactory);
    m_FactoryPresetsFile.m_Category = ePresetSectionFactory;
    if (!factory.GetPathString().empty()) {
        m_FactoryPresetsFile.m_Format = CPresetAPI::GetPresetFileFormat(alg, factory);
        if (CPresetsFileInfo::IsValidFormat(m_FactoryPresetsFile.m_Format) &&
            !m_FactoryPresetsFile.IsFileFormatSupported())
            (void)CPresetAPI::ConvertFileToCurrFormat(alg, m_FactoryPresetsFile);
        // A bundle without a "Presets" resource simply has no factory presets.
        (void)MenuPresetsFile_LoadPresets(alg);
    }
    InitializePresetFileTemplate(alg);
    (void)ScanForDynamicFactoryPresets(alg);
    if (alg.GetAlg().GetPluginValue_bool("TreatDynamicPresetsAsFactoryPresets", false))
        TreatDataFolderPresetsAsFactoryPresets();
    InitStartupMIDIPresetsFile(alg);
}

CPresetsManager::~CPresetsManager() = default;

// ---- paths ----------------------------------------------------------------------------------

WTErr CPresetsManager::CreatePathToPluginSettingsFolder(FM::WCStPath &path) {
    FM::WCStPath folder(FM::eUserDomain, FM::eMirelPreferencesFolder);
    folder.Append(kPluginSettingsFolderName);
    if (const WTErr error = MakeFolder(folder); error != eNoErr)
        return error;
    path = folder;
    return eNoErr;
}

WTErr CPresetsManager::CreatePathToUserPresetsFolder(const CPublicAlg &alg, FM::WCStPath &path) {
    FM::WCStPath folder(FM::eUserLocalDomain, FM::eMirelAppDataFolder);
    folder.Append("Presets");
    folder.Append(NamePlus(alg, kUserPresetsFolderSuffix).c_str());
    if (const WTErr error = MakeFolder(folder); error != eNoErr)
        return error;
    path = folder;
    return eNoErr;
}

WTErr CPresetsManager::CreatePathToFactoryPresetFile(const CPublicAlg &alg, FM::WCStPath &path) {
    WTResContainerType *container = alg.GetAlg().GetContainer();
    if (container == nullptr)
        return eRMContainerNotFound;
    return RM::GetContainerPath(container, path);
}

WTErr CPresetsManager::CreatePathToUserMenuPresetFile(const CPublicAlg &alg,
                                                      CPresetsFileInfo &file) {
    return SettingsFile(alg, kUserMenuFileSuffix, ePresetSectionUser, file);
}

WTErr CPresetsManager::CreatePathToDefaultPresetFile(const CPublicAlg &alg,
                                                     CPresetsFileInfo &file) {
    return SettingsFile(alg, kDefaultFileSuffix, ePresetSectionStartup, file);
}

WTErr CPresetsManager::CreatePathToClipboardFile(FM::WCStPath &path) {
    FM::WCStPath folder(FM::eUserDomain, FM::eMirelPreferencesFolder);
    if (const WTErr error = MakeFolder(folder); error != eNoErr)
        return error;
    path = FM::WCStPath(folder, kClipboardFileName);
    return eNoErr;
}

FM::WCStPath CPresetsManager::GetDynamicFactoryPresetsFolder(const CPublicAlg &alg) {
    FM::WCStPath folder(FM::eLocalDomain, FM::eMirelSharedUserDataFolder);
    folder.Append(alg.GetAlgName().c_str());
    folder.Append("Presets");
    return folder;
}

WTErr CPresetsManager::OpenOrCreateUserMenuSettingsFile() {
    if (m_UserMenuFile.IsExist())
        return eNoErr;
    return CPresetAPI::CreatePresetFile(m_UserMenuFile) == eNoErr ? eNoErr
                                                                  : eCantCreateUserPrefFile;
}

void CPresetsManager::InitializePresetFileTemplate(const CPublicAlg &alg) {
    (void)SettingsFile(alg, kPresetFileTemplateSuffix, ePresetSectionExternalFile,
                       m_PresetFileTemplate);
}

void CPresetsManager::InitStartupMIDIPresetsFile(const CPublicAlg &alg) {
    (void)SettingsFile(alg, kMidiMapStartupFileSuffix, ePresetSectionExternalFile,
                       m_StartupMidiFile);
}

bool CPresetsManager::Ask(const char *title, const char *message, const char *okButton) const {
    return !m_Alert || m_Alert(title, message, okButton);
}

// ---- loading --------------------------------------------------------------------------------

WTErr CPresetsManager::LoadPresetToPlugin(const CPublicAlg &alg, const CPresetInfo &info,
                                          bool update) {
    if (!alg.AllowLoadPresetToPlugin())
        return eNoErr;
    if (const int error = alg.LoadFromPreset(info, update); error != eNoErr)
        return error;
    if (update)
        UpdatePluginSetup(alg, info);
    return eNoErr;
}

WTErr CPresetsManager::LoadListed(const CPublicAlg &alg, const CPresetInfo *listed, WTErr missing) {
    if (listed == nullptr)
        return missing;
    CPresetInfo info;
    if (const WTErr error = ReadWithData(alg, *listed, info); error != eNoErr)
        return error;
    return LoadPresetToPlugin(alg, info, true);
}

WTErr CPresetsManager::LoadFactoryPresetToPluginByIndex(const CPublicAlg &alg, std::size_t index) {
    if (m_FactoryPresets.empty())
        return eNoFactoryPresets;
    if (index >= m_FactoryPresets.size())
        return eFactoryPresetNumOutOfRange;
    const CPresetInfo &listed = *m_FactoryPresets[index];
    if (listed.IsSeperator() || listed.IsDummyTitle())
        return ePresetInfoNotFound;
    return LoadListed(alg, &listed, ePresetInfoNotFound);
}

WTErr CPresetsManager::LoadFactoryPresetToPluginByName(const CPublicAlg &alg, const char *name) {
    const CPresetInfo *listed = FindByName(m_FactoryPresets, name);
    if (listed == nullptr)
        listed = FindByName(m_DynamicPresets, name);
    return LoadListed(alg, listed, eFactoryPresetNotFound);
}

WTErr CPresetsManager::LoadUserMenuPresetToPluginByName(const CPublicAlg &alg, const char *name) {
    ApplyChunkSetWork(alg);
    return LoadListed(alg, FindByName(m_UserPresets, name), ePresetInfoNotFound);
}

WTErr CPresetsManager::LoadUserExternalPresetToPluginByName(const CPublicAlg &alg,
                                                            const char *name) {
    ApplyChunkSetWork(alg);
    return LoadListed(alg, FindByName(m_ExternalPresets, name), ePresetInfoNotFound);
}

WTErr CPresetsManager::LoadPresetFromCurrentPresetSection(const CPublicAlg &alg, bool next) {
    if (NextPrevForwardedToLocalSearch(next))
        return eNoErr;
    ApplyChunkSetWork(alg);
    const CPresetInfo &current = GetCurrentPreset();
    const WTPresetList *list = GetSectionList(current.m_Section);
    std::int64_t from = current.m_IndexInList;
    if (list == nullptr) {
        list = &m_FactoryPresets;
        from = -1;
    }
    // A preset whose place is unknown is looked up by name; not found, the walk starts at an end.
    if (from >= 0 &&
        (static_cast<std::size_t>(from) >= list->size() ||
         !((*list)[static_cast<std::size_t>(from)]->m_PresetName == current.m_PresetName))) {
        from = -1;
        for (std::size_t i = 0; i < list->size(); ++i) {
            if ((*list)[i]->m_PresetName == current.m_PresetName) {
                from = static_cast<std::int64_t>(i);
                break;
            }
        }
    }
    const std::int64_t index = ComputePresetIndex(*list, from, next);
    if (index < 0)
        return eLoadPresetToPlugin_vec_empty;
    CPresetInfo info;
    if (const WTErr error = ReadWithData(alg, *(*list)[static_cast<std::size_t>(index)], info);
        error != eNoErr)
        return error;
    info.m_IndexInList = index;
    return LoadPresetToPlugin(alg, info, true);
}

std::int64_t CPresetsManager::ComputePresetIndex(const WTPresetList &list, std::int64_t from,
                                                 bool next) {
    const auto size = static_cast<std::int64_t>(list.size());
    if (size == 0)
        return -1;
    if (from < 0 || from >= size)
        from = next ? -1 : size;
    for (std::int64_t step = 1; step <= size; ++step) {
        std::int64_t at = next ? from + step : from - step;
        at = ((at % size) + size) % size;
        if (IsSelectable(*list[static_cast<std::size_t>(at)]))
            return at;
    }
    return -1;
}

WTErr CPresetsManager::LoadDefaultPreset(const CPublicAlg &alg) {
    CPresetInfo info;
    if (const WTErr error = FirstPresetWithData(alg, m_DefaultFile, info); error != eNoErr)
        return error;
    info.m_Section = ePresetSectionStartup;
    info.m_Category = ePresetSectionStartup;
    return LoadPresetToPlugin(alg, info, true);
}

WTErr CPresetsManager::LoadStartupMidiPreset(const CPublicAlg &alg) {
    CPresetInfo info;
    if (const WTErr error = FirstPresetWithData(alg, m_StartupMidiFile, info); error != eNoErr)
        return error;
    if (const int error = alg.LoadFromPreset(info, false); error != eNoErr)
        return error;
    UpdatePluginSetup(alg, info);
    return eNoErr;
}

WTErr CPresetsManager::LoadPresetsFromUserPath(const CPublicAlg &alg, const FM::WCStPath &path,
                                               std::size_t selection) {
    if (const WTErr error = UserExternalPresetFile_Open(alg, path, false); error != eNoErr)
        return error;
    std::size_t seen = 0;
    for (const auto &listed : m_ExternalPresets) {
        if (!IsSelectable(*listed) || seen++ != selection)
            continue;
        CPresetInfo info;
        WTErr error = ReadWithData(alg, *listed, info);
        if (error == eNoErr)
            error = LoadPresetToPlugin(alg, info, true);
        if (error != eNoErr && m_CloseExternalOnFailedLoad)
            UserExternalPresetFile_Close();
        return error;
    }
    return ePresetInfoNotFound;
}

// ---- lists ----------------------------------------------------------------------------------

const CPresetInfo *CPresetsManager::GetFactoryPreset(std::size_t index) const {
    return index < m_FactoryPresets.size() ? m_FactoryPresets[index].get() : nullptr;
}

WTErr CPresetsManager::GetFactoryPresetName(std::size_t index, WCFixedStringBase &name) const {
    if (m_FactoryPresets.empty())
        return eNoFactoryPresets;
    if (index >= m_FactoryPresets.size())
        return eFactoryPresetNumOutOfRange;
    name = m_FactoryPresets[index]->m_PresetName;
    return eNoErr;
}

WTErr CPresetsManager::MenuPresetsFile_LoadPresets(const CPublicAlg &alg) {
    WTPresetList list;
    if (const WTErr error = CPresetAPI::GetPresetList(alg, m_FactoryPresetsFile, list);
        error != eNoErr)
        return error;
    m_FactoryPresets = std::move(list);
    return eNoErr;
}

WTErr CPresetsManager::UserMenuPresets_LoadPresetsFromFile(const CPublicAlg &alg,
                                                           WTPresetList &list) {
    if (!m_UserMenuFile.IsExist())
        return eNoErr;
    WTPresetList read;
    if (const WTErr error = CPresetAPI::GetPresetList(alg, m_UserMenuFile, read); error != eNoErr)
        return error;
    for (auto &info : read)
        list.push_back(std::move(info));
    return eNoErr;
}

WTErr CPresetsManager::UserMenuPresets_LoadPresetsFromFolder(const CPublicAlg &alg,
                                                             WTPresetList &list) {
    if (!m_UserMenuFolder.IsFolder())
        return eNoErr;
    return IterateFolderForXPSFiles(list, m_UserMenuFolder, alg, ePresetSectionUser);
}

WTErr CPresetsManager::UserMenuPresets_LoadPresets(const CPublicAlg &alg) {
    WTPresetList list;
    if (const WTErr error = UserMenuPresets_LoadPresetsFromFile(alg, list); error != eNoErr)
        return error;
    if (const WTErr error = UserMenuPresets_LoadPresetsFromFolder(alg, list); error != eNoErr)
        return error;
    for (std::size_t i = 0; i < list.size(); ++i)
        list[i]->m_IndexInList = static_cast<std::int64_t>(i);
    m_UserPresets = std::move(list);
    return eNoErr;
}

WTErr CPresetsManager::GetPresetsFromPath(WTPresetList &list, const FM::WCStPath &path,
                                          const CPublicAlg &alg, EPresetSection section) {
    list.clear();
    if (!path.IsValid() || !path.IsExist())
        return ePresetFileProblem;
    WTPresetList read;
    if (path.IsFolder()) {
        if (const WTErr error =
                CDynamicPresetsScanner::ParseFolderContents(alg, path, read, section);
            error != eNoErr)
            return error;
    } else {
        CPresetsFileInfo file(path, CPresetAPI::GetPresetFileFormat(alg, path), section);
        file.m_Category = section;
        if (!file.IsFileFormatSupported())
            return ePresetFileProblem;
        if (const WTErr error = CPresetAPI::GetPresetListWithPugi(alg, file, read); error != eNoErr)
            return error;
    }
    if (read.empty())
        return ePresetFileProblem;
    list = std::move(read);
    return eNoErr;
}

WTErr CPresetsManager::IterateFolderForXPSFiles(WTPresetList &list, const FM::WCStPath &folder,
                                                const CPublicAlg &alg, EPresetSection section) {
    WTPresetList read;
    if (const WTErr error = CDynamicPresetsScanner::ParseFolderContents(alg, folder, read, section);
        error != eNoErr)
        return error;
    for (auto &info : read)
        list.push_back(std::move(info));
    return eNoErr;
}

WTErr CPresetsManager::ScanForDynamicFactoryPresets(const CPublicAlg &alg) {
    m_DynamicPresets.clear();
    m_DynamicGroups.clear();
    const FM::WCStPath folder = GetDynamicFactoryPresetsFolder(alg);
    if (!folder.IsValid() || !folder.IsFolder())
        return eNoErr;
    WTPresetList read;
    if (const WTErr error = CDynamicPresetsScanner::ParseFolderContents(
            alg, folder, read, ePresetSectionDynamicFactory);
        error != eNoErr)
        return error;
    for (std::size_t i = 0; i < read.size(); ++i) {
        read[i]->m_IndexInList = static_cast<std::int64_t>(i);
        const std::string group = read[i]->m_GroupName.empty()
                                      ? std::string(read[i]->GetBase().c_str())
                                      : std::string(read[i]->m_GroupName.c_str());
        m_DynamicGroups[group].push_back(i);
    }
    m_DynamicPresets = std::move(read);
    return eNoErr;
}

void CPresetsManager::TreatDataFolderPresetsAsFactoryPresets() {
    for (auto &info : m_DynamicPresets) {
        info->m_Section = ePresetSectionFactory;
        info->m_IndexInList = static_cast<std::int64_t>(m_FactoryPresets.size());
        m_FactoryPresets.push_back(std::move(info));
    }
    m_DynamicPresets.clear();
    m_DynamicGroups.clear();
}

WTErr CPresetsManager::UserExternalPresetFile_Open(const CPublicAlg &alg, const FM::WCStPath &path,
                                                   bool loadFirst) {
    WTPresetList list;
    if (const WTErr error = GetPresetsFromPath(list, path, alg, ePresetSectionExternalFile);
        error != eNoErr)
        return error;
    CPresetInfo first;
    const auto firstAt = std::find_if(list.begin(), list.end(),
                                      [](const auto &info) { return IsSelectable(*info); });
    if (firstAt == list.end())
        return ePresetFileProblem;
    if (const WTErr error = ReadWithData(alg, **firstAt, first); error != eNoErr)
        return error;
    const bool onePreset = std::count_if(list.begin(), list.end(), [](const auto &info) {
                               return !info->IsSeperator() && !info->IsDummyTitle();
                           }) == 1;
    // A file of one preset is the preset: it shows under the file's name.
    if (onePreset && path.IsFile()) {
        const WCFixedString<255> base = path.GetBase();
        (*firstAt)->m_PresetName = base.c_str();
        first.m_PresetName = base.c_str();
    }
    if (loadFirst) {
        if (const WTErr error = LoadPresetToPlugin(alg, first, true); error != eNoErr)
            return error;
    }
    for (std::size_t i = 0; i < list.size(); ++i)
        list[i]->m_IndexInList = static_cast<std::int64_t>(i);
    m_ExternalPresets = std::move(list);
    m_ExternalFile = CPresetsFileInfo(path, CPresetAPI::GetPresetFileFormat(alg, path),
                                      ePresetSectionExternalFile);
    m_ExternalFile.m_Category = ePresetSectionExternalFile;
    return eNoErr;
}

WTErr CPresetsManager::UserExternalPresetFile_LoadPresets(const CPublicAlg &alg) {
    if (m_ExternalFile.GetPathString().empty())
        return ePresetFileProblem;
    return UserExternalPresetFile_Open(alg, m_ExternalFile, false);
}

void CPresetsManager::UserExternalPresetFile_Close() {
    m_ExternalPresets.clear();
    m_ExternalFile = CPresetsFileInfo();
}

void CPresetsManager::ClearUserExternalPresets() {
    m_ExternalPresets.clear();
}

int CPresetsManager::PresetsSanityCheck(const WTPresetList &list, std::string *log) {
    int result = 0;
    for (const auto &info : list) {
        if (info->IsSeperator() || info->IsDummyTitle())
            continue;
        for (const auto &data : info->m_Data) {
            for (std::size_t i = 0; i < data->m_PluginSpecific.size(); ++i) {
                for (std::size_t j = i + 1; j < data->m_PluginSpecific.size(); ++j) {
                    if (data->m_PluginSpecific[i]->m_TagID != data->m_PluginSpecific[j]->m_TagID)
                        continue;
                    result = 1;
                    if (log != nullptr)
                        *log += std::string("duplicate plug-in specific tag in preset \"") +
                                info->m_PresetName.c_str() + "\"\n";
                }
            }
        }
    }
    return result;
}

WTErr CPresetsManager::ReadFactoryPresetFromFile(const CPublicAlg &alg, const FM::WCStPath &path) {
    CPresetsFileInfo file(path, CPresetAPI::GetPresetFileFormat(alg, path), ePresetSectionFactory);
    file.m_Category = ePresetSectionFactory;
    if (!file.IsValidPresetFile())
        return ePresetFileProblem;
    WTPresetList list;
    if (const WTErr error = CPresetAPI::GetPresetList(alg, file, list); error != eNoErr)
        return error;
    m_FactoryPresetsFile = std::move(file);
    m_FactoryPresets = std::move(list);
    return eNoErr;
}

WTErr CPresetsManager::WriteAllPresetsToXML(XML::CXMLElement &element) const try {
    for (const WTPresetList *list :
         {&m_FactoryPresets, &m_DynamicPresets, &m_UserPresets, &m_ExternalPresets}) {
        for (const auto &info : *list) {
            auto child = std::make_unique<XML::CXMLElement>(info->IsSeperator()    ? "Separator"
                                                            : info->IsDummyTitle() ? "Title"
                                                                                   : "Preset");
            if (info->IsDummyTitle())
                child->SetText(info->m_PresetName.c_str());
            if (!info->IsSeperator() && !info->IsDummyTitle()) {
                child->AddAttrib("Name", info->m_PresetName.c_str());
                child->AddAttrib("Section", GetPresetSectionName(info->m_Section));
                child->AddAttrib("Path", info->GetPosixPathString().c_str());
            }
            element.push_back(child.release());
        }
    }
    return eNoErr;
} catch (const std::bad_alloc &) {
    return eMemOutOfMemory;
}

const WTPresetList *CPresetsManager::GetSectionList(EPresetSection section) const {
    switch (section) {
    case ePresetSectionFactory: return &m_FactoryPresets;
    case ePresetSectionDynamicFactory: return &m_DynamicPresets;
    case ePresetSectionUser: return &m_UserPresets;
    case ePresetSectionExternalFile: return &m_ExternalPresets;
    default: return nullptr;
    }
}

WTPresetList *CPresetsManager::MutableSectionList(EPresetSection section) {
    return const_cast<WTPresetList *>(std::as_const(*this).GetSectionList(section));
}

// ---- state ----------------------------------------------------------------------------------

const CPresetInfo &CPresetsManager::GetCurrentPreset(EPluginSetup setup) const {
    return m_CurrentPreset[SetupSlot(setup == eCurrentSetup ? m_ActiveSetup.load() : setup)];
}

void CPresetsManager::SetCurrentPreset(CPresetInfo info, EPluginSetup setup) {
    std::lock_guard<std::mutex> lock(m_ChunkSetMutex);
    m_CurrentPreset[SetupSlot(setup == eCurrentSetup ? m_ActiveSetup.load() : setup)] =
        std::move(info);
}

CPresetInfo CPresetsManager::GetCurrentPresetCopy() const {
    std::lock_guard<std::mutex> lock(m_ChunkSetMutex);
    return GetCurrentPreset();
}

CPresetsManager::WSChunkOrigin CPresetsManager::GetChunkOrigin() const {
    std::lock_guard<std::mutex> lock(m_ChunkSetMutex);
    const CPresetInfo &current = GetCurrentPreset();
    return {current.m_Category, current.m_ExternalFilePath, current.m_IndexInList};
}

void CPresetsManager::UpdatePluginSetup(const CPublicAlg &alg, const CPresetInfo &info) {
    SetActiveSetup(alg.GetAlg().GetActiveSetup());
    CPresetInfo current(info);
    // The data kept is the state the load produced, so values the plug-in limited and
    // parameters an older preset lacks do not read as changes later.
    current.ClearData();
    const bool oneSetup = info.m_Data.size() == 1 && info.m_Data.front()->m_Setup == eCurrentSetup;
    CPresetInfo state;
    if (alg.SaveToPreset(state, oneSetup, !oneSetup) == eNoErr)
        current.m_Data = std::move(state.m_Data);
    current.m_ActiveSetup = state.m_ActiveSetup;
    // A preset of the external file names it, so a host session that keeps the chunk reopens it.
    if (info.m_Section == ePresetSectionExternalFile && !info.GetPathString().empty())
        current.m_ExternalFilePath = info;
    SetCurrentPreset(std::move(current));
}

void CPresetsManager::SetActiveSetup(EPluginSetup setup) {
    std::lock_guard<std::mutex> lock(m_ChunkSetMutex);
    if (setup == eSetupA || setup == eSetupB)
        m_ActiveSetup = setup;
}

void CPresetsManager::CopySetup(EPluginSetup from, EPluginSetup to) {
    if (from == to)
        return;
    SetCurrentPreset(GetCurrentPreset(from), to);
}

bool CPresetsManager::IsChangedPresetExists(const CPublicAlg &alg, const CPresetInfo &info) {
    // A current preset that was never loaded holds no data.
    if (info.m_Data.empty())
        return false;
    const bool oneSetup = info.m_Data.size() == 1 && info.m_Data.front()->m_Setup == eCurrentSetup;
    CPresetInfo state;
    if (alg.SaveToPreset(state, oneSetup, !oneSetup) != eNoErr)
        return false;
    return !CPresetInfo::IsSamePreset(info, state, false);
}

bool CPresetsManager::FindChangedPreset(const CPublicAlg &alg) {
    return IsChangedPresetExists(alg, GetCurrentPreset());
}

// ---- names ----------------------------------------------------------------------------------

void CPresetsManager::IncrementNameCounter(WCFixedStringBase &name) {
    std::string text(name.c_str());
    const std::size_t digits = text.find_last_not_of("0123456789") + 1;
    if (digits == text.size()) {
        name = (text + " 1").c_str();
        return;
    }
    // Carried by hand, so a counter of any length counts on without overflowing.
    std::string number = text.substr(digits);
    std::size_t at = number.size();
    while (at > 0) {
        --at;
        if (number[at] != '9') {
            ++number[at];
            break;
        }
        number[at] = '0';
        if (at == 0)
            number.insert(number.begin(), '1');
    }
    name = (text.substr(0, digits) + number).c_str();
}

bool CPresetsManager::IsPresetNameUnique(const char *name, const WTPresetList &list) {
    for (const auto &info : list) {
        if (!info->IsSeperator() && !info->IsDummyTitle() && info->m_PresetName == name)
            return false;
    }
    return true;
}

void CPresetsManager::CreateNextUniqueName(const char *base, const WTPresetList &list,
                                           WCFixedStringBase &name) {
    name = base != nullptr && *base != '\0' ? base : kUntitledPresetName;
    // Bounded: a list of n names leaves a free one within n + 1 steps.
    for (std::size_t step = 0; step <= list.size() && !IsPresetNameUnique(name.c_str(), list);
         ++step)
        IncrementNameCounter(name);
}

void CPresetsManager::CreateNextUniquePath(const FM::WCStPath &path, FM::WCStPath &unique) {
    FM::WCStPath candidate(path);
    WCFixedString<255> base = path.GetBase();
    const WCFixedString<255> extension = path.GetExtension();
    for (int step = 0; step < 10000 && candidate.IsExist(); ++step) {
        IncrementNameCounter(base);
        WCFixedString<255> leaf(base.c_str());
        if (!extension.empty())
            leaf << "." << extension.c_str();
        candidate = FM::WCStPath(path.GetParent(), leaf.c_str());
    }
    unique = candidate;
}

bool CPresetsManager::SaveMenu_PreparePresetUniqueName(const char *name,
                                                       WCFixedStringBase &message) const {
    if (name == nullptr || *name == '\0' || IsPresetNameUnique(name, m_UserPresets))
        return true;
    message = "Preset name '";
    message << name << "' already exists.";
    return false;
}

} // namespace Preset

MIREL_NAMESPACE_END
