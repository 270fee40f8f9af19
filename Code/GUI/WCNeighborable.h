#pragma once

#include <array>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The four directions of tab navigation between selectables; the tab key's directions are these
// numbers (Tab 2, shift-Tab 0, with Alt 3 and 1).
enum ENeighbors : int {
    eNeighborLeft = 0,
    eNeighborUp = 1,
    eNeighborRight = 2,
    eNeighborDown = 3,
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
