// Feeds arbitrary text to the readers of outside text in core: version strings, four-character
// codes, Base64 identifiers and the fixed string's number parsing and editing. Besides memory
// errors it checks the round trips that callers rely on.
#include "core/WC16BytesID.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCVersion.h"
#include "core/WUBase64.h"

#include <cstdint>
#include <cstring>
#include <string>

using namespace MIREL_NAMESPACE_NAME;

namespace {

void Check(bool condition) {
    if (!condition)
        __builtin_trap();
}

void FuzzVersion(const char *text) {
    const WCVersion v(text);
    const WCVersion back(v.GetString(4).data());
    Check(back == v);
    Check(!(v < v));
    Check(v <= v);
}

void FuzzFourCC(const char *text) {
    const WCFourCC code = WCFourCC::FromText(text);
    if (code.IsUnreadable())
        return;
    // A code read from text prints back as the same characters, up to a zero byte.
    const WCFixedString<4> printed = code.GetString();
    Check(printed.size() <= 4);
}

void FuzzBase64(const std::string &text) {
    unsigned char decoded[256];
    std::uint64_t written = 0;
    const WTErr err =
        Utils::Base64Decode(text.data(), text.size(), decoded, sizeof decoded, written);
    Check(written <= sizeof decoded);
    if (err != eNoErr) {
        Check(written == 0);
        return;
    }
    // Re-encoding what was decoded and decoding again gives the same bytes.
    WCFixedString<511> encoded;
    Utils::Base64Encode(decoded, written, encoded);
    unsigned char again[256];
    std::uint64_t againWritten = 0;
    Check(Utils::Base64Decode(encoded.data(), encoded.size(), again, sizeof again, againWritten) ==
          eNoErr);
    Check(againWritten == written && std::memcmp(again, decoded, written) == 0);

    // Text that cannot be read leaves the default identifier, never the old bytes.
    WC16BytesID id;
    id.GetBytes()[0] = 0xAB;
    if (id.Decode(text.c_str()) != eNoErr)
        Check(id.IsDefault());
}

void FuzzFixedString(const std::uint8_t *data, std::size_t size, const char *text) {
    WCFixedString<63> s(text);
    Check(s.size() <= 63 && s.data()[s.size()] == '\0');
    int i = 0;
    double d = 0;
    bool b = false;
    std::uint64_t u = 0;
    s >> i >> d >> b >> u;

    const std::int64_t position = size > 0 ? static_cast<std::int8_t>(data[0]) : 0;
    const std::uint64_t count = size > 1 ? data[1] : 0;
    const char ch = size > 2 ? static_cast<char>(data[2]) : 'a';
    const char needle[3] = {ch, size > 3 ? static_cast<char>(data[3]) : '\0', '\0'};

    const std::uint64_t found = s.find(needle, count);
    Check(found == WCFixedStringBase::npos || found < s.size());
    s.find_case_insensitive(needle);
    s.rfind(needle);
    s.find_last_not_of(needle, count);
    s.erase(position, count);
    s.replace(ch, needle);
    s.replace(needle, 'x');
    s.erase_all_of(needle);
    const WCFixedString<63> sub = s.substr(count, position);
    Check(sub.size() <= s.size());
    s << d << i << u << PDoubleWithPrecision(d, static_cast<int>(position));
    s.resize(count);
    s.reposition_end();
    Check(s.size() <= 63 && s.data()[s.size()] == '\0');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    FuzzVersion(text.c_str());
    FuzzFourCC(text.c_str());
    FuzzBase64(text);
    FuzzFixedString(data, size, text.c_str());
    return 0;
}
