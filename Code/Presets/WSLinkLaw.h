#pragma once

#include <cstdint>
#include <vector>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// One point of a link law: where the target parameter stands while the source stands here, both
// as states of their parameters.
struct WSLinkLawPoint {
    double m_SourceState = 0.0;
    double m_TargetState = 0.0;

    friend bool operator==(const WSLinkLawPoint &, const WSLinkLawPoint &) = default;
};

// A law by which one parameter (the target) follows another (the source), drawn by points in the
// order the plug-in gave them. A preset keeps it as a block of descriptors (SaveLinklawToPreset);
// how the target moves between the points is the plug-in's. A plain value. [any-thread]
struct WSLinkLaw {
    std::uint64_t m_SourceParam = 0;
    std::uint64_t m_TargetParam = 0;
    std::vector<WSLinkLawPoint> m_Points;

    friend bool operator==(const WSLinkLaw &, const WSLinkLaw &) = default;
};

} // namespace Preset

MIREL_NAMESPACE_END
