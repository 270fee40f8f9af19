#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "graphic_stream/GraphicStreamDefs.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// Checksums of records, so a writer and a reader can tell whether they saw the same stream.
// [any-thread] for all of them.

// The 64-bit MurmurHash of a byte range, as the stream format fixes it: an empty range gives 0,
// and one of 1 to 8 bytes gives those bytes as a little-endian number, unmixed. Longer ranges are
// hashed by the published 64-bit algorithm.
std::uint64_t MurmurHash64A(const void *data, std::uint64_t length, std::uint64_t seed) noexcept;

inline constexpr std::uint64_t kGSChecksumSeed = 17;

// The hash of a record's bytes behind its header, as far as its `size` says.
std::uint64_t GSStructChecksum(const SGSCommandHeader &record) noexcept;
// The hash of a data record's type, purpose and count combined with that of its payload, so the
// same content gives the same value in DataHere and DataPtr form. The payload is read inline or
// through the record's pointer.
std::uint64_t GSStructChecksum(const SGSData &data) noexcept;
// As above with the payload given by the caller (null hashes as no payload), for readers that do
// not follow pointers of a stream written by another process.
std::uint64_t GSStructChecksum(const SGSData &data, const void *payload) noexcept;

} // namespace miGS
MIREL_NAMESPACE_END
