#include "Code/GUI/WCParamRegistrationData.h"

#include <algorithm>
#include <cmath>

#include "Code/Algorithm/WUParamFlags.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WCAnimation.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace {

int SetupOf(const cALGORITHM &alg) {
    return alg.GetActiveSetup() == eSetupB ? 1 : 0;
}

const char *const kTextWinTypes[] = {"Value", "Units", "Label"};

} // namespace

WCParamRegistrationData::WCParamRegistrationData(cALGORITHM *alg, std::uint64_t id,
                                                 bool updateGraphics, const WCRegisterInfo &info)
    : m_pAlg(alg), m_UpdateGraphics(updateGraphics), m_Info(info) {
    SetRegisteredParam(id);
}

WCParamRegistrationData::WCParamRegistrationData(cALGORITHM *alg, const char *arrayName,
                                                 bool updateGraphics, const WCRegisterInfo &info)
    : m_pAlg(alg), m_UpdateGraphics(updateGraphics), m_Info(info), m_IsParamArray(true),
      m_ParamArrayName(arrayName != nullptr ? arrayName : "") {}

WCParamRegistrationData::~WCParamRegistrationData() = default;

WCParamRegistrationData WCParamRegistrationData::Clone() const {
    WCParamRegistrationData copy;
    copy.m_IgnoreLRB = m_IgnoreLRB;
    copy.m_ToUpperCase = m_ToUpperCase;
    copy.m_ParamName = m_ParamName;
    copy.m_pAlg = m_pAlg;
    copy.m_LastValue = m_LastValue;
    copy.m_DragStart = m_DragStart;
    copy.m_ParamID = m_ParamID;
    copy.m_IsRegistered = m_IsRegistered;
    copy.m_UpdateGraphics = m_UpdateGraphics;
    copy.m_Info = m_Info;
    copy.m_IsParamArray = m_IsParamArray;
    copy.m_ParamArrayName = m_ParamArrayName;
    copy.m_Role = m_Role;
    copy.m_BitmapWinRect = m_BitmapWinRect;
    copy.m_BitmapWinType = m_BitmapWinType;
    copy.m_ParamArraySkip = m_ParamArraySkip;
    copy.m_BitmapWin->CopyImages(*m_BitmapWin);
    copy.m_ValueWin = m_ValueWin ? m_ValueWin->Clone() : nullptr;
    copy.m_UnitsWin = m_UnitsWin ? m_UnitsWin->Clone() : nullptr;
    copy.m_LabelWin = m_LabelWin ? m_LabelWin->Clone() : nullptr;
    copy.m_pExtension = m_pExtension;
    copy.m_LinkGroups = m_LinkGroups;
    copy.m_GraphWinRect = m_GraphWinRect;
    copy.m_HasGraphWin = m_HasGraphWin;
    for (const auto &element : m_RegisterElements)
        copy.m_RegisterElements.push_back(std::make_unique<XML::CXMLElement>(*element));
    if (m_LinkGroupsElement)
        copy.m_LinkGroupsElement = std::make_unique<XML::CXMLElement>(*m_LinkGroupsElement);
    return copy;
}

// ---- XML ------------------------------------------------------------------------------------

WTErr WCParamRegistrationData::ReadFromXMLForGUI(const XML::CXMLElement &param,
                                                 WTResContainerType *container,
                                                 const WURect<short> &) {
    for (const XML::CXMLElement *child : param.GetSubElements()) {
        const auto &name = child->GetName();
        WTErr err = eNoErr;
        if (name == "RegisterType") {
            if (child->GetText() == "FixedState") {
                m_Info.m_HasFixedState = true;
                float state = 0.0f;
                if (child->GetAttrib("State", state))
                    m_Info.m_FixedState = WUStod(child->GetAttribString("State").c_str());
            } else {
                m_Info.AddRegisterTypeName(child->GetText().c_str());
            }
        } else if (name == "Register") {
            const auto type = child->GetAttribString("Type");
            const unsigned int bit = type == "Drag"              ? eRegDrag
                                     : type == "Drop"            ? eRegDrop
                                     : type == "FileDragAndDrop" ? eRegFileDragAndDrop
                                                                 : 0u;
            if (bit != 0u) {
                m_Info.m_Types.SetBit(bit);
                int group = -1;
                if (const XML::CXMLElement *g = child->SubElement("Group");
                    g != nullptr && GUIXML::ReadIntText(*g, group))
                    m_Info.m_DragDrop.m_GroupNumber = group;
                m_RegisterElements.push_back(std::make_unique<XML::CXMLElement>(*child));
            }
        } else if (name == "Modifiers") {
            m_Info.AddModifierName(child->GetText().c_str());
        } else if (name == "Role") {
            m_Role = child->GetText().c_str();
        } else if (name == "TextWin") {
            const auto type = child->GetAttribString("Type");
            auto win = std::make_unique<WCStaticText>();
            err = win->ReadFromXML(child);
            if (err == eNoErr) {
                if (type == "Value")
                    m_ValueWin = std::move(win);
                else if (type == "Units")
                    m_UnitsWin = std::move(win);
                else if (type == "Label")
                    m_LabelWin = std::move(win);
            }
        } else if (name == "ParamDependantGraphWin") {
            WURect<short> rect;
            const XML::CXMLElement *r = child->SubElement("PositionRect");
            err = GUIXML::ReadRect(r != nullptr ? *r : *child, rect);
            if (err == eNoErr) {
                m_GraphWinRect = rect;
                m_HasGraphWin = true;
            }
        } else if (name == "BitmapWin") {
            WURect<short> rect = m_BitmapWinRect;
            int skip = m_ParamArraySkip;
            if (const XML::CXMLElement *r = child->SubElement("PositionRect"))
                err = GUIXML::ReadRect(*r, rect);
            if (err == eNoErr && child->AttribExists("ParamArraySkip"))
                err = WUAtoi(child->GetAttribString("ParamArraySkip").c_str(), skip);
            auto images = std::make_unique<WCBaseImageVector>();
            if (err == eNoErr)
                if (const XML::CXMLElement *list = child->SubElement("ImageList"))
                    err = images->ReadFromXML(list);
            if (err == eNoErr) {
                m_BitmapWinRect = rect;
                m_ParamArraySkip = skip;
                child->GetAttrib("Type", m_BitmapWinType);
                m_BitmapWin = std::move(images);
                // A missing or broken picture leaves the window without it; drawing skips it.
                if (container != nullptr)
                    m_BitmapWin->LoadAll(container);
            }
        } else if (name == "LinkGroups") {
            m_LinkGroups.clear();
            for (const XML::CXMLElement *group : child->GetSubElements()) {
                int number = 0;
                if (group->GetName() == "Group" && GUIXML::ReadIntText(*group, number))
                    m_LinkGroups.push_back(number);
            }
            m_LinkGroupsElement = std::make_unique<XML::CXMLElement>(*child);
        }
        if (err != eNoErr)
            return err;
    }
    return eNoErr;
}

void WCParamRegistrationData::WriteToXML(XML::CXMLElement &param) const {
    for (const char *name : m_Info.GetRegisterTypeNames())
        param.push_back(new XML::CXMLElement("RegisterType", name));
    if (m_Info.m_HasFixedState) {
        auto *fixed = new XML::CXMLElement("RegisterType", "FixedState");
        fixed->AddAttrib("State", static_cast<float>(m_Info.m_FixedState));
        param.push_back(fixed);
    }
    for (const auto &element : m_RegisterElements)
        param.push_back(new XML::CXMLElement(*element));
    for (int i = 0; i < eNumModifiers; ++i)
        if (m_Info.m_Modifiers[i] && WCRegisterInfo::ModifierName(i) != nullptr)
            param.push_back(new XML::CXMLElement("Modifiers", WCRegisterInfo::ModifierName(i)));
    if (!m_Role.empty())
        param.push_back(new XML::CXMLElement("Role", m_Role.c_str()));
    const WCStaticText *wins[] = {m_ValueWin.get(), m_UnitsWin.get(), m_LabelWin.get()};
    for (int i = 0; i < 3; ++i) {
        if (wins[i] == nullptr)
            continue;
        auto *win = new XML::CXMLElement("TextWin");
        win->AddAttrib("Type", kTextWinTypes[i]);
        param.push_back(wins[i]->WriteToXML(win));
    }
    if (m_HasGraphWin)
        param.push_back(GUIXML::WriteRect("ParamDependantGraphWin", m_GraphWinRect));
    if (HasBitmapWin()) {
        auto *win = new XML::CXMLElement("BitmapWin");
        if (!m_BitmapWinType.empty())
            win->AddAttrib("Type", m_BitmapWinType.c_str());
        if (m_ParamArraySkip != 0)
            win->AddAttrib("ParamArraySkip", m_ParamArraySkip);
        win->push_back(GUIXML::WriteRect("PositionRect", m_BitmapWinRect));
        if (!m_BitmapWin->Empty())
            win->push_back(m_BitmapWin->WriteToXML(new XML::CXMLElement("ImageList")));
        param.push_back(win);
    }
    if (m_LinkGroupsElement)
        param.push_back(new XML::CXMLElement(*m_LinkGroupsElement));
}

// ---- registration ---------------------------------------------------------------------------

sCONTROL_PARAM *WCParamRegistrationData::Param() const {
    return m_pAlg != nullptr && m_IsRegistered ? m_pAlg->GetParam(m_ParamID) : nullptr;
}

void WCParamRegistrationData::SetRegisteredParam(std::uint64_t id) {
    m_ParamID = id;
    m_IsRegistered = m_pAlg != nullptr && m_pAlg->GetParam(id) != nullptr;
}

const char *WCParamRegistrationData::GetRegisteredParamName() const {
    if (const sCONTROL_PARAM *param = Param())
        return param->m_Name.c_str();
    return m_IsParamArray ? m_ParamArrayName.c_str() : "";
}

void WCParamRegistrationData::RemoveParamArrayRegData() noexcept {
    m_IsParamArray = false;
    m_ParamArrayName.clear();
}

bool WCParamRegistrationData::IsRegisteredToType(unsigned int type,
                                                 const bool *modifiers) const noexcept {
    if (!m_Info.m_Types.IsBitSet(type))
        return false;
    return modifiers == nullptr || m_Info.CompareParamModifiers(modifiers);
}

bool WCParamRegistrationData::IsRegisteredToTypes(std::uint64_t bits) const noexcept {
    return m_Info.CompareRegisterTypes(WCRegisterInfo::WTBits(bits));
}

bool WCParamRegistrationData::GetRegisterModifier(int modifier) const noexcept {
    return modifier >= 0 && modifier < eNumModifiers && m_Info.m_Modifiers[modifier];
}

void WCParamRegistrationData::SetRegisterModifier(int modifier, bool on) noexcept {
    if (modifier >= 0 && modifier < eNumModifiers)
        m_Info.m_Modifiers[modifier] = on;
}

bool WCParamRegistrationData::IsUnused() const {
    const sCONTROL_PARAM *param = Param();
    return param == nullptr || param->IsFlagSet(eParamFlag_Unused);
}

// ---- values ---------------------------------------------------------------------------------

double WCParamRegistrationData::GetValue() const {
    const sCONTROL_PARAM *param = Param();
    return param != nullptr ? param->GetState(SetupOf(*m_pAlg)) : 0.0;
}

WCParamRegistrationData::BUFFER_HEADER *
WCParamRegistrationData::SetParamValue(double state, unsigned int type, const bool *modifiers) {
    if (Param() == nullptr || !IsRegisteredToType(type, modifiers))
        return nullptr;
    m_LastValue = std::clamp(state, 0.0, 1000.0);
    return m_pAlg->UpdateParamRequestState(m_ParamID, m_LastValue);
}

WCParamRegistrationData::BUFFER_HEADER *
WCParamRegistrationData::OffsetParamValue(double delta, unsigned int type, const bool *modifiers,
                                          bool drag) {
    const sCONTROL_PARAM *param = Param();
    if (param == nullptr || !IsRegisteredToType(type, modifiers) || !std::isfinite(delta) ||
        delta == 0.0)
        return nullptr;
    double state = param->GetState(SetupOf(*m_pAlg)) + delta;
    const bool cyclic = param->IsDiscrete() ? !param->IsFlagSet(eParamFlag_NotCyclic)
                                            : param->IsFlagSet(eParamFlag_CyclicContinuous);
    if (cyclic && param->IsDiscrete()) {
        // A discrete parameter steps past its last state to its first and back.
        if (state > 1000.0 + 1e-9)
            state = 0.0;
        else if (state < -1e-9)
            state = 1000.0;
    } else if (cyclic) {
        state = std::fmod(state, 1000.0);
        if (state < 0.0)
            state += 1000.0;
    }
    state = std::clamp(state, 0.0, 1000.0);
    m_LastValue = state;
    if (drag)
        return m_pAlg->DragParam(m_ParamID, state);
    return m_pAlg->UpdateParamRequestState(m_ParamID, state);
}

WCParamRegistrationData::BUFFER_HEADER *
WCParamRegistrationData::OffsetToNextDifferentState(int direction, unsigned int type,
                                                    const bool *modifiers) {
    const double step = GetActiveControllerParameterStateStep();
    return OffsetParamValue((direction < 0 ? -1.0 : 1.0) * (step > 0.0 ? step : 1.0), type,
                            modifiers);
}

bool WCParamRegistrationData::DoesNewStateChangeRealWorld(double delta) const {
    const sCONTROL_PARAM *param = Param();
    if (param == nullptr || !std::isfinite(delta))
        return false;
    const double now = param->GetState(SetupOf(*m_pAlg));
    double before = now;
    double after = std::clamp(now + delta, 0.0, 1000.0);
    m_pAlg->StateToRealWorld(m_ParamID, before);
    m_pAlg->StateToRealWorld(m_ParamID, after);
    return before != after;
}

WCParamRegistrationData::BUFFER_HEADER *
WCParamRegistrationData::OffsetParamValueToNextDifferentValue(double delta, unsigned int type,
                                                              const bool *modifiers) {
    if (Param() == nullptr || !std::isfinite(delta) || delta == 0.0)
        return nullptr;
    // Past 1000 states every parameter has reached its end of the scale; the count bounds a
    // delta too small to get there.
    double grown = delta;
    for (int steps = 2; steps <= 1000 && std::fabs(grown) < 1000.0 &&
                        !DoesNewStateChangeRealWorld(grown);
         ++steps)
        grown = delta * steps;
    return OffsetParamValue(grown, type, modifiers);
}

double WCParamRegistrationData::UpdateMouseDeltaStep(double delta) const {
    return Param() != nullptr ? m_pAlg->UpdateMouseDeltaStep(m_ParamID, delta) : 0.0;
}

double WCParamRegistrationData::RealWorldToState(double value) const {
    if (Param() != nullptr)
        m_pAlg->RealWorldToState(m_ParamID, value);
    else
        value = 0.0;
    return value;
}

double WCParamRegistrationData::StateToRealWorld(double state) const {
    if (Param() != nullptr)
        m_pAlg->StateToRealWorld(m_ParamID, state);
    else
        state = 0.0;
    return state;
}

int WCParamRegistrationData::GetNumStates() const {
    const sCONTROL_PARAM *param = Param();
    return param != nullptr ? param->GetNumStates() : 0;
}

double WCParamRegistrationData::GetActiveControllerParameterStateStep() const {
    const sCONTROL_PARAM *param = Param();
    if (param == nullptr)
        return 0.0;
    if (param->GetStateStep() > 0.0)
        return param->GetStateStep();
    // A continuous parameter steps by its resolution, measured in states where its value
    // stands (the scale may be curved): one state at least, and never more than ten, so a
    // coarse resolution on a narrow range still moves by small steps.
    const int setup = SetupOf(*m_pAlg);
    const double state = param->GetState(setup);
    const double resolution = param->GetScaleResolution();
    double step = 0.0;
    for (const double direction : {1.0, -1.0}) {
        double next = param->GetRealWorld(setup) + direction * resolution;
        if (step <= 0.0 && m_pAlg->RealWorldToState(m_ParamID, next) == eNoErr)
            step = std::fabs(next - state);
    }
    return std::isfinite(step) && step >= 1.0 ? std::min(step, 10.0) : 1.0;
}

bool WCParamRegistrationData::IsActiveControllerParameterDiscrete() const {
    const sCONTROL_PARAM *param = Param();
    return param != nullptr && param->IsDiscrete();
}

bool WCParamRegistrationData::IsOptionReset(const bool *modifiers) const noexcept {
    return IsRegisteredToType(eRegOptionReset, modifiers);
}

WCParamRegistrationData::BUFFER_HEADER *WCParamRegistrationData::Reset(const bool *modifiers) {
    if (Param() == nullptr || !(IsRegisteredToType(eRegReset, nullptr) || IsOptionReset(modifiers)))
        return nullptr;
    return m_pAlg->UpdateParamRequestRealWorld(m_ParamID, Param()->GetResetValue());
}

bool WCParamRegistrationData::ShouldSendTouch(const bool *modifiers) const noexcept {
    // The gestures that move a value: every bit but the marks and the display-only kinds.
    static constexpr unsigned int kGestures[] = {eRegMouseDown,
                                                 eRegMouseUp,
                                                 eRegMouseVertical,
                                                 eRegMouseHorizontal,
                                                 eRegMouseWheelVertical,
                                                 eRegMouseWheelHorizontal,
                                                 eRegMouseDrawVertical,
                                                 eRegMouseDrawHorizontal,
                                                 eRegAbsMouseDownVertical,
                                                 eRegAbsMouseDownHorizontal,
                                                 eRegAbsMouseUpVertical,
                                                 eRegAbsMouseUpHorizontal,
                                                 eRegAbsMouseMoveVertical,
                                                 eRegAbsMouseMoveHorizontal,
                                                 eRegTouchPinchVertical,
                                                 eRegTouchPinchHorizontal};
    for (unsigned int type : kGestures)
        if (IsRegisteredToType(type, modifiers))
            return true;
    return false;
}

int WCParamRegistrationData::FinishDragParam() {
    return Param() != nullptr ? m_pAlg->FinishDragParam(m_ParamID) : eOutOfRangeNumber;
}

int WCParamRegistrationData::ResetDragParam() {
    return Param() != nullptr ? m_pAlg->ResetDragParam(m_ParamID) : eOutOfRangeNumber;
}

int WCParamRegistrationData::SetParamToUpdateFlag(std::uint32_t value) {
    return Param() != nullptr ? m_pAlg->SetParamToUpdateFlag(m_ParamID, value) : eOutOfRangeNumber;
}

int WCParamRegistrationData::Touch() {
    return Param() != nullptr ? m_pAlg->Touch(m_ParamID) : eOutOfRangeNumber;
}

int WCParamRegistrationData::Release() {
    return Param() != nullptr ? m_pAlg->Release(m_ParamID) : eOutOfRangeNumber;
}

// ---- display --------------------------------------------------------------------------------

void WCParamRegistrationData::UpdateValue() {
    if (const sCONTROL_PARAM *param = Param(); param != nullptr && m_ValueWin)
        m_ValueWin->SetText(param->GetValueString().c_str());
}

void WCParamRegistrationData::UpdateLabel() {
    if (const sCONTROL_PARAM *param = Param(); param != nullptr && m_LabelWin)
        m_LabelWin->SetText(param->GetLabel().c_str());
}

void WCParamRegistrationData::UpdateUnits() {
    if (const sCONTROL_PARAM *param = Param(); param != nullptr && m_UnitsWin)
        m_UnitsWin->SetText(param->GetUnits().c_str());
}

WCBaseImage *WCParamRegistrationData::GetParamCurrentImage() const {
    const std::size_t frames = m_BitmapWin->GetImagesVectorSize();
    if (frames == 0)
        return nullptr;
    const double state = std::clamp(GetValue(), 0.0, 1000.0);
    const auto index = static_cast<std::size_t>(
        std::floor(state * static_cast<double>(frames - 1) / 1000.0 + 0.5));
    return m_BitmapWin->GetImagePtr(std::min(index, frames - 1));
}

short WCParamRegistrationData::GetParamCurrentImageResID() const {
    const WCBaseImage *image = GetParamCurrentImage();
    return image != nullptr ? image->GetResID() : WCBaseImage::kNoResID;
}

std::vector<WCBaseImage *> WCParamRegistrationData::GetAnimatedImageList() const {
    std::vector<WCBaseImage *> animations;
    for (std::size_t i = 0; i < m_BitmapWin->GetImagesVectorSize(); ++i)
        if (auto *animation = dynamic_cast<WCAnimation *>(m_BitmapWin->GetImagePtr(i)))
            animations.push_back(animation);
    return animations;
}

void WCParamRegistrationData::OffsetBitmapWin(short dx, short dy) {
    if (!m_BitmapWinRect.IsReset())
        m_BitmapWinRect.Offset(dx, dy);
    for (std::size_t i = 0; i < m_BitmapWin->GetImagesVectorSize(); ++i)
        if (WCBaseImage *image = m_BitmapWin->GetImagePtr(i);
            image != nullptr && !image->GetBoundRect().IsReset())
            image->SetBoundRect(WURect<short>(image->GetBoundRect()).Offset(dx, dy));
}

void WCParamRegistrationData::RemoveDrawAttributes() {
    m_ValueWin.reset();
    m_UnitsWin.reset();
    m_LabelWin.reset();
    m_BitmapWin = std::make_unique<WCBaseImageVector>();
    m_BitmapWinRect.Reset();
}

MIREL_NAMESPACE_END
