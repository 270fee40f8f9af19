#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN

namespace {

inline bool IsAlphanumeric(unsigned char ch) noexcept {
    return (ch >= '0' && ch <= '9') || (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z');
}

// One step forward: the next ASCII code, wrapping from 127 to 32, until an alphanumeric
// character is reached or the search has come round to the code just below the start.
unsigned char StepForward(unsigned char start) noexcept {
    const unsigned char stop = static_cast<unsigned char>(start - 1);
    unsigned char ch = start;
    do {
        ch = (ch >= 127) ? 32 : static_cast<unsigned char>(ch + 1);
    } while (!IsAlphanumeric(ch) && ch != stop);
    return ch;
}

// One step back: the plain previous code, except that leaving a range from its first character
// lands on the last character of the range before it in the ring.
unsigned char StepBack(unsigned char from) noexcept {
    const unsigned char ch = static_cast<unsigned char>(from - 1);
    if (IsAlphanumeric(ch))
        return ch;
    switch (from) {
    case '0': return 'z';
    case 'A': return '9';
    case 'a': return 'Z';
    default: return ch;
    }
}

// Once a character is alphanumeric every step stays on the ring of 62, so only the offset modulo
// 62 matters; that keeps a huge offset from spinning.
unsigned char Step(unsigned char ch, int offset) noexcept {
    constexpr long long kRing = 62;
    long long remaining = offset;
    while (remaining != 0 && !IsAlphanumeric(ch)) {
        ch = remaining > 0 ? StepForward(ch) : StepBack(ch);
        remaining += remaining > 0 ? -1 : 1;
    }
    remaining %= kRing;
    for (; remaining > 0; --remaining)
        ch = StepForward(ch);
    for (; remaining < 0; ++remaining)
        ch = StepBack(ch);
    return ch;
}

} // namespace

WCFixedString<4> WCFourCC::GetString() const noexcept {
    WCFixedString<4> text;
    for (unsigned i = 0; i < 4; ++i)
        text.data()[i] = GetChar(i);
    // Printing stops at the first zero byte of the code.
    text.reposition_end();
    return text;
}

WCFourCC WCFourCC::FromText(const char *text) noexcept {
    if (text == nullptr)
        return Unreadable();
    while (*text == '\t' || *text == ' ' || *text == '"' || *text == '\'')
        ++text;
    char chars[4];
    for (unsigned i = 0; i < 4; ++i) {
        if (text[i] == '\0')
            return Unreadable();
        chars[i] = text[i];
    }
    return WCFourCC(chars[0], chars[1], chars[2], chars[3]);
}

WCFourCC OffsetOSTypeAlphanumerically(WCFourCC code, int offset) noexcept {
    for (unsigned int index = 0; index < 4; ++index)
        code = OffsetOSTypeAlphanumerically(code, index, offset);
    return code;
}

WCFourCC OffsetOSTypeAlphanumerically(WCFourCC code, unsigned int index, int offset) noexcept {
    if (index > 3 || offset == 0)
        return code;
    code.SetChar(index,
                 static_cast<char>(Step(static_cast<unsigned char>(code.GetChar(index)), offset)));
    return code;
}

MIREL_NAMESPACE_END
