#include "../usdGeom/inline_stage.h"
#include "../usdGeom/matchers.h"

#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdLux/blackbody.h>
#include <pxr/usd/usdLux/distantLight.h>
#include <pxr/usd/usdLux/domeLight.h>
#include <pxr/usd/usdLux/rectLight.h>
#include <pxr/usd/usdLux/shapingAPI.h>
#include <pxr/usd/usdLux/sphereLight.h>

namespace {

GfRange3d Box(const UsdStageRefPtr& stage, const char* path)
{
    UsdGeomBBoxCache cache(UsdTimeCode::Default(), {UsdGeomTokens->default_});
    return cache.ComputeWorldBound(PrimAt(stage, path)).ComputeAlignedRange();
}

TEST(Lights, HaveTheExtentOfTheirShape)
{
    const auto stage = StageOf(R"(
        def DiskLight "Disk" { float inputs:radius = 2 }
        def RectLight "Rect" { float inputs:width = 4; float inputs:height = 6 }
        def SphereLight "Sphere" {}
        def CylinderLight "Cylinder" { float inputs:length = 8; float inputs:radius = 1 }
        def DomeLight "Dome" {}
        def DistantLight "Distant" {}
    )");
    ExpectBox(Box(stage, "/Disk"), GfVec3d(-2, -2, 0), GfVec3d(2, 2, 0));
    ExpectBox(Box(stage, "/Rect"), GfVec3d(-2, -3, 0), GfVec3d(2, 3, 0));
    ExpectBox(Box(stage, "/Sphere"), GfVec3d(-0.5), GfVec3d(0.5));
    ExpectBox(Box(stage, "/Cylinder"), GfVec3d(-4, -1, -1), GfVec3d(4, 1, 1));
    EXPECT_TRUE(Box(stage, "/Dome").IsEmpty());
    EXPECT_TRUE(Box(stage, "/Distant").IsEmpty());
}

TEST(Lights, AnswerWithTheirOwnFallbacks)
{
    const auto stage = UsdStage::CreateInMemory();
    const auto intensity = [](const auto& light) {
        float value = 0.0f;
        EXPECT_TRUE(light.GetIntensityAttr().Get(&value));
        return value;
    };
    EXPECT_EQ(1.0f, intensity(UsdLuxSphereLight::Define(stage, SdfPath("/S"))));
    EXPECT_EQ(50000.0f, intensity(UsdLuxDistantLight::Define(stage, SdfPath("/D"))));
    const UsdLuxLightAPI api(PrimAt(stage, "/S"));
    EXPECT_TRUE(api) << "the schema is built in";
    EXPECT_EQ(TfToken("SphereLight"), api.GetShaderId({TfToken("any")}));
    EXPECT_TRUE(api.GetLightLinkCollectionAPI());
    EXPECT_FALSE(UsdLuxShapingAPI(PrimAt(stage, "/S")));
    EXPECT_TRUE(UsdLuxShapingAPI::Apply(PrimAt(stage, "/S")));
}

TEST(Lights, TurnADomeToTheStagesUpAxis)
{
    const auto stage = UsdStage::CreateInMemory();
    const UsdLuxDomeLight dome = UsdLuxDomeLight::Define(stage, SdfPath("/D"));
    dome.OrientToStageUpAxis();
    bool resets = false;
    EXPECT_TRUE(dome.GetOrderedXformOps(&resets).empty());
    UsdGeomSetStageUpAxis(stage, UsdGeomTokens->z);
    dome.OrientToStageUpAxis();
    dome.OrientToStageUpAxis();
    ASSERT_EQ(1u, dome.GetOrderedXformOps(&resets).size()) << "once is enough";
    const GfMatrix4d matrix = dome.ComputeLocalToWorldTransform(UsdTimeCode::Default());
    ExpectNear(matrix.TransformDir(GfVec3d::YAxis()), GfVec3d::ZAxis());
}

TEST(Blackbody, HasLuminanceOneAndIsRedWhenCool)
{
    for (const float kelvin : {1000.0f, 2700.0f, 6500.0f, 10000.0f}) {
        const GfVec3f rgb = UsdLuxBlackbodyTemperatureAsRgb(kelvin);
        EXPECT_NEAR(1.0f, 0.2126f * rgb[0] + 0.7152f * rgb[1] + 0.0722f * rgb[2], 1e-3f) << kelvin;
    }
    const GfVec3f cool = UsdLuxBlackbodyTemperatureAsRgb(2000.0f);
    const GfVec3f hot = UsdLuxBlackbodyTemperatureAsRgb(9500.0f);
    EXPECT_GT(cool[0], cool[2]);
    EXPECT_LT(hot[0], hot[2]);
    EXPECT_EQ(UsdLuxBlackbodyTemperatureAsRgb(10000.0f), UsdLuxBlackbodyTemperatureAsRgb(1e9f));
}

} // namespace
