#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace miGS {
class WCGraphicStreamBinaryWriter;
}

namespace PluginViewManager {

// What a view's timer asks for pictures: a GUI document implements it. The view asks
// NeedToRedrawGUI at every tick and pulls a frame of graphic stream only when it holds.
// [main-thread]
class WIViewFrameSource {
public:
    virtual ~WIViewFrameSource() = default;
    virtual bool NeedToRedrawGUI() = 0;
    // Writes one frame; 0 on success, else the frame is dropped.
    virtual int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) = 0;
};

} // namespace PluginViewManager
MIREL_NAMESPACE_END
