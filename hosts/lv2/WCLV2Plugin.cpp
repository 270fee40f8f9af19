#include "hosts/lv2/WCLV2Plugin.h"

#include <lv2/atom/atom.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Code/Control/WCAutomationManager.h"
#include "Code/Process/WCMeterManager.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "resources/ResourceManager.h"

namespace mirel_lv2 {

namespace {

constexpr char const *kStateKey = "urn:mirel:state#XPst";
const ml::WCFourCC kXPst("XPst");

static_assert(std::atomic<float>::is_always_lock_free, "meter values cross threads lock-free");

} // namespace

std::string WCLV2Plugin::ModulePathFor(char const *bundlePath, char const *uri) {
    if (bundlePath == nullptr || uri == nullptr)
        return {};
    std::string name = uri;
    name = name.substr(name.find_last_of(':') + 1);
    std::string path = bundlePath;
    if (!path.empty() && path.back() != '/')
        path += '/';
    return path + name + ".bundle/Contents/Linux64/" + name + ".so";
}

WCLV2Plugin::WCLV2Plugin() = default;

WCLV2Plugin::~WCLV2Plugin() {
    m_Side.SetAudioLive(false);
    if (m_Side.Algorithm() != nullptr)
        m_Side.Stop();
}

int WCLV2Plugin::Open(char const *modulePath, double rate, LV2_Worker_Schedule const *worker,
                      LV2_URID_Map const *map) {
    if (modulePath == nullptr)
        return ml::eMemNullPointer;
    if (!(rate >= 1.0 && rate <= 1.0e6))
        return ml::eOutOfRangeNumber;
    std::lock_guard<std::mutex> lock(m_MainLock);
    int err = m_Side.LoadModule(modulePath);
    ml::MirelComponentInfo info;
    if (err == ml::eNoErr)
        err = m_Side.GetModuleComponentInfo(0, info);
    if (err == ml::eNoErr)
        err = m_Side.Create(info);
    if (err == ml::eNoErr)
        err = m_Side.Algorithm()->ChangeSampleRate(static_cast<int>(std::lround(rate)));
    if (err == ml::eNoErr)
        err = m_Side.Start();
    if (err != ml::eNoErr)
        return err;

    ml::cALGORITHM &alg = *m_Side.Algorithm();
    ml::FM::WCStPath bundle;
    if (m_Side.Container() != nullptr)
        ml::RM::GetContainerPath(m_Side.Container(), bundle);
    std::uint64_t size = 0;
    err = alg.GetNSProcess(ml::GetCPUTypeForBundle(bundle), ml::GetCurrentOSType(), &m_Process,
                           &size);
    if (err != ml::eNoErr)
        return err;
    auto const &needs = m_Side.DSPReqRes();
    err = m_Layout.Build(&alg, needs.inputs, needs.outputs);
    if (err != ml::eNoErr)
        return err;
    const std::size_t ports = m_Layout.Ports().size();
    m_Connections.assign(ports, nullptr);
    m_Seen.assign(ports, 0.0f);
    m_OutputValues = std::make_unique<std::atomic<float>[]>(ports);
    for (WSLV2Port const &port : m_Layout.Ports()) {
        m_Seen[port.index] = static_cast<float>(port.value);
        m_OutputValues[port.index].store(static_cast<float>(port.value));
    }
    m_InterleavedIn.assign(static_cast<std::size_t>(kChunk) * std::max(needs.inputs, 1), 0.0f);
    m_InterleavedOut.assign(static_cast<std::size_t>(kChunk) * std::max(needs.outputs, 1), 0.0f);
    // The first meter read, answered here since the audio side is not live yet; from now on the
    // plug-in leaves meter reading to the idle ticks, whose reads never wait for the audio thread.
    alg.GetMeterManager().ReadMetersSend();
    m_Worker = worker;
    if (map != nullptr) {
        m_KeyXPst = map->map(map->handle, kStateKey);
        m_TypeChunk = map->map(map->handle, LV2_ATOM__Chunk);
    }
    return ml::eNoErr;
}

void WCLV2Plugin::Activate() {
    m_Side.SetAudioLive(true);
}

void WCLV2Plugin::Deactivate() {
    m_Side.SetAudioLive(false);
}

void WCLV2Plugin::ConnectPort(std::uint32_t index, void *data) {
    if (index < m_Connections.size())
        m_Connections[index] = data;
}

void WCLV2Plugin::ApplyControl(WSLV2Port const &port, float value) {
    ml::cALGORITHM &alg = *m_Side.Algorithm();
    double state = std::clamp(static_cast<double>(value), port.minimum, port.maximum);
    if (alg.RealWorldToState(port.paramID, state) != ml::eNoErr)
        return;
    ml::WCAutomationManager &automation = alg.GetAutomationManager();
    int err = ml::eNoErr;
    ml::BUFFER_HEADER *chain =
        automation.SetControllerValue(static_cast<int>(port.source), state, err);
    if (err == ml::eNoErr)
        automation.ExecuteAndDisposeBuffer(chain);
}

void WCLV2Plugin::ReadMeters() {
    // The read sent last time has not come back yet: the values it would give are not there.
    if (m_Side.ReadsAway() != 0)
        return;
    ml::WCMeterManager &meters = m_Side.Algorithm()->GetMeterManager();
    if (meters.ReadMetersReceive() == ml::eNoErr) {
        for (WSLV2Port const &port : m_Layout.Ports()) {
            if (port.kind != WSLV2Port::eControlOut)
                continue;
            // The meter holds a linear peak; its parameter shows it in dB over its own range.
            double peak = 0.0;
            meters.GetMeterValue(port.source, peak);
            const double db = peak > 0.0 ? 20.0 * std::log10(peak) : port.minimum;
            m_OutputValues[port.index].store(
                static_cast<float>(std::clamp(db, port.minimum, port.maximum)),
                std::memory_order_relaxed);
        }
    }
    meters.ReadMetersSend();
}

void WCLV2Plugin::DoWork(WSWork const &work) {
    switch (work.kind) {
    case WSWork::eControl:
        if (work.port < m_Layout.Ports().size())
            ApplyControl(m_Layout.Ports()[work.port], work.value);
        break;
    case WSWork::eIdle:
        ReadMeters();
        m_Side.Idle(kIdleLevel, 1);
        m_IdlePending.store(false, std::memory_order_release);
        break;
    }
    Update();
    for (WSLV2Port const &port : m_Layout.Ports()) {
        if (port.kind == WSLV2Port::eLatency)
            m_OutputValues[port.index].store(static_cast<float>(m_Side.Algorithm()->GetDelay()),
                                             std::memory_order_relaxed);
    }
}

void WCLV2Plugin::Update() {
    // What a loaded state or preset changed reaches the coefficients through the plug-in's own
    // update, which the shell runs.
    if (m_Side.Algorithm()->IsUpdateAlgRequired())
        m_Side.Update();
    m_Side.CollectChains();
}

LV2_Worker_Status WCLV2Plugin::Work(std::uint32_t size, void const *data) {
    if (size != sizeof(WSWork) || data == nullptr)
        return LV2_WORKER_ERR_UNKNOWN;
    WSWork work;
    std::memcpy(&work, data, sizeof work);
    std::lock_guard<std::mutex> lock(m_MainLock);
    DoWork(work);
    return LV2_WORKER_SUCCESS;
}

bool WCLV2Plugin::Hand(WSWork const &work) {
    if (m_Worker != nullptr)
        return m_Worker->schedule_work(m_Worker->handle, sizeof work, &work) == LV2_WORKER_SUCCESS;
    WCLV2ProcessSide::WCInPlace inPlace;
    std::lock_guard<std::mutex> lock(m_MainLock);
    DoWork(work);
    return true;
}

void WCLV2Plugin::Run(std::uint32_t frames) {
    if (m_Process == nullptr)
        return;
    m_Side.ServiceChains();
    std::vector<WSLV2Port> const &ports = m_Layout.Ports();
    for (WSLV2Port const &port : ports) {
        if (port.kind != WSLV2Port::eControlIn)
            continue;
        auto const *value = static_cast<float const *>(m_Connections[port.index]);
        // A value that is not a number is no value; the control keeps the last one.
        if (value == nullptr || !std::isfinite(*value) || *value == m_Seen[port.index])
            continue;
        // A full worker queue takes nothing: the change is handed over again next block.
        if (Hand(WSWork{WSWork::eControl, port.index, *value}))
            m_Seen[port.index] = *value;
    }

    const int inputs = m_Layout.AudioInputs();
    const int outputs = m_Layout.AudioOutputs();
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t n = std::min(kChunk, frames - done);
        for (int channel = 0; channel < inputs; ++channel) {
            auto const *in = static_cast<float const *>(m_Connections[ports[channel].index]);
            for (std::uint32_t i = 0; i < n; ++i)
                m_InterleavedIn[i * inputs + channel] = in != nullptr ? in[done + i] : 0.0f;
        }
        m_Process(m_Side.CoefWords(), m_Side.StateWords(), m_InterleavedIn.data(),
                  m_InterleavedOut.data(), static_cast<std::int32_t>(n));
        for (int channel = 0; channel < outputs; ++channel) {
            auto *out = static_cast<float *>(m_Connections[ports[inputs + channel].index]);
            if (out == nullptr)
                continue;
            for (std::uint32_t i = 0; i < n; ++i)
                out[done + i] = m_InterleavedOut[i * outputs + channel];
        }
        done += n;
    }

    for (WSLV2Port const &port : ports) {
        auto *out = static_cast<float *>(m_Connections[port.index]);
        const bool output = port.kind == WSLV2Port::eControlOut || port.kind == WSLV2Port::eLatency;
        if (output && out != nullptr)
            *out = m_OutputValues[port.index].load(std::memory_order_relaxed);
    }
    m_FramesSinceIdle += frames;
    if (m_FramesSinceIdle >= kIdleFrames &&
        !m_IdlePending.exchange(true, std::memory_order_acq_rel)) {
        m_FramesSinceIdle = 0;
        if (!Hand(WSWork{WSWork::eIdle, 0, 0.0f}))
            m_IdlePending.store(false, std::memory_order_release);
    }
}

LV2_State_Status WCLV2Plugin::Save(LV2_State_Store_Function store, LV2_State_Handle handle) {
    if (m_KeyXPst == 0)
        return LV2_STATE_ERR_NO_FEATURE;
    std::lock_guard<std::mutex> lock(m_MainLock);
    ml::Utils::WCStMemObj chunk;
    if (m_Side.Algorithm()->GetChunk(kXPst, chunk, true) != ml::eNoErr)
        return LV2_STATE_ERR_UNKNOWN;
    return store(handle, m_KeyXPst, chunk.GetPtr(), chunk.GetSize(), m_TypeChunk,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status WCLV2Plugin::Restore(LV2_State_Retrieve_Function retrieve,
                                      LV2_State_Handle handle) {
    if (m_KeyXPst == 0)
        return LV2_STATE_ERR_NO_FEATURE;
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    void const *data = retrieve(handle, m_KeyXPst, &size, &type, &flags);
    if (data == nullptr)
        return LV2_STATE_ERR_NO_PROPERTY;
    if (type != m_TypeChunk)
        return LV2_STATE_ERR_BAD_TYPE;
    std::lock_guard<std::mutex> lock(m_MainLock);
    ml::cALGORITHM &alg = *m_Side.Algorithm();
    if (alg.SetChunk(kXPst, ml::Utils::WCStConstMemObj(data, size)) != ml::eNoErr)
        return LV2_STATE_ERR_UNKNOWN;
    // The state wins over what the ports showed until now; a port the host moves later is a
    // change, and wins in turn.
    for (WSLV2Port const &port : m_Layout.Ports()) {
        auto const *value = static_cast<float const *>(m_Connections[port.index]);
        if (port.kind == WSLV2Port::eControlIn && value != nullptr)
            m_Seen[port.index] = *value;
    }
    Update();
    return LV2_STATE_SUCCESS;
}

} // namespace mirel_lv2
