#include "Utilities/XML/Code/CMapNames.h"

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

CMapNames::CMapNames(const CXMLElement *root, std::uint64_t depth) : m_root(root) {
    if (root != nullptr && depth > 0)
        MapElement(root, depth);
}

void CMapNames::MapElement(const CXMLElement *element, std::uint64_t depth) {
    // Depth first, parent before its children, as a recursive walk would insert them: among
    // equal names the order of the map is that pre-order. An explicit stack keeps deep trees off
    // the call stack.
    struct WSLevel {
        const CXMLElement *parent;
        std::uint64_t remaining;
        std::uint64_t next;
    };
    std::vector<WSLevel> pending{{element, depth, 0}};
    while (!pending.empty()) {
        WSLevel &top = pending.back();
        const auto &children = top.parent->GetSubElements();
        if (top.next >= children.size()) {
            pending.pop_back();
            continue;
        }
        CXMLElement *child = children[top.next++];
        m_map.emplace(child->GetName(), child);
        if (top.remaining > 1)
            pending.push_back({child, top.remaining - 1, 0});
    }
}

CXMLElement *CMapNames::FindElement(const char *name) const {
    return FindNthElement(name, 0);
}

CXMLElement *CMapNames::FindNthElement(const char *name, std::uint64_t n) const {
    const auto [first, last] = m_map.equal_range(CXMLElement::CutName(name));
    auto it = first;
    for (std::uint64_t i = 0; i < n && it != last; ++i)
        ++it;
    return it != last ? it->second : nullptr;
}

std::uint64_t CMapNames::FindElements(const char *name, std::vector<CXMLElement *> &out) const {
    const auto [first, last] = m_map.equal_range(CXMLElement::CutName(name));
    std::uint64_t count = 0;
    for (auto it = first; it != last; ++it, ++count)
        out.push_back(it->second);
    return count;
}

std::uint64_t CMapNames::Count(const char *name) const {
    return m_map.count(CXMLElement::CutName(name));
}

WTErr CMapNames::GetElementText(const char *name, std::string &text) const {
    const CXMLElement *element = FindElement(name);
    if (element == nullptr)
        return eXMLElementMissing;
    text = element->GetText();
    return eNoErr;
}

void CMapNames::GetNameList(std::vector<WTName> &names) const {
    for (auto it = m_map.begin(); it != m_map.end(); it = m_map.upper_bound(it->first))
        names.push_back(it->first);
}

} // namespace XML

MIREL_NAMESPACE_END
