#include "Utilities/XML/Code/CMapAttrib.h"

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

// Visits root and every descendant, parent before children, without recursion.
template <typename Visit>
void VisitPreOrder(const CXMLElement *root, Visit visit) {
    if (root == nullptr)
        return;
    std::vector<const CXMLElement *> pending{root};
    while (!pending.empty()) {
        const CXMLElement *element = pending.back();
        pending.pop_back();
        visit(element);
        const auto &children = element->GetSubElements();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.push_back(*it);
    }
}

bool ReadValue(const CXMLElement *element, const char *name, WCFixedString<63> &value) {
    WCFixedString<127> text;
    if (!element->GetAttrib(name, text))
        return false;
    value = text;
    return true;
}

} // namespace

CMapAttrib::CMapAttrib(const char *attribName, const CXMLElement *root) : m_attribName(attribName) {
    VisitPreOrder(root, [this](const CXMLElement *element) {
        WTValue value;
        if (ReadValue(element, m_attribName.c_str(), value))
            m_map.emplace(value, const_cast<CXMLElement *>(element));
    });
}

CXMLElement *CMapAttrib::FindElement(const char *value) const {
    const auto it = m_map.find(WTValue(value));
    return it != m_map.end() ? it->second : nullptr;
}

CXMLElement *CMapAttrib::FindElement(int value) const {
    WTValue text;
    text << value;
    const auto it = m_map.find(text);
    return it != m_map.end() ? it->second : nullptr;
}

CMultiMapAttrib::CMultiMapAttrib(const char *attribName, const CXMLElement *root)
    : m_attribName(attribName) {
    VisitPreOrder(root, [this](const CXMLElement *element) {
        WTValue value;
        if (ReadValue(element, m_attribName.c_str(), value))
            m_map.emplace(value, const_cast<CXMLElement *>(element));
    });
}

bool CMultiMapAttrib::FindElements(const char *value, WTMap::const_iterator &first,
                                   WTMap::const_iterator &last) const {
    const auto range = m_map.equal_range(WTValue(value));
    first = range.first;
    last = range.second;
    return first != last;
}

} // namespace XML

MIREL_NAMESPACE_END
