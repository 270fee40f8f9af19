#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WTErrors.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

namespace XML {
class CXMLElement;
}
class WCBaseImage;

// Rectangles and colours of the GUI XML. [any-thread]
namespace GUIXML {

// A rectangle from "top", "left" and either "bottom"/"right" or "width"/"height"; an attribute
// that is absent counts 0. eNotANumber for a value that is no whole number, eOutOfRangeNumber for
// one beyond a short or a negative width or height; on any error `out` stays as it was.
WTErr ReadRect(const XML::CXMLElement &element, WURect<short> &out) noexcept;
// A new element `name` with "top", "left", "width" and "height".
XML::CXMLElement *WriteRect(const char *name, const WURect<short> &rect);
// "red", "green", "blue" and "alpha", each 0 to 255; a missing one is 0, a missing alpha 255.
// eOutOfRangeNumber or eNotANumber leave `out` as it was.
WTErr ReadColor(const XML::CXMLElement &element, WCRGBAColor &out) noexcept;
XML::CXMLElement *WriteColor(const char *name, const WCRGBAColor &color);
// The element's text as a whole number; false leaves `out` alone.
bool ReadIntText(const XML::CXMLElement &element, int &out) noexcept;
// The attribute is exactly "true".
bool IsAttribTrue(const XML::CXMLElement &element, const char *name) noexcept;
// A switch element: present means on, unless its text says "false" or "0".
bool ReadSwitch(const XML::CXMLElement &element);

// Children of a "Class" that a control keeps without reading them, written back as they came.
using WTKeptChildren = std::vector<XML::CXMLElement>;
// Every child of `cls`, in place of what `kept` held: for a kind with no children of its own.
void KeepChildren(const XML::CXMLElement &cls, WTKeptChildren &kept);
// Copies of `kept` appended to `cls`.
void WriteKeptChildren(XML::CXMLElement &cls, const WTKeptChildren &kept);
// An "Image" child with attribute "Type" for each image that has a resource, in order.
void WriteTypedImages(XML::CXMLElement &cls,
                      std::initializer_list<std::pair<const char *, const WCBaseImage *>> images);

} // namespace GUIXML

MIREL_NAMESPACE_END
