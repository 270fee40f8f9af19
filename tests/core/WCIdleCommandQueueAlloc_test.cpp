// Replaces the global allocation functions of this test program to count what a thread
// allocates, so the queue's promise of allocating only when it chains a block stays true.
#include "core/WCIdleCommandQueue.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "core/MessageData.h"

namespace {
thread_local bool tCounting = false;
thread_local long tAllocations = 0;

void *CountedAlloc(std::size_t size, std::size_t alignment) {
    if (tCounting)
        ++tAllocations;
    if (size == 0)
        size = 1;
    void *p = nullptr;
    if (alignment <= alignof(std::max_align_t))
        p = std::malloc(size);
    else
        p = std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
    return p;
}
} // namespace

void *operator new(std::size_t size) {
    if (void *p = CountedAlloc(size, 0))
        return p;
    throw std::bad_alloc();
}
void *operator new(std::size_t size, std::align_val_t alignment) {
    if (void *p = CountedAlloc(size, static_cast<std::size_t>(alignment)))
        return p;
    throw std::bad_alloc();
}
void *operator new(std::size_t size, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, 0);
}
void *operator new(std::size_t size, std::align_val_t alignment, std::nothrow_t const &) noexcept {
    return CountedAlloc(size, static_cast<std::size_t>(alignment));
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
void operator delete(void *p, std::nothrow_t const &) noexcept {
    std::free(p);
}
void operator delete(void *p, std::align_val_t, std::nothrow_t const &) noexcept {
    std::free(p);
}

namespace {

using namespace MIREL_NAMESPACE_NAME;
using MIREL_NAMESPACE_NAME::miThread::WCIdleCommandQueue;

class WCCountAllocations {
public:
    WCCountAllocations() {
        tAllocations = 0;
        tCounting = true;
    }
    ~WCCountAllocations() { tCounting = false; }
    long Count() const { return tAllocations; }
};

struct WSPlainMessage {
    int value;
    bool execute() { return false; }
};

TEST(WCIdleCommandQueueAllocation, SteadyPushAndPassAllocateNothing) {
    WCIdleCommandQueue<WSPlainMessage, 1024, 1> queue(16);
    ASSERT_EQ(eNoErr, queue.Push(WSPlainMessage{0})); // the first block
    queue.DoIdle();

    WCCountAllocations count;
    for (int round = 0; round < 1000; ++round) {
        for (int i = 0; i < 16; ++i)
            queue.Push(WSPlainMessage{i});
        queue.DoIdle();
    }
    EXPECT_EQ(0, count.Count());
}

TEST(WCIdleCommandQueueAllocation, ChainingABlockIsTheOnlyAllocation) {
    WCIdleCommandQueue<WSPlainMessage, 1024, 1> queue(4);
    WCCountAllocations count;
    for (int i = 0; i < 4; ++i)
        queue.Push(WSPlainMessage{i});
    EXPECT_EQ(1, count.Count()); // the first block, at the first push
    queue.Push(WSPlainMessage{4});
    EXPECT_EQ(2, count.Count());
    for (int i = 5; i < 12; ++i)
        queue.Push(WSPlainMessage{i});
    EXPECT_EQ(2, count.Count());
}

TEST(WCIdleCommandQueueAllocation, MovingAMessageInCopiesNoBuffer) {
    WCIdleCommandQueue<MessageData, 1024, 1> queue;
    queue.Push(MessageData()); // the first block
    queue.DoIdle();

    MessageData message(nullptr, WCFourCC("Data"), nullptr, false);
    char const bytes[64] = {1, 2, 3};
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer(bytes, sizeof(bytes)));
    WCCountAllocations count;
    ASSERT_EQ(eNoErr, queue.Push(std::move(message)));
    EXPECT_EQ(0, count.Count());
    ASSERT_NE(nullptr, queue.Front());
    EXPECT_EQ(2, queue.Front()->GetBuffer()[1]);
    queue.DoIdle();
}

} // namespace
