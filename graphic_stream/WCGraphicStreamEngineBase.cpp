#include "graphic_stream/WCGraphicStreamEngineBase.h"

#include <cstring>
#include <exception>
#include <limits>
#include <new>

#include "graphic_stream/GSChecksum.h"
#include "graphic_stream/GraphicStreamVocabulary.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

template <typename Record>
Record &As(SGSCommandHeader &header) noexcept {
    return *reinterpret_cast<Record *>(&header);
}

// The smallest size a record of a command can have and still hold its fields.
std::int32_t MinimumRecordSize(std::int32_t command) noexcept {
    switch (command) {
    case eGSBeginStream: return sizeof(SGSStream);
    case eGSBeginFrame: return sizeof(SGSFrame);
    case eGSRotateFrame: return sizeof(SGSFrameRotate);
    case eGSDrawImage: return sizeof(SGSDrawImage);
    case eGSDrawImageMultipleClips: return sizeof(SGSDrawImageMultipleClips);
    case eGSDrawPNGDeprecated:
    case eGSDrawPNGClippedDeprecated:
    case eGSDrawPNGScaledDeprecated: return sizeof(SGSDrawPNGDeprecated);
    case eGSDrawText: return sizeof(SGSDrawText);
    case eGSDrawOval: return sizeof(SGSDrawOval);
    case eGSDrawVertices:
    case eGSClipVertices: return sizeof(SGSDrawVertices);
    case eGSClipRect: return sizeof(SGSClipRect);
    case eGSFont: return sizeof(SGSFont);
    case eGSDataHere:
    case eGSDataPtr: return sizeof(SGSData);
    default: return sizeof(SGSCommandHeader);
    }
}

std::uint64_t MixChecksums(std::uint64_t running, std::uint64_t next) noexcept {
    const std::uint64_t pair[2] = {running, next};
    return MurmurHash64A(pair, sizeof pair, kGSChecksumSeed);
}

const SGSFont kDefaultFont{};

} // namespace

WCGraphicStreamEngineBase::WCGraphicStreamEngineBase() = default;
WCGraphicStreamEngineBase::~WCGraphicStreamEngineBase() = default;

WTErr WCGraphicStreamEngineBase::ExecStreamWithAllChecksums(char *stream, std::uint64_t length,
                                                            const std::vector<std::uint64_t> &) {
    return ExecStream(stream, length);
}

WTErr WCGraphicStreamEngineBase::ExecStreamWithFrameChecksums(
    char *stream, std::uint64_t length, const std::vector<std::uint64_t> &expected,
    std::vector<std::uint64_t> &actual, std::vector<WSFrameChecksumMismatch> &mismatches) {
    actual.clear();
    mismatches.clear();
    std::vector<WSOpenFrameChecksum> open;
    m_OpenFrameChecksums = &open;
    m_FrameChecksums = &actual;
    m_ExpectedFrameChecksums = &expected;
    m_FrameMismatches = &mismatches;
    const WTErr result = ExecStream(stream, length);
    m_OpenFrameChecksums = nullptr;
    m_FrameChecksums = nullptr;
    m_ExpectedFrameChecksums = nullptr;
    m_FrameMismatches = nullptr;
    return result;
}

WTErr WCGraphicStreamEngineBase::CollectRecordChecksums(char *stream, std::uint64_t length,
                                                        std::vector<std::uint64_t> &checksums) {
    checksums.clear();
    WCGraphicStreamEngineBase walker;
    walker.m_RecordChecksums = &checksums;
    return walker.ExecStream(stream, length);
}

void WCGraphicStreamEngineBase::SetWindowRect(const WURect<short> &rect) {
    m_WindowRect = rect;
}
int WCGraphicStreamEngineBase::BeginStream(SGSStream &) {
    return 0;
}
int WCGraphicStreamEngineBase::EndStream(SGSCommandHeader &) {
    return 0;
}
int WCGraphicStreamEngineBase::BeginFrame(SGSFrame &) {
    return 0;
}
int WCGraphicStreamEngineBase::EndFrame(SGSCommandHeader &) {
    return 0;
}
int WCGraphicStreamEngineBase::RotateFrame(SGSFrameRotate &) {
    return 0;
}
int WCGraphicStreamEngineBase::DrawOldStyle(SGSCommandHeader &) {
    return 0;
}

int WCGraphicStreamEngineBase::DrawPNGDeprecated(SGSDrawPNGDeprecated &old) {
    SGSDrawImage image;
    image.ResID = old.ResID;
    image.draw_rect.location = old.rect.location;
    return DrawImage(image);
}

int WCGraphicStreamEngineBase::DrawPNGClippedDeprecated(SGSDrawPNGDeprecated &old) {
    SGSDrawImage image;
    image.ResID = old.ResID;
    image.draw_rect.location = old.rect.location;
    image.clip_rect = old.rect;
    return DrawImage(image);
}

int WCGraphicStreamEngineBase::DrawPNGScaledDeprecated(SGSDrawPNGDeprecated &old) {
    SGSDrawImage image;
    image.ResID = old.ResID;
    image.draw_rect = old.rect;
    return DrawImage(image);
}

int WCGraphicStreamEngineBase::DrawImage(SGSDrawImage &) {
    return 0;
}
int WCGraphicStreamEngineBase::DrawImageMultipleClips(SGSDrawImageMultipleClips &) {
    return 0;
}
int WCGraphicStreamEngineBase::DrawTheText(SGSDrawText &) {
    return 0;
}
int WCGraphicStreamEngineBase::DrawOval(SGSDrawOval &) {
    return 0;
}
int WCGraphicStreamEngineBase::DrawVertices(SGSDrawVertices &) {
    return 0;
}
int WCGraphicStreamEngineBase::ClipVertices(SGSDrawVertices &) {
    return 0;
}
int WCGraphicStreamEngineBase::ClipRect(SGSClipRect &) {
    return 0;
}
int WCGraphicStreamEngineBase::ClipMultipleRects(SGSClipMultipleRects &) {
    return 0;
}

int WCGraphicStreamEngineBase::ResourcesBaseURL(SGSData &data) {
    const std::string_view text = GetDataText(data);
    m_ResourcesBaseURL.assign(text.data(), text.size());
    if (text.empty())
        return 0;
    WCStResContainerGraphicStream *container = nullptr;
    if (const auto found = m_ResContainers.find(text); found != m_ResContainers.end()) {
        container = found->second.get();
    } else {
        std::unique_ptr<WCStResContainerGraphicStream> made =
            NewResContainerData(FM::WCStPath(std::string(text)));
        if (made == nullptr)
            return 0;
        container = made.get();
        m_ResContainers.emplace(std::string(text), std::move(made));
    }
    container->AddUse();
    if (m_FrameStack.empty())
        m_LooseResContainer = container;
    else
        m_FrameStack.back().m_ResContainer = container;
    return 0;
}

std::unique_ptr<WCStResContainerGraphicStream>
WCGraphicStreamEngineBase::NewResContainerData(const FM::WCStPath &path) {
    return std::make_unique<WCStResContainerGraphicStream>(path);
}

void WCGraphicStreamEngineBase::CloseRedundantResContainers() {
    for (auto it = m_ResContainers.begin(); it != m_ResContainers.end();) {
        WCStResContainerGraphicStream *container = it->second.get();
        // One still named by an open frame stays, even when a nested stream reset the counts.
        bool referenced = container == m_LooseResContainer;
        for (const WSFrameState &state : m_FrameStack)
            referenced = referenced || state.m_ResContainer == container;
        if (container->GetUseCount() == 0 && !referenced)
            it = m_ResContainers.erase(it);
        else
            ++it;
    }
}

WCStResContainerGraphicStream *WCGraphicStreamEngineBase::GetResContainer() const noexcept {
    if (!m_FrameStack.empty() && m_FrameStack.back().m_ResContainer != nullptr)
        return m_FrameStack.back().m_ResContainer;
    return m_LooseResContainer;
}

int WCGraphicStreamEngineBase::GetImageResource(std::int32_t resID, WTResourceType *&outResource) {
    outResource = nullptr;
    WCStResContainerGraphicStream *container = GetResContainer();
    if (container == nullptr)
        return eRMContainerNotFound;
    return container->GetImage(resID, outResource);
}
int WCGraphicStreamEngineBase::Remark(SGSData &) {
    return 0;
}
int WCGraphicStreamEngineBase::MetaData(SGSData &) {
    return 0;
}
int WCGraphicStreamEngineBase::Font(SGSFont &) {
    return 0;
}
int WCGraphicStreamEngineBase::Data(SGSData &) {
    return 0;
}
int WCGraphicStreamEngineBase::Ignore(int) {
    return 0;
}
int WCGraphicStreamEngineBase::Illegal(int) {
    return 0;
}
int WCGraphicStreamEngineBase::Unknown(int) {
    return 0;
}

void WCGraphicStreamEngineBase::RegisterBeginStream(SGSStream &stream) {
    PushFrameState(stream.frame);
    const std::string_view name = FixedFieldText(stream.stream_name, sizeof stream.stream_name);
    m_FrameStack.back().m_Name.assign(name.data(), name.size());
    if (m_StreamName.empty())
        m_StreamName.assign(name.data(), name.size());
    m_Stream = stream;
    // Counted per outermost stream: a nested stream that reset them would make its parent's
    // folder look unused.
    if (m_FrameStack.size() == 1)
        ResetResContainersCount();
}

void WCGraphicStreamEngineBase::RegisterEndStream(SGSCommandHeader &) {
    if (!m_FrameStack.empty())
        m_FrameStack.pop_back();
}

void WCGraphicStreamEngineBase::RegisterBeginFrame(SGSFrame &frame) {
    PushFrameState(frame);
}

void WCGraphicStreamEngineBase::RegisterEndFrame(SGSCommandHeader &) {
    if (!m_FrameStack.empty())
        m_FrameStack.pop_back();
}

void WCGraphicStreamEngineBase::ResetResContainersCount() {
    for (auto &entry : m_ResContainers)
        entry.second->ResetUseCount();
}
int WCGraphicStreamEngineBase::BeforeExceStream(char *) {
    return 0;
}
int WCGraphicStreamEngineBase::AfterExceStream(char *) {
    return 0;
}

WTErr WCGraphicStreamEngineBase::ExecStream(char *stream, std::uint64_t length) {
    if (stream == nullptr) {
        if (length != 0)
            return kGSErrBadRecordSize;
        // An empty stream is still walked, so an exporter makes its (empty) document.
        alignas(SGSData) static char nothing[sizeof(SGSCommandHeader)];
        stream = nothing;
    }
    // Records are read in place; a buffer off the 4-byte grid cannot hold a valid stream.
    if (reinterpret_cast<std::uintptr_t>(stream) % alignof(SGSData) != 0)
        return kGSErrBadRecordSize;
    try {
        return Walk(stream, length);
    } catch (int code) {
        m_CurrentRecord = nullptr;
        m_EndTime = std::chrono::steady_clock::now();
        return code;
    } catch (const std::bad_alloc &) {
        m_CurrentRecord = nullptr;
        return eMemOutOfMemory;
    } catch (const std::exception &) {
        // Only a painter's own library can throw here; the walk reports it like any fault.
        m_CurrentRecord = nullptr;
        return eExceptionErr;
    }
}

WTErr WCGraphicStreamEngineBase::ExecStream(char *stream) {
    if (stream == nullptr)
        return kGSErrBadRecordSize;
    // Only the records tell where such a stream ends: the walk stops at its closing record, and
    // every record must have exactly the size of its command (CheckRecord), so a size that cannot
    // be right stops it before it jumps past the stream.
    const std::uint64_t unbounded =
        std::numeric_limits<std::uint64_t>::max() - reinterpret_cast<std::uintptr_t>(stream);
    m_WithoutLength = true;
    const WTErr result = ExecStream(stream, unbounded);
    m_WithoutLength = false;
    return result;
}

void WCGraphicStreamEngineBase::ResetWalkState() {
    m_FrameStack.clear();
    m_LatestData.clear();
    m_StreamName.clear();
    m_Stream = SGSStream{};
    m_ResourcesBaseURL.clear();
    m_LooseResContainer = nullptr;
    ResetResContainersCount();
    m_RecordCount = 0;
    m_CurrentRecordOffset = 0;
    m_NextFloatArray = 0;
    m_NextInt16Array = 0;
    m_NextUint16Array = 0;
}

WTErr WCGraphicStreamEngineBase::Walk(char *stream, std::uint64_t length) {
    ++m_ExecutionCount;
    m_StartTime = std::chrono::steady_clock::now();
    ResetWalkState();
    int result = BeforeExceStream(stream);

    std::uint64_t offset = 0;
    m_RunFlag = true;
    while (m_RunFlag) {
        const std::uint64_t available = length - offset;
        if (available == 0) {
            // A loose list of records may simply end; an open frame may not.
            if (m_FrameStack.empty())
                break;
            throw static_cast<int>(kGSErrBadRecordSize);
        }
        if (available < sizeof(SGSCommandHeader))
            throw static_cast<int>(kGSErrBadRecordSize);

        auto &header = *reinterpret_cast<SGSCommandHeader *>(stream + offset);
        // Without a length only a frame or stream that closes can end the walk.
        if (m_WithoutLength && offset == 0 && header.command != eGSBeginStream &&
            header.command != eGSBeginFrame)
            throw static_cast<int>(kGSErrBadRecordSize);
        m_CurrentRecordOffset = offset;
        ++m_RecordCount;
        if (header.command == eGSIllegalCommand) {
            Illegal(header.command);
            throw static_cast<int>(kGSErrIllegalCommand);
        }
        CheckRecord(header, available);
        if (m_RecordChecksums != nullptr && header.command != eGSEndFrame &&
            header.command != eGSEndStream) {
            if (header.command == eGSDataHere || header.command == eGSDataPtr) {
                auto &data = As<SGSData>(header);
                m_RecordChecksums->push_back(GSStructChecksum(data, GetDataPayload(data)));
            } else {
                m_RecordChecksums->push_back(GSStructChecksum(header));
            }
        }
        if (m_OpenFrameChecksums != nullptr)
            FoldFrameChecksum(header);

        m_CurrentRecord = &header;
        result = Dispatch(header, available);
        m_CurrentRecord = nullptr;
        offset += static_cast<std::uint64_t>(header.size);
    }

    CloseRedundantResContainers();
    AfterExceStream(stream);
    m_EndTime = std::chrono::steady_clock::now();
    return result;
}

void WCGraphicStreamEngineBase::CheckRecord(const SGSCommandHeader &header,
                                            std::uint64_t available) const {
    const std::int32_t size = header.size;
    if (size <= 0 || size % 4 != 0 || static_cast<std::uint64_t>(size) > available ||
        size < MinimumRecordSize(header.command))
        throw static_cast<int>(kGSErrBadRecordSize);
    if (header.command == eGSDataHere || header.command == eGSDataPtr) {
        const auto &data = *reinterpret_cast<const SGSData *>(&header);
        if (data.num_elements < 0)
            throw static_cast<int>(kGSErrBadRecordSize);
        if (header.command == eGSDataHere &&
            GetDataPayloadSize(data) > static_cast<std::uint64_t>(size) - sizeof(SGSData))
            throw static_cast<int>(kGSErrBadRecordSize);
    }
    if (m_WithoutLength && static_cast<std::uint64_t>(size) > ExactRecordSize(header))
        throw static_cast<int>(kGSErrBadRecordSize);
}

std::uint64_t WCGraphicStreamEngineBase::ExactRecordSize(const SGSCommandHeader &header) {
    switch (header.command) {
    case eGSDataHere: {
        // The payload padded to four bytes, as the writer lays it out.
        const auto &data = *reinterpret_cast<const SGSData *>(&header);
        return sizeof(SGSData) + ((GetDataPayloadSize(data) + 3) & ~std::uint64_t{3});
    }
    case eGSEndStream:
    case eGSEndFrame:
    case eGSDrawOldStyle:
    case eGSIgnoreCommand: return sizeof(SGSCommandHeader);
    default: {
        const std::int32_t fixed = MinimumRecordSize(header.command);
        // A command this walk does not know may be larger, but never beyond any record's size.
        return fixed > std::int32_t(sizeof(SGSCommandHeader)) ? std::uint64_t(fixed)
                                                              : kMaxUnknownRecordSize;
    }
    }
}

void WCGraphicStreamEngineBase::FoldFrameChecksum(const SGSCommandHeader &header) {
    auto &open = *m_OpenFrameChecksums;
    const std::int32_t command = header.command;
    if (command == eGSEndFrame || command == eGSEndStream) {
        if (open.empty())
            return;
        const WSOpenFrameChecksum done = open.back();
        open.pop_back();
        (*m_FrameChecksums)[done.m_Index] = done.m_Hash;
        const auto &expected = *m_ExpectedFrameChecksums;
        const bool known = done.m_Index < expected.size();
        if (!known || expected[done.m_Index] != done.m_Hash) {
            m_FrameMismatches->push_back({done.m_Offset, done.m_Index, done.m_Owner,
                                          known ? expected[done.m_Index] : 0, done.m_Hash});
        }
        if (!open.empty())
            open.back().m_Hash = MixChecksums(open.back().m_Hash, done.m_Hash);
        return;
    }
    if (command == eGSBeginFrame || command == eGSBeginStream) {
        const auto &frame = *reinterpret_cast<const SGSFrame *>(&header);
        open.push_back({m_FrameChecksums->size(), m_CurrentRecordOffset, frame.owner,
                        GSStructChecksum(header)});
        m_FrameChecksums->push_back(0);
        return;
    }
    if (open.empty())
        return;
    std::uint64_t checksum = 0;
    if (command == eGSDataHere || command == eGSDataPtr) {
        const auto &data = *reinterpret_cast<const SGSData *>(&header);
        checksum = GSStructChecksum(data, GetDataPayload(data));
    } else {
        checksum = GSStructChecksum(header);
    }
    open.back().m_Hash = MixChecksums(open.back().m_Hash, checksum);
}

int WCGraphicStreamEngineBase::Dispatch(SGSCommandHeader &header, std::uint64_t) {
    const std::int32_t command = header.command;
    switch (command) {
    case eGSBeginStream: {
        if (m_FrameStack.size() >= kMaxFrameDepth)
            throw static_cast<int>(kGSErrBadRecordSize);
        auto &stream = As<SGSStream>(header);
        RegisterBeginStream(stream);
        return BeginStream(stream);
    }
    case eGSEndStream: {
        const int result = EndStream(header);
        RegisterEndStream(header);
        m_RunFlag = !m_FrameStack.empty();
        return result;
    }
    case eGSBeginFrame: {
        if (m_FrameStack.size() >= kMaxFrameDepth)
            throw static_cast<int>(kGSErrBadRecordSize);
        auto &frame = As<SGSFrame>(header);
        RegisterBeginFrame(frame);
        return BeginFrame(frame);
    }
    case eGSEndFrame: {
        const int result = EndFrame(header);
        RegisterEndFrame(header);
        m_RunFlag = !m_FrameStack.empty();
        return result;
    }
    case eGSRotateFrame: return RotateFrame(As<SGSFrameRotate>(header));
    case eGSDrawOldStyle: return DrawOldStyle(header);
    case eGSDrawPNGDeprecated: return DrawPNGDeprecated(As<SGSDrawPNGDeprecated>(header));
    case eGSDrawPNGClippedDeprecated:
        return DrawPNGClippedDeprecated(As<SGSDrawPNGDeprecated>(header));
    case eGSDrawPNGScaledDeprecated:
        return DrawPNGScaledDeprecated(As<SGSDrawPNGDeprecated>(header));
    case eGSDrawImage: return DrawImage(As<SGSDrawImage>(header));
    case eGSDrawImageMultipleClips:
        return DrawImageMultipleClips(As<SGSDrawImageMultipleClips>(header));
    case eGSDrawText: return DrawTheText(As<SGSDrawText>(header));
    case eGSDrawOval: return DrawOval(As<SGSDrawOval>(header));
    case eGSDrawVertices: return DrawVertices(As<SGSDrawVertices>(header));
    case eGSClipVertices: return ClipVertices(As<SGSDrawVertices>(header));
    case eGSClipRect: {
        auto &clip = As<SGSClipRect>(header);
        if (!m_FrameStack.empty())
            m_FrameStack.back().m_ClipRects.assign(1, clip.rect);
        return ClipRect(clip);
    }
    case eGSClipMultipleRects: {
        if (!m_FrameStack.empty()) {
            auto &clips = m_FrameStack.back().m_ClipRects;
            clips.clear();
            const SGSData *rects = GetLatestDataOfPurpose(eGSPurposeClipRects);
            const void *payload = rects != nullptr ? GetDataPayload(*rects) : nullptr;
            if (payload != nullptr && rects->type == eGSTypeRect) {
                const auto *first = static_cast<const SGSRect *>(payload);
                clips.assign(first, first + rects->num_elements);
            }
        }
        return ClipMultipleRects(As<SGSClipMultipleRects>(header));
    }
    case eGSFont: {
        auto &font = As<SGSFont>(header);
        if (!m_FrameStack.empty())
            m_FrameStack.back().m_Font = font;
        return Font(font);
    }
    case eGSDataHere:
    case eGSDataPtr: {
        auto &data = As<SGSData>(header);
        switch (data.purpose) {
        case eGSPurposeMetaData: return MetaData(data);
        case eGSPurposeResourcesBaseURL: return ResourcesBaseURL(data);
        case eGSPurposeRemark: return Remark(data);
        default: SetLatestData(&data); return Data(data);
        }
    }
    case eGSIgnoreCommand: return Ignore(command);
    default: return Unknown(command);
    }
}

void WCGraphicStreamEngineBase::PushFrameState(const SGSFrame &frame) {
    if (m_FrameStack.empty()) {
        m_FrameStack.emplace_back();
    } else {
        // Copied through a local: emplace_back of an element of the vector itself may reallocate
        // from under the reference.
        WSFrameState parent = m_FrameStack.back();
        m_FrameStack.push_back(std::move(parent));
    }
    WSFrameState &state = m_FrameStack.back();
    state.m_Frame = frame;
    state.m_AbsoluteX += frame.rect.location.x;
    state.m_AbsoluteY += frame.rect.location.y;
}

const SGSFont &WCGraphicStreamEngineBase::GetFont() const noexcept {
    return m_FrameStack.empty() ? kDefaultFont : m_FrameStack.back().m_Font;
}

const WCGraphicStreamEngineBase::WSFrameState *
WCGraphicStreamEngineBase::GetTopFrameState() const noexcept {
    return m_FrameStack.empty() ? nullptr : &m_FrameStack.back();
}

void WCGraphicStreamEngineBase::GetVertexScale(const SGSDrawVertices &vertices, double &outX,
                                               double &outY) const noexcept {
    outX = vertices.scale.h;
    outY = vertices.scale.v;
    const SGSSize &logical = vertices.logical_size;
    const WSFrameState *frame = GetTopFrameState();
    if (logical.width > 0 && logical.height > 0 && frame != nullptr) {
        outX *= static_cast<double>(frame->m_Frame.rect.size.width) / logical.width;
        outY *= static_cast<double>(frame->m_Frame.rect.size.height) / logical.height;
    }
}

SGSData *WCGraphicStreamEngineBase::GetLatestDataOfPurpose(std::int32_t purpose) const noexcept {
    for (const WSLatestData &entry : m_LatestData) {
        if (entry.m_Purpose == purpose)
            return entry.m_Data;
    }
    return nullptr;
}

SGSData *WCGraphicStreamEngineBase::GetLatestVertexData(std::size_t &dimensions) const noexcept {
    SGSData *flat = GetLatestDataOfPurpose(eGSPurposePoint2D);
    SGSData *deep = GetLatestDataOfPurpose(eGSPurposePoint3D);
    // Both lie in the stream being walked, so the later record has the higher address.
    if (deep != nullptr && (flat == nullptr || reinterpret_cast<std::uintptr_t>(deep) >
                                                   reinterpret_cast<std::uintptr_t>(flat))) {
        dimensions = 3;
        return deep;
    }
    dimensions = 2;
    return flat;
}

bool WCGraphicStreamEngineBase::GetLatestVertexPoints(WCVertexPoints &outPoints) const noexcept {
    std::size_t dimensions = 2;
    const SGSData *data = GetLatestVertexData(dimensions);
    const void *payload = data != nullptr ? GetDataPayload(*data) : nullptr;
    if (payload == nullptr || (data->type != eGSTypeInt16 && data->type != eGSTypeFloat))
        return false;
    outPoints.m_Bytes = static_cast<const unsigned char *>(payload);
    outPoints.m_Type = data->type;
    outPoints.m_Dimensions = dimensions;
    outPoints.m_Count = static_cast<std::size_t>(data->num_elements) / dimensions;
    return true;
}

WCPoint2D<float>
WCGraphicStreamEngineBase::WCVertexPoints::operator[](std::size_t index) const noexcept {
    float xy[2];
    for (std::size_t k = 0; k < 2; ++k) {
        const std::size_t element = index * m_Dimensions + k;
        if (m_Type == eGSTypeInt16) {
            std::int16_t value;
            std::memcpy(&value, m_Bytes + element * sizeof value, sizeof value);
            xy[k] = value;
        } else {
            std::memcpy(&xy[k], m_Bytes + element * sizeof(float), sizeof(float));
        }
    }
    return {xy[0], xy[1]};
}

void WCGraphicStreamEngineBase::SetLatestData(SGSData *data) {
    if (data == nullptr)
        return;
    for (WSLatestData &entry : m_LatestData) {
        if (entry.m_Purpose == data->purpose) {
            entry.m_Data = data;
            return;
        }
    }
    m_LatestData.push_back({data->purpose, data});
}

std::uint64_t WCGraphicStreamEngineBase::GetDataPayloadSize(const SGSData &data) noexcept {
    if (data.num_elements <= 0)
        return 0;
    return static_cast<std::uint64_t>(data.num_elements) *
           static_cast<std::uint64_t>(GraphicStreamDataTypeElementSize(data.type));
}

const void *WCGraphicStreamEngineBase::GetDataPayload(const SGSData &data) const noexcept {
    if (data.header.command == eGSDataHere)
        return reinterpret_cast<const char *>(&data) + sizeof(SGSData);
    if (data.header.command == eGSDataPtr && m_FollowDataPointers)
        return reinterpret_cast<const void *>(static_cast<std::uintptr_t>(data.data_ptr));
    return nullptr;
}

std::string_view WCGraphicStreamEngineBase::GetDataText(const SGSData &data) const noexcept {
    const void *payload = GetDataPayload(data);
    if (data.type != eGSTypeChar || payload == nullptr)
        return {};
    return {static_cast<const char *>(payload), static_cast<std::size_t>(GetDataPayloadSize(data))};
}

std::string_view WCGraphicStreamEngineBase::FixedFieldText(const char *field,
                                                           std::size_t capacity) noexcept {
    std::size_t length = 0;
    while (length < capacity && field[length] != '\0')
        ++length;
    return {field, length};
}

WTErr WCGraphicStreamEngineBase::GetStreamFrameSize(const char *stream, std::uint64_t length,
                                                    SGSSize &size) {
    if (stream == nullptr || length < sizeof(SGSStream))
        return kGSErrBadRecordSize;
    std::int32_t command = 0;
    std::memcpy(&command, stream, sizeof command);
    if (command != eGSBeginStream)
        return kGSErrBadRecordSize;
    GetStreamFrameSize(stream, size);
    return eNoErr;
}

void WCGraphicStreamEngineBase::GetStreamFrameSize(const char *stream, SGSSize &size) {
    std::memcpy(&size, stream + offsetof(SGSFrame, rect) + offsetof(SGSRect, size), sizeof size);
}

namespace {

template <typename T>
T *NextArray(std::vector<std::vector<T>> &pool, std::size_t &next, std::size_t length) {
    if (next == pool.size())
        pool.emplace_back();
    std::vector<T> &array = pool[next++];
    array.resize(length);
    return array.data();
}

} // namespace

float *WCGraphicStreamEngineBase::GetNextAvailableFloatArrayWithLength(std::size_t length) {
    return NextArray(m_FloatArrays, m_NextFloatArray, length);
}

std::int16_t *WCGraphicStreamEngineBase::GetNextAvailableInt16ArrayWithLength(std::size_t length) {
    return NextArray(m_Int16Arrays, m_NextInt16Array, length);
}

std::uint16_t *
WCGraphicStreamEngineBase::GetNextAvailableUint16ArrayWithLength(std::size_t length) {
    return NextArray(m_Uint16Arrays, m_NextUint16Array, length);
}

} // namespace miGS
MIREL_NAMESPACE_END
