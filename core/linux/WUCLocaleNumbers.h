#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// Number conversions of the C library in the "C" locale, whatever locale the host process has
// set: a host that calls setlocale must not turn "1.5" into "1,5" in presets and XML.
// [any-thread]

// strtod and strtof in the "C" locale. `endOut` may be null.
double CLocaleStrtod(const char *text, char **endOut = nullptr) noexcept;
float CLocaleStrtof(const char *text, char **endOut = nullptr) noexcept;

// snprintf of one double in the "C" locale; returns what snprintf returns.
int CLocaleFormatDouble(char *buffer, std::uint64_t size, const char *format, int precision,
                        double value) noexcept;

} // namespace Utils

MIREL_NAMESPACE_END
