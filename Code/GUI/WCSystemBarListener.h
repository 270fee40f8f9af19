#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// Receives what happens in the window's system bar, the host-drawn strip above a plug-in's view:
// the bar was shown, hidden or resized. Every operation is empty here. [main-thread]
class WCSystemBarListener {
public:
    virtual ~WCSystemBarListener() = default;
    virtual void SystemBarShown(bool /*shown*/) {}
    virtual void SystemBarHeightChanged(int /*height*/) {}
};

MIREL_NAMESPACE_END
