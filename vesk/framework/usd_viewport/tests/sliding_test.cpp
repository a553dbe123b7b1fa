// Gestures that move the camera: pan, zoom and move.
#include "navigation_fixture.h"

namespace vesk::framework::usd_viewport::tests {
namespace {

TEST_F(NavigationTest, PanFollowsThePointerAtThePivotsDepth)
{
    setRenderSize(200, 100);
    GfCamera camera = cameraAt(GfVec3d(0, 0, 1));
    camera.SetPerspectiveFromAspectRatioAndFieldOfView(2.0f, 90.0f, GfCamera::FOVVertical);
    model->setGfCamera(camera, "");
    model->setDistanceToCenter(1.0f);
    model->panCamera(100, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(-2, 0, 1), 1e-5);
    model->panCamera(0, 50, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(-2, 1, 1), 1e-5);
    EXPECT_EQ(model->distanceToCenter(), 1.0f);
}

TEST_F(NavigationTest, PanOfAnOrthographicCameraUsesTheDefaultFieldOfView)
{
    setRenderSize(200, 100);
    GfCamera camera = cameraAt(GfVec3d(0, 0, 1));
    camera.SetOrthographicFromAspectRatioAndSize(2.0f, 50.0f, GfCamera::FOVVertical);
    model->setGfCamera(camera, "");
    model->setDistanceToCenter(1.0f);
    ViewportModel::setDefaultVerticalFieldOfView(90.0f);
    model->panCamera(0, 50, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, 1, 1), 1e-5);
}

TEST_F(NavigationTest, PanComputesInFloat)
{
    const float tangent = std::tan(static_cast<float>(
        static_cast<double>(model->getGfCamera().GetFieldOfView(GfCamera::FOVVertical) * 0.5f) *
        0.017453292519943295));
    const float height = tangent * (2.0f * 10.0f);
    const float width = (1000.0f / 500.0f) * height;
    model->panCamera(7, 3, "label");
    EXPECT_EQ(row(model->getGfCamera(), 3),
              GfVec3d(-(7.0f / 1000.0f) * width, (3.0f / 500.0f) * height, 10.0));
}

TEST_F(NavigationTest, PanOnAViewportWithoutASizeUsesTheNumbersAsTheyCome)
{
    // 5 / 0 is infinite, and so is the offset along U; 0 / 0 is none.
    setRenderSize(1000, 0);
    model->panCamera(5, 0, "label");
    EXPECT_FALSE(std::isfinite(row(model->getGfCamera(), 3)[0]));
    place(GfVec3d(0, 0, 10), 10.0f);
    setRenderSize(0, 500);
    model->panCamera(0, 5, "label");
    EXPECT_TRUE(std::isnan(row(model->getGfCamera(), 3)[0]));
}

TEST_F(NavigationTest, PanAtDistanceZeroMovesNothingAndIsAnnounced)
{
    model->setDistanceToCenter(0.0f);
    model->panCamera(5, 5, "label");
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 10));
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(NavigationTest, ZoomMovesForwardByAPartOfTheDistance)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetFocusDistance(5.0f);
    model->setGfCamera(camera, "");
    model->zoomCamera(100, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, 0, 9));
    EXPECT_EQ(model->distanceToCenter(), 9.0f);
    EXPECT_EQ(model->getGfCamera().GetFocusDistance(), 4.0f);
}

TEST_F(NavigationTest, ZoomAddsItsTwoMotions)
{
    model->zoomCamera(100, 50, "label");
    // 100/1000 + 50/500 = 0.2 of 10.
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, 0, 8));
    EXPECT_FLOAT_EQ(model->distanceToCenter(), 8.0f);
}

TEST_F(NavigationTest, ZoomByTheWholeWidthEndsOnThePivot)
{
    model->zoomCamera(1000, 0, "label");
    EXPECT_EQ(model->distanceToCenter(), 0.0f);
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 0));
}

TEST_F(NavigationTest, ZoomGoesThroughThePivot)
{
    model->zoomCamera(2000, 0, "label");
    EXPECT_EQ(model->distanceToCenter(), -10.0f);
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, -10));
}

TEST_F(NavigationTest, ZoomLeavesAFocusThatWouldNotStayInFront)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    for (const float focus : {0.0f, 0.5f, 1.0f}) {
        camera.SetFocusDistance(focus);
        model->setGfCamera(camera, "");
        model->setDistanceToCenter(10.0f);
        model->zoomCamera(100, 0, "label");
        EXPECT_EQ(model->getGfCamera().GetFocusDistance(), focus);
    }
}

TEST_F(NavigationTest, ZoomMovesNoFocusThatIsNotInFrontAlready)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    for (const float focus : {0.0f, -0.5f}) {
        camera.SetFocusDistance(focus);
        model->setGfCamera(camera, "");
        model->setDistanceToCenter(10.0f);
        // Backward by 1: the sum would be above 0.
        model->zoomCamera(-100, 0, "label");
        EXPECT_EQ(model->distanceToCenter(), 11.0f);
        EXPECT_EQ(model->getGfCamera().GetFocusDistance(), focus);
    }
}

TEST_F(NavigationTest, ZoomOfAnOrthographicCameraShrinksItsView)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetOrthographicFromAspectRatioAndSize(1.0f, 10.0f, GfCamera::FOVVertical);
    model->setGfCamera(camera, "");
    model->zoomCamera(100, 0, "label");
    // The new distance 9 in tenths; the aspect of the picture is 2.
    EXPECT_FLOAT_EQ(model->getGfCamera().GetVerticalAperture(), 90.0f);
    EXPECT_FLOAT_EQ(model->getGfCamera().GetHorizontalAperture(), 180.0f);
}

TEST_F(NavigationTest, ZoomOnAViewportWithoutHeightKeepsTheFocus)
{
    setRenderSize(1000, 0);
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetFocusDistance(5.0f);
    model->setGfCamera(camera, "");
    model->zoomCamera(100, 0, "label");
    EXPECT_TRUE(std::isnan(model->distanceToCenter()));
    EXPECT_EQ(model->getGfCamera().GetFocusDistance(), 5.0f);
}

TEST_F(NavigationTest, ZoomHasTheNewDistanceBeforeAnybodyIsTold)
{
    float atRenderer = 0.0f;
    renderer->onCall = [&](const std::string&) { atRenderer = model->distanceToCenter(); };
    model->zoomCamera(100, 0, "label");
    renderer->onCall = nullptr;
    EXPECT_EQ(atRenderer, 9.0f);
}

TEST_F(NavigationTest, MoveBackwardLengthensTheDistance)
{
    model->moveCamera(0, 0, 2, "label");
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 12));
    EXPECT_EQ(model->distanceToCenter(), 12.0f);
}

TEST_F(NavigationTest, MoveSidewaysKeepsTheDistance)
{
    model->moveCamera(3, 0, 0, "label");
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(3, 0, 10));
    EXPECT_EQ(model->distanceToCenter(), 10.0f);
}

TEST_F(NavigationTest, MoveGoesAlongTheCamerasOwnAxes)
{
    model->orbitCameraUsingDeltaAngles(90, 0, "label");
    // U is -Z, V is +Y, W is +X, and the camera stands at (10, 0, 0).
    model->moveCamera(1, 2, 3, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(13, 2, -1));
    EXPECT_EQ(model->distanceToCenter(), 13.0f);
}

TEST_F(NavigationTest, MoveLeavesTheFocus)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetFocusDistance(5.0f);
    model->setGfCamera(camera, "");
    model->moveCamera(1, 1, -20, "label");
    EXPECT_EQ(model->getGfCamera().GetFocusDistance(), 5.0f);
    EXPECT_EQ(model->distanceToCenter(), -10.0f);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
