#include "scene.h"

#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/sdf/types.h>

#include <filesystem>

namespace conformance {
namespace {

using ::testing::ElementsAre;

TEST(Values, AreInterpolatedBetweenSamplesAndHeldOutside)
{
    const Scene scene(R"(
        def "P" {
            double d.timeSamples = { 0: 1, 10: 3 }
            int i.timeSamples = { 0: 1, 10: 3 }
            token t.timeSamples = { 0: "a", 10: "b" }
        })");
    EXPECT_EQ(1.0, scene.Get<double>("/P.d", -5));
    EXPECT_EQ(2.0, scene.Get<double>("/P.d", 5));
    EXPECT_EQ(3.0, scene.Get<double>("/P.d", 50));
    EXPECT_EQ(1, scene.Get<int>("/P.i", 9));
    EXPECT_EQ("a", scene.Get<TfToken>("/P.t", 9.5));
    EXPECT_EQ("b", scene.Get<TfToken>("/P.t", 10));
}

TEST(Values, AreHeldWhereTheStageSaysSo)
{
    const Scene scene("def \"P\" { double d.timeSamples = { 0: 1, 10: 3 } }");
    scene.GetStage()->SetInterpolationType(UsdInterpolationTypeHeld);
    EXPECT_EQ(1.0, scene.Get<double>("/P.d", 5));
}

TEST(Values, OfArraysAreInterpolatedWhereTheirSizesAgree)
{
    const Scene scene(R"(
        def "P" {
            float[] same.timeSamples = { 0: [0, 2], 2: [2, 4] }
            float[] other.timeSamples = { 0: [0, 2], 2: [2] }
        })");
    EXPECT_EQ((VtFloatArray{1, 3}), scene.Get<VtFloatArray>("/P.same", 1));
    EXPECT_EQ((VtFloatArray{0, 2}), scene.Get<VtFloatArray>("/P.other", 1));
}

TEST(Values, AtTheDefaultTimeAreNoSamples)
{
    const Scene scene(
        "def \"P\" { double d = 7\n double d.timeSamples = { 0: 1 }\n double e.timeSamples = { 0: 1 } }");
    EXPECT_EQ(7.0, scene.Get<double>("/P.d"));
    EXPECT_EQ(1.0, scene.Get<double>("/P.d", 0));
    double value = 0;
    EXPECT_FALSE(scene.GetAttribute("/P.e").Get(&value));
}

TEST(Values, OfSamplesInWeakerLayersYieldToStrongerDefaults)
{
    const Scene scene({{"root.usda", "( subLayers = [@a.usda@] )\nover \"P\" { double d = 7 }"},
                       {"a.usda", "def \"P\" { double d.timeSamples = { 0: 1 } }"}});
    EXPECT_EQ(7.0, scene.Get<double>("/P.d", 0));
}

TEST(Values, ThatAreBlockedLeaveTheFallback)
{
    const Scene scene({{"root.usda", R"(
        def Sphere "S" ( prepend references = @a.usda@</R> ) { double radius = None
                                                              double other = None })"},
                       {"a.usda", "def Sphere \"R\" { double radius = 5\n double other = 5 }"}});
    double value = 0;
    EXPECT_TRUE(scene.GetAttribute("/S.radius").Get(&value, 1.0));
    EXPECT_EQ(1.0, value);
    EXPECT_FALSE(scene.GetAttribute("/S.other").Get(&value));
    EXPECT_FALSE(scene.GetAttribute("/S.radius").HasAuthoredValue());
}

TEST(Values, BlockedInOneSampleEndThere)
{
    const Scene scene("def \"P\" { double d.timeSamples = { 0: 1, 5: None, 8: 4 } }");
    double value = 0;
    EXPECT_TRUE(scene.GetAttribute("/P.d").Get(&value, 3.0));
    EXPECT_EQ(1.0, value);
    EXPECT_FALSE(scene.GetAttribute("/P.d").Get(&value, 5.0));
    EXPECT_FALSE(scene.GetAttribute("/P.d").Get(&value, 6.0));
    EXPECT_TRUE(scene.GetAttribute("/P.d").Get(&value, 8.0));
}

TEST(Values, ThatAreHeldComeAsTheBlockToWhoeverTakesAnyType)
{
    const Scene scene("def \"P\" { token t.timeSamples = { 0: None, 8: \"a\" } }");
    VtValue value;
    EXPECT_TRUE(scene.GetAttribute("/P.t").Get(&value, 3.0));
    EXPECT_TRUE(value.IsHolding<SdfValueBlock>());
    TfToken token;
    EXPECT_FALSE(scene.GetAttribute("/P.t").Get(&token, 3.0));
}

TEST(Values, MoveInTimeWithTheOffsetsOfAllArcs)
{
    const Scene scene(
        {{"root.usda", "( subLayers = [@mid.usda@ ( offset = 100 )] )"},
         {"mid.usda", "def \"P\" ( prepend references = @a.usda@</R> ( offset = 10; scale = 2 ) ) {}"},
         {"a.usda", R"(def "R" { double d.timeSamples = { 1: 1, 3: 3 }
                                               timecode t = 4
                                               timecode[] ts = [1, 2] })"}});
    std::vector<double> times;
    scene.GetAttribute("/P.d").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(112, 116));
    EXPECT_EQ(2.0, scene.Get<double>("/P.d", 114));
    EXPECT_EQ(SdfTimeCode(118), scene.Get<SdfTimeCode>("/P.t"));
    EXPECT_EQ((VtArray<SdfTimeCode>{112, 114}), scene.Get<VtArray<SdfTimeCode>>("/P.ts"));
}

TEST(Values, MoveInTimeWithTheRatesOfTheLayers)
{
    const Scene scene(
        {{"root.usda", "( timeCodesPerSecond = 24 )\ndef \"P\" ( prepend references = @a.usda@</R> ) {}"},
         {"a.usda", "( timeCodesPerSecond = 48 )\ndef \"R\" { double d.timeSamples = { 48: 1 } }"}});
    std::vector<double> times;
    scene.GetAttribute("/P.d").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(24));
}

TEST(Values, ThatAreAssetsAreFoundBesideTheirLayer)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @deep/a.usda@</R> ) {}"},
                       {"deep/a.usda", "def \"R\" { asset here = @./b.usda@\n asset gone = @./no.png@ }"},
                       {"deep/b.usda", ""}});
    const SdfAssetPath here = scene.Get<SdfAssetPath>("/P.here");
    EXPECT_EQ("./b.usda", here.GetAssetPath());
    EXPECT_EQ(scene.GetFile("deep/b.usda"), here.GetResolvedPath());
    EXPECT_EQ("", scene.Get<SdfAssetPath>("/P.gone").GetResolvedPath());
}

TEST(Values, SayWhereTheyComeFrom)
{
    const Scene scene(R"(
        def Sphere "S" { double a = 1
                         double b.timeSamples = { 0: 1 }
                         double c })");
    EXPECT_EQ(UsdResolveInfoSourceDefault, scene.GetAttribute("/S.a").GetResolveInfo().GetSource());
    EXPECT_EQ(UsdResolveInfoSourceTimeSamples, scene.GetAttribute("/S.b").GetResolveInfo().GetSource());
    EXPECT_EQ(UsdResolveInfoSourceNone, scene.GetAttribute("/S.c").GetResolveInfo().GetSource());
    EXPECT_EQ(UsdResolveInfoSourceFallback, scene.GetAttribute("/S.radius").GetResolveInfo().GetSource());
}

TEST(Samples, AroundATimeAreTheNearestOnes)
{
    const Scene scene("def \"P\" { double d.timeSamples = { 1: 1, 4: 2 } }");
    double lower = 0, upper = 0;
    bool has = false;
    for (const auto& [time, expected] : std::map<double, std::pair<double, double>>{
             {0, {1, 1}}, {1, {1, 1}}, {2, {1, 4}}, {4, {4, 4}}, {9, {4, 4}}}) {
        EXPECT_TRUE(scene.GetAttribute("/P.d").GetBracketingTimeSamples(time, &lower, &upper, &has));
        EXPECT_EQ(expected, std::make_pair(lower, upper)) << time;
    }
    EXPECT_TRUE(scene.GetAttribute("/P.d").ValueMightBeTimeVarying());
}

TEST(Values, PassOverDefaultsOfAnotherType)
{
    const Scene scene(R"(
        def Sphere "Weak" { double radius = 5; float[] list = [1] }
        def Sphere "Strong" (references = </Weak>) { float radius = 10 }
        def Sphere "Alone" { string radius = "wide" }
        def Sphere "Moving" { float radius.timeSamples = { 1: 5 } }
    )");
    EXPECT_EQ(5.0, scene.Get<double>("/Strong.radius"));
    EXPECT_EQ(10.0f, scene.Get<float>("/Strong.radius"));
    EXPECT_EQ(1.0, scene.Get<double>("/Alone.radius"));
    EXPECT_EQ(0.0, scene.Get<double>("/Moving.radius", 1.0)) << "samples are not passed over";
}

} // namespace
} // namespace conformance
