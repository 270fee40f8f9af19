#include "Code/GUI/CSelectable.h"

#include <algorithm>
#include <utility>

MIREL_NAMESPACE_BEGIN

void CSelectable::Reset() {
    m_Selection = std::clamp(0, m_Min, m_Max);
    m_Mode = 0;
}

void CSelectable::SetSelection(int level, bool notify) {
    if (IsStrictSelectSelf() && (level < m_Min || level > m_Max || !CanDoSelectionSelf(level)))
        return;
    const int clamped = std::clamp(level, m_Min, m_Max);
    const bool changed = clamped != m_Selection;
    m_Selection = clamped;
    if (changed && notify)
        SetSelectionSelf(clamped);
}

void CSelectable::SetMinMax(int min, int max) {
    if (min > max)
        std::swap(min, max);
    m_Min = min;
    m_Max = max;
    m_Selection = std::clamp(m_Selection, m_Min, m_Max);
}

void CSelectable::SetMode(std::uint32_t mode) {
    if (!CanDoMode(mode))
        return;
    m_Mode = mode;
    SetModeSelf(mode);
}

void CSelectable::SwapSelections(CSelectable *other) {
    if (other == nullptr || other == this)
        return;
    const int mine = m_Selection;
    SetSelection(other->m_Selection, true);
    other->SetSelection(mine, true);
}

CSelectable *CSelectable::FindNextHighestSelectable(ENeighbors direction) {
    CSelectable *best = nullptr;
    CSelectable *first = GetNeighbor(direction);
    bool firstSeen = false;
    CSelectable *walk = first;
    for (int step = 0; walk != nullptr && walk != this && step < 1000; ++step) {
        if (walk == first) {
            if (firstSeen)
                break;
            firstSeen = true;
        }
        if (m_Selection >= walk->m_Min && m_Selection <= walk->m_Max) {
            if (walk->m_Selection == m_Selection - 1)
                return walk;
            if (best == nullptr || walk->m_Selection > best->m_Selection)
                best = walk;
        }
        walk = walk->GetNeighbor(direction);
    }
    return best != nullptr ? best : this;
}

CSelectable *CSelectable::DoTab(ENeighbors direction) {
    CSelectable *next = FindNextHighestSelectable(direction);
    if (next != this && CanSwapSelections(next))
        SwapSelections(next);
    return next;
}

void CSelectable::SetSelectableFlag(unsigned int flag, bool on) noexcept {
    if (flag >= 32)
        return;
    m_SelectableFlags =
        on ? (m_SelectableFlags | (1u << flag)) : (m_SelectableFlags & ~(1u << flag));
}

MIREL_NAMESPACE_END
