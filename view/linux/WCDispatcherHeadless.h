#pragma once

#include "core/MirelNamespace.h"
#include "view/WCDispatcherAbs.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;

namespace PluginViewManager {

// The dispatcher of a view of the headless desktop: focus, the wheel setting and the desktop's
// coordinates come from the desktop's state. [main-thread]
class WCDispatcherHeadless : public WCDispatcherAbs {
public:
    explicit WCDispatcherHeadless(WSPluginView *view) noexcept : m_view(view) {}

protected:
    void SetFocusSelf() override;
    WCPoint2D<short> ScreenToClientSelf(WCPoint2D<short> screen) override;
    unsigned int GetWheelScrollLinesSelf() override;

private:
    WSPluginView *m_view;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
