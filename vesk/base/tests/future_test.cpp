#include <vesk/base/future.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <tests/support/gate.h>

#include "manual_executor.h"

using namespace vesk::base;
using vesk::base::tests::ManualExecutor;
using vesk::tests::Gate;

namespace {

/// The future error's code and text, "value" or what else it holds.
template <class T>
std::string endOf(const Future<T>& future)
{
    try {
        future.get();
        return "value";
    } catch (const FutureError& error) {
        return std::to_string(error.code().value()) + " " + error.what();
    } catch (const std::exception& error) {
        return error.what();
    } catch (int number) {
        return "int " + std::to_string(number);
    }
}

std::string noStateOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const FutureError& error) {
        return std::to_string(error.code().value()) + " " + error.what();
    }
    return "nothing was thrown";
}

struct ThrowsWhenCopied
{
    ThrowsWhenCopied() = default;
    ThrowsWhenCopied(const ThrowsWhenCopied&) { throw std::runtime_error("copy"); }
};

} // namespace

TEST(FutureError, HasItsOwnCategoryAndTheTwoTexts)
{
    const FutureError broken(FutureErrorCode::BrokenPromise), none(FutureErrorCode::NoState);
    EXPECT_EQ(broken.code().value(), 1);
    EXPECT_STREQ(broken.what(), "broken promise");
    EXPECT_EQ(none.code().value(), 2);
    EXPECT_STREQ(none.what(), "no state");
    EXPECT_EQ(&broken.code().category(), &error_handling::getErrorCategory<FutureErrorCode>());
    EXPECT_EQ(broken.code().category().message(3), "Unknown FutureErrorCode error");
}

TEST(EmptyFuture, ReportsNoStateFromEveryOperationButValid)
{
    const Future<int> number;
    const Future<void> nothing;
    EXPECT_FALSE(number.valid());
    EXPECT_FALSE(nothing.valid());
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { number.wait(); }, [&] { number.get(); }, [&] { number.isReady(); },
             [&] { number.error(); }, [&] { number.waitFor(std::chrono::seconds(1)); },
             [&] { number.executor(); }, [&] { number.detach(); }, [&] { number.then([](int) {}); },
             [&] { number.recover([](Future<int>) {}); }, [&] { nothing.wait(); }, [&] { nothing.get(); },
             [&] { nothing.detach(); }, [&] { nothing.then([] {}); },
             [&] { nothing.recover([](Future<void>) {}); }})
        EXPECT_EQ(noStateOf(call), "2 no state");
}

TEST(Promise, FulfilsItsFutureOnce)
{
    Promise<int> promise;
    const Future<int> future = promise.getFuture();
    EXPECT_FALSE(future.isReady());
    EXPECT_TRUE(promise.setValue(1));
    EXPECT_FALSE(promise.setValue(2));
    EXPECT_FALSE(promise.setError(std::make_exception_ptr(42)));
    EXPECT_TRUE(future.isReady());
    EXPECT_EQ(future.get(), 1);
}

TEST(Promise, ThatDiesUnfulfilledEndsItsFutureAsABrokenPromise)
{
    Future<int> number;
    Future<void> nothing;
    {
        Promise<int> a;
        Promise<void> b;
        number = a.getFuture();
        nothing = b.getFuture();
    }
    EXPECT_EQ(endOf(number), "1 broken promise");
    EXPECT_EQ(endOf(nothing), "1 broken promise");
}

TEST(Promise, ThatIsAssignedOverBreaksTheOldOne)
{
    Promise<int> promise;
    const Future<int> old = promise.getFuture();
    promise = Promise<int>();
    EXPECT_EQ(endOf(old), "1 broken promise");
    promise.setValue(3);
}

TEST(Promise, ReportsNoStateAfterAMove)
{
    Promise<int> promise;
    const Promise<int> other = std::move(promise);
    EXPECT_FALSE(promise.valid());
    EXPECT_EQ(noStateOf([&] { promise.getFuture(); }), "2 no state");
    EXPECT_EQ(noStateOf([&] { promise.setValue(1); }), "2 no state");
}

TEST(Promise, KeepsWhatCopyingTheValueThrows)
{
    Promise<ThrowsWhenCopied> promise;
    const ThrowsWhenCopied value;
    EXPECT_TRUE(promise.setValue(value));
    EXPECT_EQ(endOf(promise.getFuture()), "copy");
}

TEST(Promise, TakesTheFirstOfTwoThreadsThatFulfilIt)
{
    for (int round = 0; round < 1000; ++round) {
        Promise<int> promise;
        std::atomic<int> accepted{0};
        std::thread other([&] { accepted += promise.setValue(1); });
        accepted += promise.setValue(2);
        other.join();
        EXPECT_EQ(accepted, 1);
        const int value = promise.getFuture().get();
        EXPECT_TRUE(value == 1 || value == 2);
    }
}

TEST(ReadyFuture, HoldsItsValueOrError)
{
    EXPECT_EQ(makeReadyFuture(std::string("now")).get(), "now");
    EXPECT_TRUE(makeReadyFuture().isReady());
    EXPECT_EQ(endOf(makeFailedFuture<int>(std::make_exception_ptr(42))), "int 42");
}

TEST(FutureGet, WaitsForTheValueOfAnotherThread)
{
    Promise<int> promise;
    const Future<int> future = promise.getFuture();
    Gate waiting;
    std::thread producer([&] {
        waiting.wait();
        promise.setValue(5);
    });
    waiting.open();
    EXPECT_EQ(future.get(), 5);
    producer.join();
}

TEST(FutureGet, MovesOutAValueThatCannotBeCopied)
{
    Promise<std::unique_ptr<int>> promise;
    promise.setValue(std::make_unique<int>(9));
    EXPECT_EQ(**promise.getFuture().then([](const std::unique_ptr<int>& p) { return &p; }).get(), 9);
    const std::unique_ptr<int> taken = promise.getFuture().get();
    EXPECT_EQ(*taken, 9);
}

TEST(FutureWaitFor, GivesUpAndLeavesTheFutureAsItWas)
{
    Promise<int> promise;
    const Future<int> future = promise.getFuture();
    EXPECT_FALSE(future.waitFor(std::chrono::nanoseconds(1)));
    promise.setValue(1);
    EXPECT_TRUE(future.waitFor(std::chrono::nanoseconds(1)));
    EXPECT_EQ(future.get(), 1);
}

TEST(FutureError, IsNullForAValueAndTheVeryExceptionForAFailure)
{
    const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("why"));
    EXPECT_EQ(makeFailedFuture<int>(thrown).error(), thrown);
    EXPECT_EQ(makeReadyFuture(1).error(), nullptr);
}

TEST(Then, RunsWithTheValueAndYieldsTheResult)
{
    const auto executor = std::make_shared<ManualExecutor>();
    Promise<int> promise(executor);
    int calls = 0;
    const Future<std::string> result = promise.getFuture().then([&](int value) {
        ++calls;
        return std::to_string(value + 1);
    });
    EXPECT_EQ(executor->size(), 0u) << "nothing runs before the producer is done";
    promise.setValue(1);
    EXPECT_EQ(calls, 0) << "continuations run on the executor, not inside setValue";
    EXPECT_EQ(executor->runAll(), 1u);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(result.get(), "2");
}

TEST(Then, DoesNotRunOnAFailureAndPassesTheVeryErrorOn)
{
    const auto executor = std::make_shared<ManualExecutor>();
    const std::exception_ptr thrown = std::make_exception_ptr(std::runtime_error("why"));
    int calls = 0;
    const Future<void> result =
        makeFailedFuture<int>(thrown, executor).then([&](int) { ++calls; }).then([&] { ++calls; });
    executor->runAll();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(result.error(), thrown);
}

TEST(Then, KeepsWhateverTheContinuationThrows)
{
    const auto executor = std::make_shared<ManualExecutor>();
    const Future<int> source = makeReadyFuture(1, executor);
    const auto standard = source.then([](int) -> int { throw std::runtime_error("why"); });
    const auto other = source.then([](int) -> int { throw 42; });
    executor->runAll();
    EXPECT_EQ(endOf(standard), "why");
    EXPECT_EQ(endOf(other), "int 42");
}

TEST(Then, WorksFromAndToVoid)
{
    const auto executor = std::make_shared<ManualExecutor>();
    Promise<void> promise(executor);
    const Future<int> number = promise.getFuture().then([] { return 7; });
    const Future<void> nothing = number.then([](int) {});
    promise.setValue();
    executor->runAll();
    EXPECT_EQ(number.get(), 7);
    EXPECT_EQ(endOf(nothing), "value");
}

TEST(Then, AttachedAfterCompletionStillRunsOnce)
{
    const auto executor = std::make_shared<ManualExecutor>();
    int calls = 0;
    makeReadyFuture(1, executor).then([&](int) { ++calls; });
    executor->runAll();
    EXPECT_EQ(calls, 1);
}

TEST(Then, RunsEachOfManyContinuationsOnceInTheOrderOfAttachment)
{
    const auto executor = std::make_shared<ManualExecutor>();
    Promise<int> promise(executor);
    std::vector<int> order;
    for (int i = 0; i < 100; ++i)
        promise.getFuture().then([&order, i](int) { order.push_back(i); });
    promise.setValue(1);
    executor->runAll();
    ASSERT_EQ(order.size(), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[i], i);
}

TEST(Then, RunsWhenEveryHandleWasDropped)
{
    const auto executor = std::make_shared<ManualExecutor>();
    Promise<int> promise(executor);
    bool detached = false, dropped = false;
    promise.getFuture().then([&](int) { detached = true; }).detach();
    promise.getFuture().then([&](int) { dropped = true; });
    promise.setValue(1);
    executor->runAll();
    EXPECT_TRUE(detached);
    EXPECT_TRUE(dropped);
}

TEST(Then, LetsGoOfWhatItCapturedBeforeTheResultIsReady)
{
    auto captured = std::make_shared<int>(0);
    const auto executor = std::make_shared<ManualExecutor>();
    const Future<int> source = makeReadyFuture(1, executor);
    long held = 0;
    source.then([captured](int) {}).recover(inlineExecutor(), [&](Future<void>) {
        held = captured.use_count();
    });
    executor->runAll();
    EXPECT_EQ(held, 1);
}

TEST(Then, InheritsTheExecutorOfItsFuture)
{
    const auto own = std::make_shared<ManualExecutor>();
    const Future<int> source = makeReadyFuture(1, own);
    const Future<int> first = source.then([](int value) { return value; });
    EXPECT_EQ(first.executor(), own);
    EXPECT_EQ(first.recover([](Future<int>) {}).executor(), own);
    const Future<int> elsewhere = source.then(inlineExecutor(), [](int value) { return value; });
    EXPECT_EQ(elsewhere.executor(), inlineExecutor());
    own->runAll();
}

TEST(Then, RunsOnTheDefaultPoolWhenNobodyNamedAnExecutor)
{
    const std::thread::id ran = makeReadyFuture(1).then([](int) { return std::this_thread::get_id(); }).get();
    EXPECT_NE(ran, std::this_thread::get_id());
    EXPECT_EQ(makeReadyFuture(1).executor(), defaultExecutor());
}

TEST(Then, EndsAsABrokenPromiseWhenItsWorkIsDropped)
{
    const auto executor = std::make_shared<ManualExecutor>();
    auto captured = std::make_shared<int>(0);
    const Future<void> result = makeReadyFuture(1, executor).then([captured](int) {});
    executor->dropAll();
    EXPECT_EQ(endOf(result), "1 broken promise");
    EXPECT_EQ(captured.use_count(), 1);
}

TEST(Then, EndsAsABrokenPromiseWhenTheExecutorRefuses)
{
    const auto executor = std::make_shared<vesk::base::tests::ThrowingExecutor>();
    const Future<void> result = makeReadyFuture(1, executor).then([](int) {});
    EXPECT_EQ(endOf(result), "1 broken promise");
}

TEST(Recover, ReceivesTheFinishedFutureInBothCases)
{
    const auto executor = std::make_shared<ManualExecutor>();
    const auto good =
        makeReadyFuture(5, executor).recover([](Future<int> f) { return f.isReady() ? f.get() : -1; });
    const auto bad = makeFailedFuture<int>(std::make_exception_ptr(42), executor).recover([](Future<int> f) {
        return f.error() ? -2 : 0;
    });
    executor->runAll();
    EXPECT_EQ(good.get(), 5);
    EXPECT_EQ(bad.get(), -2);
}

TEST(Recover, RunsOnABrokenPromise)
{
    const auto executor = std::make_shared<ManualExecutor>();
    Future<std::string> text;
    {
        Promise<void> promise(executor);
        text = promise.getFuture().recover([](Future<void> end) { return endOf(end); });
    }
    executor->runAll();
    EXPECT_EQ(text.get(), "1 broken promise");
}

TEST(Recover, AfterThenSeesTheErrorOfTheSource)
{
    const auto executor = std::make_shared<ManualExecutor>();
    std::string end;
    makeFailedFuture<int>(std::make_exception_ptr(42), executor)
        .then([](int) { return 1; })
        .recover([&](Future<int> f) { end = endOf(f); })
        .detach();
    executor->runAll();
    EXPECT_EQ(end, "int 42");
}

TEST(Continuations, RunOutsideEveryLockSoThatTheyMayAttachAndFulfil)
{
    Promise<int> promise(inlineExecutor());
    const Future<int> future = promise.getFuture();
    int attached = 0;
    future.then([&](int) { future.then([&](int) { ++attached; }); });
    promise.setValue(1);
    EXPECT_EQ(attached, 1);
}

TEST(Continuations, OnTheInlineExecutorRunOneAfterAnother)
{
    Promise<int> promise(inlineExecutor());
    std::vector<std::string> order;
    promise.getFuture().then([&](int) {
        order.push_back("outer begins");
        makeReadyFuture(1, inlineExecutor()).then([&](int) { order.push_back("inner"); });
        order.push_back("outer ends");
    });
    promise.setValue(1);
    EXPECT_EQ(order, (std::vector<std::string>{"outer begins", "outer ends", "inner"}));
}

TEST(Continuations, AttachedWhileTheValueArrivesAllRun)
{
    for (int round = 0; round < 2000; ++round) {
        Promise<int> promise(inlineExecutor());
        const Future<int> future = promise.getFuture();
        std::atomic<int> calls{0};
        std::thread producer([&] { promise.setValue(1); });
        for (int i = 0; i < 10; ++i)
            future.then([&](int) { ++calls; });
        producer.join();
        EXPECT_EQ(calls, 10);
    }
}
