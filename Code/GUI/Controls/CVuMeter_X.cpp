#include "Code/GUI/Controls/CVuMeter_X.h"

#include <algorithm>
#include <cmath>

#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

CVuMeter_X *CVuMeter_X::Clone() const {
    auto *copy = new CVuMeter_X(m_pOwner);
    CopyTo(*copy);
    return copy;
}

double CVuMeter_X::CalculateVUValueByParamValue(double value) noexcept {
    if (!std::isfinite(value))
        return 0.0;
    return std::clamp(value * 0.001, 0.0, 1.0);
}

double CVuMeter_X::GetVUValue() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    return lead != nullptr ? CalculateVUValueByParamValue(lead->GetValue()) : 0.0;
}

int CVuMeter_X::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int first = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    // Where a picture sits in the control's frame, and how large it is.
    auto place = [this](const WCBaseImage &image) {
        const WURect<short> &bound = image.GetBoundRect();
        if (bound.IsReset())
            return WURect<short>(0, 0, static_cast<short>(image.GetDefaultHeight()),
                                 static_cast<short>(image.GetDefaultWidth()));
        return WURect<short>(static_cast<short>(bound.top - m_DrawableRect.top),
                             static_cast<short>(bound.left - m_DrawableRect.left),
                             static_cast<short>(bound.bottom - m_DrawableRect.top),
                             static_cast<short>(bound.right - m_DrawableRect.left));
    };
    if (const WCBaseImage *back = m_Background.GetCurrentImage();
        back != nullptr && back->GetResID() >= 0) {
        const WURect<short> at = place(*back);
        writer.Remark("VU background");
        writer.DrawPNGAtPosition(back->GetResID(), WCPoint2D<short>(at.left, at.top));
    }
    if (const WCBaseImage *fore = m_Foreground.GetCurrentImage();
        fore != nullptr && fore->GetResID() >= 0) {
        const WURect<short> at = place(*fore);
        const double level = GetVUValue();
        WURect<short> lit = at;
        if (m_Direction == eDirectionVertical)
            lit.top = static_cast<short>(at.bottom - std::lround(level * at.Height()));
        else
            lit.right = static_cast<short>(at.left + std::lround(level * at.Width()));
        // An empty meter draws nothing of its lit picture rather than an empty clip, which
        // would mean "no clip".
        if (!lit.IsEmpty()) {
            writer.Remark("VU foreground");
            writer.DrawPNGAtPositionClipped(fore->GetResID(), WCPoint2D<short>(at.left, at.top),
                                            lit);
        }
    }
    return first;
}

MIREL_NAMESPACE_END
