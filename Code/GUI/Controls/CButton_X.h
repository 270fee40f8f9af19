#pragma once

#include <vector>

#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A value shown as text, without a picture: a drag on it changes the value as its registrations
// ask (the control base does the dragging), and each value window is drawn framed, so that the
// text reads as something to take hold of. Its "Class" has no children of its own; any there
// are kept and written back as they were. [main-thread]
class CButton_X : public WCGUIControl {
public:
    explicit CButton_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CButton_X *Clone() const override;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    int GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                            std::size_t index) override;
    void CopyButtonTo(CButton_X &other) const;

    std::vector<XML::CXMLElement> m_OtherChildren;
};

MIREL_NAMESPACE_END
