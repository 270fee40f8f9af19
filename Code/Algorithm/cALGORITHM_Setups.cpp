// cALGORITHM: the two setups, A and B, and the bypass that picks between a setup's two
// coefficient images. A setup is everything a preset restores: each parameter's values and
// per-setup data, both images and the name.

#include <cstring>
#include <strings.h>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Algorithm/WCStAlgLocker.h"
#include "Code/Presets/CPresetsManager.h"

MIREL_NAMESPACE_BEGIN

namespace {

bool IsSetupOrCurrent(EPluginSetup setup) {
    return setup == eSetupA || setup == eSetupB || setup == eCurrentSetup;
}

} // namespace

// ---- names ----------------------------------------------------------------------------------

int cALGORITHM::GetSetupName(EPluginSetup setup, WCFixedStringBase &out) const {
    if (!IsSetupOrCurrent(setup))
        return eOutOfRangeNumber;
    out = m_SetupNames[GetAbsoluteSetup(setup)];
    return eNoErr;
}

int cALGORITHM::SetSetupName(EPluginSetup setup, char const *name) {
    if (!IsSetupOrCurrent(setup))
        return eOutOfRangeNumber;
    if (name == nullptr)
        return eMemNullPointer;
    const EPluginSetup which = GetAbsoluteSetup(setup);
    m_SetupNames[which] = name;
    Broadcaster()->SetupTitleChanged(which, m_SetupNames[which]);
    return eNoErr;
}

int cALGORITHM::SetupStringToSetup(char const *text, EPluginSetup &setup) {
    if (text == nullptr)
        return eMemNullPointer;
    static constexpr struct {
        char const *text;
        EPluginSetup setup;
    } kWords[] = {{"SETUP_A", eSetupA}, {"SETUP_B", eSetupB}, {"CURRENT", eCurrentSetup}};
    for (auto const &word : kWords) {
        if (strcasecmp(text, word.text) == 0) {
            setup = word.setup;
            return eNoErr;
        }
    }
    return eOutOfRangeNumber;
}

char const *cALGORITHM::SetupToSetupString(EPluginSetup setup) {
    switch (setup) {
    case eSetupA: return "SETUP_A";
    case eSetupB: return "SETUP_B";
    default: return "CURRENT";
    }
}

// ---- switching and copying ------------------------------------------------------------------

bool cALGORITHM::ChangeActiveSetup(EPluginSetup setup) {
    if (setup == eCurrentSetup || setup == m_ActiveSetup || !IsSetupOrCurrent(setup))
        return false;
    ToggleActiveSetup(setup);
    // The GUIs of the map follow through the listeners and the parameters' update flags; a
    // GUI document has no setup state of its own to be told about.
    return true;
}

EPluginSetup cALGORITHM::ToggleActiveSetup(EPluginSetup setup) {
    if (setup == eCurrentSetup)
        setup = GetPassiveSetup();
    if (setup != eSetupA && setup != eSetupB)
        return m_ActiveSetup;
    if (setup == m_ActiveSetup)
        return m_ActiveSetup;
    {
        // Automation threads read the active setup under the lock; the switch must not tear
        // between a parameter's value and its extension's data.
        WCStAlgLocker lock(*this);
        SetUpdateAlgRequired();
        m_ActiveSetup = setup;
        for (auto &param : m_Params)
            param.TakeSetupData(setup);
    }
    // The host hears every control of the new setup as one batch, not one undo step each.
    CallExecCallBack(eExecBatch, reinterpret_cast<void *>(std::intptr_t(1)), nullptr, nullptr);
    m_AutomationManager.NotifyHostControlsOfSetup(setup);
    CallExecCallBack(eExecBatch, reinterpret_cast<void *>(std::intptr_t(0)), nullptr, nullptr);
    Broadcaster()->ActiveSetupChanged(setup);
    // A host's chunk switches setups on its own thread: the preset announced is a copy.
    Preset::CPresetInfo current;
    if (m_PresetsManager != nullptr) {
        m_PresetsManager->SetActiveSetup(setup);
        current = m_PresetsManager->GetCurrentPresetCopy();
    }
    Broadcaster()->PresetLoaded(current);
    RefreshAllParams();
    Report("active_setup", setup == eSetupB ? "1" : "0");
    return m_ActiveSetup;
}

int cALGORITHM::CopySetup() {
    const int from = m_ActiveSetup == eSetupB ? 1 : 0;
    const int to = 1 - from;
    {
        WCStAlgLocker lock(*this);
        for (auto &param : m_Params)
            param.CopySetup(from, to);
        m_ProcessMemory.CopyImages(from, to);
        m_SetupNames[to] = m_SetupNames[from];
    }
    if (m_PresetsManager != nullptr)
        m_PresetsManager->CopySetup(static_cast<EPluginSetup>(from), static_cast<EPluginSetup>(to));
    CopySetupSelf(static_cast<EPluginSetup>(from), static_cast<EPluginSetup>(to));
    Broadcaster()->PresetModified(static_cast<EPluginSetup>(to));
    return eNoErr;
}

// ---- bypass ---------------------------------------------------------------------------------

BUFFER_HEADER *cALGORITHM::SetBypass(bool value) {
    if (value == m_Bypass)
        return nullptr;
    m_Bypass = value;
    if (m_ProcessActive) {
        SetBypassChanged();
        SetBypassSelf();
    }
    Report("isBypassed", value ? "true" : "false");
    // The bypass takes effect with the next coefficient send, which picks the bypass image.
    return nullptr;
}

int cALGORITHM::DoPartialUpdateAfterBypass() {
    if (!m_BypassChanged)
        return eNoErr;
    ClearBypassChanged();
    UpdateDSPCoefs(true);
    return eNoErr;
}

MIREL_NAMESPACE_END
