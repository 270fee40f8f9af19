#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

// Where the XML layer reports what it cannot return as a code (the details of a failed parse).
// Severity follows the syslog scale, 0 emergency to 7 debug. The default handler writes to
// standard error; tests and fuzzers install their own to keep the output quiet or to check it.
using WTXMLLogHandler = void (*)(int severity, const char *message);

// [any-thread] Installs a handler (null restores the default) and returns the previous one.
WTXMLLogHandler SetXMLLogHandler(WTXMLLogHandler handler) noexcept;

// [any-thread] Sends one message to the installed handler.
void XMLLog(int severity, const char *message) noexcept;

} // namespace XML

MIREL_NAMESPACE_END
