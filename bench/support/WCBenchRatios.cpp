#include "bench/support/WCBenchRatios.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace mirel_bench {

void WCBenchRatios::ReportRuns(const std::vector<Run> &runs) {
    for (const Run &run : runs) {
        if (run.error_occurred)
            continue;
        // Seconds, so runs reported in different units still compare.
        const double time =
            m_Clock == eCPUTime ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
        const double seconds = time / benchmark::GetTimeUnitMultiplier(run.time_unit);
        if (run.run_type == Run::RT_Iteration)
            m_Seconds[run.run_name.str()] = seconds;
        else if (run.aggregate_name == "median")
            m_Medians[run.run_name.str()] = seconds;
    }
    ConsoleReporter::ReportRuns(runs);
}

double WCBenchRatios::Seconds(std::string_view name) const {
    if (const auto median = m_Medians.find(name); median != m_Medians.end())
        return median->second;
    const auto last = m_Seconds.find(name);
    return last == m_Seconds.end() ? 0.0 : last->second;
}

void WCBenchRatios::PrintRatio(std::string_view subject, std::string_view floor,
                               std::string_view note) const {
    PrintRatio(subject, Seconds(subject), floor, Seconds(floor), note);
}

void WCBenchRatios::PrintRatio(std::string_view subject, double subjectTime, std::string_view floor,
                               double floorTime, std::string_view note) {
    if (subjectTime <= 0 || floorTime <= 0)
        return;
    std::printf("  %-28.*s / %-30.*s = %6.2f", static_cast<int>(subject.size()), subject.data(),
                static_cast<int>(floor.size()), floor.data(), subjectTime / floorTime);
    if (!note.empty())
        std::printf("  %.*s", static_cast<int>(note.size()), note.data());
    std::printf("\n");
}

namespace {

// The user folders of the run (preferences, presets, caches) in a temporary folder removed at
// the end, so a benchmark that starts plug-ins leaves nothing in the real user's home.
class WCBenchHome {
public:
    WCBenchHome() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "mirel-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            return;
        m_Path = pattern;
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            setenv(name, (m_Path / name).c_str(), 1);
    }
    ~WCBenchHome() {
        std::error_code ignored;
        if (!m_Path.empty())
            std::filesystem::remove_all(m_Path, ignored);
    }
    WCBenchHome(const WCBenchHome &) = delete;
    WCBenchHome &operator=(const WCBenchHome &) = delete;

private:
    std::filesystem::path m_Path;
};

} // namespace

int RunBenchmarksWithRatios(int argc, char **argv,
                            const std::function<void(const WCBenchRatios &)> &printRatios,
                            WCBenchRatios::WEClock clock) {
    const WCBenchHome home;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    WCBenchRatios reporter(clock);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nTime per iteration, subject / floor, on %s time (below 1: the subject is "
                "faster):\n",
                clock == WCBenchRatios::eCPUTime ? "CPU" : "wall-clock");
    printRatios(reporter);
    benchmark::Shutdown();
    return 0;
}

} // namespace mirel_bench
