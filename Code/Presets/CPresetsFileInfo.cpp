#include "Code/Presets/CPresetsFileInfo.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

CPresetsFileInfo::CPresetsFileInfo(const FM::WCStPath &path, EPresetsFormat format,
                                   EPresetSection section)
    : FM::WCStPath(path), m_Section(section), m_Category(section), m_Format(format) {}

bool CPresetsFileInfo::IsValidPresetFile() const {
    const bool knownFormat = m_Format == ePresetsFormatResource ||
                             m_Format == ePresetsFormatXMLFile ||
                             m_Format == ePresetsFormatYAMLFile;
    return knownFormat && IsValid() && IsExist();
}

EPresetsFormat CPresetsFileInfo::SwitchFormat(int format) noexcept {
    if (format == ePresetsFormatOld1)
        return ePresetsFormatOld2;
    if (format == ePresetsFormatOld2)
        return ePresetsFormatOld1;
    return ePresetsFormatUnknown;
}

void CPresetsFileInfo::FileInfoDefaults() noexcept {
    m_ReadOnly = 0;
    m_Section = ePresetSectionNone;
    m_Category = ePresetSectionNone;
    m_Format = ePresetsFormatUnknown;
    m_XMLString.clear();
}

} // namespace Preset

MIREL_NAMESPACE_END
