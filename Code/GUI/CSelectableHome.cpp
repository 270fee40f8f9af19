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
    // Tab goes forward along the ring, shift-tab back; with Alt, along the vertical ring.
    if (modifiers != nullptr && modifiers[3])
        return shift ? eNeighborUp : eNeighborDown;
    return shift ? eNeighborLeft : eNeighborRight;
}

void CSelectableHome::AdjustSelectionToClick(std::vector<CSelectable *> &clicked,
                                             const bool *modifiers) {
    const int m = m_Min;
    const int M = m_Max;
    const bool shift = modifiers != nullptr && modifiers[2];
    const bool anyAllowsShift =
        std::any_of(clicked.begin(), clicked.end(), [](const CSelectable *selectable) {
            return selectable->GetSelectableFlag(eAllowShiftMod);
        });
    auto maxOf = [](const CSelectable *selectable) {
        int lo = 0, hi = 0;
        selectable->GetMinMax(lo, hi);
        return hi;
    };
    auto highest = [this]() -> CSelectable * {
        CSelectable *top = nullptr;
        for (CSelectable *selectable : m_Selectables)
            if (top == nullptr || selectable->GetSelection() > top->GetSelection())
                top = selectable;
        return top != nullptr && IsSelected(top) ? top : nullptr;
    };

    if (clicked.empty()) {
        if (!shift) {
            ResetSelectedList();
            SetSelection(M, true);
        }
        return;
    }
    if (shift && !anyAllowsShift) {
        // A shift-click adds an idle control to the selection and takes a selected one out.
        for (CSelectable *selectable : clicked) {
            const int level = selectable->GetSelection();
            if (level == m && maxOf(selectable) > m) {
                CSelectable *top = highest();
                if (top == nullptr) {
                    SwapSelections(selectable);
                } else if (!selectable->GetSelectableFlag(eNoMultipleSelection) &&
                           top->GetSelectableFlag(eNoMultipleSelection)) {
                    top->MinSelect();
                    selectable->MaxSelect();
                } else {
                    selectable->SetSelection(m + 1, true);
                }
            } else if (level == M || (level > m && level == maxOf(selectable))) {
                if (GetNumSelectedControls(m + 1, M) < 2 && !selectable->SholdKeepSelectedOnShift()) {
                    ResetSelectedList();
                    SetSelection(M, true);
                } else if (GetNumSelectedControls(m + 1, M) >= 2) {
                    selectable->DoTab(eNeighborRight);
                    selectable->MinSelect();
                }
            } else {
                selectable->MinSelect();
            }
        }
        AdjustSelectionToSelectableFlags();
        return;
    }

    // A plain click keeps a selection it falls into, and otherwise starts a new one.
    bool allSelected = false;
    for (const CSelectable *selectable : clicked) {
        if (maxOf(selectable) < m + 2)
            continue;
        const int level = selectable->GetSelection();
        allSelected = level >= m + 2 && level <= M;
        if (!allSelected)
            break;
    }
    if (!allSelected) {
        ResetSelectedList();
        SetSelection(M, true);
    }
    // The clicked list comes topmost first: the top one becomes active, the control active
    // before it and the others under the point take the selected level below.
    std::erase_if(clicked, [&](const CSelectable *selectable) { return maxOf(selectable) <= m; });
    if (clicked.empty())
        return;
    const int lowered = std::max(m + 1, M - 1);
    CSelectable *previousTop = highest();
    clicked.front()->MaxSelect();
    SetSelection(lowered, true);
    if (previousTop != nullptr && previousTop != clicked.front())
        previousTop->SetSelection(lowered, true);
    for (std::size_t i = 1; i < clicked.size(); ++i)
        clicked[i]->SetSelection(lowered, true);
    AdjustSelectionToSelectableFlags();
}

MIREL_NAMESPACE_END
