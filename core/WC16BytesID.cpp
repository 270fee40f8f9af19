#include "core/WC16BytesID.h"

#include "core/WUBase64.h"

MIREL_NAMESPACE_BEGIN

bool WC16BytesID::IsDefault() const noexcept {
    for (unsigned char b : m_bytes)
        if (b != 0)
            return false;
    return true;
}

WCFixedString<31> WC16BytesID::Encode() const noexcept {
    WCFixedString<31> text;
    Encode(text);
    return text;
}

void WC16BytesID::Encode(WCFixedStringBase &out) const noexcept {
    out.clear();
    Utils::Base64Encode(m_bytes, kNumBytes, out);
}

WTErr WC16BytesID::Decode(const char *text) noexcept {
    // Zeroed first, so a text that cannot be read leaves the default identifier rather than the
    // old one, which a caller would take for the value it asked for.
    clear();
    if (text == nullptr)
        return eMemNullPointer;
    std::uint64_t written = 0;
    return Utils::Base64Decode(text, std::strlen(text), m_bytes, kNumBytes, written);
}

MIREL_NAMESPACE_END
