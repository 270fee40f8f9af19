#include "Utilities/XML/Code/WCXMLSerializer.h"

#include <charconv>

#include "Utilities/XML/Code/CMapNames.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WCXMLable.h"
#include "Utilities/XML/Code/WUAtoi.h"
#include "Utilities/XML/Code/XMLHelpers.h"
#include "core/WC16BytesID.h"
#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

WCXMLSerializer::WCXMLSerializer(EDirection direction, CXMLElement *root)
    : WCXMLSerializerBase(direction), m_current(root), m_root(root) {}

WCXMLSerializer::~WCXMLSerializer() = default;

// ---------------------------------------------------------------------------------------- reader

WCXMLSerializerReader::WCXMLSerializerReader(CXMLElement *root) : WCXMLSerializer(Reading, root) {
    m_maps.push_back(std::make_unique<CMapNames>(root, 1));
    m_stack.push_back(root);
}

WCXMLSerializerReader::~WCXMLSerializerReader() = default;

void WCXMLSerializerReader::PushLevel(CXMLElement *element) {
    m_maps.push_back(std::make_unique<CMapNames>(element, 1));
    m_stack.push_back(element);
}

void WCXMLSerializerReader::PopLevel() {
    // The root's level stays: an unbalanced level_up cannot take the reader off its tree.
    if (m_maps.size() > 1) {
        m_maps.pop_back();
        m_current = m_stack.back();
        m_stack.pop_back();
    }
}

WCXMLSerializer &WCXMLSerializerReader::element_name(const char *name, std::uint64_t index) {
    m_current = m_maps.back()->FindNthElement(name, index);
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::filter_by_attrib(const char *name, const char *value) {
    if (m_current != nullptr) {
        std::string actual;
        if (m_current->GetAttrib(name, actual) && actual != (value != nullptr ? value : ""))
            m_current = nullptr;
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_end() {
    m_current = nullptr;
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::level_down() {
    PushLevel(m_current);
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::level_up() {
    PopLevel();
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(WCXMLable &value) {
    if (m_current != nullptr) {
        CXMLElement *const element = m_current;
        PushLevel(element);
        const std::uint64_t depth = m_maps.size();
        value.SerializeXML(*this);
        // The object's own chain may have left levels open; close them with it.
        while (m_maps.size() >= depth)
            PopLevel();
        m_current = element;
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(WC16BytesID &value) {
    if (m_current != nullptr && !m_current->GetText().empty())
        value.Decode(m_current->GetText().c_str());
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(WCFourCC &value) {
    if (m_current != nullptr && !m_current->GetText().empty())
        ReadFromXML_WCFourCC(m_current, value);
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(std::string &value) {
    if (m_current != nullptr)
        value = m_current->GetText();
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(WCFixedStringBase &value) {
    if (m_current != nullptr)
        value.assign(m_current->GetText().data(), m_current->GetText().size());
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(bool &value) {
    if (m_current != nullptr)
        ReadFromXML_Bool(m_current, value);
    return *this;
}

template <typename T>
WCXMLSerializer &WCXMLSerializerReader::ReadInteger(T &value) {
    if (m_current != nullptr) {
        T read{};
        if (WUAtoi(m_current->GetText().c_str(), read) == eNoErr)
            value = read;
    }
    return *this;
}

template <typename T>
WCXMLSerializer &WCXMLSerializerReader::ReadFloating(T &value) {
    if (m_current != nullptr && !m_current->GetText().empty())
        value = static_cast<T>(WUStod(m_current->GetText().c_str()));
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content(unsigned short &value) {
    return ReadInteger(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(unsigned int &value) {
    return ReadInteger(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(std::uint64_t &value) {
    return ReadInteger(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(short &value) {
    return ReadInteger(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(int &value) {
    return ReadInteger(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(std::int64_t &value) {
    return ReadInteger(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(float &value) {
    return ReadFloating(value);
}
WCXMLSerializer &WCXMLSerializerReader::element_content(double &value) {
    return ReadFloating(value);
}

WCXMLSerializer &WCXMLSerializerReader::element_name_and_bool_if_exist(const char *name,
                                                                       bool &flag) {
    element_name(name, 0);
    if (m_current != nullptr)
        flag = true;
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::element_content_enum(int &value, WTEnumNames &names) {
    if (m_current != nullptr) {
        const auto it = names.find(WCFixedString<63>(m_current->GetText().c_str()));
        if (it != names.end())
            value = it->second;
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::attrib_content(const char *name, WTIntConvertorBase *value,
                                                       int) {
    return attrib_content(name, value);
}

WCXMLSerializer &WCXMLSerializerReader::attrib_content(const char *name,
                                                       WTIntConvertorBase *value) {
    int read = 0;
    if (m_current != nullptr && value != nullptr && m_current->GetAttrib(name, read))
        value->set(read);
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::attrib_content(const char *name, WCFixedStringBase &value) {
    if (m_current != nullptr && m_current->AttribExists(name))
        m_current->GetAttrib(name, value);
    return *this;
}

WCXMLSerializer &WCXMLSerializerReader::attrib_content_enum(const char *name, int &value,
                                                            WTEnumNames &names) {
    WCFixedString<63> text;
    if (m_current != nullptr && m_current->GetAttrib(name, text)) {
        const auto it = names.find(text);
        if (it != names.end())
            value = it->second;
    }
    return *this;
}

bool WCXMLSerializerReader::can_do_element_content_from_pointer(void *) {
    return false;
}

bool WCXMLSerializerReader::need_to_allocate(void *target) {
    return target == nullptr;
}

std::uint64_t WCXMLSerializerReader::get_num_array_elements(const char *name, std::uint64_t) {
    return m_maps.back()->Count(name);
}

// ---------------------------------------------------------------------------------------- writer

WCXMLSerializerWriter::WCXMLSerializerWriter(CXMLElement *root) : WCXMLSerializer(Writing, root) {
    m_stack.push_back(root);
}

WCXMLSerializerWriter::~WCXMLSerializerWriter() = default;

WCXMLSerializer &WCXMLSerializerWriter::element_name(const char *name, std::uint64_t) {
    CXMLElement *parent = m_stack.back();
    m_current = parent != nullptr ? parent->push_sub_element(new CXMLElement(name)) : nullptr;
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::filter_by_attrib(const char *, const char *) {
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_end() {
    m_current = m_stack.back();
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::level_down() {
    m_stack.push_back(m_current);
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::level_up() {
    if (m_stack.size() > 1) {
        m_current = m_stack.back();
        m_stack.pop_back();
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(WCXMLable &value) {
    if (m_current != nullptr) {
        CXMLElement *const element = m_current;
        m_stack.push_back(element);
        const std::uint64_t depth = m_stack.size();
        value.SerializeXML(*this);
        while (m_stack.size() >= depth && m_stack.size() > 1)
            m_stack.pop_back();
        m_current = element;
    }
    return *this;
}

template <typename T>
WCXMLSerializer &WCXMLSerializerWriter::WriteText(const T &value) {
    if (m_current != nullptr) {
        WCFixedString<63> text;
        text << value;
        m_current->SetText(std::string(text.view()));
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(WC16BytesID &value) {
    if (m_current != nullptr)
        m_current->SetText(std::string(value.Encode().view()));
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(WCFourCC &value) {
    if (m_current != nullptr)
        m_current->SetText(std::string(value.GetString().view()));
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(std::string &value) {
    if (m_current != nullptr)
        m_current->SetText(value);
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(WCFixedStringBase &value) {
    if (m_current != nullptr)
        m_current->SetText(std::string(value.view()));
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(bool &value) {
    if (m_current != nullptr)
        m_current->SetText(value ? "true" : "false");
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(unsigned short &value) {
    return WriteText(static_cast<unsigned int>(value));
}
WCXMLSerializer &WCXMLSerializerWriter::element_content(unsigned int &value) {
    return WriteText(value);
}
WCXMLSerializer &WCXMLSerializerWriter::element_content(std::uint64_t &value) {
    return WriteText(value);
}
WCXMLSerializer &WCXMLSerializerWriter::element_content(short &value) {
    return WriteText(value);
}
WCXMLSerializer &WCXMLSerializerWriter::element_content(int &value) {
    return WriteText(value);
}
WCXMLSerializer &WCXMLSerializerWriter::element_content(std::int64_t &value) {
    return WriteText(value);
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(float &value) {
    double widened = value;
    return element_content(widened);
}

WCXMLSerializer &WCXMLSerializerWriter::element_content(double &value) {
    if (m_current != nullptr) {
        // Ten decimals, in full: a fixed-size text would cut large values.
        char buffer[400];
        const auto result =
            std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, 10);
        m_current->SetText(std::string(buffer, result.ec == std::errc() ? result.ptr : buffer));
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_name_and_bool_if_exist(const char *name,
                                                                       bool &flag) {
    if (flag)
        return element_name(name, 0);
    m_current = nullptr;
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::element_content_enum(int &value, WTEnumNames &names) {
    if (m_current != nullptr) {
        for (const auto &[key, mapped] : names) {
            if (mapped == value) {
                m_current->SetText(std::string(key.view()));
                break;
            }
        }
    }
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::attrib_content(const char *name, WTIntConvertorBase *value,
                                                       int defaultValue) {
    if (value != nullptr && value->get() != defaultValue)
        attrib_content(name, value);
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::attrib_content(const char *name,
                                                       WTIntConvertorBase *value) {
    if (m_current != nullptr && value != nullptr)
        m_current->SetAttrib(name, value->get());
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::attrib_content(const char *name, WCFixedStringBase &value) {
    if (m_current != nullptr && !value.empty())
        m_current->SetAttrib(name, value.c_str());
    return *this;
}

WCXMLSerializer &WCXMLSerializerWriter::attrib_content_enum(const char *name, int &value,
                                                            WTEnumNames &names) {
    if (m_current != nullptr) {
        for (const auto &[key, mapped] : names) {
            if (mapped == value) {
                m_current->SetAttrib(name, key.c_str());
                break;
            }
        }
    }
    return *this;
}

bool WCXMLSerializerWriter::can_do_element_content_from_pointer(void *) {
    return true;
}

bool WCXMLSerializerWriter::need_to_allocate(void *) {
    return false;
}

std::uint64_t WCXMLSerializerWriter::get_num_array_elements(const char *, std::uint64_t count) {
    return count;
}

// ------------------------------------------------------------------------------------- WCXMLable

WTErr WCXMLable::ReadFromXML(CXMLElement *element) {
    if (element == nullptr)
        return eMemNullPointer;
    WCXMLSerializerReader reader(element);
    SerializeXML(reader);
    return eNoErr;
}

CXMLElement *WCXMLable::WriteToXML(CXMLElement *element) const {
    if (element == nullptr)
        return nullptr;
    WCXMLSerializerWriter writer(element);
    // SerializeXML serves both directions and so is not const; writing only reads the object.
    const_cast<WCXMLable *>(this)->SerializeXML(writer);
    return element;
}

} // namespace XML

MIREL_NAMESPACE_END
