#pragma once

#include <string>

#include "core/MirelNamespace.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Utils::Native {

// The loader services that WCBundle and WCDLLInterface need, over dlopen, dlsym and dladdr.
// [any-thread]

// Loads a shared object with its symbols resolved now and kept local; null on failure, with the
// loader's message in `outError`.
void *OpenLibrary(const char *path, std::string &outError);
void CloseLibrary(void *handle);
// Null when the library has no such symbol.
void *FindSymbol(void *handle, const char *name);
// The file of the loaded module holding `address`; false when no module holds it.
bool GetPathOfAddress(const void *address, FM::WCStPath &outPath);

} // namespace Utils::Native

MIREL_NAMESPACE_END
