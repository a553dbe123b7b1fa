#include <tests/benchmarking/rounds.h>

#include <algorithm>
#include <utility>

namespace vesk::tests {

namespace {

/// The value below which the given part of the values lies.
double quantile(std::vector<double> values, double part)
{
    const auto middle =
        values.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

void Rounds::add(Nanoseconds measured, Nanoseconds bare)
{
    m_measured.push_back(measured.count() / static_cast<double>(m_operations));
    m_bare.push_back(bare.count() / static_cast<double>(m_operations));
}

void Rounds::report(benchmark::State& state) const
{
    if (m_measured.empty()) return;
    std::vector<double> ratios;
    std::vector<double> extras;
    for (std::size_t i = 0; i < m_measured.size(); ++i) {
        ratios.push_back(m_measured[i] / m_bare[i]);
        extras.push_back(m_measured[i] - m_bare[i]);
    }
    state.counters["measured_ns"] = quantile(m_measured, 0.5);
    state.counters["bare_ns"] = quantile(m_bare, 0.5);
    state.counters["ratio"] = quantile(ratios, 0.5);
    state.counters["ratio_q1"] = quantile(ratios, 0.25);
    state.counters["ratio_q3"] = quantile(ratios, 0.75);
    state.counters["extra_ns"] = quantile(extras, 0.5);
    if (m_goal.ratio > 0.0) state.counters["goal_ratio"] = m_goal.ratio;
    if (m_goal.extra > 0.0) state.counters["goal_extra_ns"] = m_goal.extra;
}

void reportMedian(benchmark::State& state, std::vector<Nanoseconds> times, Nanoseconds goal)
{
    if (times.empty()) return;
    std::vector<double> values;
    for (const Nanoseconds time : times)
        values.push_back(time.count());
    state.counters["measured_ns"] = quantile(values, 0.5);
    state.counters["best_ms"] = quantile(values, 0.0) * 1e-6;
    state.counters["p90_ms"] = quantile(values, 0.9) * 1e-6;
    if (goal.count() > 0.0) state.counters["goal_ns"] = goal.count();
}

} // namespace vesk::tests
