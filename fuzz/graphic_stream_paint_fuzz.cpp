// Paints arbitrary bytes as a graphic stream with the cairo painter: onto a small surface of the
// caller, and onto the painter's own when the stream asks for a small one. A walk may only end
// well, with one of the two stream faults, or with a drawing code the painter also reports as its
// first; a cairo context left in its error state, a crash or a read outside the buffer is a
// finding. The same bytes also go to the painter's image decoder, as a picture of a bundle would.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <cairo.h>

#include "graphic_stream/GSCairoImageDecoder.h"
#include "graphic_stream/WCGraphicStreamToCairo.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

void CheckResult(WTErr result, const WCGraphicStreamToCairo &painter) {
    if (painter.GetFirstDrawError() == eGMGenericErr)
        std::abort();
    const bool fault = result == kGSErrBadRecordSize || result == kGSErrIllegalCommand ||
                       result == eOutOfRangeNumber;
    if (result != eNoErr && !fault && painter.GetFirstDrawError() == eNoErr)
        std::abort();
}

} // namespace

// Font names from the stream reach the font library, which keeps what it matched for the life of
// the process; the leak check is told so, and sees only what the painter itself keeps.
extern "C" const char *__lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    // Records are read in place: a heap block of exactly the input's length, so that a read past
    // its end is caught.
    auto *buffer = static_cast<char *>(std::malloc(size != 0 ? size : 1));
    if (size != 0)
        std::memcpy(buffer, data, size);
    std::vector<char> exact(buffer, buffer + size);
    char *stream = size != 0 ? buffer : nullptr;

    cairo_surface_t *target = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 48, 32);
    {
        WCGraphicStreamToCairo painter(target);
        CheckResult(painter.ExecStream(stream, size), painter);
        // A second walk over the kept picture reuses what the first decoded and made.
        CheckResult(painter.ExecStream(stream, size), painter);
    }
    cairo_surface_destroy(target);

    // The painter's own surface, for streams of a size that is quick to paint.
    SGSSize frameSize;
    if (WCGraphicStreamEngineBase::GetStreamFrameSize(stream, size, frameSize) == eNoErr &&
        std::int64_t(frameSize.width) * frameSize.height <= 128 * 128) {
        WCGraphicStreamToCairo painter;
        CheckResult(painter.ExecStream(stream, size), painter);
    }

    WTErr decoded = eNoErr;
    if (cairo_surface_t *image = GSCairoImageDecoder::Decode(buffer, size, decoded)) {
        if (decoded != eNoErr || cairo_surface_status(image) != CAIRO_STATUS_SUCCESS)
            std::abort();
        cairo_surface_destroy(image);
    } else if (decoded == eNoErr) {
        std::abort();
    }

    // Neither painting nor decoding writes into the bytes.
    if (size != 0 && std::memcmp(exact.data(), buffer, size) != 0)
        std::abort();
    std::free(buffer);
    return 0;
}
