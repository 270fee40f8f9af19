#include "tools/shell/WCRecordingShell.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Code/Algorithm/PluginInfoSelectors.h"
#include "files/WUBundles.h"
#include "resources/ResourceManager.h"

namespace mirel_shell {

namespace KPM = ml::KPAPI_PROCESS_MEMORY;

// A buffer and its words in one allocation the shell owns until op 4 frees it.
struct WCRecordingShell::WSBuffer {
    BUFFER_HEADER header;
    std::vector<char> words;
};

namespace {

// Fixed-point converters the shell hands out when asked to: a fraction as a signed Q1.31 word,
// the way a DSP process side would encode it.
int WriteQ31(double value, void *destination) {
    const double clamped = value >= 1.0 ? 0.9999999995343387 : value < -1.0 ? -1.0 : value;
    const std::int32_t word = static_cast<std::int32_t>(clamped * 2147483648.0);
    std::memcpy(destination, &word, sizeof word);
    return sizeof word;
}
int ReadQ31(void const *source, double *value) {
    std::int32_t word;
    std::memcpy(&word, source, sizeof word);
    *value = word / 2147483648.0;
    return sizeof word;
}

std::int64_t ChainLength(BUFFER_HEADER const *chain) {
    std::int64_t n = 0;
    for (; chain != nullptr; chain = chain->next)
        ++n;
    return n;
}

} // namespace

WCRecordingShell::WCRecordingShell() = default;

WCRecordingShell::~WCRecordingShell() {
    if (m_Instance.m_pAlg != nullptr)
        Stop();
    m_Live.clear();
    CloseResources();
    m_Module.Unload();
}

void WCRecordingShell::CloseResources() {
    if (m_Container != nullptr)
        ml::RM::CloseResContainer(m_Container);
}

int WCRecordingShell::ExecCallBack(int op, std::int64_t refcon, void *a, void *b, void *c) {
    auto *shell = reinterpret_cast<WCRecordingShell *>(refcon);
    if (shell == nullptr)
        return ml::eMemNullPointer;
    return shell->OnExec(op, a, b, c);
}

std::vector<char> const *WCRecordingShell::MemoryOf(int kind) const {
    switch (kind) {
    case KPM::eBufferStates: return &m_StateMemory;
    case KPM::eBufferCoefs: return &m_CoefMemory;
    case KPM::eBufferExtX: return &m_XMemory;
    case KPM::eBufferExtY: return &m_YMemory;
    default: return nullptr;
    }
}

int WCRecordingShell::CheckChain(BUFFER_HEADER const *chain, std::int64_t &count) const {
    count = 0;
    for (BUFFER_HEADER const *buffer = chain; buffer != nullptr; buffer = buffer->next, ++count) {
        if (m_Live.count(const_cast<BUFFER_HEADER *>(buffer)) == 0)
            return ml::eMemBadPointer;
        std::vector<char> const *memory = MemoryOf(buffer->kind);
        if (memory == nullptr)
            return ml::eGenericErr;
        const std::size_t at = static_cast<std::size_t>(buffer->offset) * m_WordSize;
        const std::size_t bytes = static_cast<std::size_t>(buffer->count) * m_WordSize;
        if (buffer->offset < 0 || buffer->count < 0 || at + bytes > memory->size())
            return ml::eMemBuffTooShort;
    }
    return ml::eNoErr;
}

void WCRecordingShell::ApplyCheckedChain(BUFFER_HEADER *chain) {
    for (BUFFER_HEADER *buffer = chain; buffer != nullptr; buffer = buffer->next) {
        char *memory = const_cast<char *>(MemoryOf(buffer->kind)->data()) +
                       static_cast<std::size_t>(buffer->offset) * m_WordSize;
        auto *words = static_cast<char *>(buffer->data);
        const std::size_t bytes = static_cast<std::size_t>(buffer->count) * m_WordSize;
        const int op = buffer->memOp;
        // Read-write hands back the old words and stores the new ones.
        if (op == m_OpReadWrite)
            std::swap_ranges(words, words + bytes, memory);
        else if (op == m_OpRead)
            std::memcpy(words, memory, bytes);
        else if (op == m_OpWrite || op == m_OpWriteExtended)
            std::memcpy(memory, words, bytes);
    }
}

bool WCRecordingShell::ChainReads(BUFFER_HEADER const *chain) const {
    for (; chain != nullptr; chain = chain->next) {
        if (chain->memOp == m_OpRead || chain->memOp == m_OpReadWrite)
            return true;
    }
    return false;
}

int WCRecordingShell::SendChain(int, BUFFER_HEADER *chain, std::int64_t &count) {
    const int err = CheckChain(chain, count);
    if (err == ml::eNoErr)
        ApplyCheckedChain(chain);
    return err;
}

int WCRecordingShell::ReleaseBuffer(BUFFER_HEADER *buffer) {
    return m_Live.erase(buffer) == 0 ? ml::eMemBadPointer : ml::eNoErr;
}

int WCRecordingShell::FreeChain(BUFFER_HEADER *chain, std::int64_t &count) {
    count = 0;
    while (chain != nullptr) {
        BUFFER_HEADER *next = chain->next;
        const int err = ReleaseBuffer(chain);
        if (err != ml::eNoErr)
            return err;
        ++count;
        chain = next;
    }
    return ml::eNoErr;
}

int WCRecordingShell::OnExec(int op, void *a, void *b, void *c) {
    std::lock_guard<std::mutex> lock(m_Mutex);
    WSExecCall call;
    call.op = op;
    call.refcon = reinterpret_cast<std::int64_t>(this);
    int result = ml::eNoErr;
    switch (op) {
    case ml::eExecSendBuffers:
    case ml::eExecSendBuffersInit:
        result = SendChain(op, static_cast<BUFFER_HEADER *>(a), call.arg1);
        break;
    case ml::eExecChainBuffers: {
        auto *first = static_cast<BUFFER_HEADER *>(a);
        auto *second = static_cast<BUFFER_HEADER *>(b);
        auto **out = static_cast<BUFFER_HEADER **>(c);
        if (first == nullptr || out == nullptr) {
            result = ml::eMemNullPointer;
            break;
        }
        if (m_FailChainBuffers) {
            result = ml::eMemNewFailed;
            break;
        }
        BUFFER_HEADER *last = first;
        while (last->next != nullptr)
            last = last->next;
        last->next = second;
        *out = first;
        call.arg1 = ChainLength(first);
        break;
    }
    case ml::eExecFreeBuffers:
        result = FreeChain(static_cast<BUFFER_HEADER *>(a), call.arg1);
        break;
    case ml::eExecNewBuffer: {
        auto const *request = static_cast<BUFFER_HEADER const *>(a);
        auto **out = static_cast<BUFFER_HEADER **>(b);
        if (request == nullptr || out == nullptr || request->count < 0) {
            result = ml::eMemNullPointer;
            break;
        }
        if (m_FailNewBufferAfter >= 0 &&
            m_Created >= static_cast<std::size_t>(m_FailNewBufferAfter)) {
            result = ml::eMemNewFailed;
            break;
        }
        auto buffer = std::make_unique<WSBuffer>();
        buffer->header = *request;
        buffer->words.assign(static_cast<std::size_t>(request->count) * m_WordSize, 0);
        buffer->header.data = buffer->words.data();
        buffer->header.next = nullptr;
        *out = &buffer->header;
        m_Live.emplace(&buffer->header, std::move(buffer));
        ++m_Created;
        call.arg1 = request->kind;
        call.arg2 = request->count;
        break;
    }
    case ml::eExecWriteFracConverter:
    case ml::eExecWriteIntConverter:
    case ml::eExecReadFracConverter:
    case ml::eExecReadIntConverter:
    case ml::eExecWriteDFracConverter:
    case ml::eExecReadDFracConverter:
        // The defaults suit this native process side; the slot keeps what it holds.
        result = a == nullptr ? ml::eMemNullPointer : ml::eNoErr;
        break;
    case ml::eExecWriteFixConverter:
        if (!m_SupplyFixConverters || a == nullptr)
            result = ml::eNotImplemented;
        else
            *static_cast<ml::WTWriteFracFunc *>(a) = &WriteQ31;
        break;
    case ml::eExecReadFixConverter:
        if (!m_SupplyFixConverters || a == nullptr)
            result = ml::eNotImplemented;
        else
            *static_cast<ml::WTReadFracFunc *>(a) = &ReadQ31;
        break;
    case ml::eExecLocateFlag:
        if (a != nullptr)
            *static_cast<int *>(a) = m_LocateFlag;
        break;
    case ml::eExecWordSize:
        if (a != nullptr)
            *static_cast<int *>(a) = m_WordSize;
        break;
    case ml::eExecShellEvent:
    case ml::eExecSideChain:
    case ml::eExecBatch:
        call.arg1 = reinterpret_cast<std::intptr_t>(a);
        call.arg2 = reinterpret_cast<std::intptr_t>(b);
        break;
    default: result = ml::eNotImplemented; break;
    }
    if (m_Record)
        m_Calls.push_back(call);
    return result;
}

std::size_t WCRecordingShell::LiveBuffers() const {
    std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Live.size();
}

std::size_t WCRecordingShell::BuffersCreated() const {
    std::lock_guard<std::mutex> lock(m_Mutex);
    return m_Created;
}

void WCRecordingShell::ClearLog() {
    std::lock_guard<std::mutex> lock(m_Mutex);
    m_Calls.clear();
}

std::vector<int> WCRecordingShell::Ops() const {
    std::lock_guard<std::mutex> lock(m_Mutex);
    std::vector<int> ops;
    ops.reserve(m_Calls.size());
    for (auto const &call : m_Calls)
        ops.push_back(call.op);
    return ops;
}

float WCRecordingShell::CoefAsFloat(int index) const {
    float value = 0.0f;
    const std::size_t at = static_cast<std::size_t>(m_CoefsBase + index) * m_WordSize;
    if (index >= 0 && at + sizeof value <= m_CoefMemory.size())
        std::memcpy(&value, m_CoefMemory.data() + at, sizeof value);
    return value;
}

int WCRecordingShell::Step(char const *name, int code) {
    m_Steps.emplace_back(name);
    return code;
}

int WCRecordingShell::LoadModule(char const *path) {
    ml::Utils::WCNativeModule module;
    const int err = module.Load(path);
    if (err != ml::eNoErr)
        return err;
    auto getInfo =
        module.GetFunction<::MirelPluginGetComponentInfoFunc>(MIREL_PLUGIN_GET_COMPONENT_INFO_NAME);
    auto create = module.GetFunction<::MirelPluginCreateFunc>(MIREL_PLUGIN_CREATE_NAME);
    auto destroy = module.GetFunction<::MirelPluginDestroyFunc>(MIREL_PLUGIN_DESTROY_NAME);
    if (getInfo == nullptr || create == nullptr || destroy == nullptr)
        return ml::eFuncPointerNotFound;
    // A module inside a bundle reads its resources from the bundle's container, which stays open
    // until the module is unloaded.
    ml::WTResContainerType *container = nullptr;
    ml::FM::WCStPath bundle;
    if (ml::FM::GetPathToBundleGivenMainExecutable(ml::FM::WCStPath(path), bundle) == ml::eNoErr) {
        const int openErr = ml::RM::OpenResContainer(bundle, 0, container, 0);
        if (openErr != ml::eNoErr)
            return openErr;
    }
    CloseResources();
    m_Container = container;
    m_Module = std::move(module);
    m_GetInfo = getInfo;
    m_Create = create;
    m_DestroyFunc = destroy;
    m_Instance.m_NativeResourceRef = m_Module.GetHandle();
    m_Instance.m_PluginFileName = path;
    return ml::eNoErr;
}

int WCRecordingShell::Open(char const *modulePath, int sampleRate) {
    int err = LoadModule(modulePath);
    ml::MirelComponentInfo info;
    if (err == ml::eNoErr)
        err = GetModuleComponentInfo(0, info);
    if (err == ml::eNoErr)
        err = Create(info);
    if (err == ml::eNoErr && sampleRate > 0)
        err = Algorithm()->ChangeSampleRate(sampleRate);
    if (err == ml::eNoErr)
        err = Start();
    return err;
}

int WCRecordingShell::FindNativeProcess(ml::WTNativeProcessFunction &process) {
    if (Algorithm() == nullptr)
        return ml::ePluginNotLoaded;
    ml::FM::WCStPath bundle;
    if (m_Container != nullptr)
        ml::RM::GetContainerPath(m_Container, bundle);
    std::uint64_t size = 0;
    return Algorithm()->GetNSProcess(ml::GetCPUTypeForBundle(bundle), ml::GetCurrentOSType(),
                                     &process, &size);
}

int WCRecordingShell::GetModuleComponentInfo(int index, ml::MirelComponentInfo &info) const {
    if (m_GetInfo == nullptr)
        return ml::ePluginNotLoaded;
    return m_GetInfo(index, &info);
}

int WCRecordingShell::Create(ml::MirelComponentInfo const &info) {
    if (m_Create == nullptr)
        return ml::ePluginNotLoaded;
    auto create = m_Create;
    auto destroy = m_DestroyFunc;
    return Create(
        info,
        [create](ml::MirelComponentInfo const &component, ml::WTResContainerType *&container) {
            return create(&component, &container);
        },
        [destroy](ml::cALGORITHM *alg) { destroy(alg); });
}

int WCRecordingShell::Create(ml::MirelComponentInfo const &info, Factory factory,
                             Destroyer destroyer) {
    if (m_Instance.m_pAlg != nullptr)
        return ml::eSomeThingInitailzedTwice;
    if (!factory)
        return ml::eMemNullPointer;
    ml::cALGORITHM *alg = factory(info, m_Container);
    Step("construct", 0);
    if (alg == nullptr)
        return ml::ePluginAlgNotCreate;
    static_cast<ml::MirelComponentInfo &>(m_Instance) = info;
    m_Instance.m_pAlg = alg;
    m_Destroy = std::move(destroyer);
    Step("fill instance", 0);
    Step("SetMainThreadRef", alg->SetMainThreadRef() ? 0 : ml::eWrongObjectState);
    return Step("SetExecCallBack",
                alg->SetExecCallBack(&ExecCallBack, reinterpret_cast<std::int64_t>(this)));
}

int WCRecordingShell::Start() {
    ml::cALGORITHM *alg = m_Instance.m_pAlg;
    if (alg == nullptr)
        return ml::ePluginNotLoaded;
    if (m_Started)
        return ml::eSomeThingInitailzedTwice;
    m_Started = true;
    int err = Step("InitProcessCode", alg->InitProcessCode());
    auto keep = [&err](int code) {
        if (err == ml::eNoErr)
            err = code;
    };
    keep(Step("FinishCreate", alg->FinishCreate()));
    keep(Step("InitData", alg->InitData()));

    // The shell learns the sizes, places the process side and tells the plug-in where.
    keep(Step("reqR", ml::GetPluginInfo_struct(m_Instance, ml::WCFourCC("reqR"), &m_ReqRes, 0)));
    keep(
        Step("PmRq", ml::GetPluginInfo_struct(m_Instance, ml::WCFourCC("PmRq"), &m_MemRequest, 0)));
    if (m_ReqRes.cycles < 0)
        keep(ml::eCantLoadProcessFunction);
    m_CoefMemory.assign((m_CoefsBase + m_MemRequest.coefsNum) * m_WordSize, 0);
    m_StateMemory.assign((m_StatesBase + m_MemRequest.statesNum) * m_WordSize, 0);
    std::uint64_t xWords = 0, yWords = 0;
    for (auto &ext : m_MemRequest.extBuffs) {
        std::uint64_t &words = ext.memSpace == ml::WCFourCC("YMEM") ? yWords : xWords;
        ext.offset = static_cast<std::uint32_t>(words);
        ext.memoryRef = static_cast<std::int64_t>(words) + 1;
        words += ext.size;
    }
    m_XMemory.assign(xWords * m_WordSize, 0);
    m_YMemory.assign(yWords * m_WordSize, 0);
    ml::KPAPI_1::LocateInfo locate{m_LocateFlag, 0, m_StatesBase, m_CoefsBase, 0};
    keep(Step("Locate", alg->Locate(&locate, nullptr, nullptr)));
    m_OpWrite = alg->GetMemOpWrite();
    m_OpRead = alg->GetMemOpRead();
    m_OpReadWrite = alg->GetMemOpReadWrite();
    m_OpWriteExtended = alg->GetMemOpWriteExtended();
    keep(
        Step("exbf", ml::SetPluginInfo_struct(m_Instance, ml::WCFourCC("exbf"), &m_MemRequest, 0)));

    keep(Step("InitInstanceData", alg->InitInstanceData()));
    keep(Step("SetProcessActive(true)", alg->SetProcessActive(true)));
    alg->InitAlg(true);
    Step("InitAlg(true)", 0);
    m_Running = true;
    return err;
}

int WCRecordingShell::Idle(short level, int ticks) {
    ml::cALGORITHM *alg = m_Instance.m_pAlg;
    if (alg == nullptr)
        return ml::ePluginNotLoaded;
    int err = ml::eNoErr;
    for (int i = 0; i < ticks; ++i) {
        const int code = alg->DoIdle(level);
        if (err == ml::eNoErr)
            err = code;
    }
    return err;
}

int WCRecordingShell::Update() {
    ml::cALGORITHM *alg = m_Instance.m_pAlg;
    if (alg == nullptr)
        return ml::ePluginNotLoaded;
    BUFFER_HEADER *chain = alg->UpdateAlg();
    return alg->SendAndFreeBuffers(chain, ml::eExecSendBuffers, true);
}

int WCRecordingShell::Stop() {
    ml::cALGORITHM *alg = m_Instance.m_pAlg;
    if (alg == nullptr)
        return ml::ePluginNotLoaded;
    int err = ml::eNoErr;
    auto keep = [&err](int code) {
        if (err == ml::eNoErr)
            err = code;
    };
    if (m_Running)
        keep(Step("SetProcessActive(false)", alg->SetProcessActive(false)));
    // GUIs go before Dispose; each is removed from the algorithm's map.
    std::vector<std::string> guis;
    for (auto const &[name, gui] : alg->GetGUIMap())
        guis.emplace_back(name.c_str());
    for (auto const &name : guis)
        keep(alg->DisposeGuiAndRemoveFromMap(name.c_str()));
    Step("dispose GUIs", 0);
    keep(Step("Dispose", alg->Dispose()));
    if (m_Destroy)
        m_Destroy(alg);
    else
        delete alg;
    Step("destroy", 0);
    m_Instance.m_pAlg = nullptr;
    m_Running = false;
    m_Started = false;
    return err;
}

} // namespace mirel_shell
