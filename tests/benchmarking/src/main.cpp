#include <cstring>

#include <benchmark/benchmark.h>

#include "table.h"

namespace {

bool asksForAnotherReport(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], "--benchmark_format", 18) == 0) return true;
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    const bool ownTable = !asksForAnotherReport(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    vesk::tests::TableReporter table;
    if (ownTable)
        benchmark::RunSpecifiedBenchmarks(&table);
    else
        benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return table.sawError() ? 1 : 0;
}
