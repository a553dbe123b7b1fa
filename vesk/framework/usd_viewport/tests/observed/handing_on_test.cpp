// How a camera is handed on: what each collaborator is given, and in which order.
#include "observed_fixture.h"

#include <cmath>

namespace vesk::framework::usd_viewport::tests {
namespace {

class HandingOnTest : public ObservedTest
{
protected:
    void SetUp() override
    {
        ObservedTest::SetUp();
        EXPECT_EQ(namesOfCalls(), std::vector<std::string>()) << "construction asked a utility";
        forgetAll();
    }

    void set(double z, const std::string& label = "label")
    {
        model->setGfCamera(cameraAt(GfVec3d(0, 0, z)), label);
    }

    /// Expects one write of a camera at that height, and nothing else.
    void expectWrite(const std::vector<UtilityCall>& calls, double z, const UsdStagePtr& stage)
    {
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].name, "setGfCameraForCameraPath");
        EXPECT_EQ(calls[0].stage, stage);
        EXPECT_EQ(calls[0].path, SdfPath("/Cam"));
        EXPECT_EQ(row(calls[0].camera, 3)[2], z);
        EXPECT_TRUE(std::isnan(calls[0].time));
        EXPECT_EQ(calls[0].thread, std::this_thread::get_id());
    }
};

TEST_F(HandingOnTest, AFreeCameraIsStoredCheckedShownAndAnnouncedInThisOrder)
{
    GfCamera storedBefore;
    utils.onCall = [&](const UtilityCall&, GfCamera& camera) {
        storedBefore = model->getViewportCamera();
        camera.SetFocusDistance(4.0f);
    };
    set(7);
    EXPECT_EQ(timeline, (std::vector<std::string>{"utils checkGfCameraFocusDistance", "renderer setCamera",
                                                  "A camera event"}));
    EXPECT_EQ(storedBefore, cameraAt(GfVec3d(0, 0, 7)));
    GfCamera checked = cameraAt(GfVec3d(0, 0, 7));
    checked.SetFocusDistance(4.0f);
    EXPECT_EQ(model->getGfCamera(), checked);
    EXPECT_EQ(renderer->lastCamera(), checked);
}

TEST_F(HandingOnTest, TheFocusIsCheckedAgainstTheCachedBounds)
{
    set(7);
    EXPECT_EQ(utils.take().at(0).bounds, GfRange3f());
    utils.sceneBounds = GfRange3f(GfVec3f(-2), GfVec3f(3));
    cacheBounds();
    utils.take();
    set(8);
    EXPECT_EQ(utils.take().at(0).bounds, utils.sceneBounds);
}

TEST_F(HandingOnTest, AnEqualCameraAsksNoUtility)
{
    model->setViewportCamera(watched.stage, model->getViewportCamera());
    EXPECT_EQ(timeline, std::vector<std::string>());
}

TEST_F(HandingOnTest, AFreeCameraIsWrittenOnNoStage)
{
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(1, 2, 3)));
    EXPECT_EQ(namesOfCalls(), std::vector<std::string>{"checkGfCameraFocusDistance"});
}

TEST_F(HandingOnTest, AFreeCameraTakesNoCameraLock)
{
    bool wasFree = false;
    renderer->onCall = [&](const std::string&) { wasFree = isFree(membersOf(*model).cameraMutex); };
    set(7);
    renderer->onCall = nullptr;
    EXPECT_TRUE(wasFree);
}

TEST_F(HandingOnTest, ADirectWriteGoesToTheGivenStageAtTheDefaultTime)
{
    followCamera();
    model->setCurrentTime(5.0);
    watched.document->dropPendingTasks();
    forgetAll();
    const UsdStageRefPtr other = stageFrom(kScene);
    model->setViewportCamera(other, cameraAt(GfVec3d(0, 0, 9)));
    EXPECT_EQ(timeline, (std::vector<std::string>{"utils checkGfCameraFocusDistance",
                                                  "utils setGfCameraForCameraPath", "A camera event"}));
    std::vector<UtilityCall> calls = utils.take();
    calls.erase(calls.begin());
    expectWrite(calls, 9.0, other);
}

TEST_F(HandingOnTest, ADirectWriteGetsTheCheckedCamera)
{
    followCamera();
    utils.onCall = [](const UtilityCall& call, GfCamera& camera) {
        if (call.name == "checkGfCameraFocusDistance") camera.SetFocusDistance(4.0f);
    };
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(0, 0, 9)));
    EXPECT_EQ(utils.take().at(1).camera.GetFocusDistance(), 4.0f);
}

TEST_F(HandingOnTest, ADirectWriteAndItsAnnouncementHoldTheCameraLock)
{
    followCamera();
    std::vector<bool> free;
    utils.onCall = [&](const UtilityCall& call, GfCamera&) {
        if (call.name == "setGfCameraForCameraPath") free.push_back(isFree(membersOf(*model).cameraMutex));
    };
    const std::uint32_t listener =
        watched.document->getEventBus()->subscribeListener([&](const std::any& event) {
            if (std::any_cast<ViewportCameraChangedEvent>(&event))
                free.push_back(isFree(membersOf(*model).cameraMutex));
        });
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(0, 0, 9)));
    watched.document->getEventBus()->unsubscribeListener(listener);
    EXPECT_EQ(free, (std::vector<bool>{false, false}));
}

TEST_F(HandingOnTest, ADirectWriteInsideAnInteractionIsSilentAndLeavesNothingPending)
{
    followCamera();
    model->beginCameraInteraction();
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(0, 0, 9)));
    EXPECT_EQ(namesOfCalls().back(), "setGfCameraForCameraPath");
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    EXPECT_TRUE(watched.takeTasks().empty());
    set(10);
    EXPECT_EQ(watched.takeTasks().size(), 1u);
    model->endCameraInteraction();
}

TEST_F(HandingOnTest, ADirectWriteThatFailsReachesTheCallerAndReleasesTheLock)
{
    followCamera();
    utils.onCall = [](const UtilityCall& call, GfCamera&) {
        if (call.name == "setGfCameraForCameraPath") throw std::runtime_error("read-only layer");
    };
    EXPECT_THROW(model->setViewportCamera(watched.stage, cameraAt(GfVec3d(0, 0, 9))), std::runtime_error);
    EXPECT_TRUE(isFree(membersOf(*model).cameraMutex));
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
}

TEST_F(HandingOnTest, APendingWriteTakesADirectOneOverWithoutAnEvent)
{
    followCamera();
    model->beginCameraInteraction();
    set(9);
    model->endCameraInteraction();
    forgetAll();
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(0, 0, 12)));
    EXPECT_EQ(timeline, std::vector<std::string>{"utils checkGfCameraFocusDistance"});
    utils.take();
    watched.document->runNextTask();
    expectWrite(utils.take(), 12.0, watched.stage);
}

TEST_F(HandingOnTest, AWriteTaskWritesAndThenAnnounces)
{
    followCamera();
    set(9);
    forgetAll();
    watched.document->runNextTask();
    EXPECT_EQ(timeline, (std::vector<std::string>{"utils setGfCameraForCameraPath", "A camera event"}));
    expectWrite(utils.take(), 9.0, watched.stage);
}

TEST_F(HandingOnTest, AWriteTaskUsesTheStageOfItsRun)
{
    followCamera();
    set(9);
    utils.take();
    watched.withoutStage = true;
    watched.document->runNextTask();
    expectWrite(utils.take(), 9.0, UsdStagePtr());
}

TEST_F(HandingOnTest, AWriteTaskWritesWithoutTheCameraLock)
{
    followCamera();
    set(9);
    bool wasFree = false;
    utils.onCall = [&](const UtilityCall&, GfCamera&) { wasFree = isFree(membersOf(*model).cameraMutex); };
    watched.document->runNextTask();
    EXPECT_TRUE(wasFree);
}

TEST_F(HandingOnTest, AWriteTaskThatFailsIsSilentAndTheNextChangeQueuesAnother)
{
    followCamera();
    model->beginCameraInteraction();
    set(9);
    model->endCameraInteraction();
    forgetAll();
    utils.onCall = [](const UtilityCall& call, GfCamera&) {
        if (call.name == "setGfCameraForCameraPath") throw std::runtime_error("read-only layer");
    };
    EXPECT_NO_THROW(watched.document->runPendingTasks());
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    set(10);
    EXPECT_EQ(watched.takeTasks().size(), 1u);
}

TEST_F(HandingOnTest, ThreeChangesOutsideAnInteractionAreThreeWritesOfTheNewestAndThreeEvents)
{
    followCamera();
    set(9, "first");
    set(10, "second");
    set(11, "third");
    EXPECT_EQ(labelsOf(watched.takeTasks()), (std::vector<std::string>{"first", "second", "third"}));
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    utils.take();
    for (int count = 0; count < 3; ++count) {
        watched.document->runNextTask();
        expectWrite(utils.take(), 11.0, watched.stage);
        EXPECT_EQ(watched.takeCameraEvents(), 1u);
    }
    EXPECT_FALSE(watched.document->runNextTask());
}

TEST_F(HandingOnTest, ADragWhileFollowingIsOneWriteUnderItsFirstLabelAndOneEventAtItsEnd)
{
    followCamera();
    model->beginCameraInteraction();
    model->orbitCamera(3, 4, "first");
    model->orbitCamera(5, 6, "second");
    model->orbitCamera(7, 8, "third");
    EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>{"first"});
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_TRUE(renderer->take().empty());
    utils.take();
    // The bracket is closed by now: the write announces itself as well.
    watched.document->runNextTask();
    EXPECT_EQ(utils.take().at(0).camera, model->getGfCamera());
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_FALSE(watched.document->runNextTask());
}

TEST_F(HandingOnTest, ADragOfAFreeCameraShowsEveryStepAndIsAnnouncedOnce)
{
    model->beginCameraInteraction();
    for (int step = 0; step < 5; ++step)
        model->orbitCamera(3, 4, "orbit");
    EXPECT_EQ(renderer->take(), std::vector<std::string>(5, "setCamera camera"));
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_TRUE(watched.takeTasks().empty());
}

TEST_F(HandingOnTest, LabelsAreThoseThatTheRegistryGave)
{
    followCamera();
    set(9, "");
    model->checkCameraUpAxis();
    model->copyCameraFromPath("/Cam", false, "");
    model->frameScene(ProjectionType::Perspective, ViewDirection::ThreeQuarters, {});
    EXPECT_EQ(labelsOf(watched.takeTasks()),
              (std::vector<std::string>{"<camera update>", "<camera adjust up>", "<camera copy from path>",
                                        "<frame scene>"}));
    watched.document->dropPendingTasks();
}

TEST_F(HandingOnTest, LabelsAreRegisteredOnceAndBeforeAnyModel)
{
    const auto& labels = registeredLabels();
    ASSERT_EQ(labels.size(), 25u);
    EXPECT_EQ(labels.front(),
              std::make_pair(std::string("cameraAdjustUpDirection"), std::string("camera adjust up")));
    EXPECT_EQ(labels.back(),
              std::make_pair(std::string("matchEnvironmentLight"), std::string("match environment light")));
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
