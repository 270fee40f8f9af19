// Regions are cairo regions: the library already paints with cairo, and its region type does
// the union, difference and comparison of rectangle sets.

#include "Code/GUI/WCRegion.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>

#include <cairo.h>

MIREL_NAMESPACE_BEGIN

namespace {

cairo_region_t *Handle(void *handle) {
    return static_cast<cairo_region_t *>(handle);
}

cairo_rectangle_int_t ToCairo(const WURect<short> &rect) {
    return {rect.left, rect.top, std::max(0, rect.right - rect.left),
            std::max(0, rect.bottom - rect.top)};
}

short Clamp(double value) {
    return static_cast<short>(std::clamp(std::trunc(value), double(SHRT_MIN), double(SHRT_MAX)));
}

// A region that is not usable goes null, so that a failed combine reads as empty.
void *Checked(cairo_region_t *region) {
    if (region != nullptr && cairo_region_status(region) != CAIRO_STATUS_SUCCESS) {
        cairo_region_destroy(region);
        return nullptr;
    }
    return region;
}

// Fills the polygon by the winding rule on a 1-bit mask of its bounds, row runs to rectangles.
cairo_region_t *FromPolygon(const std::vector<WCPoint2D<short>> &polygon) {
    int left = INT_MAX, top = INT_MAX, right = INT_MIN, bottom = INT_MIN;
    for (const auto &point : polygon) {
        left = std::min<int>(left, point.x);
        right = std::max<int>(right, point.x);
        top = std::min<int>(top, point.y);
        bottom = std::max<int>(bottom, point.y);
    }
    cairo_region_t *region = cairo_region_create();
    const int width = right - left;
    const int height = bottom - top;
    if (width <= 0 || height <= 0)
        return region;
    cairo_surface_t *mask = cairo_image_surface_create(CAIRO_FORMAT_A1, width, height);
    cairo_t *cr = cairo_create(mask);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
    cairo_move_to(cr, polygon.front().x - left, polygon.front().y - top);
    for (const auto &point : polygon)
        cairo_line_to(cr, point.x - left, point.y - top);
    cairo_close_path(cr);
    cairo_fill(cr);
    cairo_destroy(cr);
    cairo_surface_flush(mask);
    const unsigned char *data = cairo_image_surface_get_data(mask);
    const int stride = cairo_image_surface_get_stride(mask);
    for (int y = 0; data != nullptr && y < height; ++y) {
        const auto *row = reinterpret_cast<const std::uint32_t *>(data + y * stride);
        auto bit = [row](int x) {
            const std::uint32_t word = row[x / 32];
            // cairo packs A1 pixels into native-endian 32-bit words: the first pixel is the low
            // bit on a little-endian machine, the high bit on a big-endian one.
            const int shift = std::endian::native == std::endian::little ? x % 32 : 31 - x % 32;
            return ((word >> shift) & 1u) != 0;
        };
        for (int x = 0; x < width;) {
            if (!bit(x)) {
                ++x;
                continue;
            }
            const int start = x;
            while (x < width && bit(x))
                ++x;
            const cairo_rectangle_int_t run{left + start, top + y, x - start, 1};
            cairo_region_union_rectangle(region, &run);
        }
    }
    cairo_surface_destroy(mask);
    return region;
}

} // namespace

WCRegion::WCRegion() : m_pHandle(Checked(cairo_region_create())) {}

WCRegion::WCRegion(const WURect<short> &rect) {
    const cairo_rectangle_int_t r = ToCairo(rect);
    m_pHandle = Checked(cairo_region_create_rectangle(&r));
}

WCRegion::WCRegion(short top, short left, short bottom, short right)
    : WCRegion(WURect<short>(top, left, bottom, right)) {}

WCRegion::WCRegion(const std::vector<WCPoint2D<short>> &polygon) {
    if (polygon.size() >= 2)
        m_pHandle = Checked(FromPolygon(polygon));
}

WCRegion::WCRegion(const WCRegion &other)
    : m_pHandle(other.m_pHandle ? Checked(cairo_region_copy(Handle(other.m_pHandle))) : nullptr) {}

WCRegion &WCRegion::operator=(const WCRegion &other) {
    if (this != &other) {
        WCRegion copy(other);
        std::swap(m_pHandle, copy.m_pHandle);
    }
    return *this;
}

WCRegion::~WCRegion() {
    if (m_pHandle != nullptr)
        cairo_region_destroy(Handle(m_pHandle));
}

WCRegion &WCRegion::operator+=(const WCRegion &other) {
    if (m_pHandle != nullptr && other.m_pHandle != nullptr &&
        cairo_region_union(Handle(m_pHandle), Handle(other.m_pHandle)) != CAIRO_STATUS_SUCCESS)
        Clear();
    else if (m_pHandle == nullptr && other.m_pHandle != nullptr)
        *this = other;
    return *this;
}

WCRegion &WCRegion::operator+=(const WURect<short> &rect) {
    return *this += WCRegion(rect);
}

WCRegion &WCRegion::operator-=(const WCRegion &other) {
    if (m_pHandle != nullptr && other.m_pHandle != nullptr &&
        cairo_region_subtract(Handle(m_pHandle), Handle(other.m_pHandle)) != CAIRO_STATUS_SUCCESS)
        Clear();
    return *this;
}

WCRegion &WCRegion::operator-=(const WURect<short> &rect) {
    return *this -= WCRegion(rect);
}

bool WCRegion::operator==(const WCRegion &other) const {
    if (IsEmpty() || other.IsEmpty())
        return IsEmpty() == other.IsEmpty();
    return cairo_region_equal(Handle(m_pHandle), Handle(other.m_pHandle));
}

void WCRegion::Clear() {
    if (m_pHandle != nullptr)
        cairo_region_destroy(Handle(m_pHandle));
    m_pHandle = nullptr;
}

bool WCRegion::IsEmpty() const {
    return m_pHandle == nullptr || cairo_region_is_empty(Handle(m_pHandle));
}

WURect<short> WCRegion::GetBounds() const {
    if (IsEmpty())
        return {};
    cairo_rectangle_int_t r;
    cairo_region_get_extents(Handle(m_pHandle), &r);
    return WURect<short>(Clamp(r.y), Clamp(r.x), Clamp(double(r.y) + r.height),
                         Clamp(double(r.x) + r.width));
}

bool WCRegion::IsIntersecting(const WURect<short> &rect) const {
    if (IsEmpty() || rect.IsEmpty())
        return false;
    const cairo_rectangle_int_t r = ToCairo(rect);
    return cairo_region_contains_rectangle(Handle(m_pHandle), &r) != CAIRO_REGION_OVERLAP_OUT;
}

bool WCRegion::IsIntersecting(const WCRegion &other) const {
    if (IsEmpty() || other.IsEmpty())
        return false;
    WCRegion common(*this);
    if (common.m_pHandle == nullptr ||
        cairo_region_intersect(Handle(common.m_pHandle), Handle(other.m_pHandle)) !=
            CAIRO_STATUS_SUCCESS)
        return false;
    return !common.IsEmpty();
}

void WCRegion::OffsetBy(short dx, short dy) {
    if (m_pHandle != nullptr)
        cairo_region_translate(Handle(m_pHandle), dx, dy);
}

void WCRegion::Scale(double x, double y) {
    if (IsEmpty())
        return;
    WCRegion scaled;
    for (WURect<short> rect : GetRects()) {
        rect = WURect<short>(Clamp(rect.top * y), Clamp(rect.left * x), Clamp(rect.bottom * y),
                             Clamp(rect.right * x));
        scaled += rect;
    }
    *this = scaled;
}

std::vector<WURect<short>> WCRegion::GetRects() const {
    std::vector<WURect<short>> rects;
    if (IsEmpty())
        return rects;
    const int count = cairo_region_num_rectangles(Handle(m_pHandle));
    rects.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        cairo_rectangle_int_t r;
        cairo_region_get_rectangle(Handle(m_pHandle), i, &r);
        rects.emplace_back(Clamp(r.y), Clamp(r.x), Clamp(double(r.y) + r.height),
                           Clamp(double(r.x) + r.width));
    }
    return rects;
}

MIREL_NAMESPACE_END
