#include "Code/GUI/Controls/WUControlLookXML.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

MIREL_NAMESPACE_BEGIN

namespace ControlLook {

WTErr ReadNumber(const char *text, double &out) {
    char *end = nullptr;
    const double value = std::strtod(text, &end);
    if (end == text || *end != '\0' || !std::isfinite(value))
        return eNotANumber;
    out = value;
    return eNoErr;
}

WCRGBAColor PickColor(const std::optional<WCRGBAColor> &plain,
                      const std::optional<WCRGBAColor> &swapped,
                      const std::optional<WCRGBAColor> &highlight,
                      const std::optional<WCRGBAColor> &swappedHighlight, bool isSwapped,
                      bool isHighlighted, const WCRGBAColor &fallback) {
    if (isSwapped && isHighlighted && swappedHighlight)
        return *swappedHighlight;
    if (isSwapped && swapped)
        return *swapped;
    if (isHighlighted && highlight)
        return *highlight;
    return plain.value_or(fallback);
}

void AddNumberAttrib(XML::CXMLElement &element, const char *name, double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    element.AddAttrib(name, text);
}

WTErr ReadStateAttrib(const XML::CXMLElement &element, const char *name, double &out) {
    const auto text = element.GetAttribString(name);
    char *end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !std::isfinite(value))
        return eNotANumber;
    if (value < 0.0 || value > 1000.0)
        return eOutOfRangeNumber;
    out = value;
    return eNoErr;
}

} // namespace ControlLook

MIREL_NAMESPACE_END
