#include "shapes.h"

#include <gtest/gtest.h>

namespace vesk::renderers::embree {
namespace {

struct Box
{
    Vec3 lower;
    Vec3 upper;
};

Box boxOf(Geometry g)
{
    g.computeBox();
    return {g.lower, g.upper};
}

/// Six times the enclosed volume by the divergence theorem: positive where the faces look outwards.
double volumeOf(const Geometry& g)
{
    double sum = 0.0;
    for (const Triangle& t : g.triangles) {
        sum += dot(g.points[t.point[0]], cross(g.points[t.point[1]], g.points[t.point[2]]));
    }
    return sum / 6.0;
}

constexpr double kPi = 3.14159265358979323846;

TEST(Shapes, FillTheBoxesThatTheirSizesSay)
{
    const Box sphere = boxOf(makeSphere(2.0));
    EXPECT_NEAR(sphere.lower.z, -2.0f, 1e-5f);
    EXPECT_NEAR(sphere.upper.x, 2.0f, 1e-5f);
    const Box cube = boxOf(makeCube(3.0));
    EXPECT_EQ(cube.lower, Vec3(-1.5f));
    EXPECT_EQ(cube.upper, Vec3(1.5f));
    const Box capsule = boxOf(makeCapsule(0.5, 0.5, 2.0, ShapeAxis::Z));
    EXPECT_NEAR(capsule.upper.z, 1.5f, 1e-5f);
    EXPECT_NEAR(capsule.lower.z, -1.5f, 1e-5f);
    const Box cylinder = boxOf(makeCylinder(1.0, 1.0, 4.0, ShapeAxis::Y));
    EXPECT_NEAR(cylinder.upper.y, 2.0f, 1e-5f);
    EXPECT_NEAR(cylinder.upper.x, 1.0f, 1e-5f);
}

// Width and length of a plane run along x and y on z, along x and z on y, along z and y on x.
TEST(Shapes, LayAPlaneAcrossItsAxis)
{
    const Box onZ = boxOf(makePlane(2.0, 6.0, ShapeAxis::Z));
    EXPECT_EQ(onZ.upper, Vec3(1.0f, 3.0f, 0.0f));
    const Box onY = boxOf(makePlane(2.0, 6.0, ShapeAxis::Y));
    EXPECT_EQ(onY.upper, Vec3(1.0f, 0.0f, 3.0f));
    const Box onX = boxOf(makePlane(2.0, 6.0, ShapeAxis::X));
    EXPECT_EQ(onX.upper, Vec3(0.0f, 3.0f, 1.0f));
}

TEST(Shapes, EncloseTheVolumeOfTheirFormula)
{
    EXPECT_NEAR(volumeOf(makeSphere(1.0)), 4.0 / 3.0 * kPi, 0.01);
    EXPECT_NEAR(volumeOf(makeCube(2.0)), 8.0, 1e-6);
    EXPECT_NEAR(volumeOf(makeCylinder(1.0, 1.0, 2.0, ShapeAxis::Z)), 2.0 * kPi, 0.01);
    EXPECT_NEAR(volumeOf(makeCone(1.0, 3.0, ShapeAxis::Y)), kPi, 0.01);
    EXPECT_NEAR(volumeOf(makeCapsule(1.0, 1.0, 2.0, ShapeAxis::X)), (2.0 + 4.0 / 3.0) * kPi, 0.02);
}

TEST(Shapes, HaveUnitNormalsThatLookOutwards)
{
    for (const Geometry& g : {makeSphere(1.0), makeCube(2.0), makeCylinder(1.0, 0.5, 2.0, ShapeAxis::Z),
                              makeCone(1.0, 2.0, ShapeAxis::X), makeCapsule(0.5, 0.25, 2.0, ShapeAxis::Y)}) {
        ASSERT_EQ(g.normals.values.size(), g.points.size());
        for (std::size_t i = 0; i < g.points.size(); ++i) {
            ASSERT_NEAR(length(g.normals.values[i]), 1.0f, 1e-5f);
            ASSERT_GE(dot(g.normals.values[i], g.points[i]), -1e-5f);
        }
    }
}

TEST(Shapes, LeanTheSideOfACone)
{
    // Radius 1, height 1: the side leans by 45 degrees.
    const Geometry g = makeCone(1.0, 1.0, ShapeAxis::Z);
    bool found = false;
    for (const Vec3& n : g.normals.values) {
        found = found || (std::abs(n.x - std::sqrt(0.5f)) < 1e-5f && std::abs(n.z - std::sqrt(0.5f)) < 1e-5f);
    }
    EXPECT_TRUE(found);
}

TEST(Shapes, MarkTheEdgesOfFacesAndNotTheirDiagonals)
{
    // Each of the six faces of a cube is two triangles with two outer edges each.
    const Geometry g = makeCube(2.0);
    ASSERT_EQ(g.triangles.size(), 12u);
    for (std::size_t t = 0; t < g.triangles.size(); ++t) {
        for (int i = 0; i < 3; ++i) {
            const Vec3 edge = g.points[g.triangles[t].point[(i + 1) % 3]] - g.points[g.triangles[t].point[i]];
            EXPECT_EQ((g.outlineEdges[t] >> i & 1) != 0, length(edge) < 2.1f);
        }
    }
}

/// Two triangles that share an edge along x: one lies in the ground (area 2), the other stands up (area 1).
Geometry makeFold()
{
    Geometry g;
    g.points = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 1}};
    g.triangles = {{{0, 1, 2}}, {{0, 1, 3}}};
    g.faces = {0, 1};
    g.corners = {0, 1, 2, 3, 4, 5};
    return g;
}

TEST(Geometry, AveragesSmoothNormalsByTheAreaOfTheFaces)
{
    Geometry g = makeFold();
    g.addSmoothNormals(-1.0f);
    const Vec3 expected = normalized(Vec3(0.0f, -2.0f, 4.0f)); // cross products, twice the areas
    ASSERT_EQ(g.normals.values.size(), 6u);
    for (const std::size_t corner : {0u, 1u, 3u, 4u}) {
        EXPECT_NEAR(g.normals.values[corner].y, expected.y, 1e-6f);
        EXPECT_NEAR(g.normals.values[corner].z, expected.z, 1e-6f);
    }
    EXPECT_NEAR(g.normals.values[2].z, 1.0f, 1e-6f);
}

TEST(Geometry, KeepsFacesApartThatMeetTooSharply)
{
    Geometry g = makeFold(); // they meet at 90 degrees
    g.addSmoothNormals(0.5f);
    EXPECT_NEAR(g.normals.values[0].z, 1.0f, 1e-6f);
    EXPECT_NEAR(g.normals.values[3].y, -1.0f, 1e-6f);
}

} // namespace
} // namespace vesk::renderers::embree
