#pragma once

#include <string>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// The one loader of native modules (shared objects) of the library. An object owns one reference
// to a loaded module: it unloads it when it dies or loads another, it moves and does not copy.
// Each platform implements it in its own subfolder (resources/linux/ over dlopen, dlsym, dlclose,
// dladdr and dlinfo); nothing else in the library includes the system's loader header.
// [any-thread] for the static queries; one object is used by one thread at a time.
class WCNativeModule {
public:
    // The system's handle of a loaded module (the same type as WTNativeDLLRefType).
    using WTHandle = void;

    WCNativeModule() noexcept = default;
    // Loads `path` at once; see Load for the codes, which GetLoadCode keeps.
    explicit WCNativeModule(const char *path);
    ~WCNativeModule();
    WCNativeModule(WCNativeModule &&other) noexcept;
    WCNativeModule &operator=(WCNativeModule &&other) noexcept;
    WCNativeModule(const WCNativeModule &) = delete;
    WCNativeModule &operator=(const WCNativeModule &) = delete;

    // Drops the module held, then loads the one at `path` (another reference when it is loaded
    // already), with its symbols resolved now and kept local. eDLLNotFound for a null or empty
    // path or for a path with a slash that names no file; eDLLLoadingFailed when the system's
    // loader refuses it (not a module, a missing dependency), with its message in GetLoadError.
    // A path without a slash is searched for the system's way.
    WTErr Load(const char *path);
    // Drops the reference held, if any.
    void Unload() noexcept;

    bool IsLoaded() const noexcept { return m_Handle != nullptr; }
    WTHandle *GetHandle() const noexcept { return m_Handle; }
    // The code of the last Load (eNoErr before any), and the loader's message of its failure.
    WTErr GetLoadCode() const noexcept { return m_LoadCode; }
    const std::string &GetLoadError() const noexcept { return m_LoadError; }

    // The address of the exported symbol `name`: eFuncPointerNotFound (and null) when the module
    // has no such symbol, when `name` is null, or when nothing is loaded.
    WTErr FindSymbol(const char *name, void *&outAddress) const;
    // The same, null when not found.
    void *GetSymbol(const char *name) const;
    template <typename F>
    F GetFunction(const char *name) const {
        return reinterpret_cast<F>(GetSymbol(name));
    }

    // ---- queries about modules already in the process; they take no reference ----------------
    // The file of the module that holds `address`: eDLLNotFound when no module holds it.
    static WTErr GetPathOfAddress(const void *address, FM::WCStPath &outPath);
    // The handle of the module that holds `address` (the main program's own handle for an address
    // in the program), and its file when `outPath` is given: eDLLNotFound when no module holds
    // it. The handle stays good while that module stays loaded.
    static WTErr GetModuleOfAddress(const void *address, WTHandle *&outHandle,
                                    FM::WCStPath *outPath = nullptr);
    // The file that a handle of a loaded module was loaded from: eMemNullPointer for null,
    // eDLLNotFound when the system gives no file for it (the main program).
    static WTErr GetPathOfHandle(WTHandle *handle, FM::WCStPath &outPath);

private:
    WTHandle *m_Handle = nullptr;
    WTErr m_LoadCode = eNoErr;
    std::string m_LoadError;
};

} // namespace Utils

MIREL_NAMESPACE_END
