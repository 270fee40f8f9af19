#pragma once

#include "Code/Algorithm/MirelComponentInfo.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
struct WTResContainerType;

MIREL_NAMESPACE_END

// The C entry points of a plug-in module, through which a shell lists its components and
// creates and destroys their algorithms. A module exports them with C linkage under the names
// below; a shell binds them with the system's symbol lookup.
extern "C" {
// Fills `out` with component number `index`: 0, or -8006 (ePluginSubComponentNotFound) past the
// last one, -4003 for a null `out`.
typedef int (*MirelPluginGetComponentInfoFunc)(int index,
                                               MIREL_NAMESPACE_NAME::MirelComponentInfo *out);
// Constructs the algorithm of a component; null when the module has no such component.
typedef MIREL_NAMESPACE_NAME::cALGORITHM *(*MirelPluginCreateFunc)(
    MIREL_NAMESPACE_NAME::MirelComponentInfo const *info,
    MIREL_NAMESPACE_NAME::WTResContainerType **container);
// Destroys an algorithm that the same module created, after its Dispose.
typedef void (*MirelPluginDestroyFunc)(MIREL_NAMESPACE_NAME::cALGORITHM *alg);
}

#define MIREL_PLUGIN_GET_COMPONENT_INFO_NAME "MirelPlugin_GetComponentInfo"
#define MIREL_PLUGIN_CREATE_NAME "MirelPlugin_CreateAlgorithm"
#define MIREL_PLUGIN_DESTROY_NAME "MirelPlugin_DestroyAlgorithm"
