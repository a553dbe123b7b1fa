// What all gestures have in common.
#include "navigation_fixture.h"

namespace vesk::framework::usd_viewport::tests {
namespace {

TEST_F(NavigationTest, ZeroMotionDoesNothingAtAll)
{
    const GfCamera before = model->getGfCamera();
    model->beginCameraInteraction();
    for (const float zero : {0.0f, -0.0f}) {
        model->orbitCamera(zero, zero, "label");
        model->orbitCameraUsingDeltaAngles(zero, zero, "label");
        model->rotateCamera(zero, zero, "label");
        model->panCamera(zero, zero, "label");
        model->zoomCamera(zero, zero, "label");
        model->moveCamera(zero, zero, zero, "label");
    }
    model->endCameraInteraction();
    expectSilence();
    EXPECT_EQ(model->getGfCamera(), before);
}

TEST_F(NavigationTest, AnySingleMotionIsEnough)
{
    const std::function<void()> motions[] = {[this] { model->orbitCamera(5, 0, "label"); },
                                             [this] { model->orbitCamera(0, 5, "label"); },
                                             [this] { model->orbitCameraUsingDeltaAngles(5, 0, "label"); },
                                             [this] { model->orbitCameraUsingDeltaAngles(0, 5, "label"); },
                                             [this] { model->rotateCamera(5, 0, "label"); },
                                             [this] { model->rotateCamera(0, 5, "label"); },
                                             [this] { model->panCamera(5, 0, "label"); },
                                             [this] { model->panCamera(0, 5, "label"); },
                                             [this] { model->zoomCamera(5, 0, "label"); },
                                             [this] { model->zoomCamera(0, 5, "label"); },
                                             [this] { model->moveCamera(1, 0, 0, "label"); },
                                             [this] { model->moveCamera(0, 1, 0, "label"); },
                                             [this] { model->moveCamera(0, 0, 1, "label"); }};
    for (const auto& motion : motions) {
        motion();
        EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
    }
}

TEST_F(NavigationTest, EveryGestureTellsTheRendererAndThenTheBus)
{
    for (const auto& gesture : gestures()) {
        forget();
        gesture("label");
        EXPECT_EQ(timeline, (std::vector<std::string>{"renderer setCamera", "A camera event"}));
        EXPECT_EQ(renderer->lastCamera(), model->getGfCamera());
    }
    EXPECT_TRUE(watched.tasks.empty());
}

TEST_F(NavigationTest, EveryGestureKeepsTheLens)
{
    GfCamera lens = cameraAt(GfVec3d(0, 0, 10), 85.0f);
    lens.SetHorizontalApertureOffset(1.0f);
    lens.SetFStop(4.0f);
    lens.SetClippingPlanes({GfVec4f(1, 2, 3, 4)});
    for (const auto& gesture : gestures()) {
        model->setGfCamera(lens, "");
        gesture("label");
        GfCamera expected = lens;
        expected.SetTransform(model->getGfCamera().GetTransform());
        expected.SetClippingRange(model->getGfCamera().GetClippingRange());
        EXPECT_EQ(model->getGfCamera(), expected);
    }
}

TEST_F(NavigationTest, EveryGestureFitsTheClippingRange)
{
    cacheBounds();
    const GfRange3f bounds(GfVec3f(-1), GfVec3f(1));
    for (const auto& gesture : gestures()) {
        place(GfVec3d(0, 0, 10), 10.0f);
        gesture("label");
        GfCamera expected = model->getGfCamera();
        const float distance = model->distanceToCenter();
        // A zoom lets the range serve the distance before it as well; here that is 10 for every gesture.
        const bool zoomed = distance < 10.0f;
        vesk::usd::utils::updateGfCameraNearFar(expected, false, distance, zoomed ? 10.0f : distance, bounds);
        EXPECT_EQ(model->getGfCamera().GetClippingRange(), expected.GetClippingRange());
    }
}

TEST_F(NavigationTest, EveryGestureGivesItsLabelToTheWriteOfAFollowedCamera)
{
    follow("/Cam");
    for (const auto& gesture : gestures()) {
        gesture("my label");
        gesture("");
        EXPECT_EQ(labelsOf(watched.takeTasks()),
                  (std::vector<std::string>{"my label", ViewportModel::m_cameraUpdateUndoLabel}));
    }
    EXPECT_TRUE(renderer->take().empty());
}

TEST_F(NavigationTest, ANaNIsAMotion)
{
    const float nan = std::nanf("");
    const std::function<void()> motions[] = {[&] { model->orbitCamera(nan, 0, "label"); },
                                             [&] { model->orbitCameraUsingDeltaAngles(0, nan, "label"); },
                                             [&] { model->rotateCamera(nan, 0, "label"); },
                                             [&] { model->panCamera(nan, 0, "label"); },
                                             [&] { model->zoomCamera(0, nan, "label"); },
                                             [&] { model->moveCamera(0, nan, 0, "label"); }};
    for (const auto& motion : motions) {
        motion();
        EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
        EXPECT_EQ(watched.takeCameraEvents(), 1u);
    }
}

TEST_F(NavigationTest, EveryGestureInsideAnInteractionIsHeldBackAndCounts)
{
    for (const auto& gesture : gestures()) {
        model->beginCameraInteraction();
        gesture("label");
        EXPECT_EQ(watched.takeCameraEvents(), 0u);
        model->endCameraInteraction();
        EXPECT_EQ(watched.takeCameraEvents(), 1u);
    }
}

TEST_F(NavigationTest, AnyBrokenCameraIsHealedByFramingFromADirection)
{
    const float sizes[] = {0, 1, -1};
    for (const float width : sizes) {
        for (const auto& gesture : gestures()) {
            setRenderSize(static_cast<int>(width), 0);
            gesture("label");
            setRenderSize(1000, 500);
            model->setGfCamera(cameraAt(GfVec3d(0, 0, 5)), "");
            model->frameScene(ProjectionType::Perspective, ViewDirection::Front, {});
            run();
            EXPECT_TRUE(std::isfinite(row(model->getGfCamera(), 3)[2]));
            EXPECT_TRUE(std::isfinite(model->distanceToCenter()));
        }
    }
}

TEST_F(NavigationTest, TheDistanceIsAPlainValue)
{
    for (const float distance : {5.0f, -3.0f}) {
        model->setDistanceToCenter(distance);
        EXPECT_EQ(model->distanceToCenter(), distance);
    }
    model->setDistanceToCenter(std::nanf(""));
    EXPECT_TRUE(std::isnan(model->distanceToCenter()));
    expectSilence();
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
