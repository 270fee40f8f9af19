#pragma once

#include "core/MirelNamespace.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// Kinds of container.
inline constexpr int kResContainerBundle = 1;
inline constexpr int kResContainerNative = 2;

// Bit of the open mode: open the native module inside the bundle, not its resources folder.
inline constexpr int kResOpenNativeModule = 0x2;

} // namespace RM

// What a container is, decided from the path it is opened with: a bundle path gives a bundle
// container over "<bundle>/Contents/Resources" (or, with RM::kResOpenNativeModule in the mode, the
// module in the bundle's module folder); a file of a native module's extension gives a native
// container; anything else is invalid with eRMInvalidResContainer. Infos compare by the path
// given, which is how the manager finds an open container. [any-thread] on distinct objects.
class WCResContainerInfo : public WUValidatable {
public:
    WCResContainerInfo(const FM::WCStPath &path, int mode, unsigned int flags);
    // A module already loaded: its path comes from the system; a module inside a bundle opens
    // the bundle.
    WCResContainerInfo(WTNativeDLLRefType *const module, unsigned int flags);
    ~WCResContainerInfo() override;

    bool operator<(const WCResContainerInfo &other) const { return m_Path < other.m_Path; }

    const FM::WCStPath &GetPath() const noexcept { return m_Path; }
    const FM::WCStPath &GetResourcesFolder() const noexcept { return m_ResourcesFolder; }
    const FM::WCStPath &GetNativeModulePath() const noexcept { return m_NativeModulePath; }
    int GetKind() const noexcept { return m_Kind; }
    int GetOpenMode() const noexcept { return m_OpenMode; }
    unsigned int GetFlags() const noexcept { return m_Flags; }
    WTNativeDLLRefType *GetNativeHandle() const noexcept { return m_pNativeHandle; }
    void SetNativeHandle(WTNativeDLLRefType *handle) noexcept { m_pNativeHandle = handle; }

    // Whether the extension (without its dot) is one of a native module.
    static bool IsNativeModuleExtension(const char *extension);

protected:
    void DecideKind();

    FM::WCStPath m_Path;
    int m_OpenMode = 0;
    unsigned int m_Flags = 0;
    FM::WCStPath m_ResourcesFolder;
    FM::WCStPath m_NativeModulePath;
    int m_Kind = 0;
    WTNativeDLLRefType *m_pNativeHandle = nullptr;
};

MIREL_NAMESPACE_END
