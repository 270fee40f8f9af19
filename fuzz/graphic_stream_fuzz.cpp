// Walks arbitrary bytes as a graphic stream with the plain engine, the frame checksum walk, the
// YAML and SVG exporters and the graph extractor. A walk may only end well or with one of the two
// stream faults; anything else, and any read outside the buffer, is a finding.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <vector>

#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGSGraphExtractor.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"
#include "graphic_stream/WCGraphicStreamToSVG.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

class WCNullBuffer : public std::streambuf {
protected:
    int overflow(int c) override { return c; }
};

void CheckResult(WTErr result) {
    if (result != eNoErr && result != kGSErrBadRecordSize && result != kGSErrIllegalCommand)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    // The engine reads records in place, so the bytes go into a heap block of their own (aligned
    // as every heap block is), exactly as long as the input so that a read past the end is caught.
    auto *buffer = static_cast<char *>(std::malloc(size != 0 ? size : 1));
    if (size != 0)
        std::memcpy(buffer, data, size);
    std::vector<char> exact(buffer, buffer + size);
    char *stream = size != 0 ? buffer : nullptr;

    WCGraphicStreamEngineBase engine;
    CheckResult(engine.ExecStream(stream, size));

    std::vector<std::uint64_t> expected(3, 0), actual;
    std::vector<WCGraphicStreamEngineBase::WSFrameChecksumMismatch> mismatches;
    CheckResult(engine.ExecStreamWithFrameChecksums(stream, size, expected, actual, mismatches));

    WCNullBuffer nothing;
    std::ostream quiet(&nothing);
    WCGraphicStreamToYAML compact(true);
    compact.SetReportStream(quiet);
    CheckResult(compact.ExecStream(stream, size));
    (void)compact.GetYamlStr();

    std::vector<std::uint64_t> checksums;
    WCGraphicStreamEngineBase::CollectRecordChecksums(stream, size, checksums);
    if (!checksums.empty())
        checksums.pop_back();
    WCGraphicStreamToYAML full(false);
    full.SetReportStream(quiet);
    CheckResult(full.ExecStreamWithAllChecksums(stream, size, checksums));
    (void)full.GetYamlStr();

    // The other exporters take the same bytes.
    XML::CXMLElement root;
    WCGraphicStreamToSVG svg(&root);
    CheckResult(svg.ExecStream(stream, size));
    (void)svg.GetSVGStr();
    std::vector<GraphInfo> graphs;
    WCGSGraphExtractor extractor(graphs);
    CheckResult(extractor.ExecStream(stream, size));

    // Nothing above may write into the stream.
    if (size != 0 && std::memcmp(exact.data(), buffer, size) != 0)
        std::abort();
    std::free(buffer);
    return 0;
}
