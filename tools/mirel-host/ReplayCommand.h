#pragma once

#include <cstdio>

namespace mirel_host {

// `mirel-host replay SCRIPT [--out FOLDER] [module]`: starts the plug-in, builds its "Primary"
// GUI in a headless view whose events go to the GUI, plays the event script into it (the view's
// clock running the plug-in's idle and its frames), and at each frame mark writes
// "<FOLDER>/<name>.png" and prints the parameters changed since the start. Exit codes: 0 done, 1
// bad arguments, 2 unreadable script or a plug-in that did not start, 3 a step of the play
// failed, 4 a picture not written. [main-thread]
int RunReplayCommand(int argc, char **argv, const char *defaultModule);
// One line of usage; `alone` starts it with "usage:", else it lines up under another's.
void PrintReplayUsage(std::FILE *out, bool alone);

} // namespace mirel_host
