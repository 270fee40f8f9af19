#include "Code/Algorithm/PluginInfoSelectors.h"

#include <cmath>
#include <cstring>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCBaseImage.h"
#include "files/WCStPath.h"
#include "resources/ResourceManager.h"
#include "core/WCFourCC.h"
#include "core/WCStMemObj.h"
#include "core/WUAssert.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr WCFourCC kPrivate("prvt");
constexpr char kPrimaryGUI[] = "Primary";

struct WSKeySelector {
    WCFourCC selector;
    char const *key;
};

// Boolean capabilities answered from the key/value store, false when absent.
constexpr WSKeySelector kBoolKeys[] = {
    {WCFourCC("ndlc"), "NeedIdleAutomationQueueForDynamicLatencyChange"},
    {WCFourCC("isml"), "IsMidiListener"},
    {WCFourCC("nath"), "NeedOwnAutomationThread"},
    {WCFourCC("isti"), "IsTrackInfoListener"},
    {WCFourCC("istl"), "IsTempoListener"},
    {WCFourCC("ismr"), "IsMidiRealtime"},
    {WCFourCC("isnk"), "IsNKSSupport"},
    {WCFourCC("issb"), "IsSampleBased"},
    {WCFourCC("gpst"), "HasGlobalDataInPreset"},
    {WCFourCC("isbe"), "IsBeatInfoListener"},
    {WCFourCC("isbp"), "IsNotBypassable"},
    {WCFourCC("ismb"), "IsMidiBroadcaster"},
    {WCFourCC("iStT"), "IsStickyTouch"},
    {WCFourCC("capr"), "ConstraintAlwaysProcess"},
    {WCFourCC("dade"), "IsDragAndDropEnabled"},
    {WCFourCC("deFP"), "DoesntExportFactoryPresets"},
    {WCFourCC("PVio"), "CanProcessVarIO"},
};

// 32-bit facts read as four bytes from the key/value store.
constexpr WSKeySelector kInt32Keys[] = {
    {WCFourCC("istm"), "inputs:stem"},      {WCFourCC("sstm"), "sidechain_inputs:stem"},
    {WCFourCC("ostm"), "outputs:stem"},     {WCFourCC("inpu"), "inputs:num"},
    {WCFourCC("outp"), "outputs:num"},      {WCFourCC("nsci"), "sidechain_inputs:num"},
    {WCFourCC("mnch"), "channels:num:max"}, {WCFourCC("maxr"), "samplerate:max"},
    {WCFourCC("cOfs"), "coefs:offset"},     {WCFourCC("gncf"), "coefs:num"},
    {WCFourCC("dlay"), "through_delay"},    {WCFourCC("tail"), "tail:length"},
};

template <std::size_t N>
char const *FindKey(WSKeySelector const (&table)[N], unsigned int selector) {
    for (auto const &row : table)
        if (row.selector == selector)
            return row.key;
    return nullptr;
}

// The GUI a selector acts on: "Primary".
CStandardGUI_X *PrimaryGUI(cALGORITHM const &alg) {
    return alg.GetGUIPtr(kPrimaryGUI);
}

// The controller selectors need a GUI whose controls are finished.
CStandardGUI_X *FinishedGUI(cALGORITHM const &alg) {
    CStandardGUI_X *gui = PrimaryGUI(alg);
    return gui != nullptr && gui->IsFinished() ? gui : nullptr;
}

// The file of the GUI's icon image, in whichever image form the bundle holds it.
int IconFilePath(cALGORITHM &alg, WCFixedStringBase &out) {
    CStandardGUI_X const *gui = PrimaryGUI(alg);
    if (gui == nullptr)
        return kErrNoGUI;
    if (gui->GetIconResID() < 0)
        return eRMInvalidResID;
    WCBaseImage icon(gui->GetIconResID());
    if (const int err = icon.DecideResType(alg.GetContainer()); err != eNoErr)
        return err;
    FM::WCStPath path;
    const int err = RM::GetPathToActualFile(
        alg.GetContainer(), WCResKey(icon.GetResType().c_str(), gui->GetIconResID()), path);
    if (err == eNoErr)
        out = path.GetNativePathString().c_str();
    return err;
}

} // namespace

#define MIREL_SELECTOR_ALG(instance)                                                               \
    MIREL_ASSERT_RETURN((instance).m_pAlg != nullptr, eMemNullPointer);                            \
    cALGORITHM &alg = *(instance).m_pAlg

int GetPluginInfo_WCFixedString(PluginInstance &instance, unsigned int selector,
                                WCFixedStringBase &out, std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_WCFixedString_Private(out, arg);
    case WCFourCC("FcPN"): return alg.GetFactoryPresetName(arg, out);
    case WCFourCC("algT"):
        out.clear();
        out << alg.GetAlgType();
        return eNoErr;
    case WCFourCC("cost"): {
        WCFourCC id = WCFourCC::Unreadable();
        const int err = alg.GetIndexedChunkID(static_cast<int>(arg), id);
        if (err == eNoErr) {
            out.clear();
            out << id;
        }
        return err;
    }
    case WCFourCC("icnf"): return IconFilePath(alg, out);
    case WCFourCC("sAlL"): return alg.GetAlgNameOfLength(arg, out);
    case WCFourCC("sAlN"): return alg.GetAlgName(out);
    case WCFourCC("sPFN"): out = instance.m_PluginFileName; return eNoErr;
    case WCFourCC("sPTP"): return alg.GetPathToNativeProcessDLL(out);
    default: return alg.GetPluginInfo_WCFixedString(selector, out, arg);
    }
}

int GetPluginInfo_WCStMemObj(PluginInstance &instance, unsigned int selector,
                             Utils::WCStMemObj &out, std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_WCStMemObj_Private(out, arg);
    case WCFourCC("AlgR"): return alg.ReadResourceToMemObj("AlgXML", 1001, out);
    case WCFourCC("daef"): return alg.ReadResourceToMemObj("DAEFlags", 1000, out);
    case WCFourCC("XPGT"):
        if (arg < 0 || arg > 0x7FFF - 1000)
            return eRMInvalidResID;
        return alg.ReadResourceToMemObj("PageTable", static_cast<short>(1000 + arg), out);
    case WCFourCC("pcmX"): return alg.GetProcessCodeManagerMemObj(out);
    case WCFourCC("pcat"): return alg.GetSubCompCategoryList(out);
    default: return alg.GetPluginInfo_WCStMemObj(selector, out, arg);
    }
}

int GetPluginInfo_bool(PluginInstance &instance, unsigned int selector, bool &out,
                       std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    if (selector == kPrivate)
        return alg.GetPluginInfo_bool_Private(out, arg);
    if (char const *key = FindKey(kBoolKeys, selector)) {
        out = alg.GetPluginValue_bool(key, false);
        return eNoErr;
    }
    switch (selector) {
    case WCFourCC("pact"): out = alg.GetProcessActive(); return eNoErr;
    case WCFourCC("sgpv"):
        out = alg.IsExportItemSupported(reinterpret_cast<char const *>(arg));
        return out ? eNoErr : eNotImplemented;
    case WCFourCC("susp"): out = !alg.GetPluginValue_bool("DontSuspendProcess", false); return 0;
    case WCFourCC("issm"): out = alg.IsShowMode(); return eNoErr;
    case WCFourCC("hpsc"): out = alg.GetHasPreScan(); return eNoErr;
    case WCFourCC("hssp"): out = alg.HasStemSupport(); return eNoErr;
    case WCFourCC("PrCh"):
        if (PrimaryGUI(alg) == nullptr)
            return kErrNoGUI;
        out = PrimaryGUI(alg)->IsPresetModified(eCurrentSetup);
        return eNoErr;
    case WCFourCC("byps"): out = alg.GetBypass(); return eNoErr;
    default: return alg.GetPluginInfo_bool(selector, out, arg);
    }
}

int GetPluginInfo_double(PluginInstance &instance, unsigned int selector, double &out,
                         std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    const auto id = static_cast<std::uint64_t>(arg);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_double_Private(out, arg);
    case WCFourCC("prwv"): return alg.GetParamRealWorld(id, out);
    case WCFourCC("psfr"): return alg.RealWorldToState(id, out);
    case WCFourCC("prfs"): return alg.StateToRealWorld(id, out);
    case WCFourCC("crfs"): return alg.ControlRealWorldValueFromState(arg, out);
    case WCFourCC("csfr"): return alg.ControlStateFromRealWorldValue(arg, out);
    case WCFourCC("MRst"): {
        double value = 0.0;
        const int err = alg.GetMeterReadResetValue(arg, value);
        // The reset value travels to the process side as an integer word.
        if (err == eNoErr)
            out = static_cast<double>(static_cast<int>(value));
        return err;
    }
    case WCFourCC("pnst"): out = 1000.0; return eNoErr;
    default: return alg.GetPluginInfo_double(selector, out, arg);
    }
}

int GetPluginInfo_float(PluginInstance &instance, unsigned int selector, float &out,
                        std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_float_Private(out, arg);
    case WCFourCC("moir"): out = alg.GetMinOutInRatio(); return eNoErr;
    case WCFourCC("xoir"): out = alg.GetMaxOutInRatio(); return eNoErr;
    default: return alg.GetPluginInfo_float(selector, out, arg);
    }
}

int GetPluginInfo_int32_t(PluginInstance &instance, unsigned int selector, std::int32_t &out,
                          std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    if (selector == kPrivate)
        return alg.GetPluginInfo_int32_t_Private(out, arg);
    if (char const *key = FindKey(kInt32Keys, selector))
        return alg.GetPluginValueBinary(key, &out, sizeof out);
    switch (selector) {
    case WCFourCC("aois"): {
        int size = 0;
        const int err = alg.GetActualOutInSize(arg, size);
        if (err == eNoErr)
            out = size;
        return err;
    }
    case WCFourCC("CLfM"): {
        int led = out;
        const int err =
            alg.GetAutomationManager().ControlLedStateFromMap(static_cast<int>(arg), out, led);
        if (err == eNoErr)
            out = led;
        return err;
    }
    case WCFourCC("Ctrl"):
        if (FinishedGUI(alg) == nullptr)
            return kErrGUINotFullyCreated;
        out = FinishedGUI(alg)->GetSelectedController();
        return eNoErr;
    case WCFourCC("IfrN"):
        out = alg.GetAutomationControlIndexByName(reinterpret_cast<char const *>(arg));
        return eNoErr;
    case WCFourCC("nTGs"): return alg.GetPluginInfo_GetNextToggleState(arg, out);
    case WCFourCC("TsCO"): return alg.GetPluginInfo_GetNextToggleStateByControlID(arg, out);
    default: return alg.GetPluginInfo_int32_t(selector, out, arg);
    }
}

int GetPluginInfo_size_t(PluginInstance &instance, unsigned int selector, std::size_t &out,
                         std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_size_t_Private(out, arg);
    case WCFourCC("FcPC"): return alg.GetNumFactoryPresets(out);
    case WCFourCC("LPrm"): {
        std::uint64_t id = 0;
        const int err = alg.GetAutomationManager().ControlLeadParamID(static_cast<int>(arg), id);
        if (err == eNoErr)
            out = static_cast<std::size_t>(id);
        return err;
    }
    case WCFourCC("cais"): out = 312; return eNoErr;
    case WCFourCC("pifn"): {
        std::uint64_t id = 0;
        const int err = alg.GetParamIDFromName(reinterpret_cast<char const *>(arg), id);
        if (err == eNoErr)
            out = static_cast<std::size_t>(id);
        return err;
    }
    default: return alg.GetPluginInfo_size_t(selector, out, arg);
    }
}

int GetPluginInfo_struct(PluginInstance &instance, unsigned int selector, void *out,
                         std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_struct_Private(out, arg);
    case WCFourCC("reqR"): return alg.GetDSPReqRes(static_cast<ProcessMemory::SDSPReqRes *>(out));
    case WCFourCC("PmRq"):
        return alg.GetProcessMemoryRequest(
            static_cast<ProcessMemory::WSProcessMemoryRequest *>(out));
    case WCFourCC("grda"): {
        MIREL_ASSERT_RETURN(out != nullptr, eMemNullPointer);
        void *data = nullptr;
        const int err = alg.GetParamGraphData(static_cast<std::uint64_t>(arg), data);
        *static_cast<void **>(out) = data;
        return err;
    }
    case WCFourCC("MInf"):
        MIREL_ASSERT_RETURN(out != nullptr, eMemNullPointer);
        if (arg < 0)
            return eOutOfRangeNumber;
        return alg.GetMeterManager().GetMeterInfo(static_cast<std::uint32_t>(arg),
                                                  *static_cast<MirelMeterInfo *>(out));
    case WCFourCC("caui"):
        // A ControllerAutomationInfoVer11 record whose version and index the shell wrote.
        MIREL_ASSERT_RETURN(out != nullptr, eMemNullPointer);
        return alg.GetAutomationManager().GetControlAutomationInfo(out);
    default: return alg.GetPluginInfo_struct(selector, out, arg);
    }
}

int GetPluginInfo_uint32_t(PluginInstance &instance, unsigned int selector, std::uint32_t &out,
                           std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.GetPluginInfo_uint32_t_Private(out, arg);
    case WCFourCC("cont"):
    case WCFourCC("aCon"): out = alg.GetAutomationManager().GetNumAutomationControllers(); return 0;
    case WCFourCC("Metr"): out = alg.GetMeterManager().GetNumMeters(); return eNoErr;
    case WCFourCC("Orrt"): out = alg.GetOptimalRefreshRate(); return eNoErr;
    case WCFourCC("byps"): {
        std::uint32_t index = 0;
        const int err = alg.GetMeterManager().GetMeterIndex(static_cast<std::uint64_t>(arg), index);
        if (err == eNoErr)
            out = index;
        return err;
    }
    case WCFourCC("gCon"):
    case WCFourCC("selc"):
    case WCFourCC("rgpr"): {
        CStandardGUI_X const *gui = FinishedGUI(alg);
        if (gui == nullptr)
            return kErrGUINotFullyCreated;
        if (selector == WCFourCC("gCon"))
            out = static_cast<std::uint32_t>(gui->GetNumGUIControllers());
        else if (selector == WCFourCC("selc"))
            out = static_cast<std::uint32_t>(gui->GetNumSelectedControllers());
        else if (const int count = gui->GetNumRegisteredParamsForControl(arg); count >= 0)
            out = static_cast<std::uint32_t>(count);
        else
            return eControlOutOfRange;
        return eNoErr;
    }
    default: return alg.GetPluginInfo_uint32_t(selector, out, arg);
    }
}

int SetPluginInfo_bool(PluginInstance &instance, unsigned int selector, bool value,
                       std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate:
    case WCFourCC("sofp"): return alg.SetPluginInfo_bool_Private(value, arg);
    case WCFourCC("gued"):
    case WCFourCC("gemc"):
    case WCFourCC("gerc"):
    case WCFourCC("ghom"):
    case WCFourCC("dsac"):
    case WCFourCC("stxt"): {
        CStandardGUI_X *gui = PrimaryGUI(alg);
        if (gui == nullptr)
            return kErrNoGUI;
        switch (selector) {
        // True leaves the editor, false enters it.
        case WCFourCC("gued"): gui->SetEditorMode(!value); break;
        case WCFourCC("gemc"): gui->SetEditorMoveMode(value); break;
        case WCFourCC("gerc"): gui->SetEditorResizeMode(value); break;
        case WCFourCC("ghom"): gui->GoHome(value); break;
        case WCFourCC("dsac"): gui->DeSelectAllControls(); break;
        default: gui->SetIsDirectText(value); break;
        }
        return eNoErr;
    }
    case WCFourCC("hufp"): alg.SetPluginValue_bool("HostUsesFirstPreset", value); return eNoErr;
    case WCFourCC("nlpc"): alg.SetNotifyOnLinkedParams(value); return eNoErr;
    case WCFourCC("utfm"): alg.m_ShellFlag_utfm = value; return eNoErr;
    case WCFourCC("stsm"): alg.SetShowMode(value); return eNoErr;
    case WCFourCC("rsip"): alg.m_ShellFlag_rsip = value; return eNoErr;
    case WCFourCC("spcl"): alg.m_ShellFlag_spcl = value; return eNoErr;
    default: return alg.SetPluginInfo_bool(selector, value, arg);
    }
}

int SetPluginInfo_c_str(PluginInstance &instance, unsigned int selector, char const *value,
                        std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.SetPluginInfo_c_str_Private(value, arg);
    case WCFourCC("dskn"): return alg.SetDefaultSkin(value);
    case WCFourCC("sacs"): return alg.SetAutomatableControlStr(value, arg);
    case WCFourCC("lfps"): {
        const int err = alg.LoadFactoryPresetToPluginByName(value);
        if (err == eNoErr) {
            BUFFER_HEADER *chain = alg.UpdateAlg();
            alg.SendAndFreeBuffers(chain, eExecSendBuffers, true);
        }
        return err;
    }
    case WCFourCC("rfcp"): return alg.ReadFactoryPresetFromFile(value);
    default: return alg.SetPluginInfo_c_str(selector, value, arg);
    }
}

int SetPluginInfo_double(PluginInstance &instance, unsigned int selector, double value,
                         std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.SetPluginInfo_double_Private(value, arg);
    case WCFourCC("raba"): return alg.SetTrimModeRatio(value);
    case WCFourCC("temp"): {
        WCMusicInfo info;
        info.m_Tempo = value;
        return alg.SetMusicInfo(info);
    }
    default: return alg.SetPluginInfo_double(selector, value, arg);
    }
}

int SetPluginInfo_int32_t(PluginInstance &instance, unsigned int selector, std::int32_t value,
                          std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.SetPluginInfo_int32_t_Private(value, arg);
    case WCFourCC("sdly"): return alg.SetDelay(value);
    case WCFourCC("sofs"): return alg.SetStatesOfs(value);
    case WCFourCC("cofs"): return alg.SetCoefsOfs(value);
    case WCFourCC("dhip"): return alg.SetDisableHostInterruptPtr(value);
    case WCFourCC("ehip"): return alg.SetEnableHostInterruptPtr(value);
    default: return alg.SetPluginInfo_int32_t(selector, value, arg);
    }
}

int SetPluginInfo_size_t(PluginInstance &instance, unsigned int selector, std::size_t value,
                         std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.SetPluginInfo_size_t_Private(value, arg);
    case WCFourCC("lfpi"): return alg.LoadFactoryPresetByIndex(value);
    default: return alg.SetPluginInfo_size_t(selector, value, arg);
    }
}

int SetPluginInfo_struct(PluginInstance &instance, unsigned int selector, void *value,
                         std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.SetPluginInfo_struct_Private(value, arg);
    case WCFourCC("exbf"): return alg.SetExtBuffInfo(value);
    case WCFourCC("musp"):
        MIREL_ASSERT_RETURN(value != nullptr, eMemNullPointer);
        return alg.SetMusicInfo(*static_cast<WCMusicInfo const *>(value));
    case WCFourCC("prss"): return alg.SetCurrentProcessor(static_cast<SProcessorSpec *>(value));
    case WCFourCC("tcda"): return alg.SetTimeCodeData(value);
    // The toolbar menus belong to the toolbar buttons, which are not built yet.
    case WCFourCC("tfms"): return PrimaryGUI(alg) ? eNotImplemented : kErrNoGUI;
    case WCFourCC("adGp"): {
        CStandardGUI_X *gui = alg.GetGUIPtr(reinterpret_cast<char const *>(arg));
        if (gui == nullptr)
            return kErrNoGUI;
        MIREL_ASSERT_RETURN(value != nullptr, eMemNullPointer);
        gui->SetWindowPosition(*static_cast<WCPoint2D<short> const *>(value));
        return eNoErr;
    }
    default: return alg.SetPluginInfo_struct(selector, value, arg);
    }
}

int SetPluginInfo_uint32_t(PluginInstance &instance, unsigned int selector, std::uint32_t value,
                           std::int64_t arg) {
    MIREL_SELECTOR_ALG(instance);
    switch (selector) {
    case kPrivate: return alg.SetPluginInfo_uint32_t_Private(value, arg);
    case WCFourCC("sctr"):
        return PrimaryGUI(alg) ? PrimaryGUI(alg)->SelectControl(value) : kErrNoGUI;
    case WCFourCC("side"): return alg.SetSideChainNum(value);
    default: return alg.SetPluginInfo_uint32_t(selector, value, arg);
    }
}

#undef MIREL_SELECTOR_ALG

MIREL_NAMESPACE_END
