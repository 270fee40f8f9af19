#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// One of the two complete settings of an instance; -1 means the active one or both, as each
// function that takes it says.
enum EPluginSetup : int {
    eCurrentSetup = -1,
    eSetupA = 0,
    eSetupB = 1,
};

MIREL_NAMESPACE_END
