#pragma once

#include "tools/shell/WCRecordingShell.h"

namespace mirel_host {

// The presets part of the demo: the factory list of the plug-in's bundle, a user preset saved,
// a factory preset loaded, next and previous in its section, the user preset loaded back and the
// host chunk of the state, with the parameter values after each step. The user preset goes to
// the user's own preset folder, as a real host's would. [main-thread]
void TourPresets(mirel_shell::WCRecordingShell &shell);

} // namespace mirel_host
