// Replaces every form of the global allocation functions: plain, array, nothrow and aligned news,
// and the matching deletes (sized and not). The array and nothrow forms are replaced too: a
// sanitizer's run-time gives them defaults of its own that would bypass the count, and whatever
// one form allocates its matching form frees. Each pair is malloc (or aligned_alloc) and free.
#include "tests/support/WCCountingAllocator.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local long tAllocations = 0;
std::atomic<long> gAllocations{0};

void *CountedAlloc(std::size_t size, std::size_t alignment) noexcept {
    ++tAllocations;
    gAllocations.fetch_add(1, std::memory_order_relaxed);
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

std::size_t Alignment(std::align_val_t alignment) {
    return static_cast<std::size_t>(alignment);
}

} // namespace

namespace mirel_test {

long AllocationsSoFar() {
    return tAllocations;
}

long AllocationsSoFarAllThreads() {
    return gAllocations.load(std::memory_order_relaxed);
}

WCAllocationCounter::WCAllocationCounter() noexcept
    : m_ThisThread(AllocationsSoFar()), m_AllThreads(AllocationsSoFarAllThreads()) {}

long WCAllocationCounter::OnThisThread() const noexcept {
    return AllocationsSoFar() - m_ThisThread;
}

long WCAllocationCounter::OnAllThreads() const noexcept {
    return AllocationsSoFarAllThreads() - m_AllThreads;
}

} // namespace mirel_test

void *operator new(std::size_t size) {
    return OrThrow(CountedAlloc(size, 0));
}
void *operator new[](std::size_t size) {
    return OrThrow(CountedAlloc(size, 0));
}
void *operator new(std::size_t size, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, 0);
}
void *operator new[](std::size_t size, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, 0);
}
void *operator new(std::size_t size, std::align_val_t a) {
    return OrThrow(CountedAlloc(size, Alignment(a)));
}
void *operator new[](std::size_t size, std::align_val_t a) {
    return OrThrow(CountedAlloc(size, Alignment(a)));
}
void *operator new(std::size_t size, std::align_val_t a, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, Alignment(a));
}
void *operator new[](std::size_t size, std::align_val_t a, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, Alignment(a));
}

void operator delete(void *p) noexcept {
    std::free(p);
}
void operator delete[](void *p) noexcept {
    std::free(p);
}
void operator delete(void *p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void *p, std::size_t) noexcept {
    std::free(p);
}
void operator delete(void *p, std::nothrow_t const &) noexcept {
    std::free(p);
}
void operator delete[](void *p, std::nothrow_t const &) noexcept {
    std::free(p);
}
void operator delete(void *p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete[](void *p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete(void *p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete[](void *p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete(void *p, std::align_val_t, std::nothrow_t const &) noexcept {
    std::free(p);
}
void operator delete[](void *p, std::align_val_t, std::nothrow_t const &) noexcept {
    std::free(p);
}
