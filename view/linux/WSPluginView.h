#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/MirelNamespace.h"
#include "core/WCStMemObj.h"
#include "core/WURect.h"
#include "view/WIViewFrameSource.h"
#include "view/linux/WCDispatcherHeadless.h"
#include "view/linux/WCPluginNativeView.h"

MIREL_NAMESPACE_BEGIN

// One plug-in view of the headless desktop: its window, its dispatcher, what waits to be painted,
// and the frames its timer pulled. Owned by the desktop from CreatePluginView to
// DisposePluginView. [main-thread]
struct WSPluginView {
    explicit WSPluginView(WCPluginNativeView *native) : m_native(native), m_dispatcher(this) {}

    WCPluginNativeView *m_native;
    PluginViewManager::WCDispatcherHeadless m_dispatcher;
    bool m_visible = true;
    bool m_eventsEnabled = true;
    bool m_fullScreen = false;
    bool m_noTopMost = false;
    bool m_dragDropRegistered = false;
    double m_dpiScale = 1.0;
    double m_retinaScale = 1.0;
    WURect<int> m_invalid;

    PluginViewManager::WIViewFrameSource *m_frameSource = nullptr;
    int m_frameTimerId = 0;
    std::function<void(const char *, std::size_t)> m_painter;
    // Frames are written into the scratch block and swapped in when whole, so a failed frame
    // leaves the last good one readable.
    Utils::WCStMemObj m_frame;
    Utils::WCStMemObj m_scratch;
    std::uint64_t m_frameCount = 0;
    // The title the user picks in the next menu opened over the view (SetNextMenuChoice).
    std::optional<std::string> m_nextMenuChoice;
};

MIREL_NAMESPACE_END
