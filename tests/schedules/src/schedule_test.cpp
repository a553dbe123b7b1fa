#include "schedule.h"

#include <vesk/base/sync_point.h>

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <set>

// The scheduler itself: it must find what it is there for, and nothing twice.
namespace vesk::tests {
namespace {

std::function<void()> steps(Schedule& schedule, int count)
{
    return [&schedule, count] {
        for (int step = 1; step < count; ++step)
            schedule.step("step");
    };
}

TEST(EverySchedule, OfTwoThreadsOfSixStepsAre924)
{
    std::set<std::string> orders;
    const std::size_t count = everySchedule({"step"}, [&](Schedule& schedule) {
        schedule.run({steps(schedule, 6), steps(schedule, 6)});
        EXPECT_TRUE(orders.insert(schedule.text()).second) << "twice";
    });
    EXPECT_EQ(count, 924u);
}

TEST(EverySchedule, OfThreeThreadsOfFourStepsAre34650)
{
    const std::size_t count = everySchedule({"step"}, [&](Schedule& schedule) {
        schedule.run({steps(schedule, 4), steps(schedule, 4), steps(schedule, 4)});
    });
    EXPECT_EQ(count, 34'650u);
}

TEST(EverySchedule, OfThreadsThatPassNoPointAreTheirOrders)
{
    EXPECT_EQ(everySchedule({"other"},
                            [&](Schedule& schedule) {
                                schedule.run({steps(schedule, 9), steps(schedule, 9), steps(schedule, 9)});
                            }),
              6u);
}

TEST(EverySchedule, FindsTheOneOrderInWhichACountIsLost)
{
    std::size_t lost = 0;
    const std::size_t count = everySchedule({"step"}, [&](Schedule& schedule) {
        int number = 0;
        const auto increase = [&] {
            const int before = number;
            schedule.step("step");
            number = before + 1;
        };
        schedule.run({increase, increase});
        lost += number == 1;
    });
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(lost, 4u) << "all but the two in which one thread goes first";
}

TEST(EverySchedule, LetsALockExcludeTheOthers)
{
    const std::size_t count = everySchedule({"inside"}, [&](Schedule& schedule) {
        std::mutex mutex;
        int inside = 0;
        const auto visit = [&] {
            VESK_SYNC_LOCK("lock", mutex);
            const std::lock_guard lock(mutex);
            EXPECT_EQ(++inside, 1);
            schedule.step("inside");
            --inside;
        };
        schedule.run({visit, visit});
    });
    // One after the other, and twice more where the second comes to the lock while the first is inside.
    EXPECT_EQ(count, 4u);
}

TEST(EverySchedule, LetsAWaitEndWhenItsConditionHolds)
{
    const std::size_t count = everySchedule({"set"}, [&](Schedule& schedule) {
        std::mutex mutex;
        std::condition_variable changed;
        bool set = false;
        bool seen = false;
        schedule.run({[&] {
                          std::unique_lock lock(mutex);
                          VESK_SYNC_WAIT("wait", lock, set);
                          changed.wait(lock, [&] { return set; });
                          seen = true;
                      },
                      [&] {
                          schedule.step("set");
                          {
                              const std::lock_guard lock(mutex);
                              set = true;
                          }
                          changed.notify_all();
                      }});
        EXPECT_TRUE(seen);
    });
    EXPECT_EQ(count, 3u);
}

TEST(EveryScheduleDeathTest, NamesTheOrderOfADeadlock)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto deadlock = [] {
        everySchedule({}, [](Schedule& schedule) {
            bool first = false, second = false;
            const std::function<bool()> firstIsSet = [&] { return first; };
            const std::function<bool()> secondIsSet = [&] { return second; };
            schedule.run({[&] {
                              vesk::base::detail::awaitAtSyncPoint("wait for the second", secondIsSet);
                              first = true;
                          },
                          [&] {
                              vesk::base::detail::awaitAtSyncPoint("wait for the first", firstIsSet);
                              second = true;
                          }});
        });
    };
    EXPECT_DEATH(deadlock(), "no thread can go on, in the order: 0 begin, 1 begin\n"
                             "thread 0 stands at wait for the second\n"
                             "thread 1 stands at wait for the first");
}

} // namespace
} // namespace vesk::tests
