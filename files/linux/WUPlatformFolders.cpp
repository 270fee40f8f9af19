// System folders on Linux.
//
// Every variable is used only when it holds an absolute path; otherwise its default applies:
//   $XDG_CONFIG_HOME  ~/.config        $XDG_DATA_HOME    ~/.local/share
//   $XDG_CACHE_HOME   ~/.cache         $XDG_DATA_DIRS    /usr/local/share:/usr/share (first entry)
//   desktop           $XDG_DESKTOP_DIR, else ~/Desktop
//
// Domain bases of the folders marked (d):
//   eLocalDomain (1)      first entry of $XDG_DATA_DIRS
//   eUserDomain (2)       $XDG_CONFIG_HOME   ($XDG_CACHE_HOME for the two cache folders)
//   eUserLocalDomain (3)  $XDG_DATA_HOME     ($XDG_CACHE_HOME for the two cache folders)
//   eSystemDomain (0)     none: eFMNoSuchSystemFolder
//
// The table, by value: the folder, its base and the sub-folder under that base.
// clang-format off
// 0  eSystemFolder                  /usr/lib
// 1  eDesktopFolder                 desktop (domains 2, 3)
// 2  ePreferencesFolder             (d)
// 3  eMirelPreferencesFolder        (d)                        Mirel Audio/Preferences
// 4  eTemporaryFolder               $TMPDIR, else /tmp
// 5  eTrashFolder                   none
// 6  eCurrentFolder                 working folder
// 7  eRootFolder                    $HOME (domain 2), else /
// 8  eLibrariesFolder               none
// 9  eAudioComponentsFolder         none
// 10 eCacheFolder                   (d)
// 11 eMirelCacheFolder              (d)                        Mirel Audio/Caches
// 12 eAppDataFolder                 (d)
// 13 eMirelAppDataFolder            (d)                        Mirel Audio
// 14 eSharedUserDataFolder          $XDG_DATA_DIRS[0]
// 15 eMirelSharedUserDataFolder     $XDG_DATA_DIRS[0]          Mirel Audio
// 16 eMirelScanViewFolder           (d)                        Mirel Audio/ScanView
// 17 eMirelPreferencesFolder2       (d)                        Mirel Audio/Preferences
// 18 eMirelPivotConfigFolder        (d)                        Mirel Audio/Mirel Local Server
// 19 eMirelPluginServerConfigFolder (d)                        Mirel Audio/Mirel Plugin Server/V13
// 20 eMirelUserLogsFolder           (d)                        Mirel Audio/Logs
// 21 eMirelBoostSharedMemoryDir     (d)                        Mirel Audio/boost_mirel_interprocess
// 22 eAutoLaunchOnStartUpFolder     $XDG_CONFIG_HOME           autostart
// 23 eVST3PluginsFolder             ~ (2,3), /usr/lib (0,1)    .vst3 (2,3), vst3 (0,1)
// 24 eVST3PresetsFolder             ~ (2,3), $XDG_DATA_DIRS[0] .vst3/presets, vst3/presets
// clang-format on
//
// "none" is eFMNoSuchSystemFolder, as is a folder above 24; a domain outside 0 to 3 is
// eFMNoSuchDomain for every folder. The VST3 folders follow the places Linux hosts search rather
// than the "VST3" sub-folders of other systems, so that installed plug-ins are found.

#include "files/linux/WUPlatformFolders.h"

#include <cstdlib>

#include "files/linux/WUPlatformFiles.h"

MIREL_NAMESPACE_BEGIN
namespace FM {
namespace Platform {

namespace {

bool IsAbsolute(char const *text) {
    return text != nullptr && text[0] == '/';
}

std::string Join(std::string base, char const *tail) {
    if (tail == nullptr || tail[0] == 0)
        return base;
    if (base.empty() || base.back() != '/')
        base += '/';
    base += tail;
    return base;
}

std::string FromEnvironment(char const *name, char const *defaultUnderHome) {
    char const *value = std::getenv(name);
    if (IsAbsolute(value))
        return value;
    return Join(HomeFolder(), defaultUnderHome);
}

std::vector<std::string> DataDirs() {
    std::vector<std::string> dirs;
    char const *value = std::getenv("XDG_DATA_DIRS");
    std::string text = (value != nullptr && value[0] != 0) ? value : "/usr/local/share:/usr/share";
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t const colon = text.find(':', start);
        std::string entry =
            text.substr(start, colon == std::string::npos ? std::string::npos : colon - start);
        // Relative entries are to be ignored by the XDG rules.
        if (!entry.empty() && entry[0] == '/')
            dirs.push_back(std::move(entry));
        if (colon == std::string::npos)
            break;
        start = colon + 1;
    }
    if (dirs.empty())
        dirs.push_back("/usr/local/share");
    return dirs;
}

std::string Desktop() {
    char const *value = std::getenv("XDG_DESKTOP_DIR");
    if (IsAbsolute(value))
        return value;
    return Join(HomeFolder(), "Desktop");
}

bool IsUserDomain(int domain) {
    return domain == eUserDomain || domain == eUserLocalDomain;
}

// The base of a folder marked (d), or empty when the domain has none.
std::string DomainBase(int domain, bool isCache) {
    switch (domain) {
    case eLocalDomain: return DataDirs().front();
    case eUserDomain:
        return isCache ? FromEnvironment("XDG_CACHE_HOME", ".cache")
                       : FromEnvironment("XDG_CONFIG_HOME", ".config");
    case eUserLocalDomain:
        return isCache ? FromEnvironment("XDG_CACHE_HOME", ".cache")
                       : FromEnvironment("XDG_DATA_HOME", ".local/share");
    default: return {};
    }
}

} // namespace

WTErr GetSystemFolderPath(int domain, int folder, std::string &outPath) {
    outPath.clear();
    if (domain < eSystemDomain || domain > eUserLocalDomain)
        return eFMNoSuchDomain;

    char const *subFolder = nullptr;
    bool byDomain = false;
    bool isCache = false;
    switch (folder) {
    case eSystemFolder: outPath = "/usr/lib"; break;
    case eDesktopFolder:
        if (IsUserDomain(domain))
            outPath = Desktop();
        break;
    case ePreferencesFolder: byDomain = true; break;
    case eMirelPreferencesFolder:
    case eMirelPreferencesFolder2:
        byDomain = true;
        subFolder = "Mirel Audio/Preferences";
        break;
    case eTemporaryFolder: outPath = TemporaryFolder(); break;
    case eTrashFolder: break;
    case eCurrentFolder: outPath = CurrentFolder(); break;
    case eRootFolder: outPath = domain == eUserDomain ? HomeFolder() : std::string("/"); break;
    case eLibrariesFolder:
    case eAudioComponentsFolder: break;
    case eCacheFolder: byDomain = isCache = true; break;
    case eMirelCacheFolder:
        byDomain = isCache = true;
        subFolder = "Mirel Audio/Caches";
        break;
    case eAppDataFolder: byDomain = true; break;
    case eMirelAppDataFolder:
        byDomain = true;
        subFolder = "Mirel Audio";
        break;
    case eSharedUserDataFolder: outPath = DataDirs().front(); break;
    case eMirelSharedUserDataFolder: outPath = Join(DataDirs().front(), "Mirel Audio"); break;
    case eMirelScanViewFolder:
        byDomain = true;
        subFolder = "Mirel Audio/ScanView";
        break;
    case eMirelPivotConfigFolder:
        byDomain = true;
        subFolder = "Mirel Audio/Mirel Local Server";
        break;
    case eMirelPluginServerConfigFolder:
        byDomain = true;
        subFolder = "Mirel Audio/Mirel Plugin Server/V13";
        break;
    case eMirelUserLogsFolder:
        byDomain = true;
        subFolder = "Mirel Audio/Logs";
        break;
    case eMirelBoostSharedMemoryDir:
        byDomain = true;
        subFolder = "Mirel Audio/boost_mirel_interprocess";
        break;
    case eAutoLaunchOnStartUpFolder:
        outPath = Join(FromEnvironment("XDG_CONFIG_HOME", ".config"), "autostart");
        break;
    case eVST3PluginsFolder:
        outPath = IsUserDomain(domain) ? Join(HomeFolder(), ".vst3") : std::string("/usr/lib/vst3");
        break;
    case eVST3PresetsFolder:
        outPath = IsUserDomain(domain) ? Join(HomeFolder(), ".vst3/presets")
                                       : Join(DataDirs().front(), "vst3/presets");
        break;
    default: return eFMNoSuchSystemFolder;
    }
    if (byDomain) {
        std::string base = DomainBase(domain, isCache);
        if (!base.empty())
            outPath = Join(std::move(base), subFolder);
    }
    if (outPath.empty())
        return eFMNoSuchSystemFolder;
    return eNoErr;
}

std::vector<std::string> LocationFilePaths() {
    std::vector<std::string> paths;
    for (auto const &dir : DataDirs()) {
        if (paths.size() == 3)
            break;
        paths.push_back(Join(dir, "Mirel Audio/Locations.yaml"));
    }
    return paths;
}

} // namespace Platform
} // namespace FM
MIREL_NAMESPACE_END
