#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace mirel_lv2 {

// A bounded single-producer single-consumer ring of trivially copyable items. Push and Pop
// neither allocate nor lock, so an audio thread may be either end. Several threads may take
// turns as the producer (or as the consumer) when something else orders their turns, such as a
// mutex they all hold while pushing.
template <typename T, std::size_t N>
class WTSpscRing {
    static_assert(N > 0 && (N & (N - 1)) == 0, "the capacity is a power of two");

public:
    // False when the ring is full; the item is not taken.
    bool Push(T const &item) {
        const std::size_t tail = m_Tail.load(std::memory_order_relaxed);
        if (tail - m_Head.load(std::memory_order_acquire) == N)
            return false;
        m_Items[tail & (N - 1)] = item;
        m_Tail.store(tail + 1, std::memory_order_release);
        return true;
    }
    // False when the ring is empty; `item` is left as it was.
    bool Pop(T &item) {
        const std::size_t head = m_Head.load(std::memory_order_relaxed);
        if (head == m_Tail.load(std::memory_order_acquire))
            return false;
        item = m_Items[head & (N - 1)];
        m_Head.store(head + 1, std::memory_order_release);
        return true;
    }
    static constexpr std::size_t Capacity() { return N; }

private:
    std::array<T, N> m_Items{};
    // Apart, so that the two ends do not share a cache line.
    alignas(64) std::atomic<std::size_t> m_Head{0};
    alignas(64) std::atomic<std::size_t> m_Tail{0};
};

} // namespace mirel_lv2
