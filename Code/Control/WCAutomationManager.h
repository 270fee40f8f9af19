#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Code/Process/KPAPIProcessMemory.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
class CStandardGUI_X;
class WCAutomationControl;
class WCControlPageTableList;
namespace XML {
class CXMLElement;
}
namespace Preset {
struct sPresetControlData;
}

// The automation controls of one algorithm, in the order hosts see them. Init builds them from
// the main GUI's XML ("GUIXML" 1000): every control of the automation order that carries
// "Automatable", and the dummies that hold a place in it; the list then stays as it is for the
// life of the instance, because hosts keep indexes in their sessions. A host event becomes a
// parameter update through the algorithm's pipeline; a parameter change and a user's gesture go
// back to the host through the auto callback. [main-thread] unless tagged.
class WCAutomationManager {
public:
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

    WCAutomationManager();
    ~WCAutomationManager();
    WCAutomationManager(const WCAutomationManager &) = delete;
    WCAutomationManager &operator=(const WCAutomationManager &) = delete;

    // Keeps `alg` and reads the controls from its main GUI when one exists, else from the GUI
    // XML through a document made without images for the time of the read. No GUI XML leaves
    // the list empty, which is no error: such a plug-in shows hosts no controls.
    int Init(cALGORITHM *alg);
    // The controls of `gui`'s automation order; what the list held before is dropped.
    int ReadFromGUI(const CStandardGUI_X &gui);
    int FinishCreate();
    void Clear();
    // A host control named `name` on parameter `id` at the end of the list, for a plug-in that
    // exposes a parameter no GUI control shows. -19 for an id beyond the parameters, -17 for a
    // name already in the list.
    int AddNewAutomationControl(const char *name, std::uint64_t id);
    // The same at `index` (0 to the count), the controls from there moving up one place; a
    // plug-in does it while it builds its list, before a host has stored indexes. -19 for an
    // index beyond the list as well.
    int AddNewAutomationControlForIndex(const char *name, std::uint64_t id, int index);
    // Takes control `index` out of the list, the later ones moving down: -19 beyond the list.
    int DeleteAutomationControl(int index);
    // The state a MIDI value (0 to 127) selects among `numStates` states: 128 / numStates
    // values a state, the last state for what rounds beyond; 0 without states.
    static int CalculateNextState(int numStates, int value) noexcept;

    std::uint32_t GetNumAutomationControllers() const {
        return static_cast<std::uint32_t>(m_Controls.size());
    }
    // Null beyond the list.
    WCAutomationControl *GetAutomationControl(int index) const;
    WCAutomationControl *GetAutomationControlByName(const char *name) const;
    WCAutomationControl *GetAutomationControlByLeadParamID(std::uint64_t id) const;
    // -1 for a name no control has.
    int GetControlIndexByName(const char *name) const;
    // The name cut to `length` - 1 characters and zero terminated; -19 for a bad index.
    int GetControlNameOfLength(int index, int length, char *out) const;
    // Fills a ControllerAutomationInfoVer11 whose version and index the caller wrote: -5017 for
    // another version, -3515 for a bad index, -1 when the lead parameter is not in the list.
    int GetControlAutomationInfo(void *record) const;
    int ControlLeadParamID(int index, std::uint64_t &id) const;
    int GetAutomationRefCons(int index, std::int64_t &refCon1, std::int64_t &refCon2) const;
    int SetAutomationRefCons(int index, std::int64_t refCon1, std::int64_t refCon2);
    // The LED a control surface lights for `state`, a MIDI value (0 to 127) it sends: for a lead
    // parameter with states, the state's number (CalculateNextState); otherwise the value
    // itself, for a ring of LEDs that follows it. -19 beyond the list or for a value outside
    // 0..127, and `led` untouched.
    int ControlLedStateFromMap(int index, int state, int &led) const;
    int RenameAutomationControl(int index, const char *name);

    // [any-thread] Tells the host the state of parameter `id` through each control it leads.
    void NotifyParamValue(std::uint64_t id, double state);
    // Each host control hears the state of its lead parameter in `setup`.
    void NotifyHostControlsOfSetup(int setup);
    // A gesture on parameter `id` begins or ends for every control it leads: 0 (also when it
    // leads none, as then the host has nothing to hear), or the first code of the auto callback.
    int Touch(std::uint64_t id);
    int Release(std::uint64_t id);
    int TouchControl(int index);
    int ReleaseControl(int index);

    // A host event: the control's parameters take `state` (0 to 1000) through the update
    // pipeline, without telling the host back. The chain is the caller's to send; -19 (in
    // `err`) for a bad index or a state outside the axis, and then nothing changes.
    BUFFER_HEADER *SetControllerValue(int index, double state, int &err);
    // Sends a chain (operation 0) and frees it (operation 4); the pointer is null afterwards.
    int ExecuteAndDisposeBuffer(BUFFER_HEADER *&chain);
    // Every control forgets its MIDI attachment (control id -1).
    void ClearMidiControlsAttachment();
    // The MIDI attachments as a preset keeps them: one record per attached control, by name.
    void SaveControlsToPreset(std::vector<Preset::sPresetControlData> &out) const;
    // Attaches the controls the records name, after checking them all: eControlOutOfRange (and
    // no control changed) for a name that is no control, a MIDI channel outside 0..15 or a
    // control id outside -1..127. The MIDI work that acts on attachments reads them from here.
    int LoadControlsFromPreset(const std::vector<Preset::sPresetControlData> &data);

    // The page tables a control surface gets when the plug-in ships none, written into `root`
    // as a WCControlVisibilityPageTableList: type "Main" holds every control in automation
    // order, dummies keeping their slot, `pageSize` to a page. eOutOfRangeNumber for a page
    // size outside 1..128 (and `root` untouched).
    int WriteDefaultPageTablesToXML(XML::CXMLElement *root, int pageSize = kDefaultPageSize) const;
    // The same with type "Discrete": the controls whose lead parameter has a number of states,
    // for the switches and selectors of a surface.
    int WriteDefaultPageTablesDiscCtrlsToXML(XML::CXMLElement *root,
                                             int pageSize = kDefaultPageSize) const;
    // The order as text, a line "index name lead-parameter" per control, for logs and tests.
    std::string DumpAutomationControlOrder() const;

    // A bank of eight encoders is what most control surfaces have.
    static constexpr int kDefaultPageSize = 8;

private:
    void AddControl(std::unique_ptr<WCAutomationControl> control);
    std::unique_ptr<WCAutomationControl> MakeHostControl(const char *name, std::uint64_t id,
                                                         int &err) const;
    void RebuildNameIndex();
    int WritePageTable(XML::CXMLElement *root, const char *type, int pageSize,
                       bool discreteOnly) const;

    cALGORITHM *m_pAlg = nullptr;
    // Automation order; the index is what hosts store.
    std::vector<std::unique_ptr<WCAutomationControl>> m_Controls;
    std::unordered_map<std::string, int> m_IndexByName;
};

MIREL_NAMESPACE_END
