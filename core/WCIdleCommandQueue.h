#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "core/MirelNamespace.h"
#include "core/WCNativeThread.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace miThread {

// What an idle loop needs of a queue, whatever it carries.
class WCIdleCommandQueueAbs {
public:
    virtual ~WCIdleCommandQueueAbs() = default;

    // [consumer-thread] One idle pass; returns how many messages were done and removed.
    virtual std::size_t DoIdle() = 0;

    // [consumer-thread] True when no message waits.
    virtual bool IsEmpty() = 0;
};

// Moves messages from one producer thread to one consumer thread, which runs them in its idle
// time. Lock-free: each side writes only its own indexes. The messages live in a ring of chained
// blocks, each with a power-of-two capacity; when the producer fills its block it moves on to the
// next empty block of the ring, or chains a new one (kGrowthShift times bigger, up to
// kMaxBlockCapacity) when all are in use. So pushing allocates only when a block is chained, and
// a queue in steady use allocates nothing.
//
// An idle pass (DoIdle) takes at most kMaxPerIdle messages. For the message at the head it calls
// `execute()`: a false (zero) result destroys the message and goes on; a true (non-zero) result
// leaves it at the head, yields the thread and ends the pass, so it is tried again next time.
// Messages are done in the order they were pushed.
//
// Exactly one thread pushes and exactly one thread consumes at a time (they may be the same);
// `execute` must not start a pass of its own queue.
template <class TMessage, std::size_t kMaxPerIdle = 1024, std::size_t kGrowthShift = 1>
class WCIdleCommandQueue final : public WCIdleCommandQueueAbs {
    static_assert(kMaxPerIdle > 0, "an idle pass must be able to take a message");
    static_assert(kGrowthShift < 8, "blocks grow by at most 256 times");

public:
    // No block is larger than this many messages; past it, new blocks keep this size.
    static constexpr std::size_t kMaxBlockCapacity = std::size_t{1} << 16;

    // [any-thread] The first block holds `initialCapacity` messages rounded up to a power of two;
    // it is made at the first push, so constructing never fails.
    explicit WCIdleCommandQueue(std::size_t initialCapacity = kMaxPerIdle) noexcept
        : m_nextCapacity(RoundCapacity(initialCapacity)) {}

    ~WCIdleCommandQueue() override;
    WCIdleCommandQueue(WCIdleCommandQueue const &) = delete;
    WCIdleCommandQueue &operator=(WCIdleCommandQueue const &) = delete;

    // [producer-thread] Appends a message. eMemOutOfMemory when a block was needed and could not
    // be made (the queue is unchanged). An exception of the message's constructor passes through,
    // leaving the queue unchanged.
    WTErr Push(TMessage const &message) { return Emplace(message); }
    WTErr Push(TMessage &&message) { return Emplace(std::move(message)); }
    template <class... TArgs>
    WTErr Emplace(TArgs &&...args);

    // [consumer-thread] The head message, or null when none waits. It stays valid until Pop.
    TMessage *Front() noexcept;

    // [consumer-thread] Destroys the head message; false when none waits.
    bool Pop() noexcept;

    // [consumer-thread]
    std::size_t DoIdle() override;
    bool IsEmpty() override { return Front() == nullptr; }

    // [any-thread] How many blocks have been chained so far; they stay until the queue goes.
    std::size_t GetBlockCount() const noexcept {
        return m_blockCount.load(std::memory_order_relaxed);
    }

private:
    static constexpr std::size_t kCacheLine = 64;

    struct Block {
        explicit Block(std::size_t capacity, unsigned char *storage) noexcept
            : m_mask(capacity - 1), m_storage(storage) {}

        // Written by the consumer only: the running count of messages taken from this block.
        alignas(kCacheLine) std::atomic<std::size_t> m_front{0};
        std::size_t m_cachedTail = 0; // the consumer's last look at m_tail
        // Written by the producer only: the running count of messages put in this block.
        alignas(kCacheLine) std::atomic<std::size_t> m_tail{0};
        std::size_t m_cachedFront = 0; // the producer's last look at m_front
        // The following block of the ring; changed by the producer while this is its block.
        alignas(kCacheLine) std::atomic<Block *> m_next{nullptr};
        std::size_t const m_mask;
        unsigned char *const m_storage;

        std::size_t Capacity() const noexcept { return m_mask + 1; }
        TMessage *Slot(std::size_t counter) noexcept {
            return std::launder(
                reinterpret_cast<TMessage *>(m_storage + (counter & m_mask) * sizeof(TMessage)));
        }
    };

    static constexpr std::size_t kBlockAlignment = std::max(kCacheLine, alignof(TMessage));
    static constexpr std::size_t kStorageOffset =
        (sizeof(Block) + alignof(TMessage) - 1) / alignof(TMessage) * alignof(TMessage);

    static std::size_t RoundCapacity(std::size_t capacity) noexcept {
        std::size_t rounded = 1;
        while (rounded < capacity && rounded < kMaxBlockCapacity)
            rounded <<= 1;
        return rounded;
    }

    static Block *AllocateBlock(std::size_t capacity) noexcept {
        void *raw = ::operator new(kStorageOffset + capacity * sizeof(TMessage),
                                   std::align_val_t(kBlockAlignment), std::nothrow);
        if (raw == nullptr)
            return nullptr;
        auto *bytes = static_cast<unsigned char *>(raw);
        return ::new (raw) Block(capacity, bytes + kStorageOffset);
    }

    static void FreeBlock(Block *block) noexcept {
        block->~Block();
        ::operator delete(static_cast<void *>(block), std::align_val_t(kBlockAlignment));
    }

    template <class... TArgs>
    WTErr EmplaceSlow(TArgs &&...args);
    template <class... TArgs>
    WTErr ChainBlock(Block *tail, TArgs &&...args);

    // The consumer's block; written by the consumer, except once by the first push.
    alignas(kCacheLine) std::atomic<Block *> m_frontBlock{nullptr};
    // The producer's block; written by the producer only.
    alignas(kCacheLine) std::atomic<Block *> m_tailBlock{nullptr};
    std::size_t m_nextCapacity;
    std::atomic<std::size_t> m_blockCount{0};
};

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::~WCIdleCommandQueue() {
    Block *const first = m_frontBlock.load(std::memory_order_acquire);
    if (first == nullptr)
        return;
    Block *const last = m_tailBlock.load(std::memory_order_acquire);
    for (Block *block = first;; block = block->m_next.load(std::memory_order_acquire)) {
        std::size_t const end = block->m_tail.load(std::memory_order_acquire);
        for (std::size_t i = block->m_front.load(std::memory_order_relaxed); i != end; ++i)
            block->Slot(i)->~TMessage();
        if (block == last)
            break;
    }
    Block *block = first;
    do {
        Block *const next = block->m_next.load(std::memory_order_relaxed);
        FreeBlock(block);
        block = next;
    } while (block != first);
}

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
template <class... TArgs>
inline WTErr WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::Emplace(TArgs &&...args) {
    // The common case, room in the producer's block, stays small enough to inline.
    Block *const tail = m_tailBlock.load(std::memory_order_relaxed);
    if (tail != nullptr) {
        std::size_t const t = tail->m_tail.load(std::memory_order_relaxed);
        if (t - tail->m_cachedFront < tail->Capacity()) {
            ::new (static_cast<void *>(tail->Slot(t))) TMessage(std::forward<TArgs>(args)...);
            tail->m_tail.store(t + 1, std::memory_order_release);
            return eNoErr;
        }
    }
    return EmplaceSlow(std::forward<TArgs>(args)...);
}

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
template <class... TArgs>
WTErr WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::EmplaceSlow(TArgs &&...args) {
    Block *const tail = m_tailBlock.load(std::memory_order_relaxed);
    if (tail == nullptr)
        return ChainBlock(nullptr, std::forward<TArgs>(args)...);

    // The block looked full by our last look at the consumer's index; look again.
    std::size_t const t = tail->m_tail.load(std::memory_order_relaxed);
    tail->m_cachedFront = tail->m_front.load(std::memory_order_acquire);
    if (t - tail->m_cachedFront < tail->Capacity()) {
        ::new (static_cast<void *>(tail->Slot(t))) TMessage(std::forward<TArgs>(args)...);
        tail->m_tail.store(t + 1, std::memory_order_release);
        return eNoErr;
    }

    // The block is full. The next block of the ring is free unless the consumer still reads it:
    // the consumer only moves forward and never past our block, so a stale look at its block can
    // only make us chain a block we did not need, never reuse one that is still being read.
    Block *const next = tail->m_next.load(std::memory_order_relaxed);
    if (next != m_frontBlock.load(std::memory_order_acquire)) {
        std::size_t const nt = next->m_tail.load(std::memory_order_relaxed);
        next->m_cachedFront = next->m_front.load(std::memory_order_acquire);
        ::new (static_cast<void *>(next->Slot(nt))) TMessage(std::forward<TArgs>(args)...);
        next->m_tail.store(nt + 1, std::memory_order_release);
        m_tailBlock.store(next, std::memory_order_release);
        return eNoErr;
    }
    return ChainBlock(tail, std::forward<TArgs>(args)...);
}

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
template <class... TArgs>
WTErr WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::ChainBlock(Block *tail,
                                                                          TArgs &&...args) {
    std::size_t const capacity = m_nextCapacity;
    Block *const block = AllocateBlock(capacity);
    if (block == nullptr)
        return eMemOutOfMemory;
    try {
        ::new (static_cast<void *>(block->Slot(0))) TMessage(std::forward<TArgs>(args)...);
    } catch (...) {
        FreeBlock(block);
        throw;
    }
    block->m_tail.store(1, std::memory_order_relaxed);
    m_nextCapacity = std::min(capacity << kGrowthShift, kMaxBlockCapacity);
    m_blockCount.fetch_add(1, std::memory_order_relaxed);

    if (tail == nullptr) {
        // The first block: a ring of one. The consumer finds it through m_frontBlock, published
        // last so that it sees a complete queue.
        block->m_next.store(block, std::memory_order_relaxed);
        m_tailBlock.store(block, std::memory_order_release);
        m_frontBlock.store(block, std::memory_order_release);
        return eNoErr;
    }
    block->m_next.store(tail->m_next.load(std::memory_order_relaxed), std::memory_order_relaxed);
    tail->m_next.store(block, std::memory_order_release);
    m_tailBlock.store(block, std::memory_order_release);
    return eNoErr;
}

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
TMessage *WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::Front() noexcept {
    for (;;) {
        Block *const front = m_frontBlock.load(std::memory_order_acquire);
        if (front == nullptr)
            return nullptr;
        std::size_t const f = front->m_front.load(std::memory_order_relaxed);
        if (f != front->m_cachedTail)
            return front->Slot(f);
        front->m_cachedTail = front->m_tail.load(std::memory_order_acquire);
        if (f != front->m_cachedTail)
            return front->Slot(f);
        if (m_tailBlock.load(std::memory_order_acquire) == front)
            return nullptr;
        // The producer has left this block; look once more for what it wrote before leaving,
        // then follow it to the next block, which holds at least one message.
        front->m_cachedTail = front->m_tail.load(std::memory_order_acquire);
        if (f != front->m_cachedTail)
            return front->Slot(f);
        m_frontBlock.store(front->m_next.load(std::memory_order_acquire),
                           std::memory_order_release);
    }
}

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
bool WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::Pop() noexcept {
    TMessage *const message = Front();
    if (message == nullptr)
        return false;
    Block *const front = m_frontBlock.load(std::memory_order_relaxed);
    std::size_t const f = front->m_front.load(std::memory_order_relaxed);
    message->~TMessage();
    front->m_front.store(f + 1, std::memory_order_release);
    return true;
}

template <class TMessage, std::size_t kMaxPerIdle, std::size_t kGrowthShift>
std::size_t WCIdleCommandQueue<TMessage, kMaxPerIdle, kGrowthShift>::DoIdle() {
    std::size_t done = 0;
    while (done < kMaxPerIdle) {
        // Front settles on a block with messages; they are then taken as one run, and the
        // consumer's index is published once per run rather than once per message.
        if (Front() == nullptr)
            break;
        Block *const block = m_frontBlock.load(std::memory_order_relaxed);
        std::size_t const first = block->m_front.load(std::memory_order_relaxed);
        std::size_t const run = std::min(block->m_cachedTail - first, kMaxPerIdle - done);
        std::size_t taken = 0;
        bool busy = false;
        try {
            for (; taken < run; ++taken) {
                TMessage *const message = block->Slot(first + taken);
                if (message->execute()) {
                    busy = true;
                    break;
                }
                message->~TMessage();
            }
        } catch (...) {
            // The throwing message stays at the head; those before it are gone.
            block->m_front.store(first + taken, std::memory_order_release);
            throw;
        }
        block->m_front.store(first + taken, std::memory_order_release);
        done += taken;
        if (busy) {
            // Busy: keep the message at the head and let others run before the next pass.
            Native::YieldThread();
            break;
        }
    }
    return done;
}

} // namespace miThread

MIREL_NAMESPACE_END
