#pragma once

#include "Code/Algorithm/WCMirelAPI3_PluginSide_RequestAndResponse.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
class CStandardGUI_X;

// The named requests: JSON in, JSON out. Each reads its arguments from "params" of the request
// (a missing argument takes its empty default: "" for a name, 0 for a number, false for a flag,
// "Primary" for "gui_name"), writes results under "result" of the response, stores its code in
// the raw record and, on failure, its error text. A number argument accepts boolean, signed,
// unsigned and float JSON; any other type throws the JSON library's type error 302, which the
// request lets through to the shell. A "gui_name" that names no GUI acts on "Primary".
// A request whose work belongs to a Part not built yet (GUI, automation, MIDI, presets) answers
// eNotImplemented (-25) for a target that exists; none answers 0 without doing its work.
// The shell binds these by name; the library keeps no table of them.
// [main-thread] unless the shell serialises the calls itself.
namespace MirelAPI3Internal {

using Request = WCMirelAPI3_PluginSide_RequestAndResponse;

// The GUI a request acts on: the one its "gui_name" names, else "Primary"; null when neither
// exists.
CStandardGUI_X *FindRequestGUI(cALGORITHM &alg, Request const &request);

int GetAutomationControlIndexByName(Request &request);
int GetAutomationRefCons(Request &request);
int GetAutomationControlResetState(Request &request);
int GetAutomationControlByNameHack(Request &request);
int GetGuiControlPtrByNameHack(Request &request);
int GetPressedToolbarButtonHack(Request &request);
int GetGuiLimitRectByIndex(Request &request);
int InsideWhichControl(Request &request);
int IsToolbarControlUnderPoint(Request &request);
int IsSupportContentScale(Request &request);
int UpdateDPIScalingFactor(Request &request);
int SetViewRect(Request &request);
int FileDragOver(Request &request);
int FileDrop(Request &request);
int NotifyAutomation(Request &request);
int NotifyAutomationAllParams(Request &request);
int SetNoiseRatio(Request &request);
int GetPluginValue_c_str(Request &request);
int GetPluginValue_double(Request &request);
int GetPluginValue_float(Request &request);
int SetPluginValue_bool(Request &request);
int SetPluginValue_c_str(Request &request);
int SetPluginValue_double(Request &request);
int SetRedisKeyValue(Request &request);
int GetMIDIControlID(Request &request);
int SetMIDIControlID(Request &request);
int GetMIDIEventControls(Request &request);
int SetCanControlDAWMixer(Request &request);
int TransportChange(Request &request);
int UpdateHostTrackState(Request &request);
int GetCurrentPresetInfoHack(Request &request);
int SetCurrentPresetInfoHack(Request &request);
int GetPresetCompatibleSubComps(Request &request);
int LoadControlsFromPresetHack(Request &request);
int PreparePresetChunkHack(Request &request);

} // namespace MirelAPI3Internal

MIREL_NAMESPACE_END
