#include "Code/GUI/Controls/CRotationKnobModRings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "graphic_stream/GSConversions.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The track shows the whole way of a ring at this share of the colour's opacity.
constexpr double kTrackOpacity = 0.3;
// Rings are round enough with this many straight pieces.
constexpr std::uint32_t kRingSlices = 100;

// A finite number from an attribute; an absent attribute keeps `out`.
WTErr ReadRingNumber(const XML::CXMLElement &element, const char *name, double &out) {
    if (!element.AttribExists(name))
        return eNoErr;
    const auto text = element.GetAttribString(name);
    char *end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || *end != '\0' || !std::isfinite(value))
        return eNotANumber;
    out = value;
    return eNoErr;
}

} // namespace

CRotationKnobModRings *CRotationKnobModRings::Clone() const {
    auto *copy = new CRotationKnobModRings(m_pOwner);
    CopyTo(*copy);
    CopyKnobTo(*copy);
    copy->m_Rings = m_Rings;
    copy->m_HasDrawRectSize = m_HasDrawRectSize;
    copy->m_DrawRectSize = m_DrawRectSize;
    return copy;
}

WTErr CRotationKnobModRings::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) {
    if (cls == nullptr)
        return eMemNullPointer;
    std::vector<sRing> rings;
    bool hasSize = false;
    WCPoint2D<short> size;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        if (child->GetName() == "Ring") {
            sRing ring;
            for (const auto &[name, field] :
                 {std::pair{"InnerRadius", &ring.m_InnerRadius},
                  std::pair{"Thickness", &ring.m_Thickness}, std::pair{"OffsetX", &ring.m_OffsetX},
                  std::pair{"OffsetY", &ring.m_OffsetY},
                  std::pair{"StartDegree", &ring.m_StartDegree},
                  std::pair{"EndDegree", &ring.m_EndDegree}})
                if (const WTErr err = ReadRingNumber(*child, name, *field); err != eNoErr)
                    return err;
            if (ring.m_InnerRadius < 0.0 || ring.m_Thickness <= 0.0)
                return eOutOfRangeNumber;
            rings.push_back(ring);
        } else if (child->GetName() == "DrawRectSize") {
            short width = 0, height = 0;
            if (!child->GetAttrib("width", width) || !child->GetAttrib("height", height))
                return eNotANumber;
            if (width <= 0 || height <= 0)
                return eOutOfRangeNumber;
            hasSize = true;
            size = WCPoint2D<short>(width, height);
        }
    }
    // The rings change only with a knob that read as well.
    if (const WTErr err = CRotationKnob::ReadFromXMLWithAlgSelf(cls, alg); err != eNoErr)
        return err;
    m_Rings = std::move(rings);
    m_HasDrawRectSize = hasSize;
    m_DrawRectSize = size;
    return eNoErr;
}

void CRotationKnobModRings::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    CRotationKnob::WriteToXMLWithAlgSelf(cls);
    for (const sRing &ring : m_Rings) {
        auto *child = cls->push_sub_element(new XML::CXMLElement("Ring"));
        child->AddAttrib("InnerRadius", static_cast<float>(ring.m_InnerRadius));
        child->AddAttrib("Thickness", static_cast<float>(ring.m_Thickness));
        child->AddAttrib("OffsetX", static_cast<float>(ring.m_OffsetX));
        child->AddAttrib("OffsetY", static_cast<float>(ring.m_OffsetY));
        child->AddAttrib("StartDegree", static_cast<float>(ring.m_StartDegree));
        child->AddAttrib("EndDegree", static_cast<float>(ring.m_EndDegree));
    }
    if (m_HasDrawRectSize) {
        auto *child = cls->push_sub_element(new XML::CXMLElement("DrawRectSize"));
        child->AddAttrib("width", m_DrawRectSize.x);
        child->AddAttrib("height", m_DrawRectSize.y);
    }
}

WCPoint2D<short> CRotationKnobModRings::GetDrawRectSize() const {
    return m_HasDrawRectSize ? m_DrawRectSize
                             : WCPoint2D<short>(m_DrawableRect.Width(), m_DrawableRect.Height());
}

double CRotationKnobModRings::GetRingAmount(std::size_t index) const {
    // The first registration turns the knob; the rings take the ones after it.
    const std::size_t registration = index + 1;
    if (registration >= m_Registrations.size())
        return 0.0;
    const double state = m_Registrations[registration].GetValue();
    return std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) / 1000.0 : 0.0;
}

int CRotationKnobModRings::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = CRotationKnob::GetDrawInstructionsBkgColor(writer);
    const WCRGBAColor color = HasColor() ? GetColor() : WCRGBAColor(255, 255, 255, 255);
    WCRGBAColor track = color;
    track.alpha = static_cast<std::uint8_t>(std::lround(color.alpha * kTrackOpacity));
    const WCPoint2D<short> square = GetDrawRectSize();
    for (std::size_t i = 0; i < m_Rings.size(); ++i) {
        const sRing &ring = m_Rings[i];
        const double radius = ring.m_InnerRadius + ring.m_Thickness / 2.0;
        const double cx = square.x / 2.0 + ring.m_OffsetX;
        const double cy = square.y / 2.0 + ring.m_OffsetY;
        miGS::SGSDrawOval arc;
        arc.rect.location.x = static_cast<std::int32_t>(std::lround(cx - radius));
        arc.rect.location.y = static_cast<std::int32_t>(std::lround(cy - radius));
        arc.rect.size.width = arc.rect.size.height =
            static_cast<std::int32_t>(std::lround(2.0 * radius));
        arc.stroke_width = static_cast<float>(ring.m_Thickness);
        arc.start_angle = static_cast<float>(ring.m_StartDegree);
        arc.slices_num = kRingSlices;
        const double way = ring.m_EndDegree - ring.m_StartDegree;
        writer.Remark("ModRing track");
        arc.sweep_angle = static_cast<float>(way);
        arc.draw_color = miGS::WCRGBAColorToSGSRGBAColor(track);
        writer.DrawOval(arc);
        const double amount = GetRingAmount(i);
        if (amount <= 0.0)
            continue;
        writer.Remark("ModRing amount");
        arc.sweep_angle = static_cast<float>(way * amount);
        arc.draw_color = miGS::WCRGBAColorToSGSRGBAColor(color);
        writer.DrawOval(arc);
    }
    return err;
}

MIREL_NAMESPACE_END
