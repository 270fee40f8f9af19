#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Code/Process/WUNativeProcess.h"
#include "hosts/lv2/WCLV2PortLayout.h"
#include "tools/shell/WCRecordingShell.h"

namespace mirel_lv2 {

// One LV2 instance of a plug-in built on the library: the process side of the plug-in. It
// loads the plug-in module from the LV2 bundle, starts it at the host's rate with coefficient,
// state and external memory sized from the plug-in's needs, and in Run feeds the host's channel
// buffers through the plug-in's native audio code, interleaved.
//
// Life cycle, as the host drives it: Open (instantiate), ConnectPort, Run any number of times,
// then destruction (cleanup), which stops the plug-in. Open, ConnectPort and the destructor are
// [main-thread]; Run is [audio-thread].
//
// Control ports: a changed input value becomes an update of the control's parameters in Run,
// before the block is processed, and the update's buffer chain is sent to the process memory
// there. That path still takes the algorithm's process lock and allocates the chain's buffers;
// the next step moves it to the worker side behind a lock-free queue, so that Run only applies
// finished chains. Meters are read into the output control ports after each block, on the same
// terms.
class WCLV2Plugin {
public:
    // The LV2 bundle holds `<name>.bundle/Contents/Linux64/<name>.so`; the wrapper finds the
    // plug-in's name as the last ':'-separated part of its URI.
    static std::string ModulePathFor(char const *bundlePath, char const *uri);

    WCLV2Plugin();
    ~WCLV2Plugin();
    WCLV2Plugin(WCLV2Plugin const &) = delete;
    WCLV2Plugin &operator=(WCLV2Plugin const &) = delete;

    // Loads the module at `modulePath`, creates and starts its first component at `rate`, finds
    // its audio code and lays out the ports. The first error code of the way.
    int Open(char const *modulePath, double rate);
    void ConnectPort(std::uint32_t index, void *data);
    // Processes `frames` frames of the connected ports.
    void Run(std::uint32_t frames);

    WCLV2PortLayout const &Layout() const { return m_Layout; }

private:
    void ApplyControls();
    void ReadMeters();

    // Frames processed per call of the audio code; the interleaved buffers hold this many, so Run
    // never allocates for audio.
    static constexpr std::uint32_t kChunk = 256;

    mirel_shell::WCRecordingShell m_Shell;
    WCLV2PortLayout m_Layout;
    ml::WTNativeProcessFunction m_Process = nullptr;
    std::vector<void *> m_Connections;
    // The last value sent per port; NaN until the first Run, so that it sends each control once.
    std::vector<float> m_Sent;
    std::vector<float> m_InterleavedIn;
    std::vector<float> m_InterleavedOut;
};

} // namespace mirel_lv2
