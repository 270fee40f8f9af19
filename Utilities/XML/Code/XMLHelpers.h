#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"
#include "core/WCPoint2D.h"
#include "core/WCRGBAColor.h"
#include "core/WCSize2D.h"
#include "core/WTErrors.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// Readers and writers of the system's small value types on CXMLElement trees. A reader takes the
// element that holds the value and writes into its out-argument only what it could read; it
// returns eXMLElementMissing for a null element. A writer fills the given element (eMemNullPointer
// for a null one). The same families exist on pugi nodes in PugiXMLHelpers.h.
// [any-thread] on distinct trees.

// Text read with a string stream; text that is no number leaves the value and gives eNotANumber.
// For short, unsigned short, int, unsigned int, std::int64_t and std::uint64_t.
template <typename T>
WTErr ReadFromXML_Int(const CXMLElement *const element, T &value);

// A text of integers in any separation: everything but digits and signs separates; a run of
// signs flips the sign at each "-"; digits accumulate in T (overflow wraps); a number without a
// digit adds nothing. Replaces the vector's content. For signed char, short, int, unsigned int
// and std::int64_t.
template <typename T>
WTErr ReadFromXML_Int_Vector(const CXMLElement *const element, std::vector<T> &values);
// The numbers in base 10 with one blank between them, as the element's text.
template <typename T>
WTErr WriteToXML_Int_Vector(CXMLElement *element, const std::vector<T> &values);
template <typename T>
WTErr WriteToXML_Int_Array(CXMLElement *element, const T *values, std::uint64_t count);
template <typename T>
std::string IntArrayToString(const T *values, std::uint64_t count, int radix = 10);

// Tokens split at any of " ,\t\n;", each read like atof. For float and double.
template <typename T>
WTErr ReadFromXML_Float_Vector(const CXMLElement *const element, std::vector<T> &values);
// One blank between numbers printed with ten decimals.
template <typename T>
WTErr WriteToXML_Float_Vector(CXMLElement *element, const std::vector<T> &values);
template <typename T>
WTErr WriteToXML_Float_Array(CXMLElement *element, const T *values, std::uint64_t count);
template <typename T>
std::string FloatArrayToString(const T *values, std::uint64_t count, int precision = 10);

// Attributes "h" and "v"; reading falls back to "x" and "y". For short, unsigned short, int,
// float and double.
template <typename T>
WTErr ReadFromXML_WCPoint(const CXMLElement *const element, WCPoint2D<T> &point);
template <typename T>
WTErr WriteToXML_WCPoint(CXMLElement *element, const WCPoint2D<T> &point);

// Sub-elements "Width" and "Height". For unsigned short, int, unsigned int and double.
template <typename T>
WTErr ReadFromXML_WCSize(const CXMLElement *const element, WCSize2D<T> &size);
template <typename T>
WTErr WriteToXML_WCSize(CXMLElement *element, const WCSize2D<T> &size);

// Reading takes sub-elements "left", "top", "right", "bottom", "width", "height", then attributes
// of the same names over them; a width or height is applied last, from left or top. Writing sets
// the attributes "left", "top", "width", "height". For short, int and double.
template <typename T>
WTErr ReadFromXML_WURect(const CXMLElement *const element, WURect<T> &rect);
template <typename T>
WTErr WriteToXML_WURect(CXMLElement *element, const WURect<T> &rect);

// With children: "Red", "Green", "Blue", "Alpha" by name. Without: alpha 255, then attributes
// "red", "green", "blue", "alpha". Writing sets the four attributes.
WTErr ReadFromXML_WCRGBAColor(const CXMLElement *const element, WCRGBAColor &color);
WTErr WriteToXML_WCRGBAColor(CXMLElement *element, const WCRGBAColor &color);

// The text, after one leading single quote, must be exactly four characters; anything else reads
// as "????". Writing puts the code in single quotes, which every reader strips again.
WTErr ReadFromXML_WCFourCC(const CXMLElement *const element, WCFourCC &code);
WTErr WriteToXML_WCFourCC(CXMLElement *element, WCFourCC code);

// True unless the text is exactly "false" or "no"; an element without text is true.
WTErr ReadFromXML_Bool(const CXMLElement *const element, bool &value);

// The element "Image" with attributes "ResID" and "Type"; an element of another name is left
// alone (eXMLElementMissing). Writing appends such a child, unless the id is 65535 (none).
WTErr ReadFromXML_Image(const CXMLElement *const element, short &resID, WCFixedStringBase &type);
WTErr WriteToXML_Image(CXMLElement *parent, short resID, const char *type);

// The text split at any character of `separators`, empty tokens dropped; replaces the content.
WTErr ReadFromXML_String_Vector(const CXMLElement *const element, std::vector<std::string> &values,
                                const char *separators);

// "[" and "]" as "&lsqb;" and "&rsqb;", so a text can go into a CDATA section whatever it holds;
// RemoveCDATAEntities undoes it.
void InsertCDATAEntities(std::string &text);
void RemoveCDATAEntities(std::string &text);

// The integer-vector scan on plain text, shared by both XML worlds.
template <typename T>
void ParseIntVector(const char *text, std::vector<T> &values);
// The float-vector split on plain text, shared by both XML worlds.
template <typename T>
void ParseFloatVector(const char *text, std::vector<T> &values);
// The text rule of XML::ReadFromXML_WCFourCC.
WCFourCC FourCCFromQuotedText(const char *text) noexcept;

} // namespace XML

MIREL_NAMESPACE_END
