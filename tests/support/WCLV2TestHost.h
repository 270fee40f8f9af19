#pragma once

#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <array>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace mirel_test {

// An LV2 host for tests and benchmarks: loads an LV2 bundle's binary, instantiates its plug-in
// with a URID map and, as asked, a worker, connects every port to a buffer of its own (audio
// ports first, as the library's wrapper orders them) and keeps saved state in memory.
//
// Workers: eNone offers none; eBetweenBlocks queues the scheduled work, which DoWork runs on the
// calling thread (schedule_work neither locks nor allocates, so a block can be probed); eThread
// runs it on a thread of its own, as a real host does.
class WCLV2TestHost {
public:
    enum EWorker { eNone, eBetweenBlocks, eThread };
    // What a save stored: by key, the type and the bytes.
    using WTState = std::map<LV2_URID, std::pair<LV2_URID, std::vector<char>>>;

    static constexpr std::uint32_t kMaxFrames = 4096;

    WCLV2TestHost() = default;
    ~WCLV2TestHost();
    WCLV2TestHost(WCLV2TestHost const &) = delete;
    WCLV2TestHost &operator=(WCLV2TestHost const &) = delete;

    // Loads `<bundle>/<binary>`, instantiates the plug-in at `rate`, connects `inputs` and
    // `outputs` audio ports and `controls` control ports with the given initial values, and
    // activates it. An empty string on success, else what failed.
    std::string Open(std::string const &bundle, char const *binary, double rate, int inputs,
                     int outputs, std::vector<float> const &controls, EWorker worker);
    void Run(std::uint32_t frames);
    // eBetweenBlocks: runs the work scheduled so far. eThread: waits until the thread has run it.
    void DoWork();

    float &Control(std::uint32_t port) { return m_Controls[port - m_FirstControl]; }
    std::vector<float> &In(int channel) { return m_In[channel]; }
    std::vector<float> &Out(int channel) { return m_Out[channel]; }

    LV2_State_Status Save(WTState &state);
    LV2_State_Status Restore(WTState const &state);
    LV2_URID Map(char const *uri);

private:
    struct WSMessage {
        std::uint32_t size = 0;
        std::array<char, 64> bytes{};
    };
    static LV2_Worker_Status Schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                      void const *data);
    static LV2_URID MapURI(LV2_URID_Map_Handle handle, char const *uri);
    void WorkerLoop();
    void RunQueued();

    void *m_Library = nullptr;
    LV2_Lib_Descriptor const *m_Lib = nullptr;
    LV2_Descriptor const *m_Plugin = nullptr;
    LV2_Handle m_Instance = nullptr;
    LV2_Worker_Interface const *m_WorkerInterface = nullptr;
    LV2_State_Interface const *m_StateInterface = nullptr;
    EWorker m_WorkerKind = eNone;

    std::map<std::string, LV2_URID> m_URIs;
    LV2_URID_Map m_Map{this, &MapURI};
    LV2_Worker_Schedule m_Schedule{this, &Schedule};
    LV2_Feature m_MapFeature{LV2_URID__map, &m_Map};
    LV2_Feature m_ScheduleFeature{LV2_WORKER__schedule, &m_Schedule};

    std::vector<std::vector<float>> m_In;
    std::vector<std::vector<float>> m_Out;
    std::vector<float> m_Controls;
    std::uint32_t m_FirstControl = 0;

    // The scheduled work: a ring the audio side fills, preallocated.
    std::vector<WSMessage> m_Queue = std::vector<WSMessage>(1024);
    std::size_t m_QueueHead = 0;
    std::size_t m_QueueTail = 0;
    std::mutex m_QueueMutex;
    std::condition_variable m_QueueChanged;
    bool m_Stopping = false;
    std::size_t m_Working = 0;
    std::thread m_Thread;
};

} // namespace mirel_test
