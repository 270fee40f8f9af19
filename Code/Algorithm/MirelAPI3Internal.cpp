#include "Code/Algorithm/MirelAPI3Internal.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Control/WCAutomationControl.h"
#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "Code/Presets/CPresetsManager.h"
#include "core/WUAssert.h"

MIREL_NAMESPACE_BEGIN

namespace MirelAPI3Internal {

namespace {

using json = nlohmann::json;
constexpr char kPrimaryGUI[] = "Primary";

json const *Param(Request const &request, char const *name) {
    if (!request.m_Request.is_object())
        return nullptr;
    const auto params = request.m_Request.find("params");
    if (params == request.m_Request.end() || !params->is_object())
        return nullptr;
    const auto value = params->find(name);
    return value == params->end() ? nullptr : &*value;
}

double Number(Request const &request, char const *name) {
    json const *value = Param(request, name);
    if (value == nullptr)
        return 0.0;
    if (value->is_boolean())
        return value->get<bool>() ? 1.0 : 0.0;
    if (value->is_number())
        return value->get<double>();
    throw json::type_error::create(
        302, std::string("type must be number, but is ") + value->type_name(), value);
}

// A number argument that names an index: anything that is no whole number in range reads as
// -1, which every index check refuses.
std::int64_t Index(Request const &request, char const *name) {
    const double value = Number(request, name);
    if (!std::isfinite(value) || value < -1.0 ||
        value > static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return -1;
    return static_cast<std::int64_t>(value);
}

bool Boolean(Request const &request, char const *name) {
    json const *value = Param(request, name);
    if (value == nullptr)
        return false;
    if (value->is_boolean())
        return value->get<bool>();
    throw json::type_error::create(
        302, std::string("type must be boolean, but is ") + value->type_name(), value);
}

std::string String(Request const &request, char const *name) {
    json const *value = Param(request, name);
    if (value == nullptr)
        return std::string();
    // The JSON library's own conversion throws its type error 302 for a non-string.
    return value->get<std::string>();
}

json &Result(Request &request) {
    if (!request.m_Response.is_object())
        request.m_Response = json::object();
    return request.m_Response["result"];
}

// Stores the code in the raw record and, for a failure, the request's error text.
int Finish(Request &request, int code, char const *errorText = nullptr) {
    request.m_pRawRequest->m_Error = code;
    if (code != eNoErr && errorText != nullptr)
        request.m_ErrorText = errorText;
    return code;
}

bool IsControlIndex(cALGORITHM &alg, std::int64_t index) {
    return index >= 0 && static_cast<std::uint64_t>(index) <
                             alg.GetAutomationManager().GetNumAutomationControllers();
}

// Dragging files onto a GUI belongs to input handling, which is not built: a request that finds
// its GUI has nobody to answer.
int GUIRequest(Request &request, cALGORITHM &alg, char const *errorText) {
    return Finish(request, FindRequestGUI(alg, request) ? eNotImplemented : kErrNoGUI, errorText);
}

} // namespace

// Checks the raw record, the instance and its algorithm; binds `alg`.
#define MIREL_REQUEST_ALG(request)                                                                 \
    MIREL_ASSERT_RETURN((request).m_pRawRequest != nullptr, eMemNullPointer);                      \
    if ((request).m_pRawRequest->m_pInstance == nullptr ||                                         \
        (request).m_pRawRequest->m_pInstance->m_pAlg == nullptr)                                   \
        return Finish(request, eMemNullPointer);                                                   \
    cALGORITHM &alg = *(request).m_pRawRequest->m_pInstance->m_pAlg

CStandardGUI_X *FindRequestGUI(cALGORITHM &alg, Request const &request) {
    json const *value = Param(request, "gui_name");
    std::string name = kPrimaryGUI;
    if (value != nullptr)
        name = value->get<std::string>();
    if (CStandardGUI_X *gui = alg.GetGUIPtr(name.c_str()))
        return gui;
    return alg.GetGUIPtr(kPrimaryGUI);
}

int GetAutomationControlIndexByName(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string name = String(request, "control_name");
    Result(request)["control_index"] = alg.GetAutomationControlIndexByName(name.c_str());
    return Finish(request, eNoErr);
}

int GetAutomationRefCons(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::int64_t index = Index(request, "control_index");
    if (!IsControlIndex(alg, index))
        return Finish(request, eControlOutOfRange);
    std::int64_t refCon1 = 0;
    std::int64_t refCon2 = 0;
    const int err =
        alg.GetAutomationManager().GetAutomationRefCons(static_cast<int>(index), refCon1, refCon2);
    if (err == eNoErr) {
        Result(request)["refCon1"] = refCon1;
        Result(request)["refCon2"] = refCon2;
    }
    return Finish(request, err);
}

int GetAutomationControlResetState(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::int64_t index = Index(request, "control_index");
    if (!IsControlIndex(alg, index))
        return Finish(request, eControlOutOfRange);
    double state = 0.0;
    const int err = alg.GetAutomationControlResetState(index, state);
    if (err == eNoErr)
        Result(request)["reset_state"] = state;
    return Finish(request, err);
}

int GetAutomationControlByNameHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string name = String(request, "control_name");
    WCAutomationControl *control =
        alg.GetAutomationManager().GetAutomationControlByName(name.c_str());
    if (control == nullptr)
        return Finish(request, kErrGUIObjectNotFound,
                      "GetAutomationControlByNameHack returned error");
    request.m_pRawRequest->SetPayloadPtr(control);
    request.m_pRawRequest->m_PayloadSize = sizeof(WCAutomationControl *);
    return Finish(request, eNoErr);
}

// Binds `gui` to the GUI the request names, or answers that there is none.
#define MIREL_REQUEST_GUI(request, text)                                                           \
    CStandardGUI_X *gui = FindRequestGUI(alg, request);                                            \
    if (gui == nullptr)                                                                            \
        return Finish(request, kErrNoGUI, text)

int GetGuiControlPtrByNameHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string name = String(request, "control_name");
    char const *text = "GetGuiControlPtrByNameHack returned error";
    MIREL_REQUEST_GUI(request, text);
    WCGUIControl *control = gui->GetControlPtrByName(name.c_str());
    if (control == nullptr)
        return Finish(request, kErrGUIObjectNotFound, text);
    request.m_pRawRequest->SetPayloadPtr(control);
    request.m_pRawRequest->m_PayloadSize = sizeof(WCGUIControl *);
    return Finish(request, eNoErr);
}

int GetPressedToolbarButtonHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    char const *text = "GetControlPtrByNameHack returned error";
    MIREL_REQUEST_GUI(request, text);
    for (std::size_t i = 0; i < gui->GetNumToolBarControls(); ++i)
        if (X_CToolbarButton *button = gui->GetToolBarControl(i); button->IsPressed()) {
            request.m_pRawRequest->SetPayloadPtr(button);
            request.m_pRawRequest->m_PayloadSize = sizeof(X_CToolbarButton *);
            return Finish(request, eNoErr);
        }
    return Finish(request, kErrGUIObjectNotFound, text);
}

int GetGuiLimitRectByIndex(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::int64_t index = Index(request, "limit_rect_index");
    MIREL_REQUEST_GUI(request, nullptr);
    const auto &rects = gui->GetViewRects();
    if (index < 0 || static_cast<std::uint64_t>(index) >= rects.size())
        return Finish(request, eOutOfRangeNumber);
    const WURect<short> &rect = rects[static_cast<std::size_t>(index)];
    json &result = Result(request);
    result["x"] = static_cast<double>(rect.left);
    result["y"] = static_cast<double>(rect.top);
    result["w"] = static_cast<double>(rect.Width());
    result["h"] = static_cast<double>(rect.Height());
    return Finish(request, eNoErr);
}

namespace {

// A point of the request, refused when it lies beyond what a GUI coordinate can hold.
bool RequestPoint(Request const &request, WCPoint2D<short> &point) {
    const double x = Number(request, "x");
    const double y = Number(request, "y");
    constexpr double kMax = std::numeric_limits<short>::max();
    constexpr double kMin = std::numeric_limits<short>::min();
    if (!(x >= kMin && x <= kMax && y >= kMin && y <= kMax))
        return false;
    point = WCPoint2D<short>(static_cast<short>(x), static_cast<short>(y));
    return true;
}

} // namespace

int InsideWhichControl(Request &request) {
    MIREL_REQUEST_ALG(request);
    char const *text = "InsideWhichControl returned error";
    WCPoint2D<short> point;
    const bool valid = RequestPoint(request, point);
    MIREL_REQUEST_GUI(request, text);
    const int index = valid ? gui->InsideWhichControl(point) : -1;
    Result(request)["control_index"] = index;
    return Finish(request, index >= 0 ? eNoErr : kErrGUIObjectNotFound, text);
}

int IsToolbarControlUnderPoint(Request &request) {
    MIREL_REQUEST_ALG(request);
    char const *text = "InsideWhichControl returned error";
    WCPoint2D<short> point;
    const bool valid = RequestPoint(request, point);
    MIREL_REQUEST_GUI(request, text);
    Result(request)["toolbar_under_point"] =
        valid && gui->InsideWhichToolbarControl(point) != nullptr;
    return Finish(request, eNoErr);
}

int IsSupportContentScale(Request &request) {
    MIREL_REQUEST_ALG(request);
    MIREL_REQUEST_GUI(request, "IsSupportContentScale returned error");
    Result(request)["support_content_scale"] =
        alg.GetPluginValue_bool("GUI_resize_supported", false);
    return Finish(request, eNoErr);
}

int UpdateDPIScalingFactor(Request &request) {
    MIREL_REQUEST_ALG(request);
    const double factor = Number(request, "ScalingFactor");
    char const *text = "UpdateDPIScalingFactor returned error";
    MIREL_REQUEST_GUI(request, text);
    return Finish(request, gui->SetGuiScalingFactor(factor), text);
}

int SetViewRect(Request &request) {
    MIREL_REQUEST_ALG(request);
    // The rectangle is four shorts: top, left, bottom, right.
    if (request.m_pRawRequest->PayloadPtr() == nullptr)
        return Finish(request, eMemNullPointer);
    if (request.m_pRawRequest->m_PayloadSize < 8)
        return Finish(request, eMemBuffTooShort);
    MIREL_REQUEST_GUI(request, nullptr);
    short sides[4];
    std::memcpy(sides, request.m_pRawRequest->PayloadPtr(), sizeof sides);
    const WURect<short> rect(sides[0], sides[1], sides[2], sides[3]);
    if (rect.Width() < 0 || rect.Height() < 0)
        return Finish(request, eOutOfRangeNumber);
    gui->SetViewRect(rect);
    return Finish(request, eNoErr);
}

int FileDragOver(Request &request) {
    MIREL_REQUEST_ALG(request);
    if (request.m_pRawRequest->PayloadPtr() == nullptr)
        return Finish(request, eMemNullPointer, "FileDragOver returned error");
    Result(request)["file_drag_accepted"] = false;
    return GUIRequest(request, alg, "FileDragOver returned error");
}

int FileDrop(Request &request) {
    MIREL_REQUEST_ALG(request);
    if (request.m_pRawRequest->PayloadPtr() == nullptr)
        return Finish(request, eMemNullPointer, "FileDrop returned error");
    return GUIRequest(request, alg, "FileDrop returned error");
}

int NotifyAutomation(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::int64_t id = Index(request, "param_index");
    if (id < 0 || static_cast<std::uint64_t>(id) >= alg.GetNumParams())
        return Finish(request, eOutOfRangeNumber);
    return Finish(request, alg.NotifyAutomation(static_cast<std::uint64_t>(id)));
}

int NotifyAutomationAllParams(Request &request) {
    MIREL_REQUEST_ALG(request);
    return Finish(request, alg.NotifyAutomationAllParams());
}

int SetNoiseRatio(Request &request) {
    MIREL_REQUEST_ALG(request);
    return Finish(request, alg.SetNoiseRatio(Number(request, "noise_ratio")));
}

int GetPluginValue_c_str(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string key = String(request, "key");
    if (!alg.HasPluginValue(key.c_str()))
        return Finish(request, eKeyNotFound, "GetPluginValue_c_str returned error");
    WCFixedString<1023> text;
    const int err = alg.GetPluginValueStr(key.c_str(), text);
    if (err == eNoErr)
        Result(request)["value"] = text.c_str();
    return Finish(request, err == eValueNotFound ? eKeyNotFound : err,
                  "GetPluginValue_c_str returned error");
}

namespace {
template <typename T>
int GetPluginValueNumber(Request &request, cALGORITHM &alg) {
    const std::string key = String(request, "key");
    if (!alg.KeyValues().Has(key.c_str()))
        return Finish(request, eKeyNotFound, "value not found");
    const T value = alg.KeyValues().GetAs<T>(key.c_str(), T());
    WSMirelAPI3_RawRequest &raw = *request.m_pRawRequest;
    if (raw.PayloadPtr() != nullptr && raw.m_PayloadSize >= sizeof(T))
        std::memcpy(raw.PayloadPtr(), &value, sizeof(T));
    else
        Result(request)["value"] = value;
    return Finish(request, eNoErr);
}
} // namespace

int GetPluginValue_double(Request &request) {
    MIREL_REQUEST_ALG(request);
    return GetPluginValueNumber<double>(request, alg);
}

int GetPluginValue_float(Request &request) {
    MIREL_REQUEST_ALG(request);
    return GetPluginValueNumber<float>(request, alg);
}

int SetPluginValue_bool(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string key = String(request, "key");
    alg.SetPluginValue_bool(key.c_str(), Boolean(request, "value"));
    return Finish(request, eNoErr);
}

int SetPluginValue_c_str(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string key = String(request, "key");
    alg.SetPluginValue_c_str(key.c_str(), String(request, "value").c_str());
    return Finish(request, eNoErr);
}

int SetPluginValue_double(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string key = String(request, "key");
    alg.SetPluginValue_double(key.c_str(), Number(request, "value"));
    return Finish(request, eNoErr);
}

int SetRedisKeyValue(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::string key = String(request, "key");
    const std::string value = String(request, "value");
    return Finish(request, alg.SetRedisKeyValue(key.c_str(), value.c_str()),
                  "SetRedisKeyValue returned error");
}

int GetMIDIControlID(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::int64_t index = Index(request, "control_index");
    if (!IsControlIndex(alg, index))
        return Finish(request, eControlOutOfRange, "GetMIDIControlID returned error");
    // -1 until MIDI learn attaches a message to the control.
    Result(request)["midi_control_id"] =
        alg.GetAutomationManager().GetAutomationControl(static_cast<int>(index))->GetMIDIControlID();
    return Finish(request, eNoErr);
}

int SetMIDIControlID(Request &request) {
    MIREL_REQUEST_ALG(request);
    const std::int64_t index = Index(request, "control_index");
    (void)Number(request, "midi_control_id");
    if (!IsControlIndex(alg, index))
        return Finish(request, eControlOutOfRange, "SetMIDIControlID returned error");
    return Finish(request, eNotImplemented, "SetMIDIControlID returned error");
}

int GetMIDIEventControls(Request &request) {
    MIREL_REQUEST_ALG(request);
    if (request.m_pRawRequest->PayloadPtr() == nullptr)
        return Finish(request, eMemNullPointer, "GetMIDIEventControls returned error");
    // One 312-byte record per control that listens to the event; with no automation controls
    // no control listens, and the binary output is empty. Which controls listen is the MIDI
    // layer's answer, which is not built yet.
    if (alg.GetAutomationManager().GetNumAutomationControllers() != 0)
        return Finish(request, eNotImplemented, "GetMIDIEventControls returned error");
    request.m_pRawRequest->m_BinaryOutput.ResizePtr(0);
    return Finish(request, eNoErr);
}

int SetCanControlDAWMixer(Request &request) {
    MIREL_REQUEST_ALG(request);
    alg.SetPluginValue_bool("CanControlDAWMixer", true);
    return Finish(request, eNoErr);
}

int TransportChange(Request &request) {
    MIREL_REQUEST_ALG(request);
    cALGORITHM::WSTransportState state;
    state.playing = Boolean(request, "playing");
    state.recording = Boolean(request, "recording");
    state.cycleActive = Boolean(request, "cycle_active");
    const double start = Number(request, "loop_start_samples");
    const double end = Number(request, "loop_end_samples");
    // Sample positions beyond what 64 bits hold are not positions; they read as 0.
    auto toSamples = [](double value) -> std::int64_t {
        return std::isfinite(value) && std::fabs(value) < 9.0e18 ? static_cast<std::int64_t>(value)
                                                                 : 0;
    };
    state.loopStartSamples = toSamples(start);
    state.loopEndSamples = toSamples(end);
    return Finish(request, alg.TransportChange(state));
}

int UpdateHostTrackState(Request &request) {
    MIREL_REQUEST_ALG(request);
    return Finish(request, alg.UpdateHostTrackState(Boolean(request, "monitoring")));
}

int GetCurrentPresetInfoHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    constexpr const char *kError = "GetCurrentPresetInfoHack returned error";
    Preset::CPresetsManager *manager = alg.GetPresetsManager();
    if (manager == nullptr)
        return Finish(request, ePresetInfoNotFound, kError);
    auto *info = static_cast<Preset::CPresetInfo *>(request.m_pRawRequest->PayloadPtr());
    if (info == nullptr)
        return Finish(request, eMemNullPointer, kError);
    *info = manager->GetCurrentPreset();
    return Finish(request, eNoErr);
}

int SetCurrentPresetInfoHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    constexpr const char *kError = "SetCurrentPresetInfoHack returned error";
    Preset::CPresetsManager *manager = alg.GetPresetsManager();
    if (manager == nullptr)
        return Finish(request, ePresetInfoNotFound, kError);
    auto const *info = static_cast<Preset::CPresetInfo const *>(request.m_pRawRequest->PayloadPtr());
    if (info == nullptr)
        return Finish(request, eMemNullPointer, kError);
    manager->SetCurrentPreset(*info);
    return Finish(request, eNoErr);
}

int GetPresetCompatibleSubComps(Request &request) {
    MIREL_REQUEST_ALG(request);
    json list = json::array();
    for (WCFourCC code : alg.GetPresetCompatibleSubComps())
        list.push_back(code.GetString().c_str());
    Result(request)["sub_comps"] = std::move(list);
    return Finish(request, eNoErr);
}

int LoadControlsFromPresetHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    constexpr const char *kError = "LoadControlsFromPresetHack returned error";
    const std::int64_t setup = Index(request, "setup_num");
    if (alg.GetPresetsManager() == nullptr)
        return Finish(request, ePresetInfoNotFound, kError);
    auto const *data = static_cast<Preset::sPresetData const *>(request.m_pRawRequest->PayloadPtr());
    if (data == nullptr)
        return Finish(request, eMemNullPointer, kError);
    if (setup < -1 || setup > 1)
        return Finish(request, eOutOfRangeNumber, kError);
    const int err = alg.LoadControlsFromPreset(alg.GetCurrentPresetInfo(), *data,
                                               static_cast<EPluginSetup>(setup));
    return Finish(request, err, kError);
}

int PreparePresetChunkHack(Request &request) {
    MIREL_REQUEST_ALG(request);
    constexpr const char *kError = "PreparePresetChunkHack returned error";
    const bool specific = Boolean(request, "get_specific_chunk");
    const bool midi = Boolean(request, "is_midi");
    Preset::CPresetsManager *manager = alg.GetPresetsManager();
    if (manager == nullptr)
        return Finish(request, ePresetInfoNotFound, kError);
    const Preset::CPublicAlg face(alg);
    Utils::WCStMemObj chunk;
    const int err = specific ? manager->GetCurrentSetupPresetChunk(face, chunk)
                             : Preset::CPresetsManager::PreparePresetChunk(face, chunk, true, midi);
    if (err != eNoErr)
        return Finish(request, err, kError);
    Utils::WCStMemObj::Swap(request.m_pRawRequest->m_BinaryOutput, chunk);
    return Finish(request, eNoErr);
}

#undef MIREL_REQUEST_ALG
#undef MIREL_REQUEST_GUI

} // namespace MirelAPI3Internal

MIREL_NAMESPACE_END
