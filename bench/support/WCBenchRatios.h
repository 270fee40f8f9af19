// The shared close of every benchmark program: a console reporter that keeps each run's time per
// iteration by name, and the ratio lines "subject / floor = x.xx" printed after the runs, so all
// programs state their comparisons alike. Lives for one run of a benchmark program, on its main
// thread.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mirel_bench {

class WCBenchRatios : public benchmark::ConsoleReporter {
public:
    // The clock a program compares on. CPU time is steadier on a shared machine; wall-clock time
    // is the cost where waiting (on a server, on another thread) is part of it.
    enum WEClock : int { eRealTime, eCPUTime };

    explicit WCBenchRatios(WEClock clock) : m_Clock(clock) {}

    void ReportRuns(const std::vector<Run> &runs) override;

    // Seconds per iteration of the run named as on the console (with its "/128", "/threads:2" or
    // "/real_time" parts): the median when repetitions made one, 0 when it did not run.
    double Seconds(std::string_view name) const;

    // Prints the ratio of two runs with an optional note after it; nothing when either did not
    // run or the floor took no time.
    void PrintRatio(std::string_view subject, std::string_view floor,
                    std::string_view note = {}) const;

    // The same line for times the program measured itself (an outside tool's floor, a rate kept
    // by the benchmark); both times in the same unit.
    static void PrintRatio(std::string_view subject, double subjectTime, std::string_view floor,
                           double floorTime, std::string_view note = {});

private:
    WEClock m_Clock;
    std::map<std::string, double, std::less<>> m_Seconds;
    std::map<std::string, double, std::less<>> m_Medians;
};

// The whole main() of a benchmark program: parses the command line (1 on an argument it does not
// know), runs the selected benchmarks through a WCBenchRatios on the given clock, prints a heading
// and hands the reporter to printRatios, then shuts the library down and answers 0.
int RunBenchmarksWithRatios(int argc, char **argv,
                            const std::function<void(const WCBenchRatios &)> &printRatios,
                            WCBenchRatios::WEClock clock = WCBenchRatios::eRealTime);

} // namespace mirel_bench
