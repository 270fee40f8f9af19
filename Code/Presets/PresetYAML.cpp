#include "Code/Presets/PresetYAML.h"

#include <exception>
#include <yaml-cpp/yaml.h>

#include "Code/Presets/WTPresetTypes.h"
#include "Code/Presets/WUPresetFiles.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kFixedKeys[] = {"GenericType",   "PluginName", "PluginSubComp",
                                      "PluginVersion", "VendorName", "ChunkData"};

bool IsFixedKey(const std::string &key) noexcept {
    for (const char *fixed : kFixedKeys) {
        if (key == fixed)
            return true;
    }
    return false;
}

std::string ScalarOr(const YAML::Node &root, const char *key) {
    const YAML::Node node = root[key];
    return node && node.IsScalar() ? node.Scalar() : std::string();
}

} // namespace

WTErr PrepareYAMLPresetString(const WSYAMLPresetHeader &header, const std::string &chunk,
                              std::string &text) {
    try {
        YAML::Emitter out;
        out << YAML::BeginMap;
        out << YAML::Key << "GenericType" << YAML::Value
            << header.m_GenericType.GetString().c_str();
        out << YAML::Key << "PluginName" << YAML::Value << header.m_PluginName.c_str();
        out << YAML::Key << "PluginSubComp" << YAML::Value << header.m_PluginSubComp.c_str();
        out << YAML::Key << "PluginVersion" << YAML::Value
            << header.m_PluginVersion.GetString(4).c_str();
        out << YAML::Key << "VendorName" << YAML::Value << header.m_VendorName.c_str();
        for (const auto &[key, value] : header.m_PluginKeys) {
            if (!IsFixedKey(key))
                out << YAML::Key << key << YAML::Value << value;
        }
        out << YAML::Key << "ChunkData" << YAML::Value << YAML::Literal << chunk;
        out << YAML::EndMap;
        if (!out.good())
            return ePresetFileProblem;
        std::string written(out.c_str(), out.size());
        if (written.empty() || written.back() != '\n')
            written += '\n';
        text.swap(written);
        return eNoErr;
    } catch (const std::exception &) {
        return ePresetFileProblem;
    }
}

WTErr WriteYAMLPresetFile(const FM::WCStPath &path, const std::string &text) {
    return WritePresetFileBytes(path, text.data(), text.size(), 0666);
}

WTErr GetDataChunkFromYAMLPresetText(const std::string &text, std::string &chunk,
                                     WSYAMLPresetHeader *header) {
    try {
        const YAML::Node root = YAML::Load(text);
        if (!root.IsMap())
            return ePresetFileProblem;
        const YAML::Node vendor = root["VendorName"];
        if (!vendor || !vendor.IsScalar())
            return ePresetFileProblem;
        if (vendor.Scalar() != kPresetVendorName)
            return kErrForeignPresetVendor;
        const YAML::Node data = root["ChunkData"];
        if (!data || !data.IsScalar())
            return ePresetFileProblem;
        if (header != nullptr) {
            WSYAMLPresetHeader read;
            read.m_GenericType = WCFourCC::FromText(ScalarOr(root, "GenericType").c_str());
            read.m_PluginName = ScalarOr(root, "PluginName").c_str();
            read.m_PluginSubComp = ScalarOr(root, "PluginSubComp").c_str();
            read.m_PluginVersion.ReadFromString(ScalarOr(root, "PluginVersion").c_str());
            read.m_VendorName = vendor.Scalar().c_str();
            for (const auto &entry : root) {
                if (!entry.first.IsScalar() || IsFixedKey(entry.first.Scalar()))
                    continue;
                read.m_PluginKeys.emplace_back(
                    entry.first.Scalar(), entry.second.IsScalar() ? entry.second.Scalar() : "");
            }
            *header = std::move(read);
        }
        chunk = data.Scalar();
        return eNoErr;
    } catch (const std::exception &) {
        return ePresetFileProblem;
    }
}

WTErr GetDataChunkFromYAMLPresetFile(const FM::WCStPath &path, std::string &chunk,
                                     WSYAMLPresetHeader *header) {
    std::string text;
    if (const WTErr error = ReadPresetFileText(path, text); error != eNoErr)
        return error;
    return GetDataChunkFromYAMLPresetText(text, chunk, header);
}

} // namespace Preset

MIREL_NAMESPACE_END
