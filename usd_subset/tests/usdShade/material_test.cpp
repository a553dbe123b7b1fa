#include "../usdGeom/inline_stage.h"

#include <pxr/usd/usdShade/materialBindingAPI.h>

namespace {

constexpr char kScene[] = R"(
    def Material "M" {
        token outputs:surface.connect = </M/Graph.outputs:out>
        def NodeGraph "Graph" {
            token outputs:out.connect = </M/Graph/S.outputs:surface>
            color3f inputs:tint = (1, 0.5, 0)
            def Shader "S" {
                uniform token info:id = "UsdPreviewSurface"
                color3f inputs:diffuseColor.connect = </M/Graph.inputs:tint>
                float inputs:roughness = 0.25
                float inputs:loop.connect = </M/Graph.inputs:loop>
                token outputs:surface
            }
            float inputs:loop.connect = </M/Graph.inputs:loop>
        }
    }
    def Material "N" {}
    def Xform "A" {
        rel material:binding = </M>
        def Sphere "Inherits" {}
        def Sphere "Own" { rel material:binding = </N>; rel material:binding:preview = </M> }
    }
    def Xform "Strong" {
        rel material:binding = </M> ( bindMaterialAs = "strongerThanDescendants" )
        def Sphere "S" { rel material:binding = </N> }
    }
)";

SdfPath BoundTo(const UsdStageRefPtr& stage, const char* path, const TfToken& purpose = TfToken())
{
    return UsdShadeMaterialBindingAPI(PrimAt(stage, path)).ComputeBoundMaterial(purpose).GetPath();
}

TEST(MaterialBinding, TakesTheNearestOrAStrongerOne)
{
    const auto stage = StageOf(kScene);
    EXPECT_EQ(SdfPath("/M"), BoundTo(stage, "/A/Inherits"));
    EXPECT_EQ(SdfPath("/N"), BoundTo(stage, "/A/Own"));
    EXPECT_EQ(SdfPath("/M"), BoundTo(stage, "/A/Own", UsdShadeTokens->preview));
    EXPECT_EQ(SdfPath("/N"), BoundTo(stage, "/A/Own", UsdShadeTokens->full));
    EXPECT_EQ(SdfPath("/M"), BoundTo(stage, "/Strong/S"));
    EXPECT_EQ(SdfPath(), BoundTo(stage, "/M"));
}

TEST(MaterialBinding, IsAuthoredByBind)
{
    const auto stage = StageOf(kScene);
    const auto api = UsdShadeMaterialBindingAPI::Apply(PrimAt(stage, "/A/Inherits"));
    ASSERT_TRUE(api);
    EXPECT_TRUE(api.Bind(UsdShadeMaterial(PrimAt(stage, "/N"))));
    EXPECT_EQ(SdfPath("/N"), BoundTo(stage, "/A/Inherits"));
    EXPECT_TRUE(api.UnbindDirectBinding());
    EXPECT_EQ(SdfPath("/M"), BoundTo(stage, "/A/Inherits"));
}

TEST(Material, FindsItsShaderThroughNodeGraphs)
{
    const auto stage = StageOf(kScene);
    TfToken name;
    UsdShadeAttributeType type = UsdShadeAttributeType::Invalid;
    const UsdShadeShader shader =
        UsdShadeMaterial(PrimAt(stage, "/M")).ComputeSurfaceSource(TfToken("glslfx"), &name, &type);
    ASSERT_EQ(SdfPath("/M/Graph/S"), shader.GetPath());
    EXPECT_EQ(TfToken("surface"), name);
    EXPECT_EQ(UsdShadeAttributeType::Output, type);
    TfToken id;
    EXPECT_TRUE(shader.GetShaderId(&id));
    EXPECT_EQ(TfToken("UsdPreviewSurface"), id);
    EXPECT_FALSE(UsdShadeMaterial(PrimAt(stage, "/N")).ComputeSurfaceSource());
}

TEST(Shader, FindsValuesAtTheEndsOfConnections)
{
    const auto stage = StageOf(kScene);
    const UsdShadeShader shader(PrimAt(stage, "/M/Graph/S"));
    const auto paths = [&](const char* input) {
        SdfPathVector result;
        for (const UsdAttribute& attribute : shader.GetInput(TfToken(input)).GetValueProducingAttributes()) {
            result.push_back(attribute.GetPath());
        }
        return result;
    };
    EXPECT_EQ((SdfPathVector{SdfPath("/M/Graph.inputs:tint")}), paths("diffuseColor"));
    EXPECT_EQ((SdfPathVector{SdfPath("/M/Graph/S.inputs:roughness")}), paths("roughness"));
    EXPECT_TRUE(paths("loop").empty()) << "a circle has no end";
    UsdShadeConnectableAPI source;
    TfToken name;
    UsdShadeAttributeType type = UsdShadeAttributeType::Invalid;
    ASSERT_TRUE(shader.GetInput(TfToken("diffuseColor")).GetConnectedSource(&source, &name, &type));
    EXPECT_EQ(TfToken("tint"), name);
    EXPECT_EQ(UsdShadeAttributeType::Input, type);
    EXPECT_TRUE(source.IsContainer());
}

} // namespace
