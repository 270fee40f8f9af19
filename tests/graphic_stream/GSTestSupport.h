#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "core/WCStMemObj.h"
#include "graphic_stream/GraphicStreamDefs.h"

namespace gs_test {

// Reads a value of type T at a byte offset of a memory object, without alignment demands.
template <typename T>
T At(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory, std::uint64_t offset) {
    T value{};
    std::memcpy(&value, static_cast<const char *>(memory.GetPtr()) + offset, sizeof value);
    return value;
}

inline std::int32_t CommandAt(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory,
                              std::uint64_t offset) {
    return At<std::int32_t>(memory, offset);
}

inline std::int32_t SizeAt(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory,
                           std::uint64_t offset) {
    return At<std::int32_t>(memory, offset + 4);
}

// The rectangle at a byte offset as {x, y, width, height}, to compare in one line.
inline std::array<std::int32_t, 4> RectAt(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory,
                                          std::uint64_t offset) {
    const auto rect = At<MIREL_NAMESPACE_NAME::miGS::SGSRect>(memory, offset);
    return {rect.location.x, rect.location.y, rect.size.width, rect.size.height};
}

// The offsets of the records of a stream in order, following the records' sizes.
inline std::vector<std::uint64_t> Offsets(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory) {
    std::vector<std::uint64_t> offsets;
    std::uint64_t offset = 0;
    while (offset + 8 <= memory.GetSize()) {
        offsets.push_back(offset);
        const std::int32_t size = SizeAt(memory, offset);
        if (size <= 0)
            break;
        offset += static_cast<std::uint64_t>(size);
    }
    return offsets;
}

inline std::vector<std::int32_t> Commands(const MIREL_NAMESPACE_NAME::Utils::WCStMemObj &memory) {
    std::vector<std::int32_t> commands;
    for (const std::uint64_t offset : Offsets(memory))
        commands.push_back(CommandAt(memory, offset));
    return commands;
}

} // namespace gs_test

#include "graphic_stream/WCGSArrays.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

namespace gs_test {

// A small face of a plug-in that uses every kind of record the writer makes: the stream whose
// YAML is kept as the reviewed expected file.
inline void WriteDemoStream(MIREL_NAMESPACE_NAME::miGS::WCGraphicStreamBinaryWriter &writer) {
    using namespace MIREL_NAMESPACE_NAME;
    using namespace MIREL_NAMESPACE_NAME::miGS;
    SGSStream stream;
    std::strcpy(stream.stream_name, "Demo Compressor");
    stream.frame.rect.size = {320, 200};
    writer.ActivateRemarks(true);
    WCStGSStreamStructWriter streamGuard(writer, stream, "/usr/lib/plugins/Demo.bundle/");
    writer.Remark("background");
    writer.DrawPNG(static_cast<short>(1000));
    {
        SGSFrame knob;
        knob.owner = 0x51;
        knob.rect = {{20, 30}, {64, 64}};
        WCStGSFrameStructWriter guard(writer, knob);
        writer.DrawPNGAtPositionClipped(1001, WCPoint2D<short>(0, 0), WURect<short>(0, 0, 64, 64));
        SGSFrameRotate rotate;
        rotate.angleDegrees = 135;
        rotate.xOffset = 32;
        rotate.yOffset = 32;
        writer.RotateFrame(rotate);
        writer.DrawPNG(1002, WCGraphicStreamBinaryWriter::ImageFlags(1));
    }
    {
        WCStGSFrameStructWriter label(writer, WURect<int>(100, 20, 116, 120), 0x52);
        writer.Font("DejaVu Sans", 11, WCRGBAColor(230, 230, 230));
        writer.DrawTheText("-12.5 dB", 0x52, eGSAlignLeft, eGSAlignTop);
    }
    { WCStGSFrameStructWriter nothingDrawn(writer, WURect<int>(0, 0, 10, 10), 0x53); }
    {
        WCStGSFrameStructWriter graph(writer, WURect<int>(120, 140, 190, 300), 0x54);
        writer.MetaData("ParamID:7");
        writer.ClipRect(WURect<short>(0, 0, 70, 160));
        WCGSArrays curve;
        curve.SetDrawColor(WCRGBAColor(0, 200, 255));
        curve.SetStrokeWidth(1.5f);
        for (short x = 0; x < 5; ++x)
            curve.AddPoint_2Df(x * 40.0f, 35.0f - x * 7.5f);
        curve.GetDrawInstructionsLineStrip(writer, SGSScale(), SGSSize{160, 70});
        writer.DrawSolidRect(WCRGBAColor(40, 40, 40, 128), WURect<short>(60, 0, 70, 160));
        SGSDrawOval oval;
        oval.rect = {{76, 31}, {8, 8}};
        oval.draw_color = {255, 0, 0, 255};
        oval.slices_num = 20;
        writer.DrawOval(oval);
    }
    writer.DrawPNGAtPositionMultipleClips(
        1003, WCPoint2D<short>(5, 5), {WURect<short>(0, 0, 10, 10), WURect<short>(20, 20, 30, 30)});
    writer.ClipMultipleRects({WURect<short>(0, 0, 200, 320)}, WURect<short>());
}

} // namespace gs_test
