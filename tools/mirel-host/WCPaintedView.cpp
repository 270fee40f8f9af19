#include "tools/mirel-host/WCPaintedView.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "core/WTErrors.h"
#include "view/PluginViewManager.h"
#include "view/WCViewCreateOptions.h"
#include "view/linux/WUHeadlessView.h"

namespace mirel_host {

namespace ml = MIREL_NAMESPACE_NAME;
namespace PVM = ml::PluginViewManager;

WCPaintedView::WCPaintedView(ml::CStandardGUI_X &gui, PVM::WTEventCallback callback) : m_GUI(gui) {
    m_Painter.FollowDataPointers(true);
    m_Painter.SetKeepPicture(true);
    PVM::Init();
    PVM::WCPluginViewCreateOptions options;
    options.m_width = gui.GetViewRect().Width();
    options.m_height = gui.GetViewRect().Height();
    options.m_title = gui.GetPluginName().c_str();
    options.m_callback = callback;
    options.m_reference = &gui;
    m_Error = PVM::CreatePluginView(options, m_View);
    if (m_Error != ml::eNoErr)
        return;
    gui.SetPluginView(m_View);
    PVM::SetFramePainter(m_View, [this](const char *stream, std::size_t size) {
        m_Painter.ExecStream(const_cast<char *>(stream), size);
        m_Frame.assign(stream, size);
    });
    m_Error = PVM::SetFrameSource(m_View, &gui, kFramePeriodMs);
}

WCPaintedView::~WCPaintedView() {
    if (m_View != nullptr) {
        PVM::SetFrameSource(m_View, nullptr, 0);
        PVM::DisposePluginView(m_View);
    }
    m_GUI.ResetPluginView();
    PVM::Dispose();
}

void WCPaintedView::Run(int frames) {
    PVM::AdvanceTime(kFramePeriodMs * static_cast<std::uint64_t>(frames));
}

std::uint64_t WCPaintedView::GetFrameCount() const {
    std::uint64_t count = 0;
    PVM::GetFrameCount(m_View, count);
    return count;
}

} // namespace mirel_host
