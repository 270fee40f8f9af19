#pragma once

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// Codes the plug-in frame answers that are in use but have no name in the error table, so
// WTErrName gives "Unnamed error" for them.
inline constexpr WTErr kErrNoGUI = -3521;              // the named GUI (and "Primary") is absent
inline constexpr WTErr kErrGUIObjectNotFound = -3522;  // a pointer lookup in a GUI found nothing
inline constexpr WTErr kErrGUINotFullyCreated = -5015; // a GUI selector before the GUI is ready
inline constexpr WTErr kErrWrongAutomationInfoVersion = -5017;
inline constexpr WTErr kErrEmptyChunk = -5023;         // a preset chunk came out empty
inline constexpr WTErr kErrSampleRateTooHigh = -5026;  // above the process code's maximum
inline constexpr WTErr kErrRedisNotConnected = -21001; // the instance reports to no Redis server

MIREL_NAMESPACE_END
