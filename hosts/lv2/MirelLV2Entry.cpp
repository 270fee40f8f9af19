// The LV2 entry point of the generic wrapper. One binary serves every plug-in: each LV2 bundle
// `<name>.lv2` describes the plug-in `urn:mirel:<name>` and holds that plug-in's module, so the
// library descriptor learns everything from the bundle path the host opens it with.

#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <cstring>
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

mirel_lv2::WCLV2Plugin *Plugin(LV2_Handle instance) {
    return static_cast<mirel_lv2::WCLV2Plugin *>(instance);
}

void const *Feature(LV2_Feature const *const *features, char const *uri) {
    for (; features != nullptr && *features != nullptr; ++features) {
        if (std::strcmp((*features)->URI, uri) == 0)
            return (*features)->data;
    }
    return nullptr;
}

LV2_Handle Instantiate(LV2_Descriptor const *descriptor, double rate, char const *bundlePath,
                       LV2_Feature const *const *features) {
    std::unique_ptr<mirel_lv2::WCLV2Plugin> plugin(new (std::nothrow) mirel_lv2::WCLV2Plugin);
    if (plugin == nullptr)
        return nullptr;
    const std::string module = mirel_lv2::WCLV2Plugin::ModulePathFor(bundlePath, descriptor->URI);
    auto const *worker =
        static_cast<LV2_Worker_Schedule const *>(Feature(features, LV2_WORKER__schedule));
    auto const *map = static_cast<LV2_URID_Map const *>(Feature(features, LV2_URID__map));
    if (plugin->Open(module.c_str(), rate, worker, map) != 0)
        return nullptr;
    return plugin.release();
}

void Activate(LV2_Handle instance) {
    Plugin(instance)->Activate();
}

void Deactivate(LV2_Handle instance) {
    Plugin(instance)->Deactivate();
}

void ConnectPort(LV2_Handle instance, std::uint32_t port, void *data) {
    Plugin(instance)->ConnectPort(port, data);
}

void Run(LV2_Handle instance, std::uint32_t frames) {
    Plugin(instance)->Run(frames);
}

void Cleanup(LV2_Handle instance) {
    delete Plugin(instance);
}

LV2_Worker_Status Work(LV2_Handle instance, LV2_Worker_Respond_Function, LV2_Worker_Respond_Handle,
                       std::uint32_t size, void const *data) {
    return Plugin(instance)->Work(size, data);
}

// The work answers nothing back: its chains reach the audio thread through the process side.
LV2_Worker_Status WorkResponse(LV2_Handle, std::uint32_t, void const *) {
    return LV2_WORKER_SUCCESS;
}

LV2_State_Status Save(LV2_Handle instance, LV2_State_Store_Function store, LV2_State_Handle handle,
                      std::uint32_t, LV2_Feature const *const *) {
    return Plugin(instance)->Save(store, handle);
}

LV2_State_Status Restore(LV2_Handle instance, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle handle, std::uint32_t, LV2_Feature const *const *) {
    return Plugin(instance)->Restore(retrieve, handle);
}

void const *ExtensionData(char const *uri) {
    static const LV2_Worker_Interface worker{&Work, &WorkResponse, nullptr};
    static const LV2_State_Interface state{&Save, &Restore};
    if (std::strcmp(uri, LV2_WORKER__interface) == 0)
        return &worker;
    if (std::strcmp(uri, LV2_STATE__interface) == 0)
        return &state;
    return nullptr;
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
    library->plugin = {library->uri.c_str(), &Instantiate, &ConnectPort,  &Activate, &Run,
                       &Deactivate,          &Cleanup,     &ExtensionData};
    return &library->lib;
}
