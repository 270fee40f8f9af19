#pragma once

#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// An area of the view made of rectangles, for what needs repainting: unions and differences of
// rectangles and other regions, and polygons filled by the winding rule. A region whose handle
// could not be made or combined is null, and a null region is empty. The handle is the
// platform's region type. [main-thread]
class WCRegion {
public:
    WCRegion();
    explicit WCRegion(const WURect<short> &rect);
    WCRegion(short top, short left, short bottom, short right);
    // At least 2 points, the first repeated at the end; fewer make a null region.
    explicit WCRegion(const std::vector<WCPoint2D<short>> &polygon);
    WCRegion(const WCRegion &other);
    WCRegion &operator=(const WCRegion &other);
    ~WCRegion();

    WCRegion &operator+=(const WCRegion &other);
    WCRegion &operator+=(const WURect<short> &rect);
    WCRegion &operator-=(const WCRegion &other);
    WCRegion &operator-=(const WURect<short> &rect);
    bool operator==(const WCRegion &other) const;
    bool operator!=(const WCRegion &other) const { return !(*this == other); }

    void Clear();
    bool IsNull() const noexcept { return m_pHandle == nullptr; }
    bool IsEmpty() const;
    WURect<short> GetBounds() const;
    bool IsIntersecting(const WURect<short> &rect) const;
    bool IsIntersecting(const WCRegion &other) const;
    void OffsetBy(short dx, short dy);
    // Every rectangle's sides times the factors, truncated toward zero.
    void Scale(double x, double y);
    // The rectangles the region is made of, top to bottom.
    std::vector<WURect<short>> GetRects() const;

private:
    void *m_pHandle = nullptr;
};

MIREL_NAMESPACE_END
