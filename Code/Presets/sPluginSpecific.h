#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Code/Presets/WTPresetTypes.h"
#include "Utilities/XML/Code/CXMLable.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCStMemObj.h"
#include "core/WTErrors.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}

namespace Preset {

// A block of a plug-in's own data in one setup of a preset, kept under a tag name and id. The
// data is bytes in m_Data for every type but XMLObject, whose tree the block owns. Large blocks
// may live in side files beside the preset file: a data file (the block's text form, named from
// the template in m_DataFileName) and a cache file (the raw bytes, in the user cache), which is
// used while it is newer than both the preset file and the data file.
// Copies are deep. [main-thread] like the preset that holds it.
class sPluginSpecific : public CXMLable {
public:
    enum : std::uint32_t { eLoadWithParams = 1 };
    enum : std::uint32_t {
        eHasCacheFile = 1,
        eHasDataFile = 2,
        eLoadDataFileWithParams = 4,
    };

    sPluginSpecific() = default;
    sPluginSpecific(const sPluginSpecific &other);
    sPluginSpecific &operator=(const sPluginSpecific &other);
    sPluginSpecific(sPluginSpecific &&) noexcept = default;
    sPluginSpecific &operator=(sPluginSpecific &&) noexcept = default;
    ~sPluginSpecific() override;

    // Reads a whole "PluginSpecific" element, side files included; on failure the block is
    // left as it was.
    WTErr ReadFromXML(const XML::CXMLElement *const element) override;
    using CXMLable::ReadFromXML;
    // Attributes, "Flags", "Descriptors" and the attributes of "Data", without the data.
    WTErr ReadHeaderFromXML(const XML::CXMLElement *const element);
    // Fills `element` (named "PluginSpecific") and returns it. A block with a data file leaves
    // "Data" empty: WriteSideFiles writes the file.
    XML::CXMLElement *WriteToXML(XML::CXMLElement *element) const override;
    using CXMLable::WriteToXML;
    // Writes the data file, if the block has one, beside `presetFile`. [main-thread]
    WTErr WriteSideFiles(const FM::WCStPath &presetFile) const;

    // The data of one "Data" element: the cache if fresh, else the data file or the element's
    // text; then the cache is refreshed. Leaves the block as it was on failure.
    WTErr ReadFromXML_One_Data(const XML::CXMLElement *const dataElement);

    // The text form of the data as the type table gives it (numbers, text, Base64, tree).
    WTErr GetDataAsText(std::string &text) const;
    // The inverse; the block keeps its old data on failure.
    WTErr SetDataFromText(const std::string &text);

    // Same tag, id, type, data, tree and descriptors.
    bool IsSameData(const sPluginSpecific &other) const;

    // Side files; invalid paths when the block has none or no preset file.
    FM::WCStPath GetDataFilePath() const;
    FM::WCStPath GetCacheFilePath() const;

    std::uint32_t m_Flags = 0;
    WCFixedString<63> m_TagName;
    WCFixedString<63> m_MenuItemString;
    int m_TagID = 0;
    EPluginSpecificDataTypes m_DataType = ePSNoData;
    Utils::WCStMemObj m_Data;
    std::unique_ptr<XML::CXMLElement> m_XMLData;
    std::vector<WCFixedStringPair<63, 1023>> m_Descriptors;
    std::uint32_t m_StorageFlags = 0;
    WCFixedString<63> m_DataFileName;
    WCFixedString<63> m_CacheFileName;
    FM::WCStPath m_PresetFilePath;

private:
    FM::WCStPath SideFilePath(const WCFixedStringBase &nameTemplate) const;
};

} // namespace Preset

MIREL_NAMESPACE_END
