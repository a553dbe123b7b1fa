#include "scene.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/modelAPI.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>

namespace conformance {
namespace {

using ::testing::ElementsAre;

TEST(StageMetadata, IsThatOfTheRootLayer)
{
    const Scene scene({{"root.usda", R"((
        subLayers = [@a.usda@]
        defaultPrim = "P"
        startTimeCode = 2
        endTimeCode = 9
        upAxis = "Z"
    )
    def "P" {})"},
                       {"a.usda", "( metersPerUnit = 5\n startTimeCode = 1 )"}});
    EXPECT_EQ(2, scene.GetStage()->GetStartTimeCode());
    EXPECT_EQ(9, scene.GetStage()->GetEndTimeCode());
    EXPECT_EQ(UsdGeomTokens->z, UsdGeomGetStageUpAxis(scene.GetStage()));
    EXPECT_EQ(0.01, UsdGeomGetStageMetersPerUnit(scene.GetStage()));
    EXPECT_EQ(SdfPath("/P"), scene.GetStage()->GetDefaultPrim().GetPath());
    EXPECT_TRUE(scene.GetStage()->HasAuthoredTimeCodeRange());
}

TEST(StageMetadata, HasItsFallbacks)
{
    const Scene scene("");
    EXPECT_EQ(24, scene.GetStage()->GetTimeCodesPerSecond());
    EXPECT_EQ(24, scene.GetStage()->GetFramesPerSecond());
    EXPECT_EQ(UsdGeomTokens->y, UsdGeomGetStageUpAxis(scene.GetStage()));
    EXPECT_FALSE(scene.GetStage()->GetDefaultPrim());
    EXPECT_FALSE(scene.GetStage()->HasAuthoredTimeCodeRange());
}

TEST(StageMetadata, CountsFramesAsTimeCodesWhereOnlyTheirRateIsGiven)
{
    const Scene scene("( framesPerSecond = 30 )");
    EXPECT_EQ(30, scene.GetStage()->GetTimeCodesPerSecond());
}

TEST(Layers, ThatAreMutedTakeNoPartUntilTheyAreUnmuted)
{
    const Scene scene(
        {{"root.usda", "( subLayers = [@a.usda@] )\ndef \"P\" {}"}, {"a.usda", "over \"P\" { int a = 1 }"}});
    scene.GetStage()->MuteLayer(scene.GetFile("a.usda"));
    EXPECT_FALSE(scene.GetAttribute("/P.a"));
    EXPECT_TRUE(scene.GetStage()->IsLayerMuted(scene.GetFile("a.usda")));
    scene.GetStage()->UnmuteLayer(scene.GetFile("a.usda"));
    EXPECT_EQ(1, scene.Get<int>("/P.a"));
}

TEST(Layers, OfTheStageStandInTheOrderOfTheirStrength)
{
    const Scene scene(
        {{"root.usda", "( subLayers = [@a.usda@, @b.usda@] )"}, {"a.usda", ""}, {"b.usda", ""}});
    Strings names;
    for (const SdfLayerHandle& layer : scene.GetStage()->GetLayerStack(false)) {
        names.push_back(layer->GetDisplayName());
    }
    EXPECT_THAT(names, ElementsAre("root.usda", "a.usda", "b.usda"));
}

TEST(Layers, OfTheSessionAreTheStrongest)
{
    const Scene scene("def \"P\" { int a = 1 }");
    scene.GetStage()->SetEditTarget(scene.GetStage()->GetSessionLayer());
    scene.GetAttribute("/P.a").Set(2);
    EXPECT_EQ(2, scene.Get<int>("/P.a"));
    EXPECT_FALSE(scene.GetStage()->GetRootLayer()->IsDirty());
}

TEST(Models, AreModelsOnlyBelowGroups)
{
    const Scene scene(R"(
        def "G" ( kind = "group" ) {
            def "C" ( kind = "component" ) { def "S" ( kind = "subcomponent" ) {} def "D" ( kind = "component" ) {} } }
        def "N" { def "C" ( kind = "component" ) {} })");
    EXPECT_TRUE(scene.GetPrim("/G").IsGroup());
    EXPECT_TRUE(scene.GetPrim("/G/C").IsModel());
    EXPECT_FALSE(scene.GetPrim("/G/C/S").IsModel());
    EXPECT_FALSE(scene.GetPrim("/G/C/D").IsModel());
    EXPECT_FALSE(scene.GetPrim("/N/C").IsModel());
}

TEST(Flattening, KeepsWhatTheStageSays)
{
    const Scene scene(
        {{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) { int a = 1 }"},
         {"a.usda", "def Xform \"R\" { int a = 2\n int b = 3\n rel r = </R/K>\n def \"K\" {} }"}});
    const SdfLayerRefPtr flat = scene.GetStage()->Flatten();
    const UsdStageRefPtr stage = UsdStage::Open(flat);
    int value = 0;
    EXPECT_TRUE(stage->GetAttributeAtPath(SdfPath("/P.a")).Get(&value));
    EXPECT_EQ(1, value);
    EXPECT_TRUE(stage->GetAttributeAtPath(SdfPath("/P.b")).Get(&value));
    EXPECT_EQ(3, value);
    EXPECT_TRUE(stage->GetPrimAtPath(SdfPath("/P/K")));
    EXPECT_FALSE(stage->GetPrimAtPath(SdfPath("/P")).HasAuthoredReferences());
}

TEST(AssetPaths, AreSoughtBesideTheirLayerAndThenBesideTheRootLayer)
{
    const Scene scene(
        {{"root.usda", "def \"A\" (references = @./models/model.usda@</M>) {}"},
         {"models/model.usda", "def \"M\" (references = [@parts/near.usda@</P>, @parts/far.usda@</P>]) {}"},
         {"models/parts/near.usda", "def \"P\" { int near = 1 }"},
         {"parts/far.usda", "def \"P\" { int far = 2 }"}});
    EXPECT_EQ(1, scene.Get<int>("/A.near"));
    EXPECT_EQ(2, scene.Get<int>("/A.far"));
}

TEST(FallbackTypes, StandInForUnknownOnes)
{
    const Scene scene(R"((fallbackPrimTypes = { token[] Orb = ["Globe", "Sphere"] })
        def Orb "A" {}
        def Blob "B" { odd value = 1 }
    )");
    EXPECT_EQ(TfToken("Orb"), scene.GetPrim("/A").GetTypeName());
    EXPECT_TRUE(scene.GetPrim("/A").IsA(TfToken("Sphere")));
    EXPECT_EQ(1.0, scene.Get<double>("/A.radius"));
    EXPECT_FALSE(scene.GetPrim("/B").IsA(TfToken("Sphere")));
    EXPECT_FALSE(scene.GetAttribute("/B.value").GetTypeName());
}

} // namespace
} // namespace conformance
