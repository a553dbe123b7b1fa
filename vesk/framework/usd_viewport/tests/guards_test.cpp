#include "life_token.h"
#include "owned_lock.h"
#include "sizes.h"
#include "thread_id.h"

#include <tests/support/gate.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <future>
#include <set>

namespace vesk::framework::usd_viewport {
namespace {

using vesk::tests::Gate;

TEST(PhysicalPixels, AreRoundedTowardsZero)
{
    EXPECT_EQ(physicalPixels(101, 1.5f), 151);
    EXPECT_EQ(physicalPixels(33, 1.5f), 49);
    EXPECT_EQ(physicalPixels(-33, 1.5f), -49);
    EXPECT_EQ(physicalPixels(3, 0.1f), 0);
}

TEST(PhysicalPixels, AreComputedInFloat)
{
    // 16777217 is no float: it becomes 16777216.
    EXPECT_EQ(physicalPixels(16777217, 1.0f), 16777216);
}

TEST(PhysicalPixels, ThatNoIntHoldsBecomeTheNearestInt)
{
    EXPECT_EQ(physicalPixels(INT_MAX, 1.0f), INT_MAX);
    EXPECT_EQ(physicalPixels(1000, 1e30f), INT_MAX);
    EXPECT_EQ(physicalPixels(-1000, 1e30f), INT_MIN);
    EXPECT_EQ(physicalPixels(1, HUGE_VALF), INT_MAX);
    EXPECT_EQ(physicalPixels(1, -HUGE_VALF), INT_MIN);
    EXPECT_EQ(physicalPixels(0, HUGE_VALF), 0);
    EXPECT_EQ(physicalPixels(5, std::nanf("")), 0);
}

TEST(AspectRatio, IsWidthOverHeight)
{
    EXPECT_EQ(aspectRatio({1, 3}), 1.0f / 3.0f);
    EXPECT_EQ(aspectRatio({0, 3}), 0.0f);
    EXPECT_EQ(aspectRatio({640, 0}), 1.0f);
    EXPECT_EQ(aspectRatio({640, -1}), 1.0f);
}

TEST(ThreadIds, DifferForLivingThreads)
{
    std::set<std::uint32_t> ids{currentThreadId()};
    std::mutex mutex;
    Gate all;
    std::vector<std::thread> threads;
    for (int count = 0; count < 8; ++count)
        threads.emplace_back([&] {
            {
                const std::lock_guard<std::mutex> lock(mutex);
                ids.insert(currentThreadId());
                if (ids.size() == 9) all.open();
            }
            all.wait();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(ids.size(), 9u);
}

TEST(LifeToken, LetsWorkRunWhileTheModelLives)
{
    const auto life = std::make_shared<LifeToken>();
    EXPECT_EQ(whileAlive(life, [](int number) { return number + 1; })(4), 5);
}

TEST(LifeToken, EndsLaterWorkAsBrokenPromise)
{
    const auto life = std::make_shared<LifeToken>();
    const auto work = whileAlive(life, [] { FAIL() << "the model is gone"; });
    life->close();
    try {
        work();
        FAIL();
    } catch (const vesk::base::FutureError& error) {
        EXPECT_EQ(error.code().value(), static_cast<int>(vesk::base::FutureErrorCode::BrokenPromise));
    }
}

TEST(LifeToken, WaitsForWorkOnAnotherThread)
{
    const auto life = std::make_shared<LifeToken>();
    Gate begun;
    Gate release;
    std::atomic<bool> ended{false};
    auto worker = std::async(std::launch::async, whileAlive(life, [&] {
                                 begun.open();
                                 release.wait();
                                 ended = true;
                             }));
    begun.wait();
    auto closer = std::async(std::launch::async, [&] {
        life->close();
        return ended.load();
    });
    // Nobody enters any more once it is closing, and the closer is not through before the work has ended.
    while (life->enter())
        life->leave();
    EXPECT_EQ(closer.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    release.open();
    EXPECT_TRUE(closer.get());
    worker.get();
}

TEST(LifeToken, DoesNotWaitForItsOwnThread)
{
    const auto life = std::make_shared<LifeToken>();
    whileAlive(life, [&] { life->close(); })();
    EXPECT_FALSE(life->enter());
}

TEST(LifeToken, IsLeftByWorkThatThrows)
{
    const auto life = std::make_shared<LifeToken>();
    EXPECT_THROW(whileAlive(life, [] { throw 42; })(), int);
    std::thread([&] { life->close(); }).join();
}

TEST(OwnedLock, TellsTheThreadThatHoldsItAlready)
{
    std::mutex mutex, other;
    const OwnedLock lock(mutex);
    const OwnedLock inner(other);
    try {
        const OwnedLock again(mutex);
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::make_error_code(std::errc::resource_deadlock_would_occur));
    }
    EXPECT_FALSE(std::async(std::launch::async, [&] { return mutex.try_lock(); }).get());
}

TEST(OwnedLock, LetsTheNextThreadIn)
{
    std::mutex mutex;
    {
        const OwnedLock lock(mutex);
    }
    std::thread([&] { const OwnedLock lock(mutex); }).join();
    const OwnedLock again(mutex);
}

TEST(OwnedLock, LetsGoOfAMutexThatDiesUnderIt)
{
    auto mutex = std::make_unique<std::mutex>();
    const OwnedLock lock(*mutex);
    OwnedLock::release(*mutex);
    EXPECT_TRUE(mutex->try_lock());
    mutex->unlock();
    mutex.reset();
}

TEST(OwnedLock, ReleasesNothingThatAnotherThreadHolds)
{
    std::mutex mutex;
    const OwnedLock lock(mutex);
    std::thread([&] { OwnedLock::release(mutex); }).join();
    EXPECT_FALSE(std::async(std::launch::async, [&] { return mutex.try_lock(); }).get());
}

} // namespace
} // namespace vesk::framework::usd_viewport
