#pragma once

#include <chrono>
#include <cstddef>
#include <type_traits>
#include <vector>

#include <benchmark/benchmark.h>

namespace vesk::tests {

using Nanoseconds = std::chrono::duration<double, std::nano>;

/// What a figure has to keep to. Zero: no such limit.
struct Goal
{
    double ratio = 0.0; ///< measured by bare
    double extra = 0.0; ///< measured minus bare, in nanoseconds per operation
};

/// The times of turns of two things that are compared.
class Rounds
{
public:
    /// \param operations how many operations a turn makes
    Rounds(std::size_t operations, Goal goal) : m_operations(operations), m_goal(goal) {}

    void add(Nanoseconds measured, Nanoseconds bare);

    /// Gives the medians and quartiles to the benchmark as its counters.
    void report(benchmark::State& state) const;

private:
    const std::size_t m_operations;
    const Goal m_goal;
    std::vector<double> m_measured;
    std::vector<double> m_bare;
};

/// Gives the median of times to the benchmark, for a figure that has no rival.
/// \param goal what the median has to keep to, 0 for none
void reportMedian(benchmark::State& state, std::vector<Nanoseconds> times, Nanoseconds goal);

/// Runs one turn. A callable that returns Nanoseconds has measured itself.
template <class Turn>
Nanoseconds timed(Turn& turn)
{
    if constexpr (std::is_same_v<std::invoke_result_t<Turn&>, Nanoseconds>) {
        return turn();
    } else {
        const auto begin = std::chrono::steady_clock::now();
        turn();
        return std::chrono::steady_clock::now() - begin;
    }
}

/// Compares two things by turns, whose order changes from round to round. The benchmark uses manual time.
/// \param operations how many operations a turn of each makes
template <class Measured, class Bare>
void compare(benchmark::State& state, std::size_t operations, Goal goal, Measured&& measured, Bare&& bare)
{
    Rounds rounds(operations, goal);
    timed(measured);
    timed(bare);
    bool measuredFirst = true;
    for (auto _ : state) {
        Nanoseconds first = measuredFirst ? timed(measured) : timed(bare);
        Nanoseconds second = measuredFirst ? timed(bare) : timed(measured);
        if (!measuredFirst) std::swap(first, second);
        rounds.add(first, second);
        state.SetIterationTime(std::chrono::duration<double>(first).count());
        measuredFirst = !measuredFirst;
    }
    rounds.report(state);
}

} // namespace vesk::tests
