#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// What an animation tells when its frame changes: the control that shows it must be drawn again.
// [main-thread]
class WCNeedToDrawListener {
public:
    virtual ~WCNeedToDrawListener() = default;
    virtual void SetNeedToRedrawControl() = 0;
};

MIREL_NAMESPACE_END
