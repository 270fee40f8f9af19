#include "Utilities/XML/Code/WCXPathUtils.h"

#include <string>

#include <boost/tokenizer.hpp>

#include "Utilities/XML/Code/CXMLElement.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

namespace {

// One token as name[@attr="value"], read the way a scanf pattern "%[^[][@%[^=]=\"%[^\"]" reads
// it: each field is taken as far as it goes, and the first literal that does not match ends the
// parse with the fields read so far. So a filter without a value still names its attribute.
WCXPathUtils::WTStep ParseStep(const std::string &token) {
    WCXPathUtils::WTStep step;
    const std::string::size_type size = token.size();
    std::string::size_type position = token.find('[');
    if (position == std::string::npos)
        position = size;
    step.first.assign(token.data(), position);
    if (position == 0 || position + 1 >= size || token[position + 1] != '@')
        return step;
    const std::string::size_type nameStart = position + 2;
    std::string::size_type equals = token.find('=', nameStart);
    if (equals == std::string::npos)
        equals = size;
    if (equals == nameStart)
        return step;
    step.second.first.assign(token.data() + nameStart, equals - nameStart);
    if (equals + 1 >= size || token[equals + 1] != '"')
        return step;
    const std::string::size_type valueStart = equals + 2;
    std::string::size_type quote = token.find('"', valueStart);
    if (quote == std::string::npos)
        quote = size;
    step.second.second.assign(token.data() + valueStart, quote - valueStart);
    return step;
}

} // namespace

void WCXPathUtils::ParseXpathExpression(const char *expression, WTSteps &steps,
                                        const char *separator) {
    if (expression == nullptr)
        return;
    std::string text(expression);
    if (const auto deep = text.find("//"); deep != std::string::npos)
        text.replace(deep, 2, "/!");
    const boost::char_separator<char> separators(separator != nullptr ? separator : "/");
    const boost::tokenizer<boost::char_separator<char>> tokens(text, separators);
    for (const std::string &token : tokens) {
        WTStep step = ParseStep(token);
        if (!step.first.empty())
            steps.push_back(step);
    }
}

WTErr WCXPathUtils::GetXPathElements(const CXMLElement *root, std::vector<CXMLElement *> &result,
                                     const char *expression, const char *separator) {
    result.clear();
    if (root == nullptr || expression == nullptr)
        return eMemNullPointer;
    WTSteps steps;
    ParseXpathExpression(expression, steps, separator);
    std::vector<CXMLElement *> current{const_cast<CXMLElement *>(root)};
    int depth = kDeepSearch;
    for (WTStep &step : steps) {
        if (step.first[0] == '!') {
            step.first.erase(0, 1);
            depth = kDeepSearch;
        }
        result.clear();
        const WTErr err = GetXPathElements1(current, result, step, depth);
        if (err != eNoErr)
            return err;
        current.swap(result);
        depth = 2;
    }
    result.swap(current);
    return eNoErr;
}

WTErr WCXPathUtils::GetXPathElements(const CXMLElement *root,
                                     std::vector<std::pair<CXMLElement *, int>> &result,
                                     const char *expression) {
    result.clear();
    std::vector<CXMLElement *> elements;
    const WTErr err = GetXPathElements(root, elements, expression, nullptr);
    for (CXMLElement *element : elements) {
        int id = -1;
        if (!element->GetID(id))
            id = -1;
        result.emplace_back(element, id);
    }
    return err;
}

WTErr WCXPathUtils::GetXPathElements1(const std::vector<CXMLElement *> &current,
                                      std::vector<CXMLElement *> &result, const WTStep &step,
                                      int depth) {
    for (const CXMLElement *element : current) {
        const WTErr err =
            GetXPathElements2(element, result, step.first.c_str(), step.second, depth);
        if (err != eNoErr)
            return err;
    }
    return eNoErr;
}

WTErr WCXPathUtils::GetXPathElements2(const CXMLElement *element,
                                      std::vector<CXMLElement *> &result, const char *name,
                                      const WTStepFilter &filter, int depth) {
    if (depth <= 0 || element == nullptr)
        return eNoErr;
    if (element->GetName().compare(name) == 0) {
        if (filter.first.empty()) {
            result.push_back(const_cast<CXMLElement *>(element));
        } else {
            WCFixedString<127> value;
            if (element->GetAttrib(filter.first.c_str(), value) &&
                value.compare(filter.second) == 0)
                result.push_back(const_cast<CXMLElement *>(element));
        }
        return eNoErr;
    }
    for (const CXMLElement *child : element->GetSubElements()) {
        const WTErr err = GetXPathElements2(child, result, name, filter, depth - 1);
        if (err != eNoErr)
            return err;
    }
    return eNoErr;
}

} // namespace XML

MIREL_NAMESPACE_END
