#pragma once

#include <string>

namespace mirel_shell {
class WCRecordingShell;
}

namespace mirel_host {

// Paints the started plug-in's "Primary" GUI without a window: a full frame, then a parameter
// change of the first control's parameter and the minimal frame it asks for, painted over the
// first picture. Into `folder` go "<plug-in>-Primary.png" (the picture after the change),
// "<plug-in>-Primary.svg" and ".yaml" (a full frame of the new state, so that each shows the
// whole face) and "<plug-in>-Primary-minimal.yaml" (the frame of the change alone). Prints each
// file's path. 0, or the first code of a step that failed. [main-thread]
int ExportGUIFrames(mirel_shell::WCRecordingShell &shell, const std::string &folder);

// `mirel-host gui [--out FOLDER] [module]`: starts the plug-in, builds its "Primary" GUI and
// exports its frames (by default beside this program, in "<plug-in>-GUI").
int RunGUICommand(int argc, char **argv, const char *defaultModule);

} // namespace mirel_host
