#include "Code/Presets/WUPresetNumbers.h"

#include <charconv>
#include <cstring>
#include <string_view>

#include "Code/Presets/WTPresetTypes.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kTokenSeparators = " \t\n;";
constexpr std::size_t kMaxRealWorldToken = 127;

bool IsDigit(char ch) noexcept {
    return ch >= '0' && ch <= '9';
}

// Calls `visit(token)` for every token of `text`.
template <typename Visit>
void ForEachToken(const char *text, Visit visit) {
    if (text == nullptr)
        return;
    const char *p = text;
    while (*p != 0) {
        p += std::strspn(p, kTokenSeparators);
        if (*p == 0)
            break;
        const std::size_t length = std::strcspn(p, kTokenSeparators);
        visit(std::string_view(p, length));
        p += length;
    }
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
    const char *p = text;
    while (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r')
        ++p;
    bool negative = false;
    if (*p == '+' || *p == '-')
        negative = *p++ == '-';
    double value = 0.0;
    for (; IsDigit(*p); ++p)
        value = value * 10.0 + (*p - '0');
    if (*p == '.') {
        double scale = 0.1;
        for (++p; IsDigit(*p); ++p) {
            value += (*p - '0') * scale;
            scale *= 0.1;
        }
    }
    if (*p == 'e' || *p == 'E') {
        ++p;
        bool negativeExponent = false;
        if (*p == '+' || *p == '-')
            negativeExponent = *p++ == '-';
        int exponent = 0;
        // Past 400 every double has run to zero or infinity; stop counting there.
        for (; IsDigit(*p); ++p)
            exponent = exponent < 400 ? exponent * 10 + (*p - '0') : exponent;
        for (int i = 0; i < exponent; ++i)
            value = negativeExponent ? value / 10.0 : value * 10.0;
    }
    return negative ? -value : value;
}

std::string FormatRealWorldText(const std::vector<double> &values,
                                const std::vector<unsigned int> &kinds, bool allAsNumbers) {
    std::string text;
    text.reserve(values.size() * 24);
    // to_chars in the general form is "%.20g" in the C locale, whatever the process's locale.
    char buffer[64] = "0";
    std::size_t length = 1;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const unsigned int kind = i < kinds.size() ? kinds[i] : ePresetValue;
        if (allAsNumbers || kind == ePresetValue) {
            const auto result = std::to_chars(buffer, buffer + sizeof(buffer), values[i],
                                              std::chars_format::general, 20);
            length = static_cast<std::size_t>(result.ptr - buffer);
        } else if (kind == ePresetValueIgnore) {
            buffer[0] = '*';
            length = 1;
        }
        text.append(buffer, length);
        text += (i + 1) % 10 == 0 ? '\n' : ' ';
    }
    return text;
}

void ParseRealWorldText(const char *text, bool obsolete, std::vector<double> &values,
                        std::vector<unsigned int> &kinds) {
    values.clear();
    kinds.clear();
    ForEachToken(text, [&](std::string_view token) {
        const unsigned int kind = KindOf(token);
        kinds.push_back(kind);
        if (kind != ePresetValue) {
            values.push_back(0.0);
            return;
        }
        std::string number(token.substr(0, kMaxRealWorldToken));
        if (number.find_first_not_of("0123456789,.") == std::string::npos) {
            for (char &ch : number)
                ch = ch == ',' ? '.' : ch;
        }
        values.push_back(obsolete ? WUAtof_Obsolete(number.c_str()) : WUStod(number.c_str()));
    });
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
