#include "files/WULocationIndicators.h"

#include <gtest/gtest.h>

#include "files/WTPathType.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::WriteText;
namespace fs = std::filesystem;

class LocationIndicators : public ::testing::Test {
protected:
    void SetUp() override {
        m_second = m_home.path() / "second";
        m_first = m_home.path() / "usr/share";
        setenv("XDG_DATA_DIRS", (m_first.string() + ":" + m_second.string()).c_str(), 1);
    }
    void WriteLocations(fs::path const &dataDir, std::string const &yaml) {
        WriteText(dataDir / "Mirel Audio/Locations.yaml", yaml);
    }
    mirel_test::WCTestHome m_home;
    fs::path m_first;
    fs::path m_second;
};

TEST_F(LocationIndicators, ValuesComeFromTheFirstFileThatHasThem) {
    WriteLocations(m_first, "Location: /opt/Mirel/Plug-Ins\nLocationV13: ab\n");
    WriteLocations(m_second, "LocationV13: /opt/Mirel/V13\nLocationKLS: /srv/kls\n");
    FM::WCStPath path;
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eNoErr);
    EXPECT_STREQ(path.GetPathString().c_str(), "/opt/Mirel/Plug-Ins");
    // Too short in the first view, so the second view answers.
    EXPECT_EQ(FM::GetPathFromIndicator("V13PluginFolder", path), eNoErr);
    EXPECT_STREQ(path.GetPathString().c_str(), "/opt/Mirel/V13");
    EXPECT_EQ(FM::GetPathFromIndicator("KLSFolder", path), eNoErr);
    EXPECT_STREQ(path.GetPathString().c_str(), "/srv/kls");
}

TEST_F(LocationIndicators, BadWordsValuesAndFilesGiveTheirCodes) {
    FM::WCStPath path("/unchanged");
    EXPECT_EQ(FM::GetPathFromIndicator("NoSuchFolder", path), eFMWrongParameters);
    EXPECT_EQ(FM::GetPathFromIndicator("mainpluginfolder", path), eFMWrongParameters);
    EXPECT_FALSE(FM::IsValidIndicator(nullptr));
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eFMFileNotFound);
    WriteLocations(m_first, "Location: abc\n");
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eMemNullPointer);
    WriteLocations(m_first, "Location:\nLocationV9: ''\n");
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eMemNullPointer)
        << "an empty value is too short, like an empty text";
    EXPECT_EQ(FM::GetPathFromIndicator("V9PluginFolder", path), eMemNullPointer);
    EXPECT_EQ(FM::GetPathFromIndicator("V12PluginFolder", path), eFMFileNotFound);
    WriteLocations(m_first, "Location: [unclosed\n");
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eFMReadFailed);
    WriteLocations(m_first, "- just\n- a list\n");
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eFMReadFailed);
    EXPECT_STREQ(path.GetPathString().c_str(), "/unchanged");
    // A broken first view does not hide a good second one.
    WriteLocations(m_second, "Location: /good/one\n");
    EXPECT_EQ(FM::GetPathFromIndicator("MainPluginFolder", path), eNoErr);
    EXPECT_STREQ(path.GetPathString().c_str(), "/good/one");
}

TEST(ReadLocationValue, AcceptsOnlyTextValues) {
    std::string value;
    EXPECT_EQ(FM::ReadLocationValue("Location: {a: b}\n", "Location", value), eFMReadFailed);
    EXPECT_EQ(FM::ReadLocationValue("", "Location", value), eFMFileNotFound);
    EXPECT_EQ(FM::ReadLocationValue("Location: '/x y/z'\n", "Location", value), eNoErr);
    EXPECT_EQ(value, "/x y/z");
}

} // namespace
