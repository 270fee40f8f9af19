#pragma once

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN
namespace FM {

// Bundles: folders named "<name>.bundle" holding "Contents/..." . The predicates that test the
// name only never touch the disk; the "Existing" ones also ask for a folder. [any-thread]

// Case-insensitive comparison of two extensions, either with or without its leading dot.
bool IsSameExtension(char const *extension1, char const *extension2);
bool IsBundleExtension(char const *extension);
// The leaf's extension is "bundle" (a plain file of that name passes too).
bool IsBundlePath(WCStPath const &path);
bool IsExistingBundle(WCStPath const &path);
// A bundle path none of whose parent folders is a bundle itself.
bool IsBundleAndOnlyBundlePath(WCStPath const &path);
bool IsExistingBundleAndOnlyBundle(WCStPath const &path);

// The layout. Each answers the bundle's invalid code, or eNoErr with the path.
int GetPathToBundleResourcesFolder(WCStPath const &bundle, WCStPath &outPath); // Contents/Resources
int GetPathToBundlePluginsFolder(WCStPath const &bundle, WCStPath &outPath);   // Contents/PlugIns
int GetPathToBundleLinux32Folder(WCStPath const &bundle, WCStPath &outPath);   // Contents/Linux32
int GetPathToBundleLinux64Folder(WCStPath const &bundle, WCStPath &outPath);   // Contents/Linux64
// "Contents/Win64" on a 64-bit build ("Win" and the pointer width in bits).
int GetPathToBundleDLLFolder(WCStPath const &bundle, WCStPath &outPath);
// The shared object "Contents/Linux64/<base name>.so" of an existing bundle, which must be a
// plain file and not a link; eBundleExecutableNotFound otherwise.
int GetPathToBundleMainExecutable(WCStPath const &bundle, WCStPath &outPath);
// The bundle three levels above an executable; eBundleExecutableNotFound when that is not a
// bundle path.
int GetPathToBundleGivenMainExecutable(WCStPath const &executable, WCStPath &outPath);

} // namespace FM
MIREL_NAMESPACE_END
