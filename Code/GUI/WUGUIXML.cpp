#include "Code/GUI/WUGUIXML.h"

#include <string>

#include "Code/GUI/WCBaseImage.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "Utilities/XML/Code/WUAtoi.h"

MIREL_NAMESPACE_BEGIN

namespace GUIXML {

namespace {

// An absent attribute reads 0; a present one must be a whole number.
WTErr ReadInt(const XML::CXMLElement &element, const char *name, int &out) noexcept {
    out = 0;
    if (!element.AttribExists(name))
        return eNoErr;
    return WUAtoi(element.GetAttribString(name).c_str(), out);
}

bool FitsShort(int v) noexcept {
    return v >= -32768 && v <= 32767;
}

} // namespace

WTErr ReadRect(const XML::CXMLElement &element, WURect<short> &out) noexcept {
    int top = 0, left = 0, a = 0, b = 0;
    WTErr err = ReadInt(element, "top", top);
    if (err == eNoErr)
        err = ReadInt(element, "left", left);
    const bool sized = !element.AttribExists("right") && !element.AttribExists("bottom") &&
                       (element.AttribExists("width") || element.AttribExists("height"));
    if (err == eNoErr)
        err = ReadInt(element, sized ? "height" : "bottom", a);
    if (err == eNoErr)
        err = ReadInt(element, sized ? "width" : "right", b);
    if (err != eNoErr)
        return err;
    if (sized) {
        if (a < 0 || b < 0)
            return eOutOfRangeNumber;
        a += top;
        b += left;
    }
    if (!FitsShort(top) || !FitsShort(left) || !FitsShort(a) || !FitsShort(b))
        return eOutOfRangeNumber;
    out = WURect<short>(static_cast<short>(top), static_cast<short>(left), static_cast<short>(a),
                        static_cast<short>(b));
    return eNoErr;
}

XML::CXMLElement *WriteRect(const char *name, const WURect<short> &rect) {
    auto *element = new XML::CXMLElement(name);
    element->AddAttrib("top", rect.top);
    element->AddAttrib("left", rect.left);
    element->AddAttrib("width", rect.right - rect.left);
    element->AddAttrib("height", rect.bottom - rect.top);
    return element;
}

WTErr ReadColor(const XML::CXMLElement &element, WCRGBAColor &out) noexcept {
    int rgba[4] = {0, 0, 0, 255};
    const char *names[4] = {"red", "green", "blue", "alpha"};
    for (int i = 0; i < 4; ++i) {
        if (!element.AttribExists(names[i]))
            continue;
        const WTErr err = WUAtoi(element.GetAttribString(names[i]).c_str(), rgba[i]);
        if (err != eNoErr)
            return err;
        if (rgba[i] < 0 || rgba[i] > 255)
            return eOutOfRangeNumber;
    }
    out = WCRGBAColor(static_cast<std::uint8_t>(rgba[0]), static_cast<std::uint8_t>(rgba[1]),
                      static_cast<std::uint8_t>(rgba[2]), static_cast<std::uint8_t>(rgba[3]));
    return eNoErr;
}

XML::CXMLElement *WriteColor(const char *name, const WCRGBAColor &color) {
    auto *element = new XML::CXMLElement(name);
    element->AddAttrib("red", color.red);
    element->AddAttrib("green", color.green);
    element->AddAttrib("blue", color.blue);
    element->AddAttrib("alpha", color.alpha);
    return element;
}

bool ReadIntText(const XML::CXMLElement &element, int &out) noexcept {
    return WUAtoi(element.GetText().c_str(), out) == eNoErr;
}

bool IsAttribTrue(const XML::CXMLElement &element, const char *name) noexcept {
    return element.AttribExists(name) && element.GetAttribString(name) == "true";
}

bool ReadSwitch(const XML::CXMLElement &element) {
    const std::string &text = element.GetText();
    return text != "false" && text != "0";
}

void KeepChildren(const XML::CXMLElement &cls, WTKeptChildren &kept) {
    kept.clear();
    for (const XML::CXMLElement *child : cls.GetSubElements())
        kept.push_back(*child);
}

void WriteKeptChildren(XML::CXMLElement &cls, const WTKeptChildren &kept) {
    for (const auto &child : kept)
        cls.push_sub_element(new XML::CXMLElement(child));
}

void WriteTypedImages(XML::CXMLElement &cls,
                      std::initializer_list<std::pair<const char *, const WCBaseImage *>> images) {
    for (const auto &[type, image] : images) {
        if (image->GetResID() == WCBaseImage::kNoResID)
            continue;
        auto *element = cls.push_sub_element(new XML::CXMLElement("Image"));
        element->AddAttrib("Type", type);
        image->WriteToXML(element);
    }
}

} // namespace GUIXML

MIREL_NAMESPACE_END
