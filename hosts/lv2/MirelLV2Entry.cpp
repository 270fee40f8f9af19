// The LV2 entry point of the generic wrapper. One binary serves every plug-in: each LV2 bundle
// `<name>.lv2` describes the plug-in `urn:mirel:<name>` and holds that plug-in's module, so the
// library descriptor learns everything from the bundle path the host opens it with.

#include <lv2/core/lv2.h>

#include <memory>
#include <new>
#include <string>

#include "hosts/lv2/WCLV2Plugin.h"

namespace {

// What one bundle's library descriptor owns: the URI its plug-in descriptor points at.
struct WSLibrary {
    LV2_Lib_Descriptor lib{};
    std::string uri;
    LV2_Descriptor plugin{};
};

LV2_Handle Instantiate(LV2_Descriptor const *descriptor, double rate, char const *bundlePath,
                       LV2_Feature const *const *) {
    std::unique_ptr<mirel_lv2::WCLV2Plugin> plugin(new (std::nothrow) mirel_lv2::WCLV2Plugin);
    if (plugin == nullptr)
        return nullptr;
    const std::string module = mirel_lv2::WCLV2Plugin::ModulePathFor(bundlePath, descriptor->URI);
    if (plugin->Open(module.c_str(), rate) != 0)
        return nullptr;
    return plugin.release();
}

void ConnectPort(LV2_Handle instance, std::uint32_t port, void *data) {
    static_cast<mirel_lv2::WCLV2Plugin *>(instance)->ConnectPort(port, data);
}

void Run(LV2_Handle instance, std::uint32_t frames) {
    static_cast<mirel_lv2::WCLV2Plugin *>(instance)->Run(frames);
}

void Cleanup(LV2_Handle instance) {
    delete static_cast<mirel_lv2::WCLV2Plugin *>(instance);
}

void LibCleanup(LV2_Lib_Handle handle) {
    delete static_cast<WSLibrary *>(handle);
}

LV2_Descriptor const *GetPlugin(LV2_Lib_Handle handle, std::uint32_t index) {
    return index == 0 ? &static_cast<WSLibrary *>(handle)->plugin : nullptr;
}

} // namespace

extern "C" LV2_SYMBOL_EXPORT LV2_Lib_Descriptor const *
lv2_lib_descriptor(char const *bundlePath, LV2_Feature const *const *) {
    if (bundlePath == nullptr)
        return nullptr;
    std::string name = bundlePath;
    while (!name.empty() && name.back() == '/')
        name.pop_back();
    name = name.substr(name.find_last_of('/') + 1);
    if (name.size() <= 4 || name.compare(name.size() - 4, 4, ".lv2") != 0)
        return nullptr;
    auto *library = new (std::nothrow) WSLibrary;
    if (library == nullptr)
        return nullptr;
    library->uri = "urn:mirel:" + name.substr(0, name.size() - 4);
    library->lib = {library, sizeof(LV2_Lib_Descriptor), &LibCleanup, &GetPlugin};
    library->plugin = {library->uri.c_str(), &Instantiate, &ConnectPort, nullptr, &Run, nullptr,
                       &Cleanup, nullptr};
    return &library->lib;
}
