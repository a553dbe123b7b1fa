#include "scene.h"

#include <pxr/base/vt/array.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/primvarsAPI.h>
#include <pxr/usd/usdGeom/tokens.h>
#include <pxr/usd/usdGeom/xformCache.h>
#include <pxr/usd/usdGeom/xformable.h>

namespace conformance {
namespace {

GfVec3d Moved(const Scene& scene, const char* prim, const GfVec3d& point,
              UsdTimeCode time = UsdTimeCode::Default())
{
    return UsdGeomXformCache(time).GetLocalToWorldTransform(scene.GetPrim(prim)).Transform(point);
}

void ExpectPoint(const GfVec3d& expected, const GfVec3d& actual)
{
    for (int i = 0; i != 3; ++i) {
        EXPECT_NEAR(expected[i], actual[i], 1e-6) << "axis " << i;
    }
}

TEST(Transforms, ApplyTheLastOpFirst)
{
    const Scene scene(R"(
        def Xform "P" {
            double3 xformOp:translate = (10, 0, 0)
            float3 xformOp:scale = (2, 2, 2)
            uniform token[] xformOpOrder = ["xformOp:translate", "xformOp:scale"]
        })");
    ExpectPoint({12, 0, 0}, Moved(scene, "/P", {1, 0, 0}));
}

TEST(Transforms, UndoOpsThatAreInverted)
{
    const Scene scene(R"(
        def Xform "P" {
            double3 xformOp:translate:pivot = (1, 0, 0)
            float xformOp:rotateZ = 90
            uniform token[] xformOpOrder = ["xformOp:translate:pivot", "xformOp:rotateZ", "!invert!xformOp:translate:pivot"]
        })");
    ExpectPoint({1, 0, 0}, Moved(scene, "/P", {1, 0, 0}));
    ExpectPoint({1, 1, 0}, Moved(scene, "/P", {2, 0, 0}));
}

TEST(Transforms, RotateAboutTheirAxesInTheOrderOfTheName)
{
    const Scene scene(R"(
        def Xform "P" { float3 xformOp:rotateXYZ = (90, 0, 90)
                        uniform token[] xformOpOrder = ["xformOp:rotateXYZ"] }
        def Xform "Q" { float3 xformOp:rotateZYX = (90, 0, 90)
                        uniform token[] xformOpOrder = ["xformOp:rotateZYX"] }
        def Xform "O" { quatf xformOp:orient = (0.70710678, 0, 0, 0.70710678)
                        uniform token[] xformOpOrder = ["xformOp:orient"] })");
    ExpectPoint({0, 0, 1}, Moved(scene, "/P", {0, 1, 0}));  // about X first
    ExpectPoint({-1, 0, 0}, Moved(scene, "/Q", {0, 1, 0})); // about Z first
    ExpectPoint({0, 1, 0}, Moved(scene, "/O", {1, 0, 0}));
}

TEST(Transforms, StartAnewWhereTheStackIsReset)
{
    const Scene scene(R"(
        def Xform "P" {
            double3 xformOp:translate = (10, 0, 0)
            uniform token[] xformOpOrder = ["xformOp:translate"]
            def Xform "A" { double3 xformOp:translate = (0, 1, 0)
                            uniform token[] xformOpOrder = ["xformOp:translate"] }
            def Xform "B" { double3 xformOp:translate = (0, 1, 0)
                            uniform token[] xformOpOrder = ["!resetXformStack!", "xformOp:translate"] }
        })");
    ExpectPoint({10, 1, 0}, Moved(scene, "/P/A", {0, 0, 0}));
    ExpectPoint({0, 1, 0}, Moved(scene, "/P/B", {0, 0, 0}));
}

TEST(Transforms, AreAnimated)
{
    const Scene scene(R"(
        def Xform "P" { double3 xformOp:translate.timeSamples = { 0: (0, 0, 0), 10: (10, 0, 0) }
                        uniform token[] xformOpOrder = ["xformOp:translate"] })");
    ExpectPoint({4, 0, 0}, Moved(scene, "/P", {0, 0, 0}, 4.0));
    EXPECT_TRUE(UsdGeomXformable(scene.GetPrim("/P")).TransformMightBeTimeVarying());
}

TEST(Transforms, WithoutAnOrderAreNone)
{
    const Scene scene("def Xform \"P\" { double3 xformOp:translate = (1, 2, 3) }");
    ExpectPoint({0, 0, 0}, Moved(scene, "/P", {0, 0, 0}));
}

TEST(Visibility, IsHandedDownAndCannotBeUndone)
{
    const Scene scene(R"(
        def Xform "P" { token visibility = "invisible"
            def Sphere "S" { token visibility = "inherited" } }
        def Xform "Q" { token visibility.timeSamples = { 0: "inherited", 5: "invisible" }
            def Sphere "S" {} })");
    EXPECT_EQ("invisible", UsdGeomImageable(scene.GetPrim("/P/S")).ComputeVisibility());
    EXPECT_EQ("inherited", UsdGeomImageable(scene.GetPrim("/Q/S")).ComputeVisibility(4.0));
    EXPECT_EQ("invisible", UsdGeomImageable(scene.GetPrim("/Q/S")).ComputeVisibility(5.0));
}

TEST(Purposes, AreHandedDownFromTheNearestThatSaysOne)
{
    const Scene scene(R"(
        def Xform "P" { uniform token purpose = "proxy"
            def Sphere "A" {}
            def Sphere "B" { uniform token purpose = "render" }
            def "Untyped" { def Sphere "C" {} } }
        def Sphere "N" {})");
    const auto purpose = [&scene](const char* path) {
        return UsdGeomImageable(scene.GetPrim(path)).ComputePurpose().GetString();
    };
    EXPECT_EQ("proxy", purpose("/P/A"));
    EXPECT_EQ("render", purpose("/P/B"));
    EXPECT_EQ("proxy", purpose("/P/Untyped/C"));
    EXPECT_EQ("default", purpose("/N"));
}

TEST(Primvars, ThatAreConstantAreInherited)
{
    const Scene scene(R"(
        def Xform "P" { float[] primvars:a = [1] ( interpolation = "constant" )
                        float[] primvars:b = [2] ( interpolation = "vertex" )
            def Mesh "M" {} })");
    const UsdGeomPrimvarsAPI primvars(scene.GetPrim("/P/M"));
    EXPECT_TRUE(primvars.FindPrimvarWithInheritance(TfToken("a")));
    EXPECT_FALSE(primvars.FindPrimvarWithInheritance(TfToken("b")));
}

TEST(Primvars, AreFlattenedByTheirIndices)
{
    const Scene scene(R"(
        def Mesh "M" { float[] primvars:a = [10, 20, 30] ( interpolation = "vertex" )
                       int[] primvars:a:indices = [2, 0, 0] })");
    const UsdGeomPrimvar primvar = UsdGeomPrimvarsAPI(scene.GetPrim("/M")).GetPrimvar(TfToken("a"));
    VtFloatArray flat;
    EXPECT_TRUE(primvar.ComputeFlattened(&flat));
    EXPECT_EQ((VtFloatArray{30, 10, 10}), flat);
    EXPECT_TRUE(primvar.IsIndexed());
}

} // namespace
} // namespace conformance
