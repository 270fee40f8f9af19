#pragma once

#include <array>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The four directions of tab navigation between selectables.
enum ENeighbors : int {
    eNeighborUp = 0,
    eNeighborDown = 1,
    eNeighborLeft = 2,
    eNeighborRight = 3,
    eNumNeighbors = 4,
};

// Four neighbour links, one per direction; a link is not owned. [main-thread]
template <typename T>
class WCNeighborable {
public:
    virtual ~WCNeighborable() = default;
    T GetNeighbor(ENeighbors direction) const noexcept {
        return direction >= 0 && direction < eNumNeighbors ? m_Neighbors[direction] : T{};
    }
    void SetNeighbor(ENeighbors direction, T neighbor) noexcept {
        if (direction >= 0 && direction < eNumNeighbors)
            m_Neighbors[direction] = neighbor;
    }

protected:
    std::array<T, eNumNeighbors> m_Neighbors{};
};

MIREL_NAMESPACE_END
