#include "viewport_fixture.h"

#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>

namespace vesk::framework::usd_viewport::tests {
namespace {

class SceneCamerasTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    Future<void> done(const Future<void>& future)
    {
        run();
        EXPECT_TRUE(future.isReady());
        return future;
    }

    void makeStageZUp()
    {
        UsdGeomSetStageUpAxis(watched.stage, UsdGeomTokens->z);
        watched.document->dropPendingTasks();
    }
};

TEST_F(SceneCamerasTest, CopyingTakesTheCameraAtTheCurrentTime)
{
    model->copyCameraFromPath("/Moving", false, "");
    model->setCurrentTime(10.0);
    run();
    EXPECT_EQ(model->getGfCamera().GetFocalLength(), 80.0f);
}

TEST_F(SceneCamerasTest, CopyingTellsTheRendererAndTheBus)
{
    done(model->copyCameraFromPath("/Cam", false, "")).get();
    EXPECT_EQ(timeline, (std::vector<std::string>{"A task camera copy from path", "renderer setCamera",
                                                  "A camera event"}));
    EXPECT_EQ(model->getGfCamera(), stageCamera("/Cam"));
}

TEST_F(SceneCamerasTest, CopyingKeepsTheDistanceUnlessAsked)
{
    model->setDistanceToCenter(77.0f);
    done(model->copyCameraFromPath("/Cam", false, ""));
    EXPECT_EQ(model->distanceToCenter(), 77.0f);
    cacheBounds();
    done(model->copyCameraFromPath("/Cam", true, ""));
    EXPECT_EQ(model->distanceToCenter(), 20.0f);
}

TEST_F(SceneCamerasTest, CopyingTakesItsLabelOrTheDefaultOne)
{
    model->copyCameraFromPath("/Cam", false, "my copy");
    model->copyCameraFromPath("/Cam", false, "");
    EXPECT_EQ(labelsOf(watched.tasks), (std::vector<std::string>{"my copy", "camera copy from path"}));
    EXPECT_EQ(watched.tasks[0].type, usd_document::TaskType::Edit);
    run();
}

TEST_F(SceneCamerasTest, CopyingCleansTheTransform)
{
    watched.document->edit("scale", [](const UsdDocument::ExecContext& context) {
        UsdGeomXformable(context.stage()->GetPrimAtPath(SdfPath("/Cam")))
            .MakeMatrixXform()
            .Set(GfMatrix4d(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 2, 3, 1));
    });
    done(model->copyCameraFromPath("/Cam", false, ""));
    EXPECT_EQ(model->getGfCamera().GetTransform(),
              GfMatrix4d(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1));
}

TEST_F(SceneCamerasTest, CopyingFromAnythingElseFailsAndChangesNothing)
{
    const GfCamera before = model->getGfCamera();
    for (const std::string path :
         {"/Mesh", "/Nowhere", "", "/", "not a path", "/Cam.focalLength", "/{}", "relative"}) {
        const Future<void> copied = model->copyCameraFromPath(path, true, "");
        run();
        expectError(ErrEnum::InvalidCamera, [&] { copied.get(); });
        const std::vector<vesk::tests::LogRecord> records = log.take();
        ASSERT_EQ(records.size(), 1u) << path;
        EXPECT_EQ(records[0].level, spdlog::level::err);
        EXPECT_EQ(records[0].text,
                  "Camera path " + path + " for copying to viewport camera is not a valid UsdGeomCamera");
    }
    EXPECT_EQ(model->getGfCamera(), before);
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
    EXPECT_TRUE(renderer->calls.empty());
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(SceneCamerasTest, CopyingKeepsTheCallersText)
{
    {
        std::string path = "/Cam";
        model->copyCameraFromPath(path, false, "");
        path = "/Nowhere";
    }
    run();
    EXPECT_EQ(model->getGfCamera().GetFocalLength(), 35.0f);
}

TEST_F(SceneCamerasTest, CopyingWhileFollowingWritesTheFollowedCamera)
{
    follow("/Rig/Cam");
    done(model->copyCameraFromPath("/Cam", false, ""));
    EXPECT_EQ(stageCamera("/Rig/Cam").GetFocalLength(), 35.0f);
    EXPECT_NEAR((row(stageCamera("/Rig/Cam"), 3) - GfVec3d(0, 0, 20)).GetLength(), 0.0, 1e-9);
}

TEST_F(SceneCamerasTest, FollowingGivesTheRendererThePath)
{
    std::string during = "?";
    renderer->onCall = [&](const std::string&) { during = model->activeCameraPath(); };
    const Future<void> followed = model->setActiveCameraPath("/Cam");
    EXPECT_EQ(model->activeCameraPath(), "");
    run();
    renderer->onCall = nullptr;
    EXPECT_EQ(followed.error(), nullptr);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera /Cam"});
    EXPECT_EQ(during, "");
    EXPECT_EQ(model->activeCameraPath(), "/Cam");
    EXPECT_EQ(model->getGfCamera(), stageCamera("/Cam"));
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
}

TEST_F(SceneCamerasTest, FollowingMeasuresTheDistanceAndTheFocusAgainstFreshBounds)
{
    done(model->setActiveCameraPath("/Cam"));
    EXPECT_EQ(model->distanceToCenter(), 20.0f);
    done(model->setActiveCameraPath("/Rig/Cam"));
    // At (100, 0, 0) looking along -Z the origin lies beside the camera: the way to it counts, for the focus
    // too.
    EXPECT_EQ(model->distanceToCenter(), 100.0f);
    EXPECT_EQ(model->getGfCamera().GetFocusDistance(), 100.0f);
}

TEST_F(SceneCamerasTest, FollowingIsARead)
{
    model->setEditTarget(UsdEditTarget(watched.stage->GetSessionLayer()));
    model->setActiveCameraPath("/Cam");
    ASSERT_EQ(watched.tasks.size(), 1u);
    EXPECT_EQ(watched.tasks[0].type, usd_document::TaskType::Read);
    EXPECT_EQ(watched.tasks[0].label, "setActiveCameraPath");
    EXPECT_EQ(std::get<UsdEditTarget>(watched.tasks[0].editTarget), UsdEditTarget());
    const auto before = watched.stage->GetRootLayer()->IsDirty();
    run();
    EXPECT_EQ(watched.stage->GetRootLayer()->IsDirty(), before);
    EXPECT_TRUE(watched.document->undoLabels().empty());
}

TEST_F(SceneCamerasTest, FollowingDoesNotCountAsAChangeOfTheInteraction)
{
    model->beginCameraInteraction();
    done(model->setActiveCameraPath("/Cam"));
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
}

TEST_F(SceneCamerasTest, FollowingSomethingThatIsNoCameraFollowsNothing)
{
    follow("/Cam");
    const GfCamera before = model->getGfCamera();
    const Future<void> followed = model->setActiveCameraPath("/Mesh");
    run();
    EXPECT_EQ(followed.error(), nullptr);
    EXPECT_EQ(model->activeCameraPath(), "");
    EXPECT_TRUE(renderer->calls.empty());
    EXPECT_EQ(model->getGfCamera(), before);
    EXPECT_EQ(model->distanceToCenter(), 20.0f);
}

TEST_F(SceneCamerasTest, FollowingNothingShowsTheViewportCamera)
{
    for (const char* text : {"", "not a path", "/a//b", "/Cam{"}) {
        follow("/Cam");
        done(model->setActiveCameraPath(text)).get();
        EXPECT_EQ(model->activeCameraPath(), "");
        EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
        EXPECT_EQ(renderer->lastCamera(), model->getGfCamera());
        EXPECT_EQ(model->distanceToCenter(), 20.0f);
    }
}

TEST_F(SceneCamerasTest, FollowingWithoutBoundsFailsAndChangesNothing)
{
    watched.withoutStage = true;
    const Future<void> followed = model->setActiveCameraPath("/Cam");
    run();
    watched.withoutStage = false;
    EXPECT_THROW(followed.get(), vesk::base::error_handling::Exception);
    EXPECT_EQ(log.takeTexts().size(), 1u);
    EXPECT_EQ(model->activeCameraPath(), "");
    EXPECT_TRUE(renderer->calls.empty());
}

TEST_F(SceneCamerasTest, TheStagesOwnUpAxisChangesNothing)
{
    const Future<void> checked = model->checkCameraUpAxis();
    run();
    EXPECT_EQ(checked.error(), nullptr);
    EXPECT_TRUE(renderer->calls.empty());
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(SceneCamerasTest, AZUpStageTurnsTheCameraInPlace)
{
    makeStageZUp();
    model->setGfCamera(cameraAt(GfVec3d(1, 2, 3)), "");
    model->setDistanceToCenter(7.0f);
    bool during = false;
    renderer->onCall = [&](const std::string&) { during = model->zUp(); };
    done(model->checkCameraUpAxis()).get();
    renderer->onCall = nullptr;
    EXPECT_TRUE(during);
    EXPECT_TRUE(model->zUp());
    // The new up is the old backward, the new backward the old down.
    EXPECT_NEAR((row(model->getGfCamera(), 0) - GfVec3d(1, 0, 0)).GetLength(), 0.0, 1e-12);
    EXPECT_NEAR((row(model->getGfCamera(), 1) - GfVec3d(0, 0, 1)).GetLength(), 0.0, 1e-12);
    EXPECT_NEAR((row(model->getGfCamera(), 2) - GfVec3d(0, -1, 0)).GetLength(), 0.0, 1e-12);
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(1, 2, 3));
    EXPECT_EQ(model->distanceToCenter(), 7.0f);
}

TEST_F(SceneCamerasTest, AYUpStageTurnsTheCameraBack)
{
    model->setZUp(true);
    done(model->checkCameraUpAxis()).get();
    EXPECT_FALSE(model->zUp());
    EXPECT_NEAR((row(model->getGfCamera(), 1) - GfVec3d(0, 0, -1)).GetLength(), 0.0, 1e-12);
    EXPECT_NEAR((row(model->getGfCamera(), 2) - GfVec3d(0, 1, 0)).GetLength(), 0.0, 1e-12);
}

TEST_F(SceneCamerasTest, AChangedUpAxisWritesAFollowedCamera)
{
    follow("/Cam");
    makeStageZUp();
    done(model->checkCameraUpAxis()).get();
    EXPECT_NEAR((row(stageCamera("/Cam"), 1) - GfVec3d(0, 0, 1)).GetLength(), 0.0, 1e-12);
    EXPECT_TRUE(renderer->take().empty());
}

TEST_F(SceneCamerasTest, AnUpAxisThatCannotBeReadIsAnError)
{
    watched.withoutStage = true;
    const Future<void> checked = model->checkCameraUpAxis();
    run();
    EXPECT_THROW(checked.get(), vesk::base::error_handling::Exception);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{
                  "CheckResult: error There is no stage (category: UtilsError, code: 1) in result of type " +
                  std::string(typeid(bool).name())});
    EXPECT_FALSE(model->zUp());
    EXPECT_TRUE(renderer->calls.empty());
}

TEST_F(SceneCamerasTest, OnlyFollowingChangesTheFollowedPath)
{
    follow("/Cam");
    model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    model->copyCameraFromPath("/Rig/Cam", false, "");
    model->checkCameraUpAxis();
    model->recomputeCachedSceneBounds();
    run();
    EXPECT_EQ(model->activeCameraPath(), "/Cam");
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
