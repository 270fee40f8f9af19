#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WUValidatable.h"
#include "files/WCStPath.h"
#include "resources/WCNativeModule.h"

MIREL_NAMESPACE_BEGIN

namespace Utils {

// A loaded module with the map of the entry points its user needs. The module is loaded in the
// constructor and unloaded in the destructor; the addresses are good in between. Invalid with
// eFaildToLoadPluginDLL when the module does not load (the loader's message in GetLoadError).
// Not copyable. The module is held by a WCNativeModule. [any-thread] once made.
class WCDLLInterface : public WUValidatable {
public:
    WCDLLInterface(const FM::WCStPath &modulePath, const std::vector<std::string> &entryPoints);
    ~WCDLLInterface() override;
    WCDLLInterface(const WCDLLInterface &) = delete;
    WCDLLInterface &operator=(const WCDLLInterface &) = delete;

    // Null for a name that was not asked for or that the module lacks.
    void *GetProcAddress(const std::string &name) const;
    template <typename T>
    T GetProc(const std::string &name) const {
        return reinterpret_cast<T>(GetProcAddress(name));
    }
    // eNoErr when every entry point asked for was found; eNotAPluginFile otherwise (the missing
    // names in `outMissing` when given); the load's code when the module did not load.
    int AssertProcAddressMap(std::vector<std::string> *outMissing = nullptr) const;
    const std::string &GetLoadError() const noexcept { return m_Module.GetLoadError(); }
    void *GetHandle() const noexcept { return m_Module.GetHandle(); }

private:
    WCNativeModule m_Module;
    std::map<std::string, void *> m_ProcAddressMap;
};

} // namespace Utils

MIREL_NAMESPACE_END
