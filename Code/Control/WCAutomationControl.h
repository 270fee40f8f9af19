#pragma once

#include <atomic>
#include <cstdint>

#include "Code/GUI/WCBaseControl.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class WCGUIControl;

// One control as a host or a control surface sees it: a name, the flag word and the parameter
// registrations of the GUI control it stands for, but no picture. The host hands two refcons
// that come back with every call to its auto callback; until refcon 1 is set the control tells
// the host nothing. The MIDI fields wait for MIDI learn and keep their "none" values.
// Made by WCAutomationManager, owned by it, gone with it. [main-thread], except where tagged:
// a value reaches the host from whatever thread changed the parameter.
class WCAutomationControl : public WCBaseControl {
public:
    // Operations of the auto callback: a value, then the start and end of a user's gesture.
    enum EAutoCallBackOp : int {
        eAutoSetValue = 16,    // refcon 2, double *state
        eAutoTouch = 17,       // refcon 2, null: a gesture begins
        eAutoRelease = 18,     // refcon 2, null: the gesture ends
    };

    explicit WCAutomationControl(cALGORITHM *alg) { m_pAlg = alg; }
    // A control named `name` registered on the parameters of `source`, with its flags and lead.
    WCAutomationControl(cALGORITHM *alg, const WCGUIControl &source, const char *name);

    // Tells the host a value of the lead parameter (operation 16). Nothing happens while refcon
    // 1 is 0 or no auto callback is set; always 0, as a host that refuses must not stop an
    // update that has already happened.
    int NotifySetControlValue(double state); // [any-thread]
    // The start and end of a gesture on this control. A touch that is already open is not told
    // twice, nor a release with no touch open. 0, or the auto callback's code.
    int Touch();
    int Release();
    bool IsTouched() const noexcept { return m_Touched; }
    // Whether the host sees this control (flag "Automatable").
    bool IsHostControl() const { return GetControlFlag(eCF_Automatable); }

    // [any-thread] A host may hand its refcons while another thread changes a parameter.
    std::int64_t GetRefCon1() const noexcept { return m_RefCon1.load(std::memory_order_acquire); }
    std::int64_t GetRefCon2() const noexcept { return m_RefCon2.load(std::memory_order_acquire); }
    void SetRefCons(std::int64_t refCon1, std::int64_t refCon2) noexcept {
        // Refcon 2 first: a reader that sees refcon 1 set sees the refcon 2 that goes with it.
        m_RefCon2.store(refCon2, std::memory_order_release);
        m_RefCon1.store(refCon1, std::memory_order_release);
    }

    std::int32_t GetMIDIControlID() const noexcept { return m_MIDIControlID; }
    std::int32_t GetMIDIEventType() const noexcept { return m_MIDIEventType; }
    std::int32_t GetMIDIChannel() const noexcept { return m_MIDIChannel; }
    std::int32_t GetMIDIGroup() const noexcept { return m_MIDIGroup; }
    bool IsMIDILearnMode() const noexcept { return m_MIDILearnMode; }
    bool GetControlSurfaceDisplay() const noexcept { return m_ControlSurfaceDisplay; }
    void SetMIDIAttachment(std::int32_t controlID, std::int32_t eventType,
                           std::int32_t channel) noexcept {
        m_MIDIControlID = controlID;
        m_MIDIEventType = eventType;
        m_MIDIChannel = channel;
    }

private:
    int CallHost(int op, void *data);

    std::atomic<std::int64_t> m_RefCon1{0};
    std::atomic<std::int64_t> m_RefCon2{0};
    std::int32_t m_MIDIControlID = -1;
    std::int32_t m_MIDIEventType = 0;
    std::int32_t m_MIDIChannel = 0;
    std::int32_t m_MIDIGroup = 0;
    bool m_MIDILearnMode = false;
    bool m_Touched = false;
    bool m_ControlSurfaceDisplay = false;
};

MIREL_NAMESPACE_END
