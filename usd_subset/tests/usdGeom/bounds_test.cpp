#include "inline_stage.h"
#include "matchers.h"

#include <pxr/base/gf/rotation.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/capsule_1.h>
#include <pxr/usd/usdGeom/cone.h>
#include <pxr/usd/usdGeom/points.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

GfRange3d WorldBox(const UsdStageRefPtr& stage, const char* path = "/",
                   UsdTimeCode time = UsdTimeCode::Default())
{
    UsdGeomBBoxCache cache(time, {UsdGeomTokens->default_, UsdGeomTokens->render});
    return cache.ComputeWorldBound(PrimAt(stage, path)).ComputeAlignedRange();
}

TEST(Extent, OfATurnedConeIsTheBoxAroundItsTurnedBox)
{
    VtVec3fArray extent;
    ASSERT_TRUE(UsdGeomCone::ComputeExtent(4.0, 1.0, UsdGeomTokens->x, &extent));
    EXPECT_EQ(GfVec3f(2, 1, 1), extent[1]);
    const GfMatrix4d turned = GfMatrix4d(1.0).SetRotate(GfRotation(GfVec3d::ZAxis(), 45));
    ASSERT_TRUE(UsdGeomCone::ComputeExtent(4.0, 1.0, UsdGeomTokens->x, turned, &extent));
    const double side = (2.0 + 1.0) * std::sqrt(0.5);
    ExpectNear(GfVec3d(extent[1]), GfVec3d(side, side, 1.0));
    EXPECT_FALSE(UsdGeomCone::ComputeExtent(4.0, 1.0, TfToken("W"), &extent));
}

TEST(Extent, OfATaperedCapsuleTakesTheLargerRadiusForBothCaps)
{
    VtVec3fArray extent;
    ASSERT_TRUE(UsdGeomCapsule_1::ComputeExtent(2.0, 0.5, 3.0, UsdGeomTokens->y, &extent));
    EXPECT_EQ(GfVec3f(-3, -4, -3), extent[0]);
    EXPECT_EQ(GfVec3f(3, 4, 3), extent[1]);
}

TEST(Extent, OfPointsIncludesTheirWidths)
{
    VtVec3fArray extent;
    ASSERT_TRUE(UsdGeomPoints::ComputeExtent({GfVec3f(0), GfVec3f(4, 0, 0)}, {2.0f, 6.0f}, &extent));
    EXPECT_EQ(GfVec3f(-1, -3, -3), extent[0]);
    EXPECT_EQ(GfVec3f(7, 3, 3), extent[1]);
    EXPECT_FALSE(UsdGeomPoints::ComputeExtent({GfVec3f(0)}, {1.0f, 2.0f}, &extent));
}

/// Points whose extremes lie anywhere.
VtVec3fArray ManyPoints(size_t count)
{
    VtVec3fArray points(count);
    std::mt19937 random(5);
    std::uniform_real_distribution<float> within(-100.0f, 100.0f);
    for (GfVec3f& point : points) {
        point.Set(within(random), within(random), within(random));
    }
    return points;
}

TEST(Extent, OfManyPointsIsThatOfEachOnItsOwn)
{
    for (const size_t count : {size_t(1), size_t(3), size_t(4), size_t(4095), size_t(10001)}) {
        const VtVec3fArray points = ManyPoints(count);
        GfVec3f min = points[0];
        GfVec3f max = points[0];
        for (const GfVec3f& point : points) {
            for (size_t i = 0; i < 3; ++i) {
                min[i] = std::min(min[i], point[i]);
                max[i] = std::max(max[i], point[i]);
            }
        }
        VtVec3fArray extent;
        ASSERT_TRUE(UsdGeomPointBased::ComputeExtent(points, &extent));
        EXPECT_EQ(min, extent[0]) << count << " points";
        EXPECT_EQ(max, extent[1]) << count << " points";
    }
}

TEST(Extent, OfManyPointsPassesOverWhatIsNotANumberWhereverItIs)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const size_t where : {size_t(0), size_t(2), size_t(5000), size_t(10000)}) {
        VtVec3fArray points(10001, GfVec3f(1, 2, 3));
        points[7000] = GfVec3f(-1, 5, 0);
        points[where] = GfVec3f(9, nan, 9);
        VtVec3fArray extent;
        ASSERT_TRUE(UsdGeomPointBased::ComputeExtent(points, &extent));
        EXPECT_EQ(GfVec3f(-1, 2, 0), extent[0]) << "at " << where;
        EXPECT_EQ(GfVec3f(9, 5, 9), extent[1]) << "at " << where;
    }
}

TEST(Extent, TakesPointsThatAreNotFiniteAsTheyCompare)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    VtVec3fArray extent;
    ASSERT_TRUE(UsdGeomPointBased::ComputeExtent(
        {GfVec3f(1, 2, 3), GfVec3f(nan, 0, 0), GfVec3f(0, inf, 0), GfVec3f(-1, 0, 0)}, &extent));
    EXPECT_EQ(GfVec3f(-1, 0, 0), extent[0]);
    EXPECT_EQ(GfVec3f(1, inf, 3), extent[1]);
}

TEST(BBoxCache, JoinsChildrenInWorldSpace)
{
    const auto stage = StageOf(R"(def Xform "A" {
        float xformOp:rotateZ = 45
        uniform token[] xformOpOrder = ["xformOp:rotateZ"]
        def Cube "C" { double size = 2 }
    })");
    const double diagonal = std::sqrt(2.0);
    ExpectBox(WorldBox(stage), GfVec3d(-diagonal, -diagonal, -1), GfVec3d(diagonal, diagonal, 1));
}

TEST(BBoxCache, LeavesOutTheHiddenAndOtherPurposes)
{
    const auto stage = StageOf(R"(
        def Sphere "Seen" {}
        def Cube "Hidden" { double size = 50; token visibility = "invisible" }
        def Xform "Guides" {
            uniform token purpose = "guide"
            def Cube "G" { double size = 80 }
        }
        def Cube "Proxy" { double size = 90; uniform token purpose = "proxy" }
    )");
    ExpectBox(WorldBox(stage), GfVec3d(-1), GfVec3d(1));
    // Asked for itself, a hidden prim answers.
    ExpectBox(WorldBox(stage, "/Hidden"), GfVec3d(-25), GfVec3d(25));
    EXPECT_TRUE(WorldBox(stage, "/Guides").IsEmpty());
    UsdGeomBBoxCache all(UsdTimeCode::Default(), UsdGeomImageable::GetOrderedPurposeTokens(), false,
                         /*ignoreVisibility=*/true);
    ExpectBox(all.ComputeWorldBound(stage->GetPseudoRoot()).ComputeAlignedRange(), GfVec3d(-45), GfVec3d(45));
}

TEST(BBoxCache, PrefersAuthoredExtents)
{
    const auto stage = StageOf(R"(
        def Mesh "Told" { float3[] extent = [(0, 0, 0), (1, 2, 3)]; point3f[] points = [(9, 9, 9)] }
    )");
    ExpectBox(WorldBox(stage), GfVec3d(0), GfVec3d(1, 2, 3));
    const auto turned = StageOf("def Mesh \"M\" { float3[] extent = [(5, 5, 5), (4, 4, 4)] }");
    EXPECT_TRUE(WorldBox(turned).IsEmpty()) << "a box whose corners are swapped is empty";
}

TEST(BBoxCache, KeepsExtentsThatAreNotFinite)
{
    const auto stage = StageOf("def Mesh \"M\" { float3[] extent = [(-inf, 0, 0), (1, 1, 1)] }");
    UsdGeomBBoxCache cache(UsdTimeCode::Default(), {UsdGeomTokens->default_});
    const GfRange3d own = cache.ComputeUntransformedBound(PrimAt(stage, "/M")).GetRange();
    EXPECT_TRUE(std::isinf(own.GetMin()[0]));
    EXPECT_EQ(GfVec3d(1), own.GetMax());
}

TEST(BBoxCache, SpansEverythingAroundASkeletonWithoutJoints)
{
    const auto stage = StageOf(R"(def SkelRoot "R" { def Skeleton "S" {} })");
    const double farthest = std::numeric_limits<float>::max();
    ExpectBox(WorldBox(stage), GfVec3d(-farthest), GfVec3d(farthest));
    EXPECT_TRUE(WorldBox(stage, "/R/S").IsEmpty());
}

TEST(BBoxCache, UsesHintsOfModelsOnlyWhereItIsToldTo)
{
    const auto stage = StageOf(R"(def Xform "M" (kind = "component") {
        float3[] extentsHint = [(-7, -7, -7), (7, 7, 7)]
        def Sphere "S" {}
    })");
    UsdGeomBBoxCache hints(UsdTimeCode::Default(), {UsdGeomTokens->default_}, /*useExtentsHint=*/true);
    ExpectBox(hints.ComputeWorldBound(PrimAt(stage, "/M")).ComputeAlignedRange(), GfVec3d(-7), GfVec3d(7));
    ExpectBox(WorldBox(stage, "/M"), GfVec3d(-1), GfVec3d(1));
}

TEST(BBoxCache, AnswersAtEachTimeLikeAFreshOne)
{
    const auto stage = StageOf(R"(
        def Sphere "Grows" { double radius.timeSamples = { 1: 1, 11: 11 } }
        def Cube "Blinks" {
            double size = 60
            token visibility.timeSamples = { 1: "invisible", 6: "inherited" }
        }
        def Xform "Moves" {
            double3 xformOp:translate.timeSamples = { 1: (0, 0, 0), 11: (100, 0, 0) }
            uniform token[] xformOpOrder = ["xformOp:translate"]
            def Sphere "S" {}
        }
    )");
    UsdGeomBBoxCache cache(UsdTimeCode(1), {UsdGeomTokens->default_, UsdGeomTokens->render});
    for (const double time : {1.0, 3.0, 6.0, 11.0, 2.0}) {
        cache.SetTime(UsdTimeCode(time));
        const GfRange3d fresh = WorldBox(stage, "/", UsdTimeCode(time));
        ExpectBox(cache.ComputeWorldBound(stage->GetPseudoRoot()).ComputeAlignedRange(), fresh.GetMin(),
                  fresh.GetMax());
    }
    // At 11: the cube of 60 reaches -30 and the moved sphere 101.
    ExpectBox(WorldBox(stage, "/", UsdTimeCode(11)), GfVec3d(-30), GfVec3d(101, 30, 30));
}

TEST(BBoxCache, GivesBoundsInOtherSpaces)
{
    const auto stage = StageOf(R"(def Xform "A" {
        double3 xformOp:translate = (10, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
        def Sphere "S" {
            double3 xformOp:translate = (0, 5, 0)
            uniform token[] xformOpOrder = ["xformOp:translate"]
        }
    })");
    UsdGeomBBoxCache cache(UsdTimeCode::Default(), {UsdGeomTokens->default_});
    const UsdPrim s = PrimAt(stage, "/A/S");
    ExpectBox(cache.ComputeUntransformedBound(s).ComputeAlignedRange(), GfVec3d(-1), GfVec3d(1));
    ExpectBox(cache.ComputeLocalBound(s).ComputeAlignedRange(), GfVec3d(-1, 4, -1), GfVec3d(1, 6, 1));
    ExpectBox(cache.ComputeRelativeBound(s, PrimAt(stage, "/A")).ComputeAlignedRange(), GfVec3d(-1, 4, -1),
              GfVec3d(1, 6, 1));
    ExpectBox(cache.ComputeWorldBound(s).ComputeAlignedRange(), GfVec3d(9, 4, -1), GfVec3d(11, 6, 1));
    const GfBBox3d moved = cache.ComputeWorldBoundWithOverrides(
        PrimAt(stage, "/A"), {}, GfMatrix4d(1.0),
        {{SdfPath("/A/S"), GfMatrix4d(1.0).SetTranslate(GfVec3d(0, 0, 9))}});
    ExpectBox(moved.ComputeAlignedRange(), GfVec3d(-1, -1, 8), GfVec3d(1, 1, 10));
}

constexpr char kInstancer[] = R"(def PointInstancer "I" (REPLACE) {
    int[] protoIndices = [0, 1, 0]
    point3f[] positions = [(0, 0, 0), (10, 0, 0), (0, 20, 0)]
    float3[] scales = [(1, 1, 1), (2, 2, 2), (1, 1, 1)]
    rel prototypes = [</I/Ball>, </I/Box>]
    def Sphere "Ball" {}
    def Cube "Box" { double size = 4 }
})";

std::string Instancer(const std::string& metadata)
{
    std::string text = kInstancer;
    return text.replace(text.find("(REPLACE)"), 9, metadata);
}

TEST(BBoxCache, PlacesInstancesByTheirPrototypes)
{
    const auto stage = StageOf(Instancer(""));
    // The box of 4 doubled reaches 4 around x = 10; the balls 1 around (0,0,0) and (0,20,0).
    ExpectBox(WorldBox(stage), GfVec3d(-1, -4, -4), GfVec3d(14, 21, 4));
    UsdGeomBBoxCache cache(UsdTimeCode::Default(), {UsdGeomTokens->default_});
    const UsdGeomPointInstancer instancer(PrimAt(stage, "/I"));
    ExpectBox(cache.ComputePointInstanceWorldBound(instancer, 1).ComputeAlignedRange(), GfVec3d(6, -4, -4),
              GfVec3d(14, 4, 4));
    EXPECT_TRUE(cache.ComputePointInstanceWorldBound(instancer, 7).GetRange().IsEmpty());
}

TEST(BBoxCache, LeavesOutInactiveInstances)
{
    const auto stage = StageOf(Instancer("(inactiveIds = [1])"));
    ExpectBox(WorldBox(stage), GfVec3d(-1), GfVec3d(1, 21, 1));
    const UsdGeomPointInstancer instancer(PrimAt(stage, "/I"));
    EXPECT_EQ((std::vector<bool>{true, false, true}), instancer.ComputeMaskAtTime(UsdTimeCode::Default()));
    VtArray<GfMatrix4d> matrices;
    ASSERT_TRUE(
        instancer.ComputeInstanceTransformsAtTime(&matrices, UsdTimeCode::Default(), UsdTimeCode::Default()));
    ASSERT_EQ(2u, matrices.size());
    ExpectNear(matrices[1].ExtractTranslation(), GfVec3d(0, 20, 0));
}

TEST(BBoxCache, EndsWhereAnInstancerHoldsItself)
{
    const auto stage = StageOf(R"(def Xform "W" {
        def PointInstancer "I" {
        int[] protoIndices = [0]
        point3f[] positions = [(0, 0, 0)]
        rel prototypes = </W>
    }
        def Sphere "S" {}
    })");
    ExpectBox(WorldBox(stage), GfVec3d(-1), GfVec3d(1));
}

TEST(BBoxCache, RefusesInstancersWhoseArraysDoNotFit)
{
    const auto stage = StageOf(R"(def PointInstancer "I" {
        int[] protoIndices = [0, 5]
        point3f[] positions = [(0, 0, 0), (1, 0, 0)]
        rel prototypes = </I/S>
        def Sphere "S" {}
    })");
    EXPECT_TRUE(WorldBox(stage).IsEmpty());
}

} // namespace
