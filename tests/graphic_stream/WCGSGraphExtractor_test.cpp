#include "graphic_stream/WCGSGraphExtractor.h"

#include <gtest/gtest.h>

#include "GSTestSupport.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

TEST(WCGSGraphExtractor, MetadataStartsAGraphThatCollectsItsVertices) {
    WCGraphicStreamBinaryWriter writer;
    {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        // Vertices before any graph belong to none.
        writer.DrawLine(WCRGBAColor(), WCPoint2D<short>(9, 9), WCPoint2D<short>(8, 8));
        writer.MetaData("ParamID:12");
        WCGSArrays curve;
        for (short x = 0; x < 3; ++x)
            curve.AddPoint_2Df(x, x * 2.0f);
        curve.GetDrawInstructionsLineStrip(writer);
        writer.DrawLine(WCRGBAColor(), WCPoint2D<short>(5, 6), WCPoint2D<short>(7, 8));
        writer.MetaData("Legend: gain\nParamID: 40");
        WCGSArrays depth;
        depth.AddPoint_3Ds(1, 2, 3);
        depth.GetDrawInstructionsPoints(writer);
    }
    std::vector<GraphInfo> graphs;
    WCGSGraphExtractor extractor(graphs);
    ASSERT_EQ(extractor.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    ASSERT_EQ(graphs.size(), 2u);
    EXPECT_EQ(graphs[0].m_ParamID, 12u);
    ASSERT_EQ(graphs[0].m_Points.size(), 5u);
    EXPECT_EQ(graphs[0].m_Points[2], WCPoint2D<float>(2.0f, 4.0f));
    EXPECT_EQ(graphs[0].m_Points[4], WCPoint2D<float>(7.0f, 8.0f));
    EXPECT_EQ(graphs[1].m_ParamID, 40u);
    ASSERT_EQ(graphs[1].m_Points.size(), 1u);
    EXPECT_EQ(graphs[1].m_Points[0], WCPoint2D<float>(1.0f, 2.0f));
}

TEST(WCGSGraphExtractor, PointerDataOfAnotherProcessIsNotRead) {
    WCGraphicStreamBinaryWriter writer(8);
    std::vector<WCPoint2D<short>> points(10, WCPoint2D<short>(1, 1));
    writer.MetaData("ParamID:1");
    writer.Data(points.data(), points.size(), eGSPurposePoint2D);
    writer.DrawVertices(SGSDrawVertices());
    std::vector<GraphInfo> graphs;
    WCGSGraphExtractor extractor(graphs);
    ASSERT_EQ(extractor.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    ASSERT_EQ(graphs.size(), 1u);
    EXPECT_TRUE(graphs[0].m_Points.empty());
    extractor.FollowDataPointers(true);
    graphs.clear();
    ASSERT_EQ(extractor.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    EXPECT_EQ(graphs[0].m_Points.size(), 10u);
}
