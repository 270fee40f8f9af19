#include "hosts/lv2/WCLV2Plugin.h"

#include <lv2/atom/atom.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Code/Control/WCAutomationManager.h"
#include "Code/Process/WCMeterManager.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"

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
    int err = m_Side.Open(modulePath, static_cast<int>(std::lround(rate)));
    if (err == ml::eNoErr)
        err = m_Side.FindNativeProcess(m_Process);
    if (err != ml::eNoErr)
        return err;
    ml::cALGORITHM &alg = *m_Side.Algorithm();
    auto const &needs = m_Side.DSPReqRes();
    err = m_Layout.Build(&alg, needs.inputs, needs.outputs);
    if (err != ml::eNoErr)
        return err;
    // The layout orders the ports by kind: audio in, audio out, control in, then the outputs.
    const std::size_t ports = m_Layout.Ports().size();
    m_FirstControlIn = static_cast<std::uint32_t>(needs.inputs + needs.outputs);
    m_FirstControlOut = m_FirstControlIn;
    while (m_FirstControlOut < ports &&
           m_Layout.Ports()[m_FirstControlOut].kind == WSLV2Port::eControlIn)
        ++m_FirstControlOut;
    m_Connections.assign(ports, nullptr);
    m_Seen.assign(ports, 0.0f);
    m_OutputValues = std::make_unique<std::atomic<float>[]>(ports);
    for (WSLV2Port const &port : m_Layout.Ports()) {
        m_Seen[port.index] = static_cast<float>(port.value);
        m_OutputValues[port.index].store(static_cast<float>(port.value));
    }
    m_InChannels.assign(static_cast<std::size_t>(std::max(needs.inputs, 0)), nullptr);
    m_OutChannels.assign(static_cast<std::size_t>(std::max(needs.outputs, 0)), nullptr);
    m_Silence.assign(kChunk, 0.0f);
    PlaceBlocks(static_cast<std::size_t>(kChunk) * std::max(needs.inputs, 1),
                static_cast<std::size_t>(kChunk) * std::max(needs.outputs, 1));
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

void WCLV2Plugin::PlaceBlocks(std::size_t inFloats, std::size_t outFloats) {
    // A store whose address matches a later load's in the low 12 bits holds that load up until
    // the store is done. The audio code reads and writes its state words on every frame, so the
    // blocks begin just past the state memory, modulo 4 KiB, and stay clear of it after.
    constexpr std::uintptr_t kPage = 4096;
    constexpr std::size_t kLine = 64;
    auto const stateEnd =
        reinterpret_cast<std::uintptr_t>(m_Side.StateMemory().data() + m_Side.StateMemory().size());
    const std::size_t outAt = (inFloats * sizeof(float) + kLine - 1) / kLine * kLine;
    m_Blocks.assign((outAt + outFloats * sizeof(float) + kPage + kLine) / sizeof(float), 0.0f);
    auto const base = reinterpret_cast<std::uintptr_t>(m_Blocks.data());
    const std::uintptr_t want = (stateEnd + kLine) / kLine * kLine % kPage;
    const std::uintptr_t shift = (want - base % kPage + kPage) % kPage;
    m_InterleavedIn = m_Blocks.data() + shift / sizeof(float);
    m_InterleavedOut = m_InterleavedIn + outAt / sizeof(float);
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
        if (work.port >= m_FirstControlIn && work.port < m_FirstControlOut)
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

void WCLV2Plugin::Interleave(float const *const *channels, int count, std::uint32_t frames,
                             float *out) {
    // Stereo, the common case, four frames at a time.
    if (count == 2) {
        float const *left = channels[0];
        float const *right = channels[1];
        std::uint32_t i = 0;
#if defined(__SSE2__)
        for (; i + 4 <= frames; i += 4) {
            const __m128 l = _mm_loadu_ps(left + i);
            const __m128 r = _mm_loadu_ps(right + i);
            _mm_storeu_ps(out + 2 * i, _mm_unpacklo_ps(l, r));
            _mm_storeu_ps(out + 2 * i + 4, _mm_unpackhi_ps(l, r));
        }
#endif
        for (; i < frames; ++i) {
            out[2 * i] = left[i];
            out[2 * i + 1] = right[i];
        }
        return;
    }
    for (int channel = 0; channel < count; ++channel) {
        float const *in = channels[channel];
        for (std::uint32_t i = 0; i < frames; ++i)
            out[i * count + channel] = in[i];
    }
}

void WCLV2Plugin::Deinterleave(float const *in, int count, std::uint32_t frames,
                               float *const *channels) {
    if (count == 2 && channels[0] != nullptr && channels[1] != nullptr) {
        float *left = channels[0];
        float *right = channels[1];
        std::uint32_t i = 0;
#if defined(__SSE2__)
        for (; i + 4 <= frames; i += 4) {
            const __m128 a = _mm_loadu_ps(in + 2 * i);
            const __m128 b = _mm_loadu_ps(in + 2 * i + 4);
            _mm_storeu_ps(left + i, _mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
            _mm_storeu_ps(right + i, _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
        }
#endif
        for (; i < frames; ++i) {
            left[i] = in[2 * i];
            right[i] = in[2 * i + 1];
        }
        return;
    }
    for (int channel = 0; channel < count; ++channel) {
        if (channels[channel] == nullptr)
            continue;
        float *out = channels[channel];
        for (std::uint32_t i = 0; i < frames; ++i)
            out[i] = in[i * count + channel];
    }
}

void WCLV2Plugin::Run(std::uint32_t frames) {
    if (m_Process == nullptr)
        return;
    m_Side.ServiceChains();
    for (std::uint32_t index = m_FirstControlIn; index < m_FirstControlOut; ++index) {
        auto const *port = static_cast<float const *>(m_Connections[index]);
        if (port == nullptr)
            continue;
        // Most blocks change nothing, so that is asked first. A value that is not a number is no
        // value; the control keeps the last one.
        const float value = *port;
        if (value == m_Seen[index] || !std::isfinite(value))
            continue;
        // A full worker queue takes nothing: the change is handed over again next block.
        if (Hand(WSWork{WSWork::eControl, index, value}))
            m_Seen[index] = value;
    }

    const int inputs = m_Layout.AudioInputs();
    const int outputs = m_Layout.AudioOutputs();
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t n = std::min(kChunk, frames - done);
        // An unconnected input reads silence; an unconnected output is left out.
        for (int channel = 0; channel < inputs; ++channel) {
            auto const *in = static_cast<float const *>(m_Connections[channel]);
            m_InChannels[channel] = in != nullptr ? in + done : m_Silence.data();
        }
        for (int channel = 0; channel < outputs; ++channel) {
            auto *out = static_cast<float *>(m_Connections[inputs + channel]);
            m_OutChannels[channel] = out != nullptr ? out + done : nullptr;
        }
        Interleave(m_InChannels.data(), inputs, n, m_InterleavedIn);
        m_Process(m_Side.CoefWords(), m_Side.StateWords(), m_InterleavedIn, m_InterleavedOut,
                  static_cast<std::int32_t>(n));
        Deinterleave(m_InterleavedOut, outputs, n, m_OutChannels.data());
        done += n;
    }

    for (std::uint32_t index = m_FirstControlOut; index < m_Connections.size(); ++index) {
        auto *out = static_cast<float *>(m_Connections[index]);
        if (out != nullptr)
            *out = m_OutputValues[index].load(std::memory_order_relaxed);
    }
    // Only this thread sets the flag, so a plain load decides; the main side clears it.
    m_FramesSinceIdle += frames;
    if (m_FramesSinceIdle >= kIdleFrames && !m_IdlePending.load(std::memory_order_acquire)) {
        m_FramesSinceIdle = 0;
        m_IdlePending.store(true, std::memory_order_relaxed);
        if (!Hand(WSWork{WSWork::eIdle, 0, 0.0f}))
            m_IdlePending.store(false, std::memory_order_relaxed);
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
