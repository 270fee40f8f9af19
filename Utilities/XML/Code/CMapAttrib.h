#pragma once

#include <map>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

class CXMLElement;

// An index of a tree's elements by the value of one attribute, over the root and its whole
// sub-tree, parent before children. Values are read into 127 characters and cut to 63. Elements
// without the attribute are skipped, but their children are still visited. The first element of
// a value wins; later ones are dropped (CMultiMapAttrib keeps them all, in that order). The maps do
// not own the elements; they must not outlive the tree or see it change.
// [any-thread] one object per thread.
class CMapAttrib {
public:
    using WTValue = WCFixedString<63>;

    CMapAttrib(const char *attribName, const CXMLElement *root);

    CXMLElement *FindElement(const char *value) const;
    // Through the value's decimal text.
    CXMLElement *FindElement(int value) const;

    const WCFixedString<63> &GetAttribName() const noexcept { return m_attribName; }
    const std::map<WTValue, CXMLElement *> &GetMap() const noexcept { return m_map; }

private:
    WCFixedString<63> m_attribName;
    std::map<WTValue, CXMLElement *> m_map;
};

class CMultiMapAttrib {
public:
    using WTValue = WCFixedString<63>;
    using WTMap = std::multimap<WTValue, CXMLElement *>;

    CMultiMapAttrib(const char *attribName, const CXMLElement *root);

    // The range of elements with that value; false when it is empty.
    bool FindElements(const char *value, WTMap::const_iterator &first,
                      WTMap::const_iterator &last) const;

    const WCFixedString<63> &GetAttribName() const noexcept { return m_attribName; }
    const WTMap &GetMap() const noexcept { return m_map; }

private:
    WCFixedString<63> m_attribName;
    WTMap m_map;
};

// The index by the attribute "ID".
class CMapIDs : public CMapAttrib {
public:
    explicit CMapIDs(const CXMLElement *root) : CMapAttrib("ID", root) {}
};

} // namespace XML

MIREL_NAMESPACE_END
