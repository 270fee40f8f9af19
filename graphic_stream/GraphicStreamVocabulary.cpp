#include "graphic_stream/GraphicStreamVocabulary.h"

#include <cstring>

#include "core/WCFourCC.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

struct WSCodeRow {
    std::int32_t code;
    const char *text;
    const char *altText; // null: column 1 falls back to column 0
};

// Commands first, then data types, purposes, vertex methods and alignments. Codes that serve both
// as command and purpose ("RURL", "#REM", "META") have a single row.
constexpr WSCodeRow kRows[] = {
    {eGSIllegalCommand, "IllegalGraphicStreamCommand", nullptr},
    {eGSIgnoreCommand, "kIgnoreStreamCommand", nullptr},
    {eGSNone, "None", nullptr},
    {eGSAny, "Any", nullptr},
    {eGSStreamSignature, "StreamSignature", nullptr},
    {eGSBeginStream, "BeginStream", "stream"},
    {eGSStreamFormat, "StreamFormat", "format"},
    {eGSEndStream, "EndStream", nullptr},
    {eGSResourcesBaseURL, "ResourcesBaseURL", "resources_base_url"},
    {eGSBeginFrame, "BeginFrame", "frame"},
    {eGSEndFrame, "EndFrame", nullptr},
    {eGSRotateFrame, "RotateFrame", nullptr},
    {eGSDrawImage, "DrawImage", nullptr},
    {eGSDrawImageMultipleClips, "DrawImageMultipleClips", nullptr},
    {eGSDrawText, "DrawText", nullptr},
    {eGSDrawOval, "DrawOval", nullptr},
    {eGSDrawVertices, "DrawVertices", nullptr},
    {eGSClipVertices, "ClipVertices", nullptr},
    {eGSClipRect, "ClipRect", nullptr},
    {eGSClipMultipleRects, "ClipMultipleRects", nullptr},
    {eGSDataHere, "DataHere", nullptr},
    {eGSDataPtr, "DataPtr", nullptr},
    {eGSFont, "font", nullptr},
    {eGSRemark, "Remark", nullptr},
    {eGSMetaData, "MetaData", nullptr},
    {eGSFrameChildren, "frame children", nullptr},
    {eGSTypeChar, "char", nullptr},
    {eGSTypeFloat, "float", nullptr},
    {eGSTypeInt8, "int8", nullptr},
    {eGSTypeUInt8, "uint8", nullptr},
    {eGSTypeInt16, "int16", nullptr},
    {eGSTypeInt32, "int32", nullptr},
    {eGSTypeRect, "Rect", nullptr},
    {eGSPurposeResID, "ResID", nullptr},
    {eGSPurposeText, "Text", nullptr},
    {eGSPurposePoint2D, "Point2D", nullptr},
    {eGSPurposePoint3D, "Point3D", nullptr},
    {eGSPurposeRGBColor, "RGBColor", nullptr},
    {eGSPurposeRGBAColor, "RGBAColor", nullptr},
    {eGSPurposeClipRects, "Clip Rectangles", nullptr},
    {eGSPolygon, "Polygon", nullptr},
    {eGSLineStrip, "LineStrip", nullptr},
    {eGSTriangleFan, "TriangleFan", nullptr},
    {eGSTriangleStrip, "TriangleStrip", nullptr},
    {eGSStraightLines, "StraightLines", nullptr},
    {eGSAlignLeft, "Left", nullptr},
    {eGSAlignHCenter, "HCenter", nullptr},
    {eGSAlignRight, "Right", nullptr},
    {eGSAlignTop, "Top", nullptr},
    {eGSAlignVCenter, "VCenter", nullptr},
    {eGSAlignBottom, "Bottom", nullptr},
};

const char *RowText(const WSCodeRow &row, int column) noexcept {
    return (column == 1 && row.altText != nullptr) ? row.altText : row.text;
}

constexpr const char *kDrawLineFlagTexts[] = {"NoAntialias", "ColorsInData", "eDrawInXORMode"};

struct WSTypeSize {
    std::int32_t type;
    int bytes;
};

constexpr WSTypeSize kTypeSizes[] = {
    {eGSTypeChar, 1},  {eGSTypeFloat, 4}, {eGSTypeInt8, 1},  {eGSTypeUInt8, 1},
    {eGSTypeInt16, 2}, {eGSTypeInt32, 4}, {eGSTypeRect, 16},
};

struct WSTypePurpose {
    std::int32_t type;
    std::int32_t purpose;
};

constexpr WSTypePurpose kTypePurposeMatches[] = {
    {eGSTypeChar, eGSPurposeText},      {eGSTypeChar, eGSPurposeResourcesBaseURL},
    {eGSTypeChar, eGSPurposeRemark},    {eGSTypeChar, eGSPurposeMetaData},
    {eGSTypeFloat, eGSPurposePoint2D},  {eGSTypeFloat, eGSPurposePoint3D},
    {eGSTypeInt16, eGSPurposePoint2D},  {eGSTypeInt16, eGSPurposePoint3D},
    {eGSTypeUInt8, eGSPurposeRGBColor}, {eGSTypeUInt8, eGSPurposeRGBAColor},
    {eGSTypeRect, eGSPurposeClipRects},
};

} // namespace

const char *GraphicStreamCommandToText(std::int32_t code, int column) noexcept {
    for (const WSCodeRow &row : kRows) {
        if (row.code == code)
            return RowText(row, column);
    }
    thread_local WCFixedString<63> unknown;
    unknown = "Unknown GraphicStreamCommand ";
    unknown << WCFourCC(static_cast<std::uint32_t>(code));
    return unknown.c_str();
}

std::int32_t GraphicStreamTextToCommand(const char *text, int column) noexcept {
    if (text == nullptr)
        return eGSIllegalCommand;
    for (const WSCodeRow &row : kRows) {
        if (std::strcmp(RowText(row, column), text) == 0)
            return row.code;
    }
    return eGSIllegalCommand;
}

const char *GraphicStreamDrawLineFlagsToText(int bitIndex) noexcept {
    constexpr int count =
        static_cast<int>(sizeof(kDrawLineFlagTexts) / sizeof(kDrawLineFlagTexts[0]));
    return (bitIndex >= 0 && bitIndex < count) ? kDrawLineFlagTexts[bitIndex] : "";
}

std::uint32_t GraphicStreamTextToDrawLineFlags(const char *text) noexcept {
    if (text != nullptr) {
        std::uint32_t bit = 1;
        for (const char *name : kDrawLineFlagTexts) {
            if (std::strcmp(name, text) == 0)
                return bit;
            bit <<= 1;
        }
    }
    return ~std::uint32_t(0);
}

std::int32_t CloseCommandFromOpenCommand(std::int32_t openCommand) noexcept {
    if (openCommand == eGSBeginStream)
        return eGSEndStream;
    if (openCommand == eGSBeginFrame)
        return eGSEndFrame;
    return eGSIllegalCommand;
}

bool DataTypeToPurposeMatch(std::int32_t type, std::int32_t purpose) noexcept {
    for (const WSTypePurpose &match : kTypePurposeMatches) {
        if (match.type == type && match.purpose == purpose)
            return true;
    }
    return false;
}

int GraphicStreamDataTypeElementSize(std::int32_t type) noexcept {
    for (const WSTypeSize &entry : kTypeSizes) {
        if (entry.type == type)
            return entry.bytes;
    }
    return 0;
}

void SGSDataToText(const SGSData &data, WCFixedStringBase &out) noexcept {
    out.clear();
    out << GraphicStreamCommandToText(data.header.command) << ' ';
    out << GraphicStreamCommandToText(data.type) << '/';
    out << GraphicStreamCommandToText(data.purpose) << ' ';
    out << data.num_elements << " elements, " << data.header.size << " bytes";
}

void SGSRGBAColorToHTMLColor(const SGSRGBAColor &color, WCFixedStringBase &out) noexcept {
    static constexpr char kDigits[] = "0123456789abcdef";
    out.clear();
    out << '#';
    for (std::uint8_t byte : {color.red, color.green, color.blue}) {
        out << kDigits[byte >> 4] << kDigits[byte & 0x0F];
    }
}

} // namespace miGS
MIREL_NAMESPACE_END
