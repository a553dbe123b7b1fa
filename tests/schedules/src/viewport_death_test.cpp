#include "viewport_world.h"

#include <vesk/base/sync_point.h>

// A viewport that is destroyed while its work is under way.
namespace vesk::tests {
namespace {

TEST(ViewportDeathSchedules, MeetsATask)
{
    const std::size_t count = everySchedule(
        {"life.", "model.", "bus.enter", "bus.removed", "camera.stored", "bracket."}, [](Schedule& schedule) {
            World world(schedule);
            const Future<void> framed =
                world.model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
            schedule.run({[&] { world.model.reset(); }, [&] { world.document->runPendingTasks(); }});
            EXPECT_EQ(endOf(framed), world.cameraEvents > 0 ? "value" : "broken promise");
        });
    EXPECT_GT(count, 50u);
}

TEST(ViewportDeathSchedules, MeetsAContinuation)
{
    const std::size_t count =
        everySchedule({"life.", "model.", "bounds.", "camera.stored", "bracket."}, [](Schedule& schedule) {
            World world(schedule);
            world.model->recomputeCachedSceneBounds();
            world.document->runPendingTasks();
            schedule.run({[&] { world.model.reset(); }, [] { runPooledWork(); }});
            EXPECT_EQ(world.log->destroyed, 1);
        });
    EXPECT_GT(count, 50u);
}

TEST(ViewportDeathSchedules, MeetsAStageChange)
{
    const std::size_t count =
        everySchedule({"life.", "model.", "bus.", "document.post"}, [](Schedule& schedule) {
            World world(schedule);
            world.follow();
            schedule.run({[&] { world.model.reset(); },
                          [&] { world.document->getEventBus()->sendEvent(World::changeOfTheCamera()); }});
            EXPECT_EQ(world.document->getEventBus()->listenerCount(), 1u) << "the world's own";
            world.drain();
        });
    EXPECT_GT(count, 50u);
}

TEST(ViewportDeathSchedules, MeetsTheWriteOfAFollowedCamera)
{
    const std::size_t count =
        everySchedule({"life.", "model.", "camera.", "bracket.ask"}, [](Schedule& schedule) {
            World world(schedule);
            world.follow();
            world.model->setGfCamera(cameraAt(2), "set");
            schedule.run({[&] { world.model.reset(); }, [&] { world.document->runNextTask(); }});
            EXPECT_EQ(world.cameraOnStage(), world.cameraEvents > 0 ? 2.0 : 0.0);
        });
    EXPECT_GT(count, 20u);
}

TEST(ViewportDeathSchedules, MeetsThreadsThatWaitForAFrame)
{
    const std::size_t count = everySchedule({"life.", "model.", "bus.", "frame."}, [](Schedule& schedule) {
        World world(schedule);
        int waiting = 0, woken = 0;
        const auto wait = [&] {
            ++waiting;
            world.model->waitForFrameRendered();
            ++woken;
        };
        const std::function<bool()> bothWait = [&] { return waiting == 2; };
        schedule.run({wait, wait, [&] {
                          vesk::base::detail::awaitAtSyncPoint("both wait", bothWait);
                          world.model.reset();
                          EXPECT_EQ(woken, 2) << "destroyed before they left";
                      }});
    });
    EXPECT_GT(count, 5u);
}

TEST(ViewportDeathSchedules, MeetsAFrameAndTheThreadThatWaitsForIt)
{
    const std::size_t count = everySchedule(
        {"life.", "model.unsubscribed", "bus.enter", "bus.removed", "frame."}, [](Schedule& schedule) {
            World world(schedule);
            bool waiting = false, woken = false;
            const std::function<bool()> oneWaits = [&] { return waiting; };
            schedule.run({[&] {
                              waiting = true;
                              world.model->waitForFrameRendered();
                              woken = true;
                          },
                          [&] { world.document->getEventBus()->sendEvent(FrameRenderedEvent()); },
                          [&] {
                              vesk::base::detail::awaitAtSyncPoint("one waits", oneWaits);
                              world.model.reset();
                              EXPECT_TRUE(woken);
                          }});
        });
    EXPECT_GT(count, 100u);
}

// The document is gone for the model, whose destructor can no longer unsubscribe, before the document itself
// has let go of its listeners.
TEST(ViewportDeathSchedules, MeetsTheDocumentsDeathAndAnEventUnderWay)
{
    const std::size_t count =
        everySchedule({"life.", "model.document", "bus.call", "bus.removed"}, [](Schedule& schedule) {
            World world(schedule);
            world.follow();
            const std::shared_ptr<vesk::base::EventBus> bus = world.document->getEventBus();
            schedule.run({[&] { world.document.reset(); },
                          [&] { bus->sendEvent(World::changeOfTheCamera()); }, [&] { world.model.reset(); }});
            EXPECT_EQ(bus->listenerCount(), 0u);
            EXPECT_EQ(world.log->destroyed, 1);
            // The event may find the document gone: then its listener threw, and the bus said so.
            world.records.allowUntaken();
        });
    EXPECT_GT(count, 100u);
}

TEST(ViewportDeathSchedules, InsideADirectWriteMeetsARecomputationThatWantsTheCamera)
{
    const std::size_t count =
        everySchedule({"life.", "model.unsubscribed", "camera.", "bounds.fitted"}, [](Schedule& schedule) {
            World world(schedule);
            world.follow();
            world.model->recomputeCachedSceneBounds();
            world.document->runPendingTasks();
            world.document->getEventBus()->subscribeListener([&](const std::any& event) {
                if (std::any_cast<ViewportCameraChangedEvent>(&event)) world.model.reset();
            });
            world.document->edit("direct", [&](const UsdDocument::ExecContext& context) {
                world.model->setViewportCamera(context.stage(), cameraAt(3));
            });
            schedule.run({[&] { world.document->runNextTask(); }, [] { runPooledWork(); }});
            EXPECT_EQ(world.model, nullptr);
            EXPECT_EQ(world.log->destroyed, 1);
        });
    EXPECT_GT(count, 100u);
}

} // namespace
} // namespace vesk::tests
