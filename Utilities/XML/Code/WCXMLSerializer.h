#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

class WC16BytesID;
class WCFourCC;
class WCVersion;

namespace XML {

class CXMLElement;
class CMapNames;
class WCXMLable;

// Typed access to an integer field for the attribute functions of the serializer.
class WTIntConvertorBase {
public:
    virtual ~WTIntConvertorBase() = default;
    virtual int get() const = 0;
    virtual void set(int value) = 0;
};

template <typename T>
class WTIntConvertor : public WTIntConvertorBase {
public:
    explicit WTIntConvertor(T &field) noexcept : m_field(field) {}
    int get() const override { return static_cast<int>(m_field); }
    void set(int value) override { m_field = static_cast<T>(value); }

private:
    T &m_field;
};

class WCXMLSerializerBase {
public:
    enum EDirection { Reading, Writing };

    explicit WCXMLSerializerBase(EDirection direction) noexcept : m_direction(direction) {}
    EDirection GetDirection() const noexcept { return m_direction; }
    bool IsReading() const noexcept { return m_direction == Reading; }
    bool IsWriting() const noexcept { return m_direction == Writing; }

private:
    EDirection m_direction;
};

using WTEnumNames = std::map<WCFixedString<63>, int>;

// The two-way serializer: one chain of calls in a class's SerializeXML describes its format and
// is run by a reader or a writer. A chain reads name, content, end:
//
//   s.element_name("Gain").attrib_content("unit", unit).element_content(m_gain).element_end();
//
// The current element is where content goes or comes from. element_name makes it a child of the
// level (the writer creates it, the reader looks it up); level_down makes the current element the
// level for the calls that follow, until level_up; element_content of a WCXMLable does the same
// around the object's own SerializeXML. A reader whose current element is null (a name that was
// not found, or a filter that rejected it) ignores every content call, so whatever a document
// lacks keeps the target's value. Nothing here fails.
// The serializer lives for one SerializeXML call on one tree.
// [any-thread] one object per thread.
class WCXMLSerializer : public WCXMLSerializerBase {
public:
    WCXMLSerializer(EDirection direction, CXMLElement *root);
    virtual ~WCXMLSerializer();
    WCXMLSerializer(const WCXMLSerializer &) = delete;
    WCXMLSerializer &operator=(const WCXMLSerializer &) = delete;

    // The index-th element of that name within the level (reader); a new child (writer).
    virtual WCXMLSerializer &element_name(const char *name, std::uint64_t index = 0) = 0;
    // Reader: drops the current element when it has the attribute with another value.
    virtual WCXMLSerializer &filter_by_attrib(const char *name, const char *value) = 0;
    virtual WCXMLSerializer &element_end() = 0;
    virtual WCXMLSerializer &level_down() = 0;
    virtual WCXMLSerializer &level_up() = 0;

    virtual WCXMLSerializer &element_content(WCXMLable &value) = 0;
    virtual WCXMLSerializer &element_content(WC16BytesID &value) = 0;
    virtual WCXMLSerializer &element_content(WCFourCC &value) = 0;
    // The full text, GetString(4); reading goes through ReadFromString. Defined with the
    // version's XML form (WCVersion_XML.cpp).
    virtual WCXMLSerializer &element_content(WCVersion &value) = 0;
    virtual WCXMLSerializer &element_content(std::string &value) = 0;
    virtual WCXMLSerializer &element_content(WCFixedStringBase &value) = 0;
    virtual WCXMLSerializer &element_content(bool &value) = 0;
    virtual WCXMLSerializer &element_content(unsigned short &value) = 0;
    virtual WCXMLSerializer &element_content(unsigned int &value) = 0;
    virtual WCXMLSerializer &element_content(std::uint64_t &value) = 0;
    virtual WCXMLSerializer &element_content(short &value) = 0;
    virtual WCXMLSerializer &element_content(int &value) = 0;
    virtual WCXMLSerializer &element_content(std::int64_t &value) = 0;
    virtual WCXMLSerializer &element_content(float &value) = 0;
    virtual WCXMLSerializer &element_content(double &value) = 0;

    // Reader: sets `flag` when the element exists (never clears it). Writer: creates the element
    // only when `flag` is true. Either way the element, or null, becomes current.
    virtual WCXMLSerializer &element_name_and_bool_if_exist(const char *name, bool &flag) = 0;
    // The element's text is a key of `names`; an unknown text or value changes nothing.
    virtual WCXMLSerializer &element_content_enum(int &value, WTEnumNames &names) = 0;
    // The writer skips a value equal to `defaultValue`.
    virtual WCXMLSerializer &attrib_content(const char *name, WTIntConvertorBase *value,
                                            int defaultValue) = 0;
    virtual WCXMLSerializer &attrib_content(const char *name, WTIntConvertorBase *value) = 0;
    // The writer skips an empty text.
    virtual WCXMLSerializer &attrib_content(const char *name, WCFixedStringBase &value) = 0;
    virtual WCXMLSerializer &attrib_content_enum(const char *name, int &value,
                                                 WTEnumNames &names) = 0;

    // Whether content can be taken from an existing object (writer) rather than made (reader).
    virtual bool can_do_element_content_from_pointer(void *target) = 0;
    // Whether a target must be made before content is read into it.
    virtual bool need_to_allocate(void *target) = 0;
    // Reader: how many elements of that name the level has. Writer: `count`.
    virtual std::uint64_t get_num_array_elements(const char *name, std::uint64_t count) = 0;

    // Typed conveniences over the convertor forms.
    template <typename T>
    WCXMLSerializer &attrib_int(const char *name, T &value) {
        WTIntConvertor<T> convertor(value);
        return attrib_content(name, &convertor);
    }
    template <typename T>
    WCXMLSerializer &attrib_int(const char *name, T &value, int defaultValue) {
        WTIntConvertor<T> convertor(value);
        return attrib_content(name, &convertor, defaultValue);
    }

    CXMLElement *GetCurrentElement() const noexcept { return m_current; }
    CXMLElement *GetRootElement() const noexcept { return m_root; }

protected:
    CXMLElement *m_current;
    CXMLElement *m_root;
    std::vector<CXMLElement *> m_stack;
};

// Reads a tree into objects. Each level has a name index (CMapNames of depth 1) of its element,
// the first built on the root.
class WCXMLSerializerReader : public WCXMLSerializer {
public:
    explicit WCXMLSerializerReader(CXMLElement *root);
    ~WCXMLSerializerReader() override;

    WCXMLSerializer &element_name(const char *name, std::uint64_t index = 0) override;
    WCXMLSerializer &filter_by_attrib(const char *name, const char *value) override;
    WCXMLSerializer &element_end() override;
    WCXMLSerializer &level_down() override;
    WCXMLSerializer &level_up() override;

    WCXMLSerializer &element_content(WCXMLable &value) override;
    WCXMLSerializer &element_content(WC16BytesID &value) override;
    WCXMLSerializer &element_content(WCFourCC &value) override;
    WCXMLSerializer &element_content(WCVersion &value) override;
    WCXMLSerializer &element_content(std::string &value) override;
    WCXMLSerializer &element_content(WCFixedStringBase &value) override;
    WCXMLSerializer &element_content(bool &value) override;
    WCXMLSerializer &element_content(unsigned short &value) override;
    WCXMLSerializer &element_content(unsigned int &value) override;
    WCXMLSerializer &element_content(std::uint64_t &value) override;
    WCXMLSerializer &element_content(short &value) override;
    WCXMLSerializer &element_content(int &value) override;
    WCXMLSerializer &element_content(std::int64_t &value) override;
    WCXMLSerializer &element_content(float &value) override;
    WCXMLSerializer &element_content(double &value) override;

    WCXMLSerializer &element_name_and_bool_if_exist(const char *name, bool &flag) override;
    WCXMLSerializer &element_content_enum(int &value, WTEnumNames &names) override;
    WCXMLSerializer &attrib_content(const char *name, WTIntConvertorBase *value,
                                    int defaultValue) override;
    WCXMLSerializer &attrib_content(const char *name, WTIntConvertorBase *value) override;
    WCXMLSerializer &attrib_content(const char *name, WCFixedStringBase &value) override;
    WCXMLSerializer &attrib_content_enum(const char *name, int &value, WTEnumNames &names) override;

    bool can_do_element_content_from_pointer(void *target) override;
    bool need_to_allocate(void *target) override;
    std::uint64_t get_num_array_elements(const char *name, std::uint64_t count) override;

private:
    void PushLevel(CXMLElement *element);
    void PopLevel();
    template <typename T>
    WCXMLSerializer &ReadInteger(T &value);
    template <typename T>
    WCXMLSerializer &ReadFloating(T &value);

    std::vector<std::unique_ptr<CMapNames>> m_maps;
};

// Writes objects into a tree: element_name appends a child to the element on top of the stack.
class WCXMLSerializerWriter : public WCXMLSerializer {
public:
    explicit WCXMLSerializerWriter(CXMLElement *root);
    ~WCXMLSerializerWriter() override;

    WCXMLSerializer &element_name(const char *name, std::uint64_t index = 0) override;
    WCXMLSerializer &filter_by_attrib(const char *name, const char *value) override;
    WCXMLSerializer &element_end() override;
    WCXMLSerializer &level_down() override;
    WCXMLSerializer &level_up() override;

    WCXMLSerializer &element_content(WCXMLable &value) override;
    WCXMLSerializer &element_content(WC16BytesID &value) override;
    WCXMLSerializer &element_content(WCFourCC &value) override;
    WCXMLSerializer &element_content(WCVersion &value) override;
    WCXMLSerializer &element_content(std::string &value) override;
    WCXMLSerializer &element_content(WCFixedStringBase &value) override;
    WCXMLSerializer &element_content(bool &value) override;
    WCXMLSerializer &element_content(unsigned short &value) override;
    WCXMLSerializer &element_content(unsigned int &value) override;
    WCXMLSerializer &element_content(std::uint64_t &value) override;
    WCXMLSerializer &element_content(short &value) override;
    WCXMLSerializer &element_content(int &value) override;
    WCXMLSerializer &element_content(std::int64_t &value) override;
    WCXMLSerializer &element_content(float &value) override;
    WCXMLSerializer &element_content(double &value) override;

    WCXMLSerializer &element_name_and_bool_if_exist(const char *name, bool &flag) override;
    WCXMLSerializer &element_content_enum(int &value, WTEnumNames &names) override;
    WCXMLSerializer &attrib_content(const char *name, WTIntConvertorBase *value,
                                    int defaultValue) override;
    WCXMLSerializer &attrib_content(const char *name, WTIntConvertorBase *value) override;
    WCXMLSerializer &attrib_content(const char *name, WCFixedStringBase &value) override;
    WCXMLSerializer &attrib_content_enum(const char *name, int &value, WTEnumNames &names) override;

    bool can_do_element_content_from_pointer(void *target) override;
    bool need_to_allocate(void *target) override;
    std::uint64_t get_num_array_elements(const char *name, std::uint64_t count) override;

private:
    template <typename T>
    WCXMLSerializer &WriteText(const T &value);
};

} // namespace XML

MIREL_NAMESPACE_END
