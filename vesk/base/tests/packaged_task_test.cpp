#include <vesk/base/packaged_task.h>

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "manual_executor.h"

using namespace vesk::base;
using vesk::base::tests::ManualExecutor;

TEST(PackagedTask, FulfilsItsFutureWithWhatTheCallableReturns)
{
    PackagedTask<std::string(int, const std::string&)> task(
        [](int count, const std::string& text) { return text + std::to_string(count); });
    const Future<std::string> future = task.getFuture();
    EXPECT_FALSE(future.isReady());
    task(3, "n");
    EXPECT_EQ(future.get(), "n3");
}

TEST(PackagedTask, FulfilsItsFutureWithTheVeryExceptionThatTheCallableThrows)
{
    const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("why"));
    PackagedTask<void()> task([thrown] { std::rethrow_exception(thrown); });
    EXPECT_NO_THROW(task());
    EXPECT_EQ(task.getFuture().error(), thrown);
}

TEST(PackagedTask, RunsItsCallableOnce)
{
    int calls = 0;
    PackagedTask<int()> task([&] { return ++calls; });
    task();
    task();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(task.getFuture().get(), 1);
}

TEST(PackagedTask, RunsItsEpilogueBetweenTheCallableAndTheFuture)
{
    std::string order;
    PackagedTask<int(int)> task([&](int value) {
        order += "call ";
        return value;
    });
    const Future<int> future = task.getFuture();
    const Future<void> after = future.then(inlineExecutor(), [&](int) { order += "future"; });
    task.runWithEpilogue([&] { order += future.isReady() ? "late " : "epilogue "; }, 3);
    EXPECT_EQ(future.get(), 3);
    after.wait();
    EXPECT_EQ(order, "call epilogue future");
}

TEST(PackagedTask, RunsItsEpilogueAfterACallableThatThrows)
{
    int epilogues = 0;
    PackagedTask<void()> task([] { throw std::runtime_error("why"); });
    task.runWithEpilogue([&] { ++epilogues; });
    task.runWithEpilogue([&] { ++epilogues; });
    EXPECT_EQ(epilogues, 1);
    EXPECT_THROW(task.getFuture().get(), std::runtime_error);
}

TEST(PackagedTask, EndsItsFutureWithWhatItsEpilogueThrows)
{
    PackagedTask<int()> task([] { return 1; });
    task.runWithEpilogue([] { throw std::runtime_error("why"); });
    EXPECT_THROW(task.getFuture().get(), std::runtime_error);
}

TEST(PackagedTask, DestroyedUnrunEndsItsFutureAsABrokenPromise)
{
    auto captured = std::make_shared<int>(0);
    Future<int> future;
    {
        PackagedTask<int()> task([captured] { return *captured; });
        future = task.getFuture();
    }
    try {
        future.get();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FutureError& error) {
        EXPECT_EQ(error.code().value(), 1);
        EXPECT_STREQ(error.what(), "broken promise");
    }
    EXPECT_EQ(captured.use_count(), 1);
}

TEST(PackagedTask, DestroyedAfterItsRunLeavesTheValue)
{
    Future<int> future;
    {
        PackagedTask<int()> task([] { return 5; });
        future = task.getFuture();
        task();
    }
    EXPECT_EQ(future.get(), 5);
}

TEST(PackagedTask, LetsGoOfItsCallableBeforeTheFutureIsReady)
{
    auto captured = std::make_shared<int>(0);
    long held = 0;
    PackagedTask<void()> task([captured] {}, inlineExecutor());
    task.getFuture().then([&] { held = captured.use_count(); });
    task();
    EXPECT_EQ(held, 1);
}

TEST(PackagedTask, MovesWithItsFuture)
{
    PackagedTask<int()> task([] { return 1; });
    const Future<int> future = task.getFuture();
    PackagedTask<int()> moved = std::move(task);
    EXPECT_FALSE(task.valid());
    EXPECT_THROW(task(), FutureError);
    EXPECT_THROW(task.getFuture(), FutureError);
    moved();
    EXPECT_EQ(future.get(), 1);
}

TEST(PackagedTask, GivesItsFutureTheExecutorOrTheDefaultPool)
{
    const auto executor = std::make_shared<ManualExecutor>();
    EXPECT_EQ((PackagedTask<void()>([] {}, executor).getFuture().executor()), executor);
    EXPECT_EQ((PackagedTask<void()>([] {}).getFuture().executor()), defaultExecutor());
}

TEST(RunOn, QueuesACallAndYieldsItsFuture)
{
    const auto executor = std::make_shared<ManualExecutor>();
    const Future<int> future = runOn(executor, [] { return 4; });
    EXPECT_FALSE(future.isReady());
    executor->runAll();
    EXPECT_EQ(future.get(), 4);
}

TEST(RunOn, EndsAsABrokenPromiseWhenTheExecutorDropsTheCall)
{
    const auto executor = std::make_shared<ManualExecutor>();
    const Future<void> future = runOn(executor, [] {});
    executor->dropAll();
    EXPECT_THROW(future.get(), FutureError);
}
