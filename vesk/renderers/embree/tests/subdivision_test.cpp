#include "subdivision.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

MeshTopology topologyOf(const VtIntArray& counts, const VtIntArray& indices)
{
    MeshTopology t;
    t.counts = counts;
    t.indices = indices;
    return t;
}

Geometry geometryOf(const std::vector<Vec3>& points, const MeshTopology& t)
{
    Geometry g;
    g.points = points;
    g.faceCount = t.counts.size();
    return g;
}

const std::vector<Vec3> kCubePoints = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                       {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};

MeshTopology cube()
{
    return topologyOf({4, 4, 4, 4, 4, 4},
                      {0, 3, 2, 1, 4, 5, 6, 7, 0, 1, 5, 4, 2, 3, 7, 6, 1, 2, 6, 5, 0, 4, 7, 3});
}

// A sheet of n x n quads in the plane z = 0 whose middle point is lifted to z = 1.
MeshTopology sheet(int n, std::vector<Vec3>& points)
{
    VtIntArray counts;
    VtIntArray indices;
    for (int y = 0; y <= n; ++y) {
        for (int x = 0; x <= n; ++x)
            points.emplace_back(float(x), float(y), x == n / 2 && y == n / 2 ? 1.0f : 0.0f);
    }
    for (int y = 0; y < n; ++y) {
        for (int x = 0; x < n; ++x) {
            const int at = y * (n + 1) + x;
            counts.push_back(4);
            for (const int i : {at, at + 1, at + n + 2, at + n + 1})
                indices.push_back(i);
        }
    }
    return topologyOf(counts, indices);
}

float highest(const Geometry& g)
{
    float z = -1e30f;
    for (const Vec3& p : g.points)
        z = std::max(z, p.z);
    return z;
}

float farthest(const Geometry& g, Vec3 direction)
{
    float d = -1e30f;
    for (const Vec3& p : g.points)
        d = std::max(d, dot(p, direction));
    return d;
}

// The limit of a point of valence 3 is (9 p + 4 edges + faces) / 24: for the cube's corner (9 + 4 - 1) / 24.
TEST(Subdivision, MovesTheCornersOfACubeHalfwayToItsMiddle)
{
    const MeshTopology t = cube();
    Geometry g = geometryOf(kCubePoints, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_NEAR(farthest(g, Vec3(1, 1, 1)), 1.5f, 1e-5f);
    EXPECT_LT(farthest(g, Vec3(1, 0, 0)), 1.0f);
}

// On a regular sheet the limit is a bicubic B-spline: its middle basis value is 2/3 in each direction.
TEST(Subdivision, FollowsTheBicubicBSplineOnARegularSheet)
{
    std::vector<Vec3> points;
    const MeshTopology t = sheet(6, points);
    Geometry g = geometryOf(points, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_NEAR(highest(g), 4.0f / 9.0f, 1e-5f);
}

// In a regular triangle mesh the limit of a point is half of it and a twelfth of each of its six neighbours.
TEST(Subdivision, FollowsTheLoopLimitOnRegularTriangles)
{
    std::vector<Vec3> points;
    const MeshTopology quads = sheet(6, points);
    VtIntArray counts;
    VtIntArray indices;
    for (std::size_t f = 0; f < quads.counts.size(); ++f) {
        const int* q = quads.indices.cdata() + 4 * f;
        counts.push_back(3);
        counts.push_back(3);
        for (const int i : {q[0], q[1], q[2], q[0], q[2], q[3]})
            indices.push_back(i);
    }
    MeshTopology t = topologyOf(counts, indices);
    t.scheme = SubdivisionScheme::Loop;
    Geometry g = geometryOf(points, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_NEAR(highest(g), 0.5f, 1e-5f);
}

TEST(Subdivision, KeepsACubeWhoseEdgesAreAllSharp)
{
    MeshTopology t = cube();
    t.creasePairs = {0, 1, 1, 2, 2, 3, 3, 0, 4, 5, 5, 6, 6, 7, 7, 4, 0, 4, 1, 5, 2, 6, 3, 7};
    t.creaseWeights.assign(12, 10.0f);
    Geometry g = geometryOf(kCubePoints, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_NEAR(farthest(g, Vec3(1, 1, 1)), 3.0f, 1e-4f);
    // Each side has its own straight normals up to its edges.
    for (std::size_t i = 0; i < g.triangles.size(); ++i) {
        for (int k = 0; k < 3; ++k) {
            const Vec3 n = g.normals.values[g.corners[3 * i + std::size_t(k)]];
            EXPECT_NEAR(std::max({std::abs(n.x), std::abs(n.y), std::abs(n.z)}), 1.0f, 1e-4f);
        }
    }
}

TEST(Subdivision, KeepsASharpCorner)
{
    MeshTopology t = cube();
    t.corners = {6};
    t.cornerWeights = {10.0f};
    Geometry g = geometryOf(kCubePoints, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_NEAR(farthest(g, Vec3(1, 1, 1)), 3.0f, 1e-5f);
}

// Without sharp corners the rim of a square is a closed cubic B-spline: (4 p + neighbours) / 6.
TEST(Subdivision, TreatsTheBoundaryAsItsRuleSays)
{
    const std::vector<Vec3> square = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
    MeshTopology t = topologyOf({4}, {0, 1, 2, 3});
    Geometry kept = geometryOf(square, t);
    ASSERT_TRUE(subdivide(kept, t));
    EXPECT_NEAR(farthest(kept, Vec3(1, 1, 0)), 2.0f, 1e-5f);
    t.boundary = TfToken("edgeOnly");
    Geometry rounded = geometryOf(square, t);
    ASSERT_TRUE(subdivide(rounded, t));
    EXPECT_NEAR(farthest(rounded, Vec3(1, 1, 0)), 4.0f / 3.0f, 1e-5f);
    t.boundary = TfToken("none");
    Geometry none = geometryOf(square, t);
    ASSERT_TRUE(subdivide(none, t));
    EXPECT_TRUE(none.triangles.empty()); // the only face lies at the boundary
}

TEST(Subdivision, LeavesOutHolesAndKeepsTheNumbersOfTheOtherFaces)
{
    MeshTopology t = cube();
    t.holes = {2};
    Geometry g = geometryOf(kCubePoints, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_EQ(std::count(g.faces.begin(), g.faces.end(), 2u), 0);
    EXPECT_GT(std::count(g.faces.begin(), g.faces.end(), 5u), 0);
    EXPECT_EQ(*std::max_element(g.faces.begin(), g.faces.end()), 5u);
}

TEST(Subdivision, RefinesPrimvarsByTheRuleOfTheirInterpolation)
{
    std::vector<Vec3> points;
    const MeshTopology t = sheet(6, points);
    Geometry g = geometryOf(points, t);
    Primvar<Vec4> lifted;
    for (const Vec3& p : points)
        lifted.values.push_back({{p.z, 0, 0, 0}});
    lifted.interpolation = Interpolation::Vertex;
    g.primvars.push_back({"smooth", lifted});
    lifted.interpolation = Interpolation::Varying;
    g.primvars.push_back({"straight", lifted});
    ASSERT_TRUE(subdivide(g, t));
    const auto top = [](const NamedPrimvar& p) {
        float most = 0.0f;
        for (const Vec4& v : p.values.values)
            most = std::max(most, v.v[0]);
        return most;
    };
    EXPECT_NEAR(top(g.primvars[0]), 4.0f / 9.0f, 1e-5f);
    EXPECT_NEAR(top(g.primvars[1]), 1.0f, 1e-6f);
    EXPECT_EQ(g.primvars[1].values.values.size(), g.points.size());
}

TEST(Subdivision, KeepsFaceVaryingValuesApartWhereTheyAreApart)
{
    MeshTopology t = cube();
    t.faceVarying = TfToken("all");
    Geometry g = geometryOf(kCubePoints, t);
    g.colors.interpolation = Interpolation::FaceVarying;
    for (int corner = 0; corner < 24; ++corner)
        g.colors.values.emplace_back(corner < 4 ? 1.0f : 0.0f, 0.0f, 0.0f); // the first face is red
    ASSERT_TRUE(subdivide(g, t));
    for (std::size_t i = 0; i < g.triangles.size(); ++i) {
        const float red = g.colors.values[g.corners[3 * i]].x;
        EXPECT_EQ(red, g.faces[i] == 0 ? 1.0f : 0.0f);
    }
}

TEST(Subdivision, CarriesFacesOfManyCornersAndPointsOfManyFaces)
{
    // A disk of 100 triangles around one point, and one face of 100 corners below it.
    std::vector<Vec3> points = {{0, 0, 1}};
    VtIntArray counts;
    VtIntArray indices;
    for (int i = 0; i < 100; ++i) {
        const float a = 0.0628318531f * float(i);
        points.emplace_back(std::cos(a), std::sin(a), 0.0f);
        counts.push_back(3);
        for (const int p : {0, 1 + i, 1 + (i + 1) % 100})
            indices.push_back(p);
    }
    counts.push_back(100);
    for (int i = 0; i < 100; ++i)
        indices.push_back(100 - i);
    const MeshTopology t = topologyOf(counts, indices);
    Geometry g = geometryOf(points, t);
    ASSERT_TRUE(subdivide(g, t));
    for (const Vec3& p : g.points)
        EXPECT_TRUE(isFinite(p));
    EXPECT_EQ(std::count(g.faces.begin(), g.faces.end(), 100u) % 200, 0);
}

TEST(Subdivision, RefusesCagesThatItsSchemeDoesNotAllow)
{
    const std::vector<Vec3> points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    const std::vector<std::pair<VtIntArray, VtIntArray>> bad = {
        {{2}, {0, 1}}, {{3}, {0, 0, 1}}, {{4}, {0, 1, 0, 2}}, {{}, {}}};
    for (const auto& [counts, indices] : bad) {
        const MeshTopology t = topologyOf(counts, indices);
        Geometry g = geometryOf(points, t);
        EXPECT_FALSE(subdivide(g, t));
        EXPECT_EQ(g.points, points);
    }
    MeshTopology quads = topologyOf({4}, {0, 1, 2, 3});
    quads.scheme = SubdivisionScheme::Loop;
    Geometry g = geometryOf(points, quads);
    EXPECT_FALSE(subdivide(g, quads));
}

TEST(Subdivision, LeavesOutCreasesAndCornersThatNameNoPoint)
{
    MeshTopology t = cube();
    t.creasePairs = {0, 99, -1, 2, 3, 3};
    t.creaseWeights = {10.0f, 10.0f, 10.0f};
    t.corners = {-5, 88};
    t.cornerWeights = {10.0f, 10.0f};
    Geometry g = geometryOf(kCubePoints, t);
    ASSERT_TRUE(subdivide(g, t));
    EXPECT_NEAR(farthest(g, Vec3(1, 1, 1)), 1.5f, 1e-5f);
}

// An L of six corners: a fan from its first corner would cover the notch.
TEST(MeshFaces, CutsAFaceThatIsNotConvexAlongItsInside)
{
    const MeshTopology t = topologyOf({6}, {0, 1, 2, 3, 4, 5});
    Geometry g = geometryOf({{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}}, t);
    addFaces(g, t);
    ASSERT_EQ(g.triangles.size(), 4u);
    float area = 0.0f;
    for (const Triangle& triangle : g.triangles) {
        const Vec3 a = g.points[triangle.point[0]];
        const Vec3 n = cross(g.points[triangle.point[1]] - a, g.points[triangle.point[2]] - a);
        EXPECT_GT(n.z, 0.0f);
        area += 0.5f * n.z;
    }
    EXPECT_FLOAT_EQ(area, 3.0f);
}

} // namespace
} // namespace vesk::renderers::embree
