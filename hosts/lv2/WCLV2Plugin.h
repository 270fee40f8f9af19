#pragma once

#include <lv2/state/state.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Code/Process/WUNativeProcess.h"
#include "hosts/lv2/WCLV2PortLayout.h"
#include "hosts/lv2/WCLV2ProcessSide.h"

namespace mirel_lv2 {

// One LV2 instance of a plug-in built on the library. It loads the plug-in module from the LV2
// bundle, starts it at the host's rate with coefficient, state and external memory sized from
// the plug-in's needs, and in Run feeds the host's channel buffers through the plug-in's native
// audio code, interleaved.
//
// Two sides. The main side runs the plug-in's logic under one mutex: instantiation, state, and
// the work the audio thread hands over (a control port that changed, a meter read). With the
// host's worker that work runs on the worker thread; the buffer chains it makes reach the audio
// thread through the process side's lock-free ring and are applied at the start of the next Run.
// So Run never locks and never allocates. A host without a worker gets the same result with the
// work done in place, inside Run, which then does lock and allocate while a control changes.
//
// About every kIdleFrames frames the main side gets an idle tick: it receives the meter read sent
// last time (the audio thread filled it in) and sends the next, so that the output ports show the
// last values received; then the plug-in's own idle runs, and its update when one is due.
//
// Threads, as LV2 classes them: Open, Activate, Deactivate, Restore and the destructor are
// [instantiation]; ConnectPort and Run are [audio-thread]; Work is [worker-thread]; Save may run
// beside Run.
class WCLV2Plugin {
public:
    static constexpr std::uint32_t kIdleFrames = 1024;
    static constexpr short kIdleLevel = 1;

    // The LV2 bundle holds `<name>.bundle/Contents/Linux64/<name>.so`; the wrapper finds the
    // plug-in's name as the last ':'-separated part of its URI.
    static std::string ModulePathFor(char const *bundlePath, char const *uri);

    WCLV2Plugin();
    ~WCLV2Plugin();
    WCLV2Plugin(WCLV2Plugin const &) = delete;
    WCLV2Plugin &operator=(WCLV2Plugin const &) = delete;

    // Loads the module at `modulePath`, creates and starts its first component at `rate`, finds
    // its audio code and lays out the ports. `worker` and `map` are the host's features, each may
    // be null. The first error code of the way.
    int Open(char const *modulePath, double rate, LV2_Worker_Schedule const *worker,
             LV2_URID_Map const *map);
    void Activate();
    void Deactivate();
    void ConnectPort(std::uint32_t index, void *data);
    // Processes `frames` frames of the connected ports.
    void Run(std::uint32_t frames);
    // One message scheduled by Run.
    LV2_Worker_Status Work(std::uint32_t size, void const *data);

    // The 'XPst' chunk (both setups) under the key "urn:mirel:state#XPst", as an atom:Chunk.
    LV2_State_Status Save(LV2_State_Store_Function store, LV2_State_Handle handle);
    // A chunk the plug-in refuses changes nothing and answers LV2_STATE_ERR_UNKNOWN.
    LV2_State_Status Restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

    WCLV2PortLayout const &Layout() const { return m_Layout; }

    // `frames` frames of `count` channels into one interleaved block, and back; an output channel
    // that is null is left out. [any-thread]
    static void Interleave(float const *const *channels, int count, std::uint32_t frames,
                           float *out);
    static void Deinterleave(float const *in, int count, std::uint32_t frames,
                             float *const *channels);

private:
    // What Run hands to the main side.
    struct WSWork {
        enum EKind : std::uint32_t { eControl, eIdle };
        EKind kind = eControl;
        std::uint32_t port = 0;
        float value = 0.0f;
    };
    // Main side; the caller holds m_MainLock.
    void DoWork(WSWork const &work);
    void ApplyControl(WSLV2Port const &port, float value);
    void ReadMeters();
    void Update();
    // The interleaved blocks in m_Blocks, placed away from the state words.
    void PlaceBlocks(std::size_t inFloats, std::size_t outFloats);
    // Audio side: to the worker, or done in place without one. False when the worker's queue
    // took nothing.
    bool Hand(WSWork const &work);

    // Frames processed per call of the audio code; the interleaved buffers hold this many, so Run
    // never allocates for audio.
    static constexpr std::uint32_t kChunk = 128;

    WCLV2ProcessSide m_Side;
    WCLV2PortLayout m_Layout;
    ml::WTNativeProcessFunction m_Process = nullptr;
    LV2_Worker_Schedule const *m_Worker = nullptr;
    LV2_URID m_KeyXPst = 0;
    LV2_URID m_TypeChunk = 0;
    std::mutex m_MainLock;

    // Audio side: connections, the last value of each port acted on, the interleaved blocks.
    std::vector<void *> m_Connections;
    std::uint32_t m_FirstControlIn = 0;
    std::uint32_t m_FirstControlOut = 0;
    std::vector<float> m_Seen;
    std::vector<float> m_Blocks;
    float *m_InterleavedIn = nullptr;
    float *m_InterleavedOut = nullptr;
    // Where the current chunk of each channel is, and a chunk of silence for unconnected inputs.
    std::vector<float const *> m_InChannels;
    std::vector<float *> m_OutChannels;
    std::vector<float> m_Silence;
    std::uint32_t m_FramesSinceIdle = 0;
    // Shared: the values of the output control ports (meters, latency) as the main side read them
    // last, by port index, and whether an idle tick is on its way.
    std::unique_ptr<std::atomic<float>[]> m_OutputValues;
    std::atomic<bool> m_IdlePending{false};
};

} // namespace mirel_lv2
