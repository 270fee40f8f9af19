#include "resources/WCResContainerInfo.h"

#include <strings.h>

#include "files/WUBundles.h"
#include "resources/WCNativeModule.h"

MIREL_NAMESPACE_BEGIN

WCResContainerInfo::WCResContainerInfo(const FM::WCStPath &path, int mode, unsigned int flags)
    : m_Path(path), m_OpenMode(mode), m_Flags(flags) {
    DecideKind();
}

WCResContainerInfo::WCResContainerInfo(WTNativeDLLRefType *const module, unsigned int flags)
    : m_Flags(flags), m_pNativeHandle(module) {
    if (module == nullptr) {
        SetError(eMemNullPointer);
        return;
    }
    FM::WCStPath modulePath;
    // The system knows no file for the main program, or for what is no module's handle.
    if (Utils::WCNativeModule::GetPathOfHandle(module, modulePath) != eNoErr) {
        SetError(eRMInvalidNativeResContainer);
        return;
    }
    FM::WCStPath bundle;
    if (FM::GetPathToBundleGivenMainExecutable(modulePath, bundle) == eNoErr)
        m_Path = bundle;
    else
        m_Path = modulePath;
    DecideKind();
}

WCResContainerInfo::~WCResContainerInfo() = default;

bool WCResContainerInfo::IsNativeModuleExtension(const char *extension) {
    static const char *const kExtensions[] = {"dll", "exe", "vst3", "dpm", "aaxplugin"};
    for (const char *known : kExtensions)
        if (::strcasecmp(known, extension) == 0)
            return true;
    return false;
}

void WCResContainerInfo::DecideKind() {
    if (!m_Path.IsValid()) {
        SetError(eRMInvalidResContainer);
        return;
    }
    if (FM::IsBundlePath(m_Path)) {
        if ((m_OpenMode & RM::kResOpenNativeModule) != 0) {
            FM::WCStPath folder;
            if (FM::GetPathToBundleDLLFolder(m_Path, folder) != eNoErr) {
                SetError(eRMInvalidResContainer);
                return;
            }
            WCFixedString<255> leaf(m_Path.GetBase());
            leaf << ".dll";
            m_NativeModulePath = FM::WCStPath(folder, leaf.c_str());
            m_Kind = RM::kResContainerNative;
        } else {
            m_ResourcesFolder = FM::WCStPath(m_Path, "Contents/Resources");
            m_Kind = RM::kResContainerBundle;
        }
        return;
    }
    if (IsNativeModuleExtension(m_Path.GetExtension().c_str())) {
        m_NativeModulePath = m_Path;
        m_Kind = RM::kResContainerNative;
        return;
    }
    SetError(eRMInvalidResContainer);
}

MIREL_NAMESPACE_END
