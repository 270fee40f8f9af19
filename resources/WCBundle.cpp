#include "resources/WCBundle.h"

#include <filesystem>

#include "resources/WCNativeModule.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

WCBundle::WCBundle(const void *addressInModule) {
    if (WCNativeModule::GetPathOfAddress(addressInModule, m_ExecutablePath) != eNoErr) {
        SetError(eFMFileNotFound);
        return;
    }
    Locate();
}

WCBundle::WCBundle(const FM::WCStPath &modulePath) : m_ExecutablePath(modulePath) {
    if (!m_ExecutablePath.IsFile()) {
        SetError(eFMFileNotFound);
        return;
    }
    Locate();
}

void WCBundle::Locate() {
    const std::filesystem::path module(m_ExecutablePath.GetNativePathString().c_str());
    m_BundlePath = FM::WCStPath(module.parent_path().string());
    for (std::filesystem::path folder = module.parent_path();
         folder.has_relative_path() && folder != folder.parent_path();
         folder = folder.parent_path()) {
        if (folder.extension() == ".bundle") {
            m_BundlePath = FM::WCStPath(folder.string());
            return;
        }
    }
}

int WCBundle::GetExecutablePath(FM::WCStPath &outPath) const {
    if (!IsValid())
        return GetError();
    outPath = m_ExecutablePath;
    return eNoErr;
}

int WCBundle::GetBundlePath(FM::WCStPath &outPath) const {
    if (!IsValid())
        return GetError();
    outPath = m_BundlePath;
    return eNoErr;
}

} // namespace Utils

MIREL_NAMESPACE_END
