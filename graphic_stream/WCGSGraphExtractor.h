#pragma once

#include <cstdint>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// The data of one graph found in a stream: the parameter it shows and its points, in the order
// they were drawn.
struct GraphInfo {
    std::uint64_t m_ParamID = 0;
    std::vector<WCPoint2D<float>> m_Points;
};

// Takes graph data back out of a stream a graph control wrote: each metadata line "ParamID:<id>"
// starts a graph, and the vertices of every following draw record are added to it. Nothing is
// drawn. The caller's vector receives the graphs and must outlive the extractor.
// [any-thread]: one extractor per thread.
class WCGSGraphExtractor : public WCGraphicStreamEngineBase {
public:
    explicit WCGSGraphExtractor(std::vector<GraphInfo> &graphs);

    int MetaData(SGSData &data) override;
    int DrawVertices(SGSDrawVertices &vertices) override;

private:
    std::vector<GraphInfo> &m_Graphs;
    bool m_HasGraph = false;
};

} // namespace miGS
MIREL_NAMESPACE_END
