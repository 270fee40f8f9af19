#pragma once

#include <cstddef>
#include <cstdint>

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// The vocabulary and the record layouts of the graphic stream: the flat, little-endian list of
// drawing records that every control writes and every painter or exporter reads. Each code is
// four bytes in the stream; the constants below are those bytes read as a little-endian integer.
// The records are plain, trivially copyable structures whose bytes are the stream bytes, packed to
// 4 so the 64-bit fields sit exactly where the format puts them.

// Builds a code from its four stream bytes, first byte lowest.
constexpr std::int32_t GSCode(char const (&bytes)[5]) noexcept {
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[0])) |
        static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[1])) << 8 |
        static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[2])) << 16 |
        static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[3])) << 24);
}

constexpr std::int32_t GSCodeFromValue(std::uint32_t value) noexcept {
    return static_cast<std::int32_t>(value);
}

// Commands.
inline constexpr std::int32_t eGSIllegalCommand = GSCodeFromValue(0xBAADF00Du);
inline constexpr std::int32_t eGSIgnoreCommand = GSCode("ongi");
inline constexpr std::int32_t eGSNone = GSCode("none");
inline constexpr std::int32_t eGSAny = GSCode("any_");
inline constexpr std::int32_t eGSStreamSignature = GSCode("SSIG");
inline constexpr std::int32_t eGSBeginStream = GSCode("BSTM");
inline constexpr std::int32_t eGSStreamFormat = GSCodeFromValue(0xA0A0A0A0u);
inline constexpr std::int32_t eGSEndStream = GSCode("ESTM");
inline constexpr std::int32_t eGSResourcesBaseURL = GSCode("RURL");
inline constexpr std::int32_t eGSBeginFrame = GSCode("BFRM");
inline constexpr std::int32_t eGSEndFrame = GSCode("EFRM");
inline constexpr std::int32_t eGSRotateFrame = GSCode("FTOR");
inline constexpr std::int32_t eGSDrawImage = GSCode("ePNG");
inline constexpr std::int32_t eGSDrawImageMultipleClips = GSCode("mPNG");
inline constexpr std::int32_t eGSDrawText = GSCode("dTXT");
inline constexpr std::int32_t eGSDrawOval = GSCode("lavO");
inline constexpr std::int32_t eGSDrawVertices = GSCode("dVIN");
inline constexpr std::int32_t eGSClipVertices = GSCode("cVIN");
inline constexpr std::int32_t eGSClipRect = GSCode("cRIN");
inline constexpr std::int32_t eGSClipMultipleRects = GSCode("cRIM");
inline constexpr std::int32_t eGSDataHere = GSCode("\r>>>");
inline constexpr std::int32_t eGSDataPtr = GSCode("****");
inline constexpr std::int32_t eGSFont = GSCode("tnof");
inline constexpr std::int32_t eGSRemark = GSCode("#REM");
inline constexpr std::int32_t eGSMetaData = GSCode("META");
inline constexpr std::int32_t eGSFrameChildren = GSCode("CFRM");
// Read for streams of an older writer; nothing here writes them.
inline constexpr std::int32_t eGSDrawPNGDeprecated = GSCode("dPNG");
inline constexpr std::int32_t eGSDrawPNGClippedDeprecated = GSCode("cPNG");
inline constexpr std::int32_t eGSDrawPNGScaledDeprecated = GSCode("sPNG");
inline constexpr std::int32_t eGSDrawOldStyle = GSCode("cdso");

// Data types of SGSData.
inline constexpr std::int32_t eGSTypeChar = GSCode("char");
inline constexpr std::int32_t eGSTypeFloat = GSCode("flot");
inline constexpr std::int32_t eGSTypeInt8 = GSCode("8int");
inline constexpr std::int32_t eGSTypeUInt8 = GSCode("8uin");
inline constexpr std::int32_t eGSTypeInt16 = GSCode("16in");
inline constexpr std::int32_t eGSTypeInt32 = GSCode("32in");
inline constexpr std::int32_t eGSTypeRect = GSCode("tcer");

// Purposes of SGSData.
inline constexpr std::int32_t eGSPurposeResID = GSCode("rsid");
inline constexpr std::int32_t eGSPurposeText = GSCode("text");
inline constexpr std::int32_t eGSPurposePoint2D = GSCode("pnt2");
inline constexpr std::int32_t eGSPurposePoint3D = GSCode("pnt3");
inline constexpr std::int32_t eGSPurposeRGBColor = GSCode("_bgr");
inline constexpr std::int32_t eGSPurposeRGBAColor = GSCode("abgr");
inline constexpr std::int32_t eGSPurposeClipRects = GSCode("rplc");
inline constexpr std::int32_t eGSPurposeResourcesBaseURL = eGSResourcesBaseURL;
inline constexpr std::int32_t eGSPurposeRemark = eGSRemark;
inline constexpr std::int32_t eGSPurposeMetaData = eGSMetaData;

// Vertex methods of SGSDrawVertices.
inline constexpr std::int32_t eGSPolygon = GSCode("ylop");
inline constexpr std::int32_t eGSLineStrip = GSCode("prts");
inline constexpr std::int32_t eGSTriangleFan = GSCode("flrt");
inline constexpr std::int32_t eGSTriangleStrip = GSCode("nlrt");
inline constexpr std::int32_t eGSStraightLines = GSCode("nlts");
inline constexpr std::int32_t eGSPoints = GSCode("stnp");
inline constexpr std::int32_t eGSPointSquares = GSCode("qsnp");

// Text alignment of SGSDrawText.
inline constexpr std::int32_t eGSAlignLeft = GSCode("tflh");
inline constexpr std::int32_t eGSAlignHCenter = GSCode("rtch");
inline constexpr std::int32_t eGSAlignRight = GSCode("tirh");
inline constexpr std::int32_t eGSAlignTop = GSCode("potv");
inline constexpr std::int32_t eGSAlignVCenter = GSCode("rtcv");
inline constexpr std::int32_t eGSAlignBottom = GSCode("mtbv");

// Bits of SGSDrawVertices.flags.
inline constexpr std::uint32_t eGSNoAntialias = 1u << 0;
inline constexpr std::uint32_t eGSColorsInData = 1u << 1;
inline constexpr std::uint32_t eGSDrawInXORMode = 1u << 2;

// The two faults the stream engine throws, and returns from its public walks.
inline constexpr std::int32_t kGSErrIllegalCommand = -20010;
inline constexpr std::int32_t kGSErrBadRecordSize = -8;

#pragma pack(push, 4)

struct SGSCommandHeader {
    std::int32_t command = eGSIllegalCommand;
    // The whole record in bytes, header and payload included.
    std::int32_t size = 8;
};

struct SGSLocation {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct SGSSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

struct SGSRect {
    SGSLocation location;
    SGSSize size;
};

struct SGSRGBAColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;
};

struct SGSScale {
    float h = 1.0f;
    float v = 1.0f;
    float z = 1.0f;
};

struct SGSStreamSignature {
    std::int32_t word[4] = {1, 0, 0, 0};
};

struct SGSFrame {
    SGSCommandHeader header{eGSBeginFrame, 32};
    std::int64_t owner = 0;
    // Relative to the enclosing frame.
    SGSRect rect;
};

struct SGSStream {
    SGSFrame frame{{eGSBeginStream, 112}, 0, {}};
    SGSStreamSignature signature;
    // Zero-padded; the last byte always stays 0.
    char stream_name[64] = {};
};

struct SGSFrameRotate {
    SGSCommandHeader header{eGSRotateFrame, 20};
    std::int32_t angleDegrees = 0;
    std::int32_t xOffset = 0;
    std::int32_t yOffset = 0;
};

struct SGSDrawImage {
    SGSCommandHeader header{eGSDrawImage, 56};
    // -1 no image; -100 the path is in the text data record just before.
    std::int32_t ResID = -1;
    SGSRect draw_rect;
    SGSRect clip_rect;
    std::int32_t reserved[2] = {-1, -1};
    std::uint32_t flags = 0;
};

struct SGSDrawImageMultipleClips {
    SGSCommandHeader header{eGSDrawImageMultipleClips, 40};
    std::int32_t ResID = -1;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t reserved[2] = {-1, -1};
    std::uint32_t flags = 0;
};

struct SGSDrawPNGDeprecated {
    SGSCommandHeader header{eGSDrawPNGDeprecated, 28};
    std::int32_t ResID = -1;
    SGSRect rect;
};

struct SGSDrawText {
    SGSCommandHeader header{eGSDrawText, 24};
    std::int64_t owner = 0;
    std::int32_t hAlign = eGSAlignHCenter;
    std::int32_t vAlign = eGSAlignVCenter;
};

struct SGSFont {
    SGSCommandHeader header{eGSFont, 52};
    char name[32] = {};
    std::int32_t size = 0;
    SGSRGBAColor color;
    std::uint32_t flags = 0;
};

struct SGSClipRect {
    SGSCommandHeader header{eGSClipRect, 24};
    SGSRect rect;
};

struct SGSClipMultipleRects {
    SGSCommandHeader header{eGSClipMultipleRects, 8};
};

struct SGSDrawVertices {
    SGSCommandHeader header{eGSDrawVertices, 48};
    std::int32_t method = eGSIllegalCommand;
    float stroke_width = 1.0f;
    std::uint16_t stroke_pattern = 0xFFFF;
    std::uint16_t unused = 0;
    std::uint32_t flags = 0;
    SGSRGBAColor draw_color;
    // 0, 0: the vertices are in frame coordinates.
    SGSSize logical_size;
    SGSScale scale;
};

struct SGSDrawOval {
    SGSCommandHeader header{eGSDrawOval, 48};
    float sweep_angle = 360.0f;
    float start_angle = 0.0f;
    float stroke_width = 1.0f;
    std::int32_t fill = 0;
    SGSRect rect;
    std::uint32_t slices_num = 100;
    SGSRGBAColor draw_color;
};

struct SGSData {
    SGSCommandHeader header{eGSDataHere, 28};
    std::int32_t type = 0;
    std::int32_t purpose = 0;
    // Elements, not bytes: a 2-D point counts two.
    std::int32_t num_elements = 0;
    // In a DataPtr record the payload's address in the writing process; 0 in DataHere.
    std::uint64_t data_ptr = 0;
};

#pragma pack(pop)

inline constexpr std::size_t kGSDataHeaderSize = sizeof(SGSData);

static_assert(sizeof(SGSCommandHeader) == 8);
static_assert(sizeof(SGSRect) == 16);
static_assert(sizeof(SGSRGBAColor) == 4);
static_assert(sizeof(SGSScale) == 12);
static_assert(sizeof(SGSFrame) == 32);
static_assert(sizeof(SGSStream) == 112);
static_assert(offsetof(SGSStream, signature) == 32 && offsetof(SGSStream, stream_name) == 48);
static_assert(sizeof(SGSFrameRotate) == 20);
static_assert(sizeof(SGSDrawImage) == 56);
static_assert(offsetof(SGSDrawImage, clip_rect) == 28 && offsetof(SGSDrawImage, flags) == 52);
static_assert(sizeof(SGSDrawImageMultipleClips) == 40);
static_assert(offsetof(SGSDrawImageMultipleClips, flags) == 36);
static_assert(sizeof(SGSDrawPNGDeprecated) == 28);
static_assert(sizeof(SGSDrawText) == 24);
static_assert(sizeof(SGSFont) == 52);
static_assert(offsetof(SGSFont, size) == 40 && offsetof(SGSFont, color) == 44);
static_assert(sizeof(SGSClipRect) == 24);
static_assert(sizeof(SGSClipMultipleRects) == 8);
static_assert(sizeof(SGSDrawVertices) == 48);
static_assert(offsetof(SGSDrawVertices, draw_color) == 24 &&
              offsetof(SGSDrawVertices, scale) == 36);
static_assert(sizeof(SGSDrawOval) == 48);
static_assert(offsetof(SGSDrawOval, rect) == 24 && offsetof(SGSDrawOval, draw_color) == 44);
static_assert(sizeof(SGSData) == 28);
static_assert(offsetof(SGSData, data_ptr) == 20);

} // namespace miGS
MIREL_NAMESPACE_END
