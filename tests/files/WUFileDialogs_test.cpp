#include "files/WUFileDialogs.h"

#include <gtest/gtest.h>

#include "tests/files/FilesTestSupport.h"
#include "tests/support/WCTestHome.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using files_test::PathOf;
using files_test::WriteText;

// Removes any responder a test installed, so suites never depend on their order.
class FileDialogs : public ::testing::Test {
protected:
    void TearDown() override { FM::SetDialogResponder(nullptr); }
};

TEST_F(FileDialogs, HeadlessWithoutResponderCancels) {
    FM::WCDialogCreationOptions options;
    FM::WCDialogReply reply;
    reply.m_paths.emplace_back("/stale");
    EXPECT_EQ(FM::SaveAsDialog(options, reply), eUserCanceled);
    EXPECT_TRUE(reply.m_paths.empty());
    EXPECT_EQ(FM::SelectFileSystemObjectDialog(options, reply), eUserCanceled);
    EXPECT_EQ(FM::SelectFileSystemObjectDialogTree(options, reply), eUserCanceled);
}

TEST_F(FileDialogs, ResponderAnswersWithAPath) {
    FM::WEDialogKind seenKind = FM::eSelectFileSystemObjectDialogKind;
    FM::SetDialogResponder([&seenKind](FM::WEDialogKind kind,
                                       FM::WCDialogCreationOptions const &options,
                                       FM::WCDialogReply &reply) {
        seenKind = kind;
        reply.m_paths.emplace_back(
            FM::WCStPath(options.m_defaultFolder, options.m_defaultName.c_str()));
        reply.m_filterIndex = 0;
        return static_cast<int>(eNoErr);
    });
    FM::WCDialogCreationOptions options;
    options.m_defaultFolder = FM::WCStPath("/presets");
    options.m_defaultName = "Warm.xps";
    FM::WCDialogReply reply;
    ASSERT_EQ(FM::SaveAsDialog(options, reply), eNoErr);
    EXPECT_EQ(seenKind, FM::eSaveAsDialogKind);
    ASSERT_EQ(reply.m_paths.size(), 1u);
    EXPECT_STREQ(reply.m_paths[0].GetPathString().c_str(), "/presets/Warm.xps");
}

TEST_F(FileDialogs, AnswerWithoutPathCountsAsCancel) {
    FM::SetDialogResponder(
        [](FM::WEDialogKind, FM::WCDialogCreationOptions const &, FM::WCDialogReply &reply) {
            reply.m_filterIndex = 3;
            return static_cast<int>(eNoErr);
        });
    FM::WCDialogReply reply;
    EXPECT_EQ(FM::SelectFileSystemObjectDialog(FM::WCDialogCreationOptions(), reply),
              eUserCanceled);
    EXPECT_EQ(reply.m_filterIndex, -1);
}

TEST_F(FileDialogs, TreeDialogSeesTheNumberedTree) {
    mirel_test::WCTempDir dir;
    WriteText(dir.path() / "Bass/one.xps", "x");
    WriteText(dir.path() / "two.xps", "x");
    std::size_t treeSize = 0;
    FM::SetDialogResponder([&treeSize](FM::WEDialogKind, FM::WCDialogCreationOptions const &options,
                                       FM::WCDialogReply &reply) {
        treeSize = options.m_tree.size();
        reply.m_treeItemID = options.m_tree.back().m_id;
        reply.m_paths.push_back(options.m_tree.back().m_path);
        return static_cast<int>(eNoErr);
    });
    FM::WCDialogCreationOptions options;
    options.m_defaultFolder = PathOf(dir.path());
    FM::OnlyFoldersAndXPS const filter;
    options.m_treeFilter = &filter;
    FM::WCDialogReply reply;
    ASSERT_EQ(FM::SelectFileSystemObjectDialogTree(options, reply), eNoErr);
    EXPECT_EQ(treeSize, 2u);
    EXPECT_EQ(reply.m_treeItemID, 2);
    EXPECT_STREQ(reply.m_paths[0].GetLeaf().c_str(), "two.xps");
}

TEST_F(FileDialogs, InstalledDialogsTakeOver) {
    struct Fixed final : FM::WIFileDialogs {
        int SaveAs(FM::WCDialogCreationOptions const &, FM::WCDialogReply &reply) override {
            reply.m_paths.emplace_back("/chosen");
            return eNoErr;
        }
        int SelectFileSystemObject(FM::WCDialogCreationOptions const &,
                                   FM::WCDialogReply &) override {
            return eGenericErr;
        }
        int SelectFileSystemObjectTree(FM::WCDialogCreationOptions const &,
                                       FM::WCDialogReply &) override {
            return eUserCanceled;
        }
    } fixed;
    FM::WIFileDialogs *previous = FM::SetFileDialogs(&fixed);
    FM::WCDialogReply reply;
    EXPECT_EQ(FM::SaveAsDialog(FM::WCDialogCreationOptions(), reply), eNoErr);
    EXPECT_EQ(FM::SelectFileSystemObjectDialog(FM::WCDialogCreationOptions(), reply), eGenericErr);
    EXPECT_EQ(FM::SetFileDialogs(previous), &fixed);
    EXPECT_EQ(FM::SaveAsDialog(FM::WCDialogCreationOptions(), reply), eUserCanceled);
}

TEST(DialogFilterText, IsDescriptionThenPattern) {
    WCFixedString<127> text;
    FM::MakeDialogFilterText({WCFixedString<127>("Presets"), WCFixedString<31>("xps")}, text);
    EXPECT_STREQ(text.c_str(), "Presets (*.xps)");
    FM::MakeDialogFilterText({WCFixedString<127>("Zips"), WCFixedString<31>(".zip")}, text);
    EXPECT_STREQ(text.c_str(), "Zips (*.zip)");
}

} // namespace
