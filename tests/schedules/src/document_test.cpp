#include "schedule.h"

#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>
#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>

#include <gtest/gtest.h>

// A document whose queue is filled, run, dropped and closed at the same moment. The thread that runs tasks is
// one of the schedule's.
namespace vesk::tests {
namespace {

PXR_NAMESPACE_USING_DIRECTIVE
using namespace vesk::framework::usd_document;
using vesk::base::Future;
using Context = UsdDocument::ExecContext;

/// "value", "broken promise", or "open".
std::string endOf(const Future<void>& future)
{
    if (!future.isReady()) return "open";
    try {
        future.get();
        return "value";
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// A manual document on a stage that all schedules share: tasks that edit it undo what they did.
class Desk
{
public:
    explicit Desk(Schedule& current) : schedule(current)
    {
        static const UsdStageRefPtr stage = UsdStage::CreateInMemory();
        DocumentOptions options;
        options.manual = true;
        document = UsdDocument::attach(stage, options);
    }

    Future<void> post(const std::string& name)
    {
        return document->read(name, [this, name](const Context&) {
            EXPECT_FALSE(closed) << "run after close() returned";
            order += name;
            schedule.step("inside");
            EXPECT_FALSE(closed) << "still running when close() returned";
        });
    }

    Future<void> postEdit()
    {
        return document->edit("edit", [](const Context& context) {
            const UsdPrim prim = context.stage()->DefinePrim(SdfPath("/A"));
            prim.SetActive(!prim.IsActive());
        });
    }

    Schedule& schedule;
    std::shared_ptr<UsdDocument> document;
    std::string order;
    bool closed = false;
};

TEST(DocumentSchedules, CloseMeetsPosts)
{
    const std::size_t count = everySchedule({"document.", "between"}, [](Schedule& schedule) {
        Desk desk(schedule);
        std::vector<Future<void>> futures;
        schedule.run({[&] {
                          for (const char* name : {"a", "b", "c"}) {
                              futures.push_back(desk.post(name));
                              schedule.step("between");
                          }
                      },
                      [&] {
                          desk.document->close();
                          desk.closed = true;
                      }});
        for (const Future<void>& future : futures)
            EXPECT_EQ(endOf(future), "broken promise");
        EXPECT_EQ(desk.order, "");
        EXPECT_EQ(desk.document->pendingTaskCount(), 0u);
    });
    EXPECT_GT(count, 100u);
}

TEST(DocumentSchedules, CloseMeetsARun)
{
    const std::size_t count = everySchedule({"document.", "inside", "closed"}, [](Schedule& schedule) {
        Desk desk(schedule);
        const Future<void> first = desk.post("a"), second = desk.post("b");
        schedule.run({[&] { desk.document->runPendingTasks(); },
                      [&] {
                          desk.document->close();
                          desk.closed = true;
                          schedule.step("closed");
                      }});
        EXPECT_EQ(endOf(first), desk.order.size() > 0 ? "value" : "broken promise");
        EXPECT_EQ(endOf(second), desk.order.size() > 1 ? "value" : "broken promise");
    });
    EXPECT_GT(count, 50u);
}

TEST(DocumentSchedules, CloseMeetsCloseAndARun)
{
    const std::size_t count =
        everySchedule({"document.close", "document.run", "document.drop", "inside"}, [](Schedule& schedule) {
            Desk desk(schedule);
            const Future<void> future = desk.post("a");
            const auto close = [&] {
                desk.document->close();
                desk.closed = true;
            };
            schedule.run({close, close, [&] { desk.document->runPendingTasks(); }});
            EXPECT_EQ(endOf(future), desk.order.empty() ? "broken promise" : "value");
        });
    EXPECT_GT(count, 1'000u);
}

TEST(DocumentSchedules, CloseMeetsATaskThatCloses)
{
    const std::size_t count = everySchedule({"document.", "inside"}, [](Schedule& schedule) {
        Desk desk(schedule);
        bool ran = false;
        const Future<void> first = desk.document->read("close", [&](const Context&) {
            schedule.step("inside");
            desk.document->close();
            ran = true;
        });
        const Future<void> second = desk.post("b");
        schedule.run({[&] { desk.document->runPendingTasks(); }, [&] { desk.document->close(); }});
        EXPECT_EQ(endOf(first), ran ? "value" : "broken promise");
        EXPECT_EQ(endOf(second), "broken promise");
    });
    EXPECT_GT(count, 50u);
}

TEST(DocumentSchedules, DroppingMeetsARun)
{
    const std::size_t count = everySchedule({"document.", "inside"}, [](Schedule& schedule) {
        Desk desk(schedule);
        const Future<void> first = desk.post("a"), second = desk.post("b");
        std::size_t dropped = 0, ran = 0;
        schedule.run({[&] { ran = desk.document->runPendingTasks(); },
                      [&] {
                          dropped += desk.document->dropPendingTasks();
                          dropped += desk.document->dropPendingTasks();
                      }});
        EXPECT_EQ(dropped + ran, 2u);
        EXPECT_EQ(endOf(first), ran > 0 ? "value" : "broken promise");
        EXPECT_EQ(endOf(second), ran > 1 ? "value" : "broken promise");
    });
    EXPECT_GT(count, 50u);
}

TEST(DocumentSchedules, TwoThreadsPostWhileOneRuns)
{
    const std::size_t count = everySchedule({"document.post", "document.run"}, [](Schedule& schedule) {
        Desk desk(schedule);
        schedule.run({[&] {
                          desk.post("a");
                          desk.post("b");
                      },
                      [&] {
                          desk.post("x");
                          desk.post("y");
                      },
                      [&] {
                          desk.document->runPendingTasks();
                          desk.document->runPendingTasks();
                      }});
        desk.document->runPendingTasks();
        EXPECT_EQ(desk.order.size(), 4u);
        for (const char* pair : {"ab", "xy"})
            EXPECT_LT(desk.order.find(pair[0]), desk.order.find(pair[1])) << desk.order;
    });
    EXPECT_GT(count, 500u);
}

TEST(DocumentSchedules, WaitingUntilIdleMeetsARun)
{
    const std::size_t count = everySchedule({"document.", "inside", "between"}, [](Schedule& schedule) {
        Desk desk(schedule);
        desk.post("a");
        desk.post("b");
        schedule.run({[&] {
                          schedule.step("between");
                          desk.document->waitUntilIdle();
                          EXPECT_EQ(desk.order, "ab");
                      },
                      [&] { desk.document->runPendingTasks(); }});
    });
    EXPECT_GT(count, 10u);
}

TEST(DocumentSchedules, AListenerLeavesWhileATaskAnnounces)
{
    const std::size_t count = everySchedule(
        {"document.announce", "document.record", "bus.enter", "bus.removed", "left"}, [](Schedule& schedule) {
            Desk desk(schedule);
            bool left = false;
            vesk::base::EventBus& bus = *desk.document->getEventBus();
            const std::uint32_t id = bus.subscribeListener([&](const std::any&) {
                EXPECT_FALSE(left);
                schedule.step("left");
                EXPECT_FALSE(left);
            });
            const Future<void> edited = desk.postEdit();
            schedule.run({[&] { desk.document->runPendingTasks(); },
                          [&] {
                              schedule.step("left");
                              bus.unsubscribeListener(id);
                              left = true;
                          }});
            EXPECT_EQ(endOf(edited), "value");
        });
    EXPECT_GT(count, 20u);
}

TEST(DocumentSchedules, WhoWaitedForAnEditFindsItRecordedAndAnnounced)
{
    const std::size_t count = everySchedule({"document.", "future.", "bus."}, [](Schedule& schedule) {
        Desk desk(schedule);
        int events = 0;
        desk.document->getEventBus()->subscribeListener(
            [&](const std::any& event) { events += std::any_cast<StageChangesEvent>(&event) != nullptr; });
        const Future<void> edited = desk.postEdit();
        schedule.run({[&] { desk.document->runPendingTasks(); },
                      [&] {
                          edited.get();
                          EXPECT_EQ(events, 1);
                          EXPECT_EQ(desk.document->undoLabels(), std::vector<std::string>{"edit"});
                      }});
    });
    EXPECT_GT(count, 5u);
}

TEST(DocumentSchedules, CloseMeetsAnEditThatAnnounces)
{
    const std::size_t count = everySchedule({"document.", "bus.enter", "closed"}, [](Schedule& schedule) {
        Desk desk(schedule);
        bool closed = false;
        desk.document->getEventBus()->subscribeListener(
            [&](const std::any&) { EXPECT_FALSE(closed) << "an event after close() returned"; });
        const Future<void> edited = desk.postEdit();
        schedule.run({[&] { desk.document->runPendingTasks(); },
                      [&] {
                          desk.document->close();
                          closed = true;
                          schedule.step("closed");
                      }});
        EXPECT_TRUE(desk.document->undoLabels().empty());
        EXPECT_NE(endOf(edited), "open");
    });
    EXPECT_GT(count, 50u);
}

TEST(DocumentSchedules, TheLastReferenceGoesOnOneOfTwoThreads)
{
    const std::size_t count = everySchedule({"document.", "bus.", "between"}, [](Schedule& schedule) {
        Desk desk(schedule);
        const Future<void> first = desk.postEdit(), second = desk.postEdit();
        const std::shared_ptr<vesk::base::EventBus> bus = desk.document->getEventBus();
        int events = 0;
        bus->subscribeListener([&](const std::any&) { ++events; });
        std::shared_ptr<UsdDocument> other = desk.document;
        schedule.run({[&] {
                          other->runNextTask();
                          other.reset();
                      },
                      [&] {
                          schedule.step("between");
                          desk.document->dropPendingTasks();
                          desk.document.reset();
                      }});
        EXPECT_EQ(endOf(second), "broken promise");
        EXPECT_EQ(events, endOf(first) == "value" ? 1 : 0);
        EXPECT_EQ(bus->listenerCount(), 0u);
    });
    EXPECT_GT(count, 100u);
}

} // namespace
} // namespace vesk::tests
