#include "graphic_stream/WCGraphicStreamToCairo.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "core/WUAssert.h"
#include "graphic_stream/GSCairoImageDecoder.h"
#include "graphic_stream/GSConversions.h"
#include "graphic_stream/GraphicStreamVocabulary.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

// cairo keeps coordinates in 24.8 fixed point; a stream's numbers are held well inside that, so
// a lying record draws off the picture instead of wrapping around onto it.
constexpr double kFarCoordinate = 1 << 20;
// Files named by an image record are read only up to this size.
constexpr std::uintmax_t kMaxImageFileBytes = std::uintmax_t(64) << 20;
// Longer texts are cut: no label of a GUI comes near, and shaping is paid per character.
constexpr std::size_t kMaxTextBytes = 1024;
constexpr double kMaxStrokeWidth = 1024;

double Coordinate(double value) noexcept {
    if (std::isnan(value))
        return 0;
    return std::clamp(value, -kFarCoordinate, kFarCoordinate);
}

double StrokeWidth(float width) noexcept {
    if (!std::isfinite(width))
        return 1;
    return std::clamp(static_cast<double>(width), 0.0, kMaxStrokeWidth);
}

// Lines of odd width on whole coordinates would straddle two pixel rows; half a pixel puts them
// on one, as pixel-exact drawing of a GUI expects. Even widths already fall on pixel edges.
double PixelOffset(double width) noexcept {
    return static_cast<long>(std::lround(width)) % 2 == 1 ? 0.5 : 0.0;
}

// Text from a stream may hold anything; cairo takes only valid UTF-8 and puts its context into
// an error state otherwise.
void CleanText(std::string_view text, std::string &out) {
    CleanStreamText(text, out, kMaxTextBytes);
}

// The resources of one folder with the surfaces decoded from them: they live and go together,
// so an image is decoded once for as long as streams name its folder.
class WCStResContainerCairo : public WCStResContainerGraphicStream {
public:
    using WCStResContainerGraphicStream::WCStResContainerGraphicStream;
    ~WCStResContainerCairo() override {
        for (auto &entry : m_Surfaces)
            cairo_surface_destroy(entry.second.m_Surface);
    }

    cairo_surface_t *GetSurface(std::int32_t resID, WTErr &outError) {
        if (const auto found = m_Surfaces.find(resID); found != m_Surfaces.end()) {
            outError = found->second.m_Error;
            return found->second.m_Surface;
        }
        WTResourceType *resource = nullptr;
        outError = GetImage(resID, resource);
        cairo_surface_t *surface = nullptr;
        if (outError == eNoErr && resource != nullptr)
            surface = GSCairoImageDecoder::Decode(resource->m_Data.m_pData,
                                                  resource->m_Data.m_DataSize, outError);
        else if (outError == eNoErr)
            outError = eRMResNotFound;
        m_Surfaces.emplace(resID, WSEntry{surface, outError});
        return surface;
    }

private:
    struct WSEntry {
        cairo_surface_t *m_Surface;
        WTErr m_Error;
    };
    std::map<std::int32_t, WSEntry> m_Surfaces;
};

cairo_surface_t *DecodeFile(const std::string &path, WTErr &outError) {
    std::error_code error;
    // Only plain files: a path from a stream may name a device or a pipe that never ends.
    if (!std::filesystem::is_regular_file(path, error)) {
        outError = eFMFileNotFound;
        return nullptr;
    }
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > kMaxImageFileBytes) {
        outError = eFMFileSizeTooBig;
        return nullptr;
    }
    std::vector<char> bytes(static_cast<std::size_t>(size));
    std::ifstream in(path, std::ios::binary);
    if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        outError = eFMFileNotOpened;
        return nullptr;
    }
    return GSCairoImageDecoder::Decode(bytes.data(), bytes.size(), outError);
}

} // namespace

WCGraphicStreamToCairo::WCGraphicStreamToCairo() = default;

WCGraphicStreamToCairo::WCGraphicStreamToCairo(cairo_surface_t *target)
    : m_Surface(target != nullptr ? cairo_surface_reference(target) : nullptr), m_OwnSurface(false),
      m_KeepPicture(true) {}

WCGraphicStreamToCairo::~WCGraphicStreamToCairo() {
    DropContext();
    for (auto &entry : m_ImagesByPath)
        cairo_surface_destroy(entry.second.m_Surface);
    for (auto &entry : m_FontFaces)
        cairo_font_face_destroy(entry.second);
    if (m_Surface != nullptr)
        cairo_surface_destroy(m_Surface);
}

std::int32_t WCGraphicStreamToCairo::GetWidth() const noexcept {
    return m_Surface != nullptr ? cairo_image_surface_get_width(m_Surface) : 0;
}

std::int32_t WCGraphicStreamToCairo::GetHeight() const noexcept {
    return m_Surface != nullptr ? cairo_image_surface_get_height(m_Surface) : 0;
}

std::int32_t WCGraphicStreamToCairo::GetStride() const noexcept {
    return m_Surface != nullptr ? cairo_image_surface_get_stride(m_Surface) : 0;
}

const unsigned char *WCGraphicStreamToCairo::GetData() const noexcept {
    if (m_Surface == nullptr)
        return nullptr;
    cairo_surface_flush(m_Surface);
    return cairo_image_surface_get_data(m_Surface);
}

WTErr WCGraphicStreamToCairo::WriteToPNG(const char *path) const {
    MIREL_ASSERT_RETURN(path != nullptr, eMemNullPointer);
    if (m_Surface == nullptr)
        return eGMNoCurrentContext;
    cairo_surface_flush(m_Surface);
    return cairo_surface_write_to_png(m_Surface, path) == CAIRO_STATUS_SUCCESS ? eNoErr
                                                                               : eFMWriteFailed;
}

int WCGraphicStreamToCairo::Failed(WTErr error) noexcept {
    if (m_FirstDrawError == eNoErr)
        m_FirstDrawError = error;
    return error;
}

void WCGraphicStreamToCairo::DropContext() {
    if (m_Context != nullptr)
        cairo_destroy(m_Context);
    m_Context = nullptr;
    m_OpenFrames = 0;
    m_FarFrames = 0;
}

int WCGraphicStreamToCairo::BeforeExceStream(char *) {
    // A walk that stopped at a fault left its states open; each walk starts from a fresh context.
    DropContext();
    m_FirstDrawError = eNoErr;
    // Records outside any stream paint onto the picture that is there.
    if (m_Surface != nullptr)
        m_Context = cairo_create(m_Surface);
    return 0;
}

int WCGraphicStreamToCairo::AfterExceStream(char *) {
    if (m_Context != nullptr && cairo_status(m_Context) != CAIRO_STATUS_SUCCESS)
        Failed(eGMGenericErr);
    DropContext();
    if (m_Surface != nullptr)
        cairo_surface_flush(m_Surface);
    return 0;
}

void WCGraphicStreamToCairo::PrepareOwnSurface(const SGSSize &size) {
    const double factor = GetScalingFactor();
    const double scale = std::isfinite(factor) && factor > 0 ? factor : 1.0;
    const double width = std::ceil(size.width * scale);
    const double height = std::ceil(size.height * scale);
    if (!(width >= 1 && height >= 1 && width <= kMaxPictureSide && height <= kMaxPictureSide &&
          width * height <= double(GSCairoImageDecoder::kMaxImagePixels)))
        throw static_cast<int>(eOutOfRangeNumber);
    const int w = static_cast<int>(width);
    const int h = static_cast<int>(height);
    if (m_Surface != nullptr && GetWidth() == w && GetHeight() == h && m_KeepPicture)
        return;
    DropContext();
    if (m_Surface != nullptr && (GetWidth() != w || GetHeight() != h)) {
        cairo_surface_destroy(m_Surface);
        m_Surface = nullptr;
    }
    if (m_Surface == nullptr) {
        m_Surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
        if (cairo_surface_status(m_Surface) != CAIRO_STATUS_SUCCESS) {
            cairo_surface_destroy(m_Surface);
            m_Surface = nullptr;
            throw static_cast<int>(eMemNewFailed);
        }
    } else {
        // Same size, picture not kept: the new stream starts from transparency.
        cairo_surface_flush(m_Surface);
        std::memset(cairo_image_surface_get_data(m_Surface), 0,
                    static_cast<std::size_t>(GetStride()) * h);
        cairo_surface_mark_dirty(m_Surface);
    }
}

void WCGraphicStreamToCairo::OpenFrameState(const SGSRect &rect) {
    const WSFrameState *state = GetTopFrameState();
    const bool far =
        m_FarFrames > 0 || (state != nullptr && (std::abs(state->m_AbsoluteX) > kFarCoordinate ||
                                                 std::abs(state->m_AbsoluteY) > kFarCoordinate));
    if (far || m_Context == nullptr) {
        ++m_FarFrames;
        return;
    }
    cairo_save(m_Context);
    cairo_translate(m_Context, rect.location.x, rect.location.y);
    // A frame without a size (the centre of an oval) places what it holds and clips nothing.
    if (rect.size.width > 0 && rect.size.height > 0) {
        cairo_rectangle(m_Context, 0, 0, rect.size.width, rect.size.height);
        cairo_clip(m_Context);
    }
    cairo_save(m_Context);
    ++m_OpenFrames;
}

void WCGraphicStreamToCairo::CloseFrameState() {
    if (m_FarFrames > 0) {
        --m_FarFrames;
        return;
    }
    if (m_OpenFrames == 0 || m_Context == nullptr)
        return;
    cairo_restore(m_Context);
    cairo_restore(m_Context);
    --m_OpenFrames;
}

int WCGraphicStreamToCairo::BeginStream(SGSStream &stream) {
    if (GetFrameStack().size() == 1) {
        if (m_OwnSurface) {
            PrepareOwnSurface(stream.frame.rect.size);
        } else if (m_Surface == nullptr) {
            return Failed(eGMNoCurrentContext);
        }
        if (m_Context == nullptr)
            m_Context = cairo_create(m_Surface);
        const double factor = GetScalingFactor();
        if (std::isfinite(factor) && factor > 0 && factor != 1.0)
            cairo_scale(m_Context, factor, factor);
    }
    OpenFrameState(stream.frame.rect);
    return 0;
}

int WCGraphicStreamToCairo::EndStream(SGSCommandHeader &) {
    CloseFrameState();
    return 0;
}

int WCGraphicStreamToCairo::BeginFrame(SGSFrame &frame) {
    OpenFrameState(frame.rect);
    return 0;
}

int WCGraphicStreamToCairo::EndFrame(SGSCommandHeader &) {
    CloseFrameState();
    return 0;
}

int WCGraphicStreamToCairo::RotateFrame(SGSFrameRotate &rotate) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    // Whole degrees, clockwise on the screen, around a point of the frame.
    const double x = Coordinate(rotate.xOffset);
    const double y = Coordinate(rotate.yOffset);
    cairo_translate(m_Context, x, y);
    cairo_rotate(m_Context, (rotate.angleDegrees % 360) * std::numbers::pi / 180.0);
    cairo_translate(m_Context, -x, -y);
    return 0;
}

int WCGraphicStreamToCairo::DrawOldStyle(SGSCommandHeader &) {
    return Failed(eNotImplemented);
}

// ---- Clips ----

void WCGraphicStreamToCairo::RestartFrameClip() {
    cairo_matrix_t matrix;
    cairo_get_matrix(m_Context, &matrix);
    if (m_OpenFrames > 0) {
        // Back to the state saved right after the frame's own clip, and saved again for the next.
        cairo_restore(m_Context);
        cairo_save(m_Context);
    } else {
        cairo_reset_clip(m_Context);
    }
    cairo_new_path(m_Context);
    // The rotation of the frame stays, and is put back once the clip is set.
    m_ClipMatrix = matrix;
}

void WCGraphicStreamToCairo::ApplyClip() {
    cairo_clip(m_Context);
    cairo_set_matrix(m_Context, &m_ClipMatrix);
}

int WCGraphicStreamToCairo::ClipRect(SGSClipRect &clip) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    RestartFrameClip();
    const SGSRect &r = clip.rect;
    cairo_rectangle(m_Context, Coordinate(r.location.x), Coordinate(r.location.y),
                    Coordinate(r.size.width), Coordinate(r.size.height));
    ApplyClip();
    return 0;
}

int WCGraphicStreamToCairo::ClipMultipleRects(SGSClipMultipleRects &) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    const WSFrameState *state = GetTopFrameState();
    RestartFrameClip();
    // No rectangles at all: the frame's own clip only, as the engine's frame state says.
    if (state == nullptr || state->m_ClipRects.empty()) {
        ApplyClip();
        return 0;
    }
    for (const SGSRect &r : state->m_ClipRects) {
        if (r.size.width > 0 && r.size.height > 0)
            cairo_rectangle(m_Context, Coordinate(r.location.x), Coordinate(r.location.y),
                            Coordinate(r.size.width), Coordinate(r.size.height));
    }
    // All rectangles wind the same way, so the clip is their union.
    ApplyClip();
    return 0;
}

int WCGraphicStreamToCairo::ClipVertices(SGSDrawVertices &vertices) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    if (!ReadVertices(vertices))
        return Failed(eGMNoVertices);
    RestartFrameClip();
    const std::int32_t method =
        vertices.method == eGSTriangleFan || vertices.method == eGSTriangleStrip ? vertices.method
                                                                                 : eGSPolygon;
    AddShapePath(method, 0);
    ApplyClip();
    return 0;
}

// ---- Vertices ----

bool WCGraphicStreamToCairo::ReadVertices(const SGSDrawVertices &vertices) {
    WCVertexPoints points;
    m_Points.clear();
    if (!GetLatestVertexPoints(points) || points.size() == 0)
        return false;
    double scaleX = 1.0;
    double scaleY = 1.0;
    GetVertexScale(vertices, scaleX, scaleY);
    if (!std::isfinite(scaleX) || !std::isfinite(scaleY))
        return false;
    m_Points.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const WCPoint2D<float> p = points[i];
        m_Points[i] = {Coordinate(p.x * scaleX), Coordinate(p.y * scaleY)};
    }
    return true;
}

bool WCGraphicStreamToCairo::ReadColors(std::size_t count) {
    m_Colors.clear();
    const SGSData *rgb = GetLatestDataOfPurpose(eGSPurposeRGBColor);
    const SGSData *rgba = GetLatestDataOfPurpose(eGSPurposeRGBAColor);
    // The later record is the one written for this draw.
    const SGSData *data = rgba;
    if (rgb != nullptr && (rgba == nullptr || rgb > rgba))
        data = rgb;
    const void *payload = data != nullptr ? GetDataPayload(*data) : nullptr;
    if (payload == nullptr || data->type != eGSTypeUInt8)
        return false;
    const std::size_t bytes = data == rgba ? 4 : 3;
    if (static_cast<std::size_t>(data->num_elements) / bytes < count)
        return false;
    m_Colors.resize(count * 4);
    const auto *in = static_cast<const std::uint8_t *>(payload);
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(&m_Colors[i * 4], in + i * bytes, bytes);
        if (bytes == 3)
            m_Colors[i * 4 + 3] = 255;
    }
    return true;
}

void WCGraphicStreamToCairo::AddTrianglePath(const WSPoint &a, const WSPoint &b, const WSPoint &c) {
    // Every triangle turns the same way, so under the winding rule they add up to their union
    // instead of cancelling where they overlap.
    const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    const WSPoint &second = area >= 0 ? b : c;
    const WSPoint &third = area >= 0 ? c : b;
    cairo_move_to(m_Context, a.x, a.y);
    cairo_line_to(m_Context, second.x, second.y);
    cairo_line_to(m_Context, third.x, third.y);
    cairo_close_path(m_Context);
}

void WCGraphicStreamToCairo::AddShapePath(std::int32_t method, double offset) {
    const std::vector<WSPoint> &p = m_Points;
    const std::size_t n = p.size();
    switch (method) {
    case eGSPolygon:
    case eGSLineStrip: {
        // A strip that comes back to its start (a wire rect) closes, so its corner is joined.
        std::size_t last = n;
        const bool loop =
            method == eGSPolygon || (n > 2 && p[0].x == p[n - 1].x && p[0].y == p[n - 1].y);
        if (method == eGSLineStrip && loop)
            --last;
        cairo_move_to(m_Context, p[0].x + offset, p[0].y + offset);
        for (std::size_t i = 1; i < last; ++i)
            cairo_line_to(m_Context, p[i].x + offset, p[i].y + offset);
        if (loop)
            cairo_close_path(m_Context);
        break;
    }
    case eGSStraightLines:
        for (std::size_t i = 0; i + 1 < n; i += 2) {
            cairo_move_to(m_Context, p[i].x + offset, p[i].y + offset);
            cairo_line_to(m_Context, p[i + 1].x + offset, p[i + 1].y + offset);
        }
        break;
    case eGSTriangleFan:
        for (std::size_t i = 1; i + 1 < n; ++i)
            AddTrianglePath(p[0], p[i], p[i + 1]);
        break;
    case eGSTriangleStrip:
        for (std::size_t i = 0; i + 2 < n; ++i)
            AddTrianglePath(p[i], p[i + 1], p[i + 2]);
        break;
    default: break;
    }
}

void WCGraphicStreamToCairo::SetColor(const SGSRGBAColor &color) {
    cairo_set_source_rgba(m_Context, color.red / 255.0, color.green / 255.0, color.blue / 255.0,
                          color.alpha / 255.0);
}

void WCGraphicStreamToCairo::SetColor(const std::uint8_t *rgba) {
    cairo_set_source_rgba(m_Context, rgba[0] / 255.0, rgba[1] / 255.0, rgba[2] / 255.0,
                          rgba[3] / 255.0);
}

void WCGraphicStreamToCairo::SetStrokeStyle(const SGSDrawVertices &vertices, double width) {
    cairo_set_line_width(m_Context, width);
    cairo_set_line_cap(m_Context, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(m_Context, CAIRO_LINE_JOIN_MITER);
    const std::uint16_t pattern = vertices.stroke_pattern;
    if (pattern == 0xFFFF) {
        cairo_set_dash(m_Context, nullptr, 0, 0);
        return;
    }
    // The 16 bits are a stipple, first bit first, one pixel each: start the dashes at the first
    // set bit that follows a clear one and give the skipped bits as the offset.
    int start = 0;
    while (start < 16 && !((pattern >> start) & 1 && !((pattern >> ((start + 15) % 16)) & 1)))
        ++start;
    double dashes[16];
    int count = 0;
    int bit = 0;
    while (bit < 16) {
        const bool on = (pattern >> ((start + bit) % 16)) & 1;
        int run = 0;
        while (bit < 16 && bool((pattern >> ((start + bit) % 16)) & 1) == on) {
            ++run;
            ++bit;
        }
        dashes[count++] = run;
    }
    cairo_set_dash(m_Context, dashes, count, 16 - start);
}

void WCGraphicStreamToCairo::StrokeWithColors(std::int32_t method, double offset) {
    // Each segment runs from the colour of its first vertex to that of its second.
    const std::vector<WSPoint> &p = m_Points;
    const std::size_t step = method == eGSStraightLines ? 2 : 1;
    for (std::size_t i = 0; i + 1 < p.size(); i += step) {
        const WSPoint a{p[i].x + offset, p[i].y + offset};
        const WSPoint b{p[i + 1].x + offset, p[i + 1].y + offset};
        cairo_pattern_t *gradient = cairo_pattern_create_linear(a.x, a.y, b.x, b.y);
        for (std::size_t k = 0; k < 2; ++k) {
            const std::uint8_t *c = &m_Colors[(i + k) * 4];
            cairo_pattern_add_color_stop_rgba(gradient, double(k), c[0] / 255.0, c[1] / 255.0,
                                              c[2] / 255.0, c[3] / 255.0);
        }
        cairo_set_source(m_Context, gradient);
        cairo_pattern_destroy(gradient);
        cairo_move_to(m_Context, a.x, a.y);
        cairo_line_to(m_Context, b.x, b.y);
        cairo_stroke(m_Context);
    }
}

void WCGraphicStreamToCairo::FillTrianglesWithColors(std::int32_t method) {
    // Colours blend across each triangle from its corners: one mesh patch per triangle.
    const std::vector<WSPoint> &p = m_Points;
    cairo_pattern_t *mesh = cairo_pattern_create_mesh();
    auto patch = [&](std::size_t a, std::size_t b, std::size_t c) {
        cairo_mesh_pattern_begin_patch(mesh);
        cairo_mesh_pattern_move_to(mesh, p[a].x, p[a].y);
        cairo_mesh_pattern_line_to(mesh, p[b].x, p[b].y);
        cairo_mesh_pattern_line_to(mesh, p[c].x, p[c].y);
        const std::size_t corners[3] = {a, b, c};
        for (unsigned k = 0; k < 3; ++k) {
            const std::uint8_t *color = &m_Colors[corners[k] * 4];
            cairo_mesh_pattern_set_corner_color_rgba(mesh, k, color[0] / 255.0, color[1] / 255.0,
                                                     color[2] / 255.0, color[3] / 255.0);
        }
        cairo_mesh_pattern_end_patch(mesh);
    };
    for (std::size_t i = 1; i + 1 < p.size(); ++i) {
        if (method == eGSTriangleStrip)
            patch(i - 1, i, i + 1);
        else
            patch(0, i, i + 1); // a fan, and a polygon cut into a fan
    }
    cairo_set_source(m_Context, mesh);
    cairo_pattern_destroy(mesh);
    cairo_paint(m_Context);
}

int WCGraphicStreamToCairo::DrawVertices(SGSDrawVertices &vertices) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    const std::int32_t method = vertices.method;
    if (method != eGSPolygon && method != eGSLineStrip && method != eGSStraightLines &&
        method != eGSTriangleFan && method != eGSTriangleStrip && method != eGSPoints &&
        method != eGSPointSquares)
        return Failed(eOutOfRangeNumber);
    if (!ReadVertices(vertices))
        return Failed(eGMNoVertices);
    const double width = StrokeWidth(vertices.stroke_width);
    // A stipple of no bits draws nothing, as it would on a line.
    if (vertices.stroke_pattern == 0 && (method == eGSLineStrip || method == eGSStraightLines))
        return 0;

    int result = 0;
    bool colors = false;
    if (vertices.flags & eGSColorsInData) {
        colors = ReadColors(m_Points.size());
        if (!colors)
            result = Failed(eGMNoColors);
    }
    cairo_set_antialias(m_Context, (vertices.flags & eGSNoAntialias) ? CAIRO_ANTIALIAS_NONE
                                                                     : CAIRO_ANTIALIAS_DEFAULT);
    // XOR with white inverts what is below; the difference of the colour does that in cairo.
    cairo_set_operator(m_Context, (vertices.flags & eGSDrawInXORMode) ? CAIRO_OPERATOR_DIFFERENCE
                                                                      : CAIRO_OPERATOR_OVER);
    cairo_new_path(m_Context);
    const double offset = PixelOffset(width);

    switch (method) {
    case eGSPoints:
    case eGSPointSquares: {
        const double half = std::max(width, 1.0) / 2;
        for (std::size_t i = 0; i < m_Points.size(); ++i) {
            const double x = m_Points[i].x + offset;
            const double y = m_Points[i].y + offset;
            if (method == eGSPoints && half > 0.5) {
                cairo_move_to(m_Context, x + half, y);
                cairo_arc(m_Context, x, y, half, 0, 2 * std::numbers::pi);
            } else {
                cairo_rectangle(m_Context, x - half, y - half, 2 * half, 2 * half);
            }
            if (colors) {
                SetColor(&m_Colors[i * 4]);
                cairo_fill(m_Context);
            }
        }
        if (!colors) {
            SetColor(vertices.draw_color);
            cairo_fill(m_Context);
        }
        break;
    }
    case eGSLineStrip:
    case eGSStraightLines:
        if (width <= 0)
            break;
        SetStrokeStyle(vertices, width);
        if (colors) {
            StrokeWithColors(method, offset);
        } else {
            AddShapePath(method, offset);
            SetColor(vertices.draw_color);
            cairo_stroke(m_Context);
        }
        break;
    default:
        if (colors && m_Points.size() >= 3) {
            AddShapePath(method, 0);
            cairo_save(m_Context);
            cairo_clip(m_Context);
            FillTrianglesWithColors(method);
            cairo_restore(m_Context);
        } else {
            AddShapePath(method, 0);
            cairo_set_fill_rule(m_Context, CAIRO_FILL_RULE_WINDING);
            SetColor(vertices.draw_color);
            cairo_fill(m_Context);
        }
        break;
    }
    cairo_new_path(m_Context);
    cairo_set_operator(m_Context, CAIRO_OPERATOR_OVER);
    return result;
}

// ---- Ovals ----

int WCGraphicStreamToCairo::DrawOval(SGSDrawOval &oval) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    const SGSRect &r = oval.rect;
    if (!std::isfinite(oval.sweep_angle) || !std::isfinite(oval.start_angle))
        return Failed(eNotANumber);
    const double halfWidth = Coordinate(r.size.width) / 2;
    const double halfHeight = Coordinate(r.size.height) / 2;
    if (halfWidth <= 0 || halfHeight <= 0 || oval.sweep_angle == 0)
        return 0;
    // Angles in degrees from twelve o'clock, growing clockwise; a sweep of a full turn or more
    // is the whole oval.
    const double sweep = std::clamp(static_cast<double>(oval.sweep_angle), -360.0, 360.0);
    const double start =
        std::fmod(static_cast<double>(oval.start_angle), 360.0) * std::numbers::pi / 180.0 -
        std::numbers::pi / 2;
    const double end = start + sweep * std::numbers::pi / 180.0;
    const bool whole = std::abs(sweep) >= 360.0;
    const bool filled = oval.fill != 0;

    cairo_set_antialias(m_Context, CAIRO_ANTIALIAS_DEFAULT);
    cairo_set_operator(m_Context, CAIRO_OPERATOR_OVER);
    cairo_set_dash(m_Context, nullptr, 0, 0);
    cairo_new_path(m_Context);
    cairo_save(m_Context);
    cairo_translate(m_Context, Coordinate(r.location.x) + halfWidth,
                    Coordinate(r.location.y) + halfHeight);
    cairo_scale(m_Context, halfWidth, halfHeight);
    // A filled part of an oval is a pie: its sides go to the centre.
    if (filled && !whole)
        cairo_move_to(m_Context, 0, 0);
    if (sweep >= 0)
        cairo_arc(m_Context, 0, 0, 1, start, end);
    else
        cairo_arc_negative(m_Context, 0, 0, 1, start, end);
    if (filled || whole)
        cairo_close_path(m_Context);
    cairo_restore(m_Context);
    SetColor(oval.draw_color);
    if (filled) {
        cairo_fill(m_Context);
    } else {
        cairo_set_line_width(m_Context, StrokeWidth(oval.stroke_width));
        cairo_set_line_cap(m_Context, CAIRO_LINE_CAP_BUTT);
        cairo_stroke(m_Context);
    }
    return 0;
}

// ---- Images ----

std::unique_ptr<WCStResContainerGraphicStream>
WCGraphicStreamToCairo::NewResContainerData(const FM::WCStPath &path) {
    return std::make_unique<WCStResContainerCairo>(path);
}

cairo_surface_t *WCGraphicStreamToCairo::FindImage(std::int32_t resID, WTErr &outError) {
    if (resID == -100) {
        const SGSData *pathData = GetLatestDataOfPurpose(eGSPurposeText);
        const std::string_view path = pathData != nullptr ? GetDataText(*pathData) : "";
        if (path.empty() || path.find('\0') != std::string_view::npos) {
            outError = eFMFileNotFound;
            return nullptr;
        }
        if (const auto found = m_ImagesByPath.find(path); found != m_ImagesByPath.end()) {
            outError = found->second.m_Error;
            return found->second.m_Surface;
        }
        std::string key(path);
        cairo_surface_t *surface = DecodeFile(key, outError);
        m_ImagesByPath.emplace(std::move(key), WSDecoded{surface, outError});
        return surface;
    }
    // Every container of this painter is made by NewResContainerData.
    auto *container = static_cast<WCStResContainerCairo *>(GetResContainer());
    if (container == nullptr) {
        outError = eRMContainerNotFound;
        return nullptr;
    }
    return container->GetSurface(resID, outError);
}

void WCGraphicStreamToCairo::PaintImage(cairo_surface_t *image, double x, double y, double width,
                                        double height) {
    const int imageWidth = cairo_image_surface_get_width(image);
    const int imageHeight = cairo_image_surface_get_height(image);
    cairo_set_source_surface(m_Context, image, x, y);
    if (width > 0 && height > 0 && (width != imageWidth || height != imageHeight)) {
        // The pattern maps the drawn rectangle onto the whole picture.
        cairo_matrix_t matrix;
        cairo_matrix_init_scale(&matrix, imageWidth / width, imageHeight / height);
        cairo_matrix_translate(&matrix, -x, -y);
        cairo_pattern_set_matrix(cairo_get_source(m_Context), &matrix);
        // Sampling at the border takes the border's own pixels, not transparency beyond it.
        cairo_pattern_set_extend(cairo_get_source(m_Context), CAIRO_EXTEND_PAD);
    }
    cairo_fill(m_Context);
}

int WCGraphicStreamToCairo::DrawImage(SGSDrawImage &image) {
    if (m_Context == nullptr || m_FarFrames > 0 || image.ResID == -1)
        return 0;
    WTErr error = eNoErr;
    cairo_surface_t *surface = FindImage(image.ResID, error);
    if (surface == nullptr)
        return Failed(error);
    const SGSRect &draw = image.draw_rect;
    const double x = Coordinate(draw.location.x);
    const double y = Coordinate(draw.location.y);
    const bool scaled = draw.size.width > 0 && draw.size.height > 0;
    const double width =
        scaled ? Coordinate(draw.size.width) : cairo_image_surface_get_width(surface);
    const double height =
        scaled ? Coordinate(draw.size.height) : cairo_image_surface_get_height(surface);
    // The picture is painted where it and its clip meet: a rectangle of its own, no clip state.
    double left = x, top = y, right = x + width, bottom = y + height;
    const SGSRect &clip = image.clip_rect;
    if (clip.location.x != 0 || clip.location.y != 0 || clip.size.width != 0 ||
        clip.size.height != 0) {
        left = std::max(left, Coordinate(clip.location.x));
        top = std::max(top, Coordinate(clip.location.y));
        right = std::min(right, Coordinate(double(clip.location.x) + clip.size.width));
        bottom = std::min(bottom, Coordinate(double(clip.location.y) + clip.size.height));
    }
    if (right <= left || bottom <= top)
        return 0;
    cairo_set_operator(m_Context, CAIRO_OPERATOR_OVER);
    cairo_set_antialias(m_Context, CAIRO_ANTIALIAS_DEFAULT);
    cairo_new_path(m_Context);
    cairo_rectangle(m_Context, left, top, right - left, bottom - top);
    PaintImage(surface, x, y, scaled ? width : 0, scaled ? height : 0);
    return 0;
}

int WCGraphicStreamToCairo::DrawImageMultipleClips(SGSDrawImageMultipleClips &image) {
    if (m_Context == nullptr || m_FarFrames > 0 || image.ResID == -1)
        return 0;
    WTErr error = eNoErr;
    cairo_surface_t *surface = FindImage(image.ResID, error);
    if (surface == nullptr)
        return Failed(error);
    const double x = Coordinate(image.x);
    const double y = Coordinate(image.y);
    const double right = x + cairo_image_surface_get_width(surface);
    const double bottom = y + cairo_image_surface_get_height(surface);
    const SGSData *rects = GetLatestDataOfPurpose(eGSPurposeClipRects);
    const void *payload = rects != nullptr ? GetDataPayload(*rects) : nullptr;
    if (payload == nullptr || rects->type != eGSTypeRect)
        return Failed(eValueNotFound);
    cairo_set_operator(m_Context, CAIRO_OPERATOR_OVER);
    cairo_new_path(m_Context);
    const auto *bytes = static_cast<const unsigned char *>(payload);
    for (std::int32_t i = 0; i < rects->num_elements; ++i) {
        SGSRect r;
        std::memcpy(&r, bytes + static_cast<std::size_t>(i) * sizeof r, sizeof r);
        const double left = std::max(x, Coordinate(r.location.x));
        const double top = std::max(y, Coordinate(r.location.y));
        const double rectRight = std::min(right, Coordinate(double(r.location.x) + r.size.width));
        const double rectBottom =
            std::min(bottom, Coordinate(double(r.location.y) + r.size.height));
        if (rectRight > left && rectBottom > top)
            cairo_rectangle(m_Context, left, top, rectRight - left, rectBottom - top);
    }
    // One fill of all the pieces: where clips overlap the picture is not painted twice.
    PaintImage(surface, x, y, 0, 0);
    return 0;
}

// ---- Text ----

cairo_font_face_t *WCGraphicStreamToCairo::FindFontFace(const SGSFont &font) {
    std::string_view name = FixedFieldText(font.name, sizeof font.name);
    if (name.empty())
        name = kDefaultFontFace;
    // The style bits of a font are this painter's: bit 0 bold, bit 1 italic.
    const char style = static_cast<char>('0' + (font.flags & 3u));
    if (m_LastFontFace != nullptr && m_LastFontKey.size() == name.size() + 1 &&
        m_LastFontKey.back() == style && m_LastFontKey.compare(0, name.size(), name) == 0)
        return m_LastFontFace;
    m_LastFontKey.assign(name);
    m_LastFontKey.push_back(style);
    auto found = m_FontFaces.find(m_LastFontKey);
    if (found == m_FontFaces.end()) {
        std::string family;
        CleanText(name, family);
        cairo_font_face_t *face = cairo_toy_font_face_create(
            family.c_str(), (font.flags & 2u) ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
            (font.flags & 1u) ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        found = m_FontFaces.emplace(m_LastFontKey, face).first;
    }
    m_LastFontFace = found->second;
    return m_LastFontFace;
}

int WCGraphicStreamToCairo::DrawTheText(SGSDrawText &text) {
    if (m_Context == nullptr || m_FarFrames > 0)
        return 0;
    const SGSData *data = GetLatestDataOfPurpose(eGSPurposeText);
    if (data == nullptr)
        return Failed(eValueNotFound);
    CleanText(GetDataText(*data), m_Text);
    if (m_Text.empty())
        return 0;
    const SGSFont &font = GetFont();
    cairo_font_face_t *face = FindFontFace(font);
    if (cairo_font_face_status(face) != CAIRO_STATUS_SUCCESS)
        return Failed(eGMUninitializedFont);
    cairo_set_font_face(m_Context, face);
    const double size = font.size > 0 ? std::min(font.size, 1024) : 12;
    cairo_set_font_size(m_Context, size);
    cairo_set_operator(m_Context, CAIRO_OPERATOR_OVER);
    cairo_set_antialias(m_Context, CAIRO_ANTIALIAS_DEFAULT);

    cairo_text_extents_t extents;
    cairo_text_extents(m_Context, m_Text.c_str(), &extents);
    cairo_font_extents_t fontExtents;
    cairo_font_extents(m_Context, &fontExtents);
    const WSFrameState *frame = GetTopFrameState();
    const double width = frame != nullptr ? std::max(0, frame->m_Frame.rect.size.width) : 0;
    const double height = frame != nullptr ? std::max(0, frame->m_Frame.rect.size.height) : 0;
    // The frame is the text's box: aligned by its advance across and by the font's ascent and
    // descent along, so texts of one font share a baseline whatever letters they hold.
    double x = (width - extents.x_advance) / 2;
    if (text.hAlign == eGSAlignLeft)
        x = 0;
    else if (text.hAlign == eGSAlignRight)
        x = width - extents.x_advance;
    const double lineHeight = fontExtents.ascent + fontExtents.descent;
    double y = (height - lineHeight) / 2 + fontExtents.ascent;
    if (text.vAlign == eGSAlignTop)
        y = fontExtents.ascent;
    else if (text.vAlign == eGSAlignBottom)
        y = height - fontExtents.descent;
    SetColor(font.color);
    cairo_move_to(m_Context, std::round(x), std::round(y));
    cairo_show_text(m_Context, m_Text.c_str());
    cairo_new_path(m_Context);
    return 0;
}

} // namespace miGS
MIREL_NAMESPACE_END
