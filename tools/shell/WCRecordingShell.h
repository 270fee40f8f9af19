#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Code/Algorithm/MirelPluginEntry.h"
#include "Code/Algorithm/PluginInstance.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/KPAPIProcessMemory.h"
#include "Code/Process/WUNativeProcess.h"
#include "resources/WCNativeModule.h"

namespace mirel_shell {

namespace ml = MIREL_NAMESPACE_NAME;

// One call of the exec callback as the shell saw it.
struct WSExecCall {
    int op = 0;
    std::int64_t refcon = 0;
    // Op-specific numbers: the buffer count of a chain, the event index and kind of op 36, the
    // value of ops 74 and 78.
    std::int64_t arg1 = 0;
    std::int64_t arg2 = 0;
};

// A shell for tests and tools: holds one PluginInstance, plays the process side behind the exec
// callback and walks the plug-in through its life cycle in the required order.
//
// The process side it plays is a real one in memory: buffers are created, chained and freed on
// request (ops 5, 3, 4); sends (ops 0, 1) write into and read from a word memory per kind
// (states, coefficients, external X and Y), placed by Locate; ops 7 to 14, 20 and 21 are
// answered (13 and 14 only when asked to supply fixed-point converters). Every call is logged.
// The memories are sized from the plug-in's process memory request in Start.
//
// Use: Create (construct, fill the instance, main thread, exec callback), Start (process code,
// FinishCreate, InitData, memory placement, InitInstanceData, activate, InitAlg), Idle, Stop
// (deactivate, Dispose, destroy). The destructor stops a plug-in still running.
// [main-thread]: the thread that calls Create is the plug-in's main thread. The exec callback is
// [any-thread]: sends come from main, idle and automation threads, so one mutex serialises the
// process side's state, as a real process side does.
class WCRecordingShell {
public:
    using Factory =
        std::function<ml::cALGORITHM *(ml::MirelComponentInfo const &, ml::WTResContainerType *&)>;
    using Destroyer = std::function<void(ml::cALGORITHM *)>;

    WCRecordingShell();
    virtual ~WCRecordingShell();
    WCRecordingShell(WCRecordingShell const &) = delete;
    WCRecordingShell &operator=(WCRecordingShell const &) = delete;

    // Process-side behaviour, set before Create.
    int m_WordSize = 4;
    int m_LocateFlag = 1;
    bool m_SupplyFixConverters = false;
    // Where Locate puts the coefficients and states, in words.
    int m_CoefsBase = 16;
    int m_StatesBase = 8;
    // Op 5 fails once this many buffers were created; -1 never.
    int m_FailNewBufferAfter = -1;
    // Op 3 refuses to chain, and links nothing.
    bool m_FailChainBuffers = false;
    // Whether exec calls are logged; a long-lived host turns it off, so the log never grows.
    bool m_Record = true;

    // Loads a plug-in module and binds its entry points; a module inside a bundle also opens the
    // bundle's resource container, which the factory receives. Codes: eDLLNotFound,
    // eDLLLoadingFailed, eFuncPointerNotFound for a module without them, or the container's.
    int LoadModule(char const *path);
    int GetModuleComponentInfo(int index, ml::MirelComponentInfo &info) const;
    // LoadModule, then the module's first component created and started, at `sampleRate` when
    // it is above 0: what a host does to run a plug-in. The first error code of the way.
    int Open(char const *modulePath, int sampleRate = 0);
    // The started plug-in's native audio code for this machine's processor, from its bundle.
    int FindNativeProcess(ml::WTNativeProcessFunction &process);
    // Steps 1 to 4 of the life cycle, with the loaded module's factory.
    int Create(ml::MirelComponentInfo const &info);
    // Steps 1 to 4 with a factory of the caller (an algorithm class built into the program).
    int Create(ml::MirelComponentInfo const &info, Factory factory, Destroyer destroyer);
    // Steps 5 to 10.
    int Start();
    // Runs `ticks` idle ticks at `level`; the first non-zero result wins.
    int Idle(short level, int ticks);
    // Sends what UpdateAlg returns.
    int Update();
    // Step 12; returns the first non-zero code.
    int Stop();

    ml::PluginInstance &Instance() { return m_Instance; }
    // The loaded plug-in module (not loaded before LoadModule succeeds).
    ml::Utils::WCNativeModule const &Module() const { return m_Module; }
    // The loaded bundle's resource container, or null.
    ml::WTResContainerType *Container() const { return m_Container; }
    ml::cALGORITHM *Algorithm() const { return m_Instance.m_pAlg; }
    bool IsRunning() const { return m_Running; }

    // What happened: the exec calls, the life-cycle steps walked, buffers alive now.
    std::vector<WSExecCall> const &Calls() const { return m_Calls; }
    std::vector<int> Ops() const;
    std::vector<std::string> const &Steps() const { return m_Steps; }
    std::size_t LiveBuffers() const;
    std::size_t BuffersCreated() const;
    void ClearLog();

    // Process memory, as the plug-in's sends left it.
    std::vector<char> const &CoefMemory() const { return m_CoefMemory; }
    std::vector<char> const &StateMemory() const { return m_StateMemory; }
    // The words at the located bases, for a host that runs the plug-in's audio code in place:
    // what the code writes to its states is what the plug-in's meter reads then find.
    void const *CoefWords() const {
        return m_CoefMemory.data() + static_cast<std::size_t>(m_CoefsBase * m_WordSize);
    }
    void *StateWords() {
        return m_StateMemory.data() + static_cast<std::size_t>(m_StatesBase * m_WordSize);
    }
    std::vector<char> const &XMemory() const { return m_XMemory; }
    std::vector<char> const &YMemory() const { return m_YMemory; }
    // The placed request: each external's offset and reference as the plug-in was told them.
    ml::ProcessMemory::WSProcessMemoryRequest const &MemoryRequest() const { return m_MemRequest; }
    // Coefficient word `index` (relative to the located base) read as a float.
    float CoefAsFloat(int index) const;
    ml::ProcessMemory::SDSPReqRes const &DSPReqRes() const { return m_ReqRes; }

    static int ExecCallBack(int op, std::int64_t refcon, void *a, void *b, void *c);

protected:
    using BUFFER_HEADER = ml::KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

    // Ops 0 and 1, under the shell's mutex: by default the chain is checked and applied at once.
    // A process side that runs elsewhere overrides it to carry checked chains there.
    virtual int SendChain(int op, BUFFER_HEADER *chain, std::int64_t &count);
    // Op 4, under the shell's mutex: by default every buffer of the chain is released.
    virtual int FreeChain(BUFFER_HEADER *chain, std::int64_t &count);
    // eMemBadPointer for a buffer the shell does not own, eGenericErr for an unknown memory,
    // eMemBuffTooShort for words outside it. [under the shell's mutex]
    int CheckChain(BUFFER_HEADER const *chain, std::int64_t &count) const;
    // Moves the words of a checked chain: writes into the memories, reads out of them, and
    // read-write both ways. Allocates nothing and takes no lock, so that an audio thread that
    // owns the memories may call it.
    void ApplyCheckedChain(BUFFER_HEADER *chain);
    // Whether some buffer of the chain reads words back.
    bool ChainReads(BUFFER_HEADER const *chain) const;
    // Releases one buffer; eMemBadPointer for one the shell does not own.
    int ReleaseBuffer(BUFFER_HEADER *buffer);
    std::mutex &ShellMutex() const { return m_Mutex; }

private:
    struct WSBuffer;

    int OnExec(int op, void *a, void *b, void *c);
    std::vector<char> const *MemoryOf(int kind) const;
    int Step(char const *name, int code);
    void CloseResources();

    ml::PluginInstance m_Instance;
    Destroyer m_Destroy;
    ml::Utils::WCNativeModule m_Module;
    ::MirelPluginGetComponentInfoFunc m_GetInfo = nullptr;
    ::MirelPluginCreateFunc m_Create = nullptr;
    ::MirelPluginDestroyFunc m_DestroyFunc = nullptr;
    ml::WTResContainerType *m_Container = nullptr;
    bool m_Running = false;
    bool m_Started = false;

    mutable std::mutex m_Mutex;
    // The memory operation codes, learnt at Start, so that applying a chain reads no plug-in.
    int m_OpWrite = 0;
    int m_OpRead = 1;
    int m_OpReadWrite = 2;
    int m_OpWriteExtended = 4;
    std::vector<WSExecCall> m_Calls;
    std::vector<std::string> m_Steps;
    std::map<ml::KPAPI_PROCESS_MEMORY::BUFFER_HEADER *, std::unique_ptr<WSBuffer>> m_Live;
    std::size_t m_Created = 0;
    ml::ProcessMemory::SDSPReqRes m_ReqRes;
    ml::ProcessMemory::WSProcessMemoryRequest m_MemRequest;
    std::vector<char> m_CoefMemory;
    std::vector<char> m_StateMemory;
    std::vector<char> m_XMemory;
    std::vector<char> m_YMemory;
};

} // namespace mirel_shell
