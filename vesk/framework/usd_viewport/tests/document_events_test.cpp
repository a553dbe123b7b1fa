#include "private_members.h"
#include "thread_id.h"
#include "viewport_fixture.h"

#include <tests/support/gate.h>

#include <cmath>
#include <future>
#include <limits>

namespace vesk::framework::usd_viewport::tests {
namespace {

class DocumentEventsTest : public ViewportTest
{
protected:
    void send(const std::any& event) { watched.document->getEventBus()->sendEvent(event); }

    /// A change that names one path in one of its four collections.
    static StageChangesEvent naming(const std::string& path, int collection)
    {
        StageChangesEvent event;
        if (collection == 1) event.resyncedPrimPaths.insert(SdfPath(path));
        if (collection == 2) event.changedPropertyPaths.push_back(SdfPath(path));
        if (collection == 3) event.infoChangedPrimPaths.insert(SdfPath(path));
        if (collection == 4) event.resyncedPropertyPaths.push_back(SdfPath(path));
        return event;
    }

    std::size_t copiesAfter(const std::any& event)
    {
        send(event);
        return watched.takeTasks().size();
    }
};

TEST_F(DocumentEventsTest, OtherEventsAreIgnored)
{
    follow("/Cam");
    send(std::any(5));
    send(std::any(std::string("StageChangesEvent")));
    send(std::any());
    send(ViewportCameraChangedEvent("another document", 7));
    EXPECT_TRUE(watched.tasks.empty());
    EXPECT_TRUE(renderer->calls.empty());
}

TEST_F(DocumentEventsTest, WithoutAFollowedCameraChangesAreIgnored)
{
    for (int collection = 1; collection <= 4; ++collection)
        EXPECT_EQ(copiesAfter(naming("/Cam", collection)), 0u);
}

TEST_F(DocumentEventsTest, TheFollowedCameraIsFoundInEveryCollection)
{
    follow("/Cam");
    for (int collection = 1; collection <= 4; ++collection)
        EXPECT_EQ(copiesAfter(naming("/Cam", collection)), 1u) << collection;
}

TEST_F(DocumentEventsTest, ItsPropertiesCountOnlyAmongProperties)
{
    follow("/Cam");
    EXPECT_EQ(copiesAfter(naming("/Cam.xformOp:transform", 1)), 0u);
    EXPECT_EQ(copiesAfter(naming("/Cam.xformOp:transform", 2)), 1u);
    EXPECT_EQ(copiesAfter(naming("/Cam.xformOp:transform", 3)), 0u);
    EXPECT_EQ(copiesAfter(naming("/Cam.xformOp:transform", 4)), 1u);
}

TEST_F(DocumentEventsTest, ParentsChildrenAndNamesakesAreNoHit)
{
    follow("/Rig/Cam");
    for (const char* path : {"/Rig", "/", "/Rig/Cam/Child", "/Rig/Cam/Child.size", "/Rig/Cam2", "/Rig/Ca",
                             "/Cam", "/Rig.xformOp:translate"}) {
        for (int collection = 1; collection <= 4; ++collection)
            EXPECT_EQ(copiesAfter(naming(path, collection)), 0u) << path << " " << collection;
    }
}

TEST_F(DocumentEventsTest, SeveralHitsAreOneCopy)
{
    follow("/Cam");
    StageChangesEvent event = naming("/Cam", 1);
    event.infoChangedPrimPaths.insert(SdfPath("/Cam"));
    event.changedPropertyPaths = {SdfPath("/Cam.focalLength"), SdfPath("/Cam.fStop")};
    event.resyncedPropertyPaths = {SdfPath("/Cam.focalLength")};
    EXPECT_EQ(copiesAfter(event), 1u);
}

TEST_F(DocumentEventsTest, AHitBehindManyMissesIsFound)
{
    follow("/Cam");
    for (auto collection :
         {&StageChangesEvent::changedPropertyPaths, &StageChangesEvent::resyncedPropertyPaths}) {
        StageChangesEvent event;
        (event.*collection).assign(1000, SdfPath("/Box.size"));
        (event.*collection).push_back(SdfPath("/Cam.focalLength"));
        EXPECT_EQ(copiesAfter(event), 1u);
    }
}

TEST_F(DocumentEventsTest, AnEmptyChangeIsNoHit)
{
    follow("/Cam");
    EXPECT_EQ(copiesAfter(StageChangesEvent()), 0u);
}

TEST_F(DocumentEventsTest, AHitQueuesACopyOfTheCamera)
{
    follow("/Cam");
    const UsdEditTarget target(watched.stage->GetSessionLayer());
    model->setEditTarget(target);
    send(naming("/Cam.focalLength", 2));
    ASSERT_EQ(watched.tasks.size(), 1u);
    EXPECT_EQ(watched.tasks[0].type, usd_document::TaskType::Edit);
    EXPECT_EQ(watched.tasks[0].label, ViewportModel::m_cameraCopyFromPathUndoLabel);
    EXPECT_EQ(std::get<UsdEditTarget>(watched.tasks[0].editTarget), target);
}

TEST_F(DocumentEventsTest, TheCopyKeepsTheDistanceToThePivot)
{
    follow("/Cam");
    model->setDistanceToCenter(77.0f);
    watched.document->edit("edit", [](const UsdDocument::ExecContext& context) {
        UsdGeomCamera(context.stage()->GetPrimAtPath(SdfPath("/Cam"))).GetFocalLengthAttr().Set(90.0f);
    });
    run();
    EXPECT_EQ(model->getGfCamera().GetFocalLength(), 90.0f);
    EXPECT_EQ(model->distanceToCenter(), 77.0f);
}

TEST_F(DocumentEventsTest, AnEditOfTheFollowedCameraSettles)
{
    follow("/Rig/Cam");
    watched.document->edit("edit", [](const UsdDocument::ExecContext& context) {
        UsdGeomCamera(context.stage()->GetPrimAtPath(SdfPath("/Rig/Cam"))).GetFocalLengthAttr().Set(90.0f);
    });
    run();
    const std::vector<std::string> labels = labelsOf(watched.takeTasks());
    // The edit, the copy, and at most one more copy after the camera was written back with its focus
    // repaired.
    EXPECT_LE(labels.size(), 3u);
    EXPECT_EQ(watched.document->pendingTaskCount(), 0u);
}

TEST_F(DocumentEventsTest, TwoHitsBeforeTheQueueRunsAreTwoCopies)
{
    follow("/Cam");
    send(naming("/Cam", 1));
    send(naming("/Cam", 1));
    EXPECT_EQ(watched.tasks.size(), 2u);
}

TEST_F(DocumentEventsTest, DuringAnInteractionChangesAreIgnoredForGood)
{
    follow("/Cam");
    const GfCamera before = model->getGfCamera();
    model->beginCameraInteraction();
    send(naming("/Cam", 1));
    model->endCameraInteraction();
    EXPECT_TRUE(watched.tasks.empty());
    EXPECT_EQ(model->getGfCamera(), before);
}

TEST_F(DocumentEventsTest, AFailingCopyStaysInItsTask)
{
    follow("/Cam");
    watched.document->edit("edit", [](const UsdDocument::ExecContext& context) {
        context.stage()->RemovePrim(SdfPath("/Cam"));
    });
    run();
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{
                  "Camera path /Cam for copying to viewport camera is not a valid UsdGeomCamera"});
}

TEST_F(DocumentEventsTest, AnEventFromAnotherThreadIsTheSame)
{
    follow("/Cam");
    std::thread([this] { send(naming("/Cam", 1)); }).join();
    EXPECT_EQ(watched.tasks.size(), 1u);
}

TEST_F(DocumentEventsTest, AnEditTargetIsKeptAndCopiedIntoEachTask)
{
    const UsdEditTarget first(watched.stage->GetRootLayer());
    const UsdEditTarget second(watched.stage->GetSessionLayer());
    const UsdEditTarget* const address = &model->getEditTarget();
    model->setEditTarget(first);
    model->checkCameraUpAxis();
    model->setEditTarget(second);
    model->checkCameraUpAxis();
    EXPECT_EQ(&model->getEditTarget(), address);
    EXPECT_EQ(model->getEditTarget(), second);
    EXPECT_EQ(std::get<UsdEditTarget>(watched.tasks[0].editTarget), first);
    EXPECT_EQ(std::get<UsdEditTarget>(watched.tasks[1].editTarget), second);
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(DocumentEventsTest, AnEditTargetIsToldToNobody)
{
    forget();
    model->setEditTarget(UsdEditTarget(watched.stage->GetSessionLayer()));
    expectSilence();
}

TEST_F(DocumentEventsTest, TheTimeAlreadyShownChangesNothing)
{
    forget();
    model->setCurrentTime(0.0);
    model->setCurrentTime(-0.0);
    expectSilence();
}

TEST_F(DocumentEventsTest, ANewTimeReachesTheRendererAndThenTheBounds)
{
    forget();
    double duringCall = 0.0;
    renderer->onCall = [&](const std::string&) { duringCall = model->currentTime(); };
    model->setCurrentTime(5.0);
    renderer->onCall = nullptr;
    EXPECT_EQ(duringCall, 5.0);
    EXPECT_EQ(renderer->calls, std::vector<std::string>{"setCurrentTime 5"});
    EXPECT_EQ(timeline, (std::vector<std::string>{"renderer setCurrentTime", "A task computeBBox"}));
}

TEST_F(DocumentEventsTest, TheNextNumberIsAnotherTime)
{
    model->setCurrentTime(std::nextafter(0.0, 1.0));
    EXPECT_EQ(watched.tasks.size(), 1u);
}

TEST_F(DocumentEventsTest, ANaNTimeIsAlwaysAnother)
{
    forget();
    model->setCurrentTime(std::nan(""));
    model->setCurrentTime(std::nan(""));
    EXPECT_EQ(renderer->take().size(), 2u);
    EXPECT_EQ(watched.takeTasks().size(), 2u);
}

TEST_F(DocumentEventsTest, ATimeWithoutADocumentIsKeptAndReportedOnce)
{
    watched.document->getEventBus()->unsubscribeListener(watched.listener);
    watched.document.reset();
    renderer->take();
    model->setCurrentTime(5.0);
    EXPECT_EQ(model->currentTime(), 5.0);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCurrentTime 5"});
    EXPECT_EQ(log.takeTexts(), std::vector<std::string>{"Getting scene bounds without valid document"});
}

/// Threads that wait for a frame.
class FrameWaitingTest : public DocumentEventsTest
{
protected:
    /// How many threads stand in the map and have not been released.
    std::size_t blockedThreads()
    {
        const std::lock_guard<std::mutex> lock(membersOf(*model).waitMutex);
        std::size_t blocked = 0;
        for (const auto& [thread, released] : membersOf(*model).waiters)
            blocked += released ? 0 : 1;
        return blocked;
    }

    /// A thread enters the map under the mutex that it gives up by waiting: once it is seen there, it waits.
    void untilBlocked(std::size_t count)
    {
        while (blockedThreads() != count)
            std::this_thread::yield();
    }

    std::future<void> startWaiter()
    {
        return std::async(std::launch::async, [this] { model->waitForFrameRendered(); });
    }
};

TEST_F(FrameWaitingTest, AFrameReleasesTheWaiter)
{
    auto waiter = startWaiter();
    untilBlocked(1);
    send(FrameRenderedEvent());
    waiter.get();
    EXPECT_TRUE(membersOf(*model).waiters.empty());
}

TEST_F(FrameWaitingTest, AWaiterIsKnownByTheSystemsNumberOfItsThread)
{
    std::promise<std::uint32_t> number;
    auto waiter = std::async(std::launch::async, [&] {
        number.set_value(currentThreadId());
        model->waitForFrameRendered();
    });
    untilBlocked(1);
    {
        const std::lock_guard<std::mutex> lock(membersOf(*model).waitMutex);
        EXPECT_EQ(membersOf(*model).waiters.begin()->first, number.get_future().get());
    }
    send(FrameRenderedEvent());
    waiter.get();
}

TEST_F(FrameWaitingTest, AWaiterThatIsWokenWithoutAFrameGoesOnWaiting)
{
    auto waiter = startWaiter();
    untilBlocked(1);
    // A waiter that took this for a frame would leave the map; it gets many chances to.
    for (int round = 0; round < 500; ++round) {
        membersOf(*model).frameCondition.notify_all();
        std::this_thread::yield();
        ASSERT_EQ(blockedThreads(), 1u);
    }
    send(FrameRenderedEvent());
    waiter.get();
}

TEST_F(FrameWaitingTest, AFrameBeforeTheWaitIsNotRemembered)
{
    send(FrameRenderedEvent());
    auto waiter = startWaiter();
    untilBlocked(1);
    send(FrameRenderedEvent());
    waiter.get();
}

TEST_F(FrameWaitingTest, EachWaitNeedsAFrameOfItsOwn)
{
    vesk::tests::Gate firstDone;
    auto waiter = std::async(std::launch::async, [&] {
        model->waitForFrameRendered();
        firstDone.open();
        model->waitForFrameRendered();
    });
    untilBlocked(1);
    send(FrameRenderedEvent());
    firstDone.wait();
    untilBlocked(1);
    send(FrameRenderedEvent());
    waiter.get();
}

TEST_F(FrameWaitingTest, OneFrameReleasesEveryWaiter)
{
    std::vector<std::future<void>> waiters;
    for (int count = 0; count < 8; ++count)
        waiters.push_back(startWaiter());
    untilBlocked(8);
    send(FrameRenderedEvent());
    for (auto& waiter : waiters)
        waiter.get();
}

TEST_F(FrameWaitingTest, OtherEventsReleaseNobody)
{
    auto waiter = startWaiter();
    untilBlocked(1);
    send(std::any(5));
    send(StageChangesEvent());
    model->notifyCameraChanged();
    EXPECT_EQ(blockedThreads(), 1u);
    send(FrameRenderedEvent());
    waiter.get();
}

TEST_F(FrameWaitingTest, AFrameOfAnotherViewportCountsAlsoDuringAnInteraction)
{
    model->beginCameraInteraction();
    FrameRenderedEvent foreign;
    foreign.viewportId = 12345;
    auto waiter = startWaiter();
    untilBlocked(1);
    send(foreign);
    waiter.get();
    model->endCameraInteraction();
}

TEST_F(FrameWaitingTest, TheModelsDeathReleasesItsWaiters)
{
    std::vector<std::future<void>> waiters;
    for (int count = 0; count < 8; ++count)
        waiters.push_back(startWaiter());
    untilBlocked(8);
    model.reset();
    for (auto& waiter : waiters)
        waiter.get();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
