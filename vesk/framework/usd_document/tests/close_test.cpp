#include <atomic>
#include <thread>

#include <tests/support/gate.h>

#include "document_fixture.h"

using namespace vesk::framework::usd_document::tests;
using namespace vesk::framework::usd_document;
using vesk::base::Future;
using vesk::tests::Gate;
using vesk::tests::LogCapture;

TEST(Close, EndsEachOfAHundredThousandQueuedTasksAsABrokenPromise)
{
    constexpr int kTasks = 100'000;
    const LogCapture log;
    Gate started, release;
    auto document = UsdDocument::create();
    document->read("hold", [&](const Context&) {
        started.open();
        release.wait();
    });
    started.wait();
    std::atomic<int> ran{0}, thens{0}, recovered{0};
    std::vector<Future<void>> futures;
    futures.reserve(kTasks);
    for (int i = 0; i < kTasks; ++i) {
        const Future<void> future = document->read("queued", [&](const Context&) { ++ran; });
        switch (i % 3) {
        case 0:
            future.then([&] { ++thens; });
            break;
        case 1:
            future.recover([&](Future<void> end) { recovered += endOf(end) == "1 broken promise"; });
            break;
        default:
            future.detach();
        }
        futures.push_back(future);
    }
    std::thread closer([&] { document->close(); });
    for (const Future<void>& future : futures)
        ASSERT_EQ(endOf(future), "1 broken promise");
    release.open();
    closer.join();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(thens, 0);
    EXPECT_EQ(recovered, (kTasks + 1) / 3);
    EXPECT_EQ(document->pendingTaskCount(), 0u);
}

TEST(Close, DropsWhatIsPostedLater)
{
    const auto document = UsdDocument::create();
    document->close();
    EXPECT_TRUE(document->isClosed());
    bool ran = false;
    EXPECT_EQ(endOf(document->read("late", [&](const Context&) { ran = true; })), "1 broken promise");
    EXPECT_EQ(endOf(document->undo()), "1 broken promise");
    EXPECT_FALSE(ran);
    document->close();
    document->waitUntilIdle();
}

TEST(Close, WaitsForTheRunningTask)
{
    Gate started, release;
    const auto document = UsdDocument::create();
    std::atomic<bool> ended{false};
    document->read("hold", [&](const Context&) {
        started.open();
        release.wait();
        ended = true;
    });
    started.wait();
    std::atomic<bool> endedWhenClosed{false};
    std::thread closer([&] {
        document->close();
        endedWhenClosed = ended.load();
    });
    release.open();
    closer.join();
    EXPECT_TRUE(endedWhenClosed);
}

TEST(Close, SendsNoEventOfTheRunningTask)
{
    const auto document = UsdDocument::create();
    std::atomic<int> events{0};
    document->getEventBus()->subscribeListener([&](const std::any&) { ++events; });
    document
        ->edit("close in the middle",
               [&](const Context& context) {
                   context.stage()->DefinePrim(SdfPath("/A"));
                   document->close();
               })
        .get();
    document->waitUntilIdle();
    EXPECT_EQ(events, 0);
    EXPECT_EQ(document->undoLabels(), Labels());
}

TEST(Close, CanBeCalledByContinuationsOfDroppedTasks)
{
    Gate started, release;
    const auto document = UsdDocument::create();
    document->read("hold", [&](const Context&) {
        started.open();
        release.wait();
    });
    started.wait();
    std::atomic<int> called{0};
    for (int i = 0; i < 10; ++i)
        document->read("queued", [](const Context&) {})
            .recover(vesk::base::inlineExecutor(), [&](Future<void>) {
                document->dropPendingTasks();
                document->read("again", [](const Context&) {});
                ++called;
            });
    document->dropPendingTasks();
    EXPECT_EQ(called, 10);
    release.open();
    document->waitUntilIdle();
}

TEST(Destruction, ByATaskOfTheDocumentLetsTheTaskEnd)
{
    Gate dropped;
    auto document = UsdDocument::create();
    const Future<std::string> future = document->read("drop the document", [&](const Context& context) {
        dropped.wait();
        document.reset();
        return context.stage()->GetRootLayer()->GetIdentifier();
    });
    dropped.open();
    EXPECT_FALSE(future.get().empty()) << "the context keeps the stage alive";
}

TEST(Destruction, ByATaskOfAManualDocumentLetsTheTaskEnd)
{
    DocumentOptions options;
    options.manual = true;
    auto document = UsdDocument::create(options);
    bool ended = false;
    document->read("drop the document", [&](const Context&) {
        document.reset();
        ended = true;
    });
    const Future<void> next = document->read("next", [](const Context&) {});
    document->runPendingTasks();
    EXPECT_TRUE(ended);
    EXPECT_EQ(endOf(next), "1 broken promise");
}

TEST(Destruction, ByAListenerOfItsOwnEventIsSafe)
{
    // The listener goes on when the test has ended: what it uses is shared.
    struct Shared
    {
        Gate posted, destroyed;
        std::shared_ptr<UsdDocument> document = UsdDocument::create();
    };
    const auto shared = std::make_shared<Shared>();
    shared->document->getEventBus()->subscribeListener([shared](const std::any&) {
        shared->posted.wait();
        shared->document.reset();
        shared->destroyed.open();
    });
    shared->document->edit("change",
                           [](const Context& context) { context.stage()->DefinePrim(SdfPath("/A")); });
    shared->posted.open();
    shared->destroyed.wait();
}

TEST(Destruction, UnsubscribesEveryListener)
{
    auto captured = std::make_shared<int>(0);
    auto document = UsdDocument::create();
    const std::shared_ptr<vesk::base::EventBus> bus = document->getEventBus();
    bus->subscribeListener([captured](const std::any&) {});
    document.reset();
    EXPECT_EQ(bus->listenerCount(), 0u);
    EXPECT_EQ(captured.use_count(), 1);
}

TEST(Destruction, HappensAThousandTimesWithWorkUnderWay)
{
    const LogCapture log;
    std::vector<Future<void>> futures;
    for (int i = 0; i < 1000; ++i) {
        const auto document = UsdDocument::create();
        for (int n = 0; n < 3; ++n)
            futures.push_back(document->read("look", [](const Context&) {}));
    }
    for (const Future<void>& future : futures) {
        const std::string end = endOf(future);
        EXPECT_TRUE(end == "value" || end == "1 broken promise") << end;
    }
}

TEST(Posting, FromManyThreadsWhileTheDocumentClosesLosesNoFuture)
{
    for (int round = 0; round < 50; ++round) {
        const auto document = UsdDocument::create();
        std::atomic<int> ended{0};
        std::vector<std::thread> threads;
        Gate begin;
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([&] {
                begin.wait();
                for (int n = 0; n < 100; ++n) {
                    const std::string end = endOf(document->read("look", [](const Context&) {}));
                    ended += end == "value" || end == "1 broken promise";
                }
            });
        begin.open();
        document->close();
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(ended, 300);
    }
}
