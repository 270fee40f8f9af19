#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// One item of a menu as a plain tree, before any window system sees it: its kind, title, state
// bits (PluginViewManager::WEMenuItemState), the items of its sub-menu, and the resource numbers
// of its pictures. "Choices" are the items a user can pick: regular items, depth first, their
// position among them is what a menu answers. A value; copies are deep. [main-thread]
class WCPopupMenuItemData {
public:
    enum ePopupMenuItemType { eItemRegular = 0, eItemSeparator = 1, eItemSubMenu = 2 };
    enum eImageType { eImageNormal = 0, eImageChecked = 1, eImageTypeCount = 2 };
    static constexpr short kNoImage = -1;

    WCPopupMenuItemData() = default;
    explicit WCPopupMenuItemData(const char *title, unsigned state = 0,
                                 ePopupMenuItemType type = eItemRegular);
    WCPopupMenuItemData(const WCPopupMenuItemData &) = default;
    WCPopupMenuItemData &operator=(const WCPopupMenuItemData &) = default;
    WCPopupMenuItemData(WCPopupMenuItemData &&) noexcept = default;
    WCPopupMenuItemData &operator=(WCPopupMenuItemData &&) noexcept = default;
    virtual ~WCPopupMenuItemData() = default;

    void Initialize(const char *title, unsigned state, ePopupMenuItemType type);
    // An empty regular item: no title, state, children or pictures.
    void Reset();
    void Dispose() { Reset(); }

    ePopupMenuItemType GetType() const noexcept { return m_Type; }
    const std::string &GetTitle() const noexcept { return m_Title; }
    unsigned GetState() const noexcept { return m_State; }
    void SetState(unsigned state) noexcept { m_State = state; }
    bool IsChecked() const noexcept;
    void SetChecked(bool checked) noexcept;
    bool IsChoice() const noexcept { return m_Type == eItemRegular; }

    // ---- the sub-menu ------------------------------------------------------------------------
    const std::vector<WCPopupMenuItemData> &GetChildren() const noexcept { return m_Children; }
    // Appends `item` to the sub-menu, which this item becomes; the reference lives until the
    // next change of the children.
    WCPopupMenuItemData &InsertSubMenuItem(WCPopupMenuItemData item);
    // The first child of that title goes; eValueNotFound when none has it.
    int DeleteSubMenuItem(const char *title);
    void DisposeSubMenuItems() { m_Children.clear(); }
    // The children move to the end of `to`'s sub-menu; this item keeps none.
    void MoveSubMenuItems(WCPopupMenuItemData &to);
    // The first direct child of that title; null for none (and for an item without children).
    WCPopupMenuItemData *GetChildByName(const char *title);
    const WCPopupMenuItemData *GetChildByName(const char *title) const;

    // ---- choices below this item --------------------------------------------------------------
    int CountChoices() const;
    // The choice at `position`, depth first; null beyond them.
    const WCPopupMenuItemData *GetChoice(int position) const;
    // Checks or unchecks every choice below.
    void CheckAllItems(bool check);
    // Checks the choice at `position` and unchecks all others below; eOutOfRangeNumber, and
    // nothing changed, for a position that is no choice.
    int SetSingleCheckedItem(int position);
    // `func` on every item below, depth first, parents before their children.
    void ApplyFuncOnAllItems(const std::function<void(WCPopupMenuItemData &)> &func);

    // Orders items by title, for sorted menus.
    static bool CompareItemTitles(const WCPopupMenuItemData &a, const WCPopupMenuItemData &b);
    // Both are sub-menus with the same titles, kinds and states all the way down, so that a
    // menu built again from the same data need not be rebuilt.
    virtual bool AreItemsSubMenusAndIdentical(const WCPopupMenuItemData &other) const;

    void SetImageInfo(eImageType type, short resID);
    short GetImageResID(eImageType type) const;
    void DisposeImage() { m_Images.fill(kNoImage); }

private:
    ePopupMenuItemType m_Type = eItemRegular;
    std::string m_Title;
    unsigned m_State = 0;
    std::vector<WCPopupMenuItemData> m_Children;
    std::array<short, eImageTypeCount> m_Images{kNoImage, kNoImage};
};

// The root of a menu: its items, and whether check marks are shown at all. [main-thread]
class WCPopupMenuData {
public:
    explicit WCPopupMenuData(bool noCheckMarks = false) : m_NoCheckMarks(noCheckMarks) {}

    WCPopupMenuItemData &InsertToRootMenu(WCPopupMenuItemData item) {
        return m_Root.InsertSubMenuItem(std::move(item));
    }
    void Clear() { m_Root.DisposeSubMenuItems(); }
    const WCPopupMenuItemData &GetRoot() const noexcept { return m_Root; }
    WCPopupMenuItemData &GetRoot() noexcept { return m_Root; }
    int CountChoices() const { return m_Root.CountChoices(); }
    int SetSingleCheckedItem(int position) { return m_Root.SetSingleCheckedItem(position); }
    void ApplyFuncOnAllMenuItems(const std::function<void(WCPopupMenuItemData &)> &func) {
        m_Root.ApplyFuncOnAllItems(func);
    }
    bool GetNoCheckMarks() const noexcept { return m_NoCheckMarks; }
    void SetNoCheckMarks(bool noCheckMarks) noexcept { m_NoCheckMarks = noCheckMarks; }

private:
    WCPopupMenuItemData m_Root{"", 0, WCPopupMenuItemData::eItemSubMenu};
    bool m_NoCheckMarks;
};

MIREL_NAMESPACE_END
