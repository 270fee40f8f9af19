#include "resources/WCResConfiguration.h"

#include <algorithm>
#include <exception>
#include <sstream>
#include <vector>
#include <yaml-cpp/yaml.h>

#include "files/WCStFile.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

namespace {

// Whether the bytes are well-formed UTF-8 (no overlong forms, surrogates or values past U+10FFFF)
// free of noncharacters, which the YAML emitter would write back as U+FFFD.
bool IsUTF8(std::string_view text) {
    const auto *p = reinterpret_cast<const unsigned char *>(text.data());
    const auto *end = p + text.size();
    while (p < end) {
        const unsigned char lead = *p++;
        if (lead < 0x80)
            continue;
        int more = 0;
        std::uint32_t value = 0;
        if (lead >= 0xC2 && lead <= 0xDF) {
            more = 1;
            value = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            more = 2;
            value = lead & 0x0F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            more = 3;
            value = lead & 0x07;
        } else {
            return false;
        }
        if (end - p < more)
            return false;
        for (int i = 0; i < more; ++i, ++p) {
            if ((*p & 0xC0) != 0x80)
                return false;
            value = (value << 6) | (*p & 0x3F);
        }
        if ((more == 2 && (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF))) ||
            (more == 3 && (value < 0x10000 || value > 0x10FFFF)))
            return false;
        if ((value & 0xFFFE) == 0xFFFE || (value >= 0xFDD0 && value <= 0xFDEF))
            return false;
    }
    return true;
}

// The longest prefix of at most `limit` bytes that does not split a character.
std::string_view CutUTF8(std::string_view text, std::size_t limit) {
    if (text.size() <= limit)
        return text;
    std::size_t cut = limit;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        --cut;
    return text.substr(0, cut);
}

// Enters one pair, cut to the map's lengths at character boundaries; false for text that is not
// UTF-8 (or holds a zero byte), which the configuration could not write back as it was read.
template <class Map>
bool EnterPair(std::string_view key, std::string_view value, Map &outMap) {
    if (!IsUTF8(key) || !IsUTF8(value) || key.find('\0') != std::string_view::npos ||
        value.find('\0') != std::string_view::npos)
        return false;
    typename Map::key_type fixedKey;
    typename Map::mapped_type fixedValue;
    fixedKey = CutUTF8(key, fixedKey.capacity());
    fixedValue = CutUTF8(value, fixedValue.capacity());
    outMap[fixedKey] = fixedValue;
    return true;
}

// Reads a whole small file; false when it is missing, too large or unreadable.
bool ReadSmallFile(const FM::WCStPath &path, std::string &outText) {
    if (!path.IsFile())
        return false;
    std::uint64_t size = 0;
    if (path.GetFileSize(size) != eNoErr || size > WCResConfiguration::kMaxFileSize)
        return false;
    FM::WCStFileRead file(path);
    if (!file.IsValid())
        return false;
    return file.ReadToStdString(outText) == eNoErr;
}

// Copies the scalar pairs of one named top-level map; throws the code for a wrong shape.
template <class Map>
void ReadYAMLMap(const YAML::Node &root, const char *name, Map &outMap) {
    const YAML::Node node = root[name];
    if (!node || node.IsNull())
        return;
    if (!node.IsMap())
        throw int(eRMInvalidResContainer);
    for (const auto &entry : node) {
        if (!entry.first.IsScalar() || !entry.second.IsScalar() ||
            !EnterPair(entry.first.Scalar(), entry.second.Scalar(), outMap))
            throw int(eRMInvalidResContainer);
    }
}

template <class Map>
void ReadPairsInto(const std::string &text, Map &outMap) {
    std::istringstream stream(text);
    std::string key;
    std::string value;
    while (stream >> key >> value)
        (void)EnterPair(key, value, outMap);
}

// Quoted throughout: plain scalars would lose control characters and trailing blanks.
template <class Map>
void EmitSorted(YAML::Emitter &out, const char *name, const Map &map) {
    if (map.empty())
        return;
    std::vector<std::pair<std::string, std::string>> sorted;
    sorted.reserve(map.size());
    for (const auto &[key, value] : map)
        sorted.emplace_back(std::string(key.view()), std::string(value.view()));
    std::sort(sorted.begin(), sorted.end());
    out << YAML::Key << name << YAML::Value << YAML::BeginMap;
    for (const auto &[key, value] : sorted)
        out << YAML::Key << YAML::DoubleQuoted << key << YAML::Value << YAML::DoubleQuoted << value;
    out << YAML::EndMap;
}

} // namespace

int WCResConfiguration::ReadFromFolder(const FM::WCStPath &resourcesFolder) {
    Clear();
    const FM::WCStPath yamlPath(resourcesFolder, kYAMLFileName);
    if (yamlPath.IsExist()) {
        std::string text;
        if (!ReadSmallFile(yamlPath, text))
            return eRMInvalidResContainer;
        return ReadFromYAML(text);
    }
    std::string text;
    if (ReadSmallFile(FM::WCStPath(resourcesFolder, kExtensionsFileName), text))
        ReadPairs(text, m_Extensions);
    text.clear();
    if (ReadSmallFile(FM::WCStPath(resourcesFolder, kAttributesFileName), text))
        ReadPairs(text, m_Attributes);
    return eNoErr;
}

int WCResConfiguration::ReadFromYAML(const std::string &text) {
    WTRedirectionMap redirection;
    WTExtensionMap extensions;
    WTAttributeMap attributes;
    try {
        const YAML::Node root = YAML::Load(text);
        // An empty file is a configuration with nothing in it.
        if (root.IsDefined() && !root.IsNull()) {
            if (!root.IsMap())
                return eRMInvalidResContainer;
            ReadYAMLMap(root, "Redirection", redirection);
            ReadYAMLMap(root, "Extensions", extensions);
            ReadYAMLMap(root, "Attributes", attributes);
        }
    } catch (int err) {
        return err;
    } catch (const std::exception &) {
        return eRMInvalidResContainer;
    }
    m_Redirection.swap(redirection);
    m_Extensions.swap(extensions);
    m_Attributes.swap(attributes);
    return eNoErr;
}

void WCResConfiguration::ReadPairs(const std::string &text, WTExtensionMap &outMap) {
    ReadPairsInto(text, outMap);
}

void WCResConfiguration::ReadPairs(const std::string &text, WTAttributeMap &outMap) {
    ReadPairsInto(text, outMap);
}

std::string WCResConfiguration::WriteToYAML() const {
    YAML::Emitter out;
    out << YAML::BeginMap;
    EmitSorted(out, "Redirection", m_Redirection);
    EmitSorted(out, "Extensions", m_Extensions);
    EmitSorted(out, "Attributes", m_Attributes);
    out << YAML::EndMap;
    std::string text(out.c_str());
    text += '\n';
    return text;
}

WCFixedString<15> WCResConfiguration::GetExtension(const WCFixedStringBase &type) const {
    const auto found = m_Extensions.find(WCFixedString<31>(type));
    return found == m_Extensions.end() ? WCFixedString<15>() : found->second;
}

const WCFixedString<255> *
WCResConfiguration::FindRedirection(const WCFixedStringBase &typeSlashIDExt) const {
    const auto found = m_Redirection.find(WCFixedString<255>(typeSlashIDExt));
    return found == m_Redirection.end() ? nullptr : &found->second;
}

const WCFixedString<127> *WCResConfiguration::FindAttribute(const WCFixedStringBase &key) const {
    const auto found = m_Attributes.find(WCFixedString<63>(key));
    return found == m_Attributes.end() ? nullptr : &found->second;
}

void WCResConfiguration::SetAttribute(const WCFixedStringBase &key, const char *value) {
    m_Attributes[WCFixedString<63>(key)] = WCFixedString<127>(value);
}

void WCResConfiguration::SetExtension(const char *type, const char *extension) {
    m_Extensions[WCFixedString<31>(type)] = WCFixedString<15>(extension);
}

void WCResConfiguration::SetRedirection(const char *typeSlashIDExt, const char *relativePath) {
    m_Redirection[WCFixedString<255>(typeSlashIDExt)] = WCFixedString<255>(relativePath);
}

void WCResConfiguration::Clear() {
    m_Redirection.clear();
    m_Extensions.clear();
    m_Attributes.clear();
}

} // namespace RM

MIREL_NAMESPACE_END
