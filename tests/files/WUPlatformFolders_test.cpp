#include <cstdlib>

#include <gtest/gtest.h>

#include "files/WCStPath.h"
#include "files/WTFileManagerTypes.h"
#include "files/WTPathType.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;

std::string Resolve(FM::WEFoldersDomain domain, FM::WESystemFolders folder) {
    FM::WCStPath const path(domain, folder);
    return path.IsValid() ? FM::BoostPath(path).string() : std::string(WTErrName(path.GetError()));
}

TEST(SystemFolders, ResolveUnderTheXDGHomeWithTheirSubFolders) {
    mirel_test::WCTestHome home;
    fs::path const h = home.path();
    struct Case {
        FM::WEFoldersDomain domain;
        FM::WESystemFolders folder;
        fs::path expected;
    } const cases[] = {
        {FM::eUserDomain, FM::ePreferencesFolder, h / ".config"},
        {FM::eUserDomain, FM::eMirelPreferencesFolder, h / ".config/Mirel Audio/Preferences"},
        {FM::eUserDomain, FM::eMirelPreferencesFolder2, h / ".config/Mirel Audio/Preferences"},
        {FM::eUserDomain, FM::eMirelCacheFolder, h / ".cache/Mirel Audio/Caches"},
        {FM::eUserLocalDomain, FM::eCacheFolder, h / ".cache"},
        {FM::eUserLocalDomain, FM::eMirelAppDataFolder, h / ".local/share/Mirel Audio"},
        {FM::eLocalDomain, FM::eMirelAppDataFolder, h / "usr/share/Mirel Audio"},
        {FM::eLocalDomain, FM::eMirelCacheFolder, h / "usr/share/Mirel Audio/Caches"},
        {FM::eUserDomain, FM::eMirelScanViewFolder, h / ".config/Mirel Audio/ScanView"},
        {FM::eUserDomain, FM::eMirelPivotConfigFolder,
         h / ".config/Mirel Audio/Mirel Local Server"},
        {FM::eUserDomain, FM::eMirelPluginServerConfigFolder,
         h / ".config/Mirel Audio/Mirel Plugin Server/V13"},
        {FM::eUserDomain, FM::eMirelUserLogsFolder, h / ".config/Mirel Audio/Logs"},
        {FM::eUserDomain, FM::eMirelBoostSharedMemoryDir,
         h / ".config/Mirel Audio/boost_mirel_interprocess"},
        {FM::eUserDomain, FM::eDesktopFolder, h / "Desktop"},
        {FM::eUserDomain, FM::eRootFolder, h},
        {FM::eLocalDomain, FM::eRootFolder, "/"},
        {FM::eLocalDomain, FM::eSharedUserDataFolder, h / "usr/share"},
        {FM::eUserDomain, FM::eMirelSharedUserDataFolder, h / "usr/share/Mirel Audio"},
        {FM::eUserDomain, FM::eAutoLaunchOnStartUpFolder, h / ".config/autostart"},
        {FM::eUserDomain, FM::eVST3PluginsFolder, h / ".vst3"},
        {FM::eUserDomain, FM::eVST3PresetsFolder, h / ".vst3/presets"},
        {FM::eLocalDomain, FM::eVST3PresetsFolder, h / "usr/share/vst3/presets"},
        {FM::eLocalDomain, FM::eCurrentFolder, fs::current_path()},
    };
    for (auto const &c : cases)
        EXPECT_EQ(Resolve(c.domain, c.folder), c.expected.string())
            << FM::WEFoldersDomainName(c.domain) << " " << FM::WESystemFoldersName(c.folder);
}

TEST(SystemFolders, MissingFoldersAndDomainsGiveTheirCodes) {
    mirel_test::WCTestHome home;
    for (int domain = 0; domain < 4; ++domain)
        EXPECT_EQ(FM::WCStPath(FM::WEFoldersDomain(domain), FM::eTrashFolder).GetError(),
                  eFMNoSuchSystemFolder);
    EXPECT_EQ(FM::WCStPath(FM::eSystemDomain, FM::eMirelPreferencesFolder).GetError(),
              eFMNoSuchSystemFolder);
    EXPECT_EQ(FM::WCStPath(FM::eLocalDomain, FM::eDesktopFolder).GetError(), eFMNoSuchSystemFolder);
    EXPECT_EQ(FM::WCStPath(FM::eUserDomain, FM::eLibrariesFolder).GetError(),
              eFMNoSuchSystemFolder);
    EXPECT_EQ(FM::WCStPath(FM::eUserDomain, FM::WESystemFolders(25)).GetError(),
              eFMNoSuchSystemFolder);
    EXPECT_EQ(FM::WCStPath(FM::WEFoldersDomain(4), FM::eMirelCacheFolder).GetError(),
              eFMNoSuchDomain);
    EXPECT_EQ(FM::WCStPath(FM::WEFoldersDomain(-1), FM::eTemporaryFolder).GetError(),
              eFMNoSuchDomain);
    // Their names, used in messages, stay inside the name tables.
    EXPECT_STREQ(FM::WEFoldersDomainName(9), "Unknown Folder Domain");
    EXPECT_STREQ(FM::WESystemFoldersName(25), "Unknown System Folder");
    EXPECT_STREQ(FM::WESystemFoldersName(-1), "Unknown System Folder");
}

TEST(SystemFolders, AreCreatedOnlyWhenAsked) {
    mirel_test::WCTestHome home;
    fs::path const prefs = home.path() / ".config/Mirel Audio/Preferences";
    FM::WCStPath const plain(FM::eUserDomain, FM::eMirelPreferencesFolder);
    EXPECT_TRUE(plain.IsValid());
    EXPECT_FALSE(fs::exists(prefs));
    FM::WCStPath const made(FM::eUserDomain, FM::eMirelPreferencesFolder, true);
    EXPECT_TRUE(fs::is_directory(prefs));
    FM::WCStPath const named(FM::eLocalDomain, FM::eMirelAppDataFolder, "Redis", true);
    EXPECT_TRUE(fs::is_directory(home.path() / "usr/share/Mirel Audio/Redis"));
    EXPECT_STREQ(named.GetLeaf().c_str(), "Redis");
    FM::WCStPath const notMade(FM::eUserDomain, FM::eMirelUserLogsFolder, "Shell", false);
    EXPECT_FALSE(fs::exists(FM::BoostPath(notMade).string()));
}

TEST(SystemFolders, CreationBlockedByAFileIsReported) {
    mirel_test::WCTestHome home;
    files_test::WriteText(home.path() / ".cache/Mirel Audio", "in the way");
    FM::WCStPath const blocked(FM::eUserDomain, FM::eMirelCacheFolder, true);
    EXPECT_EQ(blocked.GetError(), eFMIsAFile);
}

TEST(SystemFolders, FollowXDGRulesForUnsetAndRelativeVariables) {
    mirel_test::WCTestHome home;
    unsetenv("XDG_CONFIG_HOME");
    setenv("XDG_CACHE_HOME", "relative/cache", 1);
    unsetenv("XDG_DESKTOP_DIR");
    setenv("XDG_DATA_DIRS", "relative:/second/share:/third", 1);
    EXPECT_EQ(Resolve(FM::eUserDomain, FM::eMirelPreferencesFolder),
              (home.path() / ".config/Mirel Audio/Preferences").string());
    EXPECT_EQ(Resolve(FM::eUserDomain, FM::eCacheFolder), (home.path() / ".cache").string());
    EXPECT_EQ(Resolve(FM::eUserDomain, FM::eDesktopFolder), (home.path() / "Desktop").string());
    EXPECT_EQ(Resolve(FM::eLocalDomain, FM::eAppDataFolder), "/second/share");
    setenv("TMPDIR", "/var/tmp", 1);
    EXPECT_EQ(Resolve(FM::eUserDomain, FM::eTemporaryFolder), "/var/tmp");
    unsetenv("TMPDIR");
    EXPECT_EQ(Resolve(FM::eUserDomain, FM::eTemporaryFolder), "/tmp");
}

} // namespace
