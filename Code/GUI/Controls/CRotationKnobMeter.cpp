#include "Code/GUI/Controls/CRotationKnobMeter.h"

#include <algorithm>
#include <cmath>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/WCMeterManager.h"
#include "graphic_stream/GSConversions.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN

CRotationKnobMeter *CRotationKnobMeter::Clone() const {
    auto *copy = new CRotationKnobMeter(m_pOwner);
    CopyTo(*copy);
    CopyKnobTo(*copy);
    return copy;
}

double CRotationKnobMeter::GetMeterState() const {
    for (const auto &data : m_Registrations) {
        if (!data.IsRegisteredToType(eRegDisplayOnly, nullptr))
            continue;
        double state = data.GetValue();
        std::uint32_t index = 0;
        if (m_pAlg != nullptr &&
            m_pAlg->GetMeterManager().GetMeterIndex(data.GetRegisteredParam(), index) == eNoErr)
            if (const WCParamExtensionMeter *meter =
                    m_pAlg->GetMeterManager().GetExtensionMeter(index))
                state = data.RealWorldToState(meter->GetDisplayValue());
        return std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) : 0.0;
    }
    return 0.0;
}

int CRotationKnobMeter::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = CRotationKnob::GetDrawInstructionsBkgColor(writer);
    const double state = GetMeterState();
    if (state <= 0.0)
        return err;
    miGS::SGSDrawOval ring;
    // The stroke lies on the outline, so the outline stands half a ring inside the control.
    const auto inset = static_cast<std::int32_t>(std::ceil(kRingWidth / 2.0f));
    ring.rect.location.x = ring.rect.location.y = inset;
    const WCPoint2D<short> frame = FrameSize();
    ring.rect.size.width = std::max(0, frame.x - 2 * inset);
    ring.rect.size.height = std::max(0, frame.y - 2 * inset);
    ring.stroke_width = kRingWidth;
    ring.slices_num = 100;
    ring.start_angle = static_cast<float>(AngleForState(0.0));
    ring.sweep_angle = static_cast<float>(AngleForState(state) - AngleForState(0.0));
    ring.draw_color =
        miGS::WCRGBAColorToSGSRGBAColor(HasColor() ? GetColor() : WCRGBAColor(255, 255, 255, 255));
    writer.Remark("RotationKnobMeter ring");
    writer.DrawOval(ring);
    return err;
}

MIREL_NAMESPACE_END
