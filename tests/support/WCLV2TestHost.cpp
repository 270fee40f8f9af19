#include "tests/support/WCLV2TestHost.h"

#include <dlfcn.h>

#include <cstring>

namespace mirel_test {

namespace {

LV2_State_Status Store(LV2_State_Handle handle, std::uint32_t key, void const *value,
                       std::size_t size, std::uint32_t type, std::uint32_t) {
    auto &state = *static_cast<WCLV2TestHost::WTState *>(handle);
    auto const *bytes = static_cast<char const *>(value);
    state[key] = {type, std::vector<char>(bytes, bytes + size)};
    return LV2_STATE_SUCCESS;
}

void const *Retrieve(LV2_State_Handle handle, std::uint32_t key, std::size_t *size,
                     std::uint32_t *type, std::uint32_t *flags) {
    auto const &state = *static_cast<WCLV2TestHost::WTState const *>(handle);
    auto found = state.find(key);
    if (found == state.end())
        return nullptr;
    *size = found->second.second.size();
    *type = found->second.first;
    *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
    return found->second.second.data();
}

} // namespace

WCLV2TestHost::~WCLV2TestHost() {
    if (m_Thread.joinable()) {
        {
            std::lock_guard<std::mutex> lock(m_QueueMutex);
            m_Stopping = true;
        }
        m_QueueChanged.notify_all();
        m_Thread.join();
    }
    if (m_Instance != nullptr) {
        if (m_Plugin->deactivate != nullptr)
            m_Plugin->deactivate(m_Instance);
        m_Plugin->cleanup(m_Instance);
    }
    if (m_Lib != nullptr)
        m_Lib->cleanup(m_Lib->handle);
    if (m_Library != nullptr)
        dlclose(m_Library);
}

LV2_URID WCLV2TestHost::MapURI(LV2_URID_Map_Handle handle, char const *uri) {
    return static_cast<WCLV2TestHost *>(handle)->Map(uri);
}

LV2_URID WCLV2TestHost::Map(char const *uri) {
    auto [at, added] = m_URIs.emplace(uri, static_cast<LV2_URID>(m_URIs.size() + 1));
    return at->second;
}

std::string WCLV2TestHost::Open(std::string const &bundle, char const *binary, double rate,
                                int inputs, int outputs, std::vector<float> const &controls,
                                EWorker worker) {
    const std::string path = bundle + "/" + binary;
    m_Library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_Library == nullptr)
        return dlerror();
    auto getLib =
        reinterpret_cast<LV2_Lib_Descriptor_Function>(dlsym(m_Library, "lv2_lib_descriptor"));
    if (getLib == nullptr)
        return "no lv2_lib_descriptor in " + path;
    m_Lib = getLib((bundle + "/").c_str(), nullptr);
    m_Plugin = m_Lib != nullptr ? m_Lib->get_plugin(m_Lib->handle, 0) : nullptr;
    if (m_Plugin == nullptr)
        return "no plug-in in " + bundle;
    m_WorkerKind = worker;
    LV2_Feature const *features[] = {&m_MapFeature, worker == eNone ? nullptr : &m_ScheduleFeature,
                                     nullptr};
    m_Instance = m_Plugin->instantiate(m_Plugin, rate, (bundle + "/").c_str(), features);
    if (m_Instance == nullptr)
        return "the plug-in did not instantiate";
    if (m_Plugin->extension_data != nullptr) {
        m_WorkerInterface = static_cast<LV2_Worker_Interface const *>(
            m_Plugin->extension_data(LV2_WORKER__interface));
        m_StateInterface = static_cast<LV2_State_Interface const *>(
            m_Plugin->extension_data(LV2_STATE__interface));
    }
    if (worker != eNone && m_WorkerInterface == nullptr)
        return "the plug-in has no worker interface";

    m_In.assign(inputs, std::vector<float>(kMaxFrames, 0.0f));
    m_Out.assign(outputs, std::vector<float>(kMaxFrames, 0.0f));
    m_Controls = controls;
    m_FirstControl = static_cast<std::uint32_t>(inputs + outputs);
    std::uint32_t port = 0;
    for (auto &buffer : m_In)
        m_Plugin->connect_port(m_Instance, port++, buffer.data());
    for (auto &buffer : m_Out)
        m_Plugin->connect_port(m_Instance, port++, buffer.data());
    for (float &value : m_Controls)
        m_Plugin->connect_port(m_Instance, port++, &value);
    if (m_Plugin->activate != nullptr)
        m_Plugin->activate(m_Instance);
    if (worker == eThread)
        m_Thread = std::thread([this] { WorkerLoop(); });
    return {};
}

void WCLV2TestHost::Run(std::uint32_t frames) {
    m_Plugin->run(m_Instance, frames);
}

LV2_Worker_Status WCLV2TestHost::Schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                          void const *data) {
    auto &host = *static_cast<WCLV2TestHost *>(handle);
    if (size > sizeof(WSMessage::bytes))
        return LV2_WORKER_ERR_NO_SPACE;
    std::unique_lock<std::mutex> lock(host.m_QueueMutex, std::defer_lock);
    if (host.m_WorkerKind == eThread)
        lock.lock();
    if (host.m_QueueTail - host.m_QueueHead == host.m_Queue.size())
        return LV2_WORKER_ERR_NO_SPACE;
    WSMessage &message = host.m_Queue[host.m_QueueTail++ % host.m_Queue.size()];
    message.size = size;
    std::memcpy(message.bytes.data(), data, size);
    if (host.m_WorkerKind == eThread)
        host.m_QueueChanged.notify_one();
    return LV2_WORKER_SUCCESS;
}

void WCLV2TestHost::RunQueued() {
    while (m_QueueHead != m_QueueTail) {
        WSMessage const &message = m_Queue[m_QueueHead % m_Queue.size()];
        m_WorkerInterface->work(
            m_Instance,
            [](LV2_Worker_Respond_Handle, std::uint32_t, void const *) {
                return LV2_WORKER_SUCCESS;
            },
            nullptr, message.size, message.bytes.data());
        ++m_QueueHead;
    }
}

void WCLV2TestHost::WorkerLoop() {
    std::unique_lock<std::mutex> lock(m_QueueMutex);
    for (;;) {
        m_QueueChanged.wait(lock, [this] { return m_Stopping || m_QueueHead != m_QueueTail; });
        if (m_Stopping)
            return;
        ++m_Working;
        WSMessage message = m_Queue[m_QueueHead++ % m_Queue.size()];
        lock.unlock();
        m_WorkerInterface->work(
            m_Instance,
            [](LV2_Worker_Respond_Handle, std::uint32_t, void const *) {
                return LV2_WORKER_SUCCESS;
            },
            nullptr, message.size, message.bytes.data());
        lock.lock();
        --m_Working;
        m_QueueChanged.notify_all();
    }
}

void WCLV2TestHost::DoWork() {
    if (m_WorkerKind == eBetweenBlocks) {
        RunQueued();
        return;
    }
    if (m_WorkerKind == eThread) {
        std::unique_lock<std::mutex> lock(m_QueueMutex);
        m_QueueChanged.wait(lock, [this] { return m_QueueHead == m_QueueTail && m_Working == 0; });
    }
}

LV2_State_Status WCLV2TestHost::Save(WTState &state) {
    if (m_StateInterface == nullptr)
        return LV2_STATE_ERR_NO_FEATURE;
    LV2_Feature const *features[] = {&m_MapFeature, nullptr};
    return m_StateInterface->save(m_Instance, &Store, &state, LV2_STATE_IS_POD, features);
}

LV2_State_Status WCLV2TestHost::Restore(WTState const &state) {
    if (m_StateInterface == nullptr)
        return LV2_STATE_ERR_NO_FEATURE;
    LV2_Feature const *features[] = {&m_MapFeature, nullptr};
    return m_StateInterface->restore(m_Instance, &Retrieve, const_cast<WTState *>(&state),
                                     LV2_STATE_IS_POD, features);
}

} // namespace mirel_test
