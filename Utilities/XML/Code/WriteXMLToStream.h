#pragma once

#include <ostream>
#include <string>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// Writes `element` and its sub-tree as XML text, byte for byte in the system's one layout: four
// blanks per level when `indent`, attribute values and plain text with &, <, >, " and '
// escaped, CDATA text on lines of its own with every "]]>" split across two sections, a leaf on
// one line, and "\n" after every tag. With `checkValidity`, an element that is not valid is
// written as the line "XML not valid" instead of its sub-tree. A null element writes nothing.
// The walk is iterative, so any depth is written.
// [any-thread] on distinct trees.
void WriteXMLToStream(std::ostream &stream, const CXMLElement *element, bool checkValidity,
                      bool indent, int level);

// The same text appended to a string, without the cost of a stream.
void WriteXMLToString(std::string &target, const CXMLElement *element, bool checkValidity,
                      bool indent, int level);

} // namespace XML

MIREL_NAMESPACE_END
