#include "resources/WCDLLInterface.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

WCDLLInterface::WCDLLInterface(const FM::WCStPath &modulePath,
                               const std::vector<std::string> &entryPoints) {
    if (m_Module.Load(modulePath.GetNativePathString().c_str()) != eNoErr) {
        SetError(eFaildToLoadPluginDLL);
        return;
    }
    for (const std::string &name : entryPoints)
        m_ProcAddressMap[name] = m_Module.GetSymbol(name.c_str());
}

WCDLLInterface::~WCDLLInterface() = default;

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
