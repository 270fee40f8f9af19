#pragma once

#include "Code/Presets/WTPresetTypes.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// One MIDI control attachment of a setup, as a preset keeps it: which message moves which
// parameter, and how. A plain record. [any-thread]
struct sPresetControlData {
    WCFixedString<63> m_Name;
    int m_MIDIChannel = 0;
    int m_MIDIControlID = 0;
    EMIDIEventType m_MIDIEventType = eMIDIUnknown;
    double m_OnValue = 1.0;
    double m_OffValue = 0.0;
    int m_TransposedNote = -1;
    int m_ChoiceID = -1;
    int m_LeadParam = -1;
    bool m_Latching = false;
    bool m_Keyswitch = false;

    friend bool operator==(const sPresetControlData &a, const sPresetControlData &b) noexcept {
        return a.m_Name == b.m_Name && a.m_MIDIChannel == b.m_MIDIChannel &&
               a.m_MIDIControlID == b.m_MIDIControlID && a.m_MIDIEventType == b.m_MIDIEventType &&
               a.m_OnValue == b.m_OnValue && a.m_OffValue == b.m_OffValue &&
               a.m_TransposedNote == b.m_TransposedNote && a.m_ChoiceID == b.m_ChoiceID &&
               a.m_LeadParam == b.m_LeadParam && a.m_Latching == b.m_Latching &&
               a.m_Keyswitch == b.m_Keyswitch;
    }
};

} // namespace Preset

MIREL_NAMESPACE_END
