#include "Utilities/XML/Code/WCXMLLog.h"

#include <atomic>
#include <cstdio>

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

void DefaultXMLLogHandler(int severity, const char *message) {
    std::fprintf(stderr, "[xml:%d] %s\n", severity, message != nullptr ? message : "");
}

std::atomic<WTXMLLogHandler> gXMLLogHandler{&DefaultXMLLogHandler};

} // namespace

WTXMLLogHandler SetXMLLogHandler(WTXMLLogHandler handler) noexcept {
    return gXMLLogHandler.exchange(handler != nullptr ? handler : &DefaultXMLLogHandler);
}

void XMLLog(int severity, const char *message) noexcept {
    gXMLLogHandler.load()(severity, message);
}

} // namespace XML

MIREL_NAMESPACE_END
