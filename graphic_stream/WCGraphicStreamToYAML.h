#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "core/MirelNamespace.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"

namespace YAML {
class Emitter;
}

MIREL_NAMESPACE_BEGIN
namespace miGS {

// Turns a stream into a YAML text, one map per record, so two runs can be compared as text and a
// stream can be read by a person. The document is a sequence; a stream or frame is a map of its
// record ("stream" or "frame") and its "contents", a sequence of what it holds. The compact form
// leaves out fields that hold their default value.
//
// With ExecStreamWithAllChecksums each record (end records aside) also shows the next of a list
// of checksums computed on the writing side, and the walk reports how many it used, skipped or
// missed, so a writer and a reader that are out of step show at once.
// [any-thread]: one exporter per thread.
class WCGraphicStreamToYAML : public WCGraphicStreamEngineBase {
public:
    explicit WCGraphicStreamToYAML(bool compact = true);
    ~WCGraphicStreamToYAML() override;

    // The YAML of the last walk; after a fault, what was written up to it.
    std::string GetYamlStr() const;
    // Where the counters and "not enough checksums" go; standard output unless changed.
    void SetReportStream(std::ostream &report) noexcept { m_Report = &report; }

    WTErr ExecStreamWithAllChecksums(char *stream, std::uint64_t length,
                                     const std::vector<std::uint64_t> &checksums) override;

    std::uint64_t GetExecCommandsCount() const noexcept { return m_ExecCommands_count; }
    std::uint64_t GetCountEmits() const noexcept { return m_count_emits; }
    std::uint64_t GetCountSkips() const noexcept { return m_count_skips; }
    std::uint64_t GetCountMissing() const noexcept { return m_count_missing; }
    std::uint64_t GetCountEndFrames() const noexcept { return m_count_end_frames; }

    int BeginStream(SGSStream &stream) override;
    int EndStream(SGSCommandHeader &header) override;
    int BeginFrame(SGSFrame &frame) override;
    int EndFrame(SGSCommandHeader &header) override;
    int RotateFrame(SGSFrameRotate &rotate) override;
    int DrawOldStyle(SGSCommandHeader &header) override;
    int DrawImage(SGSDrawImage &image) override;
    int DrawImageMultipleClips(SGSDrawImageMultipleClips &image) override;
    int DrawTheText(SGSDrawText &text) override;
    int DrawOval(SGSDrawOval &oval) override;
    int DrawVertices(SGSDrawVertices &vertices) override;
    int ClipVertices(SGSDrawVertices &vertices) override;
    int ClipRect(SGSClipRect &clip) override;
    int ClipMultipleRects(SGSClipMultipleRects &clip) override;
    int ResourcesBaseURL(SGSData &data) override;
    int Remark(SGSData &data) override;
    int MetaData(SGSData &data) override;
    int Font(SGSFont &font) override;
    int Data(SGSData &data) override;
    int Ignore(int command) override;
    int Unknown(int command) override;
    int BeforeExceStream(char *stream) override;
    int AfterExceStream(char *stream) override;

protected:
    // Shows the next expected checksum under "checksum" in checksum walks.
    void emit_checksum();
    // Uses up the next expected checksum without showing it.
    void skip_checksum();
    bool has_checksums() const noexcept;
    std::uint64_t next_checksum() noexcept;

    YAML::Emitter &Emitter() noexcept { return *m_Emitter; }

private:
    void BeginRecord(std::int32_t command);
    void EndRecord();
    void EmitGSSpecialTextToYAML(std::int32_t command, SGSData &data);
    void EmitToYaml(const SGSFrame &frame);
    void EmitToYaml(const SGSRect &rect, bool compact);
    void EmitToYaml(const SGSSize &size);
    void EmitToYaml(const SGSScale &scale);
    void EmitToYaml(const SGSRGBAColor &color);
    void EmitVertices(SGSDrawVertices &vertices);
    void EmitPayload(const SGSData &data);
    void CountUse(bool show);

    std::unique_ptr<YAML::Emitter> m_Emitter;
    bool m_Compact;
    std::vector<std::uint64_t> m_Checksums;
    std::size_t m_ChecksumPosition = 0;
    bool m_ChecksumWalk = false;
    std::uint64_t m_ExecCommands_count = 0;
    std::uint64_t m_count_emits = 0;
    std::uint64_t m_count_skips = 0;
    std::uint64_t m_count_missing = 0;
    std::uint64_t m_count_end_frames = 0;
    std::ostream *m_Report;
};

} // namespace miGS
MIREL_NAMESPACE_END
