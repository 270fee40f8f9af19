// cALGORITHM: the typed forms of the key/value store, and its JSON dump.

#include <cmath>

#include <nlohmann/json.hpp>

#include "Code/Algorithm/cALGORITHM.h"
#include "core/WCStMemObj.h"

MIREL_NAMESPACE_BEGIN

namespace {

template <typename T>
void SetByPointer(WCKeyValue &store, char const *key, T *value) {
    if (value == nullptr)
        return;
    store.SetFunc(key, [value] { return WCKeyValue::Value(*value); });
}

template <typename T>
void SetByFunction(WCKeyValue &store, char const *key, std::function<T()> func) {
    if (!func)
        return;
    store.SetFunc(key, [func = std::move(func)] { return WCKeyValue::Value(func()); });
}

} // namespace

#define MIREL_KEY_VALUE_FORMS(T, NAME)                                                             \
    T cALGORITHM::GetPluginValue_##NAME(char const *key, T fallback) const {                       \
        return m_pKeyValues->GetAs<T>(key, fallback);                                              \
    }                                                                                              \
    void cALGORITHM::SetPluginValue_##NAME(char const *key, T value) {                             \
        m_pKeyValues->Set(key, value);                                                             \
    }                                                                                              \
    void cALGORITHM::SetPluginValue_##NAME##_ptr(char const *key, T *value) {                      \
        SetByPointer(*m_pKeyValues, key, value);                                                   \
    }                                                                                              \
    void cALGORITHM::SetPluginValue_##NAME##_func(char const *key, std::function<T()> func) {      \
        SetByFunction(*m_pKeyValues, key, std::move(func));                                        \
    }

MIREL_KEY_VALUE_FORMS(bool, bool)
MIREL_KEY_VALUE_FORMS(std::int32_t, int32_t)
MIREL_KEY_VALUE_FORMS(std::uint32_t, uint32_t)
MIREL_KEY_VALUE_FORMS(std::int64_t, int64_t)
MIREL_KEY_VALUE_FORMS(std::uint64_t, uint64_t)
MIREL_KEY_VALUE_FORMS(float, float)
MIREL_KEY_VALUE_FORMS(double, double)

#undef MIREL_KEY_VALUE_FORMS

std::string cALGORITHM::GetPluginValue_c_str(char const *key, char const *fallback) const {
    return m_pKeyValues->GetAs<std::string>(key, std::string(fallback != nullptr ? fallback : ""));
}

void cALGORITHM::SetPluginValue_c_str(char const *key, char const *value) {
    m_pKeyValues->Set(key, std::string(value != nullptr ? value : ""));
}

int cALGORITHM::SetPluginValueStr(char const *key, char const *text) {
    if (text == nullptr)
        return eMemNullPointer;
    if (key == nullptr)
        return eValueNotFound;
    if (m_ExportItems.is_item_supported(key))
        return m_ExportItems.set_value_str(key, text);
    return m_pKeyValues->SetStr(key, text);
}

int cALGORITHM::GetPluginValueInfo(char const *key, WTKeyValueType &type,
                                   std::uint64_t &size) const {
    if (const auto value = m_pKeyValues->Get(key)) {
        // The variant's order: bool, int32, int64, uint32, uint64, float, double, string.
        static constexpr WTKeyValueType kTypes[] = {
            eKeyValueBool,   eKeyValueInt32, eKeyValueInt64,  eKeyValueUInt32,
            eKeyValueUInt64, eKeyValueFloat, eKeyValueDouble, eKeyValueString};
        type = kTypes[value->index()];
        size = WCKeyValue::ByteSize(*value);
        return eNoErr;
    }
    return m_ExportItems.get_value_info(key, type, size);
}

int cALGORITHM::GetAllPluginValues(Utils::WCStMemObj &out) const {
    nlohmann::json doc = nlohmann::json::object();
    for (auto const &key : m_pKeyValues->Keys()) {
        const auto value = m_pKeyValues->Get(key.c_str());
        if (!value)
            continue;
        std::visit(
            [&](auto const &held) {
                using H = std::decay_t<decltype(held)>;
                if constexpr (std::is_floating_point_v<H>) {
                    // JSON has no infinities; a non-finite value is written as null.
                    if (std::isfinite(held))
                        doc[key.c_str()] = held;
                    else
                        doc[key.c_str()] = nullptr;
                } else {
                    doc[key.c_str()] = held;
                }
            },
            *value);
    }
    // Keys and strings come from anywhere; bytes that are not UTF-8 are replaced, not refused.
    const std::string text = doc.dump(1, ' ', false, nlohmann::json::error_handler_t::replace);
    return out.Assign(text.data(), text.size());
}

MIREL_NAMESPACE_END
