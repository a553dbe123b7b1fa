#include "camera_check.h"

#include <vesk/usd/utils/camera_utils.h>

using namespace vesk::usd::utils;
using namespace vesk::usd::utils::tests;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

const GfRange3f kBox(GfVec3f(-1, -2, -3), GfVec3f(3, 2, 1));

GfCamera cameraFrom(const GfVec3d& direction, float distance, ProjectionType projection,
                    const GfRange3f& box = kBox)
{
    return getFramedBBoxGfCameraWithDirection(box, GfCamera(), direction, false, projection, 45.0f, distance,
                                              1.0f);
}

GfRange1f rangeOf(GfCamera camera, float distanceToCenter, float distance, const GfRange3f& box = kBox)
{
    updateGfCameraNearFar(camera, false, distanceToCenter, distance, box);
    return camera.GetClippingRange();
}

TEST(ClippingRange, EnclosesTheBoundsFromEveryDirection)
{
    for (const ProjectionType projection : {ProjectionType::Perspective, ProjectionType::Orthographic}) {
        for (const float distance : {4.0f, 10.0f, 1000.0f}) {
            for (const GfVec3d& direction :
                 {GfVec3d(0, 0, 1), GfVec3d(1, 0, 0), GfVec3d(-1, 2, 3), GfVec3d(0, -1, 0)}) {
                GfCamera camera = cameraFrom(direction, distance, projection);
                updateGfCameraNearFar(camera, false, distance, distance, kBox);
                EXPECT_TRUE(enclosesDepths(camera, kBox)) << distance << direction;
            }
        }
    }
}

TEST(ClippingRange, StaysTheSameWhileTheCameraOrbits)
{
    const GfRange1f first =
        rangeOf(cameraFrom(GfVec3d(0, 0, 1), 10.0f, ProjectionType::Perspective), 10.0f, 10.0f);
    for (const GfVec3d& direction : {GfVec3d(1, 0, 0), GfVec3d(1, 1, 1), GfVec3d(-3, 1, 2)}) {
        const GfRange1f range =
            rangeOf(cameraFrom(direction, 10.0f, ProjectionType::Perspective), 10.0f, 10.0f);
        EXPECT_NEAR(range.GetMin(), first.GetMin(), 1e-5f);
        EXPECT_NEAR(range.GetMax(), first.GetMax(), 1e-5f);
    }
}

TEST(ClippingRange, LiesInFrontOfAPerspectiveCameraInsideTheBounds)
{
    GfCamera camera = cameraFrom(GfVec3d(0, 0, 1), 0.5f, ProjectionType::Perspective);
    const GfRange1f range = rangeOf(camera, 0.5f, 0.5f);
    EXPECT_GT(range.GetMin(), 0.0f);
    EXPECT_LE(range.GetMax() / range.GetMin(), 1e6f);
    EXPECT_GE(range.GetMax(), 0.5 + GfVec3d(2, 2, 2).GetLength());
}

TEST(ClippingRange, OfAnOrthographicCameraCoversWhatLiesBehindItToo)
{
    for (const float distance : {0.001f, 0.5f, 3.0f, -20.0f}) {
        GfCamera camera = cameraFrom(GfVec3d(1, 1, 1), 5.0f, ProjectionType::Orthographic);
        GfMatrix4d transform = camera.GetTransform();
        setCameraPosition(transform, GfVec3d(1, 0, -1) + axis(camera, 2) * static_cast<double>(distance));
        camera.SetTransform(transform);
        updateGfCameraNearFar(camera, false, distance, distance, kBox);
        EXPECT_TRUE(enclosesDepths(camera, kBox)) << distance;
    }
}

TEST(ClippingRange, OfAnOrthographicCameraCoversTheBoundsFromVeryFarAway)
{
    const GfCamera camera = cameraFrom(GfVec3d(0, 0, 1), 1e9f, ProjectionType::Orthographic);
    GfCamera updated = camera;
    updateGfCameraNearFar(updated, false, 1e9f, 1e9f, kBox);
    EXPECT_TRUE(enclosesDepths(updated, kBox));
    EXPECT_LT(updated.GetClippingRange().GetMin(), updated.GetClippingRange().GetMax());
}

TEST(ClippingRange, ServesTheDistanceBeforeAndAfterAStep)
{
    const GfCamera camera = cameraFrom(GfVec3d(0, 0, 1), 10.0f, ProjectionType::Perspective);
    const GfRange1f before = rangeOf(camera, 10.0f, 10.0f);
    const GfRange1f both = rangeOf(camera, 10.0f, 12.0f);
    EXPECT_LE(both.GetMin(), before.GetMin());
    EXPECT_GE(both.GetMax(), before.GetMax() + 2.0f * 0.99f);
}

TEST(ClippingRange, EnclosesBoundsAwayFromThePivot)
{
    GfCamera camera = cameraFrom(GfVec3d(0, 0, 1), 10.0f, ProjectionType::Perspective);
    const GfRange3f far(GfVec3f(100, 0, -50), GfVec3f(101, 1, -40));
    updateGfCameraNearFar(camera, false, 10.0f, 10.0f, far);
    EXPECT_TRUE(enclosesDepths(camera, far));
}

TEST(ClippingRange, ScalesWithTheScene)
{
    for (const float scale : {1e-6f, 1e6f}) {
        const GfRange3f box(kBox.GetMin() * scale, kBox.GetMax() * scale);
        const GfRange1f one =
            rangeOf(cameraFrom(GfVec3d(0, 0, 1), 10.0f, ProjectionType::Perspective), 10.0f, 10.0f);
        const GfRange1f range =
            rangeOf(cameraFrom(GfVec3d(0, 0, 1), 10.0f * scale, ProjectionType::Perspective, box),
                    10.0f * scale, 10.0f * scale, box);
        EXPECT_NEAR(range.GetMin() / scale, one.GetMin(), one.GetMin() * 1e-4f);
        EXPECT_NEAR(range.GetMax() / scale, one.GetMax(), one.GetMax() * 1e-4f);
    }
}

TEST(ClippingRange, IsTheSameForBothUpAxes)
{
    GfCamera yUp = cameraFrom(GfVec3d(0, 0, 1), 10.0f, ProjectionType::Perspective);
    GfCamera zUp = yUp;
    updateGfCameraNearFar(yUp, false, 10.0f, 10.0f, kBox);
    updateGfCameraNearFar(zUp, true, 10.0f, 10.0f, kBox);
    EXPECT_EQ(yUp, zUp);
}

TEST(ClippingRange, WithoutBoundsIsMadeFromTheDistance)
{
    const GfRange1f range = rangeOf(GfCamera(), 20.0f, 20.0f, GfRange3f());
    EXPECT_LT(range.GetMin(), 20.0f * 0.1f);
    EXPECT_GT(range.GetMax(), 20.0f * 10.0f);
}

TEST(ClippingRange, WithoutBoundsAndDistanceIsKept)
{
    GfCamera camera;
    camera.SetClippingRange(GfRange1f(0.5f, 77.0f));
    EXPECT_EQ(rangeOf(camera, 0.0f, 0.0f, GfRange3f()), GfRange1f(0.5f, 77.0f));
}

TEST(ClippingRange, ThatIsInvalidAndHasNothingToGoByBecomesTheDefault)
{
    GfCamera camera;
    camera.SetClippingRange(GfRange1f(5.0f, std::nanf("")));
    EXPECT_EQ(rangeOf(camera, 0.0f, 0.0f, GfRange3f()), GfCamera().GetClippingRange());
}

TEST(ClippingRange, IgnoresBoundsThatAreNotFinite)
{
    const GfRange1f empty = rangeOf(GfCamera(), 20.0f, 20.0f, GfRange3f());
    EXPECT_EQ(rangeOf(GfCamera(), 20.0f, 20.0f, GfRange3f(GfVec3f(std::nanf("")), GfVec3f(1))), empty);
    EXPECT_EQ(rangeOf(GfCamera(), 20.0f, 20.0f, GfRange3f(GfVec3f(0), GfVec3f(HUGE_VALF))), empty);
}

TEST(ClippingRange, IsValidForAnyNumber)
{
    for (const bool orthographic : {false, true}) {
        GfCamera camera;
        if (orthographic) camera.SetOrthographicFromAspectRatioAndSize(1.0f, 1.0f, GfCamera::FOVVertical);
        for (const float position : kNastyFloats) {
            GfMatrix4d transform(1.0);
            setCameraPosition(transform, GfVec3d(position, 0, position));
            camera.SetTransform(transform);
            for (const float first : kNastyFloats) {
                for (const float second : kNastyFloats) {
                    for (const float size : kNastyFloats) {
                        const GfRange1f range =
                            rangeOf(camera, first, second, GfRange3f(GfVec3f(-size), GfVec3f(size)));
                        ASSERT_TRUE(std::isfinite(range.GetMin()) && std::isfinite(range.GetMax()));
                        ASSERT_LT(range.GetMin(), range.GetMax());
                        if (orthographic) continue;
                        ASSERT_GT(range.GetMin(), 0.0f)
                            << position << " " << first << " " << second << " " << size;
                        ASSERT_LE(static_cast<double>(range.GetMax()) / range.GetMin(), 1e6);
                    }
                }
            }
        }
    }
}

TEST(ClippingRange, ToleratesAxesThatAreNotUnitLength)
{
    GfCamera camera = cameraFrom(GfVec3d(0, 0, 1), 10.0f, ProjectionType::Perspective);
    const GfRange1f unit = rangeOf(camera, 10.0f, 10.0f);
    GfMatrix4d transform = camera.GetTransform();
    transform[2][2] *= 7.0;
    camera.SetTransform(transform);
    EXPECT_EQ(rangeOf(camera, 10.0f, 10.0f), unit);
    transform[2][2] = 0.0;
    camera.SetTransform(transform);
    EXPECT_TRUE(isFiniteCamera(camera));
    EXPECT_GT(rangeOf(camera, 10.0f, 10.0f).GetMin(), 0.0f);
}

} // namespace
