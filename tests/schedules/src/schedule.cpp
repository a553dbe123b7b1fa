#include "schedule.h"

#include "explorer.h"

#include <gtest/gtest.h>

namespace vesk::tests {

void Schedule::run(std::vector<std::function<void()>> threads) { m_explorer.run(std::move(threads)); }

void Schedule::step(const char* name) { Explorer::reach(name, nullptr); }

std::string Schedule::text() const { return m_explorer.trace(); }

std::size_t everySchedule(const std::vector<std::string>& points,
                          const std::function<void(Schedule&)>& scenario)
{
    Explorer explorer(points);
    std::size_t count = 0;
    do {
        Schedule schedule(explorer);
        scenario(schedule);
        ++count;
        if (::testing::Test::HasFailure()) {
            ADD_FAILURE() << "in schedule " << count << ": " << schedule.text();
            break;
        }
    } while (explorer.next());
    ::testing::Test::RecordProperty("schedules", static_cast<int>(count));
    return count;
}

} // namespace vesk::tests
