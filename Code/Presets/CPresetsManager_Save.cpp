// CPresetsManager: saving the plug-in's state in every form, renaming and removing presets in
// their files, and the host's chunks.

#include <cstring>
#include <string>
#include <utility>

#include "Code/Algorithm/WCStAlgLocker.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/CPresetsManager.h"
#include "Code/Presets/WUPresetFiles.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

// A path the browser or a Redis tool sends: relative to the user folder unless absolute, with
// ".xps" added when it names no preset file.
FM::WCStPath ResolvePresetPath(const FM::WCStPath &userFolder, const char *presetPath) {
    if (presetPath == nullptr || *presetPath == '\0')
        return FM::WCStPath();
    std::string text(presetPath);
    FM::WCStPath::WindowsToPosixSlashes(text);
    FM::WCStPath path =
        text.front() == '/' ? FM::WCStPath(text) : FM::WCStPath(userFolder, text.c_str());
    const auto extension = path.GetExtension();
    if (!(extension == "xps") && !(extension == "yps"))
        path.ExtendLeafName(".xps");
    return path;
}

} // namespace

WTErr CPresetsManager::SavePresetFromPlugin(const CPublicAlg &alg, CPresetInfo &info,
                                            bool activeOnly) {
    return alg.SaveToPreset(info, activeOnly, !activeOnly);
}

WTErr CPresetsManager::SaveMidiMapFromPlugin(const CPublicAlg &alg, CPresetInfo &info) {
    return alg.SaveToMidiMap(info);
}

WTErr CPresetsManager::SaveStateToFile(const CPublicAlg &alg, CPresetsFileInfo file,
                                       const char *name, bool activeOnly, EPresetSection section) {
    if (!file.IsValid() || file.GetPathString().empty())
        return ePresetFileProblem;
    if (file.m_Format == ePresetsFormatUnknown)
        file.m_Format = CPresetAPI::GetPresetFileFormat(alg, file);
    if (file.m_Format != ePresetsFormatXMLFile && file.m_Format != ePresetsFormatYAMLFile)
        return eInvalidFileFormatProblem;
    CPresetInfo info(file);
    if (const WTErr error = SavePresetFromPlugin(alg, info, activeOnly); error != eNoErr)
        return error;
    info.m_PresetName = name != nullptr && *name != '\0' ? name : file.GetBase().c_str();
    info.m_Section = section;
    info.m_Category = section;
    // The writer refuses a missing file, so a new one is made first; a file that exists is
    // rewritten whole and atomically, so a failure keeps what it held.
    if (!file.IsExist()) {
        const WTErr made = file.m_Format == ePresetsFormatXMLFile
                               ? CPresetAPI::CreatePresetFile(file)
                               : WritePresetFileBytes(file, "", 0, 0666);
        if (made != eNoErr)
            return made;
    }
    if (const WTErr error = CPresetAPI::WritePresetInfo(alg, info); error != eNoErr)
        return error;
    m_LastSavingPath = file.GetParent();
    return eNoErr;
}

WTErr CPresetsManager::SaveAsDefaultPreset(const CPublicAlg &alg, EPresetSection category,
                                           const char *name) {
    if (m_DefaultFile.IsExist() &&
        !Ask("Set As Default Preset",
             "A default preset already exists.\nDo you want to overwrite it?\t\t", "OK"))
        return eUserCanceled;
    CPresetInfo info(m_DefaultFile);
    if (category == ePresetSectionNone || name == nullptr) {
        if (const WTErr error = SavePresetFromPlugin(alg, info); error != eNoErr)
            return error;
    } else {
        const WTPresetList *list = GetSectionList(category);
        const CPresetInfo *found = nullptr;
        for (std::size_t i = 0; list != nullptr && i < list->size() && found == nullptr; ++i) {
            const CPresetInfo &entry = *(*list)[i];
            if (entry.m_PresetName == name && !entry.IsSeperator() && !entry.IsDummyTitle())
                found = &entry;
        }
        if (found == nullptr)
            return ePresetInfoNotFound;
        CPresetInfo read(*found);
        if (const WTErr error = CPresetAPI::ReadPresetInfo(alg, read); error != eNoErr)
            return error;
        info.TakeOver(read);
        static_cast<CPresetsFileInfo &>(info) = m_DefaultFile;
    }
    info.m_ActiveSetup = "SETUP_A";
    info.m_PresetName = kDefaultPresetName;
    for (auto &data : info.m_Data)
        data->m_SetupName = kDefaultPresetName;
    info.m_Section = ePresetSectionStartup;
    // The default file holds one preset: a fresh file replaces the old one.
    if (const WTErr error = CPresetAPI::CreatePresetFile(m_DefaultFile); error != eNoErr)
        return error;
    return CPresetAPI::WritePresetInfo(alg, info);
}

WTErr CPresetsManager::SaveMenu_SaveAsUserMenuPreset(const CPublicAlg &alg, const char *name) {
    if (name == nullptr || *name == '\0')
        return ePresetInfoNotFound;
    if (const WTErr error = SaveStateToFile(alg, m_UserMenuFile, name, false, ePresetSectionUser);
        error != eNoErr)
        return error;
    return UserMenuPresets_LoadPresets(alg);
}

// A path empty means the user was to choose one in a dialog, which the view layer does not offer.
WTErr CPresetsManager::SaveMenu_SaveToFileAs(const CPublicAlg &alg, const FM::WCStPath &path) {
    if (path.GetPathString().empty())
        return eNotImplemented;
    return SaveStateToFile(alg, CPresetsFileInfo(path), nullptr, false, ePresetSectionExternalFile);
}

WTErr CPresetsManager::SaveMenu_SaveToNewFile(const CPublicAlg &alg, const FM::WCStPath &path,
                                              const char *name) {
    if (path.GetPathString().empty())
        return eNotImplemented;
    if (path.IsExist())
        return ePresetFileProblem;
    return SaveStateToFile(alg, CPresetsFileInfo(path), name, false, ePresetSectionExternalFile);
}

WTErr CPresetsManager::SaveMenu_SaveActiveSetup(const CPublicAlg &alg, const FM::WCStPath &path,
                                                const char *name) {
    if (path.GetPathString().empty())
        return eNotImplemented;
    return SaveStateToFile(alg, CPresetsFileInfo(path), name, true, ePresetSectionExternalFile);
}

WTErr CPresetsManager::SaveMenu_CopyPreset(const CPublicAlg &alg) {
    FM::WCStPath path;
    if (const WTErr error = CreatePathToClipboardFile(path); error != eNoErr)
        return error;
    CPresetsFileInfo file(path, ePresetsFormatYAMLFile, ePresetSectionExternalFile);
    WCFixedString<127> name(GetCurrentPreset().m_PresetName.c_str());
    if (name.empty())
        name = kUntitledPresetName;
    return SaveStateToFile(alg, file, name.c_str(), true, ePresetSectionExternalFile);
}

WTErr CPresetsManager::SaveMenu_SetAsStartupMidiMap(const CPublicAlg &alg) {
    CPresetInfo info(m_StartupMidiFile);
    if (const WTErr error = SaveMidiMapFromPlugin(alg, info); error != eNoErr)
        return error;
    info.m_PresetName = kDefaultMidiMapName;
    info.m_PresetName << " [MIDI]";
    if (const WTErr error = CPresetAPI::CreatePresetFile(m_StartupMidiFile); error != eNoErr)
        return error;
    return CPresetAPI::WritePresetInfo(alg, info);
}

WTErr CPresetsManager::SaveUserPresetToFile(const CPublicAlg &alg, const CPresetsFileInfo &file) {
    CPresetsFileInfo target(file);
    if (target.m_Format == ePresetsFormatUnknown)
        target.m_Format = CPresetAPI::GetPresetFileFormat(alg, target);
    const EPresetSection section =
        FM::IsPathContained(m_UserMenuFolder, target) ? ePresetSectionUser : target.m_Section;
    if (const WTErr error = SaveStateToFile(alg, target, target.GetBase().c_str(), false, section);
        error != eNoErr)
        return error;
    return section == ePresetSectionUser ? UserMenuPresets_LoadPresets(alg) : eNoErr;
}

WTErr CPresetsManager::SavePresetFromHTML(const CPublicAlg &alg, const char *presetPath) {
    const FM::WCStPath path = ResolvePresetPath(m_UserMenuFolder, presetPath);
    if (path.GetPathString().empty())
        return ePresetFileProblem;
    return SaveUserPresetToFile(
        alg, CPresetsFileInfo(path, ePresetsFormatUnknown, ePresetSectionExternalFile));
}

WTErr CPresetsManager::SavePresetFromRedis(const CPublicAlg &alg, const char *presetPath) {
    return SavePresetFromHTML(alg, presetPath);
}

WTErr CPresetsManager::SaveToNewFileHTML(const CPublicAlg &alg, const char *presetPath) {
    const FM::WCStPath path = ResolvePresetPath(m_UserMenuFolder, presetPath);
    if (path.GetPathString().empty())
        return ePresetFileProblem;
    FM::WCStPath unique;
    CreateNextUniquePath(path, unique);
    return SavePresetFromHTML(alg, unique.GetPathString().c_str());
}

WTErr CPresetsManager::AddPresetToFile(const CPublicAlg &alg, const CPresetInfo &info,
                                       const CPresetsFileInfo &file) {
    CPresetInfo copy(info);
    static_cast<CPresetsFileInfo &>(copy) = file;
    if (copy.m_Format == ePresetsFormatUnknown)
        copy.m_Format = CPresetAPI::GetPresetFileFormat(alg, file);
    return CPresetAPI::WritePresetInfo(alg, copy);
}

WTErr CPresetsManager::RemovePresetFromFile(const CPublicAlg &alg, const CPresetInfo &info) {
    if (const WTErr error = CPresetAPI::RemovePresetInfo(alg, info); error != eNoErr)
        return error;
    if (WTPresetList *list = MutableSectionList(info.m_Section)) {
        std::erase_if(*list, [&](const auto &entry) {
            return entry->m_PresetName == info.m_PresetName &&
                   entry->GetPathString() == info.GetPathString();
        });
    }
    return eNoErr;
}

WTErr CPresetsManager::RenamePresetInFile(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                          const char *oldName, const char *newName) {
    if (oldName == nullptr || newName == nullptr || *newName == '\0')
        return ePresetInfoNotFound;
    CPresetInfo stored(file);
    stored.m_PresetName = oldName;
    if (const WTErr error = CPresetAPI::ReadPresetInfo(alg, stored); error != eNoErr)
        return error;
    if (std::strcmp(oldName, newName) == 0)
        return eNoErr;
    // The renamed preset is written before the old one goes, so a failure between the two
    // leaves both rather than neither.
    CPresetInfo renamed(stored);
    renamed.m_PresetName = newName;
    if (const WTErr error = CPresetAPI::WritePresetInfo(alg, renamed); error != eNoErr)
        return error;
    return CPresetAPI::RemovePresetInfo(alg, stored);
}

WTErr CPresetsManager::RenamePreset(const CPublicAlg &alg, const CPresetInfo &info,
                                    const char *newName) {
    if (const WTErr error = RenamePresetInFile(alg, info, info.m_PresetName.c_str(), newName);
        error != eNoErr)
        return error;
    for (const EPluginSetup setup : {eSetupA, eSetupB}) {
        CPresetInfo current = GetCurrentPreset(setup);
        if (current.m_PresetName == info.m_PresetName &&
            current.GetPathString() == info.GetPathString()) {
            current.m_PresetName = newName;
            SetCurrentPreset(std::move(current), setup);
        }
    }
    if (WTPresetList *list = MutableSectionList(info.m_Section)) {
        for (auto &entry : *list) {
            if (entry->m_PresetName == info.m_PresetName &&
                entry->GetPathString() == info.GetPathString())
                entry->m_PresetName = newName;
        }
    }
    return eNoErr;
}

// ---- host chunks ----------------------------------------------------------------------------

WTErr CPresetsManager::PreparePresetChunk(const CPublicAlg &alg, Utils::WCStMemObj &chunk,
                                          bool allSetups, bool midi) {
    // The host asks on its own thread: names and values are read under the process lock.
    WCStAlgLocker lock(alg.GetAlg());
    const CPresetsManager *manager = alg.GetAlg().GetPresetsManager();
    const WSChunkOrigin current = manager != nullptr ? manager->GetChunkOrigin() : WSChunkOrigin();
    CPresetInfo info;
    info.m_Section = ePresetSectionHostPresetChunk;
    info.m_Category = current.m_Category;
    info.m_Format = ePresetsFormatXMLString;
    (void)alg.GetAlg().GetSetupName(eCurrentSetup, info.m_PresetName);
    info.m_Flags |= ePresetFlagReadOnly;
    info.m_ExternalFilePath = current.m_ExternalFilePath;
    info.m_IndexInList = current.m_IndexInList;
    const int error = midi ? alg.SaveToMidiMap(info)
                           : alg.SaveToPreset(info, false, allSetups && alg.GetSaveAllSetups());
    if (error != eNoErr)
        return error;
    return WritePresetChunk(info, chunk);
}

WTErr CPresetsManager::SetPresetChunk(const CPublicAlg &alg, const Utils::WCStConstMemObj &chunk) {
    CPresetInfo info;
    // Through the file API, so a chunk saved by a plug-in of another type is refused.
    if (const WTErr error = CPresetAPI::SetPresetChunk(alg, info, chunk); error != eNoErr)
        return error;
    info.m_Section = ePresetSectionHostPresetChunk;
    if (const int error = alg.LoadFromPreset(info, true); error != eNoErr)
        return error;
    cALGORITHM *owner = alg.GetMutableAlg();
    CPresetsManager *manager = owner != nullptr ? owner->GetPresetsManager() : nullptr;
    return manager != nullptr ? manager->LoadPresetsOnChunkSet(alg, info) : eNoErr;
}

WTErr CPresetsManager::GetCurrentSetupPresetChunk(const CPublicAlg &alg, Utils::WCStMemObj &chunk) {
    WCStAlgLocker lock(alg.GetAlg());
    CPresetInfo info;
    info.m_Section = ePresetSectionInternalPresetChunk;
    info.m_Category = ePresetSectionInternalPresetChunk;
    info.m_Format = ePresetsFormatXMLString;
    (void)alg.GetAlg().GetSetupName(eCurrentSetup, info.m_PresetName);
    if (const int error = alg.SaveToPreset(info, true, false); error != eNoErr)
        return error;
    return WritePresetChunk(info, chunk);
}

WTErr CPresetsManager::LoadPresetsOnChunkSet(const CPublicAlg &, const CPresetInfo &info) {
    // The host calls on its own thread, and the lists belong to the main thread: the category,
    // the reopening and the reload wait for it (ApplyChunkSetWork), which also keeps file reading
    // out of the host's restore.
    std::lock_guard<std::mutex> lock(m_ChunkSetMutex);
    m_ChunkSetReloadUser = true;
    m_ChunkSetExternal = info.m_ExternalFilePath;
    m_ChunkSetCategory = info.m_Category;
    return eNoErr;
}

void CPresetsManager::ApplyChunkSetWork(const CPublicAlg &alg) {
    FM::WCStPath external;
    EPresetSection category = ePresetSectionNone;
    {
        std::lock_guard<std::mutex> lock(m_ChunkSetMutex);
        if (!m_ChunkSetReloadUser)
            return;
        m_ChunkSetReloadUser = false;
        external = std::move(m_ChunkSetExternal);
        m_ChunkSetExternal = FM::WCStPath();
        category = m_ChunkSetCategory;
    }
    // The category the chunk was saved from becomes the current preset's.
    if (category != ePresetSectionNone) {
        CPresetInfo current = GetCurrentPreset();
        current.m_Category = category;
        SetCurrentPreset(std::move(current));
    }
    // A session that had an external file open reopens it; one that has gone away is no error
    // of the chunk, whose values are in place already.
    if (external.IsValid() && !external.GetPathString().empty() && external.IsExist())
        (void)UserExternalPresetFile_Open(alg, external, false);
    (void)UserMenuPresets_LoadPresets(alg);
}

} // namespace Preset

MIREL_NAMESPACE_END
