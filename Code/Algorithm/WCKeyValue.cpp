#include "Code/Algorithm/WCKeyValue.h"

#include <cstring>

MIREL_NAMESPACE_BEGIN

void WCKeyValue::Set(char const *key, Value value) {
    if (key == nullptr)
        return;
    m_values[Key(key)] = Entry{std::move(value), {}};
}

void WCKeyValue::SetFunc(char const *key, std::function<Value()> func) {
    if (key == nullptr || !func)
        return;
    m_values[Key(key)] = Entry{Value{}, std::move(func)};
}

bool WCKeyValue::Has(char const *key) const {
    return key != nullptr && m_values.find(Key(key)) != m_values.end();
}

std::optional<WCKeyValue::Value> WCKeyValue::Get(char const *key) const {
    if (key == nullptr)
        return std::nullopt;
    const auto found = m_values.find(Key(key));
    if (found == m_values.end())
        return std::nullopt;
    return found->second.Current();
}

std::uint64_t WCKeyValue::ByteSize(Value const &value) {
    return std::visit(
        [](auto const &held) -> std::uint64_t {
            using H = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<H, std::string>)
                return held.size();
            else
                return sizeof(H);
        },
        value);
}

WTErr WCKeyValue::GetBinary(char const *key, void *buffer, std::uint64_t size) const {
    const auto value = Get(key);
    if (!value)
        return eValueNotFound;
    const std::uint64_t bytes = ByteSize(*value);
    if (bytes > size)
        return eValueWrongSize;
    if (buffer == nullptr)
        return eMemNullPointer;
    std::visit(
        [&](auto const &held) {
            using H = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<H, std::string>)
                std::memcpy(buffer, held.data(), held.size());
            else
                std::memcpy(buffer, &held, sizeof(H));
        },
        *value);
    return eNoErr;
}

WTErr WCKeyValue::GetStr(char const *key, WCFixedStringBase &out) const {
    if (!Has(key))
        return eValueNotFound;
    out = GetAs<std::string>(key, std::string()).c_str();
    return eNoErr;
}

MIREL_NAMESPACE_END
