#include "Code/Algorithm/linux/WUNativeModule.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstring>
#include <sys/stat.h>

MIREL_NAMESPACE_BEGIN

namespace NativeModule {

WTErr Load(char const *path, void *&handle, WCFixedStringBase *error) {
    handle = nullptr;
    if (path == nullptr || *path == 0)
        return eDLLNotFound;
    struct stat info {};
    if (::stat(path, &info) != 0) {
        if (error)
            *error = "no such file";
        return eDLLNotFound;
    }
    handle = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        if (error) {
            char const *message = ::dlerror();
            *error = message ? message : "dlopen failed";
        }
        return eDLLLoadingFailed;
    }
    return eNoErr;
}

void Unload(void *handle) {
    if (handle != nullptr)
        ::dlclose(handle);
}

void *Symbol(void *handle, char const *name) {
    if (handle == nullptr || name == nullptr)
        return nullptr;
    return ::dlsym(handle, name);
}

WTErr ModuleOfAddress(void const *address, void *&handle, WCFixedStringBase *path) {
    handle = nullptr;
    Dl_info info{};
    if (address == nullptr || ::dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return eDLLNotFound;
    // RTLD_NOLOAD finds the module already in the process without loading anything; the extra
    // reference it takes is dropped at once, the module holding `address` stays loaded anyway.
    handle = ::dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr) {
        // The main program is not known to the loader by its file name; its handle is the
        // one of the null name.
        char self[4096];
        const ssize_t length = ::readlink("/proc/self/exe", self, sizeof self - 1);
        char resolved[PATH_MAX];
        if (length <= 0 || ::realpath(info.dli_fname, resolved) == nullptr)
            return eDLLNotFound;
        self[length] = 0;
        if (std::strcmp(self, resolved) != 0)
            return eDLLNotFound;
        handle = ::dlopen(nullptr, RTLD_NOW);
        if (handle == nullptr)
            return eDLLNotFound;
    }
    ::dlclose(handle);
    if (path)
        *path = info.dli_fname;
    return eNoErr;
}

} // namespace NativeModule

MIREL_NAMESPACE_END
