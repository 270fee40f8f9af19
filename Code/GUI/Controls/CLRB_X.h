#pragma once

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// The chooser of which channels a linked control moves: the left one, the right one, or all
// ("nChans"). A press in the "LeftBox" chooses left, in the "RightBox" right, and a press on the
// box already chosen, or elsewhere on the control, chooses all. The choice is the state of its
// registrations' parameter (0 left, 500 right, 1000 all) when it has one, its own otherwise; each
// change tells every control of the document through OnLRBChange. It draws, for each of the two
// boxes and for all, its "Image" of Type "LRB_LEFT_OFF", "LRB_LEFT_ON", "LRB_RIGHT_OFF",
// "LRB_RIGHT_ON", "LRB_nCHANS_OFF" or "LRB_nCHANS_ON" as the choice has it on or off, at the
// box (all at the control's corner). Boxes are in GUI coordinates. [main-thread]
class CLRB_X : public WCGUIControl {
public:
    enum EChoice { eLeft = 0, eRight = 1, eAll = 2 };

    explicit CLRB_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CLRB_X *Clone() const override;
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    EChoice GetChoice() const;
    static double ChoiceToState(EChoice choice) noexcept {
        return static_cast<int>(choice) * 500.0;
    }
    static EChoice StateToChoice(double state) noexcept;

    // The choice takes the mouse without registrations, which the base needs to take it.
    BUFFER_HEADER *MouseDown(WCEventData &event, WURect<double> &limits, bool &keepGoing) override;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;

private:
    static constexpr int kNumImages = 6;
    struct WSFields {
        WURect<short> m_LeftBox;
        WURect<short> m_RightBox;
    };
    // Sets the choice and tells the document's controls.
    BUFFER_HEADER *Choose(EChoice choice, WCEventData &event);

    WSFields m_Fields;
    // By type, in the order of the names: left off, left on, right off, right on, all off, all on.
    WCBaseImage m_Images[kNumImages];
    EChoice m_OwnChoice = eAll;
};

MIREL_NAMESPACE_END
