#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// One input or output port of the process side: where the host routed it and what is known of it.
struct sIO_PORT {
    static constexpr std::uint32_t kConnected = 1u << 0;
    static constexpr std::uint32_t kRoutedByHost = 1u << 4;
    // The routing index of a port the host did not route.
    static constexpr std::int32_t kNoRouting = 65535;

    std::int32_t routing = 0;
    std::uint32_t flags = 0;
};

MIREL_NAMESPACE_END
