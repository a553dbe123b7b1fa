#include "viewport_fixture.h"

#include <cmath>
#include <system_error>

namespace vesk::framework::usd_viewport::tests {
namespace {

class CameraSyncTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    void set(double z, const std::string& label = "label")
    {
        model->setGfCamera(cameraAt(GfVec3d(0, 0, z)), label);
    }
    double writtenZ() const { return row(stageCamera("/Cam"), 3)[2]; }

    /// A valid focus distance: no check of it changes these cameras.
    static GfCamera focusedAt(double z)
    {
        GfCamera camera = cameraAt(GfVec3d(0, 0, z));
        camera.SetFocusDistance(5.0f);
        return camera;
    }

    void destroyDocument()
    {
        watched.document->getEventBus()->unsubscribeListener(watched.listener);
        watched.document.reset();
    }
};

TEST_F(CameraSyncTest, AFreeCameraReachesTheRendererAndIsAnnounced)
{
    set(7);
    EXPECT_EQ(timeline, (std::vector<std::string>{"renderer setCamera", "A camera event"}));
    EXPECT_EQ(renderer->lastCamera(), cameraAt(GfVec3d(0, 0, 7)));
    EXPECT_EQ(model->getGfCamera(), cameraAt(GfVec3d(0, 0, 7)));
    EXPECT_TRUE(watched.tasks.empty());
}

TEST_F(CameraSyncTest, AnEqualCameraIsSentAgain)
{
    set(7);
    set(7);
    EXPECT_EQ(renderer->take().size(), 2u);
    EXPECT_EQ(watched.takeCameraEvents(), 2u);
}

TEST_F(CameraSyncTest, TheFocusIsCheckedAgainstTheBoundsBeforeAnybodyIsTold)
{
    cacheBounds();
    set(7);
    EXPECT_EQ(model->getGfCamera().GetFocusDistance(), 7.0f);
    EXPECT_EQ(renderer->lastCamera().GetFocusDistance(), 7.0f);
}

TEST_F(CameraSyncTest, TheClippingRangeIsTheHosts)
{
    cacheBounds();
    GfCamera camera = cameraAt(GfVec3d(0, 0, 7));
    camera.SetClippingRange(GfRange1f(0.25f, 9.0f));
    model->setGfCamera(camera, "");
    EXPECT_EQ(model->getGfCamera().GetClippingRange(), GfRange1f(0.25f, 9.0f));
}

TEST_F(CameraSyncTest, WithoutADocumentOnlyTheRendererIsTold)
{
    destroyDocument();
    set(7);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
}

TEST_F(CameraSyncTest, SetViewportCameraIgnoresAnEqualCamera)
{
    model->beginCameraInteraction();
    model->setViewportCamera(watched.stage, model->getViewportCamera());
    model->endCameraInteraction();
    expectSilence();
}

TEST_F(CameraSyncTest, SetViewportCameraTakesAnyDifference)
{
    const std::function<void(GfCamera&)> changes[] = {
        [](GfCamera& camera) { camera.SetClippingRange(GfRange1f(2, 3)); },
        [](GfCamera& camera) { camera.SetClippingPlanes({GfVec4f(1)}); },
        [](GfCamera& camera) { camera.SetFStop(2.0f); },
        [](GfCamera& camera) { camera.SetHorizontalApertureOffset(1.0f); },
        [](GfCamera& camera) { camera.SetFocusDistance(9.0f); }};
    for (const auto& change : changes) {
        GfCamera camera = model->getViewportCamera();
        change(camera);
        model->setViewportCamera(watched.stage, camera);
        EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
    }
    EXPECT_TRUE(watched.tasks.empty());
}

TEST_F(CameraSyncTest, SetViewportCameraTakesANaNAgainAndAgain)
{
    GfCamera broken;
    broken.SetTransform(GfMatrix4d(std::nan("")));
    model->setViewportCamera(watched.stage, broken);
    model->setViewportCamera(watched.stage, broken);
    EXPECT_EQ(renderer->take().size(), 2u);
}

TEST_F(CameraSyncTest, AFollowedCameraIsWrittenAtOnceOntoAGivenStage)
{
    follow("/Cam");
    model->setViewportCamera(watched.stage, focusedAt(9));
    EXPECT_EQ(writtenZ(), 9.0);
    EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>());
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_TRUE(renderer->take().empty());
    run();
}

TEST_F(CameraSyncTest, ADirectWriteInsideAnInteractionLeavesNoWritePending)
{
    follow("/Cam");
    model->beginCameraInteraction();
    model->setViewportCamera(watched.stage, focusedAt(9));
    EXPECT_EQ(writtenZ(), 9.0);
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    set(10);
    EXPECT_EQ(watched.takeTasks().size(), 1u);
    model->endCameraInteraction();
    run();
}

TEST_F(CameraSyncTest, AnExpiredOrEmptyStageIsNoStage)
{
    follow("/Cam");
    UsdStagePtr expired;
    {
        const UsdStageRefPtr stage = stageFrom(kScene);
        expired = stage;
    }
    model->setViewportCamera(expired, focusedAt(9));
    model->setViewportCamera(UsdStagePtr(), focusedAt(10));
    const std::string& label = ViewportModel::m_cameraUpdateUndoLabel;
    EXPECT_EQ(labelsOf(watched.takeTasks()), (std::vector<std::string>{label, label}));
}

TEST_F(CameraSyncTest, AFollowedCameraIsWrittenByATask)
{
    follow("/Cam");
    model->setEditTarget(UsdEditTarget(watched.stage->GetRootLayer()));
    set(9, "my edit");
    ASSERT_EQ(watched.tasks.size(), 1u);
    EXPECT_EQ(watched.tasks[0].type, usd_document::TaskType::Edit);
    EXPECT_EQ(watched.tasks[0].label, "my edit");
    EXPECT_EQ(std::get<UsdEditTarget>(watched.tasks[0].editTarget), model->getEditTarget());
    EXPECT_EQ(watched.tasks[0].stage, UsdStagePtr(watched.stage));
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    EXPECT_TRUE(renderer->take().empty());
    EXPECT_EQ(writtenZ(), 20.0);
    run();
    EXPECT_EQ(writtenZ(), 9.0);
    EXPECT_GE(watched.takeCameraEvents(), 1u);
}

TEST_F(CameraSyncTest, AnEmptyLabelBecomesCameraUpdate)
{
    follow("/Cam");
    set(9, "");
    EXPECT_EQ(labelsOf(watched.tasks), std::vector<std::string>{"camera update"});
}

TEST_F(CameraSyncTest, OutsideAnInteractionEveryChangeQueuesAWriteOfTheNewestCamera)
{
    follow("/Cam");
    set(9);
    set(10);
    set(11);
    EXPECT_EQ(watched.takeTasks().size(), 3u);
    watched.document->runNextTask();
    EXPECT_EQ(writtenZ(), 11.0);
    watched.document->runNextTask();
    watched.document->runNextTask();
    EXPECT_EQ(writtenZ(), 11.0);
}

TEST_F(CameraSyncTest, InsideAnInteractionOneWriteCarriesTheNewestCamera)
{
    follow("/Cam");
    model->beginCameraInteraction();
    set(9, "first");
    set(10, "second");
    set(11, "third");
    EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>{"first"});
    watched.document->runPendingTasks();
    EXPECT_EQ(writtenZ(), 11.0);
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(CameraSyncTest, AfterAWriteInsideAnInteractionTheNextChangeQueuesAnother)
{
    follow("/Cam");
    model->beginCameraInteraction();
    set(9);
    watched.document->runPendingTasks();
    EXPECT_EQ(writtenZ(), 9.0);
    set(10);
    watched.document->runPendingTasks();
    EXPECT_EQ(writtenZ(), 10.0);
    EXPECT_EQ(watched.takeTasks().size(), 2u);
    model->endCameraInteraction();
}

TEST_F(CameraSyncTest, APendingWriteTakesOverWhatComesAfterTheInteraction)
{
    follow("/Cam");
    model->beginCameraInteraction();
    set(9);
    model->endCameraInteraction();
    set(10);
    EXPECT_EQ(watched.takeTasks().size(), 1u);
    watched.document->runNextTask();
    EXPECT_EQ(writtenZ(), 10.0);
}

TEST_F(CameraSyncTest, APendingWriteTakesOverADirectWrite)
{
    follow("/Cam");
    model->beginCameraInteraction();
    set(9);
    model->setViewportCamera(watched.stage, focusedAt(12));
    EXPECT_EQ(writtenZ(), 20.0);
    watched.document->runNextTask();
    EXPECT_EQ(writtenZ(), 12.0);
    model->endCameraInteraction();
}

TEST_F(CameraSyncTest, TheWriteGoesToThePathOfItsPosting)
{
    follow("/Cam");
    model->setActiveCameraPath("/Rig/Cam");
    set(9);
    run();
    EXPECT_EQ(model->activeCameraPath(), "/Rig/Cam");
    EXPECT_EQ(writtenZ(), 9.0);
}

TEST_F(CameraSyncTest, AFailingWriteEndsSilentlyAndTheNextOneIsQueued)
{
    follow("/Cam");
    model->beginCameraInteraction();
    watched.withoutStage = true;
    set(9);
    watched.document->runPendingTasks();
    watched.withoutStage = false;
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    set(10);
    EXPECT_EQ(watched.takeTasks().size(), 2u);
    model->endCameraInteraction();
}

TEST_F(CameraSyncTest, ADroppedWriteOfAnInteractionStaysPendingForEver)
{
    follow("/Cam");
    model->beginCameraInteraction();
    set(9);
    watched.document->dropPendingTasks();
    model->endCameraInteraction();
    watched.takeTasks();
    set(10);
    EXPECT_TRUE(watched.takeTasks().empty());
}

TEST_F(CameraSyncTest, AWriteForADocumentThatIsGoneStaysPendingForEver)
{
    follow("/Cam");
    model->beginCameraInteraction();
    destroyDocument();
    set(9);
    model->endCameraInteraction();
    WatchedDocument other(timeline, kScene, "B");
    model->setDocument(other.document);
    renderer->documents.clear();
    set(10);
    EXPECT_EQ(labelsOf(other.takeTasks()), std::vector<std::string>{"computeBBox"});
    model.reset();
}

TEST_F(CameraSyncTest, OutsideAnInteractionADeadDocumentLeavesNothingPending)
{
    follow("/Cam");
    destroyDocument();
    set(9);
    WatchedDocument other(timeline, kScene, "B");
    model->setDocument(other.document);
    renderer->documents.clear();
    set(10);
    EXPECT_EQ(labelsOf(other.takeTasks()), (std::vector<std::string>{"computeBBox", "label"}));
    model.reset();
}

TEST_F(CameraSyncTest, ADocumentThatIsGoneSwallowsTheWrite)
{
    follow("/Cam");
    destroyDocument();
    set(9);
    EXPECT_TRUE(renderer->take().empty());
    EXPECT_EQ(row(model->getGfCamera(), 3)[2], 9.0);
}

TEST_F(CameraSyncTest, AWriteMayFindAnotherThreadHandingOnACamera)
{
    follow("/Cam");
    set(9);
    bool handedOn = false;
    const std::uint32_t other =
        watched.document->getEventBus()->subscribeListener([&](const std::any& event) {
            if (handedOn || !std::any_cast<ViewportCameraChangedEvent>(&event)) return;
            handedOn = true;
            std::thread([this] { set(10); }).join();
        });
    watched.document->runNextTask();
    watched.document->getEventBus()->unsubscribeListener(other);
    EXPECT_TRUE(handedOn);
}

TEST_F(CameraSyncTest, AListenerThatChangesADirectlyWrittenCameraIsToldSo)
{
    follow("/Cam");
    std::error_code code;
    const std::uint32_t other =
        watched.document->getEventBus()->subscribeListener([&](const std::any& event) {
            if (!std::any_cast<ViewportCameraChangedEvent>(&event)) return;
            try {
                set(10);
            } catch (const std::system_error& error) {
                code = error.code();
            }
        });
    model->setViewportCamera(watched.stage, focusedAt(9));
    watched.document->getEventBus()->unsubscribeListener(other);
    EXPECT_EQ(code, std::make_error_code(std::errc::resource_deadlock_would_occur));
}

TEST_F(CameraSyncTest, ARecomputationWhileFollowingWritesTheRefittedCamera)
{
    follow("/Cam");
    model->recomputeCachedSceneBounds();
    watched.document->runNextTask();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_EQ(labelsOf(watched.tasks), (std::vector<std::string>{"computeBBox", "camera update"}));
    EXPECT_EQ(watched.tasks.back().type, usd_document::TaskType::Edit);
    EXPECT_TRUE(renderer->take().empty());
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
