#pragma once

#include <cstdint>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCPoint2D.h"
#include "core/WCPoint3D.h"
#include "core/WCRGBAColor.h"
#include "core/WTErrors.h"
#include "core/WURect.h"
#include "graphic_stream/GraphicStreamDefs.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// A producer's collection of vertices (and optionally one colour per vertex) that it turns into
// draw or clip records. The first vertex added fixes the element type (short or float) and the
// dimension (2 or 3); later additions of another kind are refused. Each array either owns its
// vertices or refers to the caller's without copying them, and then the caller keeps them alive
// until the stream has been walked.
//
// A record holds at most 32767 vertices, so long arrays are written in chunks; each chunk starts
// one vertex before the previous one ended, so a line strip stays joined.
// [main-thread] like the writer it feeds.
class WCGSArrays {
public:
    enum EVerticesType : int {
        eNoVerticesType = 0,
        eShortVerticesType = 1,
        eFloatVerticesType = 2
    };

    static constexpr std::size_t kMaxVerticesPerChunk = 32767;

    WCGSArrays();

    // Empties the arrays and the range; drawing attributes stay.
    void Start();
    void ClearArrays();

    bool AddPoint_2Ds(short x, short y);
    bool AddPoint_2Df(float x, float y);
    bool AddPoint_3Ds(short x, short y, short z);
    bool AddPoint_3Df(float x, float y, float z);
    // `takeOver` refers to the caller's points instead of copying them; it is only possible
    // while the array is empty, otherwise the points are copied.
    bool AddPoints_2Ds(const WCPoint2D<short> *points, std::size_t count, bool takeOver = false);
    bool AddPoints_2Df(const WCPoint2D<float> *points, std::size_t count, bool takeOver = false);
    bool AddPoints_3Ds(const WCPoint3D<short> *points, std::size_t count, bool takeOver = false);
    bool AddPoints_3Df(const WCPoint3D<float> *points, std::size_t count, bool takeOver = false);
    bool AddPoints_2Ds(const WCPoint2D<short> &first, const WCPoint2D<short> &second);
    bool AddPoints_2Df(const WCPoint2D<float> &first, const WCPoint2D<float> &second);
    bool AddPoints_2Ds(const std::vector<WCPoint2D<short>> &points, bool takeOver = false);
    bool AddPoints_2Df(const std::vector<WCPoint2D<float>> &points, bool takeOver = false);

    bool AddColor_3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    bool AddColor_4ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha);
    bool AddColors_3ub(const WCRGBColor *colors, std::size_t count, bool takeOver = false);
    bool AddColors_4ub(const WCRGBAColor *colors, std::size_t count, bool takeOver = false);

    // Both unset, or equal to what the arrays hold.
    bool CheckVerticesAndDimensionsConsistancy(int type, int dimensions) const noexcept;

    // Restrict the vertices written to [first, last); `last` beyond the end means the end. The
    // segment narrows the range further.
    void SetRange(std::size_t first, std::size_t last) noexcept;
    void SetSegment(std::size_t first, std::size_t last) noexcept;

    void SetDrawColor(const WCRGBAColor &color) noexcept { m_DrawColor = color; }
    void SetStrokeWidth(float width) noexcept { m_StrokeWidth = width; }
    void SetStrokePattern(std::uint16_t pattern) noexcept { m_StrokePattern = pattern; }
    void SetAntialias(bool antialias) noexcept { m_Antialias = antialias; }
    void SetXORMode(bool xorMode) noexcept { m_XORMode = xorMode; }

    int GetVerticesType() const noexcept { return m_VerticesType; }
    int GetDimensions() const noexcept { return m_Dimensions; }
    static const char *VerticesTypeToText(int type) noexcept;

    std::size_t GetNumVerticesTotal() const noexcept;
    // Within the range and segment.
    std::size_t GetNumVertices() const noexcept;
    std::size_t GetNumColors() const noexcept;
    // The first vertex (colour) of the range and segment, or null.
    const void *GetVerticesPtr() const noexcept;
    const void *GetColorPtr() const noexcept;
    std::size_t GetVerticesSizeInBytes() const noexcept;
    std::size_t GetColorsSizeInBytes() const noexcept;
    // 4, 6, 8 or 12; 0 while no type is set.
    std::size_t GetSingleVerticeSizeInBytes() const noexcept;
    // 3 or 4; 0 without colours.
    std::size_t GetSingleColorSizeInBytes() const noexcept;

    // Writes the vertices of the range, chunked, each chunk a data record of vertices, one of
    // colours when there are colours, and a vertices record of `command` and `method`. 0 with
    // nothing to write; eGMNoVertices or eGMNoColors when the arrays cannot be written.
    int GetDrawInstructionsArrays(WCGraphicStreamBinaryWriter &writer, std::int32_t command,
                                  std::int32_t method, const SGSScale &scale = SGSScale(),
                                  const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsLineStrip(WCGraphicStreamBinaryWriter &writer,
                                     const SGSScale &scale = SGSScale(),
                                     const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsPolygon(WCGraphicStreamBinaryWriter &writer,
                                   const SGSScale &scale = SGSScale(),
                                   const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsStraightLines(WCGraphicStreamBinaryWriter &writer,
                                         const SGSScale &scale = SGSScale(),
                                         const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsTriangleFan(WCGraphicStreamBinaryWriter &writer,
                                       const SGSScale &scale = SGSScale(),
                                       const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsTriangleStrip(WCGraphicStreamBinaryWriter &writer,
                                         const SGSScale &scale = SGSScale(),
                                         const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsPoints(WCGraphicStreamBinaryWriter &writer,
                                  const SGSScale &scale = SGSScale(),
                                  const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsPointSquares(WCGraphicStreamBinaryWriter &writer,
                                        const SGSScale &scale = SGSScale(),
                                        const SGSSize &logicalSize = SGSSize());
    int GetDrawInstructionsForClipLine(WCGraphicStreamBinaryWriter &writer, std::int32_t method,
                                       const SGSScale &scale = SGSScale(),
                                       const SGSSize &logicalSize = SGSSize());
    // An outline of `slices` pieces as a triangle fan around the rectangle's centre, in a frame of
    // its own; angles in degrees, 0 up.
    int GetDrawInstructionsOval(WCGraphicStreamBinaryWriter &writer, const WURect<short> &rect,
                                std::uint32_t slices, float startDegrees, float sweepDegrees);

    // One data record of `count` vertices from `first`; eGMNoVertices for an unknown type.
    int GiveVerticesToGS(WCGraphicStreamBinaryWriter &writer, std::size_t first, std::size_t count);
    // One data record of the colours of those vertices; eGMNoColors when too few are there.
    int GiveColorsToGS(WCGraphicStreamBinaryWriter &writer, std::size_t first, std::size_t count);

private:
    // Owned or referred-to elements of one kind.
    template <typename T>
    struct TArray {
        std::vector<T> m_Owned;
        const T *m_External = nullptr;
        std::size_t m_ExternalCount = 0;

        std::size_t Count() const noexcept {
            return m_External != nullptr ? m_ExternalCount : m_Owned.size();
        }
        const T *Data() const noexcept {
            return m_External != nullptr ? m_External : m_Owned.data();
        }
        void Clear() noexcept {
            m_Owned.clear();
            m_External = nullptr;
            m_ExternalCount = 0;
        }
        void Add(const T *items, std::size_t count, bool takeOver);
    };

    bool Fix(int type, int dimensions) noexcept;
    bool FixColors(int bytes) noexcept;
    std::size_t WindowFirst() const noexcept;
    std::size_t WindowEnd() const noexcept;
    const unsigned char *VertexBytes() const noexcept;
    const unsigned char *ColorBytes() const noexcept;

    TArray<WCPoint2D<short>> m_Points2Ds;
    TArray<WCPoint3D<short>> m_Points3Ds;
    TArray<WCPoint2D<float>> m_Points2Df;
    TArray<WCPoint3D<float>> m_Points3Df;
    TArray<WCRGBColor> m_Colors3;
    TArray<WCRGBAColor> m_Colors4;
    int m_VerticesType = eNoVerticesType;
    int m_ColorBytes = 0;
    int m_Dimensions = 0;
    std::size_t m_RangeFirst = 0;
    std::size_t m_RangeLast = SIZE_MAX;
    std::size_t m_SegmentFirst = 0;
    std::size_t m_SegmentLast = SIZE_MAX;
    WCRGBAColor m_DrawColor;
    float m_StrokeWidth = 1.0f;
    std::uint16_t m_StrokePattern = 0xFFFF;
    bool m_Antialias = true;
    bool m_XORMode = false;
};

} // namespace miGS
MIREL_NAMESPACE_END
