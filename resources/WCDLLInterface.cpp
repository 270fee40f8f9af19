#include "resources/WCDLLInterface.h"

#include "resources/linux/WUDynamicLibrary.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

WCDLLInterface::WCDLLInterface(const FM::WCStPath &modulePath,
                               const std::vector<std::string> &entryPoints) {
    m_Handle = Native::OpenLibrary(modulePath.GetNativePathString().c_str(), m_LoadError);
    if (m_Handle == nullptr) {
        SetError(eFaildToLoadPluginDLL);
        return;
    }
    for (const std::string &name : entryPoints)
        m_ProcAddressMap[name] = Native::FindSymbol(m_Handle, name.c_str());
}

WCDLLInterface::~WCDLLInterface() {
    Native::CloseLibrary(m_Handle);
}

void *WCDLLInterface::GetProcAddress(const std::string &name) const {
    const auto found = m_ProcAddressMap.find(name);
    return found == m_ProcAddressMap.end() ? nullptr : found->second;
}

int WCDLLInterface::AssertProcAddressMap(std::vector<std::string> *outMissing) const {
    if (!IsValid())
        return GetError();
    int err = eNoErr;
    for (const auto &[name, address] : m_ProcAddressMap) {
        if (address != nullptr)
            continue;
        err = eNotAPluginFile;
        if (outMissing != nullptr)
            outMissing->push_back(name);
    }
    return err;
}

} // namespace Utils

MIREL_NAMESPACE_END
