#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "hosts/lv2/WTSpscRing.h"
#include "tools/shell/WCRecordingShell.h"

namespace mirel_lv2 {

namespace ml = MIREL_NAMESPACE_NAME;

// The process side of one LV2 instance: the shell's life cycle and memories, with sends split
// between two sides. The main side (the host's main and worker threads, which run the plug-in's
// logic) builds, checks and sends buffer chains; the audio thread owns the memories and applies
// the chains at the start of its next block. Chains travel to it through a lock-free ring and
// come back through another, so the audio thread neither locks nor allocates.
//
// Before the audio side is live (between instantiation and activation, and after deactivation)
// and while the audio thread itself runs the main side's work (a host without a worker), a send
// is applied at once, as a plain shell does.
//
// A chain the plug-in frees while it travels is released when it comes back. A synchronous send
// (op 1) that reads words waits for the audio thread to apply it, at most kSyncWaitMs, and then
// answers eTimeOut, the words unread.
class WCLV2ProcessSide : public mirel_shell::WCRecordingShell {
public:
    // Chains on their way to or back from the audio thread at most; a send beyond waits.
    static constexpr std::size_t kRingSize = 1024;
    static constexpr int kSyncWaitMs = 500;

    WCLV2ProcessSide();
    ~WCLV2ProcessSide() override;

    // [main-thread] Live: sends travel to the audio thread. Going back to not live, the host has
    // stopped calling the audio thread, so the chains still travelling are applied here.
    void SetAudioLive(bool live);
    // [audio-thread] Applies the chains sent since the last call and hands them back.
    void ServiceChains();
    // [main side] Takes back the chains the audio thread applied, releasing those the plug-in
    // freed meanwhile; answers how many chains still travel.
    std::size_t CollectChains();
    // [main side] Collects, and answers how many of the chains still travelling read words back.
    std::size_t ReadsAway();

    // Marks the calling thread as the audio thread doing the main side's work in place, so that
    // its sends are applied at once, for the lifetime of the object.
    class WCInPlace {
    public:
        WCInPlace();
        ~WCInPlace();
        WCInPlace(WCInPlace const &) = delete;
        WCInPlace &operator=(WCInPlace const &) = delete;

    private:
        bool m_Was;
    };

protected:
    int SendChain(int op, BUFFER_HEADER *chain, std::int64_t &count) override;
    int FreeChain(BUFFER_HEADER *chain, std::int64_t &count) override;

private:
    // A buffer on its way: how many sent chains hold it, and whether the plug-in freed it.
    struct WSTravel {
        int chains = 0;
        bool freed = false;
    };
    // Under the shell's mutex, as the two below.
    std::size_t CollectLocked();
    int Post(int op, BUFFER_HEADER *chain);

    WTSpscRing<BUFFER_HEADER *, kRingSize> m_ToAudio;
    WTSpscRing<BUFFER_HEADER *, kRingSize> m_FromAudio;
    std::unordered_map<BUFFER_HEADER *, WSTravel> m_Travelling;
    std::size_t m_ChainsAway = 0;
    std::size_t m_ReadsAway = 0;
    std::atomic<bool> m_Live{false};
};

} // namespace mirel_lv2
