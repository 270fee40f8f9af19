#pragma once

#include <memory>
#include <vector>

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// Several values in one box, each registration a field with its own value window: a press takes
// the field under the mouse, and a drag then moves that field's value alone; with "Edit" the
// taken field also takes typed text. Its "Image" children, each with a "Type", are drawn under
// the fields in the order read, the taken field framed over them. [main-thread]
class X_CMultiField : public WCGUIControl {
public:
    explicit X_CMultiField(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    X_CMultiField *Clone() const override;
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    BUFFER_HEADER *MouseDown(WCEventData &event, WURect<double> &limits, bool &keepGoing) override;
    // Only the taken field moves, by the axes its registration names.
    BUFFER_HEADER *MouseDrag(WCEventData &event, double dx, double dy, bool &keepGoing) override;
    int WhichParamIndexCanEnterText() const override;

    // The field whose value window holds `point` (GUI coordinates), or -1.
    int FieldAt(const WCPoint2D<short> &point) const;
    int GetTakenField() const noexcept { return m_Taken; }
    bool IsEditable() const noexcept { return m_Edit; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;

private:
    bool m_Edit = false;
    // The images and, at the same index, their types.
    std::vector<std::unique_ptr<WCBaseImage>> m_Images;
    std::vector<WCFixedString<31>> m_ImageTypes;
    int m_Taken = -1;
};

MIREL_NAMESPACE_END
