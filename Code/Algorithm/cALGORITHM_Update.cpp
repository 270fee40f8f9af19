// cALGORITHM: the parameter update pipeline. A value change from a drag, a typed text, a preset
// or an automation lane passes the same gates here and comes out as the chain of coefficient
// buffers the plug-in's UpdateParamSelf built; display refresh follows on the next idle tick.

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Algorithm/WCStAlgLocker.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Below this a real-world change is rounding noise and the DSP is left alone.
constexpr double kRealWorldEpsilon = 1e-10;
// A parameter flag outside the named words that also keeps the value string as it is.
constexpr unsigned int kKeepValueStringMask = 0x100;

bool IsValidState(double state) {
    // Written so that a NaN fails too.
    return state >= 0.0 && state <= WCParam_Base::kMaxState;
}

bool MustAlwaysUpdate(sCONTROL_PARAM const &param) {
    return param.IsFlagSet(eParamFlag_DisplayOnlyParam) ||
           (param.IsFlagSet(eParamFlag_DontUpdateWhileDrag) && param.m_DragEnd != 0) ||
           param.IsFlagSet(eParamFlag_AlwaysUpdate) || param.m_ForceUpdate != 0;
}

} // namespace

bool cALGORITHM::IsUpdateParamAlwayesRequired(std::uint64_t id) const {
    sCONTROL_PARAM const *param = GetParam(id);
    return param != nullptr && MustAlwaysUpdate(*param);
}

BUFFER_HEADER *cALGORITHM::UpdateParamState(std::uint64_t id, double state, bool notify) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr || !IsValidState(state))
        return nullptr;
    WCStAlgLocker lock(*this);
    const int active = SetupSlot(m_ActiveSetup);
    if (param->IsDiscrete())
        state = param->QuantizeState(state);
    const bool always = MustAlwaysUpdate(*param);
    if (state == param->GetState(active) && !always)
        return nullptr;

    const double before = param->GetRealWorld(active);
    param->SetStateValue(active, state);
    const double after = param->UpdateRealWorldFromState(active);
    if (param->IsFlagSet(eParamFlag_SetupsCommon)) {
        param->SetStateValue(1 - active, state);
        param->UpdateRealWorldFromState(1 - active);
    }
    param->SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);
    const bool changed = std::fabs(after - before) >= kRealWorldEpsilon;
    if (!changed && !always)
        return nullptr;

    // The marks that let this update through are spent by it.
    const bool dragged = param->IsFlagSet(eParamFlag_DontUpdateWhileDrag);
    const bool differsFromDrag = dragged && after != param->m_LastDraggedValue;
    param->m_DragEnd = 0;
    param->m_ForceUpdate = 0;

    BUFFER_HEADER *chain = UpdateParamSelf(id);
    if ((changed || differsFromDrag) && !param->IsFlagSet(eParamFlag_DisplayOnlyParam) &&
        !param->IsFlagSet(eParamFlag_DontSaveToPreset))
        Broadcaster()->PresetModified(m_ActiveSetup);
    if (notify)
        NotifyParamValue(id);
    return chain;
}

BUFFER_HEADER *cALGORITHM::UpdateParamRealWorld(std::uint64_t id, double value) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr || !std::isfinite(value))
        return nullptr;
    WCStAlgLocker lock(*this);
    const int active = SetupSlot(m_ActiveSetup);
    const bool changed = value != param->GetRealWorld(active);
    if (!changed && !param->IsFlagSet(eParamFlag_DisplayOnlyParam) &&
        !param->IsFlagSet(eParamFlag_AlwaysUpdate))
        return nullptr;
    const double state = std::clamp(param->RealWorldToState(value), 0.0, WCParam_Base::kMaxState);
    param->SetRealWorldValue(active, value);
    param->SetStateValue(active, state);
    if (param->IsFlagSet(eParamFlag_SetupsCommon)) {
        param->SetRealWorldValue(1 - active, value);
        param->SetStateValue(1 - active, state);
    }
    param->SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);

    BUFFER_HEADER *chain = UpdateParamSelf(id);
    const bool differsFromDrag =
        param->IsFlagSet(eParamFlag_DontUpdateWhileDrag) && value != param->m_LastDraggedValue;
    if ((changed || differsFromDrag) && !param->IsFlagSet(eParamFlag_DisplayOnlyParam) &&
        !param->IsFlagSet(eParamFlag_DontSaveToPreset))
        Broadcaster()->PresetModified(m_ActiveSetup);
    return chain;
}

BUFFER_HEADER *cALGORITHM::UpdateParamRequestState(std::uint64_t id, double state) {
    return UpdateParamState(id, state, true);
}

BUFFER_HEADER *cALGORITHM::UpdateParamRequestRealWorld(std::uint64_t id, double value) {
    // One hold of the (recursive) lock covers the comparison and the update, so no other
    // thread's change slips between them. An id beyond the list reads as 0.0;
    // UpdateParamRealWorld then refuses it.
    WCStAlgLocker lock(*this);
    double stored = 0.0;
    (void)GetParamRealWorld(id, stored);
    BUFFER_HEADER *chain = UpdateParamRealWorld(id, value);
    if (value != stored)
        NotifyParamValue(id);
    return chain;
}

// ---- drag -----------------------------------------------------------------------------------

BUFFER_HEADER *cALGORITHM::DragParam(std::uint64_t id, double state) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr || !IsValidState(state))
        return nullptr;
    if (!param->IsFlagSet(eParamFlag_DontUpdateWhileDrag))
        return UpdateParamState(id, state, true);
    WCStAlgLocker lock(*this);
    const int active = SetupSlot(m_ActiveSetup);
    if (param->IsDiscrete())
        state = param->QuantizeState(state);
    param->SetStateValue(active, state);
    param->m_LastDraggedValue = param->UpdateRealWorldFromState(active);
    if (param->IsFlagSet(eParamFlag_SetupsCommon)) {
        param->SetStateValue(1 - active, state);
        param->UpdateRealWorldFromState(1 - active);
    }
    // A drag in progress: only its end lets the stored value through to UpdateParamSelf.
    param->m_DragEnd = 0;
    param->SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);
    return DragParamSelf(id);
}

int cALGORITHM::FinishDragParam(std::uint64_t id) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    WCStAlgLocker lock(*this);
    param->m_DragEnd = 1;
    param->m_LastDraggedValue = -1.0;
    return eNoErr;
}

int cALGORITHM::ResetDragParam(std::uint64_t id) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    WCStAlgLocker lock(*this);
    param->m_DragEnd = 0;
    param->m_LastDraggedValue = -1.0;
    return eNoErr;
}

// ---- text -----------------------------------------------------------------------------------

BUFFER_HEADER *cALGORITHM::UpdateParamFromText(std::uint64_t id, char const *text,
                                               ETranslateTextRetType &ret) {
    return UpdateParamFromTextSelf(id, text, ret);
}

BUFFER_HEADER *cALGORITHM::UpdateParamFromTextSelf(std::uint64_t id, char const *text,
                                                   ETranslateTextRetType &ret) {
    double value = 0.0;
    ret = TranslateTextToState_Self(id, text, value);
    if (ret == eTranslateTextOK)
        return UpdateParamState(id, value, true);
    ret = TranslateTextToRealWorld(id, text, value);
    if (ret == eTranslateTextOK)
        return UpdateParamRequestRealWorld(id, value);
    return nullptr;
}

cALGORITHM::ETranslateTextRetType
cALGORITHM::TranslateTextToRealWorld(std::uint64_t id, char const *text, double &value) {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eTranslateTextBadParam;
    if (text == nullptr)
        return eTranslateTextNoNumber;
    char *end = nullptr;
    double number = std::strtod(text, &end);
    if (end == text || !std::isfinite(number))
        return eTranslateTextNoNumber;
    while (std::isspace(static_cast<unsigned char>(*end)))
        ++end;
    // "1.2k" and "1.2 kHz" are typed thousands; any other unit after the number is read past.
    if (*end == 'k' || *end == 'K')
        number *= 1000.0;
    if (param->IsFlagSet(eParamFlag_PositiveTextEntryToNegative) && number > 0.0)
        number = -number;
    (void)LimitRealWorld(id, number);
    if (!param->IsFlagSet(eParamFlag_AvoidValidation) && !ValidateRealWorld(id, number))
        return eTranslateTextRefused;
    value = number;
    return eTranslateTextOK;
}

bool cALGORITHM::ValidateRealWorld(std::uint64_t id, double value) {
    return id < m_Params.size() && std::isfinite(value);
}

int cALGORITHM::LimitRealWorld(std::uint64_t id, double &value) const {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    // The ends of the state axis give the range, whichever way the scale runs.
    const double first = param->StateToRealWorld(0.0);
    const double last = param->StateToRealWorld(WCParam_Base::kMaxState);
    value = std::clamp(value, std::min(first, last), std::max(first, last));
    return eNoErr;
}

// ---- update flags and display ---------------------------------------------------------------

int cALGORITHM::SetParamToUpdateFlag(std::uint64_t id, std::uint32_t value) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    param->SetUpdateFlags(value);
    return eNoErr;
}

void cALGORITHM::RefreshAllParams() {
    for (auto &param : m_Params)
        param.SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);
}

int cALGORITHM::UpdateDisplay(std::uint64_t id) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    if ((param->TakeUpdateFlags() & 2u) == 0)
        return eNoErr;
    if ((param->GetFlags().GetBits() & kKeepValueStringMask) == 0 &&
        !param->IsFlagSet(eParamFlag_NoDisplay))
        param->UpdateValueString(m_ActiveSetup);
    if (GetGUIPtr("Primary") == nullptr)
        return eNoErr;
    return param->UpdateControllers();
}

int cALGORITHM::UpdateControlsFromParams(EPluginSetup setup) {
    if (setup != eCurrentSetup && setup != eSetupA && setup != eSetupB)
        return eOutOfRangeNumber;
    if (m_GUIMap.empty())
        return eNoErr;
    int err = eNoErr;
    for (auto &param : m_Params) {
        const int code = param.UpdateControllers();
        if (err == eNoErr)
            err = code;
    }
    return err;
}

// ---- automation -----------------------------------------------------------------------------

int cALGORITHM::SetRealWorldAndUpdateAndNotifyAutomation(std::uint64_t id, double value,
                                                         int setup) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    if (!std::isfinite(value) || setup < -1 || setup > 1)
        return eOutOfRangeNumber;
    const int active = SetupSlot(m_ActiveSetup);
    const int which = setup == -1 ? active : setup;
    {
        WCStAlgLocker lock(*this);
        param->SetRealWorldValue(which, value);
        param->SetStateValue(which, std::clamp(param->RealWorldToState(value), 0.0,
                                               WCParam_Base::kMaxState));
        param->SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);
    }
    return which == active ? NotifyParamValue(id) : eNoErr;
}

int cALGORITHM::NotifyParamValue(std::uint64_t id) {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    // Hosts automate on the state axis, the same for every parameter, as the setup switch
    // tells them too.
    m_AutomationManager.NotifyParamValue(id, param->GetState(m_ActiveSetup));
    return eNoErr;
}

int cALGORITHM::NotifyAutomation(std::uint64_t id) {
    return NotifyParamValue(id);
}

int cALGORITHM::NotifyAutomationAllParams() {
    for (std::uint64_t id = 0; id < m_Params.size(); ++id)
        (void)NotifyParamValue(id);
    return eNoErr;
}

int cALGORITHM::Touch(std::uint64_t id) {
    return GetParam(id) != nullptr ? m_AutomationManager.Touch(id) : eOutOfRangeNumber;
}

int cALGORITHM::Release(std::uint64_t id) {
    return GetParam(id) != nullptr ? m_AutomationManager.Release(id) : eOutOfRangeNumber;
}

int cALGORITHM::SetControllerValue(std::int64_t index, double state) {
    int err = eOutOfRangeNumber;
    if (index < 0 || index > INT32_MAX)
        return err;
    BUFFER_HEADER *chain =
        m_AutomationManager.SetControllerValue(static_cast<int>(index), state, err);
    if (err != eNoErr)
        return err;
    return m_AutomationManager.ExecuteAndDisposeBuffer(chain);
}

// ---- whole-image sends ----------------------------------------------------------------------

BUFFER_HEADER *cALGORITHM::UpdateDSPCoefs(bool send) {
    if (!m_ProcessActive)
        return nullptr;
    BUFFER_HEADER *chain = nullptr;
    {
        WCStAlgLocker lock(*this);
        if (m_Bypass)
            SetBypassCoefsSelf();
        chain = PrepareCoefBufferWithBypass(0, static_cast<int>(GetCoefsNum()), true);
    }
    if (!send)
        return chain;
    SendAndFreeBuffers(chain, eExecSendBuffers, true);
    return nullptr;
}

double cALGORITHM::UpdateMouseDeltaStep(std::uint64_t id, double delta) const {
    sCONTROL_PARAM const *param = GetParam(id);
    return param == nullptr ? 0.0 : param->MouseDelta(delta);
}

MIREL_NAMESPACE_END
