#include "core/WUAssert.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

MIREL_NAMESPACE_BEGIN

namespace {

void DefaultAssertHandler(const char *file, int line, const char *condition) {
    std::fprintf(stderr, "%s:%d: precondition failed: %s\n", file, line, condition);
#ifndef NDEBUG
    std::abort();
#endif
}

std::atomic<WTAssertHandler> gAssertHandler{&DefaultAssertHandler};

} // namespace

WTAssertHandler SetAssertHandler(WTAssertHandler handler) noexcept {
    return gAssertHandler.exchange(handler != nullptr ? handler : &DefaultAssertHandler);
}

void ReportAssertFailure(const char *file, int line, const char *condition) noexcept {
    gAssertHandler.load()(file, line, condition);
}

MIREL_NAMESPACE_END
