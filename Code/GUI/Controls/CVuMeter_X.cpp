#include "Code/GUI/Controls/CVuMeter_X.h"

#include <algorithm>
#include <cmath>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/WCParamExtensionMeter.h"
#include "Code/Process/WUMeterDSP.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

const WCRGBAColor kClipColor(255, 40, 40, 255);

// A level at or above this is full scale.
constexpr double kFullScale = 1.0 - 1e-9;

// The part of `rect` lit up to `level`, from the bottom or the left.
WURect<short> LitPart(const WURect<short> &rect, double level, bool vertical) {
    WURect<short> lit = rect;
    if (vertical)
        lit.top = static_cast<short>(rect.bottom - std::lround(level * rect.Height()));
    else
        lit.right = static_cast<short>(rect.left + std::lround(level * rect.Width()));
    return lit;
}

} // namespace

CVuMeter_X *CVuMeter_X::Clone() const {
    auto *copy = new CVuMeter_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Peak = m_Peak;
    copy->m_Clip = m_Clip;
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

bool CVuMeter_X::ReadMeterOf(cALGORITHM *alg, std::uint64_t id, double &peak, bool &clip) {
    if (alg == nullptr)
        return false;
    std::uint32_t index = 0;
    WCMeterManager &meters = alg->GetMeterManager();
    const sCONTROL_PARAM *param = alg->GetParam(id);
    if (param == nullptr || meters.GetMeterIndex(id, index) != eNoErr)
        return false;
    const WCParamExtensionMeter *meter = meters.GetExtensionMeter(index);
    // The peak goes the way the meter's value goes to its parameter: decibels when the meter's
    // range reaches below 0, then the parameter's limits and scale.
    double shown = meter->GetPeak();
    if (meter->GetRangeMin() < 0.0)
        shown = std::max(DSP::GainTodb(shown), meter->GetRangeMin());
    (void)alg->LimitRealWorld(id, shown);
    peak = CalculateVUValueByParamValue(param->RealWorldToState(shown));
    const auto *withClip = dynamic_cast<const WCParamExtensionMeterWithClip *>(meter);
    clip = withClip != nullptr && withClip->GetClip();
    return true;
}

std::int64_t CVuMeter_X::MeterIndex() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    cALGORITHM *alg = GetAlgorithm();
    std::uint32_t index = 0;
    if (lead == nullptr || alg == nullptr ||
        alg->GetMeterManager().GetMeterIndex(lead->GetRegisteredParam(), index) != eNoErr)
        return -1;
    return index;
}

int CVuMeter_X::ReadVU() {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    if (lead == nullptr)
        return eValueNotFound;
    const double level = GetVUValue();
    if (!ReadMeterOf(GetAlgorithm(), lead->GetRegisteredParam(), m_Peak, m_Clip)) {
        m_Peak = std::max(m_Peak, level);
        m_Clip = m_Clip || level >= kFullScale;
    }
    return eNoErr;
}

int CVuMeter_X::ResetPeak() {
    if (const std::int64_t index = MeterIndex(); index >= 0)
        if (const int err = GetAlgorithm()->ResetPeak(index); err != eNoErr)
            return err;
    m_Peak = GetVUValue();
    SetNeedToRedrawControl();
    return eNoErr;
}

int CVuMeter_X::ResetAllPeak() {
    if (cALGORITHM *alg = GetAlgorithm())
        alg->ResetAllPeak();
    m_Peak = GetVUValue();
    SetNeedToRedrawControl();
    return eNoErr;
}

int CVuMeter_X::ResetAllClip() {
    if (cALGORITHM *alg = GetAlgorithm())
        alg->ResetAllClip();
    m_Clip = false;
    SetNeedToRedrawControl();
    return eNoErr;
}

void CVuMeter_X::UpdatePointerSelf(std::size_t) {
    (void)ReadVU();
}

WCGUIControl::BUFFER_HEADER *CVuMeter_X::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                       bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    (void)ResetPeak();
    if (const std::int64_t index = MeterIndex(); index >= 0)
        (void)GetAlgorithm()->GetMeterManager().ResetClip(static_cast<std::uint32_t>(index));
    m_Clip = false;
    return chain;
}

WURect<short> CVuMeter_X::PlaceOf(const WCBaseImage &image) const {
    const WURect<short> &bound = image.GetBoundRect();
    if (bound.IsReset())
        return WURect<short>(0, 0, static_cast<short>(image.GetDefaultHeight()),
                             static_cast<short>(image.GetDefaultWidth()));
    return WURect<short>(static_cast<short>(bound.top - m_DrawableRect.top),
                         static_cast<short>(bound.left - m_DrawableRect.left),
                         static_cast<short>(bound.bottom - m_DrawableRect.top),
                         static_cast<short>(bound.right - m_DrawableRect.left));
}

void CVuMeter_X::GetDrawVUMeterInstructions(miGS::WCGraphicStreamBinaryWriter &writer,
                                            short unlitResID, short litResID,
                                            const WURect<short> &rect, double level,
                                            bool vertical) {
    const WCPoint2D<short> corner(rect.left, rect.top);
    if (unlitResID >= 0) {
        writer.Remark("VU background");
        writer.DrawPNGAtPosition(unlitResID, corner);
    }
    const WURect<short> lit = LitPart(rect, CalculateVUValueByParamValue(level * 1000.0), vertical);
    // An empty meter draws nothing of its lit picture rather than an empty clip, which would
    // mean "no clip".
    if (litResID >= 0 && !lit.IsEmpty()) {
        writer.Remark("VU foreground");
        writer.DrawPNGAtPositionClipped(litResID, corner, lit);
    }
}

int CVuMeter_X::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int first = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    const bool vertical = m_Direction == eDirectionVertical;
    const WCBaseImage *back = m_Background.GetCurrentImage();
    const WCBaseImage *fore = m_Foreground.GetCurrentImage();
    if (back != nullptr && back->GetResID() >= 0)
        GetDrawVUMeterInstructions(writer, back->GetResID(), -1, PlaceOf(*back), 0.0, vertical);
    if (fore == nullptr || fore->GetResID() < 0)
        return first;
    const WURect<short> at = PlaceOf(*fore);
    GetDrawVUMeterInstructions(writer, -1, fore->GetResID(), at, GetVUValue(), vertical);
    // The peak stands above the level only; at or below it the lit part already shows it.
    if (m_Peak > GetVUValue()) {
        WURect<short> band = LitPart(at, m_Peak, vertical);
        if (vertical)
            band.bottom = std::min<short>(at.bottom, static_cast<short>(band.top + kPeakLine));
        else
            band.left = std::max<short>(at.left, static_cast<short>(band.right - kPeakLine));
        writer.Remark("VU peak");
        writer.DrawPNGAtPositionClipped(fore->GetResID(), WCPoint2D<short>(at.left, at.top), band);
    }
    if (m_Clip) {
        WURect<short> light = at;
        if (vertical)
            light.bottom = std::min<short>(at.bottom, static_cast<short>(at.top + kClipLight));
        else
            light.left = std::max<short>(at.left, static_cast<short>(at.right - kClipLight));
        writer.Remark("VU clip");
        writer.DrawSolidRect(kClipColor, light);
    }
    return first;
}

MIREL_NAMESPACE_END
