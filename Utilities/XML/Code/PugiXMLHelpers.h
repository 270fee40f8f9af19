#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCPoint2D.h"
#include "core/WCRGBAColor.h"
#include "core/WCSize2D.h"
#include "core/WTErrors.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// Readers and writers of the system's small value types on pugi nodes, the counterparts of the
// XML:: forms in XMLHelpers.h. A reader takes the node that holds the value, writes into its
// out-argument only what it could read, and returns eXMLElementMissing for a null node. A writer
// fills the given node (eMemNullPointer for a null one).
// [any-thread] on distinct documents.
namespace PugiXML {

// The node's text through a string stream; text that is no number gives eNotANumber.
template <typename T>
WTErr ReadFromXML_Int(const pugi::xml_node &node, T &value);

template <typename T>
WTErr ReadFromXML_Int_Vector(const pugi::xml_node &node, std::vector<T> &values);
template <typename T>
WTErr WriteToXML_Int_Vector(pugi::xml_node &node, const std::vector<T> &values);
template <typename T>
WTErr WriteToXML_Int_Array(pugi::xml_node &node, const T *values, std::uint64_t count);

template <typename T>
WTErr ReadFromXML_Float_Vector(const pugi::xml_node &node, std::vector<T> &values);
template <typename T>
WTErr WriteToXML_Float_Vector(pugi::xml_node &node, const std::vector<T> &values);
template <typename T>
WTErr WriteToXML_Float_Array(pugi::xml_node &node, const T *values, std::uint64_t count);

template <typename T>
WTErr ReadFromXML_WCPoint(const pugi::xml_node &node, WCPoint2D<T> &point);
template <typename T>
WTErr WriteToXML_WCPoint(pugi::xml_node &node, const WCPoint2D<T> &point);

template <typename T>
WTErr ReadFromXML_WCSize(const pugi::xml_node &node, WCSize2D<T> &size);
template <typename T>
WTErr WriteToXML_WCSize(pugi::xml_node &node, const WCSize2D<T> &size);

// Attributes only: "top" and "left" default to 0 and are always set, "right" and "bottom" only
// when present, then "width" and "height" from left and top.
template <typename T>
WTErr ReadFromXML_WURect(const pugi::xml_node &node, WURect<T> &rect);
template <typename T>
WTErr WriteToXML_WURect(pugi::xml_node &node, const WURect<T> &rect);

// The four attributes "red", "green", "blue", "alpha", each 255 when absent.
WTErr ReadFromXML_WCRGBAColor(const pugi::xml_node &node, WCRGBAColor &color);
WTErr WriteToXML_WCRGBAColor(pugi::xml_node &node, const WCRGBAColor &color);

// Leading tabs, blanks, double and single quotes skipped, then up to four characters: exactly
// four make the code, fewer "????". Written without quotes.
WTErr ReadFromXML_WCFourCC(const pugi::xml_node &node, WCFourCC &code);
WTErr WriteToXML_WCFourCC(pugi::xml_node &node, WCFourCC code);

// A null node gives false; a node without text true; otherwise "false"/"no" and "true"/"yes" in
// any case (the text cut to 15 characters), and any other text keeps the value.
WTErr ReadFromXML_Bool(const pugi::xml_node &node, bool &value);

WTErr ReadFromXML_Image(const pugi::xml_node &node, short &resID, WCFixedStringBase &type);
WTErr WriteToXML_Image(pugi::xml_node &parent, short resID, const char *type);

WTErr ReadFromXML_String_Vector(const pugi::xml_node &node, std::vector<std::string> &values,
                                const char *separators);

// Sets `flag` when the node has a child of that name; never clears it.
WTErr ReadFromXML_SetBoolTrueIfSubElementExists(const pugi::xml_node &node, const char *name,
                                                bool &flag);

} // namespace PugiXML

MIREL_NAMESPACE_END
