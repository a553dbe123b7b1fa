#pragma once

#include <benchmark/benchmark.h>

namespace vesk::tests {

/// Prints a line for each benchmark: the time per operation, its rival's, and how the ratio stands to its
/// goal.
class TableReporter final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Whether a benchmark said that its answer was wrong.
    bool sawError() const { return m_sawError; }

private:
    void _printLine(const Run& run);

    bool m_sawError = false;
};

} // namespace vesk::tests
