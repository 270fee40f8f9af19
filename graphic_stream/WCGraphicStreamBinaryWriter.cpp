#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

#include "core/WUAssert.h"
#include "graphic_stream/GSConversions.h"
#include "graphic_stream/GraphicStreamVocabulary.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

std::size_t TextLength(const char *text) noexcept {
    return text != nullptr ? std::strlen(text) : 0;
}

SGSRGBAColor ToSGSColor(const WCRGBAColor &color) noexcept {
    return SGSRGBAColor{color.red, color.green, color.blue, color.alpha};
}

constexpr std::uintptr_t kOutsideStream = ~std::uintptr_t(0);

// Where `source` lies in the stream, or kOutsideStream.
std::uintptr_t OffsetInStream(const Utils::WCStMemObj &memory, const void *source) noexcept {
    const auto block = reinterpret_cast<std::uintptr_t>(memory.GetPtr());
    const auto at = reinterpret_cast<std::uintptr_t>(source);
    if (block != 0 && at >= block && at - block < memory.GetSize())
        return at - block;
    return kOutsideStream;
}

} // namespace

WCGraphicStreamBinaryWriter::WCGraphicStreamBinaryWriter(Utils::WCStMemObj &target,
                                                         std::uint64_t threshold)
    : m_Target(&target), m_DataPtrThreshold(threshold) {}

WCGraphicStreamBinaryWriter::WCGraphicStreamBinaryWriter(std::uint64_t threshold)
    : m_Target(&m_OwnMemObj), m_DataPtrThreshold(threshold) {}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::SetDataPtrThreshold(std::uint64_t threshold) noexcept {
    m_DataPtrThreshold = threshold;
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::ActivateRemarks(bool active) noexcept {
    m_RemarksActive = active;
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::ActivateMeatData(bool active) noexcept {
    m_MetaDataActive = active;
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::ClearStream() noexcept {
    m_Target->ResizePtr(0);
    m_DroppedRecords = 0;
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::SetSizeLimit(std::uint64_t bytes) noexcept {
    m_SizeLimit = bytes;
    return *this;
}

bool WCGraphicStreamBinaryWriter::Grow(std::uint64_t bytes) noexcept {
    Utils::WCStMemObj &memory = *m_Target;
    const std::uint64_t size = memory.GetSize();
    if (size > m_SizeLimit || bytes > m_SizeLimit - size)
        return false;
    const std::uint64_t needed = size + bytes;
    // Geometric, as the memory object grows by itself; next to the limit it takes the limit.
    const std::uint64_t capacity = needed <= m_SizeLimit / 2 ? 2 * needed : m_SizeLimit;
    return memory.ReservePtr(capacity) == eNoErr || memory.ReservePtr(needed) == eNoErr;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DropRecord() noexcept {
    ++m_DroppedRecords;
    return *this;
}

char *WCGraphicStreamBinaryWriter::ReserveGrowing(std::uint64_t bytes, const void *&source,
                                                  const void *&other) noexcept {
    Utils::WCStMemObj &memory = *m_Target;
    const std::uintptr_t sourceAt = OffsetInStream(memory, source);
    const std::uintptr_t otherAt = OffsetInStream(memory, other);
    char *place = nullptr;
    if (Fits(bytes) || Grow(bytes))
        place = static_cast<char *>(memory.InPlaceAppendAndReserve(bytes));
    if (place == nullptr) {
        ++m_DroppedRecords;
        return nullptr;
    }
    const char *block = static_cast<const char *>(memory.GetPtr());
    if (sourceAt != kOutsideStream)
        source = block + sourceAt;
    if (otherAt != kOutsideStream)
        other = block + otherAt;
    return place;
}

char *WCGraphicStreamBinaryWriter::AppendGrowing(const void *record, std::uint64_t bytes) noexcept {
    const void *none = nullptr;
    char *place = ReserveGrowing(bytes, record, none);
    if (place != nullptr)
        std::memcpy(place, record, bytes);
    return place;
}

inline void WCGraphicStreamBinaryWriter::AppendDataHere(const SGSData &header, const void *payload,
                                                        std::uint64_t bytes) noexcept {
    const std::uint64_t recordBytes = DataHereRecordBytes(bytes);
    const void *headerSource = &header;
    char *place;
    if (Fits(recordBytes)) [[likely]]
        place = static_cast<char *>(m_Target->InPlaceAppendAndReserve(recordBytes));
    else if ((place = ReserveGrowing(recordBytes, headerSource, payload)) == nullptr)
        return;
    FillDataHere(place, recordBytes, payload, bytes);
    // The header may lie anywhere, in the stream too, so it is copied as bytes.
    std::memcpy(place, headerSource, sizeof(SGSData));
}

inline void WCGraphicStreamBinaryWriter::AppendDataHere(std::int32_t purpose, std::int32_t type,
                                                        const void *payload, std::size_t count,
                                                        std::uint64_t elementBytes) noexcept {
    const std::uint64_t bytes = static_cast<std::uint64_t>(count) * elementBytes;
    MIREL_ASSERT_RETURN(
        count <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) &&
            bytes <= kMaxPayloadBytes,
        (void)DropRecord());
    const std::uint64_t recordBytes = DataHereRecordBytes(bytes);
    char *place;
    if (Fits(recordBytes)) [[likely]] {
        place = static_cast<char *>(m_Target->InPlaceAppendAndReserve(recordBytes));
    } else {
        const void *none = nullptr;
        if ((place = ReserveGrowing(recordBytes, payload, none)) == nullptr)
            return;
    }
    PutDataHere(place, recordBytes, purpose, type, payload, count, bytes);
}

inline void WCGraphicStreamBinaryWriter::AppendDataPtr(std::int32_t purpose, std::int32_t type,
                                                       const void *payload,
                                                       std::size_t count) noexcept {
    MIREL_ASSERT_RETURN(count <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()),
                        (void)DropRecord());
    if (char *place = Reserve(sizeof(SGSData))) {
        Put(place, offsetof(SGSData, header),
            SGSCommandHeader{eGSDataPtr, static_cast<std::int32_t>(sizeof(SGSData))});
        Put(place, offsetof(SGSData, type), type);
        Put(place, offsetof(SGSData, purpose), purpose);
        Put(place, offsetof(SGSData, num_elements), static_cast<std::int32_t>(count));
        Put(place, offsetof(SGSData, data_ptr),
            static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(payload)));
    }
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::OpenStream(const SGSStream &stream) {
    // A new stream starts a new count of what it misses; a nested one adds to its parent's.
    if (m_Target->GetSize() == 0)
        m_DroppedRecords = 0;
    // The name is read as zero-terminated text, so its last byte is zero in the stream even when
    // the caller filled the whole field; the font's name below likewise.
    if (char *place = AppendRecord(stream))
        place[offsetof(SGSStream, stream_name) + sizeof stream.stream_name - 1] = '\0';
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::RotateFrame(const SGSFrameRotate &rotate) {
    AppendRecord(rotate);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::Font(const SGSFont &font) {
    if (char *place = AppendRecord(font))
        place[offsetof(SGSFont, name) + sizeof font.name - 1] = '\0';
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawVertices(const SGSDrawVertices &vertices) {
    AppendRecord(vertices);
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::ClipVertices(const SGSDrawVertices &vertices) {
    AppendRecord(vertices);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawOval(const SGSDrawOval &oval) {
    AppendRecord(oval);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawPNG(const SGSDrawImage &image) {
    AppendRecord(image);
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawPNGMultipleClips(const SGSDrawImageMultipleClips &image) {
    AppendRecord(image);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawTheText(const SGSDrawText &text) {
    AppendRecord(text);
    return *this;
}

// ---- Data ----

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataHere(const SGSData &header,
                                                                   const void *payload) {
    std::uint64_t bytes = 0;
    if (header.header.command != eGSDataPtr && header.num_elements > 0)
        bytes = static_cast<std::uint64_t>(header.num_elements) *
                static_cast<std::uint64_t>(GraphicStreamDataTypeElementSize(header.type));
    MIREL_ASSERT_RETURN(bytes <= kMaxPayloadBytes, DropRecord());
    AppendDataHere(header, payload, bytes);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataHere(std::int32_t purpose,
                                                                   std::int32_t type,
                                                                   const void *data,
                                                                   std::size_t count) {
    AppendDataHere(purpose, type, data, count,
                   static_cast<std::uint64_t>(GraphicStreamDataTypeElementSize(type)));
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataPtr(const SGSData &header) {
    AppendRecord(header);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataPtr(std::int32_t purpose,
                                                                  std::int32_t type,
                                                                  const void *data,
                                                                  std::size_t count) {
    AppendDataPtr(purpose, type, data, count);
    return *this;
}

// The element size of each overload is its type's, known here without a look-up.
#define MIREL_GS_DATA_FORMS(T, TYPE, PER_ITEM)                                                     \
    WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::Data(                                \
        const T *data, std::size_t count, std::int32_t purpose) {                                  \
        if (WillBeWrittenAsDataPtr(static_cast<std::uint64_t>(count) * sizeof(T)))                 \
            AppendDataPtr(purpose, TYPE, data, count *PER_ITEM);                                   \
        else                                                                                       \
            AppendDataHere(purpose, TYPE, data, count *PER_ITEM, sizeof(T) / PER_ITEM);            \
        return *this;                                                                              \
    }                                                                                              \
    WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataHere(                            \
        const T *data, std::size_t count, std::int32_t purpose) {                                  \
        AppendDataHere(purpose, TYPE, data, count *PER_ITEM, sizeof(T) / PER_ITEM);                \
        return *this;                                                                              \
    }                                                                                              \
    WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataPtr(                             \
        const T *data, std::size_t count, std::int32_t purpose) {                                  \
        AppendDataPtr(purpose, TYPE, data, count *PER_ITEM);                                       \
        return *this;                                                                              \
    }

MIREL_GS_DATA_FORMS(signed char, eGSTypeInt8, 1)
MIREL_GS_DATA_FORMS(unsigned char, eGSTypeUInt8, 1)
MIREL_GS_DATA_FORMS(short, eGSTypeInt16, 1)
MIREL_GS_DATA_FORMS(int, eGSTypeInt32, 1)
MIREL_GS_DATA_FORMS(float, eGSTypeFloat, 1)
MIREL_GS_DATA_FORMS(WCPoint2D<short>, eGSTypeInt16, 2)
MIREL_GS_DATA_FORMS(WCPoint2D<float>, eGSTypeFloat, 2)

#undef MIREL_GS_DATA_FORMS

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataStr(const char *text) {
    const std::size_t length = TextLength(text);
    if (WillBeWrittenAsDataPtr(length))
        AppendDataPtr(eGSPurposeText, eGSTypeChar, text, length);
    else
        AppendDataHere(eGSPurposeText, eGSTypeChar, text, length, 1);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataHereStr(const char *text) {
    AppendDataHere(eGSPurposeText, eGSTypeChar, text, TextLength(text), 1);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DataPtrStr(const char *text) {
    AppendDataPtr(eGSPurposeText, eGSTypeChar, text, TextLength(text));
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::SpecialText(std::int32_t purpose,
                                                                      const char *text) {
    AppendDataHere(purpose, eGSTypeChar, text, TextLength(text), 1);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::Remark(const char *text) {
    if (m_RemarksActive)
        SpecialText(eGSPurposeRemark, text);
    return *this;
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::MetaData(const char *text) {
    if (m_MetaDataActive)
        SpecialText(eGSPurposeMetaData, text);
    return *this;
}

// ---- Images ----

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawImageRecordForPath(const char *path,
                                                                                 SGSRect drawRect,
                                                                                 SGSRect clipRect) {
    DataHereStr(path);
    return DrawImageRecord(-100, drawRect, clipRect, ImageFlags());
}

namespace {

SGSRect AtPosition(const WCPoint2D<short> &position) noexcept {
    SGSRect rect;
    rect.location.x = position.x;
    rect.location.y = position.y;
    return rect;
}

} // namespace

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawPNG(const char *path) {
    return DrawImageRecordForPath(path, SGSRect{}, SGSRect{});
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawPNGAtPosition(const char *path, const WCPoint2D<short> &position) {
    return DrawImageRecordForPath(path, AtPosition(position), SGSRect{});
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawPNGAtPositionClipped(short resID, const WCPoint2D<short> &position,
                                                      const WURect<short> &clip, ImageFlags flags) {
    return DrawImageRecord(resID, AtPosition(position), WTRectsToSGSRect(clip), flags);
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawPNGAtPositionClipped(
    const char *path, const WCPoint2D<short> &position, const WURect<short> &clip) {
    return DrawImageRecordForPath(path, AtPosition(position), WTRectsToSGSRect(clip));
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawPNGScaled(short resID,
                                                                        const WURect<short> &rect,
                                                                        ImageFlags flags) {
    return DrawImageRecord(resID, WTRectsToSGSRect(rect), SGSRect{}, flags);
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawPNGScaled(const char *path,
                                                                        const WURect<short> &rect) {
    return DrawImageRecordForPath(path, WTRectsToSGSRect(rect), SGSRect{});
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawPNGScaledAndClipped(short resID, const WURect<short> &rect,
                                                     const WURect<short> &clip, ImageFlags flags) {
    return DrawImageRecord(resID, WTRectsToSGSRect(rect), WTRectsToSGSRect(clip), flags);
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawPNGScaledAndClipped(const char *path, const WURect<short> &rect,
                                                     const WURect<short> &clip) {
    return DrawImageRecordForPath(path, WTRectsToSGSRect(rect), WTRectsToSGSRect(clip));
}

void WCGraphicStreamBinaryWriter::AppendRects(const std::vector<WURect<short>> &rects, short dx,
                                              short dy) {
    const std::uint64_t bytes = rects.size() * sizeof(SGSRect);
    MIREL_ASSERT_RETURN(bytes <= kMaxPayloadBytes, (void)DropRecord());
    SGSData header;
    header.header.command = eGSDataHere;
    header.header.size = static_cast<std::int32_t>(sizeof(SGSData) + bytes);
    header.type = eGSTypeRect;
    header.purpose = eGSPurposeClipRects;
    header.num_elements = static_cast<std::int32_t>(rects.size());
    char *place = Reserve(sizeof(SGSData) + bytes);
    if (place == nullptr)
        return;
    std::memcpy(place, &header, sizeof header);
    place += sizeof header;
    for (WURect<short> rect : rects) {
        rect.Offset(static_cast<short>(-dx), static_cast<short>(-dy));
        const SGSRect converted = WTRectsToSGSRect(rect);
        std::memcpy(place, &converted, sizeof converted);
        place += sizeof converted;
    }
}

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawPNGAtPositionMultipleClips(
    short resID, const WCPoint2D<short> &position, const std::vector<WURect<short>> &clips,
    ImageFlags flags) {
    if (clips.empty())
        return DrawPNGAtPosition(resID, position, flags);
    if (clips.size() == 1)
        return DrawPNGAtPositionClipped(resID, position, clips.front(), flags);
    if (resID == -1)
        return *this;
    AppendRects(clips, 0, 0);
    SGSDrawImageMultipleClips image;
    image.ResID = resID;
    image.x = position.x;
    image.y = position.y;
    image.flags = flags.GetBits();
    AppendRecord(image);
    return *this;
}

// ---- Shapes ----

namespace {

// The end point of an arc line is truncated towards zero; in pixels it then wraps to 16 bits like
// the start point, where a plain conversion of a double beyond a short would be undefined.
template <typename T>
T ArcEndCoordinate(double value) noexcept {
    if constexpr (std::is_integral_v<T>)
        return static_cast<T>(static_cast<std::uint16_t>(static_cast<std::int64_t>(value)));
    else
        return static_cast<T>(value);
}

} // namespace

template <typename T>
WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::Vertices(const WCRGBAColor &color, const WCPoint2D<T> *points,
                                      std::size_t count, std::int32_t method, std::uint32_t flags,
                                      float width, std::uint16_t pattern) {
    // The threshold may turn these points into a pointer at the caller's local array; see the
    // class comment.
    Data(points, count, eGSPurposePoint2D);
    SGSDrawVertices vertices;
    vertices.method = method;
    vertices.stroke_width = width;
    vertices.stroke_pattern = pattern;
    vertices.flags = flags;
    vertices.draw_color = ToSGSColor(color);
    AppendRecord(vertices);
    return *this;
}

template <typename T>
WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawLine(const WCRGBAColor &color, const WCPoint2D<T> &from,
                                      const WCPoint2D<T> &to, float width, bool antialias,
                                      std::uint16_t pattern) {
    const WCPoint2D<T> points[2] = {from, to};
    return Vertices(color, points, 2, eGSLineStrip, antialias ? 0u : eGSNoAntialias, width,
                    pattern);
}

template <typename T>
WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawArcLine(const WCRGBAColor &color, double angleDegrees,
                                         const WURect<T> &rect, float width, bool antialias,
                                         std::uint16_t pattern) {
    const T radius = static_cast<T>((rect.right - rect.left) / 2);
    const double angle = angleDegrees * 3.14159265358979323846 / 180.0;
    const double r = static_cast<double>(radius);
    WCPoint2D<T> points[2];
    points[0] = WCPoint2D<T>(static_cast<T>(rect.left + radius), static_cast<T>(rect.top + radius));
    // An angle that is no number (a broken value) draws the pointer at zero length instead of
    // sending it to an arbitrary point.
    points[1] = points[0];
    if (std::isfinite(angle)) {
        points[1] = WCPoint2D<T>(ArcEndCoordinate<T>(rect.left + r + r * std::sin(angle)),
                                 ArcEndCoordinate<T>(rect.top + r - r * std::cos(angle)));
    }
    return Vertices(color, points, 2, eGSLineStrip, antialias ? 0u : eGSNoAntialias, width,
                    pattern);
}

template <typename T>
WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawSolidRect(const WCRGBAColor &color,
                                                                        const WURect<T> &rect) {
    const WCPoint2D<T> points[4] = {rect.TopLeft(), rect.TopRight(), rect.BottomRight(),
                                    rect.BottomLeft()};
    return Vertices(color, points, 4, eGSPolygon, eGSNoAntialias, 1.0f, 0xFFFF);
}

template <typename T>
WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawWireRect(const WCRGBAColor &color, const WURect<T> &rect,
                                          float width, std::uint16_t pattern,
                                          const std::uint32_t *flags) {
    const WCPoint2D<T> points[5] = {rect.TopLeft(), rect.TopRight(), rect.BottomRight(),
                                    rect.BottomLeft(), rect.TopLeft()};
    return Vertices(color, points, 5, eGSLineStrip, flags != nullptr ? *flags : eGSNoAntialias,
                    width, pattern);
}

template <typename T>
WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawXORRect(const WURect<T> &rect) {
    const WCPoint2D<T> points[4] = {rect.TopLeft(), rect.TopRight(), rect.BottomRight(),
                                    rect.BottomLeft()};
    return Vertices(WCRGBAColor(0xFF, 0xFF, 0xFF, 0xFF), points, 4, eGSPolygon,
                    eGSNoAntialias | eGSDrawInXORMode, 1.0f, 0xFFFF);
}

#define MIREL_GS_SHAPES(T)                                                                         \
    template WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawLine<T>(                \
        const WCRGBAColor &, const WCPoint2D<T> &, const WCPoint2D<T> &, float, bool,              \
        std::uint16_t);                                                                            \
    template WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawArcLine<T>(             \
        const WCRGBAColor &, double, const WURect<T> &, float, bool, std::uint16_t);               \
    template WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawSolidRect<T>(           \
        const WCRGBAColor &, const WURect<T> &);                                                   \
    template WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawWireRect<T>(            \
        const WCRGBAColor &, const WURect<T> &, float, std::uint16_t, const std::uint32_t *);      \
    template WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::DrawXORRect<T>(             \
        const WURect<T> &);

MIREL_GS_SHAPES(short)
MIREL_GS_SHAPES(float)

#undef MIREL_GS_SHAPES

// ---- Clips and text ----

WCGraphicStreamBinaryWriter &WCGraphicStreamBinaryWriter::ClipRect(const WURect<short> &rect) {
    SGSClipRect clip;
    clip.rect = WTRectsToSGSRect(rect);
    AppendRecord(clip);
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::ClipMultipleRects(const std::vector<WURect<short>> &rects,
                                               const WURect<short> &base) {
    if (rects.empty())
        return *this;
    AppendRects(rects, base.left, base.top);
    return CommandHeader(eGSClipMultipleRects);
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::FontGrowing(const char *name, std::size_t length, std::int32_t size,
                                         const WCRGBAColor &color, std::uint32_t flags) noexcept {
    // Growth may move a name that lies in the stream, so it is copied out first.
    SGSFont font;
    if (length != 0)
        std::memcpy(font.name, name, length);
    font.size = size;
    font.color = ToSGSColor(color);
    font.flags = flags;
    AppendRecord(font);
    return *this;
}

WCGraphicStreamBinaryWriter &
WCGraphicStreamBinaryWriter::DrawTheTextGrowing(const char *text, std::size_t length,
                                                std::int64_t owner, std::int32_t hAlign,
                                                std::int32_t vAlign) noexcept {
    AppendDataHere(eGSPurposeText, eGSTypeChar, text, length, 1);
    return DrawTheText(owner, hAlign, vAlign);
}

} // namespace miGS
MIREL_NAMESPACE_END
