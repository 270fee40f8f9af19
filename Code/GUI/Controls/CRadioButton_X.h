#pragma once

#include <vector>

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A row, column or grid of buttons over one parameter: the buttons area ("ButtonsDrawArea", the
// control's rect by default) is cut into "NumHorizDivisions" x "NumVertDivisions" cells, or into
// the cells a "DivisionList" gives one by one; a click in cell i of n sets the parameter to state
// i * 1000 / (n - 1) for registrations of the "RadioButton" or "MouseDown" gesture. The lead
// parameter's bitmap window shows the state when it has pictures; without them, or with
// "DontUseGraphData" (which leaves the window out), the cells are drawn, the one nearest the
// parameter's state lit.
// Rects are in GUI coordinates, as the control rect is. [main-thread]
class CRadioButton_X : public WCGUIControl {
public:
    explicit CRadioButton_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CRadioButton_X *Clone() const override;
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) override;

    std::size_t GetNumDivisions() const;
    // Cell `index` in GUI coordinates; an empty rect past the last.
    WURect<short> GetDivisionRect(std::size_t index) const;
    // The cell under `point`, or -1.
    int DivisionAt(const WCPoint2D<short> &point) const;
    // The state cell `index` selects, and the cell a state lights.
    double DivisionState(std::size_t index) const;
    std::size_t DivisionOfState(double state) const;

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;
    int GetDrawInstructionsParamBitmapWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                             std::size_t index) override;

private:
    struct WSLayout {
        bool m_DontUseGraphData = false;
        int m_VertDivisions = 1;
        int m_HorizDivisions = 1;
        bool m_HasVert = false;
        bool m_HasHoriz = false;
        std::vector<WURect<short>> m_Divisions;
        WURect<short> m_DrawArea;
    };
    WURect<short> Area() const;

    WSLayout m_Layout;
};

MIREL_NAMESPACE_END
