#include "graphic_stream/WCGraphicStreamEngineBase.h"

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GSTestSupport.h"
#include "graphic_stream/GraphicStreamVocabulary.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

// Records what the walk calls and what the engine knows at each call.
class WCRecordingEngine : public WCGraphicStreamEngineBase {
public:
    std::vector<std::string> m_Calls;
    std::vector<std::int64_t> m_ImageX;
    std::vector<std::int32_t> m_TextFontSizes;
    std::vector<std::string> m_Texts;

    int BeginStream(SGSStream &) override { return Log("BeginStream"); }
    int EndStream(SGSCommandHeader &) override { return Log("EndStream"); }
    int BeginFrame(SGSFrame &) override { return Log("BeginFrame"); }
    int EndFrame(SGSCommandHeader &) override { return Log("EndFrame"); }
    int DrawImage(SGSDrawImage &image) override {
        const WSFrameState *top = GetTopFrameState();
        m_ImageX.push_back((top != nullptr ? top->m_AbsoluteX : 0) + image.draw_rect.location.x);
        return Log("DrawImage");
    }
    int DrawTheText(SGSDrawText &) override {
        m_TextFontSizes.push_back(GetFont().size);
        const SGSData *text = GetLatestDataOfPurpose(eGSPurposeText);
        m_Texts.push_back(text != nullptr ? std::string(GetDataText(*text)) : "<none>");
        return Log("DrawTheText");
    }
    int Font(SGSFont &) override { return Log("Font"); }
    int Data(SGSData &) override { return Log("Data"); }
    int Remark(SGSData &data) override { return Log("Remark:" + std::string(GetDataText(data))); }
    int MetaData(SGSData &data) override { return Log("Meta:" + std::string(GetDataText(data))); }
    int Ignore(int) override { return Log("Ignore"); }
    int Illegal(int) override { return Log("Illegal"); }
    int Unknown(int command) override {
        return Log(std::string("Unknown:") + GraphicStreamCommandToText(command));
    }

private:
    int Log(std::string call) {
        m_Calls.push_back(std::move(call));
        return 0;
    }
};

void WriteSmallStream(WCGraphicStreamBinaryWriter &writer) {
    SGSStream stream;
    std::strcpy(stream.stream_name, "Small");
    stream.frame.rect.size = {200, 100};
    WCStGSStreamStructWriter streamGuard(writer, stream, "/plugins/Small.bundle/");
    writer.ActivateRemarks(true).Remark("a remark");
    writer.Font("Sans", 10, WCRGBAColor());
    SGSFrame outer;
    outer.rect.location = {10, 0};
    WCStGSFrameStructWriter outerGuard(writer, outer);
    {
        SGSFrame inner;
        inner.rect.location = {5, 0};
        WCStGSFrameStructWriter innerGuard(writer, inner);
        writer.Font("Mono", 20, WCRGBAColor());
        writer.DrawPNGAtPosition(1, WCPoint2D<short>(1, 0));
        writer.DrawTheText("inner", 1);
    }
    writer.DrawTheText("outer", 2);
}

// A stream of raw records, for faults the writer never makes.
struct WSRawStream {
    Utils::WCStMemObj m_Memory;
    WSRawStream &Header(std::int32_t command, std::int32_t size) {
        const SGSCommandHeader header{command, size};
        m_Memory.Append(&header, sizeof header);
        return *this;
    }
    WSRawStream &Fill(std::size_t bytes) {
        std::vector<char> zeros(bytes);
        m_Memory.Append(zeros.data(), zeros.size());
        return *this;
    }
    template <typename T>
    WSRawStream &Record(const T &record) {
        m_Memory.Append(&record, sizeof record);
        return *this;
    }
    WSRawStream &Stream() { return Record(SGSStream()); }
    char *Ptr() { return static_cast<char *>(m_Memory.GetPtr()); }
    std::uint64_t Size() const { return m_Memory.GetSize(); }
};

// The small stream and an engine to walk it.
class WCGraphicStreamEngineBaseWalk : public ::testing::Test {
protected:
    WCGraphicStreamEngineBaseWalk() { WriteSmallStream(m_Writer); }
    char *Ptr() { return m_Writer.GetStreamPtr(); }
    std::uint64_t Size() { return m_Writer.GetStreamSize(); }

    WCGraphicStreamBinaryWriter m_Writer;
    WCRecordingEngine m_Engine;
};

} // namespace

TEST_F(WCGraphicStreamEngineBaseWalk, DispatchesEveryRecordInOrder) {
    ASSERT_EQ(m_Engine.ExecStream(Ptr(), Size()), eNoErr);
    EXPECT_EQ(m_Engine.m_Calls, (std::vector<std::string>{
                                    "BeginStream", "Remark:a remark", "Font", "BeginFrame",
                                    "BeginFrame", "Font", "DrawImage", "Data", "DrawTheText",
                                    "EndFrame", "Data", "DrawTheText", "EndFrame", "EndStream"}));
    EXPECT_STREQ(m_Engine.GetStreamName().c_str(), "Small");
    EXPECT_STREQ(m_Engine.GetResourcesBaseURL().c_str(), "/plugins/Small.bundle/");
    EXPECT_EQ(m_Engine.GetRecordCount(), 15u);
    EXPECT_EQ(m_Engine.GetExecutionCount(), 1u);
    EXPECT_TRUE(m_Engine.GetFrameStack().empty());
}

TEST_F(WCGraphicStreamEngineBaseWalk, NestedFramesAddTheirOffsetsAndScopeTheirFonts) {
    ASSERT_EQ(m_Engine.ExecStream(Ptr(), Size()), eNoErr);
    EXPECT_EQ(m_Engine.m_ImageX, std::vector<std::int64_t>{16});
    EXPECT_EQ(m_Engine.m_TextFontSizes, (std::vector<std::int32_t>{20, 10}));
    EXPECT_EQ(m_Engine.m_Texts, (std::vector<std::string>{"inner", "outer"}));
}

TEST(WCGraphicStreamEngineBase, UnknownCommandIsReportedAndSkipped) {
    WSRawStream raw;
    raw.Stream().Header(GSCode("new!"), 16).Fill(8).Header(eGSIgnoreCommand, 8);
    raw.Header(eGSEndStream, 8);
    WCRecordingEngine engine;
    EXPECT_EQ(engine.ExecStream(raw.Ptr(), raw.Size()), eNoErr);
    EXPECT_EQ(engine.m_Calls,
              (std::vector<std::string>{"BeginStream", "Unknown:Unknown GraphicStreamCommand !wen",
                                        "Ignore", "EndStream"}));
}

TEST(WCGraphicStreamEngineBase, IllegalCommandStopsTheWalk) {
    WSRawStream illegal;
    illegal.Stream().Header(eGSIllegalCommand, 8).Header(eGSEndStream, 8);
    WCRecordingEngine engine;
    EXPECT_EQ(engine.ExecStream(illegal.Ptr(), illegal.Size()), -20010);
    EXPECT_EQ(engine.m_Calls, (std::vector<std::string>{"BeginStream", "Illegal"}));
}

TEST(WCGraphicStreamEngineBase, RecordsThatDoNotFitTheBufferAreRefused) {
    SGSData data;
    data.type = eGSTypeFloat;
    data.purpose = eGSPurposePoint2D;
    data.header.size = 28 + 8;
    SGSData tooMany = data, negative = data;
    tooMany.num_elements = 1000;
    negative.num_elements = -1;
    const auto walk = [](WSRawStream &raw) {
        return WCRecordingEngine().ExecStream(raw.Ptr(), raw.Size());
    };
    EXPECT_EQ(walk(WSRawStream().Stream().Header(eGSDrawImage, 0).Fill(48).Header(eGSEndStream, 8)),
              -8) << "zero size";
    EXPECT_EQ(walk(WSRawStream().Stream().Header(eGSDrawImage, 64).Fill(48)), -8) << "beyond";
    EXPECT_EQ(walk(WSRawStream().Stream().Header(eGSDrawImage, -56).Fill(48)), -8) << "negative";
    EXPECT_EQ(walk(WSRawStream().Stream().Header(GSCode("new!"), 10).Fill(8)), -8) << "off grid";
    EXPECT_EQ(walk(WSRawStream().Stream().Header(eGSDrawImage, 16).Fill(8)), -8) << "short";
    EXPECT_EQ(walk(WSRawStream().Stream().Header(eGSBeginFrame, 8)), -8) << "short frame";
    EXPECT_EQ(walk(WSRawStream().Stream().Fill(4)), -8) << "truncated";
    EXPECT_EQ(walk(WSRawStream().Stream()), -8) << "unclosed";
    // A data record whose payload does not lie inside it.
    for (const SGSData &record : {tooMany, negative})
        EXPECT_EQ(walk(WSRawStream().Stream().Record(record).Fill(8).Header(eGSEndStream, 8)), -8)
            << record.num_elements;
}

TEST_F(WCGraphicStreamEngineBaseWalk, MisalignedBufferIsRefused) {
    std::vector<char> shifted(Size() + 8);
    std::memcpy(shifted.data() + 1, Ptr(), Size());
    EXPECT_EQ(m_Engine.ExecStream(shifted.data() + 1, Size()), -8);
}

TEST_F(WCGraphicStreamEngineBaseWalk, WalkEndsWhenTheOutermostFrameCloses) {
    const std::uint64_t length = Size();
    m_Writer.CommandHeader(eGSIllegalCommand);
    EXPECT_EQ(m_Engine.ExecStream(Ptr(), Size()), eNoErr);
    EXPECT_EQ(m_Engine.ExecStream(Ptr()), eNoErr);
    EXPECT_EQ(m_Engine.GetCurrentRecordOffset(), length - 8);
}

TEST(WCGraphicStreamEngineBase, WalkWithoutALengthStopsAtTheCloseOrAtASizeThatCannotBeRight) {
    WCGraphicStreamBinaryWriter written;
    WriteSmallStream(written);
    const auto bytes = [](WSRawStream &raw) {
        return std::vector<char>(raw.Ptr(), raw.Ptr() + raw.Size());
    };
    WSRawStream closed, tooLarge, dataTooLarge, unknownHuge, loose;
    closed.Stream().Header(GSCode("new!"), 16).Fill(8).Header(eGSEndStream, 8);
    // Each fault sits in the last bytes of its buffer: a walk that trusted the size would read on.
    tooLarge.Stream().Header(eGSDrawImage, 64).Fill(56);
    SGSData text;
    text.type = eGSTypeChar;
    text.num_elements = 4;
    text.header.size = sizeof(SGSData) + 8;
    dataTooLarge.Stream().Record(text).Fill(8);
    unknownHuge.Stream().Header(GSCode("new!"), 1 << 20).Fill(8);
    loose.Header(eGSIgnoreCommand, 8).Header(eGSEndStream, 8);

    struct {
        const char *name;
        std::vector<char> bytes;
        WTErr result;
    } const table[] = {
        {"written by the writer", {written.GetStreamPtr(),
                                   written.GetStreamPtr() + written.GetStreamSize()}, eNoErr},
        {"an unknown record of modest size", bytes(closed), eNoErr},
        {"a fixed record larger than its command", bytes(tooLarge), kGSErrBadRecordSize},
        {"a data record larger than its payload", bytes(dataTooLarge), kGSErrBadRecordSize},
        {"an unknown record beyond any size", bytes(unknownHuge), kGSErrBadRecordSize},
        {"no frame or stream first", bytes(loose), kGSErrBadRecordSize},
    };
    for (const auto &row : table) {
        // Each buffer is an allocation of exactly its bytes, so a read past its end is caught by
        // the address sanitizer.
        const auto buffer = std::make_unique<char[]>(row.bytes.size());
        std::memcpy(buffer.get(), row.bytes.data(), row.bytes.size());
        WCRecordingEngine engine;
        EXPECT_EQ(engine.ExecStream(buffer.get()), row.result) << row.name;
    }
}

TEST(WCGraphicStreamEngineBase, FramesNestedBeyondTheLimitAreRefused) {
    WCGraphicStreamBinaryWriter writer;
    for (std::size_t i = 0; i <= WCGraphicStreamEngineBase::kMaxFrameDepth; ++i)
        writer.OpenFrame(SGSFrame());
    WCRecordingEngine engine;
    EXPECT_EQ(engine.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), -8);
}

TEST(WCGraphicStreamEngineBase, DataPointersAreFollowedOnlyWhenAllowed) {
    const char text[] = "pointed";
    WCGraphicStreamBinaryWriter writer;
    {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        writer.DataPtrStr(text).DrawTheText(1);
    }
    WCRecordingEngine engine;
    ASSERT_EQ(engine.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    EXPECT_EQ(engine.m_Texts, std::vector<std::string>{""});
    engine.FollowDataPointers(true);
    engine.m_Texts.clear();
    ASSERT_EQ(engine.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    EXPECT_EQ(engine.m_Texts, std::vector<std::string>{"pointed"});
}

TEST(WCGraphicStreamEngineBase, DeprecatedImagesBecomeDrawImage) {
    struct WCImages : WCGraphicStreamEngineBase {
        std::vector<SGSDrawImage> m_Images;
        int DrawImage(SGSDrawImage &image) override {
            m_Images.push_back(image);
            return 0;
        }
    } engine;
    WSRawStream raw;
    raw.Stream();
    for (std::int32_t command :
         {eGSDrawPNGDeprecated, eGSDrawPNGClippedDeprecated, eGSDrawPNGScaledDeprecated}) {
        SGSDrawPNGDeprecated old;
        old.header.command = command;
        old.ResID = 4;
        old.rect = {{1, 2}, {30, 40}};
        raw.Record(old);
    }
    raw.Header(eGSEndStream, 8);
    ASSERT_EQ(engine.ExecStream(raw.Ptr(), raw.Size()), eNoErr);
    ASSERT_EQ(engine.m_Images.size(), 3u);
    EXPECT_EQ(engine.m_Images[0].draw_rect.location.y, 2);
    EXPECT_EQ(engine.m_Images[0].draw_rect.size.width, 0);
    EXPECT_EQ(engine.m_Images[0].clip_rect.size.width, 0);
    EXPECT_EQ(engine.m_Images[1].draw_rect.size.width, 0);
    EXPECT_EQ(engine.m_Images[1].clip_rect.size.height, 40);
    EXPECT_EQ(engine.m_Images[2].draw_rect.size.width, 30);
    EXPECT_EQ(engine.m_Images[2].clip_rect.size.width, 0);
    EXPECT_EQ(engine.m_Images[2].ResID, 4);
}

TEST(WCGraphicStreamEngineBase, ClipsAreKeptInTheFrameState) {
    struct WCClips : WCGraphicStreamEngineBase {
        std::size_t m_Count = 0;
        int ClipMultipleRects(SGSClipMultipleRects &) override {
            m_Count = GetTopFrameState()->m_ClipRects.size();
            return 0;
        }
    } engine;
    WCGraphicStreamBinaryWriter writer;
    {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        writer.ClipMultipleRects({WURect<short>(0, 0, 1, 1), WURect<short>(0, 0, 2, 2)},
                                 WURect<short>());
    }
    ASSERT_EQ(engine.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    EXPECT_EQ(engine.m_Count, 2u);
}

TEST_F(WCGraphicStreamEngineBaseWalk, StreamFrameSizeIsReadWithoutAWalk) {
    SGSSize size;
    EXPECT_EQ(WCGraphicStreamEngineBase::GetStreamFrameSize(Ptr(), Size(), size), eNoErr);
    EXPECT_EQ(size.width, 200);
    EXPECT_EQ(size.height, 100);
    EXPECT_EQ(WCGraphicStreamEngineBase::GetStreamFrameSize(Ptr(), 40, size), -8);
    EXPECT_EQ(WCGraphicStreamEngineBase::GetStreamFrameSize(Ptr() + 112, Size() - 112, size), -8);
}

TEST_F(WCGraphicStreamEngineBaseWalk, FrameChecksumsPointAtTheChangedFrame) {
    std::vector<char> first(Ptr(), Ptr() + Size());
    std::vector<std::uint64_t> none, actual, again;
    std::vector<WCGraphicStreamEngineBase::WSFrameChecksumMismatch> mismatches;
    ASSERT_EQ(
        m_Engine.ExecStreamWithFrameChecksums(first.data(), first.size(), none, actual, mismatches),
        eNoErr);
    ASSERT_EQ(actual.size(), 3u);
    EXPECT_EQ(mismatches.size(), 3u);

    ASSERT_EQ(m_Engine.ExecStreamWithFrameChecksums(first.data(), first.size(), actual, again,
                                                    mismatches),
              eNoErr);
    EXPECT_TRUE(mismatches.empty());
    EXPECT_EQ(again, actual);

    // Change the text drawn in the outer frame only: the outer frame and the stream differ.
    std::vector<char> second = first;
    const std::string outer = "outer";
    auto at = std::search(second.begin(), second.end(), outer.begin(), outer.end());
    ASSERT_NE(at, second.end());
    *at = 'O';
    ASSERT_EQ(m_Engine.ExecStreamWithFrameChecksums(second.data(), second.size(), actual, again,
                                                    mismatches),
              eNoErr);
    ASSERT_EQ(mismatches.size(), 2u);
    EXPECT_EQ(mismatches[0].m_FrameIndex, 1u);
    EXPECT_EQ(mismatches[1].m_FrameIndex, 0u);
    EXPECT_EQ(again[2], actual[2]);
}

TEST_F(WCGraphicStreamEngineBaseWalk, FaultsOfOverridesEndTheWalkWithACode) {
    struct WCThrowing : WCGraphicStreamEngineBase {
        bool m_ThrowInt = true;
        int DrawImage(SGSDrawImage &) override {
            if (m_ThrowInt)
                throw static_cast<int>(eGMInvalidImage);
            throw std::runtime_error("painter failed");
        }
    } engine;
    EXPECT_EQ(engine.ExecStream(Ptr(), Size()), eGMInvalidImage);
    engine.m_ThrowInt = false;
    EXPECT_EQ(engine.ExecStream(Ptr(), Size()), eExceptionErr);
    EXPECT_EQ(engine.GetCurrentRecord(), nullptr);
}
