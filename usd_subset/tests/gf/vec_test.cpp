#include "test_helpers.h"

#include <pxr/base/gf/math.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>

#include <type_traits>
#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE
class GfVec3d; // what user code may do
PXR_NAMESPACE_CLOSE_SCOPE

namespace {

TEST(Vec, IsThePlainArrayOfItsComponents)
{
    static_assert(sizeof(GfVec2i) == 8 && sizeof(GfVec3h) == 6 && sizeof(GfVec3f) == 12 &&
                  sizeof(GfVec4d) == 32);
    static_assert(std::is_trivially_copyable_v<GfVec3d> && std::is_standard_layout_v<GfVec3d>);
    static_assert(std::is_same_v<GfVec3f::ScalarType, float> && GfVec4d::dimension == 4);
    const GfVec3d v(1, 2, 3);
    EXPECT_EQ(v.data()[2], 3);
    EXPECT_EQ(GfVec3d(v.GetArray()), v);
}

TEST(Vec, ConvertsImplicitlyOnlyWhereNothingIsLost)
{
    static_assert(std::is_convertible_v<GfVec3f, GfVec3d> && std::is_convertible_v<GfVec3h, GfVec3f>);
    static_assert(std::is_convertible_v<GfVec3i, GfVec3h> && std::is_convertible_v<GfVec2i, GfVec2d>);
    static_assert(!std::is_convertible_v<GfVec3d, GfVec3f> && std::is_constructible_v<GfVec3f, GfVec3d>);
    static_assert(!std::is_constructible_v<GfVec3i, GfVec3d> && !std::is_convertible_v<double, GfVec3d>);
    // An argument of another type converts: this is the dot product of doubles.
    const double dot = GfDot(GfVec3f(0.5f, 0, 0), GfVec3d(1e-300, 1, 1));
    EXPECT_EQ(dot, 0.5e-300);
}

TEST(Vec, ComparesValuesAcrossComponentTypes)
{
    EXPECT_TRUE(GfVec3d(1, 2, 3) == GfVec3f(1, 2, 3));
    EXPECT_TRUE(GfVec3f(1, 2, 3) == GfVec3i(1, 2, 3));
    EXPECT_TRUE(GfVec3h(0.5f) == GfVec3d(0.5));
    EXPECT_FALSE(GfVec3d(0.1, 0, 0) == GfVec3f(0.1f, 0, 0)); // 0.1f is not 0.1
    EXPECT_NE(GfVec2i(1, 2), GfVec2i(1, 3));
}

TEST(Vec, AddsScalesAndMultipliesByComponent)
{
    GfVec3d v(1, -2, 4);
    v += GfVec3d(1, 1, 1);
    EXPECT_EQ(v, GfVec3d(2, -1, 5));
    EXPECT_EQ(2 * v - v, v);
    EXPECT_EQ(-v, GfVec3d(-2, 1, -5));
    EXPECT_EQ(v / 2, GfVec3d(1, -0.5, 2.5));
    EXPECT_EQ(v * GfVec3d(1, 10, 100), 492);
    EXPECT_EQ(GfCompMult(v, GfVec3d(1, 10, 100)), GfVec3d(2, -10, 500));
    EXPECT_EQ(GfCompDiv(v, GfVec3d(1, 2, 5)), GfVec3d(2, -0.5, 1));
    EXPECT_EQ(GfVec2i(7, -7) / 2, GfVec2i(3, -3)); // integers round towards 0
    EXPECT_EQ(GfVec2i(3, 5) * 1.5, GfVec2i(4, 7)); // and scale in double
}

TEST(Vec, UnitVectorsLieAlongTheAxes)
{
    EXPECT_EQ(GfVec3d::XAxis(), GfVec3d(1, 0, 0));
    EXPECT_EQ(GfVec3d::ZAxis(), GfVec3d(0, 0, 1));
    EXPECT_EQ(GfVec4f::WAxis(), GfVec4f(0, 0, 0, 1));
    EXPECT_EQ(GfVec2d::Axis(1), GfVec2d::YAxis());
    EXPECT_EQ(GfVec2d::Axis(2), GfVec2d(0)); // there is none
}

TEST(Vec, NormalizingGivesUnitLengthAndReturnsTheOldOne)
{
    GfVec3d v(3, 0, -4);
    EXPECT_DOUBLE_EQ(v.Normalize(), 5);
    expectNear(v, GfVec3d(0.6, 0, -0.8));
    EXPECT_DOUBLE_EQ(GfGetLength(v), 1);
}

TEST(Vec, NormalizingAVectorBelowEpsilonDividesByEpsilon)
{
    EXPECT_EQ(GfVec3d(0).GetNormalized(), GfVec3d(0));
    expectNear(GfVec3d(2e-11, 0, 0).GetNormalized(), GfVec3d(0.2, 0, 0));
    expectNear(GfVec3d(3, 0, 0).GetNormalized(6), GfVec3d(0.5, 0, 0));
}

TEST(Vec, ProjectionAndComplementAddUpToTheVector)
{
    const GfVec3d v(3, 4, 5);
    EXPECT_EQ(v.GetProjection(GfVec3d::YAxis()), GfVec3d(0, 4, 0));
    EXPECT_EQ(GfGetComplement(v, GfVec3d::YAxis()), GfVec3d(3, 0, 5));
}

TEST(Vec, CrossProductFollowsTheRightHand)
{
    EXPECT_EQ(GfCross(GfVec3d::XAxis(), GfVec3d::YAxis()), GfVec3d::ZAxis());
    EXPECT_EQ(GfVec3f::ZAxis() ^ GfVec3f::YAxis(), GfVec3f(-1, 0, 0));
}

TEST(Vec, IsCloseMeasuresTheDistance)
{
    EXPECT_TRUE(GfIsClose(GfVec2d(0, 0), GfVec2d(3, 4), 5));
    EXPECT_FALSE(GfIsClose(GfVec2d(0, 0), GfVec2d(3, 4), 4.999));
}

TEST(Vec, OrthogonalizingGivesARightAngledUnitBasis)
{
    GfVec3d x(1, 0.1, 0), y(0.2, 2, 0.1), z(0, 0.3, 0.5);
    ASSERT_TRUE(GfOrthogonalizeBasis(&x, &y, &z, true));
    for (const GfVec3d& v : {x, y, z}) {
        EXPECT_NEAR(v.GetLength(), 1, 1e-9);
    }
    EXPECT_NEAR(x * y, 0, 1e-5);
    EXPECT_NEAR(x * z, 0, 1e-5);
    EXPECT_NEAR(y * z, 0, 1e-5);
}

TEST(Vec, OrthogonalizingParallelVectorsFailsAndLeavesThem)
{
    GfVec3d x(2, 0, 0), y(3, 0, 0), z(0, 0, 1);
    EXPECT_FALSE(GfVec3d::OrthogonalizeBasis(&x, &y, &z, false));
    EXPECT_EQ(x, GfVec3d(2, 0, 0));
    EXPECT_EQ(y, GfVec3d(3, 0, 0));
}

TEST(Vec, FrameIsOrthonormalAndShrinksWithAShortVector)
{
    GfVec3d v1, v2;
    const GfVec3d v(1, 2, 3);
    v.BuildOrthonormalFrame(&v1, &v2);
    EXPECT_NEAR(v * v1, 0, 1e-12);
    EXPECT_NEAR(v * v2, 0, 1e-12);
    EXPECT_NEAR(v1 * v2, 0, 1e-12);
    EXPECT_NEAR(v1.GetLength(), 1, 1e-12);
    GfBuildOrthonormalFrame(GfVec3d(0, 0, 0.25), &v1, &v2, 1);
    EXPECT_NEAR(v1.GetLength(), 0.25, 1e-12);
}

TEST(Vec, SlerpWalksAlongTheArc)
{
    const double third = M_PI / 2 / 3;
    expectNear(GfSlerp(1 / 3.0, GfVec3d::XAxis(), GfVec3d::YAxis()),
               GfVec3d(std::cos(third), std::sin(third), 0));
    // Opposite ends: half way is somewhere at a right angle.
    const GfVec3d half = GfSlerp(0.5, GfVec3d::XAxis(), -GfVec3d::XAxis());
    EXPECT_NEAR(half.GetLength(), 1, 1e-9);
    EXPECT_NEAR(half[0], 0, 1e-9);
}

TEST(Vec, EqualVectorsHashAlike)
{
    EXPECT_EQ(hash_value(GfVec3d(0.0, 1, 2)), hash_value(GfVec3d(-0.0, 1, 2)));
    std::unordered_set<size_t> hashes;
    for (int x = 0; x != 20; ++x) {
        for (int y = 0; y != 20; ++y) {
            hashes.insert(hash_value(GfVec2i(x, y)));
        }
    }
    EXPECT_GT(hashes.size(), 390u);
}

TEST(Math, ModTakesTheSignOfTheDivisor)
{
    EXPECT_DOUBLE_EQ(GfMod(7.5, 2.0), 1.5);
    EXPECT_DOUBLE_EQ(GfMod(-0.5, 2.0), 1.5);
    EXPECT_DOUBLE_EQ(GfMod(-4.0, 2.0), 0.0);
}

TEST(Math, SmoothStepMeetsItsEndsAndIsSymmetric)
{
    EXPECT_EQ(GfSmoothStep(1, 3, 0.5), 0);
    EXPECT_EQ(GfSmoothStep(1, 3, 3), 1);
    EXPECT_DOUBLE_EQ(GfSmoothStep(1, 3, 2), 0.5);
    EXPECT_NEAR(GfSmoothStep(1, 3, 1.2) + GfSmoothStep(1, 3, 2.8), 1, 1e-12);
    EXPECT_DOUBLE_EQ(GfSmoothRamp(0, 1, 0.5, 0.2, 0.2), 0.5);
}

TEST(Math, ClampMinMaxAndSignTreatTheEdges)
{
    EXPECT_EQ(GfClamp(-1.0, 0.0, 2.0), 0.0);
    EXPECT_EQ(GfClamp(3.0f, 0.0f, 2.0f), 2.0f);
    EXPECT_TRUE(std::isnan(GfClamp(std::nan(""), 0.0, 1.0)));
    EXPECT_EQ(GfMin(3, 1, 2), 1);
    EXPECT_EQ(GfMax(3, 1, 2, 5), 5);
    EXPECT_EQ(GfSgn(-0.5), -1);
    EXPECT_EQ(GfSgn(std::nan("")), 0);
    EXPECT_EQ(GfRound(2.5), 2.0); // to even
    EXPECT_DOUBLE_EQ(GfRadiansToDegrees(M_PI), 180);
    EXPECT_DOUBLE_EQ(GfLerp(0.25, 10.0, 20.0), 12.5);
}

} // namespace
