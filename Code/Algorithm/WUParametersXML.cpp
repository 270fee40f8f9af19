#include "Code/Algorithm/WUParametersXML.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "Code/Algorithm/sCONTROL_PARAMXML.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace ParamXML {

namespace {

constexpr unsigned int kParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                     pugi::parse_wconv_attribute | pugi::parse_trim_pcdata |
                                     pugi::parse_embed_pcdata;

// Inheritance chains longer than this are cut; only earlier elements can be parents, so a
// chain is finite anyway, but a long one would cost quadratic time.
constexpr int kMaxParentDepth = 32;

std::int32_t ArraySizeOf(pugi::xml_node const &element) {
    sCONTROL_PARAMXML probe;
    const double size = element.attribute("ParamArraySize").as_double(1.0);
    if (!(size >= 1.0))
        return 1;
    return size > probe.kMaxArraySize ? probe.kMaxArraySize : static_cast<std::int32_t>(size);
}

// Each named element with its position among the "Parameter" elements.
struct WSNamedElement {
    pugi::xml_node node;
    std::size_t position = 0;
};
// Every element of a name, in document order: a name used twice has a parent for each place.
using ElementsByName = std::map<WCFixedString<127>, std::vector<WSNamedElement>>;

// The last element of `name` before `position`; null when there is none.
WSNamedElement const *FindParent(ElementsByName const &earlier, char const *name,
                                 std::size_t position) {
    const auto found = earlier.find(WCFixedString<127>(name));
    if (found == earlier.end())
        return nullptr;
    auto const &elements = found->second;
    const auto after = std::lower_bound(
        elements.begin(), elements.end(), position,
        [](WSNamedElement const &element, std::size_t at) { return element.position < at; });
    return after == elements.begin() ? nullptr : &*(after - 1);
}

// Reads the ancestors of `element` first, oldest first, then the element itself. A parent
// counts only when it comes before the element that names it, so an ancestor reads exactly as
// it did for its own parameter, even when its "Parent" names an element further down.
void ReadWithParents(pugi::xml_node const &element, std::size_t position,
                     ElementsByName const &earlier, sCONTROL_PARAMXML &data) {
    pugi::xml_node chain[kMaxParentDepth];
    int depth = 0;
    pugi::xml_node current = element;
    while (depth < kMaxParentDepth) {
        chain[depth++] = current;
        WSNamedElement const *parent =
            FindParent(earlier, current.attribute("Parent").value(), position);
        if (parent == nullptr)
            break;
        current = parent->node;
        position = parent->position;
    }
    for (int i = depth - 1; i >= 0; --i)
        data.ReadFromXML(chain[i]);
}

} // namespace

std::uint64_t PreCalcNumParamsFromXML(pugi::xml_node const &root) {
    std::uint64_t count = 0;
    for (pugi::xml_node element : root.children("Parameter"))
        count += static_cast<std::uint64_t>(ArraySizeOf(element));
    return count;
}

int ReadParametersXML(pugi::xml_node const &root, WSParamMaps const &maps,
                      std::vector<sCONTROL_PARAM> &params) {
    if (!root)
        return eXMLElementMissing;
    const std::uint64_t count = PreCalcNumParamsFromXML(root);
    if (count > kMaxParams)
        return eOutOfRangeNumber;
    params.reserve(params.size() + count);

    ElementsByName earlier;
    sCONTROL_PARAMXML data;
    std::size_t position = 0;
    for (pugi::xml_node element : root.children("Parameter")) {
        data.MembersDefaults();
        ReadWithParents(element, position, earlier, data);
        const std::int32_t size = data.m_ArraySize;
        const WCFixedString<127> baseName = data.m_Name;
        for (std::int32_t i = 0; i < size; ++i) {
            if (size > 1) {
                data.m_Name = baseName;
                data.m_Name << (i + 1);
            }
            sCONTROL_PARAM param;
            data.WriteDataToMembers(param, maps);
            params.push_back(std::move(param));
        }
        if (auto name = element.attribute("Name"))
            earlier[WCFixedString<127>(name.value())].push_back({element, position});
        ++position;
    }
    return eNoErr;
}

int ReadParametersXMLFromText(char const *text, std::uint64_t size, WSParamMaps const &maps,
                              std::vector<sCONTROL_PARAM> &params) {
    if (text == nullptr || size == 0)
        return eRMResNotFound;
    pugi::xml_document doc;
    if (!doc.load_buffer(text, size, kParseFlags))
        return eXMLParserFailed;
    pugi::xml_node root = doc.document_element();
    if (!root)
        return eRMResNotFound;
    std::vector<sCONTROL_PARAM> read;
    const int err = ReadParametersXML(root, maps, read);
    if (err != eNoErr)
        return err;
    // Moved in only when the whole file read, so a refused file leaves nothing behind.
    params.reserve(params.size() + read.size());
    for (auto &param : read)
        params.push_back(std::move(param));
    return eNoErr;
}

int WriteParametersXML(std::vector<sCONTROL_PARAM> const &params, pugi::xml_document &doc) {
    doc.reset();
    pugi::xml_node root = doc.append_child("ParamXML");
    sCONTROL_PARAMXML data;
    for (auto const &param : params) {
        data.ReadDataFromMembers(param);
        const int err = data.WriteToXML(root);
        if (err != eNoErr)
            return err;
    }
    return eNoErr;
}

} // namespace ParamXML

MIREL_NAMESPACE_END
