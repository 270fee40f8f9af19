#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Presets/CPresetInfo.h"
#include "Code/Presets/CPresetsFileInfo.h"
#include "Code/Presets/CPublicAlg.h"
#include "Code/Presets/PresetDocuments.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace Preset {

// Everything one plug-in instance knows about presets: the factory presets of its bundle, the
// dynamic factory presets installed beside it, the user's presets (the menu file and the user
// folder), one external file the user opened, the default ("startup") preset and the startup MIDI
// map, and the preset last loaded into each setup. It finds and makes the files, loads presets
// into the plug-in in the required order, saves them in every form, steps through a section and
// keeps the host's chunk. Files live under the user's folders:
//   <config>/Mirel Audio/Preferences/Plug-In Settings/<Name> Settings.xps         user menu file
//   <config>/Mirel Audio/Preferences/Plug-In Settings/<Name> Startup Preset.xps   default preset
//   <config>/Mirel Audio/Preferences/Plug-In Settings/<Name> MidiMapStartup.xps   startup MIDI map
//   <config>/Mirel Audio/Preferences/Preset-Clipboard.yps                         shared clipboard
//   <data>/Mirel Audio/Presets/<Name> User Presets/                               user folder
//   <shared data>/Mirel Audio/<Name>/Presets/                                     dynamic factory
// Owned by the algorithm, made in InitInstanceData; the constructor throws its code. Nearly all
// of it is virtual so a plug-in may replace a part. [main-thread], except the chunk functions,
// which the host calls on its thread under the algorithm's lock.
class CPresetsManager {
public:
    // Asked before a file is overwritten, with a title, a message and the accepting button's
    // text; false cancels. Without one (the usual headless case) the caller's call is the
    // consent.
    using WTAlertResponder =
        std::function<bool(const char *title, const char *message, const char *okButton)>;

    static constexpr const char *kPluginSettingsFolderName = "Plug-In Settings";
    static constexpr const char *kUserMenuFileSuffix = " Settings.xps";
    static constexpr const char *kUserPresetsFolderSuffix = " User Presets";
    static constexpr const char *kDefaultFileSuffix = " Startup Preset.xps";
    static constexpr const char *kMidiMapStartupFileSuffix = " MidiMapStartup.xps";
    static constexpr const char *kPresetFileTemplateSuffix = " Preset.xps";
    static constexpr const char *kClipboardFileName = "Preset-Clipboard.yps";
    static constexpr const char *kDefaultPresetName = "My Default Preset";
    static constexpr const char *kDefaultMidiMapName = "My Default Midi-Map";
    static constexpr const char *kUntitledPresetName = "Untitled Preset";

    // Finds or makes the folders and files; throws the code of a folder or file it cannot make.
    explicit CPresetsManager(const CPublicAlg &alg);
    virtual ~CPresetsManager();
    CPresetsManager(const CPresetsManager &) = delete;
    CPresetsManager &operator=(const CPresetsManager &) = delete;

    // ---- paths ------------------------------------------------------------------------------
    // "<config>/Mirel Audio/Preferences/Plug-In Settings", made when missing, a link resolved.
    static WTErr CreatePathToPluginSettingsFolder(FM::WCStPath &path);
    // "<data>/Mirel Audio/Presets/<Name> User Presets", made when missing, a link resolved.
    static WTErr CreatePathToUserPresetsFolder(const CPublicAlg &alg, FM::WCStPath &path);
    // The bundle the plug-in came from; eRMContainerNotFound for a plug-in without one.
    static WTErr CreatePathToFactoryPresetFile(const CPublicAlg &alg, FM::WCStPath &path);
    static WTErr CreatePathToUserMenuPresetFile(const CPublicAlg &alg, CPresetsFileInfo &file);
    static WTErr CreatePathToDefaultPresetFile(const CPublicAlg &alg, CPresetsFileInfo &file);
    static WTErr CreatePathToClipboardFile(FM::WCStPath &path);
    // "<shared data>/Mirel Audio/<Name>/Presets"; not made.
    static FM::WCStPath GetDynamicFactoryPresetsFolder(const CPublicAlg &alg);

    // ---- loading ----------------------------------------------------------------------------
    // Loads `info` (with its data) into the plug-in; with `update` it becomes the current preset
    // of the active setup. 0 with nothing done when the plug-in refuses loads now.
    virtual WTErr LoadPresetToPlugin(const CPublicAlg &alg, const CPresetInfo &info, bool update);
    // eNoFactoryPresets for an empty list, eFactoryPresetNumOutOfRange past its end, and
    // ePresetInfoNotFound for a title or separator.
    virtual WTErr LoadFactoryPresetToPluginByIndex(const CPublicAlg &alg, std::size_t index);
    // eFactoryPresetNotFound for a name no enabled factory preset has.
    virtual WTErr LoadFactoryPresetToPluginByName(const CPublicAlg &alg, const char *name);
    virtual WTErr LoadUserMenuPresetToPluginByName(const CPublicAlg &alg, const char *name);
    virtual WTErr LoadUserExternalPresetToPluginByName(const CPublicAlg &alg, const char *name);
    // The next (or previous) preset of the current preset's section, wrapping at the ends and
    // skipping separators, titles and disabled entries. Without a current preset, the factory
    // list from its start (or end). eLoadPresetToPlugin_vec_empty when the section is empty.
    virtual WTErr LoadPresetFromCurrentPresetSection(const CPublicAlg &alg, bool next);
    // The first preset of the default file; ePresetInfoNotFound when there is none.
    virtual WTErr LoadDefaultPreset(const CPublicAlg &alg);
    virtual WTErr LoadStartupMidiPreset(const CPublicAlg &alg);
    // Opens `path` (a file or a folder of presets) as the external file and loads its
    // `selection`-th preset; a failed load closes the file again.
    virtual WTErr LoadPresetsFromUserPath(const CPublicAlg &alg, const FM::WCStPath &path,
                                          std::size_t selection = 0);

    // ---- saving -----------------------------------------------------------------------------
    // The plug-in's present state into `info` (both setups unless `activeOnly`).
    virtual WTErr SavePresetFromPlugin(const CPublicAlg &alg, CPresetInfo &info,
                                       bool activeOnly = false);
    virtual WTErr SaveMidiMapFromPlugin(const CPublicAlg &alg, CPresetInfo &info);
    // The plug-in's state (or, with a category and name, that stored preset) as the default
    // preset: setup A, named "My Default Preset". eUserCanceled when the responder refuses to
    // overwrite an existing default.
    virtual WTErr SaveAsDefaultPreset(const CPublicAlg &alg,
                                      EPresetSection category = ePresetSectionNone,
                                      const char *name = nullptr);
    // Saves the state as `name` in the user menu file, replacing a preset of that name.
    virtual WTErr SaveMenu_SaveAsUserMenuPreset(const CPublicAlg &alg, const char *name);
    // Saves the state into the file at `path` (made when missing) under the file's base name.
    // Choosing the path is a dialog of the view layer: without one, eNotImplemented.
    virtual WTErr SaveMenu_SaveToFileAs(const CPublicAlg &alg, const FM::WCStPath &path);
    // A new file at `path` holding just this preset, named `name` (the base name when empty).
    virtual WTErr SaveMenu_SaveToNewFile(const CPublicAlg &alg, const FM::WCStPath &path,
                                         const char *name = nullptr);
    // Only the active setup, as `name` in the file at `path`.
    virtual WTErr SaveMenu_SaveActiveSetup(const CPublicAlg &alg, const FM::WCStPath &path,
                                           const char *name);
    // The active setup to the shared clipboard file, which any plug-in of the type can read.
    virtual WTErr SaveMenu_CopyPreset(const CPublicAlg &alg);
    virtual WTErr SaveMenu_SetAsStartupMidiMap(const CPublicAlg &alg);
    // The state into `file`, named after the file's base name; a file in the user folder puts
    // the preset in the user section. The user list is reloaded.
    virtual WTErr SaveUserPresetToFile(const CPublicAlg &alg, const CPresetsFileInfo &file);
    // The forms of the browser and of the Redis bridge: a path relative to the user folder (or
    // absolute), an ".xps" added when it has none.
    virtual WTErr SavePresetFromHTML(const CPublicAlg &alg, const char *presetPath);
    virtual WTErr SavePresetFromRedis(const CPublicAlg &alg, const char *presetPath);
    virtual WTErr SaveToNewFileHTML(const CPublicAlg &alg, const char *presetPath);
    // `info` into `file`, other presets of the file kept.
    virtual WTErr AddPresetToFile(const CPublicAlg &alg, const CPresetInfo &info,
                                  const CPresetsFileInfo &file);
    virtual WTErr RemovePresetFromFile(const CPublicAlg &alg, const CPresetInfo &info);
    // Renames the preset in its file and in the lists; the current preset follows.
    virtual WTErr RenamePreset(const CPublicAlg &alg, const CPresetInfo &info, const char *newName);
    virtual WTErr RenamePresetInFile(const CPublicAlg &alg, const CPresetsFileInfo &file,
                                     const char *oldName, const char *newName);

    // ---- host chunks ------------------------------------------------------------------------
    // The state as chunk text (section 5, format 5, read-only), both setups when `allSetups`
    // and the plug-in saves all setups; a MIDI map with `midi`.
    static WTErr PreparePresetChunk(const CPublicAlg &alg, Utils::WCStMemObj &chunk, bool allSetups,
                                    bool midi);
    // Loads a chunk made by PreparePresetChunk; a broken or foreign chunk changes nothing.
    static WTErr SetPresetChunk(const CPublicAlg &alg, const Utils::WCStConstMemObj &chunk);
    // The active setup alone (section and category 6).
    WTErr GetCurrentSetupPresetChunk(const CPublicAlg &alg, Utils::WCStMemObj &chunk);
    // After a chunk: the external file the chunk names is to be reopened and the user list
    // reloaded, on the main thread. [any-thread]
    virtual WTErr LoadPresetsOnChunkSet(const CPublicAlg &alg, const CPresetInfo &info);
    // [main-thread] Does what a chunk set left to do; the algorithm's idle tick calls it, and
    // so does every load from the user and external lists.
    void ApplyChunkSetWork(const CPublicAlg &alg);

    // ---- lists ------------------------------------------------------------------------------
    const CPresetInfo *GetFactoryPreset(std::size_t index) const;
    WTErr GetFactoryPresetName(std::size_t index, WCFixedStringBase &name) const;
    std::size_t GetNumFactoryPresets() const noexcept { return m_FactoryPresets.size(); }
    const CPresetsFileInfo &GetFactoryPresetsFile() const noexcept { return m_FactoryPresetsFile; }
    const CPresetsFileInfo &GetUserMenuPresetsFile() const noexcept { return m_UserMenuFile; }
    const CPresetsFileInfo &GetUserExternalPresetsFile() const noexcept { return m_ExternalFile; }
    const CPresetsFileInfo &GetDefaultPresetsFile() const noexcept { return m_DefaultFile; }
    const CPresetsFileInfo &GetStartupMidiMapFile() const noexcept { return m_StartupMidiFile; }
    const CPresetsFileInfo &GetPresetFileTemplate() const noexcept { return m_PresetFileTemplate; }
    const FM::WCStPath &GetUserMenuPresetsFolder() const noexcept { return m_UserMenuFolder; }
    const WTPresetList &GetFactoryPresets() const noexcept { return m_FactoryPresets; }
    const WTPresetList &GetDynamicFactoryPresets() const noexcept { return m_DynamicPresets; }
    const WTPresetList &GetUserMenuPresets() const noexcept { return m_UserPresets; }
    const WTPresetList &GetUserExternalPresets() const noexcept { return m_ExternalPresets; }
    // The dynamic factory presets by group (the file or folder they came from), as indexes into
    // GetDynamicFactoryPresets.
    const std::map<std::string, std::vector<std::size_t>> &GetDynamicFactoryGroups() const {
        return m_DynamicGroups;
    }

    // The user menu file's presets, then those of the files in the user folder.
    virtual WTErr UserMenuPresets_LoadPresets(const CPublicAlg &alg);
    virtual WTErr UserMenuPresets_LoadPresetsFromFile(const CPublicAlg &alg, WTPresetList &list);
    virtual WTErr UserMenuPresets_LoadPresetsFromFolder(const CPublicAlg &alg, WTPresetList &list);
    // Makes `path` the external file: its list replaces the external list. A file with one
    // preset shows under the file's name. With `loadFirst` the first preset loads at once, and
    // a failed load leaves the external file as it was. The list is unchanged on failure.
    virtual WTErr UserExternalPresetFile_Open(const CPublicAlg &alg, const FM::WCStPath &path,
                                              bool loadFirst = false);
    virtual WTErr UserExternalPresetFile_LoadPresets(const CPublicAlg &alg);
    void UserExternalPresetFile_Close();
    // Reloads the factory list from the bundle.
    virtual WTErr MenuPresetsFile_LoadPresets(const CPublicAlg &alg);
    // The presets of a file, or of the preset files of a folder ("List Order.txt" ordered).
    // ePresetFileProblem with an empty list for a missing path or one without presets.
    virtual WTErr GetPresetsFromPath(WTPresetList &list, const FM::WCStPath &path,
                                     const CPublicAlg &alg, EPresetSection section);
    // Appends the presets of every .xps and .yps file below `folder`.
    virtual WTErr IterateFolderForXPSFiles(WTPresetList &list, const FM::WCStPath &folder,
                                           const CPublicAlg &alg, EPresetSection section);
    virtual WTErr ScanForDynamicFactoryPresets(const CPublicAlg &alg);
    // Moves the dynamic factory presets into the factory list, for plug-ins whose installed
    // presets are their factory presets.
    void TreatDataFolderPresetsAsFactoryPresets();
    void ClearUserExternalPresets();
    // 1 when a preset of `list` has two plug-in specific blocks of one tag in a setup, else 0;
    // each finding is appended to `log` when given.
    static int PresetsSanityCheck(const WTPresetList &list, std::string *log = nullptr);
    // Makes the factory file the one at `path` and reloads the factory list.
    virtual WTErr ReadFactoryPresetFromFile(const CPublicAlg &alg, const FM::WCStPath &path);
    // Every list as "Preset" children of `element` (headers only), in section order.
    WTErr WriteAllPresetsToXML(XML::CXMLElement &element) const;

    // ---- state ------------------------------------------------------------------------------
    // Whether the plug-in's present state differs from the current preset of the active setup;
    // false when none was loaded.
    virtual bool IsChangedPresetExists(const CPublicAlg &alg, const CPresetInfo &info);
    bool FindChangedPreset(const CPublicAlg &alg);
    // `info` becomes the current preset of the active setup.
    virtual void UpdatePluginSetup(const CPublicAlg &alg, const CPresetInfo &info);
    void SetActiveSetup(EPluginSetup setup);
    EPluginSetup GetActiveSetup() const noexcept { return m_ActiveSetup; }
    // The current preset of `from` becomes that of `to`.
    void CopySetup(EPluginSetup from, EPluginSetup to);
    // The current preset of `setup` (the active one for eCurrentSetup). [main-thread]
    const CPresetInfo &GetCurrentPreset(EPluginSetup setup = eCurrentSetup) const;
    // The only writer of the current presets, so the host's thread reads them whole.
    void SetCurrentPreset(CPresetInfo info, EPluginSetup setup = eCurrentSetup);
    // What a host chunk records of the active setup's current preset. [any-thread]
    struct WSChunkOrigin {
        EPresetSection m_Category = ePresetSectionNone;
        FM::WCStPath m_ExternalFilePath;
        std::int64_t m_IndexInList = -1;
    };
    WSChunkOrigin GetChunkOrigin() const;
    // A copy of the active setup's current preset, taken whole. [any-thread]
    CPresetInfo GetCurrentPresetCopy() const;
    // The index next to `from` in `list` (from -1: the start or end), wrapping and skipping
    // separators, titles and disabled entries; -1 when the list has none to offer.
    static std::int64_t ComputePresetIndex(const WTPresetList &list, std::int64_t from, bool next);
    // The list of a section, or null for one the manager keeps none of.
    const WTPresetList *GetSectionList(EPresetSection section) const;

    // ---- names ------------------------------------------------------------------------------
    // "Name 7" -> "Name 8"; "Name" -> "Name 1".
    static void IncrementNameCounter(WCFixedStringBase &name);
    static bool IsPresetNameUnique(const char *name, const WTPresetList &list);
    // `base` ("Untitled Preset" when empty), counted up until no preset of `list` has it.
    static void CreateNextUniqueName(const char *base, const WTPresetList &list,
                                     WCFixedStringBase &name);
    // `path`, its base name counted up until no file has it.
    static void CreateNextUniquePath(const FM::WCStPath &path, FM::WCStPath &unique);
    // Whether `name` is free among the user presets; `message` gets the text to show when not.
    bool SaveMenu_PreparePresetUniqueName(const char *name, WCFixedStringBase &message) const;

    void SetAlertResponder(WTAlertResponder responder) { m_Alert = std::move(responder); }

protected:
    // Whether the browser takes next/previous itself; none does here.
    virtual bool NextPrevForwardedToLocalSearch(bool) { return false; }
    bool Ask(const char *title, const char *message, const char *okButton) const;
    // Reads a listed preset's data from its file and loads it; `missing` for a null one.
    WTErr LoadListed(const CPublicAlg &alg, const CPresetInfo *listed, WTErr missing);
    void InitializePresetFileTemplate(const CPublicAlg &alg);
    void InitStartupMIDIPresetsFile(const CPublicAlg &alg);
    WTErr OpenOrCreateUserMenuSettingsFile();
    // The state as preset `name`, written into `file`.
    WTErr SaveStateToFile(const CPublicAlg &alg, CPresetsFileInfo file, const char *name,
                          bool activeOnly, EPresetSection section);
    WTPresetList *MutableSectionList(EPresetSection section);

private:
    CPresetInfo m_CurrentPreset[2];
    // A host's chunk switches setups on its thread.
    std::atomic<EPluginSetup> m_ActiveSetup = eSetupA;
    CPresetsFileInfo m_FactoryPresetsFile;
    WTPresetList m_FactoryPresets;
    CPresetsFileInfo m_PresetFileTemplate;
    WTPresetList m_DynamicPresets;
    WTPresetList m_UserPresets;
    WTPresetList m_ExternalPresets;
    std::map<std::string, std::vector<std::size_t>> m_DynamicGroups;
    CPresetsFileInfo m_UserMenuFile;
    FM::WCStPath m_UserMenuFolder;
    CPresetsFileInfo m_ExternalFile;
    bool m_CloseExternalOnFailedLoad = true;
    CPresetsFileInfo m_DefaultFile;
    CPresetsFileInfo m_StartupMidiFile;
    FM::WCStPath m_LastSavingPath;
    WTAlertResponder m_Alert;
    // Guards what the host's thread reads or leaves: the current presets and the active setup
    // (written on the main thread), and the work a chunk set leaves for the main thread.
    mutable std::mutex m_ChunkSetMutex;
    bool m_ChunkSetReloadUser = false;
    FM::WCStPath m_ChunkSetExternal;
    EPresetSection m_ChunkSetCategory = ePresetSectionNone;
};

} // namespace Preset

MIREL_NAMESPACE_END
