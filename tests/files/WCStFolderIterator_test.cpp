#include "files/WCStFolderIterator.h"

#include <optional>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::PathOf;
using files_test::WriteText;
namespace fs = std::filesystem;
using Iterator = FM::WCStFolderIterator;

std::vector<std::string> Leaves(Iterator::WTPathVector const &paths) {
    std::vector<std::string> leaves;
    for (auto const &path : paths)
        leaves.emplace_back(path.GetLeaf().view());
    return leaves;
}

class FolderTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (char const *name : {"delta.xps", "alpha.xps", "charlie.xps", "bravo.xps"})
            WriteText(m_dir.path() / name, name);
        fs::create_directory(m_dir.path() / "echo");
    }
    void Order(std::string const &yaml) { WriteText(m_dir.path() / "List Order.txt", yaml); }
    std::vector<std::string> Listed(int &error) {
        Iterator::WTPathVector paths;
        error = Iterator::GetFilePathVectorFromFolderWithSettingsFile(PathOf(m_dir.path()),
                                                                      FM::EveryThing(), paths);
        return Leaves(paths);
    }
    mirel_test::WCTempDir m_dir;
};

TEST_F(FolderTest, ListOrderMovesNamedItemsToTheFrontAndBadFilesLeaveNameOrder) {
    using V = std::vector<std::string>;
    V const byName{"alpha.xps", "bravo.xps", "charlie.xps", "delta.xps", "echo"};
    struct Case {
        std::optional<std::string> settings;
        V expected;
        int error;
    } const cases[] = {
        {std::nullopt, byName, eNoErr},
        {"List Order:\n  - echo\n  - charlie.xps\n",
         {"echo", "charlie.xps", "alpha.xps", "bravo.xps", "delta.xps"},
         eNoErr},
        // Names that are not there, and repeated ones, change nothing.
        {"List Order: [ghost.xps, delta.xps, nobody, delta.xps]\n",
         {"delta.xps", "alpha.xps", "bravo.xps", "charlie.xps", "echo"},
         eNoErr},
        {"List Order: [ghost.xps]\n", byName, eNoErr},
        // Every document with a list order counts; anything else in them is skipped.
        {"--- just a text\n"
         "--- {Other: [alpha.xps]}\n"
         "--- {List Order: [bravo.xps]}\n"
         "--- {List Order: not a list}\n"
         "--- {List Order: [[nested], {a: b}, alpha.xps]}\n",
         {"bravo.xps", "alpha.xps", "charlie.xps", "delta.xps", "echo"},
         eNoErr},
        {"List Order: [unclosed, delta.xps\n", byName, eFMReadFailed},
        {"List Order: [delta.xps]\n#" + std::string(Iterator::kMaxSettingsFileSize, 'x'), byName,
         eFMFileSizeTooBig},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.settings.value_or("(no settings file)").substr(0, 80));
        if (c.settings)
            Order(*c.settings);
        int error = -99;
        EXPECT_EQ(Listed(error), c.expected);
        EXPECT_EQ(error, c.error);
    }
}

TEST_F(FolderTest, SettingsFileThatIsAFolderIsIgnored) {
    fs::create_directory(m_dir.path() / "List Order.txt");
    int error = -99;
    EXPECT_EQ(Listed(error).size(), 5u);
    EXPECT_EQ(error, eNoErr);
    std::vector<std::string> names;
    EXPECT_EQ(Iterator::ParseSettingsFile(PathOf(m_dir.path() / "List Order.txt"), names),
              eFMIsAFolder);
    EXPECT_EQ(Iterator::ParseSettingsFile(PathOf(m_dir.path() / "none.txt"), names),
              eFMFileNotFound);
    EXPECT_TRUE(names.empty());
}

TEST(ReadItemOrder, ReadsStreamsAndLeavesNamesOnFailure) {
    std::vector<std::string> names{"kept"};
    std::istringstream good("List Order:\n  - a\n  - b c\n");
    EXPECT_EQ(Iterator::ReadItemOrderFromIstream(good, names), eNoErr);
    EXPECT_EQ(names, (std::vector<std::string>{"kept", "a", "b c"}));
    std::istringstream bad("List Order: [a, b\n  - : :\n");
    EXPECT_EQ(Iterator::ReadItemOrderFromIstream(bad, names), eFMReadFailed);
    EXPECT_EQ(names.size(), 3u);
    EXPECT_EQ(Iterator::ReadItemOrderFromString(std::string(5000, '['), names), eFMReadFailed);
    EXPECT_EQ(Iterator::ReadItemOrderFromString("", names), eNoErr);
    EXPECT_EQ(names.size(), 3u);
    // A stream is read no further than a settings file may be long.
    std::istringstream huge("List Order: [z]\n#" +
                            std::string(Iterator::kMaxSettingsFileSize, 'x'));
    EXPECT_EQ(Iterator::ReadItemOrderFromIstream(huge, names), eFMFileSizeTooBig);
    EXPECT_EQ(names.size(), 3u);
}

TEST(ReadItemOrder, InputThatMakesEndlessDocumentsIsRefused) {
    // Broken flow text after a document once made the YAML reader loop without reading on.
    std::vector<std::string> names;
    EXPECT_EQ(Iterator::ReadItemOrderFromString(
                  "--- {List Order: [c, missing]}, *a[x], {y: z}, a]}\n", names),
              eFMReadFailed);
    EXPECT_TRUE(names.empty());
}

TEST(ReadItemOrder, FollowsAnchorsAndIgnoresOtherKeys) {
    std::vector<std::string> names;
    EXPECT_EQ(Iterator::ReadItemOrderFromString("Before: &x first\n"
                                                "List Order: [*x, {List Order: [inner]}, last]\n"
                                                "? [complex, key]\n"
                                                ": List Order\n",
                                                names),
              eNoErr);
    EXPECT_EQ(names, (std::vector<std::string>{"first", "last"}));
}

TEST(OrderItemsInFolder, KeepsTheRestInTheirOrder) {
    Iterator::WTPathVector paths;
    for (char const *name : {"/f/a", "/f/b", "/f/c", "/f/d", "/f/e"})
        paths.emplace_back(name);
    Iterator::OrderItemsInFolder({"d", "x", "b"}, paths);
    EXPECT_EQ(Leaves(paths), (std::vector<std::string>{"d", "b", "a", "c", "e"}));
    Iterator::OrderItemsInFolder({}, paths);
    EXPECT_EQ(Leaves(paths), (std::vector<std::string>{"d", "b", "a", "c", "e"}));
}

TEST_F(FolderTest, IteratorWalksEveryItemOnce) {
    Iterator iterator(PathOf(m_dir.path()));
    ASSERT_TRUE(iterator.IsValid());
    std::set<std::string> seen;
    FM::WCStPath item;
    while (iterator.GetNextFolderItem(item) == eNoErr)
        EXPECT_TRUE(seen.insert(std::string(item.GetLeaf().view())).second);
    EXPECT_EQ(seen.size(), 5u);
    EXPECT_EQ(iterator.GetNextFolderItem(item), eFMEndOfFolder);
}

TEST_F(FolderTest, FoldersThatCannotBeIteratedGiveTheirCodes) {
    FM::WCStPath item;
    Iterator missing(PathOf(m_dir.path() / "nope"));
    EXPECT_EQ(missing.GetError(), eFMFileNotFound);
    EXPECT_EQ(missing.GetNextFolderItem(item), eFMFileNotFound);
    EXPECT_EQ(Iterator(PathOf(m_dir.path() / "alpha.xps")).GetError(), eFMIsNotAFolder);
    Iterator::WTPathVector paths{FM::WCStPath("/stale")};
    EXPECT_EQ(Iterator::GetFilePathVectorFromFolder(PathOf(m_dir.path() / "alpha.xps"),
                                                    FM::EveryThing(), paths),
              eFMIsNotAFolder);
    EXPECT_TRUE(paths.empty());
    EXPECT_TRUE(Iterator::IsFolderEmpty(PathOf(m_dir.path() / "nope"), FM::EveryThing()));
}

TEST_F(FolderTest, FiltersChooseTheItems) {
    WriteText(m_dir.path() / ".DS_Store", "x");
    WriteText(m_dir.path() / "Pack.zip", "x");
    fs::create_directory(m_dir.path() / "Synth.bundle");
    WriteText(m_dir.path() / "Fake.bundle", "x");
    auto listed = [this](FM::FileFilterFunctor const &filter) {
        Iterator::WTPathVector paths;
        Iterator::GetFilePathVectorFromFolderSortByName(PathOf(m_dir.path()), filter, paths);
        return Leaves(paths);
    };
    using V = std::vector<std::string>;
    EXPECT_EQ(listed(FM::OnlyFolders()), (V{"Synth.bundle", "echo"}));
    EXPECT_EQ(listed(FM::FoldersOrZips()), (V{"Pack.zip", "Synth.bundle", "echo"}));
    EXPECT_EQ(listed(FM::OnlyZips()), (V{"Pack.zip"}));
    EXPECT_EQ(listed(FM::OnlyBundles()), (V{"Fake.bundle", "Synth.bundle"}));
    EXPECT_EQ(listed(FM::OnlyBundlesThatAreRealyBundles()), (V{"Synth.bundle"}));
    EXPECT_EQ(listed(FM::OnlyFoldersAndXPS()).size(), 6u);
    EXPECT_EQ(listed(FM::OnlyFiles()).size(), 7u);
    V const visible = listed(FM::EverythingButMacHidden());
    EXPECT_EQ(std::count(visible.begin(), visible.end(), ".DS_Store"), 0);
    EXPECT_EQ(visible.size(), 8u);
    EXPECT_FALSE(Iterator::IsFolderEmpty(PathOf(m_dir.path()), FM::OnlyZips()));
    EXPECT_TRUE(Iterator::IsFolderEmpty(PathOf(m_dir.path() / "echo"), FM::EveryThing()));
}

TEST(FolderRecursion, DescendsToTheDepthAskedWithoutFollowingLinks) {
    mirel_test::WCTempDir dir;
    WriteText(dir.path() / "a/1.txt", "x");
    WriteText(dir.path() / "a/b/2.txt", "x");
    WriteText(dir.path() / "a/b/c/3.txt", "x");
    WriteText(dir.path() / "P.bundle/Contents/inner.txt", "x");
    // A link back up would loop forever if links were entered.
    fs::create_directory_symlink(dir.path(), dir.path() / "a/loop");
    auto count = [&dir](int depth, bool bundles) {
        Iterator::WTPathVector paths;
        EXPECT_EQ(Iterator::GetFilePathVectorFromFolder(PathOf(dir.path()), FM::OnlyFiles(), paths,
                                                        depth, bundles),
                  eNoErr);
        return paths.size();
    };
    EXPECT_EQ(count(0, false), 0u);
    EXPECT_EQ(count(1, false), 1u);
    EXPECT_EQ(count(2, false), 2u);
    EXPECT_EQ(count(Iterator::kNoDepthLimit, false), 3u);
    EXPECT_EQ(count(Iterator::kNoDepthLimit, true), 4u);

    // A plain yes to recursion means the whole tree, in every listing form.
    Iterator::WTPathVector paths;
    EXPECT_EQ(
        Iterator::GetFilePathVectorFromFolder(PathOf(dir.path()), FM::OnlyFiles(), paths, true),
        eNoErr);
    EXPECT_EQ(paths.size(), 3u);
    Iterator::GetFilePathVectorFromFolderSortByName(PathOf(dir.path()), FM::OnlyFiles(), paths,
                                                    true);
    EXPECT_EQ(paths.size(), 3u);
    Iterator::GetFilePathVectorFromFolderWithSettingsFile(
        PathOf(dir.path()), FM::OnlyFiles(), paths, Iterator::kListOrderFileName, true);
    EXPECT_EQ(paths.size(), 3u);
    Iterator::GetFilePathVectorFromFolder(PathOf(dir.path()), FM::OnlyFiles(), paths, false);
    EXPECT_TRUE(paths.empty());
}

TEST(FolderTree, LevelsAreOrderedAndNumberedDepthFirst) {
    mirel_test::WCTempDir dir;
    WriteText(dir.path() / "Bass/b1.xps", "x");
    WriteText(dir.path() / "Bass/a1.xps", "x");
    WriteText(dir.path() / "Bass/List Order.txt", "List Order: [b1.xps]");
    WriteText(dir.path() / "Drums/d.xps", "x");
    WriteText(dir.path() / "top.xps", "x");
    std::vector<FM::WSFolderTreeItem> tree;
    ASSERT_EQ(Iterator::GetFolderTree(PathOf(dir.path()), FM::OnlyFoldersAndXPS(), tree), eNoErr);
    ASSERT_EQ(tree.size(), 3u);
    EXPECT_STREQ(tree[0].m_path.GetLeaf().c_str(), "Bass");
    ASSERT_EQ(tree[0].m_children.size(), 2u);
    EXPECT_STREQ(tree[0].m_children[0].m_path.GetLeaf().c_str(), "b1.xps");

    Iterator::WTPathVector flat;
    Iterator::SetIDsAndGetFlatFolderList(tree, flat, 10);
    EXPECT_EQ(Leaves(flat),
              (std::vector<std::string>{"Bass", "b1.xps", "a1.xps", "Drums", "d.xps", "top.xps"}));
    EXPECT_EQ(tree[0].m_id, 10);
    EXPECT_EQ(tree[0].m_children[1].m_id, 12);
    EXPECT_EQ(tree[0].m_children[1].m_parentID, 10);
    EXPECT_EQ(tree[1].m_id, 13);
    EXPECT_EQ(tree[1].m_parentID, -1);
    EXPECT_EQ(tree[1].m_children[0].m_parentID, 13);

    EXPECT_EQ(Iterator::GetFolderTree(PathOf(dir.path() / "top.xps"), FM::EveryThing(), tree),
              eFMIsNotAFolder);
    EXPECT_TRUE(tree.empty());
}

} // namespace
