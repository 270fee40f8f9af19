#include "files/WTFileManagerTypes.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

char const *WEFoldersDomainName(int domain) noexcept {
    switch (domain) {
    case eSystemDomain: return "eSystemDomain";
    case eLocalDomain: return "eLocalDomain";
    case eUserDomain: return "eUserDomain";
    case eUserLocalDomain: return "eUserLocalDomain";
    default: return "Unknown Folder Domain";
    }
}

char const *WESystemFoldersName(int folder) noexcept {
    static char const *const kNames[] = {"eSystemFolder",
                                         "eDesktopFolder",
                                         "ePreferencesFolder",
                                         "eMirelPreferencesFolder",
                                         "eTemporaryFolder",
                                         "eTrashFolder",
                                         "eCurrentFolder",
                                         "eRootFolder",
                                         "eLibrariesFolder",
                                         "eAudioComponentsFolder",
                                         "eCacheFolder",
                                         "eMirelCacheFolder",
                                         "eAppDataFolder",
                                         "eMirelAppDataFolder",
                                         "eSharedUserDataFolder",
                                         "eMirelSharedUserDataFolder",
                                         "eMirelScanViewFolder",
                                         "eMirelPreferencesFolder2",
                                         "eMirelPivotConfigFolder",
                                         "eMirelPluginServerConfigFolder",
                                         "eMirelUserLogsFolder",
                                         "eMirelBoostSharedMemoryDir",
                                         "eAutoLaunchOnStartUpFolder",
                                         "eVST3PluginsFolder",
                                         "eVST3PresetsFolder"};
    if (folder < 0 || folder >= static_cast<int>(sizeof(kNames) / sizeof(kNames[0])))
        return "Unknown System Folder";
    return kNames[folder];
}

} // namespace FM
MIREL_NAMESPACE_END
