#pragma once

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The codes of the Redis bridge. They stand outside the named error table, so WTErrName answers
// "Unnamed error" for them; these names are how the code refers to them.
// The state of every connection until `connect` succeeds, and again after `disconnect`.
inline constexpr WTErr eRedisNotConnected = -21001;
// The server did not answer within the time-out, or refused the connection.
inline constexpr WTErr eRedisConnectFailed = -21002;
// A read or write description named no source or target.
inline constexpr WTErr eRedisMissingTarget = -21003;

MIREL_NAMESPACE_END
