#pragma once

// A test program that links WCCountingAllocator.cpp replaces the global allocation functions
// with ones that count, per thread, every call the thread makes; so a test proves that a path
// allocates nothing. The replacement is process-wide, hence its own programs.
namespace mirel_test {

// [any-thread] How many allocations the calling thread has made so far.
long AllocationsSoFar();

// Runs `work` and answers how many allocations it made on this thread. Put no failing test
// macro inside: the framework itself allocates to report.
template <typename F>
long CountAllocations(F &&work) {
    const long before = AllocationsSoFar();
    work();
    return AllocationsSoFar() - before;
}

} // namespace mirel_test
