#include "graphic_stream/WCGSGraphExtractor.h"

#include <charconv>
#include <string_view>

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

constexpr std::string_view kParamIDPrefix = "ParamID:";

} // namespace

WCGSGraphExtractor::WCGSGraphExtractor(std::vector<GraphInfo> &graphs) : m_Graphs(graphs) {}

int WCGSGraphExtractor::MetaData(SGSData &data) {
    std::string_view text = GetDataText(data);
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.substr(0, kParamIDPrefix.size()) != kParamIDPrefix)
            continue;
        line.remove_prefix(kParamIDPrefix.size());
        while (!line.empty() && line.front() == ' ')
            line.remove_prefix(1);
        GraphInfo graph;
        // A malformed number leaves id 0; the graph still collects its points.
        std::from_chars(line.data(), line.data() + line.size(), graph.m_ParamID);
        m_Graphs.push_back(std::move(graph));
        m_HasGraph = true;
    }
    return 0;
}

int WCGSGraphExtractor::DrawVertices(SGSDrawVertices &) {
    if (!m_HasGraph || m_Graphs.empty())
        return 0;
    WCVertexPoints vertices;
    if (!GetLatestVertexPoints(vertices))
        return 0;
    std::vector<WCPoint2D<float>> &points = m_Graphs.back().m_Points;
    points.reserve(points.size() + vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i)
        points.push_back(vertices[i]);
    return 0;
}

} // namespace miGS
MIREL_NAMESPACE_END
