// cALGORITHM: the key/value store, setups and chunks, and the answers of services that later
// layers fill (parameters, presets, meters, automation, resources). Each of the latter answers
// what its service answers for something it does not have.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

#include <pugixml.hpp>

#include "Code/Algorithm/WTAlgorithmErrors.h"
#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/Controls/CToggle_X.h"
#include "core/WCStMemObj.h"
#include "core/WUAssert.h"
#include "resources/ResourceManager.h"

MIREL_NAMESPACE_BEGIN

namespace {
// The flags every XML of the algorithm is read with.
constexpr unsigned int kXMLParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                        pugi::parse_wconv_attribute | pugi::parse_trim_pcdata |
                                        pugi::parse_embed_pcdata;
} // namespace

// ---- key/value store ------------------------------------------------------------------------

bool cALGORITHM::HasPluginValue(char const *key) const {
    return m_pKeyValues->Has(key) || IsExportItemSupported(key);
}

int cALGORITHM::GetPluginValueBinary(char const *key, void *buffer, std::uint64_t size) const {
    // The store accepts a larger buffer; what it lacks, or what does not fit, goes on to the
    // export items, which insist on the exact size.
    const int err = m_pKeyValues->GetBinary(key, buffer, size);
    if (err == eNoErr || err == eMemNullPointer)
        return err;
    return m_ExportItems.get_value_binary(key, buffer, size);
}

int cALGORITHM::SetPluginValueBinary(char const *key, void const *data, std::uint64_t size) {
    if (data == nullptr)
        return eMemNullPointer;
    if (key == nullptr)
        return eValueNotFound;
    if (m_ExportItems.is_item_supported(key))
        return m_ExportItems.set_value_binary(key, data, size);
    return m_pKeyValues->SetBinary(key, data, size);
}

int cALGORITHM::GetPluginValueStr(char const *key, WCFixedStringBase &out) const {
    if (m_pKeyValues->Has(key))
        return m_pKeyValues->GetStr(key, out);
    return m_ExportItems.get_value_str(key, out);
}

bool cALGORITHM::IsExportItemSupported(char const *key) const {
    return m_ExportItems.is_item_supported(key);
}

int cALGORITHM::SetTrackName(char const *name) {
    m_TrackName = name;
    return SetTrackNameSelf(m_TrackName.c_str());
}

int cALGORITHM::SetTrackVolume(double volume) {
    m_TrackVolume = volume;
    return eNoErr;
}

// ---- setups, bypass, chunks -----------------------------------------------------------------


int cALGORITHM::SetMute(bool value) {
    m_Mute = value;
    BUFFER_HEADER *chain = SetMuteSelf(value);
    const int err = SendAndFreeBuffers(chain, eExecSendBuffers, true);
    Report("isMute", value ? "true" : "false");
    return err;
}

void cALGORITHM::ChangeSideChainActive(signed char value) {
    if (value != -1) {
        CallExecCallBack(eExecSideChain, reinterpret_cast<void *>(std::intptr_t(value)), nullptr,
                         nullptr);
        m_Broadcaster.ActiveSideChainChanged(value > 0);
    }
    m_SideChainActive = value;
}

int cALGORITHM::GetIndexedChunkID(int index, WCFourCC &id) const {
    if (index != 0)
        return eIllegalChunkIndex;
    id = WCFourCC("XPst");
    return eNoErr;
}

int cALGORITHM::GetActualOutInSize(std::int64_t inSize, int &outSize) const {
    if (inSize < 0)
        return eOutOfRangeNumber;
    // Without on-the-fly rate conversion the output block is the input block scaled by the
    // largest ratio the plug-in declared.
    outSize = static_cast<int>(static_cast<double>(inSize) * m_MaxOutInRatio);
    return eNoErr;
}

int cALGORITHM::SetDelay(int delay) {
    m_Delay = delay;
    BUFFER_HEADER *chain = SetDelaySelf(delay);
    return SendAndFreeBuffers(chain, eExecSendBuffers, true);
}

int cALGORITHM::SetSideChainNum(std::uint32_t num) {
    m_SideChainNum = num;
    return eNoErr;
}

int cALGORITHM::SetMusicInfo(WCMusicInfo const &info) {
    m_MusicInfo = info;
    return eNoErr;
}

int cALGORITHM::SetTimeCodeData(void const *data) {
    if (data == nullptr)
        return eMemNullPointer;
    std::memcpy(&m_TimeCodeData, data, sizeof m_TimeCodeData);
    return eNoErr;
}

int cALGORITHM::SetTrimModeRatio(double ratio) {
    m_TrimModeRatio = ratio;
    return eNoErr;
}

int cALGORITHM::SetDisableHostInterruptPtr(int value) {
    m_HostInterruptDisable = value;
    return eNoErr;
}

int cALGORITHM::SetEnableHostInterruptPtr(int value) {
    m_HostInterruptEnable = value;
    return eNoErr;
}

int cALGORITHM::SetNoiseRatio(double ratio) {
    BUFFER_HEADER *chain = SetNoiseRatioSelf(ratio);
    return SendAndFreeBuffers(chain, eExecSendBuffers, true);
}

int cALGORITHM::TransportChange(WSTransportState const &state) {
    m_Transport = state;
    return TransportChangeSelf(state);
}

int cALGORITHM::UpdateHostTrackState(bool monitoring) {
    m_Monitoring = monitoring;
    return UpdateHostTrackStateSelf(monitoring);
}

int cALGORITHM::SetRedisKeyValue(char const *, char const *) {
    return m_pReporter == nullptr ? kErrRedisNotConnected : eNotImplemented;
}

// ---- meters and automation ------------------------------------------------------------------

int cALGORITHM::GetAutomationControlIndexByName(char const *name) const {
    return m_AutomationManager.GetControlIndexByName(name);
}

namespace {

// The lead parameter of automation control `index`, or null.
sCONTROL_PARAM const *LeadParam(cALGORITHM const &alg, std::int64_t index) {
    std::uint64_t id = 0;
    if (index < 0 || index > INT32_MAX ||
        alg.GetAutomationManager().ControlLeadParamID(static_cast<int>(index), id) != eNoErr)
        return nullptr;
    return alg.GetParam(id);
}

} // namespace

int cALGORITHM::ControlRealWorldValueFromState(std::int64_t index, double &inOut) const {
    sCONTROL_PARAM const *param = LeadParam(*this, index);
    if (param == nullptr)
        return eOutOfRangeNumber;
    inOut = param->StateToRealWorld(inOut);
    return eNoErr;
}

int cALGORITHM::ControlStateFromRealWorldValue(std::int64_t index, double &inOut) const {
    sCONTROL_PARAM const *param = LeadParam(*this, index);
    if (param == nullptr)
        return eOutOfRangeNumber;
    inOut = param->RealWorldToState(inOut);
    return eNoErr;
}

int cALGORITHM::GetPluginInfo_GetNextToggleState(std::int64_t id, std::int32_t &out) {
    sCONTROL_PARAM const *param = id >= 0 ? GetParam(static_cast<std::uint64_t>(id)) : nullptr;
    if (param == nullptr)
        return eOutOfRangeNumber;
    out = static_cast<std::int32_t>(std::lround(
        CToggle_X::NextState(param->GetState(m_ActiveSetup), param->GetStateStep(), false)));
    return eNoErr;
}

int cALGORITHM::GetPluginInfo_GetNextToggleStateByControlID(std::int64_t index,
                                                              std::int32_t &out) {
    std::uint64_t id = 0;
    if (LeadParam(*this, index) == nullptr ||
        m_AutomationManager.ControlLeadParamID(static_cast<int>(index), id) != eNoErr)
        return eOutOfRangeNumber;
    return GetPluginInfo_GetNextToggleState(static_cast<std::int64_t>(id), out);
}

int cALGORITHM::TranslateController(std::int64_t index, double state,
                                    WCFixedStringBase &text) const {
    sCONTROL_PARAM const *param = LeadParam(*this, index);
    if (param == nullptr || !(state >= 0.0 && state <= WCParam_Base::kMaxState))
        return eOutOfRangeNumber;
    param->FormatState(state, text);
    return eNoErr;
}

int cALGORITHM::TranslateTextToControlState(std::int64_t index, char const *text,
                                            double &state) {
    std::uint64_t id = 0;
    if (LeadParam(*this, index) == nullptr ||
        m_AutomationManager.ControlLeadParamID(static_cast<int>(index), id) != eNoErr)
        return eOutOfRangeNumber;
    double realWorld = 0.0;
    if (text == nullptr || TranslateTextToRealWorld(id, text, realWorld) != eTranslateTextOK)
        return eNotANumber;
    state = GetParam(id)->RealWorldToState(realWorld);
    return eNoErr;
}

int cALGORITHM::WriteDefaultPageTablesToXML(XML::CXMLElement *root, int pageSize) const {
    return m_AutomationManager.WriteDefaultPageTablesToXML(root, pageSize);
}

int cALGORITHM::WriteDefaultPageTablesDiscCtrlsToXML(XML::CXMLElement *root, int pageSize) const {
    return m_AutomationManager.WriteDefaultPageTablesDiscCtrlsToXML(root, pageSize);
}

int cALGORITHM::GetControlState(std::int64_t index, double &state) const {
    sCONTROL_PARAM const *param = LeadParam(*this, index);
    if (param == nullptr)
        return eOutOfRangeNumber;
    state = param->GetState(m_ActiveSetup);
    return eNoErr;
}

int cALGORITHM::GetAutomationControlResetState(std::int64_t index, double &state) const {
    sCONTROL_PARAM const *param = LeadParam(*this, index);
    if (param == nullptr)
        return eOutOfRangeNumber;
    state = param->RealWorldToState(param->GetResetValue());
    return eNoErr;
}

int cALGORITHM::SetAutomatableControlStr(char const *text, std::int64_t index) {
    MIREL_ASSERT_RETURN(text != nullptr, eMemNullPointer);
    if (index < 0 || index > INT32_MAX)
        return eOutOfRangeNumber;
    return m_AutomationManager.RenameAutomationControl(static_cast<int>(index), text);
}

// ---- resources ------------------------------------------------------------------------------

int cALGORITHM::ReadResourceToMemObj(char const *type, short id, Utils::WCStMemObj &out) const {
    if (GetContainer() == nullptr)
        return eRMContainerNotFound;
    return RM::GetRawResourceData(GetContainer(), WCResKey(type, id), out);
}

int cALGORITHM::GetPathToNativeProcessDLL(WCFixedStringBase &out) const {
    FM::WCStPath path;
    WCFixedString<63> name;
    const int err = GetNativeProcessDetails(GetCPUType(), path, name);
    if (err == eNoErr)
        out = path.GetPathString();
    return err;
}

int cALGORITHM::GetProcessCodeManagerMemObj(Utils::WCStMemObj &out) const {
    return ReadResourceToMemObj("ProcessXML", 1000, out);
}

int cALGORITHM::GetSubCompCategoryList(Utils::WCStMemObj &out) const {
    Utils::WCStMemObj bytes;
    const int err = ReadResourceToMemObj("DAEFlags", 1000, bytes);
    if (err != eNoErr)
        return err;
    pugi::xml_document doc;
    if (bytes.GetSize() == 0 || !doc.load_buffer(bytes.GetPtr(), bytes.GetSize(), kXMLParseFlags))
        return eXMLParserFailed;
    // The four characters of the sub-type, as the component-info filter compares them.
    WCFixedString<15> subComp;
    subComp << m_ComponentInfo.m_ComponentSubType;
    // Below the root, depth first, parent before children: the first element that names it.
    const pugi::xml_node found =
        doc.document_element().find_node([&subComp](pugi::xml_node const &candidate) {
            return std::strstr(candidate.attribute("SubComp").value(), subComp.c_str()) != nullptr;
        });
    if (!found)
        return eXMLElementMissing;
    std::ostringstream text;
    found.print(text, "", pugi::format_raw);
    const std::string xml = text.str();
    return out.Assign(xml.data(), xml.size());
}

MIREL_NAMESPACE_END
