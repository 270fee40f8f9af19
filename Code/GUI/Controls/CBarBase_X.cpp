#include "Code/GUI/Controls/CBarBase_X.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Code/GUI/Controls/WUControlLookXML.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

using WSLook = CBarBase_X::WSLook;

constexpr std::array<ControlLook::WSChild<WSLook>, 8> kChildren = {{
    {"BarColor", &WSLook::m_BarColor},
    {"BarSwappedColor", &WSLook::m_BarSwappedColor},
    {"BarHighlightColor", &WSLook::m_BarHighlightColor},
    {"BarSwappedHighlightColor", &WSLook::m_BarSwappedHighlightColor},
    {"BarMargin", &WSLook::m_BarMargin},
    {"MarkThickness", &WSLook::m_MarkThickness},
    {"MarkColor", &WSLook::m_MarkColor},
    {"MarkHighlightColor", &WSLook::m_MarkHighlightColor},
}};

const WCRGBAColor kDefaultBarColor(200, 200, 200, 255);
const WCRGBAColor kDefaultMarkColor(255, 255, 255, 255);

} // namespace

WTErr CBarBase_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read into a copy, so that a child that does not read leaves the bar as it was.
    WSLook look;
    if (const WTErr err = ControlLook::ReadChildren<WSLook>(*cls, kChildren, look); err != eNoErr)
        return err;
    if ((look.m_BarMargin && *look.m_BarMargin < 0.0) ||
        (look.m_MarkThickness && *look.m_MarkThickness < 0.0))
        return eOutOfRangeNumber;
    m_Look = std::move(look);
    return eNoErr;
}

void CBarBase_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    ControlLook::WriteChildren<WSLook>(*cls, kChildren, m_Look);
    GUIXML::WriteKeptChildren(*cls, m_Look.m_Others);
}

double CBarBase_X::GetState() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    const double state = lead != nullptr ? lead->GetValue() : 0.0;
    return std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) : 0.0;
}

bool CBarBase_X::IsHighlighted() const {
    return m_Highlight || GetSelection() >= eSelectSelected || GetHoverState() == eHoverOn;
}

WURect<short> CBarBase_X::BarRect() const {
    const int margin = static_cast<int>(std::lround(m_Look.m_BarMargin.value_or(0.0)));
    const int width = std::max(0, m_DrawableRect.Width() - 2 * margin);
    const int height = std::max(0, m_DrawableRect.Height() - 2 * margin);
    return WURect<short>(static_cast<short>(margin), static_cast<short>(margin),
                         static_cast<short>(margin + height), static_cast<short>(margin + width));
}

int CBarBase_X::PositionOfState(const WURect<short> &bar, bool vertical, double state) {
    const double fraction = std::isfinite(state) ? std::clamp(state * 0.001, 0.0, 1.0) : 0.0;
    if (vertical)
        return bar.bottom - static_cast<int>(std::lround(fraction * bar.Height()));
    return bar.left + static_cast<int>(std::lround(fraction * bar.Width()));
}

WURect<short> CBarBase_X::Span(const WURect<short> &bar, bool vertical, double fromState,
                               double toState) {
    const int a = PositionOfState(bar, vertical, fromState);
    const int b = PositionOfState(bar, vertical, toState);
    WURect<short> part = bar;
    if (vertical) {
        part.top = static_cast<short>(std::min(a, b));
        part.bottom = static_cast<short>(std::max(a, b));
    } else {
        part.left = static_cast<short>(std::min(a, b));
        part.right = static_cast<short>(std::max(a, b));
    }
    return part;
}

WCRGBAColor CBarBase_X::BarColor() const {
    return ControlLook::PickColor(m_Look.m_BarColor, m_Look.m_BarSwappedColor,
                                  m_Look.m_BarHighlightColor, m_Look.m_BarSwappedHighlightColor,
                                  IsSwapped(), IsHighlighted(), kDefaultBarColor);
}

void CBarBase_X::DrawMark(miGS::WCGraphicStreamBinaryWriter &writer, double fallback) const {
    const int thickness = static_cast<int>(std::lround(m_Look.m_MarkThickness.value_or(fallback)));
    if (thickness <= 0)
        return;
    const WURect<short> bar = BarRect();
    const bool vertical = IsVertical();
    // The line is centred on the value's place and kept inside the bar at either end.
    const int at = PositionOfState(bar, vertical, GetState());
    const int low = vertical ? bar.top : bar.left;
    const int high = (vertical ? bar.bottom : bar.right) - thickness;
    const int start = std::clamp(at - thickness / 2, low, std::max(low, high));
    WURect<short> mark = bar;
    if (vertical) {
        mark.top = static_cast<short>(start);
        mark.bottom = static_cast<short>(start + thickness);
    } else {
        mark.left = static_cast<short>(start);
        mark.right = static_cast<short>(start + thickness);
    }
    writer.Remark("Bar mark");
    writer.DrawSolidRect(ControlLook::PickColor(m_Look.m_MarkColor, std::nullopt,
                                                m_Look.m_MarkHighlightColor, std::nullopt, false,
                                                IsHighlighted(), kDefaultMarkColor),
                         mark);
}

int CBarBase_X::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int first = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    const int err = GetDrawInstructionsBar(writer);
    return first != eNoErr ? first : err;
}

CBar_X *CBar_X::Clone() const {
    auto *copy = new CBar_X(m_pOwner);
    CopyTo(*copy);
    CopyBarTo(*copy);
    return copy;
}

int CBar_X::GetDrawInstructionsBar(miGS::WCGraphicStreamBinaryWriter &writer) {
    const WURect<short> lit = Span(BarRect(), IsVertical(), IsBipolar() ? 500.0 : 0.0, GetState());
    if (!lit.IsEmpty()) {
        writer.Remark("Bar");
        writer.DrawSolidRect(BarColor(), lit);
    }
    DrawMark(writer, 0.0);
    return eNoErr;
}

CBarMarker_X *CBarMarker_X::Clone() const {
    auto *copy = new CBarMarker_X(m_pOwner);
    CopyTo(*copy);
    CopyBarTo(*copy);
    return copy;
}

int CBarMarker_X::GetDrawInstructionsBar(miGS::WCGraphicStreamBinaryWriter &writer) {
    if (const WURect<short> track = BarRect(); !track.IsEmpty()) {
        writer.Remark("Bar track");
        writer.DrawSolidRect(BarColor(), track);
    }
    DrawMark(writer, kDefaultMarkThickness);
    return eNoErr;
}

MIREL_NAMESPACE_END
