#pragma once

namespace mirel_shell {
class WCRecordingShell;
}

namespace mirel_host {

// Builds the plug-in's "Primary" GUI (GUI XML 1000) and, when the bundle has one, its "Secondary"
// GUI (1001), prints what each document read, shows a parameter change reaching the controls at
// idle, and disposes the second GUI; the first stays until the instance stops.
void TourGUIs(mirel_shell::WCRecordingShell &shell);

} // namespace mirel_host
