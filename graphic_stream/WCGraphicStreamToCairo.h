#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <cairo.h>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// Paints a stream into pixels with cairo: an ARGB32 image surface (premultiplied, native 32-bit
// words) that the painter owns, sized from each stream's first record, or a surface the caller
// gives. Frames translate and clip to their rectangle (a frame of zero size does not clip), a
// rotation turns the rest of its frame, clip records replace the frame's clip, and every drawing
// record is painted: vertex lists in all their methods (dash pattern, width, antialias, XOR,
// colours per vertex), ovals and arcs, images of the stream's resources folder (PNG or WebP,
// decoded once per folder and number and kept while the folder is), and texts in the frame's
// font, "DejaVu Sans" when the stream names none.
//
// Picture life: by default each walk starts from a transparent picture. With SetKeepPicture(true),
// or on a caller's surface, what a walk does not cover stays from the walk before, so a view can
// paint a minimal frame over the last full one; the painter's own surface is replaced only when a
// stream asks for another size.
//
// A stream is outside data: records that cannot be drawn (no vertices, a number that is no number,
// a missing image) are skipped and remembered in GetFirstDrawError; coordinates are held within
// a million pixels; nothing a stream holds crashes the painter or puts the cairo context into its
// error state. DataPtr records are read only after FollowDataPointers(true).
//
// Life cycle: construct, walk any number of streams, read the pixels or write a PNG between
// walks. [main-thread] in the GUI; one painter per thread otherwise.
class WCGraphicStreamToCairo : public WCGraphicStreamEngineBase {
public:
    // A stream's picture is at most this many pixels a side.
    static constexpr std::int32_t kMaxPictureSide = 16384;
    // The font of a stream that names none.
    static constexpr const char *kDefaultFontFace = "DejaVu Sans";

    // Paints into a surface of its own, sized from each stream (times the scaling factor).
    WCGraphicStreamToCairo();
    // Paints onto the caller's surface, which the painter references and never clears: each walk
    // paints over what is there.
    explicit WCGraphicStreamToCairo(cairo_surface_t *target);
    ~WCGraphicStreamToCairo() override;

    // Own surface only: keep the picture from walk to walk while the stream's size stays.
    void SetKeepPicture(bool keep) noexcept { m_KeepPicture = keep; }
    bool KeepsPicture() const noexcept { return m_KeepPicture; }

    // The picture, null before the first stream. Pixels are valid until the next walk.
    cairo_surface_t *GetSurface() const noexcept { return m_Surface; }
    std::int32_t GetWidth() const noexcept;
    std::int32_t GetHeight() const noexcept;
    std::int32_t GetStride() const noexcept;
    const unsigned char *GetData() const noexcept;
    // eGMNoCurrentContext before any picture, eFMWriteFailed when cairo cannot write the file.
    WTErr WriteToPNG(const char *path) const;

    // The first record of the last walk that could not be drawn as it asked (a missing image, too
    // few colours, a cairo fault), eNoErr when all were.
    WTErr GetFirstDrawError() const noexcept { return m_FirstDrawError; }

    int BeginStream(SGSStream &stream) override;
    int EndStream(SGSCommandHeader &header) override;
    int BeginFrame(SGSFrame &frame) override;
    int EndFrame(SGSCommandHeader &header) override;
    int RotateFrame(SGSFrameRotate &rotate) override;
    // Records of the oldest writers' own drawing, which this painter does not know:
    // eNotImplemented.
    int DrawOldStyle(SGSCommandHeader &header) override;
    int DrawImage(SGSDrawImage &image) override;
    int DrawImageMultipleClips(SGSDrawImageMultipleClips &image) override;
    int DrawTheText(SGSDrawText &text) override;
    int DrawOval(SGSDrawOval &oval) override;
    int DrawVertices(SGSDrawVertices &vertices) override;
    int ClipVertices(SGSDrawVertices &vertices) override;
    int ClipRect(SGSClipRect &clip) override;
    int ClipMultipleRects(SGSClipMultipleRects &clip) override;
    std::unique_ptr<WCStResContainerGraphicStream>
    NewResContainerData(const FM::WCStPath &path) override;
    int BeforeExceStream(char *stream) override;
    int AfterExceStream(char *stream) override;

private:
    struct WSPoint {
        double x;
        double y;
    };

    void OpenFrameState(const SGSRect &rect);
    void CloseFrameState();
    void PrepareOwnSurface(const SGSSize &size);
    void DropContext();
    // Starts a clip of the innermost frame anew: back to the frame's own clip, then the caller
    // adds its path and calls ApplyClip.
    void RestartFrameClip();
    void ApplyClip();
    int Failed(WTErr error) noexcept;
    // The vertices of the latest vertex record in frame pixels, in m_Points; false when there
    // are none or a scale is no number.
    bool ReadVertices(const SGSDrawVertices &vertices);
    // The per-vertex colours, in m_Colors as RGBA; false when the record asks for more than the
    // latest colour record holds.
    bool ReadColors(std::size_t count);
    void AddShapePath(std::int32_t method, double offset);
    void AddTrianglePath(const WSPoint &a, const WSPoint &b, const WSPoint &c);
    void SetStrokeStyle(const SGSDrawVertices &vertices, double width);
    void StrokeWithColors(std::int32_t method, double offset);
    void FillTrianglesWithColors(std::int32_t method);
    void SetColor(const SGSRGBAColor &color);
    void SetColor(const std::uint8_t *rgba);
    cairo_surface_t *FindImage(std::int32_t resID, WTErr &outError);
    void PaintImage(cairo_surface_t *image, double x, double y, double width, double height);
    cairo_font_face_t *FindFontFace(const SGSFont &font);

    cairo_surface_t *m_Surface = nullptr;
    cairo_t *m_Context = nullptr;
    bool m_OwnSurface = true;
    bool m_KeepPicture = false;
    WTErr m_FirstDrawError = eNoErr;
    // The frames open in cairo's state stack; those beyond the limit of the engine are not
    // reached.
    std::size_t m_OpenFrames = 0;
    // Frames that lie too far away to paint in, counted from the first such frame.
    std::size_t m_FarFrames = 0;
    // The matrix of the frame while its clip is made anew.
    cairo_matrix_t m_ClipMatrix{};

    // Scratch kept from record to record so that drawing allocates only while they grow.
    std::vector<WSPoint> m_Points;
    std::vector<std::uint8_t> m_Colors;
    std::string m_Text;

    // Images named by path (ResID -100), decoded once; a failed one is remembered as null.
    struct WSDecoded {
        cairo_surface_t *m_Surface;
        WTErr m_Error;
    };
    std::map<std::string, WSDecoded, std::less<>> m_ImagesByPath;
    // Faces by name and style bits; the name is looked up only when it changes.
    std::map<std::string, cairo_font_face_t *, std::less<>> m_FontFaces;
    std::string m_LastFontKey;
    cairo_font_face_t *m_LastFontFace = nullptr;
};

} // namespace miGS
MIREL_NAMESPACE_END
