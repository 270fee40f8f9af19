#pragma once

#include <cstdint>
#include <string>

#include "Code/Presets/WTPresetTypes.h"
#include "core/MirelNamespace.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

// Where presets live: a file or a bundle (the path), its section, the category it shows under in
// the load menu, and its format; the in-memory format keeps its XML text here. A value; copies
// are plain. [main-thread]
class CPresetsFileInfo : public FM::WCStPath {
public:
    CPresetsFileInfo() = default;
    explicit CPresetsFileInfo(const FM::WCStPath &path,
                              EPresetsFormat format = ePresetsFormatUnknown,
                              EPresetSection section = ePresetSectionNone);

    // The path exists and the format is a resource, an .xps or a .yps file.
    bool IsValidPresetFile() const;
    // Formats 3 to 6.
    static bool IsFileFormatSupported(int format) noexcept { return format >= 3 && format <= 6; }
    bool IsFileFormatSupported() const noexcept { return IsFileFormatSupported(m_Format); }
    // Formats 2 to 6.
    static bool IsValidFormat(int format) noexcept { return format >= 2 && format <= 6; }
    // The two old formats swap; anything else is unknown.
    static EPresetsFormat SwitchFormat(int format) noexcept;
    // Asked of the path.
    bool IsLocked() const { return WCStPath::IsLocked(); }
    bool IsWritable() const { return WCStPath::IsWritable(); }

    // Resets the fields of this class; the path stays.
    void FileInfoDefaults() noexcept;

    std::int32_t m_ReadOnly = 0;
    EPresetSection m_Section = ePresetSectionNone;
    EPresetSection m_Category = ePresetSectionNone;
    EPresetsFormat m_Format = ePresetsFormatUnknown;
    std::string m_XMLString;
};

} // namespace Preset

MIREL_NAMESPACE_END
