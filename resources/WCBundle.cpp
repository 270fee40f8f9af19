#include "resources/WCBundle.h"

#include <string_view>

#include "resources/linux/WUDynamicLibrary.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

WCBundle::WCBundle(const void *addressInModule) {
    if (!Native::GetPathOfAddress(addressInModule, m_ExecutablePath)) {
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
    m_BundlePath = m_ExecutablePath.GetParent();
    for (FM::WCStPath folder = m_ExecutablePath.GetParent(); !folder.GetLeaf().empty();
         folder = folder.GetParent()) {
        const std::string_view leaf = folder.GetLeaf().view();
        if (leaf.size() > 7 && leaf.substr(leaf.size() - 7) == ".bundle") {
            m_BundlePath = folder;
            return;
        }
        if (folder.GetParent() == folder)
            return;
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
