// Appending numbers and text to a WCFixedString<1023>, against the two things a caller would
// otherwise write: snprintf into a char buffer, and std::string with std::to_chars. Each workload
// builds the same text in all three ways; the closing lines print the time ratios.
#include "core/WCFixedString.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

using namespace MIREL_NAMESPACE_NAME;

namespace {

constexpr int kItems = 16;

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
        for (int i = 0; i < kItems; ++i) {
            const int w =
                std::snprintf(buffer + n, sizeof buffer - n, "index=%d value=%d ", i, -i * 7919);
            n += w > 0 ? static_cast<std::size_t>(w) : 0;
            if (n >= sizeof buffer)
                n = sizeof buffer - 1;
        }
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
        for (int i = 0; i < kItems; ++i) {
            const int w = std::snprintf(buffer + n, sizeof buffer - n, "%.10f ", i * 0.37 - 2.5);
            n += w > 0 ? static_cast<std::size_t>(w) : 0;
            if (n >= sizeof buffer)
                n = sizeof buffer - 1;
        }
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
        for (const char *piece : kPieces) {
            const int w = std::snprintf(buffer + n, sizeof buffer - n, "%s", piece);
            n += w > 0 ? static_cast<std::size_t>(w) : 0;
            if (n >= sizeof buffer)
                n = sizeof buffer - 1;
        }
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

// Remembers each run's time per iteration so the ratios can be printed at the end.
class WCRatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override {
        // CPU time, because the machine is shared and wall time counts other people's work.
        // With repetitions the median stands for the benchmark.
        for (const Run &run : runs) {
            if (run.error_occurred)
                continue;
            if (run.run_type == Run::RT_Iteration)
                m_times[run.run_name.str()] = run.GetAdjustedCPUTime();
            else if (run.aggregate_name == "median")
                m_medians[run.run_name.str()] = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void PrintRatios() const {
        std::printf(
            "\nCPU time of WCFixedString<1023> relative to each peer (below 1 is faster):\n");
        for (const char *workload : {"Ints", "Doubles", "Text"}) {
            const double fixed = Find(std::string(workload) + "_FixedString");
            const double printf = Find(std::string(workload) + "_Snprintf");
            const double stdString = Find(std::string(workload) + "_StdStringToChars");
            if (fixed <= 0 || printf <= 0 || stdString <= 0)
                continue;
            std::printf("  %-8s vs snprintf %.2f   vs std::string+to_chars %.2f\n", workload,
                        fixed / printf, fixed / stdString);
        }
    }

private:
    double Find(const std::string &name) const {
        if (const auto it = m_medians.find(name); it != m_medians.end())
            return it->second;
        const auto it = m_times.find(name);
        return it == m_times.end() ? 0.0 : it->second;
    }

    std::map<std::string, double> m_times;
    std::map<std::string, double> m_medians;
};

} // namespace

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    WCRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    benchmark::Shutdown();
    return 0;
}
