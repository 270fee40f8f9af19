#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "GSTestSupport.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;
using gs_test::At;
using gs_test::CommandAt;
using gs_test::Commands;
using gs_test::RectAt;
using gs_test::SizeAt;
using Rect = std::array<std::int32_t, 4>;

namespace {

SGSStream NamedStream(const char *name, std::int32_t w, std::int32_t h) {
    SGSStream stream;
    std::strncpy(stream.stream_name, name, sizeof stream.stream_name - 1);
    stream.frame.rect.size = {w, h};
    return stream;
}

} // namespace

// The layouts of the records the demo stream uses are held byte for byte by the reviewed demo.gs;
// the tests here cover the forms and edges the demo does not reach.

TEST(WCGraphicStreamBinaryWriter, StreamNameThatFillsItsFieldKeeps63CharactersAndItsZero) {
    Utils::WCStMemObj memory;
    WCGraphicStreamBinaryWriter writer(memory);
    SGSStream full;
    std::memset(full.stream_name, 'n', sizeof full.stream_name);
    writer.OpenStream(full);
    ASSERT_EQ(memory.GetSize(), 112u);
    EXPECT_EQ(std::string(static_cast<const char *>(memory.GetPtr()) + 48), std::string(63, 'n'));
}

TEST(WCGraphicStreamBinaryWriter, DataHereOnTheFourByteGridOrEmptyGetsNoPadding) {
    Utils::WCStMemObj memory;
    WCGraphicStreamBinaryWriter writer(memory);
    const short values[] = {1, -2, 3, -4};
    writer.DataHere(values, 4, eGSPurposePoint2D);
    EXPECT_EQ(memory.GetSize(), 36u);
    EXPECT_EQ(SizeAt(memory, 0), 36);
    EXPECT_EQ(At<short>(memory, 30), -2);
    writer.DataHereStr("");
    EXPECT_EQ(memory.GetSize(), 36u + 28u);
    EXPECT_EQ(At<std::int32_t>(memory, 36 + 16), 0);
}

// The fill is stored as one word that the header and the payload then partly cover, and a short
// text is copied as two overlapping words, so every length up to past those words is checked at
// every offset off the grid of 4: once while the memory object grows, once within its capacity.
TEST(WCGraphicStreamBinaryWriter, TextAtAnyOffsetKeepsItsBytesAndFillsToTheGrid) {
    const std::string text = "abcdefghijklmnopq";
    for (std::uint64_t offset = 0; offset < 4; ++offset) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            Utils::WCStMemObj memory;
            WCGraphicStreamBinaryWriter writer(memory);
            for (int pass = 0; pass < 2; ++pass) {
                writer.ClearStream();
                memory.Append("zzz", offset);
                writer.DrawTheText(text.substr(0, length).c_str(), 9);
                const std::uint64_t record = 28 + length + (4 - (offset + length) % 4) % 4;
                ASSERT_EQ(memory.GetSize(), offset + record + 24) << offset << ", " << length;
                EXPECT_EQ(CommandAt(memory, offset), eGSDataHere);
                EXPECT_EQ(SizeAt(memory, offset),
                          static_cast<std::int32_t>(28 + (length + 3) / 4 * 4));
                EXPECT_EQ(At<std::int32_t>(memory, offset + 16), static_cast<std::int32_t>(length));
                EXPECT_EQ(
                    std::string(static_cast<const char *>(memory.GetPtr()) + offset + 28, length),
                    text.substr(0, length));
                for (std::uint64_t i = offset + 28 + length; i < offset + record; ++i)
                    EXPECT_EQ(At<unsigned char>(memory, i), 0x5F);
                EXPECT_EQ(CommandAt(memory, offset + record), eGSDrawText);
            }
        }
    }
}

TEST(WCGraphicStreamBinaryWriter, ThresholdChoosesTheDataForm) {
    WCGraphicStreamBinaryWriter writer(20);
    EXPECT_TRUE(writer.WillBeWrittenAsDataPtr(20));
    EXPECT_TRUE(writer.WillBeWrittenAsDataHere(19));
    writer.SetDataPtrThreshold(0);
    EXPECT_TRUE(writer.WillBeWrittenAsDataHere(1u << 30));

    const short tenShorts[10] = {};
    writer.SetDataPtrThreshold(20).Data(tenShorts, 10, eGSPurposePoint2D);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(memory.GetSize(), 28u);
    EXPECT_EQ(CommandAt(memory, 0), eGSDataPtr);
    EXPECT_EQ(SizeAt(memory, 0), 28);
    EXPECT_EQ(At<std::int32_t>(memory, 16), 10);
    EXPECT_EQ(At<std::uint64_t>(memory, 20), reinterpret_cast<std::uintptr_t>(tenShorts));

    writer.ClearStream().SetDataPtrThreshold(21).Data(tenShorts, 10, eGSPurposePoint2D);
    EXPECT_EQ(CommandAt(memory, 0), eGSDataHere);
    EXPECT_EQ(SizeAt(memory, 0), 48);

    // Texts compare their length.
    writer.ClearStream().SetDataPtrThreshold(5).DataStr("abcd").DataStr("abcde");
    EXPECT_EQ(Commands(memory), (std::vector<std::int32_t>{eGSDataHere, eGSDataPtr}));
}

TEST(WCGraphicStreamBinaryWriter, PointsCountTwoElementsEach) {
    WCGraphicStreamBinaryWriter writer;
    const WCPoint2D<float> points[3] = {{1, 2}, {3, 4}, {5, 6}};
    writer.Data(points, 3, eGSPurposePoint2D);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    EXPECT_EQ(At<std::int32_t>(memory, 8), eGSTypeFloat);
    EXPECT_EQ(At<std::int32_t>(memory, 16), 6);
    EXPECT_EQ(SizeAt(memory, 0), 28 + 24);
    EXPECT_EQ(At<float>(memory, 28 + 20), 6.0f);
}

TEST(WCGraphicStreamBinaryWriter, PreparedHeaderKeepsItsSize) {
    WCGraphicStreamBinaryWriter writer;
    SGSData header;
    header.type = eGSTypeUInt8;
    header.purpose = eGSPurposeRGBColor;
    header.num_elements = 3;
    header.header.size = 32;
    const unsigned char rgb[3] = {1, 2, 3};
    writer.DataHere(header, rgb);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    EXPECT_EQ(memory.GetSize(), 32u);
    EXPECT_EQ(At<unsigned char>(memory, 30), 3);
    EXPECT_EQ(At<unsigned char>(memory, 31), 0x5F);
    // A DataPtr header given to DataHere carries no payload.
    header.header.command = eGSDataPtr;
    header.header.size = 28;
    writer.ClearStream().DataHere(header, rgb);
    EXPECT_EQ(memory.GetSize(), 28u);
}

TEST(WCGraphicStreamBinaryWriter, RecordsCopiedFromTheStreamIntoItselfSurviveItsGrowth) {
    WCGraphicStreamBinaryWriter source;
    source.DrawTheText(7, eGSAlignLeft, eGSAlignTop).DataHereStr("Hello");
    const char *draw = source.GetStreamPtr();
    const char *text = draw + 24;
    // Each memory object holds one record and is exactly full, so copying that record into it
    // has to grow it; the neighbouring block makes the growth move it.
    {
        Utils::WCStMemObj memory(draw, 24);
        Utils::WCStMemObj neighbour(draw, 24);
        WCGraphicStreamBinaryWriter writer(memory);
        writer.DrawTheText(*reinterpret_cast<const SGSDrawText *>(writer.GetStreamPtr()));
        ASSERT_EQ(memory.GetSize(), 48u);
        EXPECT_EQ(std::memcmp(writer.GetStreamPtr() + 24, draw, 24), 0);
    }
    {
        Utils::WCStMemObj memory(text, 36);
        Utils::WCStMemObj neighbour(text, 36);
        WCGraphicStreamBinaryWriter writer(memory);
        const char *stream = writer.GetStreamPtr();
        writer.DataHere(*reinterpret_cast<const SGSData *>(stream), stream + 28);
        ASSERT_EQ(memory.GetSize(), 72u);
        EXPECT_EQ(std::memcmp(writer.GetStreamPtr() + 36, text, 36), 0);
    }
}

TEST(WCGraphicStreamBinaryWriter, RemarksAreOffAndMetadataOnByDefault) {
    WCGraphicStreamBinaryWriter writer;
    writer.Remark("why");
    EXPECT_EQ(writer.GetStreamSize(), 0u);
    writer.MetaData("ParamID:3");
    ASSERT_EQ(writer.GetStreamSize(), 40u);
    EXPECT_EQ(At<std::int32_t>(writer.GetMemObj(), 12), eGSPurposeMetaData);
    writer.ClearStream().ActivateRemarks(true).ActivateMeatData(false).Remark("why").MetaData("x");
    EXPECT_EQ(Commands(writer.GetMemObj()), std::vector<std::int32_t>{eGSDataHere});
    EXPECT_EQ(At<std::int32_t>(writer.GetMemObj(), 12), eGSPurposeRemark);
}

TEST(WCGraphicStreamBinaryWriter, ImagesByNumberSkipMinusOne) {
    WCGraphicStreamBinaryWriter writer;
    writer.DrawPNG(static_cast<short>(-1));
    writer.DrawPNGAtPosition(-1, WCPoint2D<short>(3, 4));
    writer.DrawPNGScaledAndClipped(-1, WURect<short>(), WURect<short>());
    EXPECT_EQ(writer.GetStreamSize(), 0u);

    writer.DrawPNGScaledAndClipped(7, WURect<short>(10, 20, 50, 120), WURect<short>(1, 2, 3, 4),
                                   WCGraphicStreamBinaryWriter::ImageFlags(1));
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(memory.GetSize(), 56u);
    EXPECT_EQ(CommandAt(memory, 0), eGSDrawImage);
    EXPECT_EQ(At<std::int32_t>(memory, 8), 7);
    EXPECT_EQ(RectAt(memory, 12), (Rect{20, 10, 100, 40}));
    EXPECT_EQ(RectAt(memory, 28), (Rect{2, 1, 2, 2}));
    EXPECT_EQ(At<std::int32_t>(memory, 44), -1);
    EXPECT_EQ(At<std::int32_t>(memory, 48), -1);
    EXPECT_EQ(At<std::uint32_t>(memory, 52), 1u);
}

TEST(WCGraphicStreamBinaryWriter, ImageByPathWritesItsPathFirst) {
    WCGraphicStreamBinaryWriter writer;
    writer.DrawPNGAtPosition("knob.png", WCPoint2D<short>(5, 6));
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(Commands(memory), (std::vector<std::int32_t>{eGSDataHere, eGSDrawImage}));
    EXPECT_EQ(At<std::int32_t>(memory, 12), eGSPurposeText);
    EXPECT_EQ(At<std::int32_t>(memory, 36 + 8), -100);
    EXPECT_EQ(At<std::int32_t>(memory, 36 + 12), 5);
    EXPECT_EQ(At<std::uint32_t>(memory, 36 + 52), 0u);
}

TEST(WCGraphicStreamBinaryWriter, MultipleClipImagesPickTheirRecordByClipCount) {
    WCGraphicStreamBinaryWriter writer;
    const WCPoint2D<short> at(4, 8);
    writer.DrawPNGAtPositionMultipleClips(2, at, {});
    EXPECT_EQ(Commands(writer.GetMemObj()), std::vector<std::int32_t>{eGSDrawImage});
    writer.ClearStream().DrawPNGAtPositionMultipleClips(2, at, {WURect<short>(0, 0, 5, 5)});
    EXPECT_EQ(At<SGSRect>(writer.GetMemObj(), 28).size.width, 5);
    writer.ClearStream().DrawPNGAtPositionMultipleClips(
        2, at, {WURect<short>(0, 0, 5, 5), WURect<short>(10, 10, 20, 30)});
    EXPECT_EQ(Commands(writer.GetMemObj()),
              (std::vector<std::int32_t>{eGSDataHere, eGSDrawImageMultipleClips}));
}

TEST(WCGraphicStreamBinaryWriter, WireAndXorRectsCloseTheirOutlineAndTakeFlags) {
    WCGraphicStreamBinaryWriter writer;
    writer.DrawWireRect(WCRGBAColor(), WURect<float>(0.5f, 1.5f, 2.5f, 3.5f), 2.0f, 0x00FF);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    EXPECT_EQ(At<std::int32_t>(memory, 8), eGSTypeFloat);
    EXPECT_EQ(At<std::int32_t>(memory, 16), 10);
    EXPECT_EQ(At<float>(memory, 28 + 32), 1.5f);
    EXPECT_EQ(At<float>(memory, 28 + 36), 0.5f);
    const std::uint64_t v = 28 + 40;
    EXPECT_EQ(At<std::int32_t>(memory, v + 8), eGSLineStrip);
    EXPECT_EQ(At<std::uint32_t>(memory, v + 20), 1u);
    EXPECT_EQ(At<std::uint16_t>(memory, v + 16), 0x00FF);
    const std::uint32_t flags = eGSDrawInXORMode;
    writer.ClearStream().DrawWireRect(WCRGBAColor(), WURect<short>(0, 0, 4, 4), 1.0f, 0xFFFF,
                                      &flags);
    EXPECT_EQ(At<std::uint32_t>(memory, 28 + 20 + 20), eGSDrawInXORMode);
    // The XOR rectangle is white, in XOR mode and without antialiasing.
    writer.ClearStream().DrawXORRect(WURect<short>(0, 0, 2, 2));
    EXPECT_EQ(At<std::uint32_t>(memory, 28 + 16 + 20), 5u);
    EXPECT_EQ(At<std::uint32_t>(memory, 28 + 16 + 24), 0xFFFFFFFFu);
}

TEST(WCGraphicStreamBinaryWriter, LinesAndArcLines) {
    WCGraphicStreamBinaryWriter writer;
    writer.DrawLine(WCRGBAColor(), WCPoint2D<short>(1, 2), WCPoint2D<short>(3, 4), 1.0f, false);
    EXPECT_EQ(At<std::uint32_t>(writer.GetMemObj(), 36 + 20), eGSNoAntialias);
    writer.ClearStream().DrawLine(WCRGBAColor(), WCPoint2D<short>(1, 2), WCPoint2D<short>(3, 4));
    EXPECT_EQ(At<std::uint32_t>(writer.GetMemObj(), 36 + 20), 0u);

    struct {
        double angle;
        short x, y;
    } const table[] = {{0, 10, 0},   {90, 20, 10}, {180, 10, 20},      {270, 0, 10},
                       {45, 17, 2},  {NAN, 10, 10}, {INFINITY, 10, 10}};
    for (auto const &row : table) {
        writer.ClearStream().DrawArcLine(WCRGBAColor(), row.angle, WURect<short>(0, 0, 20, 20));
        Utils::WCStMemObj &memory = writer.GetMemObj();
        EXPECT_EQ(At<short>(memory, 28), 10);
        EXPECT_EQ(At<short>(memory, 30), 10);
        EXPECT_EQ(At<short>(memory, 32), row.x) << row.angle;
        EXPECT_EQ(At<short>(memory, 34), row.y) << row.angle;
    }
}

TEST(WCGraphicStreamBinaryWriter, ShapePointsGoByPointerWhenTheThresholdIsTiny) {
    // The documented hazard: such a pointer is dangling once the call returns.
    WCGraphicStreamBinaryWriter writer(8);
    writer.DrawLine(WCRGBAColor(), WCPoint2D<short>(1, 2), WCPoint2D<short>(3, 4));
    EXPECT_EQ(Commands(writer.GetMemObj()),
              (std::vector<std::int32_t>{eGSDataPtr, eGSDrawVertices}));
    writer.ClearStream().SetDataPtrThreshold(9).DrawLine(WCRGBAColor(), WCPoint2D<short>(),
                                                         WCPoint2D<short>());
    EXPECT_EQ(CommandAt(writer.GetMemObj(), 0), eGSDataHere);
}

TEST(WCGraphicStreamBinaryWriter, ClipRectsAreShiftedByTheBase) {
    WCGraphicStreamBinaryWriter writer;
    writer.ClipMultipleRects({}, WURect<short>(1, 1, 2, 2));
    EXPECT_EQ(writer.GetStreamSize(), 0u);
    writer.ClipMultipleRects({WURect<short>(10, 20, 30, 40), WURect<short>(5, 5, 6, 6)},
                             WURect<short>(3, 4, 100, 100));
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(Commands(memory), (std::vector<std::int32_t>{eGSDataHere, eGSClipMultipleRects}));
    EXPECT_EQ(RectAt(memory, 28), (Rect{16, 7, 20, 20}));
    EXPECT_EQ(RectAt(memory, 44), (Rect{1, 2, 1, 1}));
    EXPECT_EQ(SizeAt(memory, 60), 8);
}

TEST(WCGraphicStreamBinaryWriter, FontNamesAreCutTo31Characters) {
    WCGraphicStreamBinaryWriter writer;
    writer.Font("0123456789012345678901234567890123456789", 12, WCRGBAColor(9, 8, 7), 3);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    ASSERT_EQ(memory.GetSize(), 52u);
    EXPECT_EQ(std::string(static_cast<const char *>(memory.GetPtr()) + 8),
              "0123456789012345678901234567890");
    EXPECT_EQ(At<std::int32_t>(memory, 40), 12);

    SGSFont full;
    std::memset(full.name, 'f', sizeof full.name);
    writer.ClearStream().Font(full);
    EXPECT_EQ(std::string(static_cast<const char *>(memory.GetPtr()) + 8), std::string(31, 'f'));
}

TEST(WCGraphicStreamBinaryWriter, TextKeepsAll64BitsOfItsOwnerAndWithoutAStringIsCentred) {
    WCGraphicStreamBinaryWriter writer;
    writer.DrawTheText("Gain", 0x1122334455667788, eGSAlignLeft, eGSAlignTop);
    Utils::WCStMemObj &memory = writer.GetMemObj();
    EXPECT_EQ(At<std::int64_t>(memory, 32 + 8), 0x1122334455667788);
    writer.ClearStream().DrawTheText(5);
    EXPECT_EQ(SizeAt(memory, 0), 24);
    EXPECT_EQ(At<std::int32_t>(memory, 16), eGSAlignHCenter);
    EXPECT_EQ(At<std::int32_t>(memory, 20), eGSAlignVCenter);
}

TEST(WCStGSFrameStructWriter, EmptyFrameLeavesTheStreamAsItWas) {
    Utils::WCStMemObj memory;
    WCGraphicStreamBinaryWriter writer(memory);
    writer.DataHereStr("before");
    const std::uint64_t before = memory.GetSize();
    {
        SGSFrame frame;
        frame.owner = 99;
        frame.rect.location = {5, 6};
        WCStGSFrameStructWriter guard(writer, frame);
        EXPECT_EQ(memory.GetSize(), before + 32);
        EXPECT_TRUE(guard.ShouldClose());
    }
    EXPECT_EQ(memory.GetSize(), before);
    ASSERT_GE(memory.GetCapacity(), before + 32);
    // The removed record is zero in the slack.
    for (std::uint64_t i = before; i < before + 32; ++i)
        EXPECT_EQ(static_cast<const char *>(memory.GetPtr())[i], 0) << i;
}

TEST(WCStGSFrameStructWriter, NestedGuardsCloseInnerBeforeOuter) {
    WCGraphicStreamBinaryWriter writer;
    {
        WCStGSStreamStructWriter stream(writer, NamedStream("x", 10, 10), "/res/");
        {
            WCStGSFrameStructWriter outer(writer, WURect<int>(1, 2, 11, 22), 1234);
            { WCStGSFrameStructWriter empty(writer, WURect<int>(0, 0, 1, 1), 1); }
            writer.DrawPNG(static_cast<short>(3));
        }
    }
    Utils::WCStMemObj &memory = writer.GetMemObj();
    EXPECT_EQ(Commands(memory),
              (std::vector<std::int32_t>{eGSBeginStream, eGSDataHere, eGSBeginFrame, eGSDrawImage,
                                         eGSEndFrame, eGSEndStream}));
    EXPECT_EQ(writer.GetNumFramesOpened(), 2u);
    EXPECT_EQ(writer.GetFramesBytes(), 64u);
    EXPECT_EQ(writer.GetNumDroppedRecords(), 0u);
    EXPECT_EQ(At<std::int32_t>(memory, 36), 0) << "closing writes no length into the signature";

    // A size beyond 32 bits wraps rather than overflowing.
    writer.ClearStream();
    WCStGSFrameStructWriter huge(writer, WURect<int>(0, -2000000000, 10, 2000000000), 0);
    EXPECT_EQ(RectAt(memory, 16), (Rect{-2000000000, 0, -294967296, 10}));
}

TEST(WCStGSFrameStructWriter, ExplicitCloseAndClearedStream) {
    WCGraphicStreamBinaryWriter writer;
    {
        WCStGSFrameStructWriter guard(writer, SGSFrame());
        guard.CloseFrame(eGSEndFrame);
        EXPECT_FALSE(guard.ShouldClose());
    }
    EXPECT_EQ(Commands(writer.GetMemObj()),
              (std::vector<std::int32_t>{eGSBeginFrame, eGSEndFrame}));
    writer.ClearStream();
    writer.DataHereStr("abcd");
    {
        WCStGSFrameStructWriter guard(writer, SGSFrame());
        writer.ClearStream();
    }
    EXPECT_EQ(writer.GetStreamSize(), 0u);
    {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        stream.CloseFrame();
    }
    EXPECT_EQ(Commands(writer.GetMemObj()),
              (std::vector<std::int32_t>{eGSBeginStream, eGSEndStream}));
}

TEST(WCStGSFrameStructWriter, RecordsTheMemoryCouldNotTakeAreCountedAndReported) {
    // Room for the stream, its folder, one frame and one image: 112 + 36 + 32 + 56 bytes.
    constexpr std::uint64_t kRoom = 236;
    WCGraphicStreamBinaryWriter writer;
    writer.SetSizeLimit(kRoom);
    {
        WCStGSStreamStructWriter stream(writer, NamedStream("x", 10, 10), "/res/");
        {
            WCStGSFrameStructWriter frame(writer, SGSFrame());
            writer.DrawPNG(static_cast<short>(1));
            EXPECT_EQ(frame.GetResult(), eNoErr);
            writer.DrawPNG(static_cast<short>(2));
            EXPECT_EQ(frame.GetNumDroppedRecords(), 1u);
            EXPECT_EQ(frame.GetResult(), eMemOutOfMemory);
        }
        {
            WCStGSFrameStructWriter unopened(writer, SGSFrame());
            EXPECT_FALSE(unopened.ShouldClose());
            EXPECT_EQ(unopened.GetResult(), eMemOutOfMemory);
        }
        // The second image, the first frame's closing record and the second frame.
        EXPECT_EQ(writer.GetNumDroppedRecords(), 3u);
        EXPECT_EQ(stream.GetResult(), eMemOutOfMemory);
    }
    EXPECT_EQ(writer.GetNumDroppedRecords(), 4u);
    EXPECT_EQ(writer.GetStreamSize(), kRoom);
    EXPECT_LE(writer.GetMemObj().GetCapacity(), kRoom);
    // Without its closing record the stream keeps length 0.
    EXPECT_EQ(At<std::int32_t>(writer.GetMemObj(), 36), 0);

    // A new stream starts a new count, and the limit can be lifted.
    writer.SetSizeLimit(~std::uint64_t(0)).ClearStream();
    EXPECT_EQ(writer.GetNumDroppedRecords(), 0u);
    WCStGSStreamStructWriter stream(writer, SGSStream());
    writer.DrawPNG(static_cast<short>(1)).DrawPNG(static_cast<short>(2));
    EXPECT_EQ(stream.GetResult(), eNoErr);
}
