#include "tests/core/WCCountingAllocator.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {
thread_local long tAllocations = 0;

void *CountedAlloc(std::size_t size, std::size_t alignment) {
    ++tAllocations;
    size = size == 0 ? 1 : size;
    if (alignment <= alignof(std::max_align_t))
        return std::malloc(size);
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}
void *OrThrow(void *p) {
    if (p == nullptr)
        throw std::bad_alloc();
    return p;
}
} // namespace

long mirel_test::AllocationsSoFar() {
    return tAllocations;
}

// The array forms are replaced too: a sanitizer's run-time gives them defaults of its own that
// would bypass the count.
void *operator new(std::size_t size) {
    return OrThrow(CountedAlloc(size, 0));
}
void *operator new[](std::size_t size) {
    return OrThrow(CountedAlloc(size, 0));
}
void *operator new[](std::size_t size, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, 0);
}
void operator delete[](void *p) noexcept {
    std::free(p);
}
void operator delete[](void *p, std::size_t) noexcept {
    std::free(p);
}
void *operator new(std::size_t size, std::align_val_t a) {
    return OrThrow(CountedAlloc(size, static_cast<std::size_t>(a)));
}
void *operator new(std::size_t size, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, 0);
}
void *operator new(std::size_t size, std::align_val_t a, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, static_cast<std::size_t>(a));
}
void operator delete(void *p) noexcept {
    std::free(p);
}
void operator delete(void *p, std::size_t) noexcept {
    std::free(p);
}
void operator delete(void *p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete(void *p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
