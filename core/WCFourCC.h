#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// A four-character code in one 32-bit value, the first character in the most significant byte,
// so "abcd" is 0x61626364. It orders and compares as that integer, converts to it implicitly (so
// codes can be `case` labels), and is a literal type: `constexpr WCFourCC kAlg("AlgX")` or
// `"AlgX"_4cc`. "????" is the in-band value for a code that could not be read.
// [any-thread]: a plain value.
class WCFourCC {
public:
    static constexpr std::uint32_t kUnreadableValue = 0x3F3F3F3Fu;

    constexpr WCFourCC() noexcept = default;
    constexpr explicit WCFourCC(std::uint32_t value) noexcept : m_value(value) {}
    // From a four-character literal; a literal of another length does not compile.
    template <std::size_t L>
    consteval WCFourCC(const char (&text)[L]) noexcept
        : m_value(Pack(text[0], text[1], text[2], text[3])) {
        static_assert(L == 5, "a four-character code is built from exactly four characters");
    }
    constexpr WCFourCC(char c0, char c1, char c2, char c3) noexcept
        : m_value(Pack(c0, c1, c2, c3)) {}

    constexpr operator std::uint32_t() const noexcept { return m_value; }
    constexpr std::uint32_t GetValue() const noexcept { return m_value; }
    constexpr void SetValue(std::uint32_t value) noexcept { m_value = value; }

    // Index 0 is the first character (the top byte); indexes past 3 read as 0 and write nothing.
    constexpr char GetChar(unsigned int index) const noexcept {
        return index < 4 ? static_cast<char>((m_value >> (8 * (3 - index))) & 0xFFu) : '\0';
    }
    constexpr void SetChar(unsigned int index, char ch) noexcept {
        if (index < 4) {
            const unsigned shift = 8 * (3 - index);
            m_value = (m_value & ~(0xFFu << shift)) |
                      (static_cast<std::uint32_t>(static_cast<unsigned char>(ch)) << shift);
        }
    }

    constexpr bool IsUnreadable() const noexcept { return m_value == kUnreadableValue; }
    static constexpr WCFourCC Unreadable() noexcept { return WCFourCC(kUnreadableValue); }

    // The four characters, first to last, cut at the first zero byte.
    WCFixedString<4> GetString() const noexcept;

    // The text rule of every reader of codes: skip a leading run of tab, space, double and single
    // quote, then take up to four characters; exactly four make the code, anything shorter (or a
    // null text) is "????". Text after the fourth character is ignored.
    static WCFourCC FromText(const char *text) noexcept;

    friend constexpr bool operator==(const WCFourCC &, const WCFourCC &) noexcept = default;
    friend constexpr std::strong_ordering operator<=>(const WCFourCC &,
                                                      const WCFourCC &) noexcept = default;

private:
    static constexpr std::uint32_t Pack(char c0, char c1, char c2, char c3) noexcept {
        return (static_cast<std::uint32_t>(static_cast<unsigned char>(c0)) << 24) |
               (static_cast<std::uint32_t>(static_cast<unsigned char>(c1)) << 16) |
               (static_cast<std::uint32_t>(static_cast<unsigned char>(c2)) << 8) |
               static_cast<std::uint32_t>(static_cast<unsigned char>(c3));
    }

    std::uint32_t m_value = 0;
};

namespace detail {
// Only reached in constant evaluation of a literal of the wrong length, which makes it an error.
inline void FourCCLiteralNeedsFourCharacters() {}
} // namespace detail

consteval WCFourCC operator""_4cc(const char *text, std::size_t length) {
    if (length != 4)
        detail::FourCCLiteralNeedsFourCharacters();
    return WCFourCC(text[0], text[1], text[2], text[3]);
}

// Steps every character of the code `offset` times through the ring '0'-'9', 'A'-'Z', 'a'-'z'
// (a negative offset steps back), starting with the first character.
WCFourCC OffsetOSTypeAlphanumerically(WCFourCC code, int offset) noexcept;
// Steps only the character at `index` (0 is the first); an index past 3 leaves the code alone.
WCFourCC OffsetOSTypeAlphanumerically(WCFourCC code, unsigned int index, int offset) noexcept;

MIREL_NAMESPACE_END

template <>
struct std::hash<MIREL_NAMESPACE_NAME::WCFourCC> {
    std::size_t operator()(MIREL_NAMESPACE_NAME::WCFourCC code) const noexcept {
        return std::hash<std::uint32_t>()(code.GetValue());
    }
};
