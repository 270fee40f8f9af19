#pragma once

#include "Code/GUI/Controls/CToggle_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A value the user types: a click opens the document's text box over the value window of the
// first registration that has one, filled with the value shown, and the accepted text sets the
// parameter as the algorithm translates it. It takes typing without the "ReciveTextEntery" flag,
// since typing is all it is for; it reads and writes its "Class" as a toggle does, and a click
// never steps the value. [main-thread]
class CTextEntry_X : public CToggle_X {
public:
    explicit CTextEntry_X(WIControlOwner *owner = nullptr) : CToggle_X(owner) {}

    CTextEntry_X *Clone() const override;

    int WhichParamIndexCanEnterText() const override;

protected:
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    BUFFER_HEADER *MouseUpSelf(WCEventData &event) override;
    int GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                            std::size_t index) override;
};

MIREL_NAMESPACE_END
