// Showing another document.
#include "viewport_fixture.h"

namespace vesk::framework::usd_viewport::tests {
namespace {

class RebindingTest : public ViewportTest
{
protected:
    void TearDown() override
    {
        other.reset();
        ViewportTest::TearDown();
    }

    WatchedDocument& otherDocument()
    {
        other = std::make_unique<WatchedDocument>(timeline, kScene, "B");
        return *other;
    }

    std::unique_ptr<WatchedDocument> other;
};

TEST_F(RebindingTest, SettingTheSameDocumentDoesNothing)
{
    forget();
    model->setDocument(watched.document);
    expectSilence();
    EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 2u);
}

TEST_F(RebindingTest, SettingAnotherDocumentRebindsInOrder)
{
    WatchedDocument& b = otherDocument();
    forget();
    std::shared_ptr<UsdDocument> duringCall;
    std::size_t listenersOfB = 0;
    renderer->onCall = [&](const std::string&) {
        duringCall = model->document();
        listenersOfB = b.document->getEventBus()->listenerCount();
    };
    model->setDocument(b.document);
    renderer->onCall = nullptr;
    EXPECT_EQ(timeline, (std::vector<std::string>{"renderer setDocument", "B task computeBBox"}));
    EXPECT_EQ(duringCall, b.document);
    EXPECT_EQ(listenersOfB, 2u);
    EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 1u);
    EXPECT_TRUE(watched.tasks.empty());
    EXPECT_EQ(renderer->documents.back(), b.document);
    renderer->documents.clear();
    model.reset();
    EXPECT_EQ(b.document->getEventBus()->listenerCount(), 1u);
}

TEST_F(RebindingTest, SettingAnotherDocumentKeepsTheCamera)
{
    model->setGfCamera(cameraAt(GfVec3d(1, 2, 3)), "");
    model->setDistanceToCenter(7.0f);
    model->setZUp(true);
    model->setDocument(otherDocument().document);
    EXPECT_EQ(model->getGfCamera(), cameraAt(GfVec3d(1, 2, 3)));
    EXPECT_EQ(model->distanceToCenter(), 7.0f);
    EXPECT_TRUE(model->zUp());
    renderer->documents.clear();
    model.reset();
}

TEST_F(RebindingTest, AfterRebindingOnlyTheNewBusCounts)
{
    WatchedDocument& b = otherDocument();
    model->setDocument(b.document);
    model->notifyCameraChanged();
    EXPECT_TRUE(watched.cameraEvents.empty());
    ASSERT_EQ(b.cameraEvents.size(), 1u);
    EXPECT_EQ(b.cameraEvents[0].documentId, b.document->getId());
    renderer->documents.clear();
    model.reset();
}

TEST_F(RebindingTest, RebindsFromADeadDocument)
{
    watched.document->getEventBus()->unsubscribeListener(watched.listener);
    watched.document.reset();
    WatchedDocument& b = otherDocument();
    model->setDocument(b.document);
    EXPECT_EQ(b.document->getEventBus()->listenerCount(), 2u);
    EXPECT_EQ(labelsOf(b.tasks), std::vector<std::string>{"computeBBox"});
    renderer->documents.clear();
    model.reset();
    EXPECT_EQ(b.document->getEventBus()->listenerCount(), 1u);
}

TEST_F(RebindingTest, NoDocumentCanBeSet)
{
    model->setDocument(nullptr);
    EXPECT_EQ(model->document(), nullptr);
    EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 1u);
    EXPECT_EQ(log.takeTexts(), std::vector<std::string>{"Getting scene bounds without valid document"});
}

TEST_F(RebindingTest, KeepsEverythingThatIsNotTheDocuments)
{
    follow("/Cam");
    const UsdEditTarget target(watched.stage->GetSessionLayer());
    model->setEditTarget(target);
    model->setCurrentTime(5.0);
    LightingModel lighting;
    lighting.setLightingRotationDegrees(30.0f);
    model->setLighting(lighting);
    const int size[2] = {11, 22};
    model->setViewportSize(size);
    watched.document->dropPendingTasks();
    const GfCamera before = model->getGfCamera();
    model->setDocument(otherDocument().document);
    EXPECT_EQ(model->activeCameraPath(), "/Cam");
    EXPECT_EQ(model->getEditTarget(), target);
    EXPECT_EQ(model->currentTime(), 5.0);
    EXPECT_EQ(model->lighting().lightingRotationDegrees(), 30.0f);
    EXPECT_EQ(model->renderSize()[0], 1000);
    EXPECT_EQ(model->viewportSize()[1], 22);
    EXPECT_EQ(model->getGfCamera(), before);
    renderer->documents.clear();
    model.reset();
}

TEST_F(RebindingTest, KeepsTheOldBoundsUntilTheNewOnesAreThere)
{
    cacheBounds();
    model->setDistanceToCenter(10.0f);
    const GfRange1f ofTheOld = model->adjustGfCamera(cameraAt(GfVec3d(0, 0, 10))).GetClippingRange();
    other = std::make_unique<WatchedDocument>(timeline, "#usda 1.0\ndef Cube \"Big\" { double size = 12; }\n",
                                              "B");
    model->setDocument(other->document);
    EXPECT_EQ(model->adjustGfCamera(cameraAt(GfVec3d(0, 0, 10))).GetClippingRange(), ofTheOld);
    other->document->runPendingTasks();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    EXPECT_NE(model->adjustGfCamera(cameraAt(GfVec3d(0, 0, 10))).GetClippingRange(), ofTheOld);
    renderer->documents.clear();
    model.reset();
}

TEST_F(RebindingTest, FollowsTheEventsOfTheNewDocumentOnly)
{
    follow("/Cam");
    WatchedDocument& b = otherDocument();
    model->setDocument(b.document);
    watched.takeTasks();
    b.takeTasks();
    StageChangesEvent change;
    change.resyncedPrimPaths.insert(SdfPath("/Cam"));
    watched.document->getEventBus()->sendEvent(change);
    EXPECT_TRUE(watched.takeTasks().empty());
    EXPECT_TRUE(b.takeTasks().empty());
    b.document->getEventBus()->sendEvent(change);
    EXPECT_TRUE(watched.takeTasks().empty());
    EXPECT_EQ(b.takeTasks().size(), 1u);
    renderer->documents.clear();
    model.reset();
}

TEST_F(RebindingTest, ComesBackToItsFirstDocument)
{
    WatchedDocument& b = otherDocument();
    forget();
    model->setDocument(b.document);
    model->setDocument(watched.document);
    EXPECT_EQ(timeline, (std::vector<std::string>{"renderer setDocument", "B task computeBBox",
                                                  "renderer setDocument", "A task computeBBox"}));
    EXPECT_EQ(b.document->getEventBus()->listenerCount(), 1u);
    model->notifyCameraChanged();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
    EXPECT_TRUE(b.cameraEvents.empty());
    renderer->documents.clear();
}

TEST_F(RebindingTest, KeepsTheRenderer)
{
    const std::unique_ptr<HydraRenderer>* const reference = &model->getRenderer();
    const HydraRenderer* const object = model->getRenderer().get();
    model->setDocument(otherDocument().document);
    EXPECT_EQ(&model->getRenderer(), reference);
    EXPECT_EQ(model->getRenderer().get(), object);
    renderer->documents.clear();
    model.reset();
}

TEST_F(RebindingTest, OneOfTwoViewportsLeavesTheOtherWhereItIs)
{
    const auto second = makeModel();
    second->setDistanceToCenter(3.0f);
    second->setZUp(true);
    model->setDistanceToCenter(4.0f);
    model->setDocument(otherDocument().document);
    EXPECT_EQ(second->document(), watched.document);
    EXPECT_EQ(second->distanceToCenter(), 3.0f);
    EXPECT_FALSE(model->zUp());
    EXPECT_NE(second->getRenderer().get(), model->getRenderer().get());
    renderer->documents.clear();
    model.reset();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
