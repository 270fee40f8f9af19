#pragma once

#include <cstdint>
#include <cstring>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// Sixteen raw bytes identifying a plug-in or a scan entry, zero until set. Written as Base64 text
// (24 characters). It orders byte by byte. [any-thread]: a plain value.
class WC16BytesID {
public:
    static constexpr std::uint64_t kNumBytes = 16;

    constexpr WC16BytesID() noexcept = default;
    explicit WC16BytesID(const unsigned char (&bytes)[kNumBytes]) noexcept {
        std::memcpy(m_bytes, bytes, kNumBytes);
    }

    const unsigned char *GetBytes() const noexcept { return m_bytes; }
    unsigned char *GetBytes() noexcept { return m_bytes; }

    // True when all sixteen bytes are zero.
    bool IsDefault() const noexcept;
    void clear() noexcept { std::memset(m_bytes, 0, kNumBytes); }

    // The Base64 text of the sixteen bytes.
    WCFixedString<31> Encode() const noexcept;
    // Clears `out` and writes the Base64 text into it.
    void Encode(WCFixedStringBase &out) const noexcept;
    // Zeroes the identifier, then stores at most sixteen decoded bytes, so a short text leaves the
    // tail zero. Text that is not Base64 gives eNotANumber, a null text eMemNullPointer, and
    // either leaves the identifier all zero (IsDefault).
    WTErr Decode(const char *text) noexcept;

    friend bool operator==(const WC16BytesID &a, const WC16BytesID &b) noexcept {
        return std::memcmp(a.m_bytes, b.m_bytes, kNumBytes) == 0;
    }
    friend bool operator<(const WC16BytesID &a, const WC16BytesID &b) noexcept {
        return std::memcmp(a.m_bytes, b.m_bytes, kNumBytes) < 0;
    }

private:
    unsigned char m_bytes[kNumBytes] = {};
};

MIREL_NAMESPACE_END
