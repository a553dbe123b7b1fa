// What the tasks of the bounds and what follows them ask of the utilities.
#include "observed_fixture.h"

#include <vesk/usd/utils/utils_error.h>

namespace vesk::framework::usd_viewport::tests {
namespace {

using vesk::base::error_handling::makeErrorCode;
using vesk::usd::utils::UtilsError;

const GfRange3f kOld(GfVec3f(-1), GfVec3f(1));
const GfRange3f kNew(GfVec3f(-8), GfVec3f(8));

class BoundsOrderTest : public ObservedTest
{
protected:
    void SetUp() override
    {
        ObservedTest::SetUp();
        utils.sceneBounds = kOld;
        cacheBounds();
        utils.sceneBounds = kNew;
        model->setDistanceToCenter(6.0f);
        forgetAll();
    }

    GfRange3f cachedBounds()
    {
        utils.take();
        const auto onCall = std::exchange(utils.onCall, nullptr);
        model->adjustGfCamera(GfCamera());
        utils.onCall = onCall;
        return utils.take().at(0).bounds;
    }

    void recompute()
    {
        model->recomputeCachedSceneBounds();
        timeline.clear();
        run();
    }
};

TEST_F(BoundsOrderTest, ATaskMeasuresTheWholeStageWithTheDocumentsCache)
{
    const UsdGeomBBoxCache* const cache = watchBoundsCache();
    const Future<GfRange3f> bounds = model->getSceneBounds();
    EXPECT_EQ(namesOfCalls(), Names());
    run();
    const std::vector<UtilityCall> calls = utils.take();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].name, "computeAlignedGeometryBounds");
    EXPECT_EQ(calls[0].stage, watched.stage);
    EXPECT_EQ(calls[0].path, SdfPath::AbsoluteRootPath());
    EXPECT_EQ(calls[0].cache, cache);
    EXPECT_TRUE(calls[0].holdsCache);
    EXPECT_FALSE(holdsBoundsCache());
    EXPECT_EQ(bounds.get(), kNew);
    EXPECT_EQ(cachedBounds(), kOld) << "asking does not touch the cache";
}

TEST_F(BoundsOrderTest, ATaskThatFailsOrThrowsLetsGoOfTheCache)
{
    watchBoundsCache();
    utils.boundsError = makeErrorCode(UtilsError::InvalidStage);
    model->getSceneBounds();
    run();
    EXPECT_FALSE(holdsBoundsCache());
    EXPECT_EQ(log.take().size(), 1u);

    utils.onEntry = [](UtilityCall&) { throw std::runtime_error("cannot measure"); };
    const Future<GfRange3f> bounds = model->getSceneBounds();
    run();
    utils.onEntry = nullptr;
    EXPECT_FALSE(holdsBoundsCache());
    EXPECT_THROW(bounds.get(), std::runtime_error);
}

TEST_F(BoundsOrderTest, ARecomputationFitsAnUntouchedCopyThenChecksShowsAndAnnounces)
{
    const GfCamera before = model->getViewportCamera();
    GfCamera shown;
    utils.onCall = [&](const UtilityCall& call, GfCamera& camera) {
        if (call.name != "updateGfCameraNearFar") return;
        shown = model->getViewportCamera();
        camera.SetClippingRange(GfRange1f(2.0f, 3.0f));
    };
    recompute();
    utils.onCall = nullptr;
    EXPECT_EQ(timeline, (Names{"utils computeAlignedGeometryBounds", "utils updateGfCameraNearFar",
                               "utils checkGfCameraFocusDistance", "renderer setCamera", "A camera event"}));
    EXPECT_EQ(shown, before) << "the copy is fitted, not the viewport's camera";
    const std::vector<UtilityCall> calls = utils.take();
    EXPECT_EQ(calls[1].bounds, kNew);
    EXPECT_EQ(calls[1].distanceToCenter, 6.0f);
    EXPECT_EQ(calls[1].distance, 6.0f);
    EXPECT_EQ(calls[2].bounds, kNew);
    EXPECT_EQ(model->getGfCamera().GetClippingRange(), GfRange1f(2.0f, 3.0f));
    EXPECT_EQ(renderer->lastCamera(), model->getGfCamera());
}

TEST_F(BoundsOrderTest, ARecomputationWhoseFittingThrowsKeepsTheBoundsAndIsSilent)
{
    const GfCamera before = model->getViewportCamera();
    utils.onCall = [](const UtilityCall&, GfCamera&) { throw std::runtime_error("cannot fit"); };
    recompute();
    utils.onCall = nullptr;
    EXPECT_EQ(timeline, (Names{"utils computeAlignedGeometryBounds", "utils updateGfCameraNearFar"}));
    EXPECT_EQ(model->getViewportCamera(), before);
    EXPECT_EQ(cachedBounds(), kNew);
}

TEST_F(BoundsOrderTest, ARecomputationThatFailsAsksNoFurther)
{
    utils.boundsError = makeErrorCode(UtilsError::InvalidStage);
    recompute();
    EXPECT_EQ(timeline, Names{"utils computeAlignedGeometryBounds"});
    EXPECT_EQ(log.take().size(), 1u);
    EXPECT_EQ(cachedBounds(), kOld);
}

TEST_F(BoundsOrderTest, ReadersNeverWaitForAMeasurement)
{
    GfCamera adjusted;
    utils.onEntry = [&](UtilityCall& call) {
        if (call.name != "computeAlignedGeometryBounds") return;
        // On another thread, and waited for: it would hang if a lock were held over the measurement.
        adjusted =
            std::async(std::launch::async, [&] { return model->adjustGfCamera(cameraAt(GfVec3d(4))); }).get();
    };
    recompute();
    EXPECT_EQ(row(adjusted, 3), GfVec3d(4));
}

TEST_F(BoundsOrderTest, WhileFollowingARecomputationWritesNothingItself)
{
    followCamera();
    watched.document->runPendingTasks();
    model->recomputeCachedSceneBounds();
    watched.document->runNextTask();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_EQ(namesOfCalls(),
              (Names{"computeAlignedGeometryBounds", "updateGfCameraNearFar", "checkGfCameraFocusDistance"}));
    EXPECT_EQ(labelsOf(watched.takeTasks()), (Names{"computeBBox", "<camera update>"}));
    EXPECT_EQ(renderer->take(), Names());
    run();
    EXPECT_EQ(namesOfCalls(), Names{"setGfCameraForCameraPath"});
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
