// What copying, following and turning a camera ask of the utilities, in which order.
#include "observed_fixture.h"

#include <vesk/usd/utils/utils_error.h>

#include <cmath>

namespace vesk::framework::usd_viewport::tests {
namespace {

using vesk::base::error_handling::makeErrorCode;
using vesk::usd::utils::UtilsError;

const GfRange3f kBounds8(GfVec3f(-8), GfVec3f(8));

class StageCamerasOrderTest : public ObservedTest
{
protected:
    void SetUp() override
    {
        ObservedTest::SetUp();
        utils.sceneBounds = kBounds8;
        utils.sceneCamera = cameraAt(GfVec3d(0, 0, 30), 70.0f);
        utils.distanceToCenter = 11.0f;
        forgetAll();
    }

    Future<void> copy(const std::string& path, bool updateDistance)
    {
        Future<void> copied = model->copyCameraFromPath(path, updateDistance, "copy");
        timeline.clear();
        run();
        return copied;
    }

    Future<void> activate(const std::string& path)
    {
        Future<void> active = model->setActiveCameraPath(path);
        timeline.clear();
        run();
        return active;
    }

    Future<void> checkUpAxis()
    {
        Future<void> checked = model->checkCameraUpAxis();
        timeline.clear();
        run();
        return checked;
    }
};

TEST_F(StageCamerasOrderTest, ACopyIsMeasuredThenCheckedThenShownAndAnnounced)
{
    copy("/Cam", true);
    EXPECT_EQ(timeline, (Names{"utils getGfCameraDistanceToCenter", "utils checkGfCameraFocusDistance",
                               "renderer setCamera", "A camera event"}));
    EXPECT_EQ(model->distanceToCenter(), 11.0f);
}

TEST_F(StageCamerasOrderTest, ACopyThatKeepsTheDistanceDoesNotMeasureIt)
{
    copy("/Cam", false);
    EXPECT_EQ(timeline, (Names{"utils checkGfCameraFocusDistance", "renderer setCamera", "A camera event"}));
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
}

TEST_F(StageCamerasOrderTest, ACopyIsMeasuredWithItsCleanTransformAgainstTheCachedBounds)
{
    UsdGeomXformable(watched.stage->GetPrimAtPath(SdfPath("/Cam"))).AddScaleOp().Set(GfVec3f(2.0f));
    cacheBounds();
    utils.take();
    copy("/Cam", true);
    const std::vector<UtilityCall> calls = utils.take();
    EXPECT_EQ(calls.at(0).name, "getGfCameraDistanceToCenter");
    EXPECT_EQ(calls.at(0).bounds, kBounds8);
    EXPECT_EQ(row(calls.at(0).camera, 0), GfVec3d(1, 0, 0));
    EXPECT_EQ(row(calls.at(0).camera, 3), GfVec3d(0, 0, 20));
    EXPECT_EQ(calls.at(1).camera, calls.at(0).camera);
}

TEST_F(StageCamerasOrderTest, ACopyWhileFollowingIsWrittenOnceOnTheStageOfTheTask)
{
    followCamera();
    copy("/Rig/Cam", false);
    EXPECT_EQ(timeline, (Names{"utils checkGfCameraFocusDistance", "utils setGfCameraForCameraPath",
                               "A camera event"}));
    const UtilityCall write = utils.take().back();
    EXPECT_EQ(write.stage, watched.stage);
    EXPECT_EQ(write.path, SdfPath("/Cam"));
    EXPECT_EQ(row(write.camera, 3), GfVec3d(100, 0, 0));
    EXPECT_TRUE(std::isnan(write.time));
}

TEST_F(StageCamerasOrderTest, ACopyThatFailsAsksNothing)
{
    EXPECT_TRUE(copy("/Mesh", true).error());
    EXPECT_EQ(timeline, Names());
    log.take();
}

TEST_F(StageCamerasOrderTest,
       FollowingMeasuresTheSceneReadsTheCameraChecksItShowsThePathAndMeasuresTheDistance)
{
    watchBoundsCache();
    std::string pathInRenderer = "none";
    std::string pathInMeasurement = "none";
    renderer->onCall = [&](const std::string&) { pathInRenderer = model->activeCameraPath(); };
    const auto watch = utils.onEntry;
    utils.onEntry = [&](UtilityCall& call) {
        watch(call);
        if (call.name == "getGfCameraDistanceToCenter") pathInMeasurement = model->activeCameraPath();
    };
    activate("/Cam");
    renderer->onCall = nullptr;
    EXPECT_EQ(timeline, (Names{"utils computeAlignedGeometryBounds", "utils getGfCameraFromCameraPath",
                               "utils checkGfCameraFocusDistance", "renderer setCamera",
                               "utils getGfCameraDistanceToCenter"}));
    const std::vector<UtilityCall> calls = utils.take();
    EXPECT_EQ(namesOfHolders(calls), Names{"computeAlignedGeometryBounds"});
    EXPECT_EQ(calls[1].stage, watched.stage);
    EXPECT_EQ(calls[1].path, SdfPath("/Cam"));
    EXPECT_TRUE(std::isnan(calls[1].time));
    EXPECT_EQ(calls[2].camera, *utils.sceneCamera);
    EXPECT_EQ(calls[2].bounds, kBounds8);
    EXPECT_EQ(calls[3].bounds, kBounds8);
    EXPECT_EQ(pathInRenderer, "");
    EXPECT_EQ(pathInMeasurement, "/Cam");
    EXPECT_EQ(model->distanceToCenter(), 11.0f);
    EXPECT_EQ(model->getGfCamera(), *utils.sceneCamera);
}

TEST_F(StageCamerasOrderTest, FollowingKeepsATransformThatACopyWouldClean)
{
    GfCamera scaled;
    scaled.SetTransform(GfMatrix4d(1.0).SetScale(2.0));
    utils.sceneCamera = scaled;
    activate("/Cam");
    EXPECT_EQ(model->getGfCamera().GetTransform(), GfMatrix4d(1.0).SetScale(2.0));
}

TEST_F(StageCamerasOrderTest, FollowingAnUnreadableCameraOnlyMeasures)
{
    followCamera();
    utils.sceneCamera.reset();
    const GfCamera before = model->getViewportCamera();
    EXPECT_FALSE(activate("/Rig/Cam").error());
    EXPECT_EQ(timeline, (Names{"utils computeAlignedGeometryBounds", "utils getGfCameraFromCameraPath",
                               "utils getGfCameraDistanceToCenter"}));
    EXPECT_EQ(utils.take().back().camera, before);
    EXPECT_EQ(model->activeCameraPath(), "");
    EXPECT_EQ(model->getViewportCamera(), before);
}

TEST_F(StageCamerasOrderTest, FollowingNothingMeasuresShowsTheViewportCameraAndMeasures)
{
    followCamera();
    for (const char* path : {"", "ill-formed{"}) {
        activate(path);
        EXPECT_EQ(timeline, (Names{"utils computeAlignedGeometryBounds", "renderer setCamera",
                                   "utils getGfCameraDistanceToCenter"}));
        EXPECT_EQ(renderer->lastCamera(), model->getGfCamera());
        EXPECT_EQ(model->activeCameraPath(), "");
    }
}

TEST_F(StageCamerasOrderTest, FollowingWithoutBoundsAsksNoFurther)
{
    utils.boundsError = makeErrorCode(UtilsError::InvalidStage);
    EXPECT_TRUE(activate("/Cam").error());
    EXPECT_EQ(timeline, Names{"utils computeAlignedGeometryBounds"});
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
    EXPECT_EQ(log.take().size(), 1u);
}

TEST_F(StageCamerasOrderTest, AnUpAxisThatIsTheModelsAsksNoFurther)
{
    EXPECT_FALSE(checkUpAxis().error());
    EXPECT_EQ(timeline, Names{"utils stageIsZUp"});
    EXPECT_EQ(utils.take().at(0).stage, watched.stage);
}

TEST_F(StageCamerasOrderTest, AnotherUpAxisIsKnownBeforeTheCameraIsCheckedShownAndAnnounced)
{
    utils.stageZUp = true;
    std::vector<bool> seen;
    utils.onCall = [&](const UtilityCall&, GfCamera&) { seen.push_back(model->zUp()); };
    renderer->onCall = [&](const std::string&) { seen.push_back(model->zUp()); };
    checkUpAxis();
    renderer->onCall = nullptr;
    EXPECT_EQ(timeline, (Names{"utils stageIsZUp", "utils checkGfCameraFocusDistance", "renderer setCamera",
                               "A camera event"}));
    EXPECT_EQ(seen, (std::vector<bool>{true, true}));
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
}

TEST_F(StageCamerasOrderTest, AnotherUpAxisIsWrittenToAFollowedCameraOrQueuedUnderItsLabel)
{
    followCamera();
    utils.stageZUp = true;
    checkUpAxis();
    EXPECT_EQ(utils.take().back().path, SdfPath("/Cam"));
    EXPECT_EQ(labelsOf(watched.takeTasks()), Names{"<camera adjust up>"});

    utils.stageZUp = false;
    model->checkCameraUpAxis();
    watched.withoutStage = true;
    run();
    watched.withoutStage = false;
    EXPECT_EQ(labelsOf(watched.takeTasks()), (Names{"<camera adjust up>", "<camera adjust up>"}));
}

TEST_F(StageCamerasOrderTest, AnUpAxisThatIsAnErrorLeavesOneRecordAndChangesNothing)
{
    utils.upAxisError = makeErrorCode(UtilsError::InvalidStage);
    EXPECT_TRUE(checkUpAxis().error());
    const auto records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "CheckResult: error " + makeErrorCode(UtilsError::InvalidStage).message() +
                                   " (category: UtilsError, code: 1) in result of type " +
                                   typeid(bool).name());
    EXPECT_FALSE(model->zUp());
    EXPECT_EQ(timeline, Names{"utils stageIsZUp"});
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
