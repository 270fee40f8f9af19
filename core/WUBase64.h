#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// Base64 with the standard alphabet ('+', '/') and '=' padding, as identifiers are written in
// XML. [any-thread]

// The encoded length of `count` bytes, padding included.
constexpr std::uint64_t Base64EncodedLength(std::uint64_t count) noexcept {
    return ((count + 2) / 3) * 4;
}

// Appends the encoding of `count` bytes to `out`, under the fixed string's truncation rule.
void Base64Encode(const unsigned char *bytes, std::uint64_t count, WCFixedStringBase &out) noexcept;

// Decodes `length` characters of `text` into `out`, which holds `outCapacity` bytes; bytes past
// the capacity are dropped. `written` receives the number of bytes stored. White space is
// skipped and padding is optional. Text that is not Base64 (a foreign character, data after the
// padding, a lone trailing character) gives eNotANumber and stores nothing.
WTErr Base64Decode(const char *text, std::uint64_t length, unsigned char *out,
                   std::uint64_t outCapacity, std::uint64_t &written) noexcept;

} // namespace Utils

MIREL_NAMESPACE_END
