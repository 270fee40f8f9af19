#include "Code/Presets/WUPresetNumbers.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Code/Presets/WTPresetTypes.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr std::size_t kMaxRealWorldToken = 127;
// The longest "%.20g" text of a double ("-2.2250738585072013831e-308") and its separator, with
// room for the fixed-size copies of the digit writer.
constexpr std::size_t kMaxValueText = 28;
constexpr std::size_t kValueTextSlack = 32;

bool IsDigit(char ch) noexcept {
    return ch >= '0' && ch <= '9';
}

// Token separators " \t\n;", and a second table that also stops at the terminating zero.
struct WSSeparatorTables {
    bool m_Separator[256] = {};
    bool m_TokenEnd[256] = {};
    constexpr WSSeparatorTables() {
        for (const unsigned char ch : {' ', '\t', '\n', ';'})
            m_Separator[ch] = m_TokenEnd[ch] = true;
        m_TokenEnd[0] = true;
    }
};
constexpr WSSeparatorTables kSeparators;

// Calls `visit(token)` for every token of `text`.
template <typename Visit>
void ForEachToken(const char *text, Visit visit) {
    if (text == nullptr)
        return;
    const auto *p = reinterpret_cast<const unsigned char *>(text);
    while (true) {
        while (kSeparators.m_Separator[*p])
            ++p;
        if (*p == 0)
            break;
        const auto *start = p;
        while (!kSeparators.m_TokenEnd[*p])
            ++p;
        visit(std::string_view(reinterpret_cast<const char *>(start),
                               static_cast<std::size_t>(p - start)));
    }
}

// The old conversion over [first, last), which a C string reads up to its zero; `stop` gets
// where the reading ended.
double AtofObsolete(const char *p, const char *last, const char **stop = nullptr) noexcept {
    while (p < last && (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r'))
        ++p;
    bool negative = false;
    if (p < last && (*p == '+' || *p == '-'))
        negative = *p++ == '-';
    // Up to 15 digits the double accumulation is exact, so integer arithmetic gives the very
    // same value; longer integer parts go on in doubles as they always did.
    std::uint64_t whole = 0;
    int wholeDigits = 0;
    for (; p < last && IsDigit(*p) && wholeDigits < 15; ++p, ++wholeDigits)
        whole = whole * 10u + static_cast<std::uint64_t>(*p - '0');
    double value = static_cast<double>(whole);
    for (; p < last && IsDigit(*p); ++p)
        value = value * 10.0 + (*p - '0');
    if (p < last && *p == '.') {
        double scale = 0.1;
        for (++p; p < last && IsDigit(*p); ++p) {
            value += (*p - '0') * scale;
            scale *= 0.1;
        }
    }
    if (p < last && (*p == 'e' || *p == 'E')) {
        ++p;
        bool negativeExponent = false;
        if (p < last && (*p == '+' || *p == '-'))
            negativeExponent = *p++ == '-';
        int exponent = 0;
        // Past 400 every double has run to zero or infinity; stop counting there.
        for (; p < last && IsDigit(*p); ++p)
            exponent = exponent < 400 ? exponent * 10 + (*p - '0') : exponent;
        for (int i = 0; i < exponent; ++i)
            value = negativeExponent ? value / 10.0 : value * 10.0;
    }
    if (stop != nullptr)
        *stop = p;
    return negative ? -value : value;
}

// WUStod's reading of a number that starts with a sign or a digit; false (and the caller reads
// the token the long way) for a second sign or a text from_chars does not take whole.
bool ReadNumber(const char *p, const char *last, double &value, const char *&stop) noexcept {
    bool negative = false;
    if (p < last && (*p == '+' || *p == '-'))
        negative = *p++ == '-';
    if (p < last && (*p == '+' || *p == '-'))
        return false;
    double read = 0.0;
    const auto [end, ec] = std::from_chars(p, last, read, std::chars_format::general);
    if (end == p || ec != std::errc())
        return false;
    value = negative ? -read : read;
    stop = end;
    return true;
}

// ---- "%.20g" ----
// The real-world text prints 20 significant digits, more than a double's shortest form, so the
// digits are the exact decimal expansion rounded once (to nearest, ties to even, as the C library
// prints). For values from 1e-8 to 2^128 that expansion fits 128-bit integers; the rest, zeros
// and non-finite values go through std::to_chars, which prints the same text more slowly.

__extension__ typedef unsigned __int128 WTUInt128;

constexpr std::uint64_t kTenPow10 = 10000000000ull;
constexpr std::uint64_t kTenPow19 = 10000000000000000000ull;
constexpr int kMaxPow5 = 27; // the largest power of 5 that fits 64 bits

struct WSPowersOf5 {
    std::uint64_t m_Value[kMaxPow5 + 1] = {};
    constexpr WSPowersOf5() {
        m_Value[0] = 1;
        for (int i = 1; i <= kMaxPow5; ++i)
            m_Value[i] = m_Value[i - 1] * 5u;
    }
};
constexpr WSPowersOf5 kPowersOf5;

constexpr char kDigitPairs[] = "0001020304050607080910111213141516171819"
                               "2021222324252627282930313233343536373839"
                               "4041424344454647484950515253545556575859"
                               "6061626364656667686970717273747576777879"
                               "8081828384858687888990919293949596979899";

void TwoDigits(char *out, std::uint32_t value) noexcept {
    std::memcpy(out, kDigitPairs + 2 * value, 2);
}

// The ten digits of `value` < 10^10, leading zeros included, as five two-digit numbers.
void TenDigits(std::uint32_t *pairs, std::uint64_t value) noexcept {
    const auto first = static_cast<std::uint32_t>(value / 100000000u);
    const auto rest = static_cast<std::uint32_t>(value % 100000000u);
    pairs[0] = first;
    pairs[1] = rest / 1000000u;
    pairs[2] = rest / 10000u % 100u;
    pairs[3] = rest / 100u % 100u;
    pairs[4] = rest % 100u;
}

// Writes `count` pairs from pair `first` on. Each pair is read from the table: digits written
// to memory and read back wider would wait for the stores to drain.
void WritePairs(char *to, const std::uint32_t *pairs, int first, int count) noexcept {
    for (int i = 0; i < count; ++i)
        TwoDigits(to + 2 * i, pairs[first + i]);
}

// |value| = mantissa * 2^exponent as `digits` in [10^19, 10^20) times 10^(decimalExponent - 19),
// rounded. False outside the range this handles.
bool TwentyDigits(std::uint64_t mantissa, int exponent, WTUInt128 &digits,
                  int &decimalExponent) noexcept {
    const WTUInt128 low = kTenPow19;
    const WTUInt128 high = WTUInt128(kTenPow19) * 10u;
    if (exponent >= 0) {
        if (exponent > 74)
            return false;
        const WTUInt128 whole = WTUInt128(mantissa) << exponent;
        int count = 1;
        WTUInt128 power = 10;
        while (count < 39 && whole >= power) {
            power *= 10u;
            ++count;
        }
        decimalExponent = count - 1;
        if (count <= 20) {
            digits = whole;
            for (int i = count; i < 20; ++i)
                digits *= 10u;
            return true;
        }
        std::uint64_t divisor = 1;
        for (int i = 20; i < count; ++i)
            divisor *= 10u;
        WTUInt128 quotient = whole / divisor;
        const WTUInt128 twice = (whole % divisor) * 2u;
        if (twice > divisor || (twice == divisor && (quotient & 1u) != 0))
            ++quotient;
        if (quotient == high) {
            quotient = low;
            ++decimalExponent;
        }
        digits = quotient;
        return true;
    }
    const int shift = -exponent;
    // floor(log10) of the value or one off, from its binary exponent; corrected below.
    const int binaryExponent = 63 - __builtin_clzll(mantissa) - shift;
    int estimate = (binaryExponent * 78913) >> 18;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const int power = 19 - estimate;
        if (power < 0 || power > kMaxPow5)
            return false;
        // value * 10^power = mantissa * 5^power / 2^(shift - power).
        const WTUInt128 product = WTUInt128(mantissa) * kPowersOf5.m_Value[power];
        const int drop = shift - power;
        WTUInt128 quotient;
        bool roundUp = false;
        if (drop <= 0) {
            if (-drop >= 60)
                return false;
            quotient = product << -drop;
        } else {
            if (drop >= 127)
                return false;
            quotient = product >> drop;
            const WTUInt128 rest = product - (quotient << drop);
            const WTUInt128 half = WTUInt128(1) << (drop - 1);
            roundUp = rest > half || (rest == half && (quotient & 1u) != 0);
        }
        if (quotient >= high) {
            ++estimate;
            continue;
        }
        if (quotient < low) {
            --estimate;
            continue;
        }
        if (roundUp)
            ++quotient;
        if (quotient == high) {
            quotient = low;
            ++estimate;
        }
        digits = quotient;
        decimalExponent = estimate;
        return true;
    }
    return false;
}

// Writes "%.20g" of `value` at `out`, which has kMaxValueText + kValueTextSlack bytes; returns
// the end of the text.
char *PrintValue(char *out, double value) noexcept {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const int biased = static_cast<int>((bits >> 52) & 0x7FFu);
    const std::uint64_t fraction = bits & ((std::uint64_t(1) << 52) - 1);
    WTUInt128 digits = 0;
    int exponent = 0;
    // Zeros, subnormals and non-finite values are left to the library.
    if (biased == 0 || biased == 0x7FF ||
        !TwentyDigits(fraction | (std::uint64_t(1) << 52), biased - 1075, digits, exponent))
        return std::to_chars(out, out + kMaxValueText, value, std::chars_format::general, 20).ptr;
    char *p = out;
    if ((bits >> 63) != 0)
        *p++ = '-';
    std::uint32_t pairs[10];
    const std::uint64_t top = static_cast<std::uint64_t>(digits >> 10) / 9765625u; // / 10^10
    TenDigits(pairs, top);
    TenDigits(pairs + 5, static_cast<std::uint64_t>(digits - WTUInt128(top) * kTenPow10));
    // The index of the last digit that is not 0 (the first one never is).
    int lastPair = 9;
    while (pairs[lastPair] == 0)
        --lastPair;
    const int last = 2 * lastPair + (pairs[lastPair] % 10u != 0 ? 1 : 0);
    // The digits go out in pairs, past the end of the text where a pair overhangs: the caller's
    // buffer has room, and only [out, end) counts. A point is put in after the digits around it.
    if (exponent < -4 || exponent >= 20) {
        WritePairs(p + 1, pairs, 0, 10);
        WritePairs(p, pairs, 0, 1);
        if (last > 0) {
            p[1] = '.';
            p += last + 2;
        } else {
            p += 1;
        }
        *p++ = 'e';
        *p++ = exponent < 0 ? '-' : '+';
        const int magnitude = exponent < 0 ? -exponent : exponent;
        if (magnitude >= 100)
            *p++ = static_cast<char>('0' + magnitude / 100);
        TwoDigits(p, static_cast<std::uint32_t>(magnitude % 100));
        return p + 2;
    }
    if (exponent >= 0) {
        WritePairs(p + 1, pairs, 0, 10);
        WritePairs(p, pairs, 0, exponent / 2 + 1);
        if (last > exponent) {
            p[exponent + 1] = '.';
            return p + last + 2;
        }
        return p + exponent + 1;
    }
    std::memcpy(p, "0.0000", 6);
    p += 1 - exponent;
    WritePairs(p, pairs, 0, 10);
    return p + last + 1;
}

// "*" and "R" name no value; anything else is a value.
unsigned int KindOf(std::string_view token) noexcept {
    if (token == "*")
        return ePresetValueIgnore;
    if (token == "R")
        return ePresetValueReset;
    return ePresetValue;
}

} // namespace

long WUAtol(const char *text) noexcept {
    if (text == nullptr)
        return 0;
    const char *p = text;
    while (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r' || *p == '\v' || *p == '\f')
        ++p;
    bool negative = false;
    if (*p == '+' || *p == '-')
        negative = *p++ == '-';
    unsigned long value = 0;
    for (; IsDigit(*p); ++p)
        value = value * 10u + static_cast<unsigned long>(*p - '0');
    return static_cast<long>(negative ? 0ul - value : value);
}

double WUAtof_Obsolete(const char *text) noexcept {
    if (text == nullptr)
        return 0.0;
    return AtofObsolete(text, text + std::strlen(text));
}

std::string FormatRealWorldText(const std::vector<double> &values,
                                const std::vector<unsigned int> &kinds, bool allAsNumbers) {
    std::string text(values.size() * kMaxValueText + kValueTextSlack, '\0');
    char *const begin = text.data();
    char *p = begin;
    // A kind 2 value repeats the text before it, so the last number's text is kept.
    const char *previous = "0";
    std::size_t previousLength = 1;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const unsigned int kind = i < kinds.size() ? kinds[i] : ePresetValue;
        char *const start = p;
        if (allAsNumbers || kind == ePresetValue) {
            p = PrintValue(p, values[i]);
            previous = start;
            previousLength = static_cast<std::size_t>(p - start);
        } else if (kind == ePresetValueIgnore) {
            *p++ = '*';
            previous = "*";
            previousLength = 1;
        } else {
            std::memmove(p, previous, previousLength);
            previous = start;
            p += previousLength;
        }
        *p++ = (i + 1) % 10 == 0 ? '\n' : ' ';
    }
    text.resize(static_cast<std::size_t>(p - begin));
    return text;
}

void ParseRealWorldText(const char *text, bool obsolete, std::vector<double> &values,
                        std::vector<unsigned int> &kinds) {
    values.clear();
    kinds.clear();
    if (text == nullptr)
        return;
    const char *const end = text + std::strlen(text);
    const char *p = text;
    while (true) {
        while (kSeparators.m_Separator[static_cast<unsigned char>(*p)])
            ++p;
        if (p == end)
            break;
        // Most tokens are a number that ends at a separator: read in the same pass that finds
        // the token's end. No number crosses a separator, so reading on to the text's end gives
        // what reading the token alone gives.
        const char first = *p;
        if (IsDigit(first) || first == '-' || first == '+' || first == '.') {
            double value = 0.0;
            const char *stop = p;
            const bool read = obsolete ? (value = AtofObsolete(p, end, &stop), true)
                                       : ReadNumber(p, end, value, stop);
            if (read && kSeparators.m_TokenEnd[static_cast<unsigned char>(*stop)] &&
                static_cast<std::size_t>(stop - p) <= kMaxRealWorldToken) {
                kinds.push_back(ePresetValue);
                values.push_back(value);
                p = stop;
                continue;
            }
        }
        const char *const start = p;
        while (!kSeparators.m_TokenEnd[static_cast<unsigned char>(*p)])
            ++p;
        std::string_view token(start, static_cast<std::size_t>(p - start));
        const unsigned int kind = KindOf(token);
        kinds.push_back(kind);
        if (kind != ePresetValue) {
            values.push_back(0.0);
            continue;
        }
        token = token.substr(0, kMaxRealWorldToken);
        char decimalPoints[kMaxRealWorldToken];
        if (token.find(',') != std::string_view::npos &&
            token.find_first_not_of("0123456789,.") == std::string_view::npos) {
            for (std::size_t i = 0; i < token.size(); ++i)
                decimalPoints[i] = token[i] == ',' ? '.' : token[i];
            token = std::string_view(decimalPoints, token.size());
        }
        const char *const last = token.data() + token.size();
        values.push_back(obsolete ? AtofObsolete(token.data(), last) : WUStod(token.data(), last));
    }
}

void ParseStatesText(const char *text, std::vector<int> &states, std::vector<unsigned int> &kinds) {
    states.clear();
    kinds.clear();
    ForEachToken(text, [&](std::string_view token) {
        const unsigned int kind = KindOf(token);
        kinds.push_back(kind);
        const std::string number(token);
        states.push_back(kind == ePresetValue ? static_cast<int>(WUAtol(number.c_str())) : 0);
    });
}

} // namespace Preset

MIREL_NAMESPACE_END
