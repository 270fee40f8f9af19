#pragma once

#include <cstdint>
#include <vector>

#include <pugixml.hpp>

#include "Code/Algorithm/WSParamMaps.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// Reading a whole parameter XML into the parameter vector: the root's "Parameter" children in
// order, "Parent" inheritance by name among earlier elements, "ParamArraySize" expansion with a
// running number after the name. [main-thread, build time]
namespace ParamXML {

// A file that would declare more parameters than this is refused whole.
inline constexpr std::uint64_t kMaxParams = 8192;

// The number of parameters the root declares, arrays counted in full.
std::uint64_t PreCalcNumParamsFromXML(pugi::xml_node const &root);

// Appends the declared parameters to `params`, reserving once so pointers stay valid. Returns
// eOutOfRangeNumber and appends nothing when the count passes kMaxParams.
int ReadParametersXML(pugi::xml_node const &root, WSParamMaps const &maps,
                      std::vector<sCONTROL_PARAM> &params);

// The same from the text of a resource. Missing or empty text gives eRMResNotFound, text that
// does not parse eXMLParserFailed; either way `params` is left as it was.
int ReadParametersXMLFromText(char const *text, std::uint64_t size, WSParamMaps const &maps,
                              std::vector<sCONTROL_PARAM> &params);

// Writes each parameter back as one "Parameter" element under a "ParamXML" root.
int WriteParametersXML(std::vector<sCONTROL_PARAM> const &params, pugi::xml_document &doc);

} // namespace ParamXML

MIREL_NAMESPACE_END
