// Appending numbers and text to a WCFixedString<1023>, against the two things a caller would
// otherwise write: snprintf into a char buffer, and std::string with std::to_chars. Each workload
// builds the same text in all three ways; the closing lines print the time ratios.
#include "bench/support/WCBenchRatios.h"
#include "core/WCFixedString.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

using namespace MIREL_NAMESPACE_NAME;

namespace {

constexpr int kItems = 16;

// What a caller of snprintf writes to append: move on by what was written, clamped at the end.
template <class... Args>
void AppendPrintf(char (&buffer)[1024], std::size_t &n, const char *format, Args... args) {
    const int w = std::snprintf(buffer + n, sizeof buffer - n, format, args...);
    n += w > 0 ? static_cast<std::size_t>(w) : 0;
    if (n >= sizeof buffer)
        n = sizeof buffer - 1;
}

// ---- integers: "index=<i> value=<-i*7919> " sixteen times ----

void Ints_FixedString(benchmark::State &state) {
    WCFixedString<1023> s;
    for (auto _ : state) {
        s.clear();
        for (int i = 0; i < kItems; ++i)
            s << "index=" << i << " value=" << -i * 7919 << ' ';
        benchmark::DoNotOptimize(s.data());
    }
}

void Ints_Snprintf(benchmark::State &state) {
    char buffer[1024];
    for (auto _ : state) {
        std::size_t n = 0;
        for (int i = 0; i < kItems; ++i)
            AppendPrintf(buffer, n, "index=%d value=%d ", i, -i * 7919);
        benchmark::DoNotOptimize(buffer);
    }
}

void Ints_StdStringToChars(benchmark::State &state) {
    std::string s;
    s.reserve(1024);
    char digits[32];
    for (auto _ : state) {
        s.clear();
        for (int i = 0; i < kItems; ++i) {
            s += "index=";
            s.append(digits, std::to_chars(digits, digits + sizeof digits, i).ptr);
            s += " value=";
            s.append(digits, std::to_chars(digits, digits + sizeof digits, -i * 7919).ptr);
            s += ' ';
        }
        benchmark::DoNotOptimize(s.data());
    }
}

// ---- doubles at the library's precision of ten decimals ----

void Doubles_FixedString(benchmark::State &state) {
    WCFixedString<1023> s;
    for (auto _ : state) {
        s.clear();
        for (int i = 0; i < kItems; ++i)
            s << (i * 0.37 - 2.5) << ' ';
        benchmark::DoNotOptimize(s.data());
    }
}

void Doubles_Snprintf(benchmark::State &state) {
    char buffer[1024];
    for (auto _ : state) {
        std::size_t n = 0;
        for (int i = 0; i < kItems; ++i)
            AppendPrintf(buffer, n, "%.10f ", i * 0.37 - 2.5);
        benchmark::DoNotOptimize(buffer);
    }
}

void Doubles_StdStringToChars(benchmark::State &state) {
    std::string s;
    s.reserve(1024);
    char digits[64];
    for (auto _ : state) {
        s.clear();
        for (int i = 0; i < kItems; ++i) {
            s.append(digits, std::to_chars(digits, digits + sizeof digits, i * 0.37 - 2.5,
                                           std::chars_format::fixed, 10)
                                 .ptr);
            s += ' ';
        }
        benchmark::DoNotOptimize(s.data());
    }
}

// ---- text: a path built from pieces ----

const char *const kPieces[] = {"/home",         "/user",    "/.local",
                               "/share",        "/Mirel",   "/Presets",
                               "/Plug-In Name", "/Factory", "/Bright Vocal.xps"};

void Text_FixedString(benchmark::State &state) {
    WCFixedString<1023> s;
    for (auto _ : state) {
        s.clear();
        for (const char *piece : kPieces)
            s << piece;
        benchmark::DoNotOptimize(s.data());
    }
}

void Text_Snprintf(benchmark::State &state) {
    char buffer[1024];
    for (auto _ : state) {
        std::size_t n = 0;
        for (const char *piece : kPieces)
            AppendPrintf(buffer, n, "%s", piece);
        benchmark::DoNotOptimize(buffer);
    }
}

void Text_StdStringToChars(benchmark::State &state) {
    std::string s;
    s.reserve(1024);
    for (auto _ : state) {
        s.clear();
        for (const char *piece : kPieces)
            s += piece;
        benchmark::DoNotOptimize(s.data());
    }
}

BENCHMARK(Ints_FixedString);
BENCHMARK(Ints_Snprintf);
BENCHMARK(Ints_StdStringToChars);
BENCHMARK(Doubles_FixedString);
BENCHMARK(Doubles_Snprintf);
BENCHMARK(Doubles_StdStringToChars);
BENCHMARK(Text_FixedString);
BENCHMARK(Text_Snprintf);
BENCHMARK(Text_StdStringToChars);

// WCFixedString<1023> against each peer, workload by workload.
void PrintRatios(const mirel_bench::WCBenchRatios &ratios) {
    for (const std::string workload : {"Ints", "Doubles", "Text"}) {
        ratios.PrintRatio(workload + "_FixedString", workload + "_Snprintf");
        ratios.PrintRatio(workload + "_FixedString", workload + "_StdStringToChars");
    }
}

} // namespace

int main(int argc, char **argv) {
    return mirel_bench::RunBenchmarksWithRatios(argc, argv, PrintRatios,
                                                mirel_bench::WCBenchRatios::eCPUTime);
}
