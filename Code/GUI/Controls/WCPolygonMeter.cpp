#include "Code/GUI/Controls/WCPolygonMeter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Code/GUI/Controls/CVuMeter_X.h"
#include "Code/GUI/Controls/WUControlLookXML.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

using WSLook = WCPolygonMeter::WSLook;

constexpr std::array<ControlLook::WSChild<WSLook>, 5> kChildren = {{
    {"MeterColor1", &WSLook::m_MeterColor1},
    {"MeterColor2", &WSLook::m_MeterColor2},
    {"MeterColor3", &WSLook::m_MeterColor3},
    {"MeterClipColor", &WSLook::m_MeterClipColor},
    {"BackgroundColor", &WSLook::m_BackgroundColor},
}};

} // namespace

WCPolygonMeter *WCPolygonMeter::Clone() const {
    auto *copy = new WCPolygonMeter(m_pOwner);
    CopyTo(*copy);
    copy->m_Look = m_Look;
    return copy;
}

WTErr WCPolygonMeter::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read into a copy, so that a child that does not read leaves the meter as it was.
    WSLook look;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        WTErr err = eNoErr;
        if (child->GetName() == "ColorSwitchValues") {
            double first = 0.0, second = 0.0;
            err = ControlLook::ReadStateAttrib(*child, "first", first);
            if (err == eNoErr)
                err = ControlLook::ReadStateAttrib(*child, "second", second);
            if (err == eNoErr && second < first)
                err = eOutOfRangeNumber;
            if (err == eNoErr) {
                look.m_Switch1 = first;
                look.m_Switch2 = second;
            }
        } else if (!ControlLook::ReadChild<WSLook>(*child, kChildren, look, err)) {
            look.m_Others.push_back(*child);
        }
        if (err != eNoErr)
            return err;
    }
    m_Look = std::move(look);
    return eNoErr;
}

void WCPolygonMeter::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    ControlLook::WriteChildren<WSLook>(*cls, kChildren, m_Look);
    if (m_Look.m_Switch1 && m_Look.m_Switch2) {
        auto *values = cls->push_sub_element(new XML::CXMLElement("ColorSwitchValues"));
        ControlLook::AddNumberAttrib(*values, "first", *m_Look.m_Switch1);
        ControlLook::AddNumberAttrib(*values, "second", *m_Look.m_Switch2);
    }
    GUIXML::WriteKeptChildren(*cls, m_Look.m_Others);
}

WCPolygonMeter::WSColors WCPolygonMeter::GetColors() const {
    WSColors colors;
    colors.m_Background = m_Look.m_BackgroundColor.value_or(colors.m_Background);
    colors.m_Zone[0] = m_Look.m_MeterColor1.value_or(colors.m_Zone[0]);
    colors.m_Zone[1] = m_Look.m_MeterColor2.value_or(colors.m_Zone[1]);
    colors.m_Zone[2] = m_Look.m_MeterColor3.value_or(colors.m_Zone[2]);
    colors.m_Clip = m_Look.m_MeterClipColor.value_or(colors.m_Clip);
    colors.m_Switch[0] = m_Look.m_Switch1.value_or(colors.m_Switch[0]);
    colors.m_Switch[1] = m_Look.m_Switch2.value_or(colors.m_Switch[1]);
    return colors;
}

bool WCPolygonMeter::IsClipped() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    if (lead == nullptr)
        return false;
    double peak = 0.0;
    bool clip = false;
    if (CVuMeter_X::ReadMeterOf(GetAlgorithm(), lead->GetRegisteredParam(), peak, clip))
        return clip;
    return CVuMeter_X::CalculateVUValueByParamValue(lead->GetValue()) >= 1.0;
}

void WCPolygonMeter::GetDrawVUMeterInstructions(miGS::WCGraphicStreamBinaryWriter &writer,
                                                const WURect<short> &rect, double level,
                                                bool vertical, bool clip, const WSColors &colors) {
    writer.Remark("PolygonVU background");
    writer.DrawSolidRect(colors.m_Background, rect);
    const double held = std::isfinite(level) ? std::clamp(level, 0.0, 1.0) : 0.0;
    // The part of the rect between two fractions of the meter.
    auto part = [&rect, vertical](double from, double to) {
        WURect<short> zone = rect;
        if (vertical) {
            zone.bottom = static_cast<short>(rect.bottom - std::lround(from * rect.Height()));
            zone.top = static_cast<short>(rect.bottom - std::lround(to * rect.Height()));
        } else {
            zone.left = static_cast<short>(rect.left + std::lround(from * rect.Width()));
            zone.right = static_cast<short>(rect.left + std::lround(to * rect.Width()));
        }
        return zone;
    };
    const double bounds[4] = {0.0, colors.m_Switch[0] * 0.001, colors.m_Switch[1] * 0.001, 1.0};
    for (int zone = 0; zone < 3; ++zone) {
        const double to = std::min(held, bounds[zone + 1]);
        if (to <= bounds[zone])
            break;
        const WURect<short> lit = part(bounds[zone], to);
        if (!lit.IsEmpty()) {
            writer.Remark("PolygonVU zone");
            writer.DrawSolidRect(colors.m_Zone[zone], lit);
        }
    }
    if (clip) {
        const double depth = vertical ? rect.Height() : rect.Width();
        const double light = depth > 0 ? std::min(1.0, kClipLight / depth) : 1.0;
        writer.Remark("PolygonVU clip");
        writer.DrawSolidRect(colors.m_Clip, part(1.0 - light, 1.0));
    }
}

int WCPolygonMeter::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int first = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    const WCParamRegistrationData *lead = GetLeadRegistration();
    const double level =
        lead != nullptr ? CVuMeter_X::CalculateVUValueByParamValue(lead->GetValue()) : 0.0;
    GetDrawVUMeterInstructions(writer,
                               WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width()),
                               level, m_Direction == eDirectionVertical, IsClipped(), GetColors());
    return first;
}

MIREL_NAMESPACE_END
