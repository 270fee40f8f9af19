#include "Code/Presets/WUPresetParams.h"

#include <charconv>

#include "Code/Algorithm/WUParamFlags.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"
#include "Code/Presets/WUPresetNumbers.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr std::uint32_t kUpdateFlagsAfterLoad = 3;

WCFixedString<63> ValueText(double value) {
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, 10);
    WCFixedString<63> text;
    if (result.ec == std::errc())
        text = std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer));
    return text;
}

WTErr SaveList(CPresetInfo &info, std::span<const sCONTROL_PARAM> params,
               const std::vector<std::uint64_t> &indexes, const char *tag, EPluginSetup setup) {
    for (const std::uint64_t index : indexes) {
        if (index >= params.size())
            return eOutOfRangeNumber;
    }
    const WTErr error = info.AddPluginSpecifcData(nullptr, 0, tag, 0, ePSNoData, setup);
    if (error != eNoErr)
        return error;
    sPluginSpecific *block = info.FindPluginSpecific_Tag(tag, setup);
    WCFixedString<63> count;
    count << static_cast<unsigned long long>(indexes.size());
    block->m_Descriptors.emplace_back("0", count.c_str());
    for (const std::uint64_t index : indexes) {
        const sCONTROL_PARAM &param = params[index];
        block->m_Descriptors.emplace_back(param.m_Name.c_str(),
                                          ValueText(param.GetRealWorld(SetupSlot(setup))).c_str());
    }
    return eNoErr;
}

} // namespace

void SaveRealWorldToPresetData(sPresetData &data, std::span<const sCONTROL_PARAM> params, int setup,
                               bool undoOnly) {
    data.m_DataType = ePresetDataRealWorld;
    data.m_NumParams = params.size();
    data.m_RealWorld.assign(params.size(), 0.0);
    data.m_ValueKinds.assign(params.size(), ePresetValue);
    for (std::size_t i = 0; i < params.size(); ++i) {
        const sCONTROL_PARAM &param = params[i];
        if (param.IsFlagSet(eParamFlag_DisplayOnlyParam) ||
            param.IsFlagSet(eParamFlag_DontSaveToPreset) ||
            (undoOnly && param.IsFlagSet(eParamFlag_DontRecordUndo)))
            data.m_ValueKinds[i] = ePresetValueIgnore;
        else
            data.m_RealWorld[i] = param.GetRealWorld(setup);
    }
}

WTErr SaveParamsToPreset(CPresetInfo &info, std::span<const sCONTROL_PARAM> params, const char *tag,
                         EPluginSetup setup) {
    std::vector<std::uint64_t> all(params.size());
    for (std::uint64_t i = 0; i < all.size(); ++i)
        all[i] = i;
    return SaveList(info, params, all, tag, setup);
}

WTErr SaveSpecificParamsToPreset(CPresetInfo &info, std::span<const sCONTROL_PARAM> params,
                                 const std::vector<std::uint64_t> &indexes, const char *tag,
                                 EPluginSetup setup) {
    return SaveList(info, params, indexes, tag, setup);
}

WTErr LoadParamsFromPreset(CPresetInfo &info, std::span<sCONTROL_PARAM> params, const char *tag,
                           EPluginSetup setup, int targetSetup) {
    const sPluginSpecific *block = info.FindPluginSpecific_Tag(tag, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    const bool obsolete = info.IsStringToDoubleObsoleteVersion();
    for (sCONTROL_PARAM &param : params) {
        for (const auto &descriptor : block->m_Descriptors) {
            if (descriptor.first != param.m_Name)
                continue;
            const char *text = descriptor.second.c_str();
            param.SetRealWorldValue(targetSetup, obsolete ? WUAtof_Obsolete(text) : WUStod(text));
            param.UpdateStateFromRealWorld(targetSetup);
            param.SetUpdateFlags(kUpdateFlagsAfterLoad);
            break;
        }
    }
    info.SetAllLoadFlags(false);
    return eNoErr;
}

WTErr LoadAllParamsFromPreset(CPresetInfo &info, std::span<sCONTROL_PARAM> params, const char *tag,
                              int currentSetup) {
    std::vector<EPluginSetup> setups;
    for (const auto &data : info.m_Data)
        setups.push_back(data->m_Setup);
    WTErr firstError = ePluginSpecifcNotExisting;
    for (const EPluginSetup setup : setups) {
        const int target = setup == eCurrentSetup ? currentSetup : SetupSlot(setup);
        if (LoadParamsFromPreset(info, params, tag, setup, target) == eNoErr)
            firstError = eNoErr;
    }
    return firstError;
}

} // namespace Preset

MIREL_NAMESPACE_END
