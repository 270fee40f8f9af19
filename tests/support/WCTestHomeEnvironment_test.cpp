// This suite makes no home of its own: what it sees is the program's temporary home, which every
// test program gets from mirel_add_test.
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "files/WCStPath.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace fs = std::filesystem;
namespace ml = MIREL_NAMESPACE_NAME;

std::string Env(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool IsInside(const fs::path &path, const fs::path &folder) {
    const fs::path relative = path.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != "..";
}

TEST(ProgramHome, EveryVariablePointsIntoATemporaryHome) {
    const fs::path home = mirel_test::WCTestHomeEnvironment::Current();
    ASSERT_FALSE(home.empty()) << "the program's home environment is not registered";
    EXPECT_TRUE(fs::is_directory(home));
    EXPECT_EQ(home.filename().string().rfind("mirel-test-", 0), 0u) << home;
    EXPECT_EQ(Env("HOME"), home.string());
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                             "XDG_DATA_DIRS", "XDG_CONFIG_DIRS", "XDG_DESKTOP_DIR", "TMPDIR"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(IsInside(Env(name), home)) << Env(name);
        EXPECT_TRUE(fs::is_directory(Env(name)));
    }
    EXPECT_TRUE(IsInside(fs::temp_directory_path(), home));
}

TEST(ProgramHome, TheLibrarysFoldersLieInIt) {
    const fs::path home = mirel_test::WCTestHomeEnvironment::Current();
    for (int domain : {ml::FM::eUserDomain, ml::FM::eUserLocalDomain, ml::FM::eLocalDomain}) {
        const ml::FM::WCStPath preferences(static_cast<ml::FM::WEFoldersDomain>(domain),
                                           ml::FM::eMirelPreferencesFolder);
        SCOPED_TRACE(domain);
        EXPECT_TRUE(IsInside(preferences.GetNativePathString().c_str(), home));
    }
}

TEST(ProgramHome, APerTestHomeNestsInsideAndGivesItBack) {
    const fs::path home = mirel_test::WCTestHomeEnvironment::Current();
    {
        mirel_test::WCTestHome inner;
        EXPECT_TRUE(IsInside(inner.path(), home));
        EXPECT_EQ(Env("HOME"), inner.path().string());
    }
    EXPECT_EQ(Env("HOME"), home.string());
}

} // namespace
