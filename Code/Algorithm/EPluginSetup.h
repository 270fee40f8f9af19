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

// The slot of a setup in a parameter's two-element arrays: B is 1, A and anything else 0. A
// caller that means the active setup resolves -1 first.
constexpr int SetupSlot(EPluginSetup setup) noexcept {
    return setup == eSetupB ? 1 : 0;
}

MIREL_NAMESPACE_END
