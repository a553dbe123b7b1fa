#include "camera_check.h"

#include <vesk/usd/utils/camera_utils.h>

using namespace vesk::usd::utils;
using namespace vesk::usd::utils::tests;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

const GfRange3f kBox(GfVec3f(-1), GfVec3f(1));

GfCamera cameraAt(const GfVec3d& position)
{
    GfCamera camera;
    GfMatrix4d transform(1.0);
    setCameraPosition(transform, position);
    camera.SetTransform(transform);
    return camera;
}

TEST(DistanceToPivot, IsTheDepthOfTheCentre)
{
    EXPECT_EQ(getGfCameraDistanceToCenter(cameraAt(GfVec3d(0, 0, 10)), kBox), 10.0f);
    EXPECT_EQ(getGfCameraDistanceToCenter(cameraAt(GfVec3d(3, -4, 10)), kBox), 10.0f);
}

TEST(DistanceToPivot, IsTheDistanceToACentreBehindTheCamera)
{
    EXPECT_EQ(getGfCameraDistanceToCenter(cameraAt(GfVec3d(0, 0, -10)), kBox), 10.0f);
    EXPECT_EQ(getGfCameraDistanceToCenter(cameraAt(GfVec3d(3, 0, -4)), kBox), 5.0f);
}

TEST(DistanceToPivot, IsTheRadiusAtTheCentreItself)
{
    EXPECT_FLOAT_EQ(getGfCameraDistanceToCenter(cameraAt(GfVec3d(0, 0, 0)), kBox), std::sqrt(3.0f));
}

TEST(DistanceToPivot, ToleratesAxesThatAreNotUnitLength)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    camera.SetTransform(GfMatrix4d(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 5, 0, 0, 0, 10, 1));
    EXPECT_EQ(getGfCameraDistanceToCenter(camera, kBox), 10.0f);
}

TEST(DistanceToPivot, WithoutBoundsIsTheFocusDistance)
{
    GfCamera camera = cameraAt(GfVec3d(0, 3, 4));
    camera.SetFocusDistance(7.0f);
    EXPECT_EQ(getGfCameraDistanceToCenter(camera, GfRange3f()), 7.0f);
}

TEST(DistanceToPivot, WithoutBoundsAndFocusIsTheDistanceToTheOrigin)
{
    EXPECT_EQ(getGfCameraDistanceToCenter(cameraAt(GfVec3d(0, 3, 4)), GfRange3f()), 5.0f);
}

TEST(DistanceToPivot, IsFiniteAndAboveZeroForAnyNumber)
{
    for (const float position : kNastyFloats) {
        for (const float focus : kNastyFloats) {
            for (const float size : kNastyFloats) {
                GfCamera camera = cameraAt(GfVec3d(position, position, position));
                camera.SetFocusDistance(focus);
                camera.SetClippingRange(GfRange1f(focus, focus));
                const float distance =
                    getGfCameraDistanceToCenter(camera, GfRange3f(GfVec3f(-size), GfVec3f(size)));
                ASSERT_TRUE(std::isfinite(distance) && distance > 0.0f)
                    << position << " " << focus << " " << size;
            }
        }
    }
}

TEST(FocusCheck, ReplacesAnInvalidDistance)
{
    for (const float invalid : {0.0f, -0.0f, -5.0f, std::nanf(""), HUGE_VALF, -HUGE_VALF}) {
        GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
        camera.SetFocusDistance(invalid);
        checkGfCameraFocusDistance(camera, kBox);
        EXPECT_EQ(camera.GetFocusDistance(), 10.0f) << invalid;
    }
}

TEST(FocusCheck, LeavesAValidDistance)
{
    for (const float valid : {1e-40f, 0.5f, 3.4e38f}) {
        GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
        camera.SetFocusDistance(valid);
        const GfCamera before = camera;
        checkGfCameraFocusDistance(camera, kBox);
        EXPECT_EQ(camera, before);
    }
}

TEST(FocusCheck, DoesNothingWithoutBounds)
{
    GfCamera camera = cameraAt(GfVec3d(0, 0, 10));
    checkGfCameraFocusDistance(camera, GfRange3f());
    EXPECT_EQ(camera.GetFocusDistance(), 0.0f);
    checkGfCameraFocusDistance(camera, GfRange3f(GfVec3f(std::nanf("")), GfVec3f(1)));
    EXPECT_EQ(camera.GetFocusDistance(), 0.0f);
}

TEST(FocusCheck, ChangesNothingASecondTime)
{
    GfCamera camera = cameraAt(GfVec3d(1, 2, 3));
    checkGfCameraFocusDistance(camera, kBox);
    const GfCamera once = camera;
    checkGfCameraFocusDistance(camera, kBox);
    EXPECT_EQ(camera, once);
}

TEST(FocusCheck, ChangesOnlyTheFocusDistance)
{
    GfCamera camera = cameraAt(GfVec3d(1, 2, 3));
    GfCamera expected = camera;
    checkGfCameraFocusDistance(camera, kBox);
    expected.SetFocusDistance(camera.GetFocusDistance());
    EXPECT_EQ(camera, expected);
}

} // namespace
