// cALGORITHM: the "cALGORITHM" elements of the algorithm XML.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "Code/Algorithm/cALGORITHM.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Elements whose presence alone sets the key of the same name to true.
constexpr char const *kFlagElements[] = {"NeedProcessThreadSafe",
                                         "IsTempoListener",
                                         "IsStickyTouch",
                                         "IsMidiListener",
                                         "IsMidiRealtime",
                                         "IsMidiBroadcaster",
                                         "IsTrackInfoListener",
                                         "IsBeatInfoListener",
                                         "CanProcessVarIO",
                                         "DoesntExportFactoryPresets",
                                         "DontSuspendProcess",
                                         "IsDragAndDropEnabled",
                                         "IsNKSSupport",
                                         "UsesPluginCommunication",
                                         "IsSampleBased",
                                         "NeedOwnAutomationThread",
                                         "NeedIdleAutomationQueueForDynamicLatencyChange",
                                         "TreatDynamicPresetsAsFactoryPresets",
                                         "IsNotBypassable",
                                         "AvidControlSurfacesSupported",
                                         "ReadPresetsFromExternalDirectory",
                                         "UsesProcessFunctionInAlg",
                                         "UsesVecLibSetup",
                                         "DontLoadDefaultPreset",
                                         "IsVirtualInstrument",
                                         "ConstraintAlwaysProcess"};

constexpr unsigned int kParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                     pugi::parse_wconv_attribute | pugi::parse_trim_pcdata |
                                     pugi::parse_embed_pcdata;

// The compatibility lists name each code once; the component's own sub-type is already in.
void AddOnce(std::vector<WCFourCC> &codes, WCFourCC code) {
    if (std::find(codes.begin(), codes.end(), code) == codes.end())
        codes.push_back(code);
}

long long ParseInteger(char const *text, long long min, long long max, long long fallback) {
    char *end = nullptr;
    const long long value = std::strtoll(text, &end, 10);
    if (end == text)
        return fallback;
    return std::clamp(value, min, max);
}

} // namespace

int cALGORITHM::ReadAlgXMLFromText(char const *text, std::uint64_t size) {
    pugi::xml_document doc;
    if (text == nullptr || size == 0)
        m_AlgXMLError = eRMResNotFound;
    else if (!doc.load_buffer(text, size, kParseFlags))
        m_AlgXMLError = eXMLParserFailed;
    else
        m_AlgXMLError = ReadFromXML(doc.document_element());
    return m_AlgXMLError;
}

WTErr cALGORITHM::ReadFromXML(pugi::xml_node const &root) {
    int err = eNoErr;
    for (pugi::xml_node element : root.children("cALGORITHM")) {
        const int one = Read_cALGORITHM_Element_FromXML(element);
        if (err == eNoErr)
            err = one;
    }
    if (err == eNoErr)
        err = ReadAlgXMLSelf();
    return err;
}

int cALGORITHM::Read_cALGORITHM_Element_FromXML(pugi::xml_node const &element) {
    for (pugi::xml_node child : element.children()) {
        char const *tag = child.name();
        char const *text = child.text().get();
        if (std::strcmp(tag, "AlgName") == 0) {
            SetAlgName(text);
        } else if (std::strcmp(tag, "AlgNameList") == 0) {
            for (pugi::xml_node name : child.children("Name")) {
                std::int64_t const numChars = name.attribute("NumChars").as_llong();
                if (numChars > 0)
                    m_AbbreviatedNames.emplace_back(numChars, name.text().get());
            }
        } else if (std::strcmp(tag, "UserManualName") == 0) {
            m_UserManualName = text;
        } else if (std::strcmp(tag, "PresetCompatibleType") == 0) {
            AddOnce(m_PresetCompatibleTypes, WCFourCC::FromText(text));
        } else if (std::strcmp(tag, "PresetCompatibleSubComp") == 0) {
            AddOnce(m_PresetCompatibleSubComps, WCFourCC::FromText(text));
        } else if (std::strcmp(tag, "AlgType") == 0) {
            m_AlgType = WCFourCC::FromText(text);
            AddOnce(m_PresetCompatibleTypes, m_AlgType);
        } else if (std::strcmp(tag, "UndoLevel") == 0) {
            m_UndoLevel = static_cast<std::uint64_t>(
                ParseInteger(text, 0, 1000000, static_cast<long long>(m_UndoLevel)));
        } else if (std::strcmp(tag, "UndoTypePreset") == 0) {
            m_pKeyValues->Set("UndoTypePreset", true);
        } else if (std::strcmp(tag, "PresetXMLResID") == 0) {
            m_PresetResourceNumber =
                static_cast<short>(ParseInteger(text, -32768, 32767, m_PresetResourceNumber));
        } else if (std::strcmp(tag, "OptimalRefreshRate") == 0) {
            m_OptimalRefreshRate = static_cast<std::uint32_t>(
                ParseInteger(text, 1, 1000, static_cast<long long>(m_OptimalRefreshRate)));
        } else if (std::strcmp(tag, "DontNotifyPresetLoadedToHost") == 0) {
            // The one negative flag: its presence stores false under the positive name.
            m_pKeyValues->Set("NotifyPresetLoadedToHost", false);
        } else {
            for (char const *flag : kFlagElements) {
                if (std::strcmp(tag, flag) == 0) {
                    m_pKeyValues->Set(flag, true);
                    break;
                }
            }
        }
    }
    if (m_UserManualName.empty())
        m_UserManualName = m_AlgName;
    return eNoErr;
}

MIREL_NAMESPACE_END
