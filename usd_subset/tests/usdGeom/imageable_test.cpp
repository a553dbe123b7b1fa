#include "inline_stage.h"
#include "matchers.h"

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/mesh.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/primvarsAPI.h>
#include <pxr/usd/usdGeom/sphere.h>
#include <pxr/usd/usdGeom/subset.h>
#include <pxr/usd/usdGeom/xform.h>

namespace {

TEST(Imageable, TakesThePurposeOfTheNearestOpinion)
{
    const auto stage = StageOf(R"(def Xform "A" {
        uniform token purpose = "proxy"
        def Xform "B" {
            def Sphere "Own" { uniform token purpose = "render" }
            def Sphere "Inherits" {}
        }
    }
    def Sphere "Plain" {})");
    const auto purpose = [&](const char* path) {
        return UsdGeomImageable(PrimAt(stage, path)).ComputePurposeInfo();
    };
    using Info = UsdGeomImageable::PurposeInfo;
    EXPECT_TRUE(purpose("/A/B/Own") == Info(UsdGeomTokens->render, true));
    EXPECT_TRUE(purpose("/A/B/Inherits") == Info(UsdGeomTokens->proxy, true));
    EXPECT_TRUE(purpose("/Plain") == Info(UsdGeomTokens->default_, false));
}

TEST(Imageable, IsInvisibleBelowTheInvisible)
{
    const auto stage = StageOf(R"(def Xform "A" {
        token visibility = "invisible"
        def Sphere "S" {}
        def Sphere "T" {}
    })");
    const UsdGeomImageable s(PrimAt(stage, "/A/S"));
    EXPECT_EQ(UsdGeomTokens->invisible, s.ComputeVisibility());
    s.MakeVisible();
    EXPECT_EQ(UsdGeomTokens->inherited, s.ComputeVisibility());
    // What was hidden with the parent stays hidden on its own.
    EXPECT_EQ(UsdGeomTokens->invisible, UsdGeomImageable(PrimAt(stage, "/A/T")).ComputeVisibility());
    s.MakeInvisible();
    EXPECT_EQ(UsdGeomTokens->invisible, s.ComputeVisibility());
}

TEST(Imageable, FindsTheProxyOfWhatIsRendered)
{
    const auto stage = StageOf(R"(
        def Xform "R" {
            uniform token purpose = "render"
            rel proxyPrim = </P>
            def Sphere "S" {}
        }
        def Sphere "P" { uniform token purpose = "proxy" }
    )");
    UsdPrim renderPrim;
    EXPECT_EQ(PrimAt(stage, "/P"), UsdGeomImageable(PrimAt(stage, "/R/S")).ComputeProxyPrim(&renderPrim));
    EXPECT_EQ(PrimAt(stage, "/R"), renderPrim);
}

TEST(Imageable, IsFalseForOtherPrims)
{
    const auto stage = StageOf(R"(def Material "M" {}
        def "Typeless" {}
        def Scope "S" {})");
    EXPECT_FALSE(UsdGeomImageable(PrimAt(stage, "/M")));
    EXPECT_FALSE(UsdGeomImageable(PrimAt(stage, "/Typeless")));
    EXPECT_TRUE(UsdGeomImageable(PrimAt(stage, "/S")));
    EXPECT_FALSE(UsdGeomXformable(PrimAt(stage, "/S")));
    EXPECT_FALSE(UsdGeomImageable(UsdPrim()));
}

TEST(Camera, KeepsItsWorldPlaceBelowATurnedAndScaledParent)
{
    const auto stage = StageOf(R"(def Xform "P" {
        double3 xformOp:translate = (1, 2, 3)
        float3 xformOp:rotateXYZ = (10, 20, 30)
        float3 xformOp:scale = (2, 2, 2)
        uniform token[] xformOpOrder = ["xformOp:translate", "xformOp:rotateXYZ", "xformOp:scale"]
    })");
    UsdGeomCamera camera = UsdGeomCamera::Define(stage, SdfPath("/P/C"));
    GfCamera wanted;
    wanted.SetTransform(GfMatrix4d(1.0).SetTransform(GfRotation(GfVec3d(0, 1, 0), 30), GfVec3d(4, 5, 6)));
    wanted.SetFocalLength(35.0f);
    wanted.SetProjection(GfCamera::Orthographic);
    wanted.SetClippingRange(GfRange1f(0.5f, 200.0f));
    wanted.SetClippingPlanes({GfVec4f(1, 0, 0, 2)});
    camera.SetFromCamera(wanted, UsdTimeCode::Default());
    const GfCamera read = camera.GetCamera(UsdTimeCode::Default());
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_NEAR(wanted.GetTransform()[row][column], read.GetTransform()[row][column], 1e-9);
        }
    }
    EXPECT_EQ(35.0f, read.GetFocalLength());
    EXPECT_EQ(GfCamera::Orthographic, read.GetProjection());
    EXPECT_EQ(wanted.GetClippingRange(), read.GetClippingRange());
    EXPECT_EQ(wanted.GetClippingPlanes(), read.GetClippingPlanes());
    EXPECT_EQ(TfToken("xformOp:transform"), camera.MakeMatrixXform().GetOpName());
}

TEST(Mesh, SaysWhatIsWrongWithItsTopology)
{
    std::string reason;
    EXPECT_TRUE(UsdGeomMesh::ValidateTopology({0, 1, 2, 2, 1, 3}, {3, 3}, 4, &reason));
    EXPECT_FALSE(UsdGeomMesh::ValidateTopology({0, 1, 2}, {4}, 3, &reason));
    EXPECT_EQ("faceVertexCounts add up to 4, but there are 3 faceVertexIndices.", reason);
    EXPECT_FALSE(UsdGeomMesh::ValidateTopology({0, 1, 7}, {3}, 3, &reason));
    EXPECT_EQ("faceVertexIndices holds 7, but there are 3 points.", reason);
    EXPECT_TRUE(UsdGeomMesh::IsSharpnessInfinite(10.0f));
}

TEST(Metrics, FallBackToYAndCentimetres)
{
    const auto stage = UsdStage::CreateInMemory();
    EXPECT_EQ(UsdGeomTokens->y, UsdGeomGetStageUpAxis(stage));
    EXPECT_EQ(0.01, UsdGeomGetStageMetersPerUnit(stage));
    EXPECT_FALSE(UsdGeomStageHasAuthoredMetersPerUnit(stage));
    EXPECT_TRUE(UsdGeomSetStageUpAxis(stage, UsdGeomTokens->z));
    EXPECT_TRUE(UsdGeomSetStageMetersPerUnit(stage, UsdGeomLinearUnits::inches));
    EXPECT_EQ(UsdGeomTokens->z, UsdGeomGetStageUpAxis(stage));
    EXPECT_TRUE(UsdGeomLinearUnitsAre(UsdGeomGetStageMetersPerUnit(stage), UsdGeomLinearUnits::inches));
    EXPECT_FALSE(UsdGeomLinearUnitsAre(0.0, 0.01));
}

TEST(Primvars, ComeDownWhereTheyAreConstant)
{
    const auto stage = StageOf(R"(def Xform "A" {
        color3f[] primvars:displayColor = [(1, 0, 0)] ( interpolation = "constant" )
        float[] primvars:width = [1, 2] ( interpolation = "vertex" )
        def Mesh "M" { float primvars:own = 3 }
    })");
    const UsdGeomPrimvarsAPI api(PrimAt(stage, "/A/M"));
    const UsdGeomPrimvar color = api.FindPrimvarWithInheritance(TfToken("displayColor"));
    EXPECT_EQ(SdfPath("/A.primvars:displayColor"), color.GetAttr().GetPath());
    EXPECT_FALSE(api.FindPrimvarWithInheritance(TfToken("width"))) << "vertex primvars stay where they are";
    EXPECT_TRUE(api.HasPossiblyInheritedPrimvar(TfToken("own")));
    EXPECT_EQ(2u, api.FindPrimvarsWithInheritance().size());
}

TEST(Primvars, FlattenByTheirIndices)
{
    const auto stage = UsdStage::CreateInMemory();
    const UsdGeomPrimvarsAPI api(UsdGeomMesh::Define(stage, SdfPath("/M")));
    const UsdGeomPrimvar primvar =
        api.CreateIndexedPrimvar(TfToken("t"), SdfValueTypeNames->FloatArray, VtArray<float>{10, 20, 30},
                                 VtIntArray{2, 0, 0}, UsdGeomTokens->faceVarying);
    VtArray<float> flat;
    ASSERT_TRUE(primvar.ComputeFlattened(&flat));
    EXPECT_EQ((VtArray<float>{30, 10, 10}), flat);
    VtValue value;
    std::string error;
    EXPECT_FALSE(UsdGeomPrimvar::ComputeFlattened(&value, VtValue(VtArray<float>{1}), {0, 4}, &error));
    EXPECT_EQ("1 indices name no element of the 1 there are; the first is 4 at 1.", error);
}

TEST(Subset, TellsWhichFacesHaveNone)
{
    const auto stage = UsdStage::CreateInMemory();
    const UsdGeomMesh mesh = UsdGeomMesh::Define(stage, SdfPath("/M"));
    UsdGeomSubset::CreateGeomSubset(mesh, TfToken("a"), UsdGeomTokens->face, {0, 2}, TfToken("f"),
                                    UsdGeomTokens->nonOverlapping);
    const UsdGeomSubset second =
        UsdGeomSubset::CreateUniqueGeomSubset(mesh, TfToken("a"), UsdGeomTokens->face, {3, 9}, TfToken("f"));
    EXPECT_EQ(SdfPath("/M/a_1"), second.GetPath());
    const auto subsets = UsdGeomSubset::GetGeomSubsets(mesh, UsdGeomTokens->face, TfToken("f"));
    ASSERT_EQ(2u, subsets.size());
    EXPECT_EQ((VtIntArray{1, 4}), UsdGeomSubset::GetUnassignedIndices(subsets, 5));
    EXPECT_EQ(UsdGeomTokens->nonOverlapping, UsdGeomSubset::GetFamilyType(mesh, TfToken("f")));
    EXPECT_EQ(UsdGeomTokens->unrestricted, UsdGeomSubset::GetFamilyType(mesh, TfToken("other")));
}

TEST(SchemaClass, CreatesAttributesSparsely)
{
    const auto stage = UsdStage::CreateInMemory();
    const UsdGeomSphere sphere = UsdGeomSphere::Define(stage, SdfPath("/S"));
    EXPECT_FALSE(sphere.CreateRadiusAttr(VtValue(1.0), /*writeSparsely=*/true).IsAuthored());
    EXPECT_TRUE(sphere.CreateRadiusAttr(VtValue(3.0), /*writeSparsely=*/true).IsAuthored());
    double radius = 0.0;
    EXPECT_TRUE(sphere.GetRadiusAttr().Get(&radius));
    EXPECT_EQ(3.0, radius);
    EXPECT_EQ(SdfVariabilityUniform, sphere.CreatePurposeAttr().GetVariability());
    EXPECT_EQ((TfTokenVector{TfToken("extent"), TfToken("radius")}),
              UsdGeomSphere::GetSchemaAttributeNames(false));
}

} // namespace
