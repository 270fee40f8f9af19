#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/MirelNamespace.h"
#include "view/WCEventScript.h"

MIREL_NAMESPACE_BEGIN

struct WSPluginView;

namespace PluginViewManager {

// Called at each frame mark of a script with the mark's name; an answer other than 0 stops the
// play and is returned.
using WTFrameMarkCallback = std::function<int(const std::string &name)>;

// Plays a script into a headless view: posts each message (a wheel's position moved from the
// view's pixels onto the desktop) and then runs the clock `settleMs` so that the view's timers
// (its frames among them) catch up, advances the clock for each wait, and calls `onFrame` at
// each frame mark. A menu step answers the next menu the view opens, so it comes before the
// click that opens it. Answers the first negative code of a post, a clock step or the callback; a
// message the view leaves unhandled is no error. [main-thread]
int PlayEventScript(WSPluginView *view, const WCEventScript &script,
                    const WTFrameMarkCallback &onFrame, std::uint64_t settleMs = 0);

} // namespace PluginViewManager
MIREL_NAMESPACE_END
