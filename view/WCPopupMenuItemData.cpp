#include "view/WCPopupMenuItemData.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/WTErrors.h"
#include "view/WCMenuTypes.h"

MIREL_NAMESPACE_BEGIN

namespace PVM = PluginViewManager;

namespace {

// The choice at `position` below `item`, counting down `position` through the tree.
template <typename Item>
Item *ChoiceAt(Item &item, int &position) {
    for (auto &child : item.GetChildren()) {
        if (child.IsChoice()) {
            if (position-- == 0)
                return &child;
        } else if (auto *found = ChoiceAt(child, position)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

WCPopupMenuItemData::WCPopupMenuItemData(const char *title, unsigned state,
                                         ePopupMenuItemType type) {
    Initialize(title, state, type);
}

void WCPopupMenuItemData::Initialize(const char *title, unsigned state, ePopupMenuItemType type) {
    m_Title = title != nullptr ? title : "";
    m_State = state;
    m_Type = type;
}

void WCPopupMenuItemData::Reset() {
    *this = WCPopupMenuItemData();
}

bool WCPopupMenuItemData::IsChecked() const noexcept {
    return (m_State & PVM::eMenuItemChecked) != 0;
}

void WCPopupMenuItemData::SetChecked(bool checked) noexcept {
    m_State =
        checked ? (m_State | PVM::eMenuItemChecked) : (m_State & ~unsigned{PVM::eMenuItemChecked});
}

WCPopupMenuItemData &WCPopupMenuItemData::InsertSubMenuItem(WCPopupMenuItemData item) {
    m_Type = eItemSubMenu;
    return m_Children.emplace_back(std::move(item));
}

int WCPopupMenuItemData::DeleteSubMenuItem(const char *title) {
    const auto found = std::find_if(m_Children.begin(), m_Children.end(), [title](auto &child) {
        return title != nullptr && child.m_Title == title;
    });
    if (found == m_Children.end())
        return eValueNotFound;
    m_Children.erase(found);
    return eNoErr;
}

void WCPopupMenuItemData::MoveSubMenuItems(WCPopupMenuItemData &to) {
    if (&to == this)
        return;
    std::vector<WCPopupMenuItemData> moved = std::move(m_Children);
    m_Children.clear();
    for (auto &item : moved)
        to.InsertSubMenuItem(std::move(item));
}

WCPopupMenuItemData *WCPopupMenuItemData::GetChildByName(const char *title) {
    return const_cast<WCPopupMenuItemData *>(std::as_const(*this).GetChildByName(title));
}

const WCPopupMenuItemData *WCPopupMenuItemData::GetChildByName(const char *title) const {
    if (title == nullptr)
        return nullptr;
    for (const auto &child : m_Children)
        if (child.m_Title == title)
            return &child;
    return nullptr;
}

int WCPopupMenuItemData::CountChoices() const {
    int count = 0;
    for (const auto &child : m_Children)
        count += child.IsChoice() ? 1 : child.CountChoices();
    return count;
}

const WCPopupMenuItemData *WCPopupMenuItemData::GetChoice(int position) const {
    return position < 0 ? nullptr : ChoiceAt(*this, position);
}

void WCPopupMenuItemData::CheckAllItems(bool check) {
    ApplyFuncOnAllItems([check](WCPopupMenuItemData &item) {
        if (item.IsChoice())
            item.SetChecked(check);
    });
}

int WCPopupMenuItemData::SetSingleCheckedItem(int position) {
    if (GetChoice(position) == nullptr)
        return eOutOfRangeNumber;
    int at = 0;
    ApplyFuncOnAllItems([&at, position](WCPopupMenuItemData &item) {
        if (item.IsChoice())
            item.SetChecked(at++ == position);
    });
    return eNoErr;
}

void WCPopupMenuItemData::ApplyFuncOnAllItems(
    const std::function<void(WCPopupMenuItemData &)> &func) {
    for (auto &child : m_Children) {
        func(child);
        child.ApplyFuncOnAllItems(func);
    }
}

bool WCPopupMenuItemData::CompareItemTitles(const WCPopupMenuItemData &a,
                                            const WCPopupMenuItemData &b) {
    return a.m_Title < b.m_Title;
}

bool WCPopupMenuItemData::AreItemsSubMenusAndIdentical(const WCPopupMenuItemData &other) const {
    if (m_Type != eItemSubMenu || other.m_Type != eItemSubMenu ||
        m_Children.size() != other.m_Children.size())
        return false;
    for (std::size_t i = 0; i < m_Children.size(); ++i) {
        const auto &a = m_Children[i];
        const auto &b = other.m_Children[i];
        if (a.m_Title != b.m_Title || a.m_Type != b.m_Type || a.m_State != b.m_State ||
            (a.m_Type == eItemSubMenu && !a.AreItemsSubMenusAndIdentical(b)))
            return false;
    }
    return true;
}

void WCPopupMenuItemData::SetImageInfo(eImageType type, short resID) {
    if (type >= 0 && type < eImageTypeCount)
        m_Images[type] = resID;
}

short WCPopupMenuItemData::GetImageResID(eImageType type) const {
    return type >= 0 && type < eImageTypeCount ? m_Images[type] : kNoImage;
}

MIREL_NAMESPACE_END
