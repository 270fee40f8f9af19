#pragma once

#include <vector>

#include "Code/Algorithm/WSParamMaps.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace DisplayFunctions {

// The name a parameter without a display function falls back to.
inline constexpr char const *kDefaultName = "DisplayNothing";

// [main-thread] Adds the built-in display functions ("DisplayFloat0" to "DisplayFloat4",
// "DisplayVuHold", "DisplayOnOff", "DisplayInOut", ...) to the map. None of them allocates when
// it runs.
void AddBuiltIns(WTDisplayFunctionsMap &map);

// [main-thread] The display of "DisplayRealWorldString": the string at index real world of the
// table, empty out of range. The table is copied into the function.
DisplayFunctionProxy MakeRealWorldString(std::vector<WCFixedString<127>> const &table);

} // namespace DisplayFunctions

MIREL_NAMESPACE_END
