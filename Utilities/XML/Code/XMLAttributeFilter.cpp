#include "Utilities/XML/Code/XMLAttributeFilter.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

bool Breaks(const char *value, const WSAttributeRequirement &rule) {
    return std::strstr(value, rule.m_Required.c_str()) == nullptr;
}

void FilterOne(const WSAttributeRequirement &rule, CXMLElement &root) {
    // An explicit stack: documents from outside may nest deeper than the call stack allows.
    std::vector<CXMLElement *> pending{&root};
    // Whole values: a code listed past any fixed length must still keep its element.
    std::string value;
    while (!pending.empty()) {
        CXMLElement *element = pending.back();
        pending.pop_back();
        std::vector<CXMLElement *> &children = element->GetSubElements();
        const auto kept =
            std::stable_partition(children.begin(), children.end(), [&](CXMLElement *child) {
                value.clear();
                return !child->GetAttrib(rule.m_Name.c_str(), value) ||
                       !Breaks(value.c_str(), rule);
            });
        for (auto it = kept; it != children.end(); ++it)
            delete *it;
        children.erase(kept, children.end());
        for (CXMLElement *child : children)
            pending.push_back(child);
    }
}

void FilterOne(const WSAttributeRequirement &rule, pugi::xml_node root) {
    std::vector<pugi::xml_node> pending{root};
    while (!pending.empty()) {
        pugi::xml_node node = pending.back();
        pending.pop_back();
        for (pugi::xml_node child = node.first_child(); child;) {
            const pugi::xml_node next = child.next_sibling();
            const pugi::xml_attribute attribute = child.attribute(rule.m_Name.c_str());
            if (child.type() == pugi::node_element && attribute && Breaks(attribute.value(), rule))
                node.remove_child(child);
            else if (child.type() == pugi::node_element)
                pending.push_back(child);
            child = next;
        }
    }
}

} // namespace

void FilterXMLByAttributes(const WSAttributeRequirement *rules, std::uint64_t count,
                           CXMLElement &root) {
    for (std::uint64_t i = 0; i < count; ++i)
        FilterOne(rules[i], root);
}

void FilterPugiXMLByAttributes(const WSAttributeRequirement *rules, std::uint64_t count,
                               pugi::xml_node &root) {
    for (std::uint64_t i = 0; i < count; ++i)
        FilterOne(rules[i], root);
}

} // namespace XML

MIREL_NAMESPACE_END
