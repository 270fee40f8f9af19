#include "graphic_stream/WCGSArrays.h"

#include <algorithm>
#include <cmath>

#include "graphic_stream/GSConversions.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

template <typename T>
void WCGSArrays::TArray<T>::Add(const T *items, std::size_t count, bool takeOver) {
    if (takeOver && Count() == 0) {
        m_External = items;
        m_ExternalCount = count;
        return;
    }
    if (m_External != nullptr) {
        m_Owned.assign(m_External, m_External + m_ExternalCount);
        m_External = nullptr;
        m_ExternalCount = 0;
    }
    m_Owned.insert(m_Owned.end(), items, items + count);
}

WCGSArrays::WCGSArrays() = default;

void WCGSArrays::ClearArrays() {
    m_Points2Ds.Clear();
    m_Points3Ds.Clear();
    m_Points2Df.Clear();
    m_Points3Df.Clear();
    m_Colors3.Clear();
    m_Colors4.Clear();
    m_VerticesType = eNoVerticesType;
    m_ColorBytes = 0;
    m_Dimensions = 0;
}

void WCGSArrays::Start() {
    ClearArrays();
    m_RangeFirst = m_SegmentFirst = 0;
    m_RangeLast = m_SegmentLast = SIZE_MAX;
}

bool WCGSArrays::CheckVerticesAndDimensionsConsistancy(int type, int dimensions) const noexcept {
    if (m_VerticesType == eNoVerticesType && m_Dimensions == 0)
        return true;
    return m_VerticesType == type && m_Dimensions == dimensions;
}

bool WCGSArrays::Fix(int type, int dimensions) noexcept {
    if (!CheckVerticesAndDimensionsConsistancy(type, dimensions))
        return false;
    m_VerticesType = type;
    m_Dimensions = dimensions;
    return true;
}

bool WCGSArrays::FixColors(int bytes) noexcept {
    if (m_ColorBytes != 0 && m_ColorBytes != bytes)
        return false;
    m_ColorBytes = bytes;
    return true;
}

bool WCGSArrays::AddPoint_2Ds(short x, short y) {
    const WCPoint2D<short> point(x, y);
    return AddPoints_2Ds(&point, 1);
}

bool WCGSArrays::AddPoint_2Df(float x, float y) {
    const WCPoint2D<float> point(x, y);
    return AddPoints_2Df(&point, 1);
}

bool WCGSArrays::AddPoint_3Ds(short x, short y, short z) {
    const WCPoint3D<short> point(x, y, z);
    return AddPoints_3Ds(&point, 1);
}

bool WCGSArrays::AddPoint_3Df(float x, float y, float z) {
    const WCPoint3D<float> point(x, y, z);
    return AddPoints_3Df(&point, 1);
}

bool WCGSArrays::AddPoints_2Ds(const WCPoint2D<short> *points, std::size_t count, bool takeOver) {
    if (points == nullptr || !Fix(eShortVerticesType, 2))
        return false;
    m_Points2Ds.Add(points, count, takeOver);
    return true;
}

bool WCGSArrays::AddPoints_2Df(const WCPoint2D<float> *points, std::size_t count, bool takeOver) {
    if (points == nullptr || !Fix(eFloatVerticesType, 2))
        return false;
    m_Points2Df.Add(points, count, takeOver);
    return true;
}

bool WCGSArrays::AddPoints_3Ds(const WCPoint3D<short> *points, std::size_t count, bool takeOver) {
    if (points == nullptr || !Fix(eShortVerticesType, 3))
        return false;
    m_Points3Ds.Add(points, count, takeOver);
    return true;
}

bool WCGSArrays::AddPoints_3Df(const WCPoint3D<float> *points, std::size_t count, bool takeOver) {
    if (points == nullptr || !Fix(eFloatVerticesType, 3))
        return false;
    m_Points3Df.Add(points, count, takeOver);
    return true;
}

bool WCGSArrays::AddPoints_2Ds(const WCPoint2D<short> &first, const WCPoint2D<short> &second) {
    const WCPoint2D<short> points[2] = {first, second};
    return AddPoints_2Ds(points, 2);
}

bool WCGSArrays::AddPoints_2Df(const WCPoint2D<float> &first, const WCPoint2D<float> &second) {
    const WCPoint2D<float> points[2] = {first, second};
    return AddPoints_2Df(points, 2);
}

bool WCGSArrays::AddPoints_2Ds(const std::vector<WCPoint2D<short>> &points, bool takeOver) {
    return AddPoints_2Ds(points.data(), points.size(), takeOver);
}

bool WCGSArrays::AddPoints_2Df(const std::vector<WCPoint2D<float>> &points, bool takeOver) {
    return AddPoints_2Df(points.data(), points.size(), takeOver);
}

bool WCGSArrays::AddColor_3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    const WCRGBColor color(red, green, blue);
    return AddColors_3ub(&color, 1);
}

bool WCGSArrays::AddColor_4ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                              std::uint8_t alpha) {
    const WCRGBAColor color(red, green, blue, alpha);
    return AddColors_4ub(&color, 1);
}

bool WCGSArrays::AddColors_3ub(const WCRGBColor *colors, std::size_t count, bool takeOver) {
    if (colors == nullptr || !FixColors(3))
        return false;
    m_Colors3.Add(colors, count, takeOver);
    return true;
}

bool WCGSArrays::AddColors_4ub(const WCRGBAColor *colors, std::size_t count, bool takeOver) {
    if (colors == nullptr || !FixColors(4))
        return false;
    m_Colors4.Add(colors, count, takeOver);
    return true;
}

void WCGSArrays::SetRange(std::size_t first, std::size_t last) noexcept {
    m_RangeFirst = first;
    m_RangeLast = last;
}

void WCGSArrays::SetSegment(std::size_t first, std::size_t last) noexcept {
    m_SegmentFirst = first;
    m_SegmentLast = last;
}

const char *WCGSArrays::VerticesTypeToText(int type) noexcept {
    switch (type) {
    case eNoVerticesType: return "No vertices type set";
    case eShortVerticesType: return "eShortVerticesType";
    case eFloatVerticesType: return "eFloatVerticesType";
    default: return "Unknown vertices type";
    }
}

std::size_t WCGSArrays::GetNumVerticesTotal() const noexcept {
    if (m_VerticesType == eShortVerticesType)
        return m_Dimensions == 2 ? m_Points2Ds.Count() : m_Points3Ds.Count();
    if (m_VerticesType == eFloatVerticesType)
        return m_Dimensions == 2 ? m_Points2Df.Count() : m_Points3Df.Count();
    return 0;
}

std::size_t WCGSArrays::WindowFirst() const noexcept {
    return std::max(m_RangeFirst, m_SegmentFirst);
}

std::size_t WCGSArrays::WindowEnd() const noexcept {
    return std::min({m_RangeLast, m_SegmentLast, GetNumVerticesTotal()});
}

std::size_t WCGSArrays::GetNumVertices() const noexcept {
    const std::size_t first = WindowFirst();
    const std::size_t end = WindowEnd();
    return end > first ? end - first : 0;
}

std::size_t WCGSArrays::GetNumColors() const noexcept {
    return m_ColorBytes == 3 ? m_Colors3.Count() : (m_ColorBytes == 4 ? m_Colors4.Count() : 0);
}

std::size_t WCGSArrays::GetSingleVerticeSizeInBytes() const noexcept {
    if (m_VerticesType == eShortVerticesType)
        return m_Dimensions * sizeof(short);
    if (m_VerticesType == eFloatVerticesType)
        return m_Dimensions * sizeof(float);
    return 0;
}

std::size_t WCGSArrays::GetSingleColorSizeInBytes() const noexcept {
    return static_cast<std::size_t>(m_ColorBytes);
}

const unsigned char *WCGSArrays::VertexBytes() const noexcept {
    const void *data = nullptr;
    if (m_VerticesType == eShortVerticesType)
        data = m_Dimensions == 2 ? static_cast<const void *>(m_Points2Ds.Data())
                                 : static_cast<const void *>(m_Points3Ds.Data());
    else if (m_VerticesType == eFloatVerticesType)
        data = m_Dimensions == 2 ? static_cast<const void *>(m_Points2Df.Data())
                                 : static_cast<const void *>(m_Points3Df.Data());
    return static_cast<const unsigned char *>(data);
}

const unsigned char *WCGSArrays::ColorBytes() const noexcept {
    const void *data = nullptr;
    if (m_ColorBytes == 3)
        data = m_Colors3.Data();
    else if (m_ColorBytes == 4)
        data = m_Colors4.Data();
    return static_cast<const unsigned char *>(data);
}

const void *WCGSArrays::GetVerticesPtr() const noexcept {
    const unsigned char *bytes = VertexBytes();
    if (bytes == nullptr || GetNumVertices() == 0)
        return nullptr;
    return bytes + WindowFirst() * GetSingleVerticeSizeInBytes();
}

const void *WCGSArrays::GetColorPtr() const noexcept {
    const unsigned char *bytes = ColorBytes();
    if (bytes == nullptr || GetNumColors() <= WindowFirst())
        return nullptr;
    return bytes + WindowFirst() * GetSingleColorSizeInBytes();
}

std::size_t WCGSArrays::GetVerticesSizeInBytes() const noexcept {
    return GetNumVertices() * GetSingleVerticeSizeInBytes();
}

std::size_t WCGSArrays::GetColorsSizeInBytes() const noexcept {
    return GetNumColors() * GetSingleColorSizeInBytes();
}

int WCGSArrays::GiveVerticesToGS(WCGraphicStreamBinaryWriter &writer, std::size_t first,
                                 std::size_t count) {
    std::int32_t type = 0;
    if (m_VerticesType == eShortVerticesType)
        type = eGSTypeInt16;
    else if (m_VerticesType == eFloatVerticesType)
        type = eGSTypeFloat;
    else
        return eGMNoVertices;
    if (m_Dimensions != 2 && m_Dimensions != 3)
        return eGMNoVertices;
    if (first > GetNumVerticesTotal() || count > GetNumVerticesTotal() - first)
        return eGMNoVertices;
    const std::int32_t purpose = m_Dimensions == 2 ? eGSPurposePoint2D : eGSPurposePoint3D;
    const unsigned char *data = VertexBytes() + first * GetSingleVerticeSizeInBytes();
    const std::size_t elements = count * static_cast<std::size_t>(m_Dimensions);
    if (writer.WillBeWrittenAsDataPtr(count * GetSingleVerticeSizeInBytes()))
        writer.DataPtr(purpose, type, data, elements);
    else
        writer.DataHere(purpose, type, data, elements);
    return eNoErr;
}

int WCGSArrays::GiveColorsToGS(WCGraphicStreamBinaryWriter &writer, std::size_t first,
                               std::size_t count) {
    if (first > GetNumColors() || count > GetNumColors() - first)
        return eGMNoColors;
    const std::int32_t purpose = m_ColorBytes == 3 ? eGSPurposeRGBColor : eGSPurposeRGBAColor;
    writer.Data(ColorBytes() + first * GetSingleColorSizeInBytes(),
                count * GetSingleColorSizeInBytes(), purpose);
    return eNoErr;
}

int WCGSArrays::GetDrawInstructionsArrays(WCGraphicStreamBinaryWriter &writer, std::int32_t command,
                                          std::int32_t method, const SGSScale &scale,
                                          const SGSSize &logicalSize) {
    const std::size_t total = GetNumVertices();
    if (total == 0)
        return eNoErr;
    const bool withColors = GetNumColors() > 0;
    // Refused before the first record, so a fault leaves no vertices without their draw record.
    if (withColors && GetNumColors() < WindowEnd())
        return eGMNoColors;

    SGSDrawVertices vertices;
    vertices.header.command = command;
    vertices.method = method;
    vertices.stroke_width = m_StrokeWidth;
    vertices.stroke_pattern = m_StrokePattern;
    vertices.flags = (m_Antialias ? 0u : eGSNoAntialias) | (m_XORMode ? eGSDrawInXORMode : 0u) |
                     (withColors ? eGSColorsInData : 0u);
    vertices.draw_color = WCRGBAColorToSGSRGBAColor(m_DrawColor);
    vertices.logical_size = logicalSize;
    vertices.scale = scale;

    std::size_t first = WindowFirst();
    const std::size_t end = first + total;
    while (true) {
        const std::size_t count = std::min(kMaxVerticesPerChunk, end - first);
        if (const int err = GiveVerticesToGS(writer, first, count); err != eNoErr)
            return err;
        if (withColors) {
            if (const int err = GiveColorsToGS(writer, first, count); err != eNoErr)
                return err;
        }
        writer.DrawVertices(vertices);
        if (first + count >= end)
            break;
        // The next chunk repeats the last vertex so the pieces join.
        first += count - 1;
    }
    return eNoErr;
}

int WCGSArrays::GetDrawInstructionsLineStrip(WCGraphicStreamBinaryWriter &writer,
                                             const SGSScale &scale, const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSLineStrip, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsPolygon(WCGraphicStreamBinaryWriter &writer,
                                           const SGSScale &scale, const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSPolygon, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsStraightLines(WCGraphicStreamBinaryWriter &writer,
                                                 const SGSScale &scale,
                                                 const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSStraightLines, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsTriangleFan(WCGraphicStreamBinaryWriter &writer,
                                               const SGSScale &scale, const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSTriangleFan, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsTriangleStrip(WCGraphicStreamBinaryWriter &writer,
                                                 const SGSScale &scale,
                                                 const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSTriangleStrip, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsPoints(WCGraphicStreamBinaryWriter &writer,
                                          const SGSScale &scale, const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSPoints, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsPointSquares(WCGraphicStreamBinaryWriter &writer,
                                                const SGSScale &scale, const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSPointSquares, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsForClipLine(WCGraphicStreamBinaryWriter &writer,
                                               std::int32_t method, const SGSScale &scale,
                                               const SGSSize &logicalSize) {
    return GetDrawInstructionsArrays(writer, eGSClipVertices, method, scale, logicalSize);
}

int WCGSArrays::GetDrawInstructionsOval(WCGraphicStreamBinaryWriter &writer,
                                        const WURect<short> &rect, std::uint32_t slices,
                                        float startDegrees, float sweepDegrees) {
    if (slices == 0)
        return eGMNoVertices;
    ClearArrays();
    const float halfWidth = static_cast<float>(rect.Width()) / 2.0f;
    const float halfHeight = static_cast<float>(rect.Height()) / 2.0f;
    // The constants are the single-precision values of 2 pi and pi / 2 the format was made with.
    const double step = sweepDegrees * 6.2831855 / 360.0 / slices;
    const double start = startDegrees * 6.2831855 / 360.0 - 1.5707964;
    AddPoint_2Df(0.0f, 0.0f);
    for (std::uint32_t i = 0; i <= slices; ++i) {
        const double angle = start + step * i;
        AddPoint_2Df(static_cast<float>(std::cos(angle) * halfWidth),
                     static_cast<float>(std::sin(angle) * halfHeight));
    }
    const WCPoint2D<short> centre = rect.Center();
    SGSFrame frame;
    frame.rect.location.x = centre.x;
    frame.rect.location.y = centre.y;
    WCStGSFrameStructWriter guard(writer, frame);
    return GetDrawInstructionsArrays(writer, eGSDrawVertices, eGSTriangleFan, SGSScale(),
                                     SGSSize());
}

} // namespace miGS
MIREL_NAMESPACE_END
