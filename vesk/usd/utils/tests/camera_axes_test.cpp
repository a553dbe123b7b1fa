#include "camera_check.h"

#include <vesk/usd/utils/camera_utils.h>

using namespace vesk::usd::utils;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

const GfMatrix4d kTransform(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

TEST(CameraAxes, AreTheFirstThreeRowsAsTheyAre)
{
    EXPECT_EQ(getCameraUDir(kTransform), GfVec3d(1, 2, 3));
    EXPECT_EQ(getCameraVDir(kTransform), GfVec3d(5, 6, 7));
    EXPECT_EQ(getCameraWDir(kTransform), GfVec3d(9, 10, 11));
}

TEST(CameraPosition, IsTheLastRow) { EXPECT_EQ(getCameraPosition(kTransform), GfVec3d(13, 14, 15)); }

TEST(CameraPosition, IsSetWithoutTouchingAnythingElse)
{
    GfMatrix4d transform = kTransform;
    setCameraPosition(transform, GfVec3d(-1, -2, -3));
    EXPECT_EQ(transform, GfMatrix4d(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, -1, -2, -3, 16));
}

TEST(WorldUp, IsYUnlessTheSceneIsZUp)
{
    EXPECT_EQ(getVec3dUpDir(false), GfVec3d(0, 1, 0));
    EXPECT_EQ(getVec3dUpDir(true), GfVec3d(0, 0, 1));
}

TEST(ViewDirections, PointFromTheSubjectToTheCamera)
{
    EXPECT_EQ(frontViewDirection(false), GfVec3f(0, 0, 1));
    EXPECT_EQ(frontViewDirection(true), GfVec3f(0, -1, 0));
    EXPECT_EQ(rightViewDirection(false), GfVec3f(1, 0, 0));
    EXPECT_EQ(rightViewDirection(true), GfVec3f(1, 0, 0));
    EXPECT_EQ(topViewDirection(false), GfVec3f(0, 1, 0));
    EXPECT_EQ(topViewDirection(true), GfVec3f(0, 0, 1));
}

TEST(ViewDirections, ThreeQuartersSeesFrontRightSideAndTop)
{
    for (const bool zUp : {false, true}) {
        const GfVec3f direction = threeQuartersViewDirection(zUp);
        EXPECT_NEAR(direction.GetLength(), 1.0, 1e-6);
        EXPECT_GT(GfDot(direction, frontViewDirection(zUp)), 0.0f);
        EXPECT_GT(GfDot(direction, rightViewDirection(zUp)), 0.0f);
        EXPECT_GT(GfDot(direction, topViewDirection(zUp)), 0.0f);
    }
}

TEST(ViewDirections, ThreeQuartersStandsTwentyFiveDegreesAboveTheGround)
{
    // sin(25 degrees), from a table.
    EXPECT_NEAR(threeQuartersViewDirection(false)[1], 0.42261826f, 1e-6f);
    EXPECT_NEAR(threeQuartersViewDirection(true)[2], 0.42261826f, 1e-6f);
}

} // namespace
