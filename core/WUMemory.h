#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// The raw block functions under the memory objects. Blocks come from the process heap (malloc and
// free), so a block handed across a module boundary can be released by either side.
// [any-thread]

// A block of `size` bytes, or null when size is 0 or the heap is exhausted.
void *NewWTPtr(std::uint64_t size) noexcept;
// As NewWTPtr, with the bytes zeroed.
void *NewWTPtrClear(std::uint64_t size) noexcept;
// Allocates when `ptr` is null, reallocates otherwise; size 0 releases the block and nulls ptr.
// On failure ptr is left as it was and the system's error is returned as a table code.
WTErr ResizeWTPtr(void *&ptr, std::uint64_t newSize) noexcept;
// Frees a non-null block and nulls the caller's pointer.
void DisposeWTPtr(void *&ptr) noexcept;
template <typename T>
void DisposeWTPtr(T *&ptr) noexcept {
    void *raw = const_cast<void *>(static_cast<const void *>(ptr));
    DisposeWTPtr(raw);
    ptr = nullptr;
}
// Sets destination to null, then, when both size and source are non-zero, to a zeroed block with
// a copy of the source. Returns eNoErr in every case; a failed allocation shows as a null result.
WTErr DuplicateWTPtr(const void *source, std::uint64_t size, void *&destination) noexcept;

} // namespace Utils

MIREL_NAMESPACE_END
