#pragma once

#include <cstdint>

#include "Code/GUI/WCNeighborable.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// What can be selected and walked to with tab: a selection level kept inside a minimum and a
// maximum, a mode, and neighbours. A maximum of 0 makes the object unselectable. [main-thread]
class CSelectable : public WCNeighborable<CSelectable *> {
public:
    enum ESelectableFlags : unsigned int { eNoMultipleSelection = 0, eAllowShiftMod = 1 };

    ~CSelectable() override = default;

    virtual void Reset();
    // Stores `level` clamped to min..max; with `notify` and a change, SetSelectionSelf runs.
    // A strict selectable ignores levels outside its range, or refused by CanDoSelectionSelf.
    void SetSelection(int level, bool notify);
    int GetSelection() const noexcept { return m_Selection; }
    void MinSelect() { SetSelection(m_Min, true); }
    void MaxSelect() { SetSelection(m_Max, true); }
    // A min above max is swapped; the level is clamped into the new range.
    void SetMinMax(int min, int max);
    void GetMinMax(int &min, int &max) const noexcept {
        min = m_Min;
        max = m_Max;
    }
    void SetMode(std::uint32_t mode);
    std::uint32_t GetMode() const noexcept { return m_Mode; }
    void SetModeMask(std::uint32_t mask) noexcept { m_ModeMask = mask; }
    bool CanDoMode(std::uint32_t mode) {
        return (m_ModeMask & mode) == mode && CanDoModeSelf(mode);
    }
    bool CanDoSelection(int level) {
        return level >= m_Min && level <= m_Max && CanDoSelectionSelf(level);
    }
    bool CanSwapSelections(CSelectable *other) {
        return other != nullptr && CanSwapSelectionsSelf(other);
    }
    // Exchanges the two levels under SetSelection's rules.
    void SwapSelections(CSelectable *other);
    // Walks the neighbours in `direction` to the best candidate and swaps with it; the object
    // itself when none.
    CSelectable *DoTab(ENeighbors direction);
    // The neighbour chain in `direction` (at most 1000 steps) for one whose range admits this
    // level: the highest level wins, one exactly a level below at once.
    virtual CSelectable *FindNextHighestSelectable(ENeighbors direction);
    void SetSelectableFlag(unsigned int flag, bool on) noexcept;
    bool GetSelectableFlag(unsigned int flag) const noexcept {
        return flag < 32 && (m_SelectableFlags >> flag) & 1u;
    }
    // The name keeps its historic spelling.
    bool SholdKeepSelectedOnShift() const noexcept { return m_KeepSelectedOnShift; }
    void SetKeepSelectedOnShift(bool keep) noexcept { m_KeepSelectedOnShift = keep; }

protected:
    virtual void SetSelectionSelf(int /*level*/) {}
    virtual bool CanDoSelectionSelf(int /*level*/) { return true; }
    virtual bool IsStrictSelectSelf() { return false; }
    virtual void SetModeSelf(std::uint32_t /*mode*/) {}
    virtual bool CanDoModeSelf(std::uint32_t /*mode*/) { return true; }
    virtual bool CanSwapSelectionsSelf(CSelectable * /*other*/) { return true; }

    std::uint32_t m_ModeMask = ~std::uint32_t(0);
    std::uint32_t m_Mode = 0;
    int m_Min = 0;
    int m_Max = 0;
    int m_Selection = 0;
    bool m_KeepSelectedOnShift = false;
    std::uint32_t m_SelectableFlags = 0;
};

MIREL_NAMESPACE_END
