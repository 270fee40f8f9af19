#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// Where a meter's bar starts.
enum EMeterOrigin : std::int32_t {
    eMeterOriginBottomLeft = 0,
    eMeterOriginTopRight = 1,
    eMeterOriginCenter = 2,
};

enum EMeterOrientation : std::int32_t {
    eMeterOrientationVertical = 0,
    eMeterOrientationHorizontal = 1,
};

// What a meter measures, for hosts and control surfaces that group meters.
enum EMeterType : std::int32_t {
    eMeterTypeInput = 0,
    eMeterTypeOutput = 1,
    eMeterTypeCompLimGain = 2,
    eMeterTypeExpGateGain = 3,
    eMeterTypeAnalysis = 4,
    eMeterTypeOther = 5,
};

// One meter as a shell sees it ('MInf'): a plain record the shell owns, filled by the manager.
struct MirelMeterInfo {
    std::uint64_t m_ParamID = 0;
    std::int32_t m_Origin = eMeterOriginBottomLeft;
    std::int32_t m_Orientation = eMeterOrientationVertical;
    std::int32_t m_MeterType = eMeterTypeOther;
    std::int32_t m_DisplayInControlSurface = 0;
    std::int32_t m_OrderInControlSurface = -1;
    std::uint32_t m_StatesOffset = 0;
    double m_Multiplier = 1.0;
    double m_RangeMin = 0.0;
    // 1 for a meter that holds a clip indication, with the level that sets it.
    std::int32_t m_HasClip = 0;
    double m_ClipLevel = 0.0;
    // Zero-terminated, cut at the capacity.
    char m_Description[128] = {};
};

MIREL_NAMESPACE_END
