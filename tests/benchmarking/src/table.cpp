#include "table.h"

#include <cstdio>
#include <optional>
#include <string>

#include <fmt/format.h>

namespace vesk::tests {

namespace {

constexpr const char* kLine = "{:<34} {:>11} {:>11} {:>7} {:>15} {:>11}  {}\n";

std::optional<double> counter(const benchmark::BenchmarkReporter::Run& run, const char* name)
{
    const auto found = run.counters.find(name);
    if (found == run.counters.end()) return std::nullopt;
    return found->second.value;
}

std::string duration(double nanoseconds)
{
    if (nanoseconds < 1e4) return fmt::format("{:.1f} ns", nanoseconds);
    if (nanoseconds < 1e7) return fmt::format("{:.1f} us", nanoseconds * 1e-3);
    return fmt::format("{:.1f} ms", nanoseconds * 1e-6);
}

/// What the figure has to keep to, and whether it does.
std::string verdict(const benchmark::BenchmarkReporter::Run& run)
{
    std::string goals;
    bool met = true;
    if (const std::optional<double> goal = counter(run, "goal_ratio")) {
        goals += fmt::format("ratio <= {}", *goal);
        met = met && *counter(run, "ratio") <= *goal;
    }
    if (const std::optional<double> goal = counter(run, "goal_extra_ns")) {
        goals += fmt::format("{}extra <= {} ns", goals.empty() ? "" : ", ", *goal);
        met = met && *counter(run, "extra_ns") <= *goal;
    }
    return goals.empty() ? "" : (met ? "met: " : "MISSED: ") + goals;
}

} // namespace

bool TableReporter::ReportContext(const Context&)
{
    fmt::print(kLine, "per operation", "measured", "bare", "ratio", "(quartiles)", "extra", "goal");
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs)
        _printLine(run);
    std::fflush(stdout);
}

void TableReporter::_printLine(const Run& run)
{
    const std::string name = run.run_name.args.empty() ? run.run_name.function_name
                                                       : run.run_name.function_name + "/" + run.run_name.args;
    if (run.error_occurred) {
        m_sawError = true;
        fmt::print("{:<34} WRONG ANSWER: {}\n", name, run.error_message);
        return;
    }
    const std::optional<double> ratio = counter(run, "ratio");
    if (!ratio) {
        const double seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        fmt::print(kLine, name, duration(seconds * 1e9), "", "", "", "", "");
        return;
    }
    fmt::print(kLine, name, duration(*counter(run, "measured_ns")), duration(*counter(run, "bare_ns")),
               fmt::format("{:.2f}", *ratio),
               fmt::format("({:.2f} - {:.2f})", *counter(run, "ratio_q1"), *counter(run, "ratio_q3")),
               duration(*counter(run, "extra_ns")), verdict(run));
}

} // namespace vesk::tests
