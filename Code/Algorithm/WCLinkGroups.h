#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The link groups of one algorithm: parameters that move together. Until the link-group work
// lands an algorithm has none, so there is nothing to repeat at UpdateAlg. [main-thread]
class WCLinkGroups {
public:
    // What link groups ask of their algorithm.
    class Listener {
    public:
        virtual ~Listener() = default;
    };

    bool HasLinkGroups() const { return false; }
    void AtUpdateAlg() {}
};

MIREL_NAMESPACE_END
