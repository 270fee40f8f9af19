#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Code/Algorithm/WCExportItems.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// The export items of one algorithm: values reachable by key, exactly or by pattern, the second
// layer behind the key/value store. Keys are cut to 127 characters like the store's. A missing
// item answers -29 (eValueNotFound). Owns its items. [main-thread]
class WCExportItemsContainer {
public:
    using Key = WCFixedString<127>;

    // Replaces an item of the same key. A null item is ignored.
    void add_item(char const *key, std::unique_ptr<WCExportItemBase> item);
    // A value that lives at `value`, readable and writable.
    template <typename T>
    void add_generic_item(char const *key, T *value) {
        add_item(key, std::make_unique<WCExportItem<T>>(value));
    }
    void add_item_pattern(char const *pattern, std::unique_ptr<WCExportItemPattern> item);
    void remove_item(char const *key);
    void remove_item_pattern(char const *pattern);

    // Exact keys first, then patterns in the order they were added; null when none answers.
    WCExportItemBase *get_item(char const *key) const;
    // The item when it can be set, else null.
    WCExportItemBase *get_set_item(char const *key) const;
    bool is_item_supported(char const *key) const { return get_item(key) != nullptr; }

    int get_value_binary(char const *key, void *buffer, std::uint64_t size) const;
    int set_value_binary(char const *key, void const *data, std::uint64_t size);
    int get_value_str(char const *key, WCFixedStringBase &out) const;
    int set_value_str(char const *key, char const *text);
    int get_value_info(char const *key, WTKeyValueType &type, std::uint64_t &size) const;

    // The exact keys and patterns, in key order then pattern order.
    std::vector<Key> keys() const;
    void clear();

private:
    std::map<Key, std::unique_ptr<WCExportItemBase>> m_items;
    std::vector<std::pair<Key, std::unique_ptr<WCExportItemPattern>>> m_patterns;
};

MIREL_NAMESPACE_END
