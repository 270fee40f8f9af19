#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// How a parameter moves along its state axis: a discrete one is quantised to its number of
// states, a continuous one takes any state from 0 to 1000.
enum EParamType : std::int32_t {
    eParamTypeDiscrete = 0,
    eParamTypeContinuous = 1,
};

MIREL_NAMESPACE_END
