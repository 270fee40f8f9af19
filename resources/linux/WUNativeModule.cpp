#include "resources/linux/WUNativeModule.h"

#include <dlfcn.h>
#include <link.h>

MIREL_NAMESPACE_BEGIN

namespace RM::Native {

int GetModulePath(WTNativeDLLRefType *const module, FM::WCStPath &outPath) {
    if (module == nullptr)
        return eMemNullPointer;
    struct link_map *map = nullptr;
    if (::dlinfo(module, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr || map->l_name == nullptr ||
        map->l_name[0] == 0)
        return eRMInvalidNativeResContainer;
    outPath = FM::WCStPath(map->l_name);
    return outPath.IsValid() ? eNoErr : eRMInvalidNativeResContainer;
}

WTNativeDLLRefType *GetModuleOfAddress(const void *address) {
    Dl_info info{};
    if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return nullptr;
    // RTLD_NOLOAD finds the module already there; the reference it adds is given back at once,
    // the module stays loaded by whoever loaded it.
    void *handle = ::dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr)
        ::dlclose(handle);
    return handle;
}

} // namespace RM::Native

MIREL_NAMESPACE_END
