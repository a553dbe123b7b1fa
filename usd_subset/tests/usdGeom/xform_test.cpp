#include "inline_stage.h"
#include "matchers.h"

#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/usdGeom/xform.h>
#include <pxr/usd/usdGeom/xformCache.h>
#include <pxr/usd/usdGeom/xformCommonAPI.h>

namespace {

GfMatrix4d Local(const UsdPrim& prim, UsdTimeCode time = UsdTimeCode::Default())
{
    GfMatrix4d matrix(0.0);
    bool resets = false;
    EXPECT_TRUE(UsdGeomXformable(prim).GetLocalTransformation(&matrix, &resets, time));
    return matrix;
}

TEST(Xformable, AppliesTheLastOpOfTheOrderFirst)
{
    const auto stage = StageOf(R"(def Xform "A" {
        double3 xformOp:translate = (10, 0, 0)
        float3 xformOp:translate:pivot = (1, 0, 0)
        float xformOp:rotateZ = 90
        uniform token[] xformOpOrder = ["xformOp:translate", "xformOp:translate:pivot", "xformOp:rotateZ",
                                        "!invert!xformOp:translate:pivot"]
    })");
    // (2,0,0) less the pivot is (1,0,0), turned (0,1,0), with the pivot (1,1,0), moved (11,1,0).
    ExpectNear(Local(PrimAt(stage, "/A")).Transform(GfVec3d(2, 0, 0)), GfVec3d(11, 1, 0));
}

TEST(Xformable, RotatesAboutThreeAxesAsThreeSingleRotationsDo)
{
    for (const std::string order : {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"}) {
        const auto stage =
            StageOf("def Xform \"A\" { float3 xformOp:rotate" + order +
                    " = (10, 20, 30); uniform token[] xformOpOrder = [\"xformOp:rotate" + order + "\"] }");
        GfMatrix4d expected(1.0);
        for (const char axis : order) {
            GfVec3d direction(0.0);
            direction[axis - 'X'] = 1.0;
            expected *= GfMatrix4d(1.0).SetRotate(GfRotation(direction, 10.0 * (axis - 'X' + 1)));
        }
        const GfVec3d point(1, 2, 3);
        ExpectNear(Local(PrimAt(stage, "/A")).Transform(point), expected.Transform(point), 1e-9);
    }
}

TEST(Xformable, TakesEveryKindOfOp)
{
    const auto stage = StageOf(R"(def Xform "A" {
        quatf xformOp:orient = (0.70710678, 0, 0, 0.70710678)
        half3 xformOp:scale = (2, 3, 4)
        matrix4d xformOp:transform = ((1,0,0,0), (0,1,0,0), (0,0,1,0), (0,0,5,1))
        uniform token[] xformOpOrder = ["xformOp:orient", "xformOp:scale", "xformOp:transform"]
    })");
    // (1,0,0) moved to (1,0,5), scaled to (2,0,20), turned a quarter about Z to (0,2,20).
    ExpectNear(Local(PrimAt(stage, "/A")).Transform(GfVec3d(1, 0, 0)), GfVec3d(0, 2, 20), 1e-5);
}

TEST(Xformable, LeavesOutWhatThePrimDoesNotHave)
{
    const auto stage = StageOf(R"(def Xform "A" {
        double3 xformOp:translate = (1, 2, 3)
        uniform token[] xformOpOrder = ["xformOp:translate", "xformOp:rotateX"]
    })");
    ExpectNear(Local(PrimAt(stage, "/A")).ExtractTranslation(), GfVec3d(1, 2, 3));
}

TEST(Xformable, ResetsTheStack)
{
    const auto stage = StageOf(R"(def Xform "A" {
        double3 xformOp:translate = (10, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
        def Xform "B" {
            double3 xformOp:translate = (0, 1, 0)
            uniform token[] xformOpOrder = ["!resetXformStack!", "xformOp:translate"]
        }
    })");
    const UsdGeomXformable b(PrimAt(stage, "/A/B"));
    ExpectNear(b.ComputeLocalToWorldTransform(UsdTimeCode::Default()).ExtractTranslation(), GfVec3d(0, 1, 0));
    EXPECT_TRUE(b.GetResetXformStack());
    EXPECT_TRUE(b.SetResetXformStack(false));
    ExpectNear(b.ComputeLocalToWorldTransform(UsdTimeCode::Default()).ExtractTranslation(),
               GfVec3d(10, 1, 0));
}

TEST(Xformable, AddsOpsOnce)
{
    const auto stage = UsdStage::CreateInMemory();
    const UsdGeomXform a = UsdGeomXform::Define(stage, SdfPath("/A"));
    EXPECT_TRUE(a.AddTranslateOp(UsdGeomXformOp::PrecisionDouble, TfToken("pivot")));
    TfErrorMark mark;
    EXPECT_FALSE(a.AddTranslateOp(UsdGeomXformOp::PrecisionDouble, TfToken("pivot")));
    EXPECT_FALSE(mark.IsClean());
    mark.Clear();
    EXPECT_TRUE(a.AddTranslateOp(UsdGeomXformOp::PrecisionDouble, TfToken("pivot"), /*isInverseOp=*/true));
    bool resets = true;
    const auto ops = a.GetOrderedXformOps(&resets);
    ASSERT_EQ(2u, ops.size());
    EXPECT_FALSE(resets);
    EXPECT_EQ(TfToken("!invert!xformOp:translate:pivot"), ops[1].GetOpName());
    EXPECT_TRUE(ops[1].HasSuffix(TfToken("pivot")));
}

TEST(XformCache, FollowsTimeThroughTheHierarchy)
{
    const auto stage = StageOf(R"(def Xform "A" {
        double3 xformOp:translate.timeSamples = { 0: (0, 0, 0), 10: (10, 0, 0) }
        uniform token[] xformOpOrder = ["xformOp:translate"]
        def Xform "B" {
            double3 xformOp:translate = (0, 1, 0)
            uniform token[] xformOpOrder = ["xformOp:translate"]
        }
    })");
    UsdGeomXformCache cache(UsdTimeCode(0));
    const UsdPrim b = PrimAt(stage, "/A/B");
    ExpectNear(cache.GetLocalToWorldTransform(b).ExtractTranslation(), GfVec3d(0, 1, 0));
    cache.SetTime(UsdTimeCode(5));
    ExpectNear(cache.GetLocalToWorldTransform(b).ExtractTranslation(), GfVec3d(5, 1, 0));
    EXPECT_TRUE(cache.TransformMightBeTimeVarying(PrimAt(stage, "/A")));
    EXPECT_FALSE(cache.TransformMightBeTimeVarying(b));
}

TEST(XformCommonAPI, WritesAndReadsTheFiveVectors)
{
    const auto stage = UsdStage::CreateInMemory();
    const UsdGeomXformCommonAPI api(UsdGeomXform::Define(stage, SdfPath("/A")));
    using Api = UsdGeomXformCommonAPI;
    ASSERT_TRUE(api.SetXformVectors(GfVec3d(1, 2, 3), GfVec3f(0, 0, 90), GfVec3f(2), GfVec3f(1, 0, 0),
                                    Api::RotationOrderZXY, UsdTimeCode::Default()));
    GfVec3d translation;
    GfVec3f rotation, scale, pivot;
    Api::RotationOrder order = Api::RotationOrderXYZ;
    ASSERT_TRUE(api.GetXformVectors(&translation, &rotation, &scale, &pivot, &order, UsdTimeCode::Default()));
    EXPECT_EQ(GfVec3d(1, 2, 3), translation);
    EXPECT_EQ(GfVec3f(0, 0, 90), rotation);
    EXPECT_EQ(GfVec3f(2), scale);
    EXPECT_EQ(GfVec3f(1, 0, 0), pivot);
    EXPECT_EQ(Api::RotationOrderZXY, order);
    // About the pivot (1,0,0): (2,0,0) is (1,0,0) from it, scaled (2,0,0), turned (0,2,0), back and moved.
    ExpectNear(Local(PrimAt(stage, "/A")).Transform(GfVec3d(2, 0, 0)), GfVec3d(2, 4, 3));
}

} // namespace
