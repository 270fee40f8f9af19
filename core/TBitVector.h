#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A set of flag bits in one unsigned integer, passed by value: parameter flags, registration
// types, reject reasons. Bit i is the value 1 << i; a bit number past the width reads as clear and
// is ignored when written. Used with unsigned 32- and 64-bit integers.
// [any-thread]: a plain value.
template <typename T>
class TBitVector {
    static_assert(std::is_unsigned_v<T>, "TBitVector stores its bits in an unsigned integer");

public:
    static constexpr unsigned int kNumBits = sizeof(T) * 8;

    constexpr TBitVector() noexcept = default;
    constexpr explicit TBitVector(T bits) noexcept : m_bits(bits) {}

    constexpr T GetBits() const noexcept { return m_bits; }
    constexpr void SetBits(T bits) noexcept { m_bits = bits; }

    constexpr bool IsBitSet(unsigned int bit) const noexcept {
        return bit < kNumBits && (m_bits & Mask(bit)) != 0;
    }
    constexpr void SetBit(unsigned int bit, bool value = true) noexcept {
        if (bit >= kNumBits)
            return;
        m_bits = value ? (m_bits | Mask(bit)) : (m_bits & static_cast<T>(~Mask(bit)));
    }
    constexpr void ClearBit(unsigned int bit) noexcept { SetBit(bit, false); }
    constexpr void ToggleBit(unsigned int bit) noexcept {
        if (bit < kNumBits)
            m_bits ^= Mask(bit);
    }
    constexpr void Clear() noexcept { m_bits = 0; }
    constexpr bool IsEmpty() const noexcept { return m_bits == 0; }
    constexpr bool Any() const noexcept { return m_bits != 0; }
    constexpr unsigned int Count() const noexcept {
        return static_cast<unsigned int>(std::popcount(m_bits));
    }
    // True when every bit of `mask` is set.
    constexpr bool HasAll(TBitVector mask) const noexcept {
        return (m_bits & mask.m_bits) == mask.m_bits;
    }
    // True when at least one bit of `mask` is set.
    constexpr bool HasAny(TBitVector mask) const noexcept { return (m_bits & mask.m_bits) != 0; }

    constexpr TBitVector operator|(TBitVector o) const noexcept {
        return TBitVector(static_cast<T>(m_bits | o.m_bits));
    }
    constexpr TBitVector operator&(TBitVector o) const noexcept {
        return TBitVector(static_cast<T>(m_bits & o.m_bits));
    }
    constexpr TBitVector operator^(TBitVector o) const noexcept {
        return TBitVector(static_cast<T>(m_bits ^ o.m_bits));
    }
    constexpr TBitVector operator~() const noexcept { return TBitVector(static_cast<T>(~m_bits)); }
    constexpr TBitVector &operator|=(TBitVector o) noexcept {
        m_bits |= o.m_bits;
        return *this;
    }
    constexpr TBitVector &operator&=(TBitVector o) noexcept {
        m_bits &= o.m_bits;
        return *this;
    }
    constexpr TBitVector &operator^=(TBitVector o) noexcept {
        m_bits ^= o.m_bits;
        return *this;
    }
    constexpr bool operator==(const TBitVector &) const noexcept = default;

    // The value with only `bit` set, or 0 for a bit past the width.
    static constexpr TBitVector FromBit(unsigned int bit) noexcept {
        TBitVector v;
        v.SetBit(bit);
        return v;
    }

private:
    static constexpr T Mask(unsigned int bit) noexcept { return static_cast<T>(T(1) << bit); }

    T m_bits = 0;
};

MIREL_NAMESPACE_END
