// cALGORITHM: what a preset takes from a running plug-in and gives back, and the host chunks
// built on it. A setup travels as real-world values with a kind per value, so a preset survives
// a change of scale; kind 1 marks a value the plug-in keeps as it is.

#include <algorithm>
#include <clocale>
#include <cmath>
#include <strings.h>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Algorithm/WCStAlgLocker.h"
#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/CPresetsManager.h"
#include "Code/Presets/CPublicAlg.h"
#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/WUPresetParams.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Parameters a preset never writes: display-only, not-in-preset, unused and bit 15.
constexpr unsigned int kNotLoadedMask = 0x8844;

constexpr unsigned int eKindValue = Preset::ePresetValue;
constexpr unsigned int eKindKeep = Preset::ePresetValueIgnore;

// Numbers in presets are written with a dot whatever the host's locale; this holds the C
// locale for the thread while a preset is made.
class WCStCLocale {
public:
    WCStCLocale() : m_Old(uselocale(CLocale())) {}
    ~WCStCLocale() { uselocale(m_Old); }
    WCStCLocale(WCStCLocale const &) = delete;
    WCStCLocale &operator=(WCStCLocale const &) = delete;

private:
    static locale_t CLocale() {
        static const locale_t c = newlocale(LC_ALL_MASK, "C", locale_t(0));
        return c;
    }
    locale_t m_Old;
};

} // namespace

// ---- saving ---------------------------------------------------------------------------------

int cALGORITHM::SaveRealWorldToPreset(Preset::sPresetData &data, EPluginSetup setup,
                                      bool undoOnly) const {
    Preset::SaveRealWorldToPresetData(data, m_Params, SetupSlot(GetAbsoluteSetup(setup)),
                                      undoOnly);
    return eNoErr;
}

int cALGORITHM::SaveToPreset(Preset::CPresetInfo &info, bool activeOnly, bool allSetups) const {
    WCStCLocale cLocale;
    WCStAlgLocker lock(*this);
    info.ClearData();
    info.m_PluginName = m_AlgName;
    info.m_PluginSubComp = m_AlgSubType.GetString();
    info.m_PluginVersion = m_ComponentInfo.m_ExternalVersion.GetString(3);
    info.m_GenericType = m_AlgType;
    info.m_SideChainActive = m_SideChainActive == 0 || m_SideChainActive == 1
                                 ? static_cast<std::uint8_t>(m_SideChainActive)
                                 : Preset::CPresetInfo::kSideChainNotStored;
    if (const int err = PreSaveToPreset(info); err != eNoErr)
        return err;
    const bool both = allSetups && !activeOnly;
    info.m_ActiveSetup = both ? SetupToSetupString(m_ActiveSetup) : "";
    const EPluginSetup setups[2] = {eSetupA, eSetupB};
    for (int i = 0; i < (both ? 2 : 1); ++i) {
        const EPluginSetup setup = both ? setups[i] : m_ActiveSetup.load();
        auto data = std::make_unique<Preset::sPresetData>();
        data->m_SetupName = m_SetupNames[SetupSlot(setup)];
        if (ShouldSaveParamsToPresetSelf(setup))
            SaveRealWorldToPreset(*data, setup, false);
        else
            data->m_DataType = Preset::ePresetDataNone;
        data->m_Setup = both ? setup : eCurrentSetup;
        m_AutomationManager.SaveControlsToPreset(data->m_ControlData);
        if (const int err = SaveToPresetSelf(info, *data, setup); err != eNoErr)
            return err;
        info.m_Data.push_back(std::move(data));
    }
    return eNoErr;
}

// ---- loading --------------------------------------------------------------------------------

std::vector<unsigned int> cALGORITHM::IgnoreHostOnlyParams(Preset::CPresetInfo const &info) const {
    std::vector<unsigned int> kinds(m_Params.size(), eKindValue);
    if (info.IsLoadedFromHostOrDefaultPreset())
        return kinds;
    for (std::size_t id = 0; id < m_Params.size(); ++id)
        if (m_Params[id].IsFlagSet(eParamFlag_LoadFromHostOnly))
            kinds[id] = eKindKeep;
    return kinds;
}

double cALGORITHM::GetDefaultRealWorldForPreset(std::uint64_t id) const {
    return id < m_Params.size() ? m_Params[id].GetInitialValue() : 0.0;
}

template <class Value>
int cALGORITHM::LoadValuesFromPreset(Preset::sPresetData const &data, EPluginSetup setup,
                                     bool update, std::vector<unsigned int> const &extraKinds,
                                     Value value) {
    const EPluginSetup absolute = GetAbsoluteSetup(setup);
    const int which = SetupSlot(absolute);
    const std::size_t stored = static_cast<std::size_t>(data.m_NumParams);
    bool reported = false;
    for (std::size_t id = 0; id < m_Params.size(); ++id) {
        sCONTROL_PARAM &param = m_Params[id];
        param.SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);
        if ((param.GetFlags().GetBits() & kNotLoadedMask) != 0)
            continue;
        const unsigned int extra = id < extraKinds.size() ? extraKinds[id] : eKindValue;
        const unsigned int kind = id >= stored                     ? eKindValue
                                  : id < data.m_ValueKinds.size() ? data.m_ValueKinds[id]
                                                                  : eKindValue;
        if (kind == eKindKeep || extra == eKindKeep)
            continue;
        double realWorld = GetDefaultRealWorldForPreset(id);
        // A value past what the preset stored, or marked for the default, takes the default.
        if (id < stored && kind == eKindValue) {
            if (!value(id, param, realWorld))
                continue;
            if (!ValidateRealWorldFromPresetSelf(id, absolute, realWorld))
                continue;
            if (!param.IsFlagSet(eParamFlag_AvoidValidation) &&
                !ValidateRealWorld(id, realWorld)) {
                // Said once per load: a plug-in under development learns its presets are stale.
                if (!reported && GetPluginValue_bool("DevelopingPluginFirstTime", false))
                    Report("preset", "a stored value failed validation");
                reported = true;
                continue;
            }
        }
        if (!std::isfinite(realWorld))
            continue;
        // A value past the scale's ends is brought to the end it passed: through the state,
        // which costs one scale evaluation for a value in range instead of two for the ends.
        const double unclamped = param.RealWorldToState(realWorld);
        const double state = std::clamp(unclamped, 0.0, WCParam_Base::kMaxState);
        if (state != unclamped && !param.IsFlagSet(eParamFlag_AvoidValidation))
            realWorld = param.StateToRealWorld(state);
        param.SetRealWorldValue(which, realWorld);
        param.SetStateValue(which, param.IsDiscrete() ? param.QuantizeState(state) : state);
    }
    if (update && GetPluginValue_bool("NotifyPresetLoadedToHost", true))
        m_AutomationManager.NotifyHostControlsOfSetup(which);
    return eNoErr;
}

int cALGORITHM::LoadRealWorldFromPreset(Preset::sPresetData const &data, EPluginSetup setup,
                                        bool update, std::vector<unsigned int> const &extraKinds) {
    return LoadValuesFromPreset(data, setup, update, extraKinds,
                                [&](std::size_t id, sCONTROL_PARAM const &, double &realWorld) {
                                    if (id >= data.m_RealWorld.size())
                                        return false;
                                    realWorld = data.m_RealWorld[id];
                                    return true;
                                });
}

int cALGORITHM::LoadStatesFromPreset(Preset::sPresetData const &data, EPluginSetup setup,
                                     bool update, std::vector<unsigned int> const &extraKinds) {
    return LoadValuesFromPreset(
        data, setup, update, extraKinds,
        [&](std::size_t id, sCONTROL_PARAM const &param, double &realWorld) {
            if (id >= data.m_States.size())
                return false;
            realWorld = param.StateToRealWorld(
                std::clamp(static_cast<double>(data.m_States[id]), 0.0, WCParam_Base::kMaxState));
            return true;
        });
}

int cALGORITHM::LoadControlsFromPreset(Preset::CPresetInfo const &, Preset::sPresetData const &data,
                                       EPluginSetup) {
    return m_AutomationManager.LoadControlsFromPreset(data.m_ControlData);
}

int cALGORITHM::LoadFromPreset(Preset::CPresetInfo const &info, bool update) {
    if (info.m_Data.empty())
        return Preset::kErrPresetHasNoData;
    int err = eNoErr;
    {
        WCStAlgLocker lock(*this);
        if (ShouldClearMidiControlsAttachment(info) && ShouldClearMidiControlsAttachmentSelf(info))
            m_AutomationManager.ClearMidiControlsAttachment();
        err = PreLoadFromPreset(info);
        if (err != eNoErr)
            return err;
        const std::vector<unsigned int> hostOnly = IgnoreHostOnlyParams(info);
        // A MIDI map carries controls only: no parameter moves.
        if (info.IsMIDI()) {
            if (info.m_Data.front() != nullptr)
                (void)LoadControlsFromPreset(info, *info.m_Data.front(), eSetupA);
            return LoadMidiFromPresetSelf(info);
        }
        const bool renameSetups = GetPluginValue_bool("UpdateToolbarName", true);
        for (auto const &stored : info.m_Data) {
            if (stored == nullptr)
                continue;
            // A copy, so a plug-in may bring old data up to date and host-only parameters can
            // be kept without touching the preset.
            Preset::sPresetData data = *stored;
            UpdatePresetDataBeforeLoad(data);
            const EPluginSetup setup = GetAbsoluteSetup(data.m_Setup);
            if (GetLoadSpecificXMLPreset() && data.GetLoadSpecificXMLPreset() &&
                LoadSpecificXMLFromPresetSelf(data.m_PluginSpecificXML,
                                              info.IsStringToDoubleObsoleteVersion(),
                                              setup) == eNoErr)
                (void)LoadFromPresetSelf(info, data, setup);
            if (ShouldLoadParamsFromPresetSelf(data) && data.LoadParams()) {
                const bool hasValues = !data.m_RealWorld.empty() || !data.m_States.empty();
                if (hasValues && data.m_DataType == Preset::ePresetDataStates)
                    LoadStatesFromPreset(data, setup, update, hostOnly);
                else if (hasValues && data.m_DataType == Preset::ePresetDataRealWorld)
                    LoadRealWorldFromPreset(data, setup, update, hostOnly);
                else if (!hasValues && data.m_DataType == Preset::ePresetDataReset)
                    LoadRealWorldFromPreset(data, setup, update, hostOnly);
            }
            // A preset whose MIDI attachments name controls this version lacks still loads its
            // values.
            (void)LoadControlsFromPreset(info, data, setup);
            if (renameSetups) {
                if (setup == m_ActiveSetup || data.m_Setup == eCurrentSetup)
                    m_SetupNames[SetupSlot(setup)] = info.m_PresetName;
                if (!data.m_SetupName.empty())
                    m_SetupNames[SetupSlot(setup)] = data.m_SetupName;
            }
            if (info.m_SideChainActive == 0 || info.m_SideChainActive == 1)
                m_SideChainActive = static_cast<signed char>(info.m_SideChainActive);
        }
        SetUpdateAlgRequired();
    }
    EPluginSetup active = eCurrentSetup;
    if (SetupStringToSetup(info.m_ActiveSetup.c_str(), active) == eNoErr &&
        active != eCurrentSetup)
        ToggleActiveSetup(active);
    if (update)
        Broadcaster()->PresetLoaded(info);
    // The GUIs of the map follow through the parameters' update flags and the listeners.
    return PostLoadFromPreset(info);
}

// ---- host chunks ----------------------------------------------------------------------------

int cALGORITHM::PreparePresetChunk(Utils::WCStMemObj &chunk, bool allSetups, bool midi) {
    return Preset::CPresetsManager::PreparePresetChunk(Preset::CPublicAlg(*this), chunk, allSetups,
                                                       midi);
}

int cALGORITHM::SetPresetChunk(Utils::WCStConstMemObj const &chunk) {
    const int err = Preset::CPresetsManager::SetPresetChunk(Preset::CPublicAlg(*this), chunk);
    if (err != eNoErr)
        return err;
    // The new values reach the process side as whole images.
    UpdateDSPCoefs(true);
    return eNoErr;
}

// ---- the presets manager --------------------------------------------------------------------

Preset::CPresetInfo const &cALGORITHM::GetCurrentPresetInfo() const {
    static const Preset::CPresetInfo none;
    return m_PresetsManager != nullptr ? m_PresetsManager->GetCurrentPreset() : none;
}

int cALGORITHM::HandleLoadFactoryOrUserDefaultPreset() {
    Preset::CPresetsManager *manager = GetPresetsManager();
    if (manager == nullptr)
        return ePresetInfoNotFound;
    const Preset::CPublicAlg alg(*this);
    if (manager->LoadDefaultPreset(alg) == eNoErr)
        return eNoErr;
    // A factory preset whose name begins "default" is the default one; else the first.
    std::int64_t first = -1;
    for (std::size_t i = 0; i < manager->GetNumFactoryPresets(); ++i) {
        Preset::CPresetInfo const &info = *manager->GetFactoryPreset(i);
        if (info.IsSeperator() || info.IsDummyTitle() || info.IsDisabled())
            continue;
        if (first < 0)
            first = static_cast<std::int64_t>(i);
        if (strncasecmp(info.m_PresetName.c_str(), "default", 7) == 0)
            return manager->LoadFactoryPresetToPluginByIndex(alg, i);
    }
    if (first < 0)
        return ePresetInfoNotFound;
    return manager->LoadFactoryPresetToPluginByIndex(alg, static_cast<std::size_t>(first));
}

int cALGORITHM::GetFactoryPresetName(std::int64_t index, WCFixedStringBase &out) const {
    if (m_PresetsManager == nullptr)
        return ePresetInfoNotFound;
    if (index < 0)
        return eFactoryPresetNumOutOfRange;
    return m_PresetsManager->GetFactoryPresetName(static_cast<std::size_t>(index), out);
}

int cALGORITHM::GetNumFactoryPresets(std::size_t &count) const {
    if (m_PresetsManager == nullptr)
        return ePresetInfoNotFound;
    count = m_PresetsManager->GetNumFactoryPresets();
    return eNoErr;
}

int cALGORITHM::LoadFactoryPresetToPluginByName(char const *name) {
    if (m_PresetsManager == nullptr)
        return ePresetInfoNotFound;
    return m_PresetsManager->LoadFactoryPresetToPluginByName(Preset::CPublicAlg(*this), name);
}

int cALGORITHM::LoadFactoryPresetByIndex(std::size_t index) {
    if (m_PresetsManager == nullptr)
        return ePresetInfoNotFound;
    return m_PresetsManager->LoadFactoryPresetToPluginByIndex(Preset::CPublicAlg(*this), index);
}

int cALGORITHM::ReadFactoryPresetFromFile(char const *path) {
    if (m_PresetsManager == nullptr)
        return ePresetInfoNotFound;
    if (path == nullptr || *path == '\0')
        return ePresetFileProblem;
    return m_PresetsManager->ReadFactoryPresetFromFile(Preset::CPublicAlg(*this),
                                                       FM::WCStPath(path));
}

int cALGORITHM::GetChunk(WCFourCC id, Utils::WCStMemObj &chunk, bool allSetups) {
    if (id == Preset::kChunkPreferences)
        return eNoErr;
    if (id != Preset::kChunkWholeState)
        return Preset::kErrUnknownChunkID;
    Utils::WCStMemObj made;
    const int err = PreparePresetChunk(made, allSetups, false);
    if (err != eNoErr)
        return err;
    if (made.Empty())
        return Preset::kErrPresetChunkEmpty;
    Utils::WCStMemObj::Swap(chunk, made);
    return eNoErr;
}

int cALGORITHM::SetChunk(WCFourCC id, Utils::WCStConstMemObj const &chunk) {
    // The host calls on its own thread; the whole load holds the process lock.
    WCStAlgLocker lock(*this);
    if (id == Preset::kChunkPreferences)
        return eNoErr;
    if (id != Preset::kChunkWholeState)
        return Preset::kErrUnknownChunkID;
    return SetPresetChunk(chunk);
}

int cALGORITHM::GetChunkSize(int index, bool allSetups, std::uint64_t &size) {
    WCFourCC id;
    int err = GetIndexedChunkID(index, id);
    if (err != eNoErr)
        return err;
    Utils::WCStMemObj chunk;
    err = GetChunk(id, chunk, allSetups);
    if (err == eNoErr)
        size = chunk.GetSize();
    return err;
}

MIREL_NAMESPACE_END
