#pragma once

#include <utility>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// A small path language over CXMLElement trees: steps separated by "/" (or a chosen set of
// separator characters), each an element name with an optional filter [@attr="value"].
//
// The first step finds the nearest matches anywhere below the root (up to 1000 levels, the root
// included); every later step looks at each current element itself and its direct children.
// A leading "//" or a step that starts with "!" searches the whole depth again. A match hides
// matching descendants below it. With a filter, an element of the right name but another value,
// or without the attribute, is not a match and is not searched below either.
// [any-thread] on distinct trees.
class WCXPathUtils {
public:
    using WTStepName = WCFixedString<63>;
    using WTStepFilter = WCFixedStringPair<31, 255>;
    using WTStep = std::pair<WTStepName, WTStepFilter>;
    using WTSteps = std::vector<WTStep>;

    static constexpr int kDeepSearch = 1000;

    // Splits `expression` into steps at any character of `separator` ("/" when null). The first
    // "//" becomes "/!" so its step searches deep. Steps without an element name are dropped.
    static void ParseXpathExpression(const char *expression, WTSteps &steps,
                                     const char *separator = nullptr);

    // The elements the path leads to, in document order of discovery. eMemNullPointer for a
    // null root or expression.
    static WTErr GetXPathElements(const CXMLElement *root, std::vector<CXMLElement *> &result,
                                  const char *expression, const char *separator);
    // The same with "/" as separator; each element comes with its "ID" attribute as an integer,
    // or -1 when it has none that reads as one.
    static WTErr GetXPathElements(const CXMLElement *root,
                                  std::vector<std::pair<CXMLElement *, int>> &result,
                                  const char *expression);

    // One step over a set of elements: GetXPathElements2 on each, into `result`.
    static WTErr GetXPathElements1(const std::vector<CXMLElement *> &current,
                                   std::vector<CXMLElement *> &result, const WTStep &step,
                                   int depth);
    // One step from one element: the element itself if it matches, else its descendants down to
    // `depth` - 1 levels, stopping below every element of the step's name.
    static WTErr GetXPathElements2(const CXMLElement *element, std::vector<CXMLElement *> &result,
                                   const char *name, const WTStepFilter &filter, int depth);
};

} // namespace XML

MIREL_NAMESPACE_END
