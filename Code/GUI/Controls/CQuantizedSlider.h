#pragma once

#include <cstdint>

#include "Code/GUI/Controls/CSlider_X.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A slider whose thumb stands only on the steps of its parameter: a state between two steps (a
// ramp from automation, a value typed in) shows at the nearest step, so the thumb lines up with
// the marks drawn for the steps. Everything else is the slider's. [main-thread]
class CQuantizedSlider : public CSlider_X {
public:
    explicit CQuantizedSlider(WIControlOwner *owner = nullptr);

    WCGUIControl *Clone() const override;
    void UpdateSliderGUI(std::uint64_t index, const double &value) override;
};

MIREL_NAMESPACE_END
