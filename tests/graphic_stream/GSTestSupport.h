#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "core/WCStMemObj.h"
#include "graphic_stream/GraphicStreamDefs.h"

namespace gs_test {

// Reads a value of type T at a byte offset of a memory object, without alignment demands.
template <typename T>
T At(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory, std::uint64_t offset) {
    T value{};
    std::memcpy(&value, static_cast<const char *>(memory.GetPtr()) + offset, sizeof value);
    return value;
}

inline std::int32_t CommandAt(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory,
                              std::uint64_t offset) {
    return At<std::int32_t>(memory, offset);
}

inline std::int32_t SizeAt(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory,
                           std::uint64_t offset) {
    return At<std::int32_t>(memory, offset + 4);
}

// The commands of a stream in order, following the records' sizes.
inline std::vector<std::int32_t> Commands(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory) {
    std::vector<std::int32_t> commands;
    std::uint64_t offset = 0;
    while (offset + 8 <= memory.GetSize()) {
        commands.push_back(CommandAt(memory, offset));
        const std::int32_t size = SizeAt(memory, offset);
        if (size <= 0)
            break;
        offset += static_cast<std::uint64_t>(size);
    }
    return commands;
}

} // namespace gs_test
