#include "hosts/lv2/WCLV2PortLayout.h"

#include <cctype>

#include "Code/Control/WCAutomationControl.h"
#include "Code/Control/WCAutomationManager.h"
#include "Code/Process/WCMeterManager.h"
#include "core/WTErrors.h"

namespace mirel_lv2 {

std::string WCLV2PortLayout::Symbol(std::string const &name) {
    std::string symbol;
    for (char c : name) {
        const auto u = static_cast<unsigned char>(c);
        symbol += std::isalnum(u) != 0 ? static_cast<char>(std::tolower(u)) : '_';
    }
    if (symbol.empty() || std::isdigit(static_cast<unsigned char>(symbol.front())) != 0)
        symbol.insert(symbol.begin(), '_');
    return symbol;
}

namespace {

// Range, default and kind of a control from its parameter's scale: the ends of the state axis
// and the current value, which right after the start is the parameter's initial value.
int DescribeParam(ml::cALGORITHM &alg, std::uint64_t id, WSLV2Port &port) {
    ml::sCONTROL_PARAM *param = alg.GetParam(id);
    if (param == nullptr)
        return ml::eOutOfRangeNumber;
    double low = 0.0, high = ml::WCParam_Base::kMaxState;
    int err = alg.StateToRealWorld(id, low);
    if (err == ml::eNoErr)
        err = alg.StateToRealWorld(id, high);
    if (err == ml::eNoErr)
        err = alg.GetParamRealWorld(id, port.value);
    if (err != ml::eNoErr)
        return err;
    port.paramID = id;
    port.name = param->m_Name.c_str();
    port.minimum = low < high ? low : high;
    port.maximum = low < high ? high : low;
    port.integer = param->IsDiscrete();
    port.toggled =
        port.integer && param->GetNumStates() == 2 && port.minimum == 0.0 && port.maximum == 1.0;
    return ml::eNoErr;
}

} // namespace

int WCLV2PortLayout::Build(ml::cALGORITHM *alg, int inputs, int outputs) {
    if (alg == nullptr)
        return ml::eMemNullPointer;
    if (inputs < 0 || outputs < 0)
        return ml::eOutOfRangeNumber;
    std::vector<WSLV2Port> ports;
    auto add = [&ports](WSLV2Port port) {
        port.index = static_cast<std::uint32_t>(ports.size());
        ports.push_back(std::move(port));
    };
    auto audio = [&add](WSLV2Port::EKind kind, char const *symbol, char const *name, int n) {
        WSLV2Port port;
        port.kind = kind;
        port.symbol = symbol + std::to_string(n);
        port.name = name + std::to_string(n);
        add(std::move(port));
    };
    for (int i = 1; i <= inputs; ++i)
        audio(WSLV2Port::eAudioIn, "in", "In ", i);
    for (int i = 1; i <= outputs; ++i)
        audio(WSLV2Port::eAudioOut, "out", "Out ", i);

    ml::WCAutomationManager &automation = alg->GetAutomationManager();
    for (std::uint32_t i = 0; i < automation.GetNumAutomationControllers(); ++i) {
        ml::WCAutomationControl *control = automation.GetAutomationControl(static_cast<int>(i));
        if (control == nullptr || !control->IsHostControl())
            continue;
        std::uint64_t id = 0;
        int err = automation.ControlLeadParamID(static_cast<int>(i), id);
        WSLV2Port port;
        port.kind = WSLV2Port::eControlIn;
        if (err == ml::eNoErr)
            err = DescribeParam(*alg, id, port);
        if (err != ml::eNoErr)
            return err;
        port.source = i;
        port.symbol = Symbol(port.name);
        add(std::move(port));
    }
    ml::WCMeterManager &meters = alg->GetMeterManager();
    for (std::uint32_t i = 0; i < meters.GetNumMeters(); ++i) {
        WSLV2Port port;
        port.kind = WSLV2Port::eControlOut;
        const int err = DescribeParam(*alg, meters.GetMeters()[i].m_ParamID, port);
        if (err != ml::eNoErr)
            return err;
        port.source = i;
        port.symbol = Symbol(port.name);
        add(std::move(port));
    }
    if (alg->GetDelay() > 0) {
        WSLV2Port port;
        port.kind = WSLV2Port::eLatency;
        port.symbol = "latency";
        port.name = "Latency";
        port.maximum = port.value = alg->GetDelay();
        port.integer = true;
        add(std::move(port));
    }
    m_Ports = std::move(ports);
    m_AudioInputs = inputs;
    m_AudioOutputs = outputs;
    return ml::eNoErr;
}

} // namespace mirel_lv2
