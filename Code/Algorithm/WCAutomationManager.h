#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;

// The automation controls of one algorithm, as hosts see them. Until the automation work reads
// them from the GUI XML the list is empty: names are unknown (index -1), indexes are out of
// range (-19), and a parameter change has no control to tell. [main-thread]
class WCAutomationManager {
public:
    void Init(cALGORITHM *alg) { m_pAlg = alg; }
    WTErr FinishCreate() { return eNoErr; }

    std::uint32_t GetNumAutomationControllers() const { return 0; }
    // -1 for a name no control has.
    int GetControlIndexByName(char const *name) const { return -1; }
    WTErr ControlLedStateFromMap(int index, int state, int &led) const { return eOutOfRangeNumber; }
    WTErr ControlLeadParamID(int index, std::uint64_t &id) const { return eOutOfRangeNumber; }
    WTErr GetAutomationRefCons(int index, std::int64_t &refCon1, std::int64_t &refCon2) const {
        return eOutOfRangeNumber;
    }
    void NotifyParamValue(std::uint64_t id, double value) {}
    // Forgets the MIDI messages attached to controls; none are attached before the MIDI work.
    void ClearMidiControlsAttachment() {}
    // Each control the host sees hears the state of its lead parameter in the new setup; with
    // no controls read there is no one to tell.
    void NotifyHostControlsOfSetup(int setup) {}

private:
    cALGORITHM *m_pAlg = nullptr;
};

MIREL_NAMESPACE_END
