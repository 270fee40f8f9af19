#include "graphic_stream/WCGraphicStreamToYAML.h"

#include <cstring>
#include <iostream>

#include <yaml-cpp/yaml.h>

#include "graphic_stream/GraphicStreamVocabulary.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

namespace {

bool IsZero(const SGSRect &rect) noexcept {
    return rect.location.x == 0 && rect.location.y == 0 && rect.size.width == 0 &&
           rect.size.height == 0;
}

bool IsDefault(const SGSRGBAColor &color) noexcept {
    const SGSRGBAColor black;
    return color.red == black.red && color.green == black.green && color.blue == black.blue &&
           color.alpha == black.alpha;
}

bool IsDefault(const SGSScale &scale) noexcept {
    return scale.h == 1.0f && scale.v == 1.0f && scale.z == 1.0f;
}

template <typename T>
void EmitElements(YAML::Emitter &out, const void *payload, std::int32_t count) {
    const auto *bytes = static_cast<const unsigned char *>(payload);
    out << YAML::Flow << YAML::BeginSeq;
    for (std::int32_t i = 0; i < count; ++i) {
        T value;
        std::memcpy(&value, bytes + static_cast<std::size_t>(i) * sizeof(T), sizeof(T));
        if constexpr (sizeof(T) == 1)
            out << static_cast<int>(value);
        else
            out << value;
    }
    out << YAML::EndSeq;
}

} // namespace

WCGraphicStreamToYAML::WCGraphicStreamToYAML(bool compact)
    : m_Emitter(std::make_unique<YAML::Emitter>()), m_Compact(compact), m_Report(&std::cout) {}

WCGraphicStreamToYAML::~WCGraphicStreamToYAML() = default;

std::string WCGraphicStreamToYAML::GetYamlStr() const {
    return m_Emitter->c_str();
}

WTErr WCGraphicStreamToYAML::ExecStreamWithAllChecksums(
    char *stream, std::uint64_t length, const std::vector<std::uint64_t> &checksums) {
    m_Checksums = checksums;
    m_ChecksumPosition = 0;
    m_ChecksumWalk = true;
    const WTErr result = ExecStream(stream, length);
    m_ChecksumWalk = false;
    // A walk that stopped at a fault never reached AfterExceStream; the counts still tell how far
    // it got, and the end frames it passed are among them.
    m_ExecCommands_count = GetRecordCount();

    std::ostream &out = *m_Report;
    out << m_ExecCommands_count << " WCGraphicStreamToYAML.m_ExecCommands_count\n";
    out << m_count_emits << " WCGraphicStreamToYAML.m_count_emits\n";
    out << m_count_skips << " WCGraphicStreamToYAML.m_count_skips\n";
    out << m_count_emits + m_count_skips << " m_count_emits+m_count_skips\n";
    out << m_count_missing << " WCGraphicStreamToYAML.m_count_missing\n";
    out << m_ExecCommands_count - m_count_end_frames
        << " m_ExecCommands_count (without end frames)\n";
    return result;
}

bool WCGraphicStreamToYAML::has_checksums() const noexcept {
    return m_ChecksumPosition < m_Checksums.size();
}

std::uint64_t WCGraphicStreamToYAML::next_checksum() noexcept {
    return has_checksums() ? m_Checksums[m_ChecksumPosition++] : 0;
}

void WCGraphicStreamToYAML::CountUse(bool show) {
    if (!m_ChecksumWalk)
        return;
    if (show)
        ++m_count_emits;
    else
        ++m_count_skips;
    if (!has_checksums()) {
        // One line per record left without its checksum, so the report shows where they ran out.
        ++m_count_missing;
        *m_Report << "not enough checksums\n";
        return;
    }
    const std::uint64_t checksum = next_checksum();
    if (show)
        *m_Emitter << YAML::Key << "checksum" << YAML::Value << checksum;
}

void WCGraphicStreamToYAML::emit_checksum() {
    CountUse(true);
}
void WCGraphicStreamToYAML::skip_checksum() {
    CountUse(false);
}

int WCGraphicStreamToYAML::BeforeExceStream(char *) {
    m_Emitter = std::make_unique<YAML::Emitter>();
    m_ExecCommands_count = 0;
    m_count_emits = 0;
    m_count_skips = 0;
    m_count_missing = 0;
    m_count_end_frames = 0;
    *m_Emitter << YAML::BeginSeq;
    return 0;
}

int WCGraphicStreamToYAML::AfterExceStream(char *) {
    m_ExecCommands_count = GetRecordCount();
    *m_Emitter << YAML::EndSeq;
    return 0;
}

void WCGraphicStreamToYAML::BeginRecord(std::int32_t command) {
    YAML::Emitter &out = *m_Emitter;
    out << YAML::BeginMap << YAML::Key << GraphicStreamCommandToText(command, 1) << YAML::Value
        << YAML::BeginMap;
    emit_checksum();
}

void WCGraphicStreamToYAML::EndRecord() {
    *m_Emitter << YAML::EndMap << YAML::EndMap;
}

void WCGraphicStreamToYAML::EmitToYaml(const SGSRect &rect, bool compact) {
    YAML::Emitter &out = *m_Emitter;
    out << YAML::Flow << YAML::BeginMap;
    if (!compact || rect.location.x != 0 || rect.location.y != 0)
        out << YAML::Key << "x" << YAML::Value << rect.location.x << YAML::Key << "y" << YAML::Value
            << rect.location.y;
    if (!compact || rect.size.width != 0 || rect.size.height != 0)
        out << YAML::Key << "w" << YAML::Value << rect.size.width << YAML::Key << "h" << YAML::Value
            << rect.size.height;
    out << YAML::EndMap;
}

void WCGraphicStreamToYAML::EmitToYaml(const SGSSize &size) {
    *m_Emitter << YAML::Flow << YAML::BeginMap << YAML::Key << "w" << YAML::Value << size.width
               << YAML::Key << "h" << YAML::Value << size.height << YAML::EndMap;
}

void WCGraphicStreamToYAML::EmitToYaml(const SGSScale &scale) {
    *m_Emitter << YAML::Flow << YAML::BeginMap << YAML::Key << "h" << YAML::Value << scale.h
               << YAML::Key << "v" << YAML::Value << scale.v << YAML::Key << "z" << YAML::Value
               << scale.z << YAML::EndMap;
}

void WCGraphicStreamToYAML::EmitToYaml(const SGSRGBAColor &color) {
    *m_Emitter << YAML::Flow << YAML::BeginMap << YAML::Key << "red" << YAML::Value
               << static_cast<int>(color.red) << YAML::Key << "green" << YAML::Value
               << static_cast<int>(color.green) << YAML::Key << "blue" << YAML::Value
               << static_cast<int>(color.blue) << YAML::Key << "alpha" << YAML::Value
               << static_cast<int>(color.alpha) << YAML::EndMap;
}

void WCGraphicStreamToYAML::EmitToYaml(const SGSFrame &frame) {
    YAML::Emitter &out = *m_Emitter;
    if (!m_Compact || frame.owner != 0)
        out << YAML::Key << "owner" << YAML::Value << frame.owner;
    out << YAML::Key << "rect" << YAML::Value;
    EmitToYaml(frame.rect, m_Compact);
}

int WCGraphicStreamToYAML::BeginStream(SGSStream &stream) {
    YAML::Emitter &out = *m_Emitter;
    out << YAML::BeginMap << YAML::Key << GraphicStreamCommandToText(eGSBeginStream, 1)
        << YAML::Value << YAML::BeginMap;
    emit_checksum();
    EmitToYaml(stream.frame);
    out << YAML::Key << GraphicStreamCommandToText(eGSStreamFormat, 1) << YAML::Value << YAML::Flow
        << YAML::BeginSeq;
    for (std::int32_t word : stream.signature.word)
        out << word;
    out << YAML::EndSeq;
    const std::string_view name = FixedFieldText(stream.stream_name, sizeof stream.stream_name - 1);
    if (!name.empty())
        out << YAML::Key << "name" << YAML::Value << std::string(name);
    out << YAML::EndMap << YAML::Key << "contents" << YAML::Value << YAML::BeginSeq;
    return 0;
}

int WCGraphicStreamToYAML::EndStream(SGSCommandHeader &) {
    ++m_count_end_frames;
    *m_Emitter << YAML::EndSeq << YAML::EndMap;
    return 0;
}

int WCGraphicStreamToYAML::BeginFrame(SGSFrame &frame) {
    YAML::Emitter &out = *m_Emitter;
    out << YAML::BeginMap << YAML::Key << GraphicStreamCommandToText(eGSBeginFrame, 1)
        << YAML::Value << YAML::BeginMap;
    emit_checksum();
    out << YAML::Key << "stream_offset" << YAML::Value << GetCurrentRecordOffset();
    EmitToYaml(frame);
    out << YAML::EndMap << YAML::Key << "contents" << YAML::Value << YAML::BeginSeq;
    return 0;
}

int WCGraphicStreamToYAML::EndFrame(SGSCommandHeader &) {
    ++m_count_end_frames;
    *m_Emitter << YAML::EndSeq << YAML::EndMap;
    return 0;
}

int WCGraphicStreamToYAML::RotateFrame(SGSFrameRotate &rotate) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(rotate.header.command);
    out << YAML::Key << "angleDegrees" << YAML::Value << rotate.angleDegrees;
    out << YAML::Key << "xOffset" << YAML::Value << rotate.xOffset;
    out << YAML::Key << "yOffset" << YAML::Value << rotate.yOffset;
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::DrawOldStyle(SGSCommandHeader &header) {
    BeginRecord(header.command);
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::DrawImage(SGSDrawImage &image) {
    YAML::Emitter &out = *m_Emitter;
    // Deprecated image records arrive here converted; they are shown as what they mean.
    BeginRecord(eGSDrawImage);
    out << YAML::Key << "ResID" << YAML::Value << image.ResID;
    out << YAML::Key << "draw_rect" << YAML::Value;
    EmitToYaml(image.draw_rect, m_Compact);
    if (!m_Compact || !IsZero(image.clip_rect)) {
        out << YAML::Key << "clip_rect" << YAML::Value;
        EmitToYaml(image.clip_rect, m_Compact);
    }
    if (!m_Compact || image.flags != 0)
        out << YAML::Key << "flags" << YAML::Value << image.flags;
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::DrawImageMultipleClips(SGSDrawImageMultipleClips &image) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(image.header.command);
    out << YAML::Key << "ResID" << YAML::Value << image.ResID;
    out << YAML::Key << "x" << YAML::Value << image.x << YAML::Key << "y" << YAML::Value << image.y;
    if (!m_Compact || image.flags != 0)
        out << YAML::Key << "flags" << YAML::Value << image.flags;
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::DrawTheText(SGSDrawText &text) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(text.header.command);
    if (!m_Compact || text.owner != 0)
        out << YAML::Key << "owner" << YAML::Value << text.owner;
    if (text.hAlign != eGSAlignHCenter || text.vAlign != eGSAlignVCenter) {
        out << YAML::Key << "flags" << YAML::Value << YAML::Flow << YAML::BeginSeq
            << GraphicStreamCommandToText(text.hAlign) << GraphicStreamCommandToText(text.vAlign)
            << YAML::EndSeq;
    }
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::DrawOval(SGSDrawOval &oval) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(oval.header.command);
    out << YAML::Key << "rect" << YAML::Value;
    EmitToYaml(oval.rect, m_Compact);
    out << YAML::Key << "draw_color" << YAML::Value;
    EmitToYaml(oval.draw_color);
    out << YAML::Key << "stroke_width" << YAML::Value << oval.stroke_width;
    out << YAML::Key << "start_angle" << YAML::Value << oval.start_angle;
    out << YAML::Key << "sweep_angle" << YAML::Value << oval.sweep_angle;
    out << YAML::Key << "slices_num" << YAML::Value << oval.slices_num;
    if (!m_Compact || oval.fill != 0)
        out << YAML::Key << "fill" << YAML::Value << oval.fill;
    EndRecord();
    return 0;
}

void WCGraphicStreamToYAML::EmitVertices(SGSDrawVertices &vertices) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(vertices.header.command);
    out << YAML::Key << "method" << YAML::Value << GraphicStreamCommandToText(vertices.method);
    if (!m_Compact || vertices.flags != 0) {
        out << YAML::Key << "flags" << YAML::Value << YAML::Flow << YAML::BeginSeq;
        for (int bit = 0; bit < 32; ++bit) {
            if ((vertices.flags & (1u << bit)) == 0)
                continue;
            const char *text = GraphicStreamDrawLineFlagsToText(bit);
            if (*text != '\0')
                out << text;
            else
                out << "bit " + std::to_string(bit);
        }
        out << YAML::EndSeq;
    }
    if (!m_Compact || vertices.stroke_width != 1.0f)
        out << YAML::Key << "stroke_width" << YAML::Value << vertices.stroke_width;
    if (!m_Compact || vertices.stroke_pattern != 0xFFFF)
        out << YAML::Key << "stroke_pattern" << YAML::Value << vertices.stroke_pattern;
    if (!m_Compact || !IsDefault(vertices.draw_color)) {
        out << YAML::Key << "draw_color" << YAML::Value;
        EmitToYaml(vertices.draw_color);
    }
    if (!m_Compact || vertices.logical_size.width != 0 || vertices.logical_size.height != 0) {
        out << YAML::Key << "logical_size" << YAML::Value;
        EmitToYaml(vertices.logical_size);
    }
    if (!m_Compact || !IsDefault(vertices.scale)) {
        out << YAML::Key << "scale" << YAML::Value;
        EmitToYaml(vertices.scale);
    }
    EndRecord();
}

int WCGraphicStreamToYAML::DrawVertices(SGSDrawVertices &vertices) {
    EmitVertices(vertices);
    return 0;
}

int WCGraphicStreamToYAML::ClipVertices(SGSDrawVertices &vertices) {
    EmitVertices(vertices);
    return 0;
}

int WCGraphicStreamToYAML::ClipRect(SGSClipRect &clip) {
    BeginRecord(clip.header.command);
    *m_Emitter << YAML::Key << "rect" << YAML::Value;
    EmitToYaml(clip.rect, m_Compact);
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::ClipMultipleRects(SGSClipMultipleRects &clip) {
    BeginRecord(clip.header.command);
    EndRecord();
    return 0;
}

void WCGraphicStreamToYAML::EmitGSSpecialTextToYAML(std::int32_t command, SGSData &data) {
    YAML::Emitter &out = *m_Emitter;
    const std::string text(GetDataText(data));
    out << YAML::BeginMap << YAML::Key << GraphicStreamCommandToText(command, 1) << YAML::Value;
    if (m_ChecksumWalk) {
        out << YAML::BeginMap;
        emit_checksum();
        out << YAML::Key << "text" << YAML::Value << text << YAML::EndMap;
    } else {
        out << text;
    }
    out << YAML::EndMap;
}

int WCGraphicStreamToYAML::ResourcesBaseURL(SGSData &data) {
    WCGraphicStreamEngineBase::ResourcesBaseURL(data);
    EmitGSSpecialTextToYAML(eGSResourcesBaseURL, data);
    return 0;
}

int WCGraphicStreamToYAML::Remark(SGSData &data) {
    EmitGSSpecialTextToYAML(eGSRemark, data);
    return 0;
}

int WCGraphicStreamToYAML::MetaData(SGSData &data) {
    EmitGSSpecialTextToYAML(eGSMetaData, data);
    return 0;
}

int WCGraphicStreamToYAML::Font(SGSFont &font) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(font.header.command);
    out << YAML::Key << "name" << YAML::Value
        << std::string(FixedFieldText(font.name, sizeof font.name - 1));
    out << YAML::Key << "size" << YAML::Value << font.size;
    if (!m_Compact || font.flags != 0)
        out << YAML::Key << "flags" << YAML::Value << font.flags;
    if (!m_Compact || !IsDefault(font.color)) {
        out << YAML::Key << "color" << YAML::Value;
        EmitToYaml(font.color);
    }
    EndRecord();
    return 0;
}

void WCGraphicStreamToYAML::EmitPayload(const SGSData &data) {
    YAML::Emitter &out = *m_Emitter;
    const void *payload = GetDataPayload(data);
    if (payload == nullptr)
        return;
    out << YAML::Key << "the_data" << YAML::Value;
    const std::int32_t count = data.num_elements;
    switch (data.type) {
    case eGSTypeChar: out << std::string(GetDataText(data)); break;
    case eGSTypeInt8: EmitElements<std::int8_t>(out, payload, count); break;
    case eGSTypeUInt8: EmitElements<std::uint8_t>(out, payload, count); break;
    case eGSTypeInt16: EmitElements<std::int16_t>(out, payload, count); break;
    case eGSTypeInt32: EmitElements<std::int32_t>(out, payload, count); break;
    case eGSTypeFloat: EmitElements<float>(out, payload, count); break;
    case eGSTypeRect: {
        out << YAML::Flow << YAML::BeginSeq;
        const auto *bytes = static_cast<const unsigned char *>(payload);
        for (std::int32_t i = 0; i < count; ++i) {
            SGSRect rect;
            std::memcpy(&rect, bytes + static_cast<std::size_t>(i) * sizeof rect, sizeof rect);
            EmitToYaml(rect, false);
        }
        out << YAML::EndSeq;
        break;
    }
    default: out << "unknown data type"; break;
    }
}

int WCGraphicStreamToYAML::Data(SGSData &data) {
    YAML::Emitter &out = *m_Emitter;
    BeginRecord(data.header.command);
    out << YAML::Key << "type" << YAML::Value << GraphicStreamCommandToText(data.type);
    out << YAML::Key << "purpose" << YAML::Value << GraphicStreamCommandToText(data.purpose);
    out << YAML::Key << "num_elements" << YAML::Value << data.num_elements;
    EmitPayload(data);
    EndRecord();
    return 0;
}

int WCGraphicStreamToYAML::Ignore(int) {
    // Ignored records have no entry, but they do use up their checksum.
    skip_checksum();
    return 0;
}

int WCGraphicStreamToYAML::Unknown(int command) {
    BeginRecord(command);
    if (const SGSCommandHeader *record = GetCurrentRecord())
        *m_Emitter << YAML::Key << "size" << YAML::Value << record->size;
    EndRecord();
    return 0;
}

} // namespace miGS
MIREL_NAMESPACE_END
