#pragma once

#include <vector>

#include "Code/GUI/CSelectable.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The document side of selection: the list of selectables of one GUI, linked as tab neighbours
// in list order, with the questions the document asks of them all. The selectables are not
// owned. [main-thread]
class CSelectableHome : public CSelectable {
public:
    // Keeps `list` (nulls dropped) and links it as a ring: right and down go to the next one,
    // left and up to the one before.
    void BuildSelectableList(const std::vector<CSelectable *> &list);
    const std::vector<CSelectable *> &GetSelectableList() const noexcept { return m_Selectables; }
    bool IsThisYours(const CSelectable *selectable) const;
    // At a level above idle.
    static bool IsSelected(const CSelectable *selectable);
    // The highest level of the list; 0 for an empty list.
    int CurrMaxSelected() const;
    // The lowest minimum and highest maximum of the list; false (and both 0) for an empty list.
    bool GetListMinMax(int &min, int &max) const;
    // How many are at a level from `min` to `max`.
    int GetNumSelectedControls(int min, int max) const;
    // Every selectable back to idle.
    void ResetSelectedList();
    // Resets the list, then gives the first selectable that can be selected its top level.
    void GoHome(bool notify);
    // When one selected selectable refuses company ("NoMultipleSelection"), the others go idle.
    void AdjustSelectionToSelectableFlags();
    // The tab key's direction from its modifiers (index 2 shift): right (forward) for Tab, left
    // for shift-Tab; with modifier 3 (Alt) held, down and up.
    static ENeighbors DirectionFromTabModifiers(const bool *modifiers);
    // The selection after a click on `clicked` (the selectables under the point, topmost
    // first) with the event's four modifiers: a plain click makes the topmost one active and
    // keeps a selection it falls into; a shift-click adds to or takes from the selection. The
    // list is left holding the selectables the click selected, topmost first.
    void AdjustSelectionToClick(std::vector<CSelectable *> &clicked, const bool *modifiers);

private:
    std::vector<CSelectable *> m_Selectables;
};

MIREL_NAMESPACE_END
