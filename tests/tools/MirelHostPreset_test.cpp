// Runs `mirel-host preset` on copies of the reviewed preset files in a temporary folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "Code/Presets/PresetDocuments.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using mirel_test::ReadFileText;

std::string Quote(const fs::path &path) {
    return "'" + path.string() + "'";
}

// The command's exit code; its standard output goes to `out`, its errors are dropped.
int RunPreset(const std::string &arguments, const fs::path &out) {
    const std::string command =
        std::string("'") + MIREL_HOST + "' preset " + arguments + " > " + Quote(out) + " 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

ml::Preset::WTPresetList ReadXPS(const fs::path &path) {
    ml::Preset::WTPresetList list;
    const ml::Preset::CPresetsFileInfo file(ml::FM::WCStPath(path.string()),
                                            ml::Preset::ePresetsFormatXMLFile);
    EXPECT_EQ(ml::Preset::ReadPresetsFile(file, list, true), ml::eNoErr) << path;
    return list;
}

class MirelHostPreset : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char *name : {"two_setups.xps", "factory.xps"})
            fs::copy_file(fs::path(MIREL_PRESET_TEST_DATA) / name, m_dir.path() / name);
    }
    fs::path At(const char *name) const { return m_dir.path() / name; }

    mirel_test::WCTempDir m_dir;
};

TEST_F(MirelHostPreset, PrintsNamesSetupsValuesAndBlocks) {
    ASSERT_EQ(RunPreset("print " + Quote(At("two_setups.xps")), At("out.txt")), 0);
    const std::string text = ReadFileText(At("out.txt"));
    for (const char *expected :
         {"1 preset(s)", "preset 0 \"Warm & Wide\"", "setup SETUP_A \"Verse\"", "0 500 1000",
          "-6.5 * 1e-05 440", "block       \"Doubles\", id 2, BufferDouble",
          "descriptor \"Gain\" = \"0.5\"", "<Mode>stereo</Mode>", "<Curve points=\"2\">",
          "x ]]> y"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected << "\n" << text;

    ASSERT_EQ(RunPreset("print " + Quote(At("factory.xps")), At("out.txt")), 0);
    EXPECT_NE(ReadFileText(At("out.txt")).find("title \"Basics\"\npreset 0 \"Default\""),
              std::string::npos);
}

TEST_F(MirelHostPreset, ConvertsToYpsAndBackToTheSamePresets) {
    ASSERT_EQ(RunPreset("convert " + Quote(At("two_setups.xps")) + " " + Quote(At("one.yps")),
                        At("out.txt")),
              0);
    ASSERT_EQ(
        RunPreset("convert " + Quote(At("one.yps")) + " " + Quote(At("back.xps")), At("out.txt")),
        0);
    const auto original = ReadXPS(At("two_setups.xps"));
    const auto back = ReadXPS(At("back.xps"));
    ASSERT_EQ(back.size(), 1u);
    EXPECT_TRUE(ml::Preset::CPresetInfo::IsSamePreset(*original[0], *back[0]));
    EXPECT_EQ(back[0]->m_Data.size(), 2u);
    EXPECT_EQ(ReadFileText(At("back.xps")), ReadFileText(At("two_setups.xps")));

    // A .yps holds one preset: the second of a factory file on request, the first by default.
    ASSERT_EQ(RunPreset("convert --index 1 " + Quote(At("factory.xps")) + " " + Quote(At("f.yps")),
                        At("out.txt")),
              0);
    ASSERT_EQ(RunPreset("print " + Quote(At("f.yps")), At("out.txt")), 0);
    EXPECT_NE(ReadFileText(At("out.txt")).find("preset 0 \"Blocks only\""), std::string::npos);
    ASSERT_EQ(
        RunPreset("convert " + Quote(At("factory.xps")) + " " + Quote(At("f.yps")), At("out.txt")),
        0);
    EXPECT_NE(ReadFileText(At("out.txt")).find("holds 2 presets"), std::string::npos);
}

TEST_F(MirelHostPreset, BadInputWritesNothingAndBadArgumentsAreRefused) {
    const std::string xps = ReadFileText(At("two_setups.xps"));
    std::ofstream(At("cut.xps"), std::ios::binary) << xps.substr(0, xps.size() / 2);
    std::ofstream(At("foreign.yps")) << "VendorName: Other\nChunkData: |\n  <x/>\n";
    std::ofstream(At("broken.yps")) << "VendorName: Mirel\nChunkData: |\n  <PresetChunkXMLTree\n";
    std::ofstream(At("kept.yps")) << "kept\n";
    std::ofstream(At("file")) << "a file, not a folder\n";
    const struct {
        std::string arguments;
        int code;
        const char *output;
    } cases[] = {
        {"convert " + Quote(At("cut.xps")) + " " + Quote(At("new.yps")), 2, "new.yps"},
        {"convert " + Quote(At("foreign.yps")) + " " + Quote(At("new.xps")), 2, "new.xps"},
        {"convert " + Quote(At("broken.yps")) + " " + Quote(At("new.xps")), 2, "new.xps"},
        {"convert " + Quote(At("missing.xps")) + " " + Quote(At("new.yps")), 2, "new.yps"},
        {"convert " + Quote(At("cut.xps")) + " " + Quote(At("kept.yps")), 2, nullptr},
        {"print " + Quote(At("cut.xps")), 2, nullptr},
        {"convert " + Quote(At("factory.xps")) + " " + Quote(At("new.txt")), 1, "new.txt"},
        {"convert --index 2 " + Quote(At("factory.xps")) + " " + Quote(At("new.yps")), 1,
         "new.yps"},
        {"convert --index x " + Quote(At("factory.xps")) + " " + Quote(At("new.yps")), 1,
         "new.yps"},
        {"convert " + Quote(At("factory.xps")), 1, nullptr},
        {"print", 1, nullptr},
        {"convert " + Quote(At("two_setups.xps")) + " " + Quote(At("file") / "new.yps"), 4,
         nullptr},
    };
    for (const auto &entry : cases) {
        EXPECT_EQ(RunPreset(entry.arguments, At("out.txt")), entry.code)
            << entry.arguments << "\n"
            << ReadFileText(At("out.txt"));
        if (entry.output != nullptr) {
            EXPECT_FALSE(fs::exists(At(entry.output))) << entry.arguments;
        }
    }
    EXPECT_EQ(ReadFileText(At("kept.yps")), "kept\n");
    EXPECT_EQ(ReadFileText(At("file")), "a file, not a folder\n");
}

} // namespace
