#include "Code/GUI/Controls/CSliderModStripes_X.h"

#include <algorithm>
#include <cmath>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/GSConversions.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

// A whole number of 0 or more from an attribute; an absent attribute keeps `out`.
WTErr ReadPixels(const XML::CXMLElement &element, const char *name, int &out) {
    if (!element.AttribExists(name))
        return eNoErr;
    int value = 0;
    if (!element.GetAttrib(name, value))
        return eNotANumber;
    if (value < 0 || value > 0x7FFF)
        return eOutOfRangeNumber;
    out = value;
    return eNoErr;
}

} // namespace

WCGUIControl *CSliderModStripes_X::Clone() const {
    auto *copy = new CSliderModStripes_X(m_pOwner);
    CopyTo(*copy);
    CopySliderTo(*copy);
    copy->m_HasStripes = m_HasStripes;
    copy->m_Length = m_Length;
    copy->m_Thickness = m_Thickness;
    copy->m_Stripes = m_Stripes;
    return copy;
}

WTErr CSliderModStripes_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *element,
                                                  cALGORITHM *alg) {
    if (element == nullptr)
        return eMemNullPointer;
    bool hasStripes = false;
    int length = 0, thickness = 0;
    std::vector<sStripe> stripes;
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        if (child->GetName() != "AllStripes")
            continue;
        hasStripes = true;
        for (const auto &[name, field] :
             {std::pair{"Length", &length}, std::pair{"Thickness", &thickness}})
            if (const WTErr err = ReadPixels(*child, name, *field); err != eNoErr)
                return err;
        for (const XML::CXMLElement *stripe : child->GetSubElements()) {
            if (stripe->GetName() != "Stripe")
                continue;
            sStripe read;
            for (const auto &[name, field] : {std::pair{"Position", &read.m_Position},
                                              std::pair{"PathLength", &read.m_PathLength}})
                if (const WTErr err = ReadPixels(*stripe, name, *field); err != eNoErr)
                    return err;
            stripes.push_back(read);
        }
    }
    // "AllStripes" is no child the slider knows, so it goes to the custom hook there and is
    // taken here.
    const WTErr err = CSlider_X::ReadFromXMLWithAlgSelf(element, alg);
    m_HasStripes = hasStripes;
    m_Length = length;
    m_Thickness = thickness;
    m_Stripes = std::move(stripes);
    return err;
}

void CSliderModStripes_X::WriteToXMLWithAlgSelf(XML::CXMLElement *element) const {
    if (element == nullptr)
        return;
    CSlider_X::WriteToXMLWithAlgSelf(element);
    if (!m_HasStripes)
        return;
    auto *all = new XML::CXMLElement("AllStripes");
    all->AddAttrib("Length", m_Length);
    all->AddAttrib("Thickness", m_Thickness);
    for (const sStripe &stripe : m_Stripes) {
        auto *child = new XML::CXMLElement("Stripe");
        child->AddAttrib("Position", stripe.m_Position);
        child->AddAttrib("PathLength", stripe.m_PathLength);
        all->push_back(child);
    }
    element->push_back(all);
}

double CSliderModStripes_X::GetModulatedState() const {
    double mod = 0.0;
    if (m_Registrations.size() > 1) {
        const double state = m_Registrations[m_LeadParamIndex == 0 ? 1 : 0].GetValue();
        mod = std::isfinite(state) ? state - kNoModulation : 0.0;
    }
    return std::clamp(mod + GetSliderPosition(), 0.0, 1000.0);
}

int CSliderModStripes_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = CSlider_X::GetDrawInstructions(writer);
    if (!m_HasStripes)
        return err;
    const WCRGBAColor color = HasColor() ? GetColor() : WCRGBAColor(255, 255, 255, 255);
    WCRGBAColor half = color;
    half.alpha = static_cast<std::uint8_t>(color.alpha / 2);
    // Frame-local places: the state-0 end of the thumb centre's travel, and the travel's axis.
    const bool vertical = IsVertical();
    const WURect<short> &area = GetThumbMovementArea();
    const int zero = vertical ? GetMovementStart() + GetMovementLength() - m_DrawableRect.top
                              : GetMovementStart() - m_DrawableRect.left;
    const int axis = vertical ? (area.left + area.right) / 2 - m_DrawableRect.left
                              : (area.top + area.bottom) / 2 - m_DrawableRect.top;
    const int direction = vertical ? -1 : 1;
    // A span along the travel (pixels from the state-0 end) and across it (around the axis).
    auto span = [&](int from, int to, int across) {
        const int a = zero + direction * from, b = zero + direction * to;
        const auto low = static_cast<short>(std::min(a, b));
        const auto high = static_cast<short>(std::max(a, b));
        const auto side = static_cast<short>(axis - across / 2);
        const auto otherSide = static_cast<short>(side + across);
        return vertical ? WURect<short>(low, side, high, otherSide)
                        : WURect<short>(side, low, otherSide, high);
    };
    writer.Remark("Mod stripes");
    for (const sStripe &stripe : m_Stripes)
        writer.DrawSolidRect(
            half, span(stripe.m_Position, stripe.m_Position + stripe.m_PathLength, m_Thickness));
    const int range = m_Length > 0 ? m_Length : GetMovementLength();
    const auto at = static_cast<int>(std::lround(GetModulatedState() * 0.001 * range));
    miGS::SGSDrawOval dot;
    const WURect<short> place = span(at - m_Thickness, at + m_Thickness, 2 * m_Thickness);
    dot.rect.location.x = place.left;
    dot.rect.location.y = place.top;
    dot.rect.size.width = place.Width();
    dot.rect.size.height = place.Height();
    dot.slices_num = 100;
    dot.fill = 1;
    dot.draw_color = miGS::WCRGBAColorToSGSRGBAColor(color);
    writer.Remark("Mod value");
    writer.DrawOval(dot);
    return err;
}

MIREL_NAMESPACE_END
