#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// Called when a precondition at a public boundary fails. The default handler prints the place and
// aborts in debug builds, and only prints in release builds. Tests install their own handler to
// check that bad input is both refused with its code and reported.
using WTAssertHandler = void (*)(const char *file, int line, const char *condition);

// [any-thread] Installs a handler (null restores the default) and returns the previous one.
WTAssertHandler SetAssertHandler(WTAssertHandler handler) noexcept;

// [any-thread] Reports one failed precondition through the installed handler.
void ReportAssertFailure(const char *file, int line, const char *condition) noexcept;

MIREL_NAMESPACE_END

// Checks a precondition at a public boundary and returns `ret` when it does not hold.
#define MIREL_ASSERT_RETURN(cond, ret)                                                             \
    do {                                                                                           \
        if (!(cond)) {                                                                             \
            ::MIREL_NAMESPACE_NAME::ReportAssertFailure(__FILE__, __LINE__, #cond);                \
            return ret;                                                                            \
        }                                                                                          \
    } while (0)
