#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Code/Algorithm/cALGORITHM.h"

namespace mirel_lv2 {

namespace ml = MIREL_NAMESPACE_NAME;

// One port of the LV2 plug-in, in real-world units of the parameter behind it.
struct WSLV2Port {
    enum EKind : int { eAudioIn, eAudioOut, eControlIn, eControlOut, eLatency };
    EKind kind = eAudioIn;
    std::uint32_t index = 0;
    std::string symbol;
    std::string name;
    // Controls only: the lead parameter, its automation control (inputs) or meter (outputs).
    std::uint64_t paramID = 0;
    std::uint32_t source = 0;
    double minimum = 0.0;
    double maximum = 0.0;
    double value = 0.0;
    bool integer = false;
    bool toggled = false;
};

// The ports a started algorithm shows an LV2 host, in index order: its audio inputs, its audio
// outputs, one input control per host-visible automation control, one output control per meter,
// and the latency in frames when the plug-in reports a delay. The wrapper and the TTL writer both
// build it, so the indices they use agree by construction. [main-thread]: it reads the algorithm's
// parameters.
class WCLV2PortLayout {
public:
    // Fills the layout; eMemNullPointer without an algorithm. `inputs` and `outputs` are the
    // audio channel counts of the process description.
    int Build(ml::cALGORITHM *alg, int inputs, int outputs);

    std::vector<WSLV2Port> const &Ports() const { return m_Ports; }
    int AudioInputs() const { return m_AudioInputs; }
    int AudioOutputs() const { return m_AudioOutputs; }

    // A parameter name made into an LV2 symbol: lower case letters, digits and underscores, never
    // starting with a digit.
    static std::string Symbol(std::string const &name);

private:
    std::vector<WSLV2Port> m_Ports;
    int m_AudioInputs = 0;
    int m_AudioOutputs = 0;
};

} // namespace mirel_lv2
