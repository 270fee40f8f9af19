#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// An index of a tree's elements by name, down to a given depth, so documents with many siblings
// are looked up without scanning children again and again. Elements of one name keep their
// document order. The map does not own the elements; it must not outlive the tree or see it
// change. Names are cut to 63 characters, in the map and in lookups, by the rule of element names
// (never inside a UTF-8 character), so a long name finds the element that was made with it.
// [any-thread] one object per thread.
class CMapNames {
public:
    using WTName = WCFixedString<63>;
    using WTMap = std::multimap<WTName, CXMLElement *>;

    // A null root or depth 0 gives an empty map; depth 1 maps the root's children, depth N also
    // their descendants down to N levels.
    CMapNames(const CXMLElement *root, std::uint64_t depth);

    CXMLElement *FindElement(const char *name) const;
    // The n-th element of that name counted from 0, or null.
    CXMLElement *FindNthElement(const char *name, std::uint64_t n) const;
    // Appends every element of that name and returns how many there are.
    std::uint64_t FindElements(const char *name, std::vector<CXMLElement *> &out) const;
    std::uint64_t Count(const char *name) const;
    // eXMLElementMissing when there is no element of that name.
    WTErr GetElementText(const char *name, std::string &text) const;
    // Every distinct name, in sorted order.
    void GetNameList(std::vector<WTName> &names) const;

    const CXMLElement *GetRoot() const noexcept { return m_root; }
    const WTMap &GetMap() const noexcept { return m_map; }

private:
    void MapElement(const CXMLElement *element, std::uint64_t depth);

    WTMap m_map;
    const CXMLElement *m_root;
};

} // namespace XML

MIREL_NAMESPACE_END
