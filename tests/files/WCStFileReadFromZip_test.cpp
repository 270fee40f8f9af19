#include "files/WCStFileReadFromZip.h"

#include <map>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "core/WCStMemObj.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::MakeZip;
using files_test::PathOf;
using files_test::ReadText;
using files_test::WriteText;
namespace fs = std::filesystem;

// Names ending in "/" are folder entries.
std::vector<std::pair<std::string, std::string>> const kEntries = {
    {"Images/", ""},
    {"Images/knob.png", std::string("\x89PNG\0\1\2", 7)},
    {"Images/Sub/", ""},
    {"Images/Sub/slider.png", std::string(5000, 's')},
    {"readme.txt", "hello zip"},
    {"empty.bin", ""}};

class ZipTest : public ::testing::Test {
protected:
    void SetUp() override { MakeZip(m_zip, kEntries); }
    mirel_test::WCTempDir m_dir;
    fs::path m_zip = m_dir.path() / "Images.zip";
};

TEST_F(ZipTest, IteratorGivesLeavesOfFileEntriesOnly) {
    FM::WCStZipFileIterator iterator(PathOf(m_zip));
    ASSERT_TRUE(iterator.IsValid());
    std::vector<std::string> leaves;
    WCFixedString<255> leaf;
    while (iterator.GetNextItemFromZip(leaf) == eNoErr)
        leaves.emplace_back(leaf.view());
    EXPECT_EQ(leaves,
              (std::vector<std::string>{"knob.png", "slider.png", "readme.txt", "empty.bin"}));
    EXPECT_EQ(iterator.GetNextItemFromZip(leaf), eFMEndOfFolder);
    EXPECT_TRUE(leaf.empty());
    iterator.Restart();
    WCFixedString<1023> full;
    ASSERT_EQ(iterator.GetNextItemFromZip(leaf, full), eNoErr);
    EXPECT_STREQ(full.c_str(), "Images/knob.png");
}

TEST_F(ZipTest, EveryEntryReadsBackByFullNameAndByLeaf) {
    FM::WCStFileReadFromZip zip(PathOf(m_zip));
    ASSERT_TRUE(zip.IsValid()) << zip.ErrorName();
    FM::WCStZipFileIterator iterator(zip);
    std::map<std::string, std::string> expected(kEntries.begin(), kEntries.end());
    std::erase_if(expected, [](auto const &entry) { return entry.first.back() == '/'; });
    WCFixedString<255> leaf;
    WCFixedString<1023> full;
    int seen = 0;
    while (iterator.GetNextItemFromZip(leaf, full) == eNoErr) {
        ++seen;
        std::string const &want = expected.at(std::string(full.view()));
        std::uint64_t size = 0;
        EXPECT_EQ(zip.GetEntrySize(full.c_str(), size), eNoErr);
        EXPECT_EQ(size, want.size());
        std::string asString;
        EXPECT_EQ(zip.ReadToStdString(full.c_str(), asString), eNoErr);
        EXPECT_EQ(asString, want);
        Utils::WCStMemObj asMem;
        EXPECT_EQ(zip.ReadToWCStMemObj(leaf.c_str(), asMem), eNoErr);
        EXPECT_EQ(std::string(static_cast<char const *>(asMem.GetPtr()), asMem.GetSize()), want);
    }
    EXPECT_EQ(seen, 4);
}

TEST_F(ZipTest, MissingEntryIsFileNotFound) {
    FM::WCStFileReadFromZip zip(PathOf(m_zip));
    std::string data = "kept";
    EXPECT_EQ(zip.ReadToStdString("nothing.png", data), eFMFileNotFound);
    EXPECT_TRUE(data.empty());
    std::uint64_t size = 7;
    EXPECT_EQ(zip.GetEntrySize("", size), eFMFileNotFound);
    EXPECT_EQ(zip.GetEntrySize(nullptr, size), eFMFileNotFound);
    EXPECT_EQ(size, 0u);
}

TEST(WCStFileReadFromZip, UnreadableZipsGiveTheirCodes) {
    mirel_test::WCTempDir dir;
    EXPECT_EQ(FM::WCStFileReadFromZip(PathOf(dir.path() / "missing.zip")).GetError(),
              eFMFileNotFound);
    EXPECT_EQ(FM::WCStFileReadFromZip(PathOf(dir.path())).GetError(), eFMIsAFolder);
    ASSERT_EQ(mkfifo((dir.path() / "pipe.zip").c_str(), 0600), 0);
    EXPECT_EQ(FM::WCStFileReadFromZip(PathOf(dir.path() / "pipe.zip")).GetError(), eFMIsNotAFile)
        << "refused instead of waiting for a writer";
    WriteText(dir.path() / "garbage.zip", "this is not a zip archive at all, just text");
    EXPECT_EQ(FM::WCStFileReadFromZip(PathOf(dir.path() / "garbage.zip")).GetError(),
              eFMReadFailed);
    WriteText(dir.path() / "empty.zip", "");
    FM::WCStZipFileIterator empty(PathOf(dir.path() / "empty.zip"));
    WCFixedString<255> leaf;
    EXPECT_NE(empty.GetNextItemFromZip(leaf), eNoErr);
    EXPECT_EQ(FM::WCStZipFileIterator(PathOf(dir.path() / "garbage.zip")).GetError(),
              eFMReadFailed);
    FM::WCStFileReadFromZip invalid((FM::WCStPath()));
    std::string data;
    EXPECT_EQ(invalid.ReadToStdString("x", data), eFMIllegalPathRef);
}

TEST(WCStFileReadFromZip, DamagedEntryIsReadFailedAndGivesNothing) {
    mirel_test::WCTempDir dir;
    fs::path const path = dir.path() / "damaged.zip";
    std::string const payload(300, 'p');
    MakeZip(path, {{"data.bin", payload}}, true);
    std::string bytes = ReadText(path);
    auto const at = bytes.find(payload);
    ASSERT_NE(at, std::string::npos);
    bytes[at + 100] = 'X';
    WriteText(path, bytes);

    FM::WCStFileReadFromZip zip(PathOf(path));
    ASSERT_TRUE(zip.IsValid());
    std::string data;
    EXPECT_EQ(zip.ReadToStdString("data.bin", data), eFMReadFailed);
    EXPECT_TRUE(data.empty());
    Utils::WCStMemObj mem;
    EXPECT_EQ(zip.ReadToWCStMemObj("data.bin", mem), eFMReadFailed);
    EXPECT_EQ(mem.GetSize(), 0u);
}

} // namespace
