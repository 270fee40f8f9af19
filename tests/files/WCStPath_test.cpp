#include "files/WCStPath.h"

#include <gtest/gtest.h>

#include "files/WCStCachePath.h"
#include "files/WTPathType.h"
#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::PathOf;
using files_test::WriteText;
namespace fs = std::filesystem;

TEST(WCStPath, DefaultAndNullPathsAreIllegalRefsAndStaySo) {
    FM::WCStPath path;
    EXPECT_EQ(path.GetError(), eFMIllegalPathRef);
    EXPECT_EQ(FM::WCStPath(static_cast<char const *>(nullptr)).GetError(), eFMIllegalPathRef);
    FM::WCStPath empty("");
    EXPECT_EQ(empty.GetError(), eFMPathTooShort);
    EXPECT_EQ(path.Append("child"), eFMIllegalPathRef);
    EXPECT_EQ(path.GetError(), eFMIllegalPathRef);
    EXPECT_EQ(empty.Append("child"), eFMIllegalPathRef);
    EXPECT_EQ(empty.GetError(), eFMIllegalPathRef);
    // A zero inside a text would make the system act on the part before it.
    EXPECT_EQ(FM::WCStPath(std::string("/tmp/a\0b", 8)).GetError(), eFMIllegalPathRef);
    FM::WCStPath base("/tmp");
    EXPECT_EQ(base.Append(std::string("x\0y", 3)), eFMIllegalPathRef);
    EXPECT_FALSE(base.IsValid());
    EXPECT_TRUE(path.GetPathString().empty());
}

TEST(WCStPath, AppendTakesSeveralLevelsAndNeverReplacesThePath) {
    FM::WCStPath path("/base");
    EXPECT_EQ(path.Append("a/b/c.txt"), eNoErr);
    EXPECT_STREQ(path.GetPathString().c_str(), "/base/a/b/c.txt");
    path.Append("/d");
    EXPECT_STREQ(path.GetPathString().c_str(), "/base/a/b/c.txt/d");
    EXPECT_EQ(path.Append(static_cast<char const *>(nullptr)), eFMIllegalPathRef);
    EXPECT_FALSE(path.IsValid());
}

TEST(WCStPath, DotDotTailMeansTheParent) {
    FM::WCStPath const file("/a/b/c.txt");
    EXPECT_STREQ(FM::WCStPath(file, "..").GetPathString().c_str(), "/a/b");
    EXPECT_STREQ(FM::WCStPath(file, "../../x").GetPathString().c_str(), "/a/x");
    EXPECT_STREQ(file.GetParent().GetPathString().c_str(), "/a/b");
    // A bare relative name's parent is the current folder, never the name with ".." under it.
    EXPECT_STREQ(FM::WCStPath("rel.xml").GetParent().GetPathString().c_str(), ".");
    EXPECT_STREQ(FM::WCStPath("rel.xml").GetParent().GetParent().GetPathString().c_str(), "..");
    EXPECT_STREQ(FM::WCStPath("/a/b/").GetLeaf().c_str(), "b");
}

TEST(WCStPath, NamePartsAndExtensionChanges) {
    FM::WCStPath path("/presets/My Preset.xps");
    EXPECT_STREQ(path.GetExtension().c_str(), "xps");
    path.ExtendLeafName("_2");
    EXPECT_STREQ(path.GetPathString().c_str(), "/presets/My Preset_2.xps");
    path.ChangeExtension("yps");
    EXPECT_STREQ(path.GetLeaf().c_str(), "My Preset_2.yps");
    path.ChangeExtension(".bak");
    EXPECT_STREQ(path.GetLeaf().c_str(), "My Preset_2.bak");
    path.ChangeExtension("");
    EXPECT_STREQ(path.GetLeaf().c_str(), "My Preset_2");
    EXPECT_STREQ(path.GetExtension().c_str(), "");
}

TEST(WCStPath, RelativeDifferenceClimbsThenDescends) {
    struct Case {
        char const *to;
        char const *from;
        char const *expected;
    } const cases[] = {
        {"/a/b/c", "/a/b", "c"}, {"/a/b/c", "/a/x/y", "../../b/c"}, {"/a", "/a/b/c", "../.."},
        {"/a/b", "/a/b", ""},    {"/q/r", "/a", "../q/r"},
    };
    for (auto const &c : cases) {
        EXPECT_STREQ(FM::WCStPath(c.to).GetRelativeDifference(FM::WCStPath(c.from)).c_str(),
                     c.expected)
            << c.to << " from " << c.from;
    }
}

TEST(WCStPath, ContainmentIsByElementsNotByText) {
    FM::WCStPath const folder("/data/presets");
    EXPECT_TRUE(folder.IsPathContained(FM::WCStPath("/data/presets/a.xps")));
    EXPECT_TRUE(folder.IsPathContained(FM::WCStPath("/data/presets")));
    EXPECT_FALSE(folder.IsPathContained(FM::WCStPath("/data/presets2/a.xps")));
    EXPECT_FALSE(folder.IsPathContained(FM::WCStPath("/data")));
    EXPECT_TRUE(FM::IsPathContained(FM::WCStPath("/"), FM::WCStPath("/x")));
    EXPECT_FALSE(folder.IsPathContained(FM::WCStPath()));
}

TEST(WCStPath, SplitsAndRejoinsByLevel) {
    FM::WCStPath const path("/usr/share/mirel");
    FM::WCStPath::WTPathElements elements;
    ASSERT_EQ(path.SplitPath(elements), eNoErr);
    ASSERT_EQ(elements.size(), 4u);
    EXPECT_STREQ(elements[0].c_str(), "/");
    EXPECT_STREQ(elements[3].c_str(), "mirel");
    EXPECT_STREQ(path.GetStringFromPathToLevel(1).c_str(), "/");
    EXPECT_STREQ(path.GetStringFromPathToLevel(3).c_str(), "/usr/share");
    EXPECT_STREQ(path.GetStringFromPathToLevel(99).c_str(), "/usr/share/mirel");
}

TEST(WCStPath, LongPathIsCutInTextButWholeInHandle) {
    std::string text = "/";
    while (text.size() < 1500)
        text += "abcdefghij/";
    FM::WCStPath path(text);
    ASSERT_TRUE(path.IsValid());
    EXPECT_EQ(path.GetPathString().size(), 1023u);
    text.pop_back();
    EXPECT_EQ(FM::BoostPath(path).string(), text);
    FM::WCStPath const copy(path.GetPathRef());
    EXPECT_EQ(copy, path);
}

TEST(WCStPath, ComparesByNativeText) {
    EXPECT_EQ(FM::WCStPath("/a/b"), FM::WCStPath("/a/b/"));
    EXPECT_NE(FM::WCStPath("/a/b"), FM::WCStPath("/a/c"));
    EXPECT_LT(FM::WCStPath("/a/b"), FM::WCStPath("/a/c"));
    EXPECT_LT(FM::WCStPath(), FM::WCStPath("/a"));
    EXPECT_EQ(FM::WCStPath(), FM::WCStPath());
}

TEST(WCStPath, HandlesAreCopiedTakenOverAndMoved) {
    FM::WCStPath const original("/x/y");
    FM::WTPathType *copy = original.CreatePathRefCopy();
    ASSERT_NE(copy, nullptr);
    FM::WCStPath other;
    other.TakeOver(copy);
    EXPECT_EQ(other, original);
    FM::WCStPath moved(std::move(other));
    EXPECT_EQ(moved, original);
    EXPECT_FALSE(other.IsValid()); // NOLINT(bugprone-use-after-move): checked on purpose
    moved.TakeOver(nullptr);
    EXPECT_EQ(moved.GetError(), eFMIllegalPathRef);
    FM::WTPathType *none = FM::WCStPath().CreatePathRefCopy();
    EXPECT_EQ(none, nullptr);
    FM::DisposePathRef(none);
}

TEST(WCStPath, AsksTheFileSystem) {
    mirel_test::WCTempDir dir;
    WriteText(dir.path() / "f.txt", "12345");
    FM::WCStPath const file = PathOf(dir.path() / "f.txt");
    FM::WCStPath const folder = PathOf(dir.path());
    std::uint64_t size = 0;
    EXPECT_EQ(file.GetFileSize(size), eNoErr);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(folder.GetFileSize(size), eFMIsAFolder);
    EXPECT_EQ(PathOf(dir.path() / "none").GetFileSize(size), eFMFileNotFound);
    fs::permissions(dir.path() / "f.txt", fs::perms::owner_read | fs::perms::group_read);
    int mode = 0;
    EXPECT_EQ(file.GetPermissions(mode), eNoErr);
    EXPECT_EQ(mode, 0440);
    EXPECT_TRUE(file.IsLocked());
    fs::permissions(dir.path() / "f.txt", fs::perms::owner_all);
    EXPECT_FALSE(file.IsLocked());
    EXPECT_TRUE(file.IsWritable());
    EXPECT_TRUE(PathOf(dir.path() / "missing").IsWritable());
}

TEST(WCStPath, ResolvesLinksAndReportsBrokenOnes) {
    mirel_test::WCTempDir dir;
    WriteText(dir.path() / "real/target.txt", "x");
    fs::create_symlink("real/target.txt", dir.path() / "link");
    fs::create_symlink("gone.txt", dir.path() / "broken");

    FM::WCStPath link = PathOf(dir.path() / "link");
    EXPECT_TRUE(link.IsFileSystemLink());
    EXPECT_TRUE(link.IsFile(true));
    EXPECT_FALSE(link.IsFile(false));
    EXPECT_EQ(link.ResolveFileSystemLink(), eNoErr);
    EXPECT_EQ(link, PathOf(dir.path() / "real/target.txt"));

    FM::WCStPath broken = PathOf(dir.path() / "broken");
    EXPECT_EQ(broken.ResolveFileSystemLink(), eFMSymlinkBroken);
    FM::WCStPath plain = PathOf(dir.path() / "real");
    EXPECT_EQ(plain.ResolveFileSystemLink(), eFMIsNoAFileSystemLink);
}

TEST(WCStCachePath, MirrorsTheSourceUnderTheUserCacheAndNeverLeavesIt) {
    mirel_test::WCTestHome home;
    FM::WCStCachePath const twin(FM::WCStPath("/opt/plugins/A.bundle/Contents/x.png"));
    ASSERT_TRUE(twin.IsValid());
    EXPECT_EQ(
        FM::BoostPath(twin).string(),
        (home.path() / ".cache/Mirel Audio/Caches/opt/plugins/A.bundle/Contents/x.png").string());
    EXPECT_NE(FM::WCStCachePath(FM::WCStPath("/one/res.png")),
              FM::WCStCachePath(FM::WCStPath("/two/res.png")));
    FM::WCStCachePath const sneaky(FM::WCStPath("/one/../../../etc/passwd"));
    EXPECT_TRUE(FM::WCStPath(home.path().string()).IsPathContained(sneaky));
    EXPECT_EQ(FM::WCStCachePath(FM::WCStPath()).GetError(), eFMIllegalPathRef);
}

} // namespace
