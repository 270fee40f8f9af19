#include "Code/GUI/Controls/CArcBase_X.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "Code/GUI/Controls/WUControlLookXML.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

using WSLook = CArcBase_X::WSLook;

constexpr std::array<ControlLook::WSChild<WSLook>, 11> kChildren = {{
    {"ArcColor", &WSLook::m_ArcColor},
    {"ArcSwappedColor", &WSLook::m_ArcSwappedColor},
    {"ArcHighlightColor", &WSLook::m_ArcHighlightColor},
    {"ArcSwappedHighlightColor", &WSLook::m_ArcSwappedHighlightColor},
    {"ArcThickness", &WSLook::m_ArcThickness},
    {"ArcStartDeg", &WSLook::m_ArcStartDeg},
    {"ArcEndDeg", &WSLook::m_ArcEndDeg},
    {"MarkColor", &WSLook::m_MarkColor},
    {"MarkHighlightColor", &WSLook::m_MarkHighlightColor},
    {"MarkThickness", &WSLook::m_MarkThickness},
    {"MarkLength", &WSLook::m_MarkLength},
}};

const WCRGBAColor kDefaultArcColor(200, 200, 200, 255);
const WCRGBAColor kDefaultMarkColor(255, 255, 255, 255);

} // namespace

WTErr CArcBase_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read into a copy, so that a child that does not read leaves the arc as it was.
    WSLook look;
    if (const WTErr err = ControlLook::ReadChildren<WSLook>(*cls, kChildren, look); err != eNoErr)
        return err;
    if (look.m_ArcThickness && *look.m_ArcThickness < 0.0)
        return eOutOfRangeNumber;
    m_Look = std::move(look);
    return eNoErr;
}

void CArcBase_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    ControlLook::WriteChildren<WSLook>(*cls, kChildren, m_Look);
    GUIXML::WriteKeptChildren(*cls, m_Look.m_Others);
}

double CArcBase_X::GetState() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    const double state = lead != nullptr ? lead->GetValue() : 0.0;
    return std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) : 0.0;
}

double CArcBase_X::AngleOfState(double state) const {
    const double start = m_Look.m_ArcStartDeg.value_or(kDefaultStartDeg);
    const double end = m_Look.m_ArcEndDeg.value_or(kDefaultEndDeg);
    const double held = std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) : 0.0;
    return start + (end - start) * held * 0.001;
}

bool CArcBase_X::IsHighlighted() const {
    return m_Highlight || GetSelection() >= eSelectSelected || GetHoverState() == eHoverOn;
}

WURect<short> CArcBase_X::ArcRect() const {
    const int width = m_DrawableRect.Width();
    const int height = m_DrawableRect.Height();
    const int side = std::min(width, height);
    const int inset = static_cast<int>(std::ceil(Thickness() * 0.5));
    const int left = (width - side) / 2 + inset;
    const int top = (height - side) / 2 + inset;
    const int inner = std::max(0, side - 2 * inset);
    return WURect<short>(static_cast<short>(top), static_cast<short>(left),
                         static_cast<short>(top + inner), static_cast<short>(left + inner));
}

WCRGBAColor CArcBase_X::ArcColor() const {
    return ControlLook::PickColor(m_Look.m_ArcColor, m_Look.m_ArcSwappedColor,
                                  m_Look.m_ArcHighlightColor, m_Look.m_ArcSwappedHighlightColor,
                                  IsSwapped(), IsHighlighted(), kDefaultArcColor);
}

WCRGBAColor CArcBase_X::MarkColor() const {
    return ControlLook::PickColor(m_Look.m_MarkColor, std::nullopt, m_Look.m_MarkHighlightColor,
                                  std::nullopt, false, IsHighlighted(), kDefaultMarkColor);
}

void CArcBase_X::DrawArcLine(miGS::WCGraphicStreamBinaryWriter &writer, const WURect<short> &rect,
                             double fromDeg, double toDeg, double thickness,
                             const WCRGBAColor &color) {
    if (fromDeg == toDeg || rect.IsEmpty())
        return;
    miGS::SGSDrawOval oval;
    oval.start_angle = static_cast<float>(fromDeg);
    oval.sweep_angle = static_cast<float>(toDeg - fromDeg);
    oval.stroke_width = static_cast<float>(thickness);
    oval.rect.location = {rect.left, rect.top};
    oval.rect.size = {rect.Width(), rect.Height()};
    oval.draw_color = {color.red, color.green, color.blue, color.alpha};
    writer.DrawOval(oval);
}

void CArcBase_X::DrawRadialLine(miGS::WCGraphicStreamBinaryWriter &writer, double angle,
                                double inner, double outer, float width,
                                const WCRGBAColor &color) const {
    const WURect<short> rect = ArcRect();
    const double cx = (rect.left + rect.right) * 0.5;
    const double cy = (rect.top + rect.bottom) * 0.5;
    const double radians = angle * std::numbers::pi / 180.0;
    const double dx = std::sin(radians);
    const double dy = -std::cos(radians);
    writer.DrawLine(
        color,
        WCPoint2D<float>(static_cast<float>(cx + inner * dx), static_cast<float>(cy + inner * dy)),
        WCPoint2D<float>(static_cast<float>(cx + outer * dx), static_cast<float>(cy + outer * dy)),
        width);
}

int CArcBase_X::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int first = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    const int err = GetDrawInstructionsArcLine(writer);
    return first != eNoErr ? first : err;
}

int CArcBase_X::GetDrawInstructionsArcLine(miGS::WCGraphicStreamBinaryWriter &writer) {
    const double from = IsBipolar() ? AngleOfState(500.0) : AngleOfState(0.0);
    writer.Remark("Arc");
    DrawArcLine(writer, ArcRect(), from, AngleOfState(GetState()), Thickness(), ArcColor());
    return eNoErr;
}

CArc_X *CArc_X::Clone() const {
    auto *copy = new CArc_X(m_pOwner);
    CopyTo(*copy);
    CopyArcTo(*copy);
    return copy;
}

int CArc_X::GetDrawInstructionsArcLine(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = CArcBase_X::GetDrawInstructionsArcLine(writer);
    if (m_Look.m_MarkLength && *m_Look.m_MarkLength > 0.0) {
        const double radius = ArcRect().Width() * 0.5;
        const double half = *m_Look.m_MarkLength * 0.5;
        writer.Remark("Arc mark");
        DrawRadialLine(writer, AngleOfState(GetState()), radius - half, radius + half,
                       static_cast<float>(m_Look.m_MarkThickness.value_or(1.0)), MarkColor());
    }
    return err;
}

CArcMarker_X *CArcMarker_X::Clone() const {
    auto *copy = new CArcMarker_X(m_pOwner);
    CopyTo(*copy);
    CopyArcTo(*copy);
    return copy;
}

int CArcMarker_X::GetDrawInstructionsArcLine(miGS::WCGraphicStreamBinaryWriter &writer) {
    writer.Remark("Arc scale");
    DrawArcLine(writer, ArcRect(), AngleOfState(0.0), AngleOfState(1000.0), Thickness(),
                ArcColor());
    return GetDrawInstructionsMarkerLine(writer);
}

int CArcMarker_X::GetDrawInstructionsMarkerLine(miGS::WCGraphicStreamBinaryWriter &writer) {
    // The marker starts on the arc's outer edge so that it reads as part of the scale.
    const double outer = (ArcRect().Width() + Thickness()) * 0.5;
    const double length = std::min(m_Look.m_MarkLength.value_or(outer), outer);
    writer.Remark("Arc marker");
    DrawRadialLine(writer, AngleOfState(GetState()), outer - length, outer,
                   static_cast<float>(m_Look.m_MarkThickness.value_or(kDefaultMarkThickness)),
                   MarkColor());
    return eNoErr;
}

MIREL_NAMESPACE_END
