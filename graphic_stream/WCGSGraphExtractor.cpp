#include "graphic_stream/WCGSGraphExtractor.h"

#include <charconv>
#include <cstring>
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
    std::size_t dimensions = 2;
    const SGSData *data = GetLatestVertexData(dimensions);
    const void *payload = data != nullptr ? GetDataPayload(*data) : nullptr;
    if (payload == nullptr || (data->type != eGSTypeInt16 && data->type != eGSTypeFloat))
        return 0;
    const std::size_t count = static_cast<std::size_t>(data->num_elements) / dimensions;
    const auto *bytes = static_cast<const unsigned char *>(payload);
    std::vector<WCPoint2D<float>> &points = m_Graphs.back().m_Points;
    points.reserve(points.size() + count);
    for (std::size_t i = 0; i < count; ++i) {
        float xy[2];
        for (std::size_t k = 0; k < 2; ++k) {
            const std::size_t index = i * dimensions + k;
            if (data->type == eGSTypeInt16) {
                std::int16_t value;
                std::memcpy(&value, bytes + index * sizeof value, sizeof value);
                xy[k] = value;
            } else {
                std::memcpy(&xy[k], bytes + index * sizeof(float), sizeof(float));
            }
        }
        points.emplace_back(xy[0], xy[1]);
    }
    return 0;
}

} // namespace miGS
MIREL_NAMESPACE_END
