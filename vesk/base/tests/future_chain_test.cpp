#include <vesk/base/future.h>

#include <functional>

#include <gtest/gtest.h>
#include <pthread.h>

#include "manual_executor.h"

using namespace vesk::base;
using vesk::base::tests::ManualExecutor;

namespace {

constexpr int kLinks = 1'000'000;

/// Runs the body on a thread with a stack of 256 KiB, on which a chain that recursed would not get far.
void onSmallStack(const std::function<void()>& body)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, const_cast<std::function<void()>*>(&body)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

Future<int> chainFrom(Future<int> future)
{
    for (int i = 0; i < kLinks; ++i)
        future = future.then([](int value) { return value + 1; });
    return future;
}

bool endsBroken(const Future<int>& future)
{
    try {
        future.get();
    } catch (const FutureError& error) {
        return error.code().value() == 1;
    }
    return false;
}

} // namespace

TEST(LongChain, CompletesWithAValueOnAManualExecutor)
{
    onSmallStack([] {
        const auto executor = std::make_shared<ManualExecutor>();
        Promise<int> promise(executor);
        const Future<int> end = chainFrom(promise.getFuture());
        promise.setValue(0);
        EXPECT_EQ(executor->runAll(), std::size_t(kLinks));
        EXPECT_EQ(end.get(), kLinks);
    });
}

TEST(LongChain, CompletesWithAValueOnTheInlineExecutor)
{
    onSmallStack([] {
        Promise<int> promise(inlineExecutor());
        const Future<int> end = chainFrom(promise.getFuture());
        promise.setValue(0);
        EXPECT_EQ(end.get(), kLinks);
    });
}

TEST(LongChain, CompletesWithAValueOnPoolsOfOneTwoAndEightThreads)
{
    for (const unsigned threads : {1u, 2u, 8u}) {
        ThreadPool pool(threads);
        Promise<int> promise(pool.executor());
        const Future<int> end = chainFrom(promise.getFuture());
        promise.setValue(0);
        EXPECT_EQ(end.get(), kLinks);
    }
}

TEST(LongChain, PassesAnErrorOn)
{
    onSmallStack([] {
        Promise<int> promise;
        const Future<int> end = chainFrom(promise.getFuture());
        const std::exception_ptr error = std::make_exception_ptr(42);
        promise.setError(error);
        EXPECT_EQ(end.error(), error);
    });
}

TEST(LongChain, EndsWhenThePromiseBreaks)
{
    onSmallStack([] {
        Future<int> end;
        {
            Promise<int> promise;
            end = chainFrom(promise.getFuture());
        }
        EXPECT_TRUE(endsBroken(end));
    });
}

TEST(LongChain, EndsWhenItsWorkIsDropped)
{
    onSmallStack([] {
        const auto executor = std::make_shared<ManualExecutor>();
        Promise<int> promise(executor);
        const Future<int> end = chainFrom(promise.getFuture());
        promise.setValue(0);
        executor->dropAll();
        EXPECT_TRUE(endsBroken(end));
    });
}

TEST(LongChain, OfRecoversCompletesFromABrokenPromise)
{
    onSmallStack([] {
        Future<int> end;
        {
            Promise<int> promise(inlineExecutor());
            end = promise.getFuture();
            for (int i = 0; i < kLinks; ++i)
                end = end.recover([](Future<int> f) { return f.error() ? 1 : f.get() + 1; });
        }
        EXPECT_EQ(end.get(), kLinks);
    });
}

TEST(LongChain, WithoutAnybodyHoldingItFallsApart)
{
    onSmallStack([] {
        auto captured = std::make_shared<int>(0);
        {
            Promise<int> promise;
            Future<int> future = promise.getFuture();
            for (int i = 0; i < kLinks; ++i)
                future = future.then([captured](int value) { return value; });
        }
        EXPECT_EQ(captured.use_count(), 1);
    });
}

TEST(WideFuture, TellsAHundredThousandContinuations)
{
    constexpr int kWidth = 100'000;
    Promise<int> promise;
    std::atomic<int> calls{0};
    for (int i = 0; i < kWidth; ++i)
        promise.getFuture().then([&](int) { ++calls; }).detach();
    promise.setValue(1);
    ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_EQ(calls, kWidth);
}
