#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace miGS {
class WCGraphicStreamBinaryWriter;
}

namespace PluginViewManager {

// What a view's timer asks for pictures: a GUI document implements it. The view asks
// HasSomethingToPaint at every tick and pulls a frame of graphic stream only when it holds; the
// document's own NeedToRedrawGUI then decides between a full frame and one of what changed.
// [main-thread]
class WIViewFrameSource {
public:
    virtual ~WIViewFrameSource() = default;
    virtual bool NeedToRedrawGUI() = 0;
    // A whole picture is due, or a part of it changed; by default only the first.
    virtual bool HasSomethingToPaint() { return NeedToRedrawGUI(); }
    // Writes one frame; 0 on success, else the frame is dropped.
    virtual int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) = 0;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
