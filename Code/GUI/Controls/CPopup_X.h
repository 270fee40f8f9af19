#pragma once

#include <memory>
#include <vector>

#include "Code/GUI/CControlPopupMenuHandler.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A chooser of one discrete parameter's states: a click (a registration to "MouseDown", or one
// to "PopUp" through the document) opens a menu of the states titled by the parameter's value
// texts, the current one checked unless "PopupNoCheckmark", below the control or at the mouse
// with "PopupAppearOnMousePos"; a choice sets the parameter, a cancelled menu changes nothing.
// A wheel notch steps one state, however fast the wheel turns. It draws what every control draws
// (its value window shows the state). Its "Class" has no children of its own; any it holds are
// written back as read. Owned by its document like every control. [main-thread]
class CPopup_X : public WCGUIControl {
public:
    explicit CPopup_X(WIControlOwner *owner = nullptr);
    CPopup_X *Clone() const override;

    BUFFER_HEADER *MouseWheel(WCEventData &event, double dx, double dy) override;
    CControlPopupMenuHandler *GetControlPopupMenuHandler() const override {
        return m_Handler.get();
    }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;

    std::unique_ptr<CControlPopupMenuHandler> m_Handler;
    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
