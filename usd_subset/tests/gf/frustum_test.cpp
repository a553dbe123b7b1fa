#include "test_helpers.h"

#include <pxr/base/gf/frustum.h>

#include <thread>
#include <vector>

namespace {

// At (0, 0, 10), looking at the origin, 90 degrees wide and high, from 1 to 20.
GfFrustum lookingDownZ()
{
    GfFrustum frustum;
    frustum.SetPosition(GfVec3d(0, 0, 10));
    frustum.SetPerspective(90, 1, 1, 20);
    return frustum;
}

GfVec3d projected(const GfFrustum& frustum, const GfVec3d& point)
{
    return (frustum.ComputeViewMatrix() * frustum.ComputeProjectionMatrix()).Transform(point);
}

TEST(Frustum, StartsAsAPerspectiveViewDownMinusZ)
{
    const GfFrustum frustum;
    EXPECT_EQ(frustum.GetProjectionType(), GfFrustum::Perspective);
    EXPECT_EQ(frustum.GetWindow(), GfRange2d(GfVec2d(-1), GfVec2d(1)));
    EXPECT_EQ(frustum.GetNearFar(), GfRange1d(1, 10));
    EXPECT_EQ(frustum.GetViewDistance(), 5);
    expectNear(frustum.ComputeViewDirection(), GfVec3d(0, 0, -1));
    expectNear(frustum.ComputeUpVector(), GfVec3d(0, 1, 0));
    expectNear(frustum.ComputeLookAtPoint(), GfVec3d(0, 0, -5));
}

TEST(Frustum, PerspectiveRemembersFieldOfViewAndAspectRatio)
{
    GfFrustum frustum;
    frustum.SetPerspective(40, true, 1.5, 0.1, 100);
    double fov = 0, aspect = 0, nearDistance = 0, farDistance = 0;
    ASSERT_TRUE(frustum.GetPerspective(&fov, &aspect, &nearDistance, &farDistance));
    EXPECT_NEAR(fov, 40, 1e-9);
    EXPECT_NEAR(aspect, 1.5, 1e-12);
    EXPECT_EQ(farDistance, 100);
    EXPECT_NEAR(frustum.GetFOV(), 2 * std::atan(1.5 * std::tan(20 * M_PI / 180)) * 180 / M_PI, 1e-9);
    frustum.SetPerspective(40, false, 0, 0.1, 100); // no aspect ratio: a square
    EXPECT_NEAR(frustum.GetFOV(true), 40, 1e-9);
    EXPECT_FALSE(frustum.GetOrthographic(&fov, &fov, &fov, &fov, &fov, &fov));
}

TEST(Frustum, OrthographicRemembersItsWindow)
{
    GfFrustum frustum;
    frustum.SetOrthographic(-2, 4, -1, 3, 0.5, 50);
    double l = 0, r = 0, b = 0, t = 0, n = 0, f = 0;
    ASSERT_TRUE(frustum.GetOrthographic(&l, &r, &b, &t, &n, &f));
    EXPECT_EQ(GfVec4d(l, r, b, t), GfVec4d(-2, 4, -1, 3));
    EXPECT_EQ(GfVec2d(n, f), GfVec2d(0.5, 50));
    EXPECT_EQ(frustum.GetFOV(), 0);
    EXPECT_FALSE(frustum.GetPerspective(&l, &r, &n, &f));
    EXPECT_DOUBLE_EQ(frustum.ComputeAspectRatio(), 1.5);
}

TEST(Frustum, ProjectsItsCornersToThoseOfTheClipVolume)
{
    GfFrustum orthographic;
    orthographic.SetOrthographic(-2, 4, -1, 3, 0.5, 50);
    orthographic.SetRotation(GfRotation(GfVec3d(1, 2, 3), 50));
    for (const GfFrustum& frustum : {lookingDownZ(), orthographic}) {
        const std::vector<GfVec3d> corners = frustum.ComputeCorners();
        ASSERT_EQ(corners.size(), 8u);
        for (size_t i = 0; i != 8; ++i) {
            expectNear(projected(frustum, corners[i]),
                       GfVec3d(i & 1 ? 1 : -1, i & 2 ? 1 : -1, i & 4 ? 1 : -1), 1e-9);
        }
        EXPECT_EQ(frustum.ComputeCornersAtDistance(frustum.GetNearFar().GetMin())[3], corners[3]);
    }
}

TEST(Frustum, ViewMatrixAndItsInverseCancel)
{
    GfFrustum frustum = lookingDownZ();
    frustum.SetRotation(GfRotation(GfVec3d(1, -1, 2), 130));
    expectNear(frustum.ComputeViewMatrix() * frustum.ComputeViewInverse(), GfMatrix4d(1));
    expectNear(frustum.ComputeViewMatrix().Transform(frustum.GetPosition()), GfVec3d(0));
}

TEST(Frustum, TakesThePoseOfAMatrixWithoutScaleAndMirroring)
{
    GfMatrix4d scale, pose;
    pose.SetTransform(GfRotation(GfVec3d::YAxis(), 30), GfVec3d(1, 2, 3));
    GfFrustum frustum;
    frustum.SetPositionAndRotationFromMatrix(scale.SetScale(GfVec3d(-2, 2, 2)) * pose);
    expectNear(frustum.ComputeViewInverse(), pose, 1e-9);
}

TEST(Frustum, RaysRunThroughTheWindowPosition)
{
    const GfFrustum frustum = lookingDownZ();
    const GfRay ray = frustum.ComputeRay(GfVec2d(0.5, -1));
    expectNear(ray.GetStartPoint(), GfVec3d(0, 0, 10));
    expectNear(ray.GetDirection(), GfVec3d(0.5, -1, -1).GetNormalized());
    const GfVec3d onPickRay = projected(frustum, frustum.ComputePickRay(GfVec2d(0.5, -1)).GetPoint(3));
    EXPECT_NEAR(onPickRay[0], 0.5, 1e-9);
    EXPECT_NEAR(onPickRay[1], -1, 1e-9);
    expectNear(frustum.ComputeRay(GfVec3d(2, 3, 4)).GetDirection(), GfVec3d(2, 3, -6).GetNormalized());
}

TEST(Frustum, OrthographicRaysAreParallel)
{
    GfFrustum frustum;
    frustum.SetOrthographic(-2, 2, -2, 2, 1, 10);
    const GfRay ray = frustum.ComputeRay(GfVec2d(0.5, 0.5));
    expectNear(ray.GetStartPoint(), GfVec3d(1, 1, -1));
    expectNear(ray.GetDirection(), GfVec3d(0, 0, -1));
    expectNear(frustum.ComputePickRay(GfVec3d(1, -1, -7)).GetStartPoint(), GfVec3d(1, -1, -1));
}

TEST(Frustum, NarrowingCentresTheWindowAndStaysInside)
{
    GfFrustum frustum = lookingDownZ();
    frustum.SetWindow(GfRange2d(GfVec2d(-1), GfVec2d(1)));
    EXPECT_EQ(frustum.ComputeNarrowedFrustum(GfVec2d(0.5, 0), GfVec2d(0.5, 0.25)).GetWindow(),
              GfRange2d(GfVec2d(0, -0.25), GfVec2d(1, 0.25)));
    EXPECT_EQ(frustum.ComputeNarrowedFrustum(GfVec2d(1, 1), GfVec2d(0.5, 0.5)).GetWindow(),
              GfRange2d(GfVec2d(0.5), GfVec2d(1)));
    // (2, 0, 6) is seen at x = 2 / 4.
    const GfRange2d window = frustum.ComputeNarrowedFrustum(GfVec3d(2, 0, 6), GfVec2d(0.1, 0.1)).GetWindow();
    EXPECT_NEAR(window.GetMidpoint()[0], 0.5, 1e-12);
    EXPECT_NEAR(window.GetSize()[0], 0.2, 1e-12);
}

TEST(Frustum, FitsASphere)
{
    GfFrustum frustum;
    frustum.SetOrthographic(-1, 1, -1, 1, 1, 10);
    frustum.FitToSphere(GfVec3d(1, 2, 3), 5, 1);
    EXPECT_EQ(frustum.GetWindow(), GfRange2d(GfVec2d(-5), GfVec2d(5)));
    EXPECT_EQ(frustum.GetNearFar(), GfRange1d(0, 12));
    expectNear(frustum.ComputeLookAtPoint(), GfVec3d(1, 2, 3));
}

TEST(Frustum, KnowsPointsInsideAndOutside)
{
    const GfFrustum frustum = lookingDownZ();
    EXPECT_TRUE(frustum.Intersects(GfVec3d(0, 0, 0)));
    EXPECT_TRUE(frustum.Intersects(GfVec3d(9.9, 0, 0))); // 10 to the side at distance 10
    EXPECT_FALSE(frustum.Intersects(GfVec3d(10.1, 0, 0)));
    EXPECT_FALSE(frustum.Intersects(GfVec3d(0, 0, 9.5)));   // before the near plane
    EXPECT_FALSE(frustum.Intersects(GfVec3d(0, 0, -10.5))); // behind the far plane
}

TEST(Frustum, IntersectionsFollowAChangedFrustum)
{
    GfFrustum frustum = lookingDownZ();
    EXPECT_TRUE(frustum.Intersects(GfVec3d(0, 0, 0)));
    frustum.SetPosition(GfVec3d(0, 0, -1));
    EXPECT_FALSE(frustum.Intersects(GfVec3d(0, 0, 0)));
    GfFrustum copy = frustum;
    copy.SetNearFar(GfRange1d(1, 2));
    EXPECT_FALSE(copy.Intersects(GfVec3d(0, 0, -5)));
    EXPECT_TRUE(frustum.Intersects(GfVec3d(0, 0, -5)));
}

TEST(Frustum, MeetsSegmentsAndTrianglesThatOnlyPassThrough)
{
    const GfFrustum frustum = lookingDownZ();
    EXPECT_TRUE(frustum.Intersects(GfVec3d(-50, 0, 0), GfVec3d(50, 0, 0)));
    EXPECT_FALSE(frustum.Intersects(GfVec3d(-50, 0, 9.5), GfVec3d(50, 0, 9.5)));
    // A triangle around the whole cross section, and one beside it.
    EXPECT_TRUE(frustum.Intersects(GfVec3d(-90, -90, 0), GfVec3d(90, -90, 0), GfVec3d(0, 180, 0)));
    EXPECT_FALSE(frustum.Intersects(GfVec3d(20, 20, 0), GfVec3d(90, 20, 0), GfVec3d(20, 180, 0)));
}

TEST(Frustum, MeetsTransformedBoxes)
{
    const GfFrustum frustum = lookingDownZ();
    GfMatrix4d aside;
    const GfRange3d cube(GfVec3d(-1), GfVec3d(1));
    const GfMatrix4d toClip = frustum.ComputeViewMatrix() * frustum.ComputeProjectionMatrix();
    for (double x : {0.0, 10.5, 13.0}) {
        const GfBBox3d box(cube, aside.SetTranslate(GfVec3d(x, 0, 0)));
        EXPECT_EQ(frustum.Intersects(box), x < 12) << x;
        EXPECT_EQ(GfFrustum::IntersectsViewVolume(box, toClip), x < 12) << x;
    }
    EXPECT_FALSE(frustum.Intersects(GfBBox3d()));
}

TEST(Frustum, TransformMovesTurnsAndScales)
{
    GfMatrix4d scale, pose;
    pose.SetTransform(GfRotation(GfVec3d::YAxis(), 90), GfVec3d(0, 0, 5));
    GfFrustum frustum = lookingDownZ();
    frustum.Transform(scale.SetScale(2) * pose);
    expectNear(frustum.GetPosition(), GfVec3d(20, 0, 5), 1e-9); // (0, 0, 20) turned to +x
    expectNear(frustum.ComputeViewDirection(), GfVec3d(-1, 0, 0), 1e-9);
    EXPECT_NEAR(frustum.GetNearFar().GetMax(), 40, 1e-9);
    EXPECT_NEAR(frustum.GetWindow().GetMax()[0], 1, 1e-9); // angles stay
}

TEST(Frustum, MayBeAskedByManyThreadsAtOnce)
{
    const GfFrustum frustum = lookingDownZ();
    std::vector<int> hits(4, 0);
    std::vector<std::thread> threads;
    for (int& count : hits) {
        threads.emplace_back([&frustum, &count] {
            for (int x = -20; x <= 20; ++x) {
                count += frustum.Intersects(GfVec3d(x + 0.5, 0, 0));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(hits, std::vector<int>(4, 20)); // -9.5 to 9.5
}

TEST(Frustum, WritesItsParts)
{
    EXPECT_EQ(textOf(GfFrustum()), "[(0, 0, 0) [(1, 0, 0) 0] [(-1, -1)...(1, 1)] [1...10] 5 Perspective]");
}

} // namespace
