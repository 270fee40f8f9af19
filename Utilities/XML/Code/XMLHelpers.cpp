#include "Utilities/XML/Code/XMLHelpers.h"

#include <charconv>
#include <cstring>
#include <locale>
#include <sstream>
#include <type_traits>

#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"
#include "core/WUNumericCast.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

template <typename T>
bool StreamRead(const std::string &text, T &value) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    T read{};
    if (!(stream >> read))
        return false;
    value = read;
    return true;
}

// Shortest text that reads back to the same value.
template <typename T>
std::string NumberText(T value) {
    if constexpr (std::is_floating_point_v<T>) {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
        return std::string(buffer, result.ptr);
    } else {
        char buffer[32];
        const auto result =
            std::to_chars(buffer, buffer + sizeof(buffer), static_cast<long long>(value));
        return std::string(buffer, result.ptr);
    }
}

// An attribute as T: integers must read whole, floating values never fail.
template <typename T>
bool AttribAs(const CXMLElement *element, const char *name, T &value) {
    WCFixedString<255> text;
    if (!element->AttribExists(name))
        return false;
    element->GetAttrib(name, text);
    if constexpr (std::is_floating_point_v<T>) {
        value = static_cast<T>(WUStod(text.c_str()));
        return true;
    } else {
        return WUAtoi(text.c_str(), value) == eNoErr;
    }
}

void SetNumberAttrib(CXMLElement *element, const char *name, double value) {
    element->SetAttrib(name, NumberText(value).c_str());
}

template <typename T>
void SetNumberAttrib(CXMLElement *element, const char *name, T value) {
    if constexpr (std::is_same_v<T, float>)
        element->SetAttrib(name, value);
    else
        element->SetAttrib(name, static_cast<int>(value));
}

bool IsDigit(char ch) noexcept {
    return ch >= '0' && ch <= '9';
}

} // namespace

template <typename T>
WTErr ReadFromXML_Int(const CXMLElement *const element, T &value) {
    if (element == nullptr)
        return eXMLElementMissing;
    return StreamRead(element->GetText(), value) ? eNoErr : eNotANumber;
}

template <typename T>
void ParseIntVector(const char *text, std::vector<T> &values) {
    using U = std::make_unsigned_t<T>;
    if (text == nullptr)
        return;
    const char *p = text;
    while (*p != 0) {
        while (*p != 0 && !IsDigit(*p) && *p != '+' && *p != '-')
            ++p;
        if (*p == 0)
            break;
        bool negative = false;
        for (; *p == '+' || *p == '-'; ++p) {
            if (*p == '-')
                negative = !negative;
        }
        // Unsigned accumulation: an overflow wraps silently instead of being undefined.
        U magnitude = 0;
        bool anyDigit = false;
        for (; IsDigit(*p); ++p) {
            magnitude = static_cast<U>(magnitude * 10u + static_cast<unsigned>(*p - '0'));
            anyDigit = true;
        }
        if (anyDigit)
            values.push_back(static_cast<T>(negative ? static_cast<U>(0u - magnitude) : magnitude));
    }
}

template <typename T>
WTErr ReadFromXML_Int_Vector(const CXMLElement *const element, std::vector<T> &values) {
    if (element == nullptr)
        return eXMLElementMissing;
    values.clear();
    ParseIntVector(element->GetText().c_str(), values);
    return eNoErr;
}

template <typename T>
std::string IntArrayToString(const T *values, std::uint64_t count, int radix) {
    std::string text;
    if (radix < 2 || radix > 36)
        radix = 10;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i != 0)
            text.push_back(' ');
        char buffer[72];
        const auto result = std::to_chars(buffer, buffer + sizeof(buffer),
                                          static_cast<long long>(values[i]), radix);
        text.append(buffer, result.ptr);
    }
    return text;
}

template <typename T>
WTErr WriteToXML_Int_Array(CXMLElement *element, const T *values, std::uint64_t count) {
    if (element == nullptr)
        return eMemNullPointer;
    if (values == nullptr && count != 0)
        return eMemNullPointer;
    element->SetText(IntArrayToString(values, count, 10));
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_Int_Vector(CXMLElement *element, const std::vector<T> &values) {
    return WriteToXML_Int_Array(element, values.data(), values.size());
}

template <typename T>
void ParseFloatVector(const char *text, std::vector<T> &values) {
    if (text == nullptr)
        return;
    static constexpr const char *kSeparators = " ,\t\n;";
    const char *p = text;
    while (*p != 0) {
        p += std::strspn(p, kSeparators);
        if (*p == 0)
            break;
        const std::size_t length = std::strcspn(p, kSeparators);
        const std::string token(p, length);
        values.push_back(static_cast<T>(WUStod(token.c_str())));
        p += length;
    }
}

template <typename T>
WTErr ReadFromXML_Float_Vector(const CXMLElement *const element, std::vector<T> &values) {
    if (element == nullptr)
        return eXMLElementMissing;
    values.clear();
    ParseFloatVector(element->GetText().c_str(), values);
    return eNoErr;
}

template <typename T>
std::string FloatArrayToString(const T *values, std::uint64_t count, int precision) {
    std::string text;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i != 0)
            text.push_back(' ');
        char buffer[400];
        const auto result =
            std::to_chars(buffer, buffer + sizeof(buffer), static_cast<double>(values[i]),
                          std::chars_format::fixed, precision);
        if (result.ec == std::errc())
            text.append(buffer, result.ptr);
    }
    return text;
}

template <typename T>
WTErr WriteToXML_Float_Array(CXMLElement *element, const T *values, std::uint64_t count) {
    if (element == nullptr)
        return eMemNullPointer;
    if (values == nullptr && count != 0)
        return eMemNullPointer;
    element->SetText(FloatArrayToString(values, count, 10));
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_Float_Vector(CXMLElement *element, const std::vector<T> &values) {
    return WriteToXML_Float_Array(element, values.data(), values.size());
}

template <typename T>
WTErr ReadFromXML_WCPoint(const CXMLElement *const element, WCPoint2D<T> &point) {
    if (element == nullptr)
        return eXMLElementMissing;
    if (!AttribAs(element, "h", point.x))
        AttribAs(element, "x", point.x);
    if (!AttribAs(element, "v", point.y))
        AttribAs(element, "y", point.y);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_WCPoint(CXMLElement *element, const WCPoint2D<T> &point) {
    if (element == nullptr)
        return eMemNullPointer;
    SetNumberAttrib(element, "h", point.x);
    SetNumberAttrib(element, "v", point.y);
    return eNoErr;
}

template <typename T>
WTErr ReadFromXML_WCSize(const CXMLElement *const element, WCSize2D<T> &size) {
    if (element == nullptr)
        return eXMLElementMissing;
    if (const CXMLElement *width = element->SubElement("Width"))
        StreamRead(width->GetText(), size.width);
    if (const CXMLElement *height = element->SubElement("Height"))
        StreamRead(height->GetText(), size.height);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_WCSize(CXMLElement *element, const WCSize2D<T> &size) {
    if (element == nullptr)
        return eMemNullPointer;
    element->push_back(new CXMLElement("Width", NumberText(size.width).c_str()));
    element->push_back(new CXMLElement("Height", NumberText(size.height).c_str()));
    return eNoErr;
}

template <typename T>
WTErr ReadFromXML_WURect(const CXMLElement *const element, WURect<T> &rect) {
    if (element == nullptr)
        return eXMLElementMissing;
    enum { eLeft, eTop, eRight, eBottom, eWidth, eHeight, eCount };
    static constexpr const char *kNames[eCount] = {"left",   "top",   "right",
                                                   "bottom", "width", "height"};
    double values[eCount] = {};
    bool given[eCount] = {};
    for (const CXMLElement *child : element->GetSubElements()) {
        for (int i = 0; i < eCount; ++i) {
            if (child->GetName().compare(kNames[i]) == 0) {
                values[i] = WUStod(child->GetText().c_str());
                given[i] = true;
            }
        }
    }
    for (int i = 0; i < eCount; ++i) {
        WCFixedString<255> text;
        if (element->GetAttrib(kNames[i], text)) {
            values[i] = WUStod(text.c_str());
            given[i] = true;
        }
    }
    auto store = [&](int index, T &field) {
        if (given[index])
            field = Utils::TruncateToRange<T>(values[index]);
    };
    store(eLeft, rect.left);
    store(eTop, rect.top);
    store(eRight, rect.right);
    store(eBottom, rect.bottom);
    if (given[eWidth])
        rect.right = Utils::TruncateToRange<T>(static_cast<double>(rect.left) + values[eWidth]);
    if (given[eHeight])
        rect.bottom = Utils::TruncateToRange<T>(static_cast<double>(rect.top) + values[eHeight]);
    return eNoErr;
}

template <typename T>
WTErr WriteToXML_WURect(CXMLElement *element, const WURect<T> &rect) {
    if (element == nullptr)
        return eMemNullPointer;
    SetNumberAttrib(element, "left", rect.left);
    SetNumberAttrib(element, "top", rect.top);
    SetNumberAttrib(element, "width", static_cast<T>(rect.right - rect.left));
    SetNumberAttrib(element, "height", static_cast<T>(rect.bottom - rect.top));
    return eNoErr;
}

WTErr ReadFromXML_WCRGBAColor(const CXMLElement *const element, WCRGBAColor &color) {
    if (element == nullptr)
        return eXMLElementMissing;
    auto channel = [](int value) { return static_cast<std::uint8_t>(value); };
    if (!element->GetSubElements().empty()) {
        for (const CXMLElement *child : element->GetSubElements()) {
            int value = 0;
            if (!StreamRead(child->GetText(), value))
                continue;
            const auto &name = child->GetName();
            if (name.compare("Red") == 0)
                color.red = channel(value);
            else if (name.compare("Green") == 0)
                color.green = channel(value);
            else if (name.compare("Blue") == 0)
                color.blue = channel(value);
            else if (name.compare("Alpha") == 0)
                color.alpha = channel(value);
        }
        return eNoErr;
    }
    color.alpha = 255;
    int value = 0;
    if (element->GetAttrib("red", value))
        color.red = channel(value);
    if (element->GetAttrib("green", value))
        color.green = channel(value);
    if (element->GetAttrib("blue", value))
        color.blue = channel(value);
    if (element->GetAttrib("alpha", value))
        color.alpha = channel(value);
    return eNoErr;
}

WTErr WriteToXML_WCRGBAColor(CXMLElement *element, const WCRGBAColor &color) {
    if (element == nullptr)
        return eMemNullPointer;
    element->SetAttrib("red", static_cast<int>(color.red));
    element->SetAttrib("green", static_cast<int>(color.green));
    element->SetAttrib("blue", static_cast<int>(color.blue));
    element->SetAttrib("alpha", static_cast<int>(color.alpha));
    return eNoErr;
}

WCFourCC FourCCFromQuotedText(const char *text) noexcept {
    if (text == nullptr)
        return WCFourCC::Unreadable();
    const char *start = text;
    std::size_t length = std::strlen(text);
    if (*start == '\'') {
        ++start;
        --length;
        if (length > 4)
            length = 4;
    }
    if (length != 4)
        return WCFourCC::Unreadable();
    return WCFourCC(start[0], start[1], start[2], start[3]);
}

WTErr ReadFromXML_WCFourCC(const CXMLElement *const element, WCFourCC &code) {
    if (element == nullptr)
        return eXMLElementMissing;
    code = FourCCFromQuotedText(element->GetText().c_str());
    return eNoErr;
}

WTErr WriteToXML_WCFourCC(CXMLElement *element, WCFourCC code) {
    if (element == nullptr)
        return eMemNullPointer;
    std::string text("'");
    text.append(code.GetString().view());
    text.push_back('\'');
    element->SetText(std::move(text));
    return eNoErr;
}

WTErr ReadFromXML_Bool(const CXMLElement *const element, bool &value) {
    if (element == nullptr)
        return eXMLElementMissing;
    const std::string &text = element->GetText();
    value = !(text == "false" || text == "no");
    return eNoErr;
}

WTErr ReadFromXML_Image(const CXMLElement *const element, short &resID, WCFixedStringBase &type) {
    if (element == nullptr || element->GetName().compare("Image") != 0)
        return eXMLElementMissing;
    element->GetAttrib("ResID", resID);
    if (element->AttribExists("Type"))
        element->GetAttrib("Type", type);
    return eNoErr;
}

WTErr WriteToXML_Image(CXMLElement *parent, short resID, const char *type) {
    if (parent == nullptr)
        return eMemNullPointer;
    if (static_cast<unsigned short>(resID) == 65535)
        return eNoErr;
    auto *image = parent->push_sub_element(new CXMLElement("Image"));
    image->AddAttrib("ResID", static_cast<int>(resID));
    image->AddAttrib("Type", type != nullptr ? type : "");
    return eNoErr;
}

WTErr ReadFromXML_String_Vector(const CXMLElement *const element, std::vector<std::string> &values,
                                const char *separators) {
    if (element == nullptr)
        return eXMLElementMissing;
    values.clear();
    const std::string &text = element->GetText();
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

namespace {

void ReplaceAll(std::string &text, std::string_view what, std::string_view with) {
    std::string result;
    result.reserve(text.size());
    std::string::size_type position = 0;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, position)) {
        result.append(text, position, at - position);
        result.append(with);
        position = at + what.size();
    }
    result.append(text, position, std::string::npos);
    text.swap(result);
}

} // namespace

void InsertCDATAEntities(std::string &text) {
    ReplaceAll(text, "[", "&lsqb;");
    ReplaceAll(text, "]", "&rsqb;");
}

void RemoveCDATAEntities(std::string &text) {
    ReplaceAll(text, "&lsqb;", "[");
    ReplaceAll(text, "&rsqb;", "]");
}

// The instantiations the system uses.
#define MIREL_XML_INT(T) template WTErr ReadFromXML_Int<T>(const CXMLElement *const, T &);
MIREL_XML_INT(short)
MIREL_XML_INT(unsigned short)
MIREL_XML_INT(int)
MIREL_XML_INT(unsigned int)
MIREL_XML_INT(std::int64_t)
MIREL_XML_INT(std::uint64_t)
#undef MIREL_XML_INT

#define MIREL_XML_INT_VECTOR(T)                                                                    \
    template void ParseIntVector<T>(const char *, std::vector<T> &);                               \
    template WTErr ReadFromXML_Int_Vector<T>(const CXMLElement *const, std::vector<T> &);          \
    template WTErr WriteToXML_Int_Vector<T>(CXMLElement *, const std::vector<T> &);                \
    template WTErr WriteToXML_Int_Array<T>(CXMLElement *, const T *, std::uint64_t);               \
    template std::string IntArrayToString<T>(const T *, std::uint64_t, int);
MIREL_XML_INT_VECTOR(signed char)
MIREL_XML_INT_VECTOR(short)
MIREL_XML_INT_VECTOR(int)
MIREL_XML_INT_VECTOR(unsigned int)
MIREL_XML_INT_VECTOR(std::int64_t)
#undef MIREL_XML_INT_VECTOR

#define MIREL_XML_FLOAT_VECTOR(T)                                                                  \
    template void ParseFloatVector<T>(const char *, std::vector<T> &);                             \
    template WTErr ReadFromXML_Float_Vector<T>(const CXMLElement *const, std::vector<T> &);        \
    template WTErr WriteToXML_Float_Vector<T>(CXMLElement *, const std::vector<T> &);              \
    template WTErr WriteToXML_Float_Array<T>(CXMLElement *, const T *, std::uint64_t);             \
    template std::string FloatArrayToString<T>(const T *, std::uint64_t, int);
MIREL_XML_FLOAT_VECTOR(float)
MIREL_XML_FLOAT_VECTOR(double)
#undef MIREL_XML_FLOAT_VECTOR

#define MIREL_XML_POINT(T)                                                                         \
    template WTErr ReadFromXML_WCPoint<T>(const CXMLElement *const, WCPoint2D<T> &);               \
    template WTErr WriteToXML_WCPoint<T>(CXMLElement *, const WCPoint2D<T> &);
MIREL_XML_POINT(short)
MIREL_XML_POINT(unsigned short)
MIREL_XML_POINT(int)
MIREL_XML_POINT(float)
MIREL_XML_POINT(double)
#undef MIREL_XML_POINT

#define MIREL_XML_SIZE(T)                                                                          \
    template WTErr ReadFromXML_WCSize<T>(const CXMLElement *const, WCSize2D<T> &);                 \
    template WTErr WriteToXML_WCSize<T>(CXMLElement *, const WCSize2D<T> &);
MIREL_XML_SIZE(unsigned short)
MIREL_XML_SIZE(int)
MIREL_XML_SIZE(unsigned int)
MIREL_XML_SIZE(double)
#undef MIREL_XML_SIZE

#define MIREL_XML_RECT(T)                                                                          \
    template WTErr ReadFromXML_WURect<T>(const CXMLElement *const, WURect<T> &);                   \
    template WTErr WriteToXML_WURect<T>(CXMLElement *, const WURect<T> &);
MIREL_XML_RECT(short)
MIREL_XML_RECT(int)
MIREL_XML_RECT(double)
#undef MIREL_XML_RECT

} // namespace XML

MIREL_NAMESPACE_END
