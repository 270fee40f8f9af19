// Writing a realistic frame of graphic stream (a few hundred controls: frames, images, texts and
// curves of 1000 points) against copying the same bytes with memcpy into a pre-sized buffer, the
// floor of any writer; and walking that frame with empty handlers against a bare loop that only
// hops from record to record by size. The ratios are printed at the end.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/WCBenchRatios.h"
#include "graphic_stream/WCGSArrays.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"
#include "graphic_stream/WCGraphicStreamToYAML.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

constexpr int kControls = 300;
constexpr int kGraphEvery = 10;
constexpr short kCurvePoints = 1000;

struct WSFrameSource {
    std::vector<WCGSArrays> m_Curves;
    WSFrameSource() {
        m_Curves.resize(kControls / kGraphEvery);
        for (std::size_t c = 0; c < m_Curves.size(); ++c) {
            for (short i = 0; i < kCurvePoints; ++i)
                m_Curves[c].AddPoint_2Ds(i, static_cast<short>((i * 7 + c) % 200));
        }
    }
};

void WriteFrame(WCGraphicStreamBinaryWriter &writer, WSFrameSource &source) {
    SGSStream stream;
    std::strcpy(stream.stream_name, "Benchmark");
    stream.frame.rect.size = {1200, 800};
    WCStGSStreamStructWriter streamGuard(writer, stream, "/usr/lib/plugins/Bench.bundle/");
    writer.DrawPNG(static_cast<short>(1));
    for (int control = 0; control < kControls; ++control) {
        const int x = (control % 20) * 60;
        const int y = (control / 20) * 50;
        WCStGSFrameStructWriter frame(writer, WURect<int>(y, x, y + 48, x + 58), control);
        writer.DrawPNGAtPosition(static_cast<short>(100 + control % 7), WCPoint2D<short>(2, 2));
        writer.Font("DejaVu Sans", 10, WCRGBAColor(220, 220, 220));
        writer.DrawTheText("-12.5 dB", control, eGSAlignHCenter, eGSAlignBottom);
        if (control % kGraphEvery == 0)
            source.m_Curves[control / kGraphEvery].GetDrawInstructionsLineStrip(writer);
    }
}

struct WSWrittenFrame {
    WSFrameSource m_Source;
    WCGraphicStreamBinaryWriter m_Writer;
    std::uint64_t m_Records = 0;
    explicit WSWrittenFrame(std::uint64_t threshold) : m_Writer(threshold) {
        WriteFrame(m_Writer, m_Source);
        WCGraphicStreamEngineBase walker;
        walker.ExecStream(m_Writer.GetStreamPtr(), m_Writer.GetStreamSize());
        m_Records = walker.GetRecordCount();
    }
};

void SetRates(benchmark::State &state, std::uint64_t records, std::uint64_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
    state.counters["records/s"] = benchmark::Counter(
        static_cast<double>(state.iterations() * records), benchmark::Counter::kIsRate);
}

void BM_WriteFrame(benchmark::State &state) {
    WSWrittenFrame frame(static_cast<std::uint64_t>(state.range(0)));
    WCGraphicStreamBinaryWriter &writer = frame.m_Writer;
    for (auto _ : state) {
        writer.ClearStream();
        WriteFrame(writer, frame.m_Source);
        benchmark::DoNotOptimize(writer.GetStreamPtr());
    }
    SetRates(state, frame.m_Records, writer.GetStreamSize());
}
BENCHMARK(BM_WriteFrame)->Arg(0)->Arg(128);

void BM_MemcpyFloor(benchmark::State &state) {
    WSWrittenFrame frame(static_cast<std::uint64_t>(state.range(0)));
    const std::uint64_t bytes = frame.m_Writer.GetStreamSize();
    std::vector<char> target(bytes);
    for (auto _ : state) {
        std::memcpy(target.data(), frame.m_Writer.GetStreamPtr(), bytes);
        benchmark::ClobberMemory();
    }
    SetRates(state, frame.m_Records, bytes);
}
BENCHMARK(BM_MemcpyFloor)->Arg(0)->Arg(128);

void BM_EngineWalk(benchmark::State &state) {
    WSWrittenFrame frame(0);
    WCGraphicStreamEngineBase engine;
    for (auto _ : state) {
        const WTErr result =
            engine.ExecStream(frame.m_Writer.GetStreamPtr(), frame.m_Writer.GetStreamSize());
        benchmark::DoNotOptimize(result);
    }
    SetRates(state, frame.m_Records, frame.m_Writer.GetStreamSize());
}
BENCHMARK(BM_EngineWalk);

void BM_BareRecordHop(benchmark::State &state) {
    WSWrittenFrame frame(0);
    const char *stream = frame.m_Writer.GetStreamPtr();
    const std::uint64_t length = frame.m_Writer.GetStreamSize();
    for (auto _ : state) {
        std::uint64_t offset = 0;
        std::uint64_t count = 0;
        while (offset + 8 <= length) {
            std::int32_t size;
            std::memcpy(&size, stream + offset + 4, sizeof size);
            offset += static_cast<std::uint64_t>(size);
            ++count;
        }
        benchmark::DoNotOptimize(count);
    }
    SetRates(state, frame.m_Records, length);
}
BENCHMARK(BM_BareRecordHop);

void BM_YAMLExport(benchmark::State &state) {
    WSWrittenFrame frame(0);
    WCGraphicStreamToYAML yaml;
    for (auto _ : state) {
        yaml.ExecStream(frame.m_Writer.GetStreamPtr(), frame.m_Writer.GetStreamSize());
        benchmark::DoNotOptimize(yaml.GetYamlStr().size());
    }
    SetRates(state, frame.m_Records, frame.m_Writer.GetStreamSize());
}
BENCHMARK(BM_YAMLExport)->Unit(benchmark::kMillisecond);

void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    {
        WSWrittenFrame frame(0);
        std::printf("  Frame: %llu records, %llu bytes (threshold 0)\n",
                    static_cast<unsigned long long>(frame.m_Records),
                    static_cast<unsigned long long>(frame.m_Writer.GetStreamSize()));
    }
    ratios.PrintRatio("BM_WriteFrame/0", "BM_MemcpyFloor/0", "writing, data inline");
    ratios.PrintRatio("BM_WriteFrame/128", "BM_MemcpyFloor/128", "writing, curves by pointer");
    ratios.PrintRatio("BM_EngineWalk", "BM_BareRecordHop", "engine walk, empty handlers");
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
