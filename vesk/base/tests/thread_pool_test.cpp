#include <vesk/base/future.h>

#include <atomic>
#include <numeric>
#include <thread>

#include <gtest/gtest.h>

#include <tests/support/gate.h>
#include <tests/support/log_capture.h>

#include "work_lanes.h"

using namespace vesk::base;
using vesk::tests::Gate;
using vesk::tests::LogCapture;

namespace {

/// Lists, in the order of service, what was appended to the lanes.
std::string serve(WorkLanes& lanes, std::string& served)
{
    while (Work work = lanes.take())
        work.run();
    return served;
}

void append(WorkLanes& lanes, std::string& served, Priority priority, char name)
{
    lanes.append(priority, Work([&served, name] { served += name; }));
}

} // namespace

TEST(WorkLanes, ServeHigherLanesFirstAndEachInItsOrder)
{
    WorkLanes lanes;
    std::string served;
    append(lanes, served, Priority::Low, 'l');
    append(lanes, served, Priority::Normal, 'n');
    append(lanes, served, Priority::High, 'h');
    append(lanes, served, Priority::Normal, 'm');
    append(lanes, served, Priority::High, 'i');
    EXPECT_EQ(lanes.size(), 5u);
    EXPECT_EQ(serve(lanes, served), "hinml");
    EXPECT_TRUE(lanes.isEmpty());
}

TEST(WorkLanes, ServeALowLaneAfterItsPatienceEnds)
{
    WorkLanes lanes;
    std::string served;
    append(lanes, served, Priority::Low, 'l');
    for (int i = 0; i < 1000; ++i)
        append(lanes, served, Priority::High, 'h');
    serve(lanes, served);
    EXPECT_EQ(served.find('l'), WorkLanes::kPatience[0]);
}

TEST(WorkLanes, AbandonWhatIsLeftInThem)
{
    Future<void> future;
    {
        WorkLanes lanes;
        PackagedTask<void()> task([] {});
        future = task.getFuture();
        lanes.append(Priority::Normal, Work([task = std::move(task)]() mutable { task(); }));
    }
    EXPECT_THROW(future.get(), FutureError);
}

TEST(ThreadPool, RunsWorkOfOneLaneInItsOrder)
{
    ThreadPool pool(1);
    std::vector<int> order;
    for (int i = 0; i < 100; ++i)
        pool.executor()->post(Work([&order, i] { order.push_back(i); }));
    pool.waitUntilIdle();
    ASSERT_EQ(order.size(), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[i], i);
}

TEST(ThreadPool, DoesNotStarveLowWork)
{
    Gate started, release;
    ThreadPool pool(1);
    pool.executor()->post(Work([&] {
        started.open();
        release.wait();
    }));
    started.wait();
    std::atomic<int> high{0};
    int highBeforeLow = -1;
    pool.executor(Priority::Low)->post(Work([&] { highBeforeLow = high; }));
    for (int i = 0; i < 100'000; ++i)
        pool.executor(Priority::High)->post(Work([&] { ++high; }));
    release.open();
    pool.waitUntilIdle();
    EXPECT_EQ(high, 100'000);
    EXPECT_EQ(highBeforeLow, static_cast<int>(WorkLanes::kPatience[0]));
}

TEST(ThreadPool, RunsWorkOnSeveralThreadsAtOnce)
{
    Gate first, second;
    ThreadPool pool(2);
    const Future<void> a = runOn(pool.executor(), [&] {
        first.open();
        second.wait();
    });
    const Future<void> b = runOn(pool.executor(), [&] {
        second.open();
        first.wait();
    });
    a.wait();
    b.wait();
}

TEST(ThreadPool, CountsNoThreadsAsOne) { EXPECT_EQ(ThreadPool(0).threadCount(), 1u); }

TEST(ThreadPool, AbandonsQueuedWorkWhenItIsDestroyed)
{
    std::vector<Future<void>> futures;
    std::atomic<int> ran{0};
    ExecutorPtr executor;
    Gate started, release;
    {
        ThreadPool pool(1);
        executor = pool.executor();
        executor->post(Work([&] {
            started.open();
            release.wait();
        }));
        started.wait();
        for (int i = 0; i < 1000; ++i)
            futures.push_back(runOn(executor, [&] { ++ran; }));
        std::thread opener([&] { release.open(); });
        opener.join();
    }
    int broken = 0;
    for (const Future<void>& future : futures)
        broken += future.error() != nullptr;
    EXPECT_EQ(broken + ran, 1000);
    EXPECT_THROW(runOn(executor, [] {}).get(), FutureError)
        << "the executor outlives its pool and drops work";
}

TEST(ThreadPool, CanBeDestroyedByItsOwnWork)
{
    auto pool = std::make_unique<ThreadPool>(2);
    Promise<void> destroyed(inlineExecutor());
    const Future<void> end = destroyed.getFuture();
    const ExecutorPtr executor = pool->executor();
    executor->post(Work([&, pool = std::move(pool)]() mutable {
        pool.reset();
        destroyed.setValue();
    }));
    end.get();
}

TEST(ThreadPool, LogsWhatBareWorkThrows)
{
    LogCapture log;
    ThreadPool pool(1);
    pool.executor()->post(Work([] { throw std::runtime_error("why"); }));
    pool.executor()->post(Work([] { throw 42; }));
    pool.waitUntilIdle();
    EXPECT_EQ(log.takeTexts(),
              (std::vector<std::string>{
                  "An exception left work that nobody waits for: why",
                  "An exception left work that nobody waits for: something that is no std::exception"}));
}

TEST(DefaultPool, IsOneAndHasAtLeastTwoThreads)
{
    EXPECT_EQ(&ThreadPool::defaultPool(), &ThreadPool::defaultPool());
    EXPECT_GE(ThreadPool::defaultPool().threadCount(), 2u);
}

TEST(DefaultPool, LetsTheProcessExitWithWorkPending)
{
    const auto exitWithPendingWork = [] {
        for (int i = 0; i < 10'000; ++i) {
            Promise<int> promise;
            promise.getFuture().then([](int value) { return value + 1; }).then([](int) {}).detach();
            promise.setValue(i);
        }
        std::exit(0);
    };
    // Each exit happens in a fresh process: a fork has no pool threads.
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    for (int i = 0; i < 10; ++i)
        EXPECT_EXIT(exitWithPendingWork(), ::testing::ExitedWithCode(0), "");
}

TEST(ParallelFor, VisitsEveryElementOnceInPiecesOfTheGrain)
{
    constexpr std::size_t kCount = 10'007;
    std::vector<std::atomic<int>> visits(kCount);
    std::atomic<int> wrongPieces{0};
    parallelFor(kCount, 100, [&](std::size_t first, std::size_t last) {
        if (first % 100 != 0 || last != std::min(kCount, first + 100)) ++wrongPieces;
        for (std::size_t i = first; i < last; ++i)
            ++visits[i];
    });
    EXPECT_EQ(wrongPieces, 0);
    for (const auto& count : visits)
        EXPECT_EQ(count, 1);
}

TEST(ParallelFor, DoesNothingForNoElements)
{
    parallelFor(0, 10, [](std::size_t, std::size_t) { ADD_FAILURE() << "called"; });
}

TEST(ParallelFor, TakesAGrainOfZeroForOne)
{
    std::atomic<int> pieces{0};
    parallelFor(5, 0, [&](std::size_t first, std::size_t last) { pieces += last - first == 1 ? 1 : 100; });
    EXPECT_EQ(pieces, 5);
}

TEST(ParallelFor, ThrowsWhatABodyThrowsAfterAllPiecesEnded)
{
    std::atomic<int> inside{0};
    EXPECT_THROW(parallelFor(1000, 1,
                             [&](std::size_t first, std::size_t) {
                                 ++inside;
                                 const bool fails = first == 500;
                                 --inside;
                                 if (fails) throw std::runtime_error("why");
                             }),
                 std::runtime_error);
    EXPECT_EQ(inside, 0);
}

TEST(ParallelFor, CanBeCalledOnEveryThreadOfThePoolAtOnce)
{
    ThreadPool& pool = ThreadPool::defaultPool();
    std::vector<Future<long>> sums;
    for (unsigned i = 0; i < pool.threadCount() * 4; ++i)
        sums.push_back(runOn(pool.executor(), [] {
            std::atomic<long> sum{0};
            parallelFor(1000, 10, [&](std::size_t first, std::size_t last) {
                for (std::size_t n = first; n < last; ++n)
                    sum += static_cast<long>(n);
            });
            return sum.load();
        }));
    for (const Future<long>& sum : sums)
        EXPECT_EQ(sum.get(), 999L * 1000 / 2);
}
