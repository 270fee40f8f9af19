#include "graphic_stream/WCStGSFrameStructWriter.h"

#include <cstring>

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

// The writer's count restarts with a new or cleared stream; a guard that outlived that reports
// what the new count holds.
std::uint64_t DroppedSince(const WCGraphicStreamBinaryWriter &writer, std::uint64_t before) {
    const std::uint64_t now = writer.GetNumDroppedRecords();
    return now >= before ? now - before : now;
}

} // namespace

void WCStGSFrameStructWriter::RemoveEmptyFrame() noexcept {
    Utils::WCStMemObj &memory = m_Writer.GetMemObj();
    const std::uint64_t start = memory.GetSize() - sizeof(SGSFrame);
    std::memset(static_cast<char *>(memory.GetPtr()) + start, 0, sizeof(SGSFrame));
    memory.ResizePtr(start);
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
