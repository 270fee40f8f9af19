#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/TBitVector.h"
#include "core/WCPoint2D.h"
#include "core/WCRGBAColor.h"
#include "core/WCStMemObj.h"
#include "core/WURect.h"
#include "graphic_stream/GraphicStreamDefs.h"

MIREL_NAMESPACE_BEGIN
namespace miGS {

// Appends graphic stream records to a memory object. Every control and graph draws through one:
// raw records copied byte for byte, data records inline (DataHere) or by pointer (DataPtr), and
// composite operations that write a data record and the command that uses it. Records are built
// in place at the end of the memory object, which grows geometrically, so writing allocates only
// when the object has to grow.
//
// Data form: with a threshold t of 0 every payload goes inline; with t above 0 a payload of at
// least t bytes is written as a pointer, valid only while the pointed-to data live in this
// process. A stream that leaves the process is written with threshold 0.
//
// A memory object that cannot grow (or would pass the size limit) drops the record whole, and the
// writer counts it (GetNumDroppedRecords), so a frame that misses records is detectable; the
// frame and stream guards report their part. Every operation returns the writer for chaining.
// [main-thread] in the GUI; one writer per thread otherwise.
class WCGraphicStreamBinaryWriter {
public:
    using ImageFlags = TBitVector<unsigned int>;

    // Writes into the caller's memory object.
    explicit WCGraphicStreamBinaryWriter(Utils::WCStMemObj &target, std::uint64_t threshold = 0);
    // Writes into a memory object of its own.
    explicit WCGraphicStreamBinaryWriter(std::uint64_t threshold = 0);
    WCGraphicStreamBinaryWriter(const WCGraphicStreamBinaryWriter &) = delete;
    WCGraphicStreamBinaryWriter &operator=(const WCGraphicStreamBinaryWriter &) = delete;

    Utils::WCStMemObj &GetMemObj() noexcept { return *m_Target; }
    char *GetStreamPtr() noexcept { return static_cast<char *>(m_Target->GetPtr()); }
    std::uint64_t GetStreamSize() const noexcept { return m_Target->GetSize(); }

    // Setup.
    WCGraphicStreamBinaryWriter &SetDataPtrThreshold(std::uint64_t threshold) noexcept;
    std::uint64_t GetDataPtrThreshold() const noexcept { return m_DataPtrThreshold; }
    WCGraphicStreamBinaryWriter &ActivateRemarks(bool active) noexcept;
    // Spelled so since the first version of the interface.
    WCGraphicStreamBinaryWriter &ActivateMeatData(bool active) noexcept;
    bool RemarksActive() const noexcept { return m_RemarksActive; }
    bool MetaDataActive() const noexcept { return m_MetaDataActive; }
    WCGraphicStreamBinaryWriter &ClearStream() noexcept;
    bool WillBeWrittenAsDataHere(std::uint64_t bytes) const noexcept {
        return !WillBeWrittenAsDataPtr(bytes);
    }
    bool WillBeWrittenAsDataPtr(std::uint64_t bytes) const noexcept {
        return m_DataPtrThreshold != 0 && bytes >= m_DataPtrThreshold;
    }

    // Records not written since the stream began (OpenStream on an empty stream) or was cleared:
    // the memory object could not grow so far, or the record was refused as too large.
    std::uint64_t GetNumDroppedRecords() const noexcept { return m_DroppedRecords; }
    // The memory object is not grown past `bytes`: a record that would need more is dropped. One
    // that is already larger is filled up to its capacity. No limit by default.
    WCGraphicStreamBinaryWriter &SetSizeLimit(std::uint64_t bytes) noexcept;
    std::uint64_t GetSizeLimit() const noexcept { return m_SizeLimit; }

    // Frames opened through WCStGSFrameStructWriter, and their bytes.
    std::uint64_t GetNumFramesOpened() const noexcept { return m_FramesOpened; }
    std::uint64_t GetFramesBytes() const noexcept { return m_FramesBytes; }
    void CountOpenedFrame(std::uint64_t bytes) noexcept {
        ++m_FramesOpened;
        m_FramesBytes += bytes;
    }

    // Raw records, copied byte for byte, except that the last byte of a stream or font name is
    // always zero and a stream's length word is 0 (the stream guard sets it at the close).
    WCGraphicStreamBinaryWriter &OpenStream(const SGSStream &stream);
    // The three records of every frame are inline, for the frame guard.
    WCGraphicStreamBinaryWriter &OpenFrame(const SGSFrame &frame) {
        AppendRecord(frame);
        return *this;
    }
    WCGraphicStreamBinaryWriter &CloseFrame(std::int32_t command) { return CommandHeader(command); }
    WCGraphicStreamBinaryWriter &CommandHeader(std::int32_t command) {
        if (char *place = Reserve(sizeof(SGSCommandHeader)))
            Put(place, 0, SGSCommandHeader{command, sizeof(SGSCommandHeader)});
        return *this;
    }
    WCGraphicStreamBinaryWriter &RotateFrame(const SGSFrameRotate &rotate);
    WCGraphicStreamBinaryWriter &Font(const SGSFont &font);
    WCGraphicStreamBinaryWriter &DrawVertices(const SGSDrawVertices &vertices);
    WCGraphicStreamBinaryWriter &ClipVertices(const SGSDrawVertices &vertices);
    WCGraphicStreamBinaryWriter &DrawOval(const SGSDrawOval &oval);
    WCGraphicStreamBinaryWriter &DrawPNG(const SGSDrawImage &image);
    WCGraphicStreamBinaryWriter &DrawPNGMultipleClips(const SGSDrawImageMultipleClips &image);
    WCGraphicStreamBinaryWriter &DrawTheText(const SGSDrawText &text);

    // Data, in the form the threshold chooses.
    WCGraphicStreamBinaryWriter &Data(const signed char *data, std::size_t count,
                                      std::int32_t purpose);
    WCGraphicStreamBinaryWriter &Data(const unsigned char *data, std::size_t count,
                                      std::int32_t purpose);
    WCGraphicStreamBinaryWriter &Data(const short *data, std::size_t count, std::int32_t purpose);
    WCGraphicStreamBinaryWriter &Data(const int *data, std::size_t count, std::int32_t purpose);
    WCGraphicStreamBinaryWriter &Data(const float *data, std::size_t count, std::int32_t purpose);
    // Points count two elements each.
    WCGraphicStreamBinaryWriter &Data(const WCPoint2D<short> *points, std::size_t count,
                                      std::int32_t purpose);
    WCGraphicStreamBinaryWriter &Data(const WCPoint2D<float> *points, std::size_t count,
                                      std::int32_t purpose);

    // Data forced inline.
    WCGraphicStreamBinaryWriter &DataHere(const signed char *data, std::size_t count,
                                          std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataHere(const unsigned char *data, std::size_t count,
                                          std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataHere(const short *data, std::size_t count,
                                          std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataHere(const int *data, std::size_t count, std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataHere(const float *data, std::size_t count,
                                          std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataHere(const WCPoint2D<short> *points, std::size_t count,
                                          std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataHere(const WCPoint2D<float> *points, std::size_t count,
                                          std::int32_t purpose);
    // `count` elements of `type`.
    WCGraphicStreamBinaryWriter &DataHere(std::int32_t purpose, std::int32_t type, const void *data,
                                          std::size_t count);
    // A prepared header (its size kept as given) and the payload its count and type describe.
    WCGraphicStreamBinaryWriter &DataHere(const SGSData &header, const void *payload);

    // Data forced by pointer.
    WCGraphicStreamBinaryWriter &DataPtr(const signed char *data, std::size_t count,
                                         std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(const unsigned char *data, std::size_t count,
                                         std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(const short *data, std::size_t count,
                                         std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(const int *data, std::size_t count, std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(const float *data, std::size_t count,
                                         std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(const WCPoint2D<short> *points, std::size_t count,
                                         std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(const WCPoint2D<float> *points, std::size_t count,
                                         std::int32_t purpose);
    WCGraphicStreamBinaryWriter &DataPtr(std::int32_t purpose, std::int32_t type, const void *data,
                                         std::size_t count);
    WCGraphicStreamBinaryWriter &DataPtr(const SGSData &header);

    // A zero-terminated text, type "char", purpose "text"; its length picks the form.
    WCGraphicStreamBinaryWriter &DataStr(const char *text);
    WCGraphicStreamBinaryWriter &DataHereStr(const char *text);
    WCGraphicStreamBinaryWriter &DataPtrStr(const char *text);

    // An inline text of any purpose.
    WCGraphicStreamBinaryWriter &SpecialText(std::int32_t purpose, const char *text);
    // Written only while remarks are active (off by default).
    WCGraphicStreamBinaryWriter &Remark(const char *text);
    // Written only while metadata is active (on by default).
    WCGraphicStreamBinaryWriter &MetaData(const char *text);

    // Images by resource number (nothing for -1) or by path (ResID -100, the path in a text
    // record just before). Draw rectangles give position and, when scaled, size; clips are
    // relative to the frame.
    // The two forms of most controls' pictures are inline.
    WCGraphicStreamBinaryWriter &DrawPNG(short resID, ImageFlags flags = ImageFlags()) {
        return DrawImageRecord(resID, SGSRect{}, SGSRect{}, flags);
    }
    WCGraphicStreamBinaryWriter &DrawPNG(const char *path);
    WCGraphicStreamBinaryWriter &DrawPNGAtPosition(short resID, const WCPoint2D<short> &position,
                                                   ImageFlags flags = ImageFlags()) {
        return DrawImageRecord(resID, SGSRect{{position.x, position.y}, {}}, SGSRect{}, flags);
    }
    WCGraphicStreamBinaryWriter &DrawPNGAtPosition(const char *path,
                                                   const WCPoint2D<short> &position);
    WCGraphicStreamBinaryWriter &DrawPNGAtPositionClipped(short resID,
                                                          const WCPoint2D<short> &position,
                                                          const WURect<short> &clip,
                                                          ImageFlags flags = ImageFlags());
    WCGraphicStreamBinaryWriter &DrawPNGAtPositionClipped(const char *path,
                                                          const WCPoint2D<short> &position,
                                                          const WURect<short> &clip);
    WCGraphicStreamBinaryWriter &DrawPNGScaled(short resID, const WURect<short> &rect,
                                               ImageFlags flags = ImageFlags());
    WCGraphicStreamBinaryWriter &DrawPNGScaled(const char *path, const WURect<short> &rect);
    WCGraphicStreamBinaryWriter &DrawPNGScaledAndClipped(short resID, const WURect<short> &rect,
                                                         const WURect<short> &clip,
                                                         ImageFlags flags = ImageFlags());
    WCGraphicStreamBinaryWriter &
    DrawPNGScaledAndClipped(const char *path, const WURect<short> &rect, const WURect<short> &clip);
    // No clip: DrawPNGAtPosition; one: DrawPNGAtPositionClipped; more: the clips as a data record
    // and an "mPNG".
    WCGraphicStreamBinaryWriter &
    DrawPNGAtPositionMultipleClips(short resID, const WCPoint2D<short> &position,
                                   const std::vector<WURect<short>> &clips,
                                   ImageFlags flags = ImageFlags());

    // Shapes: one data record of points and one SGSDrawVertices. The short forms write "16in"
    // points, the float forms "flot". When the threshold lies between 1 and the points' byte
    // size the points go by pointer to a local of the operation, valid only until it returns;
    // so callers never set a threshold of 1 to 20.
    template <typename T>
    WCGraphicStreamBinaryWriter &DrawLine(const WCRGBAColor &color, const WCPoint2D<T> &from,
                                          const WCPoint2D<T> &to, float width = 1.0f,
                                          bool antialias = true, std::uint16_t pattern = 0xFFFF);
    // From the centre of the rectangle's top square to its rim at an angle; 0 is up, growing
    // clockwise.
    template <typename T>
    WCGraphicStreamBinaryWriter &DrawArcLine(const WCRGBAColor &color, double angleDegrees,
                                             const WURect<T> &rect, float width = 1.0f,
                                             bool antialias = true, std::uint16_t pattern = 0xFFFF);
    template <typename T>
    WCGraphicStreamBinaryWriter &DrawSolidRect(const WCRGBAColor &color, const WURect<T> &rect);
    // `flags` null means "NoAntialias".
    template <typename T>
    WCGraphicStreamBinaryWriter &DrawWireRect(const WCRGBAColor &color, const WURect<T> &rect,
                                              float width = 1.0f, std::uint16_t pattern = 0xFFFF,
                                              const std::uint32_t *flags = nullptr);
    template <typename T>
    WCGraphicStreamBinaryWriter &DrawXORRect(const WURect<T> &rect);

    // Clips.
    WCGraphicStreamBinaryWriter &ClipRect(const WURect<short> &rect);
    // Nothing for an empty list; otherwise the rectangles, moved by minus base's top-left, and a
    // "cRIM".
    WCGraphicStreamBinaryWriter &ClipMultipleRects(const std::vector<WURect<short>> &rects,
                                                   const WURect<short> &base);

    // Text. Font names are cut to 31 characters. Every control that shows a value writes a font
    // and a text, so both are inline while the records fit; growing is out of line.
    WCGraphicStreamBinaryWriter &Font(const char *name, std::int32_t size, const WCRGBAColor &color,
                                      std::uint32_t flags = 0) {
        const std::size_t length = NameLength(name);
        if (!Fits(sizeof(SGSFont))) [[unlikely]]
            return FontGrowing(name, length, size, color, flags);
        char *place = static_cast<char *>(m_Target->InPlaceAppendAndReserve(sizeof(SGSFont)));
        Put(place, offsetof(SGSFont, header), SGSFont{}.header);
        Put(place, offsetof(SGSFont, name), SGSFont{}.name);
        CopyBytes(place + offsetof(SGSFont, name), name, length);
        Put(place, offsetof(SGSFont, size), size);
        Put(place, offsetof(SGSFont, color),
            SGSRGBAColor{color.red, color.green, color.blue, color.alpha});
        Put(place, offsetof(SGSFont, flags), flags);
        return *this;
    }
    WCGraphicStreamBinaryWriter &DrawTheText(const char *text, std::int64_t owner,
                                             std::int32_t hAlign = eGSAlignHCenter,
                                             std::int32_t vAlign = eGSAlignVCenter) {
        // One scan gives the length for the copy, the fill and the record's size.
        const std::size_t length = text != nullptr ? std::strlen(text) : 0;
        const std::uint64_t textBytes = DataHereRecordBytes(length);
        // Both records in one reservation when they fit, which is every redraw but the first; the
        // limit on a text's length is checked on the way that writes them one by one.
        if (!Fits(textBytes + sizeof(SGSDrawText)) || length > kMaxPayloadBytes) [[unlikely]]
            return DrawTheTextGrowing(text, length, owner, hAlign, vAlign);
        char *place =
            static_cast<char *>(m_Target->InPlaceAppendAndReserve(textBytes + sizeof(SGSDrawText)));
        PutDataHere(place, textBytes, eGSPurposeText, eGSTypeChar, text, length, length);
        PutText(place + textBytes, owner, hAlign, vAlign);
        return *this;
    }
    // Only the "dTXT": the text is the last one written.
    WCGraphicStreamBinaryWriter &DrawTheText(std::int64_t owner,
                                             std::int32_t hAlign = eGSAlignHCenter,
                                             std::int32_t vAlign = eGSAlignVCenter) {
        if (char *place = Reserve(sizeof(SGSDrawText)))
            PutText(place, owner, hAlign, vAlign);
        return *this;
    }

private:
    // Builds its frame records in place.
    friend class WCStGSFrameStructWriter;

    // Stores one field of a record at its place in the stream, which need not be aligned. Records
    // are built this way rather than in a local copied over: the copy's wide loads of narrow
    // stores just made would wait for them.
    //
    // The fields go in as 32-bit words: stores of that type cannot alias the memory object's size,
    // capacity and block pointer, so the compiler keeps those in registers from one record to the
    // next instead of reading back, after every record, the size it has just stored.
    using StreamWord = std::uint32_t __attribute__((aligned(1)));
    static void PutWord(char *place, std::uint32_t word) noexcept {
        *reinterpret_cast<StreamWord *>(place) = word;
    }
    static std::uint32_t LoadWord(const char *from) noexcept {
        std::uint32_t word;
        std::memcpy(&word, from, sizeof word);
        return word;
    }
    template <typename T>
    static void Put(char *place, std::size_t offset, const T &value) noexcept {
        static_assert(sizeof(T) % sizeof(std::uint32_t) == 0, "records are made of 32-bit words");
        std::uint32_t words[sizeof(T) / sizeof(std::uint32_t)];
        std::memcpy(words, &value, sizeof value);
        for (std::size_t i = 0; i < sizeof(T) / sizeof(std::uint32_t); ++i)
            PutWord(place + offset + i * sizeof(std::uint32_t), words[i]);
    }
    // Whether `bytes` more fit the memory object without growing it: the one check of a record's
    // fast path.
    bool Fits(std::uint64_t bytes) const noexcept {
        return bytes <= m_Target->GetCapacity() - m_Target->GetSize();
    }
    // The place of `bytes` more at the end of the stream, or null, counted as a dropped record,
    // when the memory object cannot grow so far. Inline, so a record that fits costs one capacity
    // check and the stores that fill it.
    char *Reserve(std::uint64_t bytes) noexcept {
        if (Fits(bytes)) [[likely]]
            return static_cast<char *>(m_Target->InPlaceAppendAndReserve(bytes));
        const void *none = nullptr;
        return ReserveGrowing(bytes, none, none);
    }
    // The slow part of Reserve: grows the memory object within the size limit and appends. Growth
    // may move the block, so a source that lies inside the stream (a record copied from the
    // stream into itself) is pointed at its new place.
    char *ReserveGrowing(std::uint64_t bytes, const void *&source, const void *&other) noexcept;
    bool Grow(std::uint64_t bytes) noexcept;
    // Counts a record refused before any memory was asked for.
    WCGraphicStreamBinaryWriter &DropRecord() noexcept;
    // The place of the appended record, or null when the memory object could not grow.
    template <typename Record>
    char *AppendRecord(const Record &record) noexcept {
        if (Fits(sizeof(Record))) [[likely]] {
            char *place = static_cast<char *>(m_Target->InPlaceAppendAndReserve(sizeof(Record)));
            std::memcpy(place, &record, sizeof(Record));
            return place;
        }
        return AppendGrowing(&record, sizeof(Record));
    }
    char *AppendGrowing(const void *record, std::uint64_t bytes) noexcept;
    // A frame record of owner 0, built in place; null when it was dropped.
    char *AppendFrame(std::int32_t x, std::int32_t y, std::int32_t width,
                      std::int32_t height) noexcept {
        char *place = Reserve(sizeof(SGSFrame));
        if (place != nullptr) {
            Put(place, offsetof(SGSFrame, header), SGSFrame{}.header);
            Put(place, offsetof(SGSFrame, owner), std::int64_t{0});
            Put(place, offsetof(SGSFrame, rect), SGSRect{{x, y}, {width, height}});
        }
        return place;
    }
    // A DataHere record of `bytes` payload: the header as given, the payload (zeroes without a
    // source) and the fill that takes the stream to a multiple of 4.
    void AppendDataHere(const SGSData &header, const void *payload, std::uint64_t bytes) noexcept;
    void AppendDataHere(std::int32_t purpose, std::int32_t type, const void *payload,
                        std::size_t count, std::uint64_t elementBytes) noexcept;
    void AppendDataPtr(std::int32_t purpose, std::int32_t type, const void *payload,
                       std::size_t count) noexcept;
    // The bytes a DataHere record of `bytes` payload takes at the end of the stream, its fill
    // included.
    std::uint64_t DataHereRecordBytes(std::uint64_t bytes) const noexcept {
        // The fill aligns the stream, not the payload, so a stream a caller left off the grid of
        // 4 comes back to it.
        const std::uint64_t unpadded = m_Target->GetSize() + sizeof(SGSData) + bytes;
        return sizeof(SGSData) + bytes + ((0 - unpadded) & 3);
    }
    // The largest payload a DataHere record holds: its size word is a signed 32-bit count of the
    // header, the payload and the fill.
    static constexpr std::uint64_t kMaxPayloadBytes =
        static_cast<std::uint64_t>(INT32_MAX) - sizeof(SGSData) - 3;
    // The fill of a DataHere record, all four bytes of it, stored as one word.
    static constexpr std::uint32_t kPaddingWord = 0x5F5F5F5Fu;
    // Copies a payload into the stream. The short ones, texts and names of a few characters, are
    // copied inline as two overlapping words, which costs less than the call.
    static void CopyBytes(char *to, const void *from, std::uint64_t bytes) noexcept {
        const char *source = static_cast<const char *>(from);
        // A length known where the writer is inlined (a literal) is a row of fixed word stores,
        // the last one overlapping when the length is no multiple of 4.
        if (__builtin_constant_p(bytes) && bytes >= 4 && bytes <= 64) {
            for (std::uint64_t i = 0; i + 4 <= bytes; i += 4)
                PutWord(to + i, LoadWord(source + i));
            if (bytes % 4 != 0)
                PutWord(to + bytes - 4, LoadWord(source + bytes - 4));
            return;
        }
        // Where the source is a literal but its length is not known, the compiler would warn of
        // the word loads of branches that length never takes; the empty asm hides what it knows
        // of the source and costs no instruction.
        asm("" : "+r"(source));
        if (bytes >= 8 && bytes <= 16) {
            // Two overlapping pairs of words.
            const std::uint32_t w0 = LoadWord(source), w1 = LoadWord(source + 4);
            const std::uint32_t w2 = LoadWord(source + bytes - 8);
            const std::uint32_t w3 = LoadWord(source + bytes - 4);
            PutWord(to, w0);
            PutWord(to + 4, w1);
            PutWord(to + bytes - 8, w2);
            PutWord(to + bytes - 4, w3);
        } else if (bytes >= 4 && bytes < 8) {
            const std::uint32_t head = LoadWord(source), tail = LoadWord(source + bytes - 4);
            PutWord(to, head);
            PutWord(to + bytes - 4, tail);
        } else if (bytes != 0) {
            std::memcpy(to, source, bytes);
        }
    }
    // The body of a DataHere record in its reserved `recordBytes`: payload and fill. The fill goes
    // first, as one word at the very end; the header and the payload then cover whatever of it is
    // no padding.
    static void FillDataHere(char *place, std::uint64_t recordBytes, const void *payload,
                             std::uint64_t bytes) noexcept {
        Put(place, recordBytes - sizeof kPaddingWord, kPaddingWord);
        if (bytes != 0) {
            // Without a source the payload is zeroed rather than left undefined, so the record
            // still holds the bytes its count announces and a reader stays in step.
            if (payload != nullptr)
                CopyBytes(place + sizeof(SGSData), payload, bytes);
            else
                std::memset(place + sizeof(SGSData), 0, bytes);
        }
    }
    // Builds a DataHere record of `count` elements, `bytes` in all, in its reserved place.
    static void PutDataHere(char *place, std::uint64_t recordBytes, std::int32_t purpose,
                            std::int32_t type, const void *payload, std::size_t count,
                            std::uint64_t bytes) noexcept {
        FillDataHere(place, recordBytes, payload, bytes);
        const auto size = static_cast<std::int32_t>(sizeof(SGSData) + ((bytes + 3) & ~3ull));
        Put(place, offsetof(SGSData, header), SGSCommandHeader{eGSDataHere, size});
        Put(place, offsetof(SGSData, type), type);
        Put(place, offsetof(SGSData, purpose), purpose);
        Put(place, offsetof(SGSData, num_elements), static_cast<std::int32_t>(count));
        Put(place, offsetof(SGSData, data_ptr), std::uint64_t{0});
    }
    static void PutText(char *place, std::int64_t owner, std::int32_t hAlign,
                        std::int32_t vAlign) noexcept {
        Put(place, offsetof(SGSDrawText, header), SGSDrawText{}.header);
        Put(place, offsetof(SGSDrawText, owner), owner);
        Put(place, offsetof(SGSDrawText, hAlign), hAlign);
        Put(place, offsetof(SGSDrawText, vAlign), vAlign);
    }
    // A font name's length, cut to 31 characters so its last byte stays zero. The length of a
    // literal is known at compile time through strlen, which the compiler folds and strnlen not.
    static std::size_t NameLength(const char *name) noexcept {
        constexpr std::size_t kMaxName = sizeof(SGSFont::name) - 1;
        if (name == nullptr)
            return 0;
        if (__builtin_constant_p(std::strlen(name)))
            return std::strlen(name) < kMaxName ? std::strlen(name) : kMaxName;
        return strnlen(name, kMaxName);
    }
    // The cold paths of the inline Font and DrawTheText: the memory object has to grow, or the
    // text is too long for one record.
    WCGraphicStreamBinaryWriter &FontGrowing(const char *name, std::size_t length,
                                             std::int32_t size, const WCRGBAColor &color,
                                             std::uint32_t flags) noexcept;
    WCGraphicStreamBinaryWriter &DrawTheTextGrowing(const char *text, std::size_t length,
                                                    std::int64_t owner, std::int32_t hAlign,
                                                    std::int32_t vAlign) noexcept;
    template <typename T>
    WCGraphicStreamBinaryWriter &Vertices(const WCRGBAColor &color, const WCPoint2D<T> *points,
                                          std::size_t count, std::int32_t method,
                                          std::uint32_t flags, float width, std::uint16_t pattern);
    WCGraphicStreamBinaryWriter &DrawImageRecord(short resID, SGSRect drawRect, SGSRect clipRect,
                                                 ImageFlags flags) noexcept {
        if (resID == -1)
            return *this;
        if (char *place = Reserve(sizeof(SGSDrawImage))) {
            const SGSDrawImage blank;
            Put(place, offsetof(SGSDrawImage, header), blank.header);
            Put(place, offsetof(SGSDrawImage, ResID), static_cast<std::int32_t>(resID));
            Put(place, offsetof(SGSDrawImage, draw_rect), drawRect);
            Put(place, offsetof(SGSDrawImage, clip_rect), clipRect);
            Put(place, offsetof(SGSDrawImage, reserved), blank.reserved);
            Put(place, offsetof(SGSDrawImage, flags), flags.GetBits());
        }
        return *this;
    }
    WCGraphicStreamBinaryWriter &DrawImageRecordForPath(const char *path, SGSRect drawRect,
                                                        SGSRect clipRect);
    void AppendRects(const std::vector<WURect<short>> &rects, short dx, short dy);

    std::uint64_t m_FramesOpened = 0;
    std::uint64_t m_FramesBytes = 0;
    Utils::WCStMemObj *m_Target;
    bool m_RemarksActive = false;
    bool m_MetaDataActive = true;
    std::uint64_t m_DataPtrThreshold = 0;
    Utils::WCStMemObj m_OwnMemObj;
    std::uint64_t m_DroppedRecords = 0;
    std::uint64_t m_SizeLimit = ~std::uint64_t(0);
};

} // namespace miGS
MIREL_NAMESPACE_END
