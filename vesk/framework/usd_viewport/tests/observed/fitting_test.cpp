// What the model gives its camera and bounds utilities.
#include "observed_fixture.h"

namespace vesk::framework::usd_viewport::tests {
namespace {

class FittingTest : public ObservedTest
{
protected:
    void SetUp() override
    {
        ObservedTest::SetUp();
        model->setGfCamera(cameraAt(GfVec3d(0, 0, 10)), "");
        model->setDistanceToCenter(10.0f);
        forgetAll();
    }

    /// One gesture, and the two distances that the clipping range is asked for after it.
    struct Gesture
    {
        std::string name;
        std::function<void(const std::string&)> run;
        float pivotDistance;
        float otherDistance;
    };

    std::vector<Gesture> gestures()
    {
        return {{"orbit", [this](const std::string& label) { model->orbitCamera(3, 4, label); }, 10, 10},
                {"angles",
                 [this](const std::string& label) { model->orbitCameraUsingDeltaAngles(3, 4, label); }, 10,
                 10},
                {"rotate", [this](const std::string& label) { model->rotateCamera(3, 4, label); }, 10, 10},
                {"pan", [this](const std::string& label) { model->panCamera(3, 4, label); }, 10, 10},
                // 100 of a width of 1000 is a tenth of the distance.
                {"zoom", [this](const std::string& label) { model->zoomCamera(100, 0, label); }, 9, 10},
                {"move", [this](const std::string& label) { model->moveCamera(3, 4, 5, label); }, 15, 15}};
    }

    void reset()
    {
        utils.onCall = nullptr;
        model->setGfCamera(cameraAt(GfVec3d(0, 0, 10)), "");
        model->setDistanceToCenter(10.0f);
        forgetAll();
    }
};

TEST_F(FittingTest, EveryGestureFitsTheRangeThenChecksTheFocusThenShowsAndAnnounces)
{
    for (const Gesture& gesture : gestures()) {
        reset();
        GfCamera shownBefore;
        utils.onCall = [&](const UtilityCall& call, GfCamera& camera) {
            if (call.name != "updateGfCameraNearFar") return;
            shownBefore = model->getViewportCamera();
            camera.SetClippingRange(GfRange1f(3.0f, 5.0f));
        };
        gesture.run("label");
        EXPECT_EQ(timeline,
                  (std::vector<std::string>{"utils updateGfCameraNearFar", "utils checkGfCameraFocusDistance",
                                            "renderer setCamera", "A camera event"}))
            << gesture.name;
        EXPECT_EQ(shownBefore, cameraAt(GfVec3d(0, 0, 10))) << gesture.name;
        const std::vector<UtilityCall> calls = utils.take();
        EXPECT_EQ(calls[0].camera.GetTransform(), model->getGfCamera().GetTransform()) << gesture.name;
        EXPECT_EQ(renderer->lastCamera().GetClippingRange(), GfRange1f(3.0f, 5.0f)) << gesture.name;
    }
}

TEST_F(FittingTest, EveryGestureFitsTheRangeToItsOwnDistances)
{
    for (const Gesture& gesture : gestures()) {
        reset();
        gesture.run("label");
        const UtilityCall call = utils.take().at(0);
        EXPECT_EQ(call.name, "updateGfCameraNearFar");
        EXPECT_EQ(call.distanceToCenter, gesture.pivotDistance) << gesture.name;
        EXPECT_EQ(call.distance, gesture.otherDistance) << gesture.name;
        EXPECT_EQ(model->distanceToCenter(), gesture.pivotDistance) << gesture.name;
    }
}

TEST_F(FittingTest, EveryGesturePassesTheUpAxisAndTheCachedBounds)
{
    utils.sceneBounds = GfRange3f(GfVec3f(-2), GfVec3f(3));
    cacheBounds();
    for (const bool zUp : {true, false}) {
        model->setZUp(zUp);
        for (const Gesture& gesture : gestures()) {
            reset();
            gesture.run("label");
            for (const UtilityCall& call : utils.take()) {
                EXPECT_EQ(call.bounds, utils.sceneBounds) << gesture.name;
                if (call.name == "updateGfCameraNearFar") {
                    EXPECT_EQ(call.zUp, zUp) << gesture.name;
                }
            }
            EXPECT_TRUE(watched.tasks.empty()) << gesture.name << " asked for new bounds";
        }
    }
}

TEST_F(FittingTest, EveryGestureOfAFollowedCameraIsHandedOnWithoutAStage)
{
    followCamera();
    for (const Gesture& gesture : gestures()) {
        reset();
        gesture.run("label");
        EXPECT_EQ(timeline, (std::vector<std::string>{"utils updateGfCameraNearFar",
                                                      "utils checkGfCameraFocusDistance", "A task label"}))
            << gesture.name;
        watched.document->dropPendingTasks();
    }
}

TEST_F(FittingTest, ZeroMotionAsksNoUtility)
{
    model->orbitCamera(0, 0, "label");
    model->orbitCameraUsingDeltaAngles(0, 0, "label");
    model->rotateCamera(0, 0, "label");
    model->panCamera(0, 0, "label");
    model->zoomCamera(0, 0, "label");
    model->moveCamera(0, 0, 0, "label");
    EXPECT_EQ(timeline, std::vector<std::string>());
}

TEST_F(FittingTest, NoUtilityIsCalledUnderTheLockOfTheBounds)
{
    int calls = 0;
    utils.onCall = [&](const UtilityCall& call, GfCamera&) {
        ++calls;
        EXPECT_TRUE(isFree(membersOf(*model).boundsMutex)) << call.name;
    };
    model->orbitCamera(3, 4, "label");
    model->copyCameraFromPath("/Cam", true, "");
    run();
    // The range and the focus of the gesture; the distance and the focus of the copy.
    EXPECT_EQ(calls, 4);
}

TEST_F(FittingTest, AZoomMovesTheFocusAfterTheRangeAndBeforeTheHandOn)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetFocusDistance(5.0f);
    model->setGfCamera(camera, "");
    utils.take();
    model->zoomCamera(100, 0, "label");
    const std::vector<UtilityCall> calls = utils.take();
    EXPECT_EQ(calls[0].camera.GetFocusDistance(), 5.0f);
    EXPECT_EQ(calls[1].camera.GetFocusDistance(), 4.0f);
    EXPECT_EQ(renderer->lastCamera().GetFocusDistance(), 4.0f);
}

TEST_F(FittingTest, AZoomShrinksAnOrthographicViewBeforeTheRangeIsFitted)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetProjection(GfCamera::Orthographic);
    model->setGfCamera(camera, "");
    utils.take();
    model->zoomCamera(100, 0, "label");
    // The new distance of 9 from top to bottom, in tenths.
    EXPECT_FLOAT_EQ(utils.take().at(0).camera.GetVerticalAperture(), 90.0f);
}

TEST_F(FittingTest, AZoomHasTheNewDistanceBeforeAnybodyIsTold)
{
    std::vector<float> seen;
    utils.onCall = [&](const UtilityCall&, GfCamera&) { seen.push_back(model->distanceToCenter()); };
    renderer->onCall = [&](const std::string&) { seen.push_back(model->distanceToCenter()); };
    const std::uint32_t listener = watched.document->getEventBus()->subscribeListener(
        [&](const std::any&) { seen.push_back(model->distanceToCenter()); });
    model->zoomCamera(100, 0, "label");
    watched.document->getEventBus()->unsubscribeListener(listener);
    renderer->onCall = nullptr;
    EXPECT_EQ(seen, std::vector<float>(4, 9.0f));
}

TEST_F(FittingTest, AdjustingFitsTheApertureThenTheRangeAndNothingElse)
{
    utils.sceneBounds = GfRange3f(GfVec3f(-2), GfVec3f(3));
    cacheBounds();
    model->setZUp(true);
    forgetAll();
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetHorizontalAperture(5.0f);
    model->adjustGfCamera(camera);
    EXPECT_EQ(timeline, std::vector<std::string>{"utils updateGfCameraNearFar"});
    const UtilityCall call = utils.take().at(0);
    EXPECT_EQ(call.camera.GetHorizontalAperture(), 20.955f);
    EXPECT_TRUE(call.zUp);
    EXPECT_EQ(call.distanceToCenter, 10.0f);
    EXPECT_EQ(call.distance, 10.0f);
    EXPECT_EQ(call.bounds, utils.sceneBounds);
}

TEST_F(FittingTest, TheTimeOfABoundsTaskIsTheModelsWhenItRuns)
{
    model->setCurrentTime(5.0);
    model->setRenderProxyGeometry(true);
    watched.document->runNextTask();
    const UtilityCall call = utils.take().at(0);
    EXPECT_EQ(call.name, "computeAlignedGeometryBounds");
    EXPECT_EQ(call.time, 5.0);
    EXPECT_TRUE(call.proxyGeometry);
    EXPECT_EQ(call.path, SdfPath::AbsoluteRootPath());
}

TEST_F(FittingTest, AProxySwitchIsKeptBeforeTheRendererRefusesIt)
{
    model->getSceneBounds();
    watched.document->runNextTask();
    EXPECT_FALSE(utils.take().at(0).proxyGeometry);
    renderer->onCall = [](const std::string&) { throw std::runtime_error("device lost"); };
    EXPECT_THROW(model->setRenderProxyGeometry(true), std::runtime_error);
    renderer->onCall = nullptr;
    model->getSceneBounds();
    watched.document->runNextTask();
    EXPECT_TRUE(utils.take().at(0).proxyGeometry);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
