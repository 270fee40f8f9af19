// cALGORITHM: what a preset takes from a running plug-in and gives back, and the host chunks
// built on it. A setup travels as real-world values with a kind per value, so a preset survives
// a change of scale; kind 1 marks a value the plug-in keeps as it is.

#include <algorithm>
#include <clocale>
#include <cmath>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Algorithm/WCStAlgLocker.h"
#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/CPublicAlg.h"
#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/WUPresetParams.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Parameters a preset never writes: display-only, not-in-preset, unused and bit 15.
constexpr unsigned int kNotLoadedMask = 0x8844;
// Parameters only a host chunk or the default file may set.
constexpr unsigned int kLoadFromHostOnlyBit = 17;

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
    const bool both = allSetups && !activeOnly;
    info.m_ActiveSetup = both ? SetupToSetupString(m_ActiveSetup) : "";
    const EPluginSetup setups[2] = {eSetupA, eSetupB};
    for (int i = 0; i < (both ? 2 : 1); ++i) {
        const EPluginSetup setup = both ? setups[i] : m_ActiveSetup;
        auto data = std::make_unique<Preset::sPresetData>();
        data->m_SetupName = m_SetupNames[SetupSlot(setup)];
        SaveRealWorldToPreset(*data, setup, false);
        data->m_Setup = both ? setup : eCurrentSetup;
        info.m_Data.push_back(std::move(data));
    }
    return eNoErr;
}

// ---- loading --------------------------------------------------------------------------------

template <class Value>
int cALGORITHM::LoadValuesFromPreset(Preset::sPresetData const &data, EPluginSetup setup,
                                     Value value) {
    const int which = SetupSlot(GetAbsoluteSetup(setup));
    const std::size_t stored = static_cast<std::size_t>(data.m_NumParams);
    for (std::size_t id = 0; id < m_Params.size(); ++id) {
        sCONTROL_PARAM &param = m_Params[id];
        param.SetUpdateFlags(WCParam_Base::kUpdateFlagsValueChanged);
        if ((param.GetFlags().GetBits() & kNotLoadedMask) != 0)
            continue;
        const unsigned int kind =
            id < data.m_ValueKinds.size() ? data.m_ValueKinds[id] : eKindValue;
        if (kind == eKindKeep)
            continue;
        double realWorld = param.GetInitialValue();
        // A value past what the preset stored, or marked for the default, takes the default.
        if (id < stored && kind == eKindValue && !value(id, param, realWorld))
            continue;
        if (!std::isfinite(realWorld))
            continue;
        (void)LimitRealWorld(id, realWorld);
        const double state =
            std::clamp(param.RealWorldToState(realWorld), 0.0, WCParam_Base::kMaxState);
        param.SetRealWorldValue(which, realWorld);
        param.SetStateValue(which, param.IsDiscrete() ? param.QuantizeState(state) : state);
    }
    return eNoErr;
}

int cALGORITHM::LoadRealWorldFromPreset(Preset::sPresetData const &data, EPluginSetup setup) {
    return LoadValuesFromPreset(data, setup,
                                [&](std::size_t id, sCONTROL_PARAM const &, double &realWorld) {
                                    if (id >= data.m_RealWorld.size())
                                        return false;
                                    realWorld = data.m_RealWorld[id];
                                    return true;
                                });
}

int cALGORITHM::LoadStatesFromPreset(Preset::sPresetData const &data, EPluginSetup setup) {
    return LoadValuesFromPreset(
        data, setup, [&](std::size_t id, sCONTROL_PARAM const &param, double &realWorld) {
            if (id >= data.m_States.size())
                return false;
            realWorld = param.StateToRealWorld(
                std::clamp(static_cast<double>(data.m_States[id]), 0.0, WCParam_Base::kMaxState));
            return true;
        });
}

int cALGORITHM::LoadFromPreset(Preset::CPresetInfo const &info, bool update) {
    if (info.m_Data.empty())
        return Preset::kErrPresetHasNoData;
    {
        WCStAlgLocker lock(*this);
        const bool fromHost = info.IsLoadedFromHostOrDefaultPreset();
        for (auto const &data : info.m_Data) {
            if (data == nullptr || !data->LoadParams())
                continue;
            // A copy, so host-only parameters can be marked kept without touching the preset.
            Preset::sPresetData loaded = *data;
            if (!fromHost)
                for (std::size_t id = 0; id < m_Params.size(); ++id)
                    if (m_Params[id].IsFlagSet(kLoadFromHostOnlyBit))
                        loaded.IgnoreParam(id);
            const EPluginSetup setup = GetAbsoluteSetup(loaded.m_Setup);
            if (loaded.m_DataType == Preset::ePresetDataStates)
                LoadStatesFromPreset(loaded, setup);
            else
                LoadRealWorldFromPreset(loaded, setup);
            if (setup == m_ActiveSetup || loaded.m_Setup == eCurrentSetup)
                m_SetupNames[SetupSlot(setup)] = info.m_PresetName;
            if (!loaded.m_SetupName.empty())
                m_SetupNames[SetupSlot(setup)] = loaded.m_SetupName;
        }
        if (info.m_SideChainActive == 0 || info.m_SideChainActive == 1)
            m_SideChainActive = static_cast<signed char>(info.m_SideChainActive);
        SetUpdateAlgRequired();
    }
    EPluginSetup active = eCurrentSetup;
    if (SetupStringToSetup(info.m_ActiveSetup.c_str(), active) == eNoErr &&
        active != eCurrentSetup)
        ToggleActiveSetup(active);
    if (update)
        Broadcaster()->PresetLoaded(info);
    return eNoErr;
}

// ---- host chunks ----------------------------------------------------------------------------

int cALGORITHM::PreparePresetChunk(Utils::WCStMemObj &chunk, bool allSetups, bool midi) {
    if (midi)
        return eNotImplemented;
    Preset::CPresetInfo info;
    info.m_Section = Preset::ePresetSectionHostPresetChunk;
    info.m_Category = m_CurrentPresetInfo.m_Category;
    info.m_Format = Preset::ePresetsFormatXMLString;
    info.m_PresetName = m_SetupNames[SetupSlot(m_ActiveSetup)];
    info.m_Flags |= Preset::ePresetFlagReadOnly;
    info.m_ExternalFilePath = m_CurrentPresetInfo.m_ExternalFilePath;
    info.m_IndexInList = m_CurrentPresetInfo.m_IndexInList;
    const int err = SaveToPreset(info, false, allSetups);
    if (err != eNoErr)
        return err;
    return Preset::WritePresetChunk(info, chunk);
}

int cALGORITHM::SetPresetChunk(Utils::WCStConstMemObj const &chunk) {
    Preset::CPresetInfo info;
    // Through the file API, so a chunk saved by a plug-in of another type is refused.
    int err = Preset::CPresetAPI::SetPresetChunk(Preset::CPublicAlg(*this), info, chunk);
    if (err != eNoErr)
        return err;
    info.m_Section = Preset::ePresetSectionHostPresetChunk;
    err = LoadFromPreset(info, true);
    if (err != eNoErr)
        return err;
    if (info.m_Category != Preset::ePresetSectionNone)
        m_CurrentPresetInfo.m_Category = info.m_Category;
    // The new values reach the process side as whole images.
    UpdateDSPCoefs(true);
    return eNoErr;
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
