#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The key/value store of one algorithm: facts that are not parameters (capabilities, counters,
// channel counts) under text keys. Keys are cut to 127 characters before every lookup, so two
// keys that differ only beyond that are one key. A value is stored as given or read through a
// function each time, so counters always read current. The store is the plain part of the
// instance's key/value service; export items and the JSON dump come with the parameter work.
// [main-thread], or under the algorithm's process lock.
class WCKeyValue {
public:
    using Value = std::variant<bool, std::int32_t, std::int64_t, std::uint32_t, std::uint64_t,
                               float, double, std::string>;
    using Key = WCFixedString<127>;

    void Set(char const *key, Value value);
    void SetFunc(char const *key, std::function<Value()> func);
    // Writes text under a key. A key that holds a boolean or a number keeps its type, so what a
    // tool types in reads back through the typed and binary forms; text that does not read as
    // that type is refused (-12 not a number, -13 trailing text, -14 negative for an unsigned
    // key, -19 out of range) and the old value stays. Any other key holds the text. Either way
    // the value written replaces a pointer or function the key was bound to.
    WTErr SetStr(char const *key, char const *text);
    // Writes bytes under a key. A key that holds a boolean or a number of exactly `size` bytes
    // keeps its type; any other key holds the bytes as a string. -4003 for null data.
    WTErr SetBinary(char const *key, void const *data, std::uint64_t size);
    bool Has(char const *key) const;
    std::optional<Value> Get(char const *key) const;
    void Clear() { m_values.clear(); }
    // The keys in their order, for dumps.
    std::vector<Key> Keys() const {
        std::vector<Key> keys;
        keys.reserve(m_values.size());
        for (auto const &entry : m_values)
            keys.push_back(entry.first);
        return keys;
    }
    std::size_t size() const { return m_values.size(); }

    // Reads a value converted to T, or `fallback` when absent; never stores anything.
    template <typename T>
    T GetAs(char const *key, T fallback) const;
    // Copies the value's bytes (1 for bool, 4 for the 32-bit types and float, 8 for the 64-bit
    // types and double, the length for a string) when they fit in `size`. -29 when absent, -30
    // when larger than `size`, -4003 for a null buffer.
    WTErr GetBinary(char const *key, void *buffer, std::uint64_t size) const;
    // The value as text; -29 when absent.
    WTErr GetStr(char const *key, WCFixedStringBase &out) const;

    static std::uint64_t ByteSize(Value const &value);

private:
    struct Entry {
        Value value;
        std::function<Value()> func;
        Value Current() const { return func ? func() : value; }
    };
    std::map<Key, Entry> m_values;
};

template <typename T>
T WCKeyValue::GetAs(char const *key, T fallback) const {
    const auto value = Get(key);
    if (!value)
        return fallback;
    return std::visit(
        [&](auto const &held) -> T {
            using H = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<H, std::string>) {
                if constexpr (std::is_same_v<T, std::string>) {
                    return held;
                } else {
                    WCFixedString<127> text(held);
                    T parsed = fallback;
                    text >> parsed;
                    return parsed;
                }
            } else if constexpr (std::is_same_v<T, std::string>) {
                WCFixedString<127> text;
                text << held;
                return std::string(text.c_str());
            } else if constexpr (std::is_same_v<T, bool>) {
                return held != H{};
            } else if constexpr (std::is_floating_point_v<H> && std::is_integral_v<T>) {
                // A number no T can hold saturates at T's end, and NaN has no integer at all;
                // a plain cast of either is undefined.
                if (std::isnan(held))
                    return fallback;
                if (held <= static_cast<H>(std::numeric_limits<T>::min()))
                    return std::numeric_limits<T>::min();
                if (held >= static_cast<H>(std::numeric_limits<T>::max()))
                    return std::numeric_limits<T>::max();
                return static_cast<T>(held);
            } else {
                return static_cast<T>(held);
            }
        },
        *value);
}

MIREL_NAMESPACE_END
