#include "Code/GUI/CSelectableHome.h"

#include <algorithm>

#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

void CSelectableHome::BuildSelectableList(const std::vector<CSelectable *> &list) {
    m_Selectables.clear();
    for (CSelectable *selectable : list)
        if (selectable != nullptr)
            m_Selectables.push_back(selectable);
    const std::size_t count = m_Selectables.size();
    for (std::size_t i = 0; i < count; ++i) {
        CSelectable *next = m_Selectables[(i + 1) % count];
        CSelectable *previous = m_Selectables[(i + count - 1) % count];
        m_Selectables[i]->SetNeighbor(eNeighborRight, next);
        m_Selectables[i]->SetNeighbor(eNeighborDown, next);
        m_Selectables[i]->SetNeighbor(eNeighborLeft, previous);
        m_Selectables[i]->SetNeighbor(eNeighborUp, previous);
    }
}

bool CSelectableHome::IsThisYours(const CSelectable *selectable) const {
    return std::find(m_Selectables.begin(), m_Selectables.end(), selectable) != m_Selectables.end();
}

bool CSelectableHome::IsSelected(const CSelectable *selectable) {
    return selectable != nullptr && selectable->GetSelection() > 0;
}

int CSelectableHome::CurrMaxSelected() const {
    int highest = 0;
    for (const CSelectable *selectable : m_Selectables)
        highest = std::max(highest, selectable->GetSelection());
    return highest;
}

bool CSelectableHome::GetListMinMax(int &min, int &max) const {
    min = max = 0;
    if (m_Selectables.empty())
        return false;
    m_Selectables.front()->GetMinMax(min, max);
    for (const CSelectable *selectable : m_Selectables) {
        int lo = 0, hi = 0;
        selectable->GetMinMax(lo, hi);
        min = std::min(min, lo);
        max = std::max(max, hi);
    }
    return true;
}

int CSelectableHome::GetNumSelectedControls(int min, int max) const {
    return static_cast<int>(std::count_if(
        m_Selectables.begin(), m_Selectables.end(), [min, max](const CSelectable *selectable) {
            return selectable->GetSelection() >= min && selectable->GetSelection() <= max;
        }));
}

void CSelectableHome::ResetSelectedList() {
    for (CSelectable *selectable : m_Selectables)
        selectable->SetSelection(0, true);
}

void CSelectableHome::GoHome(bool notify) {
    for (CSelectable *selectable : m_Selectables)
        selectable->SetSelection(0, notify);
    for (CSelectable *selectable : m_Selectables) {
        int min = 0, max = 0;
        selectable->GetMinMax(min, max);
        if (max > 0) {
            selectable->SetSelection(max, notify);
            return;
        }
    }
}

void CSelectableHome::AdjustSelectionToSelectableFlags() {
    const auto loner =
        std::find_if(m_Selectables.begin(), m_Selectables.end(), [](const CSelectable *selectable) {
            return IsSelected(selectable) && selectable->GetSelectableFlag(eNoMultipleSelection);
        });
    if (loner == m_Selectables.end())
        return;
    for (CSelectable *selectable : m_Selectables)
        if (selectable != *loner && IsSelected(selectable))
            selectable->SetSelection(0, true);
}

ENeighbors CSelectableHome::DirectionFromTabModifiers(const bool *modifiers) {
    const bool shift = modifiers != nullptr && modifiers[2];
    if (modifiers != nullptr && modifiers[3])
        return shift ? eNeighborDown : eNeighborRight;
    return shift ? eNeighborUp : eNeighborLeft;
}

int CSelectableHome::AdjustSelectionToClick(std::vector<CSelectable *> &, bool *) {
    return eNotImplemented;
}

MIREL_NAMESPACE_END
