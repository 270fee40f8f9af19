#pragma once

#include <vector>

#include "Code/GUI/Controls/CDragHandle.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// One tab of a row of tabs: the tabs naming the same "TabGroup" form the row, and each shows its
// own "Group" of controls (and the controls its "Control" children name) while it is the chosen
// one, and hides them while another is. The first tab of a row to finish is chosen at the start;
// a click chooses. It draws its "Pushed" image when chosen and its "Released" one otherwise (a
// flat tab without them) with its "Name" on it; "ViewRect" is the page its group covers. With
// the control flag "HideChildrenWhenTabHidden" a chosen tab that is hidden hides its page too.
// The row is a group of the document, which outlives its tabs. [main-thread]
class WCTab : public CDragHandle {
public:
    explicit WCTab(WIControlOwner *owner = nullptr) : CDragHandle(owner) {}

    WCTab *Clone() const override;
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;
    void Hide() override;
    void Show() override;

    // Makes this tab the chosen one of its row: its page shows, the other tabs' pages hide.
    void Choose();
    bool IsChosen() const noexcept { return m_Chosen; }
    const WCFixedString<63> &GetTabGroup() const noexcept { return m_Fields.m_TabGroup; }
    const WCFixedString<63> &GetPageGroup() const noexcept { return m_Fields.m_Group; }
    const WCFixedString<63> &GetTitle() const noexcept { return m_Fields.m_Name; }
    const WURect<short> &GetViewRect() const noexcept { return m_Fields.m_ViewRect; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    int FinishCreateSelf() override;
    BUFFER_HEADER *ClickSelf(WCEventData &event, WURect<double> &limits, bool &keepGoing) override;
    // A tab stays in its row unless a movement rect lets it slide.
    bool CanMove() const override { return !m_MovementRect.IsReset(); }

private:
    struct WSFields {
        WCFixedString<63> m_TabGroup;
        WCFixedString<63> m_Group;
        std::vector<WCFixedString<63>> m_Controls;
        WCFixedString<63> m_Name;
        WURect<short> m_ViewRect;
    };
    // Shows or hides this tab's page, without changing which tab is chosen.
    void ShowPage(bool show);
    // The tabs of this tab's row, this one among them; empty without a document or row.
    std::vector<WCTab *> RowTabs() const;

    WSFields m_Fields;
    bool m_Chosen = false;
};

MIREL_NAMESPACE_END
