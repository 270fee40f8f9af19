#include "core/WUBase64.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr int kInvalid = -1;
constexpr int kSpace = -2;
constexpr int kPad = -3;

constexpr int Classify(unsigned char ch) noexcept {
    if (ch >= 'A' && ch <= 'Z')
        return ch - 'A';
    if (ch >= 'a' && ch <= 'z')
        return ch - 'a' + 26;
    if (ch >= '0' && ch <= '9')
        return ch - '0' + 52;
    if (ch == '+')
        return 62;
    if (ch == '/')
        return 63;
    if (ch == '=')
        return kPad;
    if (ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n')
        return kSpace;
    return kInvalid;
}

// Walks the text once; with a null `out` it only validates.
WTErr Decode(const char *text, std::uint64_t length, unsigned char *out, std::uint64_t outCapacity,
             std::uint64_t &written) noexcept {
    written = 0;
    std::uint32_t group = 0;
    unsigned int inGroup = 0;
    bool padded = false;
    auto store = [&](unsigned char byte) {
        if (out != nullptr && written < outCapacity)
            out[written] = byte;
        ++written;
    };
    for (std::uint64_t i = 0; i < length; ++i) {
        const int c = Classify(static_cast<unsigned char>(text[i]));
        if (c == kSpace)
            continue;
        if (c == kInvalid)
            return eNotANumber;
        if (c == kPad) {
            // Padding may only complete a group of two or three characters.
            if (!padded && inGroup < 2)
                return eNotANumber;
            padded = true;
            continue;
        }
        if (padded)
            return eNotANumber;
        group = (group << 6) | static_cast<std::uint32_t>(c);
        if (++inGroup == 4) {
            store(static_cast<unsigned char>(group >> 16));
            store(static_cast<unsigned char>(group >> 8));
            store(static_cast<unsigned char>(group));
            group = 0;
            inGroup = 0;
        }
    }
    if (inGroup == 1)
        return eNotANumber;
    if (inGroup == 2) {
        store(static_cast<unsigned char>(group >> 4));
    } else if (inGroup == 3) {
        store(static_cast<unsigned char>(group >> 10));
        store(static_cast<unsigned char>(group >> 2));
    }
    if (written > outCapacity)
        written = outCapacity;
    return eNoErr;
}

} // namespace

void Base64Encode(const unsigned char *bytes, std::uint64_t count,
                  WCFixedStringBase &out) noexcept {
    if (bytes == nullptr)
        return;
    std::uint64_t i = 0;
    for (; i + 3 <= count; i += 3) {
        const std::uint32_t group =
            (std::uint32_t(bytes[i]) << 16) | (std::uint32_t(bytes[i + 1]) << 8) | bytes[i + 2];
        out << kAlphabet[(group >> 18) & 63] << kAlphabet[(group >> 12) & 63]
            << kAlphabet[(group >> 6) & 63] << kAlphabet[group & 63];
    }
    const std::uint64_t rest = count - i;
    if (rest == 1) {
        const std::uint32_t group = std::uint32_t(bytes[i]) << 16;
        out << kAlphabet[(group >> 18) & 63] << kAlphabet[(group >> 12) & 63] << '=' << '=';
    } else if (rest == 2) {
        const std::uint32_t group =
            (std::uint32_t(bytes[i]) << 16) | (std::uint32_t(bytes[i + 1]) << 8);
        out << kAlphabet[(group >> 18) & 63] << kAlphabet[(group >> 12) & 63]
            << kAlphabet[(group >> 6) & 63] << '=';
    }
}

WTErr Base64Decode(const char *text, std::uint64_t length, unsigned char *out,
                   std::uint64_t outCapacity, std::uint64_t &written) noexcept {
    written = 0;
    if (text == nullptr)
        return length == 0 ? eNoErr : eMemNullPointer;
    // Validated in full before a byte is stored, so bad text leaves the target as it was.
    std::uint64_t unused = 0;
    const WTErr err = Decode(text, length, nullptr, 0, unused);
    if (err != eNoErr)
        return err;
    return Decode(text, length, out, outCapacity, written);
}

} // namespace Utils

MIREL_NAMESPACE_END
