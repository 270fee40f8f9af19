// The loader of resources/WCNativeModule.h over the system's dynamic loader.
#include "resources/WCNativeModule.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <utility>

MIREL_NAMESPACE_BEGIN

namespace Utils {

namespace {

std::string LoaderMessage(const char *fallback) {
    const char *message = ::dlerror();
    return message != nullptr ? message : fallback;
}

// True when `file` (as dladdr gave it) is the running program itself.
bool IsMainProgram(const char *file) {
    char self[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", self, sizeof self - 1);
    char resolved[PATH_MAX];
    if (length <= 0 || ::realpath(file, resolved) == nullptr)
        return false;
    self[length] = 0;
    return std::strcmp(self, resolved) == 0;
}

} // namespace

WCNativeModule::WCNativeModule(const char *path) {
    Load(path);
}

WCNativeModule::~WCNativeModule() {
    Unload();
}

WCNativeModule::WCNativeModule(WCNativeModule &&other) noexcept
    : m_Handle(std::exchange(other.m_Handle, nullptr)), m_LoadCode(other.m_LoadCode),
      m_LoadError(std::move(other.m_LoadError)) {}

WCNativeModule &WCNativeModule::operator=(WCNativeModule &&other) noexcept {
    if (this != &other) {
        Unload();
        m_Handle = std::exchange(other.m_Handle, nullptr);
        m_LoadCode = other.m_LoadCode;
        m_LoadError = std::move(other.m_LoadError);
    }
    return *this;
}

WTErr WCNativeModule::Load(const char *path) {
    Unload();
    m_LoadError.clear();
    m_LoadCode = eNoErr;
    if (path == nullptr || *path == 0) {
        m_LoadError = "no path";
        return m_LoadCode = eDLLNotFound;
    }
    struct stat info {};
    if (std::strchr(path, '/') != nullptr && ::stat(path, &info) != 0) {
        m_LoadError = "no such file";
        return m_LoadCode = eDLLNotFound;
    }
    m_Handle = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (m_Handle == nullptr) {
        m_LoadError = LoaderMessage("dlopen failed");
        return m_LoadCode = eDLLLoadingFailed;
    }
    return eNoErr;
}

void WCNativeModule::Unload() noexcept {
    if (m_Handle != nullptr)
        ::dlclose(std::exchange(m_Handle, nullptr));
}

WTErr WCNativeModule::FindSymbol(const char *name, void *&outAddress) const {
    outAddress = m_Handle != nullptr && name != nullptr ? ::dlsym(m_Handle, name) : nullptr;
    return outAddress != nullptr ? eNoErr : eFuncPointerNotFound;
}

void *WCNativeModule::GetSymbol(const char *name) const {
    void *address = nullptr;
    FindSymbol(name, address);
    return address;
}

WTErr WCNativeModule::GetPathOfAddress(const void *address, FM::WCStPath &outPath) {
    Dl_info info{};
    if (address == nullptr || ::dladdr(address, &info) == 0 || info.dli_fname == nullptr ||
        info.dli_fname[0] == 0)
        return eDLLNotFound;
    outPath = FM::WCStPath(info.dli_fname);
    return eNoErr;
}

WTErr WCNativeModule::GetModuleOfAddress(const void *address, WTHandle *&outHandle,
                                         FM::WCStPath *outPath) {
    outHandle = nullptr;
    Dl_info info{};
    if (address == nullptr || ::dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return eDLLNotFound;
    // RTLD_NOLOAD finds the module already in the process without loading anything; the extra
    // reference it takes is given back at once, the module holding `address` stays loaded anyway.
    void *handle = ::dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    // The main program is not known to the loader by its file name; its handle is the one of the
    // null name.
    if (handle == nullptr && IsMainProgram(info.dli_fname))
        handle = ::dlopen(nullptr, RTLD_LAZY);
    if (handle == nullptr)
        return eDLLNotFound;
    ::dlclose(handle);
    outHandle = handle;
    if (outPath != nullptr)
        *outPath = FM::WCStPath(info.dli_fname);
    return eNoErr;
}

WTErr WCNativeModule::GetPathOfHandle(WTHandle *handle, FM::WCStPath &outPath) {
    if (handle == nullptr)
        return eMemNullPointer;
    struct link_map *map = nullptr;
    if (::dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr || map->l_name == nullptr ||
        map->l_name[0] == 0)
        return eDLLNotFound;
    outPath = FM::WCStPath(map->l_name);
    return outPath.IsValid() ? eNoErr : eDLLNotFound;
}

} // namespace Utils

MIREL_NAMESPACE_END
