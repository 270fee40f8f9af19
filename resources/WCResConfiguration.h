#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "files/WCStPath.h"

MIREL_NAMESPACE_BEGIN

namespace RM {

// 64-bit FNV-1a over the text's bytes.
struct WUFNV1aHash {
    static constexpr std::uint64_t kOffsetBasis = 0xCBF29CE484222325ULL;
    static constexpr std::uint64_t kPrime = 0x100000001B3ULL;
    static std::uint64_t Hash(std::string_view text) noexcept {
        std::uint64_t hash = kOffsetBasis;
        for (const char ch : text) {
            hash ^= static_cast<unsigned char>(ch);
            hash *= kPrime;
        }
        return hash;
    }
    std::size_t operator()(const WCFixedStringBase &text) const noexcept {
        return static_cast<std::size_t>(Hash(text.view()));
    }
};

// The configuration of a bundle container, read once from its resources folder:
// - Redirection: "type/id.ext" to the path of the file
//   that stands in for it, relative to the type's folder;
// - Extensions: type to the extension of its files, with the dot;
// - Attributes: "type:id:name" to a value.
// "resource_config.yaml" holds the three maps at top level; without it "extensions.txt" and
// "attributes.txt" give the last two as whitespace-separated pairs. Keys and values are UTF-8,
// cut at the maps' lengths without splitting a character. Not locked: the owning container guards
// it.
class WCResConfiguration {
public:
    static constexpr const char *kYAMLFileName = "resource_config.yaml";
    static constexpr const char *kExtensionsFileName = "extensions.txt";
    static constexpr const char *kAttributesFileName = "attributes.txt";
    // A configuration file larger than this is refused as unreadable.
    static constexpr std::uint64_t kMaxFileSize = 4 << 20;

    using WTRedirectionMap =
        std::unordered_map<WCFixedString<255>, WCFixedString<255>, WUFNV1aHash>;
    using WTExtensionMap = std::unordered_map<WCFixedString<31>, WCFixedString<15>, WUFNV1aHash>;
    using WTAttributeMap = std::unordered_map<WCFixedString<63>, WCFixedString<127>, WUFNV1aHash>;

    // Reads the folder's files. The maps are replaced only by a whole, valid configuration: a
    // broken YAML file answers eRMInvalidResContainer and leaves every map empty (the text files
    // are not asked then). Unreadable text files leave their map empty and are not an error.
    int ReadFromFolder(const FM::WCStPath &resourcesFolder);
    // Parses the YAML text into new maps and swaps them in only on success. eRMInvalidResContainer
    // for text that is not YAML, a top level that is not a map, a named entry that is not a map
    // of scalars, or a scalar that is not UTF-8.
    int ReadFromYAML(const std::string &text);
    // Whitespace-separated pairs; a key without a value, or a pair that is not UTF-8, is dropped.
    static void ReadPairs(const std::string &text, WTExtensionMap &outMap);
    static void ReadPairs(const std::string &text, WTAttributeMap &outMap);
    // The three maps as a YAML document, keys sorted so the file is stable.
    std::string WriteToYAML() const;

    // Empty when the type has no extension.
    WCFixedString<15> GetExtension(const WCFixedStringBase &type) const;
    // Null when there is no entry.
    const WCFixedString<255> *FindRedirection(const WCFixedStringBase &typeSlashIDExt) const;
    const WCFixedString<127> *FindAttribute(const WCFixedStringBase &key) const;
    void SetAttribute(const WCFixedStringBase &key, const char *value);
    void SetExtension(const char *type, const char *extension);
    void SetRedirection(const char *typeSlashIDExt, const char *relativePath);
    void Clear();

    const WTRedirectionMap &Redirections() const noexcept { return m_Redirection; }
    const WTExtensionMap &Extensions() const noexcept { return m_Extensions; }
    const WTAttributeMap &Attributes() const noexcept { return m_Attributes; }

private:
    WTRedirectionMap m_Redirection;
    WTExtensionMap m_Extensions;
    WTAttributeMap m_Attributes;
};

} // namespace RM

MIREL_NAMESPACE_END
