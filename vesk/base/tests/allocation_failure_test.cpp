// Replaces the program's operator new by one that can be told to fail on a thread.
#include <vesk/base/future.h>

#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "manual_executor.h"

namespace {
thread_local bool t_allocationsFail = false;

/// Lets every allocation of this thread fail while it lives.
class WithoutMemory
{
public:
    WithoutMemory() { t_allocationsFail = true; }
    ~WithoutMemory() { t_allocationsFail = false; }
};
} // namespace

[[gnu::noinline]] void* operator new(std::size_t size)
{
    void* memory = t_allocationsFail ? nullptr : std::malloc(size ? size : 1);
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

using namespace vesk::base;
using vesk::base::tests::ManualExecutor;

TEST(WithoutMemory, PromisesBreakAllTheSame)
{
    auto promise = std::make_unique<Promise<int>>();
    const Future<int> source = promise->getFuture();
    Future<int> end = source;
    for (int i = 0; i < 1000; ++i)
        end = end.then([](int value) { return value; });
    {
        const WithoutMemory none;
        promise.reset();
    }
    EXPECT_EQ(source.error(), end.error());
    EXPECT_THROW(end.get(), FutureError);
}

TEST(WithoutMemory, TasksAreDroppedAllTheSame)
{
    const auto executor = std::make_shared<ManualExecutor>();
    auto captured = std::make_shared<int>(0);
    Future<int> task = runOn(executor, [captured] { return *captured; });
    Future<int> recovered = task.recover(inlineExecutor(), [](Future<int> f) { return f.error() ? -1 : 0; });
    {
        const WithoutMemory none;
        executor->dropAll();
    }
    EXPECT_THROW(task.get(), FutureError);
    EXPECT_EQ(recovered.get(), -1);
    EXPECT_EQ(captured.use_count(), 1);
}

TEST(WithoutMemory, ValuesReachContinuationsOnThePoolAllTheSame)
{
    Promise<int> promise;
    const Future<int> end = promise.getFuture().then([](int value) { return value + 1; });
    {
        const WithoutMemory none;
        promise.setValue(1);
    }
    EXPECT_EQ(end.get(), 2);
}

TEST(WithoutMemory, ThenThrowsAndLeavesTheFutureAsItWas)
{
    Promise<int> promise(inlineExecutor());
    const Future<int> future = promise.getFuture();
    {
        const WithoutMemory none;
        EXPECT_THROW(future.then([](int) {}), std::bad_alloc);
    }
    int seen = 0;
    future.then([&](int value) { seen = value; });
    promise.setValue(3);
    EXPECT_EQ(seen, 3);
}
