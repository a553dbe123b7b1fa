#include "test_helpers.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/line.h>
#include <pxr/base/gf/lineSeg.h>
#include <pxr/base/gf/plane.h>
#include <pxr/base/gf/ray.h>
#include <pxr/base/gf/vec4d.h>

namespace {

TEST(Plane, PassesThroughItsThreePointsWithTheNormalTowardsTheViewer)
{
    const GfPlane plane(GfVec3d(0, 0, 2), GfVec3d(1, 0, 2), GfVec3d(0, 1, 2));
    EXPECT_EQ(plane.GetNormal(), GfVec3d::ZAxis());
    EXPECT_EQ(plane.GetDistanceFromOrigin(), 2);
    EXPECT_EQ(plane.GetDistance(GfVec3d(7, 8, 5)), 3);
    EXPECT_EQ(plane.Project(GfVec3d(7, 8, 5)), GfVec3d(7, 8, 2));
}

TEST(Plane, EquationHasTheDistanceNegated)
{
    const GfPlane plane(GfVec4d(0, 3, 0, -6)); // 3 y - 6 = 0
    EXPECT_EQ(plane.GetEquation(), GfVec4d(0, 1, 0, -2));
    EXPECT_EQ(textOf(plane), "[(0, 1, 0) 2]");
}

TEST(Plane, MovesWithItsPoints)
{
    Numbers numbers(2);
    for (int i = 0; i != 20; ++i) {
        const GfVec3d a = numbers.vec(3), b = numbers.vec(3), c = numbers.vec(3);
        GfMatrix4d scale, matrix;
        matrix = scale.SetScale(GfVec3d(2, 3, 0.5)) * matrix.SetTransform(numbers.rotation(), numbers.vec(5));
        GfPlane plane(a, b, c);
        plane.Transform(matrix);
        for (const GfVec3d& p : {a, b, c}) {
            EXPECT_NEAR(plane.GetDistance(matrix.Transform(p)), 0, 1e-9);
        }
    }
}

TEST(Plane, HalfSpaceHoldsABoxThatReachesIntoIt)
{
    const GfPlane plane(GfVec3d(1, 1, 0), GfVec3d(2, 2, 0));
    EXPECT_FALSE(plane.IntersectsPositiveHalfSpace(GfRange3d(GfVec3d(0), GfVec3d(1.9))));
    EXPECT_TRUE(plane.IntersectsPositiveHalfSpace(GfRange3d(GfVec3d(0), GfVec3d(2.1))));
    EXPECT_FALSE(plane.IntersectsPositiveHalfSpace(GfRange3d()));
    EXPECT_TRUE(plane.IntersectsPositiveHalfSpace(GfVec3d(4, 0, 0)));
}

TEST(Plane, FitsPointsThatLieOnAPlaneExactly)
{
    // x + 2 y - z = 4
    std::vector<GfVec3d> points;
    for (int i = 0; i != 5; ++i) {
        const double x = i * i, y = 3 - i;
        points.push_back(GfVec3d(x, y, x + 2 * y - 4));
    }
    GfPlane plane;
    ASSERT_TRUE(GfFitPlaneToPoints(points, &plane));
    for (const GfVec3d& p : points) {
        EXPECT_NEAR(plane.GetDistance(p), 0, 1e-9);
    }
    EXPECT_FALSE(GfFitPlaneToPoints({GfVec3d(0), GfVec3d(1), GfVec3d(2)}, &plane)); // a line
}

TEST(Line, ClosestPointsOfTwoLinesLieOnTheirCommonPerpendicular)
{
    const GfLine x(GfVec3d(5, 0, 0), GfVec3d(2, 0, 0));
    const GfLine y(GfVec3d(0, 7, 3), GfVec3d(0, -1, 0));
    GfVec3d p, q;
    double t = 0, u = 0;
    ASSERT_TRUE(GfFindClosestPoints(x, y, &p, &q, &t, &u));
    expectNear(p, GfVec3d(0, 0, 0));
    expectNear(q, GfVec3d(0, 0, 3));
    EXPECT_EQ(t, -5);
    EXPECT_EQ(u, 7);
    EXPECT_FALSE(GfFindClosestPoints(x, x));
}

TEST(LineSeg, ClosestPointStaysBetweenTheEnds)
{
    const GfLineSeg segment(GfVec3d(0), GfVec3d(4, 0, 0));
    double t = -1;
    EXPECT_EQ(segment.FindClosestPoint(GfVec3d(1, 5, 0), &t), GfVec3d(1, 0, 0));
    EXPECT_EQ(t, 0.25);
    EXPECT_EQ(segment.FindClosestPoint(GfVec3d(9, 5, 0), &t), GfVec3d(4, 0, 0));
    EXPECT_EQ(t, 1);
    EXPECT_EQ(GfLineSeg(GfVec3d(1), GfVec3d(1)).FindClosestPoint(GfVec3d(9)), GfVec3d(1));
}

TEST(Ray, HitsATriangleFromEitherSide)
{
    const GfVec3d a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    const GfRay down(GfVec3d(1, 2, 6), GfVec3d(0, 0, -2));
    double distance = 0;
    GfVec3d weights;
    bool isFront = false;
    ASSERT_TRUE(down.Intersect(a, b, c, &distance, &weights, &isFront));
    EXPECT_DOUBLE_EQ(distance, 3); // the direction has length 2
    expectNear(weights, GfVec3d(0.25, 0.25, 0.5), 1e-6);
    EXPECT_TRUE(isFront);
    ASSERT_TRUE(down.Intersect(a, c, b, nullptr, nullptr, &isFront));
    EXPECT_FALSE(isFront);
}

TEST(Ray, MissesATriangleBesideBehindOrBeyondTheLimit)
{
    const GfVec3d a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    EXPECT_FALSE(GfRay(GfVec3d(3, 3, 6), GfVec3d(0, 0, -1)).Intersect(a, b, c));
    EXPECT_FALSE(GfRay(GfVec3d(1, 1, 6), GfVec3d(0, 0, 1)).Intersect(a, b, c));
    EXPECT_FALSE(
        GfRay(GfVec3d(1, 1, 6), GfVec3d(0, 0, -1)).Intersect(a, b, c, nullptr, nullptr, nullptr, 5.9));
    EXPECT_FALSE(GfRay(GfVec3d(1, 1, 6), GfVec3d(1, 0, 0)).Intersect(a, b, c));
}

TEST(Ray, EntersAndLeavesABox)
{
    const GfRange3d box(GfVec3d(1, -1, -1), GfVec3d(3, 1, 1));
    double enter = 0, leave = 0;
    ASSERT_TRUE(GfRay(GfVec3d(0), GfVec3d(1, 0, 0)).Intersect(box, &enter, &leave));
    EXPECT_EQ(enter, 1);
    EXPECT_EQ(leave, 3);
    ASSERT_TRUE(GfRay(GfVec3d(2, 0, 0), GfVec3d(1, 0, 0)).Intersect(box, &enter, &leave));
    EXPECT_EQ(enter, -1); // from inside
    EXPECT_FALSE(GfRay(GfVec3d(4, 0, 0), GfVec3d(1, 0, 0)).Intersect(box));
    EXPECT_FALSE(GfRay(GfVec3d(0, 2, 0), GfVec3d(1, 0, 0)).Intersect(box));
    EXPECT_FALSE(GfRay(GfVec3d(0), GfVec3d(1, 0, 0)).Intersect(GfRange3d()));
}

TEST(Ray, DistancesToATransformedBoxAreInWorldSpace)
{
    GfMatrix4d scale;
    const GfBBox3d box(GfRange3d(GfVec3d(-1), GfVec3d(1)), scale.SetScale(5));
    double enter = 0;
    ASSERT_TRUE(GfRay(GfVec3d(0, 0, 9), GfVec3d(0, 0, -1)).Intersect(box, &enter));
    EXPECT_DOUBLE_EQ(enter, 4);
}

TEST(Ray, CrossesRoundSolids)
{
    const GfRay ray(GfVec3d(-10, 0, 0), GfVec3d(1, 0, 0));
    double enter = 0, leave = 0;
    ASSERT_TRUE(ray.Intersect(GfVec3d(0), 3, &enter, &leave)); // a sphere
    EXPECT_NEAR(enter, 7, 1e-9);
    EXPECT_NEAR(leave, 13, 1e-9);
    ASSERT_TRUE(ray.Intersect(GfVec3d(0, 0, 99), GfVec3d::ZAxis(), 2, &enter, &leave)); // a cylinder
    EXPECT_NEAR(enter, 8, 1e-9);
    // A cone of radius 4 at the ground and height 8 has radius 3 at height 2.
    ASSERT_TRUE(GfRay(GfVec3d(-10, 0, 2), GfVec3d(1, 0, 0))
                    .Intersect(GfVec3d(0), GfVec3d::ZAxis(), 4, 8, &enter, &leave));
    EXPECT_NEAR(enter, 7, 1e-9);
    EXPECT_NEAR(leave, 13, 1e-9);
    EXPECT_FALSE(GfRay(GfVec3d(-10, 0, 9), GfVec3d(1, 0, 0))
                     .Intersect(GfVec3d(0), GfVec3d::ZAxis(), 4, 8, &enter, &leave));
    EXPECT_FALSE(ray.Intersect(GfVec3d(0, 5, 0), 3));
}

TEST(Ray, ClosestPointIsNotBehindTheStart)
{
    const GfRay ray(GfVec3d(1, 0, 0), GfVec3d(2, 0, 0));
    double distance = -1;
    EXPECT_EQ(ray.FindClosestPoint(GfVec3d(5, 9, 0), &distance), GfVec3d(5, 0, 0));
    EXPECT_EQ(distance, 2);
    EXPECT_EQ(ray.FindClosestPoint(GfVec3d(-5, 9, 0), &distance), GfVec3d(1, 0, 0));
    EXPECT_EQ(distance, 0);
    EXPECT_EQ(textOf(ray), "[(1, 0, 0) >> (2, 0, 0)]");
}

} // namespace
