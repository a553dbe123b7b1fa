#include "viewport_fixture.h"

#include <future>

namespace vesk::framework::usd_viewport::tests {
namespace {

using LifecycleTest = ViewportTest;

TEST_F(LifecycleTest, StartsWithItsDefaults)
{
    EXPECT_EQ(model->currentTime(), 0.0);
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
    EXPECT_EQ(model->activeCameraPath(), "");
    EXPECT_EQ(model->getEditTarget(), UsdEditTarget());
    EXPECT_EQ(model->getGfCamera(), GfCamera());
    EXPECT_EQ(model->gizmoScaleMultiplier(), 1.0f);
    EXPECT_FALSE(model->zUp());
    EXPECT_EQ(model->renderSize()[0], 1000);
    EXPECT_EQ(model->renderSize()[1], 500);
    EXPECT_EQ(model->viewportSize()[0], 800);
    EXPECT_EQ(model->viewportSize()[1], 400);
    EXPECT_EQ(model->devicePixelRatio(), 1.0f);
    EXPECT_EQ(model->lighting().domeLightTexturePath(), "");
    EXPECT_TRUE(model->lighting().sceneLightingEnabled());
}

TEST_F(LifecycleTest, CreatesTheRendererGivesItThePolicyAndOnlyThenSubscribes)
{
    EXPECT_EQ(timeline, (std::vector<std::string>{"renderer create", "renderer setCameraFitPolicy"}));
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCameraFitPolicy 2"});
    EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 2u);
    EXPECT_TRUE(watched.tasks.empty());
    EXPECT_TRUE(watched.cameraEvents.empty());
}

TEST_F(LifecycleTest, HandsItsArgumentsToTheRendererUnchanged)
{
    const std::vector<Param<VtValue>> settings{{"b", VtValue(2)}, {"a", VtValue(1)}};
    for (int flag = 0; flag < 3; ++flag) {
        bool rendered = false;
        const ViewportModel second(
            watched.document, nullptr, "test", settings, {101, 33}, {10, 20}, 1.5f, flag == 0, flag == 1,
            flag == 2,
            [](int samples, float fraction, bool converged) {
                return samples == 3 && fraction == 0.5f && converged;
            },
            [&rendered](bool converged) { rendered = converged; });
        const RendererCreateInfo& info = renderer->created.back();
        EXPECT_EQ(info.eventBus, watched.document->getEventBus().get());
        EXPECT_EQ(createdDocument, watched.document.get());
        EXPECT_EQ(info.hwContext, nullptr);
        EXPECT_EQ(info.rendererId, "test");
        EXPECT_EQ(info.settings, settings);
        EXPECT_EQ(info.renderSize, GfVec2i(151, 49));
        EXPECT_EQ(info.viewportId, second.viewportId());
        EXPECT_EQ(info.enableSceneMaterials, flag == 0);
        EXPECT_EQ(info.enableColorCorrection, flag == 1);
        EXPECT_EQ(info.enableAsyncRendering, flag == 2);
        EXPECT_TRUE(info.progressCallback(3, 0.5f, true));
        EXPECT_FALSE(info.progressCallback(3, 0.5f, false));
        info.afterRenderCallback(true);
        EXPECT_TRUE(rendered);
    }
    renderer->created.clear();
}

TEST_F(LifecycleTest, HoldsTheDocumentWeakly)
{
    const long before = watched.document.use_count();
    const auto second = makeModel();
    EXPECT_EQ(watched.document.use_count(), before);
    EXPECT_EQ(second->document(), watched.document);
}

TEST_F(LifecycleTest, IdsCountUpAndAreNeverReused)
{
    const unsigned int first = model->viewportId();
    unsigned int second = 0;
    {
        const auto temporary = makeModel();
        second = temporary->viewportId();
    }
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(makeModel()->viewportId(), first + 2);
}

TEST_F(LifecycleTest, AFailedCreationTakesAnIdAndLeavesNothing)
{
    registerRenderer("failing", "Failing", [](const RendererCreateInfo&) -> std::unique_ptr<HydraRenderer> {
        throw std::runtime_error("no device");
    });
    const auto failing = [this] {
        const ViewportModel never(watched.document, nullptr, "failing", {}, kRenderSize, kViewportSize, 1.0f,
                                  true, true, true, nullptr, nullptr);
    };
    EXPECT_THROW(failing(), std::runtime_error);
    EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 2u);
    EXPECT_EQ(makeModel()->viewportId(), model->viewportId() + 2);
}

TEST_F(LifecycleTest, AFailedPolicyCallDestroysTheRenderer)
{
    renderer->onCall = [](const std::string& operation) { throw std::runtime_error(operation); };
    EXPECT_THROW(makeModel(), std::runtime_error);
    renderer->onCall = nullptr;
    EXPECT_EQ(renderer->destroyed, 1);
    EXPECT_EQ(watched.document->getEventBus()->listenerCount(), 2u);
}

TEST_F(LifecycleTest, GivesNewRenderersTheDefaultPolicyOfTheirMoment)
{
    renderer->take();
    ViewportModel::setDefaultCameraFitPolicy(CameraUtilCrop);
    EXPECT_TRUE(renderer->take().empty());
    const auto second = makeModel();
    EXPECT_EQ(renderer->take(),
              std::vector<std::string>{"setCameraFitPolicy " + std::to_string(CameraUtilCrop)});
}

TEST_F(LifecycleTest, OutlivesItsDocument)
{
    watched.document->getEventBus()->unsubscribeListener(watched.listener);
    watched.document.reset();
    EXPECT_EQ(model->document(), nullptr);
    model->notifyCameraChanged();
    model->setGfCamera(cameraAt(GfVec3d(1, 2, 3)), "");
    model.reset();
    EXPECT_EQ(renderer->destroyed, 1);
}

TEST_F(LifecycleTest, SwitchingTheRendererReachesItTheFirstTimeEvenWithTheSameId)
{
    renderer->take();
    const std::vector<Param<VtValue>> first{{"a", VtValue(1)}};
    model->switchRenderer("test", first);
    model->switchRenderer("test", {{"a", VtValue(2)}});
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"switchRenderer test"});
    EXPECT_EQ(renderer->settings, std::vector<std::vector<Param<VtValue>>>{first});
}

TEST_F(LifecycleTest, SwitchingToTheEmptyIdFirstDoesNothing)
{
    renderer->take();
    model->switchRenderer("", {});
    EXPECT_TRUE(renderer->take().empty());
}

TEST_F(LifecycleTest, SwitchingToAndFroReachesTheRendererEachTime)
{
    renderer->take();
    for (const char* id : {"a", "b", "a"})
        model->switchRenderer(id, {});
    EXPECT_EQ(renderer->take(),
              (std::vector<std::string>{"switchRenderer a", "switchRenderer b", "switchRenderer a"}));
}

TEST_F(LifecycleTest, AFailedSwitchIsNotTriedAgain)
{
    renderer->onCall = [](const std::string&) { throw std::runtime_error("no such backend"); };
    EXPECT_THROW(model->switchRenderer("x", {}), std::runtime_error);
    renderer->onCall = nullptr;
    renderer->take();
    model->switchRenderer("x", {});
    EXPECT_TRUE(renderer->take().empty());
}

TEST_F(LifecycleTest, TheRendererStaysTheSameObject)
{
    const HydraRenderer* before = model->getRenderer().get();
    model->switchRenderer("b", {});
    EXPECT_EQ(model->getRenderer().get(), before);
    EXPECT_EQ(&model->getRenderer(), &model->getRenderer());
}

TEST_F(LifecycleTest, QueuedWorkOfADeadModelEndsAsBrokenPromise)
{
    const Future<GfRange3f> bounds = model->getSceneBounds();
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    model->recomputeCachedSceneBounds();
    model.reset();
    watched.document->runPendingTasks();
    for (const std::exception_ptr& error : {bounds.error(), framed.error()}) {
        try {
            std::rethrow_exception(error);
        } catch (const vesk::base::FutureError& broken) {
            EXPECT_EQ(broken.code().value(), 1);
            EXPECT_STREQ(broken.what(), "broken promise");
        }
    }
    EXPECT_TRUE(renderer->cameras.empty());
}

TEST_F(LifecycleTest, AModelMayDieInsideTheListenerOfItsOwnEvent)
{
    const std::uint32_t killer =
        watched.document->getEventBus()->subscribeListener([this](const std::any& event) {
            if (std::any_cast<ViewportCameraChangedEvent>(&event)) model.reset();
        });
    model->setGfCamera(cameraAt(GfVec3d(1, 2, 3)), "");
    watched.document->getEventBus()->unsubscribeListener(killer);
    EXPECT_EQ(model, nullptr);
}

TEST_F(LifecycleTest, AModelMayDieInsideItsOwnTask)
{
    const std::uint32_t killer =
        watched.document->getEventBus()->subscribeListener([this](const std::any& event) {
            if (std::any_cast<ViewportCameraChangedEvent>(&event)) model.reset();
        });
    const Future<void> framed = model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
    watched.document->runPendingTasks();
    watched.document->getEventBus()->unsubscribeListener(killer);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(framed.error(), nullptr);
}

TEST_F(LifecycleTest, AModelMayDieInsideTheListenerOfADirectWrite)
{
    follow("/Cam");
    const std::uint32_t killer =
        watched.document->getEventBus()->subscribeListener([this](const std::any& event) {
            if (std::any_cast<ViewportCameraChangedEvent>(&event)) model.reset();
        });
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(1, 2, 3)));
    watched.document->getEventBus()->unsubscribeListener(killer);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(row(stageCamera("/Cam"), 3), GfVec3d(1, 2, 3));
}

TEST_F(LifecycleTest, AModelThatDiesInADirectWriteLetsOtherWritersThrough)
{
    follow("/Cam");
    std::future<void> recomputation;
    const std::uint32_t killer =
        watched.document->getEventBus()->subscribeListener([&](const std::any& event) {
            if (!std::any_cast<ViewportCameraChangedEvent>(&event)) return;
            // A recomputation's continuation wants the camera on the pool, and the model's death waits for
            // it.
            model->recomputeCachedSceneBounds();
            recomputation = std::async(std::launch::async, [this] { watched.document->runNextTask(); });
            recomputation.wait();
            model.reset();
        });
    model->setViewportCamera(watched.stage, cameraAt(GfVec3d(1, 2, 3)));
    watched.document->getEventBus()->unsubscribeListener(killer);
    EXPECT_EQ(model, nullptr);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
