// Gestures that turn the camera: orbit and rotate.
#include "navigation_fixture.h"

#include <random>

namespace vesk::framework::usd_viewport::tests {
namespace {

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

TEST_F(NavigationTest, OrbitRoundsItsAnglesToFloatAtEachStep)
{
    // 1/7 and 5/9 of a turn: rounded only once, the angles would be the next smaller floats.
    setRenderSize(7, 9);
    model->orbitCamera(1, 5, "label");
    const GfMatrix4d byMotion = model->getGfCamera().GetTransform();
    place(GfVec3d(0, 0, 10), 10.0f);
    model->orbitCameraUsingDeltaAngles(-51.42857360839844f, -200.00001525878906f, "label");
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

TEST_F(NavigationTest, OrbitWithThePivotBehindTurnsAboutWhatLiesBehind)
{
    // The pivot lies 10 behind the camera, at (0, 0, 20); a quarter turn takes W from +Z to +X.
    model->setDistanceToCenter(-10.0f);
    model->orbitCameraUsingDeltaAngles(90, 0, "label");
    expectNear(row(model->getGfCamera(), 3), GfVec3d(-10, 0, 20));
    expectNear(pivot(), GfVec3d(0, 0, 20));
}

TEST_F(NavigationTest, OrbitByAnglesAndMovesDoNotDependOnTheSize)
{
    std::vector<GfMatrix4d> results;
    for (const int width : {1000, 7, 0}) {
        setRenderSize(width, 0);
        place(GfVec3d(0, 0, 10), 10.0f);
        model->orbitCameraUsingDeltaAngles(12, 34, "label");
        model->moveCamera(1, 2, 3, "label");
        results.push_back(model->getGfCamera().GetTransform());
    }
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ(results[0], results[2]);
}

TEST_F(NavigationTest, OrbitByAWholeTurnIsStillAnnounced)
{
    model->orbitCameraUsingDeltaAngles(360, 0, "label");
    EXPECT_EQ(renderer->take(), std::vector<std::string>{"setCamera camera"});
    EXPECT_EQ(watched.takeCameraEvents(), 1u);
}

TEST_F(NavigationTest, OrbitOnAViewportWithoutASizeUsesTheNaNAsItComes)
{
    for (const bool hasWidth : {false, true}) {
        setRenderSize(hasWidth ? 1000 : 0, hasWidth ? 0 : 500);
        place(GfVec3d(0, 0, 10), 10.0f);
        model->orbitCamera(hasWidth ? 5.0f : 0.0f, hasWidth ? 0.0f : 5.0f, "label");
        EXPECT_TRUE(std::isnan(row(model->getGfCamera(), 3)[0]));
        EXPECT_EQ(watched.takeCameraEvents(), 1u);
    }
}

TEST_F(NavigationTest, ManyOrbitsKeepTheAxesOrthonormal)
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

} // namespace
} // namespace vesk::framework::usd_viewport::tests
