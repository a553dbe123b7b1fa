// How a model comes to be and how it goes: what is called in which order, and what a failure leaves behind.
#include "failing_allocation.h"
#include "private_members.h"
#include "viewport_fixture.h"

#include <spdlog/spdlog.h>
#include <vesk/framework/hydra_renderer/hw_context.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <set>

namespace vesk::framework::usd_viewport::tests {
namespace {

class ConstructionTest : public ViewportTest
{
protected:
    std::size_t listeners() const { return watched.document->getEventBus()->listenerCount(); }
};

class Context : public HWContext
{
public:
    bool makeCurrent() override { return true; }
    void doneCurrent() override {}
};

// Ends the program: 0 when its first two models have the ids 1 and 2.
[[noreturn]] void exitWithTheFirstIds()
{
    std::vector<std::string> timeline;
    const auto renderers = std::make_shared<RendererLog>(timeline);
    registerRenderer("test", "Test", [renderers](const RendererCreateInfo&) {
        return std::make_unique<TestRenderer>(renderers);
    });
    DocumentOptions options;
    options.manual = true;
    const std::shared_ptr<UsdDocument> document = UsdDocument::create(options);
    const int size[2] = {4, 3};
    const ViewportModel first(document, nullptr, "test", {}, size, size, 1.0f, true, true, true, nullptr,
                              nullptr);
    const ViewportModel second(document, nullptr, "test", {}, size, size, 1.0f, true, true, true, nullptr,
                               nullptr);
    std::_Exit(first.viewportId() == 1 && second.viewportId() == 2 ? 0 : 1);
}

TEST(ViewportIds, CountFromOneInAProgramThatHasJustBeenStarted)
{
    // A death test of this style runs in a program of its own.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exitWithTheFirstIds(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ConstructionTest, SubscribesOnlyAfterTheRendererHasItsPolicy)
{
    std::vector<std::size_t> before;
    renderer->onCall = [&](const std::string&) { before.push_back(listeners()); };
    const auto second = makeModel();
    renderer->onCall = nullptr;
    // The test and the first model listen; the second does not yet.
    EXPECT_EQ(before, std::vector<std::size_t>{2});
    EXPECT_EQ(listeners(), 3u);
}

TEST_F(ConstructionTest, HandsItsGraphicsContextOn)
{
    const auto context = std::make_shared<Context>();
    const ViewportModel second(watched.document, context, "test", {}, kRenderSize, kViewportSize, 1.0f, true,
                               true, true, nullptr, nullptr);
    EXPECT_EQ(renderer->created.back().hwContext, context);
    renderer->created.clear();
}

TEST_F(ConstructionTest, PassesTheErrorOfTheRenderersCreationOn)
{
    registerRenderer("failing", "Failing", [](const RendererCreateInfo&) -> std::unique_ptr<HydraRenderer> {
        throw std::runtime_error("no device");
    });
    try {
        const ViewportModel never(watched.document, nullptr, "failing", {}, kRenderSize, kViewportSize, 1.0f,
                                  true, true, true, nullptr, nullptr);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "no device");
    }
    EXPECT_EQ(listeners(), 2u);
}

TEST_F(ConstructionTest, ThatCannotSubscribeDestroysItsRendererOnceAndLeavesNoListener)
{
    // Nothing is allocated between the end of this call and the subscription.
    renderer->onCall = [](const std::string&) { failNextAllocation(); };
    EXPECT_THROW(makeModel(), std::bad_alloc);
    renderer->onCall = nullptr;
    EXPECT_EQ(renderer->destroyed, 1);
    EXPECT_EQ(listeners(), 2u);
    model->notifyCameraChanged();
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(ConstructionTest, StartsWithAnInvalidEditTargetAndTheDefaultCamera)
{
    EXPECT_FALSE(model->getEditTarget().IsValid());
    const GfCamera& camera = model->getGfCamera();
    EXPECT_EQ(camera.GetTransform(), GfMatrix4d(1.0));
    EXPECT_EQ(camera.GetProjection(), GfCamera::Perspective);
    EXPECT_EQ(camera.GetHorizontalAperture(), 20.955f);
    EXPECT_EQ(camera.GetVerticalAperture(), 15.2908f);
    EXPECT_EQ(camera.GetFocalLength(), 50.0f);
    EXPECT_EQ(camera.GetClippingRange(), GfRange1f(1.0f, 1000000.0f));
    EXPECT_TRUE(camera.GetClippingPlanes().empty());
    EXPECT_EQ(camera.GetFStop(), 0.0f);
    EXPECT_EQ(camera.GetFocusDistance(), 0.0f);
}

TEST_F(ConstructionTest, StartsWithTheDefaultLighting)
{
    const LightingModel& lighting = model->lighting();
    EXPECT_FALSE(lighting.defaultLightingEnabled());
    EXPECT_TRUE(lighting.sceneLightingEnabled());
    EXPECT_EQ(lighting.domeLightTexturePath(), "");
    EXPECT_EQ(lighting.lightingExposure(), 0.0f);
    EXPECT_EQ(lighting.lightingRotationDegrees(), 0.0f);
}

TEST_F(ConstructionTest, ANewModelHasNoWritePending)
{
    follow("/Cam");
    model->setGfCamera(cameraAt(GfVec3d(0, 0, 9)), "first");
    EXPECT_EQ(labelsOf(watched.takeTasks()), std::vector<std::string>{"first"});
}

TEST_F(ConstructionTest, DeclaresItsMembersInTheOrderThatTheirDestructionNeeds)
{
    const std::vector<const void*> addresses = addressesInOrder(*model);
    EXPECT_EQ(addresses.size(), 28u);
    EXPECT_TRUE(std::is_sorted(addresses.begin(), addresses.end(), std::less<const void*>()));
}

TEST_F(ConstructionTest, ADyingModelLeavesTheBusBeforeItsRendererDies)
{
    std::size_t whenDestroyed = 99;
    renderer->onDestroyed = [&] { whenDestroyed = listeners(); };
    forget();
    model.reset();
    renderer->onDestroyed = nullptr;
    EXPECT_EQ(whenDestroyed, 1u);
    EXPECT_EQ(timeline, std::vector<std::string>{"renderer destroyed"});
}

TEST_F(ConstructionTest, RegistersNoLogger)
{
    const auto loggers = [] {
        std::set<std::string> names;
        spdlog::apply_all(
            [&names](const std::shared_ptr<spdlog::logger>& logger) { names.insert(logger->name()); });
        return names;
    };
    const std::set<std::string> before = loggers();
    const auto second = makeModel();
    second->beginCameraInteraction();
    second->beginCameraInteraction();
    second->copyCameraFromPath("/Mesh", false, "");
    run();
    EXPECT_EQ(loggers(), before);
    EXPECT_EQ(log.takeTexts().size(), 2u);
}

TEST_F(ConstructionTest, WithoutADocumentThrowsThatItIsInvalidAndLogsNothing)
{
    try {
        makeModel(nullptr);
        FAIL() << "nothing was thrown";
    } catch (const vesk::base::error_handling::Exception& error) {
        EXPECT_EQ(error.code(), vesk::base::error_handling::makeErrorCode(ErrEnum::InvalidDocument));
    }
    EXPECT_EQ(renderer->alive, 1);
    EXPECT_TRUE(log.takeTexts().empty());
}

TEST(ClassWideDefaults, KeepEveryFieldOfViewBitForBit)
{
    for (const float degrees : {60.0f, 0.0f, -5.0f, -0.0f, HUGE_VALF, std::nanf("")}) {
        ViewportModel::setDefaultVerticalFieldOfView(degrees);
        const float kept = ViewportModel::defaultVerticalFieldOfView();
        EXPECT_EQ(std::memcmp(&kept, &degrees, sizeof(float)), 0) << degrees;
    }
    ViewportModel::setDefaultVerticalFieldOfView(45.0f);
}

TEST(ClassWideDefaults, KeepEveryFitPolicy)
{
    for (const auto policy : {CameraUtilMatchVertically, CameraUtilMatchHorizontally, CameraUtilCrop,
                              CameraUtilDontConform, CameraUtilFit}) {
        ViewportModel::setDefaultCameraFitPolicy(policy);
        EXPECT_EQ(ViewportModel::defaultCameraFitPolicy(), policy);
    }
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
