#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace vesk::tests {

class Explorer;

/// One order in which the threads of a scenario take their steps.
class Schedule
{
public:
    explicit Schedule(Explorer& explorer) : m_explorer(explorer) {}

    /// Lets the threads run, one at a time in this order, until all have ended. Once per schedule; at most
    /// three threads. A thread that throws fails the test.
    void run(std::vector<std::function<void()>> threads);

    /// Ends the step of the calling thread, as the points in the sources do.
    void step(const char* name);

    /// Who passed which point, in order: "0 begin, 1 begin, 0 bus.enter".
    std::string text() const;

private:
    Explorer& m_explorer;
};

/// Calls the scenario once for each order of its threads' steps and returns how many there were. A scenario
/// makes what it needs, runs its threads once, and checks what has become of it. The first one that fails is
/// the last, and its order is reported.
/// \param points where a step ends: names of points, or their beginnings when they end in a dot
std::size_t everySchedule(const std::vector<std::string>& points,
                          const std::function<void(Schedule&)>& scenario);

} // namespace vesk::tests
