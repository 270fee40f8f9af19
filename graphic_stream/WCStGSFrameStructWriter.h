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
// not grow) tells so through GetResult. Every control draws inside one, so opening and closing
// are inline. [main-thread], like its writer.
class WCStGSFrameStructWriter {
public:
    WCStGSFrameStructWriter(WCGraphicStreamBinaryWriter &writer, const SGSFrame &frame)
        : m_Writer(writer), m_LengthAfterOpen(writer.GetStreamSize() + sizeof(SGSFrame)),
          m_DroppedBefore(writer.GetNumDroppedRecords()) {
        Opened(m_Writer.AppendRecord(frame) != nullptr);
    }
    // A 32-byte frame at the rectangle's top-left with its width and height. The owner is
    // deliberately not stored: such frames keep owner 0.
    WCStGSFrameStructWriter(WCGraphicStreamBinaryWriter &writer, const WURect<int> &rect,
                            std::int64_t /*owner*/)
        : m_Writer(writer), m_LengthAfterOpen(writer.GetStreamSize() + sizeof(SGSFrame)),
          m_DroppedBefore(writer.GetNumDroppedRecords()) {
        // A size that does not fit 32 bits wraps, as a 16-bit rectangle's does in 16 bits,
        // instead of overflowing a signed integer.
        const auto width = static_cast<std::int32_t>(static_cast<std::uint32_t>(rect.right) -
                                                     static_cast<std::uint32_t>(rect.left));
        const auto height = static_cast<std::int32_t>(static_cast<std::uint32_t>(rect.bottom) -
                                                      static_cast<std::uint32_t>(rect.top));
        Opened(m_Writer.AppendFrame(rect.left, rect.top, width, height) != nullptr);
    }
    ~WCStGSFrameStructWriter() {
        if (!m_ShouldClose)
            return;
        const std::uint64_t length = m_Writer.GetStreamSize();
        if (length > m_LengthAfterOpen) [[likely]]
            m_Writer.CloseFrame(eGSEndFrame);
        else if (length == m_LengthAfterOpen)
            RemoveEmptyFrame();
        // Shorter than right after the open: someone cleared the stream; nothing is left to close.
    }
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
    // Arms the guard once the frame record is written, or leaves it unarmed. The length after the
    // open was taken before the record went in, when the stream's size was still at hand rather
    // than to be read again after the stores that built the record.
    void Opened(bool written) noexcept {
        // A frame the memory object could not take is not closed either, or the destructor would
        // remove bytes that belong to the record before it.
        m_ShouldClose = written;
        if (written)
            m_Writer.CountOpenedFrame(sizeof(SGSFrame));
    }
    // Zeroes the frame record, with nothing drawn behind it, and takes it off the stream.
    void RemoveEmptyFrame() noexcept;

    WCGraphicStreamBinaryWriter &m_Writer;
    std::uint64_t m_LengthAfterOpen;
    std::uint64_t m_DroppedBefore;
    bool m_ShouldClose;
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
