// cALGORITHM: the parameter list, built from the parameter XML with the five name-keyed maps,
// and the conversions shells and tools ask of it.

#include <algorithm>
#include <cstring>

#include "Code/Algorithm/WUDisplayFunctions.h"
#include "Code/Algorithm/WUParametersXML.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/Process/WCParamExtensionMeter.h"
#include "core/WCStMemObj.h"

MIREL_NAMESPACE_BEGIN

int cALGORITHM::PrepareDisplayFunctionsMap() {
    DisplayFunctions::AddBuiltIns(m_ParamMaps.displayFunctions);
    return PrepareDisplayFunctionsMapSelf();
}

int cALGORITHM::PrepareScaleFunctionsMap() {
    return PrepareScaleFunctionsMapSelf();
}

int cALGORITHM::PrepareMouseDeltaFunctionsMap() {
    return PrepareMouseDeltaFunctionsMapSelf();
}

int cALGORITHM::PrepareDrawClassFactoryMap() {
    return PrepareDrawClassFactoryMapSelf();
}

int cALGORITHM::PrepareParamExtensionFactoryMap() {
    // The meter classes are built in; a plug-in's hook runs after and may replace them.
    auto &factories = m_ParamMaps.extensionFactories;
    factories[WTParamMapKey("WCParamExtensionMeter")] = [](char const *) -> WCParamExtension * {
        return new WCParamExtensionMeter;
    };
    factories[WTParamMapKey("WCParamExtensionMeterWithClip")] =
        [](char const *) -> WCParamExtension * { return new WCParamExtensionMeterWithClip; };
    factories[WTParamMapKey("WCParamExtensionAttenuationMeter")] =
        [](char const *) -> WCParamExtension * { return new WCParamExtensionAttenuationMeter; };
    factories[WTParamMapKey("WCParamExtensionBoostAttenMeter")] =
        [](char const *) -> WCParamExtension * { return new WCParamExtensionBoostAttenMeter; };
    return PrepareParamExtensionFactoryMapSelf();
}

int cALGORITHM::PrepareParameterVec() {
    int err = PrepareDisplayFunctionsMap();
    const int steps[] = {PrepareScaleFunctionsMap(), PrepareMouseDeltaFunctionsMap(),
                         PrepareDrawClassFactoryMap(), PrepareParamExtensionFactoryMap()};
    for (int step : steps) {
        if (err == eNoErr)
            err = step;
    }
    const int buildErr = BuildParameterList();
    return err != eNoErr ? err : buildErr;
}

int cALGORITHM::ReadParamXML(Utils::WCStMemObj &out) const {
    return ReadResourceToMemObj("ParamXML", GetPresetResourceNumber(), out);
}

int cALGORITHM::BuildParameterList() {
    // The list is built once; after that its size never changes, so pointers into it stay valid.
    if (!m_Params.empty())
        return eNoErr;
    Utils::WCStMemObj text;
    int err = ReadParamXML(text);
    if (err == eNoErr)
        err = ParamXML::ReadParametersXMLFromText(static_cast<char const *>(text.GetPtr()),
                                                  text.GetSize(), m_ParamMaps, m_Params);
    m_ParameterListError = err;
    return err;
}

void cALGORITHM::ScaleAllParams(int setup) {
    const int active = m_ActiveSetup == eSetupB ? 1 : 0;
    for (auto &param : m_Params) {
        if (setup == -1) {
            param.InitRealWorldAndUpdate(active);
            param.InitRealWorldAndUpdate(1 - active);
        } else {
            param.InitRealWorldAndUpdate(setup);
        }
    }
}

void cALGORITHM::UnscaleAllParams(int setup) {
    const int which = setup == -1 ? (m_ActiveSetup == eSetupB ? 1 : 0) : setup;
    for (auto &param : m_Params)
        param.UpdateStateFromRealWorld(which);
}

int cALGORITHM::RealWorldToState(std::uint64_t id, double &inOut) const {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    inOut = param->RealWorldToState(inOut);
    return eNoErr;
}

int cALGORITHM::StateToRealWorld(std::uint64_t id, double &inOut) const {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    inOut = param->StateToRealWorld(inOut);
    return eNoErr;
}

int cALGORITHM::GetParamIDFromName(char const *name, std::uint64_t &id) const {
    if (name == nullptr)
        return eValueNotFound;
    const WCFixedString<127> cut(name);
    for (std::uint64_t i = 0; i < m_Params.size(); ++i) {
        if (m_Params[i].m_Name == cut) {
            id = i;
            return eNoErr;
        }
    }
    return eValueNotFound;
}

int cALGORITHM::GetParamGraphData(std::uint64_t id, void *&data) const {
    data = nullptr;
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    data = param->m_GraphData[m_ActiveSetup == eSetupB ? 1 : 0].get();
    return eNoErr;
}

int cALGORITHM::AddParamController(std::uint64_t id, WCBaseControl *control, std::uint64_t tag) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    if (control == nullptr)
        return eMemNullPointer;
    const std::pair<std::uint64_t, WCBaseControl *> entry(tag, control);
    if (std::find(param->m_Controllers.begin(), param->m_Controllers.end(), entry) ==
        param->m_Controllers.end())
        param->m_Controllers.push_back(entry);
    return eNoErr;
}

int cALGORITHM::RemoveParamController(std::uint64_t id, WCBaseControl *control) {
    sCONTROL_PARAM *param = GetParam(id);
    if (param == nullptr)
        return eOutOfRangeNumber;
    auto &list = param->m_Controllers;
    const auto before = list.size();
    list.erase(std::remove_if(list.begin(), list.end(),
                              [control](const auto &entry) { return entry.second == control; }),
               list.end());
    return list.size() != before ? eNoErr : eValueNotFound;
}

bool cALGORITHM::GetParamDisabledMode(std::uint64_t id) const {
    sCONTROL_PARAM const *param = GetParam(id);
    if (param == nullptr)
        return false;
    return param->IsFlagSet(eParamFlag_ConstantDisabled) ||
           param->m_DisabledMode[m_ActiveSetup == eSetupB ? 1 : 0] != 0;
}

MIREL_NAMESPACE_END
