#include "hosts/lv2/WCLV2ProcessSide.h"

#include <chrono>
#include <thread>

#include "core/WTErrors.h"

namespace mirel_lv2 {

namespace {

// The audio thread doing the main side's work itself (a host without a worker).
thread_local bool t_InPlace = false;

constexpr auto kPoll = std::chrono::microseconds(200);

} // namespace

WCLV2ProcessSide::WCInPlace::WCInPlace() : m_Was(t_InPlace) {
    t_InPlace = true;
}

WCLV2ProcessSide::WCInPlace::~WCInPlace() {
    t_InPlace = m_Was;
}

WCLV2ProcessSide::WCLV2ProcessSide() {
    m_Record = false;
}

WCLV2ProcessSide::~WCLV2ProcessSide() {
    // The plug-in has stopped by now or stops in the base; nothing travels any more.
    SetAudioLive(false);
}

void WCLV2ProcessSide::SetAudioLive(bool live) {
    if (live) {
        m_Live.store(true, std::memory_order_release);
        return;
    }
    m_Live.store(false, std::memory_order_release);
    ServiceChains();
    CollectChains();
}

void WCLV2ProcessSide::ServiceChains() {
    BUFFER_HEADER *chain = nullptr;
    while (m_ToAudio.Pop(chain)) {
        ApplyCheckedChain(chain);
        // Never full: no more chains are away than the ring holds.
        m_FromAudio.Push(chain);
    }
}

std::size_t WCLV2ProcessSide::CollectChains() {
    std::lock_guard<std::mutex> lock(ShellMutex());
    return CollectLocked();
}

std::size_t WCLV2ProcessSide::ReadsAway() {
    std::lock_guard<std::mutex> lock(ShellMutex());
    CollectLocked();
    return m_ReadsAway;
}

std::size_t WCLV2ProcessSide::CollectLocked() {
    BUFFER_HEADER *chain = nullptr;
    while (m_FromAudio.Pop(chain)) {
        --m_ChainsAway;
        if (ChainReads(chain))
            --m_ReadsAway;
        while (chain != nullptr) {
            BUFFER_HEADER *next = chain->next;
            auto travel = m_Travelling.find(chain);
            if (travel != m_Travelling.end() && --travel->second.chains == 0) {
                const bool freed = travel->second.freed;
                m_Travelling.erase(travel);
                if (freed)
                    ReleaseBuffer(chain);
            }
            chain = next;
        }
    }
    return m_ChainsAway;
}

int WCLV2ProcessSide::Post(int op, BUFFER_HEADER *chain) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kSyncWaitMs);
    while (CollectLocked() >= kRingSize) {
        if (std::chrono::steady_clock::now() > deadline)
            return ml::eTimeOut;
        std::this_thread::sleep_for(kPoll);
    }
    for (BUFFER_HEADER *buffer = chain; buffer != nullptr; buffer = buffer->next)
        ++m_Travelling[buffer].chains;
    m_ToAudio.Push(chain);
    ++m_ChainsAway;
    const bool reads = ChainReads(chain);
    m_ReadsAway += reads ? 1 : 0;
    if (op != ml::eExecSendBuffersInit || !reads)
        return ml::eNoErr;
    // The caller reads the words on return: wait until the audio thread has put them there.
    while (m_Travelling.count(chain) != 0) {
        if (std::chrono::steady_clock::now() > deadline)
            return ml::eTimeOut;
        std::this_thread::sleep_for(kPoll);
        CollectLocked();
    }
    return ml::eNoErr;
}

int WCLV2ProcessSide::SendChain(int op, BUFFER_HEADER *chain, std::int64_t &count) {
    const int err = CheckChain(chain, count);
    if (err != ml::eNoErr)
        return err;
    if (t_InPlace || !m_Live.load(std::memory_order_acquire)) {
        ApplyCheckedChain(chain);
        return ml::eNoErr;
    }
    return Post(op, chain);
}

int WCLV2ProcessSide::FreeChain(BUFFER_HEADER *chain, std::int64_t &count) {
    count = 0;
    for (BUFFER_HEADER *next = nullptr; chain != nullptr; chain = next, ++count) {
        next = chain->next;
        auto travel = m_Travelling.find(chain);
        if (travel != m_Travelling.end()) {
            travel->second.freed = true;
            continue;
        }
        const int err = ReleaseBuffer(chain);
        if (err != ml::eNoErr)
            return err;
    }
    return ml::eNoErr;
}

} // namespace mirel_lv2
