#include "pool.h"
#include "schedule.h"

#include <vesk/base/future.h>

#include <gtest/gtest.h>

#include <string>

// Futures that are fulfilled, broken, waited for and attached to at the same moment.
namespace vesk::tests {
namespace {

using namespace vesk::base;

const std::vector<std::string> kPoints{"future.", "between", "got"};

std::string endOf(const Future<int>& future)
{
    try {
        return std::to_string(future.get());
    } catch (const FutureError& error) {
        return error.what();
    }
}

TEST(FutureSchedules, AValueMeetsContinuations)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        Promise<int> promise(inlineExecutor());
        const Future<int> future = promise.getFuture();
        std::string order;
        schedule.run({[&] {
                          schedule.step("between");
                          promise.setValue(7);
                      },
                      [&] {
                          future.then([&](int value) { order += "a" + std::to_string(value); });
                          schedule.step("between");
                          future.then([&](int value) { order += "b" + std::to_string(value); });
                      }});
        // Continuations of a value that is there already may overtake those that it has yet to tell.
        EXPECT_TRUE(order == "a7b7" || order == "b7a7") << order;
    });
    EXPECT_GT(count, 50u);
}

TEST(FutureSchedules, TwoContinuationsMeetAValue)
{
    const std::size_t count =
        everySchedule({"future.tell", "future.attach", "between"}, [](Schedule& schedule) {
            Promise<int> promise(inlineExecutor());
            const Future<int> future = promise.getFuture();
            int calls = 0;
            const auto attach = [&] {
                future.then([&](int value) { calls += value; });
                schedule.step("between");
                future.recover([&](Future<int> end) { calls += end.get(); });
            };
            schedule.run({[&] { promise.setValue(1); }, attach, attach});
            EXPECT_EQ(calls, 4);
        });
    EXPECT_GT(count, 200u);
}

TEST(FutureSchedules, ABrokenPromiseMeetsARecovery)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        auto promise = std::make_unique<Promise<int>>(inlineExecutor());
        const Future<int> future = promise->getFuture();
        std::string seen;
        schedule.run({[&] {
                          schedule.step("between");
                          promise.reset();
                      },
                      [&] {
                          future.then([&](int) { seen += "value"; }).recover([&](Future<void> end) {
                              seen += end.error() ? "error" : "value";
                          });
                      }});
        EXPECT_EQ(seen, "error");
        EXPECT_EQ(endOf(future), "broken promise");
    });
    EXPECT_GT(count, 20u);
}

TEST(FutureSchedules, TwoProducersFulfilOneFuture)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        Promise<int> promise(inlineExecutor());
        const Future<int> future = promise.getFuture();
        std::string seen;
        future.then([&](int value) { seen += std::to_string(value); });
        int won = 0;
        const auto fulfil = [&](int value) {
            schedule.step("between");
            if (promise.setValue(value)) won += value;
            schedule.step("between");
        };
        schedule.run({[&] { fulfil(1); }, [&] { fulfil(2); }});
        EXPECT_TRUE(won == 1 || won == 2) << won;
        EXPECT_EQ(seen, std::to_string(won));
    });
    EXPECT_GT(count, 50u);
}

TEST(FutureSchedules, AThreadWaitsForAValue)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        Promise<int> promise(inlineExecutor());
        const Future<int> future = promise.getFuture();
        std::string seen;
        const auto wait = [&] {
            seen += endOf(future);
            schedule.step("got");
        };
        schedule.run({[&] { promise.setValue(7); }, wait, wait});
        EXPECT_EQ(seen, "77");
    });
    EXPECT_GT(count, 100u);
}

TEST(FutureSchedules, ATaskRunsWhileItsFutureIsForgotten)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        const auto kept = std::make_shared<int>(7);
        int seen = 0;
        {
            PackagedTask<int()> task([kept] { return *kept; }, inlineExecutor());
            Future<int> future = task.getFuture();
            schedule.run({[&] {
                              schedule.step("between");
                              task();
                          },
                          [&] {
                              future.then([&](int value) { seen += value; }).detach();
                              schedule.step("between");
                              future = Future<int>();
                          }});
        }
        EXPECT_EQ(seen, 7);
        EXPECT_EQ(kept.use_count(), 1);
    });
    EXPECT_GT(count, 20u);
}

TEST(FutureSchedules, WorkIsDroppedWhileItsResultIsAwaited)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        Promise<int> promise;
        const Future<int> result = promise.getFuture().then([](int value) { return value + 1; });
        std::string seen;
        schedule.run({[&] {
                          promise.setValue(1);
                          schedule.step("between");
                          dropPooledWork();
                      },
                      [&] {
                          result.recover(inlineExecutor(), [&](Future<int> end) { seen += endOf(end); });
                          schedule.step("between");
                          seen += " " + endOf(result);
                      }});
        EXPECT_EQ(seen.find("broken promise broken promise") != std::string::npos ||
                      seen == " broken promisebroken promise",
                  true)
            << seen;
    });
    EXPECT_GT(count, 20u);
}

TEST(FutureSchedules, AChainIsBuiltWhileItsSourceIsFulfilled)
{
    const std::size_t count = everySchedule(kPoints, [](Schedule& schedule) {
        Promise<int> promise(inlineExecutor());
        Future<int> future = promise.getFuture();
        int seen = 0;
        schedule.run({[&] { promise.setValue(1); },
                      [&] {
                          Future<int> last = std::move(future);
                          for (int link = 0; link < 3; ++link)
                              last = last.then([](int value) { return value + 1; });
                          last.then([&](int value) { seen = value; });
                      }});
        EXPECT_EQ(seen, 4);
    });
    EXPECT_GT(count, 20u);
}

} // namespace
} // namespace vesk::tests
