#include "viewport_fixture.h"

#include <tests/support/gate.h>

#include <future>
#include <random>

namespace vesk::framework::usd_viewport::tests {
namespace {

/// A viewport whose document has a task thread of its own, under everything at once.
class ThreadsTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        watched.document->edit("planes", [](const UsdDocument::ExecContext& context) {
            // Planes live in a vector: a camera that is read while it is written would show.
            GfCamera camera;
            camera.SetFocusDistance(5.0f);
            camera.SetClippingPlanes({GfVec4f(1, 0, 0, 1), GfVec4f(0, 1, 0, 1)});
            UsdGeomCamera(context.stage()->GetPrimAtPath(SdfPath("/Cam")))
                .SetFromCamera(camera, UsdTimeCode::Default());
        });
        run();
        threaded = UsdDocument::attach(watched.stage);
        model->setDocument(threaded);
        threaded->waitUntilIdle();
        vesk::base::ThreadPool::defaultPool().waitUntilIdle();
        threaded->getEventBus()->subscribeListener([this](const std::any& event) {
            if (std::any_cast<ViewportCameraChangedEvent>(&event)) ++announced;
        });
    }

    void TearDown() override
    {
        if (threaded) threaded->close();
        model.reset();
        renderer->documents.clear();
        threaded.reset();
        ViewportTest::TearDown();
    }

    void settle()
    {
        for (int round = 0; round < 50; ++round) {
            threaded->waitUntilIdle();
            vesk::base::ThreadPool::defaultPool().waitUntilIdle();
            if (threaded->pendingTaskCount() == 0) return;
        }
    }

    std::shared_ptr<UsdDocument> threaded;
    std::atomic<int> announced{0};
};

TEST_F(ThreadsTest, GesturesMeetTasksEventsAndWaiters)
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        while (!stop) {
            model->recomputeCachedSceneBounds();
            model->getSceneBounds().wait();
        }
    });
    threads.emplace_back([&] {
        while (!stop)
            model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {}).wait();
    });
    threads.emplace_back([&] {
        for (bool follow = true; !stop; follow = !follow)
            model->setActiveCameraPath(follow ? "/Cam" : "").wait();
    });
    threads.emplace_back([&] {
        while (!stop) {
            model->getViewportCamera();
            model->activeCameraPath();
            model->document();
            threaded->getEventBus()->sendEvent(FrameRenderedEvent());
        }
    });
    auto waiter = std::async(std::launch::async, [&] {
        while (!stop)
            model->waitForFrameRendered();
    });
    for (int gesture = 0; gesture < 300; ++gesture) {
        model->beginCameraInteraction();
        model->orbitCameraUsingDeltaAngles(1.0f, 0.5f, "orbit");
        model->zoomCamera(1.0f, 0.0f, "zoom");
        model->endCameraInteraction();
    }
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
    while (waiter.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        threaded->getEventBus()->sendEvent(FrameRenderedEvent());
    settle();
    EXPECT_GT(announced.load(), 0);
}

TEST_F(ThreadsTest, TheLastChangeOfABracketIsAlwaysAnnounced)
{
    model->setActiveCameraPath("/Cam").wait();
    settle();
    for (int round = 0; round < 300; ++round) {
        announced = 0;
        model->beginCameraInteraction();
        model->moveCamera(0.001f, 0, 0, "move");
        model->endCameraInteraction();
        settle();
        ASSERT_GE(announced.load(), 1) << round;
    }
}

TEST_F(ThreadsTest, AModelDiesWhileItsWorkIsUnderWay)
{
    for (int round = 0; round < 50; ++round) {
        auto doomed = makeModel(threaded);
        std::vector<Future<void>> futures;
        for (int count = 0; count < 5; ++count) {
            futures.push_back(doomed->frameScene(ProjectionType::Perspective, ViewDirection::Front, {}));
            doomed->recomputeCachedSceneBounds();
        }
        doomed.reset();
        for (const Future<void>& future : futures)
            future.wait();
    }
    settle();
}

TEST_F(ThreadsTest, AModelDiesWhileItsListenerRuns)
{
    model->setActiveCameraPath("/Cam").wait();
    StageChangesEvent change;
    change.resyncedPrimPaths.insert(SdfPath("/Cam"));
    std::atomic<bool> stop{false};
    std::thread sender([&] {
        while (!stop) {
            // Each event queues a copy; the queue must not grow faster than it is worked off.
            if (threaded->pendingTaskCount() < 20) threaded->getEventBus()->sendEvent(change);
        }
    });
    for (int round = 0; round < 50; ++round) {
        auto doomed = makeModel(threaded);
        doomed->setActiveCameraPath("/Cam").wait();
        doomed.reset();
    }
    stop = true;
    sender.join();
    threaded->dropPendingTasks();
    settle();
}

TEST_F(ThreadsTest, DocumentsAreSwitchedUnderARainOfEvents)
{
    const std::shared_ptr<UsdDocument> other = UsdDocument::attach(stageFrom(kScene));
    std::atomic<bool> stop{false};
    std::thread sender([&] {
        while (!stop) {
            threaded->getEventBus()->sendEvent(FrameRenderedEvent());
            other->getEventBus()->sendEvent(FrameRenderedEvent());
        }
    });
    for (int round = 0; round < 200; ++round)
        model->setDocument(round % 2 == 0 ? other : threaded);
    stop = true;
    sender.join();
    settle();
    other->waitUntilIdle();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_EQ(model->document(), threaded);
    EXPECT_EQ(other->getEventBus()->listenerCount(), 0u);
    renderer->documents.clear();
}

TEST_F(ThreadsTest, TheDocumentIsClosedWithWorkQueued)
{
    std::vector<Future<void>> futures;
    for (int count = 0; count < 200; ++count)
        futures.push_back(model->copyCameraFromPath("/Cam", false, ""));
    threaded->close();
    int broken = 0;
    for (const Future<void>& future : futures) {
        if (future.error()) ++broken;
    }
    EXPECT_LE(broken, 200);
    model->recomputeCachedSceneBounds();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
