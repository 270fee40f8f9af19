#pragma once

#include <cstdint>
#include <string>

#include "core/MirelNamespace.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"
#include "view/WCDispatcherAbs.h"

MIREL_NAMESPACE_BEGIN
class CStandardGUI_X;
struct WSPluginView;
MIREL_NAMESPACE_END

namespace mirel_host {

// A headless view showing a GUI: its timer pulls a frame whenever the GUI has something to paint,
// and the painter paints each frame over the last picture. With a callback, the view's events go
// to it with the GUI as reference. Starts the view layer and ends it with the view, so one lives
// at a time. [main-thread]
class WCPaintedView {
public:
    // The view's timer period: the frames of a 60 Hz screen.
    static constexpr std::uint64_t kFramePeriodMs = 16;

    explicit WCPaintedView(
        MIREL_NAMESPACE_NAME::CStandardGUI_X &gui,
        MIREL_NAMESPACE_NAME::PluginViewManager::WTEventCallback callback = nullptr);
    ~WCPaintedView();
    WCPaintedView(const WCPaintedView &) = delete;
    WCPaintedView &operator=(const WCPaintedView &) = delete;

    int GetError() const { return m_Error; }
    MIREL_NAMESPACE_NAME::WSPluginView *GetView() const { return m_View; }
    // Runs the view's clock for `frames` timer periods.
    void Run(int frames);
    std::uint64_t GetFrameCount() const;
    const std::string &GetLastFrame() const { return m_Frame; }
    MIREL_NAMESPACE_NAME::miGS::WCGraphicStreamToCairo &GetPainter() { return m_Painter; }

private:
    MIREL_NAMESPACE_NAME::CStandardGUI_X &m_GUI;
    MIREL_NAMESPACE_NAME::WSPluginView *m_View = nullptr;
    MIREL_NAMESPACE_NAME::miGS::WCGraphicStreamToCairo m_Painter;
    std::string m_Frame;
    int m_Error = 0;
};

} // namespace mirel_host
