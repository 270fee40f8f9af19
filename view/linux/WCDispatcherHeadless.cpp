#include "view/linux/WCDispatcherHeadless.h"

#include "view/PluginViewManager.h"
#include "view/linux/WCHeadlessDesktop.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

void WCDispatcherHeadless::SetFocusSelf() {
    WCHeadlessDesktop::Get().m_focus = m_view;
}

WCPoint2D<short> WCDispatcherHeadless::ScreenToClientSelf(WCPoint2D<short> screen) {
    WCPoint2D<short> local;
    return PVMGlobalToLocal(m_view, screen, local) == eNoErr ? local : screen;
}

unsigned int WCDispatcherHeadless::GetWheelScrollLinesSelf() {
    return WCHeadlessDesktop::Get().m_wheelLines;
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
