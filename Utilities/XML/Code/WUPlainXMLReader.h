#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// Reads a plain document straight into an element tree, many times faster than expat, for the
// documents the tree writer produces itself (preset files and host chunks): ASCII only, elements,
// attributes in either quote, text, the five named entities and character references, blanks,
// tabs and line feeds. A declaration, comment, CDATA section, DOCTYPE, processing instruction,
// carriage return, non-ASCII byte, duplicate attribute, ':' in a name, an element deeper than
// `depthLimit` levels below the root, or anything that is not well-formed makes it decline:
// it returns false and leaves `root` as it was, and the caller reads the document with expat.
// What it accepts becomes the very tree the expat parser builds from the same bytes (same
// names, packed attributes, trimmed texts, validity), so callers cannot tell the two apart.
// `root` must be empty (a fresh element) or the reader declines.
// [any-thread] on distinct trees.
bool ReadPlainXML(const char *text, std::uint64_t length, std::int32_t depthLimit,
                  CXMLElement &root);

} // namespace XML

MIREL_NAMESPACE_END
