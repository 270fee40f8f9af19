#include "Utilities/XML/Code/WUAtoi.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>
#include <type_traits>

MIREL_NAMESPACE_BEGIN

namespace {

bool IsBlank(char ch) noexcept {
    return ch == ' ' || ch == '\t' || ch == '\n' || ch == '\r' || ch == '\v' || ch == '\f';
}

template <typename T>
WTErr ParseInteger(const char *text, T &out) noexcept {
    if (text == nullptr)
        return eNotANumber;
    const char *first = text;
    const char *last = text + std::strlen(text);
    while (first < last && IsBlank(*first))
        ++first;
    while (last > first && IsBlank(last[-1]))
        --last;
    bool negative = false;
    if (first < last && (*first == '+' || *first == '-')) {
        negative = *first == '-';
        ++first;
    }
    if (first == last || *first < '0' || *first > '9')
        return eNotANumber;

    // Magnitude first, in the widest unsigned type, so the most negative value of each signed
    // type converts and the sign is applied exactly once.
    unsigned long long magnitude = 0;
    const auto [end, ec] = std::from_chars(first, last, magnitude, 10);
    if (ec == std::errc::result_out_of_range)
        return eOutOfRangeNumber;
    if (end != last)
        return eNotJustANumber;

    if constexpr (std::is_signed_v<T>) {
        using U = std::make_unsigned_t<T>;
        const unsigned long long limit =
            negative
                ? static_cast<unsigned long long>(static_cast<U>(std::numeric_limits<T>::max())) + 1
                : static_cast<unsigned long long>(std::numeric_limits<T>::max());
        if (magnitude > limit)
            return eOutOfRangeNumber;
        out = negative ? static_cast<T>(0 - static_cast<U>(magnitude)) : static_cast<T>(magnitude);
    } else {
        if (magnitude > std::numeric_limits<T>::max() || (negative && magnitude != 0))
            return eOutOfRangeNumber;
        out = static_cast<T>(magnitude);
    }
    return eNoErr;
}

} // namespace

WTErr WUAtoi(const char *text, short &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, unsigned short &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, int &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, unsigned int &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, long &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, unsigned long &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, long long &out) noexcept {
    return ParseInteger(text, out);
}
WTErr WUAtoi(const char *text, unsigned long long &out) noexcept {
    return ParseInteger(text, out);
}

double WUStod(const char *text) noexcept {
    if (text == nullptr)
        return 0.0;
    return WUStod(text, text + std::strlen(text));
}

double WUStod(const char *first, const char *last) noexcept {
    if (first == nullptr || last < first)
        return 0.0;
    while (first < last && IsBlank(*first))
        ++first;
    // from_chars takes no leading '+'; strip it by hand so "+1.5" reads as in C.
    bool negative = false;
    if (first < last && (*first == '+' || *first == '-')) {
        negative = *first == '-';
        ++first;
    }
    if (first < last && (*first == '+' || *first == '-'))
        return 0.0;
    double value = 0.0;
    const auto [end, ec] = std::from_chars(first, last, value, std::chars_format::general);
    if (end == first || (ec != std::errc() && ec != std::errc::result_out_of_range))
        return 0.0;
    return negative ? -value : value;
}

MIREL_NAMESPACE_END
