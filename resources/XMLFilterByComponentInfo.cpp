#include "resources/XMLFilterByComponentInfo.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "Utilities/XML/Code/XMLAttributeFilter.h"

MIREL_NAMESPACE_BEGIN

namespace {

struct WSRules {
    explicit WSRules(const MirelComponentInfo &info) {
        m_Rules[0] = {WCFixedString<31>("SubComp"), info.m_ComponentSubType.GetString()};
        m_Rules[1] = {WCFixedString<31>("Comp"), info.m_ComponentType.GetString()};
        m_Rules[2] = {WCFixedString<31>("Affiliation"), info.m_Affiliation.GetString()};
        m_Rules[3] = {WCFixedString<31>("OS"), WCFixedString<31>(kFilterOSName)};
    }
    XML::WSAttributeRequirement m_Rules[4];
};

constexpr const char *kRectElements[] = {
    "Rect",         "DrawArea",   "ControlRect",    "PositionRect",      "ClippingRect",
    "ClippingArea", "SignalRect", "InsertSlotRect", "ControlRectBlowup", "ControlRectSecondary"};
constexpr const char *kRectAttributes[] = {"left", "top", "right", "bottom", "width", "height"};
constexpr const char *kPointElements[] = {"ControlRectOffset",
                                          "InsertSlotCloseButtonRelativeRectOffset", "SlotsGap",
                                          "KnobCenter", "SlotsOffsets"};
constexpr const char *kPointAttributes[] = {"x", "y"};

template <std::size_t N>
bool IsOneOf(const char *name, const char *const (&names)[N]) {
    for (const char *candidate : names)
        if (std::strcmp(name, candidate) == 0)
            return true;
    return false;
}

template <std::size_t N>
void HalveAttributes(pugi::xml_node node, const char *const (&names)[N]) {
    for (const char *name : names) {
        pugi::xml_attribute attribute = node.attribute(name);
        if (!attribute)
            continue;
        const char *text = attribute.value();
        char *end = nullptr;
        const double value = std::strtod(text, &end);
        if (end == text || *end != '\0' || !std::isfinite(value) || std::fabs(value) > 1e15)
            continue;
        attribute.set_value(static_cast<long long>(std::llround(value * 0.5)));
    }
}

} // namespace

int FilterXMLByComponentInfo(const MirelComponentInfo &info, XML::CXMLElement &root) {
    const WSRules rules(info);
    XML::FilterXMLByAttributes(rules.m_Rules, 4, root);
    return eNoErr;
}

int FilterPugiXMLByComponentInfo(const MirelComponentInfo &info, pugi::xml_node &root) {
    const WSRules rules(info);
    XML::FilterPugiXMLByAttributes(rules.m_Rules, 4, root);
    return eNoErr;
}

void HalveDoubleSizeCoordinates(pugi::xml_node root) {
    std::vector<pugi::xml_node> pending{root};
    while (!pending.empty()) {
        const pugi::xml_node node = pending.back();
        pending.pop_back();
        if (node.type() != pugi::node_element && node.type() != pugi::node_document)
            continue;
        if (IsOneOf(node.name(), kRectElements))
            HalveAttributes(node, kRectAttributes);
        else if (IsOneOf(node.name(), kPointElements))
            HalveAttributes(node, kPointAttributes);
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
            pending.push_back(child);
    }
}

MIREL_NAMESPACE_END
