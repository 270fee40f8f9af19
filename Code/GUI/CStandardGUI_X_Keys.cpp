// Keys, typed values, hover and the selection rectangle of the GUI document.
#include "Code/GUI/CStandardGUI_X.h"

#include "Code/GUI/WCGUIControl.h"
#include "core/WTErrors.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

int CStandardGUI_X::DoKey(WCEventData &, bool &handled) {
    handled = false;
    return eNotImplemented;
}

int CStandardGUI_X::ModifyControlsOnKey(WCEventData &, bool &handled) {
    handled = false;
    return eNotImplemented;
}

int CStandardGUI_X::PassEventToSelectedControls(WCEventData &, bool &handled) {
    handled = false;
    return eNotImplemented;
}

int CStandardGUI_X::TrackTextInput(WCEventData &, bool) {
    return eNotImplemented;
}

void CStandardGUI_X::HandleTextBoxCallback(void *, const char *, bool) {}

int CStandardGUI_X::LaunchHelpFile() {
    return eNotImplemented;
}

int CStandardGUI_X::ModifyControlsOnMouseHover(WCEventData &) {
    return eNotImplemented;
}

void CStandardGUI_X::UpdateSelectRect(WCEventData &) {}

void CStandardGUI_X::UpdateControlsSelectionToSelectionRect(const WURect<short> &, WCEventData &) {}

MIREL_NAMESPACE_END
