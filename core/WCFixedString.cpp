#include "core/WCFixedString.h"

#include <charconv>
#include <climits>
#include <cstdlib>
#include <new>
#include <strings.h>

#include "core/WCFourCC.h"
#include "core/linux/WUCLocaleNumbers.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr char kRandomChars[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr char kHexDigits[] = "0123456789ABCDEF";

// ASCII-only folding: the library's texts (names, keys, XML words) are compared the same way
// whatever locale the host has set.
inline char AsciiLower(char ch) noexcept {
    return (ch >= 'A' && ch <= 'Z') ? static_cast<char>(ch - 'A' + 'a') : ch;
}
inline char AsciiUpper(char ch) noexcept {
    return (ch >= 'a' && ch <= 'z') ? static_cast<char>(ch - 'a' + 'A') : ch;
}

inline bool InSet(const char *set, char ch) noexcept {
    return ch != '\0' && std::strchr(set, ch) != nullptr;
}

// Bounded strlen that never reads past `limit` bytes.
inline std::uint64_t BoundedLength(const char *text, std::uint64_t limit) noexcept {
    const void *zero = std::memchr(text, 0, static_cast<std::size_t>(limit));
    return zero ? static_cast<std::uint64_t>(static_cast<const char *>(zero) - text) : limit;
}

// The needle's length, or npos when it is empty or cannot fit between `position` and `size`.
inline std::uint64_t FittingNeedleLength(const char *needle, std::uint64_t position,
                                         std::uint64_t size) noexcept {
    if (needle == nullptr || *needle == '\0')
        return WCFixedStringBase::npos;
    const std::uint64_t n = std::strlen(needle);
    if (n > size || position >= size || size - position < n)
        return WCFixedStringBase::npos;
    return n;
}

// A cut at the capacity may fall inside a UTF-8 character: its lead byte and the continuation
// bytes before the cut go too, so that a cut text stays valid text.
char *DropPartialCharacter(char *begin, char *end) noexcept {
    char *p = end;
    int continuations = 0;
    while (p > begin && continuations < 3 && (static_cast<unsigned char>(p[-1]) & 0xC0u) == 0x80u) {
        --p;
        ++continuations;
    }
    if (p == begin)
        return end;
    const auto lead = static_cast<unsigned char>(p[-1]);
    if (lead < 0xC0u)
        return end;
    const int length = lead >= 0xF0u ? 4 : lead >= 0xE0u ? 3 : 2;
    return continuations + 1 < length ? p - 1 : end;
}

} // namespace

WCFixedStringBase::WCFixedStringBase(char *const storage, std::uint64_t capacity) noexcept
    : m_begin(storage), m_capacity(capacity), m_end(storage) {
    *m_end = 0;
}

// ---- assigning ----

WCFixedStringBase &WCFixedStringBase::operator=(char ch) noexcept {
    clear();
    put(ch);
    return *this;
}

WCFixedStringBase &WCFixedStringBase::operator=(const char *text) noexcept {
    return assign(text);
}

WCFixedStringBase &WCFixedStringBase::operator=(const WCFixedStringBase &other) noexcept {
    if (&other != this)
        assign(other.data(), other.size());
    return *this;
}

WCFixedStringBase &WCFixedStringBase::operator=(std::string_view text) noexcept {
    return assign(text.data(), text.size());
}

WCFixedStringBase &WCFixedStringBase::assign(const char *text) noexcept {
    return assign(text, npos);
}

WCFixedStringBase &WCFixedStringBase::assign(const char *first, const char *last) noexcept {
    if (first == nullptr || last == nullptr || last < first) {
        clear();
        return *this;
    }
    return assign(first, static_cast<std::uint64_t>(last - first));
}

WCFixedStringBase &WCFixedStringBase::assign(const char *text, std::uint64_t count) noexcept {
    if (text == nullptr || count == 0) {
        clear();
        return *this;
    }
    // Measured and moved before the old text goes, so a source inside this string survives.
    const std::uint64_t n = BoundedLength(text, count < m_capacity ? count : m_capacity);
    const bool cut = n == m_capacity && count > n && text[n] != '\0';
    std::memmove(m_begin, text, static_cast<std::size_t>(n));
    m_end = m_begin + n;
    if (cut)
        m_end = DropPartialCharacter(m_begin, m_end);
    *m_end = 0;
    return *this;
}

// ---- appending ----

WCFixedStringBase &WCFixedStringBase::append(const char *text) noexcept {
    if (text == nullptr)
        return *this;
    // Text inside this string would be overwritten while being read: measure it first.
    if (text >= m_begin && text <= m_begin + m_capacity)
        return append(text, npos);
    // Short texts are the common case; one pass copies and finds the end together.
    char *const limit = m_begin + m_capacity;
    char *out = m_end;
    while (out < limit && *text != '\0')
        *out++ = *text++;
    m_end = *text != '\0' ? DropPartialCharacter(m_begin, out) : out;
    *m_end = 0;
    return *this;
}

WCFixedStringBase &WCFixedStringBase::append(const char *first, const char *last) noexcept {
    if (first == nullptr || last == nullptr || last <= first)
        return *this;
    return append(first, static_cast<std::uint64_t>(last - first));
}

WCFixedStringBase &WCFixedStringBase::append(const char *text, std::uint64_t count) noexcept {
    if (text == nullptr || count == 0)
        return *this;
    const std::uint64_t room = m_capacity - size();
    const std::uint64_t n = BoundedLength(text, count < room ? count : room);
    const bool cut = n == room && count > n && text[n] != '\0';
    std::memmove(m_end, text, static_cast<std::size_t>(n));
    m_end += n;
    if (cut)
        m_end = DropPartialCharacter(m_begin, m_end);
    *m_end = 0;
    return *this;
}

WCFixedStringBase &WCFixedStringBase::append(char ch, std::uint64_t count) noexcept {
    const std::uint64_t room = m_capacity - size();
    const std::uint64_t n = count < room ? count : room;
    std::memset(m_end, static_cast<unsigned char>(ch), static_cast<std::size_t>(n));
    m_end += n;
    *m_end = 0;
    return *this;
}

WCFixedStringBase &WCFixedStringBase::append_uint(std::uint64_t value, int radix) noexcept {
    if (radix < 2 || radix > 36)
        radix = 10;
    // Digits are produced least significant first, so when the room runs out the number keeps
    // its low-order digits; the kept part is then written in reading order.
    char digits[64];
    unsigned count = 0;
    if (radix == 10) {
        // Two digits per division, from a table; a constant divisor becomes a multiplication.
        static constexpr char kPairs[] = "00010203040506070809101112131415161718192021222324"
                                         "25262728293031323334353637383940414243444546474849"
                                         "50515253545556575859606162636465666768697071727374"
                                         "75767778798081828384858687888990919293949596979899";
        while (value >= 100) {
            const unsigned pair = static_cast<unsigned>(value % 100) * 2;
            value /= 100;
            digits[count++] = kPairs[pair + 1];
            digits[count++] = kPairs[pair];
        }
        if (value >= 10) {
            const unsigned pair = static_cast<unsigned>(value) * 2;
            digits[count++] = kPairs[pair + 1];
            digits[count++] = kPairs[pair];
        } else {
            digits[count++] = static_cast<char>('0' + value);
        }
    } else {
        const std::uint64_t r = static_cast<std::uint64_t>(radix);
        do {
            const unsigned digit = static_cast<unsigned>(value % r);
            digits[count++] = static_cast<char>(digit < 10 ? '0' + digit : 'A' + digit - 10);
            value /= r;
        } while (value != 0);
    }
    const std::uint64_t room = m_capacity - size();
    const unsigned kept = count < room ? count : static_cast<unsigned>(room);
    for (unsigned i = 0; i < kept; ++i)
        m_end[i] = digits[kept - 1 - i];
    m_end += kept;
    *m_end = 0;
    return *this;
}

void WCFixedStringBase::append_signed(std::int64_t value) noexcept {
    // The magnitude is taken in unsigned arithmetic so the smallest value prints correctly.
    std::uint64_t magnitude = static_cast<std::uint64_t>(value);
    if (value < 0) {
        put('-');
        magnitude = 0 - magnitude;
    }
    append_uint(magnitude, 10);
}

WCFixedStringBase &WCFixedStringBase::append_double_with_precision(double value,
                                                                   int precision) noexcept {
    // At most 31 characters of the number are kept, as with a 32-byte snprintf buffer.
    constexpr std::size_t kBufferSize = 32;
    char buffer[kBufferSize];
    std::to_chars_result result;
    if (precision == -1)
        result =
            std::to_chars(buffer, buffer + kBufferSize - 1, value, std::chars_format::general, 20);
    else if (precision >= 0)
        result = std::to_chars(buffer, buffer + kBufferSize - 1, value, std::chars_format::fixed,
                               precision);
    else
        result =
            std::to_chars(buffer, buffer + kBufferSize - 1, value, std::chars_format::fixed, 6);
    if (result.ec == std::errc()) {
        *result.ptr = 0;
    } else {
        // Longer than 31 characters: let snprintf cut it, as the short form would have been.
        if (precision == -1)
            Utils::CLocaleFormatDouble(buffer, kBufferSize, "%.*g", 20, value);
        else
            Utils::CLocaleFormatDouble(buffer, kBufferSize, "%.*f", precision, value);
    }
    return append(buffer);
}

WCFixedStringBase &WCFixedStringBase::append_hex_binary(const unsigned char *bytes,
                                                        std::uint64_t count) noexcept {
    if (bytes == nullptr)
        return *this;
    for (std::uint64_t i = count; i > 0; --i) {
        const unsigned char b = bytes[i - 1];
        put(kHexDigits[b >> 4]);
        put(kHexDigits[b & 0x0F]);
    }
    return *this;
}

WCFixedStringBase &WCFixedStringBase::append_random_chars(std::uint64_t count) noexcept {
    for (std::uint64_t i = 0; i < count && m_end < m_begin + m_capacity; ++i)
        put(kRandomChars[std::rand() % 62]);
    return *this;
}

WCFixedStringBase &WCFixedStringBase::operator<<(const WCFixedStringBase &other) noexcept {
    return append(other.data(), other.size());
}
WCFixedStringBase &WCFixedStringBase::operator<<(short value) noexcept {
    append_signed(value);
    return *this;
}
WCFixedStringBase &WCFixedStringBase::operator<<(int value) noexcept {
    append_signed(value);
    return *this;
}
WCFixedStringBase &WCFixedStringBase::operator<<(unsigned int value) noexcept {
    return append_uint(value, 10);
}
WCFixedStringBase &WCFixedStringBase::operator<<(long value) noexcept {
    append_signed(value);
    return *this;
}
WCFixedStringBase &WCFixedStringBase::operator<<(unsigned long value) noexcept {
    return append_uint(value, 10);
}
WCFixedStringBase &WCFixedStringBase::operator<<(long long value) noexcept {
    append_signed(value);
    return *this;
}
WCFixedStringBase &WCFixedStringBase::operator<<(unsigned long long value) noexcept {
    return append_uint(value, 10);
}
WCFixedStringBase &WCFixedStringBase::operator<<(float value) noexcept {
    return append_double_with_precision(value, 5);
}
WCFixedStringBase &WCFixedStringBase::operator<<(double value) noexcept {
    return append_double_with_precision(value, 10);
}
WCFixedStringBase &WCFixedStringBase::operator<<(bool value) noexcept {
    return append(value ? "true" : "false");
}
WCFixedStringBase &WCFixedStringBase::operator<<(const char *const text) noexcept {
    return append(text);
}
WCFixedStringBase &WCFixedStringBase::operator<<(std::string_view text) noexcept {
    return append(text.data(), text.size());
}

WCFixedStringBase &operator<<(WCFixedStringBase &str, const WCFourCC &code) noexcept {
    const WCFixedString<4> text = code.GetString();
    return str.append(text.data());
}

WCFixedStringBase &operator<<(WCFixedStringBase &str, const PDoubleWithPrecision &value) noexcept {
    return str.append_double_with_precision(value.m_value, value.m_precision);
}

// ---- reading ----

const WCFixedStringBase &WCFixedStringBase::operator>>(int &value) const noexcept {
    value = static_cast<int>(std::strtol(m_begin, nullptr, 10));
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(unsigned int &value) const noexcept {
    value = static_cast<unsigned int>(std::strtoul(m_begin, nullptr, 10));
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(long &value) const noexcept {
    value = std::strtol(m_begin, nullptr, 10);
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(unsigned long &value) const noexcept {
    value = std::strtoul(m_begin, nullptr, 10);
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(long long &value) const noexcept {
    value = std::strtoll(m_begin, nullptr, 10);
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(unsigned long long &value) const noexcept {
    value = std::strtoull(m_begin, nullptr, 10);
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(float &value) const noexcept {
    value = Utils::CLocaleStrtof(m_begin);
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(double &value) const noexcept {
    value = Utils::CLocaleStrtod(m_begin);
    return *this;
}
const WCFixedStringBase &WCFixedStringBase::operator>>(bool &value) const noexcept {
    if (strcasecmp(m_begin, "yes") == 0 || strcasecmp(m_begin, "true") == 0 ||
        std::strcmp(m_begin, "1") == 0)
        value = true;
    else if (strcasecmp(m_begin, "no") == 0 || strcasecmp(m_begin, "false") == 0 ||
             std::strcmp(m_begin, "0") == 0)
        value = false;
    return *this;
}

// ---- comparing and finding ----

int WCFixedStringBase::compare(const char *text) const noexcept {
    if (text == nullptr)
        return 1;
    const int r = std::strcmp(m_begin, text);
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int WCFixedStringBase::compare(const WCFixedStringBase &other) const noexcept {
    return compare(other.data());
}

int WCFixedStringBase::case_insensitive_compare(const char *text) const noexcept {
    if (text == nullptr)
        return 1;
    return strcasecmp(m_begin, text);
}

bool WCFixedStringBase::begins_with(const char *prefix) const noexcept {
    if (prefix == nullptr)
        return true;
    const std::uint64_t n = std::strlen(prefix);
    return n <= size() && std::memcmp(m_begin, prefix, static_cast<std::size_t>(n)) == 0;
}

bool WCFixedStringBase::ends_with(const char *suffix) const noexcept {
    if (suffix == nullptr)
        return true;
    const std::uint64_t n = std::strlen(suffix);
    return n <= size() && std::memcmp(m_end - n, suffix, static_cast<std::size_t>(n)) == 0;
}

std::uint64_t WCFixedStringBase::find(const char *needle, std::uint64_t position) const noexcept {
    const std::uint64_t n = FittingNeedleLength(needle, position, size());
    if (n == npos)
        return npos;
    const std::size_t at = view().find(std::string_view(needle, n), position);
    return at == std::string_view::npos ? npos : at;
}

std::uint64_t WCFixedStringBase::find(char ch, std::uint64_t position) const noexcept {
    if (position >= size())
        return npos;
    const void *at =
        std::memchr(m_begin + position, ch, static_cast<std::size_t>(size() - position));
    return at ? static_cast<std::uint64_t>(static_cast<const char *>(at) - m_begin) : npos;
}

std::uint64_t WCFixedStringBase::find_case_insensitive(const char *needle,
                                                       std::uint64_t position) const noexcept {
    const std::uint64_t n = FittingNeedleLength(needle, position, size());
    if (n == npos)
        return npos;
    for (std::uint64_t at = position; at + n <= size(); ++at) {
        std::uint64_t i = 0;
        while (i < n && AsciiLower(m_begin[at + i]) == AsciiLower(needle[i]))
            ++i;
        if (i == n)
            return at;
    }
    return npos;
}

std::uint64_t WCFixedStringBase::rfind(const char *needle) const noexcept {
    if (needle == nullptr || *needle == '\0')
        return npos;
    const std::size_t at = view().rfind(std::string_view(needle));
    return at == std::string_view::npos ? npos : at;
}

std::uint64_t WCFixedStringBase::rfind(char ch) const noexcept {
    const std::size_t at = view().rfind(ch);
    return at == std::string_view::npos ? npos : at;
}

std::uint64_t WCFixedStringBase::find_first_of(const char *set,
                                               std::uint64_t position) const noexcept {
    if (set == nullptr)
        return npos;
    for (std::uint64_t i = position; i < size(); ++i)
        if (InSet(set, m_begin[i]))
            return i;
    return npos;
}

std::uint64_t WCFixedStringBase::find_first_not_of(const char *set,
                                                   std::uint64_t position) const noexcept {
    const char *s = set ? set : "";
    for (std::uint64_t i = position; i < size(); ++i)
        if (!InSet(s, m_begin[i]))
            return i;
    return npos;
}

std::uint64_t WCFixedStringBase::find_last_of(const char *set,
                                              std::uint64_t position) const noexcept {
    if (set == nullptr)
        return npos;
    for (std::uint64_t i = size(); i > position; --i)
        if (InSet(set, m_begin[i - 1]))
            return i - 1;
    return npos;
}

std::uint64_t WCFixedStringBase::find_last_not_of(const char *set,
                                                  std::uint64_t position) const noexcept {
    const char *s = set ? set : "";
    for (std::uint64_t i = size(); i > position; --i)
        if (!InSet(s, m_begin[i - 1]))
            return i - 1;
    return npos;
}

void WCFixedStringBase::copy_to_buffer(std::uint64_t bufferSize, char *buffer) const noexcept {
    if (bufferSize == 0 || buffer == nullptr)
        return;
    const std::uint64_t n = size() < bufferSize - 1 ? size() : bufferSize - 1;
    std::memmove(buffer, m_begin, static_cast<std::size_t>(n));
    buffer[n] = 0;
}

// ---- changing in place ----

void WCFixedStringBase::clear() noexcept {
    m_end = m_begin;
    *m_end = 0;
}

void WCFixedStringBase::erase(std::int64_t position, std::uint64_t count) noexcept {
    const std::uint64_t sz = size();
    std::uint64_t at;
    if (position < 0) {
        const std::uint64_t back = 0 - static_cast<std::uint64_t>(position);
        at = back > sz ? 0 : sz - back;
    } else {
        at = static_cast<std::uint64_t>(position);
    }
    if (at >= sz || count == 0)
        return;
    if (count > sz - at)
        count = sz - at;
    std::memmove(m_begin + at, m_begin + at + count, static_cast<std::size_t>(sz - at - count));
    m_end -= count;
    *m_end = 0;
}

void WCFixedStringBase::erase_all_of(const char *set) noexcept {
    if (set == nullptr)
        return;
    char *out = m_begin;
    for (const char *in = m_begin; in < m_end; ++in)
        if (!InSet(set, *in))
            *out++ = *in;
    m_end = out;
    *m_end = 0;
}

void WCFixedStringBase::erase_all_not_of(const char *set) noexcept {
    const char *s = set ? set : "";
    char *out = m_begin;
    for (const char *in = m_begin; in < m_end; ++in)
        if (InSet(s, *in))
            *out++ = *in;
    m_end = out;
    *m_end = 0;
}

std::uint64_t WCFixedStringBase::replace(char what, char with) noexcept {
    std::uint64_t count = 0;
    for (char *p = m_begin; p < m_end; ++p)
        if (*p == what) {
            *p = with;
            ++count;
        }
    return count;
}

std::uint64_t WCFixedStringBase::replace(char what, const char *with) {
    const std::uint64_t sz = size();
    std::uint64_t matches = 0;
    for (const char *p = m_begin; p < m_end; ++p)
        matches += (*p == what);
    if (matches == 0)
        return 0;
    // The replacement is copied too, in case it points into this string.
    const std::uint64_t withLength = with ? std::strlen(with) : 0;
    char *copy = new (std::nothrow) char[sz + withLength + 1];
    if (copy == nullptr)
        return 0;
    std::memcpy(copy, m_begin, static_cast<std::size_t>(sz));
    if (withLength)
        std::memcpy(copy + sz, with, static_cast<std::size_t>(withLength));
    clear();
    for (std::uint64_t i = 0; i < sz; ++i) {
        if (copy[i] == what)
            append(copy + sz, withLength);
        else
            put(copy[i]);
    }
    delete[] copy;
    return matches;
}

std::uint64_t WCFixedStringBase::replace(const char *set, char with) noexcept {
    if (set == nullptr)
        return 0;
    std::uint64_t count = 0;
    for (char *p = m_begin; p < m_end; ++p)
        if (InSet(set, *p)) {
            *p = with;
            ++count;
        }
    return count;
}

void WCFixedStringBase::resize(std::uint64_t n) noexcept {
    m_end = m_begin + (n < m_capacity ? n : m_capacity);
    *m_end = 0;
}

void WCFixedStringBase::reposition_end() noexcept {
    // The byte at capacity belongs to the storage too, so a caller may fill all capacity
    // characters and leave the terminator there.
    const void *zero = std::memchr(m_begin, 0, static_cast<std::size_t>(m_capacity) + 1);
    if (zero)
        m_end = m_begin + (static_cast<const char *>(zero) - m_begin);
    // With no zero at all the end stays where it was; the zero is written again because the
    // caller has overwritten it.
    *m_end = 0;
}

void WCFixedStringBase::reverse() noexcept {
    reverse(m_begin, m_end);
}

void WCFixedStringBase::reverse(char *first, char *last) noexcept {
    if (first == nullptr || last == nullptr)
        return;
    while (first < last) {
        --last;
        const char t = *first;
        *first = *last;
        *last = t;
        ++first;
    }
}

void WCFixedStringBase::to_lower() noexcept {
    for (char *p = m_begin; p < m_end; ++p)
        *p = AsciiLower(*p);
}

void WCFixedStringBase::to_upper() noexcept {
    for (char *p = m_begin; p < m_end; ++p)
        *p = AsciiUpper(*p);
}

// ---- free comparisons ----

bool operator==(const WCFixedStringBase &a, const WCFixedStringBase &b) noexcept {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size()) == 0;
}

bool operator==(const WCFixedStringBase &a, const char *b) noexcept {
    return b != nullptr && std::strcmp(a.data(), b) == 0;
}

bool operator<(const WCFixedStringBase &a, const WCFixedStringBase &b) noexcept {
    return a.compare(b) < 0;
}

bool operator<(const WCFixedStringBase &a, const char *b) noexcept {
    return a.compare(b) < 0;
}

MIREL_NAMESPACE_END
