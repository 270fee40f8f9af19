#include "Code/GUI/Controls/CRadioButton_X.h"

#include <algorithm>
#include <cmath>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

// More cells than this is no button row but a broken number.
constexpr int kMaxDivisions = 256;

const WCRGBAColor kCellColor(70, 70, 80, 255);
const WCRGBAColor kFrameColor(20, 20, 20, 255);
const WCRGBAColor kLitColor(255, 190, 40, 255);

} // namespace

CRadioButton_X *CRadioButton_X::Clone() const {
    auto *copy = new CRadioButton_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Layout = m_Layout;
    return copy;
}

WTErr CRadioButton_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read aside and kept only whole: a broken child leaves the buttons as they were.
    WSLayout layout;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "DontUseGraphData") {
            layout.m_DontUseGraphData = GUIXML::ReadSwitch(*child);
        } else if (name == "NumVertDivisions" || name == "NumHorizDivisions") {
            int count = 0;
            if (!GUIXML::ReadIntText(*child, count))
                return eNotANumber;
            if (count < 1 || count > kMaxDivisions)
                return eOutOfRangeNumber;
            const bool vertical = name == "NumVertDivisions";
            (vertical ? layout.m_VertDivisions : layout.m_HorizDivisions) = count;
            (vertical ? layout.m_HasVert : layout.m_HasHoriz) = true;
        } else if (name == "DivisionList") {
            for (const XML::CXMLElement *division : child->GetSubElements()) {
                if (division->GetName() != "Division")
                    continue;
                WURect<short> rect;
                if (const WTErr err = GUIXML::ReadRect(*division, rect); err != eNoErr)
                    return err;
                layout.m_Divisions.push_back(rect);
            }
        } else if (name == "ButtonsDrawArea") {
            if (const WTErr err = GUIXML::ReadRect(*child, layout.m_DrawArea); err != eNoErr)
                return err;
        }
    }
    if (layout.m_VertDivisions * layout.m_HorizDivisions > kMaxDivisions)
        return eOutOfRangeNumber;
    m_Layout = std::move(layout);
    return eNoErr;
}

void CRadioButton_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (m_Layout.m_DontUseGraphData)
        cls->push_sub_element(new XML::CXMLElement("DontUseGraphData", "true"));
    if (m_Layout.m_HasVert)
        cls->push_sub_element(new XML::CXMLElement("NumVertDivisions", m_Layout.m_VertDivisions));
    if (m_Layout.m_HasHoriz)
        cls->push_sub_element(new XML::CXMLElement("NumHorizDivisions", m_Layout.m_HorizDivisions));
    if (!m_Layout.m_Divisions.empty()) {
        auto *list = cls->push_sub_element(new XML::CXMLElement("DivisionList"));
        for (const auto &rect : m_Layout.m_Divisions)
            list->push_sub_element(GUIXML::WriteRect("Division", rect));
    }
    if (!m_Layout.m_DrawArea.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("ButtonsDrawArea", m_Layout.m_DrawArea));
}

WURect<short> CRadioButton_X::Area() const {
    return m_Layout.m_DrawArea.IsReset() ? m_DrawableRect : m_Layout.m_DrawArea;
}

std::size_t CRadioButton_X::GetNumDivisions() const {
    return m_Layout.m_Divisions.empty()
               ? static_cast<std::size_t>(m_Layout.m_VertDivisions * m_Layout.m_HorizDivisions)
               : m_Layout.m_Divisions.size();
}

WURect<short> CRadioButton_X::GetDivisionRect(std::size_t index) const {
    if (index >= GetNumDivisions())
        return {};
    if (!m_Layout.m_Divisions.empty())
        return m_Layout.m_Divisions[index];
    // Cells run along the rows first; the last row and column take the rounding.
    const WURect<short> area = Area();
    const int columns = m_Layout.m_HorizDivisions, rows = m_Layout.m_VertDivisions;
    const int column = static_cast<int>(index) % columns, row = static_cast<int>(index) / columns;
    auto edge = [](short from, int size, int part, int parts) {
        return static_cast<short>(from + size * part / parts);
    };
    return WURect<short>(edge(area.top, area.Height(), row, rows),
                         edge(area.left, area.Width(), column, columns),
                         edge(area.top, area.Height(), row + 1, rows),
                         edge(area.left, area.Width(), column + 1, columns));
}

int CRadioButton_X::DivisionAt(const WCPoint2D<short> &point) const {
    for (std::size_t i = 0; i < GetNumDivisions(); ++i)
        if (GetDivisionRect(i).PointInRect(point))
            return static_cast<int>(i);
    return -1;
}

double CRadioButton_X::DivisionState(std::size_t index) const {
    const std::size_t count = GetNumDivisions();
    return count < 2 ? 1000.0
                     : static_cast<double>(index) * 1000.0 / static_cast<double>(count - 1);
}

std::size_t CRadioButton_X::DivisionOfState(double state) const {
    const std::size_t count = GetNumDivisions();
    if (count < 2 || !std::isfinite(state))
        return 0;
    const double cell = std::round(std::clamp(state, 0.0, 1000.0) * (count - 1) / 1000.0);
    return static_cast<std::size_t>(cell);
}

WCGUIControl::BUFFER_HEADER *
CRadioButton_X::MouseDownSelf(WCEventData &event, WURect<double> &limits, bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const int cell = DivisionAt(event.GetMouseLocation());
    if (cell < 0)
        return chain;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        if (NeedToResetParam(event.GetAllKeyModifiers(), data))
            continue;
        // A registration may name the radio gesture itself or a plain click.
        const unsigned int type =
            data.IsRegisteredToType(eRegRadioButton, modifiers) ? eRegRadioButton : eRegMouseDown;
        chain = Chain(chain, data.SetParamValue(DivisionState(static_cast<std::size_t>(cell)), type,
                                                modifiers));
    }
    return chain;
}

int CRadioButton_X::GetDrawInstructionsParamBitmapWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                                         std::size_t index) {
    if (m_Layout.m_DontUseGraphData)
        return index < m_Registrations.size() ? eNoErr : eOutOfRangeNumber;
    return WCGUIControl::GetDrawInstructionsParamBitmapWindow(writer, index);
}

int CRadioButton_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructions(writer);
    // A lead parameter with pictures of its own shows its state in them; the cells are for a
    // control without.
    if (m_Registrations.empty() ||
        (!m_Layout.m_DontUseGraphData && !GetLeadRegistration()->GetBitmapWin().Empty()))
        return err;
    const std::size_t lit = DivisionOfState(GetLeadRegistration()->GetValue());
    writer.Remark("Radio buttons");
    for (std::size_t i = 0; i < GetNumDivisions(); ++i) {
        WURect<short> cell = GetDivisionRect(i);
        cell.Offset(static_cast<short>(-m_DrawableRect.left),
                    static_cast<short>(-m_DrawableRect.top));
        // A gap of two pixels keeps neighbouring cells apart.
        cell =
            WURect<short>(static_cast<short>(cell.top + 2), static_cast<short>(cell.left + 2),
                          static_cast<short>(cell.bottom - 2), static_cast<short>(cell.right - 2));
        writer.DrawSolidRect(i == lit ? kLitColor : kCellColor, cell);
        writer.DrawWireRect(kFrameColor, cell, 1.0f);
    }
    return err;
}

MIREL_NAMESPACE_END
