#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Code/GUI/CControlPopupMenuHandler.h"
#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A popup whose menu is made when it opens: the titles the plug-in set at run time
// (SetMenuItems), else its lead parameter's states. A click (a registration to "MouseDown", or
// the document's popup path) opens it below the control, or at the mouse with
// "PopupAppearOnMousePos", and the chosen position becomes the parameter's state of that
// position; a cancelled menu changes nothing. It draws its "Released" picture, the "Pushed" one
// while the mouse is down on it, then what every control draws. Other "Class" children are
// written back as read. Owned by its document like every control. [main-thread]
class WCDynamicPopup : public WCGUIControl {
public:
    explicit WCDynamicPopup(WIControlOwner *owner = nullptr);
    WCDynamicPopup *Clone() const override;

    // [main-thread] The menu's titles from now on; empty gives back the parameter's states.
    void SetMenuItems(std::vector<std::string> titles) { m_Items = std::move(titles); }
    const std::vector<std::string> &GetMenuItems() const noexcept { return m_Items; }
    bool IsPushed() const noexcept { return m_IsPushed; }
    CControlPopupMenuHandler *GetControlPopupMenuHandler() const override {
        return m_Handler.get();
    }

    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

protected:
    // The tree of the menu as it opens.
    virtual int BuildMenu(WCPopupMenuData &outData);
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;
    // Copies this popup's own fields into `other`.
    void CopyPopupTo(WCDynamicPopup &other) const;

    std::unique_ptr<CControlPopupMenuHandler> m_Handler;
    WCBaseImage m_Pushed;
    WCBaseImage m_Released;
    std::vector<std::string> m_Items;
    std::vector<XML::CXMLElement> m_OtherChildren;
    bool m_IsPushed = false;
};

// A dynamic popup that chooses a modulation source: its value window shows the name of the
// source chosen (the menu title of the parameter's state) instead of the parameter's own text.
// [main-thread]
class WCDynamicPopupModSource : public WCDynamicPopup {
public:
    using WCDynamicPopup::WCDynamicPopup;
    WCDynamicPopupModSource *Clone() const override;
    int GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                            std::size_t index) override;
};

// A dynamic popup whose titles the algorithm gives each time it opens (GetDynamicPopupItems, by
// the control's name); an algorithm that gives none leaves it as a dynamic popup. [main-thread]
class WCDynamicPopupWithAlg : public WCDynamicPopup {
public:
    using WCDynamicPopup::WCDynamicPopup;
    WCDynamicPopupWithAlg *Clone() const override;

protected:
    int BuildMenu(WCPopupMenuData &outData) override;
};

MIREL_NAMESPACE_END
