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
        if (!entry.first.IsScalar() || !entry.second.IsScalar())
            throw int(eRMInvalidResContainer);
        outMap[typename Map::key_type(entry.first.Scalar())] =
            typename Map::mapped_type(entry.second.Scalar());
    }
}

template <class Map>
void ReadPairsInto(const std::string &text, Map &outMap) {
    std::istringstream stream(text);
    std::string key;
    std::string value;
    while (stream >> key >> value)
        outMap[typename Map::key_type(key)] = typename Map::mapped_type(value);
}

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
        out << YAML::Key << key << YAML::Value << value;
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
