#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// An owning block of raw bytes: a pointer and a size. The block is released in the destructor;
// copying duplicates the bytes, moving takes the fields and leaves the source empty. A zero-size
// object may hold a null pointer. Blocks come from Utils::NewWTPtr and go back through
// Utils::DisposeWTPtr. [any-thread] on distinct objects; an object is not synchronised.
class WCStConstMemObj {
public:
    WCStConstMemObj() noexcept = default;
    // Copies `size` bytes of `data`; a failed allocation leaves the object empty.
    WCStConstMemObj(const void *data, std::uint64_t size) noexcept;
    WCStConstMemObj(const WCStConstMemObj &other) noexcept;
    WCStConstMemObj(WCStConstMemObj &&other) noexcept;
    // A failed copy leaves this object as it was.
    WCStConstMemObj &operator=(const WCStConstMemObj &other) noexcept;
    WCStConstMemObj &operator=(WCStConstMemObj &&other) noexcept;
    ~WCStConstMemObj();

    const void *GetPtr() const noexcept { return m_ptr; }
    std::uint64_t GetSize() const noexcept { return m_size; }
    bool Empty() const noexcept { return m_size == 0; }
    // One past the last byte; null for an object without a block.
    const void *GetPtrEnd() const noexcept {
        return m_ptr ? static_cast<const char *>(m_ptr) + m_size : nullptr;
    }
    // Fills the whole size with one byte.
    void Memset(char value) noexcept;

    // The difference of the sizes' low 32 bits when they differ, else the comparison of the bytes.
    static int Compare(const WCStConstMemObj &a, const WCStConstMemObj &b) noexcept;

protected:
    void *m_ptr = nullptr;
    std::uint64_t m_size = 0;
};

// A growable byte block: adds a capacity (size <= capacity). Assign, Append and the Reserve and
// Resize family grow to exactly the size needed; AppendAndReserve and InPlaceAppendAndReserve grow
// geometrically, to twice the needed size, for writers that append many small records. Nothing
// ever shrinks the allocation. A failed growth returns the code and leaves size and capacity as
// they were. [any-thread] on distinct objects; an object is not synchronised.
class WCStMemObj : public WCStConstMemObj {
public:
    WCStMemObj() noexcept = default;
    WCStMemObj(const void *data, std::uint64_t size) noexcept;
    WCStMemObj(const WCStMemObj &other) noexcept;
    WCStMemObj(WCStMemObj &&other) noexcept;
    WCStMemObj &operator=(const WCStMemObj &other) noexcept;
    WCStMemObj &operator=(WCStMemObj &&other) noexcept;
    ~WCStMemObj() = default;

    using WCStConstMemObj::GetPtr;
    using WCStConstMemObj::GetPtrEnd;
    void *GetPtr() noexcept { return m_ptr; }
    void *GetPtrEnd() noexcept { return m_ptr ? static_cast<char *>(m_ptr) + m_size : nullptr; }
    std::uint64_t GetCapacity() const noexcept { return m_capacity; }

    // Replaces the content; an empty range or a null source only sets size to zero.
    WTErr Assign(const void *data, std::uint64_t size) noexcept;
    WTErr Append(const void *data, std::uint64_t size) noexcept;
    WTErr AppendAndReserve(const void *data, std::uint64_t size) noexcept;
    // Grows by `count` bytes and returns where they go (their content is undefined), or null
    // when the block cannot grow. A failed doubling is retried for the exact size. Inline while
    // the bytes fit the capacity, since writers call it for every small record they append.
    void *InPlaceAppendAndReserve(std::uint64_t count) noexcept {
        if (count <= m_capacity - m_size) {
            char *place = static_cast<char *>(m_ptr) + m_size;
            m_size += count;
            return place;
        }
        return InPlaceAppendGrowing(count);
    }
    // Capacity at least `capacity`.
    WTErr ReservePtr(std::uint64_t capacity) noexcept;
    // Capacity at least size + `headroom`.
    WTErr ReserveHeadroom(std::uint64_t headroom) noexcept;
    // A smaller size only lowers size; bytes added by a greater size are undefined.
    WTErr ResizePtr(std::uint64_t newSize) noexcept;
    // A delta that would take the size below zero is refused with eOutOfRangeNumber.
    WTErr ResizePtrDelta(std::int64_t delta) noexcept;
    // Pads size up to a multiple of `alignment` with `fill`; alignment 0 or 1 changes nothing.
    WTErr ResizePtrAlign(std::uint64_t alignment, char fill) noexcept;

    // Releases the block and empties the object.
    void DisposePtr() noexcept;
    // Empties the object without releasing the block, which now belongs to someone else.
    void Forget() noexcept;
    // Hands block and size to the caller, who releases it with Utils::DisposeWTPtr.
    void GiveAway(void *&ptr, std::uint64_t &size) noexcept;
    // Releases this block and takes the other's, leaving the other empty.
    void TakeOver(WCStMemObj &other) noexcept;
    static void Swap(WCStMemObj &a, WCStMemObj &b) noexcept;

    // Equal sizes and equal bytes; capacity does not count.
    friend bool operator==(const WCStMemObj &a, const WCStMemObj &b) noexcept;

private:
    // Reallocates to exactly `capacity` bytes (never below the current capacity).
    WTErr GrowTo(std::uint64_t capacity) noexcept;
    // Room for `needed` bytes: exactly that, or twice that when `geometric` and it must grow.
    WTErr GrowFor(std::uint64_t needed, bool geometric) noexcept;
    WTErr AppendBytes(const void *data, std::uint64_t size, bool geometric) noexcept;
    // InPlaceAppendAndReserve when the block has to grow.
    void *InPlaceAppendGrowing(std::uint64_t count) noexcept;

    std::uint64_t m_capacity = 0;
};

} // namespace Utils

MIREL_NAMESPACE_END
