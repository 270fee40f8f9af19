#include "graphic_stream/WCStGSFrameStructWriter.h"

#include <cstring>

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

// A size that does not fit 32 bits wraps, as a 16-bit rectangle's does in 16 bits, instead of
// overflowing a signed integer.
std::int32_t Difference32(std::int32_t high, std::int32_t low) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(high) -
                                     static_cast<std::uint32_t>(low));
}

// The writer's count restarts with a new or cleared stream; a guard that outlived that reports
// what the new count holds.
std::uint64_t DroppedSince(const WCGraphicStreamBinaryWriter &writer, std::uint64_t before) {
    const std::uint64_t now = writer.GetNumDroppedRecords();
    return now >= before ? now - before : now;
}

} // namespace

WCStGSFrameStructWriter::WCStGSFrameStructWriter(WCGraphicStreamBinaryWriter &writer,
                                                 const SGSFrame &frame)
    : m_Writer(writer) {
    Open(frame);
}

WCStGSFrameStructWriter::WCStGSFrameStructWriter(WCGraphicStreamBinaryWriter &writer,
                                                 const WURect<int> &rect, std::int64_t)
    : m_Writer(writer) {
    SGSFrame frame;
    frame.rect.location.x = rect.left;
    frame.rect.location.y = rect.top;
    frame.rect.size.width = Difference32(rect.right, rect.left);
    frame.rect.size.height = Difference32(rect.bottom, rect.top);
    Open(frame);
}

void WCStGSFrameStructWriter::Open(const SGSFrame &frame) {
    m_DroppedBefore = m_Writer.GetNumDroppedRecords();
    const std::uint64_t before = m_Writer.GetStreamSize();
    m_Writer.OpenFrame(frame);
    m_LengthAfterOpen = m_Writer.GetStreamSize();
    m_RecordSize = m_LengthAfterOpen - before;
    // A frame the memory object could not take is not closed either, or the destructor would
    // remove bytes that belong to the record before it.
    m_ShouldClose = m_RecordSize == sizeof(SGSFrame);
    if (m_ShouldClose)
        m_Writer.CountOpenedFrame(m_RecordSize);
}

WCStGSFrameStructWriter::~WCStGSFrameStructWriter() {
    if (!m_ShouldClose)
        return;
    const std::uint64_t length = m_Writer.GetStreamSize();
    if (length > m_LengthAfterOpen) {
        m_Writer.CloseFrame(eGSEndFrame);
    } else if (length == m_LengthAfterOpen) {
        Utils::WCStMemObj &memory = m_Writer.GetMemObj();
        const std::uint64_t start = length - m_RecordSize;
        std::memset(static_cast<char *>(memory.GetPtr()) + start, 0, m_RecordSize);
        memory.ResizePtr(start);
    }
    // Shorter than right after the open: someone cleared the stream; nothing is left to close.
}

void WCStGSFrameStructWriter::CloseFrame(std::int32_t command) {
    m_Writer.CloseFrame(command);
    m_ShouldClose = false;
}

std::uint64_t WCStGSFrameStructWriter::GetNumDroppedRecords() const noexcept {
    return DroppedSince(m_Writer, m_DroppedBefore);
}

int WCStGSFrameStructWriter::GetResult() const noexcept {
    return GetNumDroppedRecords() == 0 ? eNoErr : eMemOutOfMemory;
}

WCStGSStreamStructWriter::WCStGSStreamStructWriter(WCGraphicStreamBinaryWriter &writer,
                                                   const SGSStream &stream,
                                                   const char *resourcesBaseURL)
    : m_Writer(writer),
      // The open of a stream that is not nested restarts the writer's count.
      m_DroppedBefore(writer.GetStreamSize() == 0 ? 0 : writer.GetNumDroppedRecords()) {
    m_Writer.OpenStream(stream);
    if (resourcesBaseURL != nullptr)
        m_Writer.SpecialText(eGSResourcesBaseURL, resourcesBaseURL);
}

WCStGSStreamStructWriter::~WCStGSStreamStructWriter() {
    if (m_ShouldClose)
        CloseFrame(eGSEndStream);
}

void WCStGSStreamStructWriter::CloseFrame(std::int32_t command) {
    m_Writer.CloseFrame(command);
    m_ShouldClose = false;
}

std::uint64_t WCStGSStreamStructWriter::GetNumDroppedRecords() const noexcept {
    return DroppedSince(m_Writer, m_DroppedBefore);
}

int WCStGSStreamStructWriter::GetResult() const noexcept {
    return GetNumDroppedRecords() == 0 ? eNoErr : eMemOutOfMemory;
}

} // namespace miGS
MIREL_NAMESPACE_END
