#pragma once

#include <cstdint>

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

// One rule of the attribute filter: an element with attribute `m_Name` stays only if its value
// contains `m_Required` as a substring, so a value can list alternatives ("Stmo,Mono").
struct WSAttributeRequirement {
    WCFixedString<31> m_Name;
    WCFixedString<31> m_Required;
};

// Removes, for each rule in order, every element below `root` that breaks the rule, with its
// sub-tree; an element without the attribute always stays. Parents are handled before their
// children and the order of the children kept stays as it was. The root itself is never removed.
// [any-thread] on distinct trees.
void FilterXMLByAttributes(const WSAttributeRequirement *rules, std::uint64_t count,
                           CXMLElement &root);
void FilterPugiXMLByAttributes(const WSAttributeRequirement *rules, std::uint64_t count,
                               pugi::xml_node &root);

} // namespace XML

MIREL_NAMESPACE_END
