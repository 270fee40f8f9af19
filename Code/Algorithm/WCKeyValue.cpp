#include "Code/Algorithm/WCKeyValue.h"

#include <cstring>
#include <type_traits>

#include "Code/Algorithm/WCExportItems.h"

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

WTErr WCKeyValue::SetStr(char const *key, char const *text) {
    if (text == nullptr)
        return eMemNullPointer;
    if (key == nullptr)
        return eValueNotFound;
    const auto found = m_values.find(Key(key));
    const Value current = found != m_values.end() ? found->second.Current() : Value(std::string());
    if (std::holds_alternative<std::string>(current)) {
        Set(key, std::string(text));
        return eNoErr;
    }
    return std::visit(
        [&](auto const &held) -> WTErr {
            using H = std::decay_t<decltype(held)>;
            H parsed{};
            if constexpr (!std::is_same_v<H, std::string>) {
                const WTErr err = ExportItemDetail::ParseWhole(text, parsed);
                if (err != eNoErr)
                    return err;
            }
            found->second = Entry{Value(parsed), {}};
            return eNoErr;
        },
        current);
}

WTErr WCKeyValue::SetBinary(char const *key, void const *data, std::uint64_t size) {
    if (data == nullptr)
        return eMemNullPointer;
    if (key == nullptr)
        return eValueNotFound;
    const auto found = m_values.find(Key(key));
    if (found != m_values.end()) {
        const Value current = found->second.Current();
        if (!std::holds_alternative<std::string>(current) && ByteSize(current) == size) {
            std::visit(
                [&](auto const &held) {
                    using H = std::decay_t<decltype(held)>;
                    H value{};
                    if constexpr (std::is_same_v<H, bool>)
                        value = *static_cast<unsigned char const *>(data) != 0;
                    else if constexpr (!std::is_same_v<H, std::string>)
                        std::memcpy(&value, data, sizeof value);
                    found->second = Entry{Value(value), {}};
                },
                current);
            return eNoErr;
        }
    }
    Set(key, std::string(static_cast<char const *>(data), size));
    return eNoErr;
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
