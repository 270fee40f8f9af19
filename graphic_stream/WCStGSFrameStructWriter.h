#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WURect.h"
#include "graphic_stream/GraphicStreamDefs.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// A scope guard for one frame: the constructor writes the frame record, the destructor closes it.
// A frame in which nothing was drawn does not survive: when the stream has not grown since the
// frame was opened, the destructor zeroes the frame record and takes it off again, leaving the
// stream exactly as long as before the guard. A frame that misses records (the memory object could
// not grow) tells so through GetResult. [main-thread], like its writer.
class WCStGSFrameStructWriter {
public:
    WCStGSFrameStructWriter(WCGraphicStreamBinaryWriter &writer, const SGSFrame &frame);
    // A 32-byte frame at the rectangle's top-left with its width and height. The owner is
    // deliberately not stored: such frames keep owner 0.
    WCStGSFrameStructWriter(WCGraphicStreamBinaryWriter &writer, const WURect<int> &rect,
                            std::int64_t owner);
    ~WCStGSFrameStructWriter();
    WCStGSFrameStructWriter(const WCStGSFrameStructWriter &) = delete;
    WCStGSFrameStructWriter &operator=(const WCStGSFrameStructWriter &) = delete;

    // Whether the destructor still has to close the frame.
    bool ShouldClose() const noexcept { return m_ShouldClose; }
    // Writes the closing record now; the destructor then does nothing.
    void CloseFrame(std::int32_t command = eGSEndFrame);

    // Records of this frame the writer dropped so far: its opening record and what was drawn in
    // it, nested frames included, and its closing record once CloseFrame wrote it.
    std::uint64_t GetNumDroppedRecords() const noexcept;
    // eNoErr, or eMemOutOfMemory when the frame misses records.
    int GetResult() const noexcept;

private:
    void Open(const SGSFrame &frame);

    WCGraphicStreamBinaryWriter &m_Writer;
    std::uint64_t m_LengthAfterOpen = 0;
    std::uint64_t m_RecordSize = 0;
    std::uint64_t m_DroppedBefore = 0;
    bool m_ShouldClose = false;
};

// The same guard for a whole stream: the constructor writes the stream record (and, when given,
// the resources folder record that belongs right behind it), the destructor appends "ESTM" unless
// the stream was closed before. A stream that misses records tells so through GetResult.
// [main-thread], like its writer.
class WCStGSStreamStructWriter {
public:
    WCStGSStreamStructWriter(WCGraphicStreamBinaryWriter &writer, const SGSStream &stream,
                             const char *resourcesBaseURL = nullptr);
    ~WCStGSStreamStructWriter();
    WCStGSStreamStructWriter(const WCStGSStreamStructWriter &) = delete;
    WCStGSStreamStructWriter &operator=(const WCStGSStreamStructWriter &) = delete;

    bool ShouldClose() const noexcept { return m_ShouldClose; }
    void CloseFrame(std::int32_t command = eGSEndStream);

    // As for a frame: what the stream dropped so far, its closing record once written.
    std::uint64_t GetNumDroppedRecords() const noexcept;
    int GetResult() const noexcept;

private:
    WCGraphicStreamBinaryWriter &m_Writer;
    std::uint64_t m_DroppedBefore = 0;
    bool m_ShouldClose = true;
};

} // namespace miGS
MIREL_NAMESPACE_END
