#include "view/WCPopupMenu.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ViewTestSupport.h"
#include "view/WCEventScript.h"
#include "view/linux/WUEventScriptPlayer.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;

namespace {

// Low, Mid, a separator, then a sub-menu "More" with High and Max: four choices.
WCPopupMenuData MakeMenu() {
    WCPopupMenuData data;
    data.InsertToRootMenu(WCPopupMenuItemData("Low"));
    data.InsertToRootMenu(WCPopupMenuItemData("Mid", eMenuItemChecked));
    data.InsertToRootMenu(WCPopupMenuItemData("", 0, WCPopupMenuItemData::eItemSeparator));
    WCPopupMenuItemData &more = data.InsertToRootMenu(WCPopupMenuItemData("More"));
    more.InsertSubMenuItem(WCPopupMenuItemData("High", eMenuItemChecked));
    more.InsertSubMenuItem(WCPopupMenuItemData("Max"));
    return data;
}

std::vector<bool> Checks(const WCPopupMenuData &data) {
    std::vector<bool> checks;
    for (int i = 0; i < data.CountChoices(); ++i)
        checks.push_back(data.GetRoot().GetChoice(i)->IsChecked());
    return checks;
}

} // namespace

TEST(WCPopupMenuItemData, SetSingleCheckedItemUnchecksEveryOtherChoiceOfTheTree) {
    WCPopupMenuData data = MakeMenu();
    ASSERT_EQ(data.CountChoices(), 4);
    EXPECT_EQ(data.SetSingleCheckedItem(3), eNoErr);
    EXPECT_EQ(Checks(data), (std::vector<bool>{false, false, false, true}));
    EXPECT_EQ(data.SetSingleCheckedItem(4), eOutOfRangeNumber);
    EXPECT_EQ(data.SetSingleCheckedItem(-1), eOutOfRangeNumber);
    EXPECT_EQ(Checks(data), (std::vector<bool>{false, false, false, true})) << "kept";
    data.GetRoot().CheckAllItems(true);
    EXPECT_EQ(Checks(data), (std::vector<bool>{true, true, true, true}));
    EXPECT_EQ(data.GetRoot().GetChildByName("Low")->GetChildByName("Low"), nullptr);
    EXPECT_EQ(data.GetRoot().GetChildByName("More")->GetChildByName("Max")->GetTitle(), "Max");
    EXPECT_TRUE(MakeMenu().GetRoot().AreItemsSubMenusAndIdentical(MakeMenu().GetRoot()));
    EXPECT_FALSE(data.GetRoot().AreItemsSubMenusAndIdentical(MakeMenu().GetRoot()));
}

using PopupMenu = view_test::HeadlessDesktop;

TEST_F(PopupMenu, IsBuiltWithIdsDepthFirstAndAnswersTheChoiceSetOnceThenCancels) {
    WSPluginView *view = MakeView(nullptr);
    WCPopupMenuData data = MakeMenu();
    data.SetNoCheckMarks(true);
    WCPopupMenu menu(nullptr, view, 100);
    EXPECT_EQ(menu.CreatePopUpMenu(data, 100, 102), eOutOfRangeNumber) << "four ids needed";
    ASSERT_EQ(menu.CreatePopUpMenu(data, 100, 199), eNoErr);
    int count = 0;
    EXPECT_EQ(GetMenuItemCountRecursive(menu.GetMenu(), count), eNoErr);
    EXPECT_EQ(count, 6);

    const struct {
        const char *choice;
        int code;
        short index;
    } cases[] = {{"Max", eNoErr, 103},
                 {nullptr, eNoErr, -1},
                 {"More", eValueNotFound, -1},
                 {"Low", eNoErr, 100}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.choice ? row.choice : "none");
        ASSERT_EQ(SetNextMenuChoice(view, row.choice), eNoErr);
        WCMenuItemInfo chosen;
        EXPECT_EQ(menu.ActivatePopupMenu({12, 34}, -1, chosen), row.code);
        EXPECT_EQ(chosen.GetIndex(), row.index);
    }
    WCMenuItemInfo again;
    EXPECT_EQ(menu.ActivatePopupMenu({0, 0}, -1, again), eNoErr);
    EXPECT_EQ(again.GetIndex(), -1) << "an answer is used once";

    const WSShownMenu &shown = GetShownMenus().front();
    EXPECT_EQ(shown.m_location, (WCPoint2D<short>{12, 34}));
    ASSERT_EQ(shown.m_items.size(), 6u);
    EXPECT_EQ(shown.m_items[4].m_Title, "High");
    EXPECT_EQ(shown.m_depths[4], 1);
    EXPECT_FALSE(shown.m_items[1].IsChecked()) << "no check marks asked";
    EXPECT_EQ(shown.m_chosen, "Max");
}

TEST_F(PopupMenu, AnEventScriptAnswersTheNextMenu) {
    WSPluginView *view = MakeView(nullptr);
    WCEventScript script;
    ASSERT_EQ(script.ReadFromYAML("events: [{event: menu, item: Mid}]"), eNoErr);
    EXPECT_EQ(script.ReadFromYAML("events: [{event: menu, item: ''}]"), eValueWrongSize);
    EXPECT_EQ(script.ReadFromYAML("events: [{event: menu}]"), eKeyNotFound);
    ASSERT_EQ(PlayEventScript(view, script, nullptr), eNoErr);
    WCPopupMenu menu(nullptr, view, 1);
    ASSERT_EQ(menu.CreatePopUpMenu(MakeMenu(), 1, 10), eNoErr);
    WCMenuItemInfo chosen;
    EXPECT_EQ(menu.ActivatePopupMenu({0, 0}, -1, chosen), eNoErr);
    EXPECT_EQ(chosen.GetIndex(), 2);
    EXPECT_TRUE(chosen.IsChecked());
}
