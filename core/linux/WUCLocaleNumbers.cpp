#include "core/linux/WUCLocaleNumbers.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale.h>

MIREL_NAMESPACE_BEGIN

namespace Utils {

namespace {

// Made once and kept for the life of the process, as the C library's own locales are.
locale_t CLocale() noexcept {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

} // namespace

double CLocaleStrtod(const char *text, char **endOut) noexcept {
    const locale_t c = CLocale();
    return c ? strtod_l(text, endOut, c) : std::strtod(text, endOut);
}

float CLocaleStrtof(const char *text, char **endOut) noexcept {
    const locale_t c = CLocale();
    return c ? strtof_l(text, endOut, c) : std::strtof(text, endOut);
}

int CLocaleFormatDouble(char *buffer, std::uint64_t size, const char *format, int precision,
                        double value) noexcept {
    const locale_t c = CLocale();
    const locale_t previous = c ? uselocale(c) : static_cast<locale_t>(nullptr);
    const int written = std::snprintf(buffer, size, format, precision, value);
    if (c)
        uselocale(previous);
    return written;
}

} // namespace Utils

MIREL_NAMESPACE_END
