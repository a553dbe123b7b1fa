#include "scene.h"

#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/attributeQuery.h>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <sstream>

using namespace usd_tests;
using testing::ElementsAre;

TEST(TimeCode, TheDefaultTimeIsNoNumberAndComesFirst)
{
    EXPECT_TRUE(UsdTimeCode::Default().IsDefault());
    EXPECT_TRUE(std::isnan(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(UsdTimeCode(0.0).IsNumeric());
    EXPECT_EQ(UsdTimeCode::Default(), UsdTimeCode::Default());
    EXPECT_LT(UsdTimeCode::Default(), UsdTimeCode::EarliestTime());
    EXPECT_LT(UsdTimeCode::EarliestTime(), UsdTimeCode(-1e300));
    EXPECT_FALSE(UsdTimeCode::Default() < UsdTimeCode::Default());
    EXPECT_NE(UsdTimeCode::Default(), UsdTimeCode(0.0));
}

TEST(TimeCode, PrintsItsNameOrNumberAndReadsThemBack)
{
    for (const UsdTimeCode time : {UsdTimeCode::Default(), UsdTimeCode::EarliestTime(), UsdTimeCode(2.5)}) {
        std::stringstream text;
        text << time;
        UsdTimeCode back(0.0);
        text >> back;
        EXPECT_EQ(back, time) << text.str();
    }
}

TEST(TimeSamples, AreInterpolatedLinearlyBetweenAndHeldOutside)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a.timeSamples = { 1: 10, 3: 30 } }");
    const UsdAttribute a = attribute(scene, "/A.a");
    EXPECT_EQ(valueOf<double>(a, 0.0), 10);
    EXPECT_EQ(valueOf<double>(a, 1.0), 10);
    EXPECT_EQ(valueOf<double>(a, 1.5), 15);
    EXPECT_EQ(valueOf<double>(a, 3.0), 30);
    EXPECT_EQ(valueOf<double>(a, 99.0), 30);
    EXPECT_EQ(valueOf<double>(a, UsdTimeCode::EarliestTime()), 10);
}

TEST(TimeSamples, AreHeldWhereTheStageSaysSo)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a.timeSamples = { 1: 10, 3: 30 } }");
    scene->SetInterpolationType(UsdInterpolationTypeHeld);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a"), 2.9), 10);
}

TEST(TimeSamples, OfTypesWithoutInterpolationAreHeld)
{
    const UsdStageRefPtr scene = stage("def \"A\" { int i.timeSamples = { 1: 10, 3: 30 }\n"
                                       " token t.timeSamples = { 1: \"x\", 3: \"y\" } }");
    EXPECT_EQ(valueOf<int>(attribute(scene, "/A.i"), 2.9), 10);
    EXPECT_EQ(valueOf<TfToken>(attribute(scene, "/A.t"), 2.9), TfToken("x"));
}

TEST(TimeSamples, OfVectorsAreInterpolatedByComponentAndOfRotationsOnTheArc)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double3 v.timeSamples = { 0: (0, 2, 4), 2: (2, 2, 0) }\n"
                                       " quatf q.timeSamples = { 0: (1, 0, 0, 0), 1: (0, 0, 0, 1) } }");
    EXPECT_EQ(valueOf<GfVec3d>(attribute(scene, "/A.v"), 1.0), GfVec3d(1, 2, 2));
    // Half way between no turn and half a turn about z is a quarter turn.
    const GfQuatf half = valueOf<GfQuatf>(attribute(scene, "/A.q"), 0.5);
    EXPECT_NEAR(half.GetReal(), std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(half.GetImaginary()[2], std::sqrt(0.5), 1e-6);
}

TEST(TimeSamples, OfArraysAreInterpolatedWhereSizesAgreeElseHeld)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" { float[] f.timeSamples = { 0: [0, 10], 1: [1, 20], 2: [5] } }");
    const UsdAttribute f = attribute(scene, "/A.f");
    EXPECT_EQ(valueOf<VtArray<float>>(f, 0.5), (VtArray<float>{0.5f, 15.0f}));
    EXPECT_EQ(valueOf<VtArray<float>>(f, 1.5), (VtArray<float>{1.0f, 20.0f}));
}

TEST(TimeSamples, HideTheSameLayersDefaultAtNumbersAndNotAtTheDefaultTime)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a = 5\n double a.timeSamples = { 1: 10 } }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 5);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a"), 1.0), 10);
}

TEST(TimeSamples, AreHiddenByAStrongerLayersDefault)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { double a.timeSamples = { 1: 10, 2: 20 } }");
    const UsdStageRefPtr scene =
        UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak}, "over \"A\" { double a = 5 }")));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a"), 1.0), 5);
    EXPECT_EQ(attribute(scene, "/A.a").GetNumTimeSamples(), 0u);
}

TEST(TimeSamples, GiveNoValueWhereTheSampleBeforeIsBlocked)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a.timeSamples = { 1: 10, 2: None, 3: 30 } }");
    double value = -1;
    EXPECT_FALSE(attribute(scene, "/A.a").Get(&value, 2.0));
    EXPECT_FALSE(attribute(scene, "/A.a").Get(&value, 2.5));
    EXPECT_EQ(value, -1);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a"), 1.5), 10); // held towards the block
}

TEST(TimeSamples, AreListedInOrderAndByInterval)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a.timeSamples = { 3: 0, 1: 0, 2: 0 } }");
    std::vector<double> times;
    EXPECT_TRUE(attribute(scene, "/A.a").GetTimeSamples(&times));
    EXPECT_THAT(times, ElementsAre(1, 2, 3));
    EXPECT_TRUE(attribute(scene, "/A.a").GetTimeSamplesInInterval(GfInterval(1.5, 3.0), &times));
    EXPECT_THAT(times, ElementsAre(2, 3));
}

TEST(TimeSamples, OfSeveralAttributesAreUnioned)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" { double a.timeSamples = { 1: 0, 3: 0 }\n double b.timeSamples = { 2: 0, 3: 0 } }");
    std::vector<double> times;
    EXPECT_TRUE(
        UsdAttribute::GetUnionedTimeSamples({attribute(scene, "/A.a"), attribute(scene, "/A.b")}, &times));
    EXPECT_THAT(times, ElementsAre(1, 2, 3));
}

TEST(TimeSamples, BracketATime)
{
    const UsdStageRefPtr scene = stage("def \"A\" { double a.timeSamples = { 1: 0, 3: 0 }\n double d = 1 }");
    double lower = 0, upper = 0;
    bool hasSamples = false;
    EXPECT_TRUE(attribute(scene, "/A.a").GetBracketingTimeSamples(2.0, &lower, &upper, &hasSamples));
    EXPECT_EQ(lower, 1);
    EXPECT_EQ(upper, 3);
    EXPECT_TRUE(hasSamples);
    EXPECT_TRUE(attribute(scene, "/A.a").GetBracketingTimeSamples(9.0, &lower, &upper, &hasSamples));
    EXPECT_EQ(lower, 3);
    EXPECT_EQ(upper, 3);
    EXPECT_TRUE(attribute(scene, "/A.d").GetBracketingTimeSamples(2.0, &lower, &upper, &hasSamples));
    EXPECT_FALSE(hasSamples);
}

TEST(TimeSamples, MayVaryOnlyWhenThereAreTwo)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" { double one.timeSamples = { 1: 0 }\n double two.timeSamples = { 1: 0, 2: 0 } }");
    EXPECT_FALSE(attribute(scene, "/A.one").ValueMightBeTimeVarying());
    EXPECT_TRUE(attribute(scene, "/A.two").ValueMightBeTimeVarying());
}

TEST(LayerOffset, MovesASublayersSamplesAndTimeCodesToTheStagesTime)
{
    const SdfLayerRefPtr weak = layer(
        "def \"A\" { double a.timeSamples = { 0: 0, 10: 10 }\n timecode t = 5\n timecode[] ts = [1, 2] }");
    const UsdStageRefPtr scene =
        UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak}, "", {SdfLayerOffset(100, 2)})));
    const UsdAttribute a = attribute(scene, "/A.a");
    std::vector<double> times;
    a.GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(100, 120)); // 2 t + 100
    EXPECT_EQ(valueOf<double>(a, 110.0), 5);
    EXPECT_EQ(valueOf<SdfTimeCode>(attribute(scene, "/A.t")), SdfTimeCode(110));
    EXPECT_EQ(valueOf<VtArray<SdfTimeCode>>(attribute(scene, "/A.ts")),
              (VtArray<SdfTimeCode>{SdfTimeCode(102), SdfTimeCode(104)}));
}

TEST(LayerOffset, OfNestedSublayersIsAppliedFromTheInsideOut)
{
    const SdfLayerRefPtr inner = layer("def \"A\" { double a.timeSamples = { 1: 1 } }");
    const SdfLayerRefPtr outer = layerWithSublayers({inner}, "", {SdfLayerOffset(10, 2)});
    const UsdStageRefPtr scene =
        UsdStage::Open(SdfLayerHandle(layerWithSublayers({outer}, "", {SdfLayerOffset(100, 3)})));
    std::vector<double> times;
    attribute(scene, "/A.a").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(136)); // 3 (2 * 1 + 10) + 100
}

TEST(LayerOffset, CountsTheRatesOfBothLayers)
{
    const SdfLayerRefPtr weak =
        layer("( timeCodesPerSecond = 12 )\n def \"A\" { double a.timeSamples = { 12: 1 } }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak})));
    EXPECT_EQ(scene->GetTimeCodesPerSecond(), 24);
    std::vector<double> times;
    attribute(scene, "/A.a").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(24)); // one second in both
}

TEST(LayerOffset, ASessionLayersRateRulesTheRootLayers)
{
    const SdfLayerRefPtr root = layer("def \"A\" { double a.timeSamples = { 24: 1 } }");
    const SdfLayerRefPtr session = layer("( timeCodesPerSecond = 48 )");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root), SdfLayerHandle(session));
    EXPECT_EQ(scene->GetTimeCodesPerSecond(), 48);
    std::vector<double> times;
    attribute(scene, "/A.a").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(48));
}

TEST(LayerOffset, IsUndoneWhenAValueIsWrittenToTheSublayer)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { double a.timeSamples = { 0: 0 }\n timecode t = 0 }");
    const UsdStageRefPtr scene =
        UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak}, "", {SdfLayerOffset(100, 2)})));
    scene->SetEditTarget(scene->GetEditTargetForLocalLayer(SdfLayerHandle(weak)));
    EXPECT_TRUE(attribute(scene, "/A.a").Set(7.0, 120.0));
    EXPECT_TRUE(attribute(scene, "/A.t").Set(SdfTimeCode(110)));
    EXPECT_THAT(weak->ListTimeSamplesForPath(SdfPath("/A.a")), ElementsAre(0, 10));
    EXPECT_EQ(weak->GetFieldAs<SdfTimeCode>(SdfPath("/A.t"), TfToken("default")), SdfTimeCode(5));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a"), 120.0), 7);
}

TEST(LayerOffset, ThatCannotBeInvertedIsOneWarningAndNotUsed)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { double a.timeSamples = { 1: 1 } }");
    const SdfLayerRefPtr root = layerWithSublayers({weak}, "", {SdfLayerOffset(5, 0)});
    Warnings warnings;
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    std::vector<double> times;
    attribute(scene, "/A.a").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(1));
    EXPECT_THAT(warnings.texts,
                ElementsAre("Sublayer @" + weak->GetIdentifier() + "@ of @" + root->GetIdentifier() +
                            "@ has an offset that cannot be inverted; none is used."));
}

TEST(AttributeQuery, AnswersAsTheAttributeDoes)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" { double a = 5\n double a.timeSamples = { 1: 10, 2: 20 } }");
    const UsdAttributeQuery query(attribute(scene, "/A.a"));
    double value = 0;
    EXPECT_TRUE(query.Get(&value));
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(query.Get(&value, 1.5));
    EXPECT_EQ(value, 15);
    EXPECT_EQ(query.GetNumTimeSamples(), 2u);
    EXPECT_TRUE(query.ValueMightBeTimeVarying());
    EXPECT_TRUE(query.HasAuthoredValue());
}
