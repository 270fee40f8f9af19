#include "resources/linux/WUDynamicLibrary.h"

#include <dlfcn.h>

MIREL_NAMESPACE_BEGIN

namespace Utils::Native {

void *OpenLibrary(const char *path, std::string &outError) {
    outError.clear();
    void *handle = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char *message = ::dlerror();
        outError = message != nullptr ? message : "dlopen failed";
    }
    return handle;
}

void CloseLibrary(void *handle) {
    if (handle != nullptr)
        ::dlclose(handle);
}

void *FindSymbol(void *handle, const char *name) {
    if (handle == nullptr || name == nullptr)
        return nullptr;
    return ::dlsym(handle, name);
}

bool GetPathOfAddress(const void *address, FM::WCStPath &outPath) {
    Dl_info info{};
    if (address == nullptr || ::dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return false;
    outPath = FM::WCStPath(info.dli_fname);
    return true;
}

} // namespace Utils::Native

MIREL_NAMESPACE_END
