#pragma once

#include "core/MirelNamespace.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// The bundle that holds a module: "<Name>.bundle/Contents/<arch>/<module>.so" on this platform.
// Made from an address inside the module (a function of the plug-in) or from the module's path.
// A module outside any bundle answers its own folder as the bundle. Invalid with eFMFileNotFound
// when no loaded module holds the address or the path names no file. A plain value. [any-thread]
class WCBundle : public WUValidatable {
public:
    // The bundle of the module that holds `addressInModule`.
    explicit WCBundle(const void *addressInModule);
    explicit WCBundle(const FM::WCStPath &modulePath);

    // The module's file.
    int GetExecutablePath(FM::WCStPath &outPath) const;
    // The nearest enclosing folder whose name ends in ".bundle", else the module's folder.
    int GetBundlePath(FM::WCStPath &outPath) const;

private:
    void Locate();

    FM::WCStPath m_ExecutablePath;
    FM::WCStPath m_BundlePath;
};

} // namespace Utils

MIREL_NAMESPACE_END
