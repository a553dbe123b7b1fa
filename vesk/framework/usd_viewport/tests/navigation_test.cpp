#include "viewport_fixture.h"

#include <cmath>
#include <random>

namespace vesk::framework::usd_viewport::tests {
namespace {

/// A viewport whose camera stands at (0, 0, 10), looks along -Z and has its pivot at the origin.
class NavigationTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        place(GfVec3d(0, 0, 10), 10.0f);
    }

    void place(const GfVec3d& position, float distance)
    {
        model->setGfCamera(cameraAt(position), "");
        model->setDistanceToCenter(distance);
        forget();
    }

    void setRenderSize(int width, int height)
    {
        const int size[2] = {width, height};
        model->setRenderSize(size, 1.0f);
        forget();
    }

    GfVec3d pivot() const
    {
        return row(model->getGfCamera(), 3) -
               row(model->getGfCamera(), 2) * static_cast<double>(model->distanceToCenter());
    }

    /// The gestures, each with a motion that does something.
    std::vector<std::function<void(const std::string&)>> gestures()
    {
        return {[this](const std::string& label) { model->orbitCamera(3, 4, label); },
                [this](const std::string& label) { model->orbitCameraUsingDeltaAngles(3, 4, label); },
                [this](const std::string& label) { model->rotateCamera(3, 4, label); },
                [this](const std::string& label) { model->panCamera(3, 4, label); },
                [this](const std::string& label) { model->zoomCamera(3, 4, label); },
                [this](const std::string& label) { model->moveCamera(3, 4, 5, label); }};
    }
};

void expectNear(const GfVec3d& actual, const GfVec3d& expected, double tolerance = 1e-6)
{
    EXPECT_NEAR((actual - expected).GetLength(), 0.0, tolerance) << actual << " instead of " << expected;
}

// The right-handed turn of a vector about a unit axis (Rodrigues' formula).
GfVec3d turned(const GfVec3d& vector, const GfVec3d& axis, double degrees)
{
    const double angle = degrees * M_PI / 180.0;
    return vector * std::cos(angle) + GfCross(axis, vector) * std::sin(angle) +
           axis * GfDot(axis, vector) * (1.0 - std::cos(angle));
}

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

TEST_F(NavigationTest, OneMotionOutOfTwoIsEnough)
{
    model->orbitCamera(0, 5, "label");
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
    model->moveCamera(0, 0, 1, "label");
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
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
    model->panCamera(std::nanf(""), 0, "label");
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
}

TEST_F(NavigationTest, OrbitByHalfTheWidthIsHalfATurnAboutTheUpAxis)
{
    model->orbitCamera(500, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, 0, -10));
    expectNear(row(model->getGfCamera(), 0), GfVec3d(-1, 0, 0));
    expectNear(row(model->getGfCamera(), 1), GfVec3d(0, 1, 0));
    expectNear(row(model->getGfCamera(), 2), GfVec3d(0, 0, -1));
    EXPECT_EQ(model->distanceToCenter(), 10.0f);
}

TEST_F(NavigationTest, OrbitToTheRightTurnsTheCameraToTheLeftOfTheSubject)
{
    // A quarter of the width: -90 degrees about +Y takes +Z to -X.
    model->orbitCamera(250, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(-10, 0, 0));
}

TEST_F(NavigationTest, OrbitDownLiftsTheCamera)
{
    // A quarter of the height: -90 degrees about U = +X takes +Z to +Y.
    model->orbitCamera(0, 125, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, 10, 0));
}

TEST_F(NavigationTest, OrbitByAnglesIsAQuarterTurnAboutTheWorldsUp)
{
    model->orbitCameraUsingDeltaAngles(90, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(10, 0, 0));
    expectNear(row(model->getGfCamera(), 2), GfVec3d(1, 0, 0));
}

TEST_F(NavigationTest, OrbitByAnglesTurnsAboutZOnAZUpScene)
{
    model->setZUp(true);
    model->orbitCameraUsingDeltaAngles(90, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, 0, 10));
    expectNear(row(model->getGfCamera(), 0), GfVec3d(0, 1, 0));
    expectNear(row(model->getGfCamera(), 1), GfVec3d(-1, 0, 0));
}

TEST_F(NavigationTest, OrbitPitchesAboutTheOldRightAxisBeforeItYaws)
{
    model->orbitCameraUsingDeltaAngles(90, 90, "label");
    // Pitch about +X: V (0,1,0) to (0,0,1), W (0,0,1) to (0,-1,0). Yaw about +Y: +Z to +X, +X to -Z.
    expectNear(row(model->getGfCamera(), 0), GfVec3d(0, 0, -1));
    expectNear(row(model->getGfCamera(), 1), GfVec3d(1, 0, 0));
    expectNear(row(model->getGfCamera(), 2), GfVec3d(0, -1, 0));
    expectNear(row(model->getGfCamera(), 3), GfVec3d(0, -10, 0));
}

TEST_F(NavigationTest, OrbitTurnsEachAxisAsRodriguesFormulaDoes)
{
    std::mt19937 random(42);
    std::uniform_real_distribution<float> angle(-180.0f, 180.0f);
    for (int round = 0; round < 50; ++round) {
        const GfCamera before = model->getGfCamera();
        const GfVec3d pivotBefore = pivot();
        const float yaw = angle(random);
        const float pitch = angle(random);
        model->orbitCameraUsingDeltaAngles(yaw, pitch, "label");
        for (int index = 0; index < 3; ++index)
            expectNear(row(model->getGfCamera(), index),
                       turned(turned(row(before, index), row(before, 0), pitch), GfVec3d(0, 1, 0), yaw),
                       1e-12);
        expectNear(pivot(), pivotBefore, 1e-12);
    }
}

TEST_F(NavigationTest, OrbitRoundsItsAnglesToFloat)
{
    setRenderSize(3, 7);
    const float yaw = -(1.0f / 3.0f) * 360.0f;
    const float pitch = -(1.0f / 7.0f) * 360.0f;
    model->orbitCamera(1, 1, "label");
    const GfMatrix4d byMotion = model->getGfCamera().GetTransform();
    place(GfVec3d(0, 0, 10), 10.0f);
    model->orbitCameraUsingDeltaAngles(yaw, pitch, "label");
    EXPECT_EQ(model->getGfCamera().GetTransform(), byMotion);
}

TEST_F(NavigationTest, OrbitBuildsItsTransformOnTheIdentity)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    GfMatrix4d transform = camera.GetTransform();
    transform[0][3] = 5.0;
    transform[3][3] = 2.0;
    camera.SetTransform(transform);
    model->setGfCamera(camera, "");
    model->orbitCameraUsingDeltaAngles(10, 10, "label");
    const GfMatrix4d result = model->getGfCamera().GetTransform();
    EXPECT_EQ(GfVec4d(result[0][3], result[1][3], result[2][3], result[3][3]), GfVec4d(0, 0, 0, 1));
}

TEST_F(NavigationTest, OrbitAtDistanceZeroStaysInPlace)
{
    model->setDistanceToCenter(0.0f);
    model->orbitCameraUsingDeltaAngles(37, 11, "label");
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 10));
}

TEST_F(NavigationTest, OrbitByAWholeTurnIsStillAnnounced)
{
    model->orbitCameraUsingDeltaAngles(360, 0, "label");
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(NavigationTest, OrbitOnAViewportWithoutWidthUsesTheNaNAsItComes)
{
    setRenderSize(0, 500);
    model->orbitCamera(0, 5, "label");
    EXPECT_TRUE(std::isnan(row(model->getGfCamera(), 3)[0]));
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(NavigationTest, MillionsOfOrbitsKeepTheAxesOrthonormal)
{
    for (int step = 0; step < 20000; ++step)
        model->orbitCameraUsingDeltaAngles(0.37f, 0.21f, "label");
    const GfCamera& camera = model->getGfCamera();
    for (int index = 0; index < 3; ++index) {
        EXPECT_NEAR(row(camera, index).GetLength(), 1.0, 1e-10);
        EXPECT_NEAR(GfDot(row(camera, index), row(camera, (index + 1) % 3)), 0.0, 1e-10);
    }
}

TEST_F(NavigationTest, RotateTurnsTheCameraInPlace)
{
    // A quarter of the width: -90 degrees about +Y takes W from +Z to -X.
    model->rotateCamera(250, 0, "label");
    EXPECT_EQ(row(model->getGfCamera(), 3), GfVec3d(0, 0, 10));
    expectNear(row(model->getGfCamera(), 2), GfVec3d(-1, 0, 0));
    expectNear(pivot(), GfVec3d(10, 0, 10));
    EXPECT_EQ(model->distanceToCenter(), 10.0f);
}

TEST_F(NavigationTest, RotatePitchesFirstAndThenYaws)
{
    model->orbitCameraUsingDeltaAngles(20, 30, "label");
    const GfCamera before = model->getGfCamera();
    model->rotateCamera(100, 50, "label");
    // -36 degrees each.
    for (int index = 0; index < 3; ++index)
        expectNear(row(model->getGfCamera(), index),
                   turned(turned(row(before, index), row(before, 0), -36.0), GfVec3d(0, 1, 0), -36.0), 1e-6);
}

TEST_F(NavigationTest, RotateKeepsTheFourthColumn)
{
    GfCamera camera = cameraAt(GfVec3d(1, 2, 3));
    GfMatrix4d transform = camera.GetTransform();
    transform[0][3] = 5.0;
    camera.SetTransform(transform);
    model->setGfCamera(camera, "");
    model->rotateCamera(10, 10, "label");
    EXPECT_EQ(model->getGfCamera().GetTransform()[0][3], 5.0);
}

TEST_F(NavigationTest, RotateOnAViewportWithoutSizeKeepsTheAxes)
{
    setRenderSize(0, 0);
    const GfMatrix4d before = model->getGfCamera().GetTransform();
    model->rotateCamera(0, 5, "label");
    EXPECT_EQ(model->getGfCamera().GetTransform(), before);
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
}

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
