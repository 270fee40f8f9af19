#include "Code/GUI/WCGUIControl.h"

#include <algorithm>
#include <cstring>

#include "Code/Algorithm/WUParamFlags.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WCAnimation.h"
#include "Code/GUI/WIControlOwner.h"
#include "files/WUFileSystemObjects.h"

MIREL_NAMESPACE_BEGIN

WCGUIControl::WCGUIControl(WIControlOwner *owner) : m_pOwner(owner) {
    SetMinMax(0, m_MaxSelection);
}

WCGUIControl::~WCGUIControl() {
    for (auto &entry : m_Animations)
        entry.first->SetListener(nullptr);
}

void WCGUIControl::CopyTo(WCGUIControl &other) const {
    CopyBaseTo(other);
    other.m_pOwner = m_pOwner;
    // Selectable
    other.m_ModeMask = m_ModeMask;
    other.m_Mode = m_Mode;
    other.m_Min = m_Min;
    other.m_Max = m_Max;
    other.CSelectable::m_Selection = CSelectable::m_Selection;
    other.m_KeepSelectedOnShift = m_KeepSelectedOnShift;
    other.m_SelectableFlags = m_SelectableFlags;
    // Drawable
    other.m_DrawableRect = m_DrawableRect;
    other.m_OriginalRect = m_OriginalRect;
    other.m_Parents = m_Parents;
    other.m_Hidden = m_Hidden;
    // Control
    other.m_Disabled = m_Disabled;
    other.m_HoverImage = m_HoverImage;
    other.m_MouseDirectionFactor = m_MouseDirectionFactor;
    other.m_MouseSensitivity = m_MouseSensitivity;
    other.m_Page = m_Page;
    other.m_MaxSelection = m_MaxSelection;
    other.m_ClassType = m_ClassType;
    other.m_FatherName = m_FatherName;
    other.m_pFather = m_pFather;
    other.m_DependentNames = m_DependentNames;
    other.m_Dependents = m_Dependents;
    other.m_DrawDependentNames = m_DrawDependentNames;
    other.m_DrawDependents = m_DrawDependents;
    other.m_Background.CopyImages(m_Background);
    other.m_Foreground.CopyImages(m_Foreground);
    other.m_SelectionImages.CopyImages(m_SelectionImages);
    other.m_AlphaSelection.Assign(m_AlphaSelection);
    other.m_ScaleMarksMask.Assign(m_ScaleMarksMask);
    other.m_Additional.CopyImages(m_Additional);
    other.m_Direction = m_Direction;
    other.m_AcceptableChars = m_AcceptableChars;
    other.m_GeneralRect1 = m_GeneralRect1;
    other.m_GeneralRect2 = m_GeneralRect2;
    other.m_MovementRect = m_MovementRect;
    other.m_DragDropImageResID = m_DragDropImageResID;
    other.m_DisableMode = m_DisableMode;
    other.m_HasColor = m_HasColor;
    other.m_Color = m_Color;
    other.m_ColorRects = m_ColorRects;
    other.m_Groups = m_Groups;
}

WCGUIControl *WCGUIControl::Clone() const {
    auto *copy = new WCGUIControl(m_pOwner);
    CopyTo(*copy);
    return copy;
}

// ---- life -----------------------------------------------------------------------------------

void WCGUIControl::ForgetControl(const WCGUIControl *other) {
    auto drop = [other](std::vector<WCGUIControl *> &list) {
        list.erase(std::remove(list.begin(), list.end(), other), list.end());
    };
    drop(m_Dependents);
    drop(m_DrawDependents);
    if (m_pFather == other)
        m_pFather = nullptr;
}

int WCGUIControl::FinishCreate() {
    auto resolve = [this](std::vector<WCFixedString<63>> &names, std::vector<WCGUIControl *> &out) {
        out.clear();
        if (m_pOwner == nullptr)
            return;
        for (const auto &name : names)
            if (WCGUIControl *control = m_pOwner->GetControlPtrByName(name.c_str());
                control != nullptr && control != this)
                out.push_back(control);
    };
    resolve(m_DependentNames, m_Dependents);
    if (m_pOwner != nullptr && m_pOwner->GetGUIFlag(WIControlOwner::eOwnerNoAlwaysDraw)) {
        resolve(m_DrawDependentNames, m_DrawDependents);
        m_DrawDependentNames.clear();
    }
    if (!m_FatherName.empty() && m_pOwner != nullptr)
        m_pFather = m_pOwner->GetControlPtrByName(m_FatherName.c_str());
    if (GetControlFlag(eCF_SetOppositeNextState))
        for (const auto &data : m_Registrations)
            if (data.IsActiveControllerParameterDiscrete() || IsCyclicControl())
                m_MouseDirectionFactor = -1.0;
    if (GetControlFlag(eCF_HasDynamicGUI_OnInit) &&
        FM::IsExistSpecificDiagnosticsFolder("FreezeDynamicGUI_Controls"))
        Hide();
    m_DependentNames.clear();
    SetSelection(0, true);
    const int err = FinishCreateSelf();
    RegisterWithAnimations();
    SetNeedToRedrawControl();
    // An animation's frames come from its timer, asked at every frame.
    if (HasAnimations())
        Watch();
    return err;
}

void WCGUIControl::RegisterWithAnimations() {
    m_Animations.clear();
    for (std::size_t i = 0; i < m_Registrations.size(); ++i) {
        if (!m_Registrations[i].HasBitmapWin())
            continue;
        for (WCBaseImage *image : m_Registrations[i].GetAnimatedImageList()) {
            auto *animation = static_cast<WCAnimation *>(image);
            animation->SetListener(this);
            m_Animations.emplace_back(animation, i);
        }
    }
    for (std::size_t level = 0; level < m_SelectionImages.GetImagesVectorSize(); ++level)
        if (auto *animation = dynamic_cast<WCAnimation *>(m_SelectionImages.GetImagePtr(level)))
            animation->SetListener(this);
}

int WCGUIControl::Release() {
    EndHover();
    int first = eNoErr;
    for (auto &data : m_Registrations) {
        if (data.GetRegisterFlag(eRegDisplayOnly) || !data.IsRegistered())
            continue;
        const int err = data.Release();
        if (first == eNoErr)
            first = err;
    }
    return first;
}

// ---- flags, disabling, showing --------------------------------------------------------------

void WCGUIControl::SetControlFlag(const char *name, bool on) {
    if (name == nullptr)
        return;
    if (std::strncmp(name, "NoMultipleSelection", 19) == 0) {
        SetSelectableFlag(eNoMultipleSelection, on);
        return;
    }
    if (std::strncmp(name, "AllowShiftMod", 16) == 0) {
        SetSelectableFlag(eAllowShiftMod, on);
        return;
    }
    WCBaseControl::SetControlFlag(name, on);
}

void WCGUIControl::SetControlFlag(unsigned int bit, bool on) {
    WCBaseControl::SetControlFlag(bit, on);
    if (bit != eCF_Hidden)
        return;
    if (on) {
        Hide();
        SetDisabled();
    } else {
        Show();
        ClearDisabled();
    }
}

bool WCGUIControl::ShouldDisableGUIControl(std::size_t index) const {
    if (m_pAlg == nullptr)
        return false;
    if (m_DisableMode == eDisableWhenAllDisabled) {
        if (m_Registrations.empty())
            return false;
        return std::all_of(m_Registrations.begin(), m_Registrations.end(),
                           [this](const auto &data) {
                               return data.IsRegistered() &&
                                      m_pAlg->GetParamDisabledMode(data.GetRegisteredParam());
                           });
    }
    if (index >= m_Registrations.size() || !m_Registrations[index].IsRegistered())
        return false;
    return m_pAlg->GetParamDisabledMode(m_Registrations[index].GetRegisteredParam());
}

void WCGUIControl::UpdateDisabledMode(std::size_t index) {
    if (GetControlFlag(eCF_IgnoreDisableMode))
        return;
    const bool disable = ShouldDisableGUIControl(index);
    if (disable == m_Disabled)
        return;
    if (disable) {
        if (GetSelection() == eSelectActive && m_pOwner != nullptr)
            m_pOwner->DeSelectControl(this);
        SetDisabled();
    } else {
        ClearDisabled();
    }
}

void WCGUIControl::SetDisabled() {
    m_Disabled = true;
    SetMinMax(0, 0);
    if (GetControlFlag(eCF_HideWhenDisabled) || GetControlFlag(eCF_Hidden))
        Hide();
}

void WCGUIControl::ClearDisabled() {
    m_Disabled = false;
    SetMinMax(0, m_MaxSelection);
    if (GetControlFlag(eCF_HideWhenDisabled) && !GetControlFlag(eCF_Hidden))
        Show();
}

void WCGUIControl::Hide() {
    if (m_Hidden)
        return;
    if (m_pOwner != nullptr)
        m_pOwner->SetNeedToRedrawGUI();
    CDrawable::Hide();
}

void WCGUIControl::Show() {
    if (!GetControlFlag(eCF_HideWhenDisabled) || !m_Disabled)
        CDrawable::Show();
}

// ---- parameter changes and redraw -----------------------------------------------------------

void WCGUIControl::UpdatePointer(std::size_t index) {
    if (index >= m_Registrations.size())
        return;
    if (!IsHidden() &&
        (m_pOwner == nullptr || !m_pOwner->GetGUIFlag(WIControlOwner::eOwnerNoImages)))
        UpdatePointerSelf(index);
    m_Registrations[index].UpdateValue();
    m_Registrations[index].UpdateLabel();
    SetNeedToRedrawControl();
}

void WCGUIControl::SetNeedToRedrawControl() {
    for (WCGUIControl *dependent : m_DrawDependents)
        dependent->SetNeedToRedrawControlOnly();
    SetNeedToRedrawControlOnly();
}

bool WCGUIControl::NeedToRedrawControl() {
    for (auto &[animation, index] : m_Animations)
        if (index < m_Registrations.size() &&
            m_Registrations[index].GetParamCurrentImage() == animation)
            animation->UpdateTimer();
    return m_RedrawCounter > 0;
}

// ---- geometry -------------------------------------------------------------------------------

void WCGUIControl::Move(int dx, int dy) {
    const auto sdx = static_cast<short>(dx);
    const auto sdy = static_cast<short>(dy);
    m_DrawableRect.Offset(sdx, sdy);
    for (WCBaseImageVector *images :
         {&m_Background, &m_Foreground, &m_SelectionImages, &m_Additional})
        for (std::size_t i = 0; i < images->GetImagesVectorSize(); ++i)
            if (WCBaseImage *image = images->GetImagePtr(i);
                image != nullptr && !image->GetBoundRect().IsReset())
                image->SetBoundRect(WURect<short>(image->GetBoundRect()).Offset(sdx, sdy));
    for (WCBaseImage *image : {&m_AlphaSelection, &m_ScaleMarksMask})
        if (!image->GetBoundRect().IsReset())
            image->SetBoundRect(WURect<short>(image->GetBoundRect()).Offset(sdx, sdy));
    for (auto &data : m_Registrations)
        data.OffsetBitmapWin(sdx, sdy);
}

void WCGUIControl::Resize(int width, int height) {
    if (width < 0 || height < 0)
        return;
    m_DrawableRect.SetTopLeftWidthHeight(m_DrawableRect.top, m_DrawableRect.left,
                                         static_cast<short>(width), static_cast<short>(height));
}

WURect<short> WCGUIControl::GetImageRect() const {
    WURect<short> united;
    bool any = false;
    for (const auto &data : m_Registrations) {
        const WURect<short> &rect = data.GetBitmapWinRect();
        if (rect.IsEmpty())
            continue;
        if (any)
            united.Union(rect);
        else
            united = rect;
        any = true;
    }
    return any ? united : m_DrawableRect;
}

WURect<short> WCGUIControl::GetValueRect() const {
    WURect<short> united;
    bool any = false;
    for (const auto &data : m_Registrations)
        for (const WCStaticText *win :
             {data.GetValueWin(), data.GetUnitsWin(), data.GetLabelWin()}) {
            if (win == nullptr || win->GetDrawableRect().IsEmpty())
                continue;
            WURect<short> rect = win->GetDrawableRect();
            rect.Offset(m_DrawableRect.left, m_DrawableRect.top);
            if (any)
                united.Union(rect);
            else
                united = rect;
            any = true;
        }
    return united;
}

WURect<short> WCGUIControl::GetCombinedRect() const {
    WURect<short> combined = m_DrawableRect;
    combined.Union(GetImageRect());
    if (const WURect<short> value = GetValueRect(); !value.IsEmpty())
        combined.Union(value);
    return combined;
}

WCPoint2D<short> WCGUIControl::CalcRelativeClickPoint(const WCPoint2D<short> &point) const {
    const WURect<short> &bound = m_AlphaSelection.GetBoundRect();
    const WCPoint2D<short> origin = bound.IsReset() ? m_DrawableRect.TopLeft() : bound.TopLeft();
    return WCPoint2D<short>(static_cast<short>(point.x - origin.x),
                            static_cast<short>(point.y - origin.y));
}

bool WCGUIControl::IsInside(const WCPoint2D<short> &point) const {
    bool inside = m_DrawableRect.PointInRect(point);
    if (inside && m_AlphaSelection.IsLoaded())
        inside = !m_AlphaSelection.IsPixelTransparent(CalcRelativeClickPoint(point));
    if (inside && GetControlFlag(eCF_JumpToScaleMarks) && m_ScaleMarksMask.IsLoaded())
        inside = !m_ScaleMarksMask.IsPixelTransparent(CalcRelativeClickPoint(point));
    if (inside || GetControlFlag(eCF_IgnoreMouseOnTextWin))
        return inside;
    for (const auto &data : m_Registrations) {
        for (const WCStaticText *win :
             {data.GetValueWin(), data.GetUnitsWin(), data.GetLabelWin()}) {
            if (win == nullptr)
                continue;
            WURect<short> rect = win->GetDrawableRect();
            rect.Offset(m_DrawableRect.left, m_DrawableRect.top);
            if (rect.PointInRect(point))
                return true;
        }
        if (data.GetBitmapWinRect().PointInRect(point))
            return true;
    }
    return false;
}

bool WCGUIControl::IsCyclicControl() const {
    return std::any_of(m_Registrations.begin(), m_Registrations.end(),
                       [](const auto &data) { return data.GetRegisterFlag(eRegCyclic); });
}

int WCGUIControl::WhichParamIndexCanEnterText() const {
    if (!GetControlFlag(eCF_ReciveTextEntery))
        return -1;
    for (std::size_t i = 0; i < m_Registrations.size(); ++i)
        if (m_Registrations[i].IsRegistered() && m_Registrations[i].GetValueWin() != nullptr)
            return static_cast<int>(i);
    return -1;
}

bool WCGUIControl::CanEnterText() const {
    return !m_Disabled && WhichParamIndexCanEnterText() >= 0;
}

int WCGUIControl::GetValueWinText(std::size_t index, WCFixedStringBase &out) const {
    if (index >= m_Registrations.size() || m_Registrations[index].GetValueWin() == nullptr)
        return eOutOfRangeNumber;
    out = m_Registrations[index].GetValueWin()->GetText().c_str();
    return eNoErr;
}

WCBaseImage *WCGUIControl::GetSelectionBitmap() const {
    const int level = m_Disabled ? eSelectDisabled : std::max(GetSelection(), m_Highlight ? 1 : 0);
    return m_SelectionImages.GetImagePtr(static_cast<std::size_t>(level));
}

MIREL_NAMESPACE_END
