#include "Code/Algorithm/WCExportItemsContainer.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

MIREL_NAMESPACE_BEGIN

// ---- the base: every operation an item does not support ------------------------------------

int WCExportItemBase::get_value_binary(char const *, void *, std::uint64_t) const {
    return eNotImplemented;
}
int WCExportItemBase::set_value_binary(char const *, void const *, std::uint64_t) {
    return eNotImplemented;
}
int WCExportItemBase::get_value_str(char const *, WCFixedStringBase &) const {
    return eNotImplemented;
}
int WCExportItemBase::set_value_str(char const *, char const *) {
    return eNotImplemented;
}
int WCExportItemBase::get_value_info(char const *, WTKeyValueType &, std::uint64_t &) const {
    return eNotImplemented;
}

// ---- calling the algorithm ------------------------------------------------------------------

int WCExportItem_call_alg_get_func_with_const_char::get_value_binary(char const *key, void *buffer,
                                                                     std::uint64_t size) const {
    WCFixedString<1023> text;
    const int err = get_value_str(key, text);
    if (err != eNoErr)
        return err;
    if (size != text.size())
        return eValueWrongSize;
    if (buffer == nullptr)
        return eMemNullPointer;
    std::memcpy(buffer, text.c_str(), text.size());
    return eNoErr;
}

int WCExportItem_call_alg_get_func_with_const_char::get_value_str(char const *,
                                                                  WCFixedStringBase &out) const {
    return m_getter ? m_getter(out) : eNotImplemented;
}

int WCExportItem_call_alg_get_func_with_const_char::get_value_info(char const *key,
                                                                   WTKeyValueType &type,
                                                                   std::uint64_t &size) const {
    WCFixedString<1023> text;
    const int err = get_value_str(key, text);
    if (err != eNoErr)
        return err;
    type = eKeyValueString;
    size = text.size();
    return eNoErr;
}

int WCExportItem_call_alg_set_func_with_const_char::set_value_binary(char const *key,
                                                                     void const *data,
                                                                     std::uint64_t size) {
    if (data == nullptr)
        return eMemNullPointer;
    const WCFixedString<1023> text(static_cast<char const *>(data), size);
    return set_value_str(key, text.c_str());
}

int WCExportItem_call_alg_set_func_with_const_char::set_value_str(char const *, char const *text) {
    if (text == nullptr)
        return eMemNullPointer;
    return m_setter ? m_setter(text) : eNotImplemented;
}

int WCExportItem_call_alg_set_func_with_const_char::get_value_info(char const *,
                                                                   WTKeyValueType &type,
                                                                   std::uint64_t &size) const {
    type = eKeyValueString;
    size = 0;
    return eNoErr;
}

// ---- the list of keys -----------------------------------------------------------------------

int WCExportItem_keys::get_value_str(char const *, WCFixedStringBase &out) const {
    out.clear();
    for (auto const &key : m_container.keys()) {
        if (!out.empty())
            out << '\n';
        out << key;
    }
    return eNoErr;
}

int WCExportItem_keys::get_value_info(char const *key, WTKeyValueType &type,
                                      std::uint64_t &size) const {
    WCFixedString<4095> text;
    get_value_str(key, text);
    type = eKeyValueString;
    size = text.size();
    return eNoErr;
}

// ---- patterns -------------------------------------------------------------------------------

char const *WCExportItemPattern::Argument(char const *key, char const *pattern) {
    const std::size_t length = std::strlen(pattern);
    if (key == nullptr || std::strncmp(key, pattern, length) != 0)
        return nullptr;
    if (key[length] == 0)
        return key + length;
    if (key[length] != ':')
        return nullptr;
    return key + length + 1;
}

int WCExportItem_ControlRealWorldToState::Convert(char const *key, double &state) const {
    char const *argument = Argument(key, kPattern);
    if (argument == nullptr || *argument == 0 || !m_converter)
        return eValueNotFound;
    char *end = nullptr;
    errno = 0;
    const long long control = std::strtoll(argument, &end, 10);
    if (end == argument || *end != ':' || errno != 0)
        return eValueNotFound;
    char const *valueText = end + 1;
    const double value = std::strtod(valueText, &end);
    if (end == valueText || !std::isfinite(value))
        return eValueNotFound;
    state = value;
    return m_converter(control, state);
}

int WCExportItem_ControlRealWorldToState::get_value_binary(char const *key, void *buffer,
                                                           std::uint64_t size) const {
    if (size != sizeof(double))
        return eValueWrongSize;
    if (buffer == nullptr)
        return eMemNullPointer;
    double state = 0.0;
    const int err = Convert(key, state);
    if (err == eNoErr)
        std::memcpy(buffer, &state, sizeof state);
    return err;
}

int WCExportItem_ControlRealWorldToState::get_value_str(char const *key,
                                                        WCFixedStringBase &out) const {
    double state = 0.0;
    const int err = Convert(key, state);
    if (err == eNoErr)
        ExportItemDetail::Print(state, out);
    return err;
}

int WCExportItem_ControlRealWorldToState::get_value_info(char const *, WTKeyValueType &type,
                                                         std::uint64_t &size) const {
    type = eKeyValueDouble;
    size = sizeof(double);
    return eNoErr;
}

// ---- the container --------------------------------------------------------------------------

void WCExportItemsContainer::add_item(char const *key, std::unique_ptr<WCExportItemBase> item) {
    if (key == nullptr || !item)
        return;
    m_items[Key(key)] = std::move(item);
}

void WCExportItemsContainer::add_item_pattern(char const *pattern,
                                              std::unique_ptr<WCExportItemPattern> item) {
    if (pattern == nullptr || !item)
        return;
    remove_item_pattern(pattern);
    m_patterns.emplace_back(Key(pattern), std::move(item));
}

void WCExportItemsContainer::remove_item(char const *key) {
    if (key != nullptr)
        m_items.erase(Key(key));
}

void WCExportItemsContainer::remove_item_pattern(char const *pattern) {
    if (pattern == nullptr)
        return;
    const Key cut(pattern);
    std::erase_if(m_patterns, [&](auto const &entry) { return entry.first == cut; });
}

WCExportItemBase *WCExportItemsContainer::get_item(char const *key) const {
    if (key == nullptr)
        return nullptr;
    const Key cut(key);
    if (auto found = m_items.find(cut); found != m_items.end())
        return found->second.get();
    for (auto const &[pattern, item] : m_patterns) {
        if (WCExportItemPattern::Argument(cut.c_str(), pattern.c_str()) != nullptr)
            return item.get();
    }
    return nullptr;
}

WCExportItemBase *WCExportItemsContainer::get_set_item(char const *key) const {
    WCExportItemBase *item = get_item(key);
    return item != nullptr && item->is_settable() ? item : nullptr;
}

int WCExportItemsContainer::get_value_binary(char const *key, void *buffer,
                                             std::uint64_t size) const {
    WCExportItemBase *item = get_item(key);
    return item == nullptr ? eValueNotFound
                           : item->get_value_binary(Key(key).c_str(), buffer, size);
}

int WCExportItemsContainer::set_value_binary(char const *key, void const *data,
                                             std::uint64_t size) {
    WCExportItemBase *item = get_item(key);
    return item == nullptr ? eValueNotFound : item->set_value_binary(Key(key).c_str(), data, size);
}

int WCExportItemsContainer::get_value_str(char const *key, WCFixedStringBase &out) const {
    WCExportItemBase *item = get_item(key);
    return item == nullptr ? eValueNotFound : item->get_value_str(Key(key).c_str(), out);
}

int WCExportItemsContainer::set_value_str(char const *key, char const *text) {
    WCExportItemBase *item = get_item(key);
    return item == nullptr ? eValueNotFound : item->set_value_str(Key(key).c_str(), text);
}

int WCExportItemsContainer::get_value_info(char const *key, WTKeyValueType &type,
                                           std::uint64_t &size) const {
    WCExportItemBase *item = get_item(key);
    return item == nullptr ? eValueNotFound : item->get_value_info(Key(key).c_str(), type, size);
}

std::vector<WCExportItemsContainer::Key> WCExportItemsContainer::keys() const {
    std::vector<Key> result;
    for (auto const &entry : m_items)
        result.push_back(entry.first);
    for (auto const &entry : m_patterns)
        result.push_back(entry.first);
    return result;
}

void WCExportItemsContainer::clear() {
    m_items.clear();
    m_patterns.clear();
}

MIREL_NAMESPACE_END
