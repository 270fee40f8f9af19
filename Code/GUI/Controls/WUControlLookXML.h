#pragma once

#include <optional>
#include <span>
#include <variant>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

// The "Class" children of the controls that draw themselves with colours and sizes (meters, arcs,
// bars): each is a colour element ("red", "green", "blue", "alpha") or a number in the element's
// text. A value is kept only when the XML gives it, so that a document is written back as it was
// read and a drawing falls back on its own default for the rest. [any-thread]
namespace ControlLook {

// A finite number, the whole of `text`; eNotANumber leaves `out` alone.
WTErr ReadNumber(const char *text, double &out);
// The same of an element's text.
inline WTErr ReadNumberText(const XML::CXMLElement &element, double &out) {
    return ReadNumber(element.GetText().c_str(), out);
}
// `value` as attribute `name`, in its shortest exact form ("600", "0.25").
void AddNumberAttrib(XML::CXMLElement &element, const char *name, double value);
// A state (0..1000) from attribute `name`: eNotANumber for no number, eOutOfRangeNumber beyond
// the states; either leaves `out` alone.
WTErr ReadStateAttrib(const XML::CXMLElement &element, const char *name, double &out);

// One child a control knows, and the member of its look (`Look`) that holds it.
template <typename Look>
struct WSChild {
    const char *m_Name;
    std::variant<std::optional<WCRGBAColor> Look::*, std::optional<double> Look::*> m_Member;
};

// Whether `child` is one of `known`; when it is, `err` is the code of reading it into `look`
// (the member keeps its value on an error): eNotANumber for text that is no finite number, the
// colour reader's code for a colour.
template <typename Look>
bool ReadChild(const XML::CXMLElement &child, std::span<const WSChild<Look>> known, Look &look,
               WTErr &err) {
    for (const WSChild<Look> &entry : known) {
        if (child.GetName() != entry.m_Name)
            continue;
        if (auto *color = std::get_if<0>(&entry.m_Member)) {
            WCRGBAColor value;
            err = GUIXML::ReadColor(child, value);
            if (err == eNoErr)
                look.*(*color) = value;
        } else {
            double value = 0.0;
            err = ReadNumberText(child, value);
            if (err == eNoErr)
                look.*std::get<1>(entry.m_Member) = value;
        }
        return true;
    }
    return false;
}

// Every child of `cls` into `look`: those of `known` read, the others kept in `look.m_Others`
// to be written back. The first child that does not read stops it with its code.
template <typename Look>
WTErr ReadChildren(const XML::CXMLElement &cls, std::span<const WSChild<Look>> known, Look &look) {
    for (const XML::CXMLElement *child : cls.GetSubElements()) {
        WTErr err = eNoErr;
        if (!ReadChild<Look>(*child, known, look, err))
            look.m_Others.push_back(*child);
        else if (err != eNoErr)
            return err;
    }
    return eNoErr;
}

// The children of `known` that hold a value in `look`, in the order of `known`.
template <typename Look>
void WriteChildren(XML::CXMLElement &cls, std::span<const WSChild<Look>> known, const Look &look) {
    for (const WSChild<Look> &entry : known) {
        if (auto *color = std::get_if<0>(&entry.m_Member)) {
            if (const auto &value = look.*(*color))
                cls.push_sub_element(GUIXML::WriteColor(entry.m_Name, *value));
        } else if (const auto &number = look.*std::get<1>(entry.m_Member)) {
            cls.push_sub_element(new XML::CXMLElement(entry.m_Name, *number));
        }
    }
}

// The colour of a drawn part: its highlight form while highlighted, its swapped form while
// swapped (each falling back on the plain one), `fallback` when the XML gave no plain colour.
WCRGBAColor PickColor(const std::optional<WCRGBAColor> &plain,
                      const std::optional<WCRGBAColor> &swapped,
                      const std::optional<WCRGBAColor> &highlight,
                      const std::optional<WCRGBAColor> &swappedHighlight, bool isSwapped,
                      bool isHighlighted, const WCRGBAColor &fallback);

} // namespace ControlLook

MIREL_NAMESPACE_END
