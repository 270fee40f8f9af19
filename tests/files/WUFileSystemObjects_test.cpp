#include "files/WUFileSystemObjects.h"

#include <gtest/gtest.h>

#include "core/WCStMemObj.h"
#include "files/WCStPath.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::PathOf;
using files_test::ReadText;
using files_test::WriteText;
namespace fs = std::filesystem;

using FileSystemObjects = files_test::WCTempFolderTest;

TEST_F(FileSystemObjects, CreateFolderMakesEveryLevelAndRefusesAFileInTheWay) {
    EXPECT_EQ(FM::CreateFolder(PathOf(At("a/b/c"))), eNoErr);
    EXPECT_TRUE(fs::is_directory(At("a/b/c")));
    EXPECT_EQ(FM::CreateFolder(PathOf(At("a/b/c"))), eNoErr);
    WriteText(At("file"), "x");
    EXPECT_EQ(FM::CreateFolder(PathOf(At("file"))), eFMIsAFile);
    EXPECT_EQ(FM::CreateFolder(PathOf(At("file/below"))), eFMIsAFile);
    EXPECT_EQ(FM::CreateFolder(FM::WCStPath()), eFMIllegalPathRef);
}

TEST_F(FileSystemObjects, DeletingKeepsFoldersWithContentsUnlessRecursive) {
    WriteText(At("tree/one/f.txt"), "x");
    EXPECT_EQ(FM::DeleteFileSystemObject(PathOf(At("tree"))), eFMFileNotEmpty);
    EXPECT_TRUE(fs::exists(At("tree/one/f.txt")));
    EXPECT_EQ(FM::DeleteFileSystemObject(PathOf(At("tree/one/f.txt"))), eNoErr);
    EXPECT_EQ(FM::DeleteFileSystemObject(PathOf(At("tree/one/f.txt"))), eFMFileNotFound);
    WriteText(At("tree/two/g.txt"), "y");
    EXPECT_EQ(FM::DeleteFileSystemObjectRecursively(PathOf(At("tree"))), eNoErr);
    EXPECT_FALSE(fs::exists(At("tree")));
    EXPECT_EQ(FM::DeleteFileSystemObjectRecursively(PathOf(At("tree"))), eFMFileNotFound);
}

TEST_F(FileSystemObjects, RecursiveDeleteRemovesLinksNotTheirTargets) {
    WriteText(At("keep/important.txt"), "x");
    fs::create_directory(At("doomed"));
    fs::create_directory_symlink(At("keep"), At("doomed/link"));
    EXPECT_EQ(FM::DeleteFileSystemObjectRecursively(PathOf(At("doomed"))), eNoErr);
    EXPECT_TRUE(fs::exists(At("keep/important.txt")));
}

TEST_F(FileSystemObjects, MoveRenamesAndReplacesFiles) {
    WriteText(At("from.txt"), "moved");
    WriteText(At("to.txt"), "old");
    EXPECT_EQ(FM::MoveFileSystemObject(PathOf(At("from.txt")), PathOf(At("to.txt"))), eNoErr);
    EXPECT_EQ(ReadText(At("to.txt")), "moved");
    EXPECT_FALSE(fs::exists(At("from.txt")));
    EXPECT_EQ(FM::MoveFileSystemObject(PathOf(At("from.txt")), PathOf(At("x.txt"))),
              eFMFileNotFound);
    EXPECT_EQ(FM::MoveFileSystemObject(PathOf(At("to.txt")), PathOf(At("to.txt"))), eFMSamePath);
    fs::create_directory(At("full"));
    WriteText(At("full/x"), "x");
    WriteText(At("file"), "f");
    EXPECT_EQ(FM::MoveFileSystemObject(PathOf(At("file")), PathOf(At("full"))), eFMIsAFolder);
    EXPECT_EQ(ReadText(At("file")), "f");
}

TEST_F(FileSystemObjects, DuplicateCopiesBytesAndPermissions) {
    WriteText(At("src.sh"), "#!/bin/sh\n");
    fs::permissions(At("src.sh"), fs::perms::owner_all);
    EXPECT_EQ(FM::DuplicateFile(PathOf(At("src.sh")), PathOf(At("dst.sh"))), eNoErr);
    EXPECT_EQ(ReadText(At("dst.sh")), "#!/bin/sh\n");
    EXPECT_EQ(fs::status(At("dst.sh")).permissions() & fs::perms::all, fs::perms::owner_all);

    WriteText(At("src.sh"), "changed");
    EXPECT_EQ(FM::DuplicateFile(PathOf(At("src.sh")), PathOf(At("dst.sh"))), eFMFileAllreadyExists);
    EXPECT_EQ(ReadText(At("dst.sh")), "#!/bin/sh\n");
    EXPECT_EQ(
        FM::DuplicateFile(PathOf(At("src.sh")), PathOf(At("dst.sh")), FM::eFMDuplicateReplace),
        eNoErr);
    EXPECT_EQ(ReadText(At("dst.sh")), "changed");

    fs::create_directory(At("dir"));
    EXPECT_EQ(FM::DuplicateFile(PathOf(At("dir")), PathOf(At("copy"))), eFMIsAFolder);
    EXPECT_EQ(FM::DuplicateFile(PathOf(At("nope")), PathOf(At("copy"))), eFMFileNotFound);
}

TEST_F(FileSystemObjects, MemObjRoundTripAndFolderRefused) {
    Utils::WCStMemObj const data("\x01\x02\x00\x03", 4);
    EXPECT_EQ(FM::WriteFileFromWCStMemObj(PathOf(At("new/dir/blob")), data), eNoErr);
    Utils::WCStMemObj back;
    EXPECT_EQ(FM::ReadFileToWCStMemObj(PathOf(At("new/dir/blob")), back), eNoErr);
    EXPECT_TRUE(back == data);
    EXPECT_EQ(FM::ReadFileToWCStMemObj(PathOf(At("new/dir")), back), eFMIsAFolder);
    EXPECT_EQ(FM::ReadFileToWCStMemObj(PathOf(At("missing")), back), eFMFileNotFound);
    EXPECT_EQ(FM::WriteFileFromWCStMemObj(PathOf(At("new/dir")), data), eFMIsAFolder);
    EXPECT_TRUE(fs::is_directory(At("new/dir")));
}

TEST_F(FileSystemObjects, ABareRelativeNameIsWrittenInTheCurrentFolder) {
    const fs::path previous = fs::current_path();
    fs::current_path(m_dir.path());
    Utils::WCStMemObj data;
    ASSERT_EQ(data.Assign("<a/>", 4), eNoErr);
    const WTErr written = FM::WriteFileFromWCStMemObj(FM::WCStPath("rel.xml"), data);
    fs::current_path(previous);
    EXPECT_EQ(written, eNoErr);
    EXPECT_TRUE(fs::is_regular_file(At("rel.xml")));
    EXPECT_EQ(ReadText(At("rel.xml")), "<a/>");
}

TEST_F(FileSystemObjects, LinksAreMadeAsGiven) {
    WriteText(At("target.txt"), "t");
    EXPECT_EQ(FM::CreateFileSystemLink(FM::WCStPath("target.txt"), PathOf(At("link"))), eNoErr);
    EXPECT_EQ(fs::read_symlink(At("link")), fs::path("target.txt"));
    EXPECT_EQ(ReadText(At("link")), "t");
    EXPECT_EQ(FM::CreateFileSystemLink(FM::WCStPath("target.txt"), PathOf(At("link"))),
              eFMFileAllreadyExists);
}

TEST_F(FileSystemObjects, ShellLinksAreRecognisedButNotFollowed) {
    std::string header(
        "\x4C\x00\x00\x00\x01\x14\x02\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46", 20);
    WriteText(At("Plugins.lnk"), header + "rest");
    WriteText(At("Fake.lnk"), "not a link at all");
    WriteText(At("Plugins.txt"), header);
    EXPECT_TRUE(FM::IsWinShortcut(PathOf(At("Plugins.lnk"))));
    EXPECT_FALSE(FM::IsWinShortcut(PathOf(At("Fake.lnk"))));
    EXPECT_FALSE(FM::IsWinShortcut(PathOf(At("Plugins.txt"))));
    FM::WCStPath target("/unchanged");
    EXPECT_EQ(FM::ResolveWinShortcut(PathOf(At("Plugins.lnk")), target), eWinOnlyCode);
    EXPECT_STREQ(target.GetPathString().c_str(), "/unchanged");
}

TEST_F(FileSystemObjects, NormalizeMakesCanonicalPathsOfAnyLength) {
    fs::create_directories(At("real/inner"));
    fs::create_directory_symlink(At("real"), At("alias"));
    std::string out;
    std::string const input = (m_dir.path() / "alias/inner/../inner/./missing.txt").string();
    ASSERT_EQ(FM::NormalizePathString(input.c_str(), out), eNoErr);
    EXPECT_EQ(out, fs::canonical(At("real/inner")).string() + "/missing.txt");

    // Longer than the other system's 260 characters is fine here.
    std::string longPath = "/tmp";
    while (longPath.size() < 600)
        longPath += "/segment";
    ASSERT_EQ(FM::NormalizePathString(longPath.c_str(), out), eNoErr);
    EXPECT_EQ(out.size(), longPath.size());
    WCFixedString<255> small;
    EXPECT_EQ(FM::NormalizePathString(longPath.c_str(), small), eFMPathTooLong);
    EXPECT_EQ(FM::NormalizePathString("", out), eFMPathTooShort);
}

TEST(UnNormalizePathString, StripsOnlyTheLongPathPrefix) {
    struct Case {
        char const *in;
        char const *out;
    } const cases[] = {
        {"\\\\?\\C:\\Mirel", "C:\\Mirel"},
        {"\\\\?\\UNC\\server\\share", "\\\\server\\share"},
        {"/usr/share", "/usr/share"},
        {"\\\\server\\share", "\\\\server\\share"},
        {"", ""},
    };
    for (auto const &c : cases) {
        std::string text = c.in;
        FM::UnNormalizePathString(text);
        EXPECT_EQ(text, c.out) << c.in;
        WCFixedString<63> fixed(c.in);
        FM::UnNormalizePathString(fixed);
        EXPECT_STREQ(fixed.c_str(), c.out);
    }
}

} // namespace
