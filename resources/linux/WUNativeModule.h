#pragma once

#include "core/MirelNamespace.h"
#include "files/WCStPath.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

namespace RM::Native {

// The few services of loaded modules the resource manager needs. Shared objects carry no
// resource sections here, so native resources are always answered eRMInvalidNativeResContainer;
// only the path of a loaded module is real, which lets a plug-in attach to its own bundle.
// [any-thread]

// The file a module handle (from dlopen) was loaded from; eRMInvalidNativeResContainer when the
// system does not know the handle.
int GetModulePath(WTNativeDLLRefType *const module, FM::WCStPath &outPath);

// The handle of the module that holds `address`, without adding a reference, or null.
WTNativeDLLRefType *GetModuleOfAddress(const void *address);

} // namespace RM::Native

MIREL_NAMESPACE_END
