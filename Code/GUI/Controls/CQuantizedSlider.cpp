#include "Code/GUI/Controls/CQuantizedSlider.h"

#include <cmath>

MIREL_NAMESPACE_BEGIN

CQuantizedSlider::CQuantizedSlider(WIControlOwner *owner) : CSlider_X(owner) {}

WCGUIControl *CQuantizedSlider::Clone() const {
    auto *copy = new CQuantizedSlider(m_pOwner);
    CopyTo(*copy);
    CopySliderTo(*copy);
    return copy;
}

void CQuantizedSlider::UpdateSliderGUI(std::uint64_t index, const double &value) {
    double shown = value;
    if (index < m_Registrations.size() && std::isfinite(value)) {
        const double step = m_Registrations[index].GetActiveControllerParameterStateStep();
        if (step > 0.0)
            shown = std::round(value / step) * step;
    }
    CSlider_X::UpdateSliderGUI(index, shown);
}

MIREL_NAMESPACE_END
