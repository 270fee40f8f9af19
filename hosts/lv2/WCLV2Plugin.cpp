#include "hosts/lv2/WCLV2Plugin.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "Code/Control/WCAutomationManager.h"
#include "Code/Process/WCMeterManager.h"
#include "core/WTErrors.h"
#include "resources/ResourceManager.h"

namespace mirel_lv2 {

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
    if (m_Shell.Algorithm() != nullptr)
        m_Shell.Stop();
}

int WCLV2Plugin::Open(char const *modulePath, double rate) {
    if (modulePath == nullptr)
        return ml::eMemNullPointer;
    if (!(rate >= 1.0 && rate <= 1.0e6))
        return ml::eOutOfRangeNumber;
    int err = m_Shell.LoadModule(modulePath);
    ml::MirelComponentInfo info;
    if (err == ml::eNoErr)
        err = m_Shell.GetModuleComponentInfo(0, info);
    if (err == ml::eNoErr)
        err = m_Shell.Create(info);
    if (err == ml::eNoErr)
        err = m_Shell.Algorithm()->ChangeSampleRate(static_cast<int>(std::lround(rate)));
    if (err == ml::eNoErr)
        err = m_Shell.Start();
    if (err != ml::eNoErr)
        return err;

    ml::cALGORITHM &alg = *m_Shell.Algorithm();
    ml::FM::WCStPath bundle;
    if (m_Shell.Container() != nullptr)
        ml::RM::GetContainerPath(m_Shell.Container(), bundle);
    std::uint64_t size = 0;
    err = alg.GetNSProcess(ml::GetCPUTypeForBundle(bundle), ml::GetCurrentOSType(), &m_Process,
                           &size);
    if (err != ml::eNoErr)
        return err;
    auto const &needs = m_Shell.DSPReqRes();
    err = m_Layout.Build(&alg, needs.inputs, needs.outputs);
    if (err != ml::eNoErr)
        return err;
    m_Connections.assign(m_Layout.Ports().size(), nullptr);
    m_Sent.assign(m_Layout.Ports().size(), std::numeric_limits<float>::quiet_NaN());
    m_InterleavedIn.assign(static_cast<std::size_t>(kChunk) * std::max(needs.inputs, 1), 0.0f);
    m_InterleavedOut.assign(static_cast<std::size_t>(kChunk) * std::max(needs.outputs, 1), 0.0f);
    m_Shell.ClearLog();
    return ml::eNoErr;
}

void WCLV2Plugin::ConnectPort(std::uint32_t index, void *data) {
    if (index < m_Connections.size())
        m_Connections[index] = data;
}

void WCLV2Plugin::ApplyControls() {
    ml::cALGORITHM &alg = *m_Shell.Algorithm();
    ml::WCAutomationManager &automation = alg.GetAutomationManager();
    for (WSLV2Port const &port : m_Layout.Ports()) {
        auto const *value = static_cast<float const *>(m_Connections[port.index]);
        // A value that is not a number is no value; the control keeps the last one.
        if (port.kind != WSLV2Port::eControlIn || value == nullptr || !std::isfinite(*value) ||
            *value == m_Sent[port.index])
            continue;
        m_Sent[port.index] = *value;
        double state = std::clamp(static_cast<double>(*value), port.minimum, port.maximum);
        if (alg.RealWorldToState(port.paramID, state) != ml::eNoErr)
            continue;
        int err = ml::eNoErr;
        ml::BUFFER_HEADER *chain =
            automation.SetControllerValue(static_cast<int>(port.source), state, err);
        if (err == ml::eNoErr)
            automation.ExecuteAndDisposeBuffer(chain);
    }
}

void WCLV2Plugin::ReadMeters() {
    ml::cALGORITHM &alg = *m_Shell.Algorithm();
    ml::WCMeterManager &meters = alg.GetMeterManager();
    bool read = false;
    for (WSLV2Port const &port : m_Layout.Ports()) {
        auto *out = static_cast<float *>(m_Connections[port.index]);
        if (port.kind != WSLV2Port::eControlOut || out == nullptr)
            continue;
        if (!read) {
            meters.ReadFromDSP(true);
            read = true;
        }
        // The meter holds a linear peak; its parameter shows it in dB over its own range.
        double peak = 0.0;
        meters.GetMeterValue(port.source, peak);
        const double db = peak > 0.0 ? 20.0 * std::log10(peak) : port.minimum;
        *out = static_cast<float>(std::clamp(db, port.minimum, port.maximum));
    }
}

void WCLV2Plugin::Run(std::uint32_t frames) {
    if (m_Process == nullptr)
        return;
    ApplyControls();
    const int inputs = m_Layout.AudioInputs();
    const int outputs = m_Layout.AudioOutputs();
    std::vector<WSLV2Port> const &ports = m_Layout.Ports();
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t n = std::min(kChunk, frames - done);
        for (int channel = 0; channel < inputs; ++channel) {
            auto const *in = static_cast<float const *>(m_Connections[ports[channel].index]);
            for (std::uint32_t i = 0; i < n; ++i)
                m_InterleavedIn[i * inputs + channel] = in != nullptr ? in[done + i] : 0.0f;
        }
        m_Process(m_Shell.CoefWords(), m_Shell.StateWords(), m_InterleavedIn.data(),
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
    ReadMeters();
    // The shell logs its exec calls for tests; an instance in a host lives long, and a cleared
    // log keeps its capacity, so the log stops growing after the first blocks.
    m_Shell.ClearLog();
}

} // namespace mirel_lv2
