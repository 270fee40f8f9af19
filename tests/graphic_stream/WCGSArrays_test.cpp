#include "graphic_stream/WCGSArrays.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "GSTestSupport.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;
using gs_test::At;
using gs_test::Commands;
using gs_test::Offsets;
using gs_test::RectAt;

TEST(WCGSArrays, LongStripIsChunkedWithOneSharedVertex) {
    WCGSArrays arrays;
    std::vector<WCPoint2D<short>> points(40000);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = WCPoint2D<short>(static_cast<short>(i % 30000), static_cast<short>(i / 30000));
    ASSERT_TRUE(arrays.AddPoints_2Ds(points));
    WCGraphicStreamBinaryWriter writer;
    ASSERT_EQ(arrays.GetDrawInstructionsLineStrip(writer), eNoErr);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(Commands(memory), (std::vector<std::int32_t>{eGSDataHere, eGSDrawVertices,
                                                           eGSDataHere, eGSDrawVertices}));
    const auto offsets = Offsets(memory);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[0] + 16), 2 * 32767);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[2] + 16), 2 * 7234);
    // The second chunk starts with the last vertex of the first.
    const auto lastOfFirst = At<WCPoint2D<short>>(memory, offsets[0] + 28 + 32766 * 4);
    const auto firstOfSecond = At<WCPoint2D<short>>(memory, offsets[2] + 28);
    EXPECT_EQ(lastOfFirst, points[32766]);
    EXPECT_EQ(firstOfSecond, points[32766]);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[1] + 8), eGSLineStrip);
}

TEST(WCGSArrays, ColoursTravelWithTheirVerticesAndSetTheFlag) {
    WCGSArrays arrays;
    arrays.AddPoint_3Df(0, 0, 0);
    arrays.AddPoint_3Df(1, 1, 1);
    arrays.AddColor_4ub(1, 2, 3, 4);
    arrays.AddColor_4ub(5, 6, 7, 8);
    arrays.SetAntialias(false);
    arrays.SetXORMode(true);
    WCGraphicStreamBinaryWriter writer;
    ASSERT_EQ(arrays.GetDrawInstructionsPolygon(writer), eNoErr);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    const auto offsets = Offsets(memory);
    ASSERT_EQ(offsets.size(), 3u);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[0] + 12), eGSPurposePoint3D);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[0] + 16), 6);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[1] + 8), eGSTypeUInt8);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[1] + 12), eGSPurposeRGBAColor);
    EXPECT_EQ(At<std::int32_t>(memory, offsets[1] + 16), 8);
    EXPECT_EQ(At<std::uint32_t>(memory, offsets[2] + 20),
              eGSNoAntialias | eGSColorsInData | eGSDrawInXORMode);
}

TEST(WCGSArrays, TooFewColoursOrNoVerticesAreFaults) {
    WCGSArrays arrays;
    arrays.AddPoint_2Ds(0, 0);
    arrays.AddPoint_2Ds(1, 1);
    arrays.AddColor_3ub(1, 2, 3);
    WCGraphicStreamBinaryWriter writer;
    EXPECT_EQ(arrays.GetDrawInstructionsLineStrip(writer), eGMNoColors);
    EXPECT_EQ(writer.GetStreamSize(), 0u);
    EXPECT_EQ(arrays.GiveVerticesToGS(writer, 0, 0), eNoErr);
    // Vertices beyond the arrays are not read.
    EXPECT_EQ(arrays.GiveVerticesToGS(writer, 1, 2), eGMNoVertices);
    EXPECT_EQ(arrays.GiveVerticesToGS(writer, 3, 0), eGMNoVertices);
    EXPECT_EQ(arrays.GiveColorsToGS(writer, SIZE_MAX, 2), eGMNoColors);

    WCGSArrays empty;
    writer.ClearStream();
    EXPECT_EQ(empty.GetDrawInstructionsLineStrip(writer), eNoErr);
    EXPECT_EQ(writer.GetStreamSize(), 0u);
    EXPECT_EQ(empty.GiveVerticesToGS(writer, 0, 1), eGMNoVertices);
}

TEST(WCGSArrays, FirstVertexFixesTypeAndDimension) {
    WCGSArrays arrays;
    EXPECT_TRUE(arrays.CheckVerticesAndDimensionsConsistancy(WCGSArrays::eFloatVerticesType, 3));
    EXPECT_TRUE(arrays.AddPoint_2Ds(1, 2));
    EXPECT_FALSE(arrays.AddPoint_2Df(1, 2));
    EXPECT_FALSE(arrays.AddPoint_3Ds(1, 2, 3));
    EXPECT_EQ(arrays.GetNumVerticesTotal(), 1u);
    EXPECT_EQ(arrays.GetSingleVerticeSizeInBytes(), 4u);
    EXPECT_STREQ(WCGSArrays::VerticesTypeToText(arrays.GetVerticesType()), "eShortVerticesType");
    EXPECT_TRUE(arrays.AddColor_3ub(1, 1, 1));
    EXPECT_FALSE(arrays.AddColor_4ub(1, 1, 1, 1));
    arrays.Start();
    EXPECT_TRUE(arrays.AddPoint_3Df(1, 2, 3));
    EXPECT_EQ(arrays.GetSingleVerticeSizeInBytes(), 12u);
    EXPECT_STREQ(WCGSArrays::VerticesTypeToText(7), "Unknown vertices type");
}

TEST(WCGSArrays, TakenOverPointsAreReferredToNotCopied) {
    std::vector<WCPoint2D<float>> points(64, WCPoint2D<float>(1.0f, 2.0f));
    WCGSArrays arrays;
    ASSERT_TRUE(arrays.AddPoints_2Df(points, true));
    EXPECT_EQ(arrays.GetVerticesPtr(), points.data());
    WCGraphicStreamBinaryWriter writer(128);
    ASSERT_EQ(arrays.GetDrawInstructionsLineStrip(writer), eNoErr);
    EXPECT_EQ(At<std::uint64_t>(writer.GetMemObj(), 20),
              reinterpret_cast<std::uintptr_t>(points.data()));
    // A later addition copies, so the caller's vector is left alone.
    arrays.AddPoint_2Df(9.0f, 9.0f);
    EXPECT_NE(arrays.GetVerticesPtr(), points.data());
    EXPECT_EQ(points.size(), 64u);
    EXPECT_EQ(arrays.GetNumVerticesTotal(), 65u);
}

TEST(WCGSArrays, RangeAndSegmentNarrowWhatIsWritten) {
    WCGSArrays arrays;
    for (short i = 0; i < 10; ++i)
        arrays.AddPoint_2Ds(i, i);
    arrays.SetRange(2, 8);
    EXPECT_EQ(arrays.GetNumVertices(), 6u);
    arrays.SetSegment(4, 100);
    EXPECT_EQ(arrays.GetNumVertices(), 4u);
    WCGraphicStreamBinaryWriter writer;
    ASSERT_EQ(arrays.GetDrawInstructionsStraightLines(writer), eNoErr);
    EXPECT_EQ(At<std::int32_t>(writer.GetMemObj(), 16), 8);
    EXPECT_EQ(At<short>(writer.GetMemObj(), 28), 4);
}

TEST(WCGSArrays, OvalIsATriangleFanInACentredFrame) {
    WCGSArrays arrays;
    arrays.SetDrawColor(WCRGBAColor(10, 20, 30));
    WCGraphicStreamBinaryWriter writer;
    ASSERT_EQ(arrays.GetDrawInstructionsOval(writer, WURect<short>(0, 0, 20, 40), 20, 0.0f, 360.0f),
              eNoErr);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(Commands(memory), (std::vector<std::int32_t>{eGSBeginFrame, eGSDataHere,
                                                           eGSDrawVertices, eGSEndFrame}));
    EXPECT_EQ(RectAt(memory, 16), (std::array<std::int32_t, 4>{20, 10, 0, 0}));
    EXPECT_EQ(At<std::int32_t>(memory, 32 + 16), 2 * 22);
    EXPECT_EQ(At<float>(memory, 32 + 28), 0.0f);
    // The outline starts at the top (angle 0 is up) and closes where it started.
    EXPECT_NEAR(At<float>(memory, 32 + 36), 0.0f, 1e-4);
    EXPECT_NEAR(At<float>(memory, 32 + 40), -10.0f, 1e-4);
    EXPECT_NEAR(At<float>(memory, 32 + 28 + 21 * 8), 0.0f, 1e-3);
    EXPECT_NEAR(At<float>(memory, 32 + 28 + 21 * 8 + 4), -10.0f, 1e-3);
    const std::uint64_t v = 32 + 28 + 22 * 8;
    EXPECT_EQ(At<std::int32_t>(memory, v + 8), eGSTriangleFan);
    EXPECT_EQ(At<SGSRGBAColor>(memory, v + 24).blue, 30);
}
