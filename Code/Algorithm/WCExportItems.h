#pragma once

#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <strings.h>
#include <type_traits>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The type of a value in the key/value store or behind an export item, as GetPluginValueInfo
// reports it. The numbers are part of the selector interface and never move.
enum WTKeyValueType : std::int32_t {
    eKeyValueBool = 0,
    eKeyValueInt32 = 1,
    eKeyValueInt64 = 2,
    eKeyValueUInt32 = 3,
    eKeyValueUInt64 = 4,
    eKeyValueFloat = 5,
    eKeyValueDouble = 6,
    eKeyValueString = 7,
};

template <typename T>
constexpr WTKeyValueType KeyValueTypeOf() {
    if constexpr (std::is_same_v<T, bool>)
        return eKeyValueBool;
    else if constexpr (std::is_same_v<T, std::int32_t>)
        return eKeyValueInt32;
    else if constexpr (std::is_same_v<T, std::int64_t>)
        return eKeyValueInt64;
    else if constexpr (std::is_same_v<T, std::uint32_t>)
        return eKeyValueUInt32;
    else if constexpr (std::is_same_v<T, std::uint64_t>)
        return eKeyValueUInt64;
    else if constexpr (std::is_same_v<T, float>)
        return eKeyValueFloat;
    else
        return eKeyValueDouble;
}

// One value reachable by key through WCExportItemsContainer. Unlike the key/value store, an item
// insists on its exact size in binary access (-30 otherwise), and may refuse to be set (-25).
// Items are owned by their container. [main-thread]
class WCExportItemBase {
public:
    virtual ~WCExportItemBase() = default;
    virtual bool is_settable() const { return false; }
    virtual int get_value_binary(char const *key, void *buffer, std::uint64_t size) const;
    virtual int set_value_binary(char const *key, void const *data, std::uint64_t size);
    virtual int get_value_str(char const *key, WCFixedStringBase &out) const;
    virtual int set_value_str(char const *key, char const *text);
    virtual int get_value_info(char const *key, WTKeyValueType &type, std::uint64_t &size) const;
};

namespace ExportItemDetail {

template <typename T>
void Print(T value, WCFixedStringBase &out) {
    out.clear();
    if constexpr (std::is_same_v<T, bool>) {
        out << (value ? "true" : "false");
    } else if constexpr (std::is_floating_point_v<T>) {
        // The shortest text that reads back to the same number.
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        out.append(buffer, result.ptr);
    } else {
        out << value;
    }
}

// Reads the whole text as a T: blanks around the value are allowed, anything else is refused
// with its code (-12 not a number, -13 trailing text, -14 negative for an unsigned type, -19
// out of range) and `out` is left alone. Booleans read "true", "yes", "1", "false", "no", "0"
// in any case.
template <typename T>
WTErr ParseWhole(char const *text, T &out) {
    if (text == nullptr)
        return eMemNullPointer;
    char const *end = text + std::strlen(text);
    while (text != end && std::isspace(static_cast<unsigned char>(*text)))
        ++text;
    while (end != text && std::isspace(static_cast<unsigned char>(end[-1])))
        --end;
    const std::string_view word(text, static_cast<std::size_t>(end - text));
    if constexpr (std::is_same_v<T, bool>) {
        auto is = [&](std::string_view known) {
            return word.size() == known.size() &&
                   strncasecmp(word.data(), known.data(), known.size()) == 0;
        };
        if (is("true") || is("yes") || is("1"))
            out = true;
        else if (is("false") || is("no") || is("0"))
            out = false;
        else
            return eNotANumber;
        return eNoErr;
    } else {
        if (text != end && *text == '+')
            ++text;
        if (std::is_unsigned_v<T> && text != end && *text == '-')
            return eNegativeNumber;
        T parsed{};
        const auto [stop, ec] = std::from_chars(text, end, parsed);
        if (ec == std::errc::invalid_argument)
            return eNotANumber;
        if (ec == std::errc::result_out_of_range)
            return eOutOfRangeNumber;
        if (stop != end)
            return eNotJustANumber;
        out = parsed;
        return eNoErr;
    }
}

} // namespace ExportItemDetail

// The reading face shared by the typed items: binary of exactly sizeof(T), text, and type.
// `Derived` gives the value through Value().
template <typename T, typename Derived>
class WCExportItemTypedReader : public WCExportItemBase {
public:
    int get_value_binary(char const *, void *buffer, std::uint64_t size) const override {
        if (size != sizeof(T))
            return eValueWrongSize;
        if (buffer == nullptr)
            return eMemNullPointer;
        std::memcpy(buffer, &static_cast<Derived const &>(*this).Value(), sizeof(T));
        return eNoErr;
    }
    int get_value_str(char const *, WCFixedStringBase &out) const override {
        ExportItemDetail::Print(static_cast<Derived const &>(*this).Value(), out);
        return eNoErr;
    }
    int get_value_info(char const *, WTKeyValueType &type, std::uint64_t &size) const override {
        type = KeyValueTypeOf<T>();
        size = sizeof(T);
        return eNoErr;
    }
};

// A constant value; reads only.
template <typename T>
class WCExportItemConst : public WCExportItemTypedReader<T, WCExportItemConst<T>> {
public:
    explicit WCExportItemConst(T value) : m_value(value) {}
    T const &Value() const { return m_value; }

private:
    T m_value;
};

// A value that lives elsewhere (a member of the algorithm); reads and writes through the pointer,
// which must outlive the item.
template <typename T>
class WCExportItem : public WCExportItemTypedReader<T, WCExportItem<T>> {
public:
    explicit WCExportItem(T *value) : m_value(value) {}
    T const &Value() const { return *m_value; }
    bool is_settable() const override { return true; }
    int set_value_binary(char const *, void const *data, std::uint64_t size) override {
        if (size != sizeof(T))
            return eValueWrongSize;
        if (data == nullptr)
            return eMemNullPointer;
        std::memcpy(m_value, data, sizeof(T));
        return eNoErr;
    }
    int set_value_str(char const *, char const *text) override {
        return ExportItemDetail::ParseWhole(text, *m_value);
    }

private:
    T *m_value;
};

// Reads by calling a function of the algorithm that fills a text.
class WCExportItem_call_alg_get_func_with_const_char : public WCExportItemBase {
public:
    using Getter = std::function<int(WCFixedStringBase &out)>;
    explicit WCExportItem_call_alg_get_func_with_const_char(Getter getter)
        : m_getter(std::move(getter)) {}
    int get_value_binary(char const *key, void *buffer, std::uint64_t size) const override;
    int get_value_str(char const *key, WCFixedStringBase &out) const override;
    int get_value_info(char const *key, WTKeyValueType &type, std::uint64_t &size) const override;

private:
    Getter m_getter;
};

// Writes by calling a function of the algorithm with the text (binary data is taken as the
// bytes of the text).
class WCExportItem_call_alg_set_func_with_const_char : public WCExportItemBase {
public:
    using Setter = std::function<int(char const *text)>;
    explicit WCExportItem_call_alg_set_func_with_const_char(Setter setter)
        : m_setter(std::move(setter)) {}
    bool is_settable() const override { return true; }
    int set_value_binary(char const *key, void const *data, std::uint64_t size) override;
    int set_value_str(char const *key, char const *text) override;
    int get_value_info(char const *key, WTKeyValueType &type, std::uint64_t &size) const override;

private:
    Setter m_setter;
};

class WCExportItemsContainer;

// Lists the keys of its container, one per line: what a tool asks first.
class WCExportItem_keys : public WCExportItemBase {
public:
    explicit WCExportItem_keys(WCExportItemsContainer const &container) : m_container(container) {}
    int get_value_str(char const *key, WCFixedStringBase &out) const override;
    int get_value_info(char const *key, WTKeyValueType &type, std::uint64_t &size) const override;

private:
    WCExportItemsContainer const &m_container;
};

// An item that answers every key that starts with its pattern followed by ':'; the rest of the
// key is its argument.
class WCExportItemPattern : public WCExportItemBase {
public:
    // The part of `key` after "pattern:"; empty when the key is the pattern itself.
    static char const *Argument(char const *key, char const *pattern);
};

// "GUI:control:realworld_to_state:<control index>:<real-world value>" reads the state the
// control's lead parameter has at that real-world value (a double, or its text).
class WCExportItem_ControlRealWorldToState : public WCExportItemPattern {
public:
    static constexpr char const *kPattern = "GUI:control:realworld_to_state";
    // Converts in place, as the algorithm's ControlStateFromRealWorldValue does.
    using Converter = std::function<int(std::int64_t control, double &inOut)>;
    explicit WCExportItem_ControlRealWorldToState(Converter converter)
        : m_converter(std::move(converter)) {}
    int get_value_binary(char const *key, void *buffer, std::uint64_t size) const override;
    int get_value_str(char const *key, WCFixedStringBase &out) const override;
    int get_value_info(char const *key, WTKeyValueType &type, std::uint64_t &size) const override;

private:
    int Convert(char const *key, double &state) const;
    Converter m_converter;
};

MIREL_NAMESPACE_END
