#include "Code/Control/WCAutomationManager.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Control/ControllerAutomationInfoVer11.h"
#include "Code/Control/WCAutomationControl.h"
#include "Code/Control/WCControlPageTableList.h"
#include "Code/GUI/CDummyControl.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/Presets/sPresetControlData.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/WUAssert.h"
#include "resources/WCResKey.h"

MIREL_NAMESPACE_BEGIN

namespace {

void CopyText(char *out, std::size_t size, const char *text) {
    std::strncpy(out, text != nullptr ? text : "", size - 1);
    out[size - 1] = '\0';
}

} // namespace

WCAutomationManager::WCAutomationManager() = default;
WCAutomationManager::~WCAutomationManager() = default;

int WCAutomationManager::Init(cALGORITHM *alg) {
    MIREL_ASSERT_RETURN(alg != nullptr, eMemNullPointer);
    m_pAlg = alg;
    if (const CStandardGUI_X *primary = alg->GetGUIPtr(cALGORITHM::kPrimaryGUIName))
        return ReadFromGUI(*primary);
    Clear();
    if (alg->GetContainer() == nullptr)
        return eNoErr;
    WTResContainerType *container = alg->GetContainer();
    WCFixedString<127> pluginName;
    alg->GetAlgName(pluginName);
    CStandardGUI_X document(container, pluginName.c_str());
    WCResKey key(cALGORITHM::kGUIXMLResType, cALGORITHM::kDefaultGUIXMLID);
    const int err = document.InitGuiWithoutImages(alg, key);
    int result = eNoErr;
    if (document.IsAlive())
        result = ReadFromGUI(document);
    else if (err != eRMResNotFound)
        result = err;
    document.Dispose();
    // The reading document published the GUI keys; the main GUI's own stand again.
    if (CStandardGUI_X *primary = alg->GetGUIPtr(cALGORITHM::kPrimaryGUIName))
        primary->PublishKeys();
    return result;
}

int WCAutomationManager::ReadFromGUI(const CStandardGUI_X &gui) {
    Clear();
    for (const WCGUIControl *control : gui.CheckGetOrderedControlList(true)) {
        const bool dummy = dynamic_cast<const CDummyControl *>(control) != nullptr;
        if (!dummy && !control->GetControlFlag(eCF_Automatable))
            continue;
        // A name read twice keeps its first place, so that a host's index never moves.
        if (m_IndexByName.contains(control->GetName().c_str()))
            continue;
        AddControl(
            std::make_unique<WCAutomationControl>(m_pAlg, *control, control->GetName().c_str()));
    }
    return eNoErr;
}

std::unique_ptr<WCAutomationControl>
WCAutomationManager::MakeHostControl(const char *name, std::uint64_t id, int &err) const {
    err = eNoErr;
    if (name == nullptr || m_pAlg == nullptr)
        err = eMemNullPointer;
    else if (m_pAlg->GetParam(id) == nullptr)
        err = eOutOfRangeNumber;
    else if (GetControlIndexByName(name) != -1)
        err = eSomeThingInitailzedTwice;
    if (err != eNoErr)
        return nullptr;
    auto control = std::make_unique<WCAutomationControl>(m_pAlg);
    control->SetName(name);
    control->SetControlFlag(eCF_Automatable, true);
    err = control->Register(WCParamRegistrationData(m_pAlg, id, false, {}), false);
    return err == eNoErr ? std::move(control) : nullptr;
}

int WCAutomationManager::AddNewAutomationControl(const char *name, std::uint64_t id) {
    return AddNewAutomationControlForIndex(name, id, static_cast<int>(m_Controls.size()));
}

int WCAutomationManager::AddNewAutomationControlForIndex(const char *name, std::uint64_t id,
                                                         int index) {
    if (index < 0 || static_cast<std::size_t>(index) > m_Controls.size())
        return eOutOfRangeNumber;
    int err = eNoErr;
    auto control = MakeHostControl(name, id, err);
    if (control == nullptr)
        return err;
    m_Controls.insert(m_Controls.begin() + index, std::move(control));
    RebuildNameIndex();
    return eNoErr;
}

int WCAutomationManager::DeleteAutomationControl(int index) {
    if (GetAutomationControl(index) == nullptr)
        return eOutOfRangeNumber;
    m_Controls.erase(m_Controls.begin() + index);
    RebuildNameIndex();
    return eNoErr;
}

int WCAutomationManager::CalculateNextState(int numStates, int value) noexcept {
    if (numStates <= 0)
        return 0;
    const double step = 128.0 / numStates;
    return std::min(static_cast<int>(std::max(value, 0) / step), numStates);
}

void WCAutomationManager::RebuildNameIndex() {
    m_IndexByName.clear();
    for (std::size_t i = 0; i < m_Controls.size(); ++i)
        m_IndexByName.emplace(m_Controls[i]->GetName().c_str(), static_cast<int>(i));
}

void WCAutomationManager::AddControl(std::unique_ptr<WCAutomationControl> control) {
    m_IndexByName.emplace(control->GetName().c_str(), static_cast<int>(m_Controls.size()));
    m_Controls.push_back(std::move(control));
}

int WCAutomationManager::FinishCreate() {
    int first = eNoErr;
    for (auto &control : m_Controls)
        if (const int err = control->FinishCreate(); err != eNoErr && first == eNoErr)
            first = err;
    return first;
}

void WCAutomationManager::Clear() {
    m_Controls.clear();
    m_IndexByName.clear();
}

WCAutomationControl *WCAutomationManager::GetAutomationControl(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= m_Controls.size())
        return nullptr;
    return m_Controls[static_cast<std::size_t>(index)].get();
}

WCAutomationControl *WCAutomationManager::GetAutomationControlByName(const char *name) const {
    return GetAutomationControl(GetControlIndexByName(name));
}

WCAutomationControl *
WCAutomationManager::GetAutomationControlByLeadParamID(std::uint64_t id) const {
    for (const auto &control : m_Controls)
        if (control->GetLeadParamID() == id)
            return control.get();
    return nullptr;
}

int WCAutomationManager::GetControlIndexByName(const char *name) const {
    if (name == nullptr)
        return -1;
    const auto found = m_IndexByName.find(name);
    return found == m_IndexByName.end() ? -1 : found->second;
}

int WCAutomationManager::GetControlNameOfLength(int index, int length, char *out) const {
    MIREL_ASSERT_RETURN(out != nullptr && length > 0, eMemNullPointer);
    const WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr)
        return eOutOfRangeNumber;
    CopyText(out, static_cast<std::size_t>(length), control->GetName().c_str());
    return eNoErr;
}

int WCAutomationManager::GetControlAutomationInfo(void *record) const {
    MIREL_ASSERT_RETURN(record != nullptr, eMemNullPointer);
    ControllerAutomationInfoVer11 info;
    std::memcpy(&info, record, sizeof info);
    if (info.m_Version != ControllerAutomationInfoVer11::kVersion)
        return kErrWrongAutomationInfoVersion;
    const WCAutomationControl *control = GetAutomationControl(info.m_ControlIndex);
    if (control == nullptr)
        return eControlOutOfRange;
    const std::uint64_t id = control->GetLeadParamID();
    const sCONTROL_PARAM *param = m_pAlg != nullptr ? m_pAlg->GetParam(id) : nullptr;
    if (param == nullptr)
        return -1;
    const int setup = m_pAlg->GetActiveSetup();
    info.m_Mark = ControllerAutomationInfoVer11::kMark;
    info.m_NumStates = param->IsDiscrete() ? param->GetNumStates() : 0;
    info.m_ControlKind = param->IsDiscrete() ? 1 : 0;
    info.m_RefCon1 = control->GetRefCon1();
    info.m_RefCon2 = control->GetRefCon2();
    CopyText(info.m_ShortName, sizeof info.m_ShortName, control->GetName().c_str());
    CopyText(info.m_Units, sizeof info.m_Units, param->GetUnits().c_str());
    CopyText(info.m_ValueString, sizeof info.m_ValueString, param->GetValueString().c_str());
    info.m_MoreValues = 0;
    info.m_Zero = 0;
    info.m_Flag = control->IsHostControl() ? 1 : 0;
    info.m_RegisteredData = static_cast<std::int64_t>(control->GetNumRegistrations());
    info.m_Value = std::llround(param->GetState(setup));
    info.m_RealWorld = param->GetRealWorld(setup);
    info.m_ParamID = static_cast<std::int64_t>(id);
    CopyText(info.m_LongName, sizeof info.m_LongName, control->GetName().c_str());
    std::memcpy(record, &info, sizeof info);
    return eNoErr;
}

int WCAutomationManager::ControlLeadParamID(int index, std::uint64_t &id) const {
    const WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr)
        return eOutOfRangeNumber;
    id = control->GetLeadParamID();
    return eNoErr;
}

int WCAutomationManager::GetAutomationRefCons(int index, std::int64_t &refCon1,
                                              std::int64_t &refCon2) const {
    const WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr)
        return eOutOfRangeNumber;
    refCon1 = control->GetRefCon1();
    refCon2 = control->GetRefCon2();
    return eNoErr;
}

int WCAutomationManager::SetAutomationRefCons(int index, std::int64_t refCon1,
                                              std::int64_t refCon2) {
    WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr)
        return eOutOfRangeNumber;
    control->SetRefCons(refCon1, refCon2);
    return eNoErr;
}

int WCAutomationManager::ControlLedStateFromMap(int index, int state, int &led) const {
    constexpr int kMaxMIDIValue = 127;
    const WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr || state < 0 || state > kMaxMIDIValue)
        return eOutOfRangeNumber;
    const sCONTROL_PARAM *lead = m_pAlg != nullptr && control->GetNumRegistrations() > 0
                                     ? m_pAlg->GetParam(control->GetLeadParamID())
                                     : nullptr;
    led = lead != nullptr && lead->IsDiscrete()
              ? CalculateNextState(static_cast<int>(lead->GetNumStates()), state)
              : state;
    return eNoErr;
}

int WCAutomationManager::RenameAutomationControl(int index, const char *name) {
    MIREL_ASSERT_RETURN(name != nullptr, eMemNullPointer);
    WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr)
        return eOutOfRangeNumber;
    const int other = GetControlIndexByName(name);
    if (other == index)
        return eNoErr;
    // Two controls of one name would make lookups by name answer one of them at random.
    if (other != -1)
        return eSomeThingInitailzedTwice;
    m_IndexByName.erase(control->GetName().c_str());
    control->SetName(name);
    m_IndexByName.emplace(name, index);
    return eNoErr;
}

void WCAutomationManager::NotifyParamValue(std::uint64_t id, double state) {
    for (auto &control : m_Controls)
        if (control->GetLeadParamID() == id)
            control->NotifySetControlValue(state);
}

void WCAutomationManager::NotifyHostControlsOfSetup(int setup) {
    if (m_pAlg == nullptr)
        return;
    for (auto &control : m_Controls)
        if (control->IsHostControl())
            if (const sCONTROL_PARAM *param = m_pAlg->GetParam(control->GetLeadParamID()))
                control->NotifySetControlValue(param->GetState(setup));
}

int WCAutomationManager::Touch(std::uint64_t id) {
    int result = eNoErr;
    for (auto &control : m_Controls)
        if (control->GetLeadParamID() == id)
            if (const int err = control->Touch(); result == eNoErr)
                result = err;
    return result;
}

int WCAutomationManager::Release(std::uint64_t id) {
    int result = eNoErr;
    for (auto &control : m_Controls)
        if (control->GetLeadParamID() == id)
            if (const int err = control->Release(); result == eNoErr)
                result = err;
    return result;
}

int WCAutomationManager::TouchControl(int index) {
    WCAutomationControl *control = GetAutomationControl(index);
    return control != nullptr ? control->Touch() : eOutOfRangeNumber;
}

int WCAutomationManager::ReleaseControl(int index) {
    WCAutomationControl *control = GetAutomationControl(index);
    return control != nullptr ? control->Release() : eOutOfRangeNumber;
}

WCAutomationManager::BUFFER_HEADER *WCAutomationManager::SetControllerValue(int index, double state,
                                                                            int &err) {
    WCAutomationControl *control = GetAutomationControl(index);
    if (control == nullptr || m_pAlg == nullptr || !(state >= 0.0 && state <= 1000.0)) {
        err = eOutOfRangeNumber;
        return nullptr;
    }
    err = eNoErr;
    BUFFER_HEADER *chain = nullptr;
    for (std::size_t i = 0; i < control->GetNumRegistrations(); ++i) {
        const std::uint64_t id = control->GetRegistration(i).GetRegisteredParam();
        // The host already knows the value it sent: telling it back would echo into its lane.
        BUFFER_HEADER *more = m_pAlg->UpdateParamState(id, state, false);
        chain = m_pAlg->ChainBufs(chain, more);
    }
    return chain;
}

int WCAutomationManager::ExecuteAndDisposeBuffer(BUFFER_HEADER *&chain) {
    if (chain == nullptr || m_pAlg == nullptr)
        return eNoErr;
    return m_pAlg->SendAndFreeBuffers(chain, eExecSendBuffers, true);
}

int WCAutomationManager::WriteDefaultPageTablesToXML(XML::CXMLElement *root, int pageSize) const {
    return WritePageTable(root, "Main", pageSize, false);
}

int WCAutomationManager::WriteDefaultPageTablesDiscCtrlsToXML(XML::CXMLElement *root,
                                                              int pageSize) const {
    return WritePageTable(root, "Discrete", pageSize, true);
}

int WCAutomationManager::WritePageTable(XML::CXMLElement *root, const char *type, int pageSize,
                                        bool discreteOnly) const {
    MIREL_ASSERT_RETURN(root != nullptr, eMemNullPointer);
    if (pageSize < 1 || pageSize > WCControlPageTableList::kMaxPageSize)
        return eOutOfRangeNumber;
    std::vector<WCFixedString<63>> names;
    for (const auto &control : m_Controls) {
        const sCONTROL_PARAM *lead =
            m_pAlg != nullptr ? m_pAlg->GetParam(control->GetLeadParamID()) : nullptr;
        if (discreteOnly && (lead == nullptr || !lead->IsDiscrete()))
            continue;
        names.emplace_back(control->GetName().c_str());
    }
    WCControlVisibilityPageTableList tables;
    tables.SetPageTable(type, 0, pageSize, names);
    root->SetName(tables.GetRootName());
    tables.WriteToXML(root);
    return eNoErr;
}

std::string WCAutomationManager::DumpAutomationControlOrder() const {
    std::string text;
    for (std::size_t i = 0; i < m_Controls.size(); ++i) {
        const WCAutomationControl &control = *m_Controls[i];
        text += std::to_string(i) + ' ' + control.GetName().c_str() + ' ' +
                (control.GetNumRegistrations() > 0 ? std::to_string(control.GetLeadParamID())
                                                   : std::string("-")) +
                '\n';
    }
    return text;
}

void WCAutomationManager::ClearMidiControlsAttachment() {
    for (auto &control : m_Controls)
        control->SetMIDIAttachment(-1, 0, 0);
}

void WCAutomationManager::SaveControlsToPreset(std::vector<Preset::sPresetControlData> &out) const {
    out.clear();
    for (const auto &control : m_Controls) {
        if (control->GetMIDIControlID() == -1)
            continue;
        Preset::sPresetControlData data;
        data.m_Name = control->GetName().c_str();
        data.m_MIDIChannel = control->GetMIDIChannel();
        data.m_MIDIControlID = control->GetMIDIControlID();
        data.m_MIDIEventType = static_cast<Preset::EMIDIEventType>(control->GetMIDIEventType());
        data.m_LeadParam =
            control->GetNumRegistrations() > 0 ? static_cast<int>(control->GetLeadParamID()) : -1;
        out.push_back(data);
    }
}

int WCAutomationManager::LoadControlsFromPreset(
    const std::vector<Preset::sPresetControlData> &data) {
    constexpr int kMIDIChannels = 16;
    constexpr int kMIDIControllers = 128;
    for (const auto &one : data)
        if (GetControlIndexByName(one.m_Name.c_str()) == -1 || one.m_MIDIChannel < 0 ||
            one.m_MIDIChannel >= kMIDIChannels || one.m_MIDIControlID < -1 ||
            one.m_MIDIControlID >= kMIDIControllers)
            return eControlOutOfRange;
    for (const auto &one : data)
        GetAutomationControlByName(one.m_Name.c_str())
            ->SetMIDIAttachment(one.m_MIDIControlID, static_cast<int>(one.m_MIDIEventType),
                                one.m_MIDIChannel);
    return eNoErr;
}

MIREL_NAMESPACE_END
