#include "viewport_fixture.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <array>
#include <atomic>
#include <thread>

namespace vesk::framework::usd_viewport::tests {
namespace {

/// What hosts do to a viewport at the wrong moment, and very often.
class RobustnessTest : public ViewportTest
{
protected:
    static std::shared_ptr<UsdDocument> manualDocument()
    {
        DocumentOptions options;
        options.manual = true;
        return UsdDocument::attach(stageFrom(kScene), options);
    }

    static std::string endOf(const Future<void>& future)
    {
        try {
            future.get();
            return "value";
        } catch (const std::exception& error) {
            return error.what();
        }
    }
};

TEST_F(RobustnessTest, RebindsBetweenDocumentsThatLiveThatAreGoneAndNone)
{
    const std::shared_ptr<UsdDocument> a = watched.document;
    const std::shared_ptr<UsdDocument> b = manualDocument();
    for (int from = 0; from < 3; ++from) {
        for (int to = 0; to < 3; ++to) {
            SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
            model->setDocument(b);
            model->setDocument(a);
            if (from == 1) model->setDocument(b);
            if (from == 2) model->setDocument(manualDocument());
            renderer->documents.clear();
            const std::shared_ptr<UsdDocument> next = to == 0   ? a
                                                      : to == 1 ? b
                                                                : std::shared_ptr<UsdDocument>();
            for (int again = 0; again < 2; ++again) {
                model->setDocument(next);
                EXPECT_EQ(model->document(), next);
                EXPECT_EQ(a->getEventBus()->listenerCount(), next == a ? 2u : 1u) << "one is the fixture's";
                EXPECT_EQ(b->getEventBus()->listenerCount(), next == b ? 1u : 0u);
            }
        }
    }
    a->dropPendingTasks();
    b->dropPendingTasks();
    renderer->documents.clear();
    log.allowUntaken();
}

TEST_F(RobustnessTest, AThousandTasksAndContinuationsFindTheModelGone)
{
    std::vector<Future<void>> futures;
    for (int count = 0; count < 1000; ++count) {
        futures.push_back(model->copyCameraFromPath("/Cam", false, ""));
        model->recomputeCachedSceneBounds();
    }
    renderer->take();
    model.reset();
    watched.document->runPendingTasks();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    for (const Future<void>& future : futures)
        ASSERT_EQ(endOf(future), "broken promise");
    EXPECT_EQ(renderer->take(), std::vector<std::string>());
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
}

TEST_F(RobustnessTest, ATimeThatPlaysFastIsWorkedOff)
{
    constexpr int kTicks = 10'000;
    for (int tick = 1; tick <= kTicks; ++tick)
        model->setCurrentTime(tick);
    EXPECT_EQ(watched.document->pendingTaskCount(), static_cast<std::size_t>(kTicks));
    // One after the other: the fixture's timeline is written from one thread at a time.
    while (watched.document->runNextTask())
        vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_EQ(model->currentTime(), kTicks);
    EXPECT_EQ(watched.document->pendingTaskCount(), 0u);
    EXPECT_EQ(watched.takeCameraEvents(), static_cast<std::size_t>(kTicks));
}

TEST_F(RobustnessTest, ACopyThatWasQueuedBeforeABracketLandsInIt)
{
    follow("/Cam");
    StageChangesEvent change;
    change.infoChangedPrimPaths.insert(SdfPath("/Cam"));
    watched.document->getEventBus()->sendEvent(change);
    model->beginCameraInteraction();
    model->setGfCamera(cameraAt(GfVec3d(1, 2, 3)), "drag");
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(1, 2, 3));
    watched.document->runNextTask();
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 20)) << "the prim's camera";
    model->endCameraInteraction();
    run();
}

TEST_F(RobustnessTest, AWriteThatFindsTheParentDeletedFailsAlone)
{
    follow("/Rig/Cam");
    model->moveCamera(1, 0, 0, "move");
    watched.document->dropPendingTasks();
    watched.document->edit("delete", [](const UsdDocument::ExecContext& context) {
        context.stage()->RemovePrim(SdfPath("/Rig"));
    });
    model->moveCamera(1, 0, 0, "move");
    run();
    EXPECT_FALSE(watched.stage->GetPrimAtPath(SdfPath("/Rig")));
    EXPECT_EQ(model->activeCameraPath(), "/Rig/Cam");
    for (const std::string& text : log.takeTexts())
        EXPECT_EQ(text, "Camera path /Rig/Cam for copying to viewport camera is not a valid UsdGeomCamera");
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    run();
    EXPECT_NE(endOf(framed), "value");
    log.allowUntaken();
}

/// Calls the model for every record, as a window that shows the log would.
class CallingSink : public spdlog::sinks::base_sink<spdlog::details::null_mutex>
{
public:
    std::function<void()> onRecord;
    int records = 0;

protected:
    void sink_it_(const spdlog::details::log_msg&) override
    {
        ++records;
        if (onRecord) onRecord();
    }
    void flush_() override {}
};

TEST_F(RobustnessTest, ASinkOfTheLogMayCallTheModel)
{
    const auto sink = std::make_shared<CallingSink>();
    const std::shared_ptr<spdlog::logger> former = spdlog::default_logger();
    spdlog::set_default_logger(std::make_shared<spdlog::logger>("calling", sink));
    follow("/Cam");
    sink->onRecord = [this] {
        model->getViewportCamera();
        model->activeCameraPath();
        model->setGfCamera(cameraAt(GfVec3d(1, 0, 0)), "from the log");
    };
    model->endCameraInteraction();
    model->copyCameraFromPath("/Nowhere", false, "");
    run();
    EXPECT_EQ(sink->records, 2);
    sink->onRecord = nullptr;
    spdlog::set_default_logger(former);
}

TEST_F(RobustnessTest, ManyThreadsWaitForFramesInTurns)
{
    constexpr int kThreads = 64;
    constexpr int kFrames = 50;
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index)
        threads.emplace_back([&, index] {
            // Each leaves earlier than the one before it: the waiters change from frame to frame.
            for (int frame = 0; frame <= kFrames * index / kThreads; ++frame)
                model->waitForFrameRendered();
            --waiting;
        });
    // A frame before its wait is no frame for a thread: they come until everybody has had enough.
    while (waiting != 0) {
        watched.document->getEventBus()->sendEvent(FrameRenderedEvent());
        std::this_thread::yield();
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
