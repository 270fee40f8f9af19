#pragma once

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The few operations on loaded native modules (shared objects) that the plug-in frame needs.
// Nothing else in the layer includes the system's loader header. [any-thread]
namespace NativeModule {

// Loads the module at `path` (or takes another reference to it). On failure the loader's message
// goes to `error` when given, and the code is eDLLNotFound for a missing file, else
// eDLLLoadingFailed.
WTErr Load(char const *path, void *&handle, WCFixedStringBase *error = nullptr);
// Drops one reference taken by Load; null is ignored.
void Unload(void *handle);
// The address of an exported symbol, or null.
void *Symbol(void *handle, char const *name);
// The module that holds `address`, and its file path when `path` is given. The handle is not an
// extra reference: it stays valid while the module stays loaded.
WTErr ModuleOfAddress(void const *address, void *&handle, WCFixedStringBase *path = nullptr);

} // namespace NativeModule

MIREL_NAMESPACE_END
