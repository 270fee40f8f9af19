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
    if (text == nullptr)
        return eMemNullPointer;
    unsigned char decoded[kNumBytes] = {};
    std::uint64_t written = 0;
    const WTErr err = Utils::Base64Decode(text, std::strlen(text), decoded, kNumBytes, written);
    if (err != eNoErr)
        return err;
    std::memcpy(m_bytes, decoded, kNumBytes);
    return eNoErr;
}

MIREL_NAMESPACE_END
