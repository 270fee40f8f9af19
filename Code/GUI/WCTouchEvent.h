#pragma once

#include <cstdint>
#include <type_traits>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"

MIREL_NAMESPACE_BEGIN

// One finger of a touch screen at one moment, as a view packs a batch of them into a memory
// object for CStandardGUI_X::DoTouch. A plain record, so that a batch is a run of them.
struct WCTouchEvent {
    enum EPhase : std::int32_t { eTouchDown = 0, eTouchMove = 1, eTouchUp = 2 };

    std::int32_t m_ID = 0;
    std::int32_t m_Phase = eTouchDown;
    WCPoint2D<short> m_Location;
    // Modifier keys held, in the order of the event record's four.
    bool m_Modifiers[4] = {false, false, false, false};
};
static_assert(std::is_trivially_copyable_v<WCTouchEvent>);

MIREL_NAMESPACE_END
