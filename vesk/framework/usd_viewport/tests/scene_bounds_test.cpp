#include "viewport_fixture.h"

#include <tests/support/gate.h>

namespace vesk::framework::usd_viewport::tests {
namespace {

const GfRange3f kBox(GfVec3f(-1), GfVec3f(1));
const GfRange3f kProxyBox(GfVec3f(-4), GfVec3f(4));

class SceneBoundsTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }

    /// Whether the model's cached bounds are these, seen by the clipping range that they give a camera.
    void expectCached(const GfRange3f& bounds)
    {
        GfCamera expected = GfCamera();
        const float distance = model->distanceToCenter();
        vesk::usd::utils::updateGfCameraNearFar(expected, model->zUp(), distance, distance, bounds);
        EXPECT_EQ(model->adjustGfCamera(GfCamera()).GetClippingRange(), expected.GetClippingRange());
    }
};

TEST_F(SceneBoundsTest, AreComputedByATask)
{
    const Future<GfRange3f> bounds = model->getSceneBounds();
    EXPECT_FALSE(bounds.isReady());
    watched.document->runPendingTasks();
    EXPECT_EQ(bounds.get(), kBox);
    expectCached(GfRange3f());
    EXPECT_TRUE(renderer->calls.empty());
}

TEST_F(SceneBoundsTest, TakeTimeAndPurposeWhenTheyAreComputed)
{
    const Future<GfRange3f> bounds = model->getSceneBounds();
    model->setRenderProxyGeometry(true);
    watched.document->runPendingTasks();
    EXPECT_EQ(bounds.get(), kProxyBox);
}

TEST_F(SceneBoundsTest, OfAnimatedGeometryFollowTheTime)
{
    watched.document->edit("animate", [](const UsdDocument::ExecContext& context) {
        const UsdAttribute size =
            context.stage()->GetPrimAtPath(SdfPath("/Box")).GetAttribute(TfToken("size"));
        size.Set(2.0, UsdTimeCode(0));
        size.Set(6.0, UsdTimeCode(10));
    });
    run();
    model->setCurrentTime(10.0);
    const Future<GfRange3f> bounds = model->getSceneBounds();
    run();
    EXPECT_EQ(bounds.get(), GfRange3f(GfVec3f(-3), GfVec3f(3)));
}

TEST_F(SceneBoundsTest, AreTheSameForTwoViewportsAtDifferentTimes)
{
    const auto second = makeModel();
    watched.document->edit("animate", [](const UsdDocument::ExecContext& context) {
        const UsdAttribute size =
            context.stage()->GetPrimAtPath(SdfPath("/Box")).GetAttribute(TfToken("size"));
        size.Set(2.0, UsdTimeCode(0));
        size.Set(6.0, UsdTimeCode(10));
    });
    run();
    second->setCurrentTime(10.0);
    second->setRenderProxyGeometry(true);
    run();
    for (int turn = 0; turn < 20; ++turn) {
        const Future<GfRange3f> first = model->getSceneBounds();
        const Future<GfRange3f> other = second->getSceneBounds();
        run();
        ASSERT_EQ(first.get(), kBox);
        ASSERT_EQ(other.get(), kProxyBox);
    }
}

TEST_F(SceneBoundsTest, OfAnEmptySceneAreAnOrdinaryValue)
{
    watched.document->edit("clear", [](const UsdDocument::ExecContext& context) {
        context.stage()->RemovePrim(SdfPath("/Box"));
    });
    const Future<GfRange3f> bounds = model->getSceneBounds();
    run();
    EXPECT_TRUE(bounds.get().IsEmpty());
    model->recomputeCachedSceneBounds();
    run();
    expectCached(GfRange3f());
}

TEST_F(SceneBoundsTest, MayBeAskedForFromAnyThread)
{
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count)
        threads.emplace_back([this] { model->getSceneBounds(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(watched.takeTasks().size(), 4u);
}

TEST_F(SceneBoundsTest, RecomputedAreCachedAndTheCameraIsRefitted)
{
    model->setGfCamera(cameraAt(GfVec3d(0, 0, 10)), "");
    model->setDistanceToCenter(10.0f);
    forget();
    model->recomputeCachedSceneBounds();
    EXPECT_EQ(labelsOf(watched.tasks), std::vector<std::string>{"computeBBox"});
    EXPECT_TRUE(renderer->calls.empty());
    run();
    expectCached(kBox);
    GfCamera expected = cameraAt(GfVec3d(0, 0, 10));
    vesk::usd::utils::updateGfCameraNearFar(expected, false, 10.0f, 10.0f, kBox);
    expected.SetFocusDistance(10.0f);
    EXPECT_EQ(model->getGfCamera(), expected);
    EXPECT_EQ(timeline,
              (std::vector<std::string>{"A task computeBBox", "renderer setCamera", "A camera event"}));
}

TEST_F(SceneBoundsTest, RecomputedToTheSameAreStillAnnounced)
{
    cacheBounds();
    model->recomputeCachedSceneBounds();
    run();
    EXPECT_EQ(renderer->take().size(), 1u);
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(SceneBoundsTest, RecomputedInsideAnInteractionAreAnnouncedAtItsEnd)
{
    model->beginCameraInteraction();
    model->recomputeCachedSceneBounds();
    run();
    EXPECT_EQ(renderer->take().size(), 1u);
    EXPECT_EQ(watched.takeCameraEvents(), 0u);
    model->endCameraInteraction();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(SceneBoundsTest, ThatCannotBeComputedLeaveTheOldOnes)
{
    cacheBounds();
    const GfCamera before = model->getGfCamera();
    watched.withoutStage = true;
    model->recomputeCachedSceneBounds();
    run();
    watched.withoutStage = false;
    EXPECT_EQ(log.takeTexts().size(), 1u);
    expectCached(kBox);
    EXPECT_EQ(model->getGfCamera(), before);
    EXPECT_TRUE(renderer->calls.empty());
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(SceneBoundsTest, ThatCannotBeComputedSayWhy)
{
    watched.withoutStage = true;
    const Future<GfRange3f> bounds = model->getSceneBounds();
    run();
    const std::vector<vesk::tests::LogRecord> records = log.take();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].level, spdlog::level::err);
    EXPECT_EQ(records[0].text,
              "CheckResult: error There is no stage (category: UtilsError, code: 1) in result of type " +
                  std::string(typeid(GfRange3f).name()));
    EXPECT_NE(records[0].file.find("vesk/base/include/vesk/base/result"), std::string::npos);
    EXPECT_EQ(records[0].function, "vesk_framework_usd_viewport");
    try {
        bounds.get();
        FAIL();
    } catch (const vesk::base::error_handling::Exception& error) {
        EXPECT_EQ(error.code().value(), 1);
        EXPECT_STREQ(error.code().category().name(), "UtilsError");
    }
}

TEST_F(SceneBoundsTest, WhoseTaskIsDroppedChangeNothing)
{
    model->recomputeCachedSceneBounds();
    watched.document->dropPendingTasks();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    expectCached(GfRange3f());
    EXPECT_TRUE(renderer->calls.empty());
}

TEST_F(SceneBoundsTest, StayStaleUntilSomebodyAsks)
{
    cacheBounds();
    watched.document->edit("grow", [](const UsdDocument::ExecContext& context) {
        context.stage()->GetPrimAtPath(SdfPath("/Box")).GetAttribute(TfToken("size")).Set(20.0);
    });
    model->setRenderProxyGeometry(true);
    run();
    expectCached(kBox);
    EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>{"grow"});
}

TEST_F(SceneBoundsTest, AreRefreshedByFramingAndFollowingButNotByCopying)
{
    model->copyCameraFromPath("/Cam", false, "");
    model->checkCameraUpAxis();
    run();
    expectCached(GfRange3f());
    model->setActiveCameraPath("");
    run();
    expectCached(kBox);
}

TEST_F(SceneBoundsTest, WithoutADocumentAreReportedOnce)
{
    watched.document->getEventBus()->unsubscribeListener(watched.listener);
    watched.document.reset();
    EXPECT_NO_THROW(model->recomputeCachedSceneBounds());
    EXPECT_EQ(log.takeTexts(), std::vector<std::string>{"Getting scene bounds without valid document"});
}

TEST_F(SceneBoundsTest, OfTwoRecomputationsTheLastCounts)
{
    model->recomputeCachedSceneBounds();
    watched.document->runPendingTasks();
    vesk::base::ThreadPool::defaultPool().waitUntilIdle();
    model->setRenderProxyGeometry(true);
    model->recomputeCachedSceneBounds();
    run();
    expectCached(kProxyBox);
}

TEST_F(SceneBoundsTest, AreNeverSeenTorn)
{
    // Writers store two different boxes, readers must see one or the other.
    cacheBounds();
    model->setDistanceToCenter(50.0f);
    GfCamera small = GfCamera();
    GfCamera large = GfCamera();
    vesk::usd::utils::updateGfCameraNearFar(small, false, 50.0f, 50.0f, kBox);
    vesk::usd::utils::updateGfCameraNearFar(large, false, 50.0f, 50.0f, kProxyBox);
    std::atomic<bool> stop{false};
    std::thread reader([&] {
        while (!stop) {
            const GfRange1f range = model->adjustGfCamera(GfCamera()).GetClippingRange();
            if (range != small.GetClippingRange() && range != large.GetClippingRange()) {
                ADD_FAILURE() << "a mixture of two ranges";
                return;
            }
        }
    });
    for (int turn = 0; turn < 100; ++turn) {
        model->setRenderProxyGeometry(turn % 2 == 0);
        model->recomputeCachedSceneBounds();
        run();
    }
    stop = true;
    reader.join();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
