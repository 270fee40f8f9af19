#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// Strict text-to-number conversions for XML values, independent of the C locale. A value is one
// decimal integer, with optional surrounding blanks and an optional sign; anything else is
// refused with its code and leaves the output untouched.
// [any-thread]
// eNotANumber: no digits; eNotJustANumber: digits followed by other text; eOutOfRangeNumber: the
// value does not fit the target type (a minus on an unsigned type counts as out of range).
WTErr WUAtoi(const char *text, short &out) noexcept;
WTErr WUAtoi(const char *text, unsigned short &out) noexcept;
WTErr WUAtoi(const char *text, int &out) noexcept;
WTErr WUAtoi(const char *text, unsigned int &out) noexcept;
WTErr WUAtoi(const char *text, long &out) noexcept;
WTErr WUAtoi(const char *text, unsigned long &out) noexcept;
WTErr WUAtoi(const char *text, long long &out) noexcept;
WTErr WUAtoi(const char *text, unsigned long long &out) noexcept;

// [any-thread] Reads the longest leading floating-point number after optional blanks, in the
// "C" notation whatever the process locale; gives 0 when there is none. It never fails, which is
// what the float attribute readers rely on.
double WUStod(const char *text) noexcept;
// The same over the characters [first, last), which need no terminating zero.
double WUStod(const char *first, const char *last) noexcept;

MIREL_NAMESPACE_END
