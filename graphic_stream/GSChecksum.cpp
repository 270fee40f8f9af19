#include "graphic_stream/GSChecksum.h"

#include <cstring>

#include "graphic_stream/GraphicStreamVocabulary.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

std::uint64_t LoadLittleEndian(const unsigned char *bytes, std::uint64_t count) noexcept {
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < count; ++i)
        value |= static_cast<std::uint64_t>(bytes[i]) << (8 * i);
    return value;
}

} // namespace

std::uint64_t MurmurHash64A(const void *data, std::uint64_t length, std::uint64_t seed) noexcept {
    const auto *bytes = static_cast<const unsigned char *>(data);
    if (length == 0 || bytes == nullptr)
        return 0;
    // Short inputs are their own checksum: the format relies on this, it is not an optimisation.
    if (length <= 8)
        return LoadLittleEndian(bytes, length);

    constexpr std::uint64_t m = 0xC6A4A7935BD1E995ull;
    constexpr int r = 47;
    std::uint64_t h = seed ^ (length * m);

    const std::uint64_t blocks = length / 8;
    for (std::uint64_t i = 0; i < blocks; ++i) {
        std::uint64_t k = LoadLittleEndian(bytes + i * 8, 8);
        k *= m;
        k ^= k >> r;
        k *= m;
        h ^= k;
        h *= m;
    }

    const unsigned char *tail = bytes + blocks * 8;
    const std::uint64_t rest = length & 7;
    if (rest != 0) {
        h ^= LoadLittleEndian(tail, rest);
        h *= m;
    }

    h ^= h >> r;
    h *= m;
    h ^= h >> r;
    return h;
}

std::uint64_t GSStructChecksum(const SGSCommandHeader &record) noexcept {
    if (record.size <= static_cast<std::int32_t>(sizeof(SGSCommandHeader)))
        return 0;
    const auto *bytes = reinterpret_cast<const unsigned char *>(&record);
    return MurmurHash64A(bytes + sizeof(SGSCommandHeader),
                         static_cast<std::uint64_t>(record.size) - sizeof(SGSCommandHeader),
                         kGSChecksumSeed);
}

std::uint64_t GSStructChecksum(const SGSData &data) noexcept {
    const void *payload = nullptr;
    if (data.header.command == eGSDataPtr)
        payload = reinterpret_cast<const void *>(static_cast<std::uintptr_t>(data.data_ptr));
    else
        payload = reinterpret_cast<const unsigned char *>(&data) + sizeof(SGSData);
    return GSStructChecksum(data, payload);
}

std::uint64_t GSStructChecksum(const SGSData &data, const void *payload) noexcept {
    const auto *bytes = reinterpret_cast<const unsigned char *>(&data);
    const std::uint64_t head =
        MurmurHash64A(bytes + offsetof(SGSData, type), 3 * sizeof(std::int32_t), kGSChecksumSeed);
    std::uint64_t payloadBytes = 0;
    if (data.num_elements > 0)
        payloadBytes = static_cast<std::uint64_t>(data.num_elements) *
                       static_cast<std::uint64_t>(GraphicStreamDataTypeElementSize(data.type));
    return head ^ MurmurHash64A(payload, payloadBytes, kGSChecksumSeed);
}

} // namespace miGS
MIREL_NAMESPACE_END
