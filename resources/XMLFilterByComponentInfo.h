#pragma once

#include <pugixml.hpp>

#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "resources/MirelComponentInfo.h"

MIREL_NAMESPACE_BEGIN

// The text an "OS" attribute must contain for an element to stay on this platform.
inline constexpr const char *kFilterOSName = "Linux";

// Removes from a document what does not belong to one component. Four attributes are looked at,
// in this order: "SubComp" (the sub-type), "Comp" (the component type), "Affiliation" and "OS"
// (kFilterOSName). An element whose attribute does not contain the component's text goes with its
// sub-tree; an element without the attribute stays, and a value may list alternatives ("Mono,Stmo")
// since the test is a substring search. Never fails: returns 0. [any-thread] on distinct trees.
int FilterXMLByComponentInfo(const MirelComponentInfo &info, XML::CXMLElement &root);
int FilterPugiXMLByComponentInfo(const MirelComponentInfo &info, pugi::xml_node &root);

// Halves, below and at `root`, the coordinates of the rectangle and point elements of a document
// authored at twice the size, rounding to the nearest integer. Attributes whose values are not
// numbers are left alone. [any-thread] on distinct trees.
void HalveDoubleSizeCoordinates(pugi::xml_node root);

MIREL_NAMESPACE_END
