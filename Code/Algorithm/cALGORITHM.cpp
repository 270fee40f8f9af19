#include "Code/Algorithm/cALGORITHM.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>

#include "Code/Algorithm/WCStAlgLocker.h"
#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/Presets/CPresetsManager.h"
#include "files/WUFileSystemObjects.h"
#include "resources/GetAndFilterXMLResource.h"
#include "resources/WCNativeModule.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The component types of the shell family. Native shells run the process code in the host's
// process; network shells run it on a server. 'arti' marks an artist component.
constexpr std::array<WCFourCC, 9> kNativeComponentTypes = {
    WCFourCC("Nati"), WCFourCC("NatM"), WCFourCC("NatS"), WCFourCC("VST3"), WCFourCC("AUin"),
    WCFourCC("AAXn"), WCFourCC("LV2n"), WCFourCC("CLAP"), WCFourCC("StdA")};
constexpr std::array<WCFourCC, 6> kNetShellComponentTypes = {WCFourCC("NetS"), WCFourCC("NSh1"),
                                                             WCFourCC("NSh2"), WCFourCC("SGrd"),
                                                             WCFourCC("NetX"), WCFourCC("NetM")};
constexpr WCFourCC kArtistComponentType("arti");

// The process side's base memory operation code; write, read, read-write and write-extended
// follow it at +0, +1, +2 and +4.
constexpr int kMemOpBase = 0;

} // namespace

cALGORITHM::cALGORITHM(MirelComponentInfo const &info, WTResContainerType *&container)
    : RM::WCResContainerUser(container) {
    m_AlgLock.init();
    m_ComponentInfo = info;
    CreateKeyValueStore();
    m_MeterManager.FinishCreate(this);
    m_ShellListener.SetAlgorithm(this);

    ResetAllmembers();
    m_UndoLevel = 1000;
    // The algorithm type and sub-type stay "????" unless the algorithm XML names them; the
    // component's own codes are in the component info.
    m_PresetCompatibleSubComps.push_back(info.m_ComponentSubType);

    // A failed read leaves the defaults; its code stays in GetAlgXMLError.
    (void)ReadAlgXML();
    if (m_UserManualName.empty())
        m_UserManualName = m_AlgName;

    m_IsNative = DecideIsNativeFromComponentType(info.m_ComponentType);
    m_IsNetShell = DecideIsNetShellFromComponentType(info.m_ComponentType);
    m_IsArtist = info.m_ComponentType == kArtistComponentType;

    m_ProcessMemory.m_MemOpCodes = {kMemOpBase + 0, kMemOpBase + 1, kMemOpBase + 2,
                                    kMemOpBase + 4};
    m_ActiveSetup = eSetupA;
    m_SampleRate = 44100;
    m_UpdateAlgRequired = true;
}

cALGORITHM::~cALGORITHM() {
    // The GUIs' controls are entered in the parameters' controller lists: they go first, and
    // the automation controls, which take themselves out of those lists, with them.
    DisposeAllGUIs();
    m_AutomationManager.Clear();
    m_Broadcaster.remove(&m_ShellListener);
    DisposeKeyValueStore();
    m_ProcessLock.uninit();
    m_AlgLock.uninit();
}

void cALGORITHM::CreateKeyValueStore() {
    m_pKeyValues = std::make_unique<WCKeyValue>();
}

void cALGORITHM::DisposeKeyValueStore() {
    m_pKeyValues.reset();
}

void cALGORITHM::ResetAllmembers() {
    m_AlgName.clear();
    m_UserManualName.clear();
    m_AbbreviatedNames.clear();
    m_DefaultSkin.clear();
    m_SetupNames[0].clear();
    m_SetupNames[1].clear();
    m_Mute = false;
    m_Bypass = false;
    m_SampleRate = 44100;
    m_MinOutInRatio = 1.0f;
    m_MaxOutInRatio = 1.0f;
    // Plug-ins draw random names and ids with the C generator; seed it once per instance.
    std::srand(static_cast<unsigned>(std::time(nullptr)));
}

int cALGORITHM::ReadAlgXML() {
    // Without a container there is nothing to read and the defaults stand.
    if (GetContainer() == nullptr) {
        m_AlgXMLError = eRMContainerNotFound;
        return m_AlgXMLError;
    }
    WTResourceType *resource = nullptr;
    void *data = nullptr;
    m_AlgXMLError = RM::GetAndFilterPugiXMLResourceByComponentInfo(
        *this, WCResKey("AlgXML", short(1001)), m_ComponentInfo, resource, data);
    if (m_AlgXMLError == eNoErr)
        m_AlgXMLError = ReadFromXML(static_cast<pugi::xml_document *>(data)->document_element());
    return m_AlgXMLError;
}

bool cALGORITHM::DecideIsNativeFromComponentType(WCFourCC type) {
    return std::find(kNativeComponentTypes.begin(), kNativeComponentTypes.end(), type) !=
           kNativeComponentTypes.end();
}

bool cALGORITHM::DecideIsNetShellFromComponentType(WCFourCC type) {
    return std::find(kNetShellComponentTypes.begin(), kNetShellComponentTypes.end(), type) !=
           kNetShellComponentTypes.end();
}

// ---- threads and locks ----------------------------------------------------------------------

bool cALGORITHM::SetMainThreadRef() {
    if (!m_MainThreadRef.IsNull())
        return false;
    m_MainThreadRef = miThread::GetCurrentThreadRef();
    return true;
}

bool cALGORITHM::IsCurThreadMainThread() const {
    return m_MainThreadRef.IsNull() || m_MainThreadRef == miThread::GetCurrentThreadRef();
}

bool cALGORITHM::TryLockAlg() const {
    return m_AlgLock.tryobtain();
}
void cALGORITHM::LockProcess() const {
    m_ProcessLock.obtain();
}
void cALGORITHM::UnLockProcess() const {
    m_ProcessLock.release();
}


// ---- life cycle -----------------------------------------------------------------------------

int cALGORITHM::InitProcessCode() {
    // The builds come from the bundle's "ProcessXML"; a plug-in without one states its needs in
    // InitProcessCodeSelf.
    const int read = GetContainer() == nullptr
                         ? eRMContainerNotFound
                         : m_ProcessCodeManager.ReadProcCodeDescForComponent(m_ComponentInfo,
                                                                             GetContainer());
    if (!m_AdjustedProcessCode) {
        m_AdjustedProcessCode = true;
        AdjustProcessCodeDescriptionsSelf();
        SetPluginValue_bool("AlreadyCalledAdjustProcessCodeDescriptions", true);
    }
    SProcessorSpec spec;
    GetDefaultProcessorForComponent(spec);
    m_CurrentProcessor = spec;
    m_DSPReqRes.processor = spec;
    if (read == eNoErr)
        m_ProcessCodeManager.GetDSPReqResForSpecificProcessor(spec, m_DSPReqRes);
    if (m_IsNative)
        m_DSPReqRes.codeResID = 1000;
    InitProcessCodeSelf();
    // A broken description is the plug-in's fault and must show; a missing one is normal.
    return read == eXMLTreeNotValid ? read : eNoErr;
}

void cALGORITHM::GetDefaultProcessorForComponent(SProcessorSpec &spec) {
    spec = SProcessorSpec{};
    const WCFourCC type = m_ComponentInfo.m_ComponentType;
    if (type == WCFourCC("sigD") || type == WCFourCC("pDPI"))
        spec.family = 1;
    else if (m_IsNative || m_IsNetShell)
        spec.family = 3;
    GetDefaultProcessorForComponentSelf(spec);
}

int cALGORITHM::FinishCreate() {
    StartRedisReporting();
    if (GetPluginValue_bool("NeedProcessThreadSafe", false))
        m_ProcessLock.init();
    // A missing parameter XML leaves no parameters; its code stays in GetParameterListError and
    // the plug-in's own step still decides the result.
    (void)PrepareParameterVec();
    ScaleAllParams(-1);
    // A meter that cannot be added (none is refused but a null one) leaves the others working.
    (void)InitializeMeterManager();
    m_AutomationManager.Init(this);
    m_Broadcaster.insert(&m_ShellListener);
    m_AutomationManager.FinishCreate();
    // The plug-in's own step decides the result.
    const int err = FinishCreateSelf();
    Report("alg state", "created");
    Report("active_setup", m_ActiveSetup == eSetupA ? "SETUP_A" : "SETUP_B");
    InitExportItemMap();
    Init_Key_Values();
    SetPluginValue_bool("FinishCreateWasCalled", true);
    m_FinishCreateCalled = true;
    return err;
}

void cALGORITHM::InitExportItemMap() {
    InitExportItemMapSelf();
    m_ExportItems.add_item("track_name",
                           std::make_unique<WCExportItem_call_alg_set_func_with_const_char>(
                               [this](char const *text) { return SetTrackName(text); }));
    m_ExportItems.add_item(
        "track_volume",
        std::make_unique<WCExportItem_call_alg_set_func_with_const_char>([this](char const *text) {
            char *end = nullptr;
            const double volume = std::strtod(text, &end);
            return end == text ? eValueWrongSize : SetTrackVolume(volume);
        }));
    m_ExportItems.add_item_pattern(WCExportItem_ControlRealWorldToState::kPattern,
                                   std::make_unique<WCExportItem_ControlRealWorldToState>(
                                       [this](std::int64_t control, double &inOut) {
                                           return ControlStateFromRealWorldValue(control, inOut);
                                       }));
}

void cALGORITHM::Init_Key_Values() {
    Init_Key_Values_Self();
    // Capabilities a plug-in may have set in its own step keep its value.
    for (char const *key :
         {"StaticSidechain", "NotifyTouchReleaseOnPresetLoad", "GUI_resize_supported",
          "GUI_screen_oversize_supported", "IsMirelEditModeEnabled", "ShowAllHTMLs", "HideAllHTMLs",
          "ShowAllChildWindows", "HideAllChildWindows", "GUI_System_ExecuteCopy",
          "GUI_System_ExecuteSwitch", "ARASupport"}) {
        if (!m_pKeyValues->Has(key))
            m_pKeyValues->Set(key, false);
    }
    if (!m_pKeyValues->Has("EnableMirelEditMode"))
        m_pKeyValues->Set("EnableMirelEditMode",
                          FM::IsExistSpecificDiagnosticsFolder("EnableMirelEditMode"));
    for (char const *key :
         {"inputs:stem", "sidechain_inputs:stem", "outputs:stem", "through_delay", "tail:length"}) {
        if (!m_pKeyValues->Has(key))
            m_pKeyValues->Set(key, std::int32_t(0));
    }
    if (!m_pKeyValues->Has("channels:num:max"))
        m_pKeyValues->SetFunc("channels:num:max", [this] {
            return WCKeyValue::Value(std::max(m_DSPReqRes.inputs, m_DSPReqRes.outputs));
        });
    // Registered by function, so a read always sees the current value.
    m_pKeyValues->SetFunc("num_DoIdle_calls",
                          [this] { return WCKeyValue::Value(m_NumDoIdleCalls); });
    m_pKeyValues->SetFunc("num_UpdateAlg_calls",
                          [this] { return WCKeyValue::Value(m_NumUpdateAlgCalls); });
    m_pKeyValues->SetFunc("num_InitData_calls",
                          [this] { return WCKeyValue::Value(m_NumInitDataCalls); });
    m_pKeyValues->SetFunc("optimalRefreshRate",
                          [this] { return WCKeyValue::Value(m_OptimalRefreshRate); });
    m_pKeyValues->SetFunc("GetNumParams", [this] { return WCKeyValue::Value(GetNumParams()); });
    m_pKeyValues->SetFunc("GetNumAutomationControls", [this] {
        return WCKeyValue::Value(m_AutomationManager.GetNumAutomationControllers());
    });
    m_pKeyValues->SetFunc("inputs:num", [this] { return WCKeyValue::Value(m_DSPReqRes.inputs); });
    m_pKeyValues->SetFunc("sidechain_inputs:num",
                          [this] { return WCKeyValue::Value(m_DSPReqRes.sideChainInputs); });
    m_pKeyValues->SetFunc("outputs:num", [this] { return WCKeyValue::Value(m_DSPReqRes.outputs); });
    m_pKeyValues->SetFunc("samplerate", [this] { return WCKeyValue::Value(m_SampleRate); });
    m_pKeyValues->SetFunc("samplerate:max",
                          [this] { return WCKeyValue::Value(m_DSPReqRes.maxSampleRate); });
    m_pKeyValues->SetFunc("coefs:num", [this] {
        return WCKeyValue::Value(static_cast<std::int32_t>(m_DSPReqRes.coefsWords));
    });
    m_pKeyValues->SetFunc("coefs:offset", [this] { return WCKeyValue::Value(GetCoefsOfs()); });
    m_pKeyValues->SetFunc("globalbypass", [this] { return WCKeyValue::Value(m_Bypass); });
    m_pKeyValues->SetFunc("has_link_groups",
                          [this] { return WCKeyValue::Value(m_LinkGroups.HasLinkGroups()); });
}

int cALGORITHM::InitData() {
    ++m_NumInitDataCalls;
    m_ProcessMemory.SizeImages(m_DSPReqRes.coefsWords, m_DSPReqRes.statesWords);
    m_ProcessMemory.SizePorts(m_DSPReqRes.inputs, m_DSPReqRes.outputs);
    const int err = InitDataSelf();
    m_MeterManager.OptimizeMeterOrder();
    Report("alg state", "InitData");
    return err;
}

int cALGORITHM::InitInstanceData() {
    // The manager finds or makes the user's preset folders; one that cannot be made fails the
    // instance's start here rather than a later save.
    if (m_PresetsManager == nullptr) {
        try {
            m_PresetsManager = std::make_unique<Preset::CPresetsManager>(Preset::CPublicAlg(*this));
        } catch (int code) {
            return code;
        } catch (const std::bad_alloc &) {
            return eMemOutOfMemory;
        }
    }
    int err = InitInstanceDataSelf();
    if (!GetPluginValue_bool("DontLoadDefaultPreset", false)) {
        if (err == eNoErr)
            (void)m_PresetsManager->UserMenuPresets_LoadPresets(Preset::CPublicAlg(*this));
        // No default anywhere is no error: the parameters keep their initial values.
        (void)HandleLoadFactoryOrUserDefaultPreset();
    }
    // Both setups start from what the default gave the active one.
    CopySetup();
    m_InstanceReady = true;
    return err;
}

int cALGORITHM::SetProcessActive(bool active) {
    const int err = SetProcessActiveSelf(active);
    m_ProcessActive = active;
    m_MeterManager.ResetAllValue();
    Report("isProcessActive", active ? "true" : "false");
    return err;
}

BUFFER_HEADER *cALGORITHM::InitAlg(bool send) {
    BUFFER_HEADER *chain = InitAlgSelf();
    if (chain != nullptr)
        SendAndFreeBuffers(chain, eExecSendBuffersInit, send);
    Report("alg state", "InitAlg");
    return nullptr;
}

BUFFER_HEADER *cALGORITHM::UpdateAlg() {
    ++m_NumUpdateAlgCalls;
    BUFFER_HEADER *chain = nullptr;
    {
        WCStAlgLocker lock(*this);
        chain = UpdateAlgSelf();
        // Repeating the side-chain state is what makes a stored -1 take effect later.
        ChangeSideChainActive(m_SideChainActive);
        m_LinkGroups.AtUpdateAlg();
        ClearUpdateAlgRequired();
        // Each GUI of the map would refresh here and the first run would register with the
        // preset browsers; neither the GUI layer nor the browsers exist yet.
    }
    Report("alg state", "UpdateAlg");
    return chain;
}

int cALGORITHM::DoIdle(short level) {
    ++m_NumDoIdleCalls;
    if (m_PresetsManager != nullptr)
        m_PresetsManager->ApplyChunkSetWork(Preset::CPublicAlg(*this));
    if (m_RefreshMetersRequested)
        (void)RefreshMetersBuffers();
    // Idle reads the meters unless the shell's meter thread took that over; a failed read leaves
    // the values as they were and is no error of the tick.
    if (m_ProcessActive && !m_ShellReadsMeters)
        (void)m_MeterManager.ReadFromDSP(true);
    int err = m_MeterManager.UpdateDisplay();
    const auto threshold = static_cast<std::uint32_t>(level < 0 ? 0 : level);
    for (std::uint64_t id = 0; id < m_Params.size(); ++id) {
        if (m_Params[id].GetUpdateFlags() < threshold)
            continue;
        const int displayErr = UpdateDisplay(id);
        if (err == eNoErr)
            err = displayErr;
    }
    const int selfErr = DoIdleSelf(level);
    if (selfErr != eNoErr)
        err = selfErr;
    return err;
}

int cALGORITHM::ResetAudioBuffers() {
    WCStAlgLocker lock(*this);
    BUFFER_HEADER *chain = ResetAudioBuffersSelf();
    return SendAndFreeBuffers(chain, eExecSendBuffers, true);
}

int cALGORITHM::Dispose() {
    if (m_Disposed)
        return eNoErr;
    DisposeAllGUIs();
    DisposeSelf();
    FreeBuffers(m_PendingMeterReads);
    m_PresetsManager.reset();
    StopRedisReporting();
    m_Broadcaster.remove(&m_ShellListener);
    // Last: the filtered algorithm XML and whatever else the instance loaded go back to the
    // resource manager now, not at destruction.
    ReleaseAllLoadedResources();
    m_Disposed = true;
    return eNoErr;
}

int cALGORITHM::ChangeSampleRate(int rate) {
    int err = eNoErr;
    {
        WCStAlgLocker lock(*this);
        // A maximum of 0 means the process code gave none.
        if (rate == m_SampleRate) {
            err = eNoErr;
        } else if (rate <= 0) {
            err = eOutOfRangeNumber;
        } else if (m_DSPReqRes.maxSampleRate > 0 && rate > m_DSPReqRes.maxSampleRate) {
            err = kErrSampleRateTooHigh;
        } else {
            m_SampleRate = rate;
            SetUpdateAlgRequired();
            err = ChangeSampleRateSelf();
        }
    }
    WCFixedString<31> text;
    text << m_SampleRate;
    Report("SampleRate", text.c_str());
    return err;
}

void cALGORITHM::StartRedisReporting() {
    // The reporter connects only when the Redis bridge is configured; none exists yet.
    m_pReporter = nullptr;
}

void cALGORITHM::StopRedisReporting() {
    m_pReporter = nullptr;
}

void cALGORITHM::Report(char const *, char const *) {
    // Reports go to the instance's Redis reporter, which is absent while the bridge is off.
}

// ---- identity -------------------------------------------------------------------------------

void cALGORITHM::SetAlgName(char const *name) {
    m_AlgName = name;
    if (m_UserManualName.empty())
        m_UserManualName = m_AlgName;
}

void cALGORITHM::SetAlgTypes(WCFourCC type, WCFourCC subType) {
    m_AlgType = type;
    m_AlgSubType = subType;
}

int cALGORITHM::GetAlgName(WCFixedStringBase &out) const {
    out = m_AlgName;
    return eNoErr;
}

int cALGORITHM::GetAlgNameOfLength(std::int64_t length, WCFixedStringBase &out) const {
    if (length <= 0)
        return eOutOfRangeNumber;
    WCFixedString<63> const *shorter = nullptr;
    for (auto const &[numChars, name] : m_AbbreviatedNames) {
        if (numChars == length) {
            out = name;
            return eNoErr;
        }
        if (numChars < length && name.size() <= static_cast<std::uint64_t>(length) &&
            (shorter == nullptr || name.size() > shorter->size()))
            shorter = &name;
    }
    if (m_AlgName.size() > static_cast<std::uint64_t>(length) && shorter != nullptr)
        out = *shorter;
    else
        out.assign(m_AlgName.c_str(), std::min<std::uint64_t>(length, m_AlgName.size()));
    return eNoErr;
}

int cALGORITHM::GetMirelLibHandle(WTNativeDLLRefType *&handle) {
    return Utils::WCNativeModule::GetModuleOfAddress(
        reinterpret_cast<void const *>(&GetMirelLibHandle), handle);
}

// ---- GUIs -----------------------------------------------------------------------------------

CStandardGUI_X *cALGORITHM::GetGUIPtr(char const *name) const {
    if (name == nullptr)
        return nullptr;
    const auto found = m_GUIMap.find(WCFixedString<1023>(name));
    return found == m_GUIMap.end() ? nullptr : found->second;
}

void cALGORITHM::SetGUIPointer(char const *name, CStandardGUI_X *gui) {
    if (name == nullptr)
        return;
    if (gui == nullptr)
        m_GUIMap.erase(WCFixedString<1023>(name));
    else
        m_GUIMap[WCFixedString<1023>(name)] = gui;
}

CStandardGUI_X *cALGORITHM::CreateGUI(WTResContainerType *&container, char const *name) {
    return new CStandardGUI_X(container, name);
}

int cALGORITHM::CreateGuiAndAddToMap(WTResContainerType *container, char const *key,
                                     char const *name) {
    WTResContainerType *&own = *m_pContainerRef;
    if (own == nullptr || (container != nullptr && container != own))
        return eRMContainerNotFound;
    const char *mapName = name != nullptr ? name : kPrimaryGUIName;
    WCFixedString<127> pluginName;
    GetAlgName(pluginName);
    std::unique_ptr<CStandardGUI_X> gui(CreateGUI(own, pluginName.c_str()));
    if (gui == nullptr)
        return eMemOutOfMemory;
    WCResKey resKey(kGUIXMLResType, key != nullptr ? key : kDefaultGUIXMLID);
    if (const int err = gui->InitGui(this, resKey); !gui->IsAlive()) {
        gui.reset();
        if (CStandardGUI_X *primary = GetGUIPtr(kPrimaryGUIName))
            primary->PublishKeys();
        return err != eNoErr ? err : eXMLTreeNotValid;
    }
    gui->FinishCreate();
    CStandardGUI_X *old = GetGUIPtr(mapName);
    SetGUIPointer(mapName, gui.release());
    if (old != nullptr) {
        old->Dispose();
        delete old;
    }
    if (CStandardGUI_X *primary = GetGUIPtr(kPrimaryGUIName))
        primary->PublishKeys();
    return eNoErr;
}

int cALGORITHM::DisposeGuiAndRemoveFromMap(char const *name) {
    CStandardGUI_X *gui = GetGUIPtr(name);
    if (gui == nullptr)
        return kErrNoGUI;
    SetGUIPointer(name, nullptr);
    gui->Dispose();
    delete gui;
    // The GUIs share the keys the document publishes: they follow the main GUI again.
    if (CStandardGUI_X *primary = GetGUIPtr(kPrimaryGUIName))
        primary->PublishKeys();
    return eNoErr;
}

int cALGORITHM::DisposeAdditionalGUIs() {
    std::vector<WCFixedString<1023>> names;
    for (auto const &[name, gui] : m_GUIMap)
        if (!(name == kPrimaryGUIName))
            names.push_back(name);
    for (auto const &name : names)
        DisposeGuiAndRemoveFromMap(name.c_str());
    return eNoErr;
}

void cALGORITHM::DisposeAllGUIs() {
    while (!m_GUIMap.empty())
        DisposeGuiAndRemoveFromMap(m_GUIMap.begin()->first.c_str());
}

int cALGORITHM::SetDefaultSkin(char const *name) {
    m_DefaultSkin = name;
    return eNoErr;
}

// ---- selector defaults ----------------------------------------------------------------------

int cALGORITHM::GetPluginInfo_bool(std::uint32_t, bool &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_double(std::uint32_t, double &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_float(std::uint32_t, float &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_int32_t(std::uint32_t, std::int32_t &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_size_t(std::uint32_t, std::size_t &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_struct(std::uint32_t, void *, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_uint32_t(std::uint32_t, std::uint32_t &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_WCFixedString(std::uint32_t, WCFixedStringBase &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::GetPluginInfo_WCStMemObj(std::uint32_t, Utils::WCStMemObj &, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_bool(std::uint32_t, bool, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_c_str(std::uint32_t, char const *, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_double(std::uint32_t, double, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_int32_t(std::uint32_t, std::int32_t, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_size_t(std::uint32_t, std::size_t, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_struct(std::uint32_t, void *, std::int64_t) {
    return eNotImplemented;
}
int cALGORITHM::SetPluginInfo_uint32_t(std::uint32_t, std::uint32_t, std::int64_t) {
    return eNotImplemented;
}

int cALGORITHM::GetPluginInfo_bool_Private(bool &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_double_Private(double &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_float_Private(float &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_int32_t_Private(std::int32_t &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_size_t_Private(std::size_t &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_struct_Private(void *, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_uint32_t_Private(std::uint32_t &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_WCFixedString_Private(WCFixedStringBase &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::GetPluginInfo_WCStMemObj_Private(Utils::WCStMemObj &, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_bool_Private(bool, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_c_str_Private(char const *, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_double_Private(double, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_int32_t_Private(std::int32_t, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_size_t_Private(std::size_t, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_struct_Private(void *, std::int64_t) {
    return eGenericErr;
}
int cALGORITHM::SetPluginInfo_uint32_t_Private(std::uint32_t, std::int64_t) {
    return eGenericErr;
}

MIREL_NAMESPACE_END
