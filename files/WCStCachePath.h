#pragma once

#include "core/MirelNamespace.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// The twin of a path in the user's cache: folder eMirelCacheFolder of eUserDomain plus the whole
// POSIX text of the source, made absolute and free of "..", so every source has exactly one twin
// and the tree under the cache mirrors the sources. Nothing is created on disk. An invalid source
// gives an invalid twin with the source's code. [any-thread]
class WCStCachePath : public WCStPath {
public:
    explicit WCStCachePath(WCStPath const &source);
};

} // namespace FM
MIREL_NAMESPACE_END
