// Counts heap allocations while a frame is written: writing may allocate only when the memory
// object has to grow, which shows as a change of its capacity.
#include <vector>

#include <gtest/gtest.h>

#include "graphic_stream/WCGSArrays.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "tests/support/WCCountingAllocator.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

// A frame of a few controls, as a GUI writes it on every redraw.
void WriteFrame(WCGraphicStreamBinaryWriter &writer, WCGSArrays &curve) {
    SGSStream stream;
    WCStGSStreamStructWriter streamGuard(writer, stream, "/bundle/Contents/");
    for (int control = 0; control < 50; ++control) {
        WCStGSFrameStructWriter frame(writer, WURect<int>(control, 0, control + 20, 100), control);
        writer.DrawPNGAtPosition(static_cast<short>(control), WCPoint2D<short>(1, 2));
        writer.Font("Sans", 11, WCRGBAColor());
        writer.DrawTheText("-12.5 dB", control);
        writer.DrawWireRect(WCRGBAColor(255, 0, 0), WURect<short>(0, 0, 20, 100));
        { WCStGSFrameStructWriter empty(writer, WURect<int>(0, 0, 1, 1), 0); }
    }
    curve.GetDrawInstructionsLineStrip(writer);
}

} // namespace

TEST(WCGraphicStreamBinaryWriterAllocations, WritingAllocatesOnlyWhenTheMemoryObjectGrows) {
    {
        const mirel_test::WCAllocationCounter probeCounter;
        std::vector<int> probe(3);
        ASSERT_EQ(probeCounter.OnAllThreads(), 1) << "the counting allocator is not in use";
    }
    Utils::WCStMemObj memory;
    WCGraphicStreamBinaryWriter writer(memory);
    WCGSArrays curve;
    for (short i = 0; i < 1000; ++i)
        curve.AddPoint_2Ds(i, static_cast<short>(i % 7));

    WriteFrame(writer, curve);
    const std::uint64_t capacity = memory.GetCapacity();
    const void *block = memory.GetPtr();
    ASSERT_GT(writer.GetStreamSize(), 0u);

    for (int redraw = 0; redraw < 5; ++redraw) {
        writer.ClearStream();
        const mirel_test::WCAllocationCounter counter;
        WriteFrame(writer, curve);
        const long allocations = counter.OnAllThreads();
        EXPECT_EQ(allocations, 0) << "redraw " << redraw;
        EXPECT_EQ(memory.GetCapacity(), capacity);
        EXPECT_EQ(memory.GetPtr(), block);
    }
}
