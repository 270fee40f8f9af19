#include "core/WCStMemObj.h"

#include <cstring>
#include <utility>

#include "core/WUAssert.h"
#include "core/WUMemory.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

namespace {

constexpr std::uint64_t kMaxSize = ~std::uint64_t(0);

inline bool IsInside(const void *p, const void *block, std::uint64_t size) noexcept {
    const char *c = static_cast<const char *>(p);
    const char *b = static_cast<const char *>(block);
    return block != nullptr && c >= b && c < b + size;
}

} // namespace

// ---- WCStConstMemObj ----

WCStConstMemObj::WCStConstMemObj(const void *data, std::uint64_t size) noexcept {
    DuplicateWTPtr(data, size, m_ptr);
    m_size = m_ptr ? size : 0;
}

WCStConstMemObj::WCStConstMemObj(const WCStConstMemObj &other) noexcept
    : WCStConstMemObj(other.m_ptr, other.m_size) {}

WCStConstMemObj::WCStConstMemObj(WCStConstMemObj &&other) noexcept
    : m_ptr(other.m_ptr), m_size(other.m_size) {
    other.m_ptr = nullptr;
    other.m_size = 0;
}

WCStConstMemObj &WCStConstMemObj::operator=(const WCStConstMemObj &other) noexcept {
    if (&other == this)
        return *this;
    void *copy = nullptr;
    DuplicateWTPtr(other.m_ptr, other.m_size, copy);
    if (copy == nullptr && other.m_size != 0 && other.m_ptr != nullptr)
        return *this;
    DisposeWTPtr(m_ptr);
    m_ptr = copy;
    m_size = copy ? other.m_size : 0;
    return *this;
}

WCStConstMemObj &WCStConstMemObj::operator=(WCStConstMemObj &&other) noexcept {
    if (&other == this)
        return *this;
    DisposeWTPtr(m_ptr);
    m_ptr = std::exchange(other.m_ptr, nullptr);
    m_size = std::exchange(other.m_size, 0);
    return *this;
}

WCStConstMemObj::~WCStConstMemObj() {
    DisposeWTPtr(m_ptr);
}

void WCStConstMemObj::Memset(char value) noexcept {
    if (m_ptr != nullptr && m_size != 0)
        std::memset(m_ptr, static_cast<unsigned char>(value), static_cast<std::size_t>(m_size));
}

int WCStConstMemObj::Compare(const WCStConstMemObj &a, const WCStConstMemObj &b) noexcept {
    const std::uint32_t sizeA = static_cast<std::uint32_t>(a.m_size);
    const std::uint32_t sizeB = static_cast<std::uint32_t>(b.m_size);
    if (sizeA != sizeB)
        return static_cast<int>(sizeA - sizeB);
    const std::uint64_t n = a.m_size < b.m_size ? a.m_size : b.m_size;
    if (n == 0)
        return 0;
    return std::memcmp(a.m_ptr, b.m_ptr, static_cast<std::size_t>(n));
}

// ---- WCStMemObj ----

WCStMemObj::WCStMemObj(const void *data, std::uint64_t size) noexcept
    : WCStConstMemObj(data, size) {
    m_capacity = m_size;
}

WCStMemObj::WCStMemObj(const WCStMemObj &other) noexcept : WCStConstMemObj(other) {
    m_capacity = m_size;
}

WCStMemObj::WCStMemObj(WCStMemObj &&other) noexcept : WCStConstMemObj(std::move(other)) {
    m_capacity = std::exchange(other.m_capacity, 0);
}

WCStMemObj &WCStMemObj::operator=(const WCStMemObj &other) noexcept {
    if (&other != this)
        Assign(other.m_ptr, other.m_size);
    return *this;
}

WCStMemObj &WCStMemObj::operator=(WCStMemObj &&other) noexcept {
    TakeOver(other);
    return *this;
}

WTErr WCStMemObj::GrowTo(std::uint64_t capacity) noexcept {
    if (capacity <= m_capacity)
        return eNoErr;
    void *ptr = m_ptr;
    const WTErr err = ResizeWTPtr(ptr, capacity);
    if (err != eNoErr)
        return err;
    m_ptr = ptr;
    m_capacity = capacity;
    return eNoErr;
}

WTErr WCStMemObj::Assign(const void *data, std::uint64_t size) noexcept {
    if (data == nullptr || size == 0) {
        m_size = 0;
        return eNoErr;
    }
    // A source inside this block is never longer than the block, so it survives without growth.
    const WTErr err = GrowTo(size);
    if (err != eNoErr)
        return err;
    std::memmove(m_ptr, data, static_cast<std::size_t>(size));
    m_size = size;
    return eNoErr;
}

WTErr WCStMemObj::GrowFor(std::uint64_t needed, bool geometric) noexcept {
    if (!geometric || needed <= m_capacity)
        return GrowTo(needed);
    if (needed > kMaxSize / 2)
        return eMemOutOfMemory;
    return GrowTo(2 * needed);
}

WTErr WCStMemObj::AppendBytes(const void *data, std::uint64_t size, bool geometric) noexcept {
    if (data == nullptr || size == 0)
        return eNoErr;
    if (size > kMaxSize - m_size)
        return eMemOutOfMemory;
    // Growing may move the block, so a source inside it is kept as an offset.
    const bool inside = IsInside(data, m_ptr, m_size);
    const std::uint64_t offset = inside
                                     ? static_cast<std::uint64_t>(static_cast<const char *>(data) -
                                                                  static_cast<const char *>(m_ptr))
                                     : 0;
    const WTErr err = GrowFor(m_size + size, geometric);
    if (err != eNoErr)
        return err;
    const void *source = inside ? static_cast<const char *>(m_ptr) + offset : data;
    std::memmove(static_cast<char *>(m_ptr) + m_size, source, static_cast<std::size_t>(size));
    m_size += size;
    return eNoErr;
}

WTErr WCStMemObj::Append(const void *data, std::uint64_t size) noexcept {
    return AppendBytes(data, size, false);
}

WTErr WCStMemObj::AppendAndReserve(const void *data, std::uint64_t size) noexcept {
    return AppendBytes(data, size, true);
}

void *WCStMemObj::InPlaceAppendGrowing(std::uint64_t count) noexcept {
    if (count > kMaxSize - m_size)
        return nullptr;
    const std::uint64_t needed = m_size + count;
    if (needed > m_capacity && GrowFor(needed, true) != eNoErr && GrowTo(needed) != eNoErr)
        return nullptr;
    char *place = static_cast<char *>(m_ptr) + m_size;
    m_size = needed;
    return place;
}

WTErr WCStMemObj::ReservePtr(std::uint64_t capacity) noexcept {
    return GrowTo(capacity);
}

WTErr WCStMemObj::ReserveHeadroom(std::uint64_t headroom) noexcept {
    if (headroom > kMaxSize - m_size)
        return eMemOutOfMemory;
    return GrowTo(m_size + headroom);
}

WTErr WCStMemObj::ResizePtr(std::uint64_t newSize) noexcept {
    const WTErr err = GrowTo(newSize);
    if (err != eNoErr)
        return err;
    m_size = newSize;
    return eNoErr;
}

WTErr WCStMemObj::ResizePtrDelta(std::int64_t delta) noexcept {
    if (delta >= 0) {
        const std::uint64_t grow = static_cast<std::uint64_t>(delta);
        if (grow > kMaxSize - m_size)
            return eMemOutOfMemory;
        return ResizePtr(m_size + grow);
    }
    const std::uint64_t shrink = 0 - static_cast<std::uint64_t>(delta);
    MIREL_ASSERT_RETURN(shrink <= m_size, eOutOfRangeNumber);
    m_size -= shrink;
    return eNoErr;
}

WTErr WCStMemObj::ResizePtrAlign(std::uint64_t alignment, char fill) noexcept {
    if (alignment <= 1)
        return eNoErr;
    const std::uint64_t remainder = m_size % alignment;
    if (remainder == 0)
        return eNoErr;
    const std::uint64_t pad = alignment - remainder;
    if (pad > kMaxSize - m_size)
        return eMemOutOfMemory;
    const std::uint64_t oldSize = m_size;
    const WTErr err = ResizePtr(oldSize + pad);
    if (err != eNoErr)
        return err;
    std::memset(static_cast<char *>(m_ptr) + oldSize, static_cast<unsigned char>(fill),
                static_cast<std::size_t>(pad));
    return eNoErr;
}

void WCStMemObj::DisposePtr() noexcept {
    DisposeWTPtr(m_ptr);
    m_size = 0;
    m_capacity = 0;
}

void WCStMemObj::Forget() noexcept {
    m_ptr = nullptr;
    m_size = 0;
    m_capacity = 0;
}

void WCStMemObj::GiveAway(void *&ptr, std::uint64_t &size) noexcept {
    ptr = m_ptr;
    size = m_size;
    Forget();
}

void WCStMemObj::TakeOver(WCStMemObj &other) noexcept {
    if (&other == this)
        return;
    DisposeWTPtr(m_ptr);
    m_ptr = std::exchange(other.m_ptr, nullptr);
    m_size = std::exchange(other.m_size, 0);
    m_capacity = std::exchange(other.m_capacity, 0);
}

void WCStMemObj::Swap(WCStMemObj &a, WCStMemObj &b) noexcept {
    std::swap(a.m_ptr, b.m_ptr);
    std::swap(a.m_size, b.m_size);
    std::swap(a.m_capacity, b.m_capacity);
}

bool operator==(const WCStMemObj &a, const WCStMemObj &b) noexcept {
    if (a.m_size != b.m_size)
        return false;
    return a.m_size == 0 || std::memcmp(a.m_ptr, b.m_ptr, static_cast<std::size_t>(a.m_size)) == 0;
}

} // namespace Utils

MIREL_NAMESPACE_END
