#include "Code/GUI/CStandardGUI_X.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/GuiSizes.h"
#include "Code/GUI/WCBaseImageVector.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WCHtmlManager.h"
#include "Code/GUI/X_CToolbarButton.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/WUAssert.h"
#include "resources/GetAndFilterXMLResource.h"
#include "resources/ResourceManager.h"
#include "view/PluginViewManager.h"

MIREL_NAMESPACE_BEGIN

CStandardGUI_X::CStandardGUI_X(WTResContainerType *&container, char const *pluginName)
    : m_PluginName(pluginName != nullptr ? pluginName : ""), m_Skins(this) {
    SetContainerRef(container);
}

CStandardGUI_X::~CStandardGUI_X() {
    Dispose();
}

// ---- life -----------------------------------------------------------------------------------

int CStandardGUI_X::InitGui(cALGORITHM *alg, WCResKey &key) {
    MIREL_ASSERT_RETURN(alg != nullptr, eMemNullPointer);
    m_pAlg = alg;
    m_ComponentInfo = alg->GetComponentInfo();
    m_GUIKey = key;
    PublishKeys();

    if (GetContainer() == nullptr)
        return eRMContainerNotFound;
    if (!RM::DoesResourceExist(GetContainer(), key))
        return eRMResNotFound;
    WTResourceType *resource = nullptr;
    void *data = nullptr;
    if (const int err = RM::GetAndFilterXMLResourceByComponentInfoAfterResolvingTemplates(
            *this, key, m_ComponentInfo, resource, data);
        err != eNoErr)
        return err;
    m_pHtmlManager = std::make_unique<WCHtmlManager>(alg, this);
    // A part that does not read is dropped; the document stays usable, so the read's own code
    // does not stop the GUI.
    ReadFromXML(static_cast<const XML::CXMLElement *>(data), m_Reader);

    if (alg->GetPluginValue_bool("GUI_resize_supported", false)) {
        WCFixedString<255> scalingKey(m_PluginName.c_str());
        scalingKey << kScalingKeySuffix;
        alg->SetPluginValue_double_ptr(scalingKey.c_str(), &m_ScalingFactor);
        m_ScalingPublished = true;
        SetGuiScalingFactor(GuiSizes::ReadGuiSizeFromPrefs(alg->GetAlgType()));
    }
    for (WCGUIControl *control : m_ReadingOrder)
        m_Skins.addControl(control);

    InitGuiBeforeOrder();
    if (m_HasTabHoriz)
        PrepareTabOrder();
    PrepareControlOrder();
    InitGuiAfterOrder();
    InitGuiLast();

    m_Alive = true;
    return m_Skins.InitSkins(key, m_ComponentInfo, m_DrawableRect, m_ReadingOrder);
}

int CStandardGUI_X::InitGuiWithoutImages(cALGORITHM *alg, WCResKey &key) {
    SetGUIFlag(eNoImages, true);
    return InitGui(alg, key);
}

int CStandardGUI_X::FinishCreate() {
    if (m_Finished || m_Disposed)
        return eNoErr;
    int first = eNoErr;
    if (!GetGUIFlag(eNoImages))
        for (WCGUIControl *control : m_Controls)
            if (const int err = control->FinishCreate(); err != eNoErr && first == eNoErr)
                first = err;
    if (GetGUIFlag(eFollowChainerScaling) && m_pAlg != nullptr)
        m_pAlg->SetPluginValue_bool("GUI_scaling_should_follow_chainer", true);
    BuildTabGroups();
    RelinkSelection();
    BuildDragDrop_DroppableMap();
    if (m_pAlg != nullptr) {
        m_pAlg->Broadcaster()->insert(this);
        const EPluginSetup setup = m_pAlg->GetActiveSetup();
        WCFixedString<255> title;
        if (m_pAlg->GetSetupName(setup, title) == eNoErr)
            SetupTitleChanged(setup, title);
        UpdateSkin(m_pAlg->GetDefaultSkin().c_str());
        m_pAlg->AdjustLinkGroupsToCurrentGuiControls();
    }
    m_Finished = true;
    FinishCreateSelf();
    SetNeedToRedrawGUI();
    return first;
}

void CStandardGUI_X::Dispose() {
    if (m_Disposed)
        return;
    m_Disposed = true;
    DeactivateWindow();
    // An open text box calls back into this document: it goes first, its text unused.
    if (m_TextBoxOpen)
        PluginViewManager::QuitTextBox();
    EndGesture();
    if (m_pAlg != nullptr)
        m_pAlg->Broadcaster()->remove(this);
    DeleteOwned();
    m_Alive = false;
    DisposeSelf();
    DisposeLast();
    UnpublishKeys();
    ReleaseAllLoadedResources();
    m_pHtmlManager.reset();
}

void CStandardGUI_X::RelinkSelection() {
    std::vector<CSelectable *> selectables(m_Controls.begin(), m_Controls.end());
    BuildSelectableList(selectables);
    // The document's own levels span its controls': a click with nothing under it takes the
    // top one, and the first control it selects the one below.
    int min = 0, max = 0;
    GetListMinMax(min, max);
    SetMinMax(0, std::max(max, static_cast<int>(eSelectActive)));
    if (CurrMaxSelected() == 0)
        SetSelection(m_Max, false);
    // The tab lists, when the XML gives them, decide the neighbours over the list order.
    LinkTabRing(m_TabHoriz, false, true);
    LinkTabRing(m_TabVert, true, true);
}

void CStandardGUI_X::ForgetInInput(const WCGUIControl *control) {
    auto gone = [control](const WCGUIControl *c) { return control == nullptr || c == control; };
    std::erase_if(m_SelectedList, gone);
    if (m_pActiveControl != nullptr && gone(m_pActiveControl))
        m_pActiveControl = nullptr;
    if (m_pHoverControl != nullptr && gone(m_pHoverControl))
        m_pHoverControl = nullptr;
    for (auto &[group, controls] : m_Droppable)
        std::erase_if(controls, gone);
    for (auto &[id, touch] : m_Touches)
        std::erase_if(touch.m_Controls, gone);
    std::erase_if(m_Watched, gone);
}

void CStandardGUI_X::DeleteOwned() {
    // The selection list, the drawing cache and the groups point at the controls: they go first.
    BuildSelectableList({});
    ClearMinimumDrawInstructionsCache();
    ForgetInInput(nullptr);
    m_pActiveToolbarButton = nullptr;
    m_Hovering.clear();
    m_pTopmost = nullptr;
    m_TabHoriz.clear();
    m_TabVert.clear();
    m_TabGroups.clear();
    m_Groups.clear();
    for (WCGUIControl *control : m_Templates)
        delete control;
    m_Templates.clear();
    for (WCGUIControl *control : m_ReadingOrder)
        delete control;
    m_ReadingOrder.clear();
    m_Controls.clear();
    ClearBasePicts();
    for (X_CToolbarButton *button : m_Toolbar)
        delete button;
    m_Toolbar.clear();
}

void CStandardGUI_X::PublishKeys() {
    if (m_pAlg == nullptr || m_Disposed)
        return;
    WCFixedString<255> key(m_PluginName.c_str());
    key << kRedrawKeySuffix;
    m_pAlg->SetPluginValue_uint32_t_ptr(key.c_str(), &m_RedrawCounter);
    m_KeysPublished = true;
    if (m_ScalingPublished) {
        WCFixedString<255> scalingKey(m_PluginName.c_str());
        scalingKey << kScalingKeySuffix;
        m_pAlg->SetPluginValue_double_ptr(scalingKey.c_str(), &m_ScalingFactor);
    }
}

// The keys point into this document: when it goes they keep their last values instead.
void CStandardGUI_X::UnpublishKeys() {
    if (m_pAlg == nullptr)
        return;
    if (m_KeysPublished) {
        WCFixedString<255> key(m_PluginName.c_str());
        key << kRedrawKeySuffix;
        m_pAlg->SetPluginValue_uint32_t(key.c_str(), m_RedrawCounter);
        m_KeysPublished = false;
    }
    if (m_ScalingPublished) {
        WCFixedString<255> key(m_PluginName.c_str());
        key << kScalingKeySuffix;
        m_pAlg->SetPluginValue_double(key.c_str(), m_ScalingFactor);
        m_ScalingPublished = false;
    }
}

// ---- factories ------------------------------------------------------------------------------

WCGUIControl *CStandardGUI_X::CreateSpecificControls(WCFixedStringBase const &) {
    return nullptr;
}

X_CToolbarButton *CStandardGUI_X::CreateCustomToolbarControls(WCFixedStringBase const &) {
    return nullptr;
}

// ---- controls -------------------------------------------------------------------------------

WCGUIControl *CStandardGUI_X::GetControlPtrByName(const char *name) {
    const auto found = GetControlIterByName(name);
    return found == m_Controls.end() ? nullptr : *found;
}

std::vector<WCGUIControl *>::const_iterator
CStandardGUI_X::GetControlIterByName(const char *name) const {
    if (name == nullptr)
        return m_Controls.end();
    return std::find_if(m_Controls.begin(), m_Controls.end(), [name](const WCGUIControl *control) {
        return std::strcmp(control->GetName().c_str(), name) == 0;
    });
}

WCGUIControl *CStandardGUI_X::GetControlPtrByIndex(std::int64_t index) const {
    if (index < 0 || static_cast<std::uint64_t>(index) >= m_Controls.size())
        return nullptr;
    return m_Controls[static_cast<std::size_t>(index)];
}

int CStandardGUI_X::GetControlIndexByName(const char *name) const {
    const auto found = GetControlIterByName(name);
    return found == m_Controls.end() ? -1 : static_cast<int>(found - m_Controls.begin());
}

WCGUIControl *CStandardGUI_X::GetTemplateControlPtrByName(const char *name) const {
    if (name == nullptr)
        return nullptr;
    const auto found =
        std::find_if(m_Templates.begin(), m_Templates.end(), [name](const WCGUIControl *control) {
            return std::strcmp(control->GetName().c_str(), name) == 0;
        });
    return found == m_Templates.end() ? nullptr : *found;
}

X_CToolbarButton *CStandardGUI_X::GetToolBarControl(std::size_t index) const {
    return index < m_Toolbar.size() ? m_Toolbar[index] : nullptr;
}

int CStandardGUI_X::GetControlNameOfLength(std::int64_t index, std::size_t length,
                                           WCFixedStringBase &out) const {
    const WCGUIControl *control = GetControlPtrByIndex(index);
    if (control == nullptr)
        return eControlOutOfRange;
    const std::string_view name(control->GetName().c_str());
    out = std::string(name.substr(0, length)).c_str();
    return eNoErr;
}

int CStandardGUI_X::InsideWhichControl(const WCPoint2D<short> &point) const {
    for (std::size_t i = m_Controls.size(); i-- > 0;) {
        const WCGUIControl *control = m_Controls[i];
        if (control->ToDraw() && control->IsInside(point))
            return static_cast<int>(i);
    }
    return -1;
}

X_CToolbarButton *CStandardGUI_X::InsideWhichToolbarControl(const WCPoint2D<short> &point) const {
    for (auto it = m_Toolbar.rbegin(); it != m_Toolbar.rend(); ++it)
        if ((*it)->ToDraw() && (*it)->IsInside(point))
            return *it;
    return nullptr;
}

int CStandardGUI_X::GetControlNameByLocation(const WCPoint2D<short> &point,
                                             WCFixedStringBase &out) const {
    const int index = InsideWhichControl(point);
    if (index < 0)
        return kErrGUIObjectNotFound;
    out = m_Controls[static_cast<std::size_t>(index)]->GetName().c_str();
    return eNoErr;
}

int CStandardGUI_X::AddNewControl(WCGUIControl *control, bool finish) {
    MIREL_ASSERT_RETURN(control != nullptr, eMemNullPointer);
    m_Controls.push_back(control);
    m_ReadingOrder.push_back(control);
    m_Skins.addControl(control);
    if (m_Finished)
        RelinkSelection();
    SetNeedToRedrawGUI();
    return finish ? control->FinishCreate() : eNoErr;
}

int CStandardGUI_X::DeleteControl(WCGUIControl *control) {
    const auto owned = std::find(m_ReadingOrder.begin(), m_ReadingOrder.end(), control);
    if (control == nullptr || owned == m_ReadingOrder.end())
        return kErrGUIObjectNotFound;
    m_ReadingOrder.erase(owned);
    ClearMinimumDrawInstructionsCache();
    ForgetInInput(control);
    m_Hovering.clear();
    m_pTopmost = nullptr;
    m_Controls.erase(std::remove(m_Controls.begin(), m_Controls.end(), control), m_Controls.end());
    m_Skins.RemoveControl(control);
    for (auto &[name, group] : m_Groups)
        group->RemoveControl(control);
    auto unlink = [control](std::vector<WSTabEntry> &list) {
        for (WSTabEntry &entry : list)
            if (entry.m_pControl == control)
                entry.m_pControl = nullptr;
    };
    unlink(m_TabHoriz);
    unlink(m_TabVert);
    for (auto &[name, list] : m_TabGroups)
        unlink(list);
    // Neighbours, dependents and fathers of the others may point at it: they let go of it.
    RelinkSelection();
    for (WCGUIControl *other : m_ReadingOrder)
        other->ForgetControl(control);
    for (WCGUIControl *other : m_Templates)
        other->ForgetControl(control);
    delete control;
    SetNeedToRedrawGUI();
    return eNoErr;
}

void CStandardGUI_X::DoOnAllControls(const std::function<void(WCGUIControl &)> &action) const {
    for (WCGUIControl *control : m_Controls)
        action(*control);
}

void CStandardGUI_X::DoOnSomeControls(const std::function<bool(const WCGUIControl &)> &which,
                                      const std::function<void(WCGUIControl &)> &action) const {
    for (WCGUIControl *control : m_Controls)
        if (which(*control))
            action(*control);
}

void CStandardGUI_X::DoOnSomeControlsByLeadParam(
    std::uint64_t id, const std::function<void(WCGUIControl &)> &action) const {
    DoOnSomeControls(
        [id](const WCGUIControl &control) {
            return control.GetNumRegistrations() > 0 && control.GetLeadParamID() == id;
        },
        action);
}

void CStandardGUI_X::DoOnSomeControlRegistrations(
    std::uint64_t id, const std::function<void(WCGUIControl &, std::size_t)> &action) const {
    for (WCGUIControl *control : m_Controls)
        for (std::size_t i = 0; i < control->GetNumRegistrations(); ++i)
            if (control->GetRegistration(i).GetRegisteredParam() == id)
                action(*control, i);
}

void CStandardGUI_X::DoOnControlRegistrationsByControlName(
    const char *name, const std::function<void(WCGUIControl &, std::size_t)> &action) const {
    for (WCGUIControl *control : m_Controls)
        if (name != nullptr && std::strcmp(control->GetName().c_str(), name) == 0)
            for (std::size_t i = 0; i < control->GetNumRegistrations(); ++i)
                action(*control, i);
}

// ---- selection ------------------------------------------------------------------------------

int CStandardGUI_X::GetSelectedController() const {
    for (std::size_t i = 0; i < m_Controls.size(); ++i)
        if (IsSelected(m_Controls[i]))
            return static_cast<int>(i);
    return -1;
}

std::size_t CStandardGUI_X::GetNumSelectedControllers() const {
    return static_cast<std::size_t>(
        std::count_if(m_Controls.begin(), m_Controls.end(),
                      [](const WCGUIControl *control) { return IsSelected(control); }));
}

int CStandardGUI_X::SelectControl(std::int64_t index) {
    WCGUIControl *control = GetControlPtrByIndex(index);
    if (control == nullptr)
        return eControlOutOfRange;
    for (WCGUIControl *other : m_Controls)
        if (other != control)
            other->MinSelect();
    control->MaxSelect();
    SetNeedToRedrawGUI();
    return eNoErr;
}

void CStandardGUI_X::DeSelectControl(WCGUIControl *control) {
    if (control != nullptr && IsSelected(control)) {
        control->MinSelect();
        SetNeedToRedrawGUI();
    }
}

int CStandardGUI_X::GetNumRegisteredParamsForControl(std::int64_t index) const {
    const WCGUIControl *control = GetControlPtrByIndex(index);
    return control == nullptr ? -1 : static_cast<int>(control->GetNumRegistrations());
}

// ---- groups ---------------------------------------------------------------------------------

bool CStandardGUI_X::GroupExists(const char *name) const {
    return GetGroup(name) != nullptr;
}

int CStandardGUI_X::GroupAdd(const char *name) {
    if (name == nullptr || *name == '\0')
        return eMemNullPointer;
    if (!GroupExists(name))
        m_Groups.emplace(WCFixedString<63>(name), std::make_unique<ControlGroup>(name));
    return eNoErr;
}

ControlGroup *CStandardGUI_X::GetGroup(const char *name) const {
    if (name == nullptr)
        return nullptr;
    const auto found = m_Groups.find(WCFixedString<63>(name));
    return found == m_Groups.end() ? nullptr : found->second.get();
}

int CStandardGUI_X::GroupAddControl(const char *name, WCGUIControl *control) {
    ControlGroup *group = GetGroup(name);
    if (group == nullptr || control == nullptr)
        return kErrGUIObjectNotFound;
    group->AddControl(control);
    return eNoErr;
}

int CStandardGUI_X::GroupRemoveControl(const char *name, WCGUIControl *control) {
    ControlGroup *group = GetGroup(name);
    if (group == nullptr || !group->HasControl(control))
        return kErrGUIObjectNotFound;
    group->RemoveControl(control);
    return eNoErr;
}

int CStandardGUI_X::GroupShowHide(const char *name, bool show) {
    ControlGroup *group = GetGroup(name);
    if (group == nullptr)
        return kErrGUIObjectNotFound;
    if (show)
        group->Show();
    else
        group->Hide();
    SetNeedToRedrawGUI();
    return eNoErr;
}

int CStandardGUI_X::GroupHide(const char *name) {
    return GroupShowHide(name, false);
}

int CStandardGUI_X::GroupShow(const char *name) {
    return GroupShowHide(name, true);
}

int CStandardGUI_X::OffsetControls(int dx, int dy, const char *name) {
    if (name != nullptr) {
        ControlGroup *group = GetGroup(name);
        if (group == nullptr)
            return kErrGUIObjectNotFound;
        for (WCGUIControl *control : group->GetControls())
            control->Move(dx, dy);
    } else {
        for (WCGUIControl *control : m_Controls)
            control->Move(dx, dy);
    }
    SetNeedToRedrawGUI();
    return eNoErr;
}

// ---- flags, pictures, geometry --------------------------------------------------------------

void CStandardGUI_X::SetGUIFlag(unsigned int bit, bool on) {
    if (bit >= 32)
        return;
    if (on)
        m_GUIFlags |= 1u << bit;
    else
        m_GUIFlags &= ~(1u << bit);
}

WCBaseImageVector *CStandardGUI_X::GetBasePictVec(std::size_t index) const {
    return index < m_BasePicts.size() ? m_BasePicts[index].get() : nullptr;
}

int CStandardGUI_X::SetCurrentBasePictVec(std::size_t index) {
    if (index >= m_BasePicts.size())
        return eOutOfRangeNumber;
    m_CurrentBasePict = index;
    SetNeedToRedrawGUI();
    return eNoErr;
}

void CStandardGUI_X::ClearBasePicts() {
    m_BasePicts.clear();
    m_CurrentBasePict = 0;
}

void CStandardGUI_X::SetViewRect(const WURect<short> &rect) {
    if (m_OriginalRect.IsEmpty())
        m_OriginalRect = rect;
    SetDrawableRect(rect);
    SetNeedToRedrawGUI();
}

int CStandardGUI_X::SetGuiScalingFactor(double factor) {
    if (!std::isfinite(factor) || factor <= 0.0)
        return eOutOfRangeNumber;
    m_PreviousScalingFactor = m_ScalingFactor;
    m_ScalingFactor = factor;
    return eNoErr;
}

std::vector<WURect<int>> CStandardGUI_X::GetAllScreensRects() const {
    std::vector<WURect<int>> screens;
    if (Utils::GetAllScreensRectsInPixels(screens) != eNoErr)
        screens.clear();
    return screens;
}

bool CStandardGUI_X::IsViewInFullScreen() const {
    bool fullScreen = false;
    if (m_pPluginView == nullptr ||
        PluginViewManager::IsViewInFullScreenWindow(m_pPluginView, fullScreen) != eNoErr)
        return false;
    return fullScreen;
}

bool CStandardGUI_X::IsScalingFactorFitsCurrentScreen(double factor) const {
    if (m_pAlg != nullptr && m_pAlg->GetPluginValue_bool("GUI_screen_oversize_supported", false))
        return true;
    // The view's origin on the desktop picks the screen; without a view it is the desktop's origin.
    WCPoint2D<int> origin(0, 0);
    if (m_pPluginView != nullptr)
        PluginViewManager::PVMLocalToGlobal(m_pPluginView, WCPoint2D<int>(0, 0), origin);
    for (const WURect<int> &screen : GetAllScreensRects()) {
        if (!screen.PointInRect(origin))
            continue;
        const auto scaled = [factor](short value) {
            return static_cast<long long>(value * factor);
        };
        const long long width = scaled(m_DrawableRect.right) - scaled(m_DrawableRect.left);
        const long long height = scaled(m_DrawableRect.bottom) - scaled(m_DrawableRect.top);
        return width <= screen.Width() && height <= screen.Height();
    }
    return true;
}

// ---- algorithm events -----------------------------------------------------------------------

// The preset's name and its modified mark live in the toolbar: preset events repaint the
// toolbar, while the controls follow their parameters by themselves.
void CStandardGUI_X::RedrawToolbar() {
    for (X_CToolbarButton *button : m_Toolbar)
        button->SetNeedToRedrawControl();
}

void CStandardGUI_X::PresetLoaded(Preset::CPresetInfo const &) {
    if (m_pAlg != nullptr)
        m_PresetModified[SetupSlot(m_pAlg->GetActiveSetup())] = false;
    RedrawToolbar();
}

void CStandardGUI_X::PresetModified(EPluginSetup setup) {
    if (m_pAlg != nullptr)
        m_PresetModified[SetupSlot(m_pAlg->GetAbsoluteSetup(setup))] = true;
    RedrawToolbar();
}

void CStandardGUI_X::SetupTitleChanged(EPluginSetup, WCFixedStringBase const &title) {
    m_SetupTitle = title.c_str();
    RedrawToolbar();
}

void CStandardGUI_X::ActiveSetupChanged(EPluginSetup) {
    RedrawToolbar();
}

bool CStandardGUI_X::IsPresetModified(int setup) const {
    if (m_pAlg == nullptr)
        return false;
    return m_PresetModified[SetupSlot(m_pAlg->GetAbsoluteSetup(static_cast<EPluginSetup>(setup)))];
}

int CStandardGUI_X::UpdateSkin(const char *name) {
    if (name == nullptr || m_CurrentSkin == name)
        return eNoErr;
    if (m_Skins.FindSkinDetailsByName(name) == nullptr)
        return kErrGUIObjectNotFound;
    m_CurrentSkin = name;
    SetNeedToRedrawGUI();
    return eNoErr;
}

MIREL_NAMESPACE_END
