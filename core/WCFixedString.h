#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class WCFourCC;

// Carries a double and the precision it is to be printed at: `str << PDoubleWithPrecision(v, 3)`.
struct PDoubleWithPrecision {
    constexpr PDoubleWithPrecision(double value, int precision) noexcept
        : m_value(value), m_precision(precision) {}
    double m_value;
    int m_precision;
};

// A string over storage it does not own, that never allocates and never fails: every write that
// does not fit is cut silently at `capacity` characters (a UTF-8 character the cut would split goes
// whole), and the text is always zero-terminated.
// The storage pointer is fixed for the life of the object; `WCFixedString<N>` supplies it inline.
// The only operation that allocates is `replace(char, char const *)`, which works on a heap copy.
// Invariant: data() <= end() <= data() + capacity(), and *end() == 0.
// [any-thread] on distinct objects; an object is not synchronised.
class WCFixedStringBase {
public:
    // The position every search answers when it finds nothing.
    static constexpr std::uint64_t npos = ~std::uint64_t(0);

    // Builds an empty string over `storage`, which must hold capacity + 1 bytes.
    WCFixedStringBase(char *const storage, std::uint64_t capacity) noexcept;
    // The base does not own its characters, so copying one would share them; only
    // WCFixedString<N> copies, into its own array.
    WCFixedStringBase(const WCFixedStringBase &) = delete;

    // Assigning: each empties the string, then appends. A null pointer leaves it empty.
    WCFixedStringBase &operator=(char ch) noexcept;
    WCFixedStringBase &operator=(const char *text) noexcept;
    WCFixedStringBase &operator=(const WCFixedStringBase &other) noexcept;
    WCFixedStringBase &operator=(std::string_view text) noexcept;
    WCFixedStringBase &assign(const char *text) noexcept;
    WCFixedStringBase &assign(const char *first, const char *last) noexcept;
    WCFixedStringBase &assign(const char *text, std::uint64_t count) noexcept;

    // Appending, under the truncation rule.
    WCFixedStringBase &operator<<(const WCFixedStringBase &other) noexcept;
    WCFixedStringBase &operator<<(char ch) noexcept {
        put(ch);
        return *this;
    }
    WCFixedStringBase &operator<<(short value) noexcept;
    WCFixedStringBase &operator<<(int value) noexcept;
    WCFixedStringBase &operator<<(unsigned int value) noexcept;
    WCFixedStringBase &operator<<(long value) noexcept;
    WCFixedStringBase &operator<<(unsigned long value) noexcept;
    WCFixedStringBase &operator<<(long long value) noexcept;
    WCFixedStringBase &operator<<(unsigned long long value) noexcept;
    WCFixedStringBase &operator<<(float value) noexcept;
    WCFixedStringBase &operator<<(double value) noexcept;
    WCFixedStringBase &operator<<(bool value) noexcept;
    WCFixedStringBase &operator<<(const char *const text) noexcept;
    WCFixedStringBase &operator<<(std::string_view text) noexcept;

    WCFixedStringBase &append(const char *text) noexcept;
    WCFixedStringBase &append(const char *first, const char *last) noexcept;
    WCFixedStringBase &append(const char *text, std::uint64_t count) noexcept;
    WCFixedStringBase &append(char ch, std::uint64_t count) noexcept;
    // Digits '0'-'9' then 'A'-'Z'; radix 2 to 36. Written low digit first, so a number that does
    // not fit keeps its low-order digits.
    WCFixedStringBase &append_uint(std::uint64_t value, int radix = 10) noexcept;
    // Precision -1 prints "%.20g", any other "%.*f"; the text is cut at 31 characters.
    WCFixedStringBase &append_double_with_precision(double value, int precision) noexcept;
    // Two upper-case hex digits per byte, from the last byte to the first.
    WCFixedStringBase &append_hex_binary(const unsigned char *bytes, std::uint64_t count) noexcept;
    // Characters from [0-9A-Za-z] picked by the C library's unseeded generator.
    WCFixedStringBase &append_random_chars(std::uint64_t count) noexcept;

    // Reading numbers from the start of the text, radix 10; trailing text is ignored and nothing
    // reports a failure.
    const WCFixedStringBase &operator>>(int &value) const noexcept;
    const WCFixedStringBase &operator>>(unsigned int &value) const noexcept;
    const WCFixedStringBase &operator>>(long &value) const noexcept;
    const WCFixedStringBase &operator>>(unsigned long &value) const noexcept;
    const WCFixedStringBase &operator>>(long long &value) const noexcept;
    const WCFixedStringBase &operator>>(unsigned long long &value) const noexcept;
    const WCFixedStringBase &operator>>(float &value) const noexcept;
    const WCFixedStringBase &operator>>(double &value) const noexcept;
    // "yes", "true", "1" and "no", "false", "0" in any case; other text leaves `value` alone.
    const WCFixedStringBase &operator>>(bool &value) const noexcept;

    // An index at or past capacity addresses the byte at capacity, never beyond the array.
    char &operator[](std::uint64_t index) noexcept {
        return m_begin[index < m_capacity ? index : m_capacity];
    }
    const char &operator[](std::uint64_t index) const noexcept {
        return m_begin[index < m_capacity ? index : m_capacity];
    }

    explicit operator bool() const noexcept { return m_end != m_begin; }
    bool empty() const noexcept { return m_end == m_begin; }
    std::uint64_t size() const noexcept { return static_cast<std::uint64_t>(m_end - m_begin); }
    std::uint64_t capacity() const noexcept { return m_capacity; }
    char *data() noexcept { return m_begin; }
    const char *data() const noexcept { return m_begin; }
    const char *c_str() const noexcept { return m_begin; }
    char *begin() noexcept { return m_begin; }
    const char *begin() const noexcept { return m_begin; }
    char *end() noexcept { return m_end; }
    const char *end() const noexcept { return m_end; }
    std::string_view view() const noexcept { return {m_begin, size()}; }

    // Byte-wise as unsigned: -1, 0 or 1. Null compares lower than any string.
    int compare(const char *text) const noexcept;
    int compare(const WCFixedStringBase &other) const noexcept;
    int case_insensitive_compare(const char *text) const noexcept;
    // True for an empty or null argument, unlike find.
    bool begins_with(const char *prefix) const noexcept;
    bool ends_with(const char *suffix) const noexcept;

    // Searches answer npos for an empty needle and for a position at or past the end.
    std::uint64_t find(const char *needle, std::uint64_t position = 0) const noexcept;
    std::uint64_t find(char ch, std::uint64_t position = 0) const noexcept;
    std::uint64_t find_case_insensitive(const char *needle,
                                        std::uint64_t position = 0) const noexcept;
    std::uint64_t rfind(const char *needle) const noexcept;
    std::uint64_t rfind(char ch) const noexcept;
    std::uint64_t find_first_of(const char *set, std::uint64_t position = 0) const noexcept;
    std::uint64_t find_first_not_of(const char *set, std::uint64_t position = 0) const noexcept;
    // Search backwards from the end down to `position`.
    std::uint64_t find_last_of(const char *set, std::uint64_t position = 0) const noexcept;
    std::uint64_t find_last_not_of(const char *set, std::uint64_t position = 0) const noexcept;

    // Copies at most size - 1 characters and a zero; nothing when size is 0 or buffer null.
    void copy_to_buffer(std::uint64_t size, char *buffer) const noexcept;

    void clear() noexcept;
    // A negative position counts from the end; count is clamped to what remains.
    void erase(std::int64_t position, std::uint64_t count) noexcept;
    void erase_all_of(const char *set) noexcept;
    void erase_all_not_of(const char *set) noexcept;
    std::uint64_t replace(char what, char with) noexcept;
    // Expands each match; returns the number of matches, whether or not the expansion fitted.
    // A null replacement removes the matches. The one operation of the class that allocates.
    std::uint64_t replace(char what, const char *with);
    // Replaces every character found in `set`.
    std::uint64_t replace(const char *set, char with) noexcept;
    // Moves end to min(n, capacity) without filling the gap.
    void resize(std::uint64_t n) noexcept;
    // Moves end to the first zero within capacity; used after writing into data() directly.
    void reposition_end() noexcept;
    void reverse() noexcept;
    static void reverse(char *first, char *last) noexcept;
    void to_lower() noexcept;
    void to_upper() noexcept;

    // Public, so a string can be built over a caller's own buffer: WCFixedStringBase s(buf, 63).
    ~WCFixedStringBase() = default;

private:
    void put(char ch) noexcept {
        if (m_end < m_begin + m_capacity)
            *m_end++ = ch;
        *m_end = 0;
    }
    void append_signed(std::int64_t value) noexcept;

    char *const m_begin;
    std::uint64_t m_capacity;
    char *m_end;
};

WCFixedStringBase &operator<<(WCFixedStringBase &str, const WCFourCC &code) noexcept;
WCFixedStringBase &operator<<(WCFixedStringBase &str, const PDoubleWithPrecision &value) noexcept;

bool operator==(const WCFixedStringBase &a, const WCFixedStringBase &b) noexcept;
bool operator==(const WCFixedStringBase &a, const char *b) noexcept;
bool operator<(const WCFixedStringBase &a, const WCFixedStringBase &b) noexcept;
bool operator<(const WCFixedStringBase &a, const char *b) noexcept;

// A fixed string with its N + 1 bytes inline. Every constructor clears the whole array first;
// a copy never shares storage. Commonly <63> for names, <127> for parameter texts, <1023> for
// paths and messages.
template <std::uint64_t N>
class WCFixedString : public WCFixedStringBase {
public:
    WCFixedString() noexcept : WCFixedStringBase(m_buffer, N) { clear_all(); }
    // Concatenates the two texts; either may be null.
    WCFixedString(const char *const first, const char *const second = nullptr) noexcept
        : WCFixedStringBase(m_buffer, N) {
        clear_all();
        append(first);
        append(second);
    }
    WCFixedString(const WCFixedString &first, const char *const second) noexcept
        : WCFixedStringBase(m_buffer, N) {
        clear_all();
        append(first.data(), first.size());
        append(second);
    }
    WCFixedString(const char *text, std::uint64_t count) noexcept : WCFixedStringBase(m_buffer, N) {
        clear_all();
        append(text, count);
    }
    WCFixedString(std::string_view text) noexcept : WCFixedStringBase(m_buffer, N) {
        clear_all();
        append(text.data(), text.size());
    }
    WCFixedString(const WCFixedString &other) noexcept : WCFixedStringBase(m_buffer, N) {
        clear_all();
        append(other.data(), other.size());
    }
    WCFixedString(const WCFixedStringBase &other) noexcept : WCFixedStringBase(m_buffer, N) {
        clear_all();
        append(other.data(), other.size());
    }

    using WCFixedStringBase::operator=;
    WCFixedString &operator=(const WCFixedString &other) noexcept {
        WCFixedStringBase::operator=(other);
        return *this;
    }

    // position is clamped to size; a negative count drops that many characters from the tail.
    WCFixedString substr(std::uint64_t position, std::int64_t count = INT64_MAX) const noexcept {
        const std::uint64_t sz = size();
        if (position > sz)
            position = sz;
        const std::uint64_t remains = sz - position;
        std::uint64_t length;
        if (count >= 0) {
            length = static_cast<std::uint64_t>(count) < remains ? static_cast<std::uint64_t>(count)
                                                                 : remains;
        } else {
            // Negated in unsigned arithmetic so the smallest count is safe.
            const std::uint64_t drop = 0 - static_cast<std::uint64_t>(count);
            length = drop < remains ? remains - drop : 0;
        }
        return WCFixedString(data() + position, length);
    }

private:
    void clear_all() noexcept { std::memset(m_buffer, 0, N + 1); }

    char m_buffer[N + 1];
};

// A named pair of fixed strings, as used for descriptors and attribute lists.
template <std::uint64_t N1, std::uint64_t N2>
struct WCFixedStringPair {
    WCFixedStringPair() = default;
    WCFixedStringPair(const char *first_, const char *second_) : first(first_), second(second_) {}
    WCFixedString<N1> first;
    WCFixedString<N2> second;
};

MIREL_NAMESPACE_END

// Fixed strings hash by their text, so they can key unordered containers.
template <std::uint64_t N>
struct std::hash<MIREL_NAMESPACE_NAME::WCFixedString<N>> {
    std::size_t operator()(const MIREL_NAMESPACE_NAME::WCFixedString<N> &s) const noexcept {
        return std::hash<std::string_view>()(s.view());
    }
};
