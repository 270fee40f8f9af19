#include "Utilities/XML/Code/PugiXMLHelpers.h"

#include <cctype>
#include <charconv>
#include <cstring>
#include <locale>
#include <sstream>
#include <type_traits>

#include "Utilities/XML/Code/WUAtoi.h"
#include "Utilities/XML/Code/XMLHelpers.h"
#include "core/WUNumericCast.h"

MIREL_NAMESPACE_BEGIN

namespace PugiXML {

namespace {

template <typename T>
bool StreamRead(const char *text, T &value) {
    std::istringstream stream(text != nullptr ? text : "");
    stream.imbue(std::locale::classic());
    T read{};
    if (!(stream >> read))
        return false;
    value = read;
    return true;
}

template <typename T>
std::string NumberText(T value) {
    char buffer[64];
    std::to_chars_result result;
    if constexpr (std::is_floating_point_v<T>)
        result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    else
        result = std::to_chars(buffer, buffer + sizeof(buffer), static_cast<long long>(value));
    return std::string(buffer, result.ptr);
}

template <typename T>
bool AttribAs(const pugi::xml_node &node, const char *name, T &value) {
    const pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute)
        return false;
    if constexpr (std::is_floating_point_v<T>) {
        value = static_cast<T>(WUStod(attribute.value()));
        return true;
    } else {
        return WUAtoi(attribute.value(), value) == eNoErr;
    }
}

void SetAttrib(pugi::xml_node &node, const char *name, const std::string &value) {
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute)
        attribute = node.append_attribute(name);
    attribute.set_value(value.c_str());
}

} // namespace

template <typename T>
WTErr ReadFromXML_Int(const pugi::xml_node &node, T &value) {
    if (!node)
        return eXMLElementMissing;
    return StreamRead(node.text().get(), value) ? eNoErr : eNotANumber;
}

template <typename T>
WTErr ReadFromXML_Int_Vector(const pugi::xml_node &node, std::vector<T> &values) {
    if (!node)
        return eXMLElementMissing;
    values.clear();
    XML::ParseIntVector(node.text().get(), values);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_Int_Array(pugi::xml_node &node, const T *values, std::uint64_t count) {
    if (!node || (values == nullptr && count != 0))
        return eMemNullPointer;
    node.text().set(XML::IntArrayToString(values, count, 10).c_str());
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_Int_Vector(pugi::xml_node &node, const std::vector<T> &values) {
    return WriteToXML_Int_Array(node, values.data(), values.size());
}

template <typename T>
WTErr ReadFromXML_Float_Vector(const pugi::xml_node &node, std::vector<T> &values) {
    if (!node)
        return eXMLElementMissing;
    values.clear();
    XML::ParseFloatVector(node.text().get(), values);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_Float_Array(pugi::xml_node &node, const T *values, std::uint64_t count) {
    if (!node || (values == nullptr && count != 0))
        return eMemNullPointer;
    node.text().set(XML::FloatArrayToString(values, count, 10).c_str());
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_Float_Vector(pugi::xml_node &node, const std::vector<T> &values) {
    return WriteToXML_Float_Array(node, values.data(), values.size());
}

template <typename T>
WTErr ReadFromXML_WCPoint(const pugi::xml_node &node, WCPoint2D<T> &point) {
    if (!node)
        return eXMLElementMissing;
    if (!AttribAs(node, "h", point.x))
        AttribAs(node, "x", point.x);
    if (!AttribAs(node, "v", point.y))
        AttribAs(node, "y", point.y);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_WCPoint(pugi::xml_node &node, const WCPoint2D<T> &point) {
    if (!node)
        return eMemNullPointer;
    SetAttrib(node, "h", NumberText(point.x));
    SetAttrib(node, "v", NumberText(point.y));
    return eNoErr;
}

template <typename T>
WTErr ReadFromXML_WCSize(const pugi::xml_node &node, WCSize2D<T> &size) {
    if (!node)
        return eXMLElementMissing;
    if (const pugi::xml_node width = node.child("Width"))
        StreamRead(width.text().get(), size.width);
    if (const pugi::xml_node height = node.child("Height"))
        StreamRead(height.text().get(), size.height);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_WCSize(pugi::xml_node &node, const WCSize2D<T> &size) {
    if (!node)
        return eMemNullPointer;
    node.append_child("Width").text().set(NumberText(size.width).c_str());
    node.append_child("Height").text().set(NumberText(size.height).c_str());
    return eNoErr;
}

template <typename T>
WTErr ReadFromXML_WURect(const pugi::xml_node &node, WURect<T> &rect) {
    if (!node)
        return eXMLElementMissing;
    auto read = [&node](const char *name, double &value) {
        const pugi::xml_attribute attribute = node.attribute(name);
        if (!attribute)
            return false;
        value = WUStod(attribute.value());
        return true;
    };
    double value = 0;
    rect.top = read("top", value) ? Utils::TruncateToRange<T>(value) : T(0);
    rect.left = read("left", value) ? Utils::TruncateToRange<T>(value) : T(0);
    if (read("right", value))
        rect.right = Utils::TruncateToRange<T>(value);
    if (read("bottom", value))
        rect.bottom = Utils::TruncateToRange<T>(value);
    if (read("width", value))
        rect.right = Utils::TruncateToRange<T>(static_cast<double>(rect.left) + value);
    if (read("height", value))
        rect.bottom = Utils::TruncateToRange<T>(static_cast<double>(rect.top) + value);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_WURect(pugi::xml_node &node, const WURect<T> &rect) {
    if (!node)
        return eMemNullPointer;
    SetAttrib(node, "left", NumberText(rect.left));
    SetAttrib(node, "top", NumberText(rect.top));
    SetAttrib(node, "width", NumberText(static_cast<T>(rect.right - rect.left)));
    SetAttrib(node, "height", NumberText(static_cast<T>(rect.bottom - rect.top)));
    return eNoErr;
}

WTErr ReadFromXML_WCRGBAColor(const pugi::xml_node &node, WCRGBAColor &color) {
    if (!node)
        return eXMLElementMissing;
    color.red = static_cast<std::uint8_t>(node.attribute("red").as_int(255));
    color.green = static_cast<std::uint8_t>(node.attribute("green").as_int(255));
    color.blue = static_cast<std::uint8_t>(node.attribute("blue").as_int(255));
    color.alpha = static_cast<std::uint8_t>(node.attribute("alpha").as_int(255));
    return eNoErr;
}

WTErr WriteToXML_WCRGBAColor(pugi::xml_node &node, const WCRGBAColor &color) {
    if (!node)
        return eMemNullPointer;
    SetAttrib(node, "red", NumberText(color.red));
    SetAttrib(node, "green", NumberText(color.green));
    SetAttrib(node, "blue", NumberText(color.blue));
    SetAttrib(node, "alpha", NumberText(color.alpha));
    return eNoErr;
}

WTErr ReadFromXML_WCFourCC(const pugi::xml_node &node, WCFourCC &code) {
    if (!node)
        return eXMLElementMissing;
    code = WCFourCC::FromText(node.text().get());
    return eNoErr;
}

WTErr WriteToXML_WCFourCC(pugi::xml_node &node, WCFourCC code) {
    if (!node)
        return eMemNullPointer;
    node.text().set(code.GetString().c_str());
    return eNoErr;
}

WTErr ReadFromXML_Bool(const pugi::xml_node &node, bool &value) {
    if (!node) {
        value = false;
        return eXMLElementMissing;
    }
    const pugi::xml_text text = node.text();
    if (!text || *text.get() == 0) {
        value = true;
        return eNoErr;
    }
    WCFixedString<15> word(text.get());
    word.to_lower();
    if (word.compare("false") == 0 || word.compare("no") == 0)
        value = false;
    else if (word.compare("true") == 0 || word.compare("yes") == 0)
        value = true;
    return eNoErr;
}

WTErr ReadFromXML_Image(const pugi::xml_node &node, short &resID, WCFixedStringBase &type) {
    if (!node || std::strcmp(node.name(), "Image") != 0)
        return eXMLElementMissing;
    AttribAs(node, "ResID", resID);
    if (const pugi::xml_attribute attribute = node.attribute("Type"))
        type = attribute.value();
    return eNoErr;
}

WTErr WriteToXML_Image(pugi::xml_node &parent, short resID, const char *type) {
    if (!parent)
        return eMemNullPointer;
    if (static_cast<unsigned short>(resID) == 65535)
        return eNoErr;
    pugi::xml_node image = parent.append_child("Image");
    image.append_attribute("ResID").set_value(static_cast<int>(resID));
    image.append_attribute("Type").set_value(type != nullptr ? type : "");
    return eNoErr;
}

WTErr ReadFromXML_String_Vector(const pugi::xml_node &node, std::vector<std::string> &values,
                                const char *separators) {
    if (!node)
        return eXMLElementMissing;
    values.clear();
    const std::string text(node.text().get());
    const std::string set(separators != nullptr ? separators : "");
    std::string::size_type position = 0;
    while (position <= text.size()) {
        const std::string::size_type next = text.find_first_of(set, position);
        const std::string::size_type end = next == std::string::npos ? text.size() : next;
        if (end > position)
            values.emplace_back(text, position, end - position);
        if (next == std::string::npos)
            break;
        position = next + 1;
    }
    return eNoErr;
}

WTErr ReadFromXML_SetBoolTrueIfSubElementExists(const pugi::xml_node &node, const char *name,
                                                bool &flag) {
    if (!node)
        return eXMLElementMissing;
    if (name != nullptr && node.child(name))
        flag = true;
    return eNoErr;
}

#define MIREL_PUGI_INT(T) template WTErr ReadFromXML_Int<T>(const pugi::xml_node &, T &);
MIREL_PUGI_INT(short)
MIREL_PUGI_INT(unsigned short)
MIREL_PUGI_INT(int)
MIREL_PUGI_INT(unsigned int)
MIREL_PUGI_INT(std::int64_t)
MIREL_PUGI_INT(std::uint64_t)
#undef MIREL_PUGI_INT

#define MIREL_PUGI_INT_VECTOR(T)                                                                   \
    template WTErr ReadFromXML_Int_Vector<T>(const pugi::xml_node &, std::vector<T> &);            \
    template WTErr WriteToXML_Int_Vector<T>(pugi::xml_node &, const std::vector<T> &);             \
    template WTErr WriteToXML_Int_Array<T>(pugi::xml_node &, const T *, std::uint64_t);
MIREL_PUGI_INT_VECTOR(signed char)
MIREL_PUGI_INT_VECTOR(short)
MIREL_PUGI_INT_VECTOR(int)
MIREL_PUGI_INT_VECTOR(unsigned int)
MIREL_PUGI_INT_VECTOR(std::int64_t)
#undef MIREL_PUGI_INT_VECTOR

#define MIREL_PUGI_FLOAT_VECTOR(T)                                                                 \
    template WTErr ReadFromXML_Float_Vector<T>(const pugi::xml_node &, std::vector<T> &);          \
    template WTErr WriteToXML_Float_Vector<T>(pugi::xml_node &, const std::vector<T> &);           \
    template WTErr WriteToXML_Float_Array<T>(pugi::xml_node &, const T *, std::uint64_t);
MIREL_PUGI_FLOAT_VECTOR(float)
MIREL_PUGI_FLOAT_VECTOR(double)
#undef MIREL_PUGI_FLOAT_VECTOR

#define MIREL_PUGI_POINT(T)                                                                        \
    template WTErr ReadFromXML_WCPoint<T>(const pugi::xml_node &, WCPoint2D<T> &);                 \
    template WTErr WriteToXML_WCPoint<T>(pugi::xml_node &, const WCPoint2D<T> &);
MIREL_PUGI_POINT(short)
MIREL_PUGI_POINT(unsigned short)
MIREL_PUGI_POINT(int)
MIREL_PUGI_POINT(float)
MIREL_PUGI_POINT(double)
#undef MIREL_PUGI_POINT

#define MIREL_PUGI_SIZE(T)                                                                         \
    template WTErr ReadFromXML_WCSize<T>(const pugi::xml_node &, WCSize2D<T> &);                   \
    template WTErr WriteToXML_WCSize<T>(pugi::xml_node &, const WCSize2D<T> &);
MIREL_PUGI_SIZE(unsigned short)
MIREL_PUGI_SIZE(int)
MIREL_PUGI_SIZE(unsigned int)
MIREL_PUGI_SIZE(double)
#undef MIREL_PUGI_SIZE

#define MIREL_PUGI_RECT(T)                                                                         \
    template WTErr ReadFromXML_WURect<T>(const pugi::xml_node &, WURect<T> &);                     \
    template WTErr WriteToXML_WURect<T>(pugi::xml_node &, const WURect<T> &);
MIREL_PUGI_RECT(short)
MIREL_PUGI_RECT(int)
MIREL_PUGI_RECT(double)
#undef MIREL_PUGI_RECT

} // namespace PugiXML

MIREL_NAMESPACE_END
