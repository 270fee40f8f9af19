#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WCPoint2D.h"
#include "core/WTErrors.h"
#include "core/WURect.h"
#include "files/WCStPath.h"
#include "graphic_stream/GraphicStreamDefs.h"
#include "graphic_stream/WCStResContainerGraphicStream.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// The walker of a graphic stream. It moves from record to record by each record's size and calls
// one virtual operation per record; painters and exporters derive from it and override what they
// draw. It keeps what drawing needs between records: a stack of frame states (font, frame,
// absolute offset, clips), the latest data record of each purpose, the stream's name and the base
// folder of its resources.
//
// Every record is checked against the buffer before it is dispatched: a record that does not fit,
// is shorter than its layout, has a size that is zero, negative or not a multiple of 4, or a data
// payload beyond its record, stops the walk with kGSErrBadRecordSize; an illegal command stops it
// with kGSErrIllegalCommand. A code an operation throws as int ends the walk with that code, an
// exception of an override ends it with eExceptionErr (eMemOutOfMemory when memory ran out);
// nothing is thrown out of a walk. The buffer must start at a 4-byte boundary, which every memory
// object and heap block does.
//
// Each resources-folder record makes the folder's container the one of the stream (and of its
// frames): GetImageResource takes images by number from it. Containers stay with the engine from
// walk to walk while its streams name them, and the ones the last stream did not name are closed
// at the end of a walk.
//
// DataPtr records carry a pointer of the writing process. The engine follows such pointers only
// after FollowDataPointers(true), which a painter of streams written in its own process sets; for
// a stream from a file or another process their payload reads as absent.
//
// Life cycle: construct, then run any number of walks; each walk starts from a clean frame stack.
// One engine is used by one thread at a time. [main-thread] in the GUI, [any-thread] otherwise.
class WCGraphicStreamEngineBase {
public:
    // One nesting level of frames.
    struct WSFrameState {
        SGSFont m_Font;
        SGSFrame m_Frame;
        // Sum of the x, y of all enclosing frames and this one.
        std::int64_t m_AbsoluteX = 0;
        std::int64_t m_AbsoluteY = 0;
        std::vector<SGSRect> m_ClipRects;
        WCFixedString<63> m_Name;
        // The resources of the innermost stream that named its folder; owned by the engine.
        WCStResContainerGraphicStream *m_ResContainer = nullptr;
    };

    // The outcome of one frame in ExecStreamWithFrameChecksums.
    struct WSFrameChecksumMismatch {
        std::uint64_t m_StreamOffset = 0;
        std::uint64_t m_FrameIndex = 0;
        std::int64_t m_Owner = 0;
        std::uint64_t m_Expected = 0; // 0 when the expected list was too short
        std::uint64_t m_Actual = 0;
    };

    // Frames nested deeper than this are taken for a corrupt stream.
    static constexpr std::size_t kMaxFrameDepth = 1024;

    WCGraphicStreamEngineBase();
    virtual ~WCGraphicStreamEngineBase();
    WCGraphicStreamEngineBase(const WCGraphicStreamEngineBase &) = delete;
    WCGraphicStreamEngineBase &operator=(const WCGraphicStreamEngineBase &) = delete;

    // Walks the stream with a list of expected record checksums; the base ignores the list.
    virtual WTErr ExecStreamWithAllChecksums(char *stream, std::uint64_t length,
                                             const std::vector<std::uint64_t> &checksums);
    // Walks the stream computing a checksum per frame (the stream counts as frame 0) over all the
    // records it holds, nested frames included. `actual` receives them in the order the frames
    // open; each one that differs from the expected value at its index (or has none) is reported
    // in `mismatches`. A painter keeps `actual` to skip unchanged frames on the next walk.
    virtual WTErr ExecStreamWithFrameChecksums(char *stream, std::uint64_t length,
                                               const std::vector<std::uint64_t> &expected,
                                               std::vector<std::uint64_t> &actual,
                                               std::vector<WSFrameChecksumMismatch> &mismatches);
    virtual void SetWindowRect(const WURect<short> &rect);
    virtual int BeginStream(SGSStream &stream);
    virtual int EndStream(SGSCommandHeader &header);
    virtual int BeginFrame(SGSFrame &frame);
    virtual int EndFrame(SGSCommandHeader &header);
    virtual int RotateFrame(SGSFrameRotate &rotate);
    virtual int DrawOldStyle(SGSCommandHeader &header);
    // The three deprecated image records become an SGSDrawImage passed to DrawImage.
    virtual int DrawPNGDeprecated(SGSDrawPNGDeprecated &image);
    virtual int DrawPNGClippedDeprecated(SGSDrawPNGDeprecated &image);
    virtual int DrawPNGScaledDeprecated(SGSDrawPNGDeprecated &image);
    virtual int DrawImage(SGSDrawImage &image);
    virtual int DrawImageMultipleClips(SGSDrawImageMultipleClips &image);
    virtual int DrawTheText(SGSDrawText &text);
    virtual int DrawOval(SGSDrawOval &oval);
    virtual int DrawVertices(SGSDrawVertices &vertices);
    virtual int ClipVertices(SGSDrawVertices &vertices);
    virtual int ClipRect(SGSClipRect &clip);
    virtual int ClipMultipleRects(SGSClipMultipleRects &clip);
    // The base keeps the folder text (see GetResourcesBaseURL), finds or makes the folder's
    // container and counts a use of it.
    virtual int ResourcesBaseURL(SGSData &data);
    // Closes the containers the current stream did not use; called at the end of every walk.
    virtual void CloseRedundantResContainers();
    virtual int Remark(SGSData &data);
    virtual int MetaData(SGSData &data);
    // Called after the font has become the current font of the innermost frame.
    virtual int Font(SGSFont &font);
    // Called for every data record that is not a remark, metadata or resources folder, after it
    // has become the latest of its purpose.
    virtual int Data(SGSData &data);
    virtual int Ignore(int command);
    virtual int Illegal(int command);
    virtual int Unknown(int command);
    virtual void RegisterBeginStream(SGSStream &stream);
    virtual void RegisterEndStream(SGSCommandHeader &header);
    virtual void RegisterBeginFrame(SGSFrame &frame);
    virtual void RegisterEndFrame(SGSCommandHeader &header);
    virtual void ResetResContainersCount();
    // Makes the container of a folder named by a stream; a painter may return its own kind.
    virtual std::unique_ptr<WCStResContainerGraphicStream>
    NewResContainerData(const FM::WCStPath &path);
    virtual int BeforeExceStream(char *stream);
    virtual int AfterExceStream(char *stream);

    // Walks `length` bytes of stream. Returns the result of the last operation, or the fault.
    WTErr ExecStream(char *stream, std::uint64_t length);
    // Walks a stream whose length is not known, up to its closing record. It must begin with a
    // stream or frame record, and each record must have exactly the size of its command (a data
    // record its padded payload, a command this walk does not know at most
    // kMaxUnknownRecordSize): any other size stops the walk with kGSErrBadRecordSize before it
    // reads past that record. A stream that lacks its closing record cannot be told from one
    // that goes on, so it needs the form with a length.
    WTErr ExecStream(char *stream);
    static constexpr std::uint64_t kMaxUnknownRecordSize = 1024;

    // Walks the stream and lists the checksum of each record except the end records, in order:
    // the values an exporter's ExecStreamWithAllChecksums expects.
    static WTErr CollectRecordChecksums(char *stream, std::uint64_t length,
                                        std::vector<std::uint64_t> &checksums);
    // The drawable size of a stream (w, h of its first record) without walking it.
    static WTErr GetStreamFrameSize(const char *stream, std::uint64_t length, SGSSize &size);
    static void GetStreamFrameSize(const char *stream, SGSSize &size);

    void FollowDataPointers(bool follow) noexcept { m_FollowDataPointers = follow; }
    bool FollowsDataPointers() const noexcept { return m_FollowDataPointers; }
    void SetScalingFactor(double factor) noexcept { m_ScalingFactor = factor; }
    double GetScalingFactor() const noexcept { return m_ScalingFactor; }
    const WURect<short> &GetWindowRect() const noexcept { return m_WindowRect; }

    // The container of the innermost stream or frame whose stream named a folder, or null.
    WCStResContainerGraphicStream *GetResContainer() const noexcept;
    // An image of that container by resource number, loaded once and kept while the container
    // is; eRMContainerNotFound when no folder was named.
    int GetImageResource(std::int32_t resID, WTResourceType *&outResource);
    std::size_t GetNumResContainers() const noexcept { return m_ResContainers.size(); }

    // The font of the innermost frame (the default font outside any frame).
    const SGSFont &GetFont() const noexcept;
    // The data record last seen with that purpose in this walk, or null.
    SGSData *GetLatestDataOfPurpose(std::int32_t purpose) const noexcept;
    void SetLatestData(SGSData *data);
    // The later of the latest 2-D and 3-D vertex records, with its dimension, or null: the
    // vertices a draw record uses.
    SGSData *GetLatestVertexData(std::size_t &dimensions) const noexcept;
    // The x and y of each vertex of a vertex record of 16-bit integers or floats, a third
    // coordinate skipped. Read in place and unaligned: valid while the stream is.
    class WCVertexPoints {
    public:
        std::size_t size() const noexcept { return m_Count; }
        WCPoint2D<float> operator[](std::size_t index) const noexcept;

    private:
        friend class WCGraphicStreamEngineBase;
        const unsigned char *m_Bytes = nullptr;
        std::int32_t m_Type = 0;
        std::size_t m_Dimensions = 2;
        std::size_t m_Count = 0;
    };
    // The vertices a draw record uses; false when there are none to read or their elements are
    // of another type.
    bool GetLatestVertexPoints(WCVertexPoints &outPoints) const noexcept;
    // Where a data record's payload is: behind it, through its pointer when pointers are
    // followed, or null.
    const void *GetDataPayload(const SGSData &data) const noexcept;
    // Payload bytes of a data record: element count times element size.
    static std::uint64_t GetDataPayloadSize(const SGSData &data) noexcept;
    // The text of a "char" data record, empty for anything else.
    std::string_view GetDataText(const SGSData &data) const noexcept;

    std::uint64_t GetExecutionCount() const noexcept { return m_ExecutionCount; }
    std::uint64_t GetRecordCount() const noexcept { return m_RecordCount; }
    std::uint64_t GetCurrentRecordOffset() const noexcept { return m_CurrentRecordOffset; }
    // The record being dispatched, checked against the buffer; null outside a walk.
    const SGSCommandHeader *GetCurrentRecord() const noexcept { return m_CurrentRecord; }
    std::chrono::steady_clock::duration GetLastRunDuration() const noexcept {
        return m_EndTime - m_StartTime;
    }
    const WCFixedString<63> &GetStreamName() const noexcept { return m_StreamName; }
    const SGSStream &GetStream() const noexcept { return m_Stream; }
    const WCFixedString<1023> &GetResourcesBaseURL() const noexcept { return m_ResourcesBaseURL; }
    const std::vector<WSFrameState> &GetFrameStack() const noexcept { return m_FrameStack; }
    // The innermost frame state, or null outside any frame.
    const WSFrameState *GetTopFrameState() const noexcept;
    // The factors from a vertex record's units to the frame's pixels: its scale, and with a
    // logical size, that size stretched over the innermost frame.
    void GetVertexScale(const SGSDrawVertices &vertices, double &outX, double &outY) const noexcept;

    // Scratch arrays for converting vertices, reused from walk to walk: each call of a walk hands
    // out the next one, resized to `length`.
    float *GetNextAvailableFloatArrayWithLength(std::size_t length);
    std::int16_t *GetNextAvailableInt16ArrayWithLength(std::size_t length);
    std::uint16_t *GetNextAvailableUint16ArrayWithLength(std::size_t length);

    // A bounded view of a zero-padded name field that may lack its terminating zero.
    static std::string_view FixedFieldText(const char *field, std::size_t capacity) noexcept;

private:
    struct WSLatestData {
        std::int32_t m_Purpose;
        SGSData *m_Data;
    };

    WTErr Walk(char *stream, std::uint64_t length);
    int Dispatch(SGSCommandHeader &header, std::uint64_t available);
    void CheckRecord(const SGSCommandHeader &header, std::uint64_t available) const;
    static std::uint64_t ExactRecordSize(const SGSCommandHeader &header);
    void PushFrameState(const SGSFrame &frame);
    void ResetWalkState();
    void FoldFrameChecksum(const SGSCommandHeader &header);

    std::uint64_t m_ExecutionCount = 0;
    bool m_WithoutLength = false;
    std::chrono::steady_clock::time_point m_StartTime{};
    std::chrono::steady_clock::time_point m_EndTime{};
    WURect<short> m_WindowRect{};
    double m_ScalingFactor = 1.0;
    std::uint64_t m_RecordCount = 0;
    std::uint64_t m_CurrentRecordOffset = 0;
    const SGSCommandHeader *m_CurrentRecord = nullptr;
    std::vector<WSLatestData> m_LatestData;
    std::vector<WSFrameState> m_FrameStack;
    WCFixedString<63> m_StreamName;
    SGSStream m_Stream;
    WCFixedString<1023> m_ResourcesBaseURL;
    // By folder text; std::less<> finds a folder by the record's text without a copy.
    std::map<std::string, std::unique_ptr<WCStResContainerGraphicStream>, std::less<>>
        m_ResContainers;
    // The container named by a record outside any stream.
    WCStResContainerGraphicStream *m_LooseResContainer = nullptr;
    std::vector<std::vector<float>> m_FloatArrays;
    std::vector<std::vector<std::int16_t>> m_Int16Arrays;
    std::vector<std::vector<std::uint16_t>> m_Uint16Arrays;
    std::size_t m_NextFloatArray = 0;
    std::size_t m_NextInt16Array = 0;
    std::size_t m_NextUint16Array = 0;
    bool m_FollowDataPointers = false;
    bool m_RunFlag = false;

    // Only during CollectRecordChecksums and ExecStreamWithFrameChecksums.
    std::vector<std::uint64_t> *m_RecordChecksums = nullptr;
    struct WSOpenFrameChecksum {
        std::uint64_t m_Index;
        std::uint64_t m_Offset;
        std::int64_t m_Owner;
        std::uint64_t m_Hash;
    };
    std::vector<WSOpenFrameChecksum> *m_OpenFrameChecksums = nullptr;
    std::vector<std::uint64_t> *m_FrameChecksums = nullptr;
    const std::vector<std::uint64_t> *m_ExpectedFrameChecksums = nullptr;
    std::vector<WSFrameChecksumMismatch> *m_FrameMismatches = nullptr;
};

} // namespace miGS
MIREL_NAMESPACE_END
