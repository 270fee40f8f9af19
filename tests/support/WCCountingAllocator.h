#pragma once

// The one counting allocator of the "allocates nothing" tests. A test program that links the
// library mirel_counting_allocator (tests/CMakeLists.txt) has the global allocation functions
// replaced by ones that count every call, per thread and over all threads, so a test proves that
// a path allocates nothing. The replacement is process-wide, hence programs of their own.
// Put no failing test macro inside a counted stretch: the framework itself allocates to report.
namespace mirel_test {

// [any-thread] How many allocations the calling thread has made so far.
long AllocationsSoFar();
// [any-thread] How many allocations all threads of the program have made so far.
long AllocationsSoFarAllThreads();

// Counts from its construction on: the allocations made since by the thread that made it, and
// by all threads. [the thread that made it] for OnThisThread.
class WCAllocationCounter {
public:
    WCAllocationCounter() noexcept;
    long OnThisThread() const noexcept;
    long OnAllThreads() const noexcept;

private:
    long m_ThisThread;
    long m_AllThreads;
};

// Runs `work` and answers how many allocations it made on this thread.
template <typename F>
long CountAllocations(F &&work) {
    const WCAllocationCounter counter;
    work();
    return counter.OnThisThread();
}

} // namespace mirel_test
