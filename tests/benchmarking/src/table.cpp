#include "table.h"

#include <cstdio>
#include <optional>
#include <set>
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

/// What a benchmark counted besides: "name value" for each counter that the table's columns do not show.
std::string otherCounters(const benchmark::BenchmarkReporter::Run& run)
{
    static const std::set<std::string> shown = {"measured_ns", "bare_ns",       "ratio",
                                                "ratio_q1",    "ratio_q3",      "extra_ns",
                                                "goal_ratio",  "goal_extra_ns", "goal_ns"};
    std::string text;
    for (const auto& [name, value] : run.counters) {
        if (shown.count(name) == 0)
            text += fmt::format("{}{} {:.1f}", text.empty() ? "" : ", ", name, value.value);
    }
    return text;
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
    if (const std::optional<double> goal = counter(run, "goal_ns")) {
        goals += fmt::format("{}<= {}", goals.empty() ? "" : ", ", duration(*goal));
        met = met && *counter(run, "measured_ns") <= *goal;
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
    const std::string others = otherCounters(run);
    const std::string remark = verdict(run) + (others.empty() ? "" : "  [" + others + "]");
    if (!ratio) {
        const double seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        fmt::print(kLine, name, duration(counter(run, "measured_ns").value_or(seconds * 1e9)), "", "", "", "",
                   remark);
        return;
    }
    fmt::print(kLine, name, duration(*counter(run, "measured_ns")), duration(*counter(run, "bare_ns")),
               fmt::format("{:.2f}", *ratio),
               fmt::format("({:.2f} - {:.2f})", *counter(run, "ratio_q1"), *counter(run, "ratio_q3")),
               duration(*counter(run, "extra_ns")), remark);
}

} // namespace vesk::tests
