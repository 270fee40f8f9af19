#pragma once

#include <string>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/miThread.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;

// A window of the headless desktop: a system window, or the window of one plug-in view. Its
// position is in its parent, or on the desktop without one; windows nest, so a view's place on
// the desktop is the sum of the positions up the chain. Owned by the desktop. [main-thread]
class WCPluginNativeView {
public:
    WCPluginNativeView *m_parent = nullptr;
    WCPoint2D<int> m_position;
    int m_width = 0;
    int m_height = 0;
    std::string m_title;
    // The plug-in view this window belongs to; null for a system window.
    WSPluginView *m_view = nullptr;
    miThread::WCThreadRef m_thread;

    // The top-left corner on the desktop.
    WCPoint2D<int> GetGlobalOrigin() const noexcept {
        WCPoint2D<int> origin = m_position;
        for (const WCPluginNativeView *p = m_parent; p != nullptr; p = p->m_parent)
            origin += p->m_position;
        return origin;
    }
};

MIREL_NAMESPACE_END
