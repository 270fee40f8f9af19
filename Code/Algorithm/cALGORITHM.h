#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <pugixml.hpp>

#include "Code/Presets/CPresetInfo.h"
#include "Code/Algorithm/EPluginSetup.h"
#include "Code/Algorithm/MirelComponentInfo.h"
#include "Code/Algorithm/WCAlgorithmBroadcaster.h"
#include "Code/Control/WCAutomationManager.h"
#include "Code/Algorithm/WCExportItemsContainer.h"
#include "Code/Algorithm/WCKeyValue.h"
#include "Code/Algorithm/WCLinkGroups.h"
#include "Code/Algorithm/WCMeterManager.h"
#include "Code/Algorithm/WCMusicInfo.h"
#include "Code/Algorithm/WSParamMaps.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"
#include "Code/Process/CProcessCodeManager.h"
#include "Code/Process/KPAPIProcessMemory.h"
#include "Code/Process/WCProcessMemory.h"
#include "Code/Process/WUNativeProcess.h"
#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WTErrors.h"
#include "core/miThread.h"
#include "resources/WCNativeModule.h"
#include "resources/WCStRes.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {
class CPresetsManager;
}
namespace Redis {
class WCMirelRedisReporter;
}
namespace XML {
class CXMLElement;
}
namespace Utils {
class WCStMemObj;
}
class CStandardGUI_X;
class WCBaseControl;

// Handle of a loaded native module (a shared object on Linux).
using WTNativeDLLRefType = void;

using KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

// The base class of every plug-in's logic. One object per running instance owns the instance's
// state: parameters and both setups, the coefficient images, the process-code needs, meters,
// automation, presets, GUIs, the reporter and the key/value store. A plug-in derives from it,
// implements the five pure operations and overrides the `...Self` hooks it needs.
//
// Life cycle (a shell must follow this order): construct; SetMainThreadRef; SetExecCallBack;
// InitProcessCode; FinishCreate; InitData; the shell reads 'reqR'/'PmRq', places the process side
// and calls Locate; InitInstanceData; SetProcessActive(true); InitAlg(true); then UpdateAlg and
// DoIdle while running; SetProcessActive(false); GUIs disposed; Dispose; destructor.
//
// Threads: creation, GUIs, DoIdle and presets run on the main thread. The process lock (LockAlg,
// recursive) guards parameters and coefficient images against idle, automation and message
// threads; the audio thread never takes it and sees only what buffers deliver.
class cALGORITHM : public CXMLable,
                   public RM::WCResContainerUser,
                   public WCMeterManager::Listener,
                   public WCLinkGroups::Listener {
public:
    cALGORITHM(MirelComponentInfo const &info, WTResContainerType *&container);
    virtual ~cALGORITHM();
    cALGORITHM(cALGORITHM const &) = delete;
    cALGORITHM &operator=(cALGORITHM const &) = delete;

    // The algorithm XML's root: every "cALGORITHM" child, then ReadAlgXMLSelf; the first
    // non-zero code wins.
    using CXMLable::ReadFromXML;
    WTErr ReadFromXML(pugi::xml_node const &root) override;

    // ---- life cycle ------------------------------------------------------------------------
    // [main-thread] Stores the calling thread as the main thread the first time only; answers
    // whether it stored it.
    bool SetMainThreadRef();
    // [any-thread] True while no main thread is stored, else whether the caller is it.
    bool IsCurThreadMainThread() const;
    // [main-thread] Stores the callback, resets the word size and converters, then asks the
    // process side for the locate flag, word size and converters (operations 11, 12, 7, 8, 20,
    // 9, 10, 21, 13, 14). Answers SetExecCallBackSelf.
    int SetExecCallBack(WTExecCallBack callback, std::int64_t refcon);
    WTExecCallBack GetExecCallBack() const { return m_ProcessMemory.GetExecCallBack(); }
    std::int64_t GetExecRefcon() const { return m_ProcessMemory.GetExecRefcon(); }
    void SetAutoCallBack(WTAutoCallBack callback, std::int64_t refcon);
    WTAutoCallBack GetAutoCallBack() const { return m_AutoCallBack; }
    std::int64_t GetAutoRefcon() const { return m_AutoRefcon; }
    // [any-thread] Calls the exec callback with this instance's refcon; -25 when none is set.
    int CallExecCallBack(int op, void *a, void *b, void *c) const {
        return m_ProcessMemory.CallExecCallBack(op, a, b, c);
    }

    // [main-thread] Reads the process-code needs into SDSPReqRes, then InitProcessCodeSelf.
    int InitProcessCode();
    // [main-thread] Parameters, link groups, meters, automation, key/value store.
    int FinishCreate();
    // [main-thread] Sizes the coefficient and bypass images and the ports.
    int InitData();
    // [main-thread] Loads the default preset into both setups.
    int InitInstanceData();
    // [main-thread]
    int SetProcessActive(bool active);
    bool GetProcessActive() const { return m_ProcessActive; }
    // [main-thread] Builds the initial buffers; sends them (operation 1) when `send`, frees them
    // (operation 4) always. Returns null.
    BUFFER_HEADER *InitAlg(bool send);
    // [any-thread, takes the process lock] Recomputes all coefficients; returns the chain for the
    // caller to send.
    BUFFER_HEADER *UpdateAlg();
    // [main-thread] One idle tick: meters, parameter displays at or above `level`, DoIdleSelf.
    virtual int DoIdle(short level);
    // [main-thread] Releases what the instance holds before the destructor.
    int Dispose();
    // [any-thread, takes the process lock] -5026 above the process code's maximum.
    int ChangeSampleRate(int rate);
    int GetSampleRate() const { return m_SampleRate; }

    bool IsInstanceReady() const { return m_InstanceReady; }
    bool IsDisposed() const { return m_Disposed; }
    std::uint64_t GetNumDoIdleCalls() const { return m_NumDoIdleCalls; }
    std::uint64_t GetNumUpdateAlgCalls() const { return m_NumUpdateAlgCalls; }
    std::uint64_t GetNumInitDataCalls() const { return m_NumInitDataCalls; }

    // ---- the process lock ------------------------------------------------------------------
    // [any-thread] Recursive; never taken by the audio thread.
    // Inline: every value change takes and gives it once.
    void LockAlg() const { m_AlgLock.obtain(); }
    bool TryLockAlg() const;
    void UnLockAlg() const { m_AlgLock.release(); }
    // The second lock exists only with "NeedProcessThreadSafe"; otherwise taking it is free.
    void LockProcess() const;
    void UnLockProcess() const;
    bool HasProcessLock() const { return m_ProcessLock.is_init(); }

    // ---- process side ----------------------------------------------------------------------
    // These forward to the instance's WCProcessMemory, which holds what the process side gave.
    // [main-thread] Takes the placement of the process side: a flag, then the code, states,
    // coefficients and idle code offsets.
    virtual int Locate(KPAPI_1::LocateInfo *info, int *reserved1, int *reserved2);
    int GetCodeOfs() const { return m_ProcessMemory.m_CodeOfs; }
    int GetIdleCodeOfs() const { return m_ProcessMemory.m_IdleCodeOfs; }
    int GetCoefsOfs() const { return m_ProcessMemory.m_CoefsOfs; }
    int GetStatesOfs() const { return m_ProcessMemory.m_StatesOfs; }
    int SetCoefsOfs(int ofs);
    int SetStatesOfs(int ofs);
    int GetWordSize() const { return m_ProcessMemory.m_WordSize; }
    int GetLocateFlag() const { return m_ProcessMemory.m_LocateFlag; }
    int GetMemOpWrite() const { return m_ProcessMemory.m_MemOpCodes[0]; }
    int GetMemOpRead() const { return m_ProcessMemory.m_MemOpCodes[1]; }
    int GetMemOpReadWrite() const { return m_ProcessMemory.m_MemOpCodes[2]; }
    int GetMemOpWriteExtended() const { return m_ProcessMemory.m_MemOpCodes[3]; }
    WCProcessMemory &GetProcessMemory() { return m_ProcessMemory; }

    int GetDSPReqRes(ProcessMemory::SDSPReqRes *out) const;
    int GetProcessMemoryRequest(ProcessMemory::WSProcessMemoryRequest *out) const;
    // The shell hands back the request it filled: every external buffer with its placement.
    int SetExtBuffInfo(void const *buffers);
    std::vector<ProcessMemory::sEXT_BUFF> const &GetExtBuffInfo() const {
        return m_ProcessMemory.GetExtBuffInfo();
    }
    int SetCurrentProcessor(SProcessorSpec const *spec);
    SProcessorSpec const &GetCurrentProcessor() const { return m_CurrentProcessor; }
    // The builds of the audio code this component's "ProcessXML" describes.
    CProcessCodeManager const &GetProcessCodeManager() const { return m_ProcessCodeManager; }
    // The processor a build is chosen for: family 1 for the DSP shells, 3 for native and
    // networked ones, then the plug-in's GetDefaultProcessorForComponentSelf.
    void GetDefaultProcessorForComponent(SProcessorSpec &spec);
    // "<family> <model>" of the current processor.
    int GetProcessorTypeString(WCFixedStringBase &out) const;
    // The native build for `type`, as the bundle keeps it: the module's path and the build's
    // display name. eCantLoadProcessFunction when the bundle has no such build.
    int GetNativeProcessDetails(ProcessorType type, FM::WCStPath &path,
                                WCFixedStringBase &name) const;
    // [main-thread] Loads the native build for `type` (falling back from AVX512 to AVX to
    // generic when one is missing) and finds its process function by the description's
    // "ProcessFunctionName". `function` (a WTNativeProcessFunction *) receives it, `size` the
    // module's size in bytes; the module stays loaded with the instance. The build found is
    // reported under "GetNSProcess". eCantLoadProcessFunction when no build can be loaded.
    int GetNSProcess(ProcessorType type, EOSType os, void *function, std::uint64_t *size);
    // The type of the build GetNSProcess loaded (generic before any).
    ProcessorType GetLoadedNativeProcessType() const { return m_NativeProcessType; }
    std::uint32_t GetCoefsNum() const { return m_DSPReqRes.coefsWords; }
    // [main-thread] Lets the plug-in allocate on its process side; answers
    // CallProcessSideAllocSelf.
    int CallProcessSideAlloc() { return CallProcessSideAllocSelf(); }

    // Buffers and the converters of the process side.
    BUFFER_HEADER *NewBuffer(int kind, int memOp, int marker, int offset, int count,
                             std::int64_t memoryRef) {
        return m_ProcessMemory.NewBuffer(kind, memOp, marker, offset, count, memoryRef);
    }
    BUFFER_HEADER *NewBuffer(int kind, int memOp, int marker, ProcessMemory::sEXT_BUFF const *ext) {
        return m_ProcessMemory.NewBuffer(kind, memOp, marker, ext);
    }
    // Links `second` behind `first` (operation 3) and answers the head; either may be null.
    // When the process side refuses, both chains are freed (operation 4) and the answer is null,
    // so a caller never holds buffers it cannot reach.
    BUFFER_HEADER *ChainBufs(BUFFER_HEADER *first, BUFFER_HEADER *second) {
        return m_ProcessMemory.ChainBufs(first, second);
    }
    BUFFER_HEADER *BreakChainAtLastBuffer(BUFFER_HEADER *chain) {
        return WCProcessMemory::BreakChainAtLastBuffer(chain);
    }
    int FreeBuffers(BUFFER_HEADER *&chain) { return m_ProcessMemory.FreeBuffers(chain); }
    // A null chain answers 0 without a call.
    int SendBuffers(BUFFER_HEADER *chain, int op) { return m_ProcessMemory.SendBuffers(chain, op); }
    // Sends when `send`, frees always; the free's code is the answer and `chain` ends null.
    int SendAndFreeBuffers(BUFFER_HEADER *&chain, int op, bool send) {
        return m_ProcessMemory.SendAndFreeBuffers(chain, op, send);
    }
    int SendFreeAndSplitIntoSmallBuffers(int kind, int total, ProcessMemory::sEXT_BUFF const *ext,
                                         int const *values, unsigned int sleepMs, int piece) {
        return m_ProcessMemory.SendFreeAndSplitIntoSmallBuffers(kind, total, ext, values, sleepMs,
                                                                piece);
    }
    char *GetPointerToCoef(EPluginSetup setup, int index) {
        return m_ProcessMemory.GetPointerToCoef(setup, index);
    }
    char *GetPointerToBypassCoef(EPluginSetup setup, int index) {
        return m_ProcessMemory.GetPointerToBypassCoef(setup, index);
    }
    char *GetPointerToCoefWithBypass(EPluginSetup setup, int index) {
        return m_ProcessMemory.GetPointerToCoefWithBypass(setup, index);
    }
    // Each writes one word of the active setup's image through its converter slot; -19 for an
    // index past the image. The WithBypass forms write the image the bypass flag picks.
    int ConvertFracToCoefs(double value, int index) {
        return m_ProcessMemory.ConvertFracToCoefs(value, index);
    }
    int ConvertDFracToCoefs(double value, int index) {
        return m_ProcessMemory.ConvertDFracToCoefs(value, index);
    }
    int ConvertFixToCoefs(int value, int index) {
        return m_ProcessMemory.ConvertFixToCoefs(value, index);
    }
    int ConvertIntToCoefs(int value, int index) {
        return m_ProcessMemory.ConvertIntToCoefs(value, index);
    }
    int ConvertFracToBypassCoefs(double value, int index) {
        return m_ProcessMemory.ConvertFracToBypassCoefs(value, index);
    }
    int ConvertFracToCoefsWithBypass(double value, int index) {
        return m_ProcessMemory.ConvertFracToCoefsWithBypass(value, index);
    }
    int ConvertDFracToCoefsWithBypass(double value, int index) {
        return m_ProcessMemory.ConvertDFracToCoefsWithBypass(value, index);
    }
    int ConvertFixToCoefsWithBypass(int value, int index) {
        return m_ProcessMemory.ConvertFixToCoefsWithBypass(value, index);
    }
    int ConvertIntToCoefsWithBypass(int value, int index) {
        return m_ProcessMemory.ConvertIntToCoefsWithBypass(value, index);
    }
    int ReadFracFromWord(void const *source, double &value) const;
    // The converter slots as the process side left them.
    WTWriteFracFunc GetWriteFracConverter() const {
        return m_ProcessMemory.Converters().m_WriteFrac;
    }
    WTWriteFracFunc GetWriteFixConverter() const { return m_ProcessMemory.Converters().m_WriteFix; }
    WTReadFracFunc GetReadFracConverter() const { return m_ProcessMemory.Converters().m_ReadFrac; }
    WTReadFracFunc GetReadFixConverter() const { return m_ProcessMemory.Converters().m_ReadFix; }
    int ReadIntFromWord(void const *source, int &value) const;
    // A write buffer of `count` coefficients at `offset`; null unless forced, active and not
    // bypassed. `source`, when given, is copied into it.
    BUFFER_HEADER *PrepareCoefBuffer(int offset, int count, char const *source, bool force) {
        return m_ProcessMemory.PrepareCoefBuffer(offset, count, source, force);
    }
    // Like PrepareCoefBuffer, from the image the bypass flag picks; bypass does not stop it.
    BUFFER_HEADER *PrepareCoefBufferWithBypass(int offset, int count, bool force) {
        return m_ProcessMemory.PrepareCoefBufferWithBypass(offset, count, force);
    }
    int VerifyCompCoefs(int offset, int count) {
        return m_ProcessMemory.VerifyCompCoefs(offset, count);
    }

    // States: buffers of kind 0 at the states offset, null while the process is inactive.
    BUFFER_HEADER *PrepareStatesBuffer(int memOp, int offset, int count) {
        return m_ProcessMemory.PrepareStatesBuffer(memOp, offset, count);
    }
    BUFFER_HEADER *PrepareStatesReadBuffer(int offset, int count) {
        return m_ProcessMemory.PrepareStatesReadBuffer(offset, count);
    }
    BUFFER_HEADER *PrepareStatesWriteBuffer(int offset, int count) {
        return m_ProcessMemory.PrepareStatesWriteBuffer(offset, count);
    }
    BUFFER_HEADER *PrepareStatesReadWriteBuffer(int offset, int count) {
        return m_ProcessMemory.PrepareStatesReadWriteBuffer(offset, count);
    }
    int InitOneState(int index, int value) { return m_ProcessMemory.InitOneState(index, value); }
    BUFFER_HEADER *InitStatesBuffer() { return m_ProcessMemory.InitStatesBuffer(); }
    int SetSingleStateInt(int index, int value) {
        return m_ProcessMemory.SetSingleStateInt(index, value);
    }
    int SetSingleStateFloat(int index, double value) {
        return m_ProcessMemory.SetSingleStateFloat(index, value);
    }
    int GetInitialStates(char *out) const { return m_ProcessMemory.GetInitialStates(out); }

    // Externals: null for a null descriptor, a run past its size, an inactive process or a
    // memory space other than 'XMEM' and 'YMEM'.
    BUFFER_HEADER *PrepareExtBuffer(ProcessMemory::sEXT_BUFF const *ext, int memOp, int offset,
                                    int count) {
        return m_ProcessMemory.PrepareExtBuffer(ext, memOp, offset, count);
    }
    BUFFER_HEADER *PrepareExtReadBuffer(ProcessMemory::sEXT_BUFF const *ext, int offset,
                                        int count) {
        return m_ProcessMemory.PrepareExtReadBuffer(ext, offset, count);
    }
    BUFFER_HEADER *PrepareExtWriteBuffer(ProcessMemory::sEXT_BUFF const *ext, int offset,
                                         int count) {
        return m_ProcessMemory.PrepareExtWriteBuffer(ext, offset, count);
    }
    BUFFER_HEADER *PrepareExtReadWriteBuffer(ProcessMemory::sEXT_BUFF const *ext, int offset,
                                             int count) {
        return m_ProcessMemory.PrepareExtReadWriteBuffer(ext, offset, count);
    }
    template <class T>
    int InitExternalFromArray(ProcessMemory::sEXT_BUFF const *ext, int offset, int count,
                              T const *values) {
        return m_ProcessMemory.InitExternalFromArray(ext, offset, count, values);
    }
    int InitOneExternal(int extIndex, int offset, int value) {
        return m_ProcessMemory.InitOneExternal(extIndex, offset, value);
    }
    int InitOneExternalByPtr(ProcessMemory::sEXT_BUFF const *ext, int offset, int value) {
        return m_ProcessMemory.InitOneExternalByPtr(ext, offset, value);
    }
    ProcessMemory::sEXT_BUFF *GetExternalBuffer(int index) {
        return m_ProcessMemory.GetExternalBuffer(index);
    }
    int GetExternalBuffersNum() const { return m_ProcessMemory.GetExternalBuffersNum(); }
    std::uint64_t GetExtAccessCount() const { return m_ProcessMemory.GetExtAccessCount(); }
    bool IsSharedExternalInitialized(int index) const {
        return m_ProcessMemory.IsSharedExternalInitialized(index);
    }

    // Ports: see sIO_PORT.
    sIO_PORT *RefreshInputPORTInfo(int *routing) {
        return m_ProcessMemory.RefreshInputPORTInfo(routing);
    }
    sIO_PORT *RefreshOutputPORTInfo(int *routing) {
        return m_ProcessMemory.RefreshOutputPORTInfo(routing);
    }

    // [any-thread] One state word read back (operation 1); with `write` the value is stored
    // first. eWrongObjectState while the process is inactive.
    virtual int ReadVU(int offset, int &out) { return m_ProcessMemory.ReadVU(offset, out); }
    virtual int ReadVU(int offset, bool write, int value, int &out) {
        return m_ProcessMemory.ReadVU(offset, write, value, out);
    }
    // [main-thread] Diagnosis of process memory (WCProcessMemory::EDumpType).
    int DumpDSP(int type, int offset, int count, std::string &out) {
        return m_ProcessMemory.DumpDSP(type, offset, count, out);
    }
    int DumpDSPToScreen(int type, int offset, int count) {
        return m_ProcessMemory.DumpDSPToScreen(type, offset, count);
    }
    int DumpAllDSPExternalsToScreen() { return m_ProcessMemory.DumpAllDSPExternalsToScreen(); }

    // ---- identity --------------------------------------------------------------------------
    MirelComponentInfo const &GetComponentInfo() const { return m_ComponentInfo; }
    WCFourCC GetAlgType() const { return m_AlgType; }
    WCFourCC GetAlgSubType() const { return m_AlgSubType; }
    int GetAlgName(WCFixedStringBase &out) const;
    // The name authored for exactly `length` characters ("AlgNameList"); else the whole name
    // when it fits; else the longest authored name shorter than `length`; else the name cut.
    int GetAlgNameOfLength(std::int64_t length, WCFixedStringBase &out) const;
    // The code the last read of the algorithm XML gave (ReadAlgXML in the constructor, or
    // ReadAlgXMLFromText): 0 when it read, eRMContainerNotFound without a container, the resource
    // manager's code for a missing resource, the XML layer's code (-6000s) for text that does not
    // parse, or the first code of reading the elements. The constructor cannot return it, so it
    // stays here, as GetParameterListError does for the parameter XML.
    int GetAlgXMLError() const { return m_AlgXMLError; }
    bool IsNative() const { return m_IsNative; }
    bool IsNetShell() const { return m_IsNetShell; }
    bool IsArtist() const { return m_IsArtist; }
    static bool DecideIsNativeFromComponentType(WCFourCC type);
    static bool DecideIsNetShellFromComponentType(WCFourCC type);
    std::uint64_t GetUndoLevel() const { return m_UndoLevel; }
    short GetPresetResourceNumber() const { return m_PresetResourceNumber; }
    // The types the algorithm XML names as "PresetCompatibleType": presets of these load here.
    std::vector<WCFourCC> const &GetPresetCompatibleTypes() const {
        return m_PresetCompatibleTypes;
    }
    std::vector<WCFourCC> const &GetPresetCompatibleSubComps() const {
        return m_PresetCompatibleSubComps;
    }
    // [any-thread] The module of the run-time itself.
    static int GetMirelLibHandle(WTNativeDLLRefType *&handle);

    // ---- setups, bypass, chunks ------------------------------------------------------------
    // Two complete settings, A and B; eCurrentSetup (-1) stands for the active one.
    EPluginSetup GetActiveSetup() const { return m_ActiveSetup; }
    EPluginSetup GetPassiveSetup() const { return m_ActiveSetup == eSetupB ? eSetupA : eSetupB; }
    // A or B as given; anything else is the active setup.
    EPluginSetup GetAbsoluteSetup(EPluginSetup setup) const {
        return setup == eSetupA || setup == eSetupB ? setup : m_ActiveSetup.load();
    }
    static constexpr int GetSetupsNum() { return 2; }
    // -19 for a setup that is neither A, B nor -1.
    int GetSetupName(EPluginSetup setup, WCFixedStringBase &out) const;
    // Tells the listeners (SetupTitleChanged). -19 for a bad setup, -4003 for a null name.
    int SetSetupName(EPluginSetup setup, char const *name);
    int ClearSetupName(EPluginSetup setup) { return SetSetupName(setup, ""); }
    // "SETUP_A", "SETUP_B" and "CURRENT", the words preset files use; -19 for any other text.
    static int SetupStringToSetup(char const *text, EPluginSetup &setup);
    static char const *SetupToSetupString(EPluginSetup setup);
    // [main-thread] False for -1 or the setup already active; else toggles and tells the GUIs.
    virtual bool ChangeActiveSetup(EPluginSetup setup);
    // [main-thread] -1 is the other setup. Extensions, the process side's batch of host
    // notifications (operation 78) and the listeners follow; answers the active setup.
    virtual EPluginSetup ToggleActiveSetup(EPluginSetup setup);
    // [main-thread] Active to passive, one way: parameters, both images, the name.
    virtual int CopySetup();
    bool GetBypass() const { return m_Bypass; }
    // Set when bypass changes while the process runs, so the next partial update resends the
    // coefficients from the image bypass picks.
    bool GetBypassChanged() const { return m_BypassChanged; }
    void SetBypassChanged() { m_BypassChanged = true; }
    void ClearBypassChanged() { m_BypassChanged = false; }
    // [main-thread] After a bypass change: the whole coefficient image the bypass flag picks
    // goes to the process side, and the changed flag clears. 0 when there was no change.
    int DoPartialUpdateAfterBypass();
    BUFFER_HEADER *SetBypass(bool value);
    // [main-thread] SetMuteSelf's chain is sent (operation 0) and freed.
    int SetMute(bool value);
    bool GetMute() const { return m_Mute; }
    // -1 only stores; any other value goes to the process side (operation 74) and to the
    // listeners, then is stored. UpdateAlg repeats the stored value, so a -1 takes effect later.
    virtual void ChangeSideChainActive(signed char value);
    signed char GetSideChainActive() const { return m_SideChainActive; }
    int GetNumChunks() const { return 1; }
    virtual int GetIndexedChunkID(int index, WCFourCC &id) const;
    // [host thread, takes the process lock] 'XPst' the whole state as preset-chunk text (-5023
    // when it came out empty), 'pref' 0 with nothing, any other id -1.
    virtual int GetChunk(WCFourCC id, Utils::WCStMemObj &chunk, bool allSetups);
    // [host thread] Under the process lock for the whole load: 'XPst' loads the state and sends
    // the images, 'pref' is ignored (0), any other id -1. A broken chunk changes nothing.
    virtual int SetChunk(WCFourCC id, Utils::WCStConstMemObj const &chunk);
    // The size of the chunk `index` as GetChunk would make it now.
    virtual int GetChunkSize(int index, bool allSetups, std::uint64_t &size);
    // Both setups (or the active one) as a host-chunk preset; MIDI maps are not built (-25).
    virtual int PreparePresetChunk(Utils::WCStMemObj &chunk, bool allSetups, bool midi);
    virtual int SetPresetChunk(Utils::WCStConstMemObj const &chunk);

    // ---- presets: what a preset takes and gives back ---------------------------------------
    // One setup's real-world values with a kind each: 1 (kept) for display-only and
    // not-in-preset parameters, and with undoOnly for those undo does not record.
    int SaveRealWorldToPreset(Preset::sPresetData &data, EPluginSetup setup, bool undoOnly) const;
    // Clears `info`'s data and fills the plug-in's identity and its setups: both with
    // "ActiveSetup" when allSetups (and not activeOnly), else the active one as CURRENT.
    int SaveToPreset(Preset::CPresetInfo &info, bool activeOnly, bool allSetups) const;
    // Under the process lock: the MIDI attachments cleared when both hooks agree; host-only
    // parameters kept unless the preset is a host chunk or the default; a MIDI map loads only
    // its controls; otherwise each setup's data in order (the plug-in's XML and blocks, the
    // values, the controls, the setup name, the side chain), then the active setup the preset
    // names, the listeners, and PostLoadFromPreset's answer. -5011 for a preset without data,
    // changing nothing.
    virtual int LoadFromPreset(Preset::CPresetInfo const &info, bool update);
    // One setup's values (-1: the active one); parameters past the stored ones take their
    // defaults, those `extraKinds` marks 1 excepted. With `update` the host hears the setup.
    int LoadRealWorldFromPreset(Preset::sPresetData const &data, EPluginSetup setup,
                                bool update = false,
                                std::vector<unsigned int> const &extraKinds = {});
    int LoadStatesFromPreset(Preset::sPresetData const &data, EPluginSetup setup,
                             bool update = false,
                             std::vector<unsigned int> const &extraKinds = {});
    // The MIDI attachments of one setup's data, handed to the automation controls they name;
    // see WCAutomationManager::LoadControlsFromPreset.
    virtual int LoadControlsFromPreset(Preset::CPresetInfo const &info,
                                       Preset::sPresetData const &data, EPluginSetup setup);
    // The plug-in's chance to bring an old preset's data up to date before it loads.
    virtual void UpdatePresetDataBeforeLoad(Preset::sPresetData &) {}
    float GetMinOutInRatio() const { return m_MinOutInRatio; }
    float GetMaxOutInRatio() const { return m_MaxOutInRatio; }
    int GetActualOutInSize(std::int64_t inSize, int &outSize) const;
    int SetDelay(int delay);
    int GetDelay() const { return m_Delay; }
    int SetSideChainNum(std::uint32_t num);
    std::uint32_t GetSideChainNum() const { return m_SideChainNum; }
    int SetMusicInfo(WCMusicInfo const &info);
    WCMusicInfo const &GetMusicInfo() const { return m_MusicInfo; }
    int SetTimeCodeData(void const *data);
    std::int64_t GetTimeCodeData() const { return m_TimeCodeData; }
    int SetTrimModeRatio(double ratio);
    double GetTrimModeRatio() const { return m_TrimModeRatio; }
    int SetDisableHostInterruptPtr(int value);
    int SetEnableHostInterruptPtr(int value);
    int GetDisableHostInterruptPtr() const { return m_HostInterruptDisable; }
    int GetEnableHostInterruptPtr() const { return m_HostInterruptEnable; }
    // Sends what SetNoiseRatioSelf builds.
    int SetNoiseRatio(double ratio);

    // The host's transport, as a shell reports it.
    struct WSTransportState {
        bool playing = false;
        bool recording = false;
        bool cycleActive = false;
        std::int64_t loopStartSamples = 0;
        std::int64_t loopEndSamples = 0;
    };
    int TransportChange(WSTransportState const &state);
    WSTransportState const &GetTransportState() const { return m_Transport; }
    int UpdateHostTrackState(bool monitoring);
    bool GetHostTrackMonitoring() const { return m_Monitoring; }
    // Writes a key of this instance in Redis; -21001 while the instance reports nowhere.
    virtual int SetRedisKeyValue(char const *key, char const *value);

    // ---- parameters ------------------------------------------------------------------------
    // The parameters in XML order; the index is the parameter id. Built once by FinishCreate.
    std::uint64_t GetNumParams() const { return m_Params.size(); }
    // Null for an id beyond the list.
    sCONTROL_PARAM *GetParam(std::uint64_t id) {
        return id < m_Params.size() ? &m_Params[id] : nullptr;
    }
    sCONTROL_PARAM const *GetParam(std::uint64_t id) const {
        return id < m_Params.size() ? &m_Params[id] : nullptr;
    }
    std::vector<sCONTROL_PARAM> const &GetParams() const { return m_Params; }
    // The maps the parameter XML names, kept for the GUIs.
    WSParamMaps const &GetParamMaps() const { return m_ParamMaps; }
    // The code BuildParameterList gave, 0 when the parameters read.
    int GetParameterListError() const { return m_ParameterListError; }
    // [main-thread] Real world from the initial values; -1 both setups, the active one first.
    void ScaleAllParams(int setup);
    // [main-thread] State back from real world; -1 the active setup.
    void UnscaleAllParams(int setup);
    // -19 for an id beyond the list.
    int GetParamRealWorld(std::uint64_t id, double &value) const {
        sCONTROL_PARAM const *param = GetParam(id);
        if (param == nullptr)
            return eOutOfRangeNumber;
        value = param->GetRealWorld(m_ActiveSetup);
        return eNoErr;
    }
    int RealWorldToState(std::uint64_t id, double &inOut) const;
    int StateToRealWorld(std::uint64_t id, double &inOut) const;
    // -29 for a name no parameter has.
    int GetParamIDFromName(char const *name, std::uint64_t &id) const;
    int GetParamGraphData(std::uint64_t id, void *&data) const;
    // [main-thread] Enters `control` in the parameter's controller list under `tag` (the index
    // of its registration), so that UpdateDisplay reaches control->UpdatePointer(tag). A pair
    // already entered stays once. -19 for an id beyond the list, -4003 for a null control.
    int AddParamController(std::uint64_t id, WCBaseControl *control, std::uint64_t tag);
    // [main-thread] Takes every entry of `control` out of the parameter's list; -29 when it had
    // none, -19 for an id beyond the list.
    int RemoveParamController(std::uint64_t id, WCBaseControl *control);
    // Whether the parameter is disabled in the active setup ("ConstantDisabled", or disabled by
    // the plug-in); false for an id beyond the list.
    bool GetParamDisabledMode(std::uint64_t id) const;

    // ---- the update pipeline: one value change, whatever its source, down to buffers -------
    // Every path answers the chain of coefficient buffers UpdateParamSelf built, null when there
    // is nothing to send; the caller sends it (SendAndFreeBuffers). Writes take the process lock.

    // How a text translation ended.
    enum ETranslateTextRetType : int {
        eTranslateTextNotHandled = 0, // a hook did not take the text; the next way is tried
        eTranslateTextOK = 1,         // a value came out of the text
        eTranslateTextNoNumber = 2,   // no number in the text
        eTranslateTextRefused = 3,    // ValidateRealWorld refused the value
        eTranslateTextBadParam = 4,   // the id names no parameter
    };

    // [any-thread, takes the process lock] The gates of a state change: a state outside 0 to
    // 1000 (or not a number) is refused; a discrete state is quantised; a repeat ends unless the
    // parameter must always update; a real world unchanged within 1e-10 only refreshes the
    // display. Then UpdateParamSelf, the preset is marked modified, and with `notify` the
    // automation is told.
    BUFFER_HEADER *UpdateParamState(std::uint64_t id, double state, bool notify);
    // [any-thread, takes the process lock] Stores a real-world value and the state it maps to;
    // no quantising and no notification.
    BUFFER_HEADER *UpdateParamRealWorld(std::uint64_t id, double value);
    // [any-thread] UpdateParamState with notification.
    BUFFER_HEADER *UpdateParamRequestState(std::uint64_t id, double state);
    // [any-thread] UpdateParamRealWorld, and NotifyParamValue when the value changed.
    BUFFER_HEADER *UpdateParamRequestRealWorld(std::uint64_t id, double value);
    // True when the parameter must reach UpdateParamSelf even with its value unchanged:
    // "DisplayOnlyParam", "DontUpdateWhileDrag" at a drag's end, "AlwaysUpdate", or a forced
    // update. The name is kept as plug-ins call it.
    bool IsUpdateParamAlwayesRequired(std::uint64_t id) const;

    // [main-thread] A drag step. A parameter with "DontUpdateWhileDrag" only stores the value
    // and answers DragParamSelf's light chain; others go through UpdateParamState.
    BUFFER_HEADER *DragParam(std::uint64_t id, double state);
    // [main-thread] Ends a drag: the next UpdateParamState goes through even with the value the
    // drag left. ResetDragParam forgets the drag instead.
    int FinishDragParam(std::uint64_t id);
    int ResetDragParam(std::uint64_t id);

    // [main-thread] A typed text: UpdateParamFromTextSelf, whose result lands in `ret`.
    BUFFER_HEADER *UpdateParamFromText(std::uint64_t id, char const *text,
                                       ETranslateTextRetType &ret);
    // [any-thread] The number in `text` ("-6 dB", "1.2k"), negated when positive with
    // "PositiveTextEntryToNegative", clamped to the scale's range and validated unless
    // "AvoidValidation". `value` changes only with eTranslateTextOK.
    virtual ETranslateTextRetType TranslateTextToRealWorld(std::uint64_t id, char const *text,
                                                           double &value);
    // [any-thread] Whether the plug-in accepts a real-world value; any finite value by default.
    virtual bool ValidateRealWorld(std::uint64_t id, double value);
    // [any-thread] A value clamped to what the parameter's scale reaches; -19 for a bad id.
    int LimitRealWorld(std::uint64_t id, double &value) const;

    // Update flags: bit 2 asks idle for a new value text. [any-thread]
    int SetParamToUpdateFlag(std::uint64_t id, std::uint32_t value);
    void RefreshAllParams();
    // [main-thread] Refreshes the value text and the controls of one parameter when its update
    // flags ask for it, then clears them. Takes no lock: idle may read a string half made, but
    // never touches the coefficient images.
    int UpdateDisplay(std::uint64_t id);
    // [main-thread] Refreshes the controls of every parameter from its values in `setup`
    // (eCurrentSetup the active one): each registered control's UpdatePointer. 0 when no GUI
    // is open, as there is nothing to refresh; -19 for a setup that is not one.
    int UpdateControlsFromParams(EPluginSetup setup);

    // [any-thread, takes the process lock] Stores `value` in `setup` (-1 the active one) and its
    // state, asks for a display refresh, and tells the automation when the setup is active.
    int SetRealWorldAndUpdateAndNotifyAutomation(std::uint64_t id, double value, int setup);
    // Tells the automation manager a parameter's value.
    virtual int NotifyParamValue(std::uint64_t id);
    // The host hears the parameter's state through the controls it leads; -19 for a bad id.
    int NotifyAutomation(std::uint64_t id);
    int NotifyAutomationAllParams();
    // A user's gesture on a parameter begins (Touch) or ends (Release): the host hears it
    // through the automation controls the parameter leads. -19 for an id beyond the list.
    virtual int Touch(std::uint64_t id);
    virtual int Release(std::uint64_t id);
    // [any-thread] A host event on automation control `index`: its parameters take `state`
    // through the update pipeline and the chain is sent. -19 for a bad index or state.
    int SetControllerValue(std::int64_t index, double state);
    // The state of control `index`'s lead parameter, and the state a reset gives it.
    int GetControlState(std::int64_t index, double &state) const;
    int GetAutomationControlResetState(std::int64_t index, double &state) const;

    // [any-thread, takes the process lock] The whole coefficient image of the active setup (the
    // bypass image, filled by SetBypassCoefsSelf, while bypassed) in one buffer; sent and freed
    // when `send`, answered otherwise.
    virtual BUFFER_HEADER *UpdateDSPCoefs(bool send);
    // [any-thread] Marks that the next UpdateAlg is needed, for instance after a rate change.
    void SetUpdateAlgRequired() { m_UpdateAlgRequired = true; }
    void ClearUpdateAlgRequired() { m_UpdateAlgRequired = false; }
    bool IsUpdateAlgRequired() const { return m_UpdateAlgRequired; }
    // [main-thread] The state delta a control's pixel delta makes; 0 for a bad id.
    double UpdateMouseDeltaStep(std::uint64_t id, double delta) const;

    // ---- key/value store -------------------------------------------------------------------
    // The store exists from CreateKeyValueStore in the constructor to DisposeKeyValueStore in
    // the destructor.
    WCKeyValue &KeyValues() { return *m_pKeyValues; }
    WCKeyValue const &KeyValues() const { return *m_pKeyValues; }
    bool HasKeyValueStore() const { return m_pKeyValues != nullptr; }
    // Each form reads whatever type the key holds, converted, or the fallback when absent (and
    // stores nothing). The _ptr forms read the pointed value at each read; the pointer must
    // outlive the key. The _func forms call the function at each read.
    bool GetPluginValue_bool(char const *key, bool fallback) const;
    std::int32_t GetPluginValue_int32_t(char const *key, std::int32_t fallback) const;
    std::uint32_t GetPluginValue_uint32_t(char const *key, std::uint32_t fallback) const;
    std::int64_t GetPluginValue_int64_t(char const *key, std::int64_t fallback) const;
    std::uint64_t GetPluginValue_uint64_t(char const *key, std::uint64_t fallback) const;
    float GetPluginValue_float(char const *key, float fallback) const;
    double GetPluginValue_double(char const *key, double fallback) const;
    std::string GetPluginValue_c_str(char const *key, char const *fallback) const;
    void SetPluginValue_bool(char const *key, bool value);
    void SetPluginValue_int32_t(char const *key, std::int32_t value);
    void SetPluginValue_uint32_t(char const *key, std::uint32_t value);
    void SetPluginValue_int64_t(char const *key, std::int64_t value);
    void SetPluginValue_uint64_t(char const *key, std::uint64_t value);
    void SetPluginValue_float(char const *key, float value);
    void SetPluginValue_double(char const *key, double value);
    void SetPluginValue_c_str(char const *key, char const *value);
    void SetPluginValue_bool_ptr(char const *key, bool *value);
    void SetPluginValue_int32_t_ptr(char const *key, std::int32_t *value);
    void SetPluginValue_uint32_t_ptr(char const *key, std::uint32_t *value);
    void SetPluginValue_int64_t_ptr(char const *key, std::int64_t *value);
    void SetPluginValue_uint64_t_ptr(char const *key, std::uint64_t *value);
    void SetPluginValue_float_ptr(char const *key, float *value);
    void SetPluginValue_double_ptr(char const *key, double *value);
    void SetPluginValue_bool_func(char const *key, std::function<bool()> func);
    void SetPluginValue_int32_t_func(char const *key, std::function<std::int32_t()> func);
    void SetPluginValue_uint32_t_func(char const *key, std::function<std::uint32_t()> func);
    void SetPluginValue_int64_t_func(char const *key, std::function<std::int64_t()> func);
    void SetPluginValue_uint64_t_func(char const *key, std::function<std::uint64_t()> func);
    void SetPluginValue_float_func(char const *key, std::function<float()> func);
    void SetPluginValue_double_func(char const *key, std::function<double()> func);
    // The text goes to an export item of the key when one takes it, else to the store.
    int SetPluginValueStr(char const *key, char const *text);
    // The value's type and byte size, from the store or else the export items; -29 when neither.
    int GetPluginValueInfo(char const *key, WTKeyValueType &type, std::uint64_t &size) const;
    // All keys of the store as one JSON object, key to value.
    int GetAllPluginValues(Utils::WCStMemObj &out) const;
    bool HasPluginValue(char const *key) const;
    // Copies the value when it fits: 0, or -29 absent, -30 too large, -4003 null buffer.
    int GetPluginValueBinary(char const *key, void *buffer, std::uint64_t size) const;
    int GetPluginValueStr(char const *key, WCFixedStringBase &out) const;
    bool IsExportItemSupported(char const *key) const;
    // Writes to an export item the key names, or else to the store; -4003 for null data.
    int SetPluginValueBinary(char const *key, void const *data, std::uint64_t size);
    WCExportItemsContainer &ExportItems() { return m_ExportItems; }
    // The track the host put the instance on, as "track_name" and "track_volume" receive it.
    int SetTrackName(char const *name);
    int SetTrackVolume(double volume);
    WCFixedStringBase const &GetTrackName() const { return m_TrackName; }
    double GetTrackVolume() const { return m_TrackVolume; }

    // ---- presets: the instance's presets manager ---------------------------------------------
    // Made by InitInstanceData; null before it and after Dispose. The forms below answer
    // ePresetInfoNotFound without one.
    virtual Preset::CPresetsManager *GetPresetsManager() { return m_PresetsManager.get(); }
    Preset::CPresetsManager const *GetPresetsManager() const { return m_PresetsManager.get(); }
    int GetFactoryPresetName(std::int64_t index, WCFixedStringBase &out) const;
    int GetNumFactoryPresets(std::size_t &count) const;
    int LoadFactoryPresetToPluginByName(char const *name);
    int LoadFactoryPresetByIndex(std::size_t index);
    int ReadFactoryPresetFromFile(char const *path);
    // The preset last loaded into the active setup; a blank one (type "????") when none was.
    Preset::CPresetInfo const &GetCurrentPresetInfo() const;
    // At start-up: the user's default preset, else the factory preset named "default..." (or
    // the first one). ePresetInfoNotFound when neither exists.
    int HandleLoadFactoryOrUserDefaultPreset();

    // ---- meters and automation --------------------------------------------------------------
    WCMeterManager &GetMeterManager() { return m_MeterManager; }
    WCAutomationManager &GetAutomationManager() { return m_AutomationManager; }
    const WCAutomationManager &GetAutomationManager() const { return m_AutomationManager; }
    std::uint32_t GetOptimalRefreshRate() const { return m_OptimalRefreshRate; }
    // [main-thread] Hands the meter extension of each parameter to the meter manager
    // (FinishCreate does, once the parameters exist); meters it has already stay once.
    int InitializeMeterManager();
    // The value written back after each read of meter `index`, for this instance's kind of
    // process side; -19 for an index beyond the meters.
    int GetMeterReadResetValue(std::int64_t index, double &value) const;
    // [main-thread] Peaks and clips back to rest; the meters show it at the next idle.
    int ResetPeak(std::int64_t index);
    void ResetAllPeak();
    void ResetAllClip();
    // [main-thread] Drops a pending asynchronous read (made for the old placement of the
    // meters) and refreshes every meter display. RequestRefreshMetersBuffers asks for it from
    // any thread; the next idle does it.
    int RefreshMetersBuffers();
    void RequestRefreshMetersBuffers() { m_RefreshMetersRequested = true; }
    // [any-thread] One step of a meter falling or rising towards `newValue` from `previous`:
    // attack while it falls, release while it rises, each to the power of the milliseconds
    // since `*time` (then stored). Within 0.0001 it has settled: `newValue`, time untouched.
    static double ReleaseVU(double newValue, double previous, double *time, double attack,
                            double release);
    static double ReleaseVU(double newValue, double previous, double *time, double attack,
                            double release, double nowMs);

    // The meter manager's listener. ReadMeters reads in one send (operation 1) a buffer per run
    // of consecutive states offsets, and with `reset` writes each meter's read-reset value back
    // in the same buffer. ReadMetersSend sends such reads without waiting (operation 0) and
    // keeps them; ReadMetersReceive takes their words. eWrongObjectState while the process is
    // inactive (and for a receive with nothing sent); eMemNewFailed when buffers cannot be made.
    void UpdateMeterDisplay(std::uint64_t id, WCParamExtensionMeter *meter) override;
    int ReadMeters(WCMeterManager::sMeter *meters, unsigned int count, bool reset) override;
    int GetParamLabelString(std::uint64_t id, WCFixedStringBase &out) override;
    int ReadMetersSend(std::vector<WCMeterManager::sMeter> &meters) override;
    int ReadMetersReceive(std::vector<WCMeterManager::sMeter> &meters) override;
    int GetAutomationControlIndexByName(char const *name) const;
    // A control's conversions go through its lead parameter's scale, in place; -19 for an
    // index that names no control. SetAutomatableControlStr renames a control.
    int ControlRealWorldValueFromState(std::int64_t index, double &inOut) const;
    int ControlStateFromRealWorldValue(std::int64_t index, double &inOut) const;
    // The state a toggle of parameter `id` goes to on a click, 0 to 1000: the next of its
    // states, past the last back to the first. A plug-in whose switch cycles otherwise (skips
    // a state, stops at the end) overrides it. -19 for an id beyond the list.
    virtual int GetPluginInfo_GetNextToggleState(std::int64_t id, std::int32_t &out);
    // The same for the lead parameter of automation control `index`.
    int GetPluginInfo_GetNextToggleStateByControlID(std::int64_t index, std::int32_t &out);
    // The text control `index`'s lead parameter shows at `state` (0 to 1000), and the state a
    // typed text gives it: -19 for a bad index or state, eNotANumber for a text the parameter
    // does not read, and `state` untouched.
    int TranslateController(std::int64_t index, double state, WCFixedStringBase &text) const;
    int TranslateTextToControlState(std::int64_t index, char const *text, double &state);
    // The default page tables of the automation controls, written into `root`; see
    // WCAutomationManager.
    int WriteDefaultPageTablesToXML(XML::CXMLElement *root, int pageSize) const;
    int WriteDefaultPageTablesDiscCtrlsToXML(XML::CXMLElement *root, int pageSize) const;
    int SetAutomatableControlStr(char const *text, std::int64_t index);

    // ---- GUIs (the GUI work fills these) ---------------------------------------------------
    using GUIMap = std::map<WCFixedString<1023>, CStandardGUI_X *>;
    static constexpr char const *kPrimaryGUIName = "Primary";
    static constexpr char const *kGUIXMLResType = "GUIXML";
    static constexpr char const *kDefaultGUIXMLID = "1000";
    CStandardGUI_X *GetGUIPtr(char const *name) const;
    void SetGUIPointer(char const *name, CStandardGUI_X *gui);
    GUIMap const &GetGUIMap() const { return m_GUIMap; }
    // [main-thread] The titles of the menu of a popup the plug-in fills at run time
    // ("DynamicPopupWithAlg"), by the control's name; eNotImplemented by default, which leaves
    // the popup its parameter's states.
    virtual int GetDynamicPopupItems(char const *controlName,
                                     std::vector<std::string> &outTitles) {
        return eNotImplemented;
    }
    // A new, empty GUI document for the map entry `name`, owned by the caller: the plug-in's
    // factory of its own GUI class. The container reference must outlive the document.
    virtual CStandardGUI_X *CreateGUI(WTResContainerType *&container, char const *name);
    // Builds the GUI of the "GUIXML" resource `key` (its id, "1000" when null) from this plug-in's
    // container (null) and enters it under `name` ("Primary" when null); a GUI the name held
    // before is disposed once the new one stands. A GUI XML that does not load is its code, with
    // the map unchanged; so is another container, which the document could not keep a hold on.
    virtual int CreateGuiAndAddToMap(WTResContainerType *container, char const *key,
                                     char const *name);
    // Disposes and deletes the GUI; kErrNoGUI for a name the map lacks.
    virtual int DisposeGuiAndRemoveFromMap(char const *name);
    // Every GUI but "Primary".
    virtual int DisposeAdditionalGUIs();
    // Link groups that follow the controls of the GUIs adjust here; nothing by default.
    virtual void AdjustLinkGroupsToCurrentGuiControls() {}
    virtual int SetDefaultSkin(char const *name);
    WCFixedStringBase const &GetDefaultSkin() const { return m_DefaultSkin; }
    bool IsShowMode() const { return m_ShowMode; }
    void SetShowMode(bool value) { m_ShowMode = value; }
    void SetNotifyOnLinkedParams(bool value) { m_NotifyOnLinkedParams = value; }
    bool GetNotifyOnLinkedParams() const { return m_NotifyOnLinkedParams; }
    bool GetHasPreScan() const { return m_HasPreScan; }
    bool HasStemSupport() const { return m_HasStemSupport; }
    // Flags a shell sets for plug-in code to read ('utfm', 'rsip', 'spcl').
    bool m_ShellFlag_utfm = false;
    bool m_ShellFlag_rsip = false;
    bool m_ShellFlag_spcl = false;

    // ---- events ----------------------------------------------------------------------------
    virtual WCAlgorithmBroadcaster *Broadcaster() { return &m_Broadcaster; }

    // ---- selectors: a plug-in overrides these to answer selectors of its own ---------------
    virtual int GetPluginInfo_bool(std::uint32_t selector, bool &out, std::int64_t arg);
    virtual int GetPluginInfo_double(std::uint32_t selector, double &out, std::int64_t arg);
    virtual int GetPluginInfo_float(std::uint32_t selector, float &out, std::int64_t arg);
    virtual int GetPluginInfo_int32_t(std::uint32_t selector, std::int32_t &out, std::int64_t arg);
    virtual int GetPluginInfo_size_t(std::uint32_t selector, std::size_t &out, std::int64_t arg);
    virtual int GetPluginInfo_struct(std::uint32_t selector, void *out, std::int64_t arg);
    virtual int GetPluginInfo_uint32_t(std::uint32_t selector, std::uint32_t &out,
                                       std::int64_t arg);
    virtual int GetPluginInfo_WCFixedString(std::uint32_t selector, WCFixedStringBase &out,
                                            std::int64_t arg);
    virtual int GetPluginInfo_WCStMemObj(std::uint32_t selector, Utils::WCStMemObj &out,
                                         std::int64_t arg);
    virtual int SetPluginInfo_bool(std::uint32_t selector, bool value, std::int64_t arg);
    virtual int SetPluginInfo_c_str(std::uint32_t selector, char const *value, std::int64_t arg);
    virtual int SetPluginInfo_double(std::uint32_t selector, double value, std::int64_t arg);
    virtual int SetPluginInfo_int32_t(std::uint32_t selector, std::int32_t value, std::int64_t arg);
    virtual int SetPluginInfo_size_t(std::uint32_t selector, std::size_t value, std::int64_t arg);
    virtual int SetPluginInfo_struct(std::uint32_t selector, void *value, std::int64_t arg);
    virtual int SetPluginInfo_uint32_t(std::uint32_t selector, std::uint32_t value,
                                       std::int64_t arg);

    // The private channel between a plug-in and its own shell code (selector 'prvt'); -1 unless
    // the plug-in answers.
    virtual int GetPluginInfo_bool_Private(bool &out, std::int64_t arg);
    virtual int GetPluginInfo_double_Private(double &out, std::int64_t arg);
    virtual int GetPluginInfo_float_Private(float &out, std::int64_t arg);
    virtual int GetPluginInfo_int32_t_Private(std::int32_t &out, std::int64_t arg);
    virtual int GetPluginInfo_size_t_Private(std::size_t &out, std::int64_t arg);
    virtual int GetPluginInfo_struct_Private(void *out, std::int64_t arg);
    virtual int GetPluginInfo_uint32_t_Private(std::uint32_t &out, std::int64_t arg);
    virtual int GetPluginInfo_WCFixedString_Private(WCFixedStringBase &out, std::int64_t arg);
    virtual int GetPluginInfo_WCStMemObj_Private(Utils::WCStMemObj &out, std::int64_t arg);
    virtual int SetPluginInfo_bool_Private(bool value, std::int64_t arg);
    virtual int SetPluginInfo_c_str_Private(char const *value, std::int64_t arg);
    virtual int SetPluginInfo_double_Private(double value, std::int64_t arg);
    virtual int SetPluginInfo_int32_t_Private(std::int32_t value, std::int64_t arg);
    virtual int SetPluginInfo_size_t_Private(std::size_t value, std::int64_t arg);
    virtual int SetPluginInfo_struct_Private(void *value, std::int64_t arg);
    virtual int SetPluginInfo_uint32_t_Private(std::uint32_t value, std::int64_t arg);

    // The bytes of a resource of the plug-in's container as stored, without loading it:
    // eRMContainerNotFound without a container, the manager's code for a missing resource.
    int ReadResourceToMemObj(char const *type, short id, Utils::WCStMemObj &out) const;
    int GetPathToNativeProcessDLL(WCFixedStringBase &out) const;
    int GetProcessCodeManagerMemObj(Utils::WCStMemObj &out) const;
    // The category list of this component ('pcat'): in the "DAEFlags" XML resource, id 1000,
    // the first element whose "SubComp" attribute names the component's sub-type (a substring
    // test, so a list of codes names each of them), written out as XML with its children.
    // eXMLParserFailed for a resource that does not parse, eXMLElementMissing when no element
    // names the sub-type; `out` changes only on success.
    int GetSubCompCategoryList(Utils::WCStMemObj &out) const;

protected:
    // ---- the five operations every plug-in implements --------------------------------------
    // Computes the coefficients of one parameter into the active image; returns the chain.
    virtual BUFFER_HEADER *UpdateParamSelf(std::uint64_t id) = 0;
    // Computes all coefficients (UpdateAlg); returns the chain.
    virtual BUFFER_HEADER *UpdateAlgSelf() = 0;
    // Builds the initial buffers (InitAlg): coefficients and states.
    virtual BUFFER_HEADER *InitAlgSelf() = 0;
    // The plug-in's part of an idle tick.
    virtual int DoIdleSelf(short level) = 0;
    // Clears the process side's audio history (ResetAudioBuffers); returns the chain.
    virtual BUFFER_HEADER *ResetAudioBuffersSelf() = 0;

public:
    // [any-thread, takes the process lock] Sends what ResetAudioBuffersSelf builds.
    virtual int ResetAudioBuffers();

protected:
    // ---- hooks; the base does its part, then calls them ------------------------------------
    virtual int FinishCreateSelf() { return 0; }
    virtual int InitDataSelf() { return 0; }
    virtual int InitInstanceDataSelf() { return 0; }
    virtual int ReadAlgXMLSelf() { return 0; }
    virtual int ChangeSampleRateSelf() { return 0; }
    virtual int SetProcessActiveSelf(bool) { return 0; }
    virtual int SetExecCallBackSelf() { return 0; }
    // A plug-in whose process side needs memory of its own allocates it here.
    virtual int CallProcessSideAllocSelf() { return 0; }
    virtual BUFFER_HEADER *SetMuteSelf(bool) { return nullptr; }
    virtual BUFFER_HEADER *SetDelaySelf(int) { return nullptr; }
    virtual BUFFER_HEADER *SetNoiseRatioSelf(double) { return nullptr; }
    // A light chain for a drag step of a "DontUpdateWhileDrag" parameter.
    virtual BUFFER_HEADER *DragParamSelf(std::uint64_t) { return nullptr; }
    // A typed text: the hook TranslateTextToState_Self first, then TranslateTextToRealWorld.
    virtual BUFFER_HEADER *UpdateParamFromTextSelf(std::uint64_t id, char const *text,
                                                   ETranslateTextRetType &ret);
    // A plug-in that reads a text as a state answers eTranslateTextOK and the state.
    virtual ETranslateTextRetType TranslateTextToState_Self(std::uint64_t, char const *,
                                                            double &) {
        return eTranslateTextNotHandled;
    }
    virtual int TransportChangeSelf(WSTransportState const &) { return 0; }
    virtual int UpdateHostTrackStateSelf(bool) { return 0; }
    virtual void DisposeSelf() {}
    virtual void SetBypassSelf() {}
    virtual void SetBypassCoefsSelf() {}
    virtual void CopySetupSelf(EPluginSetup, EPluginSetup) {}
    virtual void InitProcessCodeSelf() {}
    virtual void AdjustProcessCodeDescriptionsSelf() {}
    // May change the processor a build is chosen for.
    virtual void GetDefaultProcessorForComponentSelf(SProcessorSpec &) {}
    virtual void InitExportItemMapSelf() {}
    virtual void Init_Key_Values_Self() {}
    virtual int PrepareDisplayFunctionsMapSelf() { return 0; }
    virtual int PrepareScaleFunctionsMapSelf() { return 0; }
    virtual int PrepareMouseDeltaFunctionsMapSelf() { return 0; }
    virtual int PrepareDrawClassFactoryMapSelf() { return 0; }
    virtual int PrepareParamExtensionFactoryMapSelf() { return 0; }
    virtual int SetTrackNameSelf(char const *) { return 0; }

    // ---- preset hooks, in the order a load or a save meets them -----------------------------
    // Whether a load clears the MIDI attachments; both must agree.
    virtual bool ShouldClearMidiControlsAttachment(Preset::CPresetInfo const &) { return true; }
    virtual bool ShouldClearMidiControlsAttachmentSelf(Preset::CPresetInfo const &) {
        return true;
    }
    virtual int PreLoadFromPreset(Preset::CPresetInfo const &) { return 0; }
    // A MIDI map has loaded its controls.
    virtual int LoadMidiFromPresetSelf(Preset::CPresetInfo const &) { return 0; }
    // Whether the plug-in reads its own XML of a preset ("PluginSpecificXMLData").
    virtual bool GetLoadSpecificXMLPreset() const { return false; }
    virtual int LoadSpecificXMLFromPresetSelf(XML::CXMLElement const &, bool /*obsolete*/,
                                              EPluginSetup) {
        return 0;
    }
    // The plug-in's tagged blocks of one setup.
    virtual int LoadFromPresetSelf(Preset::CPresetInfo const &, Preset::sPresetData const &,
                                   EPluginSetup) {
        return 0;
    }
    // Whether this setup's parameter values load.
    virtual bool ShouldLoadParamsFromPresetSelf(Preset::sPresetData const &) { return true; }
    // May refuse (or correct) a stored value before it loads; false leaves the parameter.
    virtual bool ValidateRealWorldFromPresetSelf(std::uint64_t, EPluginSetup, double &) {
        return true;
    }
    // The value a parameter the preset does not reach takes.
    virtual double GetDefaultRealWorldForPreset(std::uint64_t id) const;
    // The load is done; its answer is the load's.
    virtual int PostLoadFromPreset(Preset::CPresetInfo const &) { return 0; }
    virtual int PreSaveToPreset(Preset::CPresetInfo &) const { return 0; }
    // Whether a setup's values go into the preset.
    virtual bool ShouldSaveParamsToPresetSelf(EPluginSetup) const { return true; }
    // The plug-in's part of one setup's data (tagged blocks, its XML).
    virtual int SaveToPresetSelf(Preset::CPresetInfo &, Preset::sPresetData &, EPluginSetup) const {
        return 0;
    }

    // The text of the parameter XML: the "ParamXML" resource with the preset resource number.
    // A plug-in that carries its parameters another way overrides it.
    virtual int ReadParamXML(Utils::WCStMemObj &out) const;

    // The meter reads of ReadMeters: null when a buffer cannot be made (nothing left held).
    BUFFER_HEADER *PrepareMeterReads(WCMeterManager::sMeter *meters, unsigned int count,
                                     bool reset);
    int TakeMeterReads(BUFFER_HEADER const *chain, WCMeterManager::sMeter *meters,
                       unsigned int count);

    // Fills the five maps (built-ins, then each ...Self hook) and builds the parameter list.
    int PrepareParameterVec();
    int PrepareDisplayFunctionsMap();
    int PrepareScaleFunctionsMap();
    int PrepareMouseDeltaFunctionsMap();
    int PrepareDrawClassFactoryMap();
    int PrepareParamExtensionFactoryMap();
    // Reads the parameter XML into the list; the resource's error leaves the list empty.
    int BuildParameterList();
    // Reads the "cALGORITHM" children of an algorithm XML's root: names, types, undo, the preset
    // resource number, the refresh rate and the flag elements, which set keys of the store.
    // A plug-in whose XML is not a bundle resource calls it from its constructor. Missing text
    // gives eRMResNotFound, unparsable text eXMLParserFailed; neither changes anything.
    int ReadAlgXMLFromText(char const *text, std::uint64_t size);
    int Read_cALGORITHM_Element_FromXML(pugi::xml_node const &element);
    WSParamMaps &ParamMaps() { return m_ParamMaps; }

    // Construction and lifecycle steps.
    void ResetAllmembers();
    // The "AlgXML" resource (id 1001) filtered for this component; the resource stays held
    // until Dispose releases what the algorithm loaded, so other instances share the filtered
    // document meanwhile. The code is kept for GetAlgXMLError.
    int ReadAlgXML();
    // The key/value store: the constructor creates it (before the algorithm XML, whose flag
    // elements write keys) and the destructor disposes of it. Creating again replaces the store
    // with an empty one; after DisposeKeyValueStore no key can be read or written.
    void CreateKeyValueStore();
    void DisposeKeyValueStore();
    void Init_Key_Values();
    void InitExportItemMap();
    void StartRedisReporting();
    void StopRedisReporting();
    void Report(char const *key, char const *value);
    template <class Value>
    int LoadValuesFromPreset(Preset::sPresetData const &data, EPluginSetup setup, bool update,
                             std::vector<unsigned int> const &extraKinds, Value value);
    // The parameters a preset of `info`'s kind must not reach: those only a host chunk or the
    // default preset may set. Kind 1 (kept) per parameter, 0 for the others.
    std::vector<unsigned int> IgnoreHostOnlyParams(Preset::CPresetInfo const &info) const;

    // The plug-in supplies what no XML gave it yet.
    void SetAlgName(char const *name);
    void SetAlgTypes(WCFourCC type, WCFourCC subType);
    ProcessMemory::SDSPReqRes &DSPReqRes() { return m_DSPReqRes; }

public:
    // The widest word any converter may touch. Images keep this much slack past their last word,
    // so a process side that announces a narrower word than its converters write cannot make a
    // converter run past the image.
    static constexpr std::size_t kImageSlack = WCProcessMemory::kImageSlack;

private:
    // Every GUI of the map, disposed and deleted.
    void DisposeAllGUIs();
    // Declaration order follows the data model.
    miThread::WCThreadRef m_MainThreadRef;
    WCAlgorithmBroadcaster m_Broadcaster;
    WCShellAlgorithmListener m_ShellListener;
    std::array<WCFixedString<127>, 2> m_SetupNames;
    WTAutoCallBack m_AutoCallBack = nullptr;
    std::int64_t m_AutoRefcon = 0;
    int m_SampleRate = 44100;
    bool m_ProcessActive = false;
    bool m_RestoreFlag = false;
    bool m_Bypass = false;
    bool m_BypassChanged = false;
    bool m_Mute = false;
    // Read without the lock by idle and GUI code while a host's chunk may switch it on its thread.
    std::atomic<EPluginSetup> m_ActiveSetup = eSetupA;
    float m_MinOutInRatio = 1.0f;
    float m_MaxOutInRatio = 1.0f;
    short m_PresetResourceNumber = 1000;
    WCFixedString<63> m_AlgName;
    WCFixedString<63> m_UserManualName;
    // The "AlgNameList" entries, by their "NumChars".
    std::vector<std::pair<std::int64_t, WCFixedString<63>>> m_AbbreviatedNames;
    WCFixedString<63> m_DefaultSkin;
    mutable miThread::ThreadMutexInited m_AlgLock;
    mutable miThread::ThreadMutexInited m_ProcessLock;
    WCFourCC m_AlgType = WCFourCC("????");
    WCFourCC m_AlgSubType = WCFourCC("????");
    std::vector<WCFourCC> m_PresetCompatibleTypes;
    std::vector<WCFourCC> m_PresetCompatibleSubComps;
    ProcessMemory::SDSPReqRes m_DSPReqRes;
    SProcessorSpec m_CurrentProcessor;
    CProcessCodeManager m_ProcessCodeManager;
    Utils::WCNativeModule m_NativeProcessModule;
    ProcessorType m_NativeProcessType = eProcessorTypeGeneric;
    bool m_IsNative = false;
    bool m_IsNetShell = false;
    bool m_IsArtist = false;
    std::uint64_t m_UndoLevel = 1000;
    WCMeterManager m_MeterManager;
    // The asynchronous meter read sent and not yet received.
    BUFFER_HEADER *m_PendingMeterReads = nullptr;
    std::atomic<bool> m_RefreshMetersRequested = false;
    std::atomic<bool> m_ShellReadsMeters = false;
    std::unique_ptr<Preset::CPresetsManager> m_PresetsManager;
    MirelComponentInfo m_ComponentInfo;
    std::uint32_t m_OptimalRefreshRate = 80;
    WCAutomationManager m_AutomationManager;
    WCLinkGroups m_LinkGroups;
    GUIMap m_GUIMap;
    Redis::WCMirelRedisReporter *m_pReporter = nullptr;
    std::unique_ptr<WCKeyValue> m_pKeyValues;
    WCExportItemsContainer m_ExportItems;
    std::vector<sCONTROL_PARAM> m_Params;
    WSParamMaps m_ParamMaps;
    int m_ParameterListError = 0;
    int m_AlgXMLError = eNoErr;
    WCFixedString<127> m_TrackName;
    double m_TrackVolume = 0.0;
    std::uint64_t m_NumDoIdleCalls = 0;
    std::uint64_t m_NumUpdateAlgCalls = 0;
    std::uint64_t m_NumInitDataCalls = 0;

    // The process side as this instance sees it: callback, offsets, converters, images,
    // externals and ports. It reads the process-active, bypass, setup and shell-kind flags above
    // through pointers, so those stay single.
    WCProcessMemory m_ProcessMemory{WCProcessMemory::WSOwnerFlags{
        &m_ProcessActive, &m_Bypass, &m_ActiveSetup, &m_IsNative, &m_IsNetShell}};
    WCMusicInfo m_MusicInfo;
    WSTransportState m_Transport;
    bool m_Monitoring = false;
    std::int64_t m_TimeCodeData = 0;
    double m_TrimModeRatio = 1.0;
    int m_Delay = 0;
    std::uint32_t m_SideChainNum = 0;
    signed char m_SideChainActive = -1;
    int m_HostInterruptDisable = 0;
    int m_HostInterruptEnable = 0;
    bool m_ShowMode = false;
    bool m_NotifyOnLinkedParams = false;
    bool m_HasPreScan = false;
    bool m_HasStemSupport = false;
    std::atomic<bool> m_UpdateAlgRequired = true;
    bool m_InstanceReady = false;
    bool m_Disposed = false;
    bool m_FinishCreateCalled = false;
    bool m_AdjustedProcessCode = false;
};

MIREL_NAMESPACE_END
