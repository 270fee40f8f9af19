// Runs the gs-dump command on stream files in a temporary folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

namespace {

std::string ReadFile(const std::filesystem::path &path) {
    return mirel_test::ReadFileText(path.string());
}

int RunDump(const std::string &arguments) {
    const std::string command = std::string("'") + MIREL_GS_DUMP + "' " + arguments;
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Quote(const std::filesystem::path &path) {
    return "'" + path.string() + "'";
}

const std::filesystem::path kDemo = std::filesystem::path(MIREL_GS_TEST_DATA) / "demo.gs";

} // namespace

TEST(GSDumpTool, PrintsTheReviewedYamlOfAStreamFile) {
    mirel_test::WCTempDir dir;
    const auto out = dir.path() / "demo.yaml";
    ASSERT_EQ(RunDump(Quote(kDemo) + " -o " + Quote(out)), 0);
    EXPECT_EQ(ReadFile(out),
              ReadFile(std::filesystem::path(MIREL_GS_TEST_DATA) / "demo_compact.yaml"));
    ASSERT_EQ(RunDump("--full " + Quote(kDemo) + " -o " + Quote(out)), 0);
    EXPECT_EQ(ReadFile(out),
              ReadFile(std::filesystem::path(MIREL_GS_TEST_DATA) / "demo_full.yaml"));
}

TEST(GSDumpTool, WritesSvgAndChecksums) {
    mirel_test::WCTempDir dir;
    const auto svg = dir.path() / "demo.svg";
    ASSERT_EQ(RunDump("--svg " + Quote(kDemo) + " -o " + Quote(svg)), 0);
    EXPECT_EQ(ReadFile(svg), ReadFile(std::filesystem::path(MIREL_GS_TEST_DATA) / "demo.svg"));
    const auto yaml = dir.path() / "sums.yaml";
    const auto counts = dir.path() / "counts.txt";
    ASSERT_EQ(
        RunDump("--checksums " + Quote(kDemo) + " -o " + Quote(yaml) + " 2> " + Quote(counts)), 0);
    EXPECT_NE(ReadFile(yaml).find("checksum: "), std::string::npos);
    EXPECT_NE(ReadFile(counts).find("0 WCGraphicStreamToYAML.m_count_missing"), std::string::npos);
}

TEST(GSDumpTool, PaintsAPictureOfTheStreamsSize) {
    mirel_test::WCTempDir dir;
    const auto png = dir.path() / "demo.png";
    // The demo's resources folder is not on this machine: its images are reported, not fatal.
    ASSERT_EQ(RunDump("--png " + Quote(png) + " " + Quote(kDemo) + " 2>/dev/null"), 0);
    const std::string bytes = ReadFile(png);
    ASSERT_GT(bytes.size(), 24u);
    EXPECT_EQ(bytes.substr(1, 3), "PNG");
    // Width and height stand big-endian in the header chunk.
    const auto word = [&](std::size_t at) {
        return (std::uint8_t(bytes[at]) << 24) | (std::uint8_t(bytes[at + 1]) << 16) |
               (std::uint8_t(bytes[at + 2]) << 8) | std::uint8_t(bytes[at + 3]);
    };
    EXPECT_EQ(word(16), 320);
    EXPECT_EQ(word(20), 200);
}

TEST(GSDumpTool, EmptyFileGivesEmptyDocuments) {
    mirel_test::WCTempDir dir;
    const auto empty = dir.path() / "empty.gs";
    std::ofstream(empty, std::ios::binary).flush();
    const auto out = dir.path() / "out";
    ASSERT_EQ(RunDump("--svg " + Quote(empty) + " -o " + Quote(out)), 0);
    EXPECT_EQ(ReadFile(out).rfind("<svg", 0), 0u) << ReadFile(out);
    ASSERT_EQ(RunDump(Quote(empty) + " -o " + Quote(out)), 0);
    EXPECT_EQ(ReadFile(out), "[]\n");
}

TEST(GSDumpTool, CorruptStreamLeavesTheOutputAlone) {
    mirel_test::WCTempDir dir;
    const std::string stream = ReadFile(kDemo);
    const auto cut = dir.path() / "cut.gs";
    std::ofstream(cut, std::ios::binary) << stream.substr(0, stream.size() - 8);
    const auto out = dir.path() / "out.yaml";
    std::ofstream(out) << "kept\n";
    EXPECT_EQ(RunDump(Quote(cut) + " -o " + Quote(out) + " 2> /dev/null"), 3);
    EXPECT_EQ(ReadFile(out), "kept\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                            std::filesystem::directory_iterator()),
              2);
}

TEST(GSDumpTool, MissingFileAndBadArgumentsHaveTheirExitCodes) {
    mirel_test::WCTempDir dir;
    EXPECT_EQ(RunDump(Quote(dir.path() / "none.gs") + " 2> /dev/null"), 2);
    EXPECT_EQ(RunDump("--bogus " + Quote(kDemo) + " 2> /dev/null"), 1);
    EXPECT_EQ(RunDump("2> /dev/null"), 1);
}
