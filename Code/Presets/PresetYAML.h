#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCVersion.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// The .yps form of a preset: a block-style YAML map whose keys say whose preset it is, then the
// plug-in's own keys, then the host chunk text as a literal block. One file may be shared by all
// plug-ins (the clipboard), so it names its generic type and maker. [any-thread]

inline constexpr const char *kPresetVendorName = "Mirel";

struct WSYAMLPresetHeader {
    WCFourCC m_GenericType = WCFourCC::Unreadable();
    WCFixedString<127> m_PluginName;
    WCFixedString<15> m_PluginSubComp;
    WCVersion m_PluginVersion;
    WCFixedString<63> m_VendorName{kPresetVendorName};
    // The plug-in's own keys, in order, scalars only; on reading every key beside the fixed ones.
    std::vector<std::pair<std::string, std::string>> m_PluginKeys;
};

// The file text: "GenericType", "PluginName", "PluginSubComp", "PluginVersion" (four fields),
// "VendorName", the plug-in's keys, "ChunkData".
WTErr PrepareYAMLPresetString(const WSYAMLPresetHeader &header, const std::string &chunk,
                              std::string &text);
// Written atomically, a new file with mode rw-rw-rw- less the umask, since the clipboard file is
// shared by every user's plug-ins.
WTErr WriteYAMLPresetFile(const FM::WCStPath &path, const std::string &text);

// The chunk of a .yps text. The document must be a map whose "VendorName" is exactly "Mirel"
// (kErrForeignPresetVendor otherwise) and whose "ChunkData" is a scalar; anything else, a YAML
// error included, is ePresetFileProblem. `chunk` and `header` change on success only.
WTErr GetDataChunkFromYAMLPresetText(const std::string &text, std::string &chunk,
                                     WSYAMLPresetHeader *header = nullptr);
WTErr GetDataChunkFromYAMLPresetFile(const FM::WCStPath &path, std::string &chunk,
                                     WSYAMLPresetHeader *header = nullptr);

} // namespace Preset

MIREL_NAMESPACE_END
