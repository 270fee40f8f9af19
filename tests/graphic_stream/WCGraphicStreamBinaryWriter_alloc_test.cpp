// Counts heap allocations while a frame is written: writing may allocate only when the memory
// object has to grow, which shows as a change of its capacity.
#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include "graphic_stream/WCGSArrays.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

namespace {
std::atomic<long> g_NewCalls{0};
} // namespace

// GCC pairs the inlined replacement new with the standard delete and warns; the pair below is
// consistent (malloc and free), so the warning is silenced here only.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void *operator new(std::size_t size) {
    ++g_NewCalls;
    if (void *p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void *p) noexcept {
    std::free(p);
}
void operator delete(void *p, std::size_t) noexcept {
    std::free(p);
}
#pragma GCC diagnostic pop

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
        const long before = g_NewCalls.load();
        std::vector<int> probe(3);
        ASSERT_EQ(g_NewCalls.load(), before + 1) << "the counting allocator is not in use";
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
        const long before = g_NewCalls.load();
        WriteFrame(writer, curve);
        EXPECT_EQ(g_NewCalls.load(), before) << "redraw " << redraw;
        EXPECT_EQ(memory.GetCapacity(), capacity);
        EXPECT_EQ(memory.GetPtr(), block);
    }
}
